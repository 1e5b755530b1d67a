#pragma once

#include "platform/printer.h"

#include <QDialog>

class QComboBox;
class QGridLayout;

/// The settings that one printer offers: paper, colour, both sides, quality. What it gives no choice of is
/// shown, but cannot be changed. Ends with `QDialog::Accepted` or `Rejected`.
class PrinterPropertiesDialog : public QDialog {
    Q_OBJECT
public:
    PrinterPropertiesDialog(const QString &printerName, const Printer &printer, const PrinterMode &mode,
                            QWidget *parent);

    /// The settings of before with what the user chose.
    PrinterMode mode() const;

private:
    QComboBox *addRow(const QString &label, const QString &name);
    void addButtons();
    void fillPapers();
    void fillChoices(const PrinterChoices &choices);

    PrinterMode m_mode;
    QVector<PrinterPaper> m_papers;
    QGridLayout *m_form;
    QComboBox *m_paper;
    QComboBox *m_color;
    QComboBox *m_duplex;
    QComboBox *m_quality;
};
