#include "canvas/items/drawingcropitem.h"

#include "canvas/imagecropper.h"
#include "popups/croppopup.h"

#include <QGraphicsProxyWidget>
#include <QGraphicsScene>

DrawingCropItem::DrawingCropItem(const QRectF &sceneRect, const QRect &previousRect, QObject *parent)
    : DrawingItem(DrawingAttributes(), sceneRect, parent), m_cropper(new ImageCropper),
      m_previousRect(previousRect), m_imageSize(sceneRect.toRect().size()) {
    m_cropper->setCropRect(previousRect.isEmpty() ? sceneRect.toRect() : previousRect);
    m_cropper->hide();
}

DrawingCropItem::~DrawingCropItem() {
    destroyFrame();
}

void DrawingCropItem::setImageRect(const QRect &imageRect) {
    m_cropper->setImageRect(imageRect);
}

bool DrawingCropItem::isOpen() const {
    return m_cropper;
}

QRect DrawingCropItem::frame() const {
    return m_cropper ? m_cropper->cropRect() : QRect();
}

void DrawingCropItem::paintFrame(QPainter *painter, const QRect &exposed) const {
    if (m_cropper)
        m_cropper->paintFrame(painter, exposed);
}

QRectF DrawingCropItem::drawStart(QPoint) {
    return boundingRect();
}

QRectF DrawingCropItem::drawMove(QPoint, QPoint, bool) {
    return boundingRect();
}

QRectF DrawingCropItem::drawEnd(QPoint, QPoint, bool) {
    return boundingRect();
}

QRectF DrawingCropItem::boundingRect() const {
    return QRectF();
}

void DrawingCropItem::paint(QPainter *, const QStyleOptionGraphicsItem *, QWidget *) {}

void DrawingCropItem::attachPopup(CropPopup *popup) {
    if (!popup || !m_cropper)
        return;
    m_popup = popup;
    popup->setMaximumCropSize(m_imageSize);
    popup->setCropSize(m_cropper->cropRect().size());
    m_popupConnections = {
        connect(popup, &CropPopup::cropped, this, &DrawingCropItem::onCropped),
        connect(popup, &CropPopup::sizeChanged, this, [this](const QSize &size) { setTypedSize(size); }),
        connect(m_cropper, &ImageCropper::sizeChanged, this,
                [this](QSize size) {
                    m_popup->setCropSize(size);
                    emit moveCropItem(this);
                }),
    };
}

void DrawingCropItem::setTypedSize(QSize size) {
    m_cropper->setCropSize(size);
    // The rest of the image was too small for it.
    if (frame().size() != size)
        m_popup->setCropSize(frame().size());
    emit moveCropItem(this);
}

QVariant DrawingCropItem::itemChange(GraphicsItemChange change, const QVariant &value) {
    if (change == ItemSceneHasChanged) {
        if (!scene())
            emit crop(m_previousRect);
        else if (!m_acceptedRect.isEmpty())
            emit crop(m_acceptedRect);
        else if (m_popup && m_cropper && !m_proxy)
            openFrame();
    }
    return DrawingItem::itemChange(change, value);
}

void DrawingCropItem::openFrame() {
    m_proxy = scene()->addWidget(m_cropper);
    m_proxy->setFlag(ItemHasNoContents);
    // Nor is the scene to hear of each move, for which it would look through all of its items.
    m_cropper->setUpdatesEnabled(false);
    connect(m_cropper, &ImageCropper::move, this, [this] { emit moveCropItem(this); });
    connect(m_cropper, &ImageCropper::setProxyCursor, m_proxy,
            [this](const QCursor &cursor) { m_proxy->setCursor(cursor); });
    m_cropper->setFixedSize(m_imageSize);
    m_cropper->show();
    m_popup->show();
    m_popup->raise();
    emit moveCropItem(this);
}

void DrawingCropItem::onCropped(bool succeed) {
    drawFinish(succeed);
}

void DrawingCropItem::drawFinish(bool accept) {
    if (!m_cropper)
        return;
    m_cropper->hide();
    if (m_popup) {
        // Still attached: a number that was being typed is corrected now and reaches the frame.
        m_popup->hide();
        detachPopup();
    }
    if (accept) {
        m_acceptedRect = frame();
        emit crop(m_acceptedRect);
    }
    destroyFrame();
    emit finishCrop(accept);
}

void DrawingCropItem::destroyFrame() {
    // By itself, the proxy would take the widget with it.
    if (m_proxy)
        m_proxy->setWidget(nullptr);
    delete m_proxy;
    delete m_cropper;
}

void DrawingCropItem::focusInEvent(QFocusEvent *event) {
    if (m_cropper)
        m_cropper->raise();
    if (m_popup)
        m_popup->raise();
    DrawingItem::focusInEvent(event);
}
