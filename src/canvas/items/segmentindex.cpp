#include "canvas/items/segmentindex.h"

#include <QRect>

#include <algorithm>
#include <cmath>

namespace {

/// The side of a cell, in scene units: a fast mouse leaves segments of some hundred pixels.
constexpr double CellSide = 64;
/// A rectangle of more cells is looked at by every search.
constexpr int MostCells = 64;

QRect cellsOf(const QRectF &area) {
    const auto cell = [](double coordinate) { return static_cast<int>(std::floor(coordinate / CellSide)); };
    return QRect(QPoint(cell(area.left()), cell(area.top())),
                 QPoint(cell(area.right()), cell(area.bottom())));
}

/// Unlike `QRectF::intersects`, also where only the borders meet, as for paths.
bool meet(const QRectF &a, const QRectF &b) {
    return a.left() <= b.right() && b.left() <= a.right() && a.top() <= b.bottom() && b.top() <= a.bottom();
}

} // namespace

void SegmentIndex::add(const QRectF &rect) {
    const int number = m_rects.size();
    m_rects.append(rect);
    const QRect cells = cellsOf(rect);
    if (qint64(cells.width()) * cells.height() > MostCells) {
        m_large.append(number);
        return;
    }
    for (int y = cells.top(); y <= cells.bottom(); ++y) {
        for (int x = cells.left(); x <= cells.right(); ++x)
            m_grid[Cell(x, y)].append(number);
    }
}

QVector<QRectF> SegmentIndex::near(const QRectF &area) const {
    QVector<int> found;
    const auto look = [&](const QVector<int> &numbers) {
        for (const int number : numbers) {
            if (meet(m_rects.at(number), area))
                found.append(number);
        }
    };
    look(m_large);
    const QRect cells = cellsOf(area);
    for (int y = cells.top(); y <= cells.bottom(); ++y) {
        for (int x = cells.left(); x <= cells.right(); ++x)
            look(m_grid.value(Cell(x, y)));
    }
    // One that covers several cells was found several times.
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    QVector<QRectF> rects;
    rects.reserve(found.size());
    for (const int number : qAsConst(found))
        rects.append(m_rects.at(number));
    return rects;
}
