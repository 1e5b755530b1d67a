#pragma once

#include <QGraphicsItem>
#include <QGraphicsProxyWidget>
#include <QGraphicsView>
#include <QPainter>
#include <QScrollBar>

/// A view of the toolkit as it comes, over the same scene with a background of its own: what a paint of
/// everything gives.
class ReferenceView : public QGraphicsView {
public:
    QImage picture;
    QRect visible;
    bool smooth = true;

    ReferenceView() {
        setFrameShape(QFrame::NoFrame);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    }

    /// What the viewport of that view of the same scene has to show.
    QImage shownBy(const QGraphicsView &view) {
        if (viewport()->palette() != view.viewport()->palette())
            viewport()->setPalette(view.viewport()->palette());
        resize(view.viewport()->size());
        viewport()->resize(view.viewport()->size());
        setSceneRect(view.sceneRect());
        setTransform(view.transform());
        horizontalScrollBar()->setValue(view.horizontalScrollBar()->value());
        verticalScrollBar()->setValue(view.verticalScrollBar()->value());
        QImage image(view.viewport()->size(), QImage::Format_RGB32);
        viewport()->render(&image);
        return image;
    }

protected:
    void drawBackground(QPainter *painter, const QRectF &) override {
        painter->save();
        const QRectF target = painter->transform().mapRect(QRectF(visible));
        const double zoom = painter->transform().m11();
        painter->resetTransform();
        if (zoom >= 1.0) {
            painter->drawPixmap(target, QPixmap::fromImage(picture), QRectF(visible));
        } else if (smooth) {
            const QPixmap scaled = QPixmap::fromImage(picture).copy(visible).scaled(
                int(visible.width() * zoom), int(visible.height() * zoom), Qt::KeepAspectRatio,
                Qt::SmoothTransformation);
            painter->drawPixmap(target, scaled, QRectF(scaled.rect()));
        } else {
            painter->setRenderHint(QPainter::SmoothPixmapTransform);
            painter->drawPixmap(target, QPixmap::fromImage(picture), QRectF(visible));
        }
        painter->restore();
    }
    // The crop frame, as the toolkit paints a widget of the scene.
    void drawForeground(QPainter *painter, const QRectF &) override {
        for (QGraphicsItem *item : scene()->items()) {
            if (item->isWidget())
                static_cast<QGraphicsProxyWidget *>(item)->widget()->render(painter, QPoint(), QRegion(),
                                                                            QWidget::DrawChildren);
        }
    }
};
