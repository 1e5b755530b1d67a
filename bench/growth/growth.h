#pragma once

#include "figures.h"

#include <QString>

#include <vector>

/// What grows with what; each prints its figures. `main` picks one.
void growthWithCaptures();
void growthWithItems();
void growthWithSegments();
void growthWithPixels();

/// One curve: what is measured at one size after the other.
class Curve {
public:
    /// `bound` is the greatest order of growth.
    Curve(const QString &what, double bound, const char *unit = "ms")
        : m_what(what), m_bound(bound), m_unit(unit) {}

    void add(double size, double value) { m_points.push_back({size, value}); }
    void print() const { figures::printGrowth(m_what, m_unit, m_points, m_bound); }

private:
    QString m_what;
    double m_bound;
    const char *m_unit;
    std::vector<figures::Point> m_points;
};
