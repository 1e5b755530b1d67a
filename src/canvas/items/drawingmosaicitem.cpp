#include "canvas/items/drawingmosaicitem.h"

#include "canvas/items/mosaicsnapshot.h"
#include "popups/mosaicpopup.h"
#include "preferences/tindrapreferences.h"

#include <QPainter>
#include <QPixmap>
#include <QtConcurrent>

namespace {

/// The largest block whose sums of bytes stay within 32 bits.
constexpr int LargestBlock = 4104;
static_assert(255LL * LargestBlock * LargestBlock <= 0xffffffffLL, "a white block has to be summed");
/// Of the frame around the rectangle while it is dragged.
const QColor FrameColor(0, 127, 245);

/// A settings file can hold any number, but a block of one pixel hides nothing and one of two or three leaves
/// letters to be read, and whoever uses a mosaic wants something hidden: what is weaker than all that is
/// offered counts as medium, which the panel shows then.
int blockSetting() {
    const int stored =
        TindraPreferences::instance()->GetInt(TindraPreferences::MosaicStrength, MosaicPopup::Medium);
    return stored >= MosaicPopup::Weak && stored <= LargestBlock ? stored : MosaicPopup::Medium;
}

} // namespace

DrawingMosaicItem::DrawingMosaicItem(const QRectF &sceneRect, QObject *parent, const QPixmap &snapshot)
    : DrawingFigureItem(ShiftRule::Square, DrawingAttributes(), sceneRect, parent) {
    if (snapshot.isNull())
        return;
    m_snapshot = std::make_shared<MosaicSnapshot>(snapshot.toImage());
    const int block = blockSetting();
    // A mouse that rests would see the picture as it was before the job got there. The destructor waits for
    // the job, so the item is there as long as the job tells of bands.
    const auto tell = [this] {
        QMetaObject::invokeMethod(this, &DrawingMosaicItem::onBandDone, Qt::QueuedConnection);
    };
    m_job = QtConcurrent::run([shared = m_snapshot, block, tell] { shared->pixelateAll(block, tell); });
}

DrawingMosaicItem::~DrawingMosaicItem() {
    m_job.waitForFinished();
}

void DrawingMosaicItem::onBandDone() {
    if (!m_finished)
        update();
}

QRectF DrawingMosaicItem::drawStart(QPoint pos) {
    DrawingFigureItem::drawStart(pos);
    placed();
    return boundingRect();
}

QRectF DrawingMosaicItem::drawEnd(QPoint lastPos, QPoint pos, bool shift) {
    DrawingFigureItem::drawEnd(lastPos, pos, shift);
    m_job.waitForFinished();
    if (m_snapshot)
        m_image = m_snapshot->copy(m_itemRect.toRect());
    m_snapshot.reset();
    m_finished = true;
    return boundingRect();
}

// The frame of the drag has to have room: the rectangle takes two pixels more on each side, within the
// visible part.
void DrawingMosaicItem::placed() {
    m_itemRect = boundingRect();
}

void DrawingMosaicItem::addHitArea(QPainterPath *path) {
    *path = QPainterPath();
    path->addRect(m_itemRect);
}

void DrawingMosaicItem::drawFigure(QPainter *painter) const {
    const QRect rect = m_itemRect.toRect();
    if (m_finished) {
        if (!m_image.isNull())
            painter->drawImage(rect, m_image);
        return;
    }
    if (m_snapshot)
        m_snapshot->draw(painter, rect);
    painter->setPen(QPen(QBrush(FrameColor), 1.0, Qt::SolidLine, ItemPenCap, Qt::MiterJoin));
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(m_itemRect);
}

QVariant DrawingMosaicItem::itemChange(GraphicsItemChange change, const QVariant &value) {
    // A click without a drag: the item is never shown again.
    if (change == ItemSceneHasChanged && !scene() && !m_finished)
        m_snapshot.reset();
    return DrawingFigureItem::itemChange(change, value);
}
