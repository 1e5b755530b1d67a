#include "canvas/capturefixture.h"
#include "canvas/smoothbackground.h"
#include "support/imagecompare.h"

#include <QPainter>
#include <QtTest>

class Tst_SmoothBackground : public QObject {
    Q_OBJECT
private slots:
    void refreshTellsWhetherThePictureChanges();
    void copyBelongsToImageRectangleAndScale();
    void copyIsTheSmoothlyScaledPart();
    void noCopyAtFullSize();
};

void Tst_SmoothBackground::refreshTellsWhetherThePictureChanges() {
    const QPixmap image = QPixmap::fromImage(capture::picture(QSize(100, 80)));
    const QRect all = image.rect();
    SmoothBackground background;
    QVERIFY(!background.refresh(image, all, 1.0));
    QVERIFY(background.refresh(image, all, 0.5));
    QVERIFY(!background.refresh(image, all, 0.5));
    QVERIFY(background.refresh(image, QRect(10, 10, 50, 50), 0.5));
    QVERIFY(background.refresh(image, QRect(10, 10, 50, 50), 0.37));
    const QPixmap other = QPixmap::fromImage(capture::picture(QSize(100, 80)).mirrored());
    QVERIFY(background.refresh(other, QRect(10, 10, 50, 50), 0.37));
    QVERIFY(!background.refresh(other, QRect(10, 10, 50, 50), 0.37));
}

void Tst_SmoothBackground::copyBelongsToImageRectangleAndScale() {
    const QPixmap image = QPixmap::fromImage(capture::picture(QSize(100, 80)));
    SmoothBackground background;
    QVERIFY(!background.fits(image.rect(), 0.5));
    background.refresh(image, image.rect(), 0.5);
    QVERIFY(background.fits(image.rect(), 0.5));
    QVERIFY(!background.fits(image.rect(), 0.55));
    QVERIFY(!background.fits(QRect(0, 0, 99, 80), 0.5));
    background.clear();
    QVERIFY(!background.fits(image.rect(), 0.5));
}

void Tst_SmoothBackground::copyIsTheSmoothlyScaledPart() {
    const QImage picture = capture::picture(QSize(100, 80));
    const QPixmap image = QPixmap::fromImage(picture);
    const QRect part(20, 10, 61, 50);
    SmoothBackground background;
    background.refresh(image, part, 0.5);
    const QImage expected = picture.copy(part).scaled(30, 25, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QImage painted(expected.size(), QImage::Format_RGB32);
    QPainter painter(&painted);
    background.paint(&painter, image, part, QRectF(painted.rect()), 0.5);
    painter.end();
    COMPARE_IMAGES(painted, expected, "smooth");
}

void Tst_SmoothBackground::noCopyAtFullSize() {
    const QPixmap image = QPixmap::fromImage(capture::picture(QSize(100, 80)));
    SmoothBackground background;
    background.refresh(image, image.rect(), 0.5);
    background.refresh(image, image.rect(), 1.0);
    QVERIFY(!background.fits(image.rect(), 0.5));
    QImage painted(200, 160, QImage::Format_RGB32);
    QPainter painter(&painted);
    background.paint(&painter, image, image.rect(), QRectF(painted.rect()), 2.0);
    painter.end();
    COMPARE_IMAGES(painted, capture::picture(QSize(100, 80)).scaled(200, 160), "doubled");
}

QTEST_MAIN(Tst_SmoothBackground)
#include "tst_smoothbackground.moc"
