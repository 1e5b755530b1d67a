#include "print/previewpicture.h"

#include <QPainter>

namespace {

constexpr double RoomForEdges = 2.0; // pixels

QRect truncated(double left, double top, double width, double height) {
    return {static_cast<int>(left), static_cast<int>(top), static_cast<int>(width), static_cast<int>(height)};
}

QRect truncated(const QRectF &rect) {
    return truncated(rect.left(), rect.top(), rect.width(), rect.height());
}

} // namespace

QPixmap drawPreview(const QPixmap &image, const PreviewLayout &layout, bool withBorder, bool isGray) {
    if (layout.paper.isEmpty())
        return {};
    QPixmap picture(static_cast<int>(layout.paper.width() + RoomForEdges),
                    static_cast<int>(layout.paper.height() + RoomForEdges));
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setPen(Qt::SolidLine);
    painter.setBrush(QBrush(Qt::white, Qt::SolidPattern));
    painter.drawRect(truncated(QRectF(QPointF(), layout.paper)));
    painter.setBrush(Qt::NoBrush);

    const QRectF target = layout.image.target;
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    if (!target.isEmpty())
        painter.drawPixmap(target, image, layout.image.source);
    painter.setPen(Qt::DashLine);
    painter.drawRect(truncated(layout.margins));
    if (withBorder && !target.isEmpty()) {
        painter.setPen(Qt::SolidLine);
        painter.drawRect(
            truncated(target.left() + 0.5, target.top() + 1, target.width() - 1.5, target.height() - 1));
    }
    painter.end();
    return isGray ? QPixmap::fromImage(picture.toImage().convertToFormat(QImage::Format_Grayscale8))
                  : picture;
}
