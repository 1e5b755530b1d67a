#include "canvas/capturefixture.h"
#include "canvas/fakeitems.h"

#include <QGraphicsSceneMouseEvent>
#include <QPointer>
#include <QRandomGenerator>
#include <QtTest>

#include <memory>

namespace {

const QSize ImageSize(200, 140);
constexpr int Sessions = 200;
constexpr int StepsPerSession = 40;
/// The property by which an item is known again: another one may get its address.
constexpr const char *Number = "number";

void send(Editor &editor, QEvent::Type type, const QPoint &pos) {
    QGraphicsSceneMouseEvent event(type);
    event.setScenePos(pos);
    event.setButton(type == QEvent::GraphicsSceneMouseMove ? Qt::NoButton : Qt::LeftButton);
    event.setButtons(type == QEvent::GraphicsSceneMouseRelease ? Qt::NoButton : Qt::LeftButton);
    QCoreApplication::sendEvent(&editor, &event);
}

void click(Editor &editor, const QPoint &pos) {
    send(editor, QEvent::GraphicsSceneMousePress, pos);
    send(editor, QEvent::GraphicsSceneMouseRelease, pos);
}

void drag(Editor &editor, const QPoint &from, const QPoint &to) {
    send(editor, QEvent::GraphicsSceneMousePress, from);
    send(editor, QEvent::GraphicsSceneMouseMove, to);
    send(editor, QEvent::GraphicsSceneMouseRelease, to);
}

/// That joined the scene last.
QObject *newest(const Editor &editor) {
    return dynamic_cast<QObject *>(editor.items().last());
}

/// What a reset is: as many undos as there are items.
void resetByUndo(Editor &editor) {
    const int count = editor.items().size();
    for (int i = 0; i < count; ++i)
        editor.undo();
}

/// An editor with what can be seen and heard of it.
class Side {
public:
    using Reset = void (*)(Editor &);

    explicit Side(Reset way) : m_reset(way) {
        capture::load(m_editor, QStringLiteral("capture"), capture::picture(ImageSize));
        QObject::connect(&m_editor, &Editor::changeSceneRect, [this](const QRectF &rect) {
            hear(QStringLiteral("clip %1x%2").arg(rect.width()).arg(rect.height()));
        });
        QObject::connect(&m_editor, &Editor::updateImageSize, [this] { hear(QStringLiteral("size")); });
        QObject::connect(&m_editor, &Editor::changedShape, [this] { hear(QStringLiteral("tool")); });
        QObject::connect(&m_editor, &Editor::finishCropItem,
                         [this] { hear(QStringLiteral("frame closed")); });
        QObject::connect(&m_editor, &Editor::finishTextItem, [this] { hear(QStringLiteral("text closed")); });
    }

    Editor &editor() { return m_editor; }
    void reset() { m_reset(m_editor); }
    void step(QRandomGenerator &random);
    QStringList heard() const { return m_heard; }
    /// The items that are there, the lowest first, by the order in which they were made, and what can be
    /// done.
    QString state() const {
        QStringList there;
        const QRectF everything(QPoint(-500, -500), QSize(2000, 2000));
        for (QGraphicsItem *item :
             m_editor.items(everything, Qt::IntersectsItemBoundingRect, Qt::AscendingOrder))
            there.append(dynamic_cast<QObject *>(item)->property(Number).toString());
        const QRect crop = m_editor.cropRect();
        return QStringLiteral("%1 | %2 %3 | %4x%5")
            .arg(there.join(QLatin1Char(' ')))
            .arg(m_editor.canUndo())
            .arg(m_editor.canRedo())
            .arg(crop.width())
            .arg(crop.height());
    }

private:
    void hear(const QString &what) {
        m_heard.append(QStringLiteral("%1 beside %2, %3 %4")
                           .arg(what)
                           .arg(m_editor.items().size())
                           .arg(m_editor.canUndo())
                           .arg(m_editor.canRedo()));
    }
    void crop(QRandomGenerator &random);
    void text(QRandomGenerator &random);

    Reset m_reset;
    int m_made = 0;
    QStringList m_heard;
    TestEditor m_editor; // its end is heard too
};

QPoint place(QRandomGenerator &random) {
    const int x = random.bounded(ImageSize.width());
    return QPoint(x, random.bounded(ImageSize.height()));
}

void Side::crop(QRandomGenerator &random) {
    m_editor.setShape(Editor::Crop);
    m_editor.startCrop();
    const int width = random.bounded(20, ImageSize.width());
    m_editor.crop->frame = QRect(0, 0, width, random.bounded(20, ImageSize.height()));
    // Else it stays open for whatever comes.
    if (random.bounded(4) > 0)
        m_editor.finishCurrentItem(random.bounded(4) > 0);
}

void Side::text(QRandomGenerator &random) {
    m_editor.setShape(Editor::Text);
    click(m_editor, place(random));
    if (random.bounded(4) > 0)
        m_editor.finishCurrentItem(random.bounded(4) > 0);
}

void Side::step(QRandomGenerator &random) {
    constexpr Editor::ShapeType tools[] = {Editor::Pen, Editor::Line, Editor::Rectangle};
    const int dice = random.bounded(100);
    if (dice < 55) {
        m_editor.setShape(tools[random.bounded(3)]);
        const QPoint from = place(random);
        drag(m_editor, from, place(random));
    } else if (dice < 65) {
        crop(random);
    } else if (dice < 72) {
        text(random);
    } else if (dice < 82) {
        m_editor.setShape(Editor::Eraser);
        click(m_editor, place(random));
    } else if (dice < 88) {
        m_editor.undo();
    } else if (dice < 96) {
        m_editor.redo();
    } else {
        reset();
    }
    for (QGraphicsItem *item : m_editor.items(Qt::AscendingOrder)) {
        auto *object = dynamic_cast<QObject *>(item);
        if (!object->property(Number).isValid())
            object->setProperty(Number, ++m_made);
    }
}

} // namespace

class Tst_Reset : public QObject {
    Q_OBJECT
private slots:
    void init() { capture::resetWorld(); }

    void resetDoesWhatAsManyUndosDo();
    void resetOfOpenFrameTakesAllElse();
    void unreachableItemsAreDestroyed_data();
    void unreachableItemsAreDestroyed();
    void itemsTakenBackGoWithTheirEditor();
};

void Tst_Reset::resetDoesWhatAsManyUndosDo() {
    for (quint32 seed = 1; seed <= Sessions; ++seed) {
        Side one([](Editor &editor) { editor.reset(); }), other(resetByUndo);
        QRandomGenerator forOne(seed), forOther(seed);
        for (int i = 0; i < StepsPerSession; ++i) {
            one.step(forOne);
            other.step(forOther);
            QCOMPARE(one.state(), other.state());
        }
        one.reset();
        other.reset();
        for (int left = 2 * StepsPerSession; one.editor().canRedo() && left > 0; --left) {
            QCOMPARE(one.state(), other.state());
            one.editor().redo();
            other.editor().redo();
        }
        QCOMPARE(one.state(), other.state());
        QCOMPARE(one.heard(), other.heard());
    }
}

void Tst_Reset::resetOfOpenFrameTakesAllElse() {
    TestEditor editor;
    capture::load(editor, QStringLiteral("capture"), capture::picture(ImageSize));
    editor.setShape(Editor::Line);
    for (int y : {10, 30, 50})
        drag(editor, {10, y}, {60, y});
    editor.setShape(Editor::Crop);
    editor.startCrop();
    editor.reset();
    QVERIFY(editor.items().isEmpty());
    QCOMPARE(editor.shapeType(), Editor::Line);
    for (int i = 1; i <= 3; ++i) {
        QVERIFY(editor.canRedo());
        editor.redo();
    }
    QCOMPARE(editor.items().size(), 3);
    QVERIFY(!editor.canRedo());
}

void Tst_Reset::unreachableItemsAreDestroyed_data() {
    QTest::addColumn<QString>("way");
    QTest::newRow("undone one by one") << QStringLiteral("undo");
    QTest::newRow("reset") << QStringLiteral("reset");
    QTest::newRow("erased") << QStringLiteral("erase");
    QTest::newRow("back and gone again") << QStringLiteral("again");
}

void Tst_Reset::unreachableItemsAreDestroyed() {
    QFETCH(QString, way);
    TestEditor editor;
    capture::load(editor, QStringLiteral("capture"), capture::picture(ImageSize));
    QVector<QPointer<QObject>> items;
    editor.setShape(Editor::Line);
    for (int y : {10, 30, 50, 70}) {
        drag(editor, {10, y}, {60, y});
        items.append(newest(editor));
    }
    if (way == QLatin1String("reset") || way == QLatin1String("again"))
        editor.reset();
    if (way == QLatin1String("again")) {
        editor.redo();
        editor.redo();
        editor.undo();
    }
    for (int i = 0; i < 2 && way == QLatin1String("undo"); ++i)
        editor.undo();
    if (way == QLatin1String("erase")) {
        editor.setShape(Editor::Eraser);
        for (int y : {30, 10})
            click(editor, {30, y});
    }
    QSet<QObject *> stay;
    for (QGraphicsItem *item : editor.items())
        stay.insert(dynamic_cast<QObject *>(item));
    for (const QPointer<QObject> &item : items)
        QVERIFY(item);
    editor.setShape(Editor::Line);
    drag(editor, {10, 90}, {60, 90});
    int left = 0;
    for (const QPointer<QObject> &item : items) {
        QCOMPARE(!item.isNull(), stay.contains(item));
        left += !item.isNull();
    }
    QCOMPARE(left, stay.size());
}

void Tst_Reset::itemsTakenBackGoWithTheirEditor() {
    auto editor = std::make_unique<TestEditor>();
    capture::load(*editor, QStringLiteral("capture"), capture::picture(ImageSize));
    QVector<QPointer<QObject>> items;
    editor->setShape(Editor::Line);
    for (int y : {10, 30, 50}) {
        drag(*editor, {10, y}, {60, y});
        items.append(newest(*editor));
    }
    editor->reset();
    editor->redo();
    editor.reset();
    for (const QPointer<QObject> &item : items)
        QVERIFY(!item);
}

QTEST_MAIN(Tst_Reset)
#include "tst_reset.moc"
