#include "output/gifimagewriter.h"
#include "support/imagecompare.h"

#include <QBuffer>
#include <QImageReader>
#include <QTemporaryDir>
#include <QTest>

namespace {

/// What a GIF file consists of, read block by block without the library that wrote it.
struct GifBlocks {
    QByteArray signature;
    QSize screen;
    int colorResolution = 0;
    int globalColors = 0;
    int background = 0;
    QVector<QRgb> globalTable;

    struct Extension {
        int label;
        QByteArray first; ///< the first sub-block
        QByteArray rest;  ///< what follows in further sub-blocks
    };
    struct Image {
        QRect rect;
        int localColors = 0;
        bool interlaced = false;
        int codeBits = 0;
    };
    QVector<Extension> extensions;
    QVector<Image> images;
    bool complete = false; ///< the trailer ends the file

    static GifBlocks parse(const QByteArray &bytes);

    QByteArray control(int index) const;
    QVector<Extension> withLabel(int label) const;
};

class Cursor {
public:
    explicit Cursor(const QByteArray &bytes) : m_bytes(bytes) {}
    bool atEnd() const { return m_at >= m_bytes.size(); }
    int byte() { return atEnd() ? -1 : quint8(m_bytes[m_at++]); }
    int word() {
        const int low = byte();
        return low | byte() << 8;
    }
    QByteArray take(int count) {
        const QByteArray taken = m_bytes.mid(m_at, count);
        m_at += count;
        return taken;
    }
    QVector<QRgb> table(int colors) {
        QVector<QRgb> result;
        for (int i = 0; i < colors; ++i) {
            const int red = byte();
            const int green = byte();
            result.append(qRgb(red, green, byte()));
        }
        return result;
    }
    QVector<QByteArray> subBlocks() {
        QVector<QByteArray> blocks;
        for (int size = byte(); size > 0; size = byte())
            blocks.append(take(size));
        return blocks;
    }

private:
    QByteArray m_bytes;
    int m_at = 0;
};

int tableSize(int flags) {
    return flags & 0x80 ? 2 << (flags & 7) : 0;
}

GifBlocks GifBlocks::parse(const QByteArray &bytes) {
    GifBlocks gif;
    Cursor in(bytes);
    gif.signature = in.take(6);
    const int width = in.word();
    gif.screen = QSize(width, in.word());
    const int flags = in.byte();
    gif.colorResolution = (flags >> 4 & 7) + 1;
    gif.globalColors = tableSize(flags);
    gif.background = in.byte();
    in.byte(); // aspect ratio
    gif.globalTable = in.table(gif.globalColors);
    while (!in.atEnd()) {
        switch (in.byte()) {
        case 0x21: {
            Extension extension;
            extension.label = in.byte();
            const QVector<QByteArray> blocks = in.subBlocks();
            extension.first = blocks.value(0);
            for (int i = 1; i < blocks.size(); ++i)
                extension.rest += blocks[i];
            gif.extensions.append(extension);
            break;
        }
        case 0x2c: {
            Image image;
            const int left = in.word();
            const int top = in.word();
            const int imageWidth = in.word();
            image.rect = QRect(left, top, imageWidth, in.word());
            const int imageFlags = in.byte();
            image.localColors = tableSize(imageFlags);
            image.interlaced = imageFlags & 0x40;
            in.table(image.localColors);
            image.codeBits = in.byte();
            in.subBlocks();
            gif.images.append(image);
            break;
        }
        case 0x3b:
            gif.complete = in.atEnd();
            return gif;
        default:
            return gif;
        }
    }
    return gif;
}

QVector<GifBlocks::Extension> GifBlocks::withLabel(int label) const {
    QVector<Extension> found;
    for (const Extension &extension : extensions) {
        if (extension.label == label)
            found.append(extension);
    }
    return found;
}

/// Four bytes of the graphics control block of the nth image.
QByteArray GifBlocks::control(int index) const {
    return withLabel(0xf9).value(index).first;
}

int delayOf(const QByteArray &control) {
    return quint8(control[1]) | quint8(control[2]) << 8;
}

/// A picture of few colours, so that the reduction loses none.
QImage fewColors(int width, int height) {
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, qRgb(x % 4 * 85, y % 4 * 85, (x + y) % 2 * 255));
    }
    return image;
}

QImage manyColors(int width, int height) {
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, qRgb(x * 255 / width, y * 255 / height, (x * y) % 256));
    }
    return image;
}

QByteArray saved(const GifImageWriter &writer) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return writer.save(&buffer, 0) ? buffer.data() : QByteArray();
}

QByteArray savedSingle(const QImage &image) {
    GifImageWriter writer;
    writer.addFrame(image, -1);
    return saved(writer);
}

/// A device that takes so many bytes and then fails, as a full disk does.
class FullDevice : public QIODevice {
public:
    explicit FullDevice(qint64 room) : m_room(room) { open(QIODevice::WriteOnly | QIODevice::Unbuffered); }

protected:
    qint64 readData(char *, qint64) override { return -1; }
    qint64 writeData(const char *, qint64 size) override {
        if (size > m_room)
            return -1;
        m_room -= size;
        return size;
    }

private:
    qint64 m_room;
};

} // namespace

class Tst_GifImageWriter : public QObject {
    Q_OBJECT
private slots:
    void singleImageIsOneFrameWithLoop();
    void pixelsSurvive_data();
    void pixelsSurvive();
    void reducesToQtsOwnPalette();
    void loopCount();
    void delays_data();
    void delays();
    void transparentIndex_data();
    void transparentIndex();
    void globalTable();
    void refusesTablesBeyondTheFormat();
    void localTableOnlyWhenItDiffers();
    void canvasSize();
    void offsetsWidenTheCanvas();
    void severalFrames();
    void interlaced();
    void refuses_data();
    void refuses();
    void widestImage();
    void failingDeviceGivesFalse();
    void savesToAFile();
};

void Tst_GifImageWriter::singleImageIsOneFrameWithLoop() {
    const GifBlocks gif = GifBlocks::parse(savedSingle(manyColors(123, 45)));
    QVERIFY(gif.complete);
    QCOMPARE(gif.signature, QByteArray("GIF89a"));
    QCOMPARE(gif.screen, QSize(123, 45));
    QCOMPARE(gif.colorResolution, 8);
    QCOMPARE(gif.globalColors, 0);
    QCOMPARE(gif.background, 0);
    QCOMPARE(gif.images.size(), 1);
    QCOMPARE(gif.images[0].rect, QRect(0, 0, 123, 45));
    QVERIFY(gif.images[0].localColors > 0 && gif.images[0].localColors <= 256);
    QVERIFY(!gif.images[0].interlaced);
    QCOMPARE(gif.extensions.size(), 2);
    QCOMPARE(gif.withLabel(0xff).value(0).first, QByteArray("NETSCAPE2.0"));
    QCOMPARE(gif.withLabel(0xff).value(0).rest, QByteArray("\x01\x00\x00", 3));
    const QByteArray control = gif.control(0);
    QCOMPARE(control.size(), 4);
    QCOMPARE(int(control[0]), 0); // no disposal, no user input, nothing transparent
    QCOMPARE(delayOf(control), 100);
}

void Tst_GifImageWriter::pixelsSurvive_data() {
    QTest::addColumn<QSize>("size");
    QTest::newRow("one pixel") << QSize(1, 1);
    QTest::newRow("one column") << QSize(1, 50);
    QTest::newRow("odd width, padded rows") << QSize(37, 11);
    QTest::newRow("wide") << QSize(3001, 3);
    QTest::newRow("large") << QSize(1500, 1201);
}

void Tst_GifImageWriter::pixelsSurvive() {
    QFETCH(QSize, size);
    const QImage picture = fewColors(size.width(), size.height());
    COMPARE_IMAGES(QImage::fromData(savedSingle(picture), "gif"), picture, "gif");
}

void Tst_GifImageWriter::reducesToQtsOwnPalette() {
    const QImage picture = manyColors(200, 150);
    COMPARE_IMAGES(QImage::fromData(savedSingle(picture), "gif"),
                   picture.convertToFormat(QImage::Format_Indexed8), "reduced");
}

void Tst_GifImageWriter::loopCount() {
    GifImageWriter writer;
    writer.setLoopCount(0x1234);
    writer.addFrame(fewColors(5, 5), -1);
    writer.addFrame(fewColors(5, 5), -1);
    const GifBlocks gif = GifBlocks::parse(saved(writer));
    QCOMPARE(gif.withLabel(0xff).size(), 1); // the first frame's only
    QCOMPARE(gif.withLabel(0xff)[0].rest, QByteArray("\x01\x34\x12", 3));
}

void Tst_GifImageWriter::delays_data() {
    QTest::addColumn<int>("defaultDelay");
    QTest::addColumn<int>("delay");
    QTest::addColumn<int>("hundredths");
    QTest::newRow("default") << 1000 << -1 << 100;
    QTest::newRow("other default") << 250 << -1 << 25;
    QTest::newRow("of the frame") << 1000 << 70 << 7;
    QTest::newRow("truncated") << 1000 << 79 << 7;
    QTest::newRow("none") << 1000 << 0 << 0;
    QTest::newRow("two bytes") << 1000 << 70000 << 7000;
    QTest::newRow("longest") << 1000 << 655350 << 65535;
    QTest::newRow("longer than the format tells") << 1000 << 700000 << 65535;
    QTest::newRow("negative") << 1000 << -20 << 0;
    QTest::newRow("negative default") << -1000 << -1 << 0;
}

void Tst_GifImageWriter::delays() {
    QFETCH(int, defaultDelay);
    QFETCH(int, delay);
    GifImageWriter writer;
    writer.setDefaultDelay(defaultDelay);
    writer.addFrame(fewColors(5, 5), delay);
    QTEST(delayOf(GifBlocks::parse(saved(writer)).control(0)), "hundredths");
}

void Tst_GifImageWriter::transparentIndex_data() {
    QTest::addColumn<QColor>("ofWriter");
    QTest::addColumn<QColor>("ofFrame");
    QTest::addColumn<int>("index"); // -1: no transparency
    QTest::newRow("none") << QColor() << QColor() << -1;
    QTest::newRow("writer's") << QColor(Qt::green) << QColor() << 1;
    QTest::newRow("frame's wins") << QColor(Qt::green) << QColor(Qt::blue) << 2;
    QTest::newRow("not in the table") << QColor(Qt::yellow) << QColor() << -1;
}

void Tst_GifImageWriter::transparentIndex() {
    QFETCH(QColor, ofWriter);
    QFETCH(QColor, ofFrame);
    QFETCH(int, index);
    GifFrame frame;
    frame.image = QImage(3, 3, QImage::Format_Indexed8);
    frame.image.setColorTable({qRgb(255, 0, 0), qRgb(0, 255, 0), qRgb(0, 0, 255)});
    frame.image.fill(1);
    frame.transparentColor = ofFrame;
    GifImageWriter writer;
    writer.setDefaultTransparentColor(ofWriter);
    writer.addFrame(frame);
    const QByteArray control = GifBlocks::parse(saved(writer)).control(0);
    QCOMPARE(bool(control[0] & 1), index >= 0);
    if (index >= 0)
        QCOMPARE(int(control[3]), index);
}

void Tst_GifImageWriter::globalTable() {
    const QVector<QRgb> table{qRgb(0, 0, 0), qRgb(255, 255, 255), qRgb(255, 0, 0)};
    GifImageWriter writer;
    writer.setGlobalColorTable(table);
    writer.setBackgroundColor(Qt::red);
    writer.addFrame(manyColors(20, 20), -1);
    const GifBlocks gif = GifBlocks::parse(saved(writer));
    QVERIFY(gif.complete);
    QCOMPARE(gif.globalColors, 4); // the next power of two
    QCOMPARE(gif.globalTable.mid(0, 3), table);
    QCOMPARE(gif.background, 2);
    QCOMPARE(gif.images[0].localColors, 0);
    COMPARE_IMAGES(QImage::fromData(saved(writer), "gif"),
                   manyColors(20, 20).convertToFormat(QImage::Format_Indexed8, table), "global");

    writer.setBackgroundColor(Qt::cyan);
    QCOMPARE(GifBlocks::parse(saved(writer)).background, 0);
}

void Tst_GifImageWriter::refusesTablesBeyondTheFormat() {
    QVector<QRgb> table;
    for (int i = 0; i < 256; ++i)
        table.append(qRgb(i, 0, 0));
    GifImageWriter writer;
    writer.addFrame(fewColors(5, 5), -1);
    writer.setGlobalColorTable(table);
    QCOMPARE(GifBlocks::parse(saved(writer)).globalTable, table);
    table.append(qRgb(0, 255, 0));
    writer.setGlobalColorTable(table);
    QVERIFY(saved(writer).isEmpty());

    QImage image(5, 5, QImage::Format_Indexed8);
    image.fill(0);
    image.setColorTable(table);
    GifImageWriter withLocalTable;
    withLocalTable.addFrame(image, -1);
    QVERIFY(saved(withLocalTable).isEmpty());
}

void Tst_GifImageWriter::localTableOnlyWhenItDiffers() {
    const QVector<QRgb> table{qRgb(0, 0, 0), qRgb(255, 255, 255)};
    QImage same(4, 4, QImage::Format_Indexed8);
    same.setColorTable(table);
    same.fill(1);
    QImage other = same;
    other.setColorTable({qRgb(9, 9, 9), qRgb(8, 8, 8)});
    QImage without(4, 4, QImage::Format_Indexed8);
    without.setColorTable({});
    without.fill(0);
    GifImageWriter writer;
    writer.setGlobalColorTable(table);
    for (const QImage &image : {same, without, other})
        writer.addFrame(image, -1);
    const GifBlocks gif = GifBlocks::parse(saved(writer));
    QCOMPARE(gif.images.size(), 3);
    QCOMPARE(gif.images[0].localColors, 0);
    QCOMPARE(gif.images[1].localColors, 0);
    QCOMPARE(gif.images[2].localColors, 2);
}

void Tst_GifImageWriter::canvasSize() {
    GifImageWriter writer;
    writer.setCanvasSize(QSize(50, 60));
    writer.addFrame(fewColors(10, 10), -1);
    const GifBlocks gif = GifBlocks::parse(saved(writer));
    QCOMPARE(gif.screen, QSize(50, 60));
    QCOMPARE(gif.images[0].rect, QRect(0, 0, 10, 10));
}

void Tst_GifImageWriter::offsetsWidenTheCanvas() {
    GifFrame frame;
    frame.image = fewColors(10, 20);
    frame.xOffset = 7;
    frame.yOffset = 300;
    GifImageWriter writer;
    writer.addFrame(fewColors(40, 5), -1);
    writer.addFrame(frame);
    const GifBlocks gif = GifBlocks::parse(saved(writer));
    QCOMPARE(gif.screen, QSize(40, 320));
    QCOMPARE(gif.images[1].rect, QRect(7, 300, 10, 20));
}

void Tst_GifImageWriter::severalFrames() {
    GifImageWriter writer;
    QVector<QImage> pictures;
    for (int i = 0; i < 3; ++i) {
        QImage picture(6, 6, QImage::Format_RGB32);
        picture.fill(qRgb(i * 100, 0, 0));
        pictures.append(picture);
        writer.addFrame(picture, 100 * (i + 1));
    }
    QByteArray bytes = saved(writer);
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer, "gif");
    for (int i = 0; i < 3; ++i) {
        COMPARE_IMAGES(reader.read(), pictures[i], "frame");
        QCOMPARE(reader.nextImageDelay(), 100 * (i + 1));
    }
    QVERIFY(!reader.canRead());
}

void Tst_GifImageWriter::interlaced() {
    GifFrame frame;
    frame.image = fewColors(33, 29);
    frame.interlace = true;
    GifImageWriter writer;
    writer.addFrame(frame);
    QVERIFY(GifBlocks::parse(saved(writer)).images[0].interlaced);
    COMPARE_IMAGES(QImage::fromData(saved(writer), "gif"), frame.image, "interlaced");
}

void Tst_GifImageWriter::refuses_data() {
    QTest::addColumn<QImage>("image");
    QTest::addColumn<int>("offset");
    QTest::newRow("null image") << QImage() << 0;
    QTest::newRow("no colours") << QImage(5, 5, QImage::Format_Indexed8) << 0;
    QTest::newRow("too wide") << QImage(65536, 1, QImage::Format_Mono) << 0;
    QTest::newRow("too high") << QImage(1, 65536, QImage::Format_Mono) << 0;
    QTest::newRow("negative offset") << fewColors(5, 5) << -1;
    QTest::newRow("offset beyond the format") << fewColors(5, 5) << 65535;
}

void Tst_GifImageWriter::refuses() {
    QFETCH(QImage, image);
    QFETCH(int, offset);
    GifFrame frame;
    frame.image = image;
    frame.xOffset = offset;
    GifImageWriter writer;
    QVERIFY(saved(writer).isEmpty()); // no frame at all
    writer.addFrame(frame);
    QVERIFY(saved(writer).isEmpty());
    // A good frame beside it does not help.
    writer.addFrame(fewColors(5, 5), -1);
    QVERIFY(saved(writer).isEmpty());
}

void Tst_GifImageWriter::widestImage() {
    const QImage picture = fewColors(65535, 2);
    const QByteArray bytes = savedSingle(picture);
    QCOMPARE(GifBlocks::parse(bytes).screen, QSize(65535, 2));
    COMPARE_IMAGES(QImage::fromData(bytes, "gif"), picture, "widest");
}

void Tst_GifImageWriter::failingDeviceGivesFalse() {
    GifImageWriter writer;
    writer.addFrame(manyColors(100, 100), -1);
    const int whole = saved(writer).size();
    QVERIFY(whole > 1000);
    for (const int room : {0, 3, 6, 12, 13, 20, 800, whole / 2, whole - 2, whole - 1}) {
        FullDevice device(room);
        QVERIFY2(!writer.save(&device, 0), qPrintable(QStringLiteral("room for %1 bytes").arg(room)));
    }
    FullDevice device(whole);
    QVERIFY(writer.save(&device, 0));
}

void Tst_GifImageWriter::savesToAFile() {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.gif"));
    GifImageWriter writer;
    writer.addFrame(fewColors(9, 9), -1);
    QVERIFY(writer.save(path, 0));
    COMPARE_IMAGES(QImage(path), fewColors(9, 9), "file");
    QVERIFY(!writer.save(folder.filePath(QStringLiteral("none/a.gif")), 0));
}

QTEST_GUILESS_MAIN(Tst_GifImageWriter)
#include "tst_gifimagewriter.moc"
