#pragma once

#include <QHash>
#include <QRectF>
#include <QVector>

class QGraphicsItem;

/// Which items of a scene lie where, in their stacking order.
///
/// A search looks at the cells of a grid that its area touches, and so at no item that lies elsewhere,
/// however many there are. An item takes part from `add` on; until it is given its extent, every area meets
/// it. Extents are in scene coordinates. The items are not owned and never looked at.
class ItemIndex {
public:
    /// On top of all others.
    void add(QGraphicsItem *item);
    /// Where the item lies from now on; nowhere if that is empty. Nothing happens with one that is not there.
    void place(QGraphicsItem *item, const QRectF &extent);
    void remove(QGraphicsItem *item);
    /// Forgets who is not there any more.
    void keepOnly(const QList<QGraphicsItem *> &present);
    bool contains(QGraphicsItem *item) const { return m_entries.contains(item); }
    int size() const { return m_entries.size(); }
    /// How many cells hold an item: what the index takes in memory and time goes with it.
    int cellsInUse() const { return m_grid.size(); }

    /// All items whose extents meet the area, topmost first.
    QVector<QGraphicsItem *> meeting(const QRectF &area) const;

private:
    using Cell = QPair<int, int>;

    struct Entry {
        quint64 order = 0;
        QRectF extent;
    };

    static QRect cells(const QRectF &area);
    void takeOutOfCells(QGraphicsItem *item);

    quint64 m_lastOrder = 0;
    QHash<QGraphicsItem *, Entry> m_entries;
    QHash<Cell, QVector<QGraphicsItem *>> m_grid;
    QVector<QGraphicsItem *> m_large;    ///< those that cover too many cells
    QVector<QGraphicsItem *> m_unplaced; ///< added, without an extent so far
};
