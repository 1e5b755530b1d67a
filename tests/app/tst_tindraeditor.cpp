#include "app/windowtest.h"
#include "support/tracedby.h"

/// The window as it begins, and as captures come into it.
class Tst_TindraEditor : public WindowTest {
    Q_OBJECT
private slots:
    void init() { WindowTest::init(); }
    void cleanup() { WindowTest::cleanup(); }

    // Structure
    void beginsHiddenAndEmpty();
    void widgetsCarryTheirNames();
    void sizesAreThoseOfTheDesign();

    // Captures
    void captureIsAddedShownAndTold();
    void captureIsLogged();
    void skippedCaptureStaysHidden();
    void secondCaptureLeavesTheWindowAlone();
    void lineInsideTheDialogOfAnother();
    void brokenCaptureIsReported_data();
    void brokenCaptureIsReported();
    void brokenCaptureIsSilentWhileVisible();
    void fullListIsReported();
    void refusedCaptureFreesItsMemory();

    // Placement
    void windowIsFittedToTheCapture();
    void hiddenWindowIsFittedToASkippedCapture();
    void brokenCaptureBringsTheWindowOntoAScreenAndToTheFront();
    void hugeCaptureFillsTheScreen();
    void moveOfTheWindowPlacesWhatFloats();
};

void Tst_TindraEditor::beginsHiddenAndEmpty() {
    QVERIFY(!m_window->isVisible());
    QVERIFY(!scene());
    QVERIFY(button("capture")->isEnabled());
    QVERIFY(!button("save")->isEnabled());
    QVERIFY(!button("pen")->isEnabled());
    QVERIFY(messages().isEmpty());
}

void Tst_TindraEditor::widgetsCarryTheirNames() {
    QCOMPARE(m_window->objectName(), "TindraEditorClass"_qs);
    QCOMPARE(m_window->windowTitle(), "TindraEditor"_qs);
    for (const char *name : {"mainWidget_", "graphicsView_", "historyWidget_", "toolbar_"})
        QVERIFY2(m_window->findChild<QWidget *>(QLatin1String(name)), name);
    QCOMPARE(m_window->findChild<QWidget *>("toolbar_"_qs)->windowTitle(), "toolBar"_qs);
    for (const char *name : {"verticalLayout_2", "imageHorizontalLayout_"})
        QVERIFY2(m_window->findChild<QLayout *>(QLatin1String(name)), name);
    const auto *panel = m_window->findChild<HistoryWidget *>();
    QCOMPARE(panel->minimumWidth(), 172);
    QCOMPARE(panel->maximumWidth(), 172);
}

void Tst_TindraEditor::sizesAreThoseOfTheDesign() {
    QCOMPARE(m_window->size(), QSize(430, 298));
    for (const char *name : {"verticalLayout_2", "imageHorizontalLayout_"}) {
        const auto *layout = m_window->findChild<QLayout *>(QLatin1String(name));
        QCOMPARE(layout->contentsMargins(), QMargins());
        QCOMPARE(layout->spacing(), 0);
    }
}

void Tst_TindraEditor::captureIsAddedShownAndTold() {
    addCapture("a"_qs);
    QCOMPARE(list()->count(), 1);
    QVERIFY(m_window->isVisible());
    QVERIFY(scene());
    QCOMPARE(scene(), list()->rowItem(0)->editor());
    makeWide();
    QVERIFY(button("pen")->isEnabled());
    QVERIFY(!button("undo")->isEnabled());
    QVERIFY(!button("reset")->isEnabled());
    QCOMPARE(messages(), (Messages{0x86E, 0x86C}));
    QCOMPARE(m_session->usage, QStringList{"cap_30_03"_qs});
}

void Tst_TindraEditor::captureIsLogged() {
    const QByteArray log = tracedBy([this] { addCapture("a"_qs); });
    QVERIFY(log.contains(" AddNewPixmap : show " + QFile::encodeName(capture("a"_qs)) + "\r\n"));
}

void Tst_TindraEditor::skippedCaptureStaysHidden() {
    treat("/skip /path "_qs + capture("a"_qs, {300, 200}));
    QVERIFY(!m_window->isVisible());
    QCOMPARE(list()->count(), 1);
    QVERIFY(messages().isEmpty());
    QVERIFY(m_session->usage.isEmpty());
    QVERIFY(!m_window->isHideBlocked());
}

void Tst_TindraEditor::secondCaptureLeavesTheWindowAlone() {
    addCapture("a"_qs);
    const QRect geometry = m_window->geometry();
    forgetMessages();
    treat("/point 500 500 /path "_qs + capture("b"_qs, {600, 500}));
    QCOMPARE(m_window->geometry(), geometry);
    QCOMPARE(list()->count(), 2);
    QCOMPARE(scene(), list()->rowItem(0)->editor());
    QVERIFY(messages().isEmpty());
}

void Tst_TindraEditor::lineInsideTheDialogOfAnother() {
    ModalAnswers answers;
    answers.add([this](QWidget *dialog) {
        // Arrives while the failure is still on the screen.
        addCapture("b"_qs);
        QCOMPARE(list()->count(), 1);
        ModalAnswers::press(dialog, "Ok"_qs);
    });
    treat("/path /nothing.png"_qs);
    QVERIFY(answers.isDone());
    QCOMPARE(list()->count(), 1);
    QVERIFY(m_window->isVisible());
}

void Tst_TindraEditor::brokenCaptureIsReported_data() {
    QTest::addColumn<bool>("skip");
    QTest::newRow("shown") << false;
    QTest::newRow("silent") << true;
}

void Tst_TindraEditor::brokenCaptureIsReported() {
    QFETCH(bool, skip);
    ModalAnswers answers;
    answers.addPress("Ok"_qs);
    treat((skip ? "/skip "_qs : QString()) + "/path /nothing.png"_qs);
    QVERIFY(answers.isDone());
    QCOMPARE(answers.texts(), QStringList{"Failed to capture image."_qs});
    QCOMPARE(m_window->isVisible(), !skip);
    QCOMPARE(messages(), skip ? Messages{} : (Messages{0x86E, 0x86C}));
    QVERIFY(m_session->usage.isEmpty());
    QCOMPARE(list()->count(), 0);
}

void Tst_TindraEditor::brokenCaptureIsSilentWhileVisible() {
    addCapture("a"_qs);
    ModalAnswers answers;
    treat("/path /nothing.png"_qs);
    QVERIFY(answers.isDone());
    QCOMPARE(list()->count(), 1);
    QCOMPARE(scene(), list()->rowItem(0)->editor());
}

void Tst_TindraEditor::fullListIsReported() {
    for (int i = 0; i < 100; ++i)
        m_window->AddNewPixmap(Session::captureInMemory("m%1"_qs.arg(i)), {}, true);
    ModalAnswers answers;
    answers.addPress("Ok"_qs);
    addCapture("late"_qs);
    QVERIFY(answers.isDone());
    QCOMPARE(answers.texts(), QStringList{"Failed to capture image."_qs});
    QCOMPARE(list()->count(), 100);
    QVERIFY(!list()->selectedItem());
    QVERIFY(!scene());
}

void Tst_TindraEditor::refusedCaptureFreesItsMemory() {
    for (int i = 0; i < 100; ++i)
        m_window->AddNewPixmap(Session::captureInMemory("m%1"_qs.arg(i)), {}, true);
    ModalAnswers answers;
    answers.addPress("Ok"_qs);
    answers.addPress("Ok"_qs);
    m_window->AddNewPixmap(Session::captureInMemory("late"_qs), {}, true);
    QVERIFY(!ImageProvider::instance()->dropFromMemory("late"_qs));
    // One that a row shows stays.
    m_window->AddNewPixmap("m7"_qs, {}, true);
    QVERIFY(answers.isDone());
    QVERIFY(ImageProvider::instance()->dropFromMemory("m7"_qs));
}

void Tst_TindraEditor::windowIsFittedToTheCapture() {
    treat("/point 150 230 /path "_qs + capture("a"_qs, {300, 200}));
    const QSize frame = m_window->frameGeometry().size() - m_window->size();
    const int toolbarHeight = m_window->findChild<QWidget *>("toolbar_"_qs)->height();
    QCOMPARE(m_window->size(), QSize(300 + 200 + 172, 200 + 200 + toolbarHeight) - frame);
    QVERIFY(toolbarHeight < 230 - 100);
    QCOMPARE(m_window->geometry().topLeft(), QPoint(150 - 100, 230 - 100 - toolbarHeight));
}

void Tst_TindraEditor::hiddenWindowIsFittedToASkippedCapture() {
    treat("/skip /point 150 230 /path "_qs + capture("a"_qs, {300, 200}));
    QVERIFY(!m_window->isVisible());
    const int toolbarHeight = m_window->findChild<QWidget *>("toolbar_"_qs)->height();
    QCOMPARE(m_window->size(), QSize(300 + 200 + 172, 200 + 200 + toolbarHeight));
    QCOMPARE(m_window->geometry().topLeft(), QPoint(150 - 100, 230 - 100 - toolbarHeight));
}

void Tst_TindraEditor::brokenCaptureBringsTheWindowOntoAScreenAndToTheFront() {
    m_window->move(-5000, -4000);
    bool isOnScreen = false;
    int broughtToFront = 0;
    ModalAnswers answers;
    answers.add([&](QWidget *dialog) {
        isOnScreen = m_window->screen()->availableGeometry().contains(m_window->frameGeometry());
        broughtToFront = m_session->platform->broughtToFront;
        ModalAnswers::press(dialog, "Ok"_qs);
    });
    treat("/path /nothing.png"_qs);
    QVERIFY(answers.isDone());
    QVERIFY(isOnScreen);
    QVERIFY(broughtToFront >= 2); // as it appears, and again where it stays
}

void Tst_TindraEditor::hugeCaptureFillsTheScreen() {
    treat("/point 5 5 /path "_qs + capture("a"_qs, {2000, 1500}));
    const QRect available = m_window->screen()->availableGeometry();
    QCOMPARE(m_window->frameGeometry(), available);
}

void Tst_TindraEditor::moveOfTheWindowPlacesWhatFloats() {
    addCapture("a"_qs);
    m_window->onClickHistoryHide();
    auto *button = view()->findChild<QWidget *>("historyShow_"_qs);
    QVERIFY(button && button->isVisible());
    const QPoint place = button->pos();
    button->move(place + QPoint(-20, 30));
    m_window->move(m_window->pos() + QPoint(15, 10));
    QTRY_COMPARE(button->pos(), place);
}

QTEST_MAIN(Tst_TindraEditor)
#include "tst_tindraeditor.moc"
