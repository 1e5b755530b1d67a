#include "app/windowtest.h"
#include "platform/sharedimageblock.h"
#include "services/tracelog.h"
#include "support/tracedby.h"

#include <QBuffer>
#include <QSharedMemory>

#include <cstring>

namespace {
constexpr int HideBlock = 500; // milliseconds
}

/// The window as commands and keys drive it, and what the capture process hears of it.
class Tst_TindraEditor : public WindowTest {
    Q_OBJECT
private slots:
    void init() { WindowTest::init(); }
    void cleanup() { WindowTest::cleanup(); }

    // Structure
    void beginsHiddenAndEmpty();
    void widgetsCarryTheirNames();
    void sizesAreThoseOfTheDesign();
    void captureIsLogged();

    // Commands
    void voidLinesDoNothing_data();
    void voidLinesDoNothing();
    void showBringsUpAndTells();
    void showComesBeforeHide();
    void commandsLeaveSpecialStates_data();
    void commandsLeaveSpecialStates();
    void hideTells_data();
    void hideTells();
    void hideIsBlockedAfterACapture();
    void blockedHideOfAHiddenWindowTellsNothing();
    void hideBlockHoldsFromTheLatestCapture();
    void preferenceValueIsChanged_data();
    void preferenceValueIsChanged();
    void numberBecomesASwitch();
    void namelessValueIsNotStored();
    void captureIsAddedShownAndTold();
    void skippedCaptureStaysHidden();
    void secondCaptureLeavesTheWindowAlone();
    void autoSaveFollowsTheCapture_data();
    void autoSaveFollowsTheCapture();
    void silentSaveIsToldWhenItIsDone();
    void captureInMemoryIsFetched();
    void memoryThatCannotBeReadIsReported_data();
    void memoryThatCannotBeReadIsReported();
    void commandsAreTraced_data();
    void commandsAreTraced();
    void saveWordsSayWhichSaveIsMeant_data();
    void saveWordsSayWhichSaveIsMeant();
    void saveAsksForAName();
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

    // Keys
    void keysAct_data();
    void keysAct();
    void openItemTakesEscapeAndReturn_data();
    void openItemTakesEscapeAndReturn();
    void arrowsWalkTheRows();
    void arrowsRest_data();
    void arrowsRest();
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

void Tst_TindraEditor::captureIsLogged() {
    const QByteArray log = tracedBy([this] { addCapture("a"_qs); });
    QVERIFY(log.contains(" AddNewPixmap : show " + QFile::encodeName(capture("a"_qs)) + "\r\n"));
}

void Tst_TindraEditor::voidLinesDoNothing_data() {
    QTest::addColumn<QString>("line");
    QTest::newRow("empty") << "";
    QTest::newRow("no command") << "something else";
    QTest::newRow("path missing, hide before it") << "/hide /path";
    QTest::newRow("one number of the point, autosave before it") << "/autosave /skip /point 4";
    QTest::newRow("memory without a path") << "/memory 100";
}

void Tst_TindraEditor::voidLinesDoNothing() {
    QFETCH(QString, line);
    treat(line);
    QVERIFY(messages().isEmpty());
    QVERIFY(m_session->usage.isEmpty());
    QCOMPARE(list()->count(), 0);
}

void Tst_TindraEditor::showBringsUpAndTells() {
    treat("/show"_qs);
    QVERIFY(m_window->isVisible());
    QCOMPARE(messages(), (Messages{0x86E, 0x869, 0x86C}));
    QVERIFY(m_session->platform->broughtToFront > 0);
    const QRect available = m_window->screen()->availableGeometry();
    QVERIFY(available.contains(m_window->frameGeometry()));
    QVERIFY((m_window->frameGeometry().center() - available.center()).manhattanLength() <= 4);

    forgetMessages();
    m_session->platform->broughtToFront = 0;
    treat("/show"_qs);
    QCOMPARE(messages(), (Messages{0x869, 0x86C}));
    QCOMPARE(m_session->platform->broughtToFront, 1);
}

void Tst_TindraEditor::showComesBeforeHide() {
    treat("/hide /show"_qs);
    QVERIFY(m_window->isVisible());
}

void Tst_TindraEditor::commandsLeaveSpecialStates_data() {
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("command");
    const QPair<const char *, Qt::WindowState> states[] = {{"minimised", Qt::WindowMinimized},
                                                           {"maximised", Qt::WindowMaximized},
                                                           {"full screen", Qt::WindowFullScreen}};
    for (const auto &state : states) {
        QTest::addRow("%s, show", state.first) << int(state.second) << "/show";
        QTest::addRow("%s, capture", state.first) << int(state.second) << "/path";
    }
}

void Tst_TindraEditor::commandsLeaveSpecialStates() {
    QFETCH(int, state);
    QFETCH(QString, command);
    m_window->setWindowState(Qt::WindowState(state));
    m_window->show();
    m_window->hide();
    QVERIFY(m_window->windowState() & state);
    treat(command == "/path"_qs ? "/path "_qs + capture("a"_qs) : command);
    QVERIFY(m_window->isVisible());
    QVERIFY(!(m_window->windowState() & (Qt::WindowMinimized | Qt::WindowMaximized | Qt::WindowFullScreen)));
}

void Tst_TindraEditor::hideTells_data() {
    QTest::addColumn<bool>("visible");
    QTest::addColumn<bool>("full");
    QTest::newRow("visible") << true << false;
    QTest::newRow("hidden already") << false << false;
    QTest::newRow("list full") << true << true;
    QTest::newRow("hidden already, list full") << false << true;
}

void Tst_TindraEditor::hideTells() {
    QFETCH(bool, visible);
    QFETCH(bool, full);
    for (int i = 0; full && i < 100; ++i)
        m_window->AddNewPixmap(Session::captureInMemory("m%1"_qs.arg(i)), {}, true);
    if (visible)
        m_window->show();
    forgetMessages();
    treat("/hide"_qs);
    QVERIFY(!m_window->isVisible());
    QCOMPARE(m_session->platform->posted, (QVector<FakePlatform::Event>{{0x86D, quint64(full ? 1 : 0), 0}}));
}

void Tst_TindraEditor::hideIsBlockedAfterACapture() {
    QElapsedTimer timer;
    timer.start();
    addCapture("a"_qs);
    treat("/hide"_qs);
    QVERIFY(m_window->isVisible());
    QTRY_VERIFY_WITH_TIMEOUT(!m_window->isHideBlocked(), 4 * HideBlock);
    QVERIFY2(timer.elapsed() >= HideBlock - 100, qPrintable(QString::number(timer.elapsed())));
    treat("/hide"_qs);
    QVERIFY(!m_window->isVisible());
}

void Tst_TindraEditor::blockedHideOfAHiddenWindowTellsNothing() {
    m_window->BlockHide(HideBlock);
    forgetMessages();
    treat("/hide"_qs);
    QVERIFY(m_window->isHideBlocked());
    QVERIFY(!m_window->isVisible());
    QCOMPARE(messages(), Messages{});
}

void Tst_TindraEditor::hideBlockHoldsFromTheLatestCapture() {
    m_window->BlockHide(HideBlock);
    QTest::qWait(HideBlock * 3 / 5);
    QElapsedTimer timer;
    timer.start();
    m_window->BlockHide(HideBlock);
    // A shorter one does not cut it short.
    m_window->BlockHide(1);
    QTRY_VERIFY_WITH_TIMEOUT(!m_window->isHideBlocked(), 4 * HideBlock);
    QVERIFY2(timer.elapsed() >= HideBlock - 100, qPrintable(QString::number(timer.elapsed())));
}

void Tst_TindraEditor::preferenceValueIsChanged_data() {
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("autoSave");
    QTest::addColumn<bool>("askForFile");
    QTest::newRow("auto save on") << "/updateprefvalue 48 1" << true << false;
    QTest::newRow("any number but 0 is on") << "/updateprefvalue 48 -7" << true << false;
    QTest::newRow("auto save off") << "/updateprefvalue 48 0" << false << true;
    QTest::newRow("no such item") << "/updateprefvalue 87 1" << false << true;
    QTest::newRow("another item") << "/updateprefvalue 3 1" << false << true;
}

void Tst_TindraEditor::preferenceValueIsChanged() {
    QFETCH(QString, line);
    preferences()->SetBool(TindraPreferences::ShowFileDlgAfterCapture, true);
    treat(line);
    QTEST(preferences()->GetBool(TindraPreferences::AutoSave, false), "autoSave");
    QTEST(preferences()->GetBool(TindraPreferences::ShowFileDlgAfterCapture, false), "askForFile");
}

void Tst_TindraEditor::numberBecomesASwitch() {
    QCOMPARE(preferences()->GetInt(TindraPreferences::LineWidth, -1), 3);
    treat("/updateprefvalue 67 8"_qs);
    QCOMPARE(preferences()->Type(TindraPreferences::LineWidth), int(Preferences::Bool));
    QVERIFY(preferences()->GetBool(TindraPreferences::LineWidth, false));
    QCOMPARE(preferences()->GetInt(TindraPreferences::LineWidth, -1), -1);
}

void Tst_TindraEditor::namelessValueIsNotStored() {
    constexpr int nameless = 14;
    const auto stored = [] {
        QFile file(ConfigurationLocation("SOFTWARE\\Norvane\\Tindra\\Config"_qs).fileName());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    preferences()->SaveAll();
    const QByteArray before = stored();
    QVERIFY(before.contains("LineWidth"));
    treat("/updateprefvalue 14 1"_qs);
    QVERIFY(preferences()->GetBool(nameless, false));
    preferences()->SaveAll();
    QCOMPARE(stored(), before);
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

void Tst_TindraEditor::autoSaveFollowsTheCapture_data() {
    QTest::addColumn<QString>("options");
    QTest::addColumn<bool>("visible");
    QTest::addColumn<bool>("resultShown");
    QTest::addColumn<bool>("told");
    QTest::newRow("shown") << "/autosave" << true << true << false;
    QTest::newRow("silent") << "/autosave /skip" << false << false << true;
    QTest::newRow("auto save goes before save") << "/save /autosave" << true << true << false;
}

void Tst_TindraEditor::autoSaveFollowsTheCapture() {
    QFETCH(QString, options);
    QFETCH(bool, resultShown);
    ModalAnswers answers;
    if (resultShown)
        answers.addPress("Close"_qs);
    treat(options + " /path "_qs + capture("a"_qs));
    QVERIFY(answers.isDone());
    QCOMPARE(QDir(m_target->path()).entryList(QDir::Files).size(), 1);
    QVERIFY(list()->rowItem(0)->editor()->isSaved());
    QTEST(m_window->isVisible(), "visible");
    QTEST(messages().contains(0x870), "told");
}

void Tst_TindraEditor::silentSaveIsToldWhenItIsDone() {
    int saved = -1;
    m_session->platform->onPost = [&](quint32 message) {
        if (message == 0x870)
            saved = QDir(m_target->path()).entryList(QDir::Files).size();
    };
    treat("/autosave /skip /path "_qs + capture("a"_qs));
    QCOMPARE(saved, 1);
}

void Tst_TindraEditor::captureInMemoryIsFetched() {
    QImage picture(50, 20, QImage::Format_RGB32);
    picture.fill(Qt::magenta);
    QBuffer bytes;
    QVERIFY(bytes.open(QIODevice::WriteOnly) && picture.save(&bytes, "PNG"));
    QSharedMemory block;
    block.setNativeKey(platform::sharedImageBlock().nativeKey);
    QVERIFY(block.create(int(bytes.size())));
    std::memcpy(block.data(), bytes.data().constData(), std::size_t(bytes.size()));
    treat("/skip /path key /memory %1"_qs.arg(bytes.size()));
    QCOMPARE(list()->count(), 1);
    QCOMPARE(list()->rowItem(0)->editor()->imageKey(), "key"_qs);
    QCOMPARE(ImageProvider::instance()->pixmap("key"_qs).toImage().convertToFormat(QImage::Format_RGB32),
             picture);
}

void Tst_TindraEditor::memoryThatCannotBeReadIsReported_data() {
    QTest::addColumn<bool>("blockThere");
    QTest::addColumn<int>("size");
    QTest::newRow("no block") << false << 10;
    QTest::newRow("larger than the block") << true << 1000;
    QTest::newRow("no picture in it") << true << 100;
}

void Tst_TindraEditor::memoryThatCannotBeReadIsReported() {
    QFETCH(bool, blockThere);
    QFETCH(int, size);
    QSharedMemory block;
    block.setNativeKey(platform::sharedImageBlock().nativeKey);
    QVERIFY(!blockThere || block.create(100));
    ModalAnswers answers;
    answers.addPress("Ok"_qs);
    treat("/path key /memory %1"_qs.arg(size));
    QVERIFY(answers.isDone());
    QCOMPARE(answers.texts(), QStringList{"Failed to capture image."_qs});
    QCOMPARE(list()->count(), 0);
}

void Tst_TindraEditor::commandsAreTraced_data() {
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("logged");
    QTest::newRow("line") << "/nothing"
                          << "treatCommand : tindra /nothing";
    QTest::newRow("show") << "/show"
                          << "treatCommand : show";
    QTest::newRow("hide") << "/hide"
                          << "treatCommand : hide";
    QTest::newRow("block hide") << "/hide"
                                << "treatCommand : block hide";
}

void Tst_TindraEditor::commandsAreTraced() {
    QFETCH(QString, line);
    QFETCH(QString, logged);
    for (const int level : {1, 2}) {
        QFile::remove(TraceLog::filePath());
        if (logged.endsWith("block hide"_qs))
            m_window->BlockHide(HideBlock);
        setTraceLevel(level);
        treat(line);
        setTraceLevel(TraceLog::Off);
        QFile log(TraceLog::filePath());
        const QString text = log.open(QIODevice::ReadOnly) ? QString::fromUtf8(log.readAll()) : QString();
        QVERIFY2(text.contains(logged + QLatin1Char('\r')) == (level == 2), qPrintable(text));
    }
}

void Tst_TindraEditor::saveWordsSayWhichSaveIsMeant_data() {
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("autoSave");
    QTest::addColumn<bool>("showResult");
    QTest::newRow("save") << "/save" << false << true;
    QTest::newRow("skip is for the other one") << "/save /skip" << false << true;
    QTest::newRow("autosave") << "/autosave" << true << true;
    QTest::newRow("autosave comes first") << "/save /autosave" << true << true;
    QTest::newRow("silent") << "/skip /autosave" << true << false;
}

void Tst_TindraEditor::saveWordsSayWhichSaveIsMeant() {
    QFETCH(QString, line);
    QFETCH(bool, autoSave);
    QFETCH(bool, showResult);
    QSignalSpy saves(m_window.get(), &TindraEditor::saveCurrentImage);
    treat(line);
    QCOMPARE(QList<QList<QVariant>>(saves), (QList<QList<QVariant>>{{autoSave, showResult}}));
}

void Tst_TindraEditor::saveAsksForAName() {
    addCapture("a"_qs);
    ModalAnswers answers;
    answers.addClose();
    treat("/save"_qs);
    QVERIFY(answers.isDone());
    QVERIFY(!list()->rowItem(0)->editor()->isSaved());
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

void Tst_TindraEditor::keysAct_data() {
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("control");
    QTest::addColumn<QStringList>("usage");
    QTest::addColumn<QVector<quint32>>("told");
    QTest::addColumn<int>("rows");
    QTest::newRow("new capture") << int(Qt::Key_N) << true << QStringList{"cap_302_06"_qs} << Messages{0x868}
                                 << 1;
    QTest::newRow("save") << int(Qt::Key_S) << true << QStringList{"cap_302_04"_qs, "cap_30_01"_qs}
                          << Messages{} << 1;
    QTest::newRow("delete") << int(Qt::Key_Delete) << false << QStringList{"cap_302_05"_qs} << Messages{}
                            << 0;
    QTest::newRow("escape hides") << int(Qt::Key_Escape) << false << QStringList{} << Messages{0x86D, 0x86B}
                                  << 1;
    QTest::newRow("return does nothing") << int(Qt::Key_Return) << false << QStringList{} << Messages{} << 1;
}

void Tst_TindraEditor::keysAct() {
    QFETCH(int, key);
    QFETCH(bool, control);
    preferences()->SetBool(TindraPreferences::NotifyDeleteHistory, false);
    addCapture("a"_qs);
    activate();
    m_session->usage.clear();
    forgetMessages();
    ModalAnswers answers;
    if (key == Qt::Key_S)
        answers.addClose();
    QTest::keyClick(m_window.get(), Qt::Key(key), control ? Qt::ControlModifier : Qt::NoModifier);
    QVERIFY(answers.isDone());
    QTEST(m_session->usage, "usage");
    QTEST(messages(), "told");
    QTEST(list()->count(), "rows");
}

void Tst_TindraEditor::openItemTakesEscapeAndReturn_data() {
    QTest::addColumn<bool>("crop");
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("entry");
    QTest::newRow("escape, crop") << true << int(Qt::Key_Escape) << "crop finish 0";
    QTest::newRow("return, crop") << true << int(Qt::Key_Return) << "crop finish 1";
    QTest::newRow("escape, text") << false << int(Qt::Key_Escape) << "text finish 0";
    QTest::newRow("return, text") << false << int(Qt::Key_Return) << "text finish 1";
}

void Tst_TindraEditor::openItemTakesEscapeAndReturn() {
    QFETCH(bool, crop);
    QFETCH(int, key);
    QFETCH(QString, entry);
    m_window->show();
    TestEditor *editor = addFake("a"_qs);
    activate();
    if (crop) {
        m_window->onClickCrop();
        editor->crop->frame = QRect(5, 5, 10, 10);
    } else {
        m_window->onClickText();
        sendMouse(QEvent::MouseButtonPress, {5, 5});
        sendMouse(QEvent::MouseButtonRelease, {5, 5});
    }
    QCOMPARE(editor->shapeType(), crop ? Editor::Crop : Editor::TextEditing);
    QTest::keyClick(m_window.get(), Qt::Key(key));
    QCOMPARE(editor->log.filter("finish"_qs), QStringList{entry});
    QVERIFY(editor->shapeType() != Editor::Crop && editor->shapeType() != Editor::TextEditing);
    QVERIFY(m_window->isVisible());
}

void Tst_TindraEditor::arrowsWalkTheRows() {
    addCapture("a"_qs);
    addCapture("b"_qs);
    activate();
    QCOMPARE(list()->currentRow(), 0);
    QTest::keyClick(m_window.get(), Qt::Key_Down);
    QCOMPARE(list()->currentRow(), 1);
    QTest::keyClick(m_window.get(), Qt::Key_Down);
    QCOMPARE(list()->currentRow(), 1);
    QTest::keyClick(m_window.get(), Qt::Key_Up);
    QCOMPARE(list()->currentRow(), 0);
}

void Tst_TindraEditor::arrowsRest_data() {
    QTest::addColumn<QString>("state");
    QTest::addColumn<int>("key");
    for (const char *state : {"crop", "text", "nothing selected"}) {
        QTest::addRow("up, %s", state) << QString::fromLatin1(state) << int(Qt::Key_Up);
        QTest::addRow("down, %s", state) << QString::fromLatin1(state) << int(Qt::Key_Down);
    }
}

void Tst_TindraEditor::arrowsRest() {
    QFETCH(QString, state);
    QFETCH(int, key);
    m_window->show();
    addFake("a"_qs);
    addFake("b"_qs);
    addFake("c"_qs);
    list()->setCurrentRow(1);
    activate();
    if (state == "crop"_qs) {
        m_window->onClickCrop();
    } else if (state == "text"_qs) {
        m_window->onClickText();
        sendMouse(QEvent::MouseButtonPress, {5, 5});
        sendMouse(QEvent::MouseButtonRelease, {5, 5});
        QCOMPARE(scene()->shapeType(), Editor::TextEditing);
    } else {
        list()->clearSelection();
        QVERIFY(!scene());
    }
    const Editor *before = scene();
    QTest::keyClick(m_window.get(), Qt::Key(key));
    QCOMPARE(list()->currentRow(), 1);
    QCOMPARE(scene(), before);
}

QTEST_MAIN(Tst_TindraEditor)
#include "tst_tindraeditor.moc"
