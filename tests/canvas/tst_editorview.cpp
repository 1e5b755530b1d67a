#include "canvas/canvasmenu.h"
#include "canvas/capturefixture.h"
#include "canvas/fakeitems.h"
#include "canvas/imagetoolwidget.h"
#include "canvas/scaledview.h"
#include "ipc/imageprovider.h"
#include "popups/itembutton.h"
#include "popups/popup.h"
#include "popups/textpopup.h"
#include "preferences/tindrapreferences.h"
#include "support/imagecompare.h"
#include "ui/menu.h"
#include "ui/uistyler.h"

#include <QContextMenuEvent>
#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QLabel>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTimer>
#include <QWheelEvent>
#include <QtTest>

#include <utility>

namespace {

constexpr int Notch = 120;
/// Milliseconds without a paint after which the smooth background is made.
constexpr int QuietTime = 66;
const QColor Around(90, 120, 30);

/// Counts how often the scene is painted anew.
class CountingView : public ScaledView {
public:
    int scenePaints = 0;

protected:
    void drawBackground(QPainter *painter, const QRectF &rect) override {
        ++scenePaints;
        EditorView::drawBackground(painter, rect);
    }
};

/// An editor whose texts are the product's own.
class TextEditor : public TestEditor {
protected:
    NewItem makeItem(ShapeType shape, const QRectF &sceneRect) override {
        return shape == Text ? Editor::makeItem(shape, sceneRect) : TestEditor::makeItem(shape, sceneRect);
    }
};

/// Notes the intervals of the timers that run out.
class TimerWatch : public QObject {
public:
    QSet<int> intervals;
    TimerWatch() { qApp->installEventFilter(this); }
    bool eventFilter(QObject *object, QEvent *event) override {
        const auto *timer = event->type() == QEvent::Timer ? qobject_cast<QTimer *>(object) : nullptr;
        if (timer)
            intervals.insert(timer->interval());
        return false;
    }
};

/// Counts the paints of a widget.
class PaintCounter : public QObject {
public:
    int paints = 0;
    bool eventFilter(QObject *, QEvent *event) override {
        paints += event->type() == QEvent::Paint;
        return false;
    }
};

} // namespace

Q_DECLARE_METATYPE(ShapeTypes::ShapeType)

class Tst_EditorView : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { qRegisterMetaType<Editor::ShapeType>("Editor::ShapeType"); }
    void init();
    void cleanup();

    void cursorOfTool_data();
    void cursorOfTool();
    void toolIsPassedOnOnlyWithAnEditor();
    void shownCaptureTakesTheLastUsedTool();

    void zoomStaysWithinItsSteps();
    void zoomIsKeptPerCapture();
    void scrollPositionIsKeptPerCapture();
    void scrollPositionDoesNotCreepFromSwapToSwap_data();
    void scrollPositionDoesNotCreepFromSwapToSwap();
    void controlWheelZoomsAroundTheMouse();
    void wheelScrolls_data();
    void wheelScrolls();
    void wheelWithoutACaptureIsForOthers();
    void controlWheelZoomsWhateverElseIsHeld_data();
    void controlWheelZoomsWhateverElseIsHeld();
    void wheelWithoutEditorDoesNothing();
    void cropZoomsOutToFitAndStaysThere_data();
    void cropZoomsOutToFitAndStaysThere();
    void cropOfAnImageThatFitsKeepsTheZoom();

    void undoAndRedoStateFollowsTheLists();
    void undoIsOffWhileTextOrCropIsOpen();
    void viewShowsImageAndWhatLiesAround();
    void enlargedPixelsAreSharp();
    void reducedImageIsSmoothedOnceTheViewIsQuiet();
    void smoothCopyIsOfTheCaptureThatIsShown();
    void smoothCopyWaitsUntilNothingIsPainted();
    void idleViewDoesNotRepaint();
    void otherPictureUnderTheSameKeyIsShown_data();
    void otherPictureUnderTheSameKeyIsShown();
    void itemIsCutAtTheCropAndWholeAfterItsUndo();
    void strokeIsAddedWithoutPaintingTheScene();
    void figureIsDrawnOverWhatLiesBelow_data();
    void figureIsDrawnOverWhatLiesBelow();
    void openTextIsDrawnOverWhatLiesBelow_data();
    void openTextIsDrawnOverWhatLiesBelow();
    void mouseNearAnOpenTextAsksNoOtherItem();
    void exposureDoesNotPaintTheScene();
    void eachCauseOfARepaintShows();
    void paintWithinAPaintLeavesTheBackgroundOut();
    void withoutEditorOnlyTheBackgroundIsShown();
    void editorThatDiesWhileShownIsForgotten();

    void ownWidgetsLieAboveThePicture();
    void zoomToolTellsSizeAndScale();
    void zoomToolStandsAtTheBottomLeft();
    void zoomToolZooms();
    void zoomToolIsThereWithACaptureOnly();
    void historyButtonStandsAtTheTopRight();
    void historyButtonStandsInTheWiderViewAtOnce();
    void historyButtonMarginFollowsTheScale_data();
    void historyButtonMarginFollowsTheScale();
    void historyButtonAsksForThePanelAndHides();
    void movedWindowPlacesOnceHoweverOftenItIsTold();
    void menuEntriesInOrder();
    void menuChecksThePresentTool_data();
    void menuChecksThePresentTool();
    void menuIsDisabledWithoutEditor();
    void menuOpensWhereItIsAskedFor();
    void menuEntriesAskTheMainWindow();
    void panelsHangBelowTheirEntries();
    void aiToolsMenuNeedsItsEntry();
    void emptyViewShowsNoToolCursor();

private:
    void load(TestEditor &editor, const QSize &size, const QString &key);
    /// Gives back whether the view has taken it.
    bool sendWheel(const QPoint &pos, const QPoint &angle, Qt::KeyboardModifiers modifiers);
    void sendWheel(const QPoint &pos, int delta, Qt::KeyboardModifiers modifiers) {
        sendWheel(pos, QPoint(0, delta), modifiers);
    }
    QImage shown() const {
        return m_view->viewport()->grab().toImage().convertToFormat(QImage::Format_RGB32);
    }
    ImageToolWidget *zoomTool() const { return m_view->findChild<ImageToolWidget *>(); }
    /// Opens a text of the product's own there.
    QGraphicsItem &openText(Editor &editor, const QPointF &pos);
    void withMenuOpen(const std::function<void(CanvasMenu *)> &check);

    std::unique_ptr<TestEditor> m_editor;
    std::unique_ptr<CountingView> m_view;
};

void Tst_EditorView::init() {
    capture::resetWorld();
    m_editor = std::make_unique<TestEditor>();
    load(*m_editor, QSize(200, 140), QStringLiteral("capture"));
    m_view = std::make_unique<CountingView>();
    m_view->setFrameShape(QFrame::NoFrame);
    m_view->resize(400, 300);
    QPalette palette = m_view->viewport()->palette();
    palette.setColor(m_view->viewport()->backgroundRole(), Around);
    m_view->viewport()->setPalette(palette);
    m_view->show();
    m_view->setEditor(m_editor.get());
    QCoreApplication::processEvents();
}

void Tst_EditorView::cleanup() {
    m_view.reset();
    m_editor.reset();
}

void Tst_EditorView::load(TestEditor &editor, const QSize &size, const QString &key) {
    capture::load(editor, key, capture::picture(size));
}

QGraphicsItem &Tst_EditorView::openText(Editor &editor, const QPointF &pos) {
    editor.setShape(Editor::Text);
    capture::Mouse(m_view->viewport()).click(m_view->mapFromScene(pos));
    return *dynamic_cast<DrawingTextItem *>(editor.currentItem());
}

bool Tst_EditorView::sendWheel(const QPoint &pos, const QPoint &angle, Qt::KeyboardModifiers modifiers) {
    QWheelEvent event(pos, m_view->viewport()->mapToGlobal(pos), QPoint(), angle, Qt::NoButton, modifiers,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(m_view->viewport(), &event);
    return event.isAccepted();
}

void Tst_EditorView::cursorOfTool_data() {
    QTest::addColumn<int>("shape");
    QTest::addColumn<int>("cursor");
    QTest::addColumn<QString>("picture");
    const auto row = [](const char *name, Editor::ShapeType shape, Qt::CursorShape cursor,
                        const char *picture = "") {
        QTest::newRow(name) << int(shape) << int(cursor) << QString::fromLatin1(picture);
    };
    row("eraser", Editor::Eraser, Qt::BitmapCursor, "point_eraser");
    row("pen", Editor::Pen, Qt::BitmapCursor, "point_pen");
    row("highlighter", Editor::Highlighter, Qt::BitmapCursor, "point_highlighter");
    row("line", Editor::Line, Qt::BitmapCursor, "point_pen");
    row("arrow", Editor::Arrow, Qt::BitmapCursor, "point_pen");
    row("rectangle", Editor::Rectangle, Qt::CrossCursor);
    row("circle", Editor::Circle, Qt::CrossCursor);
    row("balloon", Editor::SpeechBalloon, Qt::CrossCursor);
    row("mosaic", Editor::Mosaic, Qt::CrossCursor);
    row("text", Editor::Text, Qt::IBeamCursor);
    row("open text", Editor::TextEditing, Qt::ArrowCursor);
    row("closed text", Editor::TextFinished, Qt::IBeamCursor);
    row("crop", Editor::Crop, Qt::ArrowCursor);
}

void Tst_EditorView::cursorOfTool() {
    QFETCH(int, shape);
    QFETCH(int, cursor);
    QFETCH(QString, picture);
    QSignalSpy spy(m_view.get(), &EditorView::changeShape);
    // Whoever hears of the tool finds its cursor in place.
    int cursorWhenTold = -1;
    const QObject listener;
    connect(m_view.get(), &EditorView::changeShape, &listener,
            [&] { cursorWhenTold = int(m_view->viewport()->cursor().shape()); });
    m_editor->setShape(static_cast<Editor::ShapeType>(shape));
    QCOMPARE(spy.count(), 1);
    QCOMPARE(cursorWhenTold, cursor);
    QCOMPARE(spy.first().first().value<Editor::ShapeType>(), static_cast<Editor::ShapeType>(shape));
    QCOMPARE(int(m_view->viewport()->cursor().shape()), cursor);
    if (!picture.isEmpty()) {
        const QPixmap expected(QStringLiteral(":/res/EditorView/%1.svg").arg(picture));
        QVERIFY(!expected.isNull());
        QCOMPARE(m_view->viewport()->cursor().pixmap().toImage(), expected.toImage());
        QCOMPARE(m_view->viewport()->cursor().hotSpot(), QPoint(expected.width() / 2, expected.height() / 2));
    }
}

void Tst_EditorView::toolIsPassedOnOnlyWithAnEditor() {
    m_view->setEditor(nullptr);
    QSignalSpy spy(m_view.get(), &EditorView::changeShape);
    m_view->onChangeShape(Editor::Pen);
    m_editor->setShape(Editor::Pen); // no longer ours
    QCOMPARE(spy.count(), 0);
}

void Tst_EditorView::shownCaptureTakesTheLastUsedTool() {
    TestEditor other;
    load(other, QSize(50, 50), QStringLiteral("other"));
    other.setShape(Editor::Highlighter);
    TindraPreferences::instance()->SetInt(TindraPreferences::LastDrawingItem, Editor::Pen);
    QSignalSpy spy(m_view.get(), &EditorView::changeShape);
    m_view->setEditor(&other);
    QCOMPARE(other.shapeType(), Editor::Pen);
    QCOMPARE(spy.count(), 1);
    m_view->setEditor(nullptr);
}

void Tst_EditorView::zoomStaysWithinItsSteps() {
    QCOMPARE(m_view->transform().m11(), 1.0);
    for (int i = 0; i < 20; ++i)
        m_view->onZoomIn();
    QCOMPARE(m_view->transform().m11(), 4.0);
    for (int i = 0; i < 6; ++i)
        m_view->onZoomIn();
    QCOMPARE(m_view->transform().m11(), 8.0);
    QCOMPARE(m_editor->zoomStep(), 44);
    for (int i = 0; i < 50; ++i)
        m_view->onZoomOut();
    QCOMPARE(m_view->transform(), QTransform::fromScale(0.1, 0.1));
    QCOMPARE(m_editor->zoomStep(), 0);
    m_view->onZoomReset();
    QCOMPARE(m_view->transform(), QTransform());
}

void Tst_EditorView::zoomIsKeptPerCapture() {
    TestEditor other;
    load(other, QSize(50, 50), QStringLiteral("other"));
    m_view->onZoomOut();
    m_view->setEditor(&other);
    QCOMPARE(m_view->transform().m11(), 1.0); // never shown before
    m_view->onZoomIn();
    m_view->setEditor(m_editor.get());
    QCOMPARE(m_view->transform().m11(), 0.96);
    m_view->setEditor(&other);
    QCOMPARE(m_view->transform().m11(), 1.15);
    m_view->setEditor(nullptr);
}

void Tst_EditorView::scrollPositionIsKeptPerCapture() {
    TestEditor large;
    load(large, QSize(1000, 900), QStringLiteral("large"));
    m_view->setEditor(&large);
    QCOMPARE(m_view->horizontalScrollBar()->value(), 0); // a new capture starts at its top left
    m_view->horizontalScrollBar()->setValue(300);
    m_view->verticalScrollBar()->setValue(200);
    const QPointF before = m_view->mapToScene(m_view->viewport()->rect().center());
    m_view->setEditor(m_editor.get());
    m_view->setEditor(&large);
    const QPointF after = m_view->mapToScene(m_view->viewport()->rect().center());
    QVERIFY2(qAbs(after.x() - before.x()) <= 1 && qAbs(after.y() - before.y()) <= 1,
             qPrintable(QStringLiteral("%1, %2").arg(after.x()).arg(after.y())));
    m_view->setEditor(nullptr);
}

void Tst_EditorView::scrollPositionDoesNotCreepFromSwapToSwap_data() {
    QTest::addColumn<int>("step");
    QTest::addColumn<QSize>("view");
    QTest::addColumn<int>("tolerance");
    for (const int side : {300, 301}) {
        const auto row = [side](const char *name, int step, int tolerance) {
            QTest::addRow("%s, %d pixels", name, side) << step << QSize(side, side) << tolerance;
        };
        row("55 %", 10, 0);
        row("73 %", 14, 0);
        row("100 %", 20, 0);
        // Image pixels count, so the place is as exact as one of them is large.
        row("145 %", 23, 1);
        row("800 %", 44, 4);
    }
}

void Tst_EditorView::scrollPositionDoesNotCreepFromSwapToSwap() {
    QFETCH(int, step);
    QFETCH(QSize, view);
    QFETCH(int, tolerance);
    TestEditor large;
    load(large, QSize(1000, 900), QStringLiteral("large"));
    m_view->resize(view);
    large.setZoomStep(step);
    for (int place = 130; place < 137; ++place) {
        m_view->setEditor(&large);
        m_view->horizontalScrollBar()->setValue(place);
        m_view->verticalScrollBar()->setValue(place - 20);
        for (int swap = 0; swap < 10; ++swap) {
            m_view->setEditor(m_editor.get());
            m_view->setEditor(&large);
        }
        const int x = m_view->horizontalScrollBar()->value(), y = m_view->verticalScrollBar()->value();
        QVERIFY2(qAbs(x - place) <= tolerance && qAbs(y - place + 20) <= tolerance,
                 qPrintable(QStringLiteral("from %1: %2, %3").arg(place).arg(x).arg(y)));
    }
    m_view->setEditor(nullptr);
}

void Tst_EditorView::controlWheelZoomsAroundTheMouse() {
    TestEditor large;
    load(large, QSize(1000, 900), QStringLiteral("large"));
    m_view->setEditor(&large);
    m_view->setTransformationAnchor(QGraphicsView::AnchorViewCenter);
    m_view->horizontalScrollBar()->setValue(200);
    m_view->verticalScrollBar()->setValue(150);
    QCursor::setPos(m_view->viewport()->mapToGlobal(QPoint(130, 90)));
    QTRY_VERIFY(m_view->underMouse());
    // Where the window system has put it.
    const QPoint pos = m_view->viewport()->mapFromGlobal(QCursor::pos());
    QVERIFY(QRect(100, 60, 60, 60).contains(pos));
    capture::Mouse(m_view->viewport()).move(pos);
    const auto wheelTo = [&](int delta, double scale) {
        const QPointF under = m_view->mapToScene(pos);
        sendWheel(pos, delta, Qt::ControlModifier);
        QCOMPARE(m_view->transform().m11(), scale);
        // Scrolling is in whole pixels. Around the centre it would be five and more.
        const QPointF now = m_view->mapToScene(pos);
        QVERIFY2(qAbs(now.x() - under.x()) <= 2 && qAbs(now.y() - under.y()) <= 2,
                 qPrintable(QStringLiteral("%1, %2").arg(now.x()).arg(now.y())));
    };
    wheelTo(Notch, 1.15);
    wheelTo(0, 1.3);
    wheelTo(Notch, 1.45);
    wheelTo(-Notch, 1.3);
    QCOMPARE(m_view->transformationAnchor(), QGraphicsView::AnchorViewCenter);
    m_view->setEditor(nullptr);
}

void Tst_EditorView::wheelScrolls_data() {
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<QPoint>("angle");
    QTest::addColumn<bool>("sideways");
    const QPoint upright(0, -Notch), turned(-Notch, 0);
    const auto row = [](const char *name, Qt::KeyboardModifiers modifiers, const QPoint &angle,
                        bool sideways) { QTest::newRow(name) << int(modifiers) << angle << sideways; };
    row("plain", Qt::NoModifier, upright, false);
    row("tilted", Qt::NoModifier, turned, true);
    row("Shift", Qt::ShiftModifier, upright, true);
    row("Alt", Qt::AltModifier, upright, false);
    row("Alt, turned by the window system", Qt::AltModifier, turned, false);
    row("Shift and Alt", Qt::ShiftModifier | Qt::AltModifier, upright, true);
    row("Shift and Alt, turned", Qt::ShiftModifier | Qt::AltModifier, turned, true);
}

void Tst_EditorView::wheelScrolls() {
    QFETCH(int, modifiers);
    QFETCH(QPoint, angle);
    QFETCH(bool, sideways);
    TestEditor large;
    load(large, QSize(1000, 900), QStringLiteral("large"));
    m_view->setEditor(&large);
    sendWheel(QPoint(50, 50), angle, Qt::KeyboardModifiers(modifiers));
    // As far as a plain notch, whatever is held: a page would be half of the picture.
    const QScrollBar *across = m_view->horizontalScrollBar(), *down = m_view->verticalScrollBar();
    const int lines = QApplication::wheelScrollLines();
    QCOMPARE(across->value(), sideways ? lines * across->singleStep() : 0);
    QCOMPARE(down->value(), sideways ? 0 : lines * down->singleStep());
    QCOMPARE(m_view->transform().m11(), 1.0);
    m_view->setEditor(nullptr);
}

void Tst_EditorView::wheelWithoutACaptureIsForOthers() {
    QVERIFY(sendWheel(QPoint(50, 50), QPoint(0, 120), Qt::ControlModifier));
    m_view->setEditor(nullptr);
    QVERIFY(!sendWheel(QPoint(50, 50), QPoint(0, 120), Qt::ControlModifier));
}

void Tst_EditorView::controlWheelZoomsWhateverElseIsHeld_data() {
    QTest::addColumn<int>("others");
    QTest::addColumn<bool>("turned");
    QTest::newRow("nothing") << int(Qt::NoModifier) << false;
    QTest::newRow("Shift") << int(Qt::ShiftModifier) << false;
    QTest::newRow("Alt") << int(Qt::AltModifier) << false;
    QTest::newRow("Alt, turned by the window system") << int(Qt::AltModifier) << true;
}

void Tst_EditorView::controlWheelZoomsWhateverElseIsHeld() {
    QFETCH(int, others);
    QFETCH(bool, turned);
    const auto wheel = [&](int delta) {
        sendWheel(QPoint(50, 50), turned ? QPoint(delta, 0) : QPoint(0, delta),
                  Qt::ControlModifier | Qt::KeyboardModifiers(others));
        return m_view->transform().m11();
    };
    QCOMPARE(wheel(-Notch), 0.96);
    QCOMPARE(wheel(Notch), 1.0);
    QCOMPARE(wheel(Notch), 1.15);
}

void Tst_EditorView::wheelWithoutEditorDoesNothing() {
    m_view->setEditor(nullptr);
    const QTransform before = m_view->transform();
    m_view->setSceneRect(0, 0, 2000, 2000);
    const QPoint scrolled(m_view->horizontalScrollBar()->value(), m_view->verticalScrollBar()->value());
    for (const Qt::KeyboardModifier modifier :
         {Qt::NoModifier, Qt::ControlModifier, Qt::ShiftModifier, Qt::AltModifier})
        sendWheel(QPoint(50, 50), -Notch, modifier);
    QCOMPARE(m_view->transform(), before);
    QCOMPARE(QPoint(m_view->horizontalScrollBar()->value(), m_view->verticalScrollBar()->value()), scrolled);
    m_view->onZoomReset(); // a step taken in secret would show with the next capture
    TestEditor other;
    load(other, QSize(50, 50), QStringLiteral("other"));
    sendWheel(QPoint(50, 50), Notch, Qt::ControlModifier);
    m_view->setEditor(m_editor.get());
    m_view->onZoomIn();
    QCOMPARE(m_view->transform().m11(), 1.15);
}

void Tst_EditorView::cropZoomsOutToFitAndStaysThere_data() {
    QTest::addColumn<QSize>("image");
    QTest::addColumn<int>("step");
    QTest::addColumn<double>("scale");
    QTest::addColumn<bool>("accept");
    const auto rows = [](const char *name, const QSize &image, int step, double scale) {
        QTest::addRow("%s, cancelled", name) << image << step << scale << false;
        QTest::addRow("%s, accepted", name) << image << step << scale << true;
    };
    // Of a view of 400 x 300: (ratio - 0.1) * 20 / 0.9 whole steps of 4.5 %.
    rows("the width decides: 0.4, 6.7 steps", QSize(1000, 600), 6, 0.37);
    rows("the height decides: 0.25, 3.3 steps", QSize(500, 1200), 3, 0.24);
    rows("higher only: 0.6, 11.1 steps", QSize(300, 500), 11, 0.6);
    rows("wider only: 0.8, 15.6 steps", QSize(500, 200), 15, 0.78);
    rows("too wide for any step", QSize(9000, 400), 0, 0.1);
}

void Tst_EditorView::cropZoomsOutToFitAndStaysThere() {
    QFETCH(QSize, image);
    QFETCH(int, step);
    QFETCH(double, scale);
    QFETCH(bool, accept);
    TestEditor large;
    load(large, image, QStringLiteral("large"));
    m_view->setEditor(&large);
    large.setShape(Editor::Crop);
    large.startCrop();
    QCOMPARE(large.zoomStep(), step);
    QCOMPARE(m_view->transform().m11(), scale);
    large.finishCurrentItem(accept);
    QCOMPARE(large.zoomStep(), step);
    QCOMPARE(m_view->transform().m11(), scale);
    m_view->setEditor(nullptr);
}

void Tst_EditorView::cropOfAnImageThatFitsKeepsTheZoom() {
    m_view->onZoomIn();
    m_editor->setShape(Editor::Crop);
    m_editor->startCrop();
    QCOMPARE(m_view->transform().m11(), 1.15);
}

void Tst_EditorView::undoAndRedoStateFollowsTheLists() {
    QList<bool> undo, redo;
    connect(m_view.get(), &EditorView::canUndo, this, [&](bool can) { undo.append(can); });
    connect(m_view.get(), &EditorView::canRedo, this, [&](bool can) { redo.append(can); });
    m_editor->setShape(Editor::Pen);
    capture::Mouse mouse(m_view->viewport());
    mouse.drag({{150, 100}, {200, 130}, {210, 130}});
    QCoreApplication::processEvents();
    QCOMPARE(undo.last(), true);
    QCOMPARE(redo.last(), false);
    m_editor->undo();
    QCoreApplication::processEvents();
    QCOMPARE(undo.last(), false);
    QCOMPARE(redo.last(), true);
    // Another capture brings its own state at once.
    TestEditor other;
    m_view->setEditor(&other);
    QCOMPARE(redo.last(), false);
    m_view->setEditor(m_editor.get());
    QCOMPARE(redo.last(), true);
}

void Tst_EditorView::undoIsOffWhileTextOrCropIsOpen() {
    m_editor->setShape(Editor::Pen);
    capture::Mouse(m_view->viewport()).drag({{150, 100}, {200, 130}, {210, 130}});
    bool undo = true;
    connect(m_view.get(), &EditorView::canUndo, this, [&](bool can) { undo = can; });
    m_editor->setShape(Editor::Crop);
    m_view->onEditorChanged();
    QVERIFY(!undo);
    m_editor->setShape(Editor::Pen);
    m_view->onEditorChanged();
    QVERIFY(undo);
    m_editor->setShape(Editor::TextEditing);
    m_view->onEditorChanged();
    QVERIFY(!undo);
}

void Tst_EditorView::viewShowsImageAndWhatLiesAround() {
    QImage expected(400, 300, QImage::Format_RGB32);
    expected.fill(Around);
    QPainter(&expected).drawImage(100, 80, capture::picture(QSize(200, 140)));
    COMPARE_IMAGES(shown(), expected, "centred");
    m_editor->applyCrop(QRect(10, 20, 100, 60));
    QCoreApplication::processEvents();
    expected.fill(Around);
    QPainter(&expected).drawImage(150, 120, capture::picture(QSize(200, 140)).copy(10, 20, 100, 60));
    COMPARE_IMAGES(shown(), expected, "crop");
}

void Tst_EditorView::enlargedPixelsAreSharp() {
    for (int i = 0; i < 24; ++i)
        m_view->onZoomIn(); // 800 %
    m_view->horizontalScrollBar()->setValue(0);
    m_view->verticalScrollBar()->setValue(0);
    QCoreApplication::processEvents();
    const QImage picture = capture::picture(QSize(200, 140));
    const QImage view = shown();
    for (int y = 0; y < 240; ++y) {
        for (int x = 0; x < 240; ++x)
            QCOMPARE(view.pixel(x, y), picture.pixel(x / 8, y / 8));
    }
}

void Tst_EditorView::reducedImageIsSmoothedOnceTheViewIsQuiet() {
    for (int i = 0; i < 10; ++i)
        m_view->onZoomOut(); // 55 %
    QCoreApplication::processEvents();
    const QImage expected = capture::picture(QSize(200, 140))
                                .scaled(110, 77, Qt::KeepAspectRatio, Qt::SmoothTransformation)
                                .convertToFormat(QImage::Format_RGB32);
    const QPoint topLeft = m_view->mapFromScene(QPointF(0, 0));
    // Looking at the view is a paint of its own, which puts the copy off.
    const int scenePaints = m_view->scenePaints;
    QTRY_VERIFY(m_view->scenePaints > scenePaints);
    COMPARE_IMAGES(shown().copy(QRect(topLeft, expected.size())), expected, "smooth");
}

void Tst_EditorView::smoothCopyIsOfTheCaptureThatIsShown() {
    // As large as the other one and at its scale, so that its smooth copy would fit, too.
    QImage plain(200, 140, QImage::Format_RGB32);
    plain.fill(QColor(10, 200, 150));
    TestEditor other;
    capture::load(other, QStringLiteral("other"), plain);
    constexpr int Step = 10; // 55 %
    other.setZoomStep(Step);
    for (int i = Step; i < 20; ++i)
        m_view->onZoomOut();
    QCoreApplication::processEvents();
    const int scenePaints = m_view->scenePaints;
    QTRY_VERIFY(m_view->scenePaints > scenePaints);
    m_view->setEditor(&other);
    // Before the view is quiet and has a copy of this one.
    const QRect inside(m_view->mapFromScene(QPointF(0, 0)) + QPoint(1, 1), QSize(108, 75));
    COMPARE_IMAGES(shown().copy(inside), plain.copy(QRect(QPoint(), inside.size())), "at once");
    m_view->setEditor(nullptr);
}

void Tst_EditorView::smoothCopyWaitsUntilNothingIsPainted() {
    QTest::qWait(2 * QuietTime);
    TimerWatch watch;
    for (int i = 0; i < 10; ++i)
        m_view->onZoomOut(); // 55 %
    QElapsedTimer sincePaint, sinceStart;
    sinceStart.start();
    const auto paint = [&] {
        sincePaint.start(); // before, so that the time waited can only come out too long
        m_view->viewport()->repaint(QRect(10, 10, 5, 5));
    };
    paint();
    QCoreApplication::processEvents();
    const int known = m_view->scenePaints;
    // Nothing of the scene is painted meanwhile: these paints only show what is there.
    while (sinceStart.elapsed() < 4 * QuietTime && m_view->scenePaints == known) {
        paint();
        QTest::qWait(10);
    }
    if (m_view->scenePaints == known)
        QTRY_VERIFY(m_view->scenePaints > known);
    // A machine that is busy may make a wait longer, but none shorter.
    QVERIFY2(sincePaint.elapsed() >= QuietTime, qPrintable(QString::number(sincePaint.elapsed())));
    QVERIFY(watch.intervals.contains(QuietTime));
}

void Tst_EditorView::idleViewDoesNotRepaint() {
    m_view->onZoomOut();
    QTest::qWait(200);
    PaintCounter counter;
    m_view->viewport()->installEventFilter(&counter);
    const int scenePaints = m_view->scenePaints;
    QTest::qWait(300);
    QCOMPARE(counter.paints, 0);
    QCOMPARE(m_view->scenePaints, scenePaints);
}

void Tst_EditorView::strokeIsAddedWithoutPaintingTheScene() {
    m_editor->setShape(Editor::Pen);
    capture::Mouse mouse(m_view->viewport());
    mouse.press({150, 100});
    QCoreApplication::processEvents();
    const int scenePaints = m_view->scenePaints;
    PaintCounter counter;
    m_view->viewport()->installEventFilter(&counter);
    for (int i = 1; i <= 20; ++i) {
        mouse.move({150 + i * 3, 100 + i});
        QCoreApplication::processEvents();
        QCOMPARE(counter.paints, i);
    }
    mouse.release({215, 120});
    QCoreApplication::processEvents();
    QCOMPARE(m_view->scenePaints, scenePaints);
}

void Tst_EditorView::figureIsDrawnOverWhatLiesBelow_data() {
    QTest::addColumn<int>("step");
    QTest::newRow("55 %, scaled on the fly") << 10;
    QTest::newRow("100 %") << 20;
}

void Tst_EditorView::figureIsDrawnOverWhatLiesBelow() {
    QFETCH(int, step);
    Editor editor; // with the product's own figures
    capture::load(editor, QStringLiteral("figures"), capture::picture(QSize(200, 140)));
    editor.setZoomStep(step);
    m_view->setEditor(&editor);
    editor.setShape(Editor::Circle);
    capture::Mouse mouse(m_view->viewport());
    mouse.press({150, 100});
    QCoreApplication::processEvents();
    mouse.move({160, 105}); // what lies below is painted once
    QCoreApplication::processEvents();
    const int scenePaints = m_view->scenePaints;
    PaintCounter counter;
    m_view->viewport()->installEventFilter(&counter);
    for (int i = 1; i <= 10; ++i) {
        mouse.move({160 + i * 5, 105 + i * 3});
        m_view->viewport()->repaint(); // before the view is quiet long enough for its smooth background
    }
    QCOMPARE(counter.paints, 10);
    QCOMPARE(m_view->scenePaints, scenePaints);
    mouse.release({220, 140});
    QCoreApplication::processEvents();
    QVERIFY(m_view->scenePaints > scenePaints);
    m_view->setEditor(nullptr);
}

void Tst_EditorView::openTextIsDrawnOverWhatLiesBelow_data() {
    QTest::addColumn<int>("step");
    QTest::newRow("55 %, scaled on the fly") << 10;
    QTest::newRow("100 %") << 20;
}

void Tst_EditorView::openTextIsDrawnOverWhatLiesBelow() {
    QFETCH(int, step);
    TextEditor editor;
    capture::load(editor, QStringLiteral("text"), capture::picture(QSize(400, 300)));
    editor.setZoomStep(step);
    m_view->setEditor(&editor);
    const QGraphicsItem &text = openText(editor, {100, 100});
    const auto type = [this] {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QStringLiteral("a"));
        QCoreApplication::sendEvent(m_view.get(), &press);
        m_view->viewport()->repaint(); // before the view is quiet long enough for its smooth background
    };
    type();
    const QPointF border(text.boundingRect().center().x(), 2);
    QPoint pos = m_view->mapFromScene(text.mapToScene(border));
    capture::Mouse mouse(m_view->viewport());
    mouse.press(pos);
    const auto move = [&] {
        const QPointF before = text.pos();
        pos += QPoint(7, 5);
        mouse.move(pos);
        m_view->viewport()->repaint();
        return text.pos() != before;
    };
    move(); // what lies below is painted once
    const int scenePaints = m_view->scenePaints;
    QImage last = shown();
    const auto isOther = [&last, this] {
        const QImage before = std::exchange(last, shown());
        return last != before;
    };
    for (int i = 0; i < 5; ++i) {
        QVERIFY(move());
        QVERIFY(isOther());
    }
    mouse.release(pos);
    for (int i = 0; i < 3; ++i) {
        type();
        QVERIFY(isOther());
    }
    QCOMPARE(m_view->scenePaints, scenePaints);
    editor.update(); // the count does count
    m_view->viewport()->repaint();
    QVERIFY(m_view->scenePaints > scenePaints);
    m_view->setEditor(nullptr);
}

void Tst_EditorView::mouseNearAnOpenTextAsksNoOtherItem() {
    TextEditor editor;
    capture::load(editor, QStringLiteral("text"), capture::picture(QSize(400, 300)));
    m_view->setEditor(&editor);
    capture::Mouse mouse(m_view->viewport());
    const auto at = [this](const QPointF &pos) { return m_view->mapFromScene(pos); };
    editor.setShape(Editor::Rectangle);
    mouse.drag({at({10, 10}), at({350, 250}), at({390, 290})}); // below all that follows
    const QGraphicsItem &text = openText(editor, {100, 100});
    QCoreApplication::processEvents();
    const int questions = editor.figure->questions;
    const QPointF inside = text.sceneBoundingRect().center();
    for (int i = 0; i < 5; ++i) {
        mouse.move(at(inside + QPointF(i, 0)));
        mouse.move(at(QPointF(300 + i, 250)));
    }
    QCOMPARE(editor.figure->questions, questions);
    m_view->setEditor(nullptr);
}

void Tst_EditorView::exposureDoesNotPaintTheScene() {
    const int scenePaints = m_view->scenePaints;
    m_view->viewport()->update();
    QCoreApplication::processEvents();
    m_view->viewport()->repaint(QRect(10, 10, 100, 100));
    QCOMPARE(m_view->scenePaints, scenePaints);
}

void Tst_EditorView::eachCauseOfARepaintShows() {
    int known = m_view->scenePaints;
    const auto painted = [&] {
        QCoreApplication::processEvents(); // the scene tells what has changed
        QCoreApplication::processEvents(); // and that is painted
        const bool anew = m_view->scenePaints > known;
        known = m_view->scenePaints;
        return anew;
    };
    m_view->onZoomIn();
    QVERIFY(painted());
    m_view->resize(330, 240);
    QVERIFY(painted());
    m_editor->update();
    QVERIFY(painted());
    QEvent style(QEvent::StyleChange);
    QCoreApplication::sendEvent(m_view.get(), &style);
    QVERIFY(painted());
    QPalette palette = m_view->viewport()->palette();
    palette.setColor(m_view->viewport()->backgroundRole(), Qt::magenta);
    m_view->viewport()->setPalette(palette);
    QVERIFY(painted());
    QCOMPARE(shown().pixelColor(1, 1), QColor(Qt::magenta));
    load(*m_editor, QSize(150, 100), QStringLiteral("another picture"));
    QVERIFY(painted());
}

void Tst_EditorView::otherPictureUnderTheSameKeyIsShown_data() {
    QTest::addColumn<bool>("exposed");
    QTest::newRow("found by the job after a mere exposure") << true;
    QTest::newRow("found by a paint of a part of the scene") << false;
}

void Tst_EditorView::otherPictureUnderTheSameKeyIsShown() {
    QFETCH(bool, exposed);
    QTest::qWait(2 * QuietTime); // the job of the first paints is done
    QImage other(200, 140, QImage::Format_RGB32);
    other.fill(Qt::cyan);
    ImageProvider *provider = ImageProvider::instance();
    provider->insert(QStringLiteral("capture"), QPixmap::fromImage(other));
    provider->insert(QStringLiteral("another"), QPixmap(1, 1));
    provider->pixmap(QStringLiteral("another")); // the one handed out last is remembered
    QImage expected(400, 300, QImage::Format_RGB32);
    expected.fill(Around);
    QPainter(&expected).drawImage(100, 80, other);
    if (exposed) {
        const int known = m_view->scenePaints;
        m_view->viewport()->repaint(QRect(0, 0, 5, 5));
        QTRY_VERIFY(m_view->scenePaints > known);
    } else {
        m_editor->update(QRectF(10, 10, 20, 20));
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
    }
    COMPARE_IMAGES(shown(), expected, "other picture");
}

void Tst_EditorView::itemIsCutAtTheCropAndWholeAfterItsUndo() {
    m_editor->setShape(Editor::Rectangle);
    // The image stands at (100, 80) in the view.
    capture::Mouse(m_view->viewport()).drag({{120, 110}, {170, 170}});
    QImage whole(400, 300, QImage::Format_RGB32);
    whole.fill(Around);
    QPainter wholePainter(&whole);
    wholePainter.drawImage(100, 80, capture::picture(QSize(200, 140)));
    wholePainter.fillRect(QRect(120, 110, 50, 60), Qt::green);
    wholePainter.end();
    QCoreApplication::processEvents();
    COMPARE_IMAGES(shown(), whole, "drawn");

    const QRect crop(40, 50, 100, 60);
    m_editor->setShape(Editor::Crop);
    m_editor->startCrop();
    m_editor->crop->frame = crop;
    m_editor->finishCurrentItem(true);
    QCoreApplication::processEvents();
    QImage cut(400, 300, QImage::Format_RGB32);
    cut.fill(Around);
    QPainter(&cut).drawImage(150, 120, whole.copy(crop.translated(100, 80)));
    COMPARE_IMAGES(shown(), cut, "cut");

    m_editor->undo();
    QCoreApplication::processEvents();
    COMPARE_IMAGES(shown(), whole, "whole again");
    m_editor->redo();
    QCoreApplication::processEvents();
    COMPARE_IMAGES(shown(), cut, "cut again");
}

// Whoever hears in the middle of a paint that the picture has become another may look at the view at once.
void Tst_EditorView::paintWithinAPaintLeavesTheBackgroundOut() {
    const auto render = [this] {
        QImage image(400, 300, QImage::Format_RGB32);
        image.fill(Around);
        QPainter painter(&image);
        m_view->render(&painter);
        return image;
    };
    QImage empty(400, 300, QImage::Format_RGB32);
    empty.fill(Around);
    QImage inner;
    connect(m_editor.get(), &QGraphicsScene::sceneRectChanged, this, [&] { inner = render(); });
    load(*m_editor, QSize(200, 140), QStringLiteral("of the same size"));
    QVERIFY(inner.isNull());
    const QImage other = capture::picture(QSize(90, 70));
    ImageProvider::instance()->insert(QStringLiteral("of the same size"), QPixmap::fromImage(other));
    const QImage outer = render();
    COMPARE_IMAGES(inner, empty, "within");
    disconnect(m_editor.get(), &QGraphicsScene::sceneRectChanged, this, nullptr);
    QVERIFY(outer != empty);
    COMPARE_IMAGES(render(), outer, "afterwards");
}

void Tst_EditorView::withoutEditorOnlyTheBackgroundIsShown() {
    m_view->setEditor(nullptr);
    QCoreApplication::processEvents();
    QImage expected(400, 300, QImage::Format_RGB32);
    expected.fill(Around);
    COMPARE_IMAGES(shown(), expected, "empty");
}

void Tst_EditorView::editorThatDiesWhileShownIsForgotten() {
    m_editor.reset();
    QVERIFY(!m_view->editor());
    QCoreApplication::processEvents();
    QImage expected(400, 300, QImage::Format_RGB32);
    expected.fill(Around);
    COMPARE_IMAGES(shown(), expected, "gone");
    m_view->onZoomIn();
    m_view->onChangeSceneRect();
    m_view->onEditorChanged();
}

void Tst_EditorView::ownWidgetsLieAboveThePicture() {
    m_view->onClickHistoryHide();
    auto *button = m_view->findChild<ItemButton *>(QStringLiteral("historyShow_"));
    QCOMPARE(m_view->childAt(button->geometry().center()), button);
    QVERIFY(zoomTool()->isAncestorOf(m_view->childAt(zoomTool()->geometry().center())));
}

void Tst_EditorView::zoomToolTellsSizeAndScale() {
    const auto *size = zoomTool()->findChild<QLabel *>(QStringLiteral("imageSize_"));
    const auto *percent = zoomTool()->findChild<QLabel *>(QStringLiteral("percent_"));
    QCOMPARE(size->text(), QStringLiteral("200 \u00D7 140"));
    QCOMPARE(percent->text(), QStringLiteral("100%"));
    m_view->onZoomOut();
    QCOMPARE(percent->text(), QStringLiteral("96%"));
    m_editor->applyCrop(QRect(10, 20, 100, 60));
    QCOMPARE(size->text(), QStringLiteral("100 \u00D7 60"));
    TestEditor other;
    load(other, QSize(50, 40), QStringLiteral("other"));
    m_view->setEditor(&other);
    QCOMPARE(size->text(), QStringLiteral("50 \u00D7 40"));
    QCOMPARE(percent->text(), QStringLiteral("100%"));
    m_view->setEditor(nullptr);
}

void Tst_EditorView::zoomToolStandsAtTheBottomLeft() {
    const auto check = [this](int left, int bottom) {
        QCOMPARE(zoomTool()->x(), left);
        QCOMPARE(zoomTool()->y() + zoomTool()->height(), m_view->height() - bottom);
        QCOMPARE(zoomTool()->size(), zoomTool()->sizeHint());
    };
    check(10, 20);
    m_view->resize(350, 260);
    check(10, 20);
    // The styler tells of another scale.
    m_view->dpi = 144;
    UIStyler::applyScale(m_view.get(), 1.5);
    check(15, 30);
}

void Tst_EditorView::zoomToolZooms() {
    const auto click = [this](const char *name) {
        zoomTool()->findChild<ItemButton *>(QString::fromLatin1(name))->click();
        return m_view->transform().m11();
    };
    QCOMPARE(click("zoomIn_"), 1.15);
    QCOMPARE(click("zoomIn_"), 1.3);
    QCOMPARE(click("zoomOut_"), 1.15);
    QCOMPARE(click("originalSize_"), 1.0);
    QCOMPARE(click("zoomOut_"), 0.96);
}

void Tst_EditorView::zoomToolIsThereWithACaptureOnly() {
    QVERIFY(zoomTool()->isVisible());
    m_view->setEditor(nullptr);
    QVERIFY(!zoomTool()->isVisible());
    m_view->resize(350, 260);
    QVERIFY(!zoomTool()->isVisible());
    m_view->setEditor(m_editor.get());
    QVERIFY(zoomTool()->isVisible());
    m_editor.reset(); // dies while shown
    QVERIFY(!zoomTool()->isVisible());
}

void Tst_EditorView::historyButtonStandsAtTheTopRight() {
    auto *button = m_view->findChild<ItemButton *>(QStringLiteral("historyShow_"));
    QVERIFY(button);
    QVERIFY(!button->isVisible());
    m_view->onClickHistoryHide();
    QVERIFY(button->isVisible());
    QCOMPARE(button->geometry().right(), 400 - 10 - 1);
    QCOMPARE(button->geometry().top(), 10);
    QCOMPARE(button->cursor().shape(), Qt::PointingHandCursor);
    m_view->resize(500, 300);
    QCOMPARE(button->geometry().right(), 500 - 10 - 1);
    TestEditor large;
    load(large, QSize(1000, 900), QStringLiteral("large"));
    m_view->setEditor(&large); // a scroll bar comes up
    m_view->resize(501, 300);
    QCOMPARE(button->geometry().right(), 501 - m_view->verticalScrollBar()->width() - 10 - 1);
    m_view->setEditor(nullptr);
}

void Tst_EditorView::historyButtonStandsInTheWiderViewAtOnce() {
    QWidget window;
    auto *row = new QHBoxLayout(&window);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    auto *panel = new QWidget;
    panel->setFixedWidth(120);
    row->addWidget(panel);
    auto *view = new EditorView;
    view->setFrameShape(QFrame::NoFrame);
    row->addWidget(view);
    window.resize(500, 300);
    window.show();
    QCoreApplication::processEvents();
    QCOMPARE(view->width(), 380);
    panel->hide();
    view->onClickHistoryHide();
    // Seen before the next event is handled.
    QCOMPARE(view->width(), 500);
    const auto *button = view->findChild<ItemButton *>(QStringLiteral("historyShow_"));
    QCOMPARE(button->geometry().right(), 500 - 10 - 1);
}

void Tst_EditorView::historyButtonMarginFollowsTheScale_data() {
    QTest::addColumn<double>("scale");
    QTest::addColumn<int>("margin");
    QTest::newRow("96 DPI") << 1.0 << 10;
    QTest::newRow("144 DPI") << 1.5 << 15;
    QTest::newRow("192 DPI") << 2.0 << 20;
}

void Tst_EditorView::historyButtonMarginFollowsTheScale() {
    QFETCH(double, scale);
    QFETCH(int, margin);
    auto *button = m_view->findChild<ItemButton *>(QStringLiteral("historyShow_"));
    const auto check = [button](int expected) {
        QCOMPARE(button->geometry().right(), 400 - expected - 1);
        QCOMPARE(button->geometry().top(), expected);
    };
    m_view->dpi = int(scale * 96);
    m_view->onClickHistoryHide();
    check(margin);
    // Another screen while it is seen.
    m_view->dpi = 240;
    UIStyler::applyScale(m_view.get(), 2.5);
    check(25);
}

void Tst_EditorView::historyButtonAsksForThePanelAndHides() {
    m_view->onClickHistoryHide();
    QSignalSpy spy(m_view.get(), &EditorView::clickHistoryShow);
    auto *button = m_view->findChild<ItemButton *>(QStringLiteral("historyShow_"));
    button->click();
    QCOMPARE(spy.count(), 1);
    QVERIFY(!button->isVisible());
}

void Tst_EditorView::movedWindowPlacesOnceHoweverOftenItIsTold() {
    TextEditor editor;
    load(editor, QSize(200, 140), QStringLiteral("text"));
    m_view->setEditor(&editor);
    openText(editor, {60, 70});
    auto *popup = m_view->findChild<TextPopup *>();
    QVERIFY(popup->isVisible());
    // The popup goes out of the way, and that is told as a move of the window again.
    capture::HideListener listener([this] { m_view->onMoveMainWindow(); });
    capture::RaiseCounter placed;
    popup->installEventFilter(&listener);
    popup->installEventFilter(&placed);
    m_view->onMoveMainWindow();
    QVERIFY(listener.heard);
    QCOMPARE(placed.raises, 1);
    m_view->onMoveMainWindow();
    QCOMPARE(placed.raises, 2);
    popup->removeEventFilter(&listener);
    m_view->setEditor(nullptr);
}

void Tst_EditorView::withMenuOpen(const std::function<void(CanvasMenu *)> &check) {
    bool checked = false;
    QTimer::singleShot(0, this, [&] {
        auto *menu = qobject_cast<CanvasMenu *>(QApplication::activePopupWidget());
        if (menu) {
            checked = true;
            check(menu);
            menu->close();
        }
    });
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(20, 20), m_view->mapToGlobal(QPoint(20, 20)));
    QCoreApplication::sendEvent(m_view->viewport(), &event);
    QVERIFY(checked);
}

void Tst_EditorView::menuEntriesInOrder() {
    const auto texts = [](const CanvasMenu &menu) {
        QStringList result;
        for (const QAction *action : menu.actions())
            result.append(action->isSeparator() ? QStringLiteral("-") : action->text());
        return result.join(QLatin1Char('|'));
    };
    const QString common =
        QStringLiteral("Figure (&S)|Pen (&D)|Highlighter (&H)|Line Width (&L)|-|Text (&T)|Crop (&C)|"
                       "Mosaic (&M)|-|Eraser (&E)|Reset (&R)|-|Print (&P)");
    QCOMPARE(texts(CanvasMenu(false)), common);
    QCOMPARE(texts(CanvasMenu(true)), QStringLiteral("AI tools|-|") + common);
    const CanvasMenu menu(true);
    QList<CanvasMenu::Entry> checkable;
    for (int entry = 0; entry < CanvasMenu::EntryCount; ++entry) {
        if (menu.action(static_cast<CanvasMenu::Entry>(entry))->isCheckable())
            checkable.append(static_cast<CanvasMenu::Entry>(entry));
    }
    const QList<CanvasMenu::Entry> expected{CanvasMenu::Figure, CanvasMenu::Pen,  CanvasMenu::Highlighter,
                                            CanvasMenu::Text,   CanvasMenu::Crop, CanvasMenu::Mosaic,
                                            CanvasMenu::Eraser};
    QCOMPARE(checkable, expected);
}

void Tst_EditorView::menuChecksThePresentTool_data() {
    QTest::addColumn<int>("shape");
    QTest::addColumn<int>("entry");
    QTest::newRow("eraser") << int(Editor::Eraser) << int(CanvasMenu::Eraser);
    QTest::newRow("pen") << int(Editor::Pen) << int(CanvasMenu::Pen);
    QTest::newRow("highlighter") << int(Editor::Highlighter) << int(CanvasMenu::Highlighter);
    QTest::newRow("line") << int(Editor::Line) << int(CanvasMenu::Figure);
    QTest::newRow("arrow") << int(Editor::Arrow) << int(CanvasMenu::Figure);
    QTest::newRow("rectangle") << int(Editor::Rectangle) << int(CanvasMenu::Figure);
    QTest::newRow("circle") << int(Editor::Circle) << int(CanvasMenu::Figure);
    QTest::newRow("balloon") << int(Editor::SpeechBalloon) << int(CanvasMenu::Figure);
    QTest::newRow("mosaic") << int(Editor::Mosaic) << int(CanvasMenu::Mosaic);
    QTest::newRow("text") << int(Editor::Text) << int(CanvasMenu::Text);
    QTest::newRow("open text") << int(Editor::TextEditing) << -1;
    QTest::newRow("closed text") << int(Editor::TextFinished) << -1;
    QTest::newRow("crop") << int(Editor::Crop) << int(CanvasMenu::Crop);
}

void Tst_EditorView::menuChecksThePresentTool() {
    QFETCH(int, shape);
    QFETCH(int, entry);
    m_editor->setShape(static_cast<Editor::ShapeType>(shape));
    withMenuOpen([entry](CanvasMenu *menu) {
        QVERIFY(menu->isEnabled());
        QCOMPARE(menu->objectName(), QStringLiteral("contextMenu_"));
        for (int i = 0; i < CanvasMenu::EntryCount; ++i) {
            if (const QAction *action = menu->action(static_cast<CanvasMenu::Entry>(i)))
                QCOMPARE(action->isChecked(), i == entry);
        }
    });
}

void Tst_EditorView::menuIsDisabledWithoutEditor() {
    m_view->setEditor(nullptr);
    withMenuOpen([](CanvasMenu *menu) { QVERIFY(!menu->isEnabled()); });
    m_view->setEditor(m_editor.get());
    withMenuOpen([](CanvasMenu *menu) { QVERIFY(menu->isEnabled()); });
}

void Tst_EditorView::menuOpensWhereItIsAskedFor() {
    // The menu key asks for it away from the mouse.
    QCursor::setPos(5, 5);
    m_view->move(130, 90);
    const QPoint place = m_view->mapToGlobal(QPoint(20, 20));
    QVERIFY(place.x() > 100 && place.y() > 100);
    withMenuOpen([place](CanvasMenu *menu) { QCOMPARE(menu->pos(), place); });
}

void Tst_EditorView::menuEntriesAskTheMainWindow() {
    QStringList asked;
    connect(m_view.get(), &EditorView::contextMenuText, this, [&] { asked.append(QStringLiteral("text")); });
    connect(m_view.get(), &EditorView::contextMenuCrop, this, [&] { asked.append(QStringLiteral("crop")); });
    connect(m_view.get(), &EditorView::contextMenuEraser, this,
            [&] { asked.append(QStringLiteral("eraser")); });
    connect(m_view.get(), &EditorView::contextMenuReset, this,
            [&] { asked.append(QStringLiteral("reset")); });
    connect(m_view.get(), &EditorView::contextMenuPrint, this,
            [&] { asked.append(QStringLiteral("print")); });
    const auto *menu = m_view->findChild<CanvasMenu *>();
    for (int entry = 0; entry < CanvasMenu::EntryCount; ++entry) {
        if (QAction *action = menu->action(static_cast<CanvasMenu::Entry>(entry)))
            action->trigger();
    }
    QCOMPARE(asked.join(QLatin1Char(' ')), QStringLiteral("text crop eraser reset print"));
}

void Tst_EditorView::panelsHangBelowTheirEntries() {
    using Setter = void (EditorView::*)(QMenu *);
    const QVector<QPair<CanvasMenu::Entry, Setter>> setters{
        {CanvasMenu::Figure, &EditorView::setFigureMenu},
        {CanvasMenu::Pen, &EditorView::setPenMenu},
        {CanvasMenu::Highlighter, &EditorView::setHighlighterMenu},
        {CanvasMenu::LineWidth, &EditorView::setLineWidthMenu},
        {CanvasMenu::Mosaic, &EditorView::setMosaicMenu},
    };
    for (const auto &setter : setters) {
        auto *popup = new Popup;
        QMenu *panel = popup->toMenu(m_view.get());
        (m_view.get()->*setter.second)(panel);
        withMenuOpen([&](CanvasMenu *menu) {
            QCOMPARE(menu->action(setter.first)->menu(), panel);
            panel->popup(QPoint(60, 60));
            emit popup->triggered();
            QVERIFY(!panel->isVisible());
            QVERIFY(!menu->isVisible());
        });
    }
}

void Tst_EditorView::aiToolsMenuNeedsItsEntry() {
    QMenu panel;
    m_view->setAiToolsMenu(&panel); // nothing to hang it on, and nothing breaks
    CanvasMenu menu(true);
    menu.setPanel(CanvasMenu::AiTools, &panel);
    QCOMPARE(menu.action(CanvasMenu::AiTools)->menu(), &panel);
}

void Tst_EditorView::emptyViewShowsNoToolCursor() {
    m_editor->setShape(Editor::Rectangle);
    m_view->onEmptyEditor(false);
    QCOMPARE(m_view->viewport()->cursor().shape(), Qt::CrossCursor);
    m_view->onEmptyEditor(true);
    QCOMPARE(m_view->viewport()->cursor().shape(), Qt::ArrowCursor);
}

QTEST_MAIN(Tst_EditorView)
#include "tst_editorview.moc"
