#include "print/nativeprinter.h"
#include "print/printerpropertiesdialog.h"
#include "support/fakeplatform.h"
#include "support/imagecompare.h"
#include "support/literals.h"
#include "support/modalanswers.h"

#include <QComboBox>
#include <QPainter>
#include <QtTest>

class Tst_NativePrinter : public QObject {
    Q_OBJECT
private slots:
    void init();

    void namesAreThoseOfTheSystem();
    void nothingIsThereWithoutPrinters();
    void settingsAreRead();
    void unreadablePrinterAnswersWithDefaults();
    void unreadablePrinterIgnoresWhatIsSet();
    void orientationOtherThanLandscapeIsPortrait_data();
    void orientationOtherThanLandscapeIsPortrait();
    void settersSetValueAndBit();
    void everyChangeMeasuresThePageAnew();
    void reloadForgetsWhatWasSet();

    void papersKeepOrderAndTellTheirSize();
    void formNameSelectsItsPaper_data();
    void formNameSelectsItsPaper();
    void paperWithoutSizeBecomesA4();
    void unknownPaperHasNeitherNameNorSize();
    void longFormNameIsCut();

    void paperSize_data();
    void paperSize();
    void paperSizeHasSinglePrecision();
    void printableRect_data();
    void printableRect();
    void noPageMeansNoPrintableRect();

    void pageGoesToThePrinter();
    void resolutionAcrossServesDownToo();
    void targetIsNothingWithoutPage();
    void transparencyPrintsWhite();
    void frameIsDrawnOnTheTarget();
    void emptyListMakesADocumentWithoutPages();
    void refusedJobPrintsNothing();

    void propertiesNeedThePrinter();
    void propertiesAreShownForAParentOnly();
    void acceptedPropertiesAreTaken();
    void cancelledPropertiesAreNot();
    void propertiesLeaveThePageOfBefore();

private:
    static PrintPage page(const QPixmap &pixmap, const QRectF &target, bool border = false) {
        return {pixmap, QRectF(pixmap.rect()), target, border};
    }
    static QPixmap filled(const QSize &size, const QColor &color) {
        QPixmap pixmap(size);
        pixmap.fill(color);
        return pixmap;
    }
    FakePrinter &office() { return m_printers->printer("Office"_qs); }

    FakePrinters *m_printers = nullptr;
};

void Tst_NativePrinter::init() {
    m_printers = &FakePlatform::install()->printerList;
    m_printers->add("Office"_qs);
}

void Tst_NativePrinter::namesAreThoseOfTheSystem() {
    m_printers->add("Attic"_qs);
    m_printers->chosen = "Attic"_qs;
    QCOMPARE(NativePrinter::printerNames(), (QStringList{"Office"_qs, "Attic"_qs}));
    QCOMPARE(NativePrinter::defaultPrinterName(), "Attic"_qs);
}

void Tst_NativePrinter::nothingIsThereWithoutPrinters() {
    m_printers->order.clear();
    m_printers->chosen.clear();
    QVERIFY(NativePrinter::printerNames().isEmpty());
    QVERIFY(NativePrinter::defaultPrinterName().isEmpty());
}

void Tst_NativePrinter::settingsAreRead() {
    office().mode.copies = 7;
    office().mode.color = 1;
    office().mode.orientation = 2;
    office().mode.paperSize = 11;
    const NativePrinter printer("Office"_qs);
    QCOMPARE(printer.copies(), 7);
    QVERIFY(printer.isGrayscale());
    QVERIFY(!printer.isPortrait());
    QCOMPARE(int(printer.paperId()), 11);
}

void Tst_NativePrinter::unreadablePrinterAnswersWithDefaults() {
    NativePrinter printer("Gone"_qs);
    QCOMPARE(printer.copies(), 1);
    QVERIFY(!printer.isPortrait());
    QCOMPARE(int(printer.paperId()), 9);
    QVERIFY(!printer.isGrayscale());
    QVERIFY(!printer.paperSize().isValid());
    QCOMPARE(printer.printableRect(), QRectF());
    QVERIFY(printer.paperList().isEmpty());
    QVERIFY(!printer.print({}));
}

void Tst_NativePrinter::unreadablePrinterIgnoresWhatIsSet() {
    NativePrinter printer("Gone"_qs);
    printer.setCopies(5);
    printer.setGrayscale(true);
    printer.setPortrait(1);
    printer.setPaperId(1);
    QCOMPARE(printer.copies(), 1);
    QVERIFY(!printer.isGrayscale());
    QVERIFY(!printer.isPortrait());
    QCOMPARE(int(printer.paperId()), 9);
    QVERIFY(m_printers->measured.isEmpty());
}

void Tst_NativePrinter::orientationOtherThanLandscapeIsPortrait_data() {
    QTest::addColumn<int>("orientation");
    QTest::addColumn<bool>("portrait");
    QTest::addColumn<bool>("upright"); // whether the paper is told upright
    QTest::newRow("portrait") << 1 << true << true;
    QTest::newRow("landscape") << 2 << false << false;
    QTest::newRow("unknown") << 0 << true << false;
}

void Tst_NativePrinter::orientationOtherThanLandscapeIsPortrait() {
    QFETCH(int, orientation);
    QFETCH(bool, portrait);
    QFETCH(bool, upright);
    office().mode.orientation = orientation;
    const NativePrinter printer("Office"_qs);
    QCOMPARE(printer.isPortrait(), portrait);
    QCOMPARE(printer.paperSize().height() > printer.paperSize().width(), upright);
}

void Tst_NativePrinter::settersSetValueAndBit() {
    NativePrinter printer("Office"_qs);
    printer.paperList();
    const auto printed = [&] {
        printer.print({});
        return m_printers->jobs.last()->mode;
    };
    quint32 expected = printed().fields; // the paper was found by its name
    QCOMPARE(expected, 0x1000EU);

    printer.setCopies(3);
    QCOMPARE(printed().copies, 3);
    QCOMPARE(printed().fields, expected |= 0x100U);
    printer.setGrayscale(true);
    QCOMPARE(printed().color, 1);
    QCOMPARE(printed().fields, expected |= 0x800U);
    printer.setGrayscale(false);
    QCOMPARE(printed().color, 2);
    printer.setPortrait(0);
    QCOMPARE(printed().orientation, 2);
    QCOMPARE(printed().fields, expected |= 0x1U);
    printer.setPortrait(7);
    QCOMPARE(printed().orientation, 1);
    printer.setPaperId(1);
    const PrinterMode mode = printed();
    QCOMPARE(int(mode.paperSize), 1);
    QCOMPARE(mode.paperWidth, 2159);
    QCOMPARE(mode.paperLength, 2794);
    QCOMPARE(mode.formName, "Letter"_qs);
}

void Tst_NativePrinter::everyChangeMeasuresThePageAnew() {
    NativePrinter printer("Office"_qs);
    printer.paperList();
    m_printers->measured.clear();
    printer.setCopies(2);
    printer.setGrayscale(true);
    printer.setPortrait(0);
    printer.setPaperId(11);
    QCOMPARE(m_printers->measured.size(), 4);
    QCOMPARE(m_printers->measured[0].copies, 2);
    QCOMPARE(m_printers->measured[1].color, 1);
    QCOMPARE(m_printers->measured[2].orientation, 2);
    QCOMPARE(int(m_printers->measured[3].paperSize), 11);
}

void Tst_NativePrinter::reloadForgetsWhatWasSet() {
    NativePrinter printer("Office"_qs);
    printer.setCopies(2);
    printer.reload();
    QCOMPARE(printer.copies(), 1);
    office().isThere = false;
    printer.setCopies(2);
    printer.reload();
    QCOMPARE(printer.copies(), 1);
    QCOMPARE(printer.printableRect(), QRectF());
}

void Tst_NativePrinter::papersKeepOrderAndTellTheirSize() {
    office().papers.append({300, "Label %1 (wide)"_qs, {1016, 333}});
    NativePrinter printer("Office"_qs);
    const QVector<PaperEntry> papers = printer.paperList();
    QStringList labels;
    QVector<int> ids;
    for (const PaperEntry &paper : papers) {
        labels.append(paper.label);
        ids.append(paper.id);
    }
    QCOMPARE(labels, (QStringList{"A4 (210.0 x 297.0 mm)"_qs, "Letter (215.9 x 279.4 mm)"_qs,
                                  "A5 (148.0 x 210.0 mm)"_qs, "Label %1 (wide) (101.6 x 33.3 mm)"_qs}));
    QCOMPARE(ids, (QVector<int>{9, 1, 11, 300}));
}

void Tst_NativePrinter::formNameSelectsItsPaper_data() {
    QTest::addColumn<QString>("formName");
    QTest::addColumn<int>("id");
    QTest::addColumn<int>("width");
    QTest::newRow("listed") << "A5" << 11 << 1480;
    QTest::newRow("other case") << "a5" << 77 << 1234;
    QTest::newRow("none") << "" << 77 << 1234;
    QTest::newRow("not listed") << "Legal" << 77 << 1234;
}

void Tst_NativePrinter::formNameSelectsItsPaper() {
    QFETCH(QString, formName);
    QFETCH(int, id);
    QFETCH(int, width);
    office().mode.formName = formName;
    office().mode.paperSize = 77;
    office().mode.paperWidth = 1234;
    office().mode.paperLength = 2345;
    NativePrinter printer("Office"_qs);
    printer.paperList();
    QCOMPARE(int(printer.paperId()), id);
    QCOMPARE(qRound(printer.paperSize().width() / 96 * 254), width);
}

void Tst_NativePrinter::paperWithoutSizeBecomesA4() {
    office().mode.formName.clear();
    office().mode.paperSize = 77;
    office().mode.paperWidth = 0;
    office().mode.paperLength = 0;
    NativePrinter printer("Office"_qs);
    printer.paperList();
    QCOMPARE(int(printer.paperId()), 9);
    QCOMPARE(qRound(printer.paperSize().height() / 96 * 254), 2970);
}

void Tst_NativePrinter::unknownPaperHasNeitherNameNorSize() {
    NativePrinter printer("Office"_qs);
    printer.paperList();
    printer.setPaperId(4242);
    QCOMPARE(int(printer.paperId()), 4242);
    QVERIFY(printer.paperSize().isNull());
    const PrinterMode mode = m_printers->measured.last();
    QCOMPARE(mode.paperWidth, 0);
    QCOMPARE(mode.paperLength, 0);
    QVERIFY(mode.formName.isEmpty());
    // It has an entry from now on, and still no size.
    printer.setPaperId(9);
    printer.setPaperId(4242);
    QVERIFY(printer.paperSize().isNull());
}

void Tst_NativePrinter::longFormNameIsCut() {
    office().papers.append({300, QString(40, QLatin1Char('x')), {1000, 2000}});
    NativePrinter printer("Office"_qs);
    printer.paperList();
    printer.setPaperId(300);
    QCOMPARE(m_printers->measured.last().formName, QString(32, QLatin1Char('x')));
}

void Tst_NativePrinter::paperSize_data() {
    QTest::addColumn<int>("orientation");
    QTest::addColumn<QSize>("tenths");
    QTest::addColumn<QSizeF>("expected");
    QTest::newRow("portrait") << 1 << QSize(2100, 2970) << QSizeF(793.7008, 1122.5197);
    QTest::newRow("landscape") << 2 << QSize(2100, 2970) << QSizeF(1122.5197, 793.7008);
    QTest::newRow("wide paper") << 1 << QSize(1016, 508) << QSizeF(384, 192);
    QTest::newRow("wide paper in landscape") << 2 << QSize(1016, 508) << QSizeF(192, 384);
    QTest::newRow("unknown orientation") << 3 << QSize(254, 508) << QSizeF(192, 96);
}

void Tst_NativePrinter::paperSize() {
    QFETCH(int, orientation);
    QFETCH(QSize, tenths);
    QFETCH(QSizeF, expected);
    office().mode.orientation = orientation;
    office().mode.paperWidth = tenths.width();
    office().mode.paperLength = tenths.height();
    const QSizeF size = NativePrinter("Office"_qs).paperSize();
    QVERIFY2(qAbs(size.width() - expected.width()) < 0.0001, qPrintable(QString::number(size.width())));
    QVERIFY2(qAbs(size.height() - expected.height()) < 0.0001, qPrintable(QString::number(size.height())));
}

void Tst_NativePrinter::paperSizeHasSinglePrecision() {
    const QSizeF size = NativePrinter("Office"_qs).paperSize();
    QCOMPARE(size.width(), double(793.70079f));
    QVERIFY(size.width() != 210 * 3.7795275591);
}

void Tst_NativePrinter::printableRect_data() {
    QTest::addColumn<bool>("portrait");
    QTest::addColumn<int>("across");
    QTest::addColumn<int>("down");
    QTest::addColumn<QRectF>("expected"); // of device pixels
    // Margins of 4, 5, 6 and 7 mm: left, top, right, bottom.
    QTest::newRow("portrait") << true << 300 << 300 << QRectF(47, 59, 2362, 3366);
    QTest::newRow("landscape") << false << 300 << 300 << QRectF(83, 47, 3366, 2362);
    QTest::newRow("unequal resolutions") << true << 600 << 300 << QRectF(94, 59, 4724, 3366);
}

void Tst_NativePrinter::printableRect() {
    QFETCH(bool, portrait);
    QFETCH(int, across);
    QFETCH(int, down);
    QFETCH(QRectF, expected);
    office().resolutionX = across;
    office().resolutionY = down;
    NativePrinter printer("Office"_qs);
    printer.setPortrait(portrait);
    const QRectF rect = printer.printableRect();
    QCOMPARE(float(rect.left()), float(expected.left()) / float(across) * 96);
    QCOMPARE(float(rect.top()), float(expected.top()) / float(down) * 96);
    QCOMPARE(float(rect.width()), float(expected.width()) / float(across) * 96);
    QCOMPARE(float(rect.height()), float(expected.height()) / float(down) * 96);
    QCOMPARE(rect.width(), double(float(rect.width())));
}

void Tst_NativePrinter::noPageMeansNoPrintableRect() {
    office().hasMetrics = false;
    const NativePrinter printer("Office"_qs);
    QVERIFY(printer.paperSize().isValid());
    QCOMPARE(printer.printableRect(), QRectF());
}

void Tst_NativePrinter::pageGoesToThePrinter() {
    NativePrinter printer("Office"_qs);
    const QPixmap red = filled({20, 10}, Qt::red);
    const PrintPage cut{red, {2.5, 1, 8, 4}, {9.6, 19.2, 96, 48}, false};
    QVERIFY(printer.print({cut, page(filled({5, 5}, Qt::blue), {0, 0, 5, 5})}));
    QCOMPARE(m_printers->jobs.size(), 1);
    const FakePrinters::Job &job = *m_printers->jobs.first();
    QCOMPARE(job.printer, "Office"_qs);
    QCOMPARE(job.title, "Tindra"_qs);
    QVERIFY(job.isEnded);
    QCOMPARE(job.pages.size(), 2);
    const FakePrinters::Page &first = job.pages.first();
    QVERIFY(first.isEnded);
    QVERIFY(first.frames.isEmpty());
    QCOMPARE(first.drawings.size(), 1);
    QCOMPARE(first.drawings[0].source, QRectF(2.5, 1, 8, 4));
    QCOMPARE(first.drawings[0].target, QRectF(30, 60, 300, 150)); // at 300 per inch
    COMPARE_IMAGES(first.drawings[0].image, red.toImage(), "red page");
    QCOMPARE(job.pages[1].drawings[0].image.pixelColor(2, 2), QColor(Qt::blue));
}

void Tst_NativePrinter::resolutionAcrossServesDownToo() {
    office().resolutionX = 600;
    office().resolutionY = 300;
    NativePrinter printer("Office"_qs);
    printer.print({page(filled({5, 5}, Qt::red), {48, 96, 96, 192})});
    QCOMPARE(m_printers->jobs.first()->pages.first().drawings[0].target, QRectF(300, 600, 600, 1200));
}

void Tst_NativePrinter::targetIsNothingWithoutPage() {
    office().hasMetrics = false;
    NativePrinter printer("Office"_qs);
    QVERIFY(printer.print({page(filled({5, 5}, Qt::red), {48, 96, 96, 192})}));
    QCOMPARE(m_printers->jobs.first()->pages.first().drawings[0].target, QRectF(0, 0, 0, 0));
}

void Tst_NativePrinter::transparencyPrintsWhite() {
    QPixmap glass = filled({4, 4}, Qt::transparent);
    {
        QPainter painter(&glass);
        painter.fillRect(0, 0, 2, 4, QColor(255, 0, 0, 128));
        painter.fillRect(2, 0, 1, 4, Qt::blue);
    }
    NativePrinter printer("Office"_qs);
    printer.print({page(glass, {0, 0, 4, 4})});
    const QImage image = m_printers->jobs.first()->pages.first().drawings[0].image;
    QCOMPARE(image.size(), QSize(4, 4));
    QCOMPARE(image.pixelColor(3, 0), QColor(Qt::white));
    QCOMPARE(image.pixelColor(2, 0), QColor(Qt::blue));
    const QColor half = image.pixelColor(0, 0);
    QCOMPARE(half.alpha(), 255);
    QCOMPARE(half.red(), 255);
    QVERIFY2(qAbs(half.green() - 127) <= 1, qPrintable(half.name()));
}

void Tst_NativePrinter::frameIsDrawnOnTheTarget() {
    NativePrinter printer("Office"_qs);
    const QPixmap pixmap = filled({5, 5}, Qt::red);
    printer.print({page(pixmap, {96, 96, 48, 48}, true), page(pixmap, {96, 96, 48, 48}, false)});
    const auto &pages = m_printers->jobs.first()->pages;
    QCOMPARE(pages[0].frames, (QVector<QRectF>{QRectF(300, 300, 150, 150)}));
    QVERIFY(pages[1].frames.isEmpty());
}

void Tst_NativePrinter::emptyListMakesADocumentWithoutPages() {
    NativePrinter printer("Office"_qs);
    QVERIFY(printer.print({}));
    QCOMPARE(m_printers->jobs.size(), 1);
    QVERIFY(m_printers->jobs.first()->isEnded);
    QVERIFY(m_printers->jobs.first()->pages.isEmpty());
}

void Tst_NativePrinter::refusedJobPrintsNothing() {
    office().takesJobs = false;
    NativePrinter printer("Office"_qs);
    QVERIFY(!printer.print({page(filled({5, 5}, Qt::red), {0, 0, 5, 5})}));
    QVERIFY(m_printers->jobs.isEmpty());
}

void Tst_NativePrinter::propertiesNeedThePrinter() {
    NativePrinter printer("Gone"_qs);
    QWidget window;
    QVERIFY(!printer.showProperties(&window));
    QVERIFY(!printer.showProperties(nullptr));
}

void Tst_NativePrinter::propertiesAreShownForAParentOnly() {
    NativePrinter printer("Office"_qs);
    ModalAnswers answers;
    QVERIFY(printer.showProperties(nullptr));
    QVERIFY(answers.isDone());
    QVERIFY(answers.texts().isEmpty());
}

void Tst_NativePrinter::acceptedPropertiesAreTaken() {
    NativePrinter printer("Office"_qs);
    printer.paperList();
    QWidget window;
    ModalAnswers answers;
    answers.add([](QWidget *dialog) {
        auto *color = dialog->findChild<QComboBox *>("color_"_qs);
        color->setCurrentIndex(color->findData(1));
        ModalAnswers::press(dialog, "Ok"_qs);
    });
    QVERIFY(printer.showProperties(&window));
    QVERIFY(answers.isDone());
    QVERIFY(printer.isGrayscale());
    printer.print({});
    QVERIFY(m_printers->jobs.first()->mode.fields & 0x800U);
}

void Tst_NativePrinter::cancelledPropertiesAreNot() {
    NativePrinter printer("Office"_qs);
    QWidget window;
    ModalAnswers answers;
    answers.add([](QWidget *dialog) {
        dialog->findChild<QComboBox *>("color_"_qs)->setCurrentIndex(0);
        ModalAnswers::press(dialog, "Cancel"_qs);
    });
    QVERIFY(!printer.showProperties(&window));
    QVERIFY(answers.isDone());
    QVERIFY(!printer.isGrayscale());
}

void Tst_NativePrinter::propertiesLeaveThePageOfBefore() {
    NativePrinter printer("Office"_qs);
    printer.paperList();
    const QRectF before = printer.printableRect();
    QWidget window;
    ModalAnswers answers;
    answers.add([](QWidget *dialog) {
        auto *paper = dialog->findChild<QComboBox *>("paper_"_qs);
        paper->setCurrentIndex(paper->findData(11));
        ModalAnswers::press(dialog, "Ok"_qs);
    });
    QVERIFY(printer.showProperties(&window));
    QCOMPARE(int(printer.paperId()), 11);
    QCOMPARE(printer.printableRect(), before);
    printer.setCopies(1);
    QVERIFY(printer.printableRect().width() < before.width());
}

QTEST_MAIN(Tst_NativePrinter)
#include "tst_nativeprinter.moc"
