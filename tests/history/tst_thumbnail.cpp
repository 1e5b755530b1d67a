#include "history/thumbnail.h"

#include <QtTest>

class Tst_Thumbnail : public QObject {
    Q_OBJECT
private slots:
    void sizesKeepTheAspectRatio_data();
    void sizesKeepTheAspectRatio();
    void nothingGivesNothing();
};

void Tst_Thumbnail::sizesKeepTheAspectRatio_data() {
    QTest::addColumn<QSize>("image");
    QTest::addColumn<QSize>("iconSize");
    QTest::addColumn<QSize>("intermediate");
    QTest::addColumn<QSize>("icon");

    QTest::newRow("wide") << QSize(800, 400) << QSize(80, 80) << QSize(400, 200) << QSize(80, 40);
    QTest::newRow("tall") << QSize(400, 800) << QSize(80, 80) << QSize(200, 400) << QSize(40, 80);
    QTest::newRow("square goes by the height")
        << QSize(500, 500) << QSize(10, 80) << QSize(400, 400) << QSize(80, 80);
    QTest::newRow("whole multiple of the icon")
        << QSize(1000, 500) << QSize(78, 78) << QSize(390, 195) << QSize(78, 39);
    QTest::newRow("icon above half of 400")
        << QSize(1000, 500) << QSize(240, 240) << QSize(240, 120) << QSize(240, 120);
    QTest::newRow("icon above 400") << QSize(1000, 500) << QSize(500, 500) << QSize(500, 250)
                                    << QSize(500, 250);
    QTest::newRow("small image grows") << QSize(20, 10) << QSize(80, 80) << QSize(400, 200) << QSize(80, 40);
    QTest::newRow("a line stays visible") << QSize(8000, 1) << QSize(80, 80) << QSize(400, 1) << QSize(80, 1);
}

void Tst_Thumbnail::sizesKeepTheAspectRatio() {
    QFETCH(QSize, image);
    QFETCH(QSize, iconSize);
    QPixmap pixmap(image);
    pixmap.fill(Qt::red);

    const QPixmap intermediate = Thumbnail::intermediate(pixmap, iconSize);
    QTEST(intermediate.size(), "intermediate");
    const QPixmap icon = Thumbnail::icon(intermediate, iconSize);
    QTEST(icon.size(), "icon");
    QCOMPARE(icon.toImage().pixelColor(0, 0), QColor(Qt::red));
}

void Tst_Thumbnail::nothingGivesNothing() {
    QVERIFY(Thumbnail::intermediate(QPixmap(), {80, 80}).isNull());
    QVERIFY(Thumbnail::icon(QPixmap(), {80, 80}).isNull());
    QVERIFY(Thumbnail::intermediate(QPixmap(10, 10), {0, 0}).isNull());
}

QTEST_MAIN(Tst_Thumbnail)
#include "tst_thumbnail.moc"
