#include "print/previewpicture.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr double RoomForEdges = 2.0; // pixels

QRect truncated(double left, double top, double width, double height) {
    return {static_cast<int>(left), static_cast<int>(top), static_cast<int>(width), static_cast<int>(height)};
}

QRect truncated(const QRectF &rect) {
    return truncated(rect.left(), rect.top(), rect.width(), rect.height());
}

} // namespace

// Between the pixels of a picture that is less than half as large, lines and letters would get lost. The
// average is kept, as a capture may be larger than can be averaged at each turn of a margin.
void PreviewPicture::reduce(const QPixmap &image, const ImagePlacement &placement) {
    const double factor = std::min(placement.source.width() / placement.target.width(),
                                   placement.source.height() / placement.target.height());
    const int halvings = factor < 2 ? 0 : static_cast<int>(std::log2(factor));
    if (m_imageKey == image.cacheKey() && m_halvings == halvings)
        return;
    m_imageKey = image.cacheKey();
    m_halvings = halvings;
    const QSize size(std::max(image.width() >> halvings, 1), std::max(image.height() >> halvings, 1));
    m_reduced = halvings == 0 ? image : image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QPixmap PreviewPicture::draw(const QPixmap &image, const PreviewLayout &layout, bool withBorder,
                             bool isGray) {
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
    if (!target.isEmpty()) {
        reduce(image, layout.image);
        const QRectF source = layout.image.source;
        const double x = double(m_reduced.width()) / image.width();
        const double y = double(m_reduced.height()) / image.height();
        painter.drawPixmap(
            target, m_reduced,
            QRectF(source.left() * x, source.top() * y, source.width() * x, source.height() * y));
    }
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
