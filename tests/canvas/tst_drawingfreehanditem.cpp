#include "canvas/capturefixture.h"
#include "canvas/items/drawinghighlighteritem.h"
#include "canvas/items/drawingpenitem.h"
#include "preferences/tindrapreferences.h"
#include "support/imagecompare.h"

#include <QPainter>
#include <QPainterPath>
#include <QRandomGenerator>
#include <QtTest>

#include <memory>

namespace {

const QRectF Canvas(0, 0, 120, 90);

void setTool(const QColor &color, int width) {
    auto &preferences = *TindraPreferences::instance();
    preferences.SetInt(TindraPreferences::PenColor, TindraPreferences::colorToInt(color));
    preferences.SetInt(TindraPreferences::HighlighterColor, TindraPreferences::colorToInt(color));
    preferences.SetInt(TindraPreferences::LineWidth, width);
}

QImage painted(DrawingFreehandItem &item, const QColor &below) {
    QImage image(Canvas.size().toSize(), QImage::Format_RGB32);
    image.fill(below);
    QPainter painter(&image);
    item.paint(&painter, nullptr, nullptr);
    return image;
}

QVector<QLineF> drawn(DrawingFreehandItem &item, const QVector<QPoint> &points, bool shift = false) {
    item.drawStart(points.first());
    for (int i = 1; i < points.size(); ++i)
        item.drawMove(points.at(i - 1), points.at(i), shift);
    return item.segments();
}

/// A row inside the nib lies under two lines, one on its upper border and one on its lower, each of which
/// covers half of it: the colour comes three quarters of the way from what was there.
bool isThreeQuarters(const QColor &actual, const QColor &below, const QColor &target) {
    const auto near = [](int value, int from, int to) {
        return qAbs(value - (from + (to - from) * 0.75)) <= 2;
    };
    return near(actual.red(), below.red(), target.red()) &&
           near(actual.green(), below.green(), target.green()) &&
           near(actual.blue(), below.blue(), target.blue());
}

} // namespace

class Tst_DrawingFreehandItem : public QObject {
    Q_OBJECT
private slots:
    void init() { capture::resetWorld(); }

    void penKeepsEverySegment();
    void highlighterNib_data();
    void highlighterNib();
    void shiftRunKeepsAnchorAndDirection();
    void strokeGoesOnFromTheEndOfTheRun();
    void secondRunTakesItsOwnDirection();
    void runFromTheColumnBesideTheImageBeginsAnew();
    void highlighterRunsStraightToo();

    void boundingRectIsGrownAndClipped();
    void settingsAreThoseOfTheMomentOfBuilding();
    void hitAreaIsABoxPerSegmentAndIgnoresTheClip();
    void hitTestsAnswerAsTheHitAreaDoes_data();
    void hitTestsAnswerAsTheHitAreaDoes();
    void segmentsThatJoinAHitTestedStrokeAreHitToo();

    void penDrawsLikeARoundPen();
    void penDotShowsWhereThePressWas();
    void halfTransparentPenBuildsUp();
    void highlighterDarkens_data();
    void highlighterDarkens();
    void highlighterNeverGoesBeyondItsColour();
    void highlighterNibPixels_data();
    void highlighterNibPixels();
    void uprightHighlighterIsAThinTrace();
    void highlighterEndsWhereTheMouseDid();
    void clipOfThePainterIsReplaced();
    void nothingIsPaintedOutsideTheClip();
    void painterIsLeftAsItWas();
    void segmentsRectCoversWhatThoseSegmentsPaint();
};

void Tst_DrawingFreehandItem::penKeepsEverySegment() {
    DrawingPenItem item(Canvas, nullptr);
    item.drawStart({5, 6});
    item.drawMove({5, 6}, {5, 6}, false);
    item.drawMove({5, 6}, {9, 8}, false);
    item.drawEnd({9, 8}, {9, 8}, false);
    const QVector<QLineF> expected{{5, 6, 5, 6}, {5, 6, 5, 6}, {5, 6, 9, 8}, {9, 8, 9, 8}};
    QCOMPARE(item.segments(), expected);
}

void Tst_DrawingFreehandItem::highlighterNib_data() {
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("lines");
    QTest::newRow("1") << 1 << 1;
    QTest::newRow("2") << 2 << 3;
    QTest::newRow("3") << 3 << 3;
    QTest::newRow("4") << 4 << 5;
    QTest::newRow("12") << 12 << 13;
}

void Tst_DrawingFreehandItem::highlighterNib() {
    QFETCH(int, width);
    QFETCH(int, lines);
    setTool(Qt::yellow, width);
    DrawingHighlighterItem item(Canvas, nullptr);
    QVector<QLineF> expected;
    for (int y = -(lines / 2); y <= lines / 2; ++y)
        expected.append(QLineF(20, 30 + y, 20, 30 + y));
    for (int y = -(lines / 2); y <= lines / 2; ++y)
        expected.append(QLineF(20, 30 + y, 40, 50 + y));
    QCOMPARE(drawn(item, {{20, 30}, {40, 50}}), expected);
}

void Tst_DrawingFreehandItem::shiftRunKeepsAnchorAndDirection() {
    DrawingPenItem item(Canvas, nullptr);
    item.drawStart({10, 10});
    item.drawMove({10, 10}, {12, 10}, false);
    item.drawMove({12, 10}, {20, 11}, true); // horizontal by its first step
    item.drawMove({20, 11}, {30, 40}, true); // and still so
    item.drawEnd({30, 40}, {35, 60}, true);
    const QVector<QLineF> expected{
        {10, 10, 10, 10}, {10, 10, 12, 10}, {12, 10, 20, 10}, {12, 10, 30, 10}, {12, 10, 35, 10}};
    QCOMPARE(item.segments(), expected);
}

void Tst_DrawingFreehandItem::strokeGoesOnFromTheEndOfTheRun() {
    DrawingPenItem item(Canvas, nullptr);
    item.drawStart({10, 10});
    item.drawMove({10, 10}, {20, 12}, true);
    item.drawMove({20, 12}, {30, 14}, true);
    item.drawMove({30, 14}, {33, 20}, false);
    item.drawMove({33, 20}, {40, 25}, false);
    const QVector<QLineF> expected{
        {10, 10, 10, 10}, {10, 10, 20, 10}, {10, 10, 30, 10}, {30, 10, 33, 20}, {33, 20, 40, 25}};
    QCOMPARE(item.segments(), expected);
}

void Tst_DrawingFreehandItem::secondRunTakesItsOwnDirection() {
    DrawingPenItem item(Canvas, nullptr);
    item.drawStart({10, 10});
    item.drawMove({10, 10}, {20, 11}, true);
    item.drawMove({20, 11}, {22, 12}, false);
    item.drawMove({22, 12}, {23, 30}, true);
    QCOMPARE(item.segments().last(), QLineF(22, 12, 22, 30));
    DrawingPenItem diagonal(Canvas, nullptr);
    diagonal.drawStart({10, 10});
    diagonal.drawMove({10, 10}, {14, 14}, true);
    diagonal.drawMove({14, 14}, {20, 12}, true); // the longer leg counts
    QCOMPARE(diagonal.segments().last(), QLineF(10, 10, 20, 20));
}

void Tst_DrawingFreehandItem::runFromTheColumnBesideTheImageBeginsAnew() {
    DrawingPenItem item(Canvas, nullptr);
    item.drawStart({-1, 20});
    item.drawMove({-1, 20}, {10, 22}, true); // horizontal, but an anchor with a -1 counts as none
    item.drawMove({10, 22}, {12, 40}, true); // so the next step begins a run
    item.drawMove({12, 40}, {30, 50}, true);
    const QVector<QLineF> expected{{-1, 20, -1, 20}, {-1, 20, 10, 20}, {10, 22, 10, 40}, {10, 22, 10, 50}};
    QCOMPARE(item.segments(), expected);
}

void Tst_DrawingFreehandItem::highlighterRunsStraightToo() {
    setTool(Qt::yellow, 1);
    DrawingHighlighterItem item(Canvas, nullptr);
    QCOMPARE(drawn(item, {{10, 10}, {20, 11}, {30, 19}}, true).last(), QLineF(10, 10, 30, 10));
}

void Tst_DrawingFreehandItem::boundingRectIsGrownAndClipped() {
    setTool(Qt::red, 4);
    DrawingPenItem item(Canvas, nullptr);
    item.drawStart({50, 40});
    QCOMPARE(item.boundingRect(), QRectF(45, 35, 10, 10));
    QCOMPARE(item.drawMove({50, 40}, {30, 60}, false), QRectF(25, 35, 30, 30));
    QCOMPARE(item.drawMove({30, 60}, {2, 60}, false), QRectF(0, 35, 55, 30));
    item.onChangeSceneRect(QRectF(10, 10, 20, 30));
    QCOMPARE(item.boundingRect(), QRectF(10, 35, 20, 5));
    DrawingHighlighterItem nib(Canvas, nullptr);
    QCOMPARE(nib.drawStart({50, 40}), QRectF(45, 33, 10, 14)); // five points high
    QCOMPARE(nib.drawMove({50, 40}, {60, 40}, false), QRectF(45, 33, 20, 14));
}

void Tst_DrawingFreehandItem::settingsAreThoseOfTheMomentOfBuilding() {
    setTool(Qt::red, 5);
    DrawingPenItem item(Canvas, nullptr);
    drawn(item, {{10, 20}, {60, 20}});
    const QImage before = painted(item, Qt::white);
    setTool(Qt::blue, 12);
    COMPARE_IMAGES(painted(item, Qt::white), before, "unchanged");
    QCOMPARE(before.pixelColor(30, 20), QColor(Qt::red));
    QCOMPARE(before.pixelColor(30, 24), QColor(Qt::white));
}

void Tst_DrawingFreehandItem::hitAreaIsABoxPerSegmentAndIgnoresTheClip() {
    DrawingPenItem item(QRectF(0, 0, 20, 20), nullptr);
    drawn(item, {{40, 40}, {60, 70}, {80, 70}});
    QPainterPath expected;
    expected.addRect(40, 40, 1, 1);
    expected.addRect(40, 40, 21, 31);
    expected.addRect(60, 70, 21, 1);
    QCOMPARE(item.shape(), expected);
    QVERIFY(item.isHit(QRectF(58, 42, 1, 1))); // a corner far from the slanted line
    QVERIFY(!item.isHit(QRectF(62, 60, 3, 3)));
}

void Tst_DrawingFreehandItem::hitTestsAnswerAsTheHitAreaDoes_data() {
    QTest::addColumn<int>("reach");
    QTest::addColumn<int>("segments");
    QTest::addColumn<bool>("highlighter");
    QTest::newRow("a press alone") << 0 << 0 << false;
    QTest::newRow("one segment") << 30 << 1 << false;
    QTest::newRow("pixel by pixel") << 1 << 300 << false;
    QTest::newRow("by hand") << 12 << 300 << false;
    QTest::newRow("in jumps across the picture") << 1500 << 40 << false;
    QTest::newRow("with the highlighter") << 12 << 60 << true;
}

/// The reference is the toolkit's answer about the whole hit area, asked as the base class asks.
void Tst_DrawingFreehandItem::hitTestsAnswerAsTheHitAreaDoes() {
    QFETCH(int, reach);
    QFETCH(int, segments);
    QFETCH(bool, highlighter);
    setTool(Qt::red, 4);
    const QRectF picture(0, 0, 900, 700);
    QRandomGenerator random(17);
    int hits = 0, misses = 0;
    for (int stroke = 0; stroke < 12; ++stroke) {
        std::unique_ptr<DrawingFreehandItem> item;
        if (highlighter)
            item = std::make_unique<DrawingHighlighterItem>(picture, nullptr);
        else
            item = std::make_unique<DrawingPenItem>(picture, nullptr);
        QPoint at(random.bounded(900), random.bounded(700));
        QVector<QPoint> points{at};
        for (int i = 0; i < segments; ++i) {
            at += QPoint(random.bounded(-reach, reach + 1), random.bounded(-reach, reach + 1));
            at = QPoint(qBound(-40, at.x(), 940), qBound(-40, at.y(), 740));
            points.append(at);
        }
        drawn(*item, points);
        const QPainterPath shape = item->shape();
        QPolygonF ends;
        for (const QLineF &line : item->segments())
            ends << line.p1() << line.p2();
        const QRectF around = ends.boundingRect().adjusted(-1, -1, 1, 1);
        for (int probe = 0; probe < 300; ++probe) {
            const QPoint place = points.at(random.bounded(points.size()));
            const QPoint pos = place + QPoint(random.bounded(-9, 10), random.bounded(-9, 10));
            const QRectF area(pos.x() - 1, pos.y() - 1, 3, 3);
            QPainterPath path;
            path.addRect(area);
            const bool hit = item->boundingRect().intersects(area) && path.intersects(shape);
            QCOMPARE(item->collidesWithPath(path, Qt::IntersectsItemShape), hit);
            QCOMPARE(item->contains(pos), shape.contains(pos));
            QCOMPARE(item->isHit(area), around.intersects(area) && shape.intersects(area));
            ++(hit ? hits : misses);
        }
    }
    QVERIFY2(hits > 100 && misses > 300, qPrintable(QStringLiteral("%1, %2").arg(hits).arg(misses)));
}

void Tst_DrawingFreehandItem::segmentsThatJoinAHitTestedStrokeAreHitToo() {
    setTool(Qt::red, 1);
    DrawingPenItem item(Canvas, nullptr);
    drawn(item, {{10, 10}, {20, 10}, {20, 20}});
    const QRectF ahead(79, 59, 3, 3);
    QVERIFY(!item.isHit(ahead));
    item.drawMove({20, 20}, {80, 60}, false);
    QVERIFY(item.isHit(ahead));
    QVERIFY(item.contains({79.5, 59.5}));
}

void Tst_DrawingFreehandItem::penDrawsLikeARoundPen() {
    setTool(Qt::red, 9);
    DrawingPenItem item(Canvas, nullptr);
    drawn(item, {{20, 20}, {70, 50}, {30, 60}});
    QImage expected(Canvas.size().toSize(), QImage::Format_RGB32);
    expected.fill(Qt::white);
    QPainter painter(&expected);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Qt::red, 9, Qt::SolidLine, Qt::RoundCap, Qt::MiterJoin));
    painter.drawPoint(20, 20);
    painter.drawLine(20, 20, 70, 50);
    painter.drawLine(70, 50, 30, 60);
    painter.end();
    COMPARE_IMAGES(painted(item, Qt::white), expected, "round");
}

void Tst_DrawingFreehandItem::penDotShowsWhereThePressWas() {
    setTool(Qt::red, 9);
    DrawingPenItem item(Canvas, nullptr);
    item.drawStart({30, 30});
    QCOMPARE(painted(item, Qt::white).pixelColor(30, 30), QColor(Qt::red));
}

void Tst_DrawingFreehandItem::halfTransparentPenBuildsUp() {
    setTool(QColor(255, 0, 0, 128), 7);
    DrawingPenItem item(Canvas, nullptr);
    drawn(item, {{20, 20}, {60, 20}, {20, 20}});
    const int green = painted(item, Qt::white).pixelColor(40, 20).green();
    QVERIFY2(qAbs(green - 63) <= 2, qPrintable(QString::number(green))); // 255 / 4
}

void Tst_DrawingFreehandItem::highlighterDarkens_data() {
    QTest::addColumn<QColor>("below");
    QTest::addColumn<QColor>("expected");
    QTest::newRow("plain colour on white") << QColor(Qt::white) << QColor(250, 220, 40);
    QTest::newRow("black stays black") << QColor(Qt::black) << QColor(Qt::black);
    QTest::newRow("the smaller of each channel") << QColor(100, 255, 200) << QColor(100, 220, 40);
}

void Tst_DrawingFreehandItem::highlighterDarkens() {
    QFETCH(QColor, below);
    QFETCH(QColor, expected);
    setTool(QColor(250, 220, 40), 7);
    DrawingHighlighterItem item(Canvas, nullptr);
    drawn(item, {{20, 30}, {80, 30}});
    const QColor actual = painted(item, below).pixelColor(50, 30);
    QVERIFY2(isThreeQuarters(actual, below, expected), qPrintable(actual.name()));
}

void Tst_DrawingFreehandItem::highlighterNeverGoesBeyondItsColour() {
    setTool(QColor(250, 220, 40), 7);
    DrawingHighlighterItem item(Canvas, nullptr);
    QVector<QPoint> points{{20, 30}};
    for (int i = 0; i < 20; ++i)
        points.append(i % 2 ? QPoint(20, 30) : QPoint(80, 30));
    drawn(item, points);
    // Over and over on white: the plain colour. A half-transparent layer each time would go on darkening.
    QCOMPARE(painted(item, Qt::white).pixelColor(50, 30), QColor(250, 220, 40));
}

void Tst_DrawingFreehandItem::highlighterNibPixels_data() {
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("half");
    QTest::newRow("1") << 1 << 0;
    QTest::newRow("2") << 2 << 1;
    QTest::newRow("3") << 3 << 1;
    QTest::newRow("8") << 8 << 4;
}

void Tst_DrawingFreehandItem::highlighterNibPixels() {
    QFETCH(int, width);
    QFETCH(int, half);
    setTool(QColor(0, 0, 0), width);
    DrawingHighlighterItem item(Canvas, nullptr);
    drawn(item, {{20, 30}, {80, 30}});
    const QImage image = painted(item, Qt::white);
    // Each line stands on a border between two rows and covers half of both; the rest stays white.
    for (int y = 0; y < image.height(); ++y) {
        const bool touched = y >= 30 - half - 1 && y <= 30 + half;
        QCOMPARE(image.pixelColor(50, y) != QColor(Qt::white), touched);
    }
}

void Tst_DrawingFreehandItem::uprightHighlighterIsAThinTrace() {
    setTool(QColor(0, 0, 0), 12);
    DrawingHighlighterItem item(Canvas, nullptr);
    drawn(item, {{50, 20}, {50, 60}});
    const QImage image = painted(item, Qt::white);
    int touched = 0;
    for (int x = 0; x < image.width(); ++x)
        touched += image.pixelColor(x, 40) != QColor(Qt::white);
    QCOMPARE(touched, 2); // one pixel wide, on a border between two columns
}

void Tst_DrawingFreehandItem::highlighterEndsWhereTheMouseDid() {
    setTool(QColor(0, 0, 0), 1);
    DrawingHighlighterItem item(Canvas, nullptr);
    item.drawMove({20, 30}, {80, 30}, false);
    const QImage image = painted(item, Qt::white);
    // The points are the left borders of their pixels.
    QCOMPARE(image.pixelColor(19, 30), QColor(Qt::white));
    QVERIFY(image.pixelColor(20, 30) != QColor(Qt::white));
    QVERIFY(image.pixelColor(79, 30) != QColor(Qt::white));
    QCOMPARE(image.pixelColor(80, 30), QColor(Qt::white));
}

void Tst_DrawingFreehandItem::clipOfThePainterIsReplaced() {
    setTool(Qt::red, 9);
    DrawingPenItem pen(Canvas, nullptr);
    DrawingHighlighterItem highlighter(Canvas, nullptr);
    for (DrawingFreehandItem *item :
         {static_cast<DrawingFreehandItem *>(&pen), static_cast<DrawingFreehandItem *>(&highlighter)}) {
        drawn(*item, {{20, 20}, {60, 50}});
        QImage clipped(Canvas.size().toSize(), QImage::Format_RGB32);
        clipped.fill(Qt::white);
        QPainter painter(&clipped);
        painter.setClipRect(0, 0, 5, 5);
        item->paint(&painter, nullptr, nullptr);
        painter.end();
        COMPARE_IMAGES(clipped, painted(*item, Qt::white), "clip");
    }
}

void Tst_DrawingFreehandItem::nothingIsPaintedOutsideTheClip() {
    setTool(Qt::red, 12);
    const QRect clip(30, 20, 20, 30);
    DrawingPenItem pen(Canvas, nullptr);
    drawn(pen, {{5, 25}, {100, 45}});
    const QImage whole = painted(pen, Qt::white);
    pen.onChangeSceneRect(QRectF(clip));
    QImage expected(whole.size(), QImage::Format_RGB32);
    expected.fill(Qt::white);
    QPainter(&expected).drawImage(clip.topLeft(), whole, clip);
    COMPARE_IMAGES(painted(pen, Qt::white), expected, "clipped");
    pen.onChangeSceneRect(Canvas);
    COMPARE_IMAGES(painted(pen, Qt::white), whole, "whole again");
}

void Tst_DrawingFreehandItem::painterIsLeftAsItWas() {
    DrawingPenItem pen(Canvas, nullptr);
    DrawingHighlighterItem highlighter(Canvas, nullptr);
    for (DrawingFreehandItem *item :
         {static_cast<DrawingFreehandItem *>(&pen), static_cast<DrawingFreehandItem *>(&highlighter)}) {
        drawn(*item, {{20, 20}, {40, 30}});
        QImage image(Canvas.size().toSize(), QImage::Format_RGB32);
        QPainter painter(&image);
        painter.setPen(Qt::green);
        item->paint(&painter, nullptr, nullptr);
        QCOMPARE(painter.compositionMode(), QPainter::CompositionMode_SourceOver);
        QCOMPARE(painter.pen(), QPen(Qt::green));
        QVERIFY(!painter.testRenderHint(QPainter::Antialiasing));
        QVERIFY(!painter.hasClipping());
    }
}

void Tst_DrawingFreehandItem::segmentsRectCoversWhatThoseSegmentsPaint() {
    setTool(QColor(0, 0, 0), 11);
    DrawingPenItem item(Canvas, nullptr);
    drawn(item, {{10, 10}, {60, 20}, {70, 70}, {30, 80}});
    for (int first = 0; first <= item.segmentCount(); ++first) {
        QImage image(Canvas.size().toSize(), QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        item.paintSegments(&painter, first);
        painter.fillRect(item.segmentsRect(first), Qt::white);
        painter.end();
        QImage white(image.size(), QImage::Format_RGB32);
        white.fill(Qt::white);
        COMPARE_IMAGES(image, white, "covered");
    }
    QVERIFY(item.segmentsRect(item.segmentCount()).isEmpty());
}

QTEST_MAIN(Tst_DrawingFreehandItem)
#include "tst_drawingfreehanditem.moc"
