#include "platform/platform.h"
#include "print/nativeprinter.h"
#include "print/pagelayout.h"
#include "print/printpreviewdialog.h"
#include "print/printserver.h"
#include "support/literals.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QPainter>
#include <QPushButton>
#include <QTranslator>
#include <QtTest>

#include <atomic>
#include <chrono>
#include <thread>

namespace {

constexpr int Fine = 3; // raster pixels for one at 96 per inch
// Milliseconds: well above the limits that the program sets itself, which add up to less than two seconds,
// and well below the twenty seconds of the network's.
constexpr int Frozen = 8000;

const QColor TopLeft(255, 0, 0);
const QColor TopRight(0, 0, 255);
const QColor BottomLeft(0, 255, 0);
const QColor BottomRight(255, 0, 255);

/// Four quarters in four colours, which tell on paper which way round and which part it is.
QPixmap quarters(const QSize &size) {
    QPixmap pixmap(size);
    QPainter painter(&pixmap);
    const QRect whole = pixmap.rect();
    const int x = size.width() / 2;
    const int y = size.height() / 2;
    painter.fillRect(whole, TopLeft);
    painter.fillRect(whole.adjusted(x, 0, 0, 0), TopRight);
    painter.fillRect(whole.adjusted(0, y, 0, 0), BottomLeft);
    painter.fillRect(whole.adjusted(x, y, 0, 0), BottomRight);
    return pixmap;
}

/// The smallest rectangle around the pixels of these colours, in pixels at 96 per inch.
QRectF areaOf(const QImage &page, const QVector<QColor> &colors) {
    const QImage pixels = page.convertToFormat(QImage::Format_RGB32);
    QVector<QRgb> wanted;
    for (const QColor &color : colors)
        wanted.append(color.rgb());
    QRect area;
    for (int y = 0; y < pixels.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(pixels.constScanLine(y));
        const auto isWanted = [&wanted](QRgb pixel) { return wanted.contains(pixel); };
        const QRgb *end = line + pixels.width();
        const QRgb *first = std::find_if(line, end, isWanted);
        if (first == end)
            continue;
        const QRgb *last = end - 1;
        while (!isWanted(*last))
            --last;
        area |= QRect(QPoint(int(first - line), y), QPoint(int(last - line), y));
    }
    return QRectF(QPointF(area.topLeft()) / Fine, QSizeF(area.size()) / Fine);
}

bool isNear(const QRectF &actual, const QRectF &expected, double tolerance = 0.5) {
    return qAbs(actual.left() - expected.left()) <= tolerance &&
           qAbs(actual.top() - expected.top()) <= tolerance &&
           qAbs(actual.right() - expected.right()) <= tolerance &&
           qAbs(actual.bottom() - expected.bottom()) <= tolerance;
}

QByteArray told(const QRectF &actual, const QRectF &expected) {
    QString text;
    QDebug(&text) << actual << "instead of" << expected;
    return text.toLatin1();
}

/// Translates nothing, and notes whether another thread than the application's asked it.
class WatchingTranslator : public QTranslator {
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *, const char *, const char *, int) const override {
        if (QThread::currentThread() != thread())
            m_isStrayed = true;
        else
            m_isAsked = true;
        return {};
    }
    bool isAsked() const { return m_isAsked; }
    bool isStrayed() const { return m_isStrayed; }

private:
    mutable std::atomic<bool> m_isAsked{false};
    mutable std::atomic<bool> m_isStrayed{false};
};

} // namespace

/// Real prints: from the settings of a page to the sheet that comes out of a print server.
class Tst_Printing : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void queuesAreListed();
    void papersHaveCommonNumbers();
    void queueTellsWhatItOffers();
    void printableAreaIsThatOfTheSheet();
    void queueWithoutDriverHasCommonPapers();
    void presetsOfTheQueueAreRead_data();
    void presetsOfTheQueueAreRead();
    void presetsOfTheUserAreReadAndSent();
    void resolutionIsTheQueues_data();
    void resolutionIsTheQueues();
    void papersAreNamedByTheApplicationsThread();

    void imageStandsWhereItIsLaidOut_data();
    void imageStandsWhereItIsLaidOut();
    void pixelsStayAsTheyAre();
    void frameIsOnePixelOfThePrinter();
    void everyImageIsAPage();
    void copiesAreMade();
    void grayIsGray();
    void colorIsAskedFor();
    void paperIsAskedFor();
    void bothSidesAndQualityAreAskedFor();
    void untouchedSettingsAreTheQueues();
    void defaultsOfTheQueueTurnNoPage_data();
    void defaultsOfTheQueueTurnNoPage();
    void dialogPrints();

    void emptyDocumentPrintsNothing();
    void jobWithoutEndPrintsNothing();
    void refusedJob();
    void queueThatIsNotThere();
    void queueThatDisappears();
    void queueThatDisappearsUnderTheDialog();
    void serverThatIsGone();
    void noServer();
    void silentServerHasNoPrinters();
    void silentServerDoesNotFreezeTheDialog();
    void silentServerPrintsLater();
    void endOfTheProgramWaitsForAJob();
    void endOfTheProgramWaitsNotForEver();

private:
    static QString names() { return NativePrinter::printerNames().join(QLatin1Char(' ')); }
    static std::unique_ptr<NativePrinter> printer(const QString &name = "Office"_qs) {
        auto printer = std::make_unique<NativePrinter>(name);
        printer->paperList();
        return printer;
    }
    static PrintPage pageOf(const QPixmap &pixmap, const QRectF &target, bool border = false) {
        return {pixmap, QRectF(pixmap.rect()), target, border};
    }
    PrintServer::Print printed(const QVector<PrintPage> &pages, NativePrinter &printer) {
        [&] { QVERIFY(printer.print(pages)); }();
        const PrintServer::Print print = m_server->next();
        if (print.pdf.isEmpty())
            qWarning("%s", m_server->log().constData());
        return print;
    }

    std::unique_ptr<PrintServer> m_server;
};

void Tst_Printing::initTestCase() {
    qputenv("CUPS_SERVER", "/nowhere");
}

void Tst_Printing::init() {
    Platform::setInstance(nullptr);
    m_server = std::make_unique<PrintServer>();
    QVERIFY2(m_server->isRunning(), m_server->log().constData());
}

void Tst_Printing::cleanup() {
    m_server.reset();
}

void Tst_Printing::queuesAreListed() {
    QCOMPARE(names(), "Attic Closed Office Plain Preset"_qs);
    QCOMPARE(NativePrinter::defaultPrinterName(), "Office"_qs);
}

void Tst_Printing::papersHaveCommonNumbers() {
    QHash<int, QString> labels;
    for (const PaperEntry &paper : printer()->paperList()) {
        QVERIFY2(!labels.contains(paper.id), qPrintable(paper.label));
        labels.insert(paper.id, paper.label);
    }
    QCOMPARE(labels.value(9), "A4 (210.0 x 297.0 mm)"_qs);
    QCOMPARE(labels.value(1), "Letter (215.9 x 279.4 mm)"_qs);
    QCOMPARE(labels.value(5), "Legal (215.9 x 355.6 mm)"_qs);
    QCOMPARE(labels.value(20), "Envelope #10 (104.8 x 241.3 mm)"_qs);
    QVERIFY(labels.values().contains("A4 (Borderless) (210.0 x 297.0 mm)"_qs));
    QVERIFY(labels.size() > 20);
}

void Tst_Printing::queueTellsWhatItOffers() {
    const auto queue = Platform::instance().printers().open("Office"_qs);
    QVERIFY(queue);
    const PrinterChoices choices = queue->choices();
    QCOMPARE(choices.colors, (QVector<PrinterMode::Color>{PrinterMode::Monochrome, PrinterMode::FullColor}));
    QCOMPARE(choices.duplexes, (QVector<PrinterMode::Duplex>{PrinterMode::OneSided, PrinterMode::LongEdge,
                                                             PrinterMode::ShortEdge}));
    QVERIFY(choices.qualities.contains(PrinterMode::NormalQuality));
    const PrinterMode mode = queue->defaultMode();
    QCOMPARE(mode.fields, 0U);
    QCOMPARE(int(mode.paperSize), 1);
    QCOMPARE(mode.formName, "Letter"_qs);
    QCOMPARE(mode.copies, 1);
    QCOMPARE(mode.orientation, int(PrinterMode::Portrait));
    QCOMPARE(mode.duplex, int(PrinterMode::OneSided));
}

void Tst_Printing::printableAreaIsThatOfTheSheet() {
    const auto office = printer();
    office->setPaperId(9);
    const double point = 96 / 72.0;
    const QSizeF paper = office->paperSize();
    QRectF expected(QPointF(18, 72) * point,
                    QPointF(paper.width() - 36 * point, paper.height() - 54 * point));
    QVERIFY2(isNear(office->printableRect(), expected), told(office->printableRect(), expected).constData());
    // Turned to the left, the lower end of the sheet is at the left.
    office->setPortrait(0);
    expected =
        QRectF(QPointF(54, 18) * point, QPointF(paper.height() - 72 * point, paper.width() - 36 * point));
    QVERIFY2(isNear(office->printableRect(), expected), told(office->printableRect(), expected).constData());
    // The sheet of before serves a paper that the queue has not got.
    office->setPaperId(4242);
    QVERIFY(office->paperSize().isNull());
    QVERIFY(!office->printableRect().isEmpty());
}

void Tst_Printing::queueWithoutDriverHasCommonPapers() {
    const auto plain = printer("Plain"_qs);
    QCOMPARE(plain->paperList().size(), 2);
    QVERIFY(!plain->paperSize().isEmpty());
    const PrintServer::Print print = printed({pageOf(quarters({96, 96}), {0, 0, 96, 96})}, *plain);
    QCOMPARE(PrintServer::pageCount(print.pdf), 1);
}

void Tst_Printing::presetsOfTheQueueAreRead_data() {
    using Mode = PrinterMode;
    QTest::addColumn<QByteArray>("option");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QVector<int>>("expected"); // copies, color, sides, quality, orientation
    const auto row = [](const char *name, const char *option, const char *value,
                        const QVector<int> &expected) {
        QTest::newRow(name) << QByteArray(option) << QByteArray(value) << expected;
    };
    const int sides = Mode::ShortEdge; // of the driver's own
    const int quality = Mode::NormalQuality;
    row("of the driver", "", "", {1, Mode::Monochrome, sides, quality, Mode::Portrait});
    row("copies", "copies", "3", {3, Mode::Monochrome, sides, quality, Mode::Portrait});
    row("color", "print-color-mode", "color", {1, Mode::FullColor, sides, quality, Mode::Portrait});
    row("long edge", "sides", "two-sided-long-edge",
        {1, Mode::Monochrome, Mode::LongEdge, quality, Mode::Portrait});
    row("one side", "sides", "one-sided", {1, Mode::Monochrome, Mode::OneSided, quality, Mode::Portrait});
    row("high quality", "print-quality", "5",
        {1, Mode::Monochrome, sides, Mode::HighQuality, Mode::Portrait});
    row("draft", "print-quality", "3", {1, Mode::Monochrome, sides, Mode::DraftQuality, Mode::Portrait});
    row("landscape", "orientation-requested", "4", {1, Mode::Monochrome, sides, quality, Mode::Landscape});
    row("landscape, other way", "orientation-requested", "5",
        {1, Mode::Monochrome, sides, quality, Mode::Landscape});
    row("portrait", "orientation-requested", "3", {1, Mode::Monochrome, sides, quality, Mode::Portrait});
}

void Tst_Printing::presetsOfTheQueueAreRead() {
    QFETCH(QByteArray, option);
    QFETCH(QByteArray, value);
    QFETCH(QVector<int>, expected);
    if (!option.isEmpty())
        QVERIFY(m_server->setDefault("Preset", option, value));
    const auto queue = Platform::instance().printers().open("Preset"_qs);
    QVERIFY(queue);
    const PrinterMode mode = queue->defaultMode();
    const QVector<int> actual{mode.copies, mode.color, mode.duplex, mode.quality, mode.orientation};
    for (int i = 0; i < actual.size(); ++i)
        QCOMPARE(actual[i], expected[i]);
    QCOMPARE(int(mode.paperSize), 11);
    QCOMPARE(mode.formName, "A5"_qs);
    QCOMPARE(mode.paperWidth, 1480);
    QCOMPARE(mode.paperLength, 2100);
}

void Tst_Printing::presetsOfTheUserAreReadAndSent() {
    const QDir home = QDir::home();
    QVERIFY(home.mkpath(".cups"_qs));
    QFile presets(home.filePath(".cups/lpoptions"_qs));
    QVERIFY(presets.open(QIODevice::WriteOnly));
    presets.write("Dest Office copies=9 sides=one-sided\nDest Preset/draft copies=8\nDest Preset "
                  "media=iso_a4_210x297mm copies=4 sides=two-sided-long-edge print-quality=5 "
                  "print-color-mode=color\n");
    presets.close();
    const auto queue = Platform::instance().printers().open("Preset"_qs);
    presets.remove();
    QVERIFY(queue);
    const PrinterMode mode = queue->defaultMode();
    QCOMPARE(int(mode.paperSize), 9);
    QCOMPARE(mode.copies, 4);
    QCOMPARE(mode.color, int(PrinterMode::FullColor));
    QCOMPARE(mode.duplex, int(PrinterMode::LongEdge));
    QCOMPARE(mode.quality, int(PrinterMode::HighQuality));
    const auto job = queue->startJob(mode, "Tindra"_qs);
    QVERIFY(job);
    job->startPage();
    job->endPage();
    job->end();
    const PrintServer::Print print = m_server->next();
    QCOMPARE(print.copies, 4);
    for (const char *option :
         {"media=iso_a4_210x297mm", "sides=two-sided-long-edge", "print-color-mode=color"})
        QVERIFY2(print.options.contains(QLatin1String(option)),
                 qPrintable(print.options.join(QLatin1Char(' '))));
}

void Tst_Printing::resolutionIsTheQueues_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<int>("perInch");
    QTest::newRow("of the driver") << "Preset"_qs << QByteArray() << 300;
    QTest::newRow("per inch") << "Preset"_qs << QByteArray("1200dpi") << 1200;
    QTest::newRow("per centimetre") << "Preset"_qs << QByteArray("200dpcm") << 508;
    QTest::newRow("too coarse") << "Preset"_qs << QByteArray("10dpi") << 72;
    QTest::newRow("unknown") << "Plain"_qs << QByteArray() << 600;
}

void Tst_Printing::resolutionIsTheQueues() {
    QFETCH(QString, name);
    QFETCH(QByteArray, value);
    if (!value.isEmpty())
        QVERIFY(m_server->setDefault(name.toLatin1(), "printer-resolution", value));
    const auto queue = Platform::instance().printers().open(name);
    QVERIFY(queue);
    const auto metrics = queue->metrics(queue->defaultMode());
    QVERIFY(metrics);
    QTEST(metrics->logPixelsX, "perInch");
    QTEST(metrics->logPixelsY, "perInch");
}

void Tst_Printing::papersAreNamedByTheApplicationsThread() {
    WatchingTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    printer();
    QVERIFY(translator.isAsked());
    QVERIFY(!translator.isStrayed());
}

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

void Tst_Printing::copiesAreMade() {
    const auto office = printer();
    office->setCopies(3);
    const QPixmap image = quarters({20, 20});
    const PrintServer::Print print =
        printed({pageOf(image, {0, 0, 96, 96}), pageOf(image, {0, 0, 96, 96})}, *office);
    QCOMPARE(print.copies, 3);
    QCOMPARE(PrintServer::pageCount(print.pdf), 6);
}

void Tst_Printing::grayIsGray() {
    const auto office = printer();
    office->setGrayscale(true);
    const PrintServer::Print print = printed({pageOf(quarters({20, 20}), {0, 0, 96, 96})}, *office);
    QVERIFY2(print.options.contains("print-color-mode=monochrome"_qs),
             qPrintable(print.options.join(QLatin1Char(' '))));
    const QImage sheet = PrintServer::page(print.pdf, 1, 96);
    int printedPixels = 0;
    for (int y = 0; y < sheet.height(); ++y) {
        for (int x = 0; x < sheet.width(); ++x) {
            const QRgb pixel = sheet.pixel(x, y);
            QVERIFY(qRed(pixel) == qGreen(pixel) && qGreen(pixel) == qBlue(pixel));
            printedPixels += qRed(pixel) < 255;
        }
    }
    QVERIFY(printedPixels > 90 * 90);
}

void Tst_Printing::colorIsAskedFor() {
    const auto office = printer();
    office->setGrayscale(false);
    const PrintServer::Print print = printed({pageOf(quarters({20, 20}), {0, 0, 96, 96})}, *office);
    QVERIFY2(print.options.contains("print-color-mode=color"_qs),
             qPrintable(print.options.join(QLatin1Char(' '))));
    QVERIFY(!areaOf(PrintServer::page(print.pdf, 1, 96), {BottomRight}).isEmpty());
}

void Tst_Printing::paperIsAskedFor() {
    const auto office = printer();
    for (const auto &[id, media, size] : {std::tuple(9, "media=iso_a4_210x297mm", QSizeF(595, 842)),
                                          std::tuple(11, "media=iso_a5_148x210mm", QSizeF(420, 595))}) {
        office->setPaperId(quint16(id));
        const PrintServer::Print print = printed({pageOf(quarters({20, 20}), {0, 0, 96, 96})}, *office);
        QVERIFY2(print.options.contains(QLatin1String(media)),
                 qPrintable(print.options.join(QLatin1Char(' '))));
        QCOMPARE(PrintServer::pageSize(print.pdf), size);
    }
}

void Tst_Printing::bothSidesAndQualityAreAskedFor() {
    const auto queue = Platform::instance().printers().open("Office"_qs);
    for (const auto &[duplex, sides] : {std::pair(PrinterMode::OneSided, "sides=one-sided"),
                                        std::pair(PrinterMode::LongEdge, "sides=two-sided-long-edge"),
                                        std::pair(PrinterMode::ShortEdge, "sides=two-sided-short-edge")}) {
        PrinterMode mode = queue->defaultMode();
        mode.duplex = duplex;
        mode.quality = PrinterMode::NormalQuality;
        mode.fields = PrinterMode::DuplexField | PrinterMode::QualityField;
        const auto job = queue->startJob(mode, "Tindra"_qs);
        QVERIFY(job);
        job->startPage();
        job->endPage();
        job->end();
        const PrintServer::Print print = m_server->next();
        QVERIFY2(print.options.contains(QLatin1String(sides)),
                 qPrintable(print.options.join(QLatin1Char(' '))));
        QVERIFY(print.options.contains("print-quality=4"_qs));
        QCOMPARE(PrintServer::pageCount(print.pdf), 1);
    }
}

void Tst_Printing::untouchedSettingsAreTheQueues() {
    const auto queue = Platform::instance().printers().open("Office"_qs);
    const auto job = queue->startJob(queue->defaultMode(), "Tindra"_qs);
    QVERIFY(job);
    job->startPage();
    job->endPage();
    job->end();
    const PrintServer::Print print = m_server->next();
    const QString options = print.options.join(QLatin1Char(' '));
    QVERIFY2(!options.contains("sides="_qs) && !options.contains("print-quality="_qs), qPrintable(options));
    QVERIFY2(options.contains("media=na_letter_8.5x11in"_qs), qPrintable(options));
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
    QCOMPARE(dialog.findChild<QComboBox *>("printers_"_qs)->currentText(), "Office"_qs);
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
    const auto queue = Platform::instance().printers().open("Office"_qs);
    auto job = queue->startJob(queue->defaultMode(), "Tindra"_qs);
    QVERIFY(job);
    job->startPage();
    job.reset();
    QVERIFY(m_server->isIdleFor(500));
}

void Tst_Printing::refusedJob() {
    const auto closed = printer("Closed"_qs);
    QVERIFY(!closed->paperSize().isEmpty());
    QVERIFY(!closed->print({pageOf(quarters({20, 20}), {0, 0, 96, 96})}));
    QVERIFY(m_server->isIdleFor(500));
}

void Tst_Printing::queueThatIsNotThere() {
    const auto gone = printer("Cellar"_qs);
    QVERIFY(!gone->paperSize().isValid());
    QVERIFY(!gone->print({pageOf(quarters({20, 20}), {0, 0, 96, 96})}));
}

void Tst_Printing::queueThatDisappears() {
    const auto attic = printer("Attic"_qs);
    QVERIFY(m_server->removeQueue("Attic"));
    QVERIFY(!attic->print({pageOf(quarters({20, 20}), {0, 0, 96, 96})}));
    QCOMPARE(names(), "Closed Office Plain Preset"_qs);
}

void Tst_Printing::queueThatDisappearsUnderTheDialog() {
    PrintPreviewDialog dialog;
    dialog.addImage(quarters({96, 96}));
    dialog.findChild<QComboBox *>("printers_"_qs)->setCurrentText("Attic"_qs);
    QVERIFY(m_server->removeQueue("Attic"));
    auto *print = dialog.findChild<QPushButton *>("print_"_qs);
    QVERIFY(print->isEnabled());
    print->click();
    QCOMPARE(dialog.result(), 1);
    QVERIFY(m_server->isIdleFor(500));
}

void Tst_Printing::serverThatIsGone() {
    const auto office = printer();
    m_server->stop();
    QElapsedTimer time;
    time.start();
    QVERIFY(!office->print({pageOf(quarters({20, 20}), {0, 0, 96, 96})}));
    QCOMPARE(names(), QString());
    QVERIFY2(time.elapsed() < Frozen, qPrintable(QString::number(time.elapsed())));
}

void Tst_Printing::noServer() {
    qputenv("CUPS_SERVER", "/nowhere/at/all");
    QElapsedTimer time;
    time.start();
    QCOMPARE(names(), QString());
    QCOMPARE(NativePrinter::defaultPrinterName(), QString());
    QVERIFY(!printer()->paperSize().isValid());
    QVERIFY2(time.elapsed() < Frozen, qPrintable(QString::number(time.elapsed())));
}

void Tst_Printing::silentServerHasNoPrinters() {
    m_server->setSilent(true);
    QElapsedTimer time;
    time.start();
    PrintPreviewDialog dialog;
    QVERIFY2(time.elapsed() < Frozen, qPrintable(QString::number(time.elapsed())));
    QVERIFY(!dialog.findChild<QPushButton *>("print_"_qs)->isEnabled());
    QCOMPARE(dialog.findChild<QComboBox *>("printers_"_qs)->count(), 0);
}

void Tst_Printing::silentServerDoesNotFreezeTheDialog() {
    PrintPreviewDialog dialog;
    dialog.addImage(quarters({96, 96}));
    auto *printers = dialog.findChild<QComboBox *>("printers_"_qs);
    m_server->setSilent(true);
    QElapsedTimer time;
    time.start();
    printers->setCurrentText("Attic"_qs);
    QVERIFY2(time.elapsed() < Frozen, qPrintable(QString::number(time.elapsed())));
    QCOMPARE(dialog.findChild<QComboBox *>("pageSizes_"_qs)->count(), 0);
    QVERIFY(!dialog.findChild<QPushButton *>("print_"_qs)->isEnabled());
    m_server->setSilent(false);
    // The answer comes late, but it comes.
    QTRY_VERIFY_WITH_TIMEOUT(dialog.findChild<QComboBox *>("pageSizes_"_qs)->count() > 20, Frozen);
    QVERIFY(dialog.findChild<QPushButton *>("print_"_qs)->isEnabled());
    printers->setCurrentText("Office"_qs);
    QVERIFY(dialog.findChild<QComboBox *>("pageSizes_"_qs)->count() > 20);
}

void Tst_Printing::silentServerPrintsLater() {
    const auto office = printer();
    m_server->setSilent(true);
    QElapsedTimer time;
    time.start();
    QVERIFY(office->print({pageOf(quarters({20, 20}), {0, 0, 96, 96})}));
    QVERIFY2(time.elapsed() < Frozen, qPrintable(QString::number(time.elapsed())));
    QVERIFY(m_server->isIdleFor(200));
    m_server->setSilent(false);
    QCOMPARE(PrintServer::pageCount(m_server->next().pdf), 1);
}

void Tst_Printing::endOfTheProgramWaitsForAJob() {
    auto office = printer();
    m_server->setSilent(true);
    QVERIFY(office->print({pageOf(quarters({20, 20}), {0, 0, 96, 96})}));
    office.reset();
    std::atomic<bool> answers{false};
    std::thread server([&] {
        std::this_thread::sleep_for(std::chrono::seconds(1));
        answers = true;
        m_server->setSilent(false);
    });
    Platform::setInstance(nullptr);
    const bool hasWaited = answers;
    server.join();
    QVERIFY(hasWaited);
    QCOMPARE(PrintServer::pageCount(m_server->next().pdf), 1);
}

void Tst_Printing::endOfTheProgramWaitsNotForEver() {
    auto office = printer();
    m_server->setSilent(true);
    QVERIFY(office->print({pageOf(quarters({20, 20}), {0, 0, 96, 96})}));
    office.reset();
    QElapsedTimer time;
    time.start();
    Platform::setInstance(nullptr);
    QVERIFY2(time.elapsed() < 2 * Frozen, qPrintable(QString::number(time.elapsed())));
}

QTEST_MAIN(Tst_Printing)
#include "tst_printing.moc"
