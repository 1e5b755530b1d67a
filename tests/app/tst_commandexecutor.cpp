#include "app/windowtest.h"
#include "platform/sharedimageblock.h"
#include "services/tracelog.h"

#include <QBuffer>
#include <QSharedMemory>

#include <cstring>

namespace {
constexpr int HideBlock = 500; // milliseconds
}

/// What each word of a line does to the window, and what the capture process hears of it.
class Tst_CommandExecutor : public WindowTest {
    Q_OBJECT
private slots:
    void init() { WindowTest::init(); }
    void cleanup() { WindowTest::cleanup(); }

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
};

void Tst_CommandExecutor::voidLinesDoNothing_data() {
    QTest::addColumn<QString>("line");
    QTest::newRow("empty") << "";
    QTest::newRow("no command") << "something else";
    QTest::newRow("path missing, hide before it") << "/hide /path";
    QTest::newRow("one number of the point, autosave before it") << "/autosave /skip /point 4";
    QTest::newRow("memory without a path") << "/memory 100";
}

void Tst_CommandExecutor::voidLinesDoNothing() {
    QFETCH(QString, line);
    treat(line);
    QVERIFY(messages().isEmpty());
    QVERIFY(m_session->usage.isEmpty());
    QCOMPARE(list()->count(), 0);
}

void Tst_CommandExecutor::showBringsUpAndTells() {
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

void Tst_CommandExecutor::showComesBeforeHide() {
    treat("/hide /show"_qs);
    QVERIFY(m_window->isVisible());
}

void Tst_CommandExecutor::commandsLeaveSpecialStates_data() {
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

void Tst_CommandExecutor::commandsLeaveSpecialStates() {
    QFETCH(int, state);
    QFETCH(QString, command);
    m_window->move(7, 9);
    m_window->setWindowState(Qt::WindowState(state));
    m_window->show();
    m_window->hide();
    QVERIFY(m_window->windowState() & state);
    treat(command == "/path"_qs ? "/path "_qs + capture("a"_qs) : command);
    QVERIFY(m_window->isVisible());
    QVERIFY(!(m_window->windowState() & (Qt::WindowMinimized | Qt::WindowMaximized | Qt::WindowFullScreen)));
    if (command == "/show"_qs) {
        const QRect available = m_window->screen()->availableGeometry();
        QVERIFY(available.contains(m_window->frameGeometry()));
        QVERIFY((m_window->frameGeometry().center() - available.center()).manhattanLength() <= 4);
    }
}

void Tst_CommandExecutor::hideTells_data() {
    QTest::addColumn<bool>("visible");
    QTest::addColumn<bool>("full");
    QTest::newRow("visible") << true << false;
    QTest::newRow("hidden already") << false << false;
    QTest::newRow("list full") << true << true;
    QTest::newRow("hidden already, list full") << false << true;
}

void Tst_CommandExecutor::hideTells() {
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

void Tst_CommandExecutor::hideIsBlockedAfterACapture() {
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

void Tst_CommandExecutor::blockedHideOfAHiddenWindowTellsNothing() {
    m_window->BlockHide(HideBlock);
    forgetMessages();
    treat("/hide"_qs);
    QVERIFY(m_window->isHideBlocked());
    QVERIFY(!m_window->isVisible());
    QCOMPARE(messages(), Messages{});
}

void Tst_CommandExecutor::hideBlockHoldsFromTheLatestCapture() {
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

void Tst_CommandExecutor::preferenceValueIsChanged_data() {
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("autoSave");
    QTest::addColumn<bool>("askForFile");
    QTest::newRow("auto save on") << "/updateprefvalue 48 1" << true << false;
    QTest::newRow("any number but 0 is on") << "/updateprefvalue 48 -7" << true << false;
    QTest::newRow("auto save off") << "/updateprefvalue 48 0" << false << true;
    QTest::newRow("no such item") << "/updateprefvalue 87 1" << false << true;
    QTest::newRow("another item") << "/updateprefvalue 3 1" << false << true;
}

void Tst_CommandExecutor::preferenceValueIsChanged() {
    QFETCH(QString, line);
    preferences()->SetBool(TindraPreferences::ShowFileDlgAfterCapture, true);
    treat(line);
    QTEST(preferences()->GetBool(TindraPreferences::AutoSave, false), "autoSave");
    QTEST(preferences()->GetBool(TindraPreferences::ShowFileDlgAfterCapture, false), "askForFile");
}

void Tst_CommandExecutor::numberBecomesASwitch() {
    QCOMPARE(preferences()->GetInt(TindraPreferences::LineWidth, -1), 3);
    treat("/updateprefvalue 67 8"_qs);
    QCOMPARE(preferences()->Type(TindraPreferences::LineWidth), int(Preferences::Bool));
    QVERIFY(preferences()->GetBool(TindraPreferences::LineWidth, false));
    QCOMPARE(preferences()->GetInt(TindraPreferences::LineWidth, -1), -1);
}

void Tst_CommandExecutor::namelessValueIsNotStored() {
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

void Tst_CommandExecutor::autoSaveFollowsTheCapture_data() {
    QTest::addColumn<QString>("options");
    QTest::addColumn<bool>("visible");
    QTest::addColumn<bool>("resultShown");
    QTest::addColumn<bool>("told");
    QTest::newRow("shown") << "/autosave" << true << true << false;
    QTest::newRow("silent") << "/autosave /skip" << false << false << true;
    QTest::newRow("auto save goes before save") << "/save /autosave" << true << true << false;
}

void Tst_CommandExecutor::autoSaveFollowsTheCapture() {
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

void Tst_CommandExecutor::silentSaveIsToldWhenItIsDone() {
    int saved = -1;
    m_session->platform->onPost = [&](quint32 message) {
        if (message == 0x870)
            saved = QDir(m_target->path()).entryList(QDir::Files).size();
    };
    treat("/autosave /skip /path "_qs + capture("a"_qs));
    QCOMPARE(saved, 1);
}

void Tst_CommandExecutor::captureInMemoryIsFetched() {
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

void Tst_CommandExecutor::memoryThatCannotBeReadIsReported_data() {
    QTest::addColumn<bool>("blockThere");
    QTest::addColumn<int>("size");
    QTest::newRow("no block") << false << 10;
    QTest::newRow("larger than the block") << true << 1000;
    QTest::newRow("no picture in it") << true << 100;
}

void Tst_CommandExecutor::memoryThatCannotBeReadIsReported() {
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

void Tst_CommandExecutor::commandsAreTraced_data() {
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

void Tst_CommandExecutor::commandsAreTraced() {
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

void Tst_CommandExecutor::saveWordsSayWhichSaveIsMeant_data() {
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("autoSave");
    QTest::addColumn<bool>("showResult");
    QTest::newRow("save") << "/save" << false << true;
    QTest::newRow("skip is for the other one") << "/save /skip" << false << true;
    QTest::newRow("autosave") << "/autosave" << true << true;
    QTest::newRow("autosave comes first") << "/save /autosave" << true << true;
    QTest::newRow("silent") << "/skip /autosave" << true << false;
}

void Tst_CommandExecutor::saveWordsSayWhichSaveIsMeant() {
    QFETCH(QString, line);
    QFETCH(bool, autoSave);
    QFETCH(bool, showResult);
    QSignalSpy saves(m_window.get(), &TindraEditor::saveCurrentImage);
    treat(line);
    QCOMPARE(QList<QList<QVariant>>(saves), (QList<QList<QVariant>>{{autoSave, showResult}}));
}

void Tst_CommandExecutor::saveAsksForAName() {
    addCapture("a"_qs);
    ModalAnswers answers;
    answers.addClose();
    treat("/save"_qs);
    QVERIFY(answers.isDone());
    QVERIFY(!list()->rowItem(0)->editor()->isSaved());
}

QTEST_MAIN(Tst_CommandExecutor)
#include "tst_commandexecutor.moc"
