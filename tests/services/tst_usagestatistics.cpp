#include "services/usagestatistics.h"

#include <QtTest>

#include <thread>

class Tst_UsageStatistics : public QObject {
    Q_OBJECT
private slots:
    void cleanup() { setUsageRecorder({}); }
    void withoutRecorderNothingHappens();
    void recorderTakesEveryEvent();
    void recorderMayReportAndReplaceItself();
    void eventsOfAllThreadsArriveOneByOne();
};

void Tst_UsageStatistics::withoutRecorderNothingHappens() {
    recordUsage("cap_30_02");
    QStringList codes;
    setUsageRecorder([&codes](const QString &code) { codes.append(code); });
    QCOMPARE(codes, QStringList()); // nothing was kept for later
    setUsageRecorder({});
    recordUsage("cap_30_02");
    QCOMPARE(codes, QStringList());
}

void Tst_UsageStatistics::recorderTakesEveryEvent() {
    QStringList codes;
    setUsageRecorder([&codes](const QString &code) { codes.append(code); });
    recordUsage("cap_30_02");
    recordUsage("capt_1_052");
    recordUsage("cap_30_02");
    QCOMPARE(codes, (QStringList{QStringLiteral("cap_30_02"), QStringLiteral("capt_1_052"),
                                 QStringLiteral("cap_30_02")}));
}

void Tst_UsageStatistics::recorderMayReportAndReplaceItself() {
    QStringList codes;
    setUsageRecorder([&codes](const QString &code) {
        codes.append(code);
        setUsageRecorder([&codes](const QString &later) { codes.append(QLatin1String("later ") + later); });
        recordUsage("cap_30_26");
    });
    recordUsage("cap_30_01");
    QCOMPARE(codes, (QStringList{QStringLiteral("cap_30_01"), QStringLiteral("later cap_30_26")}));
}

void Tst_UsageStatistics::eventsOfAllThreadsArriveOneByOne() {
    constexpr int count = 2000;
    int events = 0; // no atomic: the seam lets one caller in at a time
    setUsageRecorder([&events](const QString &) { ++events; });
    const auto report = [] {
        for (int i = 0; i < count; ++i)
            recordUsage("cap_30_03");
    };
    std::thread other(report);
    report();
    other.join();
    QCOMPARE(events, 2 * count);
}

QTEST_GUILESS_MAIN(Tst_UsageStatistics)
#include "tst_usagestatistics.moc"
