#pragma once

#include "canvas/items/drawingfigureitem.h"

#include <QFuture>
#include <QImage>

#include <memory>

class MosaicSnapshot;
class QPixmap;

/// A rectangle in which the picture, with all that was drawn before, is made of coarse blocks.
///
/// A job of the global thread pool pixelates the whole snapshot from the press on; the drag shows the part
/// of it under the rectangle, and the release waits for the job and keeps that part only. An item that
/// leaves the scene before its release lets go of the snapshot, which goes when the job has ended. The
/// destructor waits for the job.
class DrawingMosaicItem : public DrawingFigureItem {
    Q_OBJECT
public:
    /// `snapshot` is the whole image with the items present. A null pixmap gives an item that draws nothing
    /// but the frame of its drag.
    DrawingMosaicItem(const QRectF &sceneRect, QObject *parent, const QPixmap &snapshot);
    ~DrawingMosaicItem() override;

    /// Null before the release.
    QImage image() const { return m_image; }
    /// The picture that the job works on, until the release or the end of an abandoned drag.
    std::weak_ptr<const MosaicSnapshot> snapshot() const { return m_snapshot; }

    QRectF drawStart(QPoint pos) override;
    QRectF drawEnd(QPoint lastPos, QPoint pos, bool shift) override;

protected:
    void placed() override;
    void addHitArea(QPainterPath *path) override;
    void drawFigure(QPainter *painter) const override;
    QVariant itemChange(GraphicsItemChange change, const QVariant &value) override;

private:
    void onBandDone();

    bool m_finished = false;
    std::shared_ptr<MosaicSnapshot> m_snapshot;
    QImage m_image;
    QFuture<void> m_job;
};
