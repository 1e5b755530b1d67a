#include "print/printpreviewdialog.h"
#include "print/printservertest.h"
#include "support/nothreads.h"

#include <QComboBox>
#include <QDir>
#include <QPushButton>

#include <atomic>
#include <chrono>
#include <thread>

/// A server, or a queue of it, that is not there, goes away or does not answer.
class Tst_PrintServerTrouble : public PrintServerTest {
    Q_OBJECT
private slots:
    void initTestCase() { PrintServerTest::initTestCase(); }
    void init() { PrintServerTest::init(); }
    void cleanup() { PrintServerTest::cleanup(); }

    void refusedJob();
    void queueThatIsNotThere();
    void queueThatDisappears();
    void queueThatDisappearsUnderTheDialog();
    void serverThatIsGone();
    void noServer();
    void noThreadForTheServer();
    void silentServerHasNoPrintersUntilItAnswers();
    void lateAnswersAreNotForTheNextWhoAsks();
    void lateFailureIsNotForTheNextWhoAsks();
    void whoAsksAgainJoinsTheQuestion();
    void presetsAreThoseOfTheTimeOfAsking();
    void silentServerDoesNotFreezeTheDialog();
    void silentServerPrintsLater();
    void endOfTheProgramWaitsForAJob();
    void endOfTheProgramWaitsNotForEver();
};

void Tst_PrintServerTrouble::refusedJob() {
    const auto closed = printer("Closed"_qs);
    QVERIFY(!closed->paperSize().isEmpty());
    QVERIFY(!closed->print({pageOf(quarters({20, 20}), {0, 0, 96, 96})}));
    QVERIFY(m_server->isIdleFor(500));
}

void Tst_PrintServerTrouble::queueThatIsNotThere() {
    const auto gone = printer("Cellar"_qs);
    QVERIFY(!gone->paperSize().isValid());
    QVERIFY(!gone->print({pageOf(quarters({20, 20}), {0, 0, 96, 96})}));
}

void Tst_PrintServerTrouble::queueThatDisappears() {
    const auto attic = printer("Attic"_qs);
    QVERIFY(m_server->removeQueue("Attic"));
    QVERIFY(!attic->print({pageOf(quarters({20, 20}), {0, 0, 96, 96})}));
    QCOMPARE(names(), "Closed Office Plain Preset"_qs);
}

void Tst_PrintServerTrouble::queueThatDisappearsUnderTheDialog() {
    PrintPreviewDialog dialog;
    dialog.addImage(quarters({96, 96}));
    auto *printers = dialog.findChild<QComboBox *>("printers_"_qs);
    QTRY_COMPARE(printers->count(), 5);
    printers->setCurrentText("Attic"_qs);
    QTRY_VERIFY(dialog.findChild<QComboBox *>("pageSizes_"_qs)->count() > 20);
    QVERIFY(m_server->removeQueue("Attic"));
    auto *print = dialog.findChild<QPushButton *>("print_"_qs);
    QVERIFY(print->isEnabled());
    print->click();
    QCOMPARE(dialog.result(), 1);
    QVERIFY(m_server->isIdleFor(500));
}

void Tst_PrintServerTrouble::serverThatIsGone() {
    const auto office = printer();
    m_server->stop();
    QElapsedTimer time;
    time.start();
    QVERIFY(!office->print({pageOf(quarters({20, 20}), {0, 0, 96, 96})}));
    QCOMPARE(names(), QString());
    QVERIFY2(time.elapsed() < Frozen, qPrintable(QString::number(time.elapsed())));
}

void Tst_PrintServerTrouble::noServer() {
    qputenv("CUPS_SERVER", "/nowhere/at/all");
    QElapsedTimer time;
    time.start();
    QCOMPARE(names(), QString());
    QCOMPARE(NativePrinter::defaultPrinterName(), QString());
    QVERIFY(!printer()->paperSize().isValid());
    QVERIFY2(time.elapsed() < Frozen, qPrintable(QString::number(time.elapsed())));
}

void Tst_PrintServerTrouble::noThreadForTheServer() {
    const auto office = opened("Office"_qs);
    QVERIFY(office);
    const auto job = office->startJob(office->defaultMode(), "Tindra"_qs);
    QVERIFY(job);
    {
        const NoThreads none;
        job->end();
        QVERIFY(!office->startJob(office->defaultMode(), "Tindra"_qs));
        QVERIFY(printers().names().isEmpty());
        QVERIFY(!printers().open("Plain"_qs));
        QCOMPARE(printers().lateNames(), LateAnswer::None);
        QCOMPARE(printers().latePrinter("Plain"_qs), LateAnswer::None);
    }
    // Who asks once there are threads again gets an answer.
    QCOMPARE(names(), "Attic Closed Office Plain Preset"_qs);
    QVERIFY(opened("Plain"_qs));
}

void Tst_PrintServerTrouble::silentServerHasNoPrintersUntilItAnswers() {
    m_server->setSilent(true);
    QElapsedTimer time;
    time.start();
    PrintPreviewDialog dialog;
    dialog.addImage(quarters({96, 96}));
    QVERIFY2(time.elapsed() < Frozen, qPrintable(QString::number(time.elapsed())));
    auto *list = dialog.findChild<QComboBox *>("printers_"_qs);
    auto *print = dialog.findChild<QPushButton *>("print_"_qs);
    QVERIFY(!print->isEnabled());
    QCOMPARE(list->count(), 0);
    m_server->setSilent(false);
    QTRY_COMPARE_WITH_TIMEOUT(list->count(), 5, Frozen);
    QCOMPARE(list->currentText(), "Office"_qs);
    QTRY_VERIFY_WITH_TIMEOUT(dialog.findChild<QComboBox *>("pageSizes_"_qs)->count() > 20, Frozen);
    print->click();
    QCOMPARE(PrintServer::pageCount(m_server->next().pdf), 1);
}

void Tst_PrintServerTrouble::lateAnswersAreNotForTheNextWhoAsks() {
    m_server->setSilent(true);
    QVERIFY(printers().names().isEmpty());
    QVERIFY(!printers().open("Preset"_qs));
    m_server->setSilent(false);
    QTRY_COMPARE_WITH_TIMEOUT(printers().lateNames(), LateAnswer::Arrived, Frozen);
    QTRY_COMPARE_WITH_TIMEOUT(printers().latePrinter("Preset"_qs), LateAnswer::Arrived, Frozen);
    QVERIFY(m_server->setDefault("Preset", "copies", "3"));
    QVERIFY(m_server->removeQueue("Attic"));
    QCOMPARE(names(), "Closed Office Plain Preset"_qs);
    const auto queue = opened("Preset"_qs);
    QVERIFY(queue);
    QCOMPARE(queue->defaultMode().copies, 3);
    QCOMPARE(printers().lateNames(), LateAnswer::None);
    QCOMPARE(printers().latePrinter("Preset"_qs), LateAnswer::None);
}

void Tst_PrintServerTrouble::lateFailureIsNotForTheNextWhoAsks() {
    m_server->setSilent(true);
    QVERIFY(!printers().open("Office"_qs));
    QCOMPARE(printers().latePrinter("Office"_qs), LateAnswer::Awaited);
    m_server->kill();
    QTRY_COMPARE_WITH_TIMEOUT(printers().latePrinter("Office"_qs), LateAnswer::Arrived, Frozen);
    m_server.reset();
    m_server = std::make_unique<PrintServer>();
    QVERIFY2(m_server->isRunning(), m_server->log().constData());
    QVERIFY(opened("Office"_qs));
}

void Tst_PrintServerTrouble::whoAsksAgainJoinsTheQuestion() {
    const auto threads = [] { return QDir("/proc/self/task"_qs).entryList(QDir::Dirs).size(); };
    m_server->setSilent(true);
    QVERIFY(printers().names().isEmpty());
    QVERIFY(!printers().open("Office"_qs));
    const int before = threads();
    QVERIFY(printers().names().isEmpty());
    QVERIFY(!printers().open("Office"_qs));
    QCOMPARE(threads(), before);
}

void Tst_PrintServerTrouble::presetsAreThoseOfTheTimeOfAsking() {
    m_server->setSilent(true);
    writePresets("Dest Office copies=4\n");
    QVERIFY(!printers().open("Office"_qs));
    removePresets();
    m_server->setSilent(false);
    QTRY_COMPARE_WITH_TIMEOUT(printers().latePrinter("Office"_qs), LateAnswer::Arrived, Frozen);
    const auto queue = printers().takeLatePrinter("Office"_qs);
    QVERIFY(queue);
    QCOMPARE(queue->defaultMode().copies, 4);
}

void Tst_PrintServerTrouble::silentServerDoesNotFreezeTheDialog() {
    PrintPreviewDialog dialog;
    dialog.addImage(quarters({96, 96}));
    auto *printers = dialog.findChild<QComboBox *>("printers_"_qs);
    QTRY_COMPARE(printers->count(), 5);
    m_server->setSilent(true);
    QElapsedTimer time;
    time.start();
    printers->setCurrentText("Attic"_qs);
    QVERIFY2(time.elapsed() < Frozen, qPrintable(QString::number(time.elapsed())));
    QCOMPARE(dialog.findChild<QComboBox *>("pageSizes_"_qs)->count(), 0);
    dialog.show();
    dialog.findChild<QPushButton *>("print_"_qs)->click();
    QVERIFY(dialog.isVisible());
    m_server->setSilent(false);
    // The answer comes late, but it comes.
    QTRY_VERIFY_WITH_TIMEOUT(dialog.findChild<QComboBox *>("pageSizes_"_qs)->count() > 20, Frozen);
    QVERIFY(dialog.findChild<QPushButton *>("print_"_qs)->isEnabled());
    printers->setCurrentText("Office"_qs);
    QTRY_VERIFY(dialog.findChild<QComboBox *>("pageSizes_"_qs)->count() > 20);
}

void Tst_PrintServerTrouble::silentServerPrintsLater() {
    const auto office = printer();
    m_server->setSilent(true);
    QElapsedTimer time;
    time.start();
    QVERIFY(office->print({pageOf(quarters({20, 20}), {0, 0, 96, 96})}));
    QVERIFY2(time.elapsed() < Frozen, qPrintable(QString::number(time.elapsed())));
    QVERIFY(m_server->isIdleFor(200));
    m_server->setSilent(false);
    QCOMPARE(PrintServer::pageCount(m_server->next().pdf), 1);
}

void Tst_PrintServerTrouble::endOfTheProgramWaitsForAJob() {
    auto office = printer();
    m_server->setSilent(true);
    QVERIFY(office->print({pageOf(quarters({20, 20}), {0, 0, 96, 96})}));
    office.reset();
    std::atomic<bool> answers{false};
    std::thread server([&] {
        std::this_thread::sleep_for(std::chrono::seconds(1));
        answers = true;
        m_server->setSilent(false);
    });
    Platform::setInstance(nullptr);
    const bool hasWaited = answers;
    server.join();
    QVERIFY(hasWaited);
    QCOMPARE(PrintServer::pageCount(m_server->next().pdf), 1);
}

void Tst_PrintServerTrouble::endOfTheProgramWaitsNotForEver() {
    auto office = printer();
    m_server->setSilent(true);
    QVERIFY(office->print({pageOf(quarters({20, 20}), {0, 0, 96, 96})}));
    office.reset();
    QElapsedTimer time;
    time.start();
    Platform::setInstance(nullptr);
    QVERIFY2(time.elapsed() < 2 * Frozen, qPrintable(QString::number(time.elapsed())));
}

QTEST_MAIN(Tst_PrintServerTrouble)
#include "tst_printservertrouble.moc"
