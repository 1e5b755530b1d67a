#pragma once

#include "canvas/itemindex.h"
#include "canvas/shapetype.h"

#include <QGraphicsScene>
#include <QPixmap>
#include <QSet>

#include <functional>
#include <limits>

class DrawingCropItem;
class DrawingFigureItem;
class DrawingFreehandItem;
class DrawingInterface;
class DrawingTextItem;

/// The document of one capture: names the image, holds the drawing items over it, turns mouse events into
/// items by the current tool, keeps undo and redo, and flattens image and items into one pixmap.
///
/// Scene coordinates are image pixels. The image itself is no item: the view paints it as background. One
/// undo step is exactly one item, moved out of the scene and back. The image file belongs to the `Editor`
/// and is deleted with it. GUI thread only.
class Editor : public QGraphicsScene, public ShapeTypes {
    Q_OBJECT
public:
    explicit Editor(QObject *parent = nullptr);
    ~Editor() override;

    /// Absolute path of the image file, or the name of an image held in memory. Another key deletes the
    /// file of the old one.
    void setImageKey(const QString &path);
    QString imageKey() const { return m_imageKey; }
    void clearImage();
    /// Forgets the image and leaves its file where it is, for the next start to find.
    void abandonImage() { m_imageKey.clear(); }
    /// Whether the image is a file.
    bool imageExists() const;

    bool isSaved() const { return !m_savedPath.isEmpty(); }
    QString savedPath() const { return m_savedPath; }
    void setSavedPath(const QString &path);

    /// The whole source image.
    QRect imageRect() const;
    /// The crop, or the whole image without one; null without an image.
    QRect visibleRect() const;
    QRect cropRect() const { return m_cropRect; }

    /// Image and, on request, items in one pixmap of exactly the image's or the crop's size.
    QPixmap flatten(bool withDrawings, bool ignoreCrop);

    ShapeType shapeType() const { return m_shapeType; }
    void setShape(ShapeType shape);
    /// The tool that was used last, in whatever capture.
    void restoreLastShape();
    void startCrop();
    /// Closes an open text or crop, keeping or discarding it.
    void finishCurrentItem(bool accept);
    /// Ends a drag that the mouse will not end here, as a release where the mouse was last would: what was
    /// drawn stays, as a step. Without a drag nothing happens.
    void finishDrag();
    /// The item under construction or open; not owned.
    DrawingInterface *currentItem() const { return m_currentItem; }
    /// Whether nothing lies over that item.
    bool isCurrentOnTop() const { return m_currentOnTop; }
    /// All items that may paint or be hit somewhere in that area of the scene, topmost first.
    QVector<QGraphicsItem *> itemsNear(const QRectF &area) const;

    void undo();
    void redo();
    void reset();
    bool canUndo() const { return !m_undoList.isEmpty(); }
    bool canRedo() const { return !m_redoList.isEmpty(); }

    /// Flattens and writes the picture in the format of the path's suffix; `mark` makes the capture count
    /// as saved there. See `writeImage` for `quality`.
    bool saveFlattened(const QString &path, bool mark, int quality);
    /// Carries out, or refuses, the `write` of a picture to `path`; whether it was written. No events are
    /// processed meanwhile. Called even if the capture went while the save began.
    using WriteGuard = std::function<bool(const QString &path, const std::function<bool()> &write)>;
    /// For whoever has to do something around each write; without one it is simply written.
    void setWriteGuard(WriteGuard guard) { m_writeGuard = std::move(guard); }
    /// Writes an image as this capture's. GUI thread; shows the wait cursor meanwhile.
    bool savePixmap(const QPixmap &pixmap, const QString &path, bool mark, int quality);
    /// Writes the untouched image, without items and crop.
    bool savePinImage(const QString &path);
    bool copyToClipboard(QWidget *owner);

    // State that the view keeps per capture.
    int zoomStep() const { return m_zoomStep; }
    void setZoomStep(int step) { m_zoomStep = step; }
    QPoint savedCenter() const { return m_savedCenter; }
    void setSavedCenter(QPoint center) { m_savedCenter = center; }
    /// A pan or pinch is running: presses are not for the tools, and neither was that of the first finger,
    /// before the second one came.
    void setGestureActive(bool active);

signals:
    void changedShape(Editor::ShapeType shapeType);
    void updateImageSize();
    void imageSaved(bool saved);
    void createTextItem(DrawingTextItem *item);
    void moveTextItem(DrawingTextItem *item);
    void finishTextItem();
    void createCropItem(DrawingCropItem *item);
    void moveCropItem(DrawingCropItem *item);
    void finishCropItem();
    void changeSceneRect(QRectF rect);
    /// The freehand item under construction grew by the segments from `firstSegment` on, all on top of
    /// everything else in the scene. Sent instead of an update of the region, so that a view can add them
    /// to what it shows; `changed` follows for everybody else.
    void strokeExtended(const DrawingFreehandItem *item, int firstSegment);
    /// The figure under construction looks different within `area`, which holds all of it, and lies on top of
    /// everything else. Instead of an update, likewise.
    void figureChanged(DrawingFigureItem *item, const QRectF &area);

protected:
    /// A new item as the things that the editor knows it by. Null members: it is no such thing.
    struct NewItem {
        DrawingInterface *drawing = nullptr;
        QGraphicsItem *graphics = nullptr;
        DrawingTextItem *text = nullptr;
        DrawingCropItem *crop = nullptr;
    };

    /// Builds the item of a tool, clipped to `sceneRect`, with this editor as its parent and connected to
    /// it; all null for a tool without one. The product's items stand in one table, a row each.
    virtual NewItem makeItem(ShapeType shape, const QRectF &sceneRect);

    // The connections of each kind of item, for whatever class has the signals and slots of that kind.
    template <class Item> void connectDrawing(Item *item) {
        connect(this, &Editor::changeSceneRect, item, &Item::onChangeSceneRect);
    }
    template <class Item> void connectText(Item *item) {
        connect(item, &Item::moveTextItem, this, &Editor::moveTextItem);
        connect(item, &Item::finishEdit, this, &Editor::onFinishTextEdit);
        connect(this, &Editor::changeSceneRect, item, &Item::onChangeSceneRect);
    }
    template <class Item> void connectCrop(Item *item) {
        connect(item, &Item::moveCropItem, this, &Editor::moveCropItem);
        connect(item, &Item::finishCrop, this, &Editor::onFinishCrop);
        connect(item, &Item::finishCrop, this, [this, before = m_cropRect](bool succeed) {
            if (!succeed)
                m_cropRect = before;
        });
        connect(item, &Item::crop, this, &Editor::onCrop);
    }

    void mousePressEvent(QGraphicsSceneMouseEvent *event) override;
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent *event) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent *event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent *event) override;

private slots:
    void onFinishTextEdit(bool succeed, bool abort);
    void onFinishCrop(bool succeed);
    void onCrop(QRect rect);

private:
    friend struct ItemTable;

    /// No position that a mouse can have. The pixel beside the picture's corner, (-1, -1), is one: what is
    /// pressed there has to be drawn and undone like anything else.
    static constexpr QPoint NoPos{std::numeric_limits<int>::min(), std::numeric_limits<int>::min()};

    /// Makes the item of a tool and turns the editor to it; null for a tool without one.
    NewItem createItem(ShapeType shape, const QRectF &sceneRect);
    void markUnsaved();
    /// The topmost item in the eraser's reach of that point.
    QGraphicsItem *erasableAt(QPoint pos) const;
    /// Takes the topmost item at that point out of the scene, for Redo to bring back.
    bool eraseAt(QPoint pos);
    void growCurrentItem(QPoint pos, bool shift);
    void announceGrowth(const DrawingFreehandItem &stroke, int firstSegment);
    /// Whether the release ended a pen stroke where it began, which leaves nothing.
    bool dropClickOfPen(QPoint pos);
    void finishStroke(QPoint pos, bool shift);
    /// What the current tool does with a press.
    void pressTool(const QGraphicsSceneMouseEvent *event);
    /// Whether a drawing tool is between press and release.
    bool isDragging() const;
    void endDrag(QPoint pos, bool shift);
    /// Ends a drag and leaves nothing of it.
    void dropDrag();
    void toggle(QList<QGraphicsItem *> &from, QList<QGraphicsItem *> &to);
    /// How many of the last steps, `most` at most, are drawings in the scene, of which nobody hears that they
    /// go.
    int lastDrawings(int most) const;
    /// So many of them as `undo` would, one after the other.
    void undoDrawings(int count);
    /// A current item grows on after this; any other one stays where it is.
    void putIntoScene(QGraphicsItem *item);
    void takeOutOfScene(QGraphicsItem *item);
    /// The item has its final place.
    void settle(QGraphicsItem *item);
    void rejectCurrentItem();
    void emptyRedoList();
    void reportToolUse();

    QString m_imageKey;
    WriteGuard m_writeGuard;
    bool m_gestureActive = false;
    ShapeType m_shapeType = Rectangle;
    ShapeType m_previousShapeType = Rectangle;
    QPoint m_savedCenter;
    QPoint m_pressPos = NoPos;
    QPoint m_lastPos = NoPos;
    bool m_hasMoved = false;  ///< the mouse has left the place of the press since
    bool m_lastShift = false; ///< the Shift key of the last move
    DrawingInterface *m_currentItem = nullptr;
    QString m_savedPath;
    int m_zoomStep = -1;
    QRect m_cropRect;
    bool m_currentOnTop = true; ///< nothing joined the scene since the item under construction
    mutable ItemIndex m_index;  ///< of what is in the scene
    QSet<int> m_reportedTools;
    QList<QGraphicsItem *> m_undoList;
    QList<QGraphicsItem *> m_redoList;
    QObject m_takenBack; ///< the parent of what left the scene for Redo, apart from all that is there
};
