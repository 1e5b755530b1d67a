#include "platform/privatefile.h"

#include <QtTest>

#include <atomic>
#include <thread>
#include <vector>

class Tst_PrivateFile : public QObject {
    Q_OBJECT
private slots:
    void writersThatMeetAFullFileKeepEachOthersLines();
    void emptyPathIsRefused();
};

void Tst_PrivateFile::writersThatMeetAFullFileKeepEachOthersLines() {
    constexpr int rounds = 300;
    constexpr int writers = 4;
    constexpr qint64 limit = 4096;
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("log"));
    for (int round = 0; round < rounds; ++round) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.resize(limit));
        file.close();
        std::atomic<int> waiting{writers};
        std::vector<std::thread> threads;
        for (int i = 0; i < writers; ++i) {
            threads.emplace_back([&] {
                --waiting;
                while (waiting > 0)
                    std::this_thread::yield(); // so that all of them see the full file
                platform::appendToPrivateFile(path, "line\n", limit);
            });
        }
        for (std::thread &thread : threads)
            thread.join();
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("line\n").repeated(writers));
    }
}

void Tst_PrivateFile::emptyPathIsRefused() {
    QVERIFY(!platform::appendToPrivateFile(QString(), "line\n", 4096));
}

QTEST_GUILESS_MAIN(Tst_PrivateFile)
#include "tst_privatefile.moc"
