#include "canvas/imagecropper.h"

#include "ui/uistyler.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QRegion>

#include <cmath>

namespace {

/// The edges can be taken from within this many pixels inside the frame.
constexpr int BandWidth = 10;
/// The smallest side that a drag leaves. Smaller ones can be typed.
constexpr int SmallestDraggedSide = 50;

/// A corner mark is what an outer square leaves of an inner one.
constexpr int MarkOuter = 16;
constexpr int MarkInner = 13;
constexpr int MarkThickness = 4;

const QColor DimColor(0, 0, 0, 127);
const QColor FrameColor(0, 127, 245, 255);
const QColor MarkColor(Qt::white);
const QColor MarkBorderColor(0, 0, 0, 33);

/// The pen of a line of one image pixel. The raster engine draws lines thinner than a pixel of the device as
/// wide as one, and paler by what they lack; it is asked for that pale line outright. Asked for the thin one,
/// it rounds the colour in one way where it clips to a single rectangle and in another where it does not.
QPen linePen(QColor color, const QTransform &toDevice) {
    const double scale = std::sqrt(toDevice.determinant());
    const bool thin = scale < 1.0 && !qFuzzyCompare(scale, 1.0);
    if (thin) {
        const int coverage = static_cast<int>(256 * scale) * 255 >> 8;
        color.setAlpha(qRound(color.alpha() * coverage / 255.0));
    }
    QPen pen(color, 1.0, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin);
    pen.setCosmetic(thin);
    return pen;
}

QPoint truncated(const QPointF &point) {
    return QPoint(static_cast<int>(point.x()), static_cast<int>(point.y()));
}

/// The mark of one corner, with its outer square at the origin. At the right and the bottom the inner square
/// reaches out by one pixel on its side, which leaves the same thickness there.
QPainterPath cornerMark(bool right, bool bottom) {
    QPainterPath outer;
    outer.addRect(0, 0, MarkOuter, MarkOuter);
    QPainterPath inner;
    inner.addRect(right ? -1 : MarkThickness, bottom ? -1 : MarkThickness, MarkInner, MarkInner);
    return outer.subtracted(inner);
}

/// The marks lie inside the line of the frame.
void paintCornerMarks(QPainter *painter, const QRect &frame, const QRect &exposed) {
    // Taking one path from another is most of the work, and it is the same for each frame.
    static const QPainterPath marks[2][2] = {{cornerMark(false, false), cornerMark(false, true)},
                                             {cornerMark(true, false), cornerMark(true, true)}};
    painter->setPen(linePen(MarkBorderColor, painter->transform()));
    painter->setBrush(MarkColor);
    for (const bool bottom : {false, true}) {
        for (const bool right : {false, true}) {
            const QRect place(right ? frame.right() - MarkOuter + 1 : frame.left(),
                              bottom ? frame.bottom() - MarkOuter + 1 : frame.top(), MarkOuter, MarkOuter);
            if (place.intersects(exposed))
                painter->drawPath(marks[right][bottom].translated(place.topLeft()));
        }
    }
}

/// `rect` with its edges moved into `limits`. What lies outside becomes a line on the border.
QRectF bounded(const QRectF &rect, const QRectF &limits) {
    const auto inside = [&limits](const QPointF &point) {
        return QPointF(qBound(limits.left(), point.x(), limits.right()),
                       qBound(limits.top(), point.y(), limits.bottom()));
    };
    return QRectF(inside(rect.topLeft()), inside(rect.bottomRight()));
}

/// The line from one corner to the next one, with its width.
QRect lineRect(const QPoint &from, const QPoint &to) {
    return QRect(from, to).adjusted(-1, -1, 1, 1);
}

/// Where the line of the frame is another one. An edge that stays in its place changes at its ends only.
QRegion changedLines(const QRect &before, const QRect &after) {
    const auto changed = [](const QRect &line, const QRect &other, bool inPlace) {
        return inPlace ? QRegion(line).xored(other) : QRegion(line) + other;
    };
    return changed(lineRect(before.topLeft(), before.bottomLeft()),
                   lineRect(after.topLeft(), after.bottomLeft()), before.left() == after.left()) +
           changed(lineRect(before.topRight(), before.bottomRight()),
                   lineRect(after.topRight(), after.bottomRight()), before.right() == after.right()) +
           changed(lineRect(before.topLeft(), before.topRight()), lineRect(after.topLeft(), after.topRight()),
                   before.top() == after.top()) +
           changed(lineRect(before.bottomLeft(), before.bottomRight()),
                   lineRect(after.bottomLeft(), after.bottomRight()), before.bottom() == after.bottom());
}

/// The corner marks with the width of their lines.
QRegion markedRegion(const QRect &frame) {
    const QRect outer = frame.adjusted(-1, -1, 1, 1);
    const QSize mark(MarkOuter + 3, MarkOuter + 3);
    const int right = outer.right() - mark.width() + 1;
    const int bottom = outer.bottom() - mark.height() + 1;
    QRegion region;
    for (const QPoint &corner :
         {outer.topLeft(), QPoint(right, outer.top()), QPoint(outer.left(), bottom), QPoint(right, bottom)})
        region += QRect(corner, mark);
    return region;
}

} // namespace

ImageCropper::ImageCropper(QWidget *parent) : QWidget(parent, Qt::FramelessWindowHint) {
    setAttribute(Qt::WA_MouseTracking);
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_NoSystemBackground);
    setStyleSheet(QStringLiteral("background: transparent;"));
    UIStyler::setDisadjust(this, true);
}

void ImageCropper::setCropRect(const QRect &cropRect) {
    m_cropRect = cropRect;
    update();
}

void ImageCropper::setCropSize(QSize size) {
    m_cropRect.setSize(QSize(qMin(m_imageRect.width() - m_cropRect.x(), size.width()),
                             qMin(m_imageRect.height() - m_cropRect.y(), size.height())));
    const QPoint center = m_cropRect.center();
    m_cropRect.moveCenter(QPoint(qMin(center.x(), rect().right()), qMin(center.y(), rect().bottom())));
    update();
}

ImageCropper::CursorPosition ImageCropper::regionAt(const QPoint &point, const QRect &frame) {
    if (!frame.contains(point))
        return Undefined;
    const bool left = point.x() - frame.left() < BandWidth;
    const bool right = frame.right() - point.x() < BandWidth;
    const bool top = point.y() - frame.top() < BandWidth;
    const bool bottom = frame.bottom() - point.y() < BandWidth;
    if (left)
        return top ? TopLeft : bottom ? BottomLeft : Left;
    if (right)
        return top ? TopRight : bottom ? BottomRight : Right;
    return top ? Top : bottom ? Bottom : Middle;
}

QCursor ImageCropper::cursorOf(CursorPosition region, bool moving) {
    switch (region) {
    case Undefined:
        break;
    case Middle:
        return moving ? Qt::ClosedHandCursor : Qt::OpenHandCursor;
    case Left:
    case Right:
        return Qt::SizeHorCursor;
    case Top:
    case Bottom:
        return Qt::SizeVerCursor;
    case TopLeft:
    case BottomRight:
        return Qt::SizeFDiagCursor;
    case TopRight:
    case BottomLeft:
        return Qt::SizeBDiagCursor;
    }
    return Qt::ArrowCursor;
}

QRect ImageCropper::resized(const QRect &frame, CursorPosition region, const QPoint &delta) {
    QRect result = frame;
    if (region == Left || region == TopLeft || region == BottomLeft)
        result.setLeft(frame.left() + delta.x());
    if (region == Right || region == TopRight || region == BottomRight)
        result.setRight(frame.right() + delta.x());
    if (region == Top || region == TopLeft || region == TopRight)
        result.setTop(frame.top() + delta.y());
    if (region == Bottom || region == BottomLeft || region == BottomRight)
        result.setBottom(frame.bottom() + delta.y());
    if (result.width() < SmallestDraggedSide || result.height() < SmallestDraggedSide)
        return QRect();
    return result;
}

void ImageCropper::mousePressEvent(QMouseEvent *event) {
    m_pressRect = m_cropRect;
    const CursorPosition region = regionAt(event->pos(), m_cropRect);
    if (event->button() == Qt::LeftButton && region != Undefined) {
        m_pressPos = event->localPos();
        m_pressRegion = region;
        m_moving = region == Middle;
        m_resizing = !m_moving;
        if (m_moving)
            refreshCursor(event->pos());
    }
    update();
}

void ImageCropper::mouseMoveEvent(QMouseEvent *event) {
    // A menu or a dialog has taken the release.
    if (!(event->buttons() & Qt::LeftButton))
        endDrag();
    const QPoint delta = truncated(event->localPos() - m_pressPos);
    if (m_moving)
        moveFrame(delta);
    else if (m_resizing)
        resizeFrame(delta);
    else
        refreshCursor(event->pos());
}

void ImageCropper::mouseReleaseEvent(QMouseEvent *event) {
    endDrag();
    // The hand opens again.
    refreshCursor(event->pos());
}

void ImageCropper::endDrag() {
    m_moving = false;
    m_resizing = false;
}

void ImageCropper::moveFrame(const QPoint &delta) {
    m_cropRect.moveTopLeft(m_pressRect.topLeft() + delta);
    const QRect limits = rect();
    if (m_cropRect.left() < limits.left())
        m_cropRect.moveLeft(limits.left());
    if (m_cropRect.right() > limits.right())
        m_cropRect.moveRight(limits.right());
    if (m_cropRect.top() < limits.top())
        m_cropRect.moveTop(limits.top());
    if (m_cropRect.bottom() > limits.bottom())
        m_cropRect.moveBottom(limits.bottom());
    emit move();
    update();
}

void ImageCropper::resizeFrame(const QPoint &delta) {
    const QRect candidate = resized(m_pressRect, m_pressRegion, delta);
    // Too small: the frame keeps the last size that was large enough.
    if (candidate.isNull())
        return;
    m_cropRect = candidate.intersected(m_imageRect);
    m_cropRect.setWidth(qMin(m_imageRect.width() - m_cropRect.x(), m_cropRect.width()));
    m_cropRect.setHeight(qMin(m_imageRect.height() - m_cropRect.y(), m_cropRect.height()));
    emit sizeChanged(m_cropRect.size());
    update();
}

void ImageCropper::refreshCursor(const QPoint &pos) {
    emit setProxyCursor(cursorOf(regionAt(pos, m_cropRect), m_moving));
}

void ImageCropper::paintEvent(QPaintEvent *event) {
    QWidget::paintEvent(event);
    QPainter painter(this);
    paintFrame(&painter, rect());
}

QRegion ImageCropper::changedRegion(const QRect &before, const QRect &after) {
    return QRegion(before).xored(after) + changedLines(before, after) + markedRegion(before) +
           markedRegion(after);
}

void ImageCropper::paintFrame(QPainter *painter, const QRect &exposed) const {
    // With what a line reaches beyond its place.
    const QRect around = exposed.adjusted(-1, -1, 1, 1);
    // A path ends one pixel further than a rectangle of pixels.
    const QRect frame = m_cropRect.adjusted(0, 0, -1, -1);
    // Its edges are where they were, or out of sight: a line is paid for by each of its pixels, seen or not.
    QPainterPath frameLine;
    frameLine.addRect(bounded(frame, around));
    QPainterPath overlay;
    overlay.addRect(bounded(rect(), around));
    painter->fillPath(overlay.subtracted(frameLine), DimColor);
    painter->strokePath(frameLine, linePen(FrameColor, painter->transform()));
    painter->save();
    // Where the frame is smaller than its marks.
    if (frame.width() < MarkOuter || frame.height() < MarkOuter)
        painter->setClipRect(rect(), Qt::IntersectClip);
    paintCornerMarks(painter, frame, around);
    painter->restore();
}
