#include "print/printpreviewdialog.h"

#include "preferences/tindrapreferences.h"
#include "print/nativeprinter.h"
#include "services/tracelog.h"
#include "ui/snaptoscreen.h"
#include "ui/uistyler.h"

#include <QAction>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QScopedValueRollback>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>

namespace {

using P = TindraPreferences;

constexpr int RestAfterResize = 50;                  // milliseconds
constexpr int LateAnswerInterval = 200;              // milliseconds
constexpr int RoomAroundSheet = 60;                  // both sides together, at 96 DPI
constexpr double MillimetresPerPixel = 0.2645833333; // at 96 per inch
constexpr double LargestMargin = 0.5;                // of the paper
constexpr int DefaultMargin = 10;                    // millimetres

// At 96 DPI.
constexpr int ScrollBarWidth = 18;
constexpr int ScaleRowHeight = 24;
constexpr int SettingsRight = 48;
constexpr int SettingsBottom = 20;
// The same at every scale.
constexpr int SettingsLeft = 35;
constexpr int SettingsTop = 10;

} // namespace

PrintPreviewDialog::PrintPreviewDialog(QWidget *parent) : QDialog(parent) {
    m_updateTimer.setSingleShot(true);
    m_updateTimer.setInterval(RestAfterResize);
    m_lateTimer.setInterval(LateAnswerInterval);
    connect(&m_lateTimer, &QTimer::timeout, this, &PrintPreviewDialog::onLateAnswer);
    buildForm();
    addPrinters(NativePrinter::printerNames());
    connect(m_printers, &QComboBox::currentTextChanged, this, &PrintPreviewDialog::onChangePrinter);
    choosePrinter();
    connectControls();
    awaitAnswers();
    UIStyler::setScaleCallback(this, [this](const double &scale) { onChangeUiScale(scale); });
}

PrintPreviewDialog::~PrintPreviewDialog() = default;

void PrintPreviewDialog::addKeys() {
    const auto add = [this](int key, void (PrintPreviewDialog::*slot)()) {
        auto *action = new QAction(this);
        action->setShortcut(key);
        connect(action, &QAction::triggered, this, slot);
        addAction(action);
    };
    add(Qt::Key_Escape, &PrintPreviewDialog::onClickCancel);
    add(Qt::Key_Return, &PrintPreviewDialog::onClickPrint);
}

void PrintPreviewDialog::connectControls() {
    using Dialog = PrintPreviewDialog;
    connect(m_pageSizes, qOverload<int>(&QComboBox::currentIndexChanged), this, &Dialog::onChangePageSize);
    connect(m_printerSettings, &QPushButton::clicked, this, &Dialog::onClickPrinterSettings);
    connect(m_orientation, &QButtonGroup::idClicked, this, &Dialog::onChangeOrientationButton);
    connect(m_scale, &QButtonGroup::idClicked, this, &Dialog::onChangeScaleButton);
    connect(m_copies, qOverload<int>(&QSpinBox::valueChanged), this, &Dialog::onChangeCopies);
    connect(m_printGrayscale, &QCheckBox::stateChanged, this, &Dialog::onChangeGrayscale);
    for (const QCheckBox *box : {m_centerHorizontal, m_centerVertical, m_printBorder})
        connect(box, &QCheckBox::stateChanged, this, &Dialog::updatePreview);
    for (const QSpinBox *box :
         {m_scaleCustomValue, m_leftMarginValue, m_topMarginValue, m_rightMarginValue, m_bottomMarginValue})
        connect(box, qOverload<int>(&QSpinBox::valueChanged), this, &Dialog::onUpdatePreview);
    connect(m_toPrevPage, &QPushButton::clicked, this, &Dialog::onClickToPrevPage);
    connect(m_toNextPage, &QPushButton::clicked, this, &Dialog::onClickToNextPage);
    connect(m_print, &QPushButton::clicked, this, &Dialog::onClickPrint);
    connect(m_cancel, &QPushButton::clicked, this, &Dialog::onClickCancel);
    connect(&m_updateTimer, &QTimer::timeout, this, &Dialog::updatePreview);
    // Queued: many things change at once when another printer is chosen.
    connect(this, &Dialog::updatePreview, this, &Dialog::onUpdatePreview, Qt::QueuedConnection);
}

void PrintPreviewDialog::addImage(const QPixmap &pixmap) {
    m_images.append(pixmap);
}

void PrintPreviewDialog::addPrinters(const QStringList &names) {
    const QSignalBlocker blocker(m_printers);
    m_printers->addItems(names);
    // Nothing chosen yet, so that choosing the first printer is a change too.
    m_printers->setCurrentIndex(-1);
}

void PrintPreviewDialog::choosePrinter() {
    if (loadSettings())
        return;
    const QString name = NativePrinter::defaultPrinterName();
    if (!name.isEmpty())
        m_printers->setCurrentText(name);
    if (m_printers->count() == 0 && NativePrinter::latePrinterNames() == LateAnswer::None)
        trace(1, QStringLiteral("PrintPreviewDialog"), "No available printer");
    refreshControls();
}

bool PrintPreviewDialog::loadSettings() {
    P *preferences = P::instance();
    m_printers->setCurrentText(preferences->GetString(P::PrinterName, QString()));
    if (!m_printer) {
        m_scaleFit->setChecked(true);
        m_scaleCustomValue->setEnabled(false);
        for (QSpinBox *box : {m_leftMarginValue, m_topMarginValue, m_rightMarginValue, m_bottomMarginValue})
            box->setValue(DefaultMargin);
        return false;
    }
    loadPrinterSettings();
    // A margin may be half of this paper, which need not be the one of before.
    updateMarginRanges();
    loadLayout();
    refreshControls();
    m_areSettingsDue = !m_printer->isRead();
    return true;
}

void PrintPreviewDialog::loadPrinterSettings() {
    const P *preferences = P::instance();
    m_printer->setPaperId(static_cast<quint16>(preferences->GetInt(P::PrinterPageSize, PrinterMode::A4)));
    m_printer->setCopies(preferences->GetInt(P::PrinterCopies, 1));
    m_printer->setPortrait(preferences->GetInt(P::PrinterPageOrientation, 1));
    m_printer->setGrayscale(preferences->GetBool(P::PrinterDrawGrayscale, false));
}

void PrintPreviewDialog::loadLayout() {
    P *preferences = P::instance();
    const int scale = preferences->GetInt(P::PrinterScale, PageSettings::Actual);
    QAbstractButton *button = m_scale->button(scale);
    (button ? button : m_scaleCustom)->setChecked(true);
    m_scaleCustomValue->setEnabled(m_scaleCustom->isChecked());
    if (m_scaleCustom->isChecked())
        m_scaleCustomValue->setValue(preferences->GetInt(P::PrinterScaleValue, 1));
    m_centerHorizontal->setChecked(preferences->GetBool(P::PrinterHCenter, false));
    m_centerVertical->setChecked(preferences->GetBool(P::PrinterVCenter, false));
    m_leftMarginValue->setValue(preferences->GetInt(P::PrinterPageLeftMargin, DefaultMargin));
    m_rightMarginValue->setValue(preferences->GetInt(P::PrinterPageRightMargin, DefaultMargin));
    m_topMarginValue->setValue(preferences->GetInt(P::PrinterPageTopMargin, DefaultMargin));
    m_bottomMarginValue->setValue(preferences->GetInt(P::PrinterPageBottomMargin, DefaultMargin));
    m_printBorder->setChecked(preferences->GetBool(P::PrinterDrawBorder, false));
}

void PrintPreviewDialog::saveSettings() const {
    P *preferences = P::instance();
    // As they stand, whatever became of the job: what was chosen is wanted the next time too. For a
    // printer that could not be read, paper, copies and orientation are what the dialog shows of such a one.
    preferences->SetString(P::PrinterName, m_printers->currentText());
    preferences->SetInt(P::PrinterPageSize, m_printer->paperId());
    preferences->SetInt(P::PrinterCopies, m_printer->copies());
    preferences->SetInt(P::PrinterPageOrientation, m_printer->isPortrait() ? 1 : 0);
    preferences->SetBool(P::PrinterDrawGrayscale, m_printer->isGrayscale());
    const PageSettings settings = pageSettings();
    preferences->SetInt(P::PrinterScale, settings.scale);
    if (settings.scale == PageSettings::Custom)
        preferences->SetInt(P::PrinterScaleValue, settings.scaleValue);
    preferences->SetBool(P::PrinterHCenter, settings.centerHorizontal);
    preferences->SetBool(P::PrinterVCenter, settings.centerVertical);
    preferences->SetInt(P::PrinterPageLeftMargin, settings.leftMargin);
    preferences->SetInt(P::PrinterPageRightMargin, settings.rightMargin);
    preferences->SetInt(P::PrinterPageTopMargin, settings.topMargin);
    preferences->SetInt(P::PrinterPageBottomMargin, settings.bottomMargin);
    preferences->SetBool(P::PrinterDrawBorder, m_printBorder->isChecked());
}

void PrintPreviewDialog::enableControls() {
    const bool enabled = m_printer;
    for (QWidget *control : std::initializer_list<QWidget *>{
             m_printerSettings, m_pageSizes, m_copies, m_orientationPortrait, m_orientationLandscape,
             m_scaleFit, m_scaleActual, m_scaleCustom, m_centerHorizontal, m_centerVertical,
             m_leftMarginValue, m_topMarginValue, m_rightMarginValue, m_bottomMarginValue, m_printGrayscale,
             m_printBorder, m_print})
        control->setEnabled(enabled);
    const QList<QGroupBox *> groups = findChildren<QGroupBox *>();
    for (QGroupBox *group : groups)
        group->setEnabled(enabled); // dims the title
    m_printers->setEnabled(m_printers->count() > 0);
    // Loading and the choice of another scale disable the value where it has no effect; a refresh must not
    // offer it again.
    m_scaleCustomValue->setEnabled(enabled && m_scaleCustom->isChecked());
}

void PrintPreviewDialog::refreshControls() {
    enableControls();
    if (!m_printer)
        return;
    m_pageSizes->setCurrentIndex(m_pageSizes->findData(int(m_printer->paperId())));
    (m_printer->isPortrait() ? m_orientationPortrait : m_orientationLandscape)->setChecked(true);
    updateMarginRanges();
    m_copies->setValue(m_printer->copies());
    m_printGrayscale->setChecked(m_printer->isGrayscale());
    m_pageIndex = 0;
    emit updatePreview();
}

void PrintPreviewDialog::updateMarginRanges() {
    // Without a paper no margin would be left of those that were stored.
    if (!m_printer || !m_printer->isRead())
        return;
    const QSizeF paper = m_printer->paperSize();
    const auto most = [](double length) {
        return std::max(0, static_cast<int>(length * LargestMargin * MillimetresPerPixel));
    };
    for (QSpinBox *box : {m_leftMarginValue, m_rightMarginValue})
        box->setRange(0, most(paper.width()));
    for (QSpinBox *box : {m_topMarginValue, m_bottomMarginValue})
        box->setRange(0, most(paper.height()));
}

PageSettings PrintPreviewDialog::pageSettings() const {
    PageSettings settings;
    settings.scale = static_cast<PageSettings::Scale>(m_scale->checkedId());
    settings.scaleValue = m_scaleCustomValue->value();
    settings.centerHorizontal = m_centerHorizontal->isChecked();
    settings.centerVertical = m_centerVertical->isChecked();
    settings.leftMargin = m_leftMarginValue->value();
    settings.topMargin = m_topMarginValue->value();
    settings.rightMargin = m_rightMarginValue->value();
    settings.bottomMargin = m_bottomMarginValue->value();
    return settings;
}

void PrintPreviewDialog::onChangePrinter(const QString &name) {
    delete m_printer;
    m_printer = nullptr;
    m_areSettingsDue = false;
    if (!name.isEmpty())
        m_printer = new NativePrinter(name, this);
    fillPapers();
    refreshControls();
    awaitAnswers();
}

void PrintPreviewDialog::fillPapers() {
    const QVector<PaperEntry> papers = m_printer ? m_printer->paperList() : QVector<PaperEntry>();
    const QSignalBlocker blocker(m_pageSizes);
    m_pageSizes->clear();
    for (const PaperEntry &paper : papers)
        m_pageSizes->addItem(paper.label, int(paper.id));
}

void PrintPreviewDialog::awaitAnswers() {
    const bool isAwaiting = NativePrinter::latePrinterNames() != LateAnswer::None ||
                            (m_printer && m_printer->lateAnswer() != LateAnswer::None);
    if (!isAwaiting)
        m_lateTimer.stop();
    else if (!m_lateTimer.isActive())
        m_lateTimer.start();
}

void PrintPreviewDialog::onLateAnswer() {
    if (NativePrinter::latePrinterNames() == LateAnswer::Arrived) {
        addPrinters(NativePrinter::takeLatePrinterNames());
        choosePrinter();
    } else if (m_printer && m_printer->lateAnswer() == LateAnswer::Arrived) {
        m_printer->takeLateAnswer();
        fillPapers();
        if (m_areSettingsDue)
            loadPrinterSettings();
        m_areSettingsDue = false;
        refreshControls();
    }
    awaitAnswers();
}

void PrintPreviewDialog::onChangePageSize(int index) {
    // No row stands for a remembered paper that this printer has not got.
    if (!m_printer || index < 0)
        return;
    m_printer->setPaperId(static_cast<quint16>(m_pageSizes->itemData(index).toInt()));
    updateMarginRanges();
    emit updatePreview();
}

void PrintPreviewDialog::onClickPrinterSettings() {
    if (m_printer && m_printer->showProperties(this))
        refreshControls();
}

void PrintPreviewDialog::onChangeOrientationButton(int) {
    if (!m_printer)
        return;
    m_printer->setPortrait(!m_orientationLandscape->isChecked());
    updateMarginRanges();
    emit updatePreview();
}

void PrintPreviewDialog::onChangeScaleButton(int id) {
    m_scaleCustomValue->setEnabled(id == PageSettings::Custom);
    emit updatePreview();
}

void PrintPreviewDialog::onChangeCopies(int copies) {
    if (m_printer)
        m_printer->setCopies(copies);
}

void PrintPreviewDialog::onChangeGrayscale(int state) {
    if (m_printer)
        m_printer->setGrayscale(state == Qt::Checked);
    emit updatePreview();
}

void PrintPreviewDialog::onClickToPrevPage() {
    m_pageIndex = std::max(m_pageIndex - 1, 0);
    emit updatePreview();
}

void PrintPreviewDialog::onClickToNextPage() {
    m_pageIndex = std::min(m_pageIndex + 1, m_images.size() - 1);
    emit updatePreview();
}

void PrintPreviewDialog::onClickPrint() {
    // The key works where the button is disabled. A printer whose answer is still to come has no page yet.
    if (!m_printer || m_printer->lateAnswer() != LateAnswer::None)
        return;
    const PageSettings settings = pageSettings();
    QVector<PrintPage> pages;
    m_pageIndex = 0;
    for (const QPixmap &image : qAsConst(m_images)) {
        const ImagePlacement placement =
            layOutPage(settings, image.size(), m_printer->printableRect(), m_printer->paperSize());
        pages.append({image, placement.source, placement.target, m_printBorder->isChecked()});
    }
    if (!m_printer->print(pages))
        trace(1, QStringLiteral("PrintPreviewDialog"), "Printing failed");
    saveSettings();
    done(Accepted);
}

void PrintPreviewDialog::onClickCancel() {
    done(Rejected);
}

void PrintPreviewDialog::resizeEvent(QResizeEvent *event) {
    QDialog::resizeEvent(event);
    m_updateTimer.start();
}

void PrintPreviewDialog::onUpdatePreview() {
    static bool isUpdating = false;
    if (isUpdating)
        return;
    const QScopedValueRollback<bool> updating(isUpdating, true);
    if (!m_printer || m_images.isEmpty()) {
        m_previewLabel->setPixmap(QPixmap());
        m_pages->setText(QString());
        m_toPrevPage->setEnabled(false);
        m_toNextPage->setEnabled(false);
        return;
    }
    const QPixmap &image = m_images[m_pageIndex];
    const float room = m_uiScale * RoomAroundSheet;
    const QSizeF available = QSizeF(m_previewLabel->size()) - QSizeF(room, room);
    const PreviewLayout layout =
        layOutPreview(pageSettings(), image.size(), m_printer->paperSize(), available);
    m_previewPixmap =
        m_preview.draw(image, layout, m_printBorder->isChecked(), m_printGrayscale->isChecked());
    m_previewLabel->setPixmap(m_previewPixmap);
    const QLatin1Char blank(' ');
    const auto pages = [&](int page) {
        return tr("%0/%1 Pages").arg(page, 0, 10, blank).arg(m_images.size(), 0, 10, blank);
    };
    m_pages->setText(pages(m_pageIndex + 1));
    // The buttons beside it stay where they are while the user turns the pages.
    m_pages->setMinimumWidth(m_pages->fontMetrics().horizontalAdvance(pages(m_images.size())));
    m_toPrevPage->setEnabled(m_pageIndex > 0);
    m_toNextPage->setEnabled(m_pageIndex + 1 < m_images.size());
}

// As high as the last one, which has a field to type in, and no lower than designed.
void PrintPreviewDialog::evenScaleRows(int designed) {
    const int last = m_scaleLayout->rowCount() - 1;
    m_scaleCustomValue->ensurePolished();
    const int height = std::max(designed, m_scaleCustomValue->sizeHint().height());
    for (int row = 0; row <= last; ++row)
        m_scaleLayout->setRowMinimumHeight(row, height);
}

void PrintPreviewDialog::onChangeUiScale(double scale) {
    m_uiScale = static_cast<float>(scale);
    const auto scaled = [scale](int size) { return static_cast<int>(size * scale); };
    m_settings->verticalScrollBar()->setFixedWidth(scaled(ScrollBarWidth));
    m_settingsLayout->setContentsMargins(SettingsLeft, SettingsTop, scaled(SettingsRight),
                                         scaled(SettingsBottom));
    evenScaleRows(scaled(ScaleRowHeight));
    m_settings->viewport()->adjustSize();
    snapToScreen(this);
}
