#pragma once

#include "canvas/items/drawinginterface.h"
#include "canvas/items/drawingtoolinterface.h"
#include "canvas/items/omittable.h"

#include <QColor>
#include <QFont>
#include <QGraphicsTextItem>

class QGraphicsView;
class QKeyEvent;
class TextPopup;

/// A text: opened by a press, written in place, and closed once, after which it is a step like any other.
///
/// While it is open it shows a plate and a frame, takes keyboard and input method, can be moved by its
/// border, and keeps the attached popup in sight. Closed, it is cut at the visible part of the image. Lengths
/// are image pixels. Size, colour and style hold for the whole text; a new one begins with the stored ones.
class DrawingTextItem : public QGraphicsTextItem,
                        public DrawingInterface,
                        public DrawingToolInterface<TextPopup>,
                        public Omittable {
    Q_OBJECT
public:
    /// `sceneRect` is the part of the image that is visible now.
    DrawingTextItem(const QRectF &sceneRect, QObject *parent);

    /// Opens the box, vertically centred on the press.
    QRectF drawStart(QPoint pos) override;
    /// Also a mouse that only hovers: sets the cursor of the view.
    QRectF drawMove(QPoint lastPos, QPoint pos, bool shift) override;
    QRectF drawEnd(QPoint lastPos, QPoint pos, bool shift) override;
    void drawFinish(bool accept) override;

    void attachPopup(TextPopup *popup) override;

    QRectF boundingRect() const override;
    /// The box in scene coordinates, were the whole image visible.
    QRectF extent() const { return mapRectToScene(QGraphicsTextItem::boundingRect()); }
    QPainterPath shape() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

public slots:
    /// `format`: the bits of `TextPopup::Format`. A size that is not positive leaves the size as it is.
    void onChangeFont(int fontSize, QColor color, int format);
    /// Another part of the image is visible. Only stores it: whoever changes the crop repaints the scene.
    void onChangeSceneRect(QRectF sceneRect);

signals:
    /// The box is about to appear, or stands elsewhere.
    void moveTextItem(DrawingTextItem *item);
    /// The text is closed. `succeed`: there is something to keep; `abort`: not closed by a click elsewhere.
    void finishEdit(bool succeed, bool abort);

protected:
    bool sceneEvent(QEvent *event) override;
    void mousePressEvent(QGraphicsSceneMouseEvent *event) override;
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    QVariant itemChange(GraphicsItemChange change, const QVariant &value) override;

private:
    bool isOpen() const { return textInteractionFlags() != Qt::NoTextInteraction; }
    /// Whether that point of the item lies within the border that moves the box.
    bool isInside(const QPointF &pos) const;
    /// The view that shows the text, or null.
    QGraphicsView *firstView() const;
    /// Where the lower line of the open box's frame is in the viewport of a view.
    QRect lowerLine(const QGraphicsView &view) const;
    void applyFont(int fontSize, const QColor &color, int format);
    void applyWidthRule();
    void showPopup();
    /// Whether that key leads the keyboard to the popup.
    bool isForPopup(const QKeyEvent *event) const;
    void takeComposedText();
    void close(bool accept, bool abort);

    QRectF m_sceneRect;
    QFont m_font;
};
