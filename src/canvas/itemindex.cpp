#include "canvas/itemindex.h"

#include <QSet>

#include <algorithm>
#include <cmath>

namespace {

/// The side of a cell, in scene units: few cells for a stroke across a picture, few items for a cell.
constexpr double CellSide = 256;
/// An item of more cells is looked at by every search. One across a long scroll capture still has fewer, but
/// a text can be of any size, and its cells would take all memory.
constexpr double MostCells = 4096;

/// In floating point, where no extent is too large to be counted.
bool isLarge(const QRectF &extent) {
    return (extent.width() / CellSide + 1) * (extent.height() / CellSide + 1) > MostCells;
}

} // namespace

void ItemIndex::add(QGraphicsItem *item) {
    m_entries.insert(item, {++m_lastOrder, QRectF()});
    m_unplaced.append(item);
}

void ItemIndex::place(QGraphicsItem *item, const QRectF &extent) {
    const auto entry = m_entries.find(item);
    if (entry == m_entries.end())
        return;
    takeOutOfCells(item);
    entry->extent = extent;
    if (extent.isEmpty())
        return;
    if (isLarge(extent)) {
        m_large.append(item);
        return;
    }
    const QRect covered = cells(extent);
    for (int y = covered.top(); y <= covered.bottom(); ++y) {
        for (int x = covered.left(); x <= covered.right(); ++x)
            m_grid[Cell(x, y)].append(item);
    }
}

void ItemIndex::remove(QGraphicsItem *item) {
    takeOutOfCells(item);
    m_entries.remove(item);
}

void ItemIndex::keepOnly(const QList<QGraphicsItem *> &present) {
    const QSet<QGraphicsItem *> there(present.begin(), present.end());
    for (QGraphicsItem *known : m_entries.keys()) {
        if (!there.contains(known))
            remove(known);
    }
}

QVector<QGraphicsItem *> ItemIndex::meeting(const QRectF &area) const {
    struct Found {
        quint64 order;
        QGraphicsItem *item;
    };
    QVector<Found> found;
    const auto look = [&](const QVector<QGraphicsItem *> &candidates) {
        for (QGraphicsItem *item : candidates) {
            const Entry entry = m_entries.value(item);
            if (entry.extent.intersects(area))
                found.append({entry.order, item});
        }
    };
    for (QGraphicsItem *item : m_unplaced)
        found.append({m_entries.value(item).order, item});
    look(m_large);
    const QRect covered = cells(area);
    for (int y = covered.top(); y <= covered.bottom(); ++y) {
        for (int x = covered.left(); x <= covered.right(); ++x)
            look(m_grid.value(Cell(x, y)));
    }
    // An item that covers several cells was found several times.
    std::sort(found.begin(), found.end(), [](const Found &a, const Found &b) { return a.order > b.order; });
    QVector<QGraphicsItem *> items;
    for (const Found &one : qAsConst(found)) {
        if (items.isEmpty() || items.last() != one.item)
            items.append(one.item);
    }
    return items;
}

QRect ItemIndex::cells(const QRectF &area) {
    const auto cell = [](double coordinate) { return static_cast<int>(std::floor(coordinate / CellSide)); };
    return QRect(QPoint(cell(area.left()), cell(area.top())),
                 QPoint(cell(area.right()), cell(area.bottom())));
}

void ItemIndex::takeOutOfCells(QGraphicsItem *item) {
    m_unplaced.removeOne(item);
    const QRectF extent = m_entries.value(item).extent;
    if (extent.isEmpty())
        return;
    if (isLarge(extent)) {
        m_large.removeOne(item);
        return;
    }
    const QRect covered = cells(extent);
    for (int y = covered.top(); y <= covered.bottom(); ++y) {
        for (int x = covered.left(); x <= covered.right(); ++x) {
            const auto cell = m_grid.find(Cell(x, y));
            // What came last mostly goes first.
            cell->remove(cell->lastIndexOf(item));
            if (cell->isEmpty())
                m_grid.erase(cell);
        }
    }
}
