#include "print/printservertest.h"

/// What a job asks of the printer.
class Tst_PrintOptions : public PrintServerTest {
    Q_OBJECT
private slots:
    void initTestCase() { PrintServerTest::initTestCase(); }
    void init() { PrintServerTest::init(); }
    void cleanup() { PrintServerTest::cleanup(); }

    void copiesAreMade();
    void grayIsGray();
    void colorIsAskedFor();
    void paperIsAskedFor();
    void bothSidesAndQualityAreAskedFor();
    void untouchedSettingsAreTheQueues();
    void presetsOfTheUserAreSent_data();
    void presetsOfTheUserAreSent();
    void trayOfTheUserIsSentWithoutASize();
    void copiesOfTheUserAreSent();
    void lessThanOneCopyIsOne();
};

void Tst_PrintOptions::copiesAreMade() {
    const auto office = printer();
    office->setCopies(3);
    const QPixmap image = quarters({20, 20});
    const PrintServer::Print print =
        printed({pageOf(image, {0, 0, 96, 96}), pageOf(image, {0, 0, 96, 96})}, *office);
    QCOMPARE(print.copies, 3);
    QCOMPARE(PrintServer::pageCount(print.pdf), 6);
}

void Tst_PrintOptions::grayIsGray() {
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

void Tst_PrintOptions::colorIsAskedFor() {
    const auto office = printer();
    office->setGrayscale(false);
    const PrintServer::Print print = printed({pageOf(quarters({20, 20}), {0, 0, 96, 96})}, *office);
    QVERIFY2(print.options.contains("print-color-mode=color"_qs),
             qPrintable(print.options.join(QLatin1Char(' '))));
    QVERIFY(!areaOf(PrintServer::page(print.pdf, 1, 96), {BottomRight}).isEmpty());
}

void Tst_PrintOptions::paperIsAskedFor() {
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

void Tst_PrintOptions::bothSidesAndQualityAreAskedFor() {
    const auto queue = opened("Office"_qs);
    for (const auto &[duplex, sides] : {std::pair(PrinterMode::OneSided, "sides=one-sided"),
                                        std::pair(PrinterMode::LongEdge, "sides=two-sided-long-edge"),
                                        std::pair(PrinterMode::ShortEdge, "sides=two-sided-short-edge")}) {
        PrinterMode mode = queue->defaultMode();
        mode.duplex = duplex;
        mode.quality = PrinterMode::NormalQuality;
        mode.fields = PrinterMode::DuplexField | PrinterMode::QualityField;
        const PrintServer::Print print = printedEmpty(*queue, mode);
        QVERIFY2(print.options.contains(QLatin1String(sides)),
                 qPrintable(print.options.join(QLatin1Char(' '))));
        QVERIFY(print.options.contains("print-quality=4"_qs));
        QCOMPARE(PrintServer::pageCount(print.pdf), 1);
    }
}

void Tst_PrintOptions::untouchedSettingsAreTheQueues() {
    const auto queue = opened("Office"_qs);
    const PrintServer::Print print = printedEmpty(*queue, queue->defaultMode());
    const QString options = print.options.join(QLatin1Char(' '));
    QVERIFY2(!options.contains("sides="_qs) && !options.contains("print-quality="_qs), qPrintable(options));
    QVERIFY2(options.contains("media=na_letter_8.5x11in"_qs), qPrintable(options));
}

void Tst_PrintOptions::presetsOfTheUserAreSent_data() {
    QTest::addColumn<QByteArray>("presets");
    QTest::addColumn<quint32>("fields"); // what was set for this print
    QTest::addColumn<QString>("sent");
    QTest::addColumn<QString>("notSent");
    const auto row = [](const char *presets, quint32 fields, const char *sent, const char *notSent) {
        QTest::newRow(presets) << QByteArray(presets) << fields << QString::fromLatin1(sent)
                               << QString::fromLatin1(notSent);
    };
    using Mode = PrinterMode;
    row("sides=two-sided-long-edge", 0, "sides=two-sided-long-edge", "");
    row("print-color-mode=color", 0, "print-color-mode=color", "");
    row("print-quality=high", 0, "print-quality=5", "");
    row("finishings=staple,punch", 0, "finishings=4,5", "");
    row("Duplex=DuplexNoTumble", 0, "Duplex=DuplexNoTumble", "sides=");
    row("ColorModel=RGB", 0, "ColorModel=RGB", "print-color-mode=");
    row("InputSlot=Tray2 ret=light", 0, "InputSlot=Tray2 ret=light", "");
    // What is set in the dialog counts, whatever the driver calls it.
    row("Duplex=DuplexTumble sides=two-sided-long-edge", Mode::DuplexField, "sides=one-sided",
        "Duplex=DuplexTumble two-");
    row("ColorModel=Gray", Mode::ColorField, "print-color-mode=color", "ColorModel=Gray");
    row("print-quality=high cupsPrintQuality=High", Mode::QualityField, "print-quality=4",
        "cupsPrintQuality=High print-quality=5");
    // Every job names its sheet and how a page lies on it.
    row("media=iso_a5_148x210mm PageSize=A5 PageRegion=A5", 0, "media=iso_a4_210x297mm", "=A5 iso_a5");
    row("media=A5", 0, "media=iso_a4_210x297mm PageSize=A4", "A5");
    // The tray and the kind of paper are no part of the dialog.
    row("media=A5,Tray2", 0, "media=iso_a4_210x297mm,Tray2 PageSize=A4", "A5");
    row("media=Tray2,iso_a5_148x210mm,Glossy", 0, "media=iso_a4_210x297mm,Tray2,Glossy PageSize=A4",
        "iso_a5");
    row("media=A5.Fullbleed,Custom.10x10cm,iso-a5,Tray2", 0, "media=iso_a4_210x297mm,Tray2",
        "A5 iso-a5 Custom");
    row("media=Tray2", 0, "media=iso_a4_210x297mm,Tray2 PageSize=A4", "");
    row("media-col={media-source=tray-2 media-type=photographic-glossy media-size={x-dimension=14800 "
        "y-dimension=21000}}",
        0, "media=iso_a4_210x297mm PageSize=A4 InputSlot=Tray2 MediaType=Glossy", "A5");
    row("media-col={media-size={x-dimension=14800 y-dimension=21000}}", 0,
        "media=iso_a4_210x297mm PageSize=A4", "A5 InputSlot MediaType");
    row("number-up=4 number-up-layout=btlr", 0, "number-up=1", "number-up=4 number-up-layout");
    row("orientation-requested=4 landscape=true", 0, "orientation-requested=3", "landscape");
    row("fit-to-page scaling=50 print-scaling=fill", 0, "", "fit-to-page scaling=50 =fill");
    // What the library noted of the queue.
    row("printer-info=Loft device-uri=file:/x marker-names=Black raw=true", 0, "",
        "printer-info device-uri marker-names raw");
}

void Tst_PrintOptions::presetsOfTheUserAreSent() {
    QFETCH(QByteArray, presets);
    QFETCH(quint32, fields);
    QFETCH(QString, sent);
    QFETCH(QString, notSent);
    writePresets("Dest Office copies=9\nDest Preset/draft copies=8\nDest Preset " + presets + '\n');
    const auto queue = opened("Preset"_qs);
    QVERIFY(queue);
    PrinterMode mode = queue->defaultMode();
    mode.paperSize = PrinterMode::A4;
    if (fields != 0) {
        mode.duplex = PrinterMode::OneSided;
        mode.color = PrinterMode::FullColor;
        mode.quality = PrinterMode::NormalQuality;
    }
    mode.fields = fields;
    const PrintServer::Print print = printedEmpty(*queue, mode);
    QCOMPARE(print.copies, 1);
    const QString options = print.options.join(QLatin1Char(' '));
    for (const QString &option : sent.split(QLatin1Char(' '), Qt::SkipEmptyParts))
        QVERIFY2(print.options.contains(option), qPrintable(options));
    for (const QString &part : notSent.split(QLatin1Char(' '), Qt::SkipEmptyParts))
        QVERIFY2(!options.contains(part), qPrintable(options));
}

void Tst_PrintOptions::trayOfTheUserIsSentWithoutASize() {
    writePresets("Dest Plain media=A5,Tray2\n");
    const auto queue = opened("Plain"_qs); // which knows of no sizes
    QVERIFY(queue);
    const QStringList options = printedEmpty(*queue, queue->defaultMode()).options;
    QVERIFY2(options.contains("media=Tray2"_qs), qPrintable(options.join(QLatin1Char(' '))));
}

void Tst_PrintOptions::copiesOfTheUserAreSent() {
    writePresets("Default Preset copies=4\n");
    const auto queue = opened("Preset"_qs);
    QVERIFY(queue);
    QCOMPARE(printedEmpty(*queue, queue->defaultMode()).copies, 4);
}

void Tst_PrintOptions::lessThanOneCopyIsOne() {
    const auto office = printer();
    office->setCopies(-5);
    QCOMPARE(printed({pageOf(quarters({20, 20}), {0, 0, 96, 96})}, *office).copies, 1);
}

QTEST_MAIN(Tst_PrintOptions)
#include "tst_printoptions.moc"
