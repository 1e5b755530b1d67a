#include "platform/linux/keptimage.h"
#include "support/filesizelimit.h"

#include <QDir>
#include <QImage>
#include <QtTest>

#include <unistd.h>

namespace {

constexpr int HeaderSize = 16;

int openDescriptors() {
    return QDir(QStringLiteral("/proc/self/fd"))
        .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
        .size();
}

QImage testPicture() {
    QImage picture(3, 2, QImage::Format_RGB32);
    for (int y = 0; y < 2; ++y) {
        for (int x = 0; x < 3; ++x)
            picture.setPixel(x, y, qRgb(10 * x, 100 * y, 7));
    }
    return picture;
}

} // namespace

class Tst_KeptImage : public QObject {
    Q_OBJECT
private slots:
    void pictureAndTimeComeBack();
    void fileThatIsTornIsNoPicture_data();
    void fileThatIsTornIsNoPicture();
    void withoutRoomThereIsNoFile_data();
    void withoutRoomThereIsNoFile();
};

void Tst_KeptImage::pictureAndTimeComeBack() {
    const int file = platform::writeKeptImage(testPicture(), 4000000000U);
    QVERIFY(file >= 0);
    quint32 time = 0;
    QCOMPARE(platform::readKeptImage(file, &time), testPicture());
    QCOMPARE(time, 4000000000U);
    ::close(file);
}

void Tst_KeptImage::fileThatIsTornIsNoPicture_data() {
    QTest::addColumn<int>("size");
    QTest::newRow("nothing") << 0;
    QTest::newRow("a part of the header") << HeaderSize - 1;
    QTest::newRow("no rows") << HeaderSize;
    QTest::newRow("all but a byte") << HeaderSize + 3 * 2 * 4 - 1;
}

void Tst_KeptImage::fileThatIsTornIsNoPicture() {
    QFETCH(int, size);
    const int file = platform::writeKeptImage(testPicture(), 1);
    QCOMPARE(::ftruncate(file, size), 0);
    quint32 time = 0;
    QVERIFY(platform::readKeptImage(file, &time).isNull());
    ::close(file);
}

void Tst_KeptImage::withoutRoomThereIsNoFile_data() {
    QTest::addColumn<int>("room");
    QTest::newRow("for nothing") << 0;
    QTest::newRow("for the header") << HeaderSize;
    QTest::newRow("for the first row") << HeaderSize + 3 * 4;
}

void Tst_KeptImage::withoutRoomThereIsNoFile() {
    QFETCH(int, room);
    const int before = openDescriptors();
    int file = 0;
    {
        const FileSizeLimit limit(static_cast<rlim_t>(room));
        file = platform::writeKeptImage(testPicture(), 1);
    }
    QCOMPARE(file, -1);
    QCOMPARE(openDescriptors(), before);
}

QTEST_GUILESS_MAIN(Tst_KeptImage)
#include "tst_keptimage.moc"
