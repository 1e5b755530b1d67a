#include "canvas/capturefixture.h"
#include "canvas/editorview.h"
#include "canvas/items/drawingarrowitem.h"
#include "canvas/items/drawingcircleitem.h"
#include "canvas/items/drawinglineitem.h"
#include "canvas/items/drawingrectitem.h"
#include "canvas/items/drawingspeechballoonitem.h"
#include "preferences/tindrapreferences.h"
#include "support/imagecompare.h"

#include <QPainter>
#include <QtTest>

#include <cmath>
#include <functional>
#include <memory>

namespace {

const QRectF Canvas(0, 0, 120, 90);

enum Figure { Line, Arrow, Rect, Circle, Balloon };

std::unique_ptr<DrawingFigureItem> make(Figure figure, const QRectF &clip = Canvas) {
    switch (figure) {
    case Line:
        return std::make_unique<DrawingLineItem>(clip, nullptr);
    case Arrow:
        return std::make_unique<DrawingArrowItem>(clip, nullptr);
    case Rect:
        return std::make_unique<DrawingRectItem>(clip, nullptr);
    case Circle:
        return std::make_unique<DrawingCircleItem>(clip, nullptr);
    case Balloon:
        break;
    }
    return std::make_unique<DrawingSpeechBalloonItem>(clip, nullptr);
}

/// From press to release in one move.
std::unique_ptr<DrawingFigureItem> drawn(Figure figure, QPoint from, QPoint to, bool shift = false,
                                         const QRectF &clip = Canvas) {
    auto item = make(figure, clip);
    item->drawStart(from);
    item->drawMove(from, to, shift);
    item->drawEnd(to, to, shift);
    return item;
}

void setTool(const QColor &line, const QColor &fill, int width, Qt::PenStyle style = Qt::SolidLine) {
    auto &preferences = *TindraPreferences::instance();
    preferences.SetInt(TindraPreferences::FigureLineColor, TindraPreferences::colorToInt(line));
    preferences.SetInt(TindraPreferences::FigureFillColor, TindraPreferences::colorToInt(fill));
    preferences.SetInt(TindraPreferences::FigureLineType, style);
    preferences.SetInt(TindraPreferences::LineWidth, width);
}

QImage white() {
    QImage image(Canvas.size().toSize(), QImage::Format_RGB32);
    image.fill(Qt::white);
    return image;
}

QImage painted(DrawingFigureItem &item) {
    QImage image = white();
    QPainter painter(&image);
    item.paint(&painter, nullptr, nullptr);
    return image;
}

QImage expectedImage(const std::function<void(QPainter &)> &draw, QPen pen, const QBrush &brush,
                     bool smooth) {
    QImage image = white();
    QPainter painter(&image);
    pen.setCapStyle(Qt::RoundCap);
    pen.setJoinStyle(Qt::MiterJoin);
    painter.setPen(pen);
    painter.setBrush(brush);
    painter.setRenderHint(QPainter::Antialiasing, smooth);
    draw(painter);
    return image;
}

QRectF spanned(const QPointF &a, const QPointF &b) {
    return QRectF(std::min(a.x(), b.x()), std::min(a.y(), b.y()), std::abs(a.x() - b.x()),
                  std::abs(a.y() - b.y()));
}

} // namespace

Q_DECLARE_METATYPE(Figure)

class Tst_DrawingFigureItem : public QObject {
    Q_OBJECT
private slots:
    void init() { capture::resetWorld(); }

    void geometryOfADrag_data();
    void geometryOfADrag();
    void moveIsOneEventBehind_data();
    void moveIsOneEventBehind();
    void releaseIsExact_data();
    void releaseIsExact();
    void arrowRectangleHoldsItsHeads();
    void arrowReportsALargerArea();
    void settingsAreThoseOfTheMomentOfBuilding();

    void paintsLikeAPlainPainter_data();
    void paintsLikeAPlainPainter();
    void dottedArrowHasASolidHead();
    void headKeepsItsSize();
    void rectangleIsCrisp();
    void bothDirectionsLookTheSame_data();
    void bothDirectionsLookTheSame();
    void nothingIsPaintedOutsideTheClip_data();
    void nothingIsPaintedOutsideTheClip();
    void painterIsLeftAsItWas_data();
    void painterIsLeftAsItWas();
    void paintedRectHoldsEveryMark_data();
    void paintedRectHoldsEveryMark();

    void nothingIsHitBeforeTheRelease_data();
    void nothingIsHitBeforeTheRelease();
    void eraserPicks_data();
    void eraserPicks();
    void eraserLeavesWhatTheCropHides();

private:
    void allFigures();
};

void Tst_DrawingFigureItem::allFigures() {
    QTest::addColumn<Figure>("figure");
    QTest::newRow("line") << Line;
    QTest::newRow("arrow") << Arrow;
    QTest::newRow("rectangle") << Rect;
    QTest::newRow("circle") << Circle;
    QTest::newRow("balloon") << Balloon;
}

void Tst_DrawingFigureItem::geometryOfADrag_data() {
    QTest::addColumn<Figure>("figure");
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<bool>("shift");
    QTest::addColumn<QPointF>("end");
    QTest::addColumn<QRectF>("rect");
    const QPoint at(50, 40);
    QTest::newRow("line") << Line << QPoint(80, 50) << false << QPointF(80, 50) << QRectF(50, 40, 30, 10);
    QTest::newRow("line up left") << Line << QPoint(20, 30) << false << QPointF(20, 30)
                                  << QRectF(20, 30, 30, 10);
    QTest::newRow("line along an axis keeps no height")
        << Line << QPoint(80, 40) << false << QPointF(80, 40) << QRectF(50, 40, 30, 0);
    QTest::newRow("line, Shift, 22 degrees")
        << Line << QPoint(80, 52) << true << QPointF(80, 40) << QRectF(50, 40, 30, 0);
    QTest::newRow("line, Shift, 23 degrees")
        << Line << QPoint(90, 57) << true << QPointF(90, 80) << QRectF(50, 40, 40, 40);
    QTest::newRow("line, Shift, longer leg")
        << Line << at + QPoint(10, 5) << true << QPointF(60, 50) << QRectF(50, 40, 10, 10);
    QTest::newRow("line, Shift, upright")
        << Line << QPoint(52, 10) << true << QPointF(50, 10) << QRectF(50, 10, 0, 30);
    for (const Figure figure : {Rect, Circle, Balloon}) {
        const auto row = [&](const char *name, const QPoint &to, bool shift, const QRectF &rect) {
            QTest::addRow("%s of area figure %d", name, figure)
                << figure << to << shift << QPointF(to) << rect;
        };
        row("drag", {80, 50}, false, {50, 40, 30, 10});
        row("drag up left", {20, 30}, false, {20, 30, 30, 10});
        row("one pixel sideways", {51, 40}, false, {50, 40, 1, 1});
        row("level", {80, 40}, false, {50, 40, 30, 1});
        row("upright", {50, 70}, false, {50, 40, 1, 30});
        row("no size", at, false, {50, 40, 1, 1});
        row("Shift, down right", {80, 50}, true, {50, 40, 10, 10});
        row("Shift, up left", {20, 32}, true, {42, 32, 8, 8});
        row("Shift, down left", {45, 70}, true, {45, 40, 5, 5});
        row("Shift, level", {80, 40}, true, {50, 40, 1, 1});
    }
}

void Tst_DrawingFigureItem::geometryOfADrag() {
    QFETCH(Figure, figure);
    QFETCH(QPoint, to);
    QFETCH(bool, shift);
    QFETCH(QPointF, end);
    QFETCH(QRectF, rect);
    setTool(Qt::black, Qt::transparent, 4);
    const auto item = make(figure);
    QCOMPARE(item->drawStart({50, 40}), QRectF(45, 35, 10, 10));
    item->drawMove({50, 40}, to, shift);
    const QRectF reported = item->drawEnd(to, to, shift);
    QCOMPARE(item->startPoint(), QPointF(50, 40));
    QCOMPARE(item->endPoint(), end);
    QCOMPARE(item->itemRect(), rect);
    const QRectF expected = rect.adjusted(-5, -5, 5, 5) & Canvas;
    QCOMPARE(item->boundingRect(), expected);
    QCOMPARE(reported, expected);
}

void Tst_DrawingFigureItem::moveIsOneEventBehind_data() {
    QTest::addColumn<Figure>("figure");
    QTest::addColumn<bool>("shift");
    QTest::addColumn<QPointF>("end");
    QTest::addColumn<QRectF>("rect");
    QTest::newRow("line") << Line << false << QPointF(90, 70) << QRectF(20, 20, 40, 10);
    QTest::newRow("line, Shift") << Line << true << QPointF(60, 20) << QRectF(20, 20, 40, 0);
    for (const Figure figure : {Rect, Circle, Balloon}) {
        QTest::addRow("area figure %d", figure)
            << figure << false << QPointF(90, 70) << QRectF(20, 20, 40, 10);
        QTest::addRow("area figure %d, Shift", figure)
            << figure << true << QPointF(90, 70) << QRectF(20, 20, 10, 10);
    }
}

void Tst_DrawingFigureItem::moveIsOneEventBehind() {
    QFETCH(Figure, figure);
    QFETCH(bool, shift);
    QFETCH(QPointF, end);
    QFETCH(QRectF, rect);
    const auto item = make(figure);
    item->drawStart({20, 20});
    item->drawMove({60, 30}, {90, 70}, shift);
    QCOMPARE(item->endPoint(), end);
    QCOMPARE(item->itemRect(), rect);
}

void Tst_DrawingFigureItem::releaseIsExact_data() {
    allFigures();
}

void Tst_DrawingFigureItem::releaseIsExact() {
    QFETCH(Figure, figure);
    for (const bool shift : {false, true}) {
        const auto item = make(figure);
        item->drawStart({20, 20});
        item->drawMove({20, 20}, {100, 25}, shift);
        item->drawEnd({100, 25}, {70, 60}, shift);
        const auto straight = drawn(figure, {20, 20}, {70, 60}, shift);
        QCOMPARE(item->endPoint(), straight->endPoint());
        QCOMPARE(item->itemRect(), straight->itemRect());
        COMPARE_IMAGES(painted(*item), painted(*straight), "release");
    }
}

void Tst_DrawingFigureItem::arrowRectangleHoldsItsHeads() {
    DrawingArrowItem item(Canvas, nullptr);
    item.drawStart({20, 40});
    item.drawMove({20, 40}, {80, 40}, false);
    // The head spans 73 to 80 and 33 to 47, and is grown by 2; the extent of the shaft is one event behind.
    QCOMPARE(item.headPolygon(), QPolygonF({{80, 40}, {73, 47}, {73, 33}, {80, 40}}));
    QCOMPARE(item.itemRect(), QRectF(QPointF(71, 31), QPointF(82, 49)));
    item.drawMove({80, 40}, {81, 40}, false);
    QCOMPARE(item.itemRect(), QRectF(QPointF(20, 31), QPointF(83, 49)));
    item.drawEnd({81, 40}, {60, 40}, false);
    QCOMPARE(item.headPolygon(), QPolygonF({{60, 40}, {53, 47}, {53, 33}, {60, 40}}));
    QCOMPARE(item.itemRect(), QRectF(QPointF(20, 31), QPointF(62, 49)));
}

void Tst_DrawingFigureItem::arrowReportsALargerArea() {
    setTool(Qt::black, Qt::transparent, 3);
    DrawingArrowItem item(Canvas, nullptr);
    item.drawStart({20, 40});
    const QRectF moved = item.drawMove({50, 40}, {50, 40}, false);
    QCOMPARE(item.boundingRect(), QRectF(QPointF(16, 27), QPointF(56, 53)));
    QCOMPARE(moved, item.boundingRect().adjusted(-7, -7, 7, 7));
    const QRectF released = item.drawEnd({50, 40}, {50, 40}, false);
    QCOMPARE(released, item.boundingRect().adjusted(-7, -7, 7, 7));
}

void Tst_DrawingFigureItem::settingsAreThoseOfTheMomentOfBuilding() {
    setTool(Qt::red, Qt::yellow, 5);
    const auto item = drawn(Rect, {20, 20}, {80, 60});
    const QImage before = painted(*item);
    setTool(Qt::blue, Qt::green, 9, Qt::DotLine);
    COMPARE_IMAGES(painted(*item), before, "unchanged");
    QCOMPARE(before.pixelColor(50, 20), QColor(Qt::red));
    QCOMPARE(before.pixelColor(50, 40), QColor(Qt::yellow));
}

void Tst_DrawingFigureItem::paintsLikeAPlainPainter_data() {
    QTest::addColumn<Figure>("figure");
    QTest::addColumn<QPen>("pen");
    QTest::addColumn<QColor>("fill");
    QTest::addColumn<QPoint>("from");
    QTest::addColumn<QPoint>("to");
    const char *names[] = {"line", "arrow", "rectangle", "circle", "balloon"};
    for (int figure = Line; figure <= Balloon; ++figure) {
        const auto row = [&](const char *name, const QPen &pen, const QColor &fill, QPoint from, QPoint to) {
            QTest::addRow("%s, %s", names[figure], name) << Figure(figure) << pen << fill << from << to;
        };
        const QPen solid(QColor(200, 20, 60), 3);
        const QPen dotted(QColor(200, 20, 60), 3, Qt::DotLine);
        const QPoint from(20, 15), to(95, 72);
        row("solid", solid, QColor(20, 90, 200), from, to);
        row("dotted", dotted, QColor(20, 90, 200), from, to);
        row("transparent fill", solid, Qt::transparent, from, to);
        row("half-transparent", QPen(QColor(200, 20, 60, 120), 7), QColor(20, 90, 200, 70), from, to);
        row("thin", QPen(Qt::black, 1), Qt::transparent, from, to);
        row("wide", QPen(Qt::black, 12), Qt::white, from, to);
        row("from bottom right", solid, QColor(20, 90, 200), to, from);
        row("from bottom left", dotted, QColor(20, 90, 200), {20, 72}, {95, 15});
        row("level", solid, QColor(20, 90, 200), {20, 40}, {90, 40});
        row("upright", dotted, QColor(20, 90, 200), {50, 10}, {50, 80});
    }
}

void Tst_DrawingFigureItem::paintsLikeAPlainPainter() {
    QFETCH(Figure, figure);
    QFETCH(QPen, pen);
    QFETCH(QColor, fill);
    QFETCH(QPoint, from);
    QFETCH(QPoint, to);
    setTool(pen.color(), fill, pen.width(), pen.style());
    const auto item = drawn(figure, from, to);
    QRectF rect = spanned(from, to);
    rect.setSize({std::max(1.0, rect.width()), std::max(1.0, rect.height())});
    const auto draw = [&](QPainter &painter) {
        switch (figure) {
        case Line:
            painter.drawLine(from, to);
            break;
        case Arrow: {
            painter.setBrush(pen.color());
            painter.drawLine(from, to);
            QPen head = painter.pen();
            head.setStyle(Qt::SolidLine);
            painter.setPen(head);
            QTransform along; // the head of an arrow that points right, turned around its tip
            along.translate(to.x(), to.y());
            along.rotateRadians(std::atan2(to.y() - from.y(), to.x() - from.x()));
            // The points are single precision, as they are for the item.
            QPolygonF outline = along.map(QPolygonF({{0, 0}, {-7, 7}, {-7, -7}, {0, 0}}));
            outline[1] = to - QPointF(float(to.x() - outline[1].x()), float(to.y() - outline[1].y()));
            outline[2] = to - QPointF(float(to.x() - outline[2].x()), float(to.y() - outline[2].y()));
            painter.drawPolygon(outline);
            break;
        }
        case Rect:
            painter.drawRect(rect);
            break;
        case Circle:
            painter.drawEllipse(rect);
            break;
        case Balloon: {
            const double body = rect.bottom() - rect.height() / 5;
            const double quarter = rect.width() / 4;
            painter.drawPolygon(QPolygonF({rect.topLeft(),
                                           {rect.left(), body},
                                           {rect.left() + quarter, body},
                                           {rect.left() + quarter, rect.bottom()},
                                           {rect.left() + 2 * quarter, body},
                                           {rect.right(), body},
                                           rect.topRight(),
                                           rect.topLeft()}));
            break;
        }
        }
    };
    COMPARE_IMAGES(painted(*item), expectedImage(draw, pen, fill, figure != Rect), "figure");
}

void Tst_DrawingFigureItem::dottedArrowHasASolidHead() {
    setTool(Qt::black, Qt::transparent, 1, Qt::DotLine);
    const auto item = drawn(Arrow, {10, 40}, {100, 40});
    const QImage image = painted(*item);
    int gaps = 0;
    for (int x = 15; x < 85; ++x)
        gaps += image.pixelColor(x, 40).lightness() > 200;
    QVERIFY2(gaps > 15, qPrintable(QString::number(gaps)));
    for (int y = 36; y < 44; ++y)
        QCOMPARE(image.pixelColor(94, y), QColor(Qt::black));
}

void Tst_DrawingFigureItem::headKeepsItsSize() {
    for (const int width : {1, 10}) {
        setTool(Qt::black, Qt::transparent, width);
        DrawingArrowItem item(Canvas, nullptr);
        item.drawStart({10, 40});
        item.drawEnd({100, 40}, {100, 40}, false);
        QCOMPARE(item.headPolygon().boundingRect(), QRectF(93, 33, 7, 14));
    }
}

void Tst_DrawingFigureItem::rectangleIsCrisp() {
    setTool(Qt::black, Qt::white, 3);
    const QImage image = painted(*drawn(Rect, {20, 20}, {80, 60}));
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            QVERIFY(pixel == qRgb(0, 0, 0) || pixel == qRgb(255, 255, 255));
        }
    }
}

void Tst_DrawingFigureItem::bothDirectionsLookTheSame_data() {
    QTest::addColumn<Figure>("figure");
    QTest::newRow("rectangle") << Rect;
    QTest::newRow("circle") << Circle;
    QTest::newRow("balloon") << Balloon;
}

void Tst_DrawingFigureItem::bothDirectionsLookTheSame() {
    QFETCH(Figure, figure);
    setTool(Qt::black, QColor(20, 90, 200), 3);
    const QImage image = painted(*drawn(figure, {20, 15}, {95, 72}));
    COMPARE_IMAGES(painted(*drawn(figure, {95, 72}, {20, 15})), image, "backwards");
    COMPARE_IMAGES(painted(*drawn(figure, {95, 15}, {20, 72})), image, "from top right");
    COMPARE_IMAGES(painted(*drawn(figure, {20, 72}, {95, 15})), image, "from bottom left");
}

void Tst_DrawingFigureItem::nothingIsPaintedOutsideTheClip_data() {
    allFigures();
}

void Tst_DrawingFigureItem::nothingIsPaintedOutsideTheClip() {
    QFETCH(Figure, figure);
    setTool(Qt::black, QColor(20, 90, 200), 9);
    const auto item = drawn(figure, {10, 10}, {100, 70});
    const QImage whole = painted(*item);
    const QRect clip(30, 20, 40, 30);
    item->onChangeSceneRect(QRectF(clip));
    QImage expected = white();
    QPainter(&expected).drawImage(clip.topLeft(), whole, clip);
    COMPARE_IMAGES(painted(*item), expected, "clipped");
    QVERIFY(QRectF(clip).contains(item->boundingRect()));
    QVERIFY(QRectF(clip).contains(item->paintedRect()));
    const QRectF rounded(29.999, 19.999, 40.002, 30.002);
    QVERIFY(rounded.contains(item->shape().boundingRect()));
    item->onChangeSceneRect(Canvas);
    COMPARE_IMAGES(painted(*item), whole, "whole again");
}

void Tst_DrawingFigureItem::painterIsLeftAsItWas_data() {
    allFigures();
}

void Tst_DrawingFigureItem::painterIsLeftAsItWas() {
    QFETCH(Figure, figure);
    const auto item = drawn(figure, {20, 20}, {60, 50});
    QImage image = white();
    QPainter painter(&image);
    painter.setPen(Qt::green);
    painter.setBrush(Qt::blue);
    item->paint(&painter, nullptr, nullptr);
    QCOMPARE(painter.pen(), QPen(Qt::green));
    QCOMPARE(painter.brush(), QBrush(Qt::blue));
    QVERIFY(!painter.testRenderHint(QPainter::Antialiasing));
    QVERIFY(!painter.hasClipping());
}

void Tst_DrawingFigureItem::paintedRectHoldsEveryMark_data() {
    allFigures();
}

void Tst_DrawingFigureItem::paintedRectHoldsEveryMark() {
    QFETCH(Figure, figure);
    // Narrow balloons have tails that a miter draws out far beyond the rectangle.
    const QVector<QPoint> ends{{80, 50}, {52, 75}, {60, 31}, {48, 10}, {20, 28}, {50, 30}, {56, 80}};
    for (const int width : {1, 3, 12}) {
        setTool(Qt::black, Qt::black, width);
        for (const QPoint &to : ends) {
            const auto item = make(figure);
            const auto check = [&] {
                QImage image = painted(*item);
                QPainter(&image).fillRect(item->paintedRect().toAlignedRect(), Qt::white);
                COMPARE_IMAGES(image, white(), "covered");
            };
            item->drawStart({50, 30});
            check();
            item->drawMove({50, 30}, to, false);
            check();
            item->drawMove(to, to + QPoint(9, -7), true);
            check();
            item->drawEnd(to, to, false);
            check();
        }
    }
}

void Tst_DrawingFigureItem::nothingIsHitBeforeTheRelease_data() {
    allFigures();
}

void Tst_DrawingFigureItem::nothingIsHitBeforeTheRelease() {
    QFETCH(Figure, figure);
    const auto item = make(figure);
    item->drawStart({20, 20});
    item->drawMove({20, 20}, {60, 50}, false);
    QVERIFY(item->shape().isEmpty());
    item->drawEnd({60, 50}, {60, 50}, false);
    QVERIFY(!item->shape().isEmpty());
}

void Tst_DrawingFigureItem::eraserPicks_data() {
    QTest::addColumn<int>("shape");
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<QPoint>("at");
    QTest::addColumn<bool>("picked");
    // From (40, 40), with a pen of 12 pixels.
    const auto row = [](const char *name, Editor::ShapeType shape, QPoint to, QPoint at, bool picked) {
        QTest::newRow(name) << int(shape) << to << at << picked;
    };
    row("line: on it", Editor::Line, {120, 80}, {80, 60}, true);
    row("line: a pixel beside", Editor::Line, {120, 80}, {80, 61}, true);
    row("line: within its width only", Editor::Line, {120, 80}, {80, 64}, false);
    row("level line", Editor::Line, {120, 40}, {80, 40}, true);
    row("level line: beside", Editor::Line, {120, 40}, {80, 43}, false);
    row("upright line", Editor::Line, {40, 100}, {40, 70}, true);
    row("upright line: beside", Editor::Line, {40, 100}, {43, 70}, false);
    row("arrow: shaft", Editor::Arrow, {120, 40}, {80, 40}, true);
    row("arrow: beside the shaft", Editor::Arrow, {120, 40}, {80, 44}, false);
    row("arrow: barb", Editor::Arrow, {120, 40}, {113, 46}, true);
    row("rectangle: inside", Editor::Rectangle, {120, 100}, {80, 70}, true);
    row("rectangle: outside", Editor::Rectangle, {120, 100}, {124, 70}, false);
    row("circle: inside", Editor::Circle, {120, 100}, {80, 70}, true);
    row("circle: corner of its rectangle", Editor::Circle, {120, 100}, {44, 44}, false);
    row("balloon: body", Editor::SpeechBalloon, {120, 100}, {80, 60}, true);
    row("balloon: beside the tail", Editor::SpeechBalloon, {120, 100}, {110, 97}, true);
    row("balloon: outside", Editor::SpeechBalloon, {120, 100}, {110, 104}, false);
}

void Tst_DrawingFigureItem::eraserPicks() {
    QFETCH(int, shape);
    QFETCH(QPoint, to);
    QFETCH(QPoint, at);
    QFETCH(bool, picked);
    setTool(Qt::black, Qt::transparent, 12);
    Editor editor;
    capture::load(editor, QStringLiteral("capture"), capture::picture({200, 140}));
    EditorView view;
    view.resize(300, 240);
    view.show();
    view.setEditor(&editor);
    capture::Mouse mouse(view.viewport());
    const auto on = [&view](const QPoint &pos) { return view.mapFromScene(pos); };
    editor.setShape(static_cast<Editor::ShapeType>(shape));
    mouse.drag({on({40, 40}), on(to)});
    QCOMPARE(editor.items().size(), 1);
    editor.setShape(Editor::Eraser);
    mouse.click(on(at));
    QCOMPARE(editor.items().isEmpty(), picked);
}

void Tst_DrawingFigureItem::eraserLeavesWhatTheCropHides() {
    for (const Figure figure : {Line, Arrow, Rect, Circle, Balloon}) {
        const auto item = drawn(figure, {20, 20}, {100, 70}, false, QRectF(0, 0, 200, 140));
        QVERIFY(item->shape().intersects(QRectF(58, 43, 5, 5)));
        item->onChangeSceneRect(QRectF(0, 0, 50, 140));
        QVERIFY(!item->shape().intersects(QRectF(58, 43, 5, 5)));
        QVERIFY(item->shape().intersects(QRectF(33, 27, 5, 5)));
    }
}

QTEST_MAIN(Tst_DrawingFigureItem)
#include "tst_drawingfigureitem.moc"
