#pragma once

#include "orderofgrowth.h"

#include <QString>

#include <vector>

/// What the measuring programs hand to `bench/run`, which judges and prints it: one line a figure.
namespace figures {

enum Bound { AtMost, AtLeast };

/// `measured` and `bound` in the same unit.
void print(const QString &what, double measured, const char *unit, double bound, Bound kind = AtMost);

/// How fast the values may grow: the greatest order. That of linear has room for noise, for a logarithm and
/// for what costs more by the byte once it has outgrown the caches, and none for a square.
constexpr double Flat = 0;
constexpr double Linear = 1.35;

/// A line with the value at each point, in `unit`, and the order of growth as what is measured.
void printGrowth(const QString &what, const char *unit, const std::vector<Point> &points, double bound);

} // namespace figures
