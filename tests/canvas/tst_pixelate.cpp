#include "canvas/items/mosaicsnapshot.h"
#include "canvas/pixelate.h"
#include "canvas/plainpixelate.h"
#include "canvas/rowloops.h"

#include <QPainter>
#include <QRandomGenerator>
#include <QtTest>

#include <functional>
#include <new>
#include <stdexcept>

namespace {

QImage randomImage(QRandomGenerator &random, const QSize &size, QImage::Format format) {
    QImage image(size, format);
    // Every byte, padding included, so that what must not be touched shows; a third of all alphas is 0.
    for (int y = 0; y < size.height(); ++y) {
        uchar *row = image.scanLine(y);
        for (int i = 0; i < image.bytesPerLine(); ++i) {
            const bool noAlpha = i % 4 == 3 && random.bounded(3) == 0;
            row[i] = noAlpha ? 0 : static_cast<uchar>(random.bounded(256));
        }
    }
    return image;
}

/// All bytes, padding and colours under alpha 0 included.
QByteArray bytesOf(const QImage &image) {
    return QByteArray(reinterpret_cast<const char *>(image.constBits()), int(image.sizeInBytes()));
}

/// All builds of the loops that this machine can run.
QVector<QPair<QString, const RowLoops *>> rowLoops() {
    QVector<QPair<QString, const RowLoops *>> loops{{QStringLiteral("portable"), &RowLoops::portable()}};
    if (RowLoops::wide())
        loops.append({QStringLiteral("wide"), RowLoops::wide()});
    return loops;
}

} // namespace

Q_DECLARE_METATYPE(std::function<void()>)
Q_DECLARE_METATYPE(const RowLoops *)

class Tst_Pixelate : public QObject {
    Q_OBJECT
private slots:
    void equalsAPlainLoop_data();
    void equalsAPlainLoop();
    void opaqueSquaresEqualAPlainLoop_data();
    void opaqueSquaresEqualAPlainLoop();
    void loopsGiveTheirBytesAndNoMore_data();
    void loopsGiveTheirBytesAndNoMore();
    void bestLoopsAreTheWideOnes();
    void averagesAreTruncated();
    void transparentPixelsNeitherCountNorChange();
    void lastBlocksMayBeSmaller();
    void blocksCountFromTheRegion();
    void onlyTheRegionIsWritten();
    void wholeImageAsOneBlock_data();
    void wholeImageAsOneBlock();
    void leavesAlone_data();
    void leavesAlone();
    void sharedImageIsDetached();
    void eachBandHasAGridOfItsOwn_data();
    void eachBandHasAGridOfItsOwn();
    void partsOfASnapshotAreThoseOfTheWhole_data();
    void partsOfASnapshotAreThoseOfTheWhole();
    void exceptionLeavesTheRestAsItIs_data();
    void exceptionLeavesTheRestAsItIs();
};

void Tst_Pixelate::equalsAPlainLoop_data() {
    QTest::addColumn<const RowLoops *>("loops");
    QTest::addColumn<QImage::Format>("format");
    for (const auto &loops : rowLoops()) {
        const auto row = [&loops](const char *name, QImage::Format format) {
            QTest::newRow(qPrintable(loops.first + QStringLiteral(", ") + QLatin1String(name)))
                << loops.second << format;
        };
        row("RGB32", QImage::Format_RGB32);
        row("ARGB32", QImage::Format_ARGB32);
        row("ARGB32 premultiplied", QImage::Format_ARGB32_Premultiplied);
        row("RGBA8888", QImage::Format_RGBA8888);
        row("RGB888", QImage::Format_RGB888);
        row("BGR888", QImage::Format_BGR888);
    }
}

void Tst_Pixelate::equalsAPlainLoop() {
    QFETCH(const RowLoops *, loops);
    QFETCH(QImage::Format, format);
    for (quint32 seed = 1; seed <= 400; ++seed) {
        QRandomGenerator random(seed);
        // Widths of up to three pixels too, which in 24 bits have rows of padding for the most part.
        const int most = seed % 4 == 0 ? 6 : 150;
        const QSize size(1 + random.bounded(most), 1 + random.bounded(most));
        const QImage before = randomImage(random, size, format);
        const int block = random.bounded(5) == 0 ? 1 + random.bounded(200) : 1 + random.bounded(12);
        QRect region(random.bounded(size.width()) - 2, random.bounded(size.height()) - 2,
                     1 + random.bounded(size.width() + 3), 1 + random.bounded(size.height() + 3));
        if (random.bounded(2))
            region = before.rect();
        QImage image = before;
        pixelate(image, region, block, *loops);
        QImage expected = before;
        plainPixelate(expected, region, block);
        QVERIFY2(bytesOf(image) == bytesOf(expected), qPrintable(QStringLiteral("seed %1: %2 x %3, block %4")
                                                                     .arg(seed)
                                                                     .arg(size.width())
                                                                     .arg(size.height())
                                                                     .arg(block)));
    }
}

void Tst_Pixelate::opaqueSquaresEqualAPlainLoop_data() {
    QTest::addColumn<const RowLoops *>("loops");
    QTest::addColumn<int>("lowest");
    QTest::addColumn<int>("holes");
    for (const auto &loops : rowLoops()) {
        const auto row = [&loops](const char *name, int lowest, int holes) {
            QTest::newRow(qPrintable(loops.first + QStringLiteral(", ") + QLatin1String(name)))
                << loops.second << lowest << holes;
        };
        row("all colours", 0, 0);
        row("sums that fill their bits", 252, 0);
        row("white", 255, 0);
        row("a pixel missing here and there", 0, 40);
    }
}

// Blocks of 4 x 4 pixels that all count are averaged in a way of their own.
void Tst_Pixelate::opaqueSquaresEqualAPlainLoop() {
    QFETCH(const RowLoops *, loops);
    QFETCH(int, lowest);
    QFETCH(int, holes);
    for (const QSize &size : {QSize(64, 48), QSize(65, 49), QSize(66, 50), QSize(67, 51), QSize(4, 4)}) {
        QRandomGenerator random(17);
        QImage before(size, QImage::Format_ARGB32);
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x) {
                const auto color = [&] { return lowest + random.bounded(256 - lowest); };
                before.setPixel(x, y, qRgba(color(), color(), color(), 1 + random.bounded(255)));
            }
        }
        for (int hole = 0; hole < holes; ++hole)
            before.setPixel(random.bounded(size.width()), random.bounded(size.height()), qRgba(9, 8, 7, 0));
        QImage image = before;
        pixelate(image, image.rect(), 4, *loops);
        QImage expected = before;
        plainPixelate(expected, expected.rect(), 4);
        QVERIFY(bytesOf(image) == bytesOf(expected));
    }
}

void Tst_Pixelate::loopsGiveTheirBytesAndNoMore_data() {
    QTest::addColumn<const RowLoops *>("loops");
    for (const auto &loops : rowLoops())
        QTest::newRow(qPrintable(loops.first)) << loops.second;
}

// Rows of every width up to several vectors, from every place in memory that an image's region can begin at.
void Tst_Pixelate::loopsGiveTheirBytesAndNoMore() {
    QFETCH(const RowLoops *, loops);
    constexpr int Most = 80;
    constexpr int Guard = 64;
    using Bytes = QVector<uchar>;
    QRandomGenerator random(29);
    const auto bytes = [&random](int count) {
        Bytes row(count);
        for (uchar &byte : row)
            byte = static_cast<uchar>(random.bounded(3) ? random.bounded(256) : 0);
        return row;
    };
    for (int width = 0; width <= Most; ++width) {
        const int begin = Guard + random.bounded(32);
        const Bytes row = bytes(4 * width + 2 * Guard);
        const Bytes before = bytes(4 * width + 2 * Guard);
        QVector<quint16> sums(4 * width + 2 * Guard);
        for (quint16 &sum : sums)
            sum = static_cast<quint16>(random.bounded(0xff00));
        Bytes masked = before, maskedThere = before;
        QVector<quint16> summed = sums;
        Bytes merged = row, mergedThere = row;
        Bytes colors = before;
        for (int x = 0; x < width; ++x) {
            colors[begin + 4 * x + 3] = 0;
            const bool there = row[begin + 4 * x + 3] != 0;
            for (int byte = begin + 4 * x; byte < begin + 4 * x + 4; ++byte) {
                const bool alpha = byte == begin + 4 * x + 3;
                maskedThere[byte] = there ? (alpha ? 1 : row[byte]) : 0;
                mergedThere[byte] = there && !alpha ? colors[byte] : row[byte];
                summed[byte] = static_cast<quint16>(sums[byte] + row[byte]);
            }
        }
        loops->maskTransparent(row.constData() + begin, width, masked.data() + begin);
        QCOMPARE(masked, maskedThere);
        loops->addBytes(row.constData() + begin, 4 * width, sums.data() + begin);
        QCOMPARE(sums, summed);
        loops->mergeColors(colors.constData() + begin, width, merged.data() + begin);
        QCOMPARE(merged, mergedThere);
    }
}

void Tst_Pixelate::bestLoopsAreTheWideOnes() {
    QCOMPARE(&RowLoops::best(), RowLoops::wide() ? RowLoops::wide() : &RowLoops::portable());
#if defined(Q_PROCESSOR_X86_64) && defined(Q_CC_GNU)
    QFile processor(QStringLiteral("/proc/cpuinfo"));
    if (processor.open(QIODevice::ReadOnly))
        QCOMPARE(RowLoops::wide() != nullptr, processor.readAll().contains(" avx2"));
#endif
}

void Tst_Pixelate::averagesAreTruncated() {
    QImage image(3, 1, QImage::Format_RGB32);
    image.setPixel(0, 0, qRgb(0, 255, 10));
    image.setPixel(1, 0, qRgb(1, 255, 10));
    image.setPixel(2, 0, qRgb(1, 254, 12));
    pixelate(image, image.rect(), 3);
    for (int x = 0; x < 3; ++x)
        QCOMPARE(image.pixel(x, 0), qRgb(0, 254, 10)); // 2/3, 764/3, 32/3
}

void Tst_Pixelate::transparentPixelsNeitherCountNorChange() {
    QImage image(4, 2, QImage::Format_ARGB32);
    image.fill(qRgba(100, 50, 20, 255));
    image.setPixel(1, 0, qRgba(200, 200, 200, 0));
    image.setPixel(0, 1, qRgba(40, 50, 22, 1));
    image.setPixel(2, 0, qRgba(9, 8, 7, 0));
    image.setPixel(3, 0, qRgba(9, 8, 7, 0));
    image.setPixel(2, 1, qRgba(9, 8, 7, 0));
    image.setPixel(3, 1, qRgba(6, 5, 4, 0));
    const QImage before = image;
    pixelate(image, image.rect(), 2);
    QCOMPARE(image.pixel(0, 0), qRgba(80, 50, 20, 255)); // 240/3, 150/3, 62/3
    QCOMPARE(image.pixel(0, 1), qRgba(80, 50, 20, 1));
    QCOMPARE(image.pixel(1, 1), qRgba(80, 50, 20, 255));
    QCOMPARE(image.pixel(1, 0), qRgba(200, 200, 200, 0));
    QCOMPARE(image.copy(2, 0, 2, 2), before.copy(2, 0, 2, 2));
}

void Tst_Pixelate::lastBlocksMayBeSmaller() {
    QImage image(5, 5, QImage::Format_RGB32);
    image.fill(Qt::black);
    image.setPixel(4, 4, qRgb(90, 80, 70));
    image.setPixel(4, 0, qRgb(200, 100, 60));
    pixelate(image, image.rect(), 4);
    QCOMPARE(image.pixel(4, 4), qRgb(90, 80, 70)); // alone in its block
    QCOMPARE(image.pixel(4, 3), qRgb(50, 25, 15)); // one of four
    QCOMPARE(image.pixel(3, 3), qRgb(0, 0, 0));
}

void Tst_Pixelate::blocksCountFromTheRegion() {
    QImage image(6, 1, QImage::Format_RGB32);
    for (int x = 0; x < 6; ++x)
        image.setPixel(x, 0, qRgb(x * 10, 0, 0));
    pixelate(image, QRect(1, 0, 4, 1), 2);
    const int expected[] = {0, 15, 15, 35, 35, 50};
    for (int x = 0; x < 6; ++x)
        QCOMPARE(qRed(image.pixel(x, 0)), expected[x]);
}

void Tst_Pixelate::onlyTheRegionIsWritten() {
    QRandomGenerator random(7);
    for (const QImage::Format format : {QImage::Format_ARGB32, QImage::Format_RGB888}) {
        const QImage before = randomImage(random, {61, 43}, format);
        QImage image = before;
        const QRect region(13, 9, 31, 22);
        pixelate(image, region, 6);
        QVERIFY(image != before);
        for (int y = 0; y < 43; ++y) {
            for (int x = 0; x < 61; ++x)
                QVERIFY(region.contains(x, y) || image.pixel(x, y) == before.pixel(x, y));
        }
    }
}

void Tst_Pixelate::wholeImageAsOneBlock_data() {
    QTest::addColumn<QImage::Format>("format");
    QTest::addColumn<QSize>("size");
    // Sums of more than 16 bits, and counts of more than 16 bits.
    QTest::newRow("32 bit, wide") << QImage::Format_RGB32 << QSize(1001, 3);
    QTest::newRow("32 bit, tall") << QImage::Format_RGB32 << QSize(3, 1001);
    QTest::newRow("32 bit, large") << QImage::Format_RGB32 << QSize(401, 403);
    QTest::newRow("24 bit, wide") << QImage::Format_RGB888 << QSize(1001, 3);
    QTest::newRow("24 bit, large") << QImage::Format_RGB888 << QSize(401, 403);
}

void Tst_Pixelate::wholeImageAsOneBlock() {
    QFETCH(QImage::Format, format);
    QFETCH(QSize, size);
    for (const QColor &color : {QColor(255, 254, 253), QColor(0, 1, 128)}) {
        QImage image(size, format);
        image.fill(color);
        const QImage before = image;
        for (const int block : {2000, std::numeric_limits<int>::max()}) {
            pixelate(image, image.rect(), block);
            QCOMPARE(image, before);
        }
    }
}

void Tst_Pixelate::leavesAlone_data() {
    QTest::addColumn<QImage::Format>("format");
    QTest::addColumn<QRect>("region");
    QTest::addColumn<int>("block");
    const QRect all(0, 0, 40, 30);
    QTest::newRow("8 bit") << QImage::Format_Grayscale8 << all << 6;
    QTest::newRow("16 bit") << QImage::Format_RGB16 << all << 6;
    QTest::newRow("64 bit") << QImage::Format_RGBA64 << all << 6;
    QTest::newRow("nothing of the image") << QImage::Format_RGB32 << QRect(40, 0, 9, 9) << 6;
    QTest::newRow("empty region") << QImage::Format_RGB32 << QRect() << 6;
    QTest::newRow("block of 0") << QImage::Format_RGB32 << all << 0;
    QTest::newRow("block below 0") << QImage::Format_RGB32 << all << -4;
    QTest::newRow("block of 1") << QImage::Format_RGB32 << all << 1;
}

void Tst_Pixelate::leavesAlone() {
    QFETCH(QImage::Format, format);
    QFETCH(QRect, region);
    QFETCH(int, block);
    QRandomGenerator random(3);
    const QImage before = randomImage(random, {40, 30}, format);
    QImage image = before;
    pixelate(image, region, block);
    QCOMPARE(bytesOf(image), bytesOf(before));
    QImage null;
    pixelate(null, region, block);
    QVERIFY(null.isNull());
}

void Tst_Pixelate::sharedImageIsDetached() {
    QRandomGenerator random(5);
    QImage image = randomImage(random, {30, 20}, QImage::Format_RGB32);
    const QImage other = image;
    const QByteArray before = bytesOf(other);
    pixelate(image, image.rect(), 6);
    QCOMPARE(bytesOf(other), before);
    QVERIFY(bytesOf(image) != before);
}

void Tst_Pixelate::eachBandHasAGridOfItsOwn_data() {
    QTest::addColumn<int>("height");
    QTest::addColumn<int>("block");
    for (const int block : {4, 6, 9}) {
        for (const int height : {1, 2999, 3000, 3001, 6005, 9000})
            QTest::addRow("%d rows, block %d", height, block) << height << block;
    }
}

void Tst_Pixelate::eachBandHasAGridOfItsOwn() {
    QFETCH(int, height);
    QFETCH(int, block);
    QRandomGenerator random(11);
    const QImage before = randomImage(random, {7, height}, QImage::Format_ARGB32);
    MosaicSnapshot snapshot(before);
    int bandsDone = 0;
    snapshot.pixelateAll(block, [&] { ++bandsDone; });
    QCOMPARE(bandsDone, (height + 2999) / 3000);
    QImage expected = before;
    for (int top = 0; top < height; top += 3000)
        plainPixelate(expected, QRect(0, top, 7, std::min(3000, height - top)), block);
    QCOMPARE(bytesOf(snapshot.copy(expected.rect())), bytesOf(expected));
}

void Tst_Pixelate::partsOfASnapshotAreThoseOfTheWhole_data() {
    QTest::addColumn<QRect>("area");
    QTest::newRow("in the first band") << QRect(3, 100, 20, 50);
    QTest::newRow("in a later band") << QRect(3, 3100, 20, 50);
    QTest::newRow("across two bands") << QRect(3, 2980, 20, 50);
    QTest::newRow("across all bands") << QRect(3, 2000, 20, 4100);
    QTest::newRow("beyond the picture's edges") << QRect(-5, -5, 40, 20);
    QTest::newRow("beyond the last row") << QRect(3, 6190, 20, 50);
}

void Tst_Pixelate::partsOfASnapshotAreThoseOfTheWhole() {
    QFETCH(QRect, area);
    QRandomGenerator random(12);
    const QImage before = randomImage(random, {30, 6200}, QImage::Format_RGB32);
    MosaicSnapshot snapshot(before);
    const auto drawn = [&] {
        QImage picture(30, 6200, before.format());
        picture.fill(Qt::red);
        QPainter painter(&picture);
        snapshot.draw(&painter, area);
        painter.end();
        return picture.copy(area & picture.rect());
    };
    const QRect inside = area & before.rect();
    QCOMPARE(bytesOf(snapshot.copy(area)), bytesOf(before.copy(area)));
    QCOMPARE(drawn(), before.copy(inside));
    snapshot.pixelateAll(6);
    const QImage whole = snapshot.copy(before.rect());
    QVERIFY(bytesOf(whole.copy(inside)) != bytesOf(before.copy(inside)));
    QCOMPARE(bytesOf(snapshot.copy(area)), bytesOf(whole.copy(area)));
    QCOMPARE(drawn(), whole.copy(inside));
}

void Tst_Pixelate::exceptionLeavesTheRestAsItIs_data() {
    QTest::addColumn<std::function<void()>>("fail");
    QTest::newRow("no memory") << std::function<void()>([] { throw std::bad_alloc(); });
    QTest::newRow("too long") << std::function<void()>([] { throw std::length_error("test"); });
    QTest::newRow("no exception of the library") << std::function<void()>([] { throw 1; });
}

void Tst_Pixelate::exceptionLeavesTheRestAsItIs() {
    QFETCH(std::function<void()>, fail);
    QRandomGenerator random(13);
    const QImage before = randomImage(random, {7, 6200}, QImage::Format_RGB32);
    MosaicSnapshot snapshot(before);
    int calls = 0;
    try {
        snapshot.pixelateAll(6, [&] {
            ++calls;
            fail();
        });
    } catch (...) {
        QFAIL("thrown on");
    }
    QCOMPARE(calls, 1);
    QImage expected = before;
    plainPixelate(expected, QRect(0, 0, 7, 3000), 6);
    QCOMPARE(bytesOf(snapshot.copy(before.rect())), bytesOf(expected));
}

QTEST_APPLESS_MAIN(Tst_Pixelate)
#include "tst_pixelate.moc"
