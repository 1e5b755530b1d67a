#pragma once

#include "canvas/editor.h"
#include "canvas/items/drawingcropitem.h"
#include "canvas/items/drawinginterface.h"
#include "canvas/items/drawingitem.h"
#include "canvas/items/drawingtextitem.h"

#include <QGraphicsObject>
#include <QGraphicsSceneMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QStringList>

#include <memory>

/// Items that stand in for the product's own and write down what the editor does with them, to the end of
/// the editor itself: so the log belongs to all of them.
using ItemLog = std::shared_ptr<QStringList>;

/// A figure: fills the rectangle between press and mouse with green. Counts how often it is asked where it
/// is.
class FakeFigure : public DrawingItem, public DrawingInterface {
    Q_OBJECT
public:
    FakeFigure(const QRectF &sceneRect, QObject *parent, ItemLog log)
        : DrawingItem(DrawingAttributes(), sceneRect, parent), m_log(std::move(log)) {}

    mutable int questions = 0;

    QRectF clip() const { return m_sceneRect; }
    QRectF boundingRect() const override {
        ++questions;
        return DrawingItem::boundingRect();
    }
    QRectF drawStart(QPoint pos) override {
        note(QStringLiteral("start"), pos, pos, false);
        m_start = pos;
        m_itemRect = QRectF(pos, pos);
        return boundingRect();
    }
    QRectF drawMove(QPoint lastPos, QPoint pos, bool shift) override {
        note(QStringLiteral("move"), lastPos, pos, shift);
        m_itemRect = QRectF(m_start, pos).normalized();
        return boundingRect();
    }
    QRectF drawEnd(QPoint lastPos, QPoint pos, bool shift) override {
        note(QStringLiteral("end"), lastPos, pos, shift);
        prepareGeometryChange();
        m_itemRect = QRectF(m_start, pos).normalized();
        m_hit.addRect(m_itemRect);
        return boundingRect();
    }
    void drawFinish(bool) override {}
    QPainterPath shape() const override {
        ++questions;
        return clippedHitArea(m_hit);
    }
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *) override {
        painter->save();
        painter->setClipRect(m_sceneRect, Qt::ReplaceClip);
        painter->fillRect(m_itemRect, Qt::green);
        painter->restore();
    }

private:
    void note(const QString &what, QPoint from, QPoint to, bool shift) {
        m_log->append(QStringLiteral("%1 %2,%3 %4,%5%6%7")
                          .arg(what)
                          .arg(from.x())
                          .arg(from.y())
                          .arg(to.x())
                          .arg(to.y())
                          .arg(shift ? QStringLiteral(" shift") : QString())
                          .arg(scene() ? QString() : QStringLiteral(" outside")));
    }

    ItemLog m_log;
    QPointF m_start;
    QPainterPath m_hit;
};

/// A text: a grey box of 40 by 20, closed by the test or by the editor.
class FakeText : public QGraphicsObject, public DrawingInterface {
    Q_OBJECT
public:
    FakeText(const QRectF &sceneRect, QObject *parent, ItemLog log) : clip(sceneRect), m_log(std::move(log)) {
        setParent(parent);
    }
    void close(bool succeed, bool abort) { emit finishEdit(succeed, abort); }
    QRectF drawStart(QPoint pos) override {
        m_log->append(QStringLiteral("text start%1").arg(scene() ? QString() : QStringLiteral(" outside")));
        setPos(pos);
        return boundingRect();
    }
    QRectF drawMove(QPoint lastPos, QPoint pos, bool) override {
        m_log->append(QStringLiteral("text hover %1,%2 %3,%4")
                          .arg(lastPos.x())
                          .arg(lastPos.y())
                          .arg(pos.x())
                          .arg(pos.y()));
        return boundingRect();
    }
    QRectF drawEnd(QPoint, QPoint, bool) override {
        m_log->append(QStringLiteral("text end"));
        return boundingRect();
    }
    void drawFinish(bool accept) override {
        m_log->append(QStringLiteral("text finish %1").arg(accept));
        close(accept, true);
    }
    QRectF boundingRect() const override { return QRectF(0, 0, 40, 20); }
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *) override {
        painter->fillRect(boundingRect(), Qt::gray);
    }

    QRectF clip;

signals:
    void moveTextItem(DrawingTextItem *item);
    void finishEdit(bool succeed, bool abort);

public slots:
    void onChangeSceneRect(QRectF sceneRect) { clip = sceneRect; }

protected:
    // Reaches the item from the scene's own handling of the press, if it has grabbed the mouse.
    void mousePressEvent(QGraphicsSceneMouseEvent *event) override {
        event->accept();
        if (boundingRect().contains(mapFromScene(event->scenePos())))
            return;
        ungrabMouse();
        close(true, false);
    }

private:
    ItemLog m_log;
};

/// A crop: the frame is set by the test. Undo and redo switch between the crop before and the accepted one.
class FakeCrop : public DrawingItem, public DrawingInterface {
    Q_OBJECT
public:
    FakeCrop(const QRectF &sceneRect, const QRect &cropBefore, QObject *parent, ItemLog log)
        : DrawingItem(DrawingAttributes(), sceneRect, parent), before(cropBefore), m_log(std::move(log)) {}

    bool isDrawn() const override { return false; }
    QRectF drawStart(QPoint) override { return QRectF(); }
    QRectF drawMove(QPoint, QPoint, bool) override { return QRectF(); }
    QRectF drawEnd(QPoint, QPoint, bool) override { return QRectF(); }
    void drawFinish(bool accept) override {
        m_log->append(QStringLiteral("crop finish %1").arg(accept));
        if (accept) {
            m_accepted = frame;
            emit crop(frame);
        }
        emit finishCrop(accept);
    }
    QRectF boundingRect() const override { return QRectF(); }
    void paint(QPainter *, const QStyleOptionGraphicsItem *, QWidget *) override { ++paints; }

    QRect before;
    QRect frame;
    int paints = 0;

signals:
    void moveCropItem(DrawingCropItem *item);
    void finishCrop(bool succeed);
    void crop(QRect rect);

protected:
    QVariant itemChange(GraphicsItemChange change, const QVariant &value) override {
        if (change == ItemSceneHasChanged) {
            if (!value.value<QGraphicsScene *>())
                emit crop(before);
            else if (!m_accepted.isNull())
                emit crop(m_accepted);
        }
        return DrawingItem::itemChange(change, value);
    }

private:
    ItemLog m_log;
    QRect m_accepted;
};

/// An editor with these items behind the rectangle, text and crop tools, and nothing behind the mosaic.
class TestEditor : public Editor {
    Q_OBJECT
public:
    const ItemLog sharedLog = std::make_shared<QStringList>();
    QStringList &log = *sharedLog;
    FakeFigure *figure = nullptr;
    FakeText *text = nullptr;
    FakeCrop *crop = nullptr;
    QString savedPathAtCreation;

    void applyCrop(const QRect &rect) { QMetaObject::invokeMethod(this, "onCrop", Q_ARG(QRect, rect)); }

protected:
    NewItem makeItem(ShapeType shape, const QRectF &sceneRect) override {
        savedPathAtCreation = savedPath();
        switch (shape) {
        case Rectangle:
            figure = new FakeFigure(sceneRect, this, sharedLog);
            connectDrawing(figure);
            return {figure, figure, nullptr, nullptr};
        case Text:
            text = new FakeText(sceneRect, this, sharedLog);
            connectText(text);
            return {text, text, nullptr, nullptr};
        case ShapeTypes::Crop:
            crop = new FakeCrop(sceneRect, cropRect(), this, sharedLog);
            connectCrop(crop);
            return {crop, crop, nullptr, nullptr};
        case Mosaic:
            return {};
        default:
            return Editor::makeItem(shape, sceneRect);
        }
    }
};
