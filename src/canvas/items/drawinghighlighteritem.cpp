#include "canvas/items/drawinghighlighteritem.h"

#include <QPainter>

DrawingHighlighterItem::DrawingHighlighterItem(const QRectF &sceneRect, QObject *parent)
    : DrawingFreehandItem(TindraPreferences::HighlighterColor, sceneRect, parent) {}

void DrawingHighlighterItem::paintSegments(QPainter *painter, int first) const {
    const QPainter::CompositionMode mode = painter->compositionMode();
    painter->setCompositionMode(QPainter::CompositionMode_Darken);
    painter->save();
    painter->setPen(itemPen(1.0, Qt::SolidLine, Qt::FlatCap));
    painter->setBrush(Qt::transparent);
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setClipRect(m_sceneRect, Qt::ReplaceClip);
    drawSegments(painter, first);
    painter->restore();
    painter->setCompositionMode(mode);
}

void DrawingHighlighterItem::addSegment(const QPointF &from, const QPointF &to) {
    const int half = m_lineWidth / 2;
    for (int i = -half; i <= half; ++i) {
        const QPointF offset(0, i);
        appendLine(QLineF(from + offset, to + offset));
    }
}
