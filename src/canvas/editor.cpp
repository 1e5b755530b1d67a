#include "canvas/editor.h"

#include "canvas/items/drawingcropitem.h"
#include "canvas/items/drawingfigureitem.h"
#include "canvas/items/drawingfreehanditem.h"
#include "canvas/items/drawingtextitem.h"
#include "canvas/itemtable.h"
#include "canvas/toolusage.h"
#include "ipc/imageprovider.h"
#include "preferences/tindrapreferences.h"
#include "services/usagestatistics.h"

#include <QGraphicsSceneMouseEvent>
#include <QPainter>

#include <algorithm>

namespace {

/// The eraser takes what lies within this many pixels of the mouse.
constexpr int EraserReach = 1;

QGraphicsItem *graphicsItem(DrawingInterface *item) {
    return dynamic_cast<QGraphicsItem *>(item);
}

bool isDrawn(const QGraphicsItem *item) {
    // A widget is a means to edit, not a part of the picture.
    if (item->isWidget())
        return false;
    const auto *drawing = dynamic_cast<const DrawingItem *>(item);
    return !drawing || drawing->isDrawn();
}

void setParentOf(QGraphicsItem *item, QObject *parent) {
    if (auto *object = dynamic_cast<QObject *>(item))
        object->setParent(parent);
}

QRectF paintedRect(const QGraphicsItem &item) {
    const auto *drawing = dynamic_cast<const DrawingItem *>(&item);
    return drawing ? drawing->paintedRect() : item.sceneBoundingRect();
}

QRectF extentOf(const QGraphicsItem &item) {
    if (const auto *drawing = dynamic_cast<const DrawingItem *>(&item))
        return drawing->extent();
    const auto *text = dynamic_cast<const DrawingTextItem *>(&item);
    return text ? text->extent() : item.sceneBoundingRect();
}

} // namespace

Editor::Editor(QObject *parent) : QGraphicsScene(parent) {
    // Items grow during a drag without telling the scene, which an index would not notice.
    setItemIndexMethod(NoIndex);
}

Editor::~Editor() {
    // While everything is still there: whoever attached a popup to an open item hears of its end.
    finishCurrentItem(false);
    clearImage();
}

void Editor::setImageKey(const QString &path) {
    if (path == m_imageKey)
        return;
    if (!m_imageKey.isEmpty())
        ImageProvider::instance()->remove(m_imageKey);
    m_imageKey = path;
    update();
}

void Editor::clearImage() {
    setImageKey(QString());
}

bool Editor::imageExists() const {
    return ImageProvider::instance()->isFile(m_imageKey);
}

void Editor::setSavedPath(const QString &path) {
    m_savedPath = path;
    emit imageSaved(!path.isEmpty());
}

QRect Editor::imageRect() const {
    return ImageProvider::instance()->pixmap(m_imageKey).rect();
}

QRect Editor::visibleRect() const {
    const QPixmap pixmap = ImageProvider::instance()->pixmap(m_imageKey);
    if (pixmap.isNull())
        return QRect();
    return m_cropRect.isEmpty() ? pixmap.rect() : m_cropRect;
}

QPixmap Editor::flatten(bool withDrawings, bool ignoreCrop) {
    QPixmap pixmap = ImageProvider::instance()->pixmap(m_imageKey);
    if (pixmap.isNull())
        return QPixmap();
    setSceneRect(QRectF(pixmap.rect()));
    QRect source = pixmap.rect();
    if (!ignoreCrop && !m_cropRect.isEmpty() && m_cropRect != source) {
        source = m_cropRect;
        pixmap = pixmap.copy(m_cropRect);
    }
    if (withDrawings) {
        const QList<QGraphicsItem *> present = items();
        if (std::any_of(present.begin(), present.end(), isDrawn)) {
            QPainter painter(&pixmap);
            render(&painter, QRectF(pixmap.rect()), QRectF(source), Qt::KeepAspectRatio);
        }
    }
    return pixmap;
}

void Editor::setShape(ShapeType shape) {
    if (isDragging())
        finishDrag();
    const bool open = m_shapeType == TextEditing || m_shapeType == Crop;
    if (open && m_currentItem)
        m_currentItem->drawFinish(false);
    // The press that opened a text counts until the click that closes it, but not for another tool.
    const bool isTextMode = shape == Text || shape == TextEditing || shape == TextFinished;
    if (!isTextMode)
        m_pressPos = NoPos;
    // Read anew: closing the item above has changed the tool.
    if (m_shapeType != Crop)
        m_previousShapeType = m_shapeType;
    m_shapeType = shape;
    emit changedShape(shape);
}

void Editor::restoreLastShape() {
    const int stored = TindraPreferences::instance()->GetInt(TindraPreferences::LastDrawingItem, Rectangle);
    // A settings file can hold any number. An open text or crop without its item, or no tool at all, would
    // leave an editor that takes no press.
    setShape(stored >= Eraser && stored <= Text ? static_cast<ShapeType>(stored) : Rectangle);
}

void Editor::startCrop() {
    if (m_shapeType != Crop)
        return;
    // The whole image is seen while the frame is open, so the items must not be cut.
    emit changeSceneRect(sceneRect());
    const NewItem item = createItem(Crop, sceneRect());
    m_currentItem = item.drawing;
    if (!item.drawing)
        return;
    putIntoScene(item.graphics);
    m_undoList.append(item.graphics);
}

void Editor::finishCurrentItem(bool accept) {
    const bool open = m_shapeType == TextEditing || m_shapeType == Crop;
    if (open && m_currentItem)
        m_currentItem->drawFinish(accept);
}

void Editor::undo() {
    toggle(m_undoList, m_redoList);
}

void Editor::redo() {
    toggle(m_redoList, m_undoList);
}

void Editor::toggle(QList<QGraphicsItem *> &from, QList<QGraphicsItem *> &to) {
    if (from.isEmpty())
        return;
    QGraphicsItem *item = from.last();
    // A crop whose frame is still open is no step yet.
    if (item == graphicsItem(m_currentItem) && item->scene()) {
        finishCurrentItem(false);
        return;
    }
    to.append(item);
    if (item->scene()) {
        // The toolkit has everything painted anew for whoever hears of changes, be it asked to or not.
        m_index.remove(item);
        removeItem(item);
        setParentOf(item, &m_takenBack);
        update();
    } else {
        // Another one than when it left, if a crop was accepted since: that leaves what can be redone.
        if (auto *crop = dynamic_cast<DrawingCropItem *>(item))
            crop->setPreviousRect(m_cropRect);
        setParentOf(item, this);
        putIntoScene(item);
        m_currentOnTop = false;
        // Everything if that is null, as a crop's is.
        update(paintedRect(*item));
    }
    from.removeLast();
}

void Editor::reset() {
    int left = items().size();
    while (left > 0 && canUndo()) {
        const int drawings = lastDrawings(left);
        if (drawings > 0)
            undoDrawings(drawings);
        else
            undo();
        left -= std::max(drawings, 1);
    }
}

int Editor::lastDrawings(int most) const {
    const auto isSilent = [this](QGraphicsItem *item) {
        const auto *drawing = dynamic_cast<const DrawingItem *>(item);
        return drawing && drawing->isDrawn() && item->scene() == this && item != graphicsItem(m_currentItem);
    };
    int count = 0;
    while (count < most && count < m_undoList.size() &&
           isSilent(m_undoList.at(m_undoList.size() - 1 - count)))
        ++count;
    return count;
}

void Editor::undoDrawings(int count) {
    const QList<QGraphicsItem *> leaving = m_undoList.mid(m_undoList.size() - count);
    for (int i = 0; i < count; ++i) {
        QGraphicsItem *item = m_undoList.takeLast();
        m_index.remove(item);
        m_redoList.append(item);
    }
    // The oldest first: for each that leaves, the toolkit searches its lists from the oldest on, and newest
    // first would look at all of them each time.
    for (QGraphicsItem *item : leaving) {
        removeItem(item);
        setParentOf(item, &m_takenBack);
    }
    update();
}

void Editor::mousePressEvent(QGraphicsSceneMouseEvent *event) {
    QGraphicsScene::mousePressEvent(event);
    // With Ctrl down the toolkit leaves the selection as it is, and an open text would stay without the
    // focus.
    if (m_shapeType == TextEditing && !mouseGrabberItem())
        clearSelection();
    pressTool(event);
}

void Editor::mouseDoubleClickEvent(QGraphicsSceneMouseEvent *event) {
    QGraphicsScene::mouseDoubleClickEvent(event);
    // Two quick strokes are two strokes.
    pressTool(event);
}

void Editor::pressTool(const QGraphicsSceneMouseEvent *event) {
    if (m_gestureActive || m_shapeType == TextEditing || m_shapeType == Crop)
        return;
    const bool left = event->button() == Qt::LeftButton;
    const QPoint pos = event->scenePos().toPoint();
    if (m_shapeType == Eraser) {
        if (left && eraseAt(pos))
            reportToolUse();
        return;
    }
    // The press that closed a text does nothing else, whatever its button.
    if (m_shapeType == TextFinished) {
        setShape(Text);
        return;
    }
    if (!left)
        return;
    if (isDragging())
        finishDrag();
    // Also for a tool that makes no item: the release counts it as used.
    m_pressPos = pos;
    m_lastPos = pos;
    m_hasMoved = false;
    m_lastShift = false;
    const NewItem item = createItem(m_shapeType, QRectF(visibleRect()));
    m_currentItem = item.drawing;
    if (!item.drawing)
        return;
    item.drawing->drawStart(pos);
    putIntoScene(item.graphics);
    m_currentOnTop = true;
}

void Editor::mouseMoveEvent(QGraphicsSceneMouseEvent *event) {
    // Only the frame of a crop wants to know of a mouse that passes over, and who that might be the base
    // class finds out by asking everything there for its shape. An open text hears of it below.
    if (event->buttons() || mouseGrabberItem() || m_shapeType == Crop)
        QGraphicsScene::mouseMoveEvent(event);
    if (m_shapeType == Crop)
        return;
    const bool left = event->buttons() & Qt::LeftButton;
    // A menu or a dialog has taken the release.
    if (!left && isDragging())
        finishDrag();
    const bool shift = event->modifiers() & Qt::ShiftModifier;
    const QPoint pos = event->scenePos().toPoint();
    if (m_shapeType == Eraser && left && eraseAt(pos))
        return;
    if (left && m_pressPos != NoPos) {
        if (!m_currentItem)
            return;
        growCurrentItem(pos, shift);
        m_lastPos = pos;
        m_hasMoved |= pos != m_pressPos;
        m_lastShift = shift;
        // Keeps the views from looking for an item under the mouse that might set the cursor, which asks
        // every stroke there for its shape.
        event->accept();
    } else if (m_shapeType == TextEditing && m_currentItem) {
        m_currentItem->drawMove(m_lastPos, pos, shift);
        m_lastPos = pos;
    }
}

void Editor::mouseReleaseEvent(QGraphicsSceneMouseEvent *event) {
    QGraphicsScene::mouseReleaseEvent(event);
    if (m_shapeType == TextEditing || m_shapeType == Crop || m_shapeType == Eraser)
        return;
    endDrag(event->scenePos().toPoint(), event->modifiers() & Qt::ShiftModifier);
}

void Editor::endDrag(QPoint pos, bool shift) {
    if (m_pressPos == NoPos)
        return;
    if (m_currentItem && !dropClickOfPen(pos))
        finishStroke(pos, shift);
    m_pressPos = NoPos;
    m_lastPos = NoPos;
    reportToolUse();
}

bool Editor::isDragging() const {
    return m_pressPos != NoPos && m_shapeType >= Pen && m_shapeType <= Mosaic;
}

void Editor::finishDrag() {
    // The press that opened a text has nothing left to end, and the current item is the open one.
    if (m_shapeType == TextEditing || m_shapeType == Crop) {
        m_pressPos = NoPos;
        m_lastPos = NoPos;
        return;
    }
    endDrag(m_lastPos, m_lastShift);
}

void Editor::dropDrag() {
    if (!isDragging())
        return;
    // Not destroyed before the editor is: an item may have work of its own under way.
    if (m_currentItem)
        takeOutOfScene(graphicsItem(m_currentItem));
    m_currentItem = nullptr;
    m_pressPos = NoPos;
    m_lastPos = NoPos;
}

void Editor::setGestureActive(bool active) {
    m_gestureActive = active;
    if (active)
        dropDrag();
}

bool Editor::dropClickOfPen(QPoint pos) {
    if (m_shapeType != Pen || pos != m_pressPos)
        return false;
    QGraphicsItem *item = graphicsItem(m_currentItem);
    m_currentItem = nullptr;
    takeOutOfScene(item);
    delete item;
    return true;
}

void Editor::finishStroke(QPoint pos, bool shift) {
    QGraphicsItem *item = graphicsItem(m_currentItem);
    // Not where it is let go: a ring that closes where it began is drawn.
    if (!m_hasMoved) {
        // Not destroyed before the editor is: an item may have work of its own under way.
        takeOutOfScene(item);
        m_currentItem = nullptr;
        return;
    }
    const auto *stroke = dynamic_cast<DrawingFreehandItem *>(m_currentItem);
    const int known = stroke ? stroke->segmentCount() : 0;
    const QRectF before = paintedRect(*item);
    m_currentItem->drawEnd(m_lastPos, pos, shift);
    settle(item);
    m_undoList.append(item);
    emptyRedoList();
    m_currentItem = nullptr;
    if (stroke) {
        announceGrowth(*stroke, known);
    } else {
        update(before.united(paintedRect(*item)));
    }
}

void Editor::growCurrentItem(QPoint pos, bool shift) {
    if (const auto *stroke = dynamic_cast<DrawingFreehandItem *>(m_currentItem)) {
        const int known = stroke->segmentCount();
        m_currentItem->drawMove(m_lastPos, pos, shift);
        announceGrowth(*stroke, known);
        return;
    }
    const QGraphicsItem &item = *graphicsItem(m_currentItem);
    const QRectF before = paintedRect(item);
    m_currentItem->drawMove(m_lastPos, pos, shift);
    const QRectF area = before.united(paintedRect(item));
    auto *figure = dynamic_cast<DrawingFigureItem *>(m_currentItem);
    if (!figure || !m_currentOnTop) {
        update(area);
        return;
    }
    emit figureChanged(figure, area);
    emit changed({});
}

void Editor::announceGrowth(const DrawingFreehandItem &stroke, int firstSegment) {
    // A redo in the middle of the drag has put an item over the stroke.
    if (!m_currentOnTop) {
        update(stroke.segmentsRect(firstSegment));
        return;
    }
    emit strokeExtended(&stroke, firstSegment);
    emit changed({});
}

QGraphicsItem *Editor::erasableAt(QPoint pos) const {
    const QRectF reach(pos.x() - EraserReach, pos.y() - EraserReach, 2 * EraserReach + 1,
                       2 * EraserReach + 1);
    const bool outside = !m_cropRect.isEmpty() && !QRectF(m_cropRect).contains(reach);
    QPainterPath path;
    path.addRect(reach);
    for (QGraphicsItem *item : itemsNear(reach)) {
        if (item->collidesWithPath(item->mapFromScene(path), Qt::IntersectsItemShape))
            return item;
        // The test above ends at the bounding rectangles, which end at the crop, but strokes can be erased
        // beyond it too.
        const auto *stroke = outside ? dynamic_cast<DrawingFreehandItem *>(item) : nullptr;
        if (stroke && stroke->isHit(reach))
            return item;
    }
    return nullptr;
}

QVector<QGraphicsItem *> Editor::itemsNear(const QRectF &area) const {
    const QList<QGraphicsItem *> present = items();
    if (present.size() < m_index.size())
        m_index.keepOnly(present);
    QVector<QGraphicsItem *> found = m_index.meeting(area);
    if (present.size() == m_index.size())
        return found;
    // What others have put there, as the frame of an open crop, others take away; it came after the rest.
    // Nobody else deletes items of the editor's own while the program runs: told by their number alone, one
    // that went and a stranger that came would not be noticed.
    for (QGraphicsItem *item : present) {
        if (!m_index.contains(item))
            found.prepend(item);
    }
    return found;
}

bool Editor::eraseAt(QPoint pos) {
    QGraphicsItem *item = erasableAt(pos);
    if (!item)
        return false;
    m_redoList.append(item);
    m_undoList.removeOne(item);
    takeOutOfScene(item);
    setParentOf(item, &m_takenBack);
    return true;
}

Editor::NewItem Editor::makeItem(ShapeType shape, const QRectF &sceneRect) {
    const ItemTable::Maker make = ItemTable::maker(shape);
    return make ? make(*this, sceneRect) : NewItem();
}

Editor::NewItem Editor::createItem(ShapeType shape, const QRectF &sceneRect) {
    const NewItem item = makeItem(shape, sceneRect);
    if (!item.drawing)
        return item;
    if (shape == Text) {
        setShape(TextEditing);
        emit createTextItem(item.text);
    } else if (shape == Crop) {
        m_cropRect = imageRect();
        emit createCropItem(item.crop);
    }
    markUnsaved();
    return item;
}

void Editor::markUnsaved() {
    if (m_savedPath.isEmpty())
        return;
    m_savedPath.clear();
    emit imageSaved(false);
}

void Editor::putIntoScene(QGraphicsItem *item) {
    addItem(item);
    // Not before: it may lead to a look for items, which drops from the index what the scene does not have.
    m_index.add(item);
    if (item != graphicsItem(m_currentItem))
        settle(item);
}

void Editor::settle(QGraphicsItem *item) {
    m_index.place(item, extentOf(*item));
}

void Editor::takeOutOfScene(QGraphicsItem *item) {
    if (item->scene() != this)
        return;
    m_index.remove(item);
    const QRectF area = paintedRect(*item);
    removeItem(item);
    update(area);
}

void Editor::onFinishTextEdit(bool succeed, bool abort) {
    if (succeed && m_currentItem) {
        settle(graphicsItem(m_currentItem));
        m_undoList.append(graphicsItem(m_currentItem));
        emptyRedoList();
        reportToolUse();
    } else {
        rejectCurrentItem();
    }
    m_currentItem = nullptr;
    emit finishTextItem();
    setShape(abort ? Text : TextFinished);
}

void Editor::onFinishCrop(bool succeed) {
    if (succeed) {
        settle(graphicsItem(m_currentItem));
        reportToolUse();
    } else {
        rejectCurrentItem();
    }
    m_currentItem = nullptr;
    emit finishCropItem();
    setShape(m_previousShapeType);
}

void Editor::rejectCurrentItem() {
    QGraphicsItem *item = graphicsItem(m_currentItem);
    if (!item)
        return;
    m_undoList.removeOne(item);
    takeOutOfScene(item);
    // Later: this runs inside a signal of that very item.
    if (auto *object = dynamic_cast<QObject *>(item))
        object->deleteLater();
}

void Editor::onCrop(QRect rect) {
    m_cropRect = rect;
    emit updateImageSize();
    const QRectF visible(visibleRect());
    emit changeSceneRect(visible);
    update(visible);
    emit changed({QRectF(m_cropRect)});
}

void Editor::emptyRedoList() {
    if (m_redoList.isEmpty())
        return;
    const QSet<QGraphicsItem *> gone(m_redoList.begin(), m_redoList.end());
    const QSet<QGraphicsItem *> steps(m_undoList.begin(), m_undoList.end());
    m_redoList.clear();
    // Nothing can bring these back. In the order in which their parent has them, since it searches its list
    // for each that goes.
    const QObjectList takenBack = m_takenBack.children();
    for (QObject *object : takenBack) {
        auto *item = dynamic_cast<QGraphicsItem *>(object);
        if (gone.contains(item) && !item->scene() && !steps.contains(item))
            delete item;
    }
}

void Editor::reportToolUse() {
    const int lineStyle = DrawingAttributes::figureLineStyle();
    const char *code = toolUsageCode(m_shapeType, lineStyle);
    if (!code)
        return;
    const int key = isFigure(m_shapeType) ? m_shapeType | lineStyle << 8 : m_shapeType;
    if (m_reportedTools.contains(key))
        return;
    m_reportedTools.insert(key);
    recordUsage(code);
}
