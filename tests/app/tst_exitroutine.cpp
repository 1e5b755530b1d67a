#include "app/windowtest.h"

/// Hiding, the ways out, and what each of them leaves behind.
class Tst_ExitRoutine : public WindowTest {
    Q_OBJECT
private slots:
    void init() { WindowTest::init(); }
    void cleanup() { WindowTest::cleanup(); }

    void closeOnlyHidesInTrayMode();
    void closeExitsWithoutTrayMode();
    void closeCommandExitsInTrayMode();
    void exitAsksAboutUnsavedImages_data();
    void exitAsksAboutUnsavedImages();
    void refusedExitLeavesTheCloseButtonHiding();
    void exitIsRefusedWhileADialogIsOpen();
    void killAsksNothingAndKeepsTheFiles_data();
    void killAsksNothingAndKeepsTheFiles();
    void exitClearsTheWorkFolder();
    void exitSavesThePreferences();
    void endOfTheSessionAsksNothing();
    void twoKillsEndOnce();
    void killInsideTheQuestionEndsOnce();
    void leavingIsToldBeforeTheFilesGo();
    void exitIsRememberedOutsideTheLoop();
};

void Tst_ExitRoutine::closeOnlyHidesInTrayMode() {
    addCapture("a"_qs);
    forgetMessages();
    QVERIFY(!quits([this] { m_window->close(); }));
    QVERIFY(!m_window->isVisible());
    QCOMPARE(messages(), (Messages{0x86D, 0x86B}));
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

void Tst_ExitRoutine::exitIsRefusedWhileADialogIsOpen() {
    addCapture("a"_qs);
    const QString file = list()->rowItem(0)->editor()->imageKey();
    ModalAnswers answers;
    answers.add([this](QWidget *question) {
        // A second request, while the question of the first stands.
        treat("/close"_qs);
        QCoreApplication::processEvents();
        QVERIFY(question->isVisible());
        ModalAnswers::press(question, "Yes"_qs);
    });
    QVERIFY(quits([this] { treat("/close"_qs); }));
    QVERIFY(answers.isDone());
    // It was a normal exit all the same.
    QVERIFY(!QFile::exists(file));
}

void Tst_ExitRoutine::killAsksNothingAndKeepsTheFiles_data() {
    QTest::addColumn<bool>("trayMode");
    QTest::newRow("tray mode") << true;
    QTest::newRow("no tray mode") << false;
}

void Tst_ExitRoutine::killAsksNothingAndKeepsTheFiles() {
    QFETCH(bool, trayMode);
    preferences()->SetBool(TindraPreferences::TrayMode, trayMode);
    addCapture("a"_qs);
    const QString file = list()->rowItem(0)->editor()->imageKey();
    forgetMessages();
    ModalAnswers answers;
    QVERIFY(quits([this] { treat("/kill"_qs); }));
    QVERIFY(answers.isDone());
    QCOMPARE(messages(), (Messages{0x867, 0x86D}));
    m_window.reset();
    QVERIFY(QFile::exists(file));
}

void Tst_ExitRoutine::exitClearsTheWorkFolder() {
    QDir work(workFolder());
    for (const QString &folder : {"pin"_qs, "AIRemoveBeta/deep"_qs})
        QVERIFY(work.mkpath(folder));
    const QString stray = capture("stray"_qs);
    const QString notes = work.filePath("notes.txt"_qs);
    QVERIFY(QFile(notes).open(QIODevice::WriteOnly));
    addCapture("a"_qs);
    markSaved();
    QVERIFY(quits([this] { m_window->onClickClose(); }));
    QVERIFY(work.entryList({"*.png"_qs}, QDir::Files).isEmpty());
    QVERIFY(!QFile::exists(stray));
    QVERIFY(!work.exists("AIRemoveBeta"_qs));
    QVERIFY(work.exists("pin"_qs));
    QVERIFY(QFile::exists(notes));
}

void Tst_ExitRoutine::exitSavesThePreferences() {
    treat("/updateprefvalue 59 1"_qs);
    QVERIFY(quits([this] { treat("/close"_qs); }));
    m_window.reset();
    TindraPreferences::resetForTesting();
    TindraPreferences::instance()->Init();
    QVERIFY(TindraPreferences::instance()->GetBool(TindraPreferences::AutoHistoryDelete, false));
}

void Tst_ExitRoutine::endOfTheSessionAsksNothing() {
    addCapture("a"_qs);
    const QString file = list()->rowItem(0)->editor()->imageKey();
    forgetMessages();
    ModalAnswers answers;
    // The receiver looks at nothing of the manager, which only the desktop can make.
    std::aligned_storage_t<64, alignof(std::max_align_t)> manager;
    QVERIFY(quits([&] { emit qApp->commitDataRequest(reinterpret_cast<QSessionManager &>(manager)); }));
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

void Tst_ExitRoutine::leavingIsToldBeforeTheFilesGo() {
    addCapture("a"_qs);
    markSaved();
    const QString file = list()->rowItem(0)->editor()->imageKey();
    QVector<bool> fileThere;
    connect(m_window.get(), &TindraEditor::leaving, this, [&] { fileThere.append(QFile::exists(file)); });
    QVERIFY(quits([this] { treat("/close"_qs); }));
    QCOMPARE(fileThere, QVector<bool>{true});
    QVERIFY(!QFile::exists(file));
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
