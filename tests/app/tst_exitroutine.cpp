#include "app/windowtest.h"
#include "support/tracedby.h"

namespace {

/// Watches whether a window is raised.
class RaiseWatch : public QObject {
public:
    int raised = 0;
    bool eventFilter(QObject *, QEvent *event) override {
        raised += event->type() == QEvent::ZOrderChange;
        return false;
    }
};

} // namespace

/// Hiding, the ways out, and what is asked on the way.
class Tst_ExitRoutine : public WindowTest {
    Q_OBJECT
private slots:
    void init() { WindowTest::init(); }
    void cleanup() { WindowTest::cleanup(); }

    void closeOnlyHidesInTrayMode();
    void hidingIsLogged();
    void closeExitsWithoutTrayMode();
    void closeCommandExitsInTrayMode();
    void exitAsksAboutUnsavedImages_data();
    void exitAsksAboutUnsavedImages();
    void refusedExitLeavesTheCloseButtonHiding();
    void escapeExitsWithoutTrayMode();
    void exitIsRefusedWhileADialogIsOpen();
    void exitUnderAnotherDialog_data();
    void exitUnderAnotherDialog();
    void endOfTheSessionEndsTheOpenItem();
    void endOfTheSessionAsksNothing();
    void twoKillsEndOnce();
    void killInsideTheQuestionEndsOnce();
    void exitIsRememberedOutsideTheLoop();
};

void Tst_ExitRoutine::closeOnlyHidesInTrayMode() {
    addCapture("a"_qs);
    forgetMessages();
    QVERIFY(!quits([this] { m_window->close(); }));
    QVERIFY(!m_window->isVisible());
    QCOMPARE(messages(), (Messages{0x86D, 0x86B}));
}

void Tst_ExitRoutine::hidingIsLogged() {
    const QByteArray log = tracedBy([this] { m_window->close(); });
    QVERIFY(log.contains(" closeEvent : hide\r\n"));
}

void Tst_ExitRoutine::closeExitsWithoutTrayMode() {
    preferences()->SetBool(TindraPreferences::TrayMode, false);
    addCapture("a"_qs);
    markSaved();
    forgetMessages();
    QVERIFY(quits([this] { m_window->close(); }));
    QCOMPARE(messages(), (Messages{0x867, 0x86D}));
}

void Tst_ExitRoutine::closeCommandExitsInTrayMode() {
    addCapture("a"_qs);
    markSaved();
    forgetMessages();
    const QString path = capture("b"_qs);
    QVERIFY(quits([this, path] { treat("/close /path "_qs + path); }));
    QCOMPARE(list()->count(), 1);
    QCOMPARE(messages(), (Messages{0x867, 0x86D}));
}

void Tst_ExitRoutine::exitAsksAboutUnsavedImages_data() {
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("exits");
    QTest::newRow("yes") << "Yes" << true;
    QTest::newRow("no") << "No" << false;
    QTest::newRow("closed") << "" << false;
}

void Tst_ExitRoutine::exitAsksAboutUnsavedImages() {
    QFETCH(QString, button);
    QFETCH(bool, exits);
    treat("/skip /path "_qs + capture("a"_qs));
    ModalAnswers answers;
    if (button.isEmpty())
        answers.addClose();
    else
        answers.addPress(button);
    QCOMPARE(quits([this] { treat("/close"_qs); }), exits);
    QVERIFY(answers.isDone());
    QCOMPARE(answers.texts(), QStringList{"Unsaved images exist in history.\nWould you exit tindra?|If you "
                                          "exit, it will remove all images in history."_qs});
    QCOMPARE(messages(), exits ? (Messages{0x86E, 0x869, 0x867, 0x86D}) : (Messages{0x86E, 0x869}));
    QCOMPARE(m_window->isVisible(), !exits);
}

void Tst_ExitRoutine::refusedExitLeavesTheCloseButtonHiding() {
    addCapture("a"_qs);
    ModalAnswers answers;
    answers.addPress("No"_qs);
    QVERIFY(!quits([this] { m_window->onClickClose(); }));
    QVERIFY(!quits([this] { m_window->close(); }));
    QVERIFY(answers.isDone());
    QVERIFY(!m_window->isVisible());
}

void Tst_ExitRoutine::escapeExitsWithoutTrayMode() {
    preferences()->SetBool(TindraPreferences::TrayMode, false);
    addCapture("a"_qs);
    markSaved();
    activate();
    forgetMessages();
    QVERIFY(quits([this] { QTest::keyClick(m_window.get(), Qt::Key_Escape); }));
    QCOMPARE(messages(), (Messages{0x867, 0x86D}));
}

void Tst_ExitRoutine::exitIsRefusedWhileADialogIsOpen() {
    addCapture("a"_qs);
    const QString file = list()->rowItem(0)->editor()->imageKey();
    ModalAnswers answers;
    answers.add([this](QWidget *question) {
        QWidget before(question, Qt::Window);
        before.show();
        before.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&before));
        RaiseWatch watch;
        question->installEventFilter(&watch);
        // A second request, while the question of the first stands.
        treat("/close"_qs);
        QCoreApplication::processEvents();
        QVERIFY(question->isVisible());
        QVERIFY(question->isActiveWindow());
        QCOMPARE(watch.raised, 1);
        ModalAnswers::press(question, "Yes"_qs);
    });
    QVERIFY(quits([this] { treat("/close"_qs); }));
    QVERIFY(answers.isDone());
    // It was a normal exit all the same.
    QVERIFY(!QFile::exists(file));
}

void Tst_ExitRoutine::exitUnderAnotherDialog_data() {
    QTest::addColumn<bool>("saved");
    QTest::newRow("unsaved: the dialog comes first") << false;
    QTest::newRow("all saved: nothing to ask") << true;
}

void Tst_ExitRoutine::exitUnderAnotherDialog() {
    QFETCH(bool, saved);
    addCapture("a"_qs);
    if (saved)
        markSaved();
    QDialog dialog(m_window.get());
    dialog.open();
    QWidget before(&dialog, Qt::Window);
    before.show();
    before.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&before));
    RaiseWatch watch;
    dialog.installEventFilter(&watch);
    forgetMessages();
    QCOMPARE(quits([this] { treat("/close"_qs); }), saved);
    QCOMPARE(watch.raised > 0, !saved);
    QCOMPARE(dialog.isActiveWindow(), !saved);
    QCOMPARE(messages(), saved ? (Messages{0x867, 0x86D}) : Messages{});
    if (saved)
        return;
    // The request is forgotten: the close button hides.
    dialog.close();
    QVERIFY(!quits([this] { m_window->close(); }));
    QVERIFY(!m_window->isVisible());
}

void Tst_ExitRoutine::endOfTheSessionEndsTheOpenItem() {
    m_window->show();
    TestEditor *editor = addFake("a"_qs);
    m_window->onClickCrop();
    QVERIFY(editor->crop);
    const ItemLog log = editor->sharedLog;
    QVERIFY(quits([this] { endSession(); }));
    QCOMPARE(log->filter("crop finish"_qs), QStringList{"crop finish 0"_qs});
}

void Tst_ExitRoutine::endOfTheSessionAsksNothing() {
    addCapture("a"_qs);
    const QString file = list()->rowItem(0)->editor()->imageKey();
    forgetMessages();
    ModalAnswers answers;
    QVERIFY(quits([this] { endSession(); }));
    QVERIFY(answers.isDone());
    QCOMPARE(messages(), (Messages{0x867}));
    QVERIFY(!QFile::exists(file));
}

void Tst_ExitRoutine::twoKillsEndOnce() {
    QVERIFY(quits([this] {
        treat("/kill"_qs);
        treat("/kill"_qs);
    }));
    QCoreApplication::processEvents();
    QCOMPARE(messages().count(0x867), 1);
}

void Tst_ExitRoutine::killInsideTheQuestionEndsOnce() {
    addCapture("a"_qs);
    const QString file = list()->rowItem(0)->editor()->imageKey();
    forgetMessages();
    ModalAnswers answers;
    answers.add([this](QWidget *) { treat("/kill"_qs); });
    QVERIFY(quits([this] { treat("/close"_qs); }));
    QCoreApplication::processEvents();
    QCOMPARE(messages().count(0x867), 1);
    QVERIFY(QFile::exists(file));
}

void Tst_ExitRoutine::exitIsRememberedOutsideTheLoop() {
    QVERIFY(!m_window->hasLeft());
    ModalAnswers answers;
    answers.add([this](QWidget *) { treat("/kill"_qs); });
    treat("/path /nothing.png"_qs); // its complaint is a loop of its own
    QVERIFY(answers.isDone());
    QVERIFY(m_window->hasLeft());
}

QTEST_MAIN(Tst_ExitRoutine)
#include "tst_exitroutine.moc"
