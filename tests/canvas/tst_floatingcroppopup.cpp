#include "canvas/capturefixture.h"
#include "canvas/cropplacement.h"
#include "canvas/floatingcroppopup.h"
#include "canvas/items/drawingcropitem.h"
#include "canvas/scaledview.h"
#include "popups/croppopup.h"

#include <QScrollBar>
#include <QWheelEvent>
#include <QtTest>

Q_DECLARE_METATYPE(std::function<void()>)

/// The popup over the view: where it stands, and when it is there at all.
class Tst_FloatingCropPopup : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void belongsToTheView();
    void staysAtTheFrame_data();
    void staysAtTheFrame();
    void gapIsTheSameAtEachScale_data();
    void gapIsTheSameAtEachScale();
    void barsTakeRoom();
    void comesAndGoesWithTheView();
    void staysAwayWithoutACrop();
    void keyLeadsInAndBack();

private:
    void open(const QSize &image, const QSize &view);
    CropPopup *popup() const { return m_view->findChild<CropPopup *>(); }
    QPoint expectedPlace() const;
    void wheel(Qt::KeyboardModifiers modifiers);

    std::unique_ptr<Editor> m_editor;
    std::unique_ptr<EditorView> m_view;
    QPointer<DrawingCropItem> m_item;
};

void Tst_FloatingCropPopup::init() {
    capture::resetWorld();
    m_editor = std::make_unique<Editor>();
    connect(m_editor.get(), &Editor::createCropItem, this, [this](DrawingCropItem *item) { m_item = item; });
    m_view = std::make_unique<EditorView>();
    m_view->setFrameShape(QFrame::NoFrame);
}

void Tst_FloatingCropPopup::cleanup() {
    m_view.reset();
    m_editor.reset();
}

void Tst_FloatingCropPopup::open(const QSize &image, const QSize &view) {
    capture::load(*m_editor, QStringLiteral("capture"), capture::picture(image));
    m_view->resize(view);
    m_view->move(40, 30);
    m_view->show();
    m_view->setEditor(m_editor.get());
    QCoreApplication::processEvents();
    m_editor->setShape(Editor::Crop);
    m_editor->startCrop();
    QCoreApplication::processEvents();
}

QPoint Tst_FloatingCropPopup::expectedPlace() const {
    const QPoint corner =
        m_view->viewport()->mapToGlobal(m_view->mapFromScene(m_item->frame().bottomRight()));
    const auto room = [](const QScrollBar *bar, int size) { return bar->isVisible() ? size : 0; };
    const QSize bars(room(m_view->verticalScrollBar(), m_view->verticalScrollBar()->width()),
                     room(m_view->horizontalScrollBar(), m_view->horizontalScrollBar()->height()));
    return cropPopupPlace(corner, popup()->size(), QRect(m_view->mapToGlobal(QPoint()), m_view->size()),
                          bars);
}

void Tst_FloatingCropPopup::wheel(Qt::KeyboardModifiers modifiers) {
    const QPointF pos(20, 20);
    QWheelEvent event(pos, m_view->viewport()->mapToGlobal(pos.toPoint()), QPoint(), QPoint(0, -120),
                      Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(m_view->viewport(), &event);
}

void Tst_FloatingCropPopup::belongsToTheView() {
    const QPointer<CropPopup> panel = popup();
    QVERIFY(panel);
    QVERIFY(panel->isWindow());
    QVERIFY(!panel->isVisible());
    m_view.reset();
    QVERIFY(!panel);
}

void Tst_FloatingCropPopup::staysAtTheFrame_data() {
    QTest::addColumn<std::function<void()>>("change");
    const auto row = [](const char *name, const std::function<void()> &change) {
        QTest::newRow(name) << change;
    };
    row("opened", [] {});
    row("frame made smaller", [this] {
        capture::Mouse(m_view->viewport())
            .drag({m_view->mapFromScene(599, 399), m_view->mapFromScene(400, 200)});
    });
    row("frame moved", [this] {
        QSize size(300, 200);
        emit popup()->sizeChanged(size);
        capture::Mouse(m_view->viewport())
            .drag({m_view->mapFromScene(150, 100), m_view->mapFromScene(250, 160)});
    });
    row("size typed", [this] {
        QSize size(320, 210);
        emit popup()->sizeChanged(size);
    });
    row("zoomed in", [this] { m_view->onZoomIn(); });
    row("zoomed out", [this] {
        for (int i = 0; i < 8; ++i)
            m_view->onZoomOut();
    });
    row("zoomed by the wheel", [this] { wheel(Qt::ControlModifier); });
    for (const Qt::KeyboardModifiers modifiers :
         {Qt::KeyboardModifiers(Qt::NoModifier), Qt::KeyboardModifiers(Qt::ShiftModifier),
          Qt::KeyboardModifiers(Qt::AltModifier)}) {
        QTest::addRow("scrolled by the wheel, modifiers %x", int(modifiers))
            << std::function<void()>([this, modifiers] {
                   QSize size(220, 80);
                   emit popup()->sizeChanged(size);
                   for (int i = 0; i < 12; ++i)
                       m_view->onZoomIn();
                   m_view->horizontalScrollBar()->setValue(0);
                   m_view->verticalScrollBar()->setValue(0);
                   m_view->onMoveMainWindow();
                   const QPoint before = popup()->pos();
                   wheel(modifiers);
                   QVERIFY(popup()->pos() != before);
               });
    }
    row("view made smaller", [this] { m_view->resize(620, 420); });
    row("window moved", [this] {
        m_view->move(90, 70);
        m_view->onMoveMainWindow();
    });
}

void Tst_FloatingCropPopup::staysAtTheFrame() {
    QFETCH(std::function<void()>, change);
    open({600, 400}, {900, 700});
    const QPoint first = popup()->pos();
    QVERIFY(popup()->isVisible());
    capture::RaiseCounter counter;
    popup()->installEventFilter(&counter);
    change();
    QCOMPARE(popup()->pos(), expectedPlace());
    if (qstrcmp(QTest::currentDataTag(), "opened") == 0)
        return;
    QVERIFY(popup()->pos() != first);
    QVERIFY(counter.raises > 0);
}

void Tst_FloatingCropPopup::gapIsTheSameAtEachScale_data() {
    QTest::addColumn<int>("dpi");
    for (const int dpi : {96, 144, 192})
        QTest::addRow("%d DPI", dpi) << dpi;
}

void Tst_FloatingCropPopup::gapIsTheSameAtEachScale() {
    QFETCH(int, dpi);
    auto view = std::make_unique<ScaledView>();
    view->dpi = dpi;
    view->setFrameShape(QFrame::NoFrame);
    m_view = std::move(view);
    open({600, 400}, {1500, 1200});
    QSize size(500, 300);
    emit popup()->sizeChanged(size);
    const QRect frame = m_item->frame();
    const QPoint corner = m_view->viewport()->mapToGlobal(m_view->mapFromScene(frame.bottomRight()));
    QCOMPARE(popup()->pos(), corner + QPoint(-popup()->width(), 10));
}

void Tst_FloatingCropPopup::barsTakeRoom() {
    open({600, 400}, {700, 500});
    for (int i = 0; i < 10; ++i)
        m_view->onZoomIn();
    QCoreApplication::processEvents();
    m_view->onMoveMainWindow();
    QVERIFY(m_view->verticalScrollBar()->isVisible());
    QVERIFY(m_view->horizontalScrollBar()->isVisible());
    // The corner lies far below and to the right: the popup stands in the corner that the bars leave.
    const QPoint bottomRight = m_view->mapToGlobal(QPoint(700, 500));
    QCOMPARE(popup()->pos().x() + popup()->width(), bottomRight.x() - m_view->verticalScrollBar()->width());
    QCOMPARE(popup()->pos().y() + popup()->height(),
             bottomRight.y() - m_view->horizontalScrollBar()->height());
}

void Tst_FloatingCropPopup::comesAndGoesWithTheView() {
    open({600, 400}, {900, 700});
    m_view->hide();
    QVERIFY(!popup()->isVisible());
    QVERIFY(m_item->isOpen());
    popup()->move(0, 0);
    m_view->show();
    QVERIFY(popup()->isVisible());
    QCOMPARE(popup()->pos(), expectedPlace());
}

void Tst_FloatingCropPopup::staysAwayWithoutACrop() {
    open({600, 400}, {900, 700});
    m_editor->finishCurrentItem(true);
    QVERIFY(!popup()->isVisible());
    const QPoint place = popup()->pos();
    m_view->hide();
    m_view->show();
    m_view->onZoomIn();
    m_view->onMoveMainWindow();
    QVERIFY(!popup()->isVisible());
    QCOMPARE(popup()->pos(), place);
}

void Tst_FloatingCropPopup::keyLeadsInAndBack() {
    open({600, 400}, {700, 500});
    m_view->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_view.get()));
    for (int round = 0; round < 2; ++round) {
        QTest::keyClick(m_view.get(), Qt::Key_F6);
        QVERIFY(QTest::qWaitForWindowActive(popup()));
        QTest::keyClick(popup()->focusWidget(), Qt::Key_F6);
        QVERIFY(QTest::qWaitForWindowActive(m_view.get()));
    }
    QVERIFY(m_item->isOpen());
    m_editor->finishCurrentItem(false);
    QVERIFY(!popup()->isVisible());
    QTest::keyClick(m_view.get(), Qt::Key_F6);
    QCoreApplication::processEvents();
    QVERIFY(!popup()->isVisible());
    QVERIFY(m_view->isActiveWindow());
}

QTEST_MAIN(Tst_FloatingCropPopup)
#include "tst_floatingcroppopup.moc"
