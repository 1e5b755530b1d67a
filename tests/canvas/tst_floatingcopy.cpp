#include "canvas/capturefixture.h"
#include "canvas/editorview.h"
#include "canvas/fakeitems.h"
#include "canvas/floatingcopy.h"
#include "support/imagecompare.h"

#include <QLabel>
#include <QPainter>
#include <QtTest>

class Tst_FloatingCopy : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void showsTheFlattenedPicture();
    void pictureFollowsTheWindow();
    void staysAboveAllWithoutAFrame();
    void noPictureMeansNoCopy();
    void endsWithTheCapture();
    void endsByEscape();
    void isMovedByTheMouse();
    void otherButtonsDoNotMoveIt();
    void lastPositionIsSharedByAll();
    void opensByTheShortcutOfTheView();
    void shortcutWithoutACaptureDoesNothing();

private:
    QList<FloatingCopy *> copies() const { return m_parent->findChildren<FloatingCopy *>(); }
    FloatingCopy *open() {
        FloatingCopy::open(m_editor.get(), m_parent.get());
        return copies().last();
    }
    /// True if the window has eaten the event.
    static bool send(QWidget *window, QEvent::Type type, const QPoint &global, Qt::MouseButtons buttons);

    std::unique_ptr<TestEditor> m_editor;
    std::unique_ptr<QWidget> m_parent;
};

void Tst_FloatingCopy::init() {
    capture::resetWorld();
    m_editor = std::make_unique<TestEditor>();
    capture::load(*m_editor, QStringLiteral("capture"), capture::picture(QSize(120, 80)));
    m_parent = std::make_unique<QWidget>();
}

void Tst_FloatingCopy::cleanup() {
    m_parent.reset();
    m_editor.reset();
}

bool Tst_FloatingCopy::send(QWidget *window, QEvent::Type type, const QPoint &global,
                            Qt::MouseButtons buttons) {
    const bool press = type == QEvent::MouseButtonPress;
    QMouseEvent event(type, window->mapFromGlobal(global), global,
                      press ? Qt::MouseButton(int(buttons)) : Qt::NoButton, buttons, Qt::NoModifier);
    return QCoreApplication::sendEvent(window, &event);
}

void Tst_FloatingCopy::showsTheFlattenedPicture() {
    EditorView view;
    view.show();
    view.setEditor(m_editor.get());
    m_editor->setShape(Editor::Rectangle);
    capture::Mouse(view.viewport()).drag({view.mapFromScene(20, 15), view.mapFromScene(50, 40)});
    m_editor->applyCrop(QRect(10, 5, 100, 60));
    FloatingCopy *copy = open();
    QCOMPARE(copy->size(), QSize(100, 60));
    QVERIFY(copy->isVisible());
    QImage expected = capture::picture(QSize(120, 80));
    QPainter(&expected).fillRect(20, 15, 30, 25, Qt::green);
    COMPARE_IMAGES(copy->grab().toImage().convertToFormat(QImage::Format_RGB32),
                   expected.copy(10, 5, 100, 60), "copy");
}

void Tst_FloatingCopy::pictureFollowsTheWindow() {
    FloatingCopy *copy = open();
    const auto *label = copy->findChild<QLabel *>();
    QVERIFY(label->hasScaledContents());
    copy->resize(30, 20); // smaller than the picture
    QCoreApplication::processEvents();
    QCOMPARE(label->geometry(), QRect(0, 0, 30, 20));
}

void Tst_FloatingCopy::staysAboveAllWithoutAFrame() {
    const FloatingCopy *copy = open();
    QVERIFY(copy->windowFlags() & Qt::WindowStaysOnTopHint);
    QVERIFY(copy->windowFlags() & Qt::FramelessWindowHint);
    QVERIFY(copy->isWindow());
    QVERIFY(!copy->isModal());
}

void Tst_FloatingCopy::noPictureMeansNoCopy() {
    m_editor->clearImage();
    FloatingCopy::open(m_editor.get(), m_parent.get());
    QVERIFY(copies().isEmpty());
}

void Tst_FloatingCopy::endsWithTheCapture() {
    const QPointer<FloatingCopy> first = open(), second = open();
    m_editor.reset();
    QVERIFY(!first->isVisible() && !second->isVisible());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!first && !second);
}

void Tst_FloatingCopy::endsByEscape() {
    const QPointer<FloatingCopy> copy = open();
    QTest::keyClick(copy.data(), Qt::Key_Escape);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!copy);
}

void Tst_FloatingCopy::isMovedByTheMouse() {
    FloatingCopy *copy = open();
    copy->move(200, 150);
    QVERIFY(send(copy, QEvent::MouseButtonPress, {220, 170}, Qt::LeftButton));
    QVERIFY(send(copy, QEvent::MouseMove, {225, 160}, Qt::LeftButton));
    QCOMPARE(copy->pos(), QPoint(205, 140));
    QVERIFY(send(copy, QEvent::MouseMove, {226, 162}, Qt::LeftButton));
    QCOMPARE(copy->pos(), QPoint(206, 142));
    // The picture takes no part of the mouse to itself.
    auto *label = copy->findChild<QLabel *>();
    QMouseEvent onPicture(QEvent::MouseMove, label->mapFromGlobal(QPoint(236, 172)), QPoint(236, 172),
                          Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    qApp->notify(label, &onPicture);
    QCOMPARE(copy->pos(), QPoint(216, 152));
}

void Tst_FloatingCopy::otherButtonsDoNotMoveIt() {
    FloatingCopy *copy = open();
    copy->move(200, 150);
    send(copy, QEvent::MouseButtonPress, {220, 170}, Qt::RightButton);
    send(copy, QEvent::MouseMove, {240, 190}, Qt::RightButton);
    send(copy, QEvent::MouseMove, {250, 190}, Qt::NoButton);
    QCOMPARE(copy->pos(), QPoint(200, 150));
}

void Tst_FloatingCopy::lastPositionIsSharedByAll() {
    FloatingCopy *first = open();
    first->move(200, 150);
    FloatingCopy *second = open();
    second->move(10, 20);
    send(first, QEvent::MouseButtonPress, {220, 170}, Qt::LeftButton);
    send(second, QEvent::MouseMove, {223, 171}, Qt::LeftButton);
    QCOMPARE(second->pos(), QPoint(13, 21));
    QCOMPARE(first->pos(), QPoint(200, 150));
}

void Tst_FloatingCopy::opensByTheShortcutOfTheView() {
    EditorView view;
    view.show();
    view.setEditor(m_editor.get());
    view.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&view));
    QTest::keyClick(&view, Qt::Key_F, Qt::ControlModifier | Qt::AltModifier | Qt::ShiftModifier);
    const QList<FloatingCopy *> opened = view.findChildren<FloatingCopy *>();
    QCOMPARE(opened.size(), 1);
    QCOMPARE(opened.first()->size(), QSize(120, 80));
}

void Tst_FloatingCopy::shortcutWithoutACaptureDoesNothing() {
    EditorView view;
    view.show();
    view.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&view));
    QTest::keyClick(&view, Qt::Key_F, Qt::ControlModifier | Qt::AltModifier | Qt::ShiftModifier);
    QVERIFY(view.findChildren<FloatingCopy *>().isEmpty());
}

QTEST_MAIN(Tst_FloatingCopy)
#include "tst_floatingcopy.moc"
