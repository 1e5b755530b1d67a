#include "canvas/items/drawingspeechballoonitem.h"

#include "canvas/items/figuregeometry.h"

#include <QPainter>

DrawingSpeechBalloonItem::DrawingSpeechBalloonItem(const QRectF &sceneRect, QObject *parent)
    : DrawingFigureItem(ShiftRule::Square, DrawingAttributes::forFigure(), sceneRect, parent) {}

void DrawingSpeechBalloonItem::addHitArea(QPainterPath *path) {
    *path = QPainterPath();
    path->addRect(m_itemRect);
}

void DrawingSpeechBalloonItem::drawFigure(QPainter *painter) const {
    // The hint for a finer one is obsolete in the toolkit: no engine that paints the picture looks at it.
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setBrush(m_fillColor);
    painter->drawPolygon(speechBalloonPolygon(m_itemRect), Qt::OddEvenFill);
}
