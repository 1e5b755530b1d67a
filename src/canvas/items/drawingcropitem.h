#pragma once

#include "canvas/items/drawinginterface.h"
#include "canvas/items/drawingitem.h"
#include "canvas/items/drawingtoolinterface.h"

#include <QPointer>

class CropPopup;
class ImageCropper;
class QGraphicsProxyWidget;

/// A crop as an undo step. Invisible; while the crop is open it brings the crop frame into its scene and
/// connects it with the popup.
///
/// Nothing is ever cut: an accepted crop is a rectangle that the item tells its editor by `crop`, whenever it
/// joins the scene anew, and the rectangle of before when it leaves. Rectangles are in image pixels.
class DrawingCropItem : public DrawingItem, public DrawingInterface, public DrawingToolInterface<CropPopup> {
    Q_OBJECT
public:
    /// `previousRect` is the crop of now, null without one; the frame begins there.
    DrawingCropItem(const QRectF &sceneRect, const QRect &previousRect, QObject *parent);
    ~DrawingCropItem() override;

    /// What is restored when the item leaves the scene: the crop that is in force when it comes back.
    void setPreviousRect(const QRect &previousRect) { m_previousRect = previousRect; }
    /// The limits of the frame.
    void setImageRect(const QRect &imageRect);
    bool isOpen() const;
    /// The open frame; null once the crop is closed, and over a missing image.
    QRect frame() const;
    /// Paints the open frame and what it dims, in scene coordinates, as `ImageCropper::paintFrame` does. The
    /// scene does not: the frame belongs on the screen and into no picture of the scene, and nothing below it
    /// need be painted anew when it moves.
    void paintFrame(QPainter *painter, const QRect &exposed) const;

    QRectF drawStart(QPoint pos) override;
    QRectF drawMove(QPoint lastPos, QPoint pos, bool shift) override;
    QRectF drawEnd(QPoint lastPos, QPoint pos, bool shift) override;
    void drawFinish(bool accept) override;

    void attachPopup(CropPopup *popup) override;

    bool isDrawn() const override { return false; }
    QRectF extent() const override { return QRectF(); }
    QRectF boundingRect() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

public slots:
    void onCropped(bool succeed);

signals:
    /// The frame has another place or size.
    void moveCropItem(DrawingCropItem *item);
    /// The argument is true for acceptance, whatever its name says.
    void finishCrop(bool cancel);
    void crop(QRect rect);

protected:
    QVariant itemChange(GraphicsItemChange change, const QVariant &value) override;
    void focusInEvent(QFocusEvent *event) override;

private:
    void openFrame();
    void setTypedSize(QSize size);
    void destroyFrame();

    QPointer<QGraphicsProxyWidget> m_proxy;
    QPointer<ImageCropper> m_cropper;
    QRect m_acceptedRect;
    QRect m_previousRect;
    QSize m_imageSize;
};
