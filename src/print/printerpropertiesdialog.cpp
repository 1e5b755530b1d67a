#include "print/printerpropertiesdialog.h"

#include "ui/fieldlabel.h"
#include "ui/negativebutton.h"
#include "ui/positivebutton.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>

namespace {

// Designed sizes, at 96 DPI.
constexpr int Margin = 16;
constexpr int Spacing = 8;

void select(QComboBox *box, int value) {
    box->setCurrentIndex(box->findData(value));
    box->setEnabled(box->count() > 1);
}

/// What is chosen; without a choice the value stays.
void read(const QComboBox *box, PrinterMode::Field field, int &value, quint32 &fields) {
    if (box->currentIndex() < 0 || box->currentData().toInt() == value)
        return;
    value = box->currentData().toInt();
    fields |= field;
}

} // namespace

PrinterPropertiesDialog::PrinterPropertiesDialog(const QString &printerName, const Printer &printer,
                                                 const PrinterMode &mode, QWidget *parent)
    : QDialog(parent), m_mode(mode), m_papers(printer.papers()), m_form(new QGridLayout(this)) {
    setAttribute(Qt::WA_StyledBackground);
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    setWindowTitle(tr("Printer settings"));
    m_form->setContentsMargins(Margin, Margin, Margin, Margin);
    m_form->setSpacing(Spacing);
    m_form->setColumnStretch(1, 1);
    auto *name = new QLabel(printerName, this);
    name->setObjectName(QStringLiteral("printerName_"));
    name->setTextFormat(Qt::PlainText);
    m_form->addWidget(name, 0, 0, 1, 2);
    m_paper = addRow(tr("Page Size"), QStringLiteral("paper_"));
    m_color = addRow(tr("Color"), QStringLiteral("color_"));
    m_duplex = addRow(tr("Two-sided printing"), QStringLiteral("duplex_"));
    m_quality = addRow(tr("Print quality"), QStringLiteral("quality_"));
    fillPapers();
    fillChoices(printer.choices());
    addButtons();
}

QComboBox *PrinterPropertiesDialog::addRow(const QString &label, const QString &name) {
    auto *box = new QComboBox(this);
    box->setObjectName(name);
    auto *buddy = new FieldLabel(label, box, this);
    buddy->setBuddy(box);
    const int row = m_form->rowCount();
    m_form->addWidget(buddy, row, 0);
    m_form->addWidget(box, row, 1);
    return box;
}

void PrinterPropertiesDialog::fillPapers() {
    for (const PrinterPaper &paper : qAsConst(m_papers))
        m_paper->addItem(paper.name, int(paper.id));
    select(m_paper, m_mode.paperSize);
}

void PrinterPropertiesDialog::fillChoices(const PrinterChoices &choices) {
    for (const PrinterMode::Color color : choices.colors)
        m_color->addItem(color == PrinterMode::Monochrome ? tr("Black and white") : tr("Color"), color);
    select(m_color, m_mode.color);
    for (const PrinterMode::Duplex duplex : choices.duplexes) {
        m_duplex->addItem(duplex == PrinterMode::LongEdge    ? tr("Flip on long edge")
                          : duplex == PrinterMode::ShortEdge ? tr("Flip on short edge")
                                                             : tr("Off"),
                          duplex);
    }
    select(m_duplex, m_mode.duplex);
    for (const PrinterMode::Quality quality : choices.qualities) {
        m_quality->addItem(quality == PrinterMode::DraftQuality  ? tr("Draft")
                           : quality == PrinterMode::HighQuality ? tr("High")
                                                                 : tr("Normal"),
                           quality);
    }
    select(m_quality, m_mode.quality);
}

void PrinterPropertiesDialog::addButtons() {
    auto *ok = new PositiveButton(tr("Ok"), this);
    ok->setObjectName(QStringLiteral("ok_"));
    ok->setDefault(true);
    auto *cancel = new NegativeButton(tr("Cancel"), this);
    cancel->setObjectName(QStringLiteral("cancel_"));
    cancel->setAutoDefault(false);
    for (QPushButton *button : {static_cast<QPushButton *>(ok), static_cast<QPushButton *>(cancel)})
        button->setCursor(Qt::PointingHandCursor);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    auto *buttons = new QHBoxLayout;
    buttons->setContentsMargins(0, Spacing, 0, 0);
    buttons->setSpacing(Spacing);
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    m_form->addLayout(buttons, m_form->rowCount(), 0, 1, 2);
}

PrinterMode PrinterPropertiesDialog::mode() const {
    PrinterMode mode = m_mode;
    read(m_color, PrinterMode::ColorField, mode.color, mode.fields);
    read(m_duplex, PrinterMode::DuplexField, mode.duplex, mode.fields);
    read(m_quality, PrinterMode::QualityField, mode.quality, mode.fields);
    const int row = m_paper->currentIndex();
    if (row < 0 || m_papers[row].id == mode.paperSize)
        return mode;
    const PrinterPaper &paper = m_papers[row];
    mode.paperSize = paper.id;
    mode.paperWidth = paper.size.width();
    mode.paperLength = paper.size.height();
    mode.formName = paper.name.left(PrinterMode::FormNameLimit);
    mode.fields |= PrinterMode::PaperSizeField | PrinterMode::PaperLengthField |
                   PrinterMode::PaperWidthField | PrinterMode::FormNameField;
    return mode;
}
