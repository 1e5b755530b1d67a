#include "canvas/capturefixture.h"
#include "canvas/editorview.h"
#include "canvas/items/drawingcropitem.h"
#include "ipc/imageprovider.h"
#include "popups/croppopup.h"
#include "preferences/tindrapreferences.h"
#include "services/usagestatistics.h"
#include "support/imagecompare.h"
#include "ui/rangedspinbox.h"

#include <QGraphicsProxyWidget>
#include <QPainter>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const QSize ImageSize(400, 300);
const QRect Whole(QPoint(), ImageSize);
const QRect FirstCrop(60, 40, 250, 200);

/// Counts how often it is painted and asked for its shape.
class CountingItem : public QGraphicsItem {
public:
    int paints = 0;
    mutable int questions = 0;

    QRectF boundingRect() const override { return QRectF(Whole); }
    void paint(QPainter *, const QStyleOptionGraphicsItem *, QWidget *) override { ++paints; }
    QPainterPath shape() const override {
        ++questions;
        return QGraphicsItem::shape();
    }
};

/// Counts the jobs that a scene has put off to another turn of the event loop, such as looking through all of
/// its items for what has changed.
class CallCounter : public QObject {
public:
    int count = 0;
    bool eventFilter(QObject *, QEvent *event) override {
        count += event->type() == QEvent::MetaCall;
        return false;
    }
};

} // namespace

Q_DECLARE_METATYPE(std::function<void()>)
Q_DECLARE_METATYPE(ShapeTypes::ShapeType)

/// The crop tool as it works together: editor, view, frame and popup.
class Tst_DrawingCropItem : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void frameBeginsAroundTheWholeImage();
    void acceptUndoRedo();
    void cancelRestoresTheCropOfBefore_data();
    void cancelRestoresTheCropOfBefore();
    void secondCropOverTheFirst();
    void choosingCropWhileItIsOpenBeginsAnew();
    void cropGoesBackToTheTool_data();
    void cropGoesBackToTheTool();
    void undoIsNotOffered();
    void whatCanBeRedoneStays();
    void cropRedoneAfterAnotherGivesWayToThatOne();
    void resetAndRedoWithACrop();
    void resetWithAnOpenFrameTakesEverythingBack();
    void openingMarksTheCaptureUnsaved();
    void useIsReportedOnAcceptanceOnly();

    void cornersAreDraggedAtEachZoom_data();
    void cornersAreDraggedAtEachZoom();
    void cornerPastTheOppositeCornerKeepsTheLastSize();
    void movedFrameKeepsItsSize();
    void movingTheFramePaintsNoItem();
    void sceneLooksForNoChangesWhileTheFrameMoves();
    void hoveringAfterACropAsksNoItem();
    void pressesMakeNoItems();
    void cursorFollowsTheFrame();
    void toolCursorStaysAfterTheCrop();
    void escapeDuringADrag();

    void popupShowsTheSize();
    void typedSizeMovesTheFrame_data();
    void typedSizeMovesTheFrame();
    void popupEndsTheCrop_data();
    void popupEndsTheCrop();
    void viewEndsTheCrop();
    void numberBeingTypedCounts();
    void popupIsLetGoOf();
    void imageSmallerThanTheSmallestFrame();

    void itemIsCutAndComesBackWhole();
    void acceptedCropIsNoThingToErase();
    void frameIsInNoPicture();
    void saveTakesTheFrame();
    void editorGoesWhileTheFrameIsOpen();
    void viewGoesWhileTheFrameIsOpen_data();
    void viewGoesWhileTheFrameIsOpen();
    void editorWithoutViewCrops();
    void focusBringsTheFrameToTheFront();
    void frameThatOpensBringsItsPopupToTheFront();

private:
    void open();
    void close(bool accept) { m_editor->finishCurrentItem(accept); }
    void cropTo(const QRect &frame);
    QPoint at(int x, int y) const { return m_view->mapFromScene(x, y); }
    void dragFrame(const QPoint &from, const QPoint &to);
    void drawLine(const QPoint &from, const QPoint &to);
    CropPopup *popup() const { return m_view->findChild<CropPopup *>(); }
    RangedSpinBox *box(const char *name) const {
        return popup()->findChild<RangedSpinBox *>(QLatin1String(name));
    }
    QGraphicsProxyWidget *proxy() const;
    QSize shownSize() const { return QSize(box("widthSpinBox_")->value(), box("heightSpinBox_")->value()); }
    void compareCrop(const QRect &crop);
    int steps();

    QStringList m_usage;
    QImage m_picture;
    std::unique_ptr<Editor> m_editor;
    std::unique_ptr<EditorView> m_view;
    QPointer<DrawingCropItem> m_item; ///< the last one that was opened
};

void Tst_DrawingCropItem::init() {
    capture::resetWorld();
    m_usage.clear();
    setUsageRecorder([this](const QString &code) { m_usage.append(code); });
    m_editor = std::make_unique<Editor>();
    m_picture = capture::picture(ImageSize);
    capture::load(*m_editor, QStringLiteral("capture"), m_picture);
    connect(m_editor.get(), &Editor::createCropItem, this, [this](DrawingCropItem *item) { m_item = item; });
    m_view = std::make_unique<EditorView>();
    m_view->setFrameShape(QFrame::NoFrame);
    m_view->resize(500, 400);
    m_view->show();
    m_view->setEditor(m_editor.get());
    m_editor->setShape(Editor::Line);
}

void Tst_DrawingCropItem::cleanup() {
    m_view.reset();
    m_editor.reset();
    setUsageRecorder({});
}

void Tst_DrawingCropItem::open() {
    m_editor->setShape(Editor::Crop);
    m_editor->startCrop();
    QVERIFY(m_item);
    QCoreApplication::processEvents();
}

/// Opens a frame and drags it to that place, the bottom right corner first.
void Tst_DrawingCropItem::cropTo(const QRect &frame) {
    open();
    dragFrame(m_item->frame().bottomRight(), frame.bottomRight());
    dragFrame(m_item->frame().topLeft(), frame.topLeft());
    QCOMPARE(m_item->frame(), frame);
    close(true);
}

void Tst_DrawingCropItem::dragFrame(const QPoint &from, const QPoint &to) {
    capture::Mouse(m_view->viewport()).drag({at(from.x(), from.y()), at(to.x(), to.y())});
}

void Tst_DrawingCropItem::drawLine(const QPoint &from, const QPoint &to) {
    m_editor->setShape(Editor::Line);
    const QPoint end = at(to.x(), to.y());
    capture::Mouse(m_view->viewport()).drag({at(from.x(), from.y()), end, end});
}

/// What holds the frame in the scene; null without one.
QGraphicsProxyWidget *Tst_DrawingCropItem::proxy() const {
    for (QGraphicsItem *item : m_editor->items()) {
        if (item->isWidget())
            return static_cast<QGraphicsProxyWidget *>(item);
    }
    return nullptr;
}

/// That everything that goes by the crop goes by this one.
void Tst_DrawingCropItem::compareCrop(const QRect &crop) {
    const QRect visible = crop.isNull() ? Whole : crop;
    QCOMPARE(m_editor->cropRect(), crop);
    QCOMPARE(m_editor->visibleRect(), visible);
    QCOMPARE(m_view->sceneRect(), QRectF(visible));
    COMPARE_IMAGES(m_editor->flatten(true, false).toImage(), m_picture.copy(visible), "flattened");
}

/// How often Undo acts; all is back as it was afterwards.
int Tst_DrawingCropItem::steps() {
    int count = 0;
    for (; m_editor->canUndo(); ++count)
        m_editor->undo();
    for (int i = 0; i < count; ++i)
        m_editor->redo();
    return count;
}

void Tst_DrawingCropItem::frameBeginsAroundTheWholeImage() {
    open();
    QCOMPARE(m_item->frame(), Whole);
    QCOMPARE(m_editor->cropRect(), Whole);
    QCOMPARE(m_editor->shapeType(), Editor::Crop);
    QCOMPARE(m_editor->currentItem(), static_cast<DrawingInterface *>(m_item));
    QVERIFY(popup()->isVisible());
    // The frame lies in the scene, in image pixels.
    QVERIFY(proxy());
    QCOMPARE(proxy()->sceneBoundingRect(), QRectF(Whole));
}

void Tst_DrawingCropItem::acceptUndoRedo() {
    QSignalSpy finished(m_editor.get(), &Editor::finishCropItem);
    cropTo(FirstCrop);
    QCOMPARE(finished.count(), 1);
    compareCrop(FirstCrop);
    QCOMPARE(steps(), 1);
    m_editor->undo();
    compareCrop(QRect());
    m_editor->redo();
    compareCrop(FirstCrop);
    m_editor->undo();
    compareCrop(QRect());
    // Whichever way it came back, no frame did.
    QCOMPARE(finished.count(), 1);
    QVERIFY(!popup()->isVisible());
    QCOMPARE(m_editor->shapeType(), Editor::Line);
}

void Tst_DrawingCropItem::cancelRestoresTheCropOfBefore_data() {
    QTest::addColumn<std::function<void()>>("cancel");
    QTest::addColumn<QRect>("before");
    QTest::addColumn<Editor::ShapeType>("tool");
    const auto row = [](const char *name, const std::function<void()> &cancel,
                        Editor::ShapeType tool = Editor::Line) {
        QTest::addRow("%s, no crop before", name) << cancel << QRect() << tool;
        QTest::addRow("%s, over a crop", name) << cancel << FirstCrop << tool;
    };
    row("Escape", [this] { close(false); });
    row("popup", [this] { popup()->findChild<QPushButton *>(QStringLiteral("cancel_"))->click(); });
    row("Escape in the popup", [this] { QTest::keyClick(popup(), Qt::Key_Escape); });
    row("the view's signal", [this] { emit m_view->cropped(false); });
    row(
        "other tool", [this] { m_editor->setShape(Editor::Mosaic); }, Editor::Mosaic);
    row("undo", [this] { m_editor->undo(); });
    row("other capture and back", [this] {
        Editor other;
        capture::load(other, QStringLiteral("other"), capture::picture(QSize(90, 70)));
        m_view->setEditor(&other);
        QVERIFY(!popup()->isVisible());
        m_view->setEditor(m_editor.get());
        m_editor->setShape(Editor::Line);
    });
}

void Tst_DrawingCropItem::cancelRestoresTheCropOfBefore() {
    QFETCH(std::function<void()>, cancel);
    QFETCH(QRect, before);
    if (!before.isNull())
        cropTo(before);
    open();
    dragFrame(m_item->frame().bottomRight(), {201, 151});
    QVERIFY(m_item->frame() != (before.isNull() ? Whole : before));
    cancel();
    compareCrop(before);
    QTEST(m_editor->shapeType(), "tool");
    QVERIFY(!m_editor->currentItem());
    QVERIFY(!popup()->isVisible());
    QCOMPARE(steps(), before.isNull() ? 0 : 1);
    QVERIFY(!m_editor->canRedo());
    // The item is gone, with its frame.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!m_item);
    QCOMPARE(m_editor->items().size(), before.isNull() ? 0 : 1);
}

void Tst_DrawingCropItem::secondCropOverTheFirst() {
    const QRect second(100, 60, 120, 90);
    cropTo(FirstCrop);
    open();
    QCOMPARE(m_item->frame(), FirstCrop);
    // The whole image is seen again, and the frame can grow beyond the first crop.
    QCOMPARE(m_editor->visibleRect(), Whole);
    QCOMPARE(m_view->sceneRect(), QRectF(Whole));
    dragFrame(FirstCrop.topLeft(), {10, 20});
    QCOMPARE(m_item->frame().topLeft(), QPoint(10, 20));
    dragFrame({10, 20}, second.topLeft());
    dragFrame(m_item->frame().bottomRight(), second.bottomRight());
    close(true);
    compareCrop(second);
    QCOMPARE(steps(), 2);
    m_editor->undo();
    compareCrop(FirstCrop);
    m_editor->undo();
    compareCrop(QRect());
    m_editor->redo();
    compareCrop(FirstCrop);
    m_editor->redo();
    compareCrop(second);
}

void Tst_DrawingCropItem::choosingCropWhileItIsOpenBeginsAnew() {
    cropTo(FirstCrop);
    open();
    const QPointer<DrawingCropItem> first = m_item;
    dragFrame(FirstCrop.bottomRight(), {200, 150});
    open();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!first);
    QCOMPARE(m_item->frame(), FirstCrop);
    QVERIFY(popup()->isVisible());
    close(true);
    QCOMPARE(m_editor->shapeType(), Editor::Line);
    QCOMPARE(steps(), 2);
}

void Tst_DrawingCropItem::cropGoesBackToTheTool_data() {
    QTest::addColumn<Editor::ShapeType>("tool");
    for (int tool = Editor::Eraser; tool <= Editor::TextFinished; ++tool) {
        if (tool != Editor::TextEditing)
            QTest::addRow("tool %d", tool) << static_cast<Editor::ShapeType>(tool);
    }
}

void Tst_DrawingCropItem::cropGoesBackToTheTool() {
    QFETCH(Editor::ShapeType, tool);
    for (const bool accept : {true, false}) {
        m_editor->setShape(tool);
        open();
        close(accept);
        QCOMPARE(m_editor->shapeType(), tool);
    }
}

void Tst_DrawingCropItem::undoIsNotOffered() {
    drawLine({20, 20}, {200, 100});
    bool undo = false;
    bool redo = false;
    connect(m_view.get(), &EditorView::canUndo, this, [&](bool can) { undo = can; });
    connect(m_view.get(), &EditorView::canRedo, this, [&](bool can) { redo = can; });
    drawLine({20, 60}, {200, 140});
    m_editor->undo();
    QCoreApplication::processEvents();
    QVERIFY(undo && redo);
    open();
    QVERIFY(!undo && !redo);
    dragFrame(m_item->frame().bottomRight(), {200, 150});
    QCoreApplication::processEvents();
    QVERIFY(!undo && !redo);
    close(true);
    QCoreApplication::processEvents();
    QVERIFY(undo && redo);
}

void Tst_DrawingCropItem::whatCanBeRedoneStays() {
    drawLine({20, 20}, {200, 100});
    m_editor->undo();
    cropTo(FirstCrop);
    QVERIFY(m_editor->canRedo());
    m_editor->redo();
    QCOMPARE(steps(), 2);
}

void Tst_DrawingCropItem::cropRedoneAfterAnotherGivesWayToThatOne() {
    const QRect other(30, 40, 90, 70);
    cropTo(FirstCrop);
    m_editor->undo();
    cropTo(other);
    m_editor->redo();
    compareCrop(FirstCrop);
    m_editor->undo();
    compareCrop(other);
    m_editor->undo();
    compareCrop(QRect());
}

void Tst_DrawingCropItem::resetAndRedoWithACrop() {
    drawLine({20, 20}, {200, 100});
    cropTo(FirstCrop);
    drawLine({80, 60}, {200, 180});
    const QImage before = m_editor->flatten(true, false).toImage();
    m_editor->reset();
    compareCrop(QRect());
    QVERIFY(!m_editor->canUndo());
    for (int i = 0; i < 3; ++i)
        m_editor->redo();
    QCOMPARE(m_editor->cropRect(), FirstCrop);
    QVERIFY(!m_editor->canRedo());
    COMPARE_IMAGES(m_editor->flatten(true, false).toImage(), before, "again");
}

void Tst_DrawingCropItem::resetWithAnOpenFrameTakesEverythingBack() {
    drawLine({20, 20}, {200, 100});
    cropTo(FirstCrop);
    open();
    m_editor->reset();
    compareCrop(QRect());
    QVERIFY(!popup()->isVisible());
    QVERIFY(!m_editor->canUndo());
    QCOMPARE(m_editor->shapeType(), Editor::Line);
    // The line and the crop come back, the frame does not.
    m_editor->redo();
    m_editor->redo();
    QVERIFY(!m_editor->canRedo());
    QCOMPARE(m_editor->cropRect(), FirstCrop);
}

void Tst_DrawingCropItem::openingMarksTheCaptureUnsaved() {
    m_editor->setSavedPath(QStringLiteral("/saved.png"));
    open();
    QVERIFY(!m_editor->isSaved());
    close(false);
    QVERIFY(!m_editor->isSaved());
}

void Tst_DrawingCropItem::useIsReportedOnAcceptanceOnly() {
    open();
    close(false);
    QCOMPARE(m_usage, QStringList());
    open();
    close(true);
    QCOMPARE(m_usage, QStringList(QStringLiteral("cap_30_04")));
    open();
    close(true);
    QCOMPARE(m_usage.size(), 1);
}

void Tst_DrawingCropItem::cornersAreDraggedAtEachZoom_data() {
    QTest::addColumn<int>("zoomStep");
    QTest::newRow("100 %") << 20;
    QTest::newRow("55 %") << 10;
    QTest::newRow("400 %") << 40;
}

void Tst_DrawingCropItem::cornersAreDraggedAtEachZoom() {
    QFETCH(int, zoomStep);
    m_view->resize(2000, 1500);
    for (int step = 20; step < zoomStep; ++step)
        m_view->onZoomIn();
    for (int step = 20; step > zoomStep; --step)
        m_view->onZoomOut();
    open();
    const double zoom = m_view->transform().m11();
    const QPoint press = at(395, 295);
    const QPoint moved(-111, -67); // device pixels
    capture::Mouse(m_view->viewport()).drag({press, press + moved});
    // Fractions of an image pixel are cut off.
    const QSize expected(400 + int(moved.x() / zoom), 300 + int(moved.y() / zoom));
    QCOMPARE(m_item->frame(), QRect(QPoint(), expected));
    QCOMPARE(shownSize(), expected);
}

void Tst_DrawingCropItem::cornerPastTheOppositeCornerKeepsTheLastSize() {
    open();
    capture::Mouse mouse(m_view->viewport());
    mouse.press(at(399, 299));
    mouse.move(at(59, 69));
    QCOMPARE(m_item->frame().size(), QSize(60, 70));
    mouse.move(at(-20, -30));
    QCOMPARE(m_item->frame().size(), QSize(60, 70));
    mouse.release(at(-20, -30));
    close(true);
    compareCrop(QRect(0, 0, 60, 70));
}

void Tst_DrawingCropItem::movedFrameKeepsItsSize() {
    cropTo(FirstCrop);
    open();
    dragFrame(FirstCrop.center(), FirstCrop.center() + QPoint(400, 20));
    QCOMPARE(m_item->frame(), QRect(QPoint(150, 60), FirstCrop.size()));
    close(true);
    compareCrop(QRect(QPoint(150, 60), FirstCrop.size()));
}

void Tst_DrawingCropItem::movingTheFramePaintsNoItem() {
    auto *item = new CountingItem;
    m_editor->addItem(item);
    open();
    QCoreApplication::processEvents();
    const QImage before = m_view->viewport()->grab().toImage();
    const int paints = item->paints;
    QVERIFY(paints > 0);
    dragFrame({399, 299}, {200, 150});
    QCoreApplication::processEvents();
    QVERIFY(m_view->viewport()->grab().toImage() != before);
    QCOMPARE(item->paints, paints);
}

void Tst_DrawingCropItem::sceneLooksForNoChangesWhileTheFrameMoves() {
    open();
    dragFrame({0, 0}, {50, 40});
    QCoreApplication::processEvents();
    QSignalSpy moved(m_item, SIGNAL(moveCropItem(DrawingCropItem *)));
    CallCounter calls;
    m_editor->installEventFilter(&calls);
    capture::Mouse mouse(m_view->viewport());
    for (const QPoint &press : {QPoint(395, 295), QPoint(200, 150)}) {
        mouse.press(at(press.x(), press.y()));
        QCoreApplication::processEvents();
        moved.clear();
        calls.count = 0;
        mouse.move(at(press.x() - 20, press.y() - 10));
        QCoreApplication::processEvents();
        QCOMPARE(moved.count(), 1);
        QCOMPARE(calls.count, 0);
        mouse.release(at(press.x() - 20, press.y() - 10));
        QCoreApplication::processEvents();
    }
}

void Tst_DrawingCropItem::hoveringAfterACropAsksNoItem() {
    cropTo(FirstCrop);
    auto *item = new CountingItem;
    m_editor->addItem(item);
    capture::Mouse mouse(m_view->viewport());
    mouse.move(at(100, 100));
    mouse.move(at(110, 105));
    QCOMPARE(item->questions, 0);
}

void Tst_DrawingCropItem::pressesMakeNoItems() {
    open();
    const int items = m_editor->items().size();
    for (const QPoint &pos : {at(200, 150), at(5, 5), QPoint(3, 3)}) {
        capture::Mouse(m_view->viewport()).drag({pos, pos + QPoint(30, 20)});
        QCOMPARE(m_editor->items().size(), items);
        QCOMPARE(m_editor->shapeType(), Editor::Crop);
    }
}

void Tst_DrawingCropItem::cursorFollowsTheFrame() {
    cropTo(FirstCrop);
    open();
    capture::Mouse mouse(m_view->viewport());
    const auto shape = [this] { return m_view->viewport()->cursor().shape(); };
    const QRect frame = FirstCrop;
    const QVector<QPair<QPoint, Qt::CursorShape>> expected{
        {frame.center(), Qt::OpenHandCursor},           {{frame.left() + 9, 140}, Qt::SizeHorCursor},
        {{frame.left() - 1, 140}, Qt::ArrowCursor},     {{frame.right() - 9, 140}, Qt::SizeHorCursor},
        {{180, frame.top() + 9}, Qt::SizeVerCursor},    {{180, frame.top() - 1}, Qt::ArrowCursor},
        {{180, frame.bottom() - 9}, Qt::SizeVerCursor}, {frame.topLeft(), Qt::SizeFDiagCursor},
        {frame.topRight(), Qt::SizeBDiagCursor},        {frame.bottomLeft(), Qt::SizeBDiagCursor},
        {frame.bottomRight(), Qt::SizeFDiagCursor},     {{frame.left() + 10, 140}, Qt::OpenHandCursor},
    };
    for (const auto &pair : expected) {
        mouse.move(at(pair.first.x(), pair.first.y()));
        QCOMPARE(shape(), pair.second);
    }
    mouse.move(QPoint(2, 2)); // beside the image
    QCOMPARE(shape(), Qt::ArrowCursor);
}

void Tst_DrawingCropItem::toolCursorStaysAfterTheCrop() {
    for (const bool accept : {true, false}) {
        m_editor->setShape(Editor::Rectangle);
        open();
        capture::Mouse mouse(m_view->viewport());
        mouse.move(at(1, 150));
        QCOMPARE(m_view->viewport()->cursor().shape(), Qt::SizeHorCursor);
        close(accept);
        QCOMPARE(m_view->viewport()->cursor().shape(), Qt::CrossCursor);
        mouse.move(at(150, 150));
        mouse.move(QPoint(2, 2));
        QCOMPARE(m_view->viewport()->cursor().shape(), Qt::CrossCursor);
    }
}

void Tst_DrawingCropItem::escapeDuringADrag() {
    open();
    capture::Mouse mouse(m_view->viewport());
    mouse.press(at(399, 299));
    mouse.move(at(300, 200));
    close(false);
    mouse.move(at(250, 150));
    mouse.release(at(250, 150));
    compareCrop(QRect());
    QCOMPARE(steps(), 0);
    drawLine({20, 20}, {200, 100});
    QCOMPARE(steps(), 1);
}

void Tst_DrawingCropItem::popupShowsTheSize() {
    cropTo(FirstCrop);
    open();
    QCOMPARE(shownSize(), FirstCrop.size());
    QCOMPARE(box("widthSpinBox_")->maxLimit(), 400);
    QCOMPARE(box("heightSpinBox_")->maxLimit(), 300);
    QCOMPARE(box("widthSpinBox_")->minLimit(), 40);
    dragFrame(FirstCrop.bottomRight(), FirstCrop.bottomRight() - QPoint(37, 21));
    QCOMPARE(shownSize(), FirstCrop.size() - QSize(37, 21));
}

void Tst_DrawingCropItem::typedSizeMovesTheFrame_data() {
    QTest::addColumn<QSize>("typed");
    QTest::addColumn<QSize>("expected");
    // What is right of and below the first crop's corner measures 340 x 260.
    QTest::newRow("inside the image") << QSize(120, 70) << QSize(120, 70);
    QTest::newRow("smaller than a drag can") << QSize(40, 40) << QSize(40, 40);
    QTest::newRow("up to the border") << QSize(340, 260) << QSize(340, 260);
    QTest::newRow("beyond the border") << QSize(400, 300) << QSize(340, 260);
}

void Tst_DrawingCropItem::typedSizeMovesTheFrame() {
    QFETCH(QSize, typed);
    QFETCH(QSize, expected);
    cropTo(FirstCrop);
    open();
    QSignalSpy moved(m_item, SIGNAL(moveCropItem(DrawingCropItem *)));
    box("widthSpinBox_")->setValue(typed.width());
    box("heightSpinBox_")->setValue(typed.height());
    QCOMPARE(m_item->frame(), QRect(FirstCrop.topLeft(), expected));
    QCOMPARE(shownSize(), expected);
    QCOMPARE(moved.count(), 2);
    close(true);
    compareCrop(QRect(FirstCrop.topLeft(), expected));
}

void Tst_DrawingCropItem::popupEndsTheCrop_data() {
    QTest::addColumn<QString>("button");
    QTest::addColumn<QRect>("crop");
    QTest::newRow("crop") << QStringLiteral("crop_") << QRect(0, 0, 201, 151);
    QTest::newRow("cancel") << QStringLiteral("cancel_") << QRect();
}

void Tst_DrawingCropItem::popupEndsTheCrop() {
    QFETCH(QString, button);
    QFETCH(QRect, crop);
    open();
    dragFrame({399, 299}, {200, 150});
    QTest::mouseClick(popup()->findChild<QPushButton *>(button), Qt::LeftButton);
    compareCrop(crop);
    QVERIFY(!popup()->isVisible());
}

void Tst_DrawingCropItem::viewEndsTheCrop() {
    open();
    dragFrame({399, 299}, {200, 150});
    emit m_view->cropped(true);
    compareCrop(QRect(0, 0, 201, 151));
}

void Tst_DrawingCropItem::numberBeingTypedCounts() {
    open();
    popup()->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(popup()));
    RangedSpinBox *width = box("widthSpinBox_");
    width->setFocus();
    width->selectAll();
    QTest::keyClicks(width, QStringLiteral("12"));
    // Too little as long as more digits may follow, and the least once the crop is accepted.
    QCOMPARE(m_item->frame().width(), 400);
    close(true);
    compareCrop(QRect(0, 0, 40, 300));
}

void Tst_DrawingCropItem::popupIsLetGoOf() {
    cropTo(FirstCrop);
    // What happens to the popup is nothing to a closed crop.
    emit popup()->cropped(false);
    box("widthSpinBox_")->setValue(100);
    compareCrop(FirstCrop);
    open();
    dragFrame(FirstCrop.bottomRight(), FirstCrop.bottomRight() - QPoint(50, 50));
    QCOMPARE(shownSize(), FirstCrop.size() - QSize(50, 50));
}

void Tst_DrawingCropItem::imageSmallerThanTheSmallestFrame() {
    Editor small;
    connect(&small, &Editor::createCropItem, this, [this](DrawingCropItem *item) { m_item = item; });
    capture::load(small, QStringLiteral("small"), capture::picture(QSize(30, 20)));
    m_view->setEditor(&small);
    small.setShape(Editor::Crop);
    small.startCrop();
    QCOMPARE(m_item->frame(), QRect(0, 0, 30, 20));
    QCOMPARE(shownSize(), QSize(30, 20));
    dragFrame({29, 19}, {22, 12});
    dragFrame({15, 10}, {25, 15});
    QCOMPARE(m_item->frame(), QRect(0, 0, 30, 20));
    small.finishCurrentItem(true);
    QCOMPARE(small.flatten(true, false).size(), QSize(30, 20));
    m_view->setEditor(nullptr);
}

void Tst_DrawingCropItem::itemIsCutAndComesBackWhole() {
    drawLine({20, 20}, {380, 280});
    const QImage whole = m_editor->flatten(true, false).toImage();
    QVERIFY(whole != m_picture);
    const QImage wholeShown = m_view->viewport()->grab().toImage();
    cropTo(FirstCrop);
    COMPARE_IMAGES(m_editor->flatten(true, false).toImage(), whole.copy(FirstCrop), "cut");
    // Without the crop the picture is whole, but the item is cut where it was.
    QImage cut = m_picture;
    QPainter(&cut).drawImage(FirstCrop.topLeft(), whole.copy(FirstCrop));
    COMPARE_IMAGES(m_editor->flatten(true, true).toImage(), cut, "cut in the whole picture");
    open();
    COMPARE_IMAGES(m_editor->flatten(true, false).toImage(), whole, "whole while the frame is open");
    close(false);
    COMPARE_IMAGES(m_editor->flatten(true, false).toImage(), whole.copy(FirstCrop), "cut again");
    m_editor->undo();
    COMPARE_IMAGES(m_editor->flatten(true, false).toImage(), whole, "whole again");
    COMPARE_IMAGES(m_view->viewport()->grab().toImage(), wholeShown, "whole in the view");
}

void Tst_DrawingCropItem::acceptedCropIsNoThingToErase() {
    cropTo(QRect(0, 0, 120, 90));
    m_editor->setShape(Editor::Eraser);
    capture::Mouse mouse(m_view->viewport());
    mouse.drag({at(0, 0), at(0, 1), at(1, 1)});
    mouse.click(at(60, 45));
    compareCrop(QRect(0, 0, 120, 90));
    QCOMPARE(steps(), 1);
}

void Tst_DrawingCropItem::frameIsInNoPicture() {
    open();
    COMPARE_IMAGES(m_editor->flatten(true, false).toImage(), m_picture, "frame only");
    close(false);
    drawLine({20, 20}, {380, 280});
    const QImage whole = m_editor->flatten(true, false).toImage();
    open();
    dragFrame({399, 299}, {200, 150});
    COMPARE_IMAGES(m_editor->flatten(true, false).toImage(), whole, "frame over a line");
}

void Tst_DrawingCropItem::saveTakesTheFrame() {
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("saved.png"));
    open();
    dragFrame({399, 299}, {200, 150});
    QVERIFY(m_editor->saveFlattened(path, true, -1));
    COMPARE_IMAGES(QImage(path), m_picture.copy(0, 0, 201, 151), "saved");
    QVERIFY(m_editor->isSaved());
    compareCrop(QRect(0, 0, 201, 151));
}

void Tst_DrawingCropItem::editorGoesWhileTheFrameIsOpen() {
    open();
    const QPointer<QWidget> cropper = proxy()->widget();
    QVERIFY(cropper);
    m_editor.reset();
    QVERIFY(!popup()->isVisible());
    QVERIFY(!m_item);
    QVERIFY(!cropper);
}

void Tst_DrawingCropItem::viewGoesWhileTheFrameIsOpen_data() {
    QTest::addColumn<bool>("missing");
    QTest::newRow("image") << false;
    // Its frame is empty, but open nevertheless.
    QTest::newRow("missing image") << true;
}

void Tst_DrawingCropItem::viewGoesWhileTheFrameIsOpen() {
    QFETCH(bool, missing);
    if (missing) {
        ImageProvider::resetForTesting();
        m_editor->setSceneRect(QRectF(0, 0, 0, 0));
    }
    open();
    m_view.reset();
    QVERIFY(m_item->isOpen());
    QCOMPARE(m_item->frame().isEmpty(), missing);
    close(true);
    QCOMPARE(m_editor->shapeType(), Editor::Line);
    QCOMPARE(m_editor->cropRect(), missing ? QRect() : Whole);
}

void Tst_DrawingCropItem::editorWithoutViewCrops() {
    m_view->setEditor(nullptr);
    open();
    QCOMPARE(m_editor->items().size(), 1);
    close(true);
    QCOMPARE(m_editor->cropRect(), Whole);
    m_editor->undo();
    QVERIFY(m_editor->cropRect().isNull());
}

void Tst_DrawingCropItem::focusBringsTheFrameToTheFront() {
    open();
    capture::RaiseCounter frame, floating;
    proxy()->widget()->installEventFilter(&frame);
    popup()->installEventFilter(&floating);
    QFocusEvent focus(QEvent::FocusIn, Qt::OtherFocusReason);
    m_editor->sendEvent(m_item, &focus);
    QCOMPARE(frame.raises, 1);
    QCOMPARE(floating.raises, 1);
    close(true);
    m_editor->sendEvent(m_item, &focus);
    QCOMPARE(frame.raises, 1);
    QCOMPARE(floating.raises, 1);
    compareCrop(Whole);
}

// Without a view, which would do the same for a popup that it places.
void Tst_DrawingCropItem::frameThatOpensBringsItsPopupToTheFront() {
    CropPopup floating;
    floating.show(); // else its window comes to the front by being new
    capture::RaiseCounter counter;
    floating.installEventFilter(&counter);
    QGraphicsScene scene;
    auto *item = new DrawingCropItem(QRectF(Whole), QRect(), &scene);
    item->attachPopup(&floating);
    QCOMPARE(counter.raises, 0);
    scene.addItem(item);
    QCOMPARE(counter.raises, 1);
}

QTEST_MAIN(Tst_DrawingCropItem)
#include "tst_drawingcropitem.moc"
