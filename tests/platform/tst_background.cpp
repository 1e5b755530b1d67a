#include "platform/linux/background.h"
#include "support/nothreads.h"

#include <QtTest>

class Tst_Background : public QObject {
    Q_OBJECT
private slots:
    void callRunsInAThreadOfItsOwn();
    void withoutAThreadTheResultIsEmpty();
};

void Tst_Background::callRunsInAThreadOfItsOwn() {
    auto other = inBackground<std::thread::id>([] { return std::this_thread::get_id(); });
    QVERIFY(other.get() != std::this_thread::get_id());
}

void Tst_Background::withoutAThreadTheResultIsEmpty() {
    {
        const NoThreads none;
        auto answer = inBackground<int>([] { return 7; });
        QCOMPARE(answer.wait_for(std::chrono::seconds(0)), std::future_status::ready);
        QCOMPARE(answer.get(), 0);
    }
    QCOMPARE(inBackground<int>([] { return 7; }).get(), 7);
}

QTEST_GUILESS_MAIN(Tst_Background)
#include "tst_background.moc"
