#include "ipc/imagedecoder.h"
#include "support/imagecompare.h"
#include "understatedformat.h"

#include <QBuffer>
#include <QFile>
#include <QPainter>
#include <QTest>
#include <QtEndian>
#include <QtPlugin>

Q_IMPORT_PLUGIN(UnderstatedFormat)

namespace {

constexpr double Budget = 1024.0;
/// Far below what any of the claimed sizes would take, far above what reading a header takes.
constexpr qint64 AllowedGrowthKilobytes = 128 * 1024;

template <typename T> QByteArray littleEndian(T value) {
    QByteArray bytes(sizeof(T), '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

template <typename T> QByteArray bigEndian(T value) {
    QByteArray bytes(sizeof(T), '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

quint32 crc32(const QByteArray &bytes) {
    quint32 crc = 0xffffffff;
    for (const char byte : bytes) {
        crc ^= quint8(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (crc & 1 ? 0xedb88320 : 0);
    }
    return ~crc;
}

QByteArray pngChunk(const QByteArray &type, const QByteArray &data) {
    return bigEndian(quint32(data.size())) + type + data + bigEndian(crc32(type + data));
}

/// The kinds of colour that PNG knows.
enum PngColor : char { PngRgb = 2, PngGrayAlpha = 4, PngRgba = 6 };

QByteArray png(quint32 width, quint32 height, PngColor color = PngRgba, char channelBits = 8) {
    const QByteArray header =
        bigEndian(width) + bigEndian(height) + channelBits + char(color) + QByteArray(3, '\0');
    return QByteArray("\x89PNG\r\n\x1a\n", 8) + pngChunk("IHDR", header) +
           pngChunk("IDAT", qCompress(QByteArray(100, '\0')).mid(4)) + pngChunk("IEND", QByteArray());
}

QByteArray dib(qint32 width, qint32 height) {
    return littleEndian(quint32(40)) + littleEndian(width) + littleEndian(height) + littleEndian(quint16(1)) +
           littleEndian(quint16(32)) + QByteArray(24, '\0');
}

QByteArray bmp(qint32 width, qint32 height) {
    return "BM" + littleEndian(quint32(154)) + QByteArray(4, '\0') + littleEndian(quint32(54)) +
           dib(width, height) + QByteArray(100, '\0');
}

QByteArray gif(quint16 width, quint16 height) {
    return "GIF89a" + littleEndian(width) + littleEndian(height) +
           QByteArray("\x80\0\0\0\0\0\xff\xff\xff", 9) + "," + QByteArray(4, '\0') + littleEndian(width) +
           littleEndian(height) + QByteArray("\0\x02\x02\x44\x01\0;", 7);
}

/// One frame of four pixels on a screen of that size. The reader of the format tells the size of the frame,
/// and decodes to that of the screen.
QByteArray gifOfSmallFrame(quint16 width, quint16 height) {
    return "GIF89a" + littleEndian(width) + littleEndian(height) +
           QByteArray("\x80\0\0\0\0\0\xff\xff\xff", 9) + QByteArray(",\0\0\0\0\x02\0\x02\0\0", 10) +
           QByteArray("\x02\x03\x84\x8f\x05\0;", 7);
}

QByteArray webp(quint32 width, quint32 height) {
    const QByteArray data = littleEndian(quint32(10)) + "\x2f" +
                            littleEndian(quint32((width - 1) | (height - 1) << 14)) + QByteArray(5, '\0');
    return "RIFF" + littleEndian(quint32(data.size() + 8)) + "WEBPVP8L" + data;
}

QByteArray tiff(quint32 width, quint32 height) {
    const struct {
        quint16 tag;
        quint32 value;
    } tags[] = {{256, width}, {257, height}, {258, 8},      {259, 1}, {262, 1},
                {273, 8},     {277, 1},      {278, height}, {279, 10}};
    QByteArray bytes = QByteArray("II*\0\x08\0\0\0", 8) + littleEndian(quint16(std::size(tags)));
    for (const auto &entry : tags)
        bytes += littleEndian(entry.tag) + littleEndian(quint16(4)) + littleEndian(quint32(1)) +
                 littleEndian(entry.value);
    return bytes + QByteArray(60, '\0');
}

QByteArray jpeg(quint16 width, quint16 height) {
    return QByteArray("\xff\xd8\xff\xc0\x00\x11\x08", 7) + bigEndian(height) + bigEndian(width) +
           QByteArray("\x03\x01\x11\0\x02\x11\0\x03\x11\0\xff\xda\x00\x0c\x03\x01\0\x02\0\x03\0\0\x3f\0", 24);
}

QByteArray icon(const QByteArray &picture) {
    return QByteArray("\0\0\x01\0\x01\0\x10\x10\0\0\x01\0\x20\0", 14) +
           littleEndian(quint32(picture.size())) + littleEndian(quint32(22)) + picture;
}

QByteArray appleIcon(const QByteArray &picture) {
    return "icns" + bigEndian(quint32(picture.size() + 16)) + "ic10" +
           bigEndian(quint32(picture.size() + 8)) + picture;
}

/// The largest address space that the process ever had: memory that is taken and not touched counts, too.
qint64 peakKilobytes() {
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmPeak:"))
            return line.simplified().split(' ').value(1).toLongLong();
    }
    return 0;
}

QImage testPicture(int width, int height) {
    QImage image(width, height, QImage::Format_ARGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, qRgba(x * 5 % 256, y * 7 % 256, (x + y) % 256, 255));
    }
    return image;
}

QByteArray encoded(const QImage &image, const char *format) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return image.save(&buffer, format) ? buffer.data() : QByteArray();
}

QImage decode(QByteArray bytes, double limit = Budget) {
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return decodeImage(&buffer, limit);
}

} // namespace

class Tst_ImageDecoder : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void decodesWhateverTheFormat_data();
    void decodesWhateverTheFormat();
    void refusesAbsurdSizesWithoutTakingMemory_data();
    void refusesAbsurdSizesWithoutTakingMemory();
    void survivesTruncation_data();
    void survivesTruncation();
    void refusesWhatIsNoImage_data();
    void refusesWhatIsNoImage();
    void acceptsExactlyTheLimit();
    void keepsToTheLimitOfWhatIsDecoded_data();
    void keepsToTheLimitOfWhatIsDecoded();
    void countsWholeMegabytes_data();
    void countsWholeMegabytes();
};

void Tst_ImageDecoder::initTestCase() {
    QVERIFY2(peakKilobytes() > 0, "the test needs to see the memory of its process");
    decode(encoded(testPicture(10, 10), "png")); // loads the plug-ins
}

void Tst_ImageDecoder::decodesWhateverTheFormat_data() {
    QTest::addColumn<QByteArray>("format");
    for (const char *format : {"png", "bmp", "tiff", "ppm", "ico"})
        QTest::newRow(format) << QByteArray(format);
}

void Tst_ImageDecoder::decodesWhateverTheFormat() {
    QFETCH(QByteArray, format);
    const QImage picture = testPicture(61, 37);
    COMPARE_IMAGES(decode(encoded(picture, format.constData())), picture, "decoded");
}

void Tst_ImageDecoder::refusesAbsurdSizesWithoutTakingMemory_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("png") << png(100000, 100000);
    QTest::newRow("png just above the budget") << png(16384, 16640);
    // By 32 bits a pixel these would just be within the budget.
    QTest::newRow("png of wide pixels") << png(16384, 16384, PngRgba, 16);
    QTest::newRow("png of wide pixels without alpha") << png(16384, 16384, PngRgb, 16);
    QTest::newRow("png of wide grey pixels") << png(16384, 16384, PngGrayAlpha, 16);
    QTest::newRow("icon with a png of wide pixels") << icon(png(16384, 16384, PngRgba, 16));
    QTest::newRow("bmp") << bmp(100000, 100000);
    QTest::newRow("bmp, top down") << bmp(20000, -20000);
    QTest::newRow("gif") << gif(65535, 65535);
    QTest::newRow("webp") << webp(16384, 16384).replace("VP8L", "VP8X");
    QTest::newRow("tiff") << tiff(100000, 100000);
    QTest::newRow("jpeg") << jpeg(65500, 65500);
    QTest::newRow("ppm") << QByteArray("P6 20000 20000 255\n") + QByteArray(100, '\0');
    QTest::newRow("xpm") << QByteArray("/* XPM */\nstatic char *a[] = {\n\"20000 20000 2 1\",\n"
                                       "\"a c #000000\",\"b c #ffffff\",\n\"ab\"};");
    QTest::newRow("svg") << QByteArray("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"20000\" "
                                       "height=\"20000\"></svg>");
    QTest::newRow("icon with a huge png") << icon(png(20000, 20000));
    QTest::newRow("icon whose picture is longer than the file")
        << icon(png(16, 16)).replace(14, 4, "\xff\xff\xff\x7f");
    QTest::newRow("icon with a huge bitmap") << icon(dib(20000, 40000) + QByteArray(100, '\0'));
    QTest::newRow("animation that tells no size")
        << QByteArray("\x8aMNG\r\n\x1a\n") +
               pngChunk("MHDR", bigEndian(quint32(20000)) + bigEndian(quint32(20000)) + QByteArray(20, '\0'));
    QTest::newRow("icon that tells no size") << appleIcon(png(20000, 20000));
}

void Tst_ImageDecoder::refusesAbsurdSizesWithoutTakingMemory() {
    QFETCH(QByteArray, bytes);
    const qint64 before = peakKilobytes();
    QVERIFY(decode(bytes).isNull());
    QVERIFY2(peakKilobytes() - before < AllowedGrowthKilobytes,
             qPrintable(QStringLiteral("took %1 KB").arg(peakKilobytes() - before)));
}

void Tst_ImageDecoder::survivesTruncation_data() {
    QTest::addColumn<QByteArray>("format");
    for (const char *format : {"png", "bmp", "jpg", "tiff", "webp", "ppm", "ico"})
        QTest::newRow(format) << QByteArray(format);
}

void Tst_ImageDecoder::survivesTruncation() {
    QFETCH(QByteArray, format);
    const QByteArray whole = encoded(testPicture(40, 30), format.constData());
    QVERIFY(!whole.isEmpty());
    // What a cut image gives is the decoder's choice, but never pixels beyond its size.
    for (int length = 0; length < whole.size(); length += qMax(1, whole.size() / 97)) {
        const QImage image = decode(whole.left(length));
        QVERIFY(image.isNull() || image.width() * image.height() <= 40 * 30);
    }
    QVERIFY(decode(whole.left(8)).isNull());
}

void Tst_ImageDecoder::refusesWhatIsNoImage_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("text") << QByteArray("capture me if you can");
    QTest::newRow("zeros") << QByteArray(4096, '\0');
    QTest::newRow("jpeg without a header") << QByteArray("\xff\xd8\x02\x02\0\0", 6);
    QTest::newRow("png of no width") << png(0, 10);
    QTest::newRow("png of negative width") << png(0xffffff00, 10);
    QTest::newRow("icon without a picture") << icon(QByteArray());
    const QByteArray picture = dib(16, 32) + QByteArray(100, '\0');
    QTest::newRow("icon whose picture lies elsewhere") << icon(picture).replace(18, 4, "\xff\xff\xff\x7f");
    QTest::newRow("icon whose picture ends in its header") << icon(picture.left(24));
    QTest::newRow("icon that ends in its directory") << icon(picture).left(21);
}

void Tst_ImageDecoder::refusesWhatIsNoImage() {
    QFETCH(QByteArray, bytes);
    QVERIFY(decode(bytes).isNull());
}

void Tst_ImageDecoder::acceptsExactlyTheLimit() {
    const QByteArray twoMegabytes = encoded(testPicture(1024, 512), "png");
    QCOMPARE(decode(twoMegabytes, 2.0).size(), QSize(1024, 512));
    QVERIFY(decode(twoMegabytes, 1.0).isNull());
}

// 4 bytes * 2100 * 2100 are 16.8 megabytes, 4 * 12000 * 12000 are 549.3, 4 * 65535 * 2000 are 499.9; the
// frame alone takes a few bytes.
void Tst_ImageDecoder::keepsToTheLimitOfWhatIsDecoded_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<double>("limit");
    QTest::addColumn<QSize>("size");
    QTest::newRow("gif, within") << gifOfSmallFrame(2100, 2100) << 16.0 << QSize(2100, 2100);
    QTest::newRow("gif, beyond") << gifOfSmallFrame(12000, 12000) << 548.0 << QSize();
    QTest::newRow("gif, beyond in width") << gifOfSmallFrame(65535, 2000) << 498.0 << QSize();
    QTest::newRow("gif, beyond in height") << gifOfSmallFrame(2000, 65535) << 498.0 << QSize();
    // Where the screen tells nothing the frame counts.
    QTest::newRow("gif without a height, within") << gifOfSmallFrame(2100, 0) << 0.0 << QSize(2100, 2);
    QTest::newRow("another format, within") << QByteArray(UnderstatedSignature) << 1.0 << QSize(512, 512);
    QTest::newRow("another format, beyond") << QByteArray(UnderstatedSignature) << 0.0 << QSize();
}

void Tst_ImageDecoder::keepsToTheLimitOfWhatIsDecoded() {
    QFETCH(QByteArray, bytes);
    QFETCH(double, limit);
    QFETCH(QSize, size);
    const qint64 before = peakKilobytes();
    const QImage image = decode(bytes, limit);
    QCOMPARE(image.isNull() ? QSize() : image.size(), size);
    QVERIFY2(peakKilobytes() - before < AllowedGrowthKilobytes,
             qPrintable(QStringLiteral("took %1 KB").arg(peakKilobytes() - before)));
}

void Tst_ImageDecoder::countsWholeMegabytes_data() {
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::addColumn<int>("depth");
    QTest::addColumn<double>("megabytes");
    QTest::newRow("244.14") << 8000 << 8000 << 32 << 244.0;
    QTest::newRow("just below one") << 511 << 512 << 32 << 0.0;
    QTest::newRow("exactly one") << 512 << 512 << 32 << 1.0;
    QTest::newRow("bits that fill no byte") << 8000 << 8000 << 1 << 0.0;
    QTest::newRow("beyond 32 bits") << 100000 << 100000 << 32 << 38146.0;
    QTest::newRow("null") << 0 << 0 << 0 << 0.0;
}

void Tst_ImageDecoder::countsWholeMegabytes() {
    QFETCH(int, width);
    QFETCH(int, height);
    QFETCH(int, depth);
    QTEST(imageMegabytes(width, height, depth), "megabytes");
}

QTEST_GUILESS_MAIN(Tst_ImageDecoder)
#include "tst_imagedecoder.moc"
