#include "services/statisticslibrary.h"
#include "services/usagestatistics.h"
#include "support/literals.h"
#include "support/substitutelibraries.h"

#include <QtTest>

#include <thread>
#include <vector>

class Tst_StatisticsLibrary : public QObject {
    Q_OBJECT
private slots:
    void init() { m_libraries.reset(new SubstituteLibraries); }
    void cleanup();
    void isNamedTheProduct();
    void takesEachEventInOrder();
    void tellsWhetherItTookTheEvent();
    void endsOnce();
    void canBeginAnew();
    void refusedStartTakesNothing();
    void missingLibraryChangesNothing_data();
    void missingLibraryChangesNothing();
    void missingFunctionsAreDoneWithout();
    void otherThreadsComeOneAtATime();

private:
    bool start(const QString &name = "Ostler"_qs) {
        return StatisticsLibrary::start(m_libraries->add(name), "Tindra"_qs);
    }
    QScopedPointer<SubstituteLibraries> m_libraries;
};

void Tst_StatisticsLibrary::cleanup() {
    StatisticsLibrary::end();
    qunsetenv("TINDRA_TEST_REFUSE");
    m_libraries.reset();
}

void Tst_StatisticsLibrary::isNamedTheProduct() {
    QVERIFY(!StatisticsLibrary::isStarted());
    QVERIFY(start());
    QVERIFY(StatisticsLibrary::isStarted());
    QCOMPARE(m_libraries->calls(), QStringList{"Ostler_Initialize Tindra"_qs});
}

void Tst_StatisticsLibrary::takesEachEventInOrder() {
    recordUsage("cap_early");
    start();
    recordUsage("cap_30_02");
    recordUsage("capt_1_052");
    QCOMPARE(m_libraries->calls(),
             (QStringList{"Ostler_Initialize Tindra"_qs, "Ostler_ExecuteAction cap_30_02"_qs,
                          "Ostler_ExecuteAction capt_1_052"_qs}));
}

void Tst_StatisticsLibrary::tellsWhetherItTookTheEvent() {
    QVERIFY(!StatisticsLibrary::send("cap_30_02"_qs));
    start();
    QVERIFY(StatisticsLibrary::send("cap_30_02"_qs));
    QVERIFY(!StatisticsLibrary::send("refused"_qs));
}

void Tst_StatisticsLibrary::endsOnce() {
    start();
    StatisticsLibrary::end();
    StatisticsLibrary::end();
    QVERIFY(!StatisticsLibrary::isStarted());
    QVERIFY(!StatisticsLibrary::send("cap_30_02"_qs));
    recordUsage("cap_30_02");
    QCOMPARE(m_libraries->calls(), (QStringList{"Ostler_Initialize Tindra"_qs, "Ostler_Finalize"_qs}));
}

void Tst_StatisticsLibrary::canBeginAnew() {
    start();
    QVERIFY(start());
    StatisticsLibrary::end();
    QVERIFY(start());
    recordUsage("cap_30_02");
    QCOMPARE(m_libraries->calls(),
             (QStringList{"Ostler_Initialize Tindra"_qs, "Ostler_Finalize"_qs, "Ostler_Initialize Tindra"_qs,
                          "Ostler_ExecuteAction cap_30_02"_qs}));
}

void Tst_StatisticsLibrary::refusedStartTakesNothing() {
    qputenv("TINDRA_TEST_REFUSE", "1");
    QVERIFY(!start());
    QVERIFY(!StatisticsLibrary::isStarted());
    recordUsage("cap_30_02");
    StatisticsLibrary::end();
    QCOMPARE(m_libraries->calls(), QStringList{"Ostler_Initialize Tindra"_qs});
}

void Tst_StatisticsLibrary::missingLibraryChangesNothing_data() {
    QTest::addColumn<QString>("library");
    QTest::newRow("not there") << QString();
    QTest::newRow("another library") << "works";
}

void Tst_StatisticsLibrary::missingLibraryChangesNothing() {
    QFETCH(QString, library);
    QStringList events;
    setUsageRecorder([&](const QString &code) { events.append(code); });
    QVERIFY(!StatisticsLibrary::start(
        library.isEmpty() ? "/nonexistent/Ostler.so"_qs : m_libraries->add(library), "Tindra"_qs));
    StatisticsLibrary::end();
    recordUsage("cap_30_02");
    setUsageRecorder({});
    QCOMPARE(events, QStringList{"cap_30_02"_qs});
}

void Tst_StatisticsLibrary::missingFunctionsAreDoneWithout() {
    QVERIFY(start("Silent"_qs));
    QVERIFY(!StatisticsLibrary::send("cap_30_02"_qs));
    StatisticsLibrary::end();
    QVERIFY(!StatisticsLibrary::isStarted());
    QCOMPARE(m_libraries->calls(), QStringList{"Ostler_Initialize Tindra"_qs});
}

void Tst_StatisticsLibrary::otherThreadsComeOneAtATime() {
    constexpr int Threads = 4;
    constexpr int Events = 50;
    start();
    std::vector<std::thread> threads;
    for (int i = 0; i < Threads; ++i)
        threads.emplace_back([i] {
            for (int event = 0; event < Events; ++event) {
                if (i % 2)
                    recordUsage("by report");
                else
                    StatisticsLibrary::send("direct"_qs);
            }
        });
    for (std::thread &thread : threads)
        thread.join();
    StatisticsLibrary::end();
    QCOMPARE(m_libraries->calls().size(), 1 + Threads * Events + 1);
    QVERIFY(!m_libraries->calls().contains("two at once"_qs));
}

QTEST_GUILESS_MAIN(Tst_StatisticsLibrary)
#include "tst_statisticslibrary.moc"
