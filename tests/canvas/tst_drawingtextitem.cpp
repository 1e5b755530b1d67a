#include "canvas/capturefixture.h"
#include "canvas/editorview.h"
#include "canvas/items/drawingtextitem.h"
#include "popups/textpopup.h"
#include "preferences/tindrapreferences.h"
#include "support/imagecompare.h"

#include <QClipboard>
#include <QGraphicsSceneMouseEvent>
#include <QMimeData>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>
#include <QtTest>

#include <cmath>

namespace {

constexpr double MinimumWidth = 150;
constexpr int Border = 6;
const QString LongLine = QStringLiteral("A line that is much wider than the box was when it was opened");
const QString Syllable = QStringLiteral("\uac00"); // "가"

const QColor Ink(255, 0, 0);

/// The messages of the toolkit, which complains about wrong calls.
QStringList complaints;

void noteComplaint(QtMsgType type, const QMessageLogContext &, const QString &message) {
    // The platform without a screen knows no stacking of windows.
    if (type == QtWarningMsg && !message.startsWith(QLatin1String("This plugin does not support")))
        complaints.append(message);
}

} // namespace

Q_DECLARE_METATYPE(std::function<void()>)

/// The text over a capture, with the events of a mouse, a keyboard and an input method.
class Tst_DrawingTextItem : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { qRegisterMetaType<DrawingTextItem *>(); }
    void init();
    void cleanup();

    void boxOpensCentredOnTheClick();
    void textBeginsWithTheStoredSettings();
    void storedSizeThatIsNoneGivesAUsableText();
    void openTextIsNoStep();
    void undoAndRedoAreNotOffered_data();
    void undoAndRedoAreNotOffered();
    void pressMarksTheCaptureUnsaved();

    void boxFollowsTheLongestLine();
    void widthRuleRunsAfter_data();
    void widthRuleRunsAfter();
    void returnMakesALine();
    void droppedTextWidensTheBox();

    void composedSyllables();
    void onlyComposingKeepsTheBoxInSight_data();
    void onlyComposingKeepsTheBoxInSight();
    void inputMethodLearnsTheCursorInViewCoordinates_data();
    void inputMethodLearnsTheCursorInViewCoordinates();
    void inputMethodIsOnlyForTheOpenText();
    void syllableInTheMakingIsKept_data();
    void syllableInTheMakingIsKept();
    void syllableInTheMakingIsThrownAwayWithTheText();

    void cursorOverTheBox_data();
    void cursorOverTheBox();
    void borderMovesTheBox();
    void borderMovesTheBoxSoonAfterTheClickThatOpenedIt();
    void insideOfTheBoxSelects();

    void changeOfFont_data();
    void changeOfFont();
    void changeOfFontIsForTheWholeText();
    void pastedTextTakesTheSettings();
    void changeOfFontGivesTheKeyboardBack();

    void clickElsewhereKeepsTheText_data();
    void clickElsewhereKeepsTheText();
    void clickElsewhereLeavesNothingOfAnEmptyText();
    void cancelThrowsTheTextAway();
    void commitKeepsTheText();
    void commitOfAnEmptyTextLeavesNothing();
    void otherToolThrowsTheTextAway();
    void blankTextIsKept();
    void closesOnceHoweverItIsClosed_data();
    void closesOnceHoweverItIsClosed();
    void closingIsNotBegunAnewByWhatItCauses_data();
    void closingIsNotBegunAnewByWhatItCauses();
    void closedTextIsInert();
    void textEmptiesTheRedoList();
    void undoAndRedoMoveTheSameText();
    void eraserTakesTheWholeText();

    void focusThatComesBackLeavesTheTextAlone_data();
    void focusThatComesBackLeavesTheTextAlone();

    void openTextHasPlateAndFrame();
    void frameOfAnOpenTextHasFourLines();
    void closedTextIsNothingButText();
    void viewShowsWhatFlattenGives();
    void cropCutsTheClosedText();
    void textOutsideTheCropIsGone();
    void openTextIsNotCut();
    void editorMayDieWithAnOpenText();

private:
    void show(const QSize &size);
    DrawingTextItem *open(const QPoint &pos);
    /// Of the open text, or the last closed one.
    DrawingTextItem *text() const;
    void type(const QString &typed);
    /// As another program does, into the middle of the open text.
    void drop(const QString &dropped);
    void compose(const QString &composed, const QString &finished = QString());
    void click(const QPoint &scenePos, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
               Qt::MouseButton button = Qt::LeftButton);
    void crop(const QRect &rect) {
        QVERIFY(QMetaObject::invokeMethod(m_editor.get(), "onCrop", Q_ARG(QRect, rect)));
    }
    QPoint inView(const QPointF &scenePos) const { return m_view->mapFromScene(scenePos); }
    QImage shown() const {
        return m_view->viewport()->grab().toImage().convertToFormat(QImage::Format_RGB32);
    }
    QImage flattened(bool ignoreCrop) const {
        return m_editor->flatten(true, ignoreCrop).toImage().convertToFormat(QImage::Format_RGB32);
    }

    std::unique_ptr<Editor> m_editor;
    std::unique_ptr<EditorView> m_view;
    std::unique_ptr<capture::Mouse> m_mouse;
};

void Tst_DrawingTextItem::init() {
    capture::resetWorld();
    QApplication::setCursorFlashTime(0);
    complaints.clear();
    TindraPreferences::instance()->SetInt(TindraPreferences::LastDrawingItem, Editor::Text);
    show(QSize(400, 300));
}

void Tst_DrawingTextItem::cleanup() {
    m_mouse.reset();
    m_view.reset();
    m_editor.reset();
}

void Tst_DrawingTextItem::show(const QSize &size) {
    m_mouse.reset();
    m_view.reset();
    m_editor = std::make_unique<Editor>();
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(Qt::black);
    capture::load(*m_editor, QStringLiteral("capture"), picture);
    m_view = std::make_unique<EditorView>();
    m_view->setFrameShape(QFrame::NoFrame);
    m_view->resize(400, 300);
    m_view->show();
    m_view->setEditor(m_editor.get());
    m_view->activateWindow();
    m_view->setFocus();
    QVERIFY(QTest::qWaitForWindowActive(m_view.get()));
    m_mouse = std::make_unique<capture::Mouse>(m_view->viewport());
}

DrawingTextItem *Tst_DrawingTextItem::text() const {
    for (QGraphicsItem *item : m_editor->items()) {
        if (auto *found = dynamic_cast<DrawingTextItem *>(item))
            return found;
    }
    return nullptr;
}

DrawingTextItem *Tst_DrawingTextItem::open(const QPoint &pos) {
    click(pos);
    return m_editor->shapeType() == Editor::TextEditing ? text() : nullptr;
}

void Tst_DrawingTextItem::click(const QPoint &scenePos, Qt::KeyboardModifiers modifiers,
                                Qt::MouseButton button) {
    m_mouse->press(inView(scenePos), button, modifiers);
    m_mouse->release(inView(scenePos), button, modifiers);
}

void Tst_DrawingTextItem::type(const QString &typed) {
    for (const QChar character : typed) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(character));
        QCoreApplication::sendEvent(m_view.get(), &press);
    }
}

void Tst_DrawingTextItem::drop(const QString &dropped) {
    const QPoint pos = inView(text()->sceneBoundingRect().center());
    QMimeData data;
    data.setText(dropped);
    QDragEnterEvent enter(pos, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(m_view->viewport(), &enter);
    QDragMoveEvent over(pos, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(m_view->viewport(), &over);
    QVERIFY(over.isAccepted());
    QDropEvent release(pos, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(m_view->viewport(), &release);
}

void Tst_DrawingTextItem::compose(const QString &composed, const QString &finished) {
    QInputMethodEvent event(composed, {});
    event.setCommitString(finished);
    QCoreApplication::sendEvent(m_view.get(), &event);
}

void Tst_DrawingTextItem::boxOpensCentredOnTheClick() {
    DrawingTextItem *item = open({60, 70});
    QVERIFY(item);
    const QRectF box = item->sceneBoundingRect();
    QCOMPARE(box.left(), 60.0);
    QCOMPARE(box.center().y(), 70.0);
    QCOMPARE(box.width(), MinimumWidth);
    QCOMPARE(item->document()->documentMargin(), 6.0);
    // One line of the stored size, between two margins.
    QVERIFY(qAbs(box.height() - (QFontMetricsF(item->font()).lineSpacing() + 12)) <= 2);
    QVERIFY(item->isSelected());
    QVERIFY(item->hasFocus());
    QCOMPARE(item->textInteractionFlags(), Qt::TextEditorInteraction);
    QVERIFY(item->flags() & QGraphicsItem::ItemIsMovable);
    QVERIFY(item->flags() & QGraphicsItem::ItemIsSelectable);
    QVERIFY(item->flags() & QGraphicsItem::ItemSendsGeometryChanges);
    QVERIFY(item->acceptDrops());
}

void Tst_DrawingTextItem::textBeginsWithTheStoredSettings() {
    auto &preferences = *TindraPreferences::instance();
    preferences.SetInt(TindraPreferences::TextSize, 30);
    preferences.SetInt(TindraPreferences::TextStyle, TextPopup::Bold | TextPopup::Underline);
    preferences.SetInt(TindraPreferences::TextColor, TindraPreferences::colorToInt(QColor(1, 2, 3, 4)));
    const DrawingTextItem *item = open({60, 70});
    QCOMPARE(item->font().family(), QStringLiteral("Malgun Gothic"));
    QCOMPARE(item->font().pointSize(), 30);
    QCOMPARE(item->font().weight(), 75);
    QCOMPARE(item->font().style(), QFont::StyleNormal);
    QVERIFY(item->font().underline());
    QCOMPARE(item->defaultTextColor(), QColor(1, 2, 3, 4));
    QCOMPARE(item->sceneBoundingRect().center().y(), 70.0);
}

void Tst_DrawingTextItem::storedSizeThatIsNoneGivesAUsableText() {
    // What a size that is no number leaves behind.
    TindraPreferences::instance()->SetInt(TindraPreferences::TextSize, 0);
    const QtMessageHandler before = qInstallMessageHandler(noteComplaint);
    const DrawingTextItem *item = open({60, 70});
    qInstallMessageHandler(before);
    QVERIFY(item->font().pointSize() > 0);
    QVERIFY(item->boundingRect().height() > 12);
    QCOMPARE(complaints, QStringList());
}

void Tst_DrawingTextItem::openTextIsNoStep() {
    QVERIFY(open({60, 70}));
    type(QStringLiteral("abc"));
    QVERIFY(!m_editor->canUndo());
    QCOMPARE(m_editor->shapeType(), Editor::TextEditing);
}

void Tst_DrawingTextItem::undoAndRedoAreNotOffered_data() {
    QTest::addColumn<std::function<void()>>("finish");
    QTest::addColumn<bool>("canRedo"); // afterwards
    QTest::newRow("kept") << std::function<void()>([this] { click({300, 250}); }) << false;
    QTest::newRow("thrown away") << std::function<void()>([this] { m_editor->finishCurrentItem(false); })
                                 << true;
}

void Tst_DrawingTextItem::undoAndRedoAreNotOffered() {
    QFETCH(std::function<void()>, finish);
    bool undo = false, redo = false;
    const QObject listener;
    connect(m_view.get(), &EditorView::canUndo, &listener, [&](bool can) { undo = can; });
    connect(m_view.get(), &EditorView::canRedo, &listener, [&](bool can) { redo = can; });
    m_editor->setShape(Editor::Pen);
    m_mouse->drag({{20, 20}, {40, 40}, {60, 30}});
    m_mouse->drag({{20, 220}, {40, 240}, {60, 230}});
    m_editor->undo();
    m_editor->setShape(Editor::Text);
    QCoreApplication::processEvents();
    QVERIFY(undo && redo);
    open({60, 70});
    QCoreApplication::processEvents();
    QVERIFY(!undo && !redo);
    type(QStringLiteral("abc"));
    QCoreApplication::processEvents();
    QVERIFY(!undo && !redo);
    finish();
    QCoreApplication::processEvents();
    QVERIFY(undo);
    QTEST(redo, "canRedo");
}

void Tst_DrawingTextItem::pressMarksTheCaptureUnsaved() {
    m_editor->setSavedPath(QStringLiteral("/somewhere.png"));
    m_mouse->press({60, 70});
    QVERIFY(!m_editor->isSaved());
}

void Tst_DrawingTextItem::boxFollowsTheLongestLine() {
    const DrawingTextItem *item = open({60, 70});
    type(QStringLiteral("ab"));
    QCOMPARE(item->boundingRect().width(), MinimumWidth);
    type(LongLine);
    const double needed = QFontMetricsF(item->font()).horizontalAdvance(QStringLiteral("ab") + LongLine);
    QVERIFY2(item->boundingRect().width() >= needed, qPrintable(QString::number(needed)));
    QVERIFY(item->boundingRect().width() < needed + 2 * 6 + 4);
    QCOMPARE(item->document()->firstBlock().layout()->lineCount(), 1);
    for (int i = 0; i < LongLine.size(); ++i) {
        QTest::keyClick(m_view.get(), Qt::Key_Backspace);
        QVERIFY(item->boundingRect().width() >= MinimumWidth);
    }
    QCOMPARE(item->boundingRect().width(), MinimumWidth);
    QCOMPARE(item->toPlainText(), QStringLiteral("ab"));
}

void Tst_DrawingTextItem::widthRuleRunsAfter_data() {
    QTest::addColumn<std::function<void()>>("event");
    QTest::newRow("key press") << std::function<void()>([this] { type(QStringLiteral("b")); });
    QTest::newRow("input method") << std::function<void()>([this] { compose(Syllable); });
    QTest::newRow("focus out") << std::function<void()>([this] { m_editor->setFocusItem(nullptr); });
    QTest::newRow("drop") << std::function<void()>([this] { drop(QStringLiteral("b")); });
    QTest::newRow("font") << std::function<void()>([this] { text()->onChangeFont(12, Qt::red, 0); });
}

void Tst_DrawingTextItem::widthRuleRunsAfter() {
    QFETCH(std::function<void()>, event);
    DrawingTextItem *item = open({60, 70});
    type(QStringLiteral("a"));
    item->setTextWidth(500);
    QCOMPARE(item->boundingRect().width(), 500.0);
    event();
    QCOMPARE(item->boundingRect().width(), MinimumWidth);
}

void Tst_DrawingTextItem::returnMakesALine() {
    const DrawingTextItem *item = open({60, 70});
    const double oneLine = item->boundingRect().height() - 12;
    type(QStringLiteral("a"));
    QTest::keyClick(m_view.get(), Qt::Key_Return);
    type(QStringLiteral("b"));
    QCOMPARE(item->toPlainText(), QStringLiteral("a\nb"));
    QVERIFY(qAbs(item->boundingRect().height() - 12 - 2 * oneLine) <= 1);
    QCOMPARE(m_editor->shapeType(), Editor::TextEditing);
}

void Tst_DrawingTextItem::droppedTextWidensTheBox() {
    const DrawingTextItem *item = open({60, 70});
    type(QStringLiteral("a"));
    drop(LongLine);
    QCOMPARE(item->toPlainText(), QStringLiteral("a") + LongLine);
    const double needed = QFontMetricsF(item->font()).horizontalAdvance(LongLine);
    QVERIFY2(item->boundingRect().width() >= needed, qPrintable(QString::number(needed)));
    QCOMPARE(item->document()->firstBlock().layout()->lineCount(), 1);
    QCOMPARE(m_editor->shapeType(), Editor::TextEditing);
}

void Tst_DrawingTextItem::composedSyllables() {
    const DrawingTextItem *item = open({60, 70});
    // "한" in three keys, "글" of which the first consonant finishes it.
    for (const QString &state :
         {QStringLiteral("\u314e"), QStringLiteral("\ud558"), QStringLiteral("\ud55c")}) {
        compose(state);
        QCOMPARE(item->toPlainText(), QString());
        QCOMPARE(item->document()->firstBlock().layout()->preeditAreaText(), state);
    }
    compose(QStringLiteral("\u3131"), QStringLiteral("\ud55c"));
    QCOMPARE(item->toPlainText(), QStringLiteral("\ud55c"));
    compose(QString(), QStringLiteral("\uae00"));
    QCOMPARE(item->toPlainText(), QStringLiteral("\ud55c\uae00"));
    QCOMPARE(item->document()->firstBlock().layout()->preeditAreaText(), QString());
    // What is being composed widens the box like what is typed.
    compose(Syllable.repeated(40));
    QVERIFY(item->boundingRect().width() >
            QFontMetricsF(item->font()).horizontalAdvance(Syllable.repeated(40)));
}

void Tst_DrawingTextItem::onlyComposingKeepsTheBoxInSight_data() {
    QTest::addColumn<QPoint>("pos");
    QTest::addColumn<bool>("left");
    QTest::newRow("near the left border") << QPoint(320, 350) << true;
    QTest::newRow("near the upper border") << QPoint(400, 235) << false;
}

void Tst_DrawingTextItem::onlyComposingKeepsTheBoxInSight() {
    QFETCH(QPoint, pos);
    QFETCH(bool, left);
    show(QSize(1500, 1200));
    m_view->horizontalScrollBar()->setValue(300);
    m_view->verticalScrollBar()->setValue(200);
    const DrawingTextItem *item = open(pos);
    type(QStringLiteral("a"));
    QCOMPARE(m_view->horizontalScrollBar()->value(), 300);
    QCOMPARE(m_view->verticalScrollBar()->value(), 200);
    const QPoint before = inView(item->scenePos());
    const auto fromBorder = [left](const QPoint &point) { return left ? point.x() : point.y(); };
    QVERIFY(fromBorder(before) < 40);
    compose(Syllable);
    // Fifty pixels from it, up to the rounding of the toolkit.
    const QPoint after = inView(item->scenePos());
    QVERIFY(qAbs(fromBorder(after) - 50) <= 1);
    QCOMPARE(left ? after.y() : after.x(), left ? before.y() : before.x());
}

void Tst_DrawingTextItem::inputMethodLearnsTheCursorInViewCoordinates_data() {
    QTest::addColumn<int>("zoomSteps");
    QTest::addColumn<double>("zoom");
    QTest::newRow("100 %") << 0 << 1.0;
    QTest::newRow("250 %") << 10 << 2.5;
    QTest::newRow("55 %") << -10 << 0.55;
}

void Tst_DrawingTextItem::inputMethodLearnsTheCursorInViewCoordinates() {
    QFETCH(int, zoomSteps);
    QFETCH(double, zoom);
    show(QSize(1500, 1200));
    for (int i = 0; i < qAbs(zoomSteps); ++i)
        zoomSteps > 0 ? m_view->onZoomIn() : m_view->onZoomOut();
    m_view->horizontalScrollBar()->setValue(200);
    m_view->verticalScrollBar()->setValue(100);
    const QPoint clicked(120, 90);
    const DrawingTextItem *item = open(m_view->mapToScene(clicked).toPoint());
    type(QStringLiteral("abc"));
    const double written = QFontMetricsF(item->font()).horizontalAdvance(QStringLiteral("abc"));
    const QRectF cursor = m_view->inputMethodQuery(Qt::ImCursorRectangle).toRectF();
    const double line = (item->boundingRect().height() - 12) * zoom;
    QVERIFY2(qAbs(cursor.center().x() - (clicked.x() + (6 + written) * zoom)) <= 1.5 * zoom + 1,
             qPrintable(QString::number(cursor.center().x())));
    QVERIFY2(qAbs(cursor.center().y() - clicked.y()) <= 2 * zoom + 1,
             qPrintable(QString::number(cursor.center().y())));
    QVERIFY2(qAbs(cursor.height() - line) <= 2 * zoom + 1, qPrintable(QString::number(cursor.height())));
    QCOMPARE(m_view->inputMethodQuery(Qt::ImSurroundingText).toString(), QStringLiteral("abc"));
    QCOMPARE(m_view->inputMethodQuery(Qt::ImCursorPosition).toInt(), 3);
    // The view scrolls, and the window of the input method has to know.
    QSignalSpy told(QGuiApplication::inputMethod(), &QInputMethod::cursorRectangleChanged);
    m_view->verticalScrollBar()->setValue(130);
    QVERIFY(told.count() > 0);
    QCOMPARE(m_view->inputMethodQuery(Qt::ImCursorRectangle).toRectF(), cursor.translated(0, -30));
}

void Tst_DrawingTextItem::inputMethodIsOnlyForTheOpenText() {
    QVERIFY(!m_view->testAttribute(Qt::WA_InputMethodEnabled));
    open({60, 70});
    QVERIFY(m_view->testAttribute(Qt::WA_InputMethodEnabled));
    type(QStringLiteral("a"));
    click({300, 250});
    QVERIFY(!m_view->testAttribute(Qt::WA_InputMethodEnabled));
}

void Tst_DrawingTextItem::syllableInTheMakingIsKept_data() {
    QTest::addColumn<std::function<void()>>("finish");
    QTest::newRow("click elsewhere") << std::function<void()>([this] { click({300, 250}); });
    QTest::newRow("commit") << std::function<void()>([this] { m_editor->finishCurrentItem(true); });
}

void Tst_DrawingTextItem::syllableInTheMakingIsKept() {
    QFETCH(std::function<void()>, finish);
    open({60, 70});
    type(QStringLiteral("a"));
    compose(Syllable);
    finish();
    QVERIFY(text());
    QCOMPARE(text()->toPlainText(), QStringLiteral("a") + Syllable);
    QCOMPARE(text()->document()->firstBlock().layout()->preeditAreaText(), QString());
    QVERIFY(m_editor->canUndo());
    // The only syllable, too.
    m_editor->setShape(Editor::Text);
    m_editor->undo();
    open({60, 70});
    compose(Syllable);
    finish();
    QCOMPARE(text()->toPlainText(), Syllable);
}

void Tst_DrawingTextItem::syllableInTheMakingIsThrownAwayWithTheText() {
    open({60, 70});
    compose(Syllable);
    m_editor->finishCurrentItem(false);
    QVERIFY(m_editor->items().isEmpty());
    QVERIFY(!m_editor->canUndo());
}

void Tst_DrawingTextItem::cursorOverTheBox_data() {
    QTest::addColumn<QPointF>("fraction"); // of the box
    QTest::addColumn<QPoint>("offset");
    QTest::addColumn<int>("cursor");
    const auto row = [](const char *name, QPointF fraction, QPoint offset, Qt::CursorShape cursor) {
        QTest::newRow(name) << fraction << offset << int(cursor);
    };
    row("left of it", {0, 0.5}, {-1, 0}, Qt::ArrowCursor);
    row("left edge", {0, 0.5}, {0, 0}, Qt::SizeAllCursor);
    row("last of the left border", {0, 0.5}, {Border - 1, 0}, Qt::SizeAllCursor);
    row("first inside", {0, 0.5}, {Border, 0}, Qt::IBeamCursor);
    row("middle", {0.5, 0.5}, {0, 0}, Qt::IBeamCursor);
    row("last inside", {1, 0.5}, {-Border - 1, 0}, Qt::IBeamCursor);
    row("right border", {1, 0.5}, {-Border, 0}, Qt::SizeAllCursor);
    row("right edge", {1, 0.5}, {0, 0}, Qt::SizeAllCursor);
    row("right of it", {1, 0.5}, {1, 0}, Qt::ArrowCursor);
    row("above it", {0.5, 0}, {0, -2}, Qt::ArrowCursor);
    row("upper border", {0.5, 0}, {0, 2}, Qt::SizeAllCursor);
    row("lower border", {0.5, 1}, {0, -3}, Qt::SizeAllCursor);
    row("below it", {0.5, 1}, {0, 2}, Qt::ArrowCursor);
}

void Tst_DrawingTextItem::cursorOverTheBox() {
    QFETCH(QPointF, fraction);
    QFETCH(QPoint, offset);
    const DrawingTextItem *item = open({60, 70});
    const QRectF box = item->sceneBoundingRect();
    const QPointF pos(box.left() + fraction.x() * box.width(), box.top() + fraction.y() * box.height());
    m_mouse->move(inView({300, 250}));
    QCOMPARE(m_view->viewport()->cursor().shape(), Qt::ArrowCursor);
    m_mouse->move(inView(pos.toPoint() + offset));
    QTEST(int(m_view->viewport()->cursor().shape()), "cursor");
    QVERIFY(!item->hasCursor());
}

void Tst_DrawingTextItem::borderMovesTheBox() {
    const DrawingTextItem *item = open({60, 70});
    type(QStringLiteral("abc"));
    QSignalSpy moved(m_editor.get(), &Editor::moveTextItem);
    const QPointF before = item->pos();
    m_mouse->press(inView({63, 70}));
    m_mouse->move(inView({73, 80}));
    m_mouse->move(inView({153, 120}));
    m_mouse->release(inView({153, 120}));
    QCOMPARE(item->pos(), before + QPointF(90, 50));
    QVERIFY(moved.count() >= 2);
    QCOMPARE(moved.last().first().value<DrawingTextItem *>(), item);
    // Still open, and typing goes on.
    QCOMPARE(m_editor->shapeType(), Editor::TextEditing);
    type(QStringLiteral("d"));
    QCOMPARE(item->toPlainText(), QStringLiteral("abcd"));
}

void Tst_DrawingTextItem::borderMovesTheBoxSoonAfterTheClickThatOpenedIt() {
    const DrawingTextItem *item = open({60, 70});
    const QPointF before = item->pos();
    const QPoint pos = inView({63, 70});
    QMouseEvent second(QEvent::MouseButtonDblClick, pos, m_view->viewport()->mapToGlobal(pos), Qt::LeftButton,
                       Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(m_view->viewport(), &second);
    QVERIFY(!m_view->findChild<TextPopup *>()->isVisible());
    QMouseEvent move(QEvent::MouseMove, pos + QPoint(30, 20), m_view->viewport()->mapToGlobal(pos),
                     Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(m_view->viewport(), &move);
    QCOMPARE(item->pos(), before + QPointF(30, 20));
    // Inside, two presses choose a word as everywhere.
    m_mouse->release(pos + QPoint(30, 20));
    type(QStringLiteral("one two"));
    const QPoint inside = inView(item->mapToScene(10, item->boundingRect().height() / 2));
    QMouseEvent word(QEvent::MouseButtonDblClick, inside, m_view->viewport()->mapToGlobal(inside),
                     Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(m_view->viewport(), &word);
    QCOMPARE(item->textCursor().selectedText(), QStringLiteral("one"));
}

void Tst_DrawingTextItem::insideOfTheBoxSelects() {
    const DrawingTextItem *item = open({60, 70});
    type(QStringLiteral("abc"));
    const QPointF before = item->pos();
    m_mouse->press(inView({67, 70}));
    m_mouse->move(inView({140, 70}));
    m_mouse->release(inView({200, 70}));
    QCOMPARE(item->pos(), before);
    QCOMPARE(item->textCursor().selectedText(), QStringLiteral("abc"));
}

void Tst_DrawingTextItem::changeOfFont_data() {
    QTest::addColumn<int>("format");
    QTest::addColumn<int>("weight");
    QTest::addColumn<bool>("italic");
    QTest::addColumn<bool>("underline");
    for (int format = 0; format < 8; ++format) {
        QTest::addRow("format %d", format)
            << format << (format & 1 ? 75 : 50) << bool(format & 2) << bool(format & 4);
    }
}

void Tst_DrawingTextItem::changeOfFont() {
    QFETCH(int, format);
    DrawingTextItem *item = open({60, 70});
    type(QStringLiteral("abc"));
    const QPointF before = item->pos();
    item->onChangeFont(48, QColor(10, 20, 30), ~format); // and back from the opposite
    item->onChangeFont(36, QColor(10, 20, 30), format);
    QTEST(item->font().weight(), "weight");
    QTEST(item->font().italic(), "italic");
    QTEST(item->font().underline(), "underline");
    QCOMPARE(item->font().pointSize(), 36);
    QCOMPARE(item->defaultTextColor(), QColor(10, 20, 30));
    QCOMPARE(item->pos(), before);
    QCOMPARE(item->font().family(), QStringLiteral("Malgun Gothic"));
    // A size that is no number comes as 0.
    const QtMessageHandler handler = qInstallMessageHandler(noteComplaint);
    item->onChangeFont(0, Qt::blue, format);
    qInstallMessageHandler(handler);
    QCOMPARE(complaints, QStringList());
    QCOMPARE(item->font().pointSize(), 36);
    QCOMPARE(item->defaultTextColor(), QColor(Qt::blue));
}

void Tst_DrawingTextItem::changeOfFontIsForTheWholeText() {
    DrawingTextItem *item = open({60, 70});
    type(QStringLiteral("abc"));
    QTest::keyClick(m_view.get(), Qt::Key_Left, Qt::ShiftModifier);
    QCOMPARE(item->textCursor().selectedText(), QStringLiteral("c"));
    item->onChangeFont(40, Qt::green, TextPopup::Bold);
    const QTextLayout *line = item->document()->firstBlock().layout();
    for (const QTextLayout::FormatRange &range : line->formats())
        QVERIFY(range.length == 0);
    QCOMPARE(item->document()->defaultFont().pointSize(), 40);
    QCOMPARE(item->textCursor().selectedText(), QStringLiteral("c"));
}

void Tst_DrawingTextItem::pastedTextTakesTheSettings() {
    DrawingTextItem *item = open({60, 70});
    type(QStringLiteral("a"));
    auto *data = new QMimeData;
    data->setHtml(QStringLiteral("<b style=\"font-size:72pt; color:#00ff00\">b</b>c"));
    data->setText(QStringLiteral("bc"));
    QGuiApplication::clipboard()->setMimeData(data);
    const double before = item->boundingRect().height();
    QTest::keyClick(m_view.get(), Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(item->toPlainText(), QStringLiteral("abc"));
    QCOMPARE(item->boundingRect().height(), before);
    item->onChangeFont(40, Qt::green, TextPopup::Bold);
    const QTextBlock block = item->document()->firstBlock();
    for (auto part = block.begin(); !part.atEnd(); ++part) {
        QVERIFY(!part.fragment().charFormat().hasProperty(QTextFormat::FontPointSize));
        QVERIFY(!part.fragment().charFormat().hasProperty(QTextFormat::FontWeight));
        QVERIFY(!part.fragment().charFormat().hasProperty(QTextFormat::ForegroundBrush));
    }
}

void Tst_DrawingTextItem::changeOfFontGivesTheKeyboardBack() {
    DrawingTextItem *item = open({60, 70});
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    item->onChangeFont(40, Qt::green, 0);
    QTRY_COMPARE(QApplication::activeWindow(), m_view.get());
    QVERIFY(item->hasFocus());
}

void Tst_DrawingTextItem::clickElsewhereKeepsTheText_data() {
    QTest::addColumn<int>("button");
    QTest::addColumn<int>("modifiers");
    QTest::newRow("left") << int(Qt::LeftButton) << int(Qt::NoModifier);
    QTest::newRow("right") << int(Qt::RightButton) << int(Qt::NoModifier);
    QTest::newRow("middle") << int(Qt::MiddleButton) << int(Qt::NoModifier);
    QTest::newRow("with Ctrl") << int(Qt::LeftButton) << int(Qt::ControlModifier);
    QTest::newRow("with Shift") << int(Qt::LeftButton) << int(Qt::ShiftModifier);
}

void Tst_DrawingTextItem::clickElsewhereKeepsTheText() {
    QFETCH(int, button);
    QFETCH(int, modifiers);
    DrawingTextItem *item = open({60, 70});
    QSignalSpy finished(item, &DrawingTextItem::finishEdit);
    QVector<int> shapes;
    const auto noting =
        connect(m_editor.get(), &Editor::changedShape, this, [&shapes](int shape) { shapes.append(shape); });
    type(QStringLiteral("abc"));
    click({300, 250}, Qt::KeyboardModifiers(modifiers), Qt::MouseButton(button));
    QCOMPARE(finished.count(), 1);
    QCOMPARE(finished.first(), (QList<QVariant>{true, false}));
    disconnect(noting);
    QCOMPARE(shapes, (QVector<int>{Editor::TextFinished, Editor::Text}));
    QCOMPARE(m_editor->items(), QList<QGraphicsItem *>{item});
    QCOMPARE(item->toPlainText(), QStringLiteral("abc"));
    QVERIFY(m_editor->canUndo());
    QVERIFY(!m_editor->currentItem());
    // Only the next click begins another.
    click({300, 250});
    QCOMPARE(m_editor->shapeType(), Editor::TextEditing);
    QCOMPARE(m_editor->items().size(), 2);
}

void Tst_DrawingTextItem::clickElsewhereLeavesNothingOfAnEmptyText() {
    const QPointer<DrawingTextItem> item = open({60, 70});
    QSignalSpy finished(item.data(), &DrawingTextItem::finishEdit);
    type(QStringLiteral("a"));
    QTest::keyClick(m_view.get(), Qt::Key_Backspace);
    click({300, 250});
    QCOMPARE(finished.first(), (QList<QVariant>{false, false}));
    QCOMPARE(m_editor->shapeType(), Editor::Text);
    QVERIFY(m_editor->items().isEmpty());
    QVERIFY(!m_editor->canUndo());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!item);
    click({300, 250});
    QCOMPARE(m_editor->shapeType(), Editor::TextEditing);
}

void Tst_DrawingTextItem::cancelThrowsTheTextAway() {
    const QPointer<DrawingTextItem> item = open({60, 70});
    QSignalSpy finished(item.data(), &DrawingTextItem::finishEdit);
    type(QStringLiteral("abc"));
    m_editor->finishCurrentItem(false);
    QCOMPARE(finished.first(), (QList<QVariant>{false, true}));
    QCOMPARE(m_editor->shapeType(), Editor::Text);
    QVERIFY(m_editor->items().isEmpty());
    QVERIFY(!m_editor->canUndo() && !m_editor->canRedo());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!item);
    // Ready for a new one at once.
    QVERIFY(open({90, 90}));
}

void Tst_DrawingTextItem::commitKeepsTheText() {
    DrawingTextItem *item = open({60, 70});
    QSignalSpy finished(item, &DrawingTextItem::finishEdit);
    type(QStringLiteral("abc"));
    m_editor->finishCurrentItem(true);
    QCOMPARE(finished.first(), (QList<QVariant>{true, true}));
    QCOMPARE(m_editor->shapeType(), Editor::Text);
    QCOMPARE(m_editor->items(), QList<QGraphicsItem *>{item});
    QVERIFY(m_editor->canUndo());
}

void Tst_DrawingTextItem::commitOfAnEmptyTextLeavesNothing() {
    open({60, 70});
    m_editor->finishCurrentItem(true);
    QVERIFY(m_editor->items().isEmpty());
    QVERIFY(!m_editor->canUndo());
    QCOMPARE(m_editor->shapeType(), Editor::Text);
}

void Tst_DrawingTextItem::otherToolThrowsTheTextAway() {
    open({60, 70});
    type(QStringLiteral("abc"));
    m_editor->setShape(Editor::Pen);
    QCOMPARE(m_editor->shapeType(), Editor::Pen);
    QVERIFY(m_editor->items().isEmpty());
    QVERIFY(!m_editor->canUndo());
}

// A space is something: only what holds nothing at all goes.
void Tst_DrawingTextItem::blankTextIsKept() {
    open({60, 70});
    type(QStringLiteral(" "));
    click({300, 250});
    QVERIFY(m_editor->canUndo());
}

void Tst_DrawingTextItem::closesOnceHoweverItIsClosed_data() {
    QTest::addColumn<std::function<void()>>("finish");
    const auto row = [](const char *name, const std::function<void()> &finish) {
        QTest::newRow(name) << finish;
    };
    row("click elsewhere", [this] { click({300, 250}); });
    row("commit", [this] { m_editor->finishCurrentItem(true); });
    row("cancel", [this] { m_editor->finishCurrentItem(false); });
    row("other tool", [this] { m_editor->setShape(Editor::Pen); });
    row("deselected", [this] { m_editor->clearSelection(); });
    row("save",
        [this] { m_editor->saveFlattened(QDir::temp().filePath(QStringLiteral("a.png")), false, -1); });
    row("swap", [this] { m_view->setEditor(nullptr); });
}

void Tst_DrawingTextItem::closesOnceHoweverItIsClosed() {
    QFETCH(std::function<void()>, finish);
    DrawingTextItem *item = open({60, 70});
    type(QStringLiteral("abc"));
    QTest::keyClick(m_view.get(), Qt::Key_A, Qt::ControlModifier);
    QSignalSpy finished(item, &DrawingTextItem::finishEdit);
    finish();
    QCOMPARE(finished.count(), 1);
    item->drawFinish(true);
    item->setSelected(true);
    item->setSelected(false);
    QCOMPARE(finished.count(), 1);
}

void Tst_DrawingTextItem::closingIsNotBegunAnewByWhatItCauses_data() {
    QTest::addColumn<QString>("cause");
    QTest::newRow("the text loses the focus") << QStringLiteral("focus");
    QTest::newRow("the popup hides") << QStringLiteral("popup");
}

// Whoever hears of a step of the closing may want the text closed as well, and in another way.
void Tst_DrawingTextItem::closingIsNotBegunAnewByWhatItCauses() {
    QFETCH(QString, cause);
    DrawingTextItem *item = open({60, 70});
    type(QStringLiteral("abc"));
    QSignalSpy finished(item, &DrawingTextItem::finishEdit);
    int heard = 0;
    const auto throwAway = [&] {
        ++heard;
        m_editor->finishCurrentItem(false);
    };
    capture::HideListener popup(throwAway);
    const QObject focus;
    if (cause == QLatin1String("popup"))
        m_view->findChild<TextPopup *>()->installEventFilter(&popup);
    else
        connect(m_editor.get(), &QGraphicsScene::focusItemChanged, &focus, throwAway);
    m_editor->finishCurrentItem(true);
    QVERIFY(heard > 0);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(finished.first(), (QList<QVariant>{true, true}));
    QCOMPARE(m_editor->items(), QList<QGraphicsItem *>{item});
}

void Tst_DrawingTextItem::closedTextIsInert() {
    DrawingTextItem *item = open({60, 70});
    type(QStringLiteral("abc"));
    QTest::keyClick(m_view.get(), Qt::Key_A, Qt::ControlModifier);
    click({300, 250});
    QCOMPARE(item->textInteractionFlags(), Qt::NoTextInteraction);
    QVERIFY(!(item->flags() & QGraphicsItem::ItemIsMovable));
    QVERIFY(!(item->flags() & QGraphicsItem::ItemIsSelectable));
    QVERIFY(!(item->flags() & QGraphicsItem::ItemSendsGeometryChanges));
    QVERIFY(!item->acceptDrops());
    QVERIFY(!item->isSelected());
    QVERIFY(!item->hasFocus());
    QVERIFY(!item->textCursor().hasSelection());
    type(QStringLiteral("d"));
    compose(QString(), Syllable);
    QCOMPARE(item->toPlainText(), QStringLiteral("abc"));
    // A drag over it draws, and moves nothing.
    const QPointF before = item->pos();
    m_editor->setShape(Editor::Pen);
    m_mouse->drag({{62, 70}, {100, 90}, {140, 120}});
    QCOMPARE(item->pos(), before);
    QCOMPARE(m_editor->items().size(), 2);
    QVERIFY(!m_editor->focusItem());
}

void Tst_DrawingTextItem::textEmptiesTheRedoList() {
    m_editor->setShape(Editor::Pen);
    m_mouse->drag({{20, 20}, {40, 40}, {60, 30}});
    m_editor->undo();
    m_editor->setShape(Editor::Text);
    open({60, 70});
    QVERIFY(m_editor->canRedo());
    m_editor->finishCurrentItem(false);
    QVERIFY(m_editor->canRedo()); // nothing has been drawn
    open({60, 70});
    type(QStringLiteral("a"));
    click({300, 250});
    QVERIFY(!m_editor->canRedo());
}

void Tst_DrawingTextItem::undoAndRedoMoveTheSameText() {
    DrawingTextItem *item = open({60, 70});
    type(QStringLiteral("abc"));
    click({300, 250});
    const QImage with = flattened(true);
    QSignalSpy moved(m_editor.get(), &Editor::moveTextItem);
    m_editor->undo();
    QVERIFY(m_editor->items().isEmpty());
    QVERIFY(!m_editor->canUndo() && m_editor->canRedo());
    QImage black(400, 300, QImage::Format_RGB32);
    black.fill(Qt::black);
    COMPARE_IMAGES(flattened(true), black, "undone");
    QCOMPARE(moved.count(), 0);
    m_editor->redo();
    QCOMPARE(m_editor->items(), QList<QGraphicsItem *>{item});
    COMPARE_IMAGES(flattened(true), with, "redone");
    QVERIFY(with != black);
    QCOMPARE(moved.count(), 1); // it says so whenever it joins a scene
    QCOMPARE(item->textInteractionFlags(), Qt::NoTextInteraction);
    // Reset takes it, too.
    m_editor->reset();
    QVERIFY(m_editor->items().isEmpty());
}

void Tst_DrawingTextItem::eraserTakesTheWholeText() {
    open({60, 70});
    type(QStringLiteral("abc"));
    click({300, 250});
    m_editor->setShape(Editor::Eraser);
    click({60 + int(MinimumWidth) + 3, 70});
    QCOMPARE(m_editor->items().size(), 1);
    // Anywhere in its box; only outside the crop there is nothing to hit.
    crop(QRect(0, 0, 100, 300));
    click({150, 70});
    QCOMPARE(m_editor->items().size(), 1);
    click({90, 70});
    QVERIFY(m_editor->items().isEmpty());
    QVERIFY(m_editor->canRedo());
}

void Tst_DrawingTextItem::focusThatComesBackLeavesTheTextAlone_data() {
    QTest::addColumn<QString>("active");
    QTest::addColumn<bool>("cursorStays");
    QTest::newRow("another program") << "none" << true;
    QTest::newRow("popup") << "popup" << true;
    QTest::newRow("another window") << "other" << false;
    QTest::newRow("another widget") << "view" << false;
}

void Tst_DrawingTextItem::focusThatComesBackLeavesTheTextAlone() {
    QFETCH(QString, active);
    QFETCH(bool, cursorStays);
    DrawingTextItem *item = open({60, 70});
    type(QStringLiteral("abc"));
    QWidget other;
    other.show();
    const QImage before = flattened(true);
    QWidget *window = nullptr;
    if (active == QLatin1String("popup"))
        window = m_view->findChild<TextPopup *>();
    else if (active == QLatin1String("other"))
        window = &other;
    else if (active == QLatin1String("view"))
        window = m_view.get();
    QFocusEvent out(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
    QApplication::setActiveWindow(window);
    QCOMPARE(QApplication::activeWindow(), window);
    m_editor->sendEvent(item, &out);
    QCOMPARE(flattened(true) == before, cursorStays);
    QCOMPARE(m_editor->shapeType(), Editor::TextEditing);
    QVERIFY(item->isSelected());
    QApplication::setActiveWindow(m_view.get());
    m_view->clearFocus();
    m_view->setFocus();
    QVERIFY(item->hasFocus());
    type(QStringLiteral("d"));
    QCOMPARE(item->toPlainText(), QStringLiteral("abcd"));
}

void Tst_DrawingTextItem::openTextHasPlateAndFrame() {
    const DrawingTextItem *item = open({60, 70});
    QCoreApplication::processEvents();
    const QImage picture = shown();
    const QRect box = item->sceneBoundingRect().toAlignedRect();
    QCOMPARE(box.left(), 60);
    QCOMPARE(box.width(), 150);
    const QColor line = m_editor->palette().color(QPalette::WindowText);
    const QColor plate(127, 127, 127); // half white over black
    const auto at = [&](int x, int y) { return picture.pixelColor(x, y); };
    const int middle = box.top() + box.height() / 2;
    QCOMPARE(at(box.left() + 40, middle), plate);
    QCOMPARE(at(box.left(), middle), line == Qt::black ? QColor(Qt::black) : line);
    QVERIFY(at(box.left() + 1, middle) == plate);
    QCOMPARE(at(box.left() - 1, middle), QColor(Qt::black));
    // One pixel inside the right edge.
    QCOMPARE(at(box.right(), middle), QColor(Qt::black));
    QCOMPARE(at(box.right() - 1, middle), plate);
    QCOMPARE(at(box.right() + 1, middle), QColor(Qt::black));
}

void Tst_DrawingTextItem::frameOfAnOpenTextHasFourLines() {
    const QPalette before = QApplication::palette();
    QPalette red = before;
    red.setColor(QPalette::WindowText, Qt::red);
    QApplication::setPalette(red);
    show(QSize(400, 300));
    const DrawingTextItem *item = open({60, 70});
    QCoreApplication::processEvents();
    const QImage picture = shown();
    QApplication::setPalette(before);
    const QRectF box = item->sceneBoundingRect();
    const int left = qRound(box.left()), right = left + 149; // one less than the width
    // A line between two pixels is drawn on the upper one.
    const int upper = int(std::ceil(box.top() - 0.5)), lower = int(std::ceil(box.bottom() - 0.5));
    const auto isLine = [&](int x, int y) { return picture.pixelColor(x, y) == QColor(Qt::red); };
    for (int x = left; x <= right; ++x) {
        QVERIFY(isLine(x, upper));
        QVERIFY(isLine(x, lower)); // the height is not reduced as the width is
        QVERIFY(!isLine(x, upper - 1) && !isLine(x, lower + 1));
    }
    for (int y = upper; y <= lower; ++y) {
        QVERIFY(isLine(left, y) && isLine(right, y));
        QVERIFY(!isLine(left - 1, y) && !isLine(right + 1, y));
    }
    QCOMPARE(picture.pixelColor(right - 20, upper + 1), QColor(127, 127, 127));
    QCOMPARE(picture.pixelColor(right - 20, lower - 1), QColor(127, 127, 127));
}

void Tst_DrawingTextItem::closedTextIsNothingButText() {
    TindraPreferences::instance()->SetInt(TindraPreferences::TextColor, TindraPreferences::colorToInt(Ink));
    const DrawingTextItem *item = open({60, 70});
    type(QStringLiteral("WWW"));
    QTest::keyClick(m_view.get(), Qt::Key_A, Qt::ControlModifier);
    click({300, 250});
    const QImage picture = flattened(true);
    const QRect box = item->sceneBoundingRect().toAlignedRect();
    int inked = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QColor color = picture.pixelColor(x, y);
            // Shades of the ink over black and no plate, frame or selection.
            QVERIFY2(color.green() == 0 && color.blue() == 0, qPrintable(color.name()));
            if (color.red() == 0)
                continue;
            ++inked;
            QVERIFY(box.adjusted(Border, Border, -Border, -Border).contains(x, y));
        }
    }
    QVERIFY(inked > 50);
}

void Tst_DrawingTextItem::viewShowsWhatFlattenGives() {
    open({60, 70});
    type(QStringLiteral("abc"));
    QTest::keyClick(m_view.get(), Qt::Key_Return);
    compose(QString(), Syllable);
    click({300, 250});
    QCoreApplication::processEvents();
    COMPARE_IMAGES(shown(), flattened(true), "view");
}

void Tst_DrawingTextItem::cropCutsTheClosedText() {
    const DrawingTextItem *item = open({60, 70});
    type(LongLine);
    click({300, 250});
    const QRectF whole = item->sceneBoundingRect();
    const QImage uncut = flattened(true);
    const QRect cut(100, 20, 80, 51); // through the middle of the line
    crop(cut);
    QCOMPARE(item->sceneBoundingRect(), whole & QRectF(cut));
    COMPARE_IMAGES(flattened(false), uncut.copy(cut), "crop");
    QCoreApplication::processEvents();
    const QImage picture = shown();
    const QPoint place = inView(cut.topLeft());
    COMPARE_IMAGES(picture.copy(QRect(place, cut.size())), uncut.copy(cut), "view");
    const QColor around = picture.pixelColor(0, 0);
    for (int x = 0; x < picture.width(); ++x) {
        QCOMPARE(picture.pixelColor(x, place.y() - 1), around);
        QCOMPARE(picture.pixelColor(x, place.y() + cut.height()), around);
    }
    for (int y = 0; y < picture.height(); ++y) {
        QCOMPARE(picture.pixelColor(place.x() - 1, y), around);
        QCOMPARE(picture.pixelColor(place.x() + cut.width(), y), around);
    }
    // A larger crop shows more of the same text.
    crop(QRect());
    QCOMPARE(item->sceneBoundingRect(), whole);
    COMPARE_IMAGES(flattened(true), uncut, "whole");
}

void Tst_DrawingTextItem::textOutsideTheCropIsGone() {
    const DrawingTextItem *item = open({60, 70});
    type(QStringLiteral("abc"));
    click({300, 250});
    crop(QRect(200, 150, 100, 100));
    QCOMPARE(item->boundingRect(), QRectF());
    QVERIFY(item->shape().isEmpty());
    QImage black(100, 100, QImage::Format_RGB32);
    black.fill(Qt::black);
    COMPARE_IMAGES(flattened(false), black, "crop");
    m_editor->setShape(Editor::Eraser);
    click(item->pos().toPoint());
    QCOMPARE(m_editor->items().size(), 1);
}

void Tst_DrawingTextItem::openTextIsNotCut() {
    crop(QRect(0, 0, 100, 100));
    QCoreApplication::processEvents();
    DrawingTextItem *item = open({60, 70});
    QCOMPARE(item->boundingRect().width(), MinimumWidth);
    type(QStringLiteral("abc"));
    click({10, 10});
    QCOMPARE(item->sceneBoundingRect().right(), 100.0);
    // A text outside the crop has nothing to show, and does not stay.
    const DrawingTextItem *outside = open({120, 150});
    QVERIFY(outside);
    type(QStringLiteral("abc"));
    click({10, 10});
    QCOMPARE(m_editor->items(), QList<QGraphicsItem *>{item});
}

void Tst_DrawingTextItem::editorMayDieWithAnOpenText() {
    const QPointer<DrawingTextItem> item = open({60, 70});
    type(QStringLiteral("abc"));
    m_editor.reset();
    QVERIFY(!item);
    QVERIFY(!m_view->findChild<TextPopup *>()->isVisible());
    m_editor = std::make_unique<Editor>();
}

QTEST_MAIN(Tst_DrawingTextItem)
#include "tst_drawingtextitem.moc"
