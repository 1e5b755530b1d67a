#include "print/printerpropertiesdialog.h"
#include "support/fakeplatform.h"
#include "support/literals.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QtTest>

class Tst_PrinterPropertiesDialog : public QObject {
    Q_OBJECT
private slots:
    void init();

    void offersWhatThePrinterOffers();
    void presentSettingsAreShown();
    void settingWithoutChoiceIsDisabled();
    void untouchedDialogChangesNothing();
    void choiceIsTakenWithItsBit_data();
    void choiceIsTakenWithItsBit();
    void paperBringsItsSizeAndName();
    void unknownPaperStays();
    void nameOfThePrinterIsPlainText();
    void openListKeepsItsKeys();

private:
    std::unique_ptr<PrinterPropertiesDialog> dialog(const PrinterMode &mode) {
        m_printer = m_printers->open("Office"_qs);
        return std::make_unique<PrinterPropertiesDialog>("<b>Office</b>"_qs, *m_printer, mode, nullptr);
    }
    static QComboBox *box(PrinterPropertiesDialog &dialog, const QString &name) {
        return dialog.findChild<QComboBox *>(name);
    }
    static QStringList texts(const QComboBox *box) {
        QStringList all;
        for (int i = 0; i < box->count(); ++i)
            all.append(box->itemText(i));
        return all;
    }
    FakePrinter &office() { return m_printers->printer("Office"_qs); }

    FakePrinters *m_printers = nullptr;
    std::unique_ptr<Printer> m_printer;
};

void Tst_PrinterPropertiesDialog::init() {
    m_printers = &FakePlatform::install()->printerList;
    m_printers->add("Office"_qs);
}

void Tst_PrinterPropertiesDialog::offersWhatThePrinterOffers() {
    const auto shown = dialog(office().mode);
    QCOMPARE(shown->windowTitle(), "Printer settings"_qs);
    QVERIFY(!shown->windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
    QCOMPARE(texts(box(*shown, "paper_"_qs)), (QStringList{"A4"_qs, "Letter"_qs, "A5"_qs}));
    QCOMPARE(texts(box(*shown, "color_"_qs)), (QStringList{"Black and white"_qs, "Color"_qs}));
    QCOMPARE(texts(box(*shown, "duplex_"_qs)),
             (QStringList{"Off"_qs, "Flip on long edge"_qs, "Flip on short edge"_qs}));
    QCOMPARE(texts(box(*shown, "quality_"_qs)), (QStringList{"Draft"_qs, "Normal"_qs, "High"_qs}));
}

void Tst_PrinterPropertiesDialog::presentSettingsAreShown() {
    PrinterMode mode = office().mode;
    mode.paperSize = 1;
    mode.color = PrinterMode::Monochrome;
    mode.duplex = PrinterMode::ShortEdge;
    mode.quality = PrinterMode::HighQuality;
    const auto shown = dialog(mode);
    QCOMPARE(box(*shown, "paper_"_qs)->currentText(), "Letter"_qs);
    QCOMPARE(box(*shown, "color_"_qs)->currentText(), "Black and white"_qs);
    QCOMPARE(box(*shown, "duplex_"_qs)->currentText(), "Flip on short edge"_qs);
    QCOMPARE(box(*shown, "quality_"_qs)->currentText(), "High"_qs);
}

void Tst_PrinterPropertiesDialog::settingWithoutChoiceIsDisabled() {
    office().choices.duplexes = {PrinterMode::OneSided};
    const auto shown = dialog(office().mode);
    QVERIFY(!box(*shown, "duplex_"_qs)->isEnabled());
    QVERIFY(box(*shown, "color_"_qs)->isEnabled());
}

void Tst_PrinterPropertiesDialog::untouchedDialogChangesNothing() {
    PrinterMode mode = office().mode;
    mode.copies = 4;
    mode.quality = 9; // none of those that are offered
    const PrinterMode after = dialog(mode)->mode();
    QCOMPARE(after.fields, 0U);
    QCOMPARE(after.copies, 4);
    QCOMPARE(after.quality, 9);
    QCOMPARE(int(after.paperSize), 9);
}

void Tst_PrinterPropertiesDialog::choiceIsTakenWithItsBit_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("choice");
    QTest::addColumn<quint32>("bit");
    QTest::addColumn<QVector<int>>("values"); // colour, sides, quality
    QTest::newRow("colour") << "color_"
                            << "Black and white" << 0x800U << QVector<int>{1, 1, 4};
    QTest::newRow("long edge") << "duplex_"
                               << "Flip on long edge" << 0x1000U << QVector<int>{2, 2, 4};
    QTest::newRow("short edge") << "duplex_"
                                << "Flip on short edge" << 0x1000U << QVector<int>{2, 3, 4};
    QTest::newRow("draft") << "quality_"
                           << "Draft" << 0x400U << QVector<int>{2, 1, 3};
}

void Tst_PrinterPropertiesDialog::choiceIsTakenWithItsBit() {
    QFETCH(QString, name);
    QFETCH(QString, choice);
    QFETCH(quint32, bit);
    QFETCH(QVector<int>, values);
    const auto shown = dialog(office().mode);
    box(*shown, name)->setCurrentText(choice);
    const PrinterMode mode = shown->mode();
    QCOMPARE(mode.fields, bit);
    QCOMPARE((QVector<int>{mode.color, mode.duplex, mode.quality}), values);
}

void Tst_PrinterPropertiesDialog::paperBringsItsSizeAndName() {
    const auto shown = dialog(office().mode);
    box(*shown, "paper_"_qs)->setCurrentText("A5"_qs);
    const PrinterMode mode = shown->mode();
    QCOMPARE(int(mode.paperSize), 11);
    QCOMPARE(mode.paperWidth, 1480);
    QCOMPARE(mode.paperLength, 2100);
    QCOMPARE(mode.formName, "A5"_qs);
    QCOMPARE(mode.fields, 0x1000EU);
}

void Tst_PrinterPropertiesDialog::unknownPaperStays() {
    PrinterMode mode = office().mode;
    mode.paperSize = 4242;
    const auto shown = dialog(mode);
    QCOMPARE(box(*shown, "paper_"_qs)->currentIndex(), -1);
    QCOMPARE(int(shown->mode().paperSize), 4242);
}

void Tst_PrinterPropertiesDialog::nameOfThePrinterIsPlainText() {
    const auto shown = dialog(office().mode);
    const auto *name = shown->findChild<QLabel *>("printerName_"_qs);
    QCOMPARE(name->text(), "<b>Office</b>"_qs);
    QCOMPARE(name->textFormat(), Qt::PlainText);
}

void Tst_PrinterPropertiesDialog::openListKeepsItsKeys() {
    const auto shown = dialog(office().mode);
    shown->show();
    QVERIFY(QTest::qWaitForWindowActive(shown.get()));
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return}) {
        box(*shown, "paper_"_qs)->showPopup();
        QCoreApplication::processEvents();
        QVERIFY(QApplication::activePopupWidget());
        QTest::keyClick(QApplication::activePopupWidget()->windowHandle(), key);
        QCoreApplication::processEvents();
        QVERIFY(!QApplication::activePopupWidget());
        QVERIFY(shown->isVisible());
    }
}

QTEST_MAIN(Tst_PrinterPropertiesDialog)
#include "tst_printerpropertiesdialog.moc"
