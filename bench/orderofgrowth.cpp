#include "orderofgrowth.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using figures::Point;

constexpr double OrderStep = 0.01;
constexpr int OrderSteps = 400;
/// Up to half as much again is flat: a machine that others share makes as much of nothing.
constexpr double FlatRise = 0.5;
/// And so is what rises by less than that many times what the points are off the curve.
constexpr double NoiseFactor = 3;

/// fixed + factor * (size / greatest size) ^ order
struct Curve {
    double order = 0;
    double greatest = 1;
    double fixed = 0;
    double factor = 0;
    double error = std::numeric_limits<double>::infinity(); ///< relative, the root of the mean square

    double term(double size) const { return std::pow(size / greatest, order); }
    double at(double size) const { return fixed + factor * term(size); }
};

/// The best curve of that order, by the least squares of relative errors. Neither part is below nothing:
/// costs have no part that somebody gives back.
Curve curveOf(const std::vector<Point> &points, double order) {
    Curve curve{order, points.back().size};
    double weights = 0, terms = 0, squares = 0, values = 0, products = 0;
    for (const Point &point : points) {
        const double weight = 1 / (point.value * point.value), term = curve.term(point.size);
        weights += weight;
        terms += weight * term;
        squares += weight * term * term;
        values += weight * point.value;
        products += weight * term * point.value;
    }
    curve.factor = (weights * products - terms * values) / (weights * squares - terms * terms);
    curve.fixed = (values - curve.factor * terms) / weights;
    if (curve.factor < 0) {
        curve.factor = 0;
        curve.fixed = values / weights;
    } else if (curve.fixed < 0) {
        curve.fixed = 0;
        curve.factor = products / squares;
    }
    double errors = 0;
    for (const Point &point : points)
        errors += std::pow(curve.at(point.size) / point.value - 1, 2);
    curve.error = std::sqrt(errors / double(points.size()));
    return curve;
}

} // namespace

namespace figures {

Growth growthOf(const std::vector<Point> &points) {
    Curve best;
    for (int step = 1; step <= OrderSteps; ++step) {
        const Curve curve = curveOf(points, step * OrderStep);
        if (curve.error < best.error)
            best = curve;
    }
    const double rise = best.at(points.back().size) / best.at(points.front().size) - 1;
    const bool flat = rise <= std::max(FlatRise, NoiseFactor * best.error);
    return {flat ? 0 : best.order, rise};
}

} // namespace figures
