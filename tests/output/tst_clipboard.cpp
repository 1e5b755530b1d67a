#include "output/clipboard.h"
#include "support/fakeplatform.h"
#include "support/imagecompare.h"
#include "support/openedurls.h"

#include <QFile>
#include <QPainter>
#include <QPixmap>
#include <QTemporaryDir>
#include <QTest>
#include <QWidget>

class Tst_Clipboard : public QObject {
    Q_OBJECT
private slots:
    void init();

    void transparencyBecomesWhite();
    void opaquePictureStaysAsItIs_data();
    void opaquePictureStaysAsItIs();
    void devicePixelsAreCopied();
    void childWidgetMayBeTheOwner();
    void nothingGoesInWithoutPictureOrOwner();
    void failureIsTold();
    void fileIsShown();
    void folderOpensWithoutAFileManager();
    void folderOpensForAMissingFile();

private:
    FakePlatform *m_platform = nullptr;
};

void Tst_Clipboard::init() {
    m_platform = FakePlatform::install();
}

void Tst_Clipboard::transparencyBecomesWhite() {
    QImage source(3, 1, QImage::Format_ARGB32);
    source.setPixelColor(0, 0, QColor(0, 0, 0, 0));
    source.setPixelColor(1, 0, QColor(255, 0, 0, 255));
    source.setPixelColor(2, 0, QColor(0, 0, 0, 51)); // a fifth of black over white
    QWidget owner;
    QVERIFY(copyPixmapToClipboard(QPixmap::fromImage(source), &owner));
    QImage expected(3, 1, QImage::Format_RGB32);
    expected.setPixel(0, 0, qRgb(255, 255, 255));
    expected.setPixel(1, 0, qRgb(255, 0, 0));
    expected.setPixel(2, 0, qRgb(204, 204, 204));
    COMPARE_IMAGES(m_platform->clipboard, expected, "flattened");
    QVERIFY(!m_platform->clipboard.hasAlphaChannel());
}

void Tst_Clipboard::opaquePictureStaysAsItIs_data() {
    QTest::addColumn<int>("format");
    QTest::newRow("32 bits") << int(QImage::Format_RGB32);
    QTest::newRow("indexed") << int(QImage::Format_Indexed8);
    QTest::newRow("mono") << int(QImage::Format_Mono);
}

void Tst_Clipboard::opaquePictureStaysAsItIs() {
    QFETCH(int, format);
    QImage source(5, 4, QImage::Format_RGB32);
    source.fill(Qt::black);
    source.setPixel(2, 2, qRgb(255, 255, 255));
    QWidget owner;
    QVERIFY(
        copyPixmapToClipboard(QPixmap::fromImage(source.convertToFormat(QImage::Format(format))), &owner));
    COMPARE_IMAGES(m_platform->clipboard, source, "opaque");
}

void Tst_Clipboard::devicePixelsAreCopied() {
    for (const bool transparent : {false, true}) {
        QImage image(40, 20, QImage::Format_ARGB32);
        image.fill(transparent ? Qt::transparent : Qt::blue);
        QPainter(&image).fillRect(30, 5, 7, 12, Qt::red);
        QPixmap pixmap = QPixmap::fromImage(image);
        pixmap.setDevicePixelRatio(2.0);
        QWidget owner;
        QVERIFY(copyPixmapToClipboard(pixmap, &owner));
        QImage expected(40, 20, QImage::Format_RGB32);
        expected.fill(transparent ? Qt::white : Qt::blue);
        QPainter(&expected).fillRect(30, 5, 7, 12, Qt::red);
        COMPARE_IMAGES(m_platform->clipboard, expected, "device pixels");
    }
}

void Tst_Clipboard::childWidgetMayBeTheOwner() {
    QWidget window;
    QWidget child(&window);
    QVERIFY(copyPixmapToClipboard(QPixmap(3, 3), &child));
    QVERIFY(!m_platform->clipboard.isNull());
}

void Tst_Clipboard::nothingGoesInWithoutPictureOrOwner() {
    QWidget owner;
    QVERIFY(!copyPixmapToClipboard(QPixmap(), &owner));
    QVERIFY(!copyPixmapToClipboard(QPixmap(3, 3), nullptr));
    QVERIFY(m_platform->clipboard.isNull());
}

void Tst_Clipboard::failureIsTold() {
    m_platform->clipboardWorks = false;
    QWidget owner;
    QVERIFY(!copyPixmapToClipboard(QPixmap(3, 3), &owner));
}

void Tst_Clipboard::fileIsShown() {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.png"));
    QVERIFY(QFile(path).open(QIODevice::WriteOnly));
    OpenedUrls opened;
    showInFileManager(path);
    QCOMPARE(m_platform->shownFiles, QStringList{path});
    QVERIFY(opened.urls.isEmpty());
}

void Tst_Clipboard::folderOpensWithoutAFileManager() {
    m_platform->fileManagerWorks = false;
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.png"));
    QVERIFY(QFile(path).open(QIODevice::WriteOnly));
    OpenedUrls opened;
    showInFileManager(path);
    QCOMPARE(opened.urls, QVector<QUrl>{QUrl::fromLocalFile(folder.path())});
}

void Tst_Clipboard::folderOpensForAMissingFile() {
    const QTemporaryDir folder;
    OpenedUrls opened;
    showInFileManager(folder.filePath(QStringLiteral("gone.png")));
    QVERIFY(m_platform->shownFiles.isEmpty());
    QCOMPARE(opened.urls, QVector<QUrl>{QUrl::fromLocalFile(folder.path())});
}

QTEST_MAIN(Tst_Clipboard)
#include "tst_clipboard.moc"
