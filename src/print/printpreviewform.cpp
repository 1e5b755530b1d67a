// The widgets of the dialog and where they stand; what they do is in printpreviewdialog.cpp.
#include "print/openlistkeys.h"
#include "print/printpreviewdialog.h"
#include "ui/fieldlabel.h"
#include "ui/named.h"
#include "ui/negativebutton.h"
#include "ui/positivebutton.h"
#include "ui/wheeleater.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QRadioButton>
#include <QScrollArea>
#include <QSpinBox>
#include <QVBoxLayout>

namespace {

// Designed sizes, at 96 DPI.
constexpr QSize MinimumSize(670, 550);
constexpr QSize DesignedSize(584, 393);
constexpr int HalfWidth = 335;
constexpr QMargins SettingsMargins(35, 10, 48, 20);
constexpr int Margin = 16;
constexpr int Spacing = 8;
constexpr int TitleHeight = 4;
constexpr int PageButtonSize = 28;

constexpr int MostCopies = 999;
constexpr int LargestScale = 800; // percent
constexpr int InitialScale = 100;
constexpr int AnyMargin = 999; // until a paper sets the ranges

QSpinBox *newNumber(const char *name, int least, int most) {
    auto *box = named(new QSpinBox, name);
    box->setRange(least, most);
    return box;
}

/// A group's layout, below its title.
template <typename Layout> Layout *layoutOf(QGroupBox *group) {
    auto *layout = new Layout(group);
    layout->setContentsMargins(Margin, Margin + TitleHeight, Margin, Margin - TitleHeight);
    layout->setSpacing(Spacing);
    return layout;
}

} // namespace

void PrintPreviewDialog::buildForm() {
    setAttribute(Qt::WA_StyledBackground);
    setWindowTitle(tr("Print Preview"));
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    setMinimumSize(MinimumSize);
    resize(DesignedSize);
    auto *halves = new QHBoxLayout(this);
    halves->setContentsMargins(0, 0, 0, 0);
    halves->setSpacing(0);
    halves->addWidget(buildSettings(), 1);
    halves->addWidget(buildPreview(), 1);
    keepWheelAway();
    addKeys();
    const QList<QAbstractButton *> buttons = findChildren<QAbstractButton *>();
    for (QAbstractButton *button : buttons) {
        button->setCursor(Qt::PointingHandCursor);
        // Enter is for printing, whatever was clicked before.
        if (auto *push = qobject_cast<QPushButton *>(button))
            push->setAutoDefault(push == m_print);
    }
    m_print->setDefault(true);
}

QWidget *PrintPreviewDialog::buildSettings() {
    m_settings = named(new QScrollArea(this), "settings_");
    m_settings->setFrameShape(QFrame::NoFrame);
    m_settings->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_settings->setWidgetResizable(true);
    m_settings->setMinimumWidth(HalfWidth);
    auto *content = named(new QWidget, "settingsContent_");
    m_settingsLayout = new QVBoxLayout(content);
    m_settingsLayout->setContentsMargins(SettingsMargins);
    m_settingsLayout->setSpacing(Spacing);
    addPrinterRows(m_settingsLayout);
    for (QWidget *group : {buildOrientation(), buildScale(), buildCentering(), buildMargins(), buildMore()})
        m_settingsLayout->addWidget(group);
    m_settingsLayout->addStretch();
    m_settings->setWidget(content);
    return m_settings;
}

void PrintPreviewDialog::addPrinterRows(QVBoxLayout *column) {
    m_printers = named(new QComboBox, "printers_");
    m_printerSettings = named(new QPushButton(tr("Printer settings")), "printerSettings_");
    m_pageSizes = named(new QComboBox, "pageSizes_");
    m_copies = newNumber("copies_", 1, MostCopies);
    auto *copiesUnit = new FieldLabel(tr("sheet(s)"), m_copies);
    auto *rows = new QGridLayout;
    rows->setSpacing(Spacing);
    rows->setColumnStretch(2, 1);
    const auto addRow = [rows](int row, const QString &label, QWidget *field, int columns) {
        auto *text = new FieldLabel(label, field);
        text->setBuddy(field);
        rows->addWidget(text, row, 0);
        rows->addWidget(field, row, 1, 1, columns);
    };
    for (QComboBox *box : {m_printers, m_pageSizes}) {
        new OpenListKeys(box);
        // Names of printers and papers may be longer than the column is wide.
        box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        box->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    }
    addRow(0, tr("Printer"), m_printers, 2);
    rows->addWidget(m_printerSettings, 1, 1, 1, 2);
    addRow(2, tr("Page Size"), m_pageSizes, 2);
    addRow(3, tr("Copies"), m_copies, 1);
    rows->addWidget(copiesUnit, 3, 2);
    column->addLayout(rows);
}

QWidget *PrintPreviewDialog::buildOrientation() {
    auto *group = new QGroupBox(tr("Orientation"));
    m_orientationPortrait = named(new QRadioButton(tr("Portrait")), "orientationPortrait_");
    m_orientationLandscape = named(new QRadioButton(tr("Landscape")), "orientationLandscape_");
    m_orientation = new QButtonGroup(this);
    m_orientation->addButton(m_orientationPortrait);
    m_orientation->addButton(m_orientationLandscape);
    auto *row = layoutOf<QHBoxLayout>(group);
    row->addWidget(m_orientationPortrait, 1);
    row->addWidget(m_orientationLandscape, 1);
    return group;
}

QWidget *PrintPreviewDialog::buildScale() {
    auto *group = new QGroupBox(tr("Scale"));
    m_scaleFit = named(new QRadioButton(tr("Fit to printable area")), "scaleFit_");
    m_scaleActual = named(new QRadioButton(tr("Actual size")), "scaleActual_");
    m_scaleCustom = named(new QRadioButton(tr("Custom scale")), "scaleCustom_");
    m_scaleCustomValue = newNumber("scaleCustomValue_", 1, LargestScale);
    m_scaleCustomValue->setValue(InitialScale);
    m_scale = new QButtonGroup(this);
    m_scale->addButton(m_scaleFit, PageSettings::Fit);
    m_scale->addButton(m_scaleActual, PageSettings::Actual);
    m_scale->addButton(m_scaleCustom, PageSettings::Custom);
    m_scaleLayout = layoutOf<QGridLayout>(group);
    m_scaleLayout->setSpacing(Spacing / 2);
    m_scaleLayout->addWidget(m_scaleFit, 0, 0);
    m_scaleLayout->addWidget(m_scaleActual, 1, 0);
    m_scaleLayout->addWidget(m_scaleCustom, 2, 0);
    auto *label = new FieldLabel(tr("Value (%)"), m_scaleCustomValue);
    label->setBuddy(m_scaleCustomValue);
    auto *value = new QHBoxLayout;
    value->setSpacing(Spacing);
    value->addWidget(label);
    value->addWidget(m_scaleCustomValue);
    value->addStretch();
    m_scaleLayout->addLayout(value, 3, 0);
    return group;
}

QWidget *PrintPreviewDialog::buildCentering() {
    auto *group = new QGroupBox(tr("Center Alignment"));
    m_centerHorizontal = named(new QCheckBox(tr("Horizontal")), "centerHorizontal_");
    m_centerVertical = named(new QCheckBox(tr("Vertical")), "centerVertical_");
    auto *row = layoutOf<QHBoxLayout>(group);
    row->addWidget(m_centerHorizontal, 1);
    row->addWidget(m_centerVertical, 1);
    return group;
}

QWidget *PrintPreviewDialog::buildMargins() {
    auto *group = new QGroupBox(tr("Margins (mm)"));
    m_leftMarginValue = newNumber("leftMarginValue_", 0, AnyMargin);
    m_topMarginValue = newNumber("topMarginValue_", 0, AnyMargin);
    m_rightMarginValue = newNumber("rightMarginValue_", 0, AnyMargin);
    m_bottomMarginValue = newNumber("bottomMarginValue_", 0, AnyMargin);
    auto *grid = layoutOf<QGridLayout>(group);
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(3, 1);
    const auto add = [grid](int place, const QString &label, QSpinBox *box) {
        const int column = place % 2 * 2;
        auto *text = new FieldLabel(label, box);
        text->setBuddy(box);
        grid->addWidget(text, place / 2, column);
        grid->addWidget(box, place / 2, column + 1);
    };
    add(0, tr("Left"), m_leftMarginValue);
    add(1, tr("Top"), m_topMarginValue);
    add(2, tr("Right"), m_rightMarginValue);
    add(3, tr("Bottom"), m_bottomMarginValue);
    return group;
}

QWidget *PrintPreviewDialog::buildMore() {
    auto *group = new QGroupBox(tr("More"));
    m_printGrayscale = named(new QCheckBox(tr("Print grayscale")), "printGrayscale_");
    m_printBorder = named(new QCheckBox(tr("Print border")), "printBorder_");
    auto *column = layoutOf<QVBoxLayout>(group);
    column->addWidget(m_printGrayscale);
    column->addWidget(m_printBorder);
    return group;
}

QWidget *PrintPreviewDialog::buildPreview() {
    auto *half = named(new QWidget(this), "preview_");
    half->setMinimumWidth(HalfWidth);
    half->setAttribute(Qt::WA_StyledBackground);
    auto *column = new QVBoxLayout(half);
    column->setContentsMargins(0, 0, 0, Margin);
    column->setSpacing(Spacing);
    m_previewLabel = named(new QLabel, "previewLabel_");
    m_previewLabel->setAlignment(Qt::AlignCenter);
    // The picture follows the room, not the room the picture.
    m_previewLabel->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    column->addWidget(m_previewLabel, 1);
    addPages(column);
    addButtons(column);
    return half;
}

void PrintPreviewDialog::addPages(QVBoxLayout *column) {
    m_pages = named(new QLabel, "pages_");
    m_pages->setAlignment(Qt::AlignCenter);
    m_toPrevPage = named(new QPushButton, "toPrevPage_");
    m_toPrevPage->setToolTip(tr("Previous page"));
    m_toNextPage = named(new QPushButton, "toNextPage_");
    m_toNextPage->setToolTip(tr("Next page"));
    for (QPushButton *button : {m_toPrevPage, m_toNextPage}) {
        button->setAccessibleName(button->toolTip());
        button->setFixedSize(PageButtonSize, PageButtonSize);
        button->setEnabled(false); // until the first preview tells what there is to turn to
    }
    auto *row = new QHBoxLayout;
    row->setSpacing(Spacing);
    row->addStretch();
    for (QWidget *widget : {static_cast<QWidget *>(m_toPrevPage), static_cast<QWidget *>(m_pages),
                            static_cast<QWidget *>(m_toNextPage)})
        row->addWidget(widget);
    row->addStretch();
    column->addLayout(row);
}

void PrintPreviewDialog::addButtons(QVBoxLayout *column) {
    m_print = named(new PositiveButton(tr("Print")), "print_");
    m_cancel = named(new NegativeButton(tr("Cancel")), "cancel_");
    auto *row = new QHBoxLayout;
    row->setSpacing(Spacing);
    row->addStretch();
    row->addWidget(m_print);
    row->addWidget(m_cancel);
    row->addStretch();
    column->addLayout(row);
}

void PrintPreviewDialog::keepWheelAway() {
    auto *eater = new WheelEater(this);
    const QList<QWidget *> children = findChildren<QWidget *>();
    for (QWidget *child : children) {
        if (qobject_cast<QComboBox *>(child) || qobject_cast<QSpinBox *>(child))
            child->installEventFilter(eater);
    }
}
