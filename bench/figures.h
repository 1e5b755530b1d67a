#pragma once

#include <QString>

#include <vector>

/// What the measuring programs hand to `bench/run`, which judges and prints it: one line a figure.
namespace figures {

enum Bound { AtMost, AtLeast };

/// `measured` and `bound` in the same unit.
void print(const QString &what, double measured, const char *unit, double bound, Bound kind = AtMost);

/// What was measured with so much of something.
struct Point {
    double size;
    double value;
};
/// How fast the values may grow: the greatest exponent of the size, with room for noise, and for what costs
/// more by the byte once it has outgrown the caches.
constexpr double Flat = 0.25;
constexpr double Linear = 1.35;

/// The x of values that grow as size to the power of x, by the last three points: what is measured with
/// little is mostly what it costs anyway.
double orderOfGrowth(const std::vector<Point> &points);
/// A line with the value at each point, in `unit`, and the order of growth as what is measured.
void printGrowth(const QString &what, const char *unit, const std::vector<Point> &points, double bound);

} // namespace figures
