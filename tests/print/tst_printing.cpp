#include "print/pagelayout.h"
#include "print/printpreviewdialog.h"
#include "print/printservertest.h"

#include <QComboBox>
#include <QPushButton>

/// From the settings of a page to the sheet that comes out of the printer.
class Tst_Printing : public PrintServerTest {
    Q_OBJECT
private slots:
    void initTestCase() { PrintServerTest::initTestCase(); }
    void init() { PrintServerTest::init(); }
    void cleanup() { PrintServerTest::cleanup(); }

    void imageStandsWhereItIsLaidOut_data();
    void imageStandsWhereItIsLaidOut();
    void turnedPageStartsAtTheEndOfItsSheet_data();
    void turnedPageStartsAtTheEndOfItsSheet();
    void pixelsStayAsTheyAre();
    void frameIsOnePixelOfThePrinter();
    void everyImageIsAPage();
    void defaultsOfTheQueueTurnNoPage_data();
    void defaultsOfTheQueueTurnNoPage();
    void dialogPrints();
    void emptyDocumentPrintsNothing();
    void jobWithoutEndPrintsNothing();
};

void Tst_Printing::imageStandsWhereItIsLaidOut_data() {
    QTest::addColumn<bool>("portrait");
    QTest::addColumn<int>("scale");
    QTest::addColumn<int>("value");
    QTest::addColumn<bool>("horizontal");
    QTest::addColumn<bool>("vertical");
    QTest::addColumn<QSize>("image");
    QTest::addColumn<QVector<int>>("margins"); // left, top, right, bottom
    const auto rows = [](const char *name, int scale, int value, bool horizontal, bool vertical,
                         const QSize &image, const QVector<int> &margins) {
        for (const bool portrait : {true, false}) {
            QTest::newRow(QByteArray(name) + (portrait ? ", portrait" : ", landscape"))
                << portrait << scale << value << horizontal << vertical << image << margins;
        }
    };
    const QVector<int> narrow{0, 0, 0, 0};
    const QVector<int> wide{31, 29, 40, 37};
    rows("fit", 0, 100, false, false, {640, 480}, narrow);
    rows("fit, centred", 0, 100, true, true, {640, 480}, wide);
    rows("actual", 1, 100, false, false, {331, 203}, narrow);
    rows("actual within margins", 1, 100, false, false, {331, 203}, wide);
    rows("actual, centred", 1, 100, true, true, {331, 203}, wide);
    rows("actual, cropped", 1, 100, false, false, {1800, 1600}, wide);
    rows("actual, cropped, centred", 1, 100, true, true, {1801, 1603}, wide);
    rows("custom", 2, 37, false, false, {900, 500}, wide);
    rows("custom, cropped, centred", 2, 800, true, true, {201, 187}, wide);
}

void Tst_Printing::imageStandsWhereItIsLaidOut() {
    QFETCH(bool, portrait);
    QFETCH(int, scale);
    QFETCH(int, value);
    QFETCH(bool, horizontal);
    QFETCH(bool, vertical);
    QFETCH(QSize, image);
    QFETCH(QVector<int>, margins);
    PageSettings settings;
    settings.scale = static_cast<PageSettings::Scale>(scale);
    settings.scaleValue = value;
    settings.centerHorizontal = horizontal;
    settings.centerVertical = vertical;
    settings.leftMargin = margins[0];
    settings.topMargin = margins[1];
    settings.rightMargin = margins[2];
    settings.bottomMargin = margins[3];

    const auto office = printer();
    office->setPaperId(9);
    office->setPortrait(portrait);
    office->setGrayscale(false);
    const QRectF printable = office->printableRect();
    const ImagePlacement placement = layOutPage(settings, image, printable, office->paperSize());
    const PrintServer::Print print =
        printed({{quarters(image), placement.source, placement.target, false}}, *office);
    QCOMPARE(PrintServer::pageSize(print.pdf), QSizeF(595, 842));
    QImage sheet = PrintServer::page(print.pdf, 1, 96 * Fine);
    if (!portrait)
        sheet = sheet.transformed(QTransform().rotate(90)); // the way round in which it is read

    const QRectF target = placement.target.translated(printable.topLeft());
    const QRectF whole = areaOf(sheet, {TopLeft, TopRight, BottomLeft, BottomRight});
    QVERIFY2(isNear(whole, target), told(whole, target).constData());
    // The quarters meet where the middle of the image is; the rasterizer rounds pixels within an image.
    constexpr double within = 1.5;
    const double factor = target.width() / placement.source.width();
    const QPointF middle =
        target.topLeft() +
        (QPointF(image.width() / 2, image.height() / 2) - placement.source.topLeft()) * factor;
    const QRectF first = QRectF(target.topLeft(), middle) & target;
    if (first.width() > 1 && first.height() > 1) {
        const QRectF actual = areaOf(sheet, {TopLeft});
        QVERIFY2(isNear(actual, first, within), told(actual, first).constData());
    }
    const QRectF last = QRectF(middle, target.bottomRight()) & target;
    if (last.width() > 1 && last.height() > 1) {
        const QRectF actual = areaOf(sheet, {BottomRight});
        QVERIFY2(isNear(actual, last, within), told(actual, last).constData());
    }
}

void Tst_Printing::turnedPageStartsAtTheEndOfItsSheet_data() {
    QTest::addColumn<int>("paper");
    QTest::addColumn<QSizeF>("points"); // of the document, which has no parts of them
    QTest::newRow("A4") << 9 << QSizeF(595, 842);
    QTest::newRow("A5") << 11 << QSizeF(420, 595);
    QTest::newRow("A6") << 70 << QSizeF(297, 420);
}

void Tst_Printing::turnedPageStartsAtTheEndOfItsSheet() {
    QFETCH(int, paper);
    const auto office = printer();
    office->setPaperId(quint16(paper));
    office->setPortrait(false);
    office->setGrayscale(false);
    const QRectF target(40, 30, 120, 60);
    const PrintServer::Print print = printed({pageOf(quarters({120, 60}), target)}, *office);
    QTEST(PrintServer::pageSize(print.pdf), "points");
    const QImage sheet =
        PrintServer::page(print.pdf, 1, 96 * Fine).transformed(QTransform().rotate(90)); // as it is read
    const QRectF expected = target.translated(office->printableRect().topLeft());
    const QRectF actual = areaOf(sheet, {TopLeft, TopRight, BottomLeft, BottomRight});
    QVERIFY2(isNear(actual, expected), told(actual, expected).constData());
}

void Tst_Printing::pixelsStayAsTheyAre() {
    QImage image(40, 40, QImage::Format_RGB32);
    for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 40; ++x)
            image.setPixel(x, y, qRgb((x * 37 + y * 11) % 256, (x * 91) % 256, (y * 53 + x) % 256));
    }
    const auto office = printer();
    office->setPaperId(9);
    office->setGrayscale(false);
    // One pixel of the image is a whole tenth of an inch.
    const double pixel = 9.6;
    const PrintServer::Print print = printed(
        {{QPixmap::fromImage(image), {0, 0, 40, 40}, {96, 96, 40 * pixel, 40 * pixel}, false}}, *office);
    const QImage sheet = PrintServer::page(print.pdf, 1, 96);
    const QPointF corner = office->printableRect().topLeft() + QPointF(96, 96);
    for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 40; ++x) {
            const QPointF centre = corner + QPointF(x + 0.5, y + 0.5) * pixel;
            QCOMPARE(QColor(sheet.pixel(centre.toPoint())), QColor(image.pixel(x, y)));
        }
    }
}

void Tst_Printing::frameIsOnePixelOfThePrinter() {
    const auto office = printer();
    office->setPaperId(9);
    const QRectF target(96, 192, 288, 96);
    const PrintServer::Print print = printed({pageOf(quarters({30, 10}), target, true)}, *office);
    const QImage sheet = PrintServer::page(print.pdf, 1, 1200); // two for one of the printer's
    const QPointF corner = (office->printableRect().topLeft() + target.topLeft()) / 96 * 1200;
    const auto darkAcross = [&](double y) {
        int dark = 0;
        for (int x = -10; x <= 10; ++x)
            dark += qGray(sheet.pixel(qRound(corner.x()) + x, qRound(corner.y() + y))) < 32;
        return dark;
    };
    const int width = darkAcross(300);
    QVERIFY2(width >= 1 && width <= 4, qPrintable(QString::number(width)));
    QCOMPARE(darkAcross(-100), 0);
}

void Tst_Printing::everyImageIsAPage() {
    const auto office = printer();
    office->setPaperId(9);
    office->setGrayscale(false);
    QPixmap red(20, 20);
    red.fill(TopLeft);
    QPixmap blue(20, 20);
    blue.fill(TopRight);
    const QRectF target(0, 0, 96, 96);
    const PrintServer::Print print =
        printed({pageOf(red, target), pageOf(blue, target), pageOf(red, target)}, *office);
    QCOMPARE(PrintServer::pageCount(print.pdf), 3);
    QVERIFY(!areaOf(PrintServer::page(print.pdf, 1, 96), {TopLeft}).isEmpty());
    QVERIFY(!areaOf(PrintServer::page(print.pdf, 2, 96), {TopRight}).isEmpty());
    QVERIFY(areaOf(PrintServer::page(print.pdf, 2, 96), {TopLeft}).isEmpty());
    QVERIFY(!areaOf(PrintServer::page(print.pdf, 3, 96), {TopLeft}).isEmpty());
}

void Tst_Printing::defaultsOfTheQueueTurnNoPage_data() {
    QTest::addColumn<bool>("portrait");
    QTest::newRow("portrait") << true;
    QTest::newRow("landscape") << false;
}

void Tst_Printing::defaultsOfTheQueueTurnNoPage() {
    QFETCH(bool, portrait);
    QVERIFY(m_server->setDefault("Office", "orientation-requested", "4"));
    QVERIFY(m_server->setDefault("Office", "number-up", "2"));
    const auto office = printer();
    QVERIFY(!office->isPortrait());
    office->setPaperId(9);
    office->setPortrait(portrait);
    office->setGrayscale(false);
    const QRectF target(48, 96, 200, 100);
    const PrintPage page = pageOf(quarters({200, 100}), target);
    const PrintServer::Print print = printed({page, page}, *office);
    QCOMPARE(PrintServer::pageCount(print.pdf), 2);
    QCOMPARE(PrintServer::pageSize(print.pdf), QSizeF(595, 842));
    const QString options = print.options.join(QLatin1Char(' '));
    QVERIFY2(options.contains("orientation-requested=3"_qs), qPrintable(options));
    QVERIFY2(options.contains("number-up=1"_qs), qPrintable(options));
    QImage sheet = PrintServer::page(print.pdf, 2, 96 * Fine);
    if (!portrait)
        sheet = sheet.transformed(QTransform().rotate(90)); // the way round in which it is read
    const QRectF expected = target.translated(office->printableRect().topLeft());
    const QRectF actual = areaOf(sheet, {TopLeft, TopRight, BottomLeft, BottomRight});
    QVERIFY2(isNear(actual, expected), told(actual, expected).constData());
    const QRectF first(expected.topLeft(), QSizeF(100, 50));
    QVERIFY2(isNear(areaOf(sheet, {TopLeft}), first, 1.5), told(areaOf(sheet, {TopLeft}), first).constData());
}

void Tst_Printing::dialogPrints() {
    PrintPreviewDialog dialog;
    dialog.addImage(quarters({96, 96}));
    QTRY_COMPARE(dialog.findChild<QComboBox *>("printers_"_qs)->currentText(), "Office"_qs);
    QTRY_VERIFY(dialog.findChild<QComboBox *>("pageSizes_"_qs)->count() > 20);
    dialog.findChild<QPushButton *>("print_"_qs)->click();
    QCOMPARE(dialog.result(), 1);
    const PrintServer::Print print = m_server->next();
    QCOMPARE(PrintServer::pageCount(print.pdf), 1);
}

void Tst_Printing::emptyDocumentPrintsNothing() {
    const auto office = printer();
    QVERIFY(office->print({}));
    QVERIFY(m_server->isIdleFor(500));
}

void Tst_Printing::jobWithoutEndPrintsNothing() {
    const auto queue = opened("Office"_qs);
    auto job = queue->startJob(queue->defaultMode(), "Tindra"_qs);
    QVERIFY(job);
    job->startPage();
    job.reset();
    QVERIFY(m_server->isIdleFor(500));
}

QTEST_MAIN(Tst_Printing)
#include "tst_printing.moc"
