#include "canvas/capturefixture.h"
#include "canvas/editorview.h"
#include "canvas/items/drawingmosaicitem.h"
#include "canvas/items/mosaicsnapshot.h"
#include "canvas/plainpixelate.h"
#include "preferences/tindrapreferences.h"
#include "support/imagecompare.h"

#include <QPainter>
#include <QThreadPool>
#include <QtConcurrent>
#include <QtTest>

#include <condition_variable>
#include <memory>
#include <mutex>

namespace {

const QRectF Canvas(0, 0, 120, 90);
const QRgb FrameColor = qRgb(0, 127, 245);

QImage pixelated(QImage image, int block) {
    plainPixelate(image, image.rect(), block);
    return image;
}

/// `below` with that part of `over` on it.
QImage patched(QImage below, const QImage &over, const QRect &part) {
    QPainter(&below).drawImage(part.topLeft(), over, part);
    return below;
}

void setStrength(int block) {
    TindraPreferences::instance()->SetInt(TindraPreferences::MosaicStrength, block);
}

void finishJobs() {
    QThreadPool::globalInstance()->waitForDone();
}

/// Keeps the global pool busy while it lives, so that no job of ours begins in it.
///
/// Its end is told by a mutex of the standard library: the thread that was busy takes the next job by a lock
/// that the thread sanitizer cannot see.
class BusyPool {
public:
    BusyPool() : m_threads(QThreadPool::globalInstance()->maxThreadCount()) {
        finishJobs();
        QThreadPool::globalInstance()->setMaxThreadCount(1);
        m_blocker = QtConcurrent::run([this] {
            std::unique_lock<std::mutex> lock(m_mutex);
            m_changed.wait(lock, [this] { return m_free; });
        });
    }
    ~BusyPool() { free(); }
    void free() {
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_free = true;
        }
        m_changed.notify_all();
        m_blocker.waitForFinished();
        QThreadPool::globalInstance()->setMaxThreadCount(m_threads);
    }

private:
    const int m_threads;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_free = false;
    QFuture<void> m_blocker;
};

} // namespace

class Tst_DrawingMosaicItem : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void geometryOfADrag_data();
    void geometryOfADrag();
    void moveIsOneEventBehind();
    void isClippedToTheVisiblePart();
    void besideThePictureNothingIsKeptOrPainted();
    void dragShowsBlocksAndAFrame();
    void releaseKeepsItsPartOnly();
    void releaseWaitsForTheJob();
    void jobsEndReachesARestingMouse();
    void jobOnlyChangesItsOwnPicture();

    void strengthIsThatOfThePress_data();
    void strengthIsThatOfThePress();
    void strengthThatHidesNothingIsMedium_data();
    void strengthThatHidesNothingIsMedium();
    void coversWhatWasDrawnBefore();
    void pixelatesAnEarlierMosaic();
    void isNotTouchedByLaterItems();
    void transparentPixelsStay();
    void snapshotIsTheWholeImageDespiteTheCrop();
    void cropCutsAndItsUndoShowsItWhole();
    void undoAndRedoBringTheSameBlocks();
    void eraserPicksTheWholeRectangle();
    void nothingIsPaintedOutsideTheClip();

    void missingPictureGivesNoBlocks();
    void clickFreesThePictureAfterTheJob();
    void endOfTheEditorWaitsForJobs();

private:
    QPoint on(int x, int y) const { return m_view->mapFromScene(QPointF(x, y)); }
    void drag(const QPoint &from, const QPoint &to);
    DrawingMosaicItem *onlyItem() const;
    QImage flat() { return m_editor->flatten(true, true).toImage().convertToFormat(QImage::Format_RGB32); }

    QImage m_picture;
    std::unique_ptr<Editor> m_editor;
    std::unique_ptr<EditorView> m_view;
    std::unique_ptr<capture::Mouse> m_mouse;
};

void Tst_DrawingMosaicItem::init() {
    capture::resetWorld();
    m_picture = capture::picture(Canvas.size().toSize());
    m_editor = std::make_unique<Editor>();
    capture::load(*m_editor, QStringLiteral("capture"), m_picture);
    m_view = std::make_unique<EditorView>();
    m_view->resize(200, 160);
    m_view->show();
    m_view->setEditor(m_editor.get());
    m_mouse = std::make_unique<capture::Mouse>(m_view->viewport());
    m_editor->setShape(Editor::Mosaic);
}

void Tst_DrawingMosaicItem::cleanup() {
    m_view.reset();
    m_editor.reset();
    finishJobs();
}

void Tst_DrawingMosaicItem::drag(const QPoint &from, const QPoint &to) {
    m_mouse->drag({on(from.x(), from.y()), on(to.x(), to.y())});
}

DrawingMosaicItem *Tst_DrawingMosaicItem::onlyItem() const {
    const QList<QGraphicsItem *> items = m_editor->items();
    return items.size() == 1 ? dynamic_cast<DrawingMosaicItem *>(items.first()) : nullptr;
}

void Tst_DrawingMosaicItem::geometryOfADrag_data() {
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<bool>("shift");
    QTest::addColumn<QRectF>("rect");
    // Two pixels more on each side than the drag spans.
    QTest::newRow("down right") << QPoint(80, 50) << false << QRectF(48, 38, 34, 14);
    QTest::newRow("up left") << QPoint(20, 30) << false << QRectF(18, 28, 34, 14);
    QTest::newRow("level") << QPoint(80, 40) << false << QRectF(48, 38, 34, 5);
    QTest::newRow("upright") << QPoint(50, 60) << false << QRectF(48, 38, 5, 24);
    QTest::newRow("no size") << QPoint(50, 40) << false << QRectF(48, 38, 5, 5);
    QTest::newRow("Shift") << QPoint(80, 50) << true << QRectF(48, 38, 14, 14);
    QTest::newRow("Shift, up left") << QPoint(20, 32) << true << QRectF(40, 30, 12, 12);
}

void Tst_DrawingMosaicItem::geometryOfADrag() {
    QFETCH(QPoint, to);
    QFETCH(bool, shift);
    QFETCH(QRectF, rect);
    DrawingMosaicItem item(Canvas, nullptr, QPixmap::fromImage(m_picture));
    QCOMPARE(item.drawStart({50, 40}), QRectF(46, 36, 8, 8));
    QCOMPARE(item.itemRect(), QRectF(48, 38, 4, 4));
    item.drawMove({50, 40}, to, shift);
    QVERIFY(item.shape().isEmpty());
    const QRectF reported = item.drawEnd(to, to, shift);
    QCOMPARE(item.itemRect(), rect);
    QCOMPARE(reported, rect.adjusted(-2, -2, 2, 2));
    QCOMPARE(item.shape().boundingRect(), rect);
    QCOMPARE(QRectF(item.image().rect()), QRectF(QPointF(), rect.size()));
}

void Tst_DrawingMosaicItem::moveIsOneEventBehind() {
    DrawingMosaicItem item(Canvas, nullptr, QPixmap::fromImage(m_picture));
    item.drawStart({20, 20});
    item.drawMove({60, 30}, {90, 70}, false);
    QCOMPARE(item.itemRect(), QRectF(18, 18, 44, 14));
    item.drawMove({60, 30}, {90, 70}, true);
    QCOMPARE(item.itemRect(), QRectF(18, 18, 14, 14));
    item.drawEnd({90, 70}, {90, 70}, false);
    QCOMPARE(item.itemRect(), QRectF(18, 18, 74, 54));
}

void Tst_DrawingMosaicItem::isClippedToTheVisiblePart() {
    DrawingMosaicItem item(QRectF(10, 10, 50, 40), nullptr, QPixmap::fromImage(m_picture));
    item.drawStart({30, 30});
    item.drawMove({30, 30}, {110, 80}, false);
    item.drawEnd({110, 80}, {110, 80}, false);
    QCOMPARE(item.itemRect(), QRectF(28, 28, 32, 22));
    QCOMPARE(item.image().size(), QSize(32, 22));
}

void Tst_DrawingMosaicItem::besideThePictureNothingIsKeptOrPainted() {
    m_mouse->press(on(-60, -60));
    m_mouse->move(on(-30, -30));
    m_mouse->move(on(-20, -20));
    DrawingMosaicItem *item = onlyItem();
    QVERIFY(item);
    finishJobs();
    QImage image = m_picture;
    QPainter painter(&image);
    item->paint(&painter, nullptr, nullptr);
    painter.end();
    COMPARE_IMAGES(image, m_picture, "dragged");
    // Each paint of the drag asks for that.
    QVERIFY(item->snapshot().lock()->copy(item->itemRect().toRect()).isNull());
    m_mouse->release(on(-20, -20));
    QVERIFY(item->image().isNull());
    COMPARE_IMAGES(flat(), m_picture, "released");
    QVERIFY(m_editor->canUndo()); // a step like any other
    m_editor->undo();
    QVERIFY(!m_editor->canUndo());
}

void Tst_DrawingMosaicItem::dragShowsBlocksAndAFrame() {
    DrawingMosaicItem item(Canvas, nullptr, QPixmap::fromImage(m_picture));
    item.drawStart({30, 20});
    item.drawMove({90, 60}, {90, 60}, false);
    finishJobs();
    QImage shown = m_picture;
    QPainter painter(&shown);
    item.paint(&painter, nullptr, nullptr);
    painter.end();
    const QRect rect(28, 18, 64, 44);
    QImage expected = patched(m_picture, pixelated(m_picture, 6), rect);
    // A line one pixel wide along the border, on its right and lower side.
    for (int x = rect.left(); x <= rect.right() + 1; ++x) {
        expected.setPixel(x, rect.top(), FrameColor);
        expected.setPixel(x, rect.bottom() + 1, FrameColor);
    }
    for (int y = rect.top(); y <= rect.bottom() + 1; ++y) {
        expected.setPixel(rect.left(), y, FrameColor);
        expected.setPixel(rect.right() + 1, y, FrameColor);
    }
    COMPARE_IMAGES(shown, expected, "drag");
}

void Tst_DrawingMosaicItem::releaseKeepsItsPartOnly() {
    drag({30, 20}, {90, 60});
    COMPARE_IMAGES(flat(), patched(m_picture, pixelated(m_picture, 6), QRect(28, 18, 64, 44)), "released");
    QVERIFY(onlyItem());
    QCOMPARE(onlyItem()->image().size(), QSize(64, 44));
    QTRY_VERIFY(onlyItem()->snapshot().expired());
}

void Tst_DrawingMosaicItem::releaseWaitsForTheJob() {
    BusyPool busy;
    drag({30, 20}, {90, 60});
    COMPARE_IMAGES(flat(), patched(m_picture, pixelated(m_picture, 6), QRect(28, 18, 64, 44)), "at once");
}

void Tst_DrawingMosaicItem::jobsEndReachesARestingMouse() {
    BusyPool busy;
    m_mouse->press(on(30, 20));
    m_mouse->move(on(90, 60));
    m_mouse->move(on(90, 61));
    const auto inside = [this] {
        const QImage shown = m_view->viewport()->grab().toImage();
        return shown.copy(QRect(on(40, 30), QSize(20, 20))).convertToFormat(QImage::Format_RGB32);
    };
    COMPARE_IMAGES(inside(), m_picture.copy(40, 30, 20, 20), "not yet");
    busy.free();
    const QImage expected = pixelated(m_picture, 6).copy(40, 30, 20, 20);
    QTRY_VERIFY(inside() == expected);
}

void Tst_DrawingMosaicItem::jobOnlyChangesItsOwnPicture() {
    m_mouse->press(on(30, 20));
    finishJobs();
    COMPARE_IMAGES(m_editor->flatten(false, true).toImage(), m_picture, "capture");
}

void Tst_DrawingMosaicItem::strengthIsThatOfThePress_data() {
    QTest::addColumn<int>("block");
    QTest::newRow("weak") << 4;
    QTest::newRow("medium") << 6;
    QTest::newRow("strong") << 9;
}

void Tst_DrawingMosaicItem::strengthIsThatOfThePress() {
    QFETCH(int, block);
    const QImage coarse = pixelated(m_picture, block);
    setStrength(block);
    drag({10, 10}, {50, 40});
    setStrength(13);
    QImage expected = patched(m_picture, coarse, QRect(8, 8, 44, 34));
    COMPARE_IMAGES(flat(), expected, "first");
    drag({70, 50}, {100, 70});
    expected = patched(expected, pixelated(expected, 13), QRect(68, 48, 34, 24));
    COMPARE_IMAGES(flat(), expected, "two sizes in one image");
}

void Tst_DrawingMosaicItem::strengthThatHidesNothingIsMedium_data() {
    QTest::addColumn<int>("stored");
    QTest::addColumn<int>("block");
    QTest::newRow("negative") << -9 << 6;
    QTest::newRow("zero") << 0 << 6;
    QTest::newRow("one pixel") << 1 << 6;
    QTest::newRow("weaker than all that is offered") << 3 << 6;
    QTest::newRow("between two that are offered") << 5 << 5;
    QTest::newRow("the largest that can be summed") << 4104 << 4104;
    QTest::newRow("larger") << 4105 << 6;
}

void Tst_DrawingMosaicItem::strengthThatHidesNothingIsMedium() {
    QFETCH(int, stored);
    QFETCH(int, block);
    setStrength(stored);
    drag({10, 10}, {50, 40});
    const QImage expected = patched(m_picture, pixelated(m_picture, block), QRect(8, 8, 44, 34));
    COMPARE_IMAGES(flat(), expected, "mosaic");
}

void Tst_DrawingMosaicItem::coversWhatWasDrawnBefore() {
    auto &preferences = *TindraPreferences::instance();
    preferences.SetInt(TindraPreferences::FigureLineColor, TindraPreferences::colorToInt(Qt::red));
    preferences.SetInt(TindraPreferences::FigureFillColor, TindraPreferences::colorToInt(Qt::red));
    m_editor->setShape(Editor::Rectangle);
    drag({40, 30}, {61, 53});
    const QImage before = flat();
    QCOMPARE(before.pixelColor(50, 40), QColor(Qt::red));
    m_editor->setShape(Editor::Mosaic);
    drag({20, 10}, {90, 70});
    COMPARE_IMAGES(flat(), patched(before, pixelated(before, 6), QRect(18, 8, 74, 64)), "covered");
}

void Tst_DrawingMosaicItem::pixelatesAnEarlierMosaic() {
    drag({20, 10}, {70, 50});
    const QImage once = flat();
    setStrength(9);
    drag({40, 30}, {90, 70});
    COMPARE_IMAGES(flat(), patched(once, pixelated(once, 9), QRect(38, 28, 54, 44)), "twice");
}

void Tst_DrawingMosaicItem::isNotTouchedByLaterItems() {
    drag({20, 10}, {90, 70});
    const QImage blocks = flat();
    m_editor->setShape(Editor::Rectangle);
    drag({40, 30}, {60, 50});
    QVERIFY(flat() != blocks);
    m_editor->undo();
    COMPARE_IMAGES(flat(), blocks, "as before");
}

void Tst_DrawingMosaicItem::transparentPixelsStay() {
    QImage picture(40, 30, QImage::Format_ARGB32_Premultiplied);
    picture.fill(QColor(200, 100, 50));
    for (int y = 0; y < 30; ++y)
        picture.setPixel(y % 7 + 10, y, 0);
    DrawingMosaicItem item(QRectF(0, 0, 40, 30), nullptr, QPixmap::fromImage(picture));
    item.drawStart({5, 5});
    item.drawEnd({30, 25}, {30, 25}, false);
    COMPARE_IMAGES(item.image(), picture.copy(3, 3, 29, 24), "holes"); // one colour, and what is not there
}

void Tst_DrawingMosaicItem::snapshotIsTheWholeImageDespiteTheCrop() {
    const QRect crop(13, 11, 60, 50);
    QVERIFY(QMetaObject::invokeMethod(m_editor.get(), "onCrop", Q_ARG(QRect, crop)));
    drag({20, 20}, {50, 40});
    // The grid is that of the whole image, not of the crop.
    COMPARE_IMAGES(flat(), patched(m_picture, pixelated(m_picture, 6), QRect(18, 18, 34, 24)), "grid");
}

void Tst_DrawingMosaicItem::cropCutsAndItsUndoShowsItWhole() {
    drag({20, 20}, {90, 70});
    const QImage whole = flat();
    const auto crop = [this](const QRect &rect) {
        QVERIFY(QMetaObject::invokeMethod(m_editor.get(), "onCrop", Q_ARG(QRect, rect)));
    };
    const QRect part(50, 30, 60, 50);
    crop(part);
    const QImage cut = m_editor->flatten(true, false).toImage().convertToFormat(QImage::Format_RGB32);
    COMPARE_IMAGES(cut, whole.copy(part), "cropped");
    COMPARE_IMAGES(flat(), patched(m_picture, whole, part), "nothing outside");
    QVERIFY(part.contains(onlyItem()->shape().boundingRect().toRect()));
    crop(QRect());
    COMPARE_IMAGES(flat(), whole, "whole again");
}

void Tst_DrawingMosaicItem::undoAndRedoBringTheSameBlocks() {
    drag({20, 20}, {90, 70});
    const QImage blocks = flat();
    m_editor->undo();
    COMPARE_IMAGES(flat(), m_picture, "undone");
    m_editor->redo();
    COMPARE_IMAGES(flat(), blocks, "redone");
}

void Tst_DrawingMosaicItem::eraserPicksTheWholeRectangle() {
    drag({20, 20}, {90, 70});
    m_editor->setShape(Editor::Eraser);
    m_mouse->click(on(14, 40));
    QVERIFY(onlyItem());
    m_mouse->click(on(18, 40));
    QVERIFY(m_editor->items().isEmpty());
    COMPARE_IMAGES(flat(), m_picture, "erased");
}

void Tst_DrawingMosaicItem::nothingIsPaintedOutsideTheClip() {
    const QRect clip(40, 30, 30, 20);
    DrawingMosaicItem item(Canvas, nullptr, QPixmap::fromImage(m_picture));
    item.drawStart({20, 20});
    item.drawMove({90, 70}, {90, 70}, false);
    finishJobs();
    item.onChangeSceneRect(QRectF(clip));
    QImage image = m_picture;
    QPainter painter(&image);
    item.paint(&painter, nullptr, nullptr);
    QVERIFY(!painter.hasClipping());
    painter.end();
    COMPARE_IMAGES(image, patched(m_picture, pixelated(m_picture, 6), clip), "clip");
}

void Tst_DrawingMosaicItem::missingPictureGivesNoBlocks() {
    DrawingMosaicItem item(Canvas, nullptr, QPixmap());
    QVERIFY(item.snapshot().expired());
    item.drawStart({20, 20});
    item.drawMove({20, 20}, {60, 50}, false);
    item.drawEnd({60, 50}, {60, 50}, false);
    QVERIFY(item.image().isNull());
    QImage image = m_picture;
    QPainter painter(&image);
    item.paint(&painter, nullptr, nullptr);
    painter.end();
    COMPARE_IMAGES(image, m_picture, "nothing");
    m_editor->clearImage();
    drag({20, 20}, {60, 50}); // clipped to nothing
    QVERIFY(onlyItem());
    QVERIFY(onlyItem()->boundingRect().isEmpty());
}

void Tst_DrawingMosaicItem::clickFreesThePictureAfterTheJob() {
    BusyPool busy;
    m_mouse->press(on(30, 20));
    const QPointer<DrawingMosaicItem> item = onlyItem();
    QVERIFY(item);
    const std::weak_ptr<const MosaicSnapshot> picture = item->snapshot();
    m_mouse->release(on(30, 20));
    QVERIFY(m_editor->items().isEmpty());
    QVERIFY(!m_editor->canUndo());
    QVERIFY(!picture.expired()); // the job has it
    busy.free();
    QTRY_VERIFY(picture.expired());
    QVERIFY(item);
}

void Tst_DrawingMosaicItem::endOfTheEditorWaitsForJobs() {
    BusyPool busy;
    m_mouse->press(on(30, 20));
    const std::weak_ptr<const MosaicSnapshot> dragged = onlyItem()->snapshot();
    m_mouse->release(on(30, 20));
    m_mouse->press(on(40, 20));
    const std::weak_ptr<const MosaicSnapshot> clicked = onlyItem()->snapshot();
    // No thread is free for the jobs, so waiting for them means to do them.
    m_view.reset();
    m_editor.reset();
    QVERIFY(dragged.expired());
    QVERIFY(clicked.expired());
}

QTEST_MAIN(Tst_DrawingMosaicItem)
#include "tst_drawingmosaicitem.moc"
