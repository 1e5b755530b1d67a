#include "figures.h"

#include <QLocale>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace {

constexpr std::size_t FittedPoints = 3;

QString numberOf(double value) {
    return value == 0 ? QStringLiteral("0") : QString::number(value, 'g', value < 1000 ? 3 : 4);
}

} // namespace

namespace figures {

void print(const QString &what, double measured, const char *unit, double bound, Bound kind) {
    std::printf("%s\t%.6g\t%s\t%s\t%.6g\n", qPrintable(what), measured, unit,
                kind == AtMost ? "<=" : ">=", bound);
    std::fflush(stdout);
}

double orderOfGrowth(const std::vector<Point> &points) {
    std::vector<Point> fitted;
    for (const Point &point : points) {
        // Nothing has no logarithm.
        if (point.size > 0 && point.value > 0)
            fitted.push_back({std::log(point.size), std::log(point.value)});
    }
    if (fitted.size() > FittedPoints)
        fitted.erase(fitted.begin(), fitted.end() - FittedPoints);
    double sizes = 0, values = 0;
    for (const Point &point : fitted) {
        sizes += point.size / fitted.size();
        values += point.value / fitted.size();
    }
    double together = 0, square = 0;
    for (const Point &point : fitted) {
        together += (point.size - sizes) * (point.value - values);
        square += (point.size - sizes) * (point.size - sizes);
    }
    return square > 0 ? together / square : 0;
}

void printGrowth(const QString &what, const char *unit, const std::vector<Point> &points, double bound) {
    QStringList values;
    for (const Point &point : points)
        values.append(numberOf(point.value));
    const QString sizes =
        QStringLiteral("%1 to %2").arg(numberOf(points.front().size), numberOf(points.back().size));
    print(QStringLiteral("growth: %1, %2: %3 %4")
              .arg(what, sizes, values.join(QLatin1Char(' ')), QLatin1String(unit)),
          orderOfGrowth(points), "n^", bound);
}

} // namespace figures
