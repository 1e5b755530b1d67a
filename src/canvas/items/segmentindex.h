#pragma once

#include <QHash>
#include <QPair>
#include <QRectF>
#include <QVector>

/// Which of a stroke's hit rectangles lie where.
///
/// A search looks at the cells of a grid that its area touches, and so at no rectangle that lies elsewhere,
/// however long the stroke is. In scene coordinates.
class SegmentIndex {
public:
    void add(const QRectF &rect);
    int count() const { return m_rects.size(); }

    /// All rectangles that meet or touch the area, each once, in the order in which they were added.
    QVector<QRectF> near(const QRectF &area) const;

private:
    using Cell = QPair<int, int>;

    QVector<QRectF> m_rects;
    QHash<Cell, QVector<int>> m_grid;
    QVector<int> m_large; ///< those that cover too many cells
};
