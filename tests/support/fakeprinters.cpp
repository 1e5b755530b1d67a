#include "support/fakeprinters.h"

namespace {

using Jobs = QVector<std::shared_ptr<FakePrinters::Job>>;

class RecordingJob : public PrintJob {
public:
    explicit RecordingJob(std::shared_ptr<FakePrinters::Job> job) : m_job(std::move(job)) {}

    void startPage() override { m_job->pages.append(FakePrinters::Page()); }
    void drawImage(const QImage &image, const QRectF &target, const QRectF &source) override {
        m_job->pages.last().drawings.append({image, target, source});
    }
    void drawFrame(const QRectF &rect) override { m_job->pages.last().frames.append(rect); }
    void endPage() override { m_job->pages.last().isEnded = true; }
    void end() override { m_job->isEnded = true; }

private:
    std::shared_ptr<FakePrinters::Job> m_job;
};

class OpenedPrinter : public Printer {
public:
    OpenedPrinter(QString name, std::shared_ptr<FakePrinter> printer, FakePrinters *printers)
        : m_name(std::move(name)), m_printer(std::move(printer)), m_printers(printers) {}

    PrinterMode defaultMode() const override { return m_printer->mode; }
    QVector<PrinterPaper> papers() const override { return m_printer->papers; }
    PrinterChoices choices() const override { return m_printer->choices; }
    std::optional<PrinterMetrics> metrics(const PrinterMode &mode) const override;
    std::unique_ptr<PrintJob> startJob(const PrinterMode &mode, const QString &title) override;

private:
    QString m_name;
    std::shared_ptr<FakePrinter> m_printer;
    FakePrinters *m_printers;
};

std::optional<PrinterMetrics> OpenedPrinter::metrics(const PrinterMode &mode) const {
    m_printers->measured.append(mode);
    if (!m_printer->hasMetrics)
        return {};
    FakePrinter::Margins margins = m_printer->margins;
    QSize size(mode.paperWidth, mode.paperLength);
    if (mode.orientation == PrinterMode::Landscape) {
        size.transpose();
        margins = {margins.bottom, margins.left, margins.top, margins.right};
    }
    const auto across = [this](int tenths) { return qRound(tenths / 254.0 * m_printer->resolutionX); };
    const auto down = [this](int tenths) { return qRound(tenths / 254.0 * m_printer->resolutionY); };
    return PrinterMetrics{across(size.width() - margins.left - margins.right),
                          down(size.height() - margins.top - margins.bottom),
                          m_printer->resolutionX,
                          m_printer->resolutionY,
                          across(margins.left),
                          down(margins.top)};
}

std::unique_ptr<PrintJob> OpenedPrinter::startJob(const PrinterMode &mode, const QString &title) {
    if (!m_printer->takesJobs)
        return nullptr;
    auto job = std::make_shared<FakePrinters::Job>(FakePrinters::Job{m_name, title, mode, {}, false});
    m_printers->jobs.append(job);
    return std::make_unique<RecordingJob>(job);
}

} // namespace

FakePrinter FakePrinter::office() {
    FakePrinter printer;
    printer.papers = {{9, QStringLiteral("A4"), {2100, 2970}},
                      {1, QStringLiteral("Letter"), {2159, 2794}},
                      {11, QStringLiteral("A5"), {1480, 2100}}};
    printer.mode.formName = QStringLiteral("A4");
    printer.mode.paperWidth = 2100;
    printer.mode.paperLength = 2970;
    printer.choices = {{PrinterMode::Monochrome, PrinterMode::FullColor},
                       {PrinterMode::OneSided, PrinterMode::LongEdge, PrinterMode::ShortEdge},
                       {PrinterMode::DraftQuality, PrinterMode::NormalQuality, PrinterMode::HighQuality}};
    return printer;
}

void FakePrinters::add(const QString &name, const FakePrinter &printer) {
    order.append(name);
    if (chosen.isEmpty())
        chosen = name;
    m_printers.insert(name, std::make_shared<FakePrinter>(printer));
}

QStringList FakePrinters::takeLateNames() {
    if (lateList != LateAnswer::Arrived)
        return {};
    lateList = LateAnswer::None;
    return order;
}

std::unique_ptr<Printer> FakePrinters::open(const QString &name) {
    opened.append(name);
    return latePrinter(name) == LateAnswer::None ? find(name) : nullptr;
}

std::unique_ptr<Printer> FakePrinters::takeLatePrinter(const QString &name) {
    if (latePrinter(name) != LateAnswer::Arrived)
        return nullptr;
    latePrinters.remove(name);
    return find(name);
}

std::unique_ptr<Printer> FakePrinters::find(const QString &name) {
    const std::shared_ptr<FakePrinter> printer = m_printers.value(name);
    if (!printer || !printer->isThere)
        return nullptr;
    return std::make_unique<OpenedPrinter>(name, printer, this);
}
