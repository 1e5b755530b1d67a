#include "print/printdialogtest.h"
#include "support/modalanswers.h"
#include "support/secondscreen.h"
#include "ui/uistyler.h"

#include <QGroupBox>
#include <QLineEdit>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

/// What the dialog shows, and what its controls do.
class Tst_PrintPreviewDialog : public PrintDialogTest {
    Q_OBJECT
private slots:
    void initTestCase() { PrintDialogTest::initTestCase(); }
    void init() { PrintDialogTest::init(); }
    void cleanup() { PrintDialogTest::cleanup(); }

    void texts();
    void window();
    void rowsOfTheScaleAreEven_data();
    void rowsOfTheScaleAreEven();
    void rangesOfNumbers();
    void wheelScrollsNothing_data();
    void wheelScrollsNothing();
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
    void buttonsStayWhilePagesAreTurned();
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
};

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
}

void Tst_PrintPreviewDialog::rowsOfTheScaleAreEven_data() {
    QTest::addColumn<double>("scale");
    QTest::newRow("100 %") << 1.0;
    QTest::newRow("150 %") << 1.5;
    QTest::newRow("200 %") << 2.0;
}

void Tst_PrintPreviewDialog::rowsOfTheScaleAreEven() {
    QFETCH(double, scale);
    open();
    UIStyler::applyScale(m_dialog.get(), scale);
    settle();
    const auto middle = [this](const char *name) { return child(name)->geometry().center().y(); };
    const int distance = middle("scaleActual_") - middle("scaleFit_");
    QVERIFY2(distance >= int(24 * scale), qPrintable(QString::number(distance)));
    QVERIFY2(distance >= number("scaleCustomValue_")->height(), qPrintable(QString::number(distance)));
    QVERIFY(qAbs(middle("scaleCustom_") - middle("scaleActual_") - distance) <= 1);
    QVERIFY(qAbs(middle("scaleCustomValue_") - middle("scaleCustom_") - distance) <= 1);
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
    const QLabel *name = labelOf("scaleCustomValue_");
    QVERIFY(!number("scaleCustomValue_")->isEnabled());
    QVERIFY(!name->isEnabled());
    button("scaleCustom_")->click();
    QVERIFY(number("scaleCustomValue_")->isEnabled());
    QVERIFY(name->isEnabled());
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

void Tst_PrintPreviewDialog::buttonsStayWhilePagesAreTurned() {
    open(QVector<QSize>(100, {10, 10}));
    settle();
    const QPoint next = button("toNextPage_")->pos();
    for (const char *page : {"10/100 Pages", "100/100 Pages"}) {
        while (pages() != QLatin1String(page)) {
            button("toNextPage_")->click();
            settle();
        }
        QCOMPARE(button("toNextPage_")->pos(), next);
    }
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
