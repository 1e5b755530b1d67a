#include "app/namedmutex.h"

#include <QtTest>

#include <atomic>
#include <thread>

class Tst_NamedMutex : public QObject {
    Q_OBJECT
private slots:
    void sameNameExcludes();
    void otherNameDoesNot();
    void goesWithItsObject();
};

void Tst_NamedMutex::sameNameExcludes() {
    NamedMutex mine(QStringLiteral("tst_namedmutex"));
    QVERIFY(mine.lock());
    std::atomic<bool> isWaiting{false};
    std::atomic<bool> isFree{false};
    bool isLockedInTurn = false;
    std::thread other([&] {
        NamedMutex same(QStringLiteral("tst_namedmutex"));
        isWaiting = true;
        // However long this test is held up, the other one does not give up before.
        for (bool isLocked = false; !isLocked;)
            isLocked = same.lock();
        isLockedInTurn = isFree;
    });
    while (!isWaiting)
        std::this_thread::yield();
    QThread::msleep(50);
    isFree = true;
    mine.unlock();
    other.join();
    QVERIFY(isLockedInTurn);
}

void Tst_NamedMutex::otherNameDoesNot() {
    NamedMutex one(QStringLiteral("tst_namedmutex"));
    NamedMutex two(QStringLiteral("tst_namedmutex2"));
    QVERIFY(one.lock());
    QVERIFY(two.lock());
}

void Tst_NamedMutex::goesWithItsObject() {
    {
        NamedMutex mutex(QStringLiteral("tst_namedmutex"));
        QVERIFY(mutex.lock());
    }
    NamedMutex next(QStringLiteral("tst_namedmutex"));
    QVERIFY(next.lock());
}

QTEST_GUILESS_MAIN(Tst_NamedMutex)
#include "tst_namedmutex.moc"
