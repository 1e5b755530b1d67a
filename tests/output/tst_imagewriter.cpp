#include "output/imagewriter.h"
#include "support/filesizelimit.h"
#include "support/imagecompare.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QTemporaryDir>
#include <QTest>
#include <QtConcurrent>

#include <linux/capability.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <random>

namespace {

QImage picture() {
    constexpr int width = 60;
    constexpr int height = 40;
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, qRgb(x * 255 / width, y * 255 / height, (x * 7 + y * 13) % 256));
    }
    return image;
}

/// A picture that no encoder makes small.
QImage noise() {
    QImage image(400, 300, QImage::Format_RGB32);
    std::mt19937 random(1);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, 0xff000000 | random());
    }
    return image;
}

/// The toolkit's own encoder with that quality; negative: none given.
QByteArray encoded(const QImage &image, const char *format, int quality) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format, quality);
    return buffer.data();
}

QByteArray contentOf(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void put(const QString &path, const QByteArray &bytes) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

QStringList entries(const QString &folder) {
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

int modeOf(const QString &path) {
    struct stat info;
    return ::stat(qPrintable(path), &info) == 0 ? int(info.st_mode & 07777) : -1;
}

/// Gives up the right to pass over file permissions, so that the tests mean the same when root runs them.
bool dropFilePrivileges() {
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct data[2]{};
    if (::syscall(SYS_capget, &header, data) != 0)
        return false;
    const quint32 dropped = ~(1u << CAP_DAC_OVERRIDE | 1u << CAP_DAC_READ_SEARCH | 1u << CAP_FOWNER);
    data[0].effective &= dropped;
    data[0].permitted &= dropped;
    data[0].inheritable &= dropped;
    return ::syscall(SYS_capset, &header, data) == 0;
}

/// Closes a folder for writing as long as it lives.
class ReadOnlyFolder {
public:
    explicit ReadOnlyFolder(const QString &path) : m_path(path.toLocal8Bit()) { ::chmod(m_path, 0555); }
    ~ReadOnlyFolder() { ::chmod(m_path, 0755); }

private:
    QByteArray m_path;
};

} // namespace

class Tst_ImageWriter : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void init();

    void qualityByFormat_data();
    void qualityByFormat();
    void pinQualityByFormat_data();
    void pinQualityByFormat();
    void pinIsPrivate_data();
    void pinIsPrivate();
    void pixelsSurvive_data();
    void pixelsSurvive();
    void gifGoesThroughOurWriter_data();
    void gifGoesThroughOurWriter();
    void refuses_data();
    void refuses();
    void replacesTheOldFile();
    void newFileHasTheUsersPermissions_data();
    void newFileHasTheUsersPermissions();
    void oldFileKeepsItsPermissions();
    void followsSymbolicLinks();
    void followsALinkToNothing();
    void fullDiskLeavesTheOldFile_data();
    void fullDiskLeavesTheOldFile();
    void fullDiskLeavesNoNewFile_data();
    void fullDiskLeavesNoNewFile();
    void fullDiskRestoresAFileWrittenInPlace();
    void closedFolderWithAnOpenFile();
    void closedFolderWithoutAFile();
    void closedFile();
    void mountedFile();
    void namesUpToTheLimit();
    void otherThreadsMayWrite();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void Tst_ImageWriter::initTestCase() {
    QVERIFY(dropFilePrivileges());
}

void Tst_ImageWriter::init() {
    m_folder = std::make_unique<QTemporaryDir>();
    ::umask(022);
}

void Tst_ImageWriter::qualityByFormat_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("quality");
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<int>("expected");
    QTest::newRow("png, none") << "a.png" << -1 << QByteArray("png") << 70;
    QTest::newRow("png, low") << "a.png" << 0 << QByteArray("png") << 70;
    QTest::newRow("png, best") << "a.PNG" << 100 << QByteArray("png") << 70;
    QTest::newRow("jpg, as told") << "a.jpg" << 37 << QByteArray("jpg") << 37;
    QTest::newRow("jpg, capitals") << "a.JPG" << 91 << QByteArray("jpg") << 91;
    QTest::newRow("jpg, none") << "a.jpg" << -1 << QByteArray("jpg") << -1;
    QTest::newRow("jpeg is no jpg") << "a.jpeg" << -1 << QByteArray("jpeg") << 0;
    QTest::newRow("jpeg, as told") << "a.jpeg" << 50 << QByteArray("jpeg") << 50;
    QTest::newRow("webp, none") << "a.webp" << -1 << QByteArray("webp") << 100;
    QTest::newRow("webp, capitals") << "a.WebP" << -1 << QByteArray("webp") << 100;
    QTest::newRow("webp, as told") << "a.webp" << 40 << QByteArray("webp") << 40;
    QTest::newRow("bmp") << "a.bmp" << -1 << QByteArray("bmp") << 0;
    QTest::newRow("tiff") << "a.tif" << -1 << QByteArray("tif") << 0;
    QTest::newRow("last suffix counts") << "a.jpg.bmp" << -1 << QByteArray("bmp") << 0;
    QTest::newRow("more than all") << "a.jpg" << 500 << QByteArray("jpg") << 100;
}

void Tst_ImageWriter::qualityByFormat() {
    QFETCH(QString, name);
    QFETCH(int, quality);
    QFETCH(QByteArray, format);
    QFETCH(int, expected);
    QVERIFY(writeImage(picture(), path(name), quality));
    QCOMPARE(contentOf(path(name)), encoded(picture(), format.constData(), expected));
}

void Tst_ImageWriter::pinQualityByFormat_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<int>("expected");
    QTest::newRow("png") << "a.png" << QByteArray("png") << 70;
    QTest::newRow("jpg") << "a.jpg" << QByteArray("jpg") << 100;
    QTest::newRow("jpeg") << "a.jpeg" << QByteArray("jpeg") << 100;
    QTest::newRow("webp") << "a.webp" << QByteArray("webp") << 100;
    QTest::newRow("bmp") << "a.bmp" << QByteArray("bmp") << 100;
}

void Tst_ImageWriter::pinQualityByFormat() {
    QFETCH(QString, name);
    QFETCH(QByteArray, format);
    QFETCH(int, expected);
    QVERIFY(writePinImage(picture(), path(name)));
    QCOMPARE(contentOf(path(name)), encoded(picture(), format.constData(), expected));
}

void Tst_ImageWriter::pinIsPrivate_data() {
    QTest::addColumn<int>("before"); // rights of the file that stands there, -1 for none
    QTest::newRow("new") << -1;
    QTest::newRow("open to all") << 0666;
    QTest::newRow("private") << 0600;
}

void Tst_ImageWriter::pinIsPrivate() {
    QFETCH(int, before);
    const QString pin = path(QStringLiteral("0.png"));
    if (before >= 0) {
        QVERIFY(picture().save(pin));
        QCOMPARE(::chmod(qPrintable(pin), mode_t(before)), 0);
    }
    const mode_t usual = ::umask(0);
    const bool isWritten = writePinImage(picture(), pin);
    ::umask(usual);
    QVERIFY(isWritten);
    QCOMPARE(modeOf(pin), 0600);
}

void Tst_ImageWriter::pixelsSurvive_data() {
    QTest::addColumn<QString>("name");
    QTest::newRow("png") << "a.png";
    QTest::newRow("bmp") << "a.bmp";
    QTest::newRow("webp") << "a.webp";
    QTest::newRow("tiff") << "a.tiff";
}

void Tst_ImageWriter::pixelsSurvive() {
    QFETCH(QString, name);
    QVERIFY(writeImage(picture(), path(name), -1));
    COMPARE_IMAGES(QImage(path(name)), picture(), "written");
}

void Tst_ImageWriter::gifGoesThroughOurWriter_data() {
    QTest::addColumn<QString>("name");
    QTest::newRow("small letters") << "shot.gif";
    QTest::newRow("capitals") << "shot.GIF";
}

void Tst_ImageWriter::gifGoesThroughOurWriter() {
    QFETCH(QString, name);
    QVERIFY(writeImage(picture(), path(name), 10));
    const QByteArray bytes = contentOf(path(name));
    QVERIFY(bytes.startsWith("GIF89a"));
    QCOMPARE(bytes.count("NETSCAPE2.0"), 1);
    COMPARE_IMAGES(QImage(path(name)), picture().convertToFormat(QImage::Format_Indexed8), "gif");
    QVERIFY(writePinImage(picture(), path(QStringLiteral("pin.gif"))));
    QCOMPARE(contentOf(path(QStringLiteral("pin.gif"))), bytes);
}

void Tst_ImageWriter::refuses_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("nullImage");
    QTest::newRow("null image") << "a.png" << true;
    QTest::newRow("null image as gif") << "a.gif" << true;
    QTest::newRow("no suffix") << "a" << false;
    QTest::newRow("dot at the end") << "a." << false;
    QTest::newRow("unknown suffix") << "a.unknown" << false;
    QTest::newRow("suffix beyond latin") << QStringLiteral("a.사진") << false;
    QTest::newRow("missing folder") << "none/a.png" << false;
    QTest::newRow("missing folder for gif") << "none/a.gif" << false;
}

void Tst_ImageWriter::refuses() {
    QFETCH(QString, name);
    QFETCH(bool, nullImage);
    QVERIFY(!writeImage(nullImage ? QImage() : picture(), path(name), -1));
    QCOMPARE(entries(m_folder->path()), QStringList());
    QVERIFY(!writeImage(picture(), QString(), -1));
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("folder.png")));
    QVERIFY(!writeImage(picture(), path(QStringLiteral("folder.png")), -1));
    QCOMPARE(::mkfifo(qPrintable(path(QStringLiteral("pipe.png"))), 0600), 0);
    QVERIFY(!writeImage(picture(), path(QStringLiteral("pipe.png")), -1));
}

void Tst_ImageWriter::replacesTheOldFile() {
    put(path(QStringLiteral("a.png")), QByteArray(1000000, 'x'));
    QVERIFY(writeImage(picture(), path(QStringLiteral("a.png")), -1));
    QCOMPARE(contentOf(path(QStringLiteral("a.png"))), encoded(picture(), "png", 70));
    QCOMPARE(entries(m_folder->path()), QStringList{QStringLiteral("a.png")});
}

void Tst_ImageWriter::newFileHasTheUsersPermissions_data() {
    QTest::addColumn<int>("mask");
    QTest::addColumn<int>("mode");
    QTest::newRow("usual") << 022 << 0644;
    QTest::newRow("group writes") << 002 << 0664;
    QTest::newRow("private") << 077 << 0600;
}

void Tst_ImageWriter::newFileHasTheUsersPermissions() {
    QFETCH(int, mask);
    ::umask(mode_t(mask));
    for (const char *name : {"a.png", "a.gif"}) {
        QVERIFY(writeImage(picture(), path(QLatin1String(name)), -1));
        QTEST(modeOf(path(QLatin1String(name))), "mode");
    }
}

void Tst_ImageWriter::oldFileKeepsItsPermissions() {
    put(path(QStringLiteral("a.png")), "old");
    QCOMPARE(::chmod(qPrintable(path(QStringLiteral("a.png"))), 0640), 0);
    QVERIFY(writeImage(picture(), path(QStringLiteral("a.png")), -1));
    QCOMPARE(modeOf(path(QStringLiteral("a.png"))), 0640);
}

void Tst_ImageWriter::followsSymbolicLinks() {
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("elsewhere")));
    put(path(QStringLiteral("elsewhere/real.png")), "old");
    QVERIFY(QFile::link(QStringLiteral("elsewhere/real.png"), path(QStringLiteral("link.png"))));
    QVERIFY(writeImage(picture(), path(QStringLiteral("link.png")), -1));
    QVERIFY(QFileInfo(path(QStringLiteral("link.png"))).isSymLink());
    QVERIFY(!QFileInfo(path(QStringLiteral("elsewhere/real.png"))).isSymLink());
    QCOMPARE(contentOf(path(QStringLiteral("elsewhere/real.png"))), encoded(picture(), "png", 70));
}

void Tst_ImageWriter::followsALinkToNothing() {
    QVERIFY(QFile::link(QStringLiteral("real.png"), path(QStringLiteral("link.png"))));
    QVERIFY(writeImage(picture(), path(QStringLiteral("link.png")), -1));
    QVERIFY(QFileInfo(path(QStringLiteral("link.png"))).isSymLink());
    QCOMPARE(contentOf(path(QStringLiteral("real.png"))), encoded(picture(), "png", 70));
}

void Tst_ImageWriter::fullDiskLeavesTheOldFile_data() {
    QTest::addColumn<QString>("name");
    for (const char *name : {"a.png", "a.gif", "a.jpg", "a.bmp", "a.webp"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void Tst_ImageWriter::fullDiskLeavesTheOldFile() {
    QFETCH(QString, name);
    put(path(name), "the old picture");
    {
        const FileSizeLimit limit(2000);
        QVERIFY(!writeImage(noise(), path(name), 100));
    }
    QCOMPARE(contentOf(path(name)), QByteArray("the old picture"));
    QCOMPARE(entries(m_folder->path()), QStringList{name});
}

void Tst_ImageWriter::fullDiskLeavesNoNewFile_data() {
    fullDiskLeavesTheOldFile_data();
}

void Tst_ImageWriter::fullDiskLeavesNoNewFile() {
    QFETCH(QString, name);
    {
        const FileSizeLimit limit(2000);
        QVERIFY(!writeImage(noise(), path(name), 100));
    }
    QCOMPARE(entries(m_folder->path()), QStringList());
}

void Tst_ImageWriter::fullDiskRestoresAFileWrittenInPlace() {
    const QByteArray old(1500, 'o');
    put(path(QStringLiteral("a.bmp")), old);
    {
        const ReadOnlyFolder closed(m_folder->path());
        const FileSizeLimit limit(2000);
        QVERIFY(!writeImage(noise(), path(QStringLiteral("a.bmp")), -1));
    }
    QCOMPARE(contentOf(path(QStringLiteral("a.bmp"))), old);
}

void Tst_ImageWriter::closedFolderWithAnOpenFile() {
    put(path(QStringLiteral("a.png")), QByteArray(1000000, 'x'));
    {
        const ReadOnlyFolder closed(m_folder->path());
        QVERIFY(writeImage(picture(), path(QStringLiteral("a.png")), -1));
    }
    QCOMPARE(contentOf(path(QStringLiteral("a.png"))), encoded(picture(), "png", 70));
}

void Tst_ImageWriter::closedFolderWithoutAFile() {
    const ReadOnlyFolder closed(m_folder->path());
    QVERIFY(!writeImage(picture(), path(QStringLiteral("a.png")), -1));
    QCOMPARE(entries(m_folder->path()), QStringList());
}

void Tst_ImageWriter::closedFile() {
    put(path(QStringLiteral("a.png")), "old");
    QCOMPARE(::chmod(qPrintable(path(QStringLiteral("a.png"))), 0444), 0);
    QVERIFY(!writeImage(picture(), path(QStringLiteral("a.png")), -1));
    QCOMPARE(contentOf(path(QStringLiteral("a.png"))), QByteArray("old"));
}

void Tst_ImageWriter::mountedFile() {
    const QByteArray target = path(QStringLiteral("a.png")).toLocal8Bit();
    const QByteArray source = path(QStringLiteral("source")).toLocal8Bit();
    put(path(QStringLiteral("a.png")), "below");
    put(path(QStringLiteral("source")), "mounted");
    if (::mount(source, target, nullptr, MS_BIND, nullptr) != 0) {
        QVERIFY2(qgetenv("CI") != "true", "the test of a mounted file needs the right to mount");
        QSKIP("needs the right to mount");
    }
    const bool written = writeImage(picture(), path(QStringLiteral("a.png")), -1);
    ::umount(target);
    QVERIFY(written);
    QCOMPARE(contentOf(path(QStringLiteral("source"))), encoded(picture(), "png", 70));
    QCOMPARE(entries(m_folder->path()), (QStringList{QStringLiteral("a.png"), QStringLiteral("source")}));
}

void Tst_ImageWriter::namesUpToTheLimit() {
    // 255 bytes, 83 Korean letters among them: no room for another letter in a temporary name.
    const QString name = QString(83, QChar(0xac00)) + QStringLiteral("aa.png");
    QCOMPARE(name.toUtf8().size(), 255);
    for (int write = 0; write < 2; ++write) { // the first makes the file, the second replaces it
        QVERIFY(writeImage(picture(), path(name), -1));
        QCOMPARE(contentOf(path(name)), encoded(picture(), "png", 70));
    }
}

void Tst_ImageWriter::otherThreadsMayWrite() {
    QList<QFuture<bool>> writes;
    const char *const suffixes[] = {"png", "gif", "bmp", "jpg", "webp"};
    for (int i = 0; i < 20; ++i) {
        const QString target = path(QStringLiteral("%1.%2").arg(i).arg(QLatin1String(suffixes[i % 5])));
        writes.append(QtConcurrent::run([target] { return writeImage(picture(), target, 90); }));
    }
    for (QFuture<bool> &write : writes)
        QVERIFY(write.result());
    QCOMPARE(entries(m_folder->path()).size(), 20);
}

QTEST_GUILESS_MAIN(Tst_ImageWriter)
#include "tst_imagewriter.moc"
