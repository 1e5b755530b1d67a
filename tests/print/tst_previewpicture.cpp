#include "print/previewpicture.h"
#include "support/literals.h"

#include <QtTest>

class Tst_PreviewPicture : public QObject {
    Q_OBJECT
private slots:
    void nothingWithoutPaper();
    void sheetHasEdges();
    void imageFillsItsTarget();
    void partOfTheImageIsDrawn();
    void imageIsSmoothed();
    void smallImageLosesNoLine_data();
    void smallImageLosesNoLine();
    void nextImageIsDrawn();
    void marginsAreDashed();
    void frameOnRequest();
    void noFrameWithoutImage();
    void grayIsEverything();

private:
    /// A sheet of 100 by 120 with margins of 10.
    static PreviewLayout layout(const QRectF &target, const QRectF &source) {
        return {{100.7, 120.2}, QRectF(10.9, 10.9, 80, 100), {target, source}};
    }
    static QPixmap filled(const QColor &color) {
        QPixmap pixmap(20, 20);
        pixmap.fill(color);
        return pixmap;
    }
    static int darkPixels(const QImage &image, int y) {
        int count = 0;
        for (int x = 1; x < 100; ++x)
            count += qGray(image.pixel(x, y)) < 64;
        return count;
    }
};

void Tst_PreviewPicture::nothingWithoutPaper() {
    QVERIFY(PreviewPicture().draw(filled(Qt::red), PreviewLayout(), true, true).isNull());
}

void Tst_PreviewPicture::sheetHasEdges() {
    const QImage image = PreviewPicture().draw(filled(Qt::red), layout({}, {}), false, false).toImage();
    QCOMPARE(image.size(), QSize(102, 122)); // truncated after two pixels more
    for (const QPoint &edge : {QPoint(0, 0), QPoint(50, 0), QPoint(0, 60), QPoint(100, 60), QPoint(50, 120)})
        QCOMPARE(image.pixelColor(edge), QColor(Qt::black));
    for (const QPoint &paper :
         {QPoint(5, 5), QPoint(50, 60), QPoint(99, 119), QPoint(101, 60), QPoint(50, 121)})
        QCOMPARE(image.pixelColor(paper), QColor(Qt::white));
}

void Tst_PreviewPicture::imageFillsItsTarget() {
    const QImage image = PreviewPicture()
                             .draw(filled(Qt::red), layout({20, 30, 40, 50}, {0, 0, 20, 20}), false, false)
                             .toImage();
    for (const QPoint &inside : {QPoint(20, 30), QPoint(59, 79), QPoint(40, 50)})
        QCOMPARE(image.pixelColor(inside), QColor(Qt::red));
    for (const QPoint &outside : {QPoint(19, 30), QPoint(60, 79), QPoint(40, 80), QPoint(40, 29)})
        QCOMPARE(image.pixelColor(outside), QColor(Qt::white));
}

void Tst_PreviewPicture::partOfTheImageIsDrawn() {
    QImage halves(20, 20, QImage::Format_RGB32);
    halves.fill(Qt::red);
    for (int y = 0; y < 20; ++y) {
        for (int x = 10; x < 20; ++x)
            halves.setPixelColor(x, y, Qt::blue);
    }
    const QImage image =
        PreviewPicture()
            .draw(QPixmap::fromImage(halves), layout({20, 30, 40, 40}, {12, 0, 8, 20}), false, false)
            .toImage();
    QCOMPARE(image.pixelColor(22, 50), QColor(Qt::blue));
    QCOMPARE(image.pixelColor(58, 50), QColor(Qt::blue));
}

void Tst_PreviewPicture::imageIsSmoothed() {
    QImage columns(20, 20, QImage::Format_RGB32);
    for (int y = 0; y < 20; ++y) {
        for (int x = 0; x < 20; ++x)
            columns.setPixelColor(x, y, x % 2 ? Qt::black : Qt::white);
    }
    const QImage image =
        PreviewPicture()
            .draw(QPixmap::fromImage(columns), layout({20, 30, 50, 50}, {0, 0, 20, 20}), false, false)
            .toImage();
    int between = 0;
    for (int x = 21; x < 69; ++x) {
        const int gray = qGray(image.pixel(x, 50));
        between += gray > 32 && gray < 224;
    }
    QVERIFY2(between > 5, qPrintable(QString::number(between)));
}

void Tst_PreviewPicture::smallImageLosesNoLine_data() {
    QTest::addColumn<int>("every"); // one line in so many is black
    QTest::addColumn<int>("size");  // of the image, on 50 pixels
    QTest::newRow("twice as large") << 4 << 120;
    QTest::newRow("nine times as large") << 16 << 450;
}

void Tst_PreviewPicture::smallImageLosesNoLine() {
    QFETCH(int, every);
    QFETCH(int, size);
    QImage lines(size, size, QImage::Format_RGB32);
    lines.fill(Qt::white);
    for (int y = 0; y < size; y += every) {
        for (int x = 0; x < size; ++x)
            lines.setPixelColor(x, y, Qt::black);
    }
    const QRectF whole(QPointF(), QSizeF(lines.size()));
    const QImage image = PreviewPicture()
                             .draw(QPixmap::fromImage(lines), layout({20, 30, 50, 50}, whole), false, false)
                             .toImage();
    double gray = 0;
    for (int y = 32; y < 78; ++y)
        gray += qGray(image.pixel(45, y));
    const double expected = 255.0 * (every - 1) / every;
    QVERIFY2(qAbs(gray / 46 - expected) < 6, qPrintable(QString::number(gray / 46)));
    // No pixel of the picture lies only between the lines, and none only on one.
    for (int y = 32; y < 78; ++y)
        QVERIFY2(qAbs(qGray(image.pixel(45, y)) - expected) < 100, qPrintable(QString::number(y)));
}

void Tst_PreviewPicture::nextImageIsDrawn() {
    PreviewPicture picture;
    const QRectF target(20, 30, 50, 50);
    const auto colorOf = [&](const QColor &color, int size) {
        QPixmap image(size, size);
        image.fill(color);
        const PreviewLayout sheet = layout(target, {0, 0, double(size), double(size)});
        return picture.draw(image, sheet, false, false).toImage().pixelColor(45, 55);
    };
    for (const int size : {20, 400, 900, 400}) {
        for (const QColor &color : {QColor(Qt::red), QColor(Qt::blue)})
            QCOMPARE(colorOf(color, size), color);
    }
}

void Tst_PreviewPicture::marginsAreDashed() {
    const QImage image = PreviewPicture().draw(filled(Qt::white), layout({}, {}), false, false).toImage();
    const int dark = darkPixels(image, 10); // 80 pixels, dashes of 4 and gaps of 2
    QVERIFY2(dark > 40 && dark < 70, qPrintable(QString::number(dark)));
    QCOMPARE(darkPixels(image, 9), 0);
    QCOMPARE(darkPixels(image, 11) <= 2, true); // the two lines down
    QVERIFY(darkPixels(image, 110) > 40);
}

void Tst_PreviewPicture::frameOnRequest() {
    const PreviewLayout sheet = layout({20.5, 30.5, 39, 49}, {0, 0, 20, 20});
    const QImage framed = PreviewPicture().draw(filled(Qt::red), sheet, true, false).toImage();
    // From int(20.5 + 0.5), int(30.5 + 1), over int(39 - 1.5) and int(49 - 1).
    for (const QPoint &corner :
         {QPoint(21, 31), QPoint(58, 31), QPoint(21, 79), QPoint(58, 79), QPoint(40, 31)})
        QCOMPARE(framed.pixelColor(corner), QColor(Qt::black));
    QCOMPARE(framed.pixelColor(22, 32), QColor(Qt::red));
    const QImage plain = PreviewPicture().draw(filled(Qt::red), sheet, false, false).toImage();
    QCOMPARE(plain.pixelColor(40, 31), QColor(Qt::red));
}

void Tst_PreviewPicture::noFrameWithoutImage() {
    const QImage framed = PreviewPicture().draw(filled(Qt::red), layout({}, {}), true, false).toImage();
    const QImage plain = PreviewPicture().draw(filled(Qt::red), layout({}, {}), false, false).toImage();
    QCOMPARE(framed, plain);
}

void Tst_PreviewPicture::grayIsEverything() {
    const QPixmap picture =
        PreviewPicture().draw(filled(Qt::red), layout({20, 30, 40, 50}, {0, 0, 20, 20}), true, true);
    const QImage image = picture.toImage();
    QCOMPARE(image.size(), QSize(102, 122));
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            if (qRed(pixel) != qGreen(pixel) || qGreen(pixel) != qBlue(pixel))
                QFAIL(qPrintable("%1, %2"_qs.arg(x).arg(y)));
        }
    }
    const int gray = qGray(image.pixel(40, 50)); // neither white nor black
    QVERIFY2(gray > 30 && gray < 130, qPrintable(QString::number(gray)));
}

QTEST_MAIN(Tst_PreviewPicture)
#include "tst_previewpicture.moc"
