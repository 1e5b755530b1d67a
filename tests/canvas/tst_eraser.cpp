#include "canvas/capturefixture.h"
#include "canvas/editor.h"
#include "canvas/editorview.h"
#include "canvas/fakeitems.h"
#include "canvas/items/drawingfreehanditem.h"

#include <QRandomGenerator>
#include <QtTest>

/// Which item the eraser takes: the topmost at that point, however many lie elsewhere and whatever came and
/// went before.
class Tst_Eraser : public QObject {
    Q_OBJECT
private slots:
    void init();
    void takesWhatTheToolkitFinds_data();
    void takesWhatTheToolkitFinds();
    void takesTheTopmostStrokeOutsideTheCrop_data();
    void takesTheTopmostStrokeOutsideTheCrop();
    void takesAFinishedText();
    void takesAnItemOfSomebodyElse();
    void itemTakenAwayBySomebodyElseIsForgotten();
    void asksNoItemThatLiesElsewhere();
    void lookForItemsWhileOneJoinsKeepsTheOrder();

private:
    QGraphicsItem *erasedAt(const QPoint &pos);
    void crop(const QRect &rect) { QMetaObject::invokeMethod(m_editor.get(), "onCrop", Q_ARG(QRect, rect)); }
    void drag(Editor::ShapeType tool, const QVector<QPoint> &points);
    void drawSomething(QRandomGenerator &random);
    void writeSomething(QRandomGenerator &random);
    static QPoint somewhere(QRandomGenerator &random) {
        return QPoint(random.bounded(380), random.bounded(280));
    }

    std::unique_ptr<Editor> m_editor;
    std::unique_ptr<EditorView> m_view;
};

void Tst_Eraser::init() {
    capture::resetWorld();
    m_view.reset();
    m_editor = std::make_unique<Editor>();
    capture::load(*m_editor, QStringLiteral("capture"), capture::picture(QSize(380, 280)));
    m_view = std::make_unique<EditorView>();
    m_view->resize(420, 320);
    m_view->show();
    m_view->setEditor(m_editor.get());
}

void Tst_Eraser::drag(Editor::ShapeType tool, const QVector<QPoint> &points) {
    m_editor->setShape(tool);
    QVector<QPoint> places;
    for (const QPoint &point : points)
        places.append(m_view->mapFromScene(point));
    capture::Mouse(m_view->viewport()).drag(places);
}

/// Clicks with the eraser; what was taken comes back to the top of the scene.
QGraphicsItem *Tst_Eraser::erasedAt(const QPoint &pos) {
    m_editor->setShape(Editor::Eraser);
    const QList<QGraphicsItem *> before = m_editor->items();
    capture::Mouse(m_view->viewport()).click(m_view->mapFromScene(pos));
    const QList<QGraphicsItem *> after = m_editor->items();
    for (QGraphicsItem *item : before) {
        if (!after.contains(item)) {
            m_editor->redo();
            return item;
        }
    }
    return nullptr;
}

void Tst_Eraser::drawSomething(QRandomGenerator &random) {
    const auto tool = static_cast<Editor::ShapeType>(Editor::Pen + random.bounded(8));
    drag(tool, {somewhere(random), somewhere(random), somewhere(random)});
}

void Tst_Eraser::writeSomething(QRandomGenerator &random) {
    m_editor->setShape(Editor::Text);
    capture::Mouse(m_view->viewport()).click(m_view->mapFromScene(somewhere(random)));
    QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QStringLiteral("words"));
    QCoreApplication::sendEvent(m_view.get(), &press);
    m_editor->finishCurrentItem(true);
}

void Tst_Eraser::takesWhatTheToolkitFinds_data() {
    QTest::addColumn<QRect>("visible");
    QTest::newRow("whole image") << QRect();
    QTest::newRow("with a crop that comes and goes") << QRect(90, 70, 200, 150);
}

void Tst_Eraser::takesWhatTheToolkitFinds() {
    QFETCH(QRect, visible);
    QRandomGenerator random(11);
    int taken = 0;
    for (int step = 0; step < 250; ++step) {
        switch (random.bounded(8)) {
        case 0:
            m_editor->undo();
            break;
        case 1:
            m_editor->redo();
            break;
        case 2:
        case 3:
            if (m_editor->items().size() < 25)
                drawSomething(random);
            break;
        case 4:
            if (m_editor->items().size() < 25)
                writeSomething(random);
            break;
        case 5:
            crop(m_editor->cropRect().isNull() ? visible : QRect());
            break;
        default:
            break;
        }
        QPoint pos = somewhere(random);
        if (!m_editor->cropRect().isNull())
            pos = visible.center() + (pos - QPoint(190, 140)) / 3;
        const QList<QGraphicsItem *> found = m_editor->items(QRectF(pos.x() - 1, pos.y() - 1, 3, 3),
                                                             Qt::IntersectsItemShape, Qt::DescendingOrder);
        QGraphicsItem *erased = erasedAt(pos);
        QCOMPARE(erased, found.isEmpty() ? nullptr : found.first());
        taken += erased ? 1 : 0;
    }
    QVERIFY2(taken > 30 && taken < 220, qPrintable(QString::number(taken)));
}

void Tst_Eraser::takesTheTopmostStrokeOutsideTheCrop_data() {
    QTest::addColumn<bool>("oneGoneBefore");
    QTest::newRow("of two") << false;
    QTest::newRow("after another was taken back") << true;
}

void Tst_Eraser::takesTheTopmostStrokeOutsideTheCrop() {
    QFETCH(bool, oneGoneBefore);
    QVector<QGraphicsItem *> strokes; // lowest first
    for (int i = 0; i < 6; ++i) {
        const QList<QGraphicsItem *> before = m_editor->items();
        drag(Editor::Pen, {{20, 40}, {60, 40}, {61, 40}});
        for (QGraphicsItem *item : m_editor->items()) {
            if (!before.contains(item))
                strokes.append(item);
        }
    }
    if (oneGoneBefore) {
        drag(Editor::Pen, {{20, 80}, {60, 80}, {61, 80}});
        m_editor->undo();
    }
    crop(QRect(200, 100, 100, 100));
    m_editor->setShape(Editor::Eraser);
    while (!strokes.isEmpty()) {
        capture::Mouse(m_view->viewport()).click(m_view->mapFromScene(QPoint(40, 40)));
        QVERIFY(!m_editor->items().contains(strokes.takeLast()));
        QCOMPARE(m_editor->items().size(), strokes.size());
    }
}

void Tst_Eraser::takesAFinishedText() {
    m_editor->setShape(Editor::Text);
    capture::Mouse(m_view->viewport()).click(m_view->mapFromScene(QPoint(100, 100)));
    auto *text = dynamic_cast<QGraphicsItem *>(m_editor->currentItem());
    QVERIFY(text);
    QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QStringLiteral("word"));
    QCoreApplication::sendEvent(m_view.get(), &press);
    text->moveBy(120, 60); // as the border moves it
    m_editor->finishCurrentItem(true);
    QCOMPARE(erasedAt(QPoint(100, 100)), nullptr);
    QCOMPARE(erasedAt(QPoint(230, 160)), text);
}

void Tst_Eraser::takesAnItemOfSomebodyElse() {
    drag(Editor::Rectangle, {{20, 20}, {90, 90}, {91, 91}});
    auto *other = new QGraphicsRectItem(50, 50, 40, 40);
    m_editor->addItem(other);
    QCOMPARE(erasedAt(QPoint(60, 60)), other);
}

void Tst_Eraser::itemTakenAwayBySomebodyElseIsForgotten() {
    drag(Editor::Rectangle, {{20, 20}, {90, 90}, {91, 91}});
    delete m_editor->items().first();
    QCOMPARE(erasedAt(QPoint(60, 60)), nullptr);
}

void Tst_Eraser::asksNoItemThatLiesElsewhere() {
    TestEditor editor;
    capture::load(editor, QStringLiteral("other"), capture::picture(QSize(1000, 280)));
    m_view->resize(1020, 320);
    m_view->setEditor(&editor);
    capture::Mouse mouse(m_view->viewport());
    const auto at = [this](int x, int y) { return m_view->mapFromScene(QPoint(x, y)); };
    editor.setShape(Editor::Rectangle);
    mouse.drag({at(800, 100), at(850, 150), at(860, 160)});
    const FakeFigure &distant = *editor.figure;
    editor.setShape(Editor::Eraser);
    mouse.press(at(100, 100));
    QCoreApplication::processEvents();
    const int questions = distant.questions;
    for (int x = 105; x <= 150; x += 5)
        mouse.move(at(x, 100));
    QCOMPARE(distant.questions, questions);
    mouse.move(at(830, 130));
    QVERIFY(!editor.items().contains(editor.figure));
    mouse.release(at(830, 130));
    m_view->setEditor(nullptr);
}

void Tst_Eraser::lookForItemsWhileOneJoinsKeepsTheOrder() {
    // As a paint would that the popup of a text, which comes as soon as the text does, brings about.
    connect(m_editor.get(), &Editor::moveTextItem, m_view.get(),
            [this] { m_editor->itemsNear(QRectF(0, 0, 380, 280)); });
    m_editor->setShape(Editor::Text);
    capture::Mouse(m_view->viewport()).click(m_view->mapFromScene(QPoint(100, 100)));
    auto *text = dynamic_cast<QGraphicsItem *>(m_editor->currentItem());
    QVERIFY(text);
    QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QStringLiteral("word"));
    QCoreApplication::sendEvent(m_view.get(), &press);
    m_editor->finishCurrentItem(true);
    drag(Editor::Line, {{90, 100}, {200, 100}, {201, 100}});
    QGraphicsItem *line = m_editor->items().last(); // in the order in which they came
    QVERIFY(line != text);
    QCOMPARE(m_editor->itemsNear(QRectF(120, 99, 3, 3)), (QVector<QGraphicsItem *>{line, text}));
    QCOMPARE(erasedAt(QPoint(121, 100)), line);
}

QTEST_MAIN(Tst_Eraser)
#include "tst_eraser.moc"
