#include "canvas/items/mosaicsnapshot.h"

#include <QPainter>
#include <QtTest>

#include <algorithm>
#include <atomic>
#include <functional>
#include <thread>
#include <vector>

/// Small on purpose: this is what the thread sanitizer judges, and it knows nothing of what happens inside
/// the toolkit's libraries.
class Tst_MosaicSnapshotThreads : public QObject {
    Q_OBJECT
private slots:
    void readersSeeWholeBands();
};

namespace {

constexpr int Width = 12;
constexpr int BandCount = 8;
constexpr int Height = (BandCount - 1) * MosaicSnapshot::BandHeight + 500;
constexpr int Block = 4;

/// Stripes that an average makes one grey.
QImage stripes() {
    QImage image(Width, Height, QImage::Format_RGB32);
    for (int y = 0; y < Height; ++y) {
        for (int x = 0; x < Width; ++x)
            image.setPixel(x, y, x % 2 ? qRgb(200, 200, 200) : qRgb(100, 100, 100));
    }
    return image;
}

enum class Band { Untouched, Done, Half };

/// Every pixel is read here and not in a library, so that the sanitizer sees it.
Band stateOf(const QImage &image, int band) {
    const int top = band * MosaicSnapshot::BandHeight;
    const int bottom = std::min(top + MosaicSnapshot::BandHeight, Height);
    int done = 0;
    for (int y = top; y < bottom; ++y) {
        const auto *row = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < Width; ++x)
            done += row[x] == qRgb(150, 150, 150);
    }
    if (done == 0)
        return Band::Untouched;
    return done == (bottom - top) * Width ? Band::Done : Band::Half;
}

/// How many bands are done from the top; -1 if a band is half done or one is done before those above it.
int doneBands(const QImage &image) {
    int count = 0;
    for (int band = 0; band < BandCount; ++band) {
        const Band state = stateOf(image, band);
        if (state == Band::Half || (state == Band::Done && band != count))
            return -1;
        count += state == Band::Done;
    }
    return count;
}

} // namespace

void Tst_MosaicSnapshotThreads::readersSeeWholeBands() {
    MosaicSnapshot snapshot(stripes());
    std::atomic<bool> sound{true};
    std::vector<std::thread> readers;
    const QRect all(0, 0, Width, Height);
    const std::function<QImage()> copied = [&] { return snapshot.copy(all); };
    const std::function<QImage()> painted = [&] {
        QImage picture(all.size(), QImage::Format_RGB32);
        QPainter painter(&picture);
        // An area within one band is drawn from the band itself, without a copy. From below, since the bands
        // are done from the top and some may be while this is under way.
        for (int band = BandCount - 1; band >= 0; --band) {
            const int top = band * MosaicSnapshot::BandHeight;
            const int height = std::min(MosaicSnapshot::BandHeight, Height - top);
            snapshot.draw(&painter, QRect(0, top, Width, height));
        }
        return picture;
    };
    for (const auto &read : {copied, painted}) {
        readers.emplace_back([&sound, read] {
            int seen = 0;
            while (seen >= 0 && seen < BandCount) {
                const int now = doneBands(read());
                if (now < seen)
                    sound = false;
                seen = now;
                std::this_thread::yield();
            }
            if (seen < 0)
                sound = false;
        });
    }
    std::thread job([&snapshot] { snapshot.pixelateAll(Block); });
    job.join();
    for (std::thread &reader : readers)
        reader.join();
    QVERIFY(sound);
    QCOMPARE(doneBands(snapshot.copy(QRect(0, 0, Width, Height))), BandCount);
}

QTEST_APPLESS_MAIN(Tst_MosaicSnapshotThreads)
#include "tst_mosaicsnapshot_threads.moc"
