#pragma once

#include <QRectF>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QVector>

#include <memory>
#include <optional>

class QImage;

/// A size of paper that a printer takes.
struct PrinterPaper {
    quint16 id;   ///< below 256 the same for all printers, such as 9 for A4; above, the printer's own
    QString name; ///< as its driver tells it
    QSize size;   ///< upright, in tenths of a millimetre
};

/// The settings of one printer. The numbers are stored by the program's settings.
struct PrinterMode {
    /// Bits of `fields`: what was set rather than read from the printer.
    enum Field : quint32 {
        OrientationField = 0x1,
        PaperSizeField = 0x2,
        PaperLengthField = 0x4,
        PaperWidthField = 0x8,
        CopiesField = 0x100,
        QualityField = 0x400,
        ColorField = 0x800,
        DuplexField = 0x1000,
        FormNameField = 0x10000
    };
    enum Orientation { Portrait = 1, Landscape = 2 };
    enum Color { Monochrome = 1, FullColor = 2 };
    enum Duplex { OneSided = 1, LongEdge = 2, ShortEdge = 3 };
    enum Quality { DraftQuality = 3, NormalQuality = 4, HighQuality = 5 };
    static constexpr quint16 A4 = 9;
    static constexpr int FormNameLimit = 32; ///< characters; a longer name of a paper is cut

    quint32 fields = 0;
    int orientation = Portrait;
    quint16 paperSize = A4;
    int paperLength = 0; ///< upright, tenths of a millimetre
    int paperWidth = 0;
    QString formName; ///< of the paper
    int copies = 1;
    int color = FullColor;
    int duplex = OneSided;
    int quality = NormalQuality;
};

/// What a printer lets one choose, each in the order in which it is shown.
struct PrinterChoices {
    QVector<PrinterMode::Color> colors;
    QVector<PrinterMode::Duplex> duplexes;
    QVector<PrinterMode::Quality> qualities;
};

/// The page of a printer in a given mode, the way round in which it is read. Device pixels.
struct PrinterMetrics {
    int horzRes;         ///< width of the printable area
    int vertRes;         ///< its height
    int logPixelsX;      ///< device pixels per inch across
    int logPixelsY;      ///< and down
    int physicalOffsetX; ///< from the paper's corner to that of the printable area
    int physicalOffsetY;
};

/// A document on its way to the printer. Places are device pixels from the corner of the printable area.
///
/// What goes wrong with a page is not told. A job that goes without `end` prints nothing.
class PrintJob {
public:
    virtual ~PrintJob() = default;

    virtual void startPage() = 0;
    /// Draws that part (image pixels) of the opaque image. The printer repeats and desaturates by the mode.
    virtual void drawImage(const QImage &image, const QRectF &target, const QRectF &source) = 0;
    /// A black line, one device pixel wide, along the edges.
    virtual void drawFrame(const QRectF &rect) = 0;
    virtual void endPage() = 0;
    /// Hands the document over. One without a page prints nothing.
    virtual void end() = 0;
};

/// One printer that was found under its name. GUI thread only.
class Printer {
public:
    virtual ~Printer() = default;

    /// The settings that the printer has by itself.
    virtual PrinterMode defaultMode() const = 0;
    virtual QVector<PrinterPaper> papers() const = 0;
    virtual PrinterChoices choices() const = 0;
    /// Nothing when the printer has no page for that mode.
    virtual std::optional<PrinterMetrics> metrics(const PrinterMode &mode) const = 0;
    /// Null when the printer takes no job. One that does not answer may still take it later.
    virtual std::unique_ptr<PrintJob> startJob(const PrinterMode &mode, const QString &title) = 0;
};

/// An answer for which a call did not wait any longer.
enum class LateAnswer {
    None, ///< there is no such answer: it came in time, or it was taken since
    Awaited,
    Arrived ///< it may be taken; whoever asks anew instead gets a fresh one
};

/// The printers of the system. GUI thread only; no call, of a printer or a job neither, takes two seconds
/// even where nobody answers.
class Printers {
public:
    virtual ~Printers() = default;

    /// Of local and connected printers; empty on failure, and when the list does not come in time.
    virtual QStringList names() = 0;
    virtual LateAnswer lateNames() const = 0;
    /// The list that has arrived since; empty when there is none.
    virtual QStringList takeLateNames() = 0;
    /// Of the printers that were listed last, the one to take when nothing else is said; empty without any.
    virtual QString defaultName() = 0;
    /// Null for a name that is unknown and for a printer that does not answer in time.
    virtual std::unique_ptr<Printer> open(const QString &name) = 0;
    virtual LateAnswer latePrinter(const QString &name) const = 0;
    /// The printer whose answer has arrived since. Null when there is none, and for a failure that was late.
    virtual std::unique_ptr<Printer> takeLatePrinter(const QString &name) = 0;
};
