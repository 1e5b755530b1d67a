#include "platform/configuration.h"
#include "print/printdialogtest.h"
#include "services/tracelog.h"
#include "support/modalanswers.h"

#include <QGroupBox>

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
const QVector<const char *> Margins = {"leftMarginValue_", "topMarginValue_", "rightMarginValue_",
                                       "bottomMarginValue_"};

void setLevel(int level) {
    ConfigurationLocation key("SOFTWARE\\Norvane\\Tindra\\FuncTrace"_qs);
    key.setValue("trace"_qs, QString::number(level));
    loadTraceSettings();
}

int countLogged(const QByteArray &words) {
    QFile log(TraceLog::filePath());
    return log.open(QIODevice::ReadOnly) ? log.readAll().count(words) : 0;
}

bool isLogged(const QByteArray &words) {
    return countLogged(words) > 0;
}

} // namespace

/// Which printer the dialog takes, with which settings it begins, and what it remembers.
class Tst_PrintSettings : public PrintDialogTest {
    Q_OBJECT
private slots:
    void initTestCase() { PrintDialogTest::initTestCase(); }
    void init() { PrintDialogTest::init(); }
    void cleanup() { PrintDialogTest::cleanup(); }

    void rememberedPrinterIsChosen_data();
    void rememberedPrinterIsChosen();
    void withoutRememberedPrinterTheSettingsAreFresh();
    void noPrinterLeavesOnlyCancel();
    void noPrinterIsLogged();
    void awaitedListIsNotLoggedAsMissing();
    void returnPrintsNothingWithoutPrinter();
    void printersWithoutDefaultCanBeChosen();
    void unreadablePrinterHasNoPapers();
    void unreadablePrinterFailsToPrintAndCloses();
    void unreadablePrinterKeepsTheMargins();
    void lateAnswerBringsPapersAndSettings();
    void lateAnswerOfAChosenPrinterBringsItsOwn();
    void lateAnswerOfADefaultPrinterKeepsTheMargins();
    void awaitedAnswerHoldsThePrintBack();
    void lateListBringsPrinterAndSettings_data();
    void lateListBringsPrinterAndSettings();
    void lateEmptyListLeavesOnlyCancel();
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
};

void Tst_PrintSettings::rememberedPrinterIsChosen_data() {
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

void Tst_PrintSettings::rememberedPrinterIsChosen() {
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

void Tst_PrintSettings::withoutRememberedPrinterTheSettingsAreFresh() {
    preferences()->SetString(P::PrinterName, "Cellar"_qs);
    preferences()->SetInt(P::PrinterScale, 2);
    preferences()->SetInt(P::PrinterCopies, 7);
    preferences()->SetInt(P::PrinterPageLeftMargin, 44);
    office().mode.copies = 2;
    open();
    QVERIFY(button("scaleFit_")->isChecked());
    QVERIFY(!number("scaleCustomValue_")->isEnabled());
    QCOMPARE(number("copies_")->value(), 2);
    for (const char *margin : Margins)
        QCOMPARE(number(margin)->value(), 10);
}

void Tst_PrintSettings::noPrinterLeavesOnlyCancel() {
    removePrinters();
    open({{10, 10}, {10, 10}});
    for (const char *name : Settings)
        QVERIFY2(!child(name)->isEnabled(), name);
    QVERIFY(!list("printers_")->isEnabled());
    for (const char *name : {"printers_", "pageSizes_", "copies_", "bottomMarginValue_"})
        QVERIFY2(!labelOf(name)->isEnabled(), name);
    for (const QGroupBox *group : m_dialog->findChildren<QGroupBox *>())
        QVERIFY(!group->isEnabled());
    QVERIFY(!number("scaleCustomValue_")->isEnabled());
    QVERIFY(button("scaleFit_")->isChecked());
    for (const char *margin : Margins)
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

void Tst_PrintSettings::noPrinterIsLogged() {
    const auto logged = [] { return isLogged("PrintPreviewDialog : No available printer"); };
    setLevel(1);
    open();
    QVERIFY(!logged());
    removePrinters();
    setLevel(0);
    open();
    QVERIFY(!logged());
    setLevel(1);
    open();
    setLevel(-1);
    QVERIFY(logged());
}

void Tst_PrintSettings::awaitedListIsNotLoggedAsMissing() {
    const auto logged = [] { return countLogged("PrintPreviewDialog : No available printer"); };
    const int before = logged();
    removePrinters();
    m_printers->lateList = LateAnswer::Awaited;
    setLevel(1);
    open();
    QCOMPARE(logged(), before);
    m_printers->lateList = LateAnswer::Arrived;
    QTRY_COMPARE(m_printers->lateList, LateAnswer::None);
    setLevel(-1);
    QCOMPARE(logged(), before + 1);
}

void Tst_PrintSettings::returnPrintsNothingWithoutPrinter() {
    removePrinters();
    open();
    QTest::keyClick(m_dialog.get(), Qt::Key_Return);
    QVERIFY(m_dialog->isVisible());
    QVERIFY(m_printers->jobs.isEmpty());
    QCOMPARE(preferences()->GetString(P::PrinterName, QString()), "Office"_qs);
}

void Tst_PrintSettings::printersWithoutDefaultCanBeChosen() {
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

void Tst_PrintSettings::unreadablePrinterHasNoPapers() {
    office().isThere = false;
    open();
    QCOMPARE(list("pageSizes_")->count(), 0);
    QVERIFY(preview().isNull());
    QCOMPARE(pages(), "1/1 Pages"_qs);
    for (const char *name : Settings)
        QVERIFY2(child(name)->isEnabled(), name);
}

void Tst_PrintSettings::unreadablePrinterFailsToPrintAndCloses() {
    office().isThere = false;
    preferences()->SetInt(P::PrinterCopies, 5);
    preferences()->SetBool(P::PrinterHCenter, false);
    open();
    button("centerHorizontal_")->click();
    button("print_")->click();
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_dialog->result(), 1);
    QVERIFY(m_printers->jobs.isEmpty());
    QVERIFY(preferences()->GetBool(P::PrinterHCenter, false));
    QCOMPARE(preferences()->GetInt(P::PrinterCopies, 0), 1); // what such a printer tells
}

void Tst_PrintSettings::unreadablePrinterKeepsTheMargins() {
    FakePrinter attic = FakePrinter::office();
    attic.isThere = false;
    m_printers->add("Attic"_qs, attic);
    preferences()->SetInt(P::PrinterPageLeftMargin, 44);
    open();
    number("topMarginValue_")->setValue(140);
    list("printers_")->setCurrentText("Attic"_qs);
    QCOMPARE(number("leftMarginValue_")->value(), 44);
    QCOMPARE(number("topMarginValue_")->value(), 140);
    button("orientationPortrait_")->click();
    QCOMPARE(number("topMarginValue_")->value(), 140);
    QCOMPARE(number("topMarginValue_")->maximum(), 148);
}

void Tst_PrintSettings::lateAnswerBringsPapersAndSettings() {
    office().papers.append({8, "A3"_qs, {2970, 4200}});
    preferences()->SetInt(P::PrinterPageSize, 8);
    preferences()->SetInt(P::PrinterCopies, 7);
    preferences()->SetInt(P::PrinterPageTopMargin, 200); // A4 has no room for it
    m_printers->latePrinters["Office"_qs] = LateAnswer::Awaited;
    open();
    QCOMPARE(list("pageSizes_")->count(), 0);
    // What the user sets meanwhile stays, as far as it is not the printer's.
    number("leftMarginValue_")->setValue(33);
    button("centerVertical_")->click();
    m_printers->latePrinters["Office"_qs] = LateAnswer::Arrived;
    QTRY_COMPARE(list("pageSizes_")->count(), 4);
    QCOMPARE(list("pageSizes_")->currentText(), "A3 (297.0 x 420.0 mm)"_qs);
    QCOMPARE(number("copies_")->value(), 7);
    QVERIFY(button("orientationPortrait_")->isChecked());
    QCOMPARE(number("topMarginValue_")->value(), 200);
    QCOMPARE(number("topMarginValue_")->maximum(), 210);
    QCOMPARE(number("leftMarginValue_")->value(), 33);
    QVERIFY(button("centerVertical_")->isChecked());
    settle();
    QVERIFY(!preview().isNull());
    QCOMPARE(m_printers->opened, QStringList{"Office"_qs});
    button("print_")->click();
    QCOMPARE(m_printers->jobs.size(), 1);
}

void Tst_PrintSettings::lateAnswerOfAChosenPrinterBringsItsOwn() {
    preferences()->SetInt(P::PrinterCopies, 7);
    preferences()->SetInt(P::PrinterPageLeftMargin, 44);
    FakePrinter attic = FakePrinter::office();
    attic.mode.copies = 2;
    m_printers->add("Attic"_qs, attic);
    m_printers->latePrinters["Attic"_qs] = LateAnswer::Awaited;
    open();
    list("printers_")->setCurrentText("Attic"_qs);
    QCOMPARE(list("pageSizes_")->count(), 0);
    m_printers->latePrinters["Attic"_qs] = LateAnswer::Arrived;
    QTRY_COMPARE(list("pageSizes_")->count(), 3);
    QCOMPARE(number("copies_")->value(), 2);
    QCOMPARE(number("leftMarginValue_")->value(), 44);
}

void Tst_PrintSettings::lateAnswerOfADefaultPrinterKeepsTheMargins() {
    preferences()->SetString(P::PrinterName, QString());
    m_printers->latePrinters["Office"_qs] = LateAnswer::Awaited;
    open();
    QCOMPARE(list("printers_")->currentText(), "Office"_qs);
    m_printers->latePrinters["Office"_qs] = LateAnswer::Arrived;
    QTRY_COMPARE(list("pageSizes_")->count(), 3);
    for (const char *margin : Margins)
        QCOMPARE(number(margin)->value(), 10);
}

void Tst_PrintSettings::awaitedAnswerHoldsThePrintBack() {
    preferences()->SetInt(P::PrinterCopies, 5);
    m_printers->latePrinters["Office"_qs] = LateAnswer::Awaited;
    open();
    QVERIFY(button("print_")->isEnabled());
    button("print_")->click();
    QTest::keyClick(m_dialog.get(), Qt::Key_Return);
    QVERIFY(m_dialog->isVisible());
    QVERIFY(m_printers->jobs.isEmpty());
    QCOMPARE(preferences()->GetInt(P::PrinterCopies, 0), 5);
    // An answer that is a failure holds nothing back.
    office().isThere = false;
    m_printers->latePrinters["Office"_qs] = LateAnswer::Arrived;
    QTRY_VERIFY(m_printers->latePrinters.isEmpty());
    button("print_")->click();
    QVERIFY(!m_dialog->isVisible());
    QVERIFY(m_printers->jobs.isEmpty());
}

void Tst_PrintSettings::lateListBringsPrinterAndSettings_data() {
    QTest::addColumn<QString>("remembered");
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<int>("copies");
    QTest::newRow("remembered") << "Office"
                                << "Office" << 7;
    QTest::newRow("by default") << "Cellar"
                                << "Attic" << 2;
}

void Tst_PrintSettings::lateListBringsPrinterAndSettings() {
    QFETCH(QString, remembered);
    QFETCH(QString, chosen);
    QFETCH(int, copies);
    FakePrinter attic = FakePrinter::office();
    attic.mode.copies = 2;
    m_printers->add("Attic"_qs, attic);
    m_printers->chosen = "Attic"_qs;
    preferences()->SetString(P::PrinterName, remembered);
    preferences()->SetInt(P::PrinterCopies, 7);
    m_printers->lateList = LateAnswer::Awaited;
    open();
    for (const char *name : Settings)
        QVERIFY2(!child(name)->isEnabled(), name);
    m_printers->lateList = LateAnswer::Arrived;
    QTRY_COMPARE(list("printers_")->count(), 2);
    QVERIFY(list("printers_")->isEnabled());
    QCOMPARE(list("printers_")->currentText(), chosen);
    QCOMPARE(m_printers->opened, QStringList{chosen});
    QCOMPARE(number("copies_")->value(), copies);
    settle();
    QVERIFY(!preview().isNull());
    button("print_")->click();
    QCOMPARE(job().printer, chosen);
}

void Tst_PrintSettings::lateEmptyListLeavesOnlyCancel() {
    removePrinters();
    m_printers->lateList = LateAnswer::Awaited;
    open();
    m_printers->lateList = LateAnswer::Arrived;
    QTRY_COMPARE(m_printers->lateList, LateAnswer::None);
    for (const char *name : Settings)
        QVERIFY2(!child(name)->isEnabled(), name);
    QVERIFY(button("cancel_")->isEnabled());
}

void Tst_PrintSettings::settingsAreLoaded() {
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

void Tst_PrintSettings::firstPrintHasTheDefaults() {
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

void Tst_PrintSettings::scaleIsLoaded_data() {
    QTest::addColumn<int>("stored");
    QTest::addColumn<QString>("checked");
    QTest::addColumn<int>("value");
    QTest::newRow("fit") << 0 << "scaleFit_" << 100;
    QTest::newRow("actual") << 1 << "scaleActual_" << 100;
    QTest::newRow("custom") << 2 << "scaleCustom_" << 333;
    QTest::newRow("more") << 3 << "scaleCustom_" << 333;
    QTest::newRow("less") << -1 << "scaleCustom_" << 333;
}

void Tst_PrintSettings::scaleIsLoaded() {
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

void Tst_PrintSettings::marginsOfALargerPaperAreLoaded() {
    office().papers.append({8, "A3"_qs, {2970, 4200}});
    preferences()->SetInt(P::PrinterPageSize, 8);
    preferences()->SetInt(P::PrinterPageTopMargin, 200);
    preferences()->SetInt(P::PrinterPageLeftMargin, 140);
    open();
    QCOMPARE(number("topMarginValue_")->value(), 200);
    QCOMPARE(number("leftMarginValue_")->value(), 140);
}

void Tst_PrintSettings::rememberedPaperOfAnotherPrinterShowsNothing() {
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

void Tst_PrintSettings::rememberedPaperOfAnotherPrinterPrintsAnEmptySheet() {
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

void Tst_PrintSettings::printingStoresTheSettings() {
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

void Tst_PrintSettings::printingStoresTheScale_data() {
    QTest::addColumn<QString>("clicked");
    QTest::addColumn<int>("stored");
    QTest::addColumn<int>("value");
    QTest::newRow("fit") << "scaleFit_" << 0 << 250;
    QTest::newRow("actual") << "scaleActual_" << 1 << 250;
    QTest::newRow("custom") << "scaleCustom_" << 2 << 70;
}

void Tst_PrintSettings::printingStoresTheScale() {
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

void Tst_PrintSettings::cancelStoresNothing() {
    open();
    number("copies_")->setValue(7);
    button("cancel_")->click();
    QCOMPARE(m_dialog->result(), 0);
    QCOMPARE(preferences()->GetInt(P::PrinterCopies, 0), 1);
    QVERIFY(m_printers->jobs.isEmpty());
}

void Tst_PrintSettings::failedPrintStoresAndCloses() {
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

QTEST_MAIN(Tst_PrintSettings)
#include "tst_printsettings.moc"
