#include "canvas/capturefixture.h"
#include "canvas/imagecropper.h"
#include "canvas/zoomtable.h"
#include "support/imagecompare.h"

#include <QPainter>
#include <QPainterPath>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QtTest>

namespace {

using Region = ImageCropper::CursorPosition;

const QSize ImageSize(400, 300);
const QRect Frame(100, 80, 200, 120); // to (299, 199)

/// The frame as one would put it down first: what is dimmed, the line, the marks.
void plainFrame(QPainter *painter, const QSize &image, const QRect &frame) {
    const auto pen = [](const QColor &color) {
        return QPen(color, 1.0, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin);
    };
    QPainterPath all, line;
    all.addRect(QRect(QPoint(), image));
    const QRect inner = frame.adjusted(0, 0, -1, -1);
    line.addRect(inner);
    painter->fillPath(all.subtracted(line), QColor(0, 0, 0, 127));
    painter->strokePath(line, pen(QColor(0, 127, 245)));
    painter->setPen(pen(QColor(0, 0, 0, 33)));
    painter->setBrush(Qt::white);
    const auto mark = [&](const QPoint &outer, const QPoint &hollow) {
        QPainterPath square, hole;
        square.addRect(QRect(outer, QSize(16, 16)));
        hole.addRect(QRect(hollow, QSize(13, 13)));
        painter->drawPath(square.subtracted(hole));
    };
    const int left = inner.left(), top = inner.top(), right = inner.right(), bottom = inner.bottom();
    mark({left, top}, {left + 4, top + 4});
    mark({right - 15, top}, {right - 16, top + 4});
    mark({left, bottom - 15}, {left + 4, bottom - 16});
    mark({right - 15, bottom - 15}, {right - 16, bottom - 16});
}

/// That rectangle in rectangles of any size, without a gap.
QVector<QRect> cutUp(const QRect &whole, QRandomGenerator &random) {
    QVector<QRect> parts;
    for (int x = whole.left(); x <= whole.right();) {
        const int width = 1 + random.bounded(random.bounded(3) ? 160 : 12);
        for (int y = whole.top(); y <= whole.bottom();) {
            const int height = 1 + random.bounded(random.bounded(3) ? 160 : 12);
            parts.append(QRect(x, y, width, height) & whole);
            y += height;
        }
        x += width;
    }
    return parts;
}

} // namespace

Q_DECLARE_METATYPE(ImageCropper::CursorPosition)

class Tst_ImageCropper : public QObject {
    Q_OBJECT
private slots:
    void init();
    void widgetIsTransparentAndKeepsItsSize();
    void frameAtFirst();
    void regions_data();
    void regions();
    void narrowFrameGivesCornersFirst_data();
    void narrowFrameGivesCornersFirst();
    void cursors_data();
    void cursors();
    void resizing_data();
    void resizing();
    void smallestSideByDrag_data();
    void smallestSideByDrag();

    void dragOfEachRegion_data();
    void dragOfEachRegion();
    void frameStopsAtItsLastLegalSize();
    void frameEndsAtTheImage_data();
    void frameEndsAtTheImage();
    void moveIntoACornerKeepsTheSize_data();
    void moveIntoACornerKeepsTheSize();
    void dragIsMeasuredFromThePress();
    void fractionsAreCutOff();
    void pressOutsideTheFrameDoesNothing();
    void otherButtonsDoNothing();
    void releaseEndsTheDrag();
    void lostReleaseEndsTheDrag();
    void secondQuickPressDrags();
    void handClosesWhileMoving();
    void bandsShowTheirCursors_data();
    void bandsShowTheirCursors();

    void typedSizeKeepsTheTopLeft_data();
    void typedSizeKeepsTheTopLeft();
    void typedSizeKeepsTheCentreInTheWidget();

    void dimsAllButTheFrame();
    void frameLineSurroundsTheFrame();
    void cornerMarks_data();
    void cornerMarks();
    void frameIsTheSameAtEachScaleAndInParts_data();
    void frameIsTheSameAtEachScaleAndInParts();
    void changedRegionHoldsEveryOtherPixel_data();
    void changedRegionHoldsEveryOtherPixel();

private:
    QVector<Qt::CursorShape> cursorsShown(const std::function<void()> &action);
    QImage painted();

    std::unique_ptr<ImageCropper> m_cropper;
};

void Tst_ImageCropper::init() {
    m_cropper = std::make_unique<ImageCropper>();
    m_cropper->setImageRect(QRect(QPoint(), ImageSize));
    m_cropper->setFixedSize(ImageSize);
    m_cropper->setCropRect(Frame);
}

QVector<Qt::CursorShape> Tst_ImageCropper::cursorsShown(const std::function<void()> &action) {
    QVector<Qt::CursorShape> shown;
    const auto connection = connect(m_cropper.get(), &ImageCropper::setProxyCursor, this,
                                    [&shown](const QCursor &cursor) { shown.append(cursor.shape()); });
    action();
    disconnect(connection);
    return shown;
}

/// The widget over white.
QImage Tst_ImageCropper::painted() {
    QImage image(ImageSize, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    m_cropper->render(&painter, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

void Tst_ImageCropper::widgetIsTransparentAndKeepsItsSize() {
    QVERIFY(m_cropper->windowFlags() & Qt::FramelessWindowHint);
    QVERIFY(m_cropper->hasMouseTracking());
    QVERIFY(m_cropper->testAttribute(Qt::WA_TranslucentBackground));
    QVERIFY(m_cropper->testAttribute(Qt::WA_NoSystemBackground));
    QCOMPARE(m_cropper->styleSheet(), QStringLiteral("background: transparent;"));
    QCOMPARE(m_cropper->property("UI_STYLER_PROPERTY_IS_DISADJUST"), QVariant(true));
}

void Tst_ImageCropper::frameAtFirst() {
    QCOMPARE(ImageCropper().cropRect(), QRect(0, 0, 170, 170));
}

void Tst_ImageCropper::regions_data() {
    QTest::addColumn<QPoint>("point");
    QTest::addColumn<Region>("region");
    const auto row = [](const char *name, QPoint point, Region region) {
        QTest::newRow(name) << point << region;
    };
    row("middle", {200, 140}, ImageCropper::Middle);
    row("left of the frame", {99, 140}, ImageCropper::Undefined);
    row("right of the frame", {300, 140}, ImageCropper::Undefined);
    row("above the frame", {200, 79}, ImageCropper::Undefined);
    row("below the frame", {200, 200}, ImageCropper::Undefined);
    row("left band begins", {100, 140}, ImageCropper::Left);
    row("left band ends", {109, 140}, ImageCropper::Left);
    row("behind the left band", {110, 140}, ImageCropper::Middle);
    row("before the right band", {289, 140}, ImageCropper::Middle);
    row("right band begins", {290, 140}, ImageCropper::Right);
    row("right band ends", {299, 140}, ImageCropper::Right);
    row("top band begins", {200, 80}, ImageCropper::Top);
    row("top band ends", {200, 89}, ImageCropper::Top);
    row("behind the top band", {200, 90}, ImageCropper::Middle);
    row("before the bottom band", {200, 189}, ImageCropper::Middle);
    row("bottom band begins", {200, 190}, ImageCropper::Bottom);
    row("bottom band ends", {200, 199}, ImageCropper::Bottom);
    row("top left, outer", {100, 80}, ImageCropper::TopLeft);
    row("top left, inner", {109, 89}, ImageCropper::TopLeft);
    row("left below the corner", {109, 90}, ImageCropper::Left);
    row("top beside the corner", {110, 89}, ImageCropper::Top);
    row("top right, inner", {290, 89}, ImageCropper::TopRight);
    row("top right, outer", {299, 80}, ImageCropper::TopRight);
    row("bottom left, inner", {109, 190}, ImageCropper::BottomLeft);
    row("bottom left, outer", {100, 199}, ImageCropper::BottomLeft);
    row("bottom right, inner", {290, 190}, ImageCropper::BottomRight);
    row("bottom right, outer", {299, 199}, ImageCropper::BottomRight);
}

void Tst_ImageCropper::regions() {
    QFETCH(QPoint, point);
    QTEST(ImageCropper::regionAt(point, Frame), "region");
}

void Tst_ImageCropper::narrowFrameGivesCornersFirst_data() {
    QTest::addColumn<QPoint>("point");
    QTest::addColumn<Region>("region");
    QTest::newRow("all four bands") << QPoint(5, 5) << ImageCropper::TopLeft;
    QTest::newRow("all but the top") << QPoint(5, 11) << ImageCropper::BottomLeft;
    QTest::newRow("all but the left") << QPoint(11, 5) << ImageCropper::TopRight;
    QTest::newRow("right and bottom") << QPoint(11, 11) << ImageCropper::BottomRight;
}

void Tst_ImageCropper::narrowFrameGivesCornersFirst() {
    QFETCH(QPoint, point);
    QTEST(ImageCropper::regionAt(point, QRect(0, 0, 13, 13)), "region");
}

void Tst_ImageCropper::cursors_data() {
    QTest::addColumn<int>("region");
    QTest::addColumn<Qt::CursorShape>("shape");
    QTest::newRow("outside") << 0 << Qt::ArrowCursor;
    QTest::newRow("middle") << 1 << Qt::OpenHandCursor;
    QTest::newRow("left") << 2 << Qt::SizeHorCursor;
    QTest::newRow("right") << 3 << Qt::SizeHorCursor;
    QTest::newRow("top") << 4 << Qt::SizeVerCursor;
    QTest::newRow("bottom") << 5 << Qt::SizeVerCursor;
    QTest::newRow("top left") << 6 << Qt::SizeFDiagCursor;
    QTest::newRow("top right") << 7 << Qt::SizeBDiagCursor;
    QTest::newRow("bottom left") << 8 << Qt::SizeBDiagCursor;
    QTest::newRow("bottom right") << 9 << Qt::SizeFDiagCursor;
}

void Tst_ImageCropper::cursors() {
    QFETCH(int, region);
    QTEST(ImageCropper::cursorOf(static_cast<Region>(region), false).shape(), "shape");
}

void Tst_ImageCropper::resizing_data() {
    QTest::addColumn<Region>("region");
    QTest::addColumn<QRect>("expected");
    // By (7, -5); the frame's edges are 100, 80, 299 and 199.
    const auto edges = [](int left, int top, int right, int bottom) {
        return QRect(QPoint(left, top), QPoint(right, bottom));
    };
    QTest::newRow("left") << ImageCropper::Left << edges(107, 80, 299, 199);
    QTest::newRow("right") << ImageCropper::Right << edges(100, 80, 306, 199);
    QTest::newRow("top") << ImageCropper::Top << edges(100, 75, 299, 199);
    QTest::newRow("bottom") << ImageCropper::Bottom << edges(100, 80, 299, 194);
    QTest::newRow("top left") << ImageCropper::TopLeft << edges(107, 75, 299, 199);
    QTest::newRow("top right") << ImageCropper::TopRight << edges(100, 75, 306, 199);
    QTest::newRow("bottom left") << ImageCropper::BottomLeft << edges(107, 80, 299, 194);
    QTest::newRow("bottom right") << ImageCropper::BottomRight << edges(100, 80, 306, 194);
}

void Tst_ImageCropper::resizing() {
    QFETCH(Region, region);
    QTEST(ImageCropper::resized(Frame, region, QPoint(7, -5)), "expected");
}

void Tst_ImageCropper::smallestSideByDrag_data() {
    QTest::addColumn<Region>("region");
    QTest::addColumn<QPoint>("delta");
    QTest::addColumn<bool>("legal");
    QTest::newRow("50 wide, from the left") << ImageCropper::Left << QPoint(150, 0) << true;
    QTest::newRow("49 wide, from the left") << ImageCropper::Left << QPoint(151, 0) << false;
    QTest::newRow("50 wide, from the right") << ImageCropper::Right << QPoint(-150, 0) << true;
    QTest::newRow("49 wide, from the right") << ImageCropper::Right << QPoint(-151, 0) << false;
    QTest::newRow("50 high, from the top") << ImageCropper::Top << QPoint(0, 70) << true;
    QTest::newRow("49 high, from the top") << ImageCropper::Top << QPoint(0, 71) << false;
    QTest::newRow("50 high, from the bottom") << ImageCropper::Bottom << QPoint(0, -70) << true;
    QTest::newRow("49 high, from the bottom") << ImageCropper::Bottom << QPoint(0, -71) << false;
    QTest::newRow("beyond the opposite edge") << ImageCropper::Left << QPoint(400, 0) << false;
    QTest::newRow("beyond the opposite corner") << ImageCropper::TopLeft << QPoint(400, 400) << false;
    QTest::newRow("one side too small") << ImageCropper::BottomRight << QPoint(40, -100) << false;
}

void Tst_ImageCropper::smallestSideByDrag() {
    QFETCH(Region, region);
    QFETCH(QPoint, delta);
    QTEST(!ImageCropper::resized(Frame, region, delta).isNull(), "legal");
}

void Tst_ImageCropper::dragOfEachRegion_data() {
    QTest::addColumn<QPoint>("press");
    QTest::addColumn<QRect>("expected");
    const auto row = [](const char *name, QPoint press, const QMargins &growth) {
        QTest::newRow(name) << press << Frame.marginsAdded(growth);
    };
    // By (12, 9).
    row("left", {104, 140}, {-12, 0, 0, 0});
    row("right", {295, 140}, {0, 0, 12, 0});
    row("top", {200, 84}, {0, -9, 0, 0});
    row("bottom", {200, 195}, {0, 0, 0, 9});
    row("top left", {104, 84}, {-12, -9, 0, 0});
    row("top right", {295, 84}, {0, -9, 12, 0});
    row("bottom left", {104, 195}, {-12, 0, 0, 9});
    row("bottom right", {295, 195}, {0, 0, 12, 9});
    QTest::newRow("middle") << QPoint(200, 140) << Frame.translated(12, 9);
}

void Tst_ImageCropper::dragOfEachRegion() {
    QFETCH(QPoint, press);
    QFETCH(QRect, expected);
    QSignalSpy moved(m_cropper.get(), &ImageCropper::move);
    QSignalSpy sized(m_cropper.get(), &ImageCropper::sizeChanged);
    capture::Mouse(m_cropper.get()).drag({press, press + QPoint(5, 20), press + QPoint(12, 9)});
    QCOMPARE(m_cropper->cropRect(), expected);
    const bool whole = expected.size() == Frame.size();
    QCOMPARE(moved.count(), whole ? 2 : 0);
    QCOMPARE(sized.count(), whole ? 0 : 2);
    if (!whole)
        QCOMPARE(sized.last().first().toSize(), expected.size());
}

void Tst_ImageCropper::frameStopsAtItsLastLegalSize() {
    capture::Mouse mouse(m_cropper.get());
    QSignalSpy sized(m_cropper.get(), &ImageCropper::sizeChanged);
    mouse.press({295, 195});
    mouse.move({195, 155}); // 100 x 80
    mouse.move({144, 155}); // 49 wide
    QCOMPARE(m_cropper->cropRect(), QRect(100, 80, 100, 80));
    mouse.move({20, 10}); // beyond the opposite corner
    QCOMPARE(m_cropper->cropRect(), QRect(100, 80, 100, 80));
    QCOMPARE(sized.count(), 1);
    mouse.move({145, 125}); // 50 x 50
    QCOMPARE(m_cropper->cropRect(), QRect(100, 80, 50, 50));
}

void Tst_ImageCropper::frameEndsAtTheImage_data() {
    QTest::addColumn<QPoint>("press");
    QTest::addColumn<QPoint>("release");
    QTest::addColumn<QRect>("expected");
    const auto edges = [](int left, int top, int right, int bottom) {
        return QRect(QPoint(left, top), QPoint(right, bottom));
    };
    QTest::newRow("top left") << QPoint(100, 80) << QPoint(-500, -30) << edges(0, 0, 299, 199);
    QTest::newRow("bottom right") << QPoint(299, 199) << QPoint(450, 900) << edges(100, 80, 399, 299);
    QTest::newRow("right") << QPoint(299, 140) << QPoint(400, 140) << edges(100, 80, 399, 199);
}

void Tst_ImageCropper::frameEndsAtTheImage() {
    QFETCH(QPoint, press);
    QFETCH(QPoint, release);
    capture::Mouse(m_cropper.get()).drag({press, release});
    QTEST(m_cropper->cropRect(), "expected");
}

void Tst_ImageCropper::moveIntoACornerKeepsTheSize_data() {
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<QPoint>("topLeft");
    QTest::newRow("top left") << QPoint(-900, -900) << QPoint(0, 0);
    QTest::newRow("top right") << QPoint(900, -900) << QPoint(200, 0);
    QTest::newRow("bottom left") << QPoint(-900, 900) << QPoint(0, 180);
    QTest::newRow("bottom right") << QPoint(900, 900) << QPoint(200, 180);
    QTest::newRow("exactly to the right") << QPoint(300, 140) << QPoint(200, 80);
    QTest::newRow("a pixel less") << QPoint(299, 140) << QPoint(199, 80);
}

void Tst_ImageCropper::moveIntoACornerKeepsTheSize() {
    QFETCH(QPoint, to);
    QFETCH(QPoint, topLeft);
    capture::Mouse(m_cropper.get()).drag({{200, 140}, to});
    QCOMPARE(m_cropper->cropRect(), QRect(topLeft, Frame.size()));
}

void Tst_ImageCropper::dragIsMeasuredFromThePress() {
    capture::Mouse mouse(m_cropper.get());
    mouse.press({200, 140});
    mouse.move({900, 140});
    mouse.move({210, 140}); // not from the border, where it was held up
    QCOMPARE(m_cropper->cropRect(), Frame.translated(10, 0));
}

void Tst_ImageCropper::fractionsAreCutOff() {
    const auto send = [this](QEvent::Type type, const QPointF &pos) {
        QMouseEvent event(type, pos, type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                          Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(m_cropper.get(), &event);
    };
    send(QEvent::MouseButtonPress, QPointF(200.25, 140.25));
    send(QEvent::MouseMove, QPointF(203.2, 137.3)); // by 2.95 and -2.95
    QCOMPARE(m_cropper->cropRect(), Frame.translated(2, -2));
}

void Tst_ImageCropper::pressOutsideTheFrameDoesNothing() {
    capture::Mouse(m_cropper.get()).drag({{50, 50}, {90, 90}, {150, 150}});
    QCOMPARE(m_cropper->cropRect(), Frame);
}

void Tst_ImageCropper::otherButtonsDoNothing() {
    capture::Mouse mouse(m_cropper.get());
    mouse.press({200, 140}, Qt::RightButton);
    mouse.move({220, 150});
    QCOMPARE(m_cropper->cropRect(), Frame);
}

void Tst_ImageCropper::releaseEndsTheDrag() {
    capture::Mouse mouse(m_cropper.get());
    mouse.drag({{200, 140}, {210, 150}});
    mouse.move({300, 200});
    QCOMPARE(m_cropper->cropRect(), Frame.translated(10, 10));
}

void Tst_ImageCropper::lostReleaseEndsTheDrag() {
    for (const QPoint &press : {QPoint(200, 140), QPoint(299, 199)}) {
        m_cropper->setCropRect(Frame);
        capture::Mouse(m_cropper.get()).press(press);
        // A menu has taken the release: the mouse comes back without a button.
        capture::Mouse(m_cropper.get()).move(press + QPoint(20, 20));
        QCOMPARE(m_cropper->cropRect(), Frame);
    }
}

void Tst_ImageCropper::secondQuickPressDrags() {
    QMouseEvent doubleClick(QEvent::MouseButtonDblClick, QPointF(200, 140), Qt::LeftButton, Qt::LeftButton,
                            Qt::NoModifier);
    QCoreApplication::sendEvent(m_cropper.get(), &doubleClick);
    QMouseEvent move(QEvent::MouseMove, QPointF(203, 144), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(m_cropper.get(), &move);
    QCOMPARE(m_cropper->cropRect(), Frame.translated(3, 4));
}

void Tst_ImageCropper::handClosesWhileMoving() {
    capture::Mouse mouse(m_cropper.get());
    QCOMPARE(cursorsShown([&] { mouse.move({200, 140}); }), QVector<Qt::CursorShape>{Qt::OpenHandCursor});
    QCOMPARE(cursorsShown([&] { mouse.press({200, 140}); }), QVector<Qt::CursorShape>{Qt::ClosedHandCursor});
    QCOMPARE(cursorsShown([&] { mouse.move({210, 150}); }), QVector<Qt::CursorShape>());
    QCOMPARE(cursorsShown([&] { mouse.release({210, 150}); }), QVector<Qt::CursorShape>{Qt::OpenHandCursor});
}

void Tst_ImageCropper::bandsShowTheirCursors_data() {
    QTest::addColumn<QPoint>("point");
    QTest::addColumn<Qt::CursorShape>("shape");
    QTest::newRow("left, inside") << QPoint(100, 140) << Qt::SizeHorCursor;
    QTest::newRow("left, outside") << QPoint(99, 140) << Qt::ArrowCursor;
    QTest::newRow("top right, inside") << QPoint(299, 80) << Qt::SizeBDiagCursor;
    QTest::newRow("top right, outside") << QPoint(300, 79) << Qt::ArrowCursor;
    QTest::newRow("bottom, inside") << QPoint(200, 199) << Qt::SizeVerCursor;
    QTest::newRow("bottom, outside") << QPoint(200, 200) << Qt::ArrowCursor;
}

void Tst_ImageCropper::bandsShowTheirCursors() {
    QFETCH(QPoint, point);
    QFETCH(Qt::CursorShape, shape);
    QCOMPARE(cursorsShown([&] { capture::Mouse(m_cropper.get()).move(point); }),
             QVector<Qt::CursorShape>{shape});
}

void Tst_ImageCropper::typedSizeKeepsTheTopLeft_data() {
    QTest::addColumn<QSize>("typed");
    QTest::addColumn<QSize>("expected");
    QTest::newRow("smaller") << QSize(120, 60) << QSize(120, 60);
    QTest::newRow("smaller than a drag can") << QSize(40, 41) << QSize(40, 41);
    QTest::newRow("to the border") << QSize(300, 220) << QSize(300, 220);
    QTest::newRow("beyond the border") << QSize(301, 221) << QSize(300, 220);
    QTest::newRow("as large as the image") << QSize(400, 300) << QSize(300, 220);
}

void Tst_ImageCropper::typedSizeKeepsTheTopLeft() {
    QFETCH(QSize, typed);
    QFETCH(QSize, expected);
    QSignalSpy sized(m_cropper.get(), &ImageCropper::sizeChanged);
    m_cropper->setCropSize(typed);
    QCOMPARE(m_cropper->cropRect(), QRect(Frame.topLeft(), expected));
    // Whoever sets it knows it.
    QCOMPARE(sized.count(), 0);
}

void Tst_ImageCropper::typedSizeKeepsTheCentreInTheWidget() {
    m_cropper->setFixedSize(150, 120);
    m_cropper->setCropSize(QSize(180, 160));
    QCOMPARE(m_cropper->cropRect().center(), QPoint(149, 119));
    QCOMPARE(m_cropper->cropRect().size(), QSize(180, 160));
}

void Tst_ImageCropper::dimsAllButTheFrame() {
    const QImage image = painted();
    // 127 of 255 black over white.
    const QColor dimmed(128, 128, 128);
    for (const QPoint &point : {QPoint(0, 0), QPoint(399, 299), QPoint(99, 140), QPoint(300, 140),
                                QPoint(200, 79), QPoint(200, 200)})
        QCOMPARE(image.pixelColor(point), dimmed);
    for (const QPoint &point : {QPoint(101, 140), QPoint(298, 140), QPoint(200, 81), QPoint(200, 198)})
        QCOMPARE(image.pixelColor(point), QColor(Qt::white));
}

void Tst_ImageCropper::frameLineSurroundsTheFrame() {
    const QImage image = painted();
    const QColor line(0, 127, 245);
    // Its outermost pixels, away from the corner marks.
    for (int x = 120; x < 280; ++x) {
        QCOMPARE(image.pixelColor(x, 80), line);
        QCOMPARE(image.pixelColor(x, 199), line);
    }
    for (int y = 100; y < 180; ++y) {
        QCOMPARE(image.pixelColor(100, y), line);
        QCOMPARE(image.pixelColor(299, y), line);
    }
}

void Tst_ImageCropper::cornerMarks_data() {
    QTest::addColumn<QPoint>("corner");
    QTest::addColumn<QPoint>("inwards");
    QTest::newRow("top left") << QPoint(100, 80) << QPoint(1, 1);
    QTest::newRow("top right") << QPoint(299, 80) << QPoint(-1, 1);
    QTest::newRow("bottom left") << QPoint(100, 199) << QPoint(1, -1);
    QTest::newRow("bottom right") << QPoint(299, 199) << QPoint(-1, -1);
}

void Tst_ImageCropper::cornerMarks() {
    QFETCH(QPoint, corner);
    QFETCH(QPoint, inwards);
    // Black below, so that the white of the marks shows.
    QImage image(ImageSize, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    m_cropper->render(&painter, QPoint(), QRegion(), QWidget::DrawChildren);
    const auto at = [&](int along, int across) {
        return image.pixelColor(corner.x() + inwards.x() * along, corner.y() + inwards.y() * across);
    };
    // White between its border lines: three pixels thick, and as long as the outer square.
    for (int distance = 1; distance <= 3; ++distance) {
        QCOMPARE(at(distance, 1), QColor(Qt::white));
        QCOMPARE(at(distance, 15), QColor(Qt::white));
        QCOMPARE(at(1, distance), QColor(Qt::white));
        QCOMPARE(at(15, distance), QColor(Qt::white));
    }
    // The border line, faint as it is, is not white; what lies behind it is untouched.
    QVERIFY(at(4, 10) != QColor(Qt::white));
    QVERIFY(at(10, 4) != QColor(Qt::white));
    // 33 of 255 black over white.
    const QImage overWhite = painted();
    QCOMPARE(overWhite.pixelColor(corner + QPoint(4 * inwards.x(), 10 * inwards.y())), QColor(222, 222, 222));
    QCOMPARE(overWhite.pixelColor(corner + QPoint(10 * inwards.x(), 4 * inwards.y())), QColor(222, 222, 222));
    for (int distance = 5; distance <= 17; ++distance) {
        QCOMPARE(at(distance, 5), QColor(Qt::black));
        QCOMPARE(at(5, distance), QColor(Qt::black));
        QCOMPARE(at(17, distance), QColor(Qt::black));
        QCOMPARE(at(distance, 17), QColor(Qt::black));
    }
}

void Tst_ImageCropper::frameIsTheSameAtEachScaleAndInParts_data() {
    QTest::addColumn<double>("scale");
    for (int step = ZoomStep::Lowest; step <= ZoomStep::Highest; ++step)
        QTest::addRow("%g", computeZoom(step)) << computeZoom(step);
    QTest::newRow("pinched to less") << 0.7313;
    QTest::newRow("pinched to hardly less than all") << 0.9999999;
    QTest::newRow("pinched to more") << 1.2345;
}

void Tst_ImageCropper::frameIsTheSameAtEachScaleAndInParts() {
    QFETCH(double, scale);
    constexpr int Margin = 2; // pixels of the device
    QImage picture(330, 260, QImage::Format_RGB32);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            picture.setPixel(x, y, qRgb(x * 7, y * 5, x ^ y));
    }
    for (quint32 seed = 1; seed <= 12; ++seed) {
        QRandomGenerator random(seed);
        // Frames that are in sight as a whole, and not smaller than their marks.
        const QSize image(int(300 / scale), int(230 / scale));
        const QPoint corner(random.bounded(image.width() - 17), random.bounded(image.height() - 17));
        const QSize most = image - QSize(corner.x(), corner.y()) - QSize(17, 17);
        const QRect frame =
            seed == 1
                ? QRect(QPoint(), image)
                : QRect(corner, QSize(18 + random.bounded(most.width()), 18 + random.bounded(most.height())));
        const QTransform toDevice =
            QTransform::fromScale(scale, scale) * QTransform::fromTranslate(8 + random.bounded(12), 9);
        m_cropper->setFixedSize(image);
        m_cropper->setCropRect(frame);
        QImage expected = picture, whole = picture, parts = picture;
        QPainter plain(&expected);
        plain.setTransform(toDevice);
        plainFrame(&plain, image, frame);
        plain.end();
        QPainter all(&whole);
        all.setTransform(toDevice);
        m_cropper->paintFrame(&all, QRect(QPoint(), image));
        all.end();
        QPainter part(&parts);
        for (const QRect &rect : cutUp(parts.rect(), random)) {
            const QRect around = rect.adjusted(-Margin, -Margin, Margin, Margin);
            part.resetTransform();
            part.setClipRect(rect);
            part.setTransform(toDevice);
            m_cropper->paintFrame(&part, toDevice.inverted().mapRect(QRectF(around)).toAlignedRect());
        }
        part.end();
        COMPARE_IMAGES(whole, expected, "whole");
        COMPARE_IMAGES(parts, expected, "parts");
    }
}

void Tst_ImageCropper::changedRegionHoldsEveryOtherPixel_data() {
    QTest::addColumn<QRect>("after");
    QTest::addColumn<double>("most"); // of the picture
    QTest::newRow("the same") << Frame << 0.03;
    QTest::newRow("one pixel to the right") << Frame.translated(1, 0) << 0.05;
    QTest::newRow("a little up and left") << Frame.translated(-7, -5) << 0.15;
    QTest::newRow("corner moved") << Frame.adjusted(0, 0, 9, -4) << 0.1;
    QTest::newRow("left edge moved by a pixel") << Frame.adjusted(1, 0, 0, 0) << 0.03;
    QTest::newRow("top edge moved by a pixel") << Frame.adjusted(0, -1, 0, 0) << 0.03;
    QTest::newRow("right edge moved") << Frame.adjusted(0, 0, 31, 0) << 0.06;
    QTest::newRow("bottom edge moved") << Frame.adjusted(0, 0, 0, -23) << 0.06;
    QTest::newRow("opposite corner in its place") << Frame.adjusted(0, 0, -70, 40) << 0.15;
    QTest::newRow("far away") << QRect(0, 0, 60, 50) << 0.35;
    QTest::newRow("smaller than its marks") << QRect(150, 150, 12, 9) << 0.3;
    QTest::newRow("a pixel") << QRect(150, 150, 1, 1) << 0.3;
    QTest::newRow("at the border") << QRect(200, 180, 200, 120) << 0.4;
    QTest::newRow("beyond the border") << QRect(350, 260, 100, 90) << 0.35;
}

void Tst_ImageCropper::changedRegionHoldsEveryOtherPixel() {
    QFETCH(QRect, after);
    QFETCH(double, most);
    const QImage old = painted();
    m_cropper->setCropRect(after);
    const QImage now = painted();
    const QRegion changed = ImageCropper::changedRegion(Frame, after);
    int inRegion = 0;
    for (int y = 0; y < now.height(); ++y) {
        for (int x = 0; x < now.width(); ++x) {
            const bool listed = changed.contains(QPoint(x, y));
            QVERIFY2(listed || now.pixel(x, y) == old.pixel(x, y),
                     qPrintable(QStringLiteral("%1, %2").arg(x).arg(y)));
            inRegion += listed;
        }
    }
    // Not just everything.
    QVERIFY2(inRegion < most * now.width() * now.height(), qPrintable(QString::number(inRegion)));
}

QTEST_MAIN(Tst_ImageCropper)
#include "tst_imagecropper.moc"
