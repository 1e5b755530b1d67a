#include "preferences/dialog/guidelinecolors.h"
#include "support/literals.h"

#include <QtTest>

class Tst_GuidelineColors : public QObject {
    Q_OBJECT
private slots:
    void sixteenNamedColors_data();
    void sixteenNamedColors();
    void unknownColorIsTheFirst_data();
    void unknownColorIsTheFirst();
    void darkerIsFoundByItsLightness_data();
    void darkerIsFoundByItsLightness();
    void swatchIsFilledAndFramed_data();
    void swatchIsFilledAndFramed();
};

void Tst_GuidelineColors::sixteenNamedColors_data() {
    QTest::addColumn<int>("index");
    QTest::addColumn<QColor>("color");
    const QPair<const char *, QColor> table[] = {
        {"black", {0, 0, 0}},       {"Maroon", {128, 0, 0}},    {"Green", {0, 128, 0}},
        {"Olive", {128, 128, 0}},   {"Navy", {0, 0, 128}},      {"Purple", {128, 0, 128}},
        {"Teal", {0, 128, 128}},    {"Gray", {128, 128, 128}},  {"Silver", {192, 192, 192}},
        {"Red", {255, 0, 0}},       {"Lime", {0, 255, 0}},      {"Yellow", {255, 255, 0}},
        {"Blue", {0, 0, 255}},      {"Magenta", {255, 0, 255}}, {"Cyan", {0, 255, 255}},
        {"White", {255, 255, 255}},
    };
    for (int index = 0; index < 16; ++index)
        QTest::newRow(table[index].first) << index << table[index].second;
}

void Tst_GuidelineColors::sixteenNamedColors() {
    QFETCH(int, index);
    QFETCH(QColor, color);
    QCOMPARE(GuidelineColors::count(), 16);
    QCOMPARE(GuidelineColors::name(index), QString::fromLatin1(QTest::currentDataTag()));
    QCOMPARE(GuidelineColors::color(index), color);
    QCOMPARE(GuidelineColors::indexOf(color), index);
}

void Tst_GuidelineColors::unknownColorIsTheFirst_data() {
    QTest::addColumn<QColor>("color");
    QTest::newRow("not in the table") << QColor(1, 2, 3);
    QTest::newRow("red, half transparent") << QColor(255, 0, 0, 128);
    QTest::newRow("transparent") << QColor(0, 0, 0, 0);
}

void Tst_GuidelineColors::unknownColorIsTheFirst() {
    QFETCH(QColor, color);
    QCOMPARE(GuidelineColors::indexOf(color), 0);
}

void Tst_GuidelineColors::darkerIsFoundByItsLightness_data() {
    QTest::addColumn<QColor>("first");
    QTest::addColumn<QColor>("second");
    QTest::addColumn<bool>("firstIsDarker");
    // Weights 11, 16 and 5 of 32.
    QTest::newRow("black and white") << QColor(Qt::black) << QColor(Qt::white) << true;
    QTest::newRow("white and black") << QColor(Qt::white) << QColor(Qt::black) << false;
    QTest::newRow("blue is darker than red") << QColor(0, 0, 255) << QColor(255, 0, 0) << true;
    QTest::newRow("red is darker than green") << QColor(255, 0, 0) << QColor(0, 255, 0) << true;
    QTest::newRow("blue 255 is darker than green 80") << QColor(0, 0, 255) << QColor(0, 80, 0) << true;
    QTest::newRow("blue 255 is as dark as green 79: 1275 and 1264 of 32") // 39 both
        << QColor(0, 0, 255) << QColor(0, 79, 0) << false;
    QTest::newRow("the same") << QColor(1, 2, 3) << QColor(1, 2, 3) << false;
    // 11 and 31 of 32 both count as 0.
    QTest::newRow("the lower five bits do not count") << QColor(1, 0, 0) << QColor(1, 0, 4) << false;
}

void Tst_GuidelineColors::darkerIsFoundByItsLightness() {
    QFETCH(QColor, first);
    QFETCH(QColor, second);
    QFETCH(bool, firstIsDarker);
    QCOMPARE(GuidelineColors::darker(first, second), firstIsDarker ? first : second);
}

void Tst_GuidelineColors::swatchIsFilledAndFramed_data() {
    QTest::addColumn<QColor>("color");
    QTest::addColumn<int>("side");
    QTest::addColumn<QColor>("frame");
    const QColor lines(204, 212, 221); // color6 of the table
    for (const int side : {16, 24, 32}) {
        QTest::addRow("white, %d", side) << QColor(Qt::white) << side << lines;
        QTest::addRow("silver is darker than the lines, %d", side)
            << QColor(192, 192, 192) << side << QColor(192, 192, 192);
        QTest::addRow("yellow is lighter, %d", side) << QColor(255, 255, 0) << side << lines;
        QTest::addRow("navy, %d", side) << QColor(0, 0, 128) << side << QColor(0, 0, 128);
    }
}

void Tst_GuidelineColors::swatchIsFilledAndFramed() {
    QFETCH(QColor, color);
    QFETCH(int, side);
    QFETCH(QColor, frame);
    const QImage swatch = GuidelineColors::swatch(color, side).toImage();
    QCOMPARE(swatch.size(), QSize(side, side));
    const int last = side - 1;
    for (int i = 0; i < side; ++i) {
        for (const QPoint &edge : {QPoint(i, 0), QPoint(i, last), QPoint(0, i), QPoint(last, i)})
            QCOMPARE(swatch.pixelColor(edge), frame);
    }
    QCOMPARE(swatch.pixelColor(side / 2, side / 2), color);
    QCOMPARE(swatch.pixelColor(side / 16, side / 16), color);
}

QTEST_MAIN(Tst_GuidelineColors)
#include "tst_guidelinecolors.moc"
