#include "print/pagelayout.h"

#include <QtTest>

namespace {

constexpr double Millimetre = 96 / 25.4;
constexpr double Tolerance = 0.001;

bool isNear(const QRectF &actual, const QRectF &expected) {
    return qAbs(actual.left() - expected.left()) < Tolerance &&
           qAbs(actual.top() - expected.top()) < Tolerance &&
           qAbs(actual.width() - expected.width()) < Tolerance &&
           qAbs(actual.height() - expected.height()) < Tolerance;
}

QByteArray told(const QRectF &rect) {
    return QStringLiteral("%1 %2 %3 %4")
        .arg(rect.left())
        .arg(rect.top())
        .arg(rect.width())
        .arg(rect.height())
        .toLatin1();
}

PageSettings settings(PageSettings::Scale scale, int value = 100, bool horizontal = false,
                      bool vertical = false) {
    PageSettings page;
    page.scale = scale;
    page.scaleValue = value;
    page.centerHorizontal = horizontal;
    page.centerVertical = vertical;
    return page;
}

PageSettings withMargins(PageSettings page, int left, int top, int right, int bottom) {
    page.leftMargin = left;
    page.topMargin = top;
    page.rightMargin = right;
    page.bottomMargin = bottom;
    return page;
}

// The printer's own margins are 20 at the left, 30 at the top, 40 at the right and 50 below.
const QSizeF Paper(800, 1000);
const QRectF Printable(20, 30, 740, 920);

// Where an image of a row goes on the paper, or in the preview.

void addPlacementColumns() {
    QTest::addColumn<PageSettings>("page");
    QTest::addColumn<QSizeF>("image");
    QTest::addColumn<QRectF>("target");
    QTest::addColumn<QRectF>("source");
}

void row(const char *name, const PageSettings &page, const QSizeF &image, const QRectF &target,
         const QRectF &source) {
    QTest::newRow(name) << page << image << target << source;
}

template <typename LayOut> void expectPlacement(LayOut layOut) {
    QFETCH(PageSettings, page);
    QFETCH(QSizeF, image);
    QFETCH(QRectF, target);
    QFETCH(QRectF, source);
    const ImagePlacement placement = layOut(page, image);
    QVERIFY2(isNear(placement.target, target), told(placement.target).constData());
    QVERIFY2(isNear(placement.source, source), told(placement.source).constData());
}

} // namespace

Q_DECLARE_METATYPE(PageSettings)

class Tst_PageLayout : public QObject {
    Q_OBJECT
private slots:
    void scaleOfAnImage_data();
    void scaleOfAnImage();
    void printedImage_data();
    void printedImage();
    void printedMargins_data();
    void printedMargins();
    void marginOfAMillimetre();
    void nothingFits_data();
    void nothingFits();

    void sheetFitsIntoTheRoom_data();
    void sheetFitsIntoTheRoom();
    void previewMargins();
    void previewedImage_data();
    void previewedImage();
    void sameProportionsWhereTheUsersMarginsAreWider();
    void previewShowsMarginsThatThePrinterCannotReach();
    void fitMeansThePaperInThePreview();
};

void Tst_PageLayout::scaleOfAnImage_data() {
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("value");
    QTest::addColumn<float>("base");
    QTest::addColumn<float>("expected");
    QTest::newRow("fit by width") << 0 << 100 << 1.0F << 0.5F;
    QTest::newRow("fit does not look at the base") << 0 << 100 << 3.0F << 0.5F;
    QTest::newRow("fit does not look at the value") << 0 << 800 << 1.0F << 0.5F;
    QTest::newRow("actual") << 1 << 50 << 1.0F << 1.0F;
    QTest::newRow("actual in the preview") << 1 << 50 << 0.25F << 0.25F;
    QTest::newRow("custom") << 2 << 50 << 1.0F << 0.5F;
    QTest::newRow("least") << 2 << 1 << 1.0F << 0.01F;
    QTest::newRow("largest, in the preview") << 2 << 800 << 0.5F << 4.0F;
}

void Tst_PageLayout::scaleOfAnImage() {
    QFETCH(int, mode);
    QFETCH(int, value);
    QFETCH(float, base);
    QFETCH(float, expected);
    const PageSettings page = settings(static_cast<PageSettings::Scale>(mode), value);
    QCOMPARE(imageScale(page, {200, 100}, {100, 300}, base), expected);
    if (mode == PageSettings::Fit)
        QCOMPARE(imageScale(page, {200, 100}, {1000, 75}, base), 0.75F);
}

void Tst_PageLayout::printedImage_data() {
    addPlacementColumns();
    row("fit, wide", settings(PageSettings::Fit), {1480, 460}, {0, 0, 740, 230}, {0, 0, 1480, 460});
    row("fit, high", settings(PageSettings::Fit), {100, 1840}, {0, 0, 50, 920}, {0, 0, 100, 1840});
    row("fit enlarges", settings(PageSettings::Fit), {74, 23}, {0, 0, 740, 230}, {0, 0, 74, 23});
    row("fit, centred", settings(PageSettings::Fit, 100, true, true), {1480, 460}, {0, 345, 740, 230},
        {0, 0, 1480, 460});
    row("actual", settings(PageSettings::Actual), {96, 48}, {0, 0, 96, 48}, {0, 0, 96, 48});
    row("actual, centred", settings(PageSettings::Actual, 100, true, true), {100, 50}, {320, 435, 100, 50},
        {0, 0, 100, 50});
    row("actual, centred across", settings(PageSettings::Actual, 100, true, false), {100, 50},
        {320, 0, 100, 50}, {0, 0, 100, 50});
    row("actual, centred down", settings(PageSettings::Actual, 100, false, true), {100, 50},
        {0, 435, 100, 50}, {0, 0, 100, 50});
    row("actual, cropped", settings(PageSettings::Actual), {1000, 2000}, {0, 0, 740, 920}, {0, 0, 740, 920});
    row("actual, cropped, centred", settings(PageSettings::Actual, 100, true, true), {1000, 2000},
        {0, 0, 740, 920}, {130, 540, 740, 920});
    row("actual, cropped across only", settings(PageSettings::Actual, 100, true, true), {1000, 100},
        {0, 410, 740, 100}, {130, 0, 740, 100});
    row("custom, half", settings(PageSettings::Custom, 50), {100, 50}, {0, 0, 50, 25}, {0, 0, 100, 50});
    row("custom, cropped", settings(PageSettings::Custom, 800), {100, 300}, {0, 0, 740, 920},
        {0, 0, 92.5, 115});
    row("custom, cropped, centred", settings(PageSettings::Custom, 800, true, true), {100, 300},
        {0, 0, 740, 920}, {3.75, 92.5, 92.5, 115});
}

void Tst_PageLayout::printedImage() {
    expectPlacement([](const PageSettings &page, const QSizeF &image) {
        return layOutPage(page, image, Printable, Paper);
    });
}

void Tst_PageLayout::printedMargins_data() {
    QTest::addColumn<QVector<int>>("millimetres"); // left, top, right, bottom
    QTest::addColumn<QRectF>("area");
    QTest::newRow("none") << QVector<int>{0, 0, 0, 0} << QRectF(0, 0, 740, 920);
    QTest::newRow("narrower than the printer's") << QVector<int>{5, 7, 10, 13} << QRectF(0, 0, 740, 920);
    const auto area = [](double left, double top, double right, double bottom) {
        return QRectF(QPointF(left, top), QPointF(740 - right, 920 - bottom));
    };
    QTest::newRow("left") << QVector<int>{25, 0, 0, 0} << area(25 * Millimetre - 20, 0, 0, 0);
    QTest::newRow("top") << QVector<int>{0, 25, 0, 0} << area(0, 25 * Millimetre - 30, 0, 0);
    QTest::newRow("right") << QVector<int>{0, 0, 25, 0} << area(0, 0, 25 * Millimetre - 40, 0);
    QTest::newRow("bottom") << QVector<int>{0, 0, 0, 25} << area(0, 0, 0, 25 * Millimetre - 50);
    QTest::newRow("all") << QVector<int>{10, 20, 30, 40}
                         << area(10 * Millimetre - 20, 20 * Millimetre - 30, 30 * Millimetre - 40,
                                 40 * Millimetre - 50);
}

void Tst_PageLayout::printedMargins() {
    QFETCH(QVector<int>, millimetres);
    QFETCH(QRectF, area);
    const PageSettings page = withMargins(settings(PageSettings::Actual), millimetres[0], millimetres[1],
                                          millimetres[2], millimetres[3]);
    // An image that is larger than the paper fills the area.
    const ImagePlacement placement = layOutPage(page, {5000, 5000}, Printable, Paper);
    QVERIFY2(isNear(placement.target, area), told(placement.target).constData());
    QVERIFY2(isNear(placement.source, QRectF(QPointF(), area.size())), told(placement.source).constData());
}

void Tst_PageLayout::marginOfAMillimetre() {
    const PageSettings page = withMargins(settings(PageSettings::Actual), 1, 0, 0, 0);
    const ImagePlacement placement = layOutPage(page, {10, 10}, QRectF(QPointF(), Paper), Paper);
    QCOMPARE(placement.target.left(), double(3.7795275591F));
}

void Tst_PageLayout::nothingFits_data() {
    QTest::addColumn<int>("mode");
    QTest::addColumn<QSizeF>("image");
    QTest::addColumn<QRectF>("printable");
    QTest::addColumn<QSizeF>("paper");
    QTest::addColumn<int>("margin");
    const QSizeF image(100, 50);
    for (const int mode : {0, 1, 2}) {
        const QByteArray suffix = ", " + QByteArray::number(mode);
        QTest::newRow("paper of size zero" + suffix) << mode << image << Printable << QSizeF(0, 0) << 10;
        QTest::newRow("unknown paper" + suffix) << mode << image << QRectF() << QSizeF() << 10;
        QTest::newRow("no printable area" + suffix) << mode << image << QRectF() << Paper << 10;
        QTest::newRow("all margin" + suffix) << mode << image << Printable << Paper << 200;
        QTest::newRow("no image" + suffix) << mode << QSizeF(0, 0) << Printable << Paper << 10;
    }
}

void Tst_PageLayout::nothingFits() {
    QFETCH(int, mode);
    QFETCH(QSizeF, image);
    QFETCH(QRectF, printable);
    QFETCH(QSizeF, paper);
    QFETCH(int, margin);
    const PageSettings page = withMargins(settings(static_cast<PageSettings::Scale>(mode), 100, true, true),
                                          margin, margin, margin, margin);
    const ImagePlacement printed = layOutPage(page, image, printable, paper);
    QCOMPARE(printed.target, QRectF());
    QCOMPARE(printed.source, QRectF());
    const PreviewLayout preview = layOutPreview(page, image, paper, {400, 400});
    QCOMPARE(preview.paper.isEmpty(), paper.isEmpty());
    if (margin == 200 || image.isEmpty())
        QCOMPARE(preview.image.target, QRectF());
}

void Tst_PageLayout::sheetFitsIntoTheRoom_data() {
    QTest::addColumn<QSizeF>("paper");
    QTest::addColumn<QSizeF>("room");
    QTest::addColumn<QSizeF>("expected");
    QTest::newRow("portrait, from a square") << QSizeF(400, 800) << QSizeF(300, 300) << QSizeF(150, 300);
    QTest::newRow("portrait does not fill a narrow room")
        << QSizeF(400, 800) << QSizeF(300, 1000) << QSizeF(150, 300);
    QTest::newRow("portrait in a low room") << QSizeF(400, 800) << QSizeF(300, 200) << QSizeF(100, 200);
    QTest::newRow("landscape") << QSizeF(800, 400) << QSizeF(300, 300) << QSizeF(300, 150);
    QTest::newRow("landscape in a low room") << QSizeF(800, 400) << QSizeF(300, 100) << QSizeF(200, 100);
    QTest::newRow("square") << QSizeF(500, 500) << QSizeF(300, 400) << QSizeF(300, 300);
    QTest::newRow("no room") << QSizeF(800, 400) << QSizeF(-10, 300) << QSizeF();
    QTest::newRow("no paper") << QSizeF(0, 0) << QSizeF(300, 300) << QSizeF();
    QTest::newRow("unknown paper") << QSizeF() << QSizeF(300, 300) << QSizeF();
}

void Tst_PageLayout::sheetFitsIntoTheRoom() {
    QFETCH(QSizeF, paper);
    QFETCH(QSizeF, room);
    QFETCH(QSizeF, expected);
    const PreviewLayout layout = layOutPreview(settings(PageSettings::Fit), {10, 10}, paper, room);
    QCOMPARE(layout.paper, expected);
    QCOMPARE(layout.image.target.isEmpty(), expected.isEmpty());
}

void Tst_PageLayout::previewMargins() {
    const PageSettings page = withMargins(settings(PageSettings::Fit), 10, 20, 30, 40);
    const PreviewLayout layout = layOutPreview(page, {10, 10}, {800, 1000}, {400, 500});
    const double factor = 0.4; // 400 * 0.8 wide
    QVERIFY2(isNear(layout.margins,
                    QRectF(QPointF(10 * Millimetre * factor, 20 * Millimetre * factor),
                           QPointF(320 - 30 * Millimetre * factor, 400 - 40 * Millimetre * factor))),
             told(layout.margins).constData());
}

void Tst_PageLayout::previewedImage_data() {
    addPlacementColumns();
    // A square sheet of 1000 at half its size: 500 by 500.
    row("fit", settings(PageSettings::Fit), {1000, 500}, {0.5, 0.5, 499, 249}, {0, 0, 1000, 500});
    row("fit, centred", settings(PageSettings::Fit, 100, true, true), {1000, 500}, {0.5, 125.5, 499, 249},
        {0, 0, 1000, 500});
    row("actual", settings(PageSettings::Actual), {200, 100}, {0.5, 0.5, 99, 49}, {0, 0, 200, 100});
    row("actual, centred", settings(PageSettings::Actual, 100, true, true), {200, 100},
        {200.5, 225.5, 99, 49}, {0, 0, 200, 100});
    row("actual, cropped", settings(PageSettings::Actual), {2000, 100}, {0.5, 0.5, 499, 49},
        {0, 0, 1000, 100});
    row("actual, cropped, centred", settings(PageSettings::Actual, 100, true, true), {2000, 3000},
        {0.5, 0.5, 499, 499}, {500, 1000, 1000, 1000});
    row("custom", settings(PageSettings::Custom, 50), {200, 100}, {0.5, 0.5, 49, 24}, {0, 0, 200, 100});
    row("custom, cropped, centred", settings(PageSettings::Custom, 800, true, true), {200, 100},
        {0.5, 50.5, 499, 399}, {37.5, 0, 125, 100});
}

void Tst_PageLayout::previewedImage() {
    expectPlacement([](const PageSettings &page, const QSizeF &image) {
        return layOutPreview(page, image, {1000, 1000}, {500, 600}).image;
    });
}

void Tst_PageLayout::sameProportionsWhereTheUsersMarginsAreWider() {
    for (const int mode : {0, 1, 2}) {
        for (const bool centred : {false, true}) {
            const PageSettings page = withMargins(
                settings(static_cast<PageSettings::Scale>(mode), 130, centred, centred), 20, 21, 22, 23);
            const QSizeF image(300, 200);
            const QRectF printed =
                layOutPage(page, image, Printable, Paper).target.translated(Printable.topLeft());
            const PreviewLayout preview = layOutPreview(page, image, Paper, {480, 600});
            const double factor = preview.paper.width() / Paper.width();
            const QRectF shown = preview.image.target.adjusted(-0.5, -0.5, 0.5, 0.5);
            QVERIFY2(isNear(shown, QRectF(printed.topLeft() * factor, printed.size() * factor)),
                     told(shown).constData());
        }
    }
}

void Tst_PageLayout::previewShowsMarginsThatThePrinterCannotReach() {
    const PageSettings page = withMargins(settings(PageSettings::Actual), 1, 1, 1, 1);
    const QSizeF image(5000, 5000);
    const QRectF printed = layOutPage(page, image, Printable, Paper).target.translated(Printable.topLeft());
    QVERIFY2(isNear(printed, Printable), told(printed).constData());
    const PreviewLayout preview = layOutPreview(page, image, Paper, {1000, 1000}); // as large as the paper
    QVERIFY2(isNear(preview.image.target, QRectF(Millimetre + 0.5, Millimetre + 0.5, 800 - 2 * Millimetre - 1,
                                                 1000 - 2 * Millimetre - 1)),
             told(preview.image.target).constData());
}

void Tst_PageLayout::fitMeansThePaperInThePreview() {
    const PageSettings page = settings(PageSettings::Fit);
    QCOMPARE(layOutPage(page, {100, 100}, Printable, Paper).target.width(), 740.0);
    QCOMPARE(layOutPreview(page, {100, 100}, Paper, {1000, 1000}).image.target.width(), 799.0);
}

QTEST_APPLESS_MAIN(Tst_PageLayout)
#include "tst_pagelayout.moc"
