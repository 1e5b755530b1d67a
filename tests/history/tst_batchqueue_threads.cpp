#include "history/batchqueue.h"
#include "output/imagewriter.h"
#include "output/reservedpaths.h"

#include <QTemporaryDir>
#include <QtTest>

#include <atomic>
#include <memory>
#include <new>
#include <thread>
#include <vector>

/// Small on purpose: this is what the thread sanitizer judges, and it knows nothing of what happens inside
/// the toolkit's libraries.
class Tst_BatchQueueThreads : public QObject {
    Q_OBJECT
private slots:
    void workersWriteEachPictureOnce();
    void picturesGoBeforeTheirResultIsTold();
    void writerThatThrowsHasNotWritten();
    void workerWithoutAPictureDoesNothing();
    void workersWriteFiles_data();
    void workersWriteFiles();
};

namespace {

constexpr int WorkerCount = 4;
/// Of the pictures; the width and the pixels tell one from the other.
constexpr int Height = 7;

QImage picture(int number) {
    QImage image(number + 1, Height, QImage::Format_RGB32);
    for (int y = 0; y < Height; ++y) {
        auto *row = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x <= number; ++x)
            row[x] = qRgb(number, x, y);
    }
    return image;
}

/// Every pixel is read here and not in a library, so that the sanitizer sees it.
bool isPicture(const QImage &image, int number) {
    if (image.width() != number + 1 || image.height() != Height)
        return false;
    bool isSame = true;
    for (int y = 0; y < Height; ++y) {
        const auto *row = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x <= number; ++x)
            isSame = isSame && row[x] == qRgb(number, x, y);
    }
    return isSame;
}

/// Hands pictures in as a batch does, with a thread as each one's task and a few of them at a time, and
/// returns what became of them. The last of the tasks takes the queue with it.
std::vector<bool> resultsOf(std::shared_ptr<BatchQueue> queue, int count,
                            const std::function<BatchQueue::Picture(int)> &pictureOf) {
    std::vector<std::thread> tasks;
    std::vector<bool> results;
    const auto waitUntilOnly = [&](std::size_t remaining) {
        while (tasks.size() - results.size() > remaining) {
            if (const std::optional<bool> result = queue->takeFirst())
                results.push_back(*result);
            else
                std::this_thread::yield();
        }
    };
    for (int number = 0; number < count; ++number) {
        waitUntilOnly(WorkerCount - 1);
        queue->add(pictureOf(number));
        tasks.emplace_back([queue] { queue->writeNext(); });
    }
    waitUntilOnly(0);
    queue.reset();
    for (std::thread &task : tasks)
        task.join();
    return results;
}

QString fileOf(int number, const QString &folder, const QString &suffix) {
    return QStringLiteral("%1/%2.%3").arg(folder).arg(number).arg(suffix);
}

} // namespace

void Tst_BatchQueueThreads::workersWriteEachPictureOnce() {
    constexpr int count = 200;
    // The counters must not put the threads in an order that the queue did not give.
    std::vector<std::atomic<int>> writes(count);
    const auto write = [&writes](const BatchQueue::Picture &given) {
        writes[given.quality].fetch_add(1, std::memory_order_relaxed);
        return isPicture(given.image, given.quality) && given.quality % 3 != 0;
    };
    const std::vector<bool> results = resultsOf(std::make_shared<BatchQueue>(write), count, [](int number) {
        return BatchQueue::Picture{picture(number), QString(), number};
    });
    QCOMPARE(results.size(), std::size_t(count));
    for (int number = 0; number < count; ++number) {
        QCOMPARE(writes[number].load(), 1);
        QCOMPARE(bool(results[number]), number % 3 != 0);
    }
}

// Who waits for a result hands in the next picture then, and memory holds only so many.
void Tst_BatchQueueThreads::picturesGoBeforeTheirResultIsTold() {
    struct Watch {
        BatchQueue queue{[](const BatchQueue::Picture &) { return true; }};
        bool isGone = false;
        bool wasTold = false;
    } watch;
    uchar pixels[4] = {};
    const auto onGone = [](void *info) {
        auto *watched = static_cast<Watch *>(info);
        watched->isGone = true;
        watched->wasTold = watched->queue.takeFirst().has_value();
    };
    watch.queue.add({QImage(pixels, 1, 1, QImage::Format_RGB32, onGone, &watch), QString(), -1});
    QVERIFY(!watch.isGone);
    watch.queue.writeNext();
    QVERIFY(watch.isGone);
    QVERIFY(!watch.wasTold);
    QVERIFY(watch.queue.takeFirst().value_or(false));
}

void Tst_BatchQueueThreads::writerThatThrowsHasNotWritten() {
    BatchQueue queue([](const BatchQueue::Picture &) -> bool { throw std::bad_alloc(); });
    queue.add({picture(1), QString(), -1});
    queue.writeNext();
    QVERIFY(!queue.takeFirst().value_or(true));
}

void Tst_BatchQueueThreads::workerWithoutAPictureDoesNothing() {
    int writes = 0;
    BatchQueue queue([&writes](const BatchQueue::Picture &) { return ++writes > 0; });
    queue.writeNext();
    QVERIFY(!queue.takeFirst());
    queue.add({picture(1), QString(), -1});
    QVERIFY(!queue.takeFirst());
    queue.writeNext();
    queue.writeNext();
    QCOMPARE(writes, 1);
}

void Tst_BatchQueueThreads::workersWriteFiles_data() {
    QTest::addColumn<QString>("suffix");
    for (const char *suffix : {"png", "jpg", "bmp", "gif", "webp"})
        QTest::newRow(suffix) << QString::fromLatin1(suffix);
}

void Tst_BatchQueueThreads::workersWriteFiles() {
    QFETCH(QString, suffix);
    constexpr int count = 12;
    const QTemporaryDir folder;
    const auto write = [](const BatchQueue::Picture &given) {
        return writeImage(given.image, given.path, given.quality);
    };
    std::vector<std::unique_ptr<ReservedPaths>> reserved;
    const std::vector<bool> results = resultsOf(std::make_shared<BatchQueue>(write), count, [&](int number) {
        const QString path = fileOf(number, folder.path(), suffix);
        // Names are given out while workers write.
        reserved.push_back(std::make_unique<ReservedPaths>(QStringList{path}));
        return BatchQueue::Picture{picture(number), path, -1};
    });
    for (int number = 0; number < count; ++number) {
        const QString path = fileOf(number, folder.path(), suffix);
        QVERIFY(results[number] && ReservedPaths::contains(path));
        QCOMPARE(QImage(path).size(), QSize(number + 1, Height));
    }
}

QTEST_GUILESS_MAIN(Tst_BatchQueueThreads)
#include "tst_batchqueue_threads.moc"
