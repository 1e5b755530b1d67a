// How the view keeps its picture of the scene up to date.
#include "canvas/canvasviewport.h"
#include "canvas/editorview.h"
#include "canvas/flagguard.h"
#include "canvas/imagecropper.h"
#include "canvas/items/drawingcropitem.h"
#include "canvas/items/drawingfigureitem.h"
#include "canvas/items/drawingfreehanditem.h"
#include "canvas/items/drawingtextitem.h"
#include "ui/debouncefunc.h"

#include <QCoreApplication>
#include <QPaintEvent>
#include <QPainter>
#include <QStyleOptionGraphicsItem>

namespace {

/// The smooth background waits for this many milliseconds without a paint.
constexpr int BackgroundQuietTime = 66;
/// How far, in device pixels, antialiasing and rounding can carry a mark beyond its exact outline.
constexpr int DeviceMargin = 2;
/// How far, in device pixels, what can meet a region is looked for: further than any margin goes.
constexpr int ReachMargin = 2 * DeviceMargin;
/// How far, in device pixels, the toolkit widens bounding rectangles before it leaves out what is not in
/// view.
constexpr int ToolkitMargin = 2;

} // namespace

void EditorView::paintEvent(QPaintEvent *event) {
    scheduleRefresh();
    if (!m_editor) {
        QPainter painter(viewport());
        for (const QRect &rect : event->region())
            painter.fillRect(rect, viewport()->palette().brush(viewport()->backgroundRole()));
        return;
    }
    adaptFrame();
    hearOfChanges();
    QRegion stale = m_frame.takeStale(event->region());
    // Only then is the picture asked for anyway; what a mere exposure shows is looked at by the later job.
    if (!stale.isEmpty() && takeImageChange()) {
        repaintAll();
        stale = m_frame.takeStale(event->region());
    }
    if (!stale.isEmpty()) {
        if (DrawingTextItem *text = textOnTop())
            paintTextOnTop(text, stale);
        else
            renderFrame(withReachingItems(stale));
    }
    paintExposed(event->region());
}

// One rectangle at a time: under a clip of many the raster engine takes several times as long.
void EditorView::paintExposed(const QRegion &region) {
    QPainter painter(viewport());
    for (const QRect &rect : region) {
        painter.setClipRect(rect);
        painter.drawImage(rect.topLeft(), m_frame.image(), rect);
        if (!m_cropItem)
            continue;
        painter.setTransform(viewportTransform());
        m_cropItem->paintFrame(&painter, exposedToCrop(rect));
        painter.resetTransform();
    }
}

QRect EditorView::exposedToCrop(const QRect &rect) const {
    const auto withMargin = [](const QRect &area, int margin) {
        return area.adjusted(-margin, -margin, margin, margin);
    };
    const QRect frame = viewportTransform().mapRect(QRectF(m_cropItem->frame())).toAlignedRect();
    // The pixel of a corner can hang on whether the line to the next one ends in sight, so one that leaves
    // the viewport is not to be cut off anywhere else.
    if (!viewport()->rect().contains(withMargin(frame, DeviceMargin)))
        return m_editor->imageRect();
    return viewportTransform().inverted().mapRect(QRectF(withMargin(rect, DeviceMargin))).toAlignedRect();
}

// The scene tells of changes in a turn of its own. Painted before that, it forgets that all of it has
// changed.
void EditorView::hearOfChanges() {
    QCoreApplication::sendPostedEvents(m_editor, QEvent::MetaCall);
}

void EditorView::adaptFrame() {
    m_frame.adapt(viewport()->size(), viewportTransform(),
                  viewport()->palette().brush(viewport()->backgroundRole()));
}

void EditorView::repaintAll() {
    m_frame.markAllStale();
    viewport()->update();
}

void EditorView::onSceneChanged(const QList<QRectF> &areas) {
    const auto *current = dynamic_cast<QObject *>(m_editor->currentItem());
    if (m_frame.hasUnderlay() && (!current || current != m_overlaid)) {
        m_overlaid.clear();
        m_frame.endUnderlay();
    }
    // While a text is open nothing below it changes but with the whole scene.
    const bool onlyText = m_frame.hasUnderlay() && textOnTop();
    for (const QRectF &area : areas) {
        // Stands for everything: an open text may reach beyond the image.
        if (area.contains(scene()->sceneRect())) {
            repaintAll();
            return;
        }
        const QRect rect = deviceRect(area);
        if (onlyText)
            m_frame.markStaleAbove(rect);
        else
            m_frame.markStale(rect);
        viewport()->update(rect);
    }
}

void EditorView::onStrokeExtended(const DrawingFreehandItem *item, int firstSegment) {
    adaptFrame();
    const QRect rect = deviceRect(item->segmentsRect(firstSegment));
    if (rect.isEmpty())
        return;
    // Where the frame is stale this is for nothing: the next paint brings the whole stroke there.
    QPainter painter(&m_frame.image());
    painter.setWorldTransform(viewportTransform());
    item->paintSegments(&painter, firstSegment);
    viewport()->update(rect);
}

void EditorView::onFigureChanged(DrawingFigureItem *item, const QRectF &area) {
    adaptFrame();
    const QRect rect = deviceRect(area);
    if (rect.isEmpty())
        return;
    hearOfChanges();
    refreshUnderlay(item, item, rect);
    m_frame.uncover(rect);
    paintOverFrame(item, viewport());
    viewport()->update(rect);
}

DrawingTextItem *EditorView::textOnTop() const {
    return m_editor->isCurrentOnTop() ? dynamic_cast<DrawingTextItem *>(m_editor->currentItem()) : nullptr;
}

void EditorView::paintTextOnTop(DrawingTextItem *text, const QRegion &stale) {
    // All of the box, through which the picture shines. The margin has room for the line below it.
    const QRegion region = stale + deviceRect(text->sceneBoundingRect());
    refreshUnderlay(text, text, region);
    for (const QRect &rect : region)
        m_frame.uncover(rect);
    // Not on a widget, which would have to be told of that line.
    paintOverFrame(text, nullptr);
}

void EditorView::paintOverFrame(QGraphicsItem *item, QWidget *widget) {
    if (!isReached(*item))
        return;
    QPainter painter(&m_frame.image());
    painter.setWorldTransform(item->sceneTransform() * viewportTransform());
    QStyleOptionGraphicsItem option;
    option.exposedRect = item->boundingRect();
    if (item->isSelected())
        option.state |= QStyle::State_Selected;
    item->paint(&painter, &option, widget);
}

// A preview can draw far beyond its bounding rectangle, which is one mouse event behind.
bool EditorView::isReached(const QGraphicsItem &item) const {
    const QRect bounds = viewportTransform().mapRect(item.sceneBoundingRect()).toRect();
    return viewport()->rect().intersects(
        bounds.adjusted(-ToolkitMargin, -ToolkitMargin, ToolkitMargin, ToolkitMargin));
}

void EditorView::refreshUnderlay(QObject *object, Omittable *item, const QRegion &unknown) {
    if (m_overlaid != object || !m_frame.hasUnderlay()) {
        m_overlaid = object;
        m_frame.beginUnderlay(unknown);
    }
    const QRegion stale = m_frame.takeStaleUnderlay();
    if (stale.isEmpty())
        return;
    item->setOmitted(true);
    renderParts(m_frame.underlay(), withReachingItems(stale));
    item->setOmitted(false);
}

// The frame lies over the picture that is kept, which is still good.
void EditorView::updateCropFrame() {
    const QRect frame = m_cropItem->frame();
    QRegion changed;
    for (const QRect &rect : ImageCropper::changedRegion(m_shownCropFrame, frame))
        changed += deviceRect(rect);
    m_shownCropFrame = frame;
    viewport()->update(changed);
}

void EditorView::scrollContentsBy(int dx, int dy) {
    QGraphicsView::scrollContentsBy(dx, dy);
    // Moving the old picture would be cheaper, but lines that the border cuts come out differently there.
    viewport()->update();
}

void EditorView::changeEvent(QEvent *event) {
    QGraphicsView::changeEvent(event);
    if (event->type() == QEvent::StyleChange || event->type() == QEvent::PaletteChange)
        repaintAll();
}

QRect EditorView::deviceRect(const QRectF &sceneArea) const {
    const QRect rect = viewportTransform().mapRect(sceneArea).toAlignedRect();
    return rect.adjusted(-DeviceMargin, -DeviceMargin, DeviceMargin, DeviceMargin) & viewport()->rect();
}

// The toolkit paints an item only where the region meets its bounding rectangle. Where the region meets but
// a mark beyond that rectangle, such as a mitred corner, the rectangle must come in too, and so on.
QRegion EditorView::withReachingItems(QRegion region) const {
    const QTransform toScene = viewportTransform().inverted();
    for (bool grown = true; grown;) {
        grown = false;
        const QRect around =
            region.boundingRect().adjusted(-ReachMargin, -ReachMargin, ReachMargin, ReachMargin);
        for (const QGraphicsItem *item : m_editor->itemsNear(toScene.mapRect(QRectF(around)))) {
            const auto *drawing = dynamic_cast<const DrawingItem *>(item);
            if (!drawing || !region.intersects(deviceRect(drawing->paintedRect())))
                continue;
            const QRectF bounds = drawing->boundingRect();
            const QRegion missing = QRegion(deviceRect(bounds)) - region;
            // The margin of the device rectangle alone would not be enough for the toolkit.
            if (missing.isEmpty() || region.intersects(viewportTransform().mapRect(bounds).toAlignedRect()))
                continue;
            region += missing;
            grown = true;
        }
    }
    return region;
}

void EditorView::renderFrame(const QRegion &stale) {
    if (renderParts(m_frame.image(), stale))
        m_frame.takeStale(viewport()->rect());
}

bool EditorView::renderParts(QImage &image, const QRegion &stale) {
    const QRegion everything = viewport()->rect();
    // Scaling on the fly depends on where a row begins, so there is no painting a part of that background.
    const bool whole = m_zoom < 1.0 && !m_background.fits(m_editor->visibleRect(), m_zoom);
    if (whole || stale == everything) {
        paintScene(image, everything);
        return true;
    }
    // Not into the picture under a clip: the raster engine cuts lines at the clip before it turns them into
    // pixels, and a cut line can differ in its last bits. Only pages that are touched cost anything: those of
    // the region, and where the image is scaled those between the top left and the region, too.
    QImage scratch(image.size(), image.format());
    paintScene(scratch, stale);
    QPainter painter(&image);
    for (const QRect &rect : stale)
        painter.drawImage(rect.topLeft(), scratch, rect);
    return false;
}

// Items may paint beyond the region; what of the target lies outside it is worth nothing afterwards.
void EditorView::paintScene(QImage &target, const QRegion &region) {
    m_rendered = region;
    m_viewport->setPaintTarget(&target);
    QPaintEvent paint(region);
    QGraphicsView::paintEvent(&paint);
    m_viewport->setPaintTarget(nullptr);
    m_rendered = QRegion();
}

void EditorView::drawBackground(QPainter *painter, const QRectF &) {
    static bool painting = false;
    if (painting)
        return;
    const FlagGuard guard(painting);
    if (!m_editor)
        return;
    const QTransform transform = painter->transform();
    const QPixmap image = m_editor->flatten(false, true);
    const QRect rect = m_editor->visibleRect();
    painter->save();
    painter->resetTransform();
    if (m_rendered.isEmpty())
        m_background.paint(painter, image, rect, transform.mapRect(QRectF(rect)), m_zoom);
    // Scaled rows and columns have to begin where all of them would: the toolkit adds up its steps from
    // there, and a pixel between two of the image could come out as the other one. What is painted beyond the
    // region is worth nothing, and no item is painted yet.
    const QRect upToItsEnd(QPoint(), m_rendered.boundingRect().bottomRight());
    const QRegion region = m_zoom == 1.0 ? m_rendered : QRegion(upToItsEnd);
    // One rectangle at a time: images are scaled in another way, with other pixels, under a clip of many.
    for (const QRect &part : region) {
        painter->setClipRect(part);
        painter->fillRect(part, viewport()->palette().brush(viewport()->backgroundRole()));
        m_background.paint(painter, image, rect, transform.mapRect(QRectF(rect)), m_zoom);
    }
    painter->restore();
}

void EditorView::scheduleRefresh() {
    if (!m_backgroundDebounce)
        m_backgroundDebounce = new DebounceFunc([this] { refreshBackground(); }, BackgroundQuietTime, this);
    m_backgroundDebounce->call();
}

void EditorView::refreshBackground() {
    if (!m_editor)
        return;
    const bool otherImage = takeImageChange();
    const bool otherCopy =
        m_background.refresh(m_editor->flatten(false, true), m_editor->visibleRect(), m_zoom);
    // Only for a new picture, since every paint calls this again.
    if (otherImage || otherCopy)
        repaintAll();
}

bool EditorView::takeImageChange() {
    const qint64 image = m_editor->flatten(false, true).cacheKey();
    const bool changed = m_frameImage && *m_frameImage != image;
    m_frameImage = image;
    return changed;
}
