#include "orderofgrowth.h"

#include <QRandomGenerator>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <functional>

using figures::Growth;
using figures::growthOf;
using figures::Point;

namespace {

/// Sizes at which something is measured, each set as bench/growth has it.
using Sizes = std::vector<double>;
const Sizes Captures{1, 2, 5, 10, 20, 50, 100};
const Sizes Items{0, 10, 100, 1000, 2500, 5000, 10000};
const Sizes Segments{10, 100, 1000, 10000, 25000, 50000, 100000};
const Sizes Megapixels{0.1, 0.5, 2, 8, 20, 40, 60};
/// No judge may mistake one of these for another.
constexpr double GreatestLinear = 1.35;

using Law = std::function<double(double size)>;

double linear(double size) {
    return size;
}
double square(double size) {
    return size * size;
}
double sorting(double size) {
    return size * std::log(size + 1);
}
double none(double) {
    return 0;
}

/// A fixed cost of 1 and a part that is `rise` at the greatest size.
std::vector<Point> points(const Sizes &sizes, const Law &law, double rise) {
    const double factor = rise > 0 ? rise / law(sizes.back()) : 0;
    std::vector<Point> points;
    for (const double size : sizes)
        points.push_back({size, 1 + factor * law(size)});
    return points;
}

/// Each above its true value by up to that part, as others on the machine make it.
std::vector<Point> disturbed(std::vector<Point> points, double most, quint32 seed) {
    QRandomGenerator random(seed);
    for (Point &point : points)
        point.value *= 1 + most * random.generateDouble();
    return points;
}

} // namespace

Q_DECLARE_METATYPE(Sizes)
Q_DECLARE_METATYPE(Law)

class Tst_OrderOfGrowth : public QObject {
    Q_OBJECT
private slots:
    void fixedPartDoesNotHideOrder_data();
    void fixedPartDoesNotHideOrder();
    void withoutFixedPart_data();
    void withoutFixedPart();
    void logarithmIsBetweenLinearAndSquare();
    void noiseIsTolerated_data();
    void noiseIsTolerated();
    void smallRiseIsFlat();
    void riseBelowNoiseIsFlat();
    void doublingIsNotFlat();
    void fallingIsFlat();
};

void Tst_OrderOfGrowth::fixedPartDoesNotHideOrder_data() {
    QTest::addColumn<Sizes>("sizes");
    QTest::addColumn<Law>("law");
    QTest::addColumn<double>("rise");
    QTest::addColumn<double>("order");
    const std::pair<const char *, Sizes> sets[] = {
        {"captures", Captures}, {"items", Items}, {"segments", Segments}, {"megapixels", Megapixels}};
    for (const auto &[name, sizes] : sets) {
        // As much again as what it costs anyway, and much more.
        for (const double rise : {1.0, 10.0, 100.0}) {
            QTest::addRow("%s, linear, %g times", name, rise) << sizes << Law(linear) << rise << 1.0;
            QTest::addRow("%s, square, %g times", name, rise) << sizes << Law(square) << rise << 2.0;
        }
    }
}

void Tst_OrderOfGrowth::fixedPartDoesNotHideOrder() {
    QFETCH(Sizes, sizes);
    QFETCH(Law, law);
    QFETCH(double, rise);
    QFETCH(double, order);
    const Growth growth = growthOf(points(sizes, law, rise));
    QVERIFY2(std::abs(growth.order - order) < 0.02, qPrintable(QString::number(growth.order)));
    const double first = law(sizes.front()) / law(sizes.back()) * rise;
    QVERIFY(std::abs(growth.rise / ((rise - first) / (1 + first)) - 1) < 0.02);
}

void Tst_OrderOfGrowth::withoutFixedPart_data() {
    QTest::addColumn<double>("order");
    for (const double order : {0.5, 1.0, 1.5, 2.0, 3.0})
        QTest::addRow("n^%g", order) << order;
}

void Tst_OrderOfGrowth::withoutFixedPart() {
    QFETCH(double, order);
    std::vector<Point> costs;
    for (const double size : Megapixels)
        costs.push_back({size, 7 * std::pow(size, order)});
    QVERIFY(std::abs(growthOf(costs).order - order) < 0.02);
}

void Tst_OrderOfGrowth::logarithmIsBetweenLinearAndSquare() {
    for (const Sizes &sizes : {Captures, Items, Segments, Megapixels}) {
        const double order = growthOf(points(sizes, sorting, 20)).order;
        QVERIFY2(order > 1.05 && order <= GreatestLinear, qPrintable(QString::number(order)));
    }
}

void Tst_OrderOfGrowth::noiseIsTolerated_data() {
    QTest::addColumn<Sizes>("sizes");
    QTest::addRow("captures") << Captures;
    QTest::addRow("items") << Items;
    QTest::addRow("segments") << Segments;
    QTest::addRow("megapixels") << Megapixels;
}

void Tst_OrderOfGrowth::noiseIsTolerated() {
    QFETCH(Sizes, sizes);
    for (quint32 seed = 1; seed <= 100; ++seed) {
        const auto order = [&](const Law &law, double rise, double noise) {
            return growthOf(disturbed(points(sizes, law, rise), noise, seed)).order;
        };
        const double one = order(linear, 5, 0.15), two = order(square, 5, 0.15), flat = order(none, 0, 0.4);
        QVERIFY2(one > 0.7 && one <= GreatestLinear, qPrintable(QString::number(one)));
        QVERIFY2(two > GreatestLinear && two < 2.6, qPrintable(QString::number(two)));
        QCOMPARE(flat, 0.0);
        // Where the fixed part is small, small sizes count as much as great ones.
        const double steep = order(linear, 100, 0.15);
        QVERIFY2(std::abs(steep - 1) < 0.08, qPrintable(QString::number(steep)));
    }
}

void Tst_OrderOfGrowth::smallRiseIsFlat() {
    for (const Law &law : {Law(linear), Law(square)}) {
        const Growth growth = growthOf(points(Items, law, 0.4));
        QCOMPARE(growth.order, 0.0);
        QVERIFY(std::abs(growth.rise - 0.4) < 0.01);
    }
}

void Tst_OrderOfGrowth::riseBelowNoiseIsFlat() {
    // By turns high and low, and a little higher at the end.
    std::vector<Point> costs = points(Captures, linear, 0.7);
    for (std::size_t i = 0; i < costs.size(); ++i)
        costs[i].value *= i % 2 ? 1.6 : 0.6;
    QCOMPARE(growthOf(costs).order, 0.0);
}

void Tst_OrderOfGrowth::doublingIsNotFlat() {
    for (const Sizes &sizes : {Captures, Items, Segments, Megapixels})
        QVERIFY(growthOf(points(sizes, linear, 1)).order > 0.9);
}

void Tst_OrderOfGrowth::fallingIsFlat() {
    std::vector<Point> costs = points(Captures, linear, 10);
    for (std::size_t i = 0; i < costs.size() / 2; ++i)
        std::swap(costs[i].value, costs[costs.size() - 1 - i].value);
    const Growth growth = growthOf(costs);
    QCOMPARE(growth.order, 0.0);
    QCOMPARE(growth.rise, 0.0);
}

QTEST_APPLESS_MAIN(Tst_OrderOfGrowth)
#include "tst_orderofgrowth.moc"
