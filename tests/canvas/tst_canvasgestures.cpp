#include "canvas/canvasgestures.h"
#include "canvas/capturefixture.h"
#include "canvas/editorview.h"
#include "canvas/fakeitems.h"

#include <QGestureEvent>
#include <QScrollBar>
#include <QScroller>
#include <QtTest>

#include <cmath>

namespace {

/// Notes the wheel events that a pan becomes.
class WatchedView : public EditorView {
public:
    struct Wheel {
        QPoint pos;
        QPoint delta;
        Qt::KeyboardModifiers modifiers;
        Qt::MouseButtons buttons;
    };
    QVector<Wheel> wheels;

protected:
    void wheelEvent(QWheelEvent *event) override {
        wheels.append(
            {event->position().toPoint(), event->angleDelta(), event->modifiers(), event->buttons()});
        EditorView::wheelEvent(event);
    }
};

} // namespace

/// With fingers on a touch screen that the toolkit turns into gestures by itself.
class Tst_CanvasGestures : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void gesturesNeedATouchScreen();
    void contentsDoNotOvershoot();
    void twoFingersScroll();
    void panBecomesTwoWheelEvents();
    void spreadFingersEnlarge();
    void closedFingersReduce();
    void pinchStartsFromThePresentScale();
    void pinchZoom_data();
    void pinchZoom();
    void stepTakesTheWholePartOfThePinch();
    void nothingIsDrawnDuringAGesture_data();
    void nothingIsDrawnDuringAGesture();
    void anotherCaptureDuringAGestureIsNotLeftDeaf();
    void gestureWithoutACaptureDoesNothing();

private:
    void press(const QPoint &first, const QPoint &second);
    void move(const QPoint &first, const QPoint &second);
    void release();
    /// Both fingers in steps from one pair of places to another.
    void slide(const QPoint &first, const QPoint &second, const QPoint &firstEnd, const QPoint &secondEnd);
    void sendGesture(QGesture *gesture);

    QTouchDevice *m_screen = nullptr;
    QPoint m_first, m_second;
    std::unique_ptr<TestEditor> m_editor;
    std::unique_ptr<WatchedView> m_view;
};

void Tst_CanvasGestures::initTestCase() {
    gesturesNeedATouchScreen();
    m_screen = QTest::createTouchDevice(QTouchDevice::TouchScreen);
}

void Tst_CanvasGestures::init() {
    capture::resetWorld();
    m_editor = std::make_unique<TestEditor>();
    capture::load(*m_editor, QStringLiteral("capture"), capture::picture(QSize(1000, 900)));
    m_view = std::make_unique<WatchedView>();
    m_view->resize(400, 300);
    m_view->show();
    m_view->setEditor(m_editor.get());
    QCoreApplication::processEvents();
}

void Tst_CanvasGestures::cleanup() {
    m_view.reset();
    m_editor.reset();
}

void Tst_CanvasGestures::press(const QPoint &first, const QPoint &second) {
    m_first = first;
    m_second = second;
    QTest::touchEvent(m_view->viewport(), m_screen)
        .press(0, first, m_view->viewport())
        .press(1, second, m_view->viewport());
}

void Tst_CanvasGestures::move(const QPoint &first, const QPoint &second) {
    m_first = first;
    m_second = second;
    QTest::touchEvent(m_view->viewport(), m_screen)
        .move(0, first, m_view->viewport())
        .move(1, second, m_view->viewport());
}

void Tst_CanvasGestures::release() {
    QTest::touchEvent(m_view->viewport(), m_screen)
        .release(0, m_first, m_view->viewport())
        .release(1, m_second, m_view->viewport());
}

void Tst_CanvasGestures::slide(const QPoint &first, const QPoint &second, const QPoint &firstEnd,
                               const QPoint &secondEnd) {
    constexpr int Steps = 8;
    for (int i = 1; i <= Steps; ++i)
        move(first + (firstEnd - first) * i / Steps, second + (secondEnd - second) * i / Steps);
}

void Tst_CanvasGestures::sendGesture(QGesture *gesture) {
    QGestureEvent event({gesture});
    QCoreApplication::sendEvent(m_view.get(), &event);
}

void Tst_CanvasGestures::gesturesNeedATouchScreen() {
    // Called before there is one, too.
    const bool expected = m_screen != nullptr;
    const EditorView view;
    QCOMPARE(view.testAttribute(Qt::WA_WState_Created), false);
    QCOMPARE(QScroller::hasScroller(const_cast<EditorView *>(&view)), expected);
}

void Tst_CanvasGestures::contentsDoNotOvershoot() {
    const QScrollerProperties properties = QScroller::scroller(m_view.get())->scrollerProperties();
    for (const QScrollerProperties::ScrollMetric axis :
         {QScrollerProperties::HorizontalOvershootPolicy, QScrollerProperties::VerticalOvershootPolicy})
        QCOMPARE(properties.scrollMetric(axis).value<QScrollerProperties::OvershootPolicy>(),
                 QScrollerProperties::OvershootAlwaysOff);
}

void Tst_CanvasGestures::twoFingersScroll() {
    m_view->horizontalScrollBar()->setValue(100);
    m_view->verticalScrollBar()->setValue(100);
    press({200, 150}, {240, 150});
    slide({200, 150}, {240, 150}, {120, 70}, {160, 70});
    QVERIFY(!m_view->wheels.isEmpty());
    release();
    QVERIFY(m_view->horizontalScrollBar()->value() > 100);
    QVERIFY(m_view->verticalScrollBar()->value() > 100);
    QCOMPARE(m_view->transform().m11(), 1.0);
}

void Tst_CanvasGestures::panBecomesTwoWheelEvents() {
    QPanGesture pan;
    pan.setLastOffset(QPointF(3, 4));
    pan.setOffset(QPointF(33.9, -20.9)); // by 30.9 and -24.9
    sendGesture(&pan);
    QCOMPARE(m_view->wheels.size(), 2);
    for (const WatchedView::Wheel &wheel : qAsConst(m_view->wheels)) {
        QCOMPARE(wheel.pos, QPoint(0, 0));
        QCOMPARE(wheel.buttons, Qt::MouseButtons(Qt::LeftButton));
    }
    QCOMPARE(m_view->wheels.at(0).delta, QPoint(30, 0));
    QCOMPARE(m_view->wheels.at(0).modifiers, Qt::KeyboardModifiers(Qt::ShiftModifier));
    QCOMPARE(m_view->wheels.at(1).delta, QPoint(0, -24));
    QCOMPARE(m_view->wheels.at(1).modifiers, Qt::KeyboardModifiers(Qt::AltModifier));
}

void Tst_CanvasGestures::spreadFingersEnlarge() {
    press({190, 150}, {210, 150});
    slide({190, 150}, {210, 150}, {140, 150}, {260, 150});
    const double zoom = m_view->transform().m11();
    QVERIFY2(zoom > 1.5, qPrintable(QString::number(zoom)));
    QCOMPARE(zoom, std::round(zoom * 10) / 10);
    slide({140, 150}, {260, 150}, {0, 150}, {390, 150});
    QCOMPARE(m_view->transform().m11(), 4.0);
    release();
    QCOMPARE(m_view->transform().m11(), 4.0);
}

void Tst_CanvasGestures::closedFingersReduce() {
    press({20, 150}, {380, 150});
    slide({20, 150}, {380, 150}, {120, 150}, {280, 150});
    QVERIFY(m_view->transform().m11() < 0.8);
    slide({120, 150}, {280, 150}, {198, 150}, {204, 150});
    QCOMPARE(m_view->transform().m11(), 0.1);
    release();
}

void Tst_CanvasGestures::pinchStartsFromThePresentScale() {
    for (int i = 0; i < 10; ++i)
        m_view->onZoomIn(); // 250 %
    QPinchGesture pinch;
    pinch.setTotalScaleFactor(1.0);
    QCOMPARE(pinch.state(), Qt::NoGesture);
    press({150, 150}, {250, 150});
    // Far enough for a gesture to be seen, and too little for more than a tenth or so.
    slide({150, 150}, {250, 150}, {147, 150}, {253, 150});
    QVERIFY2(m_view->transform().m11() >= 2.4 && m_view->transform().m11() <= 2.9,
             qPrintable(QString::number(m_view->transform().m11())));
    release();
}

void Tst_CanvasGestures::pinchZoom_data() {
    QTest::addColumn<double>("factor");
    QTest::addColumn<double>("zoom");
    QTest::newRow("none") << 1.0 << 1.0;
    QTest::newRow("rounded down") << 1.24 << 1.2;
    QTest::newRow("rounded up") << 1.26 << 1.3;
    QTest::newRow("smallest") << 0.1 << 0.1;
    QTest::newRow("below the smallest") << 0.02 << 0.1;
    QTest::newRow("largest") << 4.0 << 4.0;
    QTest::newRow("above the largest") << 5.5 << 4.0;
}

void Tst_CanvasGestures::pinchZoom() {
    QFETCH(double, factor);
    QTEST(CanvasGestures::pinchZoom(factor), "zoom");
}

void Tst_CanvasGestures::stepTakesTheWholePartOfThePinch() {
    QPinchGesture pinch;
    pinch.setTotalScaleFactor(2.74);
    sendGesture(&pinch);
    QCOMPARE(m_view->transform().m11(), 2.7);
    QCOMPARE(m_editor->zoomStep(), 2);
    m_view->onZoomIn(); // goes on from the view's own step
    QCOMPARE(m_view->transform().m11(), 1.15);
    pinch.setTotalScaleFactor(2.74);
    sendGesture(&pinch);
    m_view->setEditor(nullptr);
    m_view->setEditor(m_editor.get());
    QCOMPARE(m_view->transform().m11(), 0.19); // what step 2 stands for
}

void Tst_CanvasGestures::nothingIsDrawnDuringAGesture_data() {
    QTest::addColumn<QPoint>("firstEnd");
    QTest::addColumn<QPoint>("secondEnd");
    QTest::newRow("pan") << QPoint(100, 90) << QPoint(180, 90);
    QTest::newRow("pinch") << QPoint(100, 150) << QPoint(300, 150);
}

void Tst_CanvasGestures::nothingIsDrawnDuringAGesture() {
    QFETCH(QPoint, firstEnd);
    QFETCH(QPoint, secondEnd);
    m_editor->setShape(Editor::Rectangle);
    capture::Mouse mouse(m_view->viewport());
    press({160, 150}, {240, 150});
    slide({160, 150}, {240, 150}, firstEnd, secondEnd);
    // What the first finger began, as the mouse, is gone.
    QVERIFY(!m_editor->canUndo());
    QVERIFY(m_editor->items().isEmpty());
    mouse.drag({{50, 50}, {80, 80}});
    release();
    QVERIFY(!m_editor->canUndo());
    QVERIFY(m_editor->items().isEmpty());
    mouse.drag({{50, 50}, {80, 80}});
    QVERIFY(m_editor->canUndo());
}

void Tst_CanvasGestures::anotherCaptureDuringAGestureIsNotLeftDeaf() {
    m_editor->setShape(Editor::Rectangle);
    press({160, 150}, {240, 150});
    slide({160, 150}, {240, 150}, {100, 90}, {180, 90});
    m_view->setEditor(nullptr);
    release();
    m_view->setEditor(m_editor.get());
    m_editor->setShape(Editor::Rectangle);
    capture::Mouse(m_view->viewport()).drag({{50, 50}, {80, 80}});
    QVERIFY(m_editor->canUndo());
}

void Tst_CanvasGestures::gestureWithoutACaptureDoesNothing() {
    m_view->setEditor(nullptr);
    const QTransform before = m_view->transform();
    QPinchGesture pinch;
    pinch.setTotalScaleFactor(2.0);
    sendGesture(&pinch);
    QPanGesture pan;
    pan.setOffset(QPointF(50, 50));
    sendGesture(&pan);
    QCOMPARE(m_view->transform(), before);
}

QTEST_MAIN(Tst_CanvasGestures)
#include "tst_canvasgestures.moc"
