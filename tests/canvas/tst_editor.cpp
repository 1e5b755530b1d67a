#include "canvas/capturefixture.h"
#include "canvas/editorview.h"
#include "canvas/fakeitems.h"
#include "canvas/items/drawingpenitem.h"
#include "ipc/imageprovider.h"
#include "preferences/tindrapreferences.h"
#include "services/usagestatistics.h"
#include "support/fakeplatform.h"
#include "support/imagecompare.h"

#include <QPointer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

namespace {

const QSize ImageSize(200, 140);

void setPen(const QColor &color, int width) {
    auto &preferences = *TindraPreferences::instance();
    preferences.SetInt(TindraPreferences::PenColor, TindraPreferences::colorToInt(color));
    preferences.SetInt(TindraPreferences::HighlighterColor, TindraPreferences::colorToInt(color));
    preferences.SetInt(TindraPreferences::LineWidth, width);
}

} // namespace

class Tst_Editor : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { qRegisterMetaType<Editor::ShapeType>("Editor::ShapeType"); }
    void init();
    void cleanup();

    void toolNumbersAreThoseOfTheSettings();
    void setShapeTellsEvenTheSameTool();
    void restoreLastShapeTakesTheStoredTool();
    void itemStartsBeforeItJoinsTheSceneAndClearsSavedPathFirst();
    void dragReachesTheItemInWholePixels();
    void rightButtonDrawsNothing();
    void pressDuringGestureDrawsNothing();
    void toolWithoutItemIsUsedAndChangesNothing();
    void storedToolThatNobodyCanHoldGivesTheRectangle_data();
    void storedToolThatNobodyCanHoldGivesTheRectangle();

    void clickLeavesNothingButMarksUnsaved_data();
    void clickLeavesNothingButMarksUnsaved();
    void dragFromBesideTheCornerIsAStep();
    void strokeBackToItsStart_data();
    void strokeBackToItsStart();
    void newItemMakesUndoneOnesUnreachable();
    void undoAndRedoMoveItems();
    void resetCanBeRedoneStepByStep();
    void resetAfterTheEraserIsRedoneBeforeWhatWasErased();

    void eraserTakesTheTopmostItem();
    void eraserReachesOnePixel_data();
    void eraserReachesOnePixel();
    void erasedItemComesBackByRedoOnly();
    void eraserErasesWhileDragged();
    void erasedStrokeUnderConstructionDoesNotGrowOn();
    void strokesAreErasedOutsideTheCropAndFiguresAreNot();

    void textGoesThroughItsStates();
    void textAbortedIsReadyForTheNext();
    void rejectedTextLeavesNothing();
    void acceptedTextMakesUndoneOnesUnreachable();
    void openTextIsThrownAwayByAnotherTool();
    void openTextFollowsTheMouse();
    void cropAcceptedIsOneStep();
    void cropCancelledByAnotherTool();
    void cropGoesBackToThePreviousTool();
    void startCropNeedsTheCropTool();
    void cropTakenBackWhileOpenCanBeCancelled();
    void pressesBelongToTheOpenCrop();
    void closingSaysSoBeforeTheToolChanges();
    void editorThatDiesClosesWhatIsOpen_data();
    void editorThatDiesClosesWhatIsOpen();
    void pressOutsideAnOpenTextOnlyClosesIt();
    void swapInTheMiddleOfADragKeepsTheStroke_data();
    void swapInTheMiddleOfADragKeepsTheStroke();
    void swapKeepsTheShiftOfTheLastMove();
    void swapAfterAPressLeavesNothing();
    void swapThrowsAnOpenTextAway();
    void finishCurrentItemActsOnOpenItemsOnly();
    void cropWidensTheClipWhileItIsOpen();

    void savedPathRules();
    void flattenSizes_data();
    void flattenSizes();
    void flattenDrawsItemsAtOneUnitPerPixel();
    void flattenCutsItemsAtTheCrop();
    void flattenSkipsTheCropItem();
    void missingImageGivesNull();

    void usageCodeOfTool_data();
    void usageCodeOfTool();
    void usageIsReportedOncePerToolAndLineStyle();
    void textUsageIsReportedAfterTheClosingClick();
    void toolPickedAfterATextIsNotInUseYet();

    void saveWritesWhatIsSeen();
    void saveWithoutMarkLeavesTheCaptureUnsaved();
    void failedSaveKeepsSavedPath();
    void saveShowsTheWaitCursorAndKeepsEventsGoing();
    void editorMayDieDuringASave();
    void saveKeepsWhatIsBeingTyped();
    void pinImageIsUntouched();
    void pinningKeepsWhatIsOpen_data();
    void pinningKeepsWhatIsOpen();
    void copyPutsWhatIsSeenOnTheClipboard();
    void imageFileBelongsToTheEditor();

private:
    QPoint at(int x, int y) const { return m_view->mapFromScene(QPointF(x, y)); }
    void drag(const QVector<QPoint> &scenePoints, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void click(int x, int y, Qt::MouseButton button = Qt::LeftButton) { m_mouse->click(at(x, y), button); }
    void openCrop();

    FakePlatform *m_platform = nullptr;
    std::unique_ptr<TestEditor> m_editor;
    std::unique_ptr<EditorView> m_view;
    std::unique_ptr<capture::Mouse> m_mouse;
    QStringList m_usage;
    QImage m_picture;
};

void Tst_Editor::init() {
    m_platform = FakePlatform::install();
    capture::resetWorld();
    m_usage.clear();
    setUsageRecorder([this](const QString &code) { m_usage.append(code); });
    m_picture = capture::picture(ImageSize);
    m_editor = std::make_unique<TestEditor>();
    capture::load(*m_editor, QStringLiteral("capture"), m_picture);
    m_view = std::make_unique<EditorView>();
    m_view->resize(400, 300);
    m_view->show();
    m_view->setEditor(m_editor.get());
    m_mouse = std::make_unique<capture::Mouse>(m_view->viewport());
    setPen(Qt::red, 5);
}

void Tst_Editor::cleanup() {
    setUsageRecorder({});
    m_view.reset();
    m_editor.reset();
}

void Tst_Editor::drag(const QVector<QPoint> &scenePoints, Qt::KeyboardModifiers modifiers) {
    QVector<QPoint> points;
    for (const QPoint &point : scenePoints)
        points.append(m_view->mapFromScene(point));
    m_mouse->drag(points, modifiers);
}

void Tst_Editor::openCrop() {
    m_editor->setShape(Editor::Crop);
    m_editor->startCrop();
}

void Tst_Editor::toolNumbersAreThoseOfTheSettings() {
    const QVector<int> numbers{Editor::Eraser, Editor::Pen,       Editor::Highlighter, Editor::Line,
                               Editor::Arrow,  Editor::Rectangle, Editor::Circle,      Editor::SpeechBalloon,
                               Editor::Mosaic, Editor::Text,      Editor::TextEditing, Editor::TextFinished,
                               Editor::Crop};
    for (int i = 0; i < numbers.size(); ++i)
        QCOMPARE(numbers.at(i), i);
    QCOMPARE(Editor().shapeType(), Editor::Rectangle);
}

void Tst_Editor::setShapeTellsEvenTheSameTool() {
    m_editor->setShape(Editor::Pen);
    QSignalSpy spy(m_editor.get(), &Editor::changedShape);
    m_editor->setShape(Editor::Pen);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(m_editor->shapeType(), Editor::Pen);
}

void Tst_Editor::restoreLastShapeTakesTheStoredTool() {
    m_editor->setShape(Editor::Pen);
    TindraPreferences::instance()->SetInt(TindraPreferences::LastDrawingItem, Editor::Highlighter);
    m_editor->restoreLastShape();
    QCOMPARE(m_editor->shapeType(), Editor::Highlighter);
}

void Tst_Editor::itemStartsBeforeItJoinsTheSceneAndClearsSavedPathFirst() {
    m_editor->setSavedPath(QStringLiteral("/somewhere.png"));
    m_editor->setShape(Editor::Rectangle);
    QStringList order;
    connect(m_editor.get(), &Editor::imageSaved, this, [&](bool saved) {
        order.append(QStringLiteral("saved %1, log %2").arg(saved).arg(m_editor->log.size()));
    });
    m_mouse->press(at(10, 20));
    QCOMPARE(m_editor->savedPathAtCreation, QStringLiteral("/somewhere.png"));
    QCOMPARE(order, QStringList{QStringLiteral("saved 0, log 0")}); // before drawStart
    QCOMPARE(m_editor->log, QStringList{QStringLiteral("start 10,20 10,20 outside")});
    QCOMPARE(m_editor->figure->scene(), m_editor.get());
    QCOMPARE(m_editor->figure->clip(), QRectF(0, 0, 200, 140));
    QCOMPARE(m_editor->figure->parent(), m_editor.get());
    m_mouse->release(at(10, 20));
}

void Tst_Editor::dragReachesTheItemInWholePixels() {
    m_view->onZoomIn(); // 115 %: positions between pixels
    m_editor->setShape(Editor::Rectangle);
    const QPoint a = at(10, 20), b = at(31, 40), c = at(50, 61);
    m_mouse->press(a);
    m_mouse->move(b, Qt::ShiftModifier);
    m_mouse->move(c);
    m_mouse->release(c + QPoint(2, 2), Qt::LeftButton, Qt::ShiftModifier);
    const auto text = [&](const QPoint &pos) {
        const QPoint scenePos = m_view->viewportTransform().inverted().map(QPointF(pos)).toPoint();
        return QStringLiteral("%1,%2").arg(scenePos.x()).arg(scenePos.y());
    };
    const QStringList expected{QStringLiteral("start %1 %1 outside").arg(text(a)),
                               QStringLiteral("move %1 %2 shift").arg(text(a), text(b)),
                               QStringLiteral("move %1 %2").arg(text(b), text(c)),
                               QStringLiteral("end %1 %2 shift").arg(text(c), text(c + QPoint(2, 2)))};
    QCOMPARE(m_editor->log, expected);
    QVERIFY(!m_editor->currentItem());
}

void Tst_Editor::rightButtonDrawsNothing() {
    m_editor->setSavedPath(QStringLiteral("/somewhere.png"));
    m_editor->setShape(Editor::Rectangle);
    m_mouse->press(at(10, 20), Qt::RightButton);
    m_mouse->move(at(30, 40));
    m_mouse->release(at(30, 40), Qt::RightButton);
    QVERIFY(m_editor->log.isEmpty());
    QVERIFY(m_editor->items().isEmpty());
    QVERIFY(m_editor->isSaved());
    QVERIFY(m_usage.isEmpty());
}

void Tst_Editor::pressDuringGestureDrawsNothing() {
    m_editor->setShape(Editor::Rectangle);
    m_editor->setGestureActive(true);
    drag({{10, 20}, {30, 40}});
    QVERIFY(m_editor->log.isEmpty());
    m_editor->setGestureActive(false);
    drag({{10, 20}, {30, 40}});
    QVERIFY(m_editor->canUndo());
}

void Tst_Editor::toolWithoutItemIsUsedAndChangesNothing() {
    m_editor->setSavedPath(QStringLiteral("/somewhere.png"));
    m_editor->setShape(Editor::Mosaic);
    drag({{10, 20}, {30, 40}});
    QVERIFY(m_editor->items().isEmpty());
    QVERIFY(!m_editor->canUndo());
    QVERIFY(m_editor->isSaved());
    QCOMPARE(m_usage, QStringList{QStringLiteral("cap_30_05")});
    QCOMPARE(m_editor->shapeType(), Editor::Mosaic);
}

void Tst_Editor::storedToolThatNobodyCanHoldGivesTheRectangle_data() {
    QTest::addColumn<int>("stored");
    QTest::addColumn<int>("tool");
    for (int tool = Editor::Eraser; tool <= Editor::Text; ++tool)
        QTest::addRow("tool %d", tool) << tool << tool;
    QTest::newRow("open text") << 10 << int(Editor::Rectangle);
    QTest::newRow("closed text") << 11 << int(Editor::Rectangle);
    QTest::newRow("crop") << 12 << int(Editor::Rectangle);
    QTest::newRow("no tool") << 99 << int(Editor::Rectangle);
    QTest::newRow("negative") << -1 << int(Editor::Rectangle);
}

void Tst_Editor::storedToolThatNobodyCanHoldGivesTheRectangle() {
    QFETCH(int, stored);
    QFETCH(int, tool);
    m_editor->setShape(Editor::Pen);
    TindraPreferences::instance()->SetInt(TindraPreferences::LastDrawingItem, stored);
    m_editor->restoreLastShape();
    QCOMPARE(int(m_editor->shapeType()), tool);
}

void Tst_Editor::clickLeavesNothingButMarksUnsaved_data() {
    QTest::addColumn<int>("shape");
    QTest::newRow("pen") << int(Editor::Pen);
    QTest::newRow("highlighter") << int(Editor::Highlighter);
    QTest::newRow("figure") << int(Editor::Rectangle);
}

void Tst_Editor::clickLeavesNothingButMarksUnsaved() {
    QFETCH(int, shape);
    m_editor->setShape(static_cast<Editor::ShapeType>(shape));
    m_editor->setSavedPath(QStringLiteral("/somewhere.png"));
    m_mouse->press(at(30, 30));
    QCOMPARE(m_editor->items().size(), 1);
    m_mouse->release(at(30, 30));
    QVERIFY(m_editor->items().isEmpty());
    QVERIFY(!m_editor->canUndo());
    QVERIFY(!m_editor->isSaved());
    QVERIFY(!m_editor->currentItem());
    QCOMPARE(m_editor->flatten(true, false).toImage().convertToFormat(QImage::Format_RGB32), m_picture);
}

void Tst_Editor::dragFromBesideTheCornerIsAStep() {
    m_editor->setShape(Editor::Rectangle);
    drag({{-1, -1}, {30, 40}});
    QCOMPARE(m_editor->items().size(), 1);
    QVERIFY(m_editor->canUndo());
    m_editor->undo();
    QVERIFY(m_editor->items().isEmpty());
}

void Tst_Editor::strokeBackToItsStart_data() {
    QTest::addColumn<int>("shape");
    QTest::addColumn<bool>("movesBack"); // or is let go there without a move before
    QTest::addColumn<bool>("stays");
    QTest::newRow("pen vanishes") << int(Editor::Pen) << true << false;
    QTest::newRow("pen vanishes, in one leap") << int(Editor::Pen) << false << false;
    QTest::newRow("highlighter stays") << int(Editor::Highlighter) << true << true;
    QTest::newRow("highlighter stays, in one leap") << int(Editor::Highlighter) << false << true;
    QTest::newRow("figure stays") << int(Editor::Rectangle) << true << true;
    QTest::newRow("figure stays, in one leap") << int(Editor::Rectangle) << false << true;
}

void Tst_Editor::strokeBackToItsStart() {
    QFETCH(int, shape);
    QFETCH(bool, movesBack);
    QFETCH(bool, stays);
    m_editor->setShape(static_cast<Editor::ShapeType>(shape));
    m_mouse->press(at(30, 30));
    m_mouse->move(at(80, 60));
    if (movesBack)
        m_mouse->move(at(30, 30));
    m_mouse->release(at(30, 30));
    QCOMPARE(m_editor->items().size(), stays ? 1 : 0);
    QCOMPARE(m_editor->canUndo(), stays);
    // Either way the next drag works.
    m_mouse->press(at(50, 50));
    m_mouse->move(at(90, 90));
    m_mouse->release(at(91, 90));
    QCOMPARE(m_editor->items().size(), stays ? 2 : 1);
}

void Tst_Editor::newItemMakesUndoneOnesUnreachable() {
    m_editor->setShape(Editor::Pen);
    drag({{10, 10}, {60, 10}});
    const QPointer<QObject> undone = dynamic_cast<QObject *>(m_editor->items().first());
    m_editor->undo();
    QVERIFY(m_editor->canRedo());
    QVERIFY(undone);
    m_mouse->press(at(10, 30));
    m_mouse->move(at(60, 30));
    QVERIFY(m_editor->canRedo()); // only the finished item empties the list
    m_mouse->release(at(61, 30));
    QVERIFY(!m_editor->canRedo());
    QVERIFY(!undone); // nothing refers to it any more
    QCOMPARE(m_editor->items().size(), 1);
}

void Tst_Editor::undoAndRedoMoveItems() {
    QVERIFY(!m_editor->canUndo());
    m_editor->undo();
    m_editor->redo();
    m_editor->setShape(Editor::Pen);
    drag({{10, 10}, {60, 10}});
    drag({{10, 30}, {60, 30}});
    const QList<QGraphicsItem *> both = m_editor->items(Qt::AscendingOrder);
    m_editor->undo();
    QCOMPARE(m_editor->items(), QList<QGraphicsItem *>{both.first()});
    m_editor->undo();
    QVERIFY(m_editor->items().isEmpty());
    QVERIFY(!m_editor->canUndo());
    m_editor->redo();
    m_editor->redo();
    QCOMPARE(m_editor->items(Qt::AscendingOrder), both);
    QVERIFY(!m_editor->canRedo());
}

void Tst_Editor::resetCanBeRedoneStepByStep() {
    m_editor->setShape(Editor::Pen);
    for (int y : {10, 30, 50})
        drag({{10, y}, {60, y}});
    const QList<QGraphicsItem *> before = m_editor->items(Qt::AscendingOrder);
    m_editor->reset();
    QVERIFY(m_editor->items().isEmpty());
    QVERIFY(!m_editor->canUndo());
    for (int i = 1; i <= 3; ++i) {
        m_editor->redo();
        QCOMPARE(m_editor->items(Qt::AscendingOrder), before.mid(0, i));
    }
    // What the eraser took stays taken.
    m_editor->setShape(Editor::Eraser);
    click(30, 30);
    m_editor->reset();
    QVERIFY(m_editor->items().isEmpty());
}

void Tst_Editor::resetAfterTheEraserIsRedoneBeforeWhatWasErased() {
    m_editor->setShape(Editor::Pen);
    for (int y : {10, 30, 50})
        drag({{10, y}, {60, y}});
    const QList<QGraphicsItem *> drawn = m_editor->items(Qt::AscendingOrder);
    m_editor->setShape(Editor::Eraser);
    click(30, 30);
    m_editor->reset();
    // Redo gives back the latest loss first: the reset's oldest stroke, then the next, then the erased one.
    const QList<QGraphicsItem *> expected{drawn.at(0), drawn.at(2), drawn.at(1)};
    for (int i = 1; i <= 3; ++i) {
        m_editor->redo();
        QCOMPARE(m_editor->items(Qt::AscendingOrder), expected.mid(0, i));
    }
    QVERIFY(!m_editor->canRedo());
}

void Tst_Editor::eraserTakesTheTopmostItem() {
    m_editor->setShape(Editor::Rectangle);
    drag({{10, 10}, {60, 60}});
    FakeFigure *lower = m_editor->figure;
    drag({{40, 40}, {90, 90}});
    m_editor->setShape(Editor::Eraser);
    click(50, 50);
    QCOMPARE(m_editor->items(), QList<QGraphicsItem *>{lower});
    click(150, 120);
    QCOMPARE(m_editor->items(), QList<QGraphicsItem *>{lower});
}

void Tst_Editor::eraserReachesOnePixel_data() {
    QTest::addColumn<int>("x");
    QTest::addColumn<bool>("hit");
    QTest::newRow("three pixels before") << 17 << false;
    QTest::newRow("one pixel before") << 19 << true;
    QTest::newRow("inside") << 25 << true;
    QTest::newRow("one pixel after") << 31 << true;
    QTest::newRow("two pixels after") << 32 << false;
}

void Tst_Editor::eraserReachesOnePixel() {
    QFETCH(int, x);
    QFETCH(bool, hit);
    m_editor->setShape(Editor::Rectangle);
    drag({{20, 20}, {30, 40}});
    m_editor->setShape(Editor::Eraser);
    click(x, 30);
    QCOMPARE(m_editor->items().isEmpty(), hit);
}

void Tst_Editor::erasedItemComesBackByRedoOnly() {
    m_editor->setShape(Editor::Rectangle);
    drag({{10, 10}, {60, 60}});
    m_editor->setSavedPath(QStringLiteral("/somewhere.png"));
    m_editor->setShape(Editor::Eraser);
    click(30, 30);
    QVERIFY(!m_editor->canUndo());
    m_editor->undo();
    QVERIFY(m_editor->items().isEmpty());
    QVERIFY(m_editor->canRedo());
    m_editor->redo();
    QCOMPARE(m_editor->items().size(), 1);
    QVERIFY(m_editor->canUndo());
    QVERIFY(m_editor->isSaved()); // eraser, undo and redo leave the saved state alone
    // The right button erases nothing.
    click(30, 30, Qt::RightButton);
    QCOMPARE(m_editor->items().size(), 1);
}

void Tst_Editor::eraserErasesWhileDragged() {
    m_editor->setShape(Editor::Rectangle);
    drag({{10, 10}, {20, 20}});
    drag({{40, 10}, {50, 20}});
    drag({{70, 10}, {80, 20}});
    m_usage.clear();
    m_editor->setShape(Editor::Eraser);
    m_mouse->press(at(5, 100));
    m_mouse->move(at(15, 15));
    m_mouse->move(at(45, 15));
    QCOMPARE(m_editor->items().size(), 1);
    m_mouse->release(at(45, 15));
    m_mouse->move(at(75, 15)); // no button
    QCOMPARE(m_editor->items().size(), 1);
    QVERIFY(m_usage.isEmpty()); // only a press counts as use
    click(75, 15);
    QCOMPARE(m_usage, QStringList{QStringLiteral("cap_303_12")});
}

void Tst_Editor::erasedStrokeUnderConstructionDoesNotGrowOn() {
    m_editor->setShape(Editor::Pen);
    m_mouse->press(at(10, 10));
    m_mouse->move(at(60, 10));
    m_editor->setShape(Editor::Eraser);
    m_mouse->move(at(30, 10));
    QVERIFY(m_editor->items().isEmpty());
    m_editor->setShape(Editor::Pen);
    m_mouse->move(at(90, 90));
    m_mouse->release(at(95, 90));
    QVERIFY(m_editor->items().isEmpty());
    QVERIFY(!m_editor->canUndo());
    m_editor->redo();
    QCOMPARE(m_editor->items().size(), 1);
}

void Tst_Editor::strokesAreErasedOutsideTheCropAndFiguresAreNot() {
    m_editor->setShape(Editor::Pen);
    drag({{10, 10}, {150, 10}});
    m_editor->setShape(Editor::Rectangle);
    drag({{10, 30}, {150, 60}});
    m_editor->applyCrop(QRect(100, 0, 100, 140));
    QVERIFY(QRectF(100, 0, 100, 140) == m_editor->figure->clip());
    m_editor->setShape(Editor::Eraser);
    click(50, 45);
    QCOMPARE(m_editor->items().size(), 2); // the figure is not there outside the crop
    click(50, 10);
    QCOMPARE(m_editor->items(), QList<QGraphicsItem *>{m_editor->figure});
    click(120, 45);
    QVERIFY(m_editor->items().isEmpty());
}

void Tst_Editor::textGoesThroughItsStates() {
    QSignalSpy created(m_editor.get(), &Editor::createTextItem);
    QSignalSpy finished(m_editor.get(), &Editor::finishTextItem);
    m_editor->setShape(Editor::Text);
    click(30, 30);
    QCOMPARE(m_editor->shapeType(), Editor::TextEditing);
    QCOMPARE(created.count(), 1);
    QCOMPARE(m_editor->text->scene(), m_editor.get());
    QCOMPARE(m_editor->log.first(), QStringLiteral("text start outside"));
    QVERIFY(!m_editor->canUndo()); // not before it is closed
    FakeText *text = m_editor->text;
    click(100, 100); // belongs to the open text
    QCOMPARE(m_editor->text, text);

    m_editor->text->close(true, false);
    QCOMPARE(m_editor->shapeType(), Editor::TextFinished);
    QCOMPARE(finished.count(), 1);
    QVERIFY(m_editor->canUndo());
    QVERIFY(!m_editor->currentItem());
    click(100, 100, Qt::RightButton);
    QCOMPARE(m_editor->shapeType(), Editor::Text);
    QCOMPARE(created.count(), 1);
    click(100, 100);
    QCOMPARE(created.count(), 2);
    QCOMPARE(m_editor->shapeType(), Editor::TextEditing);
}

void Tst_Editor::textAbortedIsReadyForTheNext() {
    m_editor->setShape(Editor::Text);
    click(30, 30);
    m_editor->text->close(true, true);
    QCOMPARE(m_editor->shapeType(), Editor::Text);
    QVERIFY(m_editor->canUndo());
    FakeText *first = m_editor->text;
    click(60, 60);
    QVERIFY(m_editor->text != first);
}

void Tst_Editor::rejectedTextLeavesNothing() {
    m_editor->setShape(Editor::Pen);
    drag({{10, 10}, {60, 10}});
    m_editor->undo();
    m_editor->setShape(Editor::Text);
    click(30, 30);
    const QPointer<FakeText> text = m_editor->text;
    text->close(false, false);
    QVERIFY(m_editor->items().isEmpty());
    QVERIFY(!m_editor->canUndo());
    QVERIFY(m_editor->canRedo()); // nothing was added, so nothing is lost
    QCOMPARE(m_editor->shapeType(), Editor::TextFinished);
    QVERIFY(text); // it is still inside its signal
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!text);
}

void Tst_Editor::acceptedTextMakesUndoneOnesUnreachable() {
    m_editor->setShape(Editor::Pen);
    drag({{10, 10}, {60, 10}});
    m_editor->undo();
    m_editor->setShape(Editor::Text);
    click(30, 30);
    QVERIFY(m_editor->canRedo()); // it may still be thrown away
    m_editor->text->close(true, false);
    QVERIFY(!m_editor->canRedo());
}

void Tst_Editor::openTextIsThrownAwayByAnotherTool() {
    m_editor->setShape(Editor::Text);
    click(30, 30);
    m_editor->setShape(Editor::Pen);
    QVERIFY(m_editor->log.contains(QStringLiteral("text finish 0")));
    QCOMPARE(m_editor->shapeType(), Editor::Pen);
    QVERIFY(m_editor->items().isEmpty());
    // The tool before is the one that the cancel left: a crop now goes back to Pen, and before it to Text.
    m_editor->setShape(Editor::Text);
    click(30, 30);
    openCrop();
    m_editor->finishCurrentItem(false);
    QCOMPARE(m_editor->shapeType(), Editor::Text);
}

void Tst_Editor::openTextFollowsTheMouse() {
    m_editor->setShape(Editor::Text);
    click(30, 30);
    m_editor->log.clear();
    m_mouse->move(at(41, 35));
    m_mouse->move(at(52, 36));
    const QStringList hovers{QStringLiteral("text hover 30,30 41,35"),
                             QStringLiteral("text hover 41,35 52,36")};
    QCOMPARE(m_editor->log, hovers);
    QSignalSpy moved(m_editor.get(), &Editor::moveTextItem);
    emit m_editor->text->moveTextItem(nullptr);
    QCOMPARE(moved.count(), 1);
    emit m_editor->changeSceneRect(QRectF(1, 2, 3, 4));
    QCOMPARE(m_editor->text->clip, QRectF(1, 2, 3, 4));
}

void Tst_Editor::cropAcceptedIsOneStep() {
    QSignalSpy created(m_editor.get(), SIGNAL(createCropItem(DrawingCropItem *)));
    QSignalSpy finished(m_editor.get(), &Editor::finishCropItem);
    QSignalSpy sized(m_editor.get(), &Editor::updateImageSize);
    openCrop();
    QCOMPARE(created.count(), 1);
    QCOMPARE(m_editor->cropRect(), QRect(0, 0, 200, 140)); // the whole image is seen meanwhile
    QCOMPARE(m_editor->currentItem(), static_cast<DrawingInterface *>(m_editor->crop));
    QVERIFY(m_editor->canUndo());
    m_editor->crop->frame = QRect(20, 30, 50, 40);
    m_editor->finishCurrentItem(true);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(sized.count(), 1);
    QCOMPARE(m_editor->cropRect(), QRect(20, 30, 50, 40));
    QCOMPARE(m_editor->visibleRect(), QRect(20, 30, 50, 40));
    QCOMPARE(m_view->sceneRect(), QRectF(20, 30, 50, 40));
    QCOMPARE(m_usage, QStringList{QStringLiteral("cap_30_04")});

    m_editor->undo();
    QCOMPARE(m_editor->flatten(true, false).size(), QSize(200, 140));
    QCOMPARE(m_view->sceneRect(), QRectF(0, 0, 200, 140));
    QVERIFY(!m_editor->canUndo());
    m_editor->redo();
    QCOMPARE(m_editor->flatten(true, false).size(), QSize(50, 40));
    QCOMPARE(m_view->sceneRect(), QRectF(20, 30, 50, 40));
}

void Tst_Editor::cropCancelledByAnotherTool() {
    m_editor->applyCrop(QRect(10, 10, 100, 80));
    m_editor->setShape(Editor::Pen);
    drag({{20, 20}, {60, 20}});
    m_editor->undo();
    openCrop();
    QVERIFY(m_editor->canUndo());
    m_editor->setShape(Editor::Highlighter);
    QVERIFY(m_editor->log.contains(QStringLiteral("crop finish 0")));
    QCOMPARE(m_editor->cropRect(), QRect(10, 10, 100, 80));
    QVERIFY(!m_editor->canUndo());
    QVERIFY(m_editor->canRedo());
    QVERIFY(m_editor->items().isEmpty());
    QCOMPARE(m_editor->shapeType(), Editor::Highlighter);
    QVERIFY(!m_usage.contains(QStringLiteral("cap_30_04")));
}

void Tst_Editor::cropGoesBackToThePreviousTool() {
    m_editor->setShape(Editor::Highlighter);
    openCrop();
    m_editor->crop->frame = QRect(0, 0, 60, 60);
    m_editor->finishCurrentItem(true);
    QCOMPARE(m_editor->shapeType(), Editor::Highlighter);
    openCrop();
    m_editor->finishCurrentItem(false);
    QCOMPARE(m_editor->shapeType(), Editor::Highlighter);
    QCOMPARE(m_editor->cropRect(), QRect(0, 0, 60, 60));
    // Choosing crop while it is open starts anew and still remembers the tool before.
    openCrop();
    m_editor->setShape(Editor::Crop);
    QCOMPARE(m_editor->shapeType(), Editor::Crop);
    m_editor->startCrop();
    m_editor->finishCurrentItem(false);
    QCOMPARE(m_editor->shapeType(), Editor::Highlighter);
    // Nor is crop remembered when it was chosen and not started.
    m_editor->setShape(Editor::Crop);
    openCrop();
    m_editor->finishCurrentItem(false);
    QCOMPARE(m_editor->shapeType(), Editor::Highlighter);
}

void Tst_Editor::startCropNeedsTheCropTool() {
    m_editor->setShape(Editor::Pen);
    m_editor->startCrop();
    QVERIFY(!m_editor->crop);
    QVERIFY(m_editor->cropRect().isNull());
}

void Tst_Editor::cropTakenBackWhileOpenCanBeCancelled() {
    m_editor->setShape(Editor::Pen);
    drag({{10, 10}, {60, 10}});
    openCrop();
    const QPointer<FakeCrop> crop = m_editor->crop;
    m_editor->reset();
    m_editor->finishCurrentItem(false);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!crop);
    QCOMPARE(m_editor->shapeType(), Editor::Pen);
    // The stroke is the only step left, and comes back.
    m_editor->redo();
    QCOMPARE(m_editor->items().size(), 1);
    QVERIFY(!m_editor->canRedo());
    m_editor->undo();
    drag({{10, 30}, {60, 30}});
    m_editor->redo();
    QCOMPARE(m_editor->items().size(), 1);
}

void Tst_Editor::closingSaysSoBeforeTheToolChanges() {
    QStringList order;
    const auto note = [&order](const char *what) { order.append(QString::fromLatin1(what)); };
    connect(m_editor.get(), &Editor::finishTextItem, this, [&] { note("text finished"); });
    connect(m_editor.get(), &Editor::finishCropItem, this, [&] { note("crop finished"); });
    connect(m_editor.get(), &Editor::changedShape, this, [&] { note("tool"); });
    connect(m_editor.get(), &Editor::updateImageSize, this, [&] { note("size"); });
    connect(m_editor.get(), &Editor::changeSceneRect, this, [&] { note("rectangle"); });
    connect(m_editor.get(), &Editor::changed, this, [&](const QList<QRectF> &areas) {
        // Only onCrop tells at once; what the scene itself tells comes with a later turn of the loop.
        if (areas == QList<QRectF>{QRectF(20, 30, 50, 40)})
            note("changed");
    });
    m_editor->setShape(Editor::Text);
    click(30, 30);
    order.clear();
    m_editor->text->close(true, false);
    const QStringList closed{QStringLiteral("text finished"), QStringLiteral("tool")};
    QCOMPARE(order, closed);

    openCrop();
    order.clear();
    m_editor->crop->frame = QRect(20, 30, 50, 40);
    m_editor->finishCurrentItem(true);
    const QStringList cropped{QStringLiteral("size"), QStringLiteral("rectangle"), QStringLiteral("changed"),
                              QStringLiteral("crop finished"), QStringLiteral("tool")};
    QCOMPARE(order, cropped);
}

void Tst_Editor::editorThatDiesClosesWhatIsOpen_data() {
    QTest::addColumn<bool>("text");
    QTest::newRow("text") << true;
    QTest::newRow("crop") << false;
}

void Tst_Editor::editorThatDiesClosesWhatIsOpen() {
    QFETCH(bool, text);
    int closed = 0;
    std::function<bool()> isThere;
    const auto note = [&] {
        ++closed;
        // The item is still there, for a popup to let go of.
        QVERIFY(isThere());
    };
    connect(m_editor.get(), &Editor::finishTextItem, this, note);
    connect(m_editor.get(), &Editor::finishCropItem, this, note);
    if (text) {
        m_editor->setShape(Editor::Text);
        click(30, 30);
    } else {
        openCrop();
    }
    // Asked through the items: the members of the test's editor go before its base class ends.
    isThere = [text, openText = m_editor->text, crop = m_editor->crop] {
        return text ? openText->clip.isValid() : !crop->isDrawn();
    };
    const ItemLog log = m_editor->sharedLog;
    delete m_editor.get();
    m_editor.release();
    QCOMPARE(closed, 1);
    QVERIFY(log->contains(text ? QStringLiteral("text finish 0") : QStringLiteral("crop finish 0")));
}

void Tst_Editor::pressOutsideAnOpenTextOnlyClosesIt() {
    QSignalSpy created(m_editor.get(), &Editor::createTextItem);
    m_editor->setShape(Editor::Text);
    click(30, 30);
    m_editor->text->grabMouse();
    click(40, 40); // inside
    QCOMPARE(m_editor->shapeType(), Editor::TextEditing);
    click(120, 100);
    QCOMPARE(m_editor->shapeType(), Editor::Text);
    QCOMPARE(created.count(), 1);
    QVERIFY(m_editor->canUndo());
    QCOMPARE(m_editor->items().size(), 1);
    click(120, 100);
    QCOMPARE(created.count(), 2);
    QCOMPARE(m_editor->shapeType(), Editor::TextEditing);
}

void Tst_Editor::swapInTheMiddleOfADragKeepsTheStroke_data() {
    QTest::addColumn<int>("shape");
    QTest::newRow("pen") << int(Editor::Pen);
    QTest::newRow("highlighter") << int(Editor::Highlighter);
    QTest::newRow("figure") << int(Editor::Rectangle);
}

void Tst_Editor::swapInTheMiddleOfADragKeepsTheStroke() {
    QFETCH(int, shape);
    TindraPreferences::instance()->SetInt(TindraPreferences::LastDrawingItem, shape);
    m_editor->setShape(static_cast<Editor::ShapeType>(shape));
    m_mouse->press(at(20, 20));
    m_mouse->move(at(60, 40));
    m_mouse->move(at(90, 50));
    TestEditor arrived;
    capture::load(arrived, QStringLiteral("arrived"), m_picture);
    m_view->setEditor(&arrived);
    QVERIFY(m_editor->canUndo());
    QVERIFY(!m_editor->currentItem());
    QCOMPARE(m_editor->items().size(), 1);
    QCOMPARE(m_usage.size(), 1);
    if (shape == Editor::Rectangle)
        QCOMPARE(m_editor->log.last(), QStringLiteral("end 90,50 90,50"));
    // The rest of the drag is nobody's.
    m_mouse->move(at(120, 60));
    m_mouse->release(at(120, 60));
    QVERIFY(arrived.items().isEmpty());
    const QImage drawn = m_editor->flatten(true, false).toImage();

    m_view->setEditor(m_editor.get());
    m_mouse->move(at(150, 100));
    m_mouse->release(at(150, 100), Qt::RightButton);
    QCOMPARE(m_editor->items().size(), 1);
    COMPARE_IMAGES(m_editor->flatten(true, false).toImage(), drawn, "after the swaps");
    m_editor->undo();
    QVERIFY(m_editor->items().isEmpty());
    QVERIFY(!m_editor->canUndo());
}

void Tst_Editor::swapKeepsTheShiftOfTheLastMove() {
    m_editor->setShape(Editor::Rectangle);
    m_mouse->press(at(20, 20));
    m_mouse->move(at(60, 40), Qt::ShiftModifier);
    m_view->setEditor(nullptr);
    QCOMPARE(m_editor->log.last(), QStringLiteral("end 60,40 60,40 shift"));
    m_view->setEditor(m_editor.get());
    m_editor->setShape(Editor::Rectangle);
    m_mouse->press(at(20, 20));
    m_mouse->move(at(60, 40), Qt::ShiftModifier);
    m_mouse->move(at(61, 41));
    m_view->setEditor(nullptr);
    QCOMPARE(m_editor->log.last(), QStringLiteral("end 61,41 61,41"));
}

void Tst_Editor::swapAfterAPressLeavesNothing() {
    m_editor->setShape(Editor::Rectangle);
    m_mouse->press(at(20, 20));
    m_view->setEditor(nullptr);
    QVERIFY(m_editor->items().isEmpty());
    QVERIFY(!m_editor->canUndo());
    QVERIFY(!m_editor->currentItem());
}

void Tst_Editor::swapThrowsAnOpenTextAway() {
    m_editor->setShape(Editor::Text);
    m_mouse->press(at(30, 30));
    m_view->setEditor(nullptr);
    QVERIFY(!m_editor->currentItem());
    QVERIFY(m_editor->items().isEmpty());
    QVERIFY(!m_editor->canUndo());
    QVERIFY(!m_editor->log.contains(QStringLiteral("text end")));
    QCOMPARE(m_editor->log.last(), QStringLiteral("text finish 0"));
}

void Tst_Editor::pressesBelongToTheOpenCrop() {
    openCrop();
    FakeCrop *crop = m_editor->crop;
    drag({{10, 10}, {50, 50}});
    QCOMPARE(m_editor->crop, crop);
    QCOMPARE(m_editor->items().size(), 1);
    QCOMPARE(m_editor->shapeType(), Editor::Crop);
}

void Tst_Editor::finishCurrentItemActsOnOpenItemsOnly() {
    m_editor->setShape(Editor::Rectangle);
    m_mouse->press(at(10, 10));
    m_editor->finishCurrentItem(true);
    QVERIFY(m_editor->currentItem());
    m_mouse->move(at(30, 30));
    m_mouse->release(at(30, 30));
    QVERIFY(m_editor->canUndo());
    m_editor->setShape(Editor::Text);
    m_editor->finishCurrentItem(true); // nothing is open yet
    QCOMPARE(m_editor->shapeType(), Editor::Text);
    click(60, 60);
    m_editor->finishCurrentItem(true);
    QVERIFY(m_editor->log.contains(QStringLiteral("text finish 1")));
    QCOMPARE(m_editor->items().size(), 2);
}

void Tst_Editor::cropWidensTheClipWhileItIsOpen() {
    m_editor->setShape(Editor::Rectangle);
    drag({{10, 10}, {150, 100}});
    m_editor->applyCrop(QRect(20, 20, 50, 50));
    QCOMPARE(m_editor->figure->clip(), QRectF(20, 20, 50, 50));
    openCrop();
    QCOMPARE(m_editor->figure->clip(), QRectF(0, 0, 200, 140));
    m_editor->finishCurrentItem(false);
    QCOMPARE(m_editor->figure->clip(), QRectF(20, 20, 50, 50));
}

void Tst_Editor::savedPathRules() {
    QSignalSpy spy(m_editor.get(), &Editor::imageSaved);
    QVERIFY(!m_editor->isSaved());
    m_editor->setSavedPath(QStringLiteral("/a.png"));
    QVERIFY(m_editor->isSaved());
    m_editor->setShape(Editor::Pen);
    drag({{10, 10}, {40, 40}});
    QVERIFY(!m_editor->isSaved());
    drag({{10, 20}, {40, 50}}); // tells it once
    const QList<QList<QVariant>> expected{{true}, {false}};
    QCOMPARE(QList<QList<QVariant>>(spy), expected);
    m_editor->setSavedPath(QStringLiteral("/b.png"));
    m_editor->undo();
    m_editor->redo();
    m_editor->reset();
    QCOMPARE(m_editor->savedPath(), QStringLiteral("/b.png"));
    openCrop(); // an item as well
    QVERIFY(!m_editor->isSaved());
    m_editor->setSavedPath(QStringLiteral("/c.png"));
    spy.clear();
    m_editor->setSavedPath(QString());
    QVERIFY(!m_editor->isSaved());
    QCOMPARE(QList<QList<QVariant>>(spy), QList<QList<QVariant>>{{false}});
}

void Tst_Editor::flattenSizes_data() {
    QTest::addColumn<QRect>("crop");
    QTest::addColumn<bool>("ignoreCrop");
    QTest::addColumn<QRect>("expected");
    const QRect whole(QPoint(0, 0), ImageSize);
    QTest::newRow("no crop") << QRect() << false << whole;
    QTest::newRow("crop") << QRect(13, 17, 61, 53) << false << QRect(13, 17, 61, 53);
    QTest::newRow("crop ignored") << QRect(13, 17, 61, 53) << true << whole;
    QTest::newRow("crop of everything") << whole << false << whole;
}

void Tst_Editor::flattenSizes() {
    QFETCH(QRect, crop);
    QFETCH(bool, ignoreCrop);
    QFETCH(QRect, expected);
    if (!crop.isNull())
        m_editor->applyCrop(crop);
    m_view->onZoomOut(); // the view's scale has no say
    COMPARE_IMAGES(m_editor->flatten(false, ignoreCrop).toImage(), m_picture.copy(expected), "plain");
    COMPARE_IMAGES(m_editor->flatten(true, ignoreCrop).toImage(), m_picture.copy(expected), "items");
    QCOMPARE(m_editor->sceneRect(), QRectF(0, 0, 200, 140));
}

void Tst_Editor::flattenDrawsItemsAtOneUnitPerPixel() {
    m_view->onZoomIn();
    m_view->onZoomOut();
    m_editor->setShape(Editor::Rectangle);
    drag({{20, 30}, {70, 90}});
    QImage expected = m_picture;
    QPainter(&expected).fillRect(QRect(20, 30, 50, 60), Qt::green);
    COMPARE_IMAGES(m_editor->flatten(true, false).toImage(), expected, "drawn");
    COMPARE_IMAGES(m_editor->flatten(false, false).toImage(), m_picture, "not drawn");
    // What was handed out is a copy: the capture itself stays as it came.
    COMPARE_IMAGES(ImageProvider::instance()->pixmap(QStringLiteral("capture")).toImage(), m_picture,
                   "source");
}

void Tst_Editor::flattenCutsItemsAtTheCrop() {
    m_editor->setShape(Editor::Rectangle);
    drag({{20, 30}, {70, 90}});
    QImage drawn = m_picture;
    QPainter(&drawn).fillRect(QRect(20, 30, 50, 60), Qt::green);
    const QRect crop(50, 60, 100, 70);
    m_editor->applyCrop(crop);
    COMPARE_IMAGES(m_editor->flatten(true, false).toImage(), drawn.copy(crop), "cut");
    // Without the crop's size the items still end at its border.
    QImage clipped = m_picture;
    QPainter(&clipped).fillRect(QRect(20, 30, 50, 60) & crop, Qt::green);
    COMPARE_IMAGES(m_editor->flatten(true, true).toImage(), clipped, "whole");
    m_editor->applyCrop(QRect(0, 0, 200, 140));
    COMPARE_IMAGES(m_editor->flatten(true, false).toImage(), drawn, "uncut");
}

void Tst_Editor::flattenSkipsTheCropItem() {
    openCrop();
    m_editor->crop->frame = QRect(0, 0, 100, 100);
    m_editor->finishCurrentItem(true);
    m_editor->flatten(true, false);
    QCOMPARE(m_editor->crop->paints, 0);
}

void Tst_Editor::missingImageGivesNull() {
    m_editor->setImageKey(QStringLiteral("gone"));
    QVERIFY(m_editor->flatten(true, false).isNull());
    QCOMPARE(m_editor->visibleRect(), QRect());
    m_editor->applyCrop(QRect(0, 0, 10, 10));
    QCOMPARE(m_editor->visibleRect(), QRect());
    QVERIFY(!m_editor->imageExists());
    QTemporaryDir folder;
    QVERIFY(!m_editor->saveFlattened(folder.filePath(QStringLiteral("a.png")), true, -1));
    QVERIFY(!m_editor->savePinImage(folder.filePath(QStringLiteral("b.png"))));
    m_editor->setShape(Editor::Rectangle);
    drag({{10, 10}, {30, 30}});
    QVERIFY(m_editor->canUndo());
    QVERIFY(m_editor->figure->boundingRect().isEmpty());
}

void Tst_Editor::usageCodeOfTool_data() {
    QTest::addColumn<int>("shape");
    QTest::addColumn<int>("lineStyle");
    QTest::addColumn<QString>("code");
    const auto row = [](const char *name, Editor::ShapeType shape, const char *solid, const char *dotted) {
        QTest::addRow("%s", name) << int(shape) << 1 << QString::fromLatin1(solid);
        QTest::addRow("%s, dashed", name) << int(shape) << 2 << QString::fromLatin1(solid);
        QTest::addRow("%s, dotted", name) << int(shape) << 3 << QString::fromLatin1(dotted);
    };
    row("pen", Editor::Pen, "cap_303_11", "cap_303_11");
    row("highlighter", Editor::Highlighter, "cap_30_13", "cap_30_13");
    row("line", Editor::Line, "cap_303_07", "cap_303_08");
    row("arrow", Editor::Arrow, "cap_303_09", "cap_303_10");
    row("rectangle", Editor::Rectangle, "cap_303_01", "cap_303_02");
    row("circle", Editor::Circle, "cap_303_03", "cap_303_04");
    row("balloon", Editor::SpeechBalloon, "cap_303_05", "cap_303_06");
    row("mosaic", Editor::Mosaic, "cap_30_05", "cap_30_05");
}

void Tst_Editor::usageCodeOfTool() {
    QFETCH(int, shape);
    QFETCH(int, lineStyle);
    QFETCH(QString, code);
    TindraPreferences::instance()->SetInt(TindraPreferences::FigureLineType, lineStyle);
    m_editor->setShape(static_cast<Editor::ShapeType>(shape));
    drag({{10, 10}, {40, 40}});
    drag({{20, 10}, {50, 40}});
    QCOMPARE(m_usage, QStringList{code});
}

void Tst_Editor::usageIsReportedOncePerToolAndLineStyle() {
    auto &preferences = *TindraPreferences::instance();
    const auto use = [this](Editor::ShapeType shape) {
        m_editor->setShape(shape);
        drag({{10, 10}, {40, 40}});
    };
    use(Editor::Pen);
    use(Editor::Pen);
    use(Editor::Highlighter);
    preferences.SetInt(TindraPreferences::FigureLineType, 1);
    use(Editor::Rectangle);
    use(Editor::Rectangle);
    preferences.SetInt(TindraPreferences::FigureLineType, 3);
    use(Editor::Rectangle);
    use(Editor::Pen); // no line style of its own
    const QStringList expected{QStringLiteral("cap_303_11"), QStringLiteral("cap_30_13"),
                               QStringLiteral("cap_303_01"), QStringLiteral("cap_303_02")};
    QCOMPARE(m_usage, expected);
}

void Tst_Editor::textUsageIsReportedAfterTheClosingClick() {
    m_editor->setShape(Editor::Text);
    click(30, 30);
    m_editor->text->close(true, false);
    QVERIFY(m_usage.isEmpty());
    click(100, 100); // the click that only returns to the text tool
    QCOMPARE(m_usage, QStringList{QStringLiteral("cap_30_12")});
}

void Tst_Editor::toolPickedAfterATextIsNotInUseYet() {
    m_editor->setShape(Editor::Text);
    click(30, 30);
    m_editor->text->close(true, false);
    m_editor->setShape(Editor::Pen);
    m_mouse->move(at(100, 100));
    QVERIFY(m_usage.isEmpty());
    drag({{10, 10}, {40, 40}});
    QCOMPARE(m_usage, QStringList{QStringLiteral("cap_303_11")});
}

void Tst_Editor::saveWritesWhatIsSeen() {
    QTemporaryDir folder;
    m_editor->setShape(Editor::Rectangle);
    drag({{20, 30}, {70, 90}});
    m_editor->applyCrop(QRect(10, 10, 100, 100));
    QSignalSpy spy(m_editor.get(), &Editor::imageSaved);
    const QString path = folder.filePath(QStringLiteral("shot.png"));
    QVERIFY(m_editor->saveFlattened(path, true, -1));
    QCOMPARE(m_editor->savedPath(), path);
    QCOMPARE(spy.count(), 1);
    QImage expected = m_picture;
    QPainter(&expected).fillRect(QRect(20, 30, 50, 60), Qt::green);
    COMPARE_IMAGES(QImage(path), expected.copy(10, 10, 100, 100), "saved");
}

void Tst_Editor::saveWithoutMarkLeavesTheCaptureUnsaved() {
    QTemporaryDir folder;
    QVERIFY(m_editor->saveFlattened(folder.filePath(QStringLiteral("a.png")), false, -1));
    QVERIFY(!m_editor->isSaved());
}

void Tst_Editor::failedSaveKeepsSavedPath() {
    m_editor->setSavedPath(QStringLiteral("/a.png"));
    QVERIFY(!m_editor->saveFlattened(QStringLiteral("/nowhere/at/all/b.png"), true, -1));
    QCOMPARE(m_editor->savedPath(), QStringLiteral("/a.png"));
    QVERIFY(!QGuiApplication::overrideCursor());
}

void Tst_Editor::saveShowsTheWaitCursorAndKeepsEventsGoing() {
    QTemporaryDir folder;
    int shape = -1;
    QTimer::singleShot(0, this, [&] {
        if (const QCursor *cursor = QGuiApplication::overrideCursor())
            shape = cursor->shape();
    });
    QVERIFY(m_editor->saveFlattened(folder.filePath(QStringLiteral("a.png")), true, -1));
    QCOMPARE(shape, int(Qt::WaitCursor));
    QVERIFY(!QGuiApplication::overrideCursor());
}

void Tst_Editor::editorMayDieDuringASave() {
    QTemporaryDir folder;
    QPointer<Editor> dying = new Editor;
    QTimer::singleShot(0, this, [&] { delete dying; });
    const QString path = folder.filePath(QStringLiteral("a.png"));
    QVERIFY(dying->savePixmap(QPixmap::fromImage(m_picture), path, true, -1));
    QVERIFY(!dying);
    COMPARE_IMAGES(QImage(path), m_picture, "saved");
}

void Tst_Editor::saveKeepsWhatIsBeingTyped() {
    QTemporaryDir folder;
    m_editor->setShape(Editor::Text);
    click(30, 40);
    const QString path = folder.filePath(QStringLiteral("a.png"));
    QVERIFY(m_editor->saveFlattened(path, true, -1));
    QVERIFY(m_editor->log.contains(QStringLiteral("text finish 1")));
    QCOMPARE(QImage(path).pixelColor(50, 50), QColor(Qt::gray));
}

void Tst_Editor::pinImageIsUntouched() {
    QTemporaryDir folder;
    m_editor->setShape(Editor::Rectangle);
    drag({{20, 30}, {70, 90}});
    m_editor->applyCrop(QRect(10, 10, 100, 100));
    const QString path = folder.filePath(QStringLiteral("pin.png"));
    QVERIFY(m_editor->savePinImage(path));
    COMPARE_IMAGES(QImage(path), m_picture, "pin");
    QVERIFY(!m_editor->isSaved());
}

void Tst_Editor::pinningKeepsWhatIsOpen_data() {
    QTest::addColumn<bool>("text");
    QTest::newRow("text") << true;
    QTest::newRow("crop") << false;
}

void Tst_Editor::pinningKeepsWhatIsOpen() {
    QFETCH(bool, text);
    QTemporaryDir folder;
    if (text) {
        m_editor->setShape(Editor::Text);
        click(30, 40);
    } else {
        openCrop();
        m_editor->crop->frame = QRect(10, 20, 60, 50);
    }
    const QString path = folder.filePath(QStringLiteral("pin.png"));
    QVERIFY(m_editor->savePinImage(path));
    COMPARE_IMAGES(QImage(path), m_picture, "pin");
    QVERIFY(m_editor->canUndo());
    QVERIFY(!m_editor->currentItem());
    QCOMPARE(m_editor->cropRect(), text ? QRect() : QRect(10, 20, 60, 50));
}

void Tst_Editor::copyPutsWhatIsSeenOnTheClipboard() {
    m_editor->setShape(Editor::Rectangle);
    drag({{20, 30}, {70, 90}});
    m_editor->applyCrop(QRect(10, 10, 100, 100));
    QVERIFY(!m_editor->copyToClipboard(nullptr));
    QVERIFY(m_editor->copyToClipboard(m_view.get()));
    QImage expected = m_picture;
    QPainter(&expected).fillRect(QRect(20, 30, 50, 60), Qt::green);
    COMPARE_IMAGES(m_platform->clipboard, expected.copy(10, 10, 100, 100), "clipboard");
}

void Tst_Editor::imageFileBelongsToTheEditor() {
    QTemporaryDir folder;
    const QString first = folder.filePath(QStringLiteral("1.png")),
                  second = folder.filePath(QStringLiteral("2.png"));
    QVERIFY(m_picture.save(first) && m_picture.save(second));
    {
        Editor editor;
        editor.setImageKey(first);
        QVERIFY(editor.imageExists());
        QCOMPARE(editor.imageRect(), QRect(0, 0, 200, 140));
        editor.setImageKey(first);
        QVERIFY(QFile::exists(first));
        editor.setImageKey(second);
        QVERIFY(!QFile::exists(first));
        QVERIFY(QFile::exists(second));
    }
    QVERIFY(!QFile::exists(second));
}

QTEST_MAIN(Tst_Editor)
#include "tst_editor.moc"
