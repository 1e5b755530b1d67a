#include "canvas/capturefixture.h"
#include "canvas/editorview.h"
#include "canvas/items/drawingcropitem.h"
#include "popups/croppopup.h"
#include "support/imagecompare.h"

#include <QRandomGenerator>
#include <QtTest>

namespace {

const QSize ImageSize(400, 300);
const QRect Whole(QPoint(), ImageSize);
/// Lines lie on rows of their own, far enough from each other for the eraser.
constexpr int RowHeight = 12;

/// One step as the user sees it: a crop, or a line from `rect`'s left to its right.
struct Step {
    bool isCrop;
    QRect rect;

    bool operator==(const Step &other) const { return isCrop == other.isCrop && rect == other.rect; }
};

/// What there is to see, worked out from the events alone.
struct Model {
    QVector<Step> undo;
    QVector<Step> redo;
    bool open = false;

    QRect crop() const {
        for (int i = undo.size() - 1; i >= 0; --i) {
            if (undo.at(i).isCrop)
                return undo.at(i).rect;
        }
        return QRect();
    }
    /// What is seen of the image.
    QRect visible() const { return open || crop().isNull() ? Whole : crop(); }
    bool takesRow(int y) const {
        const auto isThere = [y](const Step &step) { return !step.isCrop && step.rect.y() == y; };
        return std::any_of(undo.begin(), undo.end(), isThere) ||
               std::any_of(redo.begin(), redo.end(), isThere);
    }
};

} // namespace

/// Lines, crops, their ends, undo, redo, reset, eraser and swaps in any order.
class Tst_CropOrder : public QObject {
    Q_OBJECT
private slots:
    void anyOrder_data();
    void anyOrder();

private:
    QString oneEvent(QRandomGenerator &random);
    void drawLine(QRandomGenerator &random);
    void erase(QRandomGenerator &random);
    void openCrop();
    void dragFrame(QRandomGenerator &random);
    void endCrop(QRandomGenerator &random);
    void undo();
    void check(const QString &when);
    QPoint at(const QPoint &pos) const { return m_view->mapFromScene(pos); }

    QImage m_picture;
    Model m_model;
    std::unique_ptr<Editor> m_other;
    std::unique_ptr<Editor> m_editor;
    std::unique_ptr<EditorView> m_view;
};

void Tst_CropOrder::drawLine(QRandomGenerator &random) {
    const QRect visible = m_model.visible();
    const int y =
        (visible.top() / RowHeight + 1 + random.bounded(qMax(1, visible.height() / RowHeight - 1))) *
        RowHeight;
    if (m_model.takesRow(y) || y + RowHeight / 2 > visible.bottom())
        return;
    const QPoint from(visible.left() + 5, y);
    const QPoint to(visible.right() - 5, y);
    m_editor->setShape(Editor::Line);
    capture::Mouse(m_view->viewport()).drag({at(from), at(to), at(to)});
    m_model.open = false;
    m_model.undo.append({false, QRect(from, to)});
    m_model.redo.clear();
}

void Tst_CropOrder::erase(QRandomGenerator &random) {
    m_editor->setShape(Editor::Eraser);
    m_model.open = false;
    if (m_model.undo.isEmpty())
        return;
    const Step step = m_model.undo.at(random.bounded(m_model.undo.size()));
    // In the middle of what is seen of it.
    const QRect seen = step.rect & m_model.visible();
    if (step.isCrop || seen.width() < 20)
        return;
    const QRect around = QRect(seen.center(), QSize(1, 1)).adjusted(-2, -2, 2, 2);
    if (!m_model.visible().contains(around))
        return;
    capture::Mouse(m_view->viewport()).click(at(seen.center()));
    m_model.undo.removeOne(step);
    m_model.redo.append(step);
}

void Tst_CropOrder::openCrop() {
    m_editor->setShape(Editor::Crop);
    m_editor->startCrop();
    m_model.open = true;
}

void Tst_CropOrder::dragFrame(QRandomGenerator &random) {
    if (!m_model.open)
        return;
    const QRect frame = dynamic_cast<DrawingCropItem *>(m_editor->currentItem())->frame();
    const QPoint from[] = {frame.topLeft(), frame.bottomRight(), frame.center()};
    const QPoint to(random.bounded(ImageSize.width()), random.bounded(ImageSize.height()));
    capture::Mouse(m_view->viewport()).drag({at(from[random.bounded(3)]), at(to)});
}

void Tst_CropOrder::endCrop(QRandomGenerator &random) {
    if (!m_model.open)
        return;
    const QRect frame = dynamic_cast<DrawingCropItem *>(m_editor->currentItem())->frame();
    m_model.open = false;
    const bool accept = random.bounded(3) != 0;
    if (random.bounded(2) != 0)
        m_editor->finishCurrentItem(accept);
    else
        emit m_view->cropped(accept);
    if (accept)
        m_model.undo.append({true, frame});
}

void Tst_CropOrder::undo() {
    m_editor->undo();
    // An open frame is no step yet: Undo closes it.
    if (m_model.open)
        m_model.open = false;
    else if (!m_model.undo.isEmpty())
        m_model.redo.append(m_model.undo.takeLast());
}

QString Tst_CropOrder::oneEvent(QRandomGenerator &random) {
    switch (random.bounded(12)) {
    case 0:
        drawLine(random);
        return QStringLiteral("line");
    case 1:
        erase(random);
        return QStringLiteral("eraser");
    case 2:
    case 3:
    case 4:
        openCrop();
        return QStringLiteral("crop");
    case 5:
        dragFrame(random);
        return QStringLiteral("frame");
    case 6:
    case 7:
        endCrop(random);
        return QStringLiteral("end of crop");
    case 8:
    case 9:
        undo();
        return QStringLiteral("undo");
    case 10:
        // Not offered while a frame is open.
        if (!m_model.open) {
            m_editor->redo();
            if (!m_model.redo.isEmpty())
                m_model.undo.append(m_model.redo.takeLast());
        }
        return QStringLiteral("redo");
    default:
        break;
    }
    if (random.bounded(2) != 0) {
        m_view->setEditor(m_other.get());
        m_view->setEditor(m_editor.get());
        m_model.open = false;
        return QStringLiteral("swap");
    }
    m_editor->reset();
    m_model.open = false;
    while (!m_model.undo.isEmpty())
        m_model.redo.append(m_model.undo.takeLast());
    return QStringLiteral("reset");
}

void Tst_CropOrder::check(const QString &when) {
    QCoreApplication::processEvents();
    const QByteArray message = when.toUtf8();
    const char *text = message.constData();
    QVERIFY2(m_editor->cropRect() == (m_model.open ? Whole : m_model.crop()), text);
    QVERIFY2(m_editor->visibleRect() == m_model.visible(), text);
    QVERIFY2(m_view->sceneRect() == QRectF(m_model.visible()), text);
    QVERIFY2((m_editor->shapeType() == Editor::Crop) == m_model.open, text);
    QVERIFY2(m_view->findChild<CropPopup *>()->isVisible() == m_model.open, text);
    QVERIFY2(m_editor->canRedo() == !m_model.redo.isEmpty(), text);
    QVERIFY2(m_model.open || m_editor->canUndo() == !m_model.undo.isEmpty(), text);
    // One item a step, and two for an open frame: the crop to be and what holds the frame.
    QVERIFY2(m_editor->items().size() == m_model.undo.size() + (m_model.open ? 2 : 0), text);
    const QImage flat = m_editor->flatten(true, false).toImage();
    QVERIFY2(flat.size() == m_model.visible().size(), text);
    const auto isDrawn = [&](const QPoint &pos) {
        return flat.pixel(pos - m_model.visible().topLeft()) != m_picture.pixel(pos);
    };
    for (const Step &step : qAsConst(m_model.undo)) {
        const QRect seen = step.rect & m_model.visible();
        QVERIFY2(step.isCrop || seen.width() < 20 || isDrawn(seen.center()), text);
    }
    for (const Step &step : qAsConst(m_model.redo)) {
        const QRect seen = step.rect & m_model.visible();
        QVERIFY2(step.isCrop || seen.isEmpty() || !isDrawn(seen.center()), text);
    }
}

void Tst_CropOrder::anyOrder_data() {
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 40; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void Tst_CropOrder::anyOrder() {
    QFETCH(quint32, seed);
    capture::resetWorld();
    m_model = Model();
    m_other = std::make_unique<Editor>();
    capture::load(*m_other, QStringLiteral("other"), capture::picture(QSize(90, 70)));
    m_editor = std::make_unique<Editor>();
    // Black: the default line is not.
    m_picture = QImage(ImageSize, QImage::Format_RGB32);
    m_picture.fill(Qt::black);
    capture::load(*m_editor, QStringLiteral("capture"), m_picture);
    m_view = std::make_unique<EditorView>();
    m_view->resize(600, 500);
    m_view->show();
    m_view->setEditor(m_editor.get());
    QRandomGenerator random(seed);
    QStringList events;
    for (int i = 0; i < 100 && !QTest::currentTestFailed(); ++i) {
        events.append(oneEvent(random));
        check(events.join(QStringLiteral(", ")));
    }
    if (QTest::currentTestFailed())
        return;
    m_editor->finishCurrentItem(false);
    m_editor->reset();
    COMPARE_IMAGES(m_editor->flatten(true, false).toImage(), m_picture, "all taken back");
    m_view.reset();
}

QTEST_MAIN(Tst_CropOrder)
#include "tst_croporder.moc"
