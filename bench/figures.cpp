#include "figures.h"

#include <QStringList>

#include <cstdio>

namespace {

QString numberOf(double value) {
    return value < 1000 ? QString::number(value, 'g', 3) : QString::number(value, 'f', 0);
}

} // namespace

namespace figures {

void print(const QString &what, double measured, const char *unit, double bound, Bound kind) {
    std::printf("%s\t%.6g\t%s\t%s\t%.6g\n", qPrintable(what), measured, unit,
                kind == AtMost ? "<=" : ">=", bound);
    std::fflush(stdout);
}

void printGrowth(const QString &what, const char *unit, const std::vector<Point> &points, double bound) {
    QStringList values;
    for (const Point &point : points)
        values.append(QStringLiteral("%1 at %2").arg(numberOf(point.value), numberOf(point.size)));
    print(QStringLiteral("growth: %1, %2: %3")
              .arg(what, QLatin1String(unit), values.join(QStringLiteral(", "))),
          growthOf(points).order, "n^", bound);
}

} // namespace figures
