#pragma once

#include "platform/printer.h"

#include <QHash>
#include <QObject>
#include <QPixmap>
#include <QRectF>
#include <QSizeF>
#include <QVector>

#include <memory>
#include <optional>

/// A paper as the user chooses it.
struct PaperEntry {
    QString label; ///< name and size
    quint16 id;
};

/// One sheet to print.
struct PrintPage {
    QPixmap pixmap;
    QRectF sourceRect; ///< the part to print, in image pixels
    QRectF targetRect; ///< at 96 per inch, from the corner of the printable area
    bool drawBorder;   ///< a frame around `targetRect`
};

/// One named printer: its settings, its papers, its page, and the sending of pages.
///
/// Lengths are device-independent pixels at 96 per inch unless stated otherwise. Nothing fails loudly: a
/// printer that cannot be read answers with defaults and ignores what is set. GUI thread only.
class NativePrinter : public QObject {
    Q_OBJECT
public:
    explicit NativePrinter(const QString &name, QObject *parent = nullptr);
    ~NativePrinter() override;

    static QStringList printerNames();
    static QString defaultPrinterName();
    /// Of the list that `printerNames` did not wait for.
    static LateAnswer latePrinterNames();
    static QStringList takeLatePrinterNames();

    /// Whether the printer could be read.
    bool isRead() const { return m_devMode.has_value(); }
    /// Of the printer itself, when it could not be read in time.
    LateAnswer lateAnswer() const;
    /// Reads the printer from the answer that has arrived.
    void takeLateAnswer();
    /// Reads the printer and its settings anew.
    void reload();
    /// The papers in the printer's order. Reading them takes the present paper's members from the table,
    /// and a printer without a present paper gets A4.
    QVector<PaperEntry> paperList();

    int copies() const;
    bool isPortrait() const;
    quint16 paperId() const;
    bool isGrayscale() const;
    /// The sheet the way round in which it is read; invalid without settings.
    QSizeF paperSize() const;
    /// What the printer reaches of that sheet, from the sheet's corner; empty without settings or page.
    QRectF printableRect() const;

    void setCopies(int copies);
    void setGrayscale(bool grayscale);
    /// Any non-zero value is upright.
    void setPortrait(int portrait);
    /// An id that is not in the table is taken too: the sheet has no name and no size then.
    void setPaperId(quint16 id);

    /// Lets the user change the settings of the printer; whether he did. Without a parent nothing is shown.
    /// The page stays that of before until something is set.
    bool showProperties(QWidget *parent);
    /// Prints each page once; copies and colour are the printer's part. False when there is no job.
    bool print(const QVector<PrintPage> &pages);

private:
    struct PaperInfo {
        QString name;
        QSize size; ///< tenths of a millimetre
    };

    void read(std::unique_ptr<Printer> printer);
    void measure();
    QRectF toDevice(const QRectF &rect) const;

    // Null where the printer could not be read.
    std::optional<PrinterMode> m_devMode;
    std::optional<PrinterMetrics> m_dc; ///< the page of those settings
    QString m_printerName;
    QHash<quint16, PaperInfo> m_papers;
    std::unique_ptr<Printer> m_printer;
};
