#include "canvas/capturefixture.h"
#include "canvas/items/drawingtextitem.h"
#include "canvas/scaledview.h"
#include "popups/combobox.h"
#include "popups/itembutton.h"
#include "popups/textpopup.h"
#include "preferences/tindrapreferences.h"

#include <QScreen>
#include <QScrollBar>
#include <QWheelEvent>
#include <QtTest>

#include <memory>

namespace {

constexpr int Gap = 10;
constexpr int Notch = 120;

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

Q_DECLARE_METATYPE(std::function<void()>)

/// The popup over a view with a text that is being written.
class Tst_FloatingTextPopup : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void appearsAboveTheText_data();
    void appearsAboveTheText();
    void staysOnTheScreen_data();
    void staysOnTheScreen();
    void leavesTheLinesBelowInSight();
    void hasItsPlaceBeforeItIsSeen();
    void refusesTheKeyboard();
    void showsTheStoredSettings();
    void changesReachTheOpenTextOnly();
    void pressOnTheBorderHidesIt();
    void followsTheBox();
    void pressInTheBoxBringsItBack();
    void typingBringsItBack_data();
    void typingBringsItBack();
    void comesToTheFrontBy_data();
    void comesToTheFrontBy();
    void hidesAndReturnsAtItsPlace_data();
    void hidesAndReturnsAtItsPlace();
    void composingThatScrollsHidesIt();
    void comesAndGoesWithTheView();
    void staysAwayWithoutAText();
    void goesWithTheText_data();
    void goesWithTheText();
    void leavesAnOpenTextWithItsView();
    void openTextLeavesTheViewAtRest();

private:
    DrawingTextItem *open(const QPoint &viewPos);
    void type(char letter) { QTest::keyClick(m_view.get(), letter); }
    void compose(const QString &composed);
    void sendWheel(int delta, Qt::KeyboardModifiers modifiers);
    bool isInPlace() const;
    /// The upper left corner of the box, and what lies behind its last row, on the screen.
    QPoint boxCorner() const;
    int boxEnd() const;
    static QRect screen() { return QGuiApplication::primaryScreen()->availableGeometry(); }
    DrawingTextItem *text() const;

    std::unique_ptr<Editor> m_editor;
    std::unique_ptr<ScaledView> m_view;
    std::unique_ptr<capture::Mouse> m_mouse;
    TextPopup *m_popup = nullptr;
};

void Tst_FloatingTextPopup::init() {
    capture::resetWorld();
    QApplication::setCursorFlashTime(0);
    TindraPreferences::instance()->SetInt(TindraPreferences::LastDrawingItem, Editor::Text);
    m_editor = std::make_unique<Editor>();
    capture::load(*m_editor, QStringLiteral("capture"), capture::picture(QSize(1500, 1200)));
    m_view = std::make_unique<ScaledView>();
    m_view->setFrameShape(QFrame::NoFrame);
    m_view->setGeometry(100, 200, 400, 300);
    m_view->show();
    m_view->setEditor(m_editor.get());
    m_view->activateWindow();
    m_view->setFocus();
    QVERIFY(QTest::qWaitForWindowActive(m_view.get()));
    m_view->horizontalScrollBar()->setValue(300);
    m_view->verticalScrollBar()->setValue(200);
    m_mouse = std::make_unique<capture::Mouse>(m_view->viewport());
    m_popup = m_view->findChild<TextPopup *>();
    QVERIFY(m_popup);
}

void Tst_FloatingTextPopup::cleanup() {
    m_mouse.reset();
    m_view.reset();
    m_editor.reset();
}

DrawingTextItem *Tst_FloatingTextPopup::text() const {
    return dynamic_cast<DrawingTextItem *>(m_editor->currentItem());
}

DrawingTextItem *Tst_FloatingTextPopup::open(const QPoint &viewPos) {
    m_mouse->click(viewPos);
    return text();
}

void Tst_FloatingTextPopup::compose(const QString &composed) {
    QInputMethodEvent event(composed, {});
    QCoreApplication::sendEvent(m_view.get(), &event);
}

void Tst_FloatingTextPopup::sendWheel(int delta, Qt::KeyboardModifiers modifiers) {
    const QPoint pos(50, 50);
    QWheelEvent event(pos, m_view->viewport()->mapToGlobal(pos), QPoint(), QPoint(0, delta), Qt::NoButton,
                      modifiers, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(m_view->viewport(), &event);
}

QPoint Tst_FloatingTextPopup::boxCorner() const {
    const QPointF corner = m_view->viewportTransform().map(text()->scenePos());
    return m_view->viewport()->mapToGlobal(QPoint(qRound(corner.x()), qRound(corner.y())));
}

int Tst_FloatingTextPopup::boxEnd() const {
    return boxCorner().y() + qRound(text()->boundingRect().height());
}

/// Left as the box, its bottom ten pixels above it.
bool Tst_FloatingTextPopup::isInPlace() const {
    const QPoint box = boxCorner();
    const QRect popup = m_popup->frameGeometry();
    return popup.left() == box.x() && popup.top() + popup.height() + Gap == box.y() && popup.height() > 20;
}

void Tst_FloatingTextPopup::appearsAboveTheText_data() {
    QTest::addColumn<int>("zoomSteps");
    QTest::addColumn<int>("dpi");
    QTest::newRow("100 %") << 0 << 96;
    QTest::newRow("250 %") << 10 << 96;
    QTest::newRow("55 %") << -10 << 96;
    QTest::newRow("100 %, 144 DPI") << 0 << 144;
    QTest::newRow("100 %, 192 DPI") << 0 << 192;
}

void Tst_FloatingTextPopup::appearsAboveTheText() {
    QFETCH(int, zoomSteps);
    QFETCH(int, dpi);
    m_view->dpi = dpi;
    for (int i = 0; i < qAbs(zoomSteps); ++i)
        zoomSteps > 0 ? m_view->onZoomIn() : m_view->onZoomOut();
    QVERIFY(!m_popup->isVisible());
    QVERIFY(open({120, 90}));
    QVERIFY(m_popup->isVisible());
    QVERIFY(isInPlace());
}

void Tst_FloatingTextPopup::staysOnTheScreen_data() {
    QTest::addColumn<QPoint>("window");
    QTest::addColumn<QPoint>("click");
    QTest::addColumn<int>("letters");
    QTest::addColumn<int>("left");   // -1: as the box
    QTest::addColumn<int>("bottom"); // -1: ten pixels above the box, -2: the top ten pixels below it
    const QRect all = screen();
    const int left = all.left(), right = all.x() + all.width(), bottom = all.y() + all.height();
    const auto row = [](const char *name, const QPoint &window, const QPoint &click, int letters, int x,
                        int y) { QTest::newRow(name) << window << click << letters << x << y; };
    constexpr int asBox = -1, above = -1, below = -2;
    row("right", {right - 400, 200}, {390, 150}, 0, right, above);
    row("left, scrolled", {left, 200}, {100, 150}, 60, left, above);
    row("top", {100, all.y()}, {120, 20}, 0, asBox, below);
    row("bottom", {100, bottom - 100}, {120, 190}, 0, asBox, bottom);
    row("upper right", {right - 400, all.y()}, {390, 20}, 0, right, below);
}

void Tst_FloatingTextPopup::staysOnTheScreen() {
    QFETCH(QPoint, window);
    QFETCH(QPoint, click);
    QFETCH(int, letters);
    QFETCH(int, left);
    QFETCH(int, bottom);
    m_view->move(window);
    open(click);
    for (int i = 0; i < letters; ++i)
        type('a');
    QVERIFY(m_popup->isVisible());
    const QRect popup = m_popup->frameGeometry();
    const std::unique_ptr<char[]> where(QTest::toString(popup));
    QVERIFY2(screen().contains(popup), where.get());
    if (left == screen().left()) {
        QVERIFY(boxCorner().x() < left);
        QCOMPARE(popup.left(), left);
    } else {
        QCOMPARE(popup.left(), left < 0 ? boxCorner().x() : left - popup.width());
    }
    if (bottom == -2)
        QCOMPARE(popup.top(), boxEnd() + Gap);
    else
        QCOMPARE(popup.top() + popup.height(), bottom < 0 ? boxCorner().y() - Gap : bottom);
}

void Tst_FloatingTextPopup::leavesTheLinesBelowInSight() {
    m_view->move(100, screen().y());
    open({120, 20});
    type('a');
    const int before = boxEnd();
    QTest::keyClick(m_view.get(), Qt::Key_Return);
    QTest::keyClick(m_view.get(), Qt::Key_Return);
    QVERIFY(boxEnd() > before);
    QTRY_COMPARE(m_popup->frameGeometry().top(), boxEnd() + Gap);
    // A box that fills the screen leaves no room but over its first lines.
    for (int i = 0; i < 100; ++i)
        QTest::keyClick(m_view.get(), Qt::Key_Return);
    QVERIFY(boxEnd() > screen().y() + screen().height());
    QTRY_COMPARE(m_popup->frameGeometry().top(), screen().top());
}

void Tst_FloatingTextPopup::hasItsPlaceBeforeItIsSeen() {
    open({120, 90});
    type('a');
    m_popup->hide();
    m_popup->move(0, 0);
    m_popup->show();
    QVERIFY(isInPlace());
}

void Tst_FloatingTextPopup::refusesTheKeyboard() {
    open({120, 90});
    QCOMPARE(QApplication::activeWindow(), m_view.get());
    type('a');
    QCOMPARE(QApplication::activeWindow(), m_view.get());
    QCOMPARE(text()->toPlainText(), QStringLiteral("a"));
}

void Tst_FloatingTextPopup::showsTheStoredSettings() {
    open({120, 90});
    m_editor->finishCurrentItem(false);
    auto &preferences = *TindraPreferences::instance();
    preferences.SetInt(TindraPreferences::TextSize, 33);
    preferences.SetInt(TindraPreferences::TextStyle, TextPopup::Italic);
    const DrawingTextItem *item = open({120, 90});
    QCOMPARE(m_popup->findChild<ComboBox *>()->currentText(), QStringLiteral("33"));
    QVERIFY(m_popup->findChild<ItemButton *>(QStringLiteral("italic_"))->isChecked());
    QVERIFY(!m_popup->findChild<ItemButton *>(QStringLiteral("bold_"))->isChecked());
    QCOMPARE(item->font().pointSize(), 33);
    QVERIFY(item->font().italic());
}

void Tst_FloatingTextPopup::changesReachTheOpenTextOnly() {
    DrawingTextItem *first = open({120, 90});
    type('a');
    m_popup->findChild<ComboBox *>()->setCurrentText(QStringLiteral("48"));
    QTest::mouseClick(m_popup->findChild<ItemButton *>(QStringLiteral("bold_")), Qt::LeftButton);
    QCOMPARE(first->font().pointSize(), 48);
    QCOMPARE(first->font().weight(), 75);
    QVERIFY(first->hasFocus());
    m_mouse->click({350, 280});
    m_popup->findChild<ComboBox *>()->setCurrentText(QStringLiteral("10"));
    QCOMPARE(first->font().pointSize(), 48);
    // The next one begins with what was chosen last.
    QCOMPARE(open({200, 200})->font().pointSize(), 10);
    QCOMPARE(text()->font().weight(), 75);
}

void Tst_FloatingTextPopup::pressOnTheBorderHidesIt() {
    open({120, 90});
    m_mouse->press({123, 90});
    QVERIFY(!m_popup->isVisible());
}

void Tst_FloatingTextPopup::followsTheBox() {
    open({120, 90});
    m_mouse->press({123, 90});
    m_mouse->move({143, 130});
    m_mouse->move({163, 140});
    QVERIFY(!m_popup->isVisible());
    QVERIFY(isInPlace());
    m_mouse->release({163, 140});
    type('a');
    QVERIFY(m_popup->isVisible());
    QVERIFY(isInPlace());
    text()->moveBy(-20, 5); // in sight, too
    QVERIFY(isInPlace());
}

void Tst_FloatingTextPopup::pressInTheBoxBringsItBack() {
    open({120, 90});
    m_popup->hide();
    m_mouse->press({126, 90});
    QVERIFY(m_popup->isVisible());
    m_mouse->release({126, 90});
    m_mouse->press({120 + 150 - 3, 90});
    QVERIFY(!m_popup->isVisible());
}

void Tst_FloatingTextPopup::typingBringsItBack_data() {
    QTest::addColumn<std::function<void()>>("typing");
    QTest::newRow("letter") << std::function<void()>([this] { type('a'); });
    QTest::newRow("arrow") << std::function<void()>([this] { QTest::keyClick(m_view.get(), Qt::Key_Left); });
    QTest::newRow("composed") << std::function<void()>([this] { compose(QStringLiteral("\uac00")); });
}

void Tst_FloatingTextPopup::typingBringsItBack() {
    QFETCH(std::function<void()>, typing);
    open({120, 90});
    m_popup->hide();
    typing();
    QVERIFY(m_popup->isVisible());
}

void Tst_FloatingTextPopup::comesToTheFrontBy_data() {
    QTest::addColumn<std::function<void()>>("action");
    const auto row = [](const char *name, const std::function<void()> &action) {
        QTest::newRow(name) << action;
    };
    row("letter", [this] { type('a'); });
    row("composed", [this] { compose(QStringLiteral("\uac00")); });
    row("press in the box", [this] { m_mouse->press({126, 190}); });
    row("box moved", [this] { text()->moveBy(-20, 5); });
}

// Another window may lie over it.
void Tst_FloatingTextPopup::comesToTheFrontBy() {
    QFETCH(std::function<void()>, action);
    open({120, 190});
    QVERIFY(m_popup->isVisible());
    capture::RaiseCounter counter;
    m_popup->installEventFilter(&counter);
    action();
    QCOMPARE(counter.raises, 1);
}

void Tst_FloatingTextPopup::hidesAndReturnsAtItsPlace_data() {
    QTest::addColumn<std::function<void()>>("change");
    const auto row = [](const char *name, const std::function<void()> &change) {
        QTest::newRow(name) << change;
    };
    row("wheel", [this] { sendWheel(-Notch, Qt::NoModifier); });
    row("wheel with nowhere to go", [this] { sendWheel(0, Qt::NoModifier); });
    row("wheel and Ctrl", [this] { sendWheel(Notch, Qt::ControlModifier); });
    row("wheel and Shift", [this] { sendWheel(-Notch, Qt::ShiftModifier); });
    row("wheel and Alt", [this] { sendWheel(-Notch, Qt::AltModifier); });
    row("vertical scroll bar", [this] { m_view->verticalScrollBar()->setValue(230); });
    row("horizontal scroll bar", [this] { m_view->horizontalScrollBar()->setValue(290); });
    row("window moved", [this] {
        m_view->move(150, 250);
        m_view->onMoveMainWindow();
    });
}

void Tst_FloatingTextPopup::hidesAndReturnsAtItsPlace() {
    QFETCH(std::function<void()>, change);
    open({120, 190});
    type('a');
    QVERIFY(m_popup->isVisible());
    change();
    QVERIFY(!m_popup->isVisible());
    type('b');
    QVERIFY(m_popup->isVisible());
    QVERIFY(isInPlace());
    QCOMPARE(text()->toPlainText(), QStringLiteral("ab"));
}

void Tst_FloatingTextPopup::composingThatScrollsHidesIt() {
    open({20, 190});
    compose(QStringLiteral("\uac00"));
    QVERIFY(!m_popup->isVisible());
    compose(QStringLiteral("\uac01")); // now there is room
    QVERIFY(m_popup->isVisible());
    QVERIFY(isInPlace());
}

void Tst_FloatingTextPopup::comesAndGoesWithTheView() {
    open({120, 90});
    m_view->hide();
    QVERIFY(!m_popup->isVisible());
    m_popup->move(0, 0);
    m_view->show();
    QVERIFY(m_popup->isVisible());
    QVERIFY(isInPlace());
}

void Tst_FloatingTextPopup::staysAwayWithoutAText() {
    m_view->hide();
    m_view->show();
    m_view->onMoveMainWindow();
    sendWheel(Notch, Qt::NoModifier);
    QVERIFY(!m_popup->isVisible());
    open({120, 90});
    type('a');
    m_mouse->click({350, 280});
    m_view->hide();
    m_view->show();
    m_editor->undo();
    m_editor->redo();
    QVERIFY(!m_popup->isVisible());
}

void Tst_FloatingTextPopup::goesWithTheText_data() {
    QTest::addColumn<std::function<void()>>("finish");
    const auto row = [](const char *name, const std::function<void()> &finish) {
        QTest::newRow(name) << finish;
    };
    row("click elsewhere", [this] { m_mouse->click({350, 280}); });
    row("commit", [this] { m_editor->finishCurrentItem(true); });
    row("cancel", [this] { m_editor->finishCurrentItem(false); });
    row("other tool", [this] { m_editor->setShape(Editor::Pen); });
    row("other capture", [this] { m_view->setEditor(nullptr); });
}

void Tst_FloatingTextPopup::goesWithTheText() {
    QFETCH(std::function<void()>, finish);
    open({120, 90});
    type('a');
    finish();
    QVERIFY(!m_popup->isVisible());
    QVERIFY(!text());
}

void Tst_FloatingTextPopup::leavesAnOpenTextWithItsView() {
    DrawingTextItem *item = open({120, 90});
    m_mouse.reset();
    const QPointer<TextPopup> popup = m_popup;
    m_view.reset();
    QVERIFY(!popup);
    // It can do without.
    item->setSelected(true);
    m_editor->finishCurrentItem(false);
    QVERIFY(m_editor->items().isEmpty());
}

// Painting the text asks for another paint, which must not paint the text again, and so on.
void Tst_FloatingTextPopup::openTextLeavesTheViewAtRest() {
    open({120, 90});
    type('a');
    QTest::qWait(200); // past the making of the smooth background
    PaintCounter counter;
    m_view->viewport()->installEventFilter(&counter);
    QTest::qWait(200);
    QCOMPARE(counter.paints, 0);
}

QTEST_MAIN(Tst_FloatingTextPopup)
#include "tst_floatingtextpopup.moc"
