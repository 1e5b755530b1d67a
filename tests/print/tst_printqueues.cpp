#include "print/printservertest.h"

#include <QTranslator>

#include <atomic>

namespace {

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

/// What a queue tells of itself.
class Tst_PrintQueues : public PrintServerTest {
    Q_OBJECT
private slots:
    void initTestCase() { PrintServerTest::initTestCase(); }
    void init() { PrintServerTest::init(); }
    void cleanup() { PrintServerTest::cleanup(); }

    void queuesAreListed();
    void defaultOfTheUserIsTaken_data();
    void defaultOfTheUserIsTaken();
    void papersHaveCommonNumbers();
    void queueTellsWhatItOffers();
    void printableAreaIsThatOfTheSheet();
    void queueWithoutDriverHasCommonPapers();
    void presetsOfTheQueueAreRead_data();
    void presetsOfTheQueueAreRead();
    void presetsOfTheUserAreRead_data();
    void presetsOfTheUserAreRead();
    void resolutionIsTheQueues_data();
    void resolutionIsTheQueues();
    void papersAreNamedByTheApplicationsThread();
};

void Tst_PrintQueues::queuesAreListed() {
    QCOMPARE(names(), "Attic Closed Office Plain Preset"_qs);
    QCOMPARE(NativePrinter::defaultPrinterName(), "Office"_qs);
}

void Tst_PrintQueues::defaultOfTheUserIsTaken_data() {
    QTest::addColumn<QByteArray>("presets");
    QTest::newRow("queue") << QByteArray("Default Preset copies=2\n");
    QTest::newRow("instance of a queue") << QByteArray("Default Preset/draft copies=2\n");
    QTest::newRow("instance beside others")
        << QByteArray("Dest Preset copies=3\nDest Office/draft copies=3\nDefault Preset/draft copies=2\n");
}

void Tst_PrintQueues::defaultOfTheUserIsTaken() {
    QFETCH(QByteArray, presets);
    writePresets(presets);
    QCOMPARE(names(), "Attic Closed Office Plain Preset"_qs);
    QCOMPARE(NativePrinter::defaultPrinterName(), "Preset"_qs);
}

void Tst_PrintQueues::papersHaveCommonNumbers() {
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

void Tst_PrintQueues::queueTellsWhatItOffers() {
    const auto queue = opened("Office"_qs);
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

void Tst_PrintQueues::printableAreaIsThatOfTheSheet() {
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

void Tst_PrintQueues::queueWithoutDriverHasCommonPapers() {
    const auto plain = printer("Plain"_qs);
    QCOMPARE(plain->paperList().size(), 2);
    QVERIFY(!plain->paperSize().isEmpty());
    const PrintServer::Print print = printed({pageOf(quarters({96, 96}), {0, 0, 96, 96})}, *plain);
    QCOMPARE(PrintServer::pageCount(print.pdf), 1);
}

void Tst_PrintQueues::presetsOfTheQueueAreRead_data() {
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

void Tst_PrintQueues::presetsOfTheQueueAreRead() {
    QFETCH(QByteArray, option);
    QFETCH(QByteArray, value);
    QFETCH(QVector<int>, expected);
    if (!option.isEmpty())
        QVERIFY(m_server->setDefault("Preset", option, value));
    const auto queue = opened("Preset"_qs);
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

void Tst_PrintQueues::presetsOfTheUserAreRead_data() {
    using Mode = PrinterMode;
    QTest::addColumn<QByteArray>("presets");
    QTest::addColumn<QVector<int>>("expected"); // paper, copies, color, sides, quality, orientation
    struct Expected {
        int paper = 11; // of the queue's own
        int copies = 1;
        int color = Mode::Monochrome;
        int sides = Mode::ShortEdge;
        int quality = Mode::NormalQuality;
        int orientation = Mode::Portrait;
    };
    const auto row = [](const QByteArray &presets, const Expected &e) {
        QTest::newRow(presets.constData())
            << presets << QVector<int>{e.paper, e.copies, e.color, e.sides, e.quality, e.orientation};
    };
    const auto with = [](int Expected::*part, int value) {
        Expected expected;
        expected.*part = value;
        return expected;
    };
    row("copies=4", with(&Expected::copies, 4));
    for (const char *paper : {"media=iso_a4_210x297mm", "media=A4", "media=Upper,A4", "PageSize=A4"})
        row(paper, with(&Expected::paper, 9));
    row("media=nonsense", {});
    for (const char *color : {"print-color-mode=color", "ColorModel=RGB"})
        row(color, with(&Expected::color, Mode::FullColor));
    for (const char *sides : {"sides=two-sided-long-edge", "Duplex=DuplexNoTumble"})
        row(sides, with(&Expected::sides, Mode::LongEdge));
    for (const char *sides : {"sides=one-sided", "Duplex=None", "sides=one-sided Duplex=DuplexNoTumble"})
        row(sides, with(&Expected::sides, Mode::OneSided));
    for (const char *quality : {"print-quality=5", "print-quality=high", "cupsPrintQuality=High"})
        row(quality, with(&Expected::quality, Mode::HighQuality));
    for (const char *quality : {"print-quality=3", "print-quality=draft"})
        row(quality, with(&Expected::quality, Mode::DraftQuality));
    row("print-quality=nonsense", {});
    for (const char *orientation :
         {"orientation-requested=4", "orientation-requested=landscape", "landscape", "landscape=true"})
        row(orientation, with(&Expected::orientation, Mode::Landscape));
    row("landscape=false", {});
}

void Tst_PrintQueues::presetsOfTheUserAreRead() {
    QFETCH(QByteArray, presets);
    QFETCH(QVector<int>, expected);
    writePresets("Dest Preset " + presets + '\n');
    const auto queue = opened("Preset"_qs);
    QVERIFY(queue);
    const PrinterMode mode = queue->defaultMode();
    QCOMPARE(mode.fields, 0U);
    const QVector<int> actual{mode.paperSize, mode.copies,  mode.color,
                              mode.duplex,    mode.quality, mode.orientation};
    QCOMPARE(actual, expected);
}

void Tst_PrintQueues::resolutionIsTheQueues_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<int>("perInch");
    QTest::newRow("of the driver") << "Preset"_qs << QByteArray() << 300;
    QTest::newRow("per inch") << "Preset"_qs << QByteArray("1200dpi") << 1200;
    QTest::newRow("per centimetre") << "Preset"_qs << QByteArray("200dpcm") << 508;
    QTest::newRow("too coarse") << "Preset"_qs << QByteArray("10dpi") << 72;
    QTest::newRow("unknown") << "Plain"_qs << QByteArray() << 600;
}

void Tst_PrintQueues::resolutionIsTheQueues() {
    QFETCH(QString, name);
    QFETCH(QByteArray, value);
    if (!value.isEmpty())
        QVERIFY(m_server->setDefault(name.toLatin1(), "printer-resolution", value));
    const auto queue = opened(name);
    QVERIFY(queue);
    const auto metrics = queue->metrics(queue->defaultMode());
    QVERIFY(metrics);
    QTEST(metrics->logPixelsX, "perInch");
    QTEST(metrics->logPixelsY, "perInch");
}

void Tst_PrintQueues::papersAreNamedByTheApplicationsThread() {
    WatchingTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    printer();
    QVERIFY(translator.isAsked());
    QVERIFY(!translator.isStrayed());
}

QTEST_MAIN(Tst_PrintQueues)
#include "tst_printqueues.moc"
