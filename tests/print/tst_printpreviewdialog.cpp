#include "platform/configuration.h"
#include "preferences/tindrapreferences.h"
#include "print/printpreviewdialog.h"
#include "services/tracelog.h"
#include "support/fakeplatform.h"
#include "support/literals.h"
#include "support/modalanswers.h"
#include "support/secondscreen.h"
#include "ui/uistyler.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QSpinBox>
#include <QVBoxLayout>
#include <QtTest>

namespace {

const QVector<const char *> Settings = {"pageSizes_",
                                        "orientationLandscape_",
                                        "orientationPortrait_",
                                        "scaleFit_",
                                        "scaleActual_",
                                        "leftMarginValue_",
                                        "topMarginValue_",
                                        "rightMarginValue_",
                                        "bottomMarginValue_",
                                        "copies_",
                                        "print_",
                                        "scaleCustom_",
                                        "centerHorizontal_",
                                        "centerVertical_",
                                        "printGrayscale_",
                                        "printBorder_",
                                        "printerSettings_"};

void setLevel(int level) {
    ConfigurationLocation key("SOFTWARE\\Norvane\\Tindra\\FuncTrace"_qs);
    key.setValue("trace"_qs, QString::number(level));
    loadTraceSettings();
}

bool isLogged(const QByteArray &words) {
    QFile log(TraceLog::filePath());
    return log.open(QIODevice::ReadOnly) && log.readAll().contains(words);
}

} // namespace

class Tst_PrintPreviewDialog : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void texts();
    void window();
    void rangesOfNumbers();
    void wheelScrollsNothing_data();
    void wheelScrollsNothing();

    void rememberedPrinterIsChosen_data();
    void rememberedPrinterIsChosen();
    void withoutRememberedPrinterTheSettingsAreFresh();
    void noPrinterLeavesOnlyCancel();
    void noPrinterIsLogged();
    void returnPrintsNothingWithoutPrinter();
    void printersWithoutDefaultCanBeChosen();
    void unreadablePrinterHasNoPapers();
    void lateAnswerBringsPapersAndSettings();
    void lateAnswerOfAChosenPrinterBringsItsOwn();

    void settingsAreLoaded();
    void firstPrintHasTheDefaults();
    void scaleIsLoaded_data();
    void scaleIsLoaded();
    void marginsOfALargerPaperAreLoaded();
    void rememberedPaperOfAnotherPrinterShowsNothing();
    void rememberedPaperOfAnotherPrinterPrintsAnEmptySheet();
    void printingStoresTheSettings();
    void printingStoresTheScale_data();
    void printingStoresTheScale();
    void cancelStoresNothing();
    void failedPrintStoresAndCloses();

    void papersAreThoseOfThePrinter();
    void anotherPrinterBringsItsOwn();
    void paperSetsMarginRanges();
    void landscapeSwapsMarginRanges();
    void keysTurnThePaper();
    void copiesReachThePrinter();
    void grayReachesThePrinterAndThePreview();
    void customValueNeedsCustomScale();
    void propertiesAreShownAgain();
    void cancelledPropertiesChangeNothing();

    void oneImageHasOnePage();
    void pagesAreTurned();
    void anotherPrinterBeginsAtTheFirstPage();
    void previewShowsTheImage();
    void borderIsShown();
    void centringMovesTheImage();
    void marginsAreShownAtOnce();
    void resizingRestsBeforeDrawing();
    void nestedUpdateReturnsAtOnce();
    void previewFollowsTheScale();
    void designedMarginsFollowTheScale();
    void rescaledWindowLeavesTheBorderOfScreens();

    void pagesReachThePrinter();
    void printedPlacesFollowTheControls();
    void printerThatHasGoneIsLeft();
    void keysOfTheDialog();
    void openListKeepsItsKeys();

private:
    using P = TindraPreferences;
    static P *preferences() { return P::instance(); }
    FakePrinter &office() { return m_printers->printer("Office"_qs); }

    /// The dialog with images of these sizes, red, green, blue.
    PrintPreviewDialog *open(const QVector<QSize> &images = {{96, 48}}) {
        m_dialog = std::make_unique<PrintPreviewDialog>();
        const QColor colors[] = {Qt::red, Qt::green, Qt::blue};
        for (int i = 0; i < images.size(); ++i) {
            QPixmap pixmap(images[i]);
            pixmap.fill(colors[i % 3]);
            m_dialog->addImage(pixmap);
        }
        m_dialog->show();
        // The preview rests after the first resize; without a printer it stays empty.
        const bool hasPrinter = !m_printers->order.isEmpty() && !m_printers->chosen.isEmpty();
        (void)QTest::qWaitFor([this] { return !pages().isEmpty(); }, hasPrinter ? 5000 : 150);
        return m_dialog.get();
    }
    template <typename Widget = QWidget> Widget *child(const char *name) const {
        auto *found = m_dialog->findChild<Widget *>(QLatin1String(name));
        return found ? found : (qFatal("no child %s", name), nullptr);
    }
    QSpinBox *number(const char *name) const { return child<QSpinBox>(name); }
    QComboBox *list(const char *name) const { return child<QComboBox>(name); }
    QAbstractButton *button(const char *name) const { return child<QAbstractButton>(name); }
    QString pages() const { return child<QLabel>("pages_")->text(); }
    QImage preview() const { return child<QLabel>("previewLabel_")->pixmap(Qt::ReturnByValue).toImage(); }
    /// Where that colour is in the preview; null when it is nowhere.
    QRect shown(const QColor &color) const {
        const QImage image = preview();
        QRect area;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixelColor(x, y) == color)
                    area |= QRect(x, y, 1, 1);
            }
        }
        return area;
    }
    static void settle() { QCoreApplication::processEvents(); }
    FakePrinters::Job &job() { return *m_printers->jobs.last(); }

    FakePrinters *m_printers = nullptr;
    std::unique_ptr<PrintPreviewDialog> m_dialog;
};

void Tst_PrintPreviewDialog::initTestCase() {
    QCoreApplication::setApplicationName("Tindra"_qs); // names the log
    UIStyler::install(qApp);
    UIStyler::setColorsIniPath(qApp, ":/style/editor_variables.ini"_qs);
    UIStyler::setStyleSheetPaths(qApp, {":/style/editor.qss"_qs});
}

void Tst_PrintPreviewDialog::init() {
    m_printers = &FakePlatform::install()->printerList;
    m_printers->add("Office"_qs);
    P::resetForTesting();
    ConfigurationLocation("SOFTWARE\\Norvane\\Tindra"_qs).remove("Config"_qs);
    preferences()->Init();
    preferences()->SetString(P::PrinterName, "Office"_qs);
}

void Tst_PrintPreviewDialog::cleanup() {
    m_dialog.reset();
}

void Tst_PrintPreviewDialog::texts() {
    open();
    QCOMPARE(m_dialog->windowTitle(), "Print Preview"_qs);
    QStringList labels;
    for (const QLabel *label : m_dialog->findChildren<QLabel *>())
        labels.append(label->text());
    for (const char *label :
         {"Printer", "Page Size", "Copies", "sheet(s)", "Value (%)", "Left", "Top", "Right", "Bottom"})
        QVERIFY2(labels.contains(QLatin1String(label)), label);
    QStringList groups;
    for (const QGroupBox *group : m_dialog->findChildren<QGroupBox *>())
        groups.append(group->title());
    QCOMPARE(groups, (QStringList{"Orientation"_qs, "Scale"_qs, "Center Alignment"_qs, "Margins (mm)"_qs,
                                  "More"_qs}));
    const QVector<QPair<const char *, const char *>> buttons = {{"printerSettings_", "Printer settings"},
                                                                {"orientationPortrait_", "Portrait"},
                                                                {"orientationLandscape_", "Landscape"},
                                                                {"scaleFit_", "Fit to printable area"},
                                                                {"scaleActual_", "Actual size"},
                                                                {"scaleCustom_", "Custom scale"},
                                                                {"centerHorizontal_", "Horizontal"},
                                                                {"centerVertical_", "Vertical"},
                                                                {"printGrayscale_", "Print grayscale"},
                                                                {"printBorder_", "Print border"},
                                                                {"print_", "Print"},
                                                                {"cancel_", "Cancel"}};
    for (const auto &[name, text] : buttons)
        QCOMPARE(button(name)->text(), QLatin1String(text));
}

void Tst_PrintPreviewDialog::window() {
    m_dialog = std::make_unique<PrintPreviewDialog>();
    QVERIFY(!m_dialog->windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
    QCOMPARE(m_dialog->minimumSize(), QSize(670, 550));
    QCOMPARE(child("settings_")->minimumWidth(), 335);
    QCOMPARE(child("preview_")->minimumWidth(), 335);
    QCOMPARE(child<QLabel>("previewLabel_")->alignment(), Qt::AlignCenter);
    m_dialog->show();
    settle();
    QCOMPARE(m_dialog->size(), QSize(670, 550));
    QCOMPARE(child("print_")->width(), 120 + 2); // and the border
    QCOMPARE(child("cancel_")->width(), 120 + 2);
    const int distance = child("scaleActual_")->y() - child("scaleFit_")->y();
    QVERIFY2(distance >= 24, qPrintable(QString::number(distance)));
    QCOMPARE(child("scaleCustom_")->y() - child("scaleActual_")->y(), distance);
}

void Tst_PrintPreviewDialog::rangesOfNumbers() {
    open();
    QCOMPARE(number("copies_")->minimum(), 1);
    QCOMPARE(number("copies_")->maximum(), 999);
    QCOMPARE(number("scaleCustomValue_")->minimum(), 1);
    QCOMPARE(number("scaleCustomValue_")->maximum(), 800);
    QCOMPARE(number("scaleCustomValue_")->value(), 100);
}

void Tst_PrintPreviewDialog::wheelScrollsNothing_data() {
    QTest::addColumn<QString>("name");
    for (const char *name : {"printers_", "pageSizes_", "copies_", "scaleCustomValue_", "leftMarginValue_",
                             "topMarginValue_", "rightMarginValue_", "bottomMarginValue_"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void Tst_PrintPreviewDialog::wheelScrollsNothing() {
    QFETCH(QString, name);
    m_printers->add("Attic"_qs);
    preferences()->SetInt(P::PrinterScale, 2);
    open();
    auto *widget = m_dialog->findChild<QWidget *>(name);
    widget->setFocus();
    auto *bar = child<QScrollArea>("settings_")->verticalScrollBar();
    bar->setValue(1);
    const int before = bar->value();
    const auto value = [widget] {
        const auto *box = qobject_cast<QComboBox *>(widget);
        return box ? box->currentIndex() : static_cast<QSpinBox *>(widget)->value();
    };
    const int valueBefore = value();
    QWidget *target = widget->findChild<QLineEdit *>();
    for (QWidget *under : {widget, target}) {
        if (!under)
            continue;
        const QPointF place = under->rect().center();
        for (const int angle : {120, -120}) {
            QWheelEvent event(place, under->mapToGlobal(place.toPoint()), QPoint(), QPoint(0, angle),
                              Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(under, &event);
            QCOMPARE(value(), valueBefore);
            QCOMPARE(bar->value(), before);
        }
    }
}

void Tst_PrintPreviewDialog::rememberedPrinterIsChosen_data() {
    QTest::addColumn<QString>("remembered");
    QTest::addColumn<QString>("byDefault");
    QTest::addColumn<QString>("chosen");
    QTest::newRow("first in the list") << "Office"
                                       << "Attic"
                                       << "Office";
    QTest::newRow("another") << "Attic"
                             << "Office"
                             << "Attic";
    QTest::newRow("gone") << "Cellar"
                          << "Attic"
                          << "Attic";
    QTest::newRow("gone, the first by default") << "Cellar"
                                                << "Office"
                                                << "Office";
    QTest::newRow("none yet") << ""
                              << "Attic"
                              << "Attic";
}

void Tst_PrintPreviewDialog::rememberedPrinterIsChosen() {
    QFETCH(QString, remembered);
    QFETCH(QString, byDefault);
    QFETCH(QString, chosen);
    m_printers->add("Attic"_qs);
    m_printers->chosen = byDefault;
    preferences()->SetString(P::PrinterName, remembered);
    open();
    QCOMPARE(list("printers_")->count(), 2);
    QCOMPARE(list("printers_")->currentText(), chosen);
    QCOMPARE(m_printers->opened, QStringList{chosen});
    QVERIFY(button("print_")->isEnabled());
}

void Tst_PrintPreviewDialog::withoutRememberedPrinterTheSettingsAreFresh() {
    preferences()->SetString(P::PrinterName, "Cellar"_qs);
    preferences()->SetInt(P::PrinterScale, 2);
    preferences()->SetInt(P::PrinterCopies, 7);
    preferences()->SetInt(P::PrinterPageLeftMargin, 44);
    office().mode.copies = 2;
    open();
    QVERIFY(button("scaleFit_")->isChecked());
    QVERIFY(!number("scaleCustomValue_")->isEnabled());
    QCOMPARE(number("copies_")->value(), 2);
    for (const char *margin :
         {"leftMarginValue_", "topMarginValue_", "rightMarginValue_", "bottomMarginValue_"})
        QCOMPARE(number(margin)->value(), 10);
}

void Tst_PrintPreviewDialog::noPrinterLeavesOnlyCancel() {
    m_printers->order.clear();
    m_printers->chosen.clear();
    open({{10, 10}, {10, 10}});
    for (const char *name : Settings)
        QVERIFY2(!child(name)->isEnabled(), name);
    QVERIFY(!number("scaleCustomValue_")->isEnabled());
    QVERIFY(button("scaleFit_")->isChecked());
    for (const char *margin :
         {"leftMarginValue_", "topMarginValue_", "rightMarginValue_", "bottomMarginValue_"})
        QCOMPARE(number(margin)->value(), 10);
    QVERIFY(preview().isNull());
    QCOMPARE(pages(), QString());
    QVERIFY(!button("toPrevPage_")->isEnabled());
    QVERIFY(!button("toNextPage_")->isEnabled());
    QVERIFY(button("cancel_")->isEnabled());
    button("cancel_")->click();
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_dialog->result(), 0);
}

void Tst_PrintPreviewDialog::noPrinterIsLogged() {
    const auto logged = [] { return isLogged("PrintPreviewDialog : No available printer"); };
    setLevel(1);
    open();
    QVERIFY(!logged());
    m_printers->order.clear();
    m_printers->chosen.clear();
    setLevel(0);
    open();
    QVERIFY(!logged());
    setLevel(1);
    open();
    setLevel(-1);
    QVERIFY(logged());
}

void Tst_PrintPreviewDialog::returnPrintsNothingWithoutPrinter() {
    m_printers->order.clear();
    m_printers->chosen.clear();
    open();
    QTest::keyClick(m_dialog.get(), Qt::Key_Return);
    QVERIFY(m_dialog->isVisible());
    QVERIFY(m_printers->jobs.isEmpty());
    QCOMPARE(preferences()->GetString(P::PrinterName, QString()), "Office"_qs);
}

void Tst_PrintPreviewDialog::printersWithoutDefaultCanBeChosen() {
    m_printers->chosen.clear();
    preferences()->SetString(P::PrinterName, QString());
    open();
    QVERIFY(!button("print_")->isEnabled());
    QVERIFY(list("printers_")->isEnabled());
    list("printers_")->setCurrentIndex(0);
    QVERIFY(button("print_")->isEnabled());
    settle();
    QVERIFY(!preview().isNull());
}

void Tst_PrintPreviewDialog::unreadablePrinterHasNoPapers() {
    office().isThere = false;
    open();
    QCOMPARE(list("pageSizes_")->count(), 0);
    QVERIFY(preview().isNull());
    QCOMPARE(pages(), "1/1 Pages"_qs);
    // What would print nothing and store settings that are no printer's is not offered.
    preferences()->SetInt(P::PrinterCopies, 5);
    QVERIFY(!button("print_")->isEnabled());
    QTest::keyClick(m_dialog.get(), Qt::Key_Return);
    QVERIFY(m_dialog->isVisible());
    QVERIFY(m_printers->jobs.isEmpty());
    QCOMPARE(preferences()->GetInt(P::PrinterCopies, 0), 5);
}

void Tst_PrintPreviewDialog::lateAnswerBringsPapersAndSettings() {
    preferences()->SetInt(P::PrinterPageSize, 11);
    preferences()->SetInt(P::PrinterCopies, 7);
    preferences()->SetInt(P::PrinterPageLeftMargin, 44);
    office().isThere = false;
    open();
    QCOMPARE(list("pageSizes_")->count(), 0);
    office().isThere = true;
    m_printers->answeredLate = QStringList{"Office"_qs};
    QTRY_COMPARE(list("pageSizes_")->count(), 3);
    QCOMPARE(list("pageSizes_")->currentText(), "A5 (148.0 x 210.0 mm)"_qs);
    QCOMPARE(number("copies_")->value(), 7);
    QCOMPARE(number("leftMarginValue_")->value(), 44);
    QVERIFY(button("print_")->isEnabled());
    settle();
    QVERIFY(!preview().isNull());
    QCOMPARE(m_printers->opened, (QStringList{"Office"_qs, "Office"_qs}));
    button("print_")->click();
    QCOMPARE(m_printers->jobs.size(), 1);
}

void Tst_PrintPreviewDialog::lateAnswerOfAChosenPrinterBringsItsOwn() {
    preferences()->SetInt(P::PrinterCopies, 7);
    FakePrinter attic = FakePrinter::office();
    attic.mode.copies = 2;
    attic.isThere = false;
    m_printers->add("Attic"_qs, attic);
    open();
    list("printers_")->setCurrentText("Attic"_qs);
    QVERIFY(!button("print_")->isEnabled());
    m_printers->printer("Attic"_qs).isThere = true;
    m_printers->answeredLate = QStringList{"Attic"_qs};
    QTRY_VERIFY(button("print_")->isEnabled());
    QCOMPARE(list("pageSizes_")->count(), 3);
    QCOMPARE(number("copies_")->value(), 2);
}

void Tst_PrintPreviewDialog::settingsAreLoaded() {
    preferences()->SetInt(P::PrinterPageSize, 11);
    preferences()->SetInt(P::PrinterCopies, 7);
    preferences()->SetInt(P::PrinterPageOrientation, 0);
    preferences()->SetInt(P::PrinterScale, 2);
    preferences()->SetInt(P::PrinterScaleValue, 250);
    preferences()->SetBool(P::PrinterHCenter, true);
    preferences()->SetBool(P::PrinterVCenter, true);
    preferences()->SetInt(P::PrinterPageLeftMargin, 11);
    preferences()->SetInt(P::PrinterPageRightMargin, 12);
    preferences()->SetInt(P::PrinterPageTopMargin, 13);
    preferences()->SetInt(P::PrinterPageBottomMargin, 14);
    preferences()->SetBool(P::PrinterDrawGrayscale, true);
    preferences()->SetBool(P::PrinterDrawBorder, true);
    open();
    QCOMPARE(list("pageSizes_")->currentText(), "A5 (148.0 x 210.0 mm)"_qs);
    QCOMPARE(number("copies_")->value(), 7);
    QVERIFY(button("orientationLandscape_")->isChecked());
    QVERIFY(button("scaleCustom_")->isChecked());
    QVERIFY(number("scaleCustomValue_")->isEnabled());
    QCOMPARE(number("scaleCustomValue_")->value(), 250);
    QVERIFY(button("centerHorizontal_")->isChecked());
    QVERIFY(button("centerVertical_")->isChecked());
    QCOMPARE(number("leftMarginValue_")->value(), 11);
    QCOMPARE(number("rightMarginValue_")->value(), 12);
    QCOMPARE(number("topMarginValue_")->value(), 13);
    QCOMPARE(number("bottomMarginValue_")->value(), 14);
    QVERIFY(button("printGrayscale_")->isChecked());
    QVERIFY(button("printBorder_")->isChecked());
}

void Tst_PrintPreviewDialog::firstPrintHasTheDefaults() {
    office().mode.copies = 5;
    office().mode.color = 1;
    office().mode.orientation = 2;
    open();
    QCOMPARE(list("pageSizes_")->currentData().toInt(), 9);
    QCOMPARE(number("copies_")->value(), 1);
    QVERIFY(button("orientationPortrait_")->isChecked());
    QVERIFY(button("scaleActual_")->isChecked());
    QVERIFY(!button("centerHorizontal_")->isChecked());
    QVERIFY(!button("printGrayscale_")->isChecked());
    QVERIFY(!button("printBorder_")->isChecked());
    QCOMPARE(number("leftMarginValue_")->value(), 10);
}

void Tst_PrintPreviewDialog::scaleIsLoaded_data() {
    QTest::addColumn<int>("stored");
    QTest::addColumn<QString>("checked");
    QTest::addColumn<int>("value");
    QTest::newRow("fit") << 0 << "scaleFit_" << 100;
    QTest::newRow("actual") << 1 << "scaleActual_" << 100;
    QTest::newRow("custom") << 2 << "scaleCustom_" << 333;
    QTest::newRow("more") << 3 << "scaleCustom_" << 333;
    QTest::newRow("less") << -1 << "scaleCustom_" << 333;
}

void Tst_PrintPreviewDialog::scaleIsLoaded() {
    QFETCH(int, stored);
    QFETCH(QString, checked);
    QFETCH(int, value);
    preferences()->SetInt(P::PrinterScale, stored);
    preferences()->SetInt(P::PrinterScaleValue, 333);
    open();
    for (const char *name : {"scaleFit_", "scaleActual_", "scaleCustom_"})
        QCOMPARE(button(name)->isChecked(), checked == QLatin1String(name));
    QCOMPARE(number("scaleCustomValue_")->value(), value);
    QCOMPARE(number("scaleCustomValue_")->isEnabled(), checked == "scaleCustom_"_qs);
}

void Tst_PrintPreviewDialog::marginsOfALargerPaperAreLoaded() {
    office().papers.append({8, "A3"_qs, {2970, 4200}});
    preferences()->SetInt(P::PrinterPageSize, 8);
    preferences()->SetInt(P::PrinterPageTopMargin, 200);
    preferences()->SetInt(P::PrinterPageLeftMargin, 140);
    open();
    QCOMPARE(number("topMarginValue_")->value(), 200);
    QCOMPARE(number("leftMarginValue_")->value(), 140);
}

void Tst_PrintPreviewDialog::rememberedPaperOfAnotherPrinterShowsNothing() {
    preferences()->SetInt(P::PrinterPageSize, 4242);
    open();
    QCOMPARE(list("pageSizes_")->currentIndex(), -1);
    QVERIFY(preview().isNull());
    QCOMPARE(number("leftMarginValue_")->maximum(), 0);
    list("pageSizes_")->setCurrentIndex(0);
    settle();
    QVERIFY(!preview().isNull());
    QCOMPARE(number("leftMarginValue_")->maximum(), 105);
}

void Tst_PrintPreviewDialog::rememberedPaperOfAnotherPrinterPrintsAnEmptySheet() {
    preferences()->SetInt(P::PrinterPageSize, 4242);
    open();
    button("print_")->click();
    QCOMPARE(m_dialog->result(), 1);
    QCOMPARE(m_printers->jobs.size(), 1);
    const auto &job = *m_printers->jobs.first();
    QVERIFY(job.isEnded);
    QCOMPARE(job.mode.paperSize, quint16(4242));
    QCOMPARE(job.pages.size(), 1);
    for (const FakePrinters::Drawing &drawing : job.pages.first().drawings)
        QVERIFY(drawing.target.isEmpty());
    QCOMPARE(preferences()->GetInt(P::PrinterPageSize, 0), 4242);
}

void Tst_PrintPreviewDialog::printingStoresTheSettings() {
    m_printers->add("Attic"_qs);
    open();
    list("printers_")->setCurrentText("Attic"_qs);
    list("pageSizes_")->setCurrentIndex(2);
    number("copies_")->setValue(7);
    button("orientationLandscape_")->click();
    button("centerHorizontal_")->click();
    button("printGrayscale_")->click();
    number("leftMarginValue_")->setValue(11);
    number("rightMarginValue_")->setValue(12);
    number("topMarginValue_")->setValue(13);
    number("bottomMarginValue_")->setValue(14);
    QCOMPARE(preferences()->GetInt(P::PrinterCopies, 0), 1); // not before
    button("print_")->click();
    QCOMPARE(preferences()->GetString(P::PrinterName, QString()), "Attic"_qs);
    QCOMPARE(preferences()->GetInt(P::PrinterPageSize, 0), 11);
    QCOMPARE(preferences()->GetInt(P::PrinterCopies, 0), 7);
    QCOMPARE(preferences()->GetInt(P::PrinterPageOrientation, 5), 0);
    QVERIFY(preferences()->GetBool(P::PrinterHCenter, false));
    QVERIFY(!preferences()->GetBool(P::PrinterVCenter, true));
    QCOMPARE(preferences()->GetInt(P::PrinterPageLeftMargin, 0), 11);
    QCOMPARE(preferences()->GetInt(P::PrinterPageRightMargin, 0), 12);
    QCOMPARE(preferences()->GetInt(P::PrinterPageTopMargin, 0), 13);
    QCOMPARE(preferences()->GetInt(P::PrinterPageBottomMargin, 0), 14);
    QVERIFY(preferences()->GetBool(P::PrinterDrawGrayscale, false));
    QVERIFY(!preferences()->GetBool(P::PrinterDrawBorder, true));
    button("orientationPortrait_")->click();
    button("printBorder_")->click();
    button("print_")->click();
    QCOMPARE(preferences()->GetInt(P::PrinterPageOrientation, 5), 1);
    QVERIFY(preferences()->GetBool(P::PrinterDrawBorder, false));
}

void Tst_PrintPreviewDialog::printingStoresTheScale_data() {
    QTest::addColumn<QString>("clicked");
    QTest::addColumn<int>("stored");
    QTest::addColumn<int>("value");
    QTest::newRow("fit") << "scaleFit_" << 0 << 250;
    QTest::newRow("actual") << "scaleActual_" << 1 << 250;
    QTest::newRow("custom") << "scaleCustom_" << 2 << 70;
}

void Tst_PrintPreviewDialog::printingStoresTheScale() {
    QFETCH(QString, clicked);
    QFETCH(int, stored);
    QFETCH(int, value);
    preferences()->SetInt(P::PrinterScaleValue, 250);
    open();
    m_dialog->findChild<QRadioButton *>(clicked)->click();
    number("scaleCustomValue_")->setValue(70);
    button("print_")->click();
    QCOMPARE(preferences()->GetInt(P::PrinterScale, -1), stored);
    QCOMPARE(preferences()->GetInt(P::PrinterScaleValue, -1), value);
}

void Tst_PrintPreviewDialog::cancelStoresNothing() {
    open();
    number("copies_")->setValue(7);
    button("cancel_")->click();
    QCOMPARE(m_dialog->result(), 0);
    QCOMPARE(preferences()->GetInt(P::PrinterCopies, 0), 1);
    QVERIFY(m_printers->jobs.isEmpty());
}

void Tst_PrintPreviewDialog::failedPrintStoresAndCloses() {
    open();
    office().takesJobs = false;
    number("copies_")->setValue(7);
    setLevel(1);
    QVERIFY(!isLogged("PrintPreviewDialog : Printing failed"));
    ModalAnswers answers;
    button("print_")->click();
    setLevel(-1);
    QVERIFY(answers.texts().isEmpty());
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_dialog->result(), 1);
    QCOMPARE(preferences()->GetInt(P::PrinterCopies, 0), 7);
    QVERIFY(isLogged("PrintPreviewDialog : Printing failed"));
}

void Tst_PrintPreviewDialog::papersAreThoseOfThePrinter() {
    open();
    QStringList labels;
    for (int i = 0; i < list("pageSizes_")->count(); ++i)
        labels.append(list("pageSizes_")->itemText(i));
    QCOMPARE(labels, (QStringList{"A4 (210.0 x 297.0 mm)"_qs, "Letter (215.9 x 279.4 mm)"_qs,
                                  "A5 (148.0 x 210.0 mm)"_qs}));
}

void Tst_PrintPreviewDialog::anotherPrinterBringsItsOwn() {
    FakePrinter attic = FakePrinter::office();
    attic.papers = {{70, "A6"_qs, {1050, 1480}}};
    attic.mode.formName = "A6"_qs;
    attic.mode.copies = 3;
    attic.mode.color = 1;
    attic.mode.orientation = 2;
    m_printers->add("Attic"_qs, attic);
    open();
    list("printers_")->setCurrentText("Attic"_qs);
    QCOMPARE(list("pageSizes_")->count(), 1);
    QCOMPARE(list("pageSizes_")->currentData().toInt(), 70);
    QCOMPARE(number("copies_")->value(), 3);
    QVERIFY(button("printGrayscale_")->isChecked());
    QVERIFY(button("orientationLandscape_")->isChecked());
    QCOMPARE(number("leftMarginValue_")->maximum(), 73); // single precision is just below 74
}

void Tst_PrintPreviewDialog::paperSetsMarginRanges() {
    open();
    // Half of 210 by 297 mm, then of 215.9 by 279.4 mm, truncated.
    QCOMPARE(number("leftMarginValue_")->minimum(), 0);
    QCOMPARE(number("leftMarginValue_")->maximum(), 105);
    QCOMPARE(number("rightMarginValue_")->maximum(), 105);
    QCOMPARE(number("topMarginValue_")->maximum(), 148);
    QCOMPARE(number("bottomMarginValue_")->maximum(), 148);
    number("topMarginValue_")->setValue(148);
    list("pageSizes_")->setCurrentIndex(1);
    QCOMPARE(number("leftMarginValue_")->maximum(), 107);
    QCOMPARE(number("bottomMarginValue_")->maximum(), 139);
    QCOMPARE(number("topMarginValue_")->value(), 139);
}

void Tst_PrintPreviewDialog::landscapeSwapsMarginRanges() {
    open();
    number("topMarginValue_")->setValue(140);
    number("leftMarginValue_")->setValue(100);
    button("orientationLandscape_")->click();
    QCOMPARE(number("leftMarginValue_")->maximum(), 148);
    QCOMPARE(number("topMarginValue_")->maximum(), 105);
    QCOMPARE(number("topMarginValue_")->value(), 105);
    QCOMPARE(number("leftMarginValue_")->value(), 100);
    settle();
    QVERIFY(preview().width() > preview().height());
    button("orientationPortrait_")->click();
    QCOMPARE(number("leftMarginValue_")->maximum(), 105);
    settle();
    QVERIFY(preview().width() < preview().height());
}

void Tst_PrintPreviewDialog::keysTurnThePaper() {
    open();
    button("orientationPortrait_")->setFocus();
    QTest::keyClick(button("orientationPortrait_"), Qt::Key_Right);
    QVERIFY(button("orientationLandscape_")->isChecked());
    QCOMPARE(number("leftMarginValue_")->maximum(), 148);
}

void Tst_PrintPreviewDialog::copiesReachThePrinter() {
    open();
    QSignalSpy drawn(m_dialog.get(), &PrintPreviewDialog::updatePreview);
    number("copies_")->setValue(12);
    QCOMPARE(drawn.count(), 0);
    QCOMPARE(m_printers->measured.last().copies, 12);
}

void Tst_PrintPreviewDialog::grayReachesThePrinterAndThePreview() {
    open();
    QVERIFY(!shown(Qt::red).isNull());
    button("printGrayscale_")->click();
    QCOMPARE(m_printers->measured.last().color, 1);
    settle();
    QVERIFY(shown(Qt::red).isNull());
    button("printGrayscale_")->click();
    QCOMPARE(m_printers->measured.last().color, 2);
    settle();
    QVERIFY(!shown(Qt::red).isNull());
}

void Tst_PrintPreviewDialog::customValueNeedsCustomScale() {
    open();
    QVERIFY(!number("scaleCustomValue_")->isEnabled());
    button("scaleCustom_")->click();
    QVERIFY(number("scaleCustomValue_")->isEnabled());
    const int width = shown(Qt::red).width();
    number("scaleCustomValue_")->setValue(50);
    QVERIFY(shown(Qt::red).width() < width); // at once
    button("scaleFit_")->click();
    QVERIFY(!number("scaleCustomValue_")->isEnabled());
    settle();
    QVERIFY(shown(Qt::red).width() > width);
}

void Tst_PrintPreviewDialog::propertiesAreShownAgain() {
    open({{10, 10}, {10, 10}});
    button("toNextPage_")->click();
    settle();
    ModalAnswers answers;
    answers.add([](QWidget *dialog) {
        auto *paper = dialog->findChild<QComboBox *>("paper_"_qs);
        paper->setCurrentIndex(paper->findData(11));
        dialog->findChild<QComboBox *>("color_"_qs)->setCurrentIndex(0);
        ModalAnswers::press(dialog, "Ok"_qs);
    });
    button("printerSettings_")->click();
    QVERIFY(answers.isDone());
    QCOMPARE(list("pageSizes_")->currentData().toInt(), 11);
    QVERIFY(button("printGrayscale_")->isChecked());
    QCOMPARE(number("leftMarginValue_")->maximum(), 73); // single precision is just below 74
    settle();
    QCOMPARE(pages(), "1/2 Pages"_qs);
    // The page was measured anew.
    QCOMPARE(int(m_printers->measured.last().paperSize), 11);
}

void Tst_PrintPreviewDialog::cancelledPropertiesChangeNothing() {
    open({{10, 10}, {10, 10}});
    button("toNextPage_")->click();
    settle();
    ModalAnswers answers;
    answers.addPress("Cancel"_qs);
    button("printerSettings_")->click();
    settle();
    QVERIFY(answers.isDone());
    QCOMPARE(pages(), "2/2 Pages"_qs);
}

void Tst_PrintPreviewDialog::oneImageHasOnePage() {
    open();
    QCOMPARE(pages(), "1/1 Pages"_qs);
    QVERIFY(!button("toPrevPage_")->isEnabled());
    QVERIFY(!button("toNextPage_")->isEnabled());
}

void Tst_PrintPreviewDialog::pagesAreTurned() {
    open({{96, 48}, {96, 48}, {96, 48}});
    const auto expect = [this](const char *text, const QColor &color, bool prev, bool next) {
        settle();
        QCOMPARE(pages(), QLatin1String(text));
        QVERIFY(!shown(color).isNull());
        QCOMPARE(button("toPrevPage_")->isEnabled(), prev);
        QCOMPARE(button("toNextPage_")->isEnabled(), next);
    };
    expect("1/3 Pages", Qt::red, false, true);
    button("toNextPage_")->click();
    expect("2/3 Pages", Qt::green, true, true);
    button("toNextPage_")->click();
    // Faster than the buttons are disabled.
    QMetaObject::invokeMethod(m_dialog.get(), "onClickToNextPage");
    expect("3/3 Pages", Qt::blue, true, false);
    button("toPrevPage_")->click();
    expect("2/3 Pages", Qt::green, true, true);
    button("toPrevPage_")->click();
    QMetaObject::invokeMethod(m_dialog.get(), "onClickToPrevPage");
    expect("1/3 Pages", Qt::red, false, true);
}

void Tst_PrintPreviewDialog::anotherPrinterBeginsAtTheFirstPage() {
    m_printers->add("Attic"_qs);
    open({{10, 10}, {10, 10}});
    button("toNextPage_")->click();
    settle();
    list("printers_")->setCurrentText("Attic"_qs);
    settle();
    QCOMPARE(pages(), "1/2 Pages"_qs);
}

void Tst_PrintPreviewDialog::previewShowsTheImage() {
    open({{960, 480}});
    button("scaleFit_")->click();
    settle();
    // A4 within the label less 60 both ways.
    const QSize room = child("previewLabel_")->size() - QSize(60, 60);
    const double aspect = 210.0 / 297;
    const double width = qMin(room.width() * aspect, room.height() * aspect);
    QCOMPARE(preview().size(), QSize(int(width + 2), int(width / aspect + 2)));
    const double margin = 10 / 210.0 * width;
    const QRect image = shown(Qt::red);
    QVERIFY2(qAbs(image.left() - margin) < 2, qPrintable(QString::number(image.left())));
    QVERIFY2(qAbs(image.width() - (width - 2 * margin)) < 4, qPrintable(QString::number(image.width())));
    QVERIFY2(qAbs(image.height() - image.width() / 2) < 3, qPrintable(QString::number(image.height())));
}

void Tst_PrintPreviewDialog::borderIsShown() {
    open({{480, 480}});
    const QImage plain = preview();
    button("printBorder_")->click();
    settle();
    QVERIFY(preview() != plain);
    const QRect image = shown(Qt::red);
    QCOMPARE(preview().pixelColor(image.center().x(), image.bottom() + 1), QColor(Qt::black));
}

void Tst_PrintPreviewDialog::centringMovesTheImage() {
    open();
    const QRect before = shown(Qt::red);
    button("centerHorizontal_")->click();
    settle();
    QCOMPARE(shown(Qt::red).top(), before.top());
    QVERIFY(qAbs(shown(Qt::red).center().x() - preview().width() / 2) <= 2);
    button("centerVertical_")->click();
    settle();
    QVERIFY(qAbs(shown(Qt::red).center().y() - preview().height() / 2) <= 2);
}

void Tst_PrintPreviewDialog::marginsAreShownAtOnce() {
    open();
    const QRect before = shown(Qt::red);
    number("leftMarginValue_")->setValue(60);
    QVERIFY(shown(Qt::red).left() > before.left() + 20);
    number("topMarginValue_")->setValue(60);
    QVERIFY(shown(Qt::red).top() > before.top() + 20);
}

void Tst_PrintPreviewDialog::resizingRestsBeforeDrawing() {
    m_dialog = std::make_unique<PrintPreviewDialog>();
    QPixmap pixmap(10, 10);
    pixmap.fill(Qt::red);
    m_dialog->addImage(pixmap);
    QSignalSpy drawn(m_dialog.get(), &PrintPreviewDialog::updatePreview);
    m_dialog->show();
    QElapsedTimer time;
    time.start();
    const QSize size = m_dialog->size();
    for (int i = 0; i < 5; ++i) {
        QResizeEvent event(size, size);
        QCoreApplication::sendEvent(m_dialog.get(), &event);
        QTest::qWait(10);
    }
    QElapsedTimer sinceLast;
    sinceLast.start();
    QTRY_COMPARE(drawn.count(), 1);
    QVERIFY2(sinceLast.elapsed() + 10 >= 45, qPrintable(QString::number(sinceLast.elapsed())));
    QTRY_VERIFY(!preview().isNull());
    QTest::qWait(100);
    QCOMPARE(drawn.count(), 1);
}

void Tst_PrintPreviewDialog::nestedUpdateReturnsAtOnce() {
    open();
    // The label asks its surroundings when it gets a picture; from there comes another update.
    class Nested : public QObject {
    public:
        explicit Nested(PrintPreviewDialog *dialog) : m_dialog(dialog) {}
        bool eventFilter(QObject *, QEvent *event) override {
            if (event->type() == QEvent::EnabledChange && ++runs < 10)
                QMetaObject::invokeMethod(m_dialog, "onUpdatePreview", Qt::DirectConnection);
            return false;
        }
        int runs = 0;

    private:
        PrintPreviewDialog *m_dialog;
    } nested(m_dialog.get());
    QPixmap second(10, 10);
    second.fill(Qt::green);
    m_dialog->addImage(second);
    child("toNextPage_")->installEventFilter(&nested);
    child("toPrevPage_")->installEventFilter(&nested);
    QMetaObject::invokeMethod(m_dialog.get(), "onUpdatePreview", Qt::DirectConnection);
    QCOMPARE(nested.runs, 1);
    // The guard is open again.
    button("toNextPage_")->click();
    settle();
    QCOMPARE(pages(), "2/2 Pages"_qs);
}

void Tst_PrintPreviewDialog::previewFollowsTheScale() {
    open({{960, 480}});
    UIStyler::applyScale(m_dialog.get(), 1.5);
    const auto expected = [this] {
        const QSize room = child("previewLabel_")->size() - QSize(90, 90);
        const double width = qMin(room.width(), room.height()) * 210.0 / 297;
        return QSize(int(width + 2), int(width / (210.0 / 297) + 2));
    };
    QTRY_COMPARE(preview().size(), expected());
}

void Tst_PrintPreviewDialog::designedMarginsFollowTheScale() {
    open();
    const auto margins = [this] { return child("settingsContent_")->layout()->contentsMargins(); };
    auto *bar = child<QScrollArea>("settings_")->verticalScrollBar();
    const auto isWhole = [bar] { return bar->parentWidget()->rect().contains(bar->geometry()); };
    QCOMPARE(margins(), QMargins(35, 10, 48, 20));
    QCOMPARE(bar->width(), 18);
    QVERIFY(isWhole());
    UIStyler::applyScale(m_dialog.get(), 1.25);
    QCOMPARE(margins(), QMargins(35, 10, 60, 25));
    QCOMPARE(bar->minimumWidth(), 22);
    QCOMPARE(bar->maximumWidth(), 22);
    settle();
    QVERIFY(isWhole());
}

void Tst_PrintPreviewDialog::rescaledWindowLeavesTheBorderOfScreens() {
    const int border = QGuiApplication::primaryScreen()->geometry().right() + 1;
    const SecondScreen second(QRect(border, 0, 2000, 1200));
    open();
    m_dialog->move(border - 50, 200);
    UIStyler::applyScale(m_dialog.get(), 1.5);
    QCOMPARE(m_dialog->pos(), QPoint(border, 200));
}

void Tst_PrintPreviewDialog::pagesReachThePrinter() {
    open({{96, 48}, {40, 30}});
    button("printBorder_")->click();
    number("copies_")->setValue(3);
    button("print_")->click();
    QCOMPARE(m_dialog->result(), 1);
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_printers->jobs.size(), 1);
    QCOMPARE(job().printer, "Office"_qs);
    QCOMPARE(job().mode.copies, 3);
    QCOMPARE(job().pages.size(), 2);
    QCOMPARE(job().pages[0].drawings[0].image.size(), QSize(96, 48));
    QCOMPARE(job().pages[0].drawings[0].image.pixelColor(5, 5), QColor(Qt::red));
    QCOMPARE(job().pages[1].drawings[0].image.pixelColor(5, 5), QColor(Qt::green));
    QCOMPARE(job().pages[0].frames.size(), 1);
    settle(); // nothing is left that would draw a page that is not there
}

void Tst_PrintPreviewDialog::printedPlacesFollowTheControls() {
    open({{1000, 2000}});
    button("scaleCustom_")->click();
    number("scaleCustomValue_")->setValue(50);
    number("leftMarginValue_")->setValue(14);
    number("topMarginValue_")->setValue(25);
    button("centerHorizontal_")->click();
    button("print_")->click();
    // At 300 per inch, from the printer's own margins of 4 and 5 mm on.
    const double inch = 300;
    const QRectF target = job().pages[0].drawings[0].target;
    const auto isAt = [](double actual, double expected) { return qAbs(actual - expected) < 1; };
    const double width = 500 / 96.0 * inch; // half of the image
    const double left = (14 - 4) / 25.4 * inch;
    const double areaWidth = (210 - 14 - 10) / 25.4 * inch;
    QVERIFY2(isAt(target.width(), width), qPrintable(QString::number(target.width())));
    QVERIFY2(isAt(target.left(), left + (areaWidth - width) / 2), qPrintable(QString::number(target.left())));
    QVERIFY2(isAt(target.top(), (25 - 5) / 25.4 * inch), qPrintable(QString::number(target.top())));
    const double height = (297 - 25 - 10) / 25.4 * inch;
    QVERIFY2(isAt(target.height(), height), qPrintable(QString::number(target.height())));
    QVERIFY(isAt(job().pages[0].drawings[0].source.height(), height / inch * 96 * 2));
}

void Tst_PrintPreviewDialog::printerThatHasGoneIsLeft() {
    m_printers->add("Attic"_qs);
    open();
    m_printers->printer("Attic"_qs).isThere = false;
    list("printers_")->setCurrentText("Attic"_qs);
    settle();
    QCOMPARE(list("pageSizes_")->count(), 0);
    QVERIFY(preview().isNull());
    list("printers_")->setCurrentText("Office"_qs);
    settle();
    QCOMPARE(list("pageSizes_")->count(), 3);
    QVERIFY(!preview().isNull());
}

void Tst_PrintPreviewDialog::keysOfTheDialog() {
    open();
    number("copies_")->setFocus();
    QTest::keyClick(number("copies_"), Qt::Key_Escape);
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_dialog->result(), 0);
    QVERIFY(m_printers->jobs.isEmpty());

    open();
    number("copies_")->setFocus();
    number("copies_")->selectAll();
    QTest::keyClicks(number("copies_"), "4"_qs);
    QTest::keyClick(number("copies_"), Qt::Key_Return);
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_dialog->result(), 1);
    QCOMPARE(m_printers->jobs.size(), 1);
    QCOMPARE(job().mode.copies, 4);
}

void Tst_PrintPreviewDialog::openListKeepsItsKeys() {
    open();
    // Through the window system, as real keys come.
    const auto press = [this](Qt::Key key) {
        list("pageSizes_")->showPopup();
        settle();
        QVERIFY(QApplication::activePopupWidget());
        QTest::keyClick(QApplication::activePopupWidget()->windowHandle(), key);
        settle();
        QVERIFY(!QApplication::activePopupWidget());
        QVERIFY(m_dialog->isVisible());
    };
    press(Qt::Key_Escape);
    QCOMPARE(list("pageSizes_")->currentIndex(), 0);
    press(Qt::Key_Return);
    QCOMPARE(list("pageSizes_")->currentIndex(), 0);
    list("pageSizes_")->showPopup();
    settle();
    QTest::keyClick(QApplication::activePopupWidget()->windowHandle(), Qt::Key_Down);
    QTest::keyClick(QApplication::activePopupWidget()->windowHandle(), Qt::Key_Return);
    settle();
    QCOMPARE(list("pageSizes_")->currentIndex(), 1);
    QVERIFY(m_dialog->isVisible());
    QVERIFY(m_printers->jobs.isEmpty());
    QTest::keyClick(m_dialog->windowHandle(), Qt::Key_Return);
    QCOMPARE(m_printers->jobs.size(), 1);
}

QTEST_MAIN(Tst_PrintPreviewDialog)
#include "tst_printpreviewdialog.moc"
