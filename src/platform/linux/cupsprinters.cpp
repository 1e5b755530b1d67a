#include "platform/linux/background.h"
#include "platform/linux/cupsqueue.h"
#include "platform/linux/linuxservices.h"
#include "platform/linux/pdfpages.h"
#include "platform/printer.h"

#include <QCoreApplication>
#include <QImage>

#include <algorithm>
#include <chrono>
#include <map>
#include <utility>

namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;

// The window stands still meanwhile: a dialog lists and opens, and a click starts a job, draws and sends.
// Neither may take two seconds, of which the form and the drawing need their share.
constexpr milliseconds Frozen = 2s;
constexpr milliseconds Patience = 1400ms;
static_assert(Patience < Frozen);
constexpr milliseconds ListLimit = 600ms;
constexpr milliseconds OpenLimit = 800ms;
static_assert(ListLimit + OpenLimit <= Patience);
constexpr milliseconds StartLimit = 900ms;
constexpr milliseconds ClickLimit = Patience; // from the start of a job, with its pages being drawn
static_assert(StartLimit < ClickLimit);
// A job that is still on its way when the program ends gets that long.
constexpr std::chrono::seconds ExitLimit = 5s;

constexpr double HundredthsPerInch = 2540.0;
constexpr int UprightSheet = 3; // the standard's number

/// A question to the server, whose answer may come after nobody waits for it any longer.
template <typename Result> class Question {
public:
    /// Asks anew, unless an answer is still awaited: each question costs a thread as long as it is open.
    /// Returns an empty result when there is no answer within the limit.
    template <typename Call> Result ask(milliseconds limit, Call call) {
        if (late() != LateAnswer::Awaited)
            m_answer = inBackground<Result>(std::move(call));
        return m_answer.wait_for(limit) == std::future_status::ready ? take() : Result();
    }
    LateAnswer late() const {
        if (!m_answer.valid())
            return LateAnswer::None;
        return m_answer.wait_for(0s) == std::future_status::ready ? LateAnswer::Arrived : LateAnswer::Awaited;
    }
    Result take() { return late() == LateAnswer::Arrived ? m_answer.get() : Result(); }

private:
    std::future<Result> m_answer; ///< valid until it is taken
};

/// What is still being sent.
class Deliveries {
public:
    ~Deliveries() {
        const auto deadline = std::chrono::steady_clock::now() + ExitLimit;
        for (const auto &delivery : m_running)
            delivery.wait_until(deadline);
    }

    void add(const std::shared_future<bool> &delivery) {
        const auto isDone = [](const std::shared_future<bool> &other) {
            return other.wait_for(0s) == std::future_status::ready;
        };
        m_running.erase(std::remove_if(m_running.begin(), m_running.end(), isDone), m_running.end());
        m_running.push_back(delivery);
    }

private:
    std::vector<std::shared_future<bool>> m_running;
};

class CupsJob : public PrintJob {
public:
    struct Target {
        std::shared_ptr<CupsQueue> queue;
        std::shared_future<int> job;
        std::shared_ptr<Deliveries> deliveries;
        std::chrono::steady_clock::time_point deadline; ///< of waiting for the delivery
    };

    CupsJob(Target target, const PdfPages::Sheet &sheet, const QString &title)
        : m_target(std::move(target)), m_title(title.toUtf8()), m_pages(sheet, title) {}
    ~CupsJob() override { send({}); }
    CupsJob(const CupsJob &) = delete;
    CupsJob &operator=(const CupsJob &) = delete;

    void startPage() override { m_pages.startPage(); }
    void drawImage(const QImage &image, const QRectF &target, const QRectF &source) override {
        m_pages.drawImage(image, target, source);
    }
    void drawFrame(const QRectF &rect) override { m_pages.drawFrame(rect); }
    void endPage() override {}
    void end() override { send(m_pages.finish()); }

private:
    void send(const QByteArray &pdf) {
        if (m_isSent)
            return;
        m_isSent = true;
        const std::shared_future<bool> delivery =
            inBackground<bool>([queue = m_target.queue, created = m_target.job, title = m_title, pdf] {
                const int job = created.get();
                if (job == 0)
                    return false;
                if (!pdf.isEmpty() && queue->sendDocument(job, title, pdf))
                    return true;
                queue->cancelJob(job);
                return false;
            });
        m_target.deliveries->add(delivery);
        delivery.wait_until(m_target.deadline);
    }

    Target m_target;
    QByteArray m_title;
    PdfPages m_pages;
    bool m_isSent = false;
};

class CupsPrinter : public Printer {
public:
    CupsPrinter(std::shared_ptr<CupsQueue> queue, std::shared_ptr<Deliveries> deliveries)
        : m_queue(std::move(queue)), m_deliveries(std::move(deliveries)) {}

    PrinterMode defaultMode() const override {
        PrinterMode mode = m_queue->description().mode;
        mode.formName = nameOf(mediaOf(mode)).left(PrinterMode::FormNameLimit);
        return mode;
    }
    QVector<PrinterPaper> papers() const override {
        QVector<PrinterPaper> papers;
        for (const auto &media : m_queue->description().media)
            papers.append({media.paper.id, nameOf(media), media.paper.size});
        return papers;
    }
    PrinterChoices choices() const override { return m_queue->description().choices; }
    std::optional<PrinterMetrics> metrics(const PrinterMode &mode) const override;
    std::unique_ptr<PrintJob> startJob(const PrinterMode &mode, const QString &title) override;

private:
    /// A paper that the queue has not got is taken for the queue's own.
    const CupsQueueDescription::Media &mediaOf(const PrinterMode &mode) const {
        const CupsQueueDescription &description = m_queue->description();
        const CupsQueueDescription::Media *media = description.mediaOf(mode.paperSize);
        return media ? *media : *description.mediaOf(description.mode.paperSize);
    }
    static QString nameOf(const CupsQueueDescription::Media &media) {
        return media.needsBorderless
                   ? QCoreApplication::translate("PrinterPaper", "%0 (Borderless)").arg(media.paper.name)
                   : media.paper.name;
    }
    CupsOptions options(const PrinterMode &mode) const;

    std::shared_ptr<CupsQueue> m_queue;
    std::shared_ptr<Deliveries> m_deliveries;
};

std::optional<PrinterMetrics> CupsPrinter::metrics(const PrinterMode &mode) const {
    const CupsQueueDescription::Media &media = mediaOf(mode);
    CupsQueueDescription::Margins margins = media.margins;
    QSize size = media.paper.size * 10;
    if (mode.orientation == PrinterMode::Landscape) {
        // As the pages are turned: the sheet's lower end is read at the left.
        size.transpose();
        margins = {margins.bottom, margins.left, margins.top, margins.right};
    }
    const int resolution = m_queue->description().resolution;
    const auto pixels = [resolution](int hundredths) {
        return qRound(hundredths / HundredthsPerInch * resolution);
    };
    return PrinterMetrics{pixels(size.width() - margins.left - margins.right),
                          pixels(size.height() - margins.top - margins.bottom),
                          resolution,
                          resolution,
                          pixels(margins.left),
                          pixels(margins.top)};
}

CupsOptions CupsPrinter::options(const PrinterMode &mode) const {
    CupsOptions options;
    options.emplace_back("media", mediaOf(mode).standardName);
    // Every page has the paper's size and its places are exact. What is not named here the server takes from
    // the queue's defaults, and a page that is turned already must not be turned by them once more.
    options.emplace_back("print-scaling", "none");
    options.emplace_back("orientation-requested", QByteArray::number(UprightSheet));
    options.emplace_back("number-up", "1");
    if (mode.fields & PrinterMode::CopiesField)
        options.emplace_back("copies", QByteArray::number(std::max(mode.copies, 1)));
    if (mode.fields & PrinterMode::ColorField)
        options.emplace_back("print-color-mode",
                             mode.color == PrinterMode::Monochrome ? "monochrome" : "color");
    if (mode.fields & PrinterMode::DuplexField)
        options.emplace_back("sides", mode.duplex == PrinterMode::LongEdge    ? "two-sided-long-edge"
                                      : mode.duplex == PrinterMode::ShortEdge ? "two-sided-short-edge"
                                                                              : "one-sided");
    if (mode.fields & PrinterMode::QualityField)
        options.emplace_back("print-quality", QByteArray::number(mode.quality));
    return options;
}

std::unique_ptr<PrintJob> CupsPrinter::startJob(const PrinterMode &mode, const QString &title) {
    const auto deadline = std::chrono::steady_clock::now() + ClickLimit;
    const std::shared_future<int> job =
        inBackground<int>([queue = m_queue, name = title.toUtf8(), options = options(mode)] {
            return queue->createJob(name, options);
        });
    if (job.wait_for(StartLimit) == std::future_status::ready && job.get() == 0)
        return nullptr;
    const PdfPages::Sheet sheet{mediaOf(mode).paper.size, mode.orientation == PrinterMode::Landscape,
                                mode.color == PrinterMode::Monochrome, *metrics(mode)};
    return std::make_unique<CupsJob>(CupsJob::Target{m_queue, job, m_deliveries, deadline}, sheet, title);
}

class CupsPrinters : public Printers {
public:
    QStringList names() override { return listed(m_list.ask(ListLimit, &CupsQueue::list)); }
    LateAnswer lateNames() const override { return m_list.late(); }
    QStringList takeLateNames() override {
        return lateNames() == LateAnswer::Arrived ? listed(m_list.take()) : QStringList();
    }

    QString defaultName() override {
        // Of the list that was asked for last: asking the server once more could take as long again.
        if (!m_hasListed)
            names();
        if (m_listed.empty())
            return {};
        const auto found = std::find_if(m_listed.begin(), m_listed.end(),
                                        [](const Entry &entry) { return entry.isDefault; });
        return found == m_listed.end() ? m_listed.front().name : found->name;
    }

    std::unique_ptr<Printer> open(const QString &name) override {
        return printer(m_queues[name].ask(
            OpenLimit, [name, presets = CupsPresets::read(name)] { return CupsQueue::open(name, presets); }));
    }
    LateAnswer latePrinter(const QString &name) const override {
        const auto asked = m_queues.find(name);
        return asked == m_queues.end() ? LateAnswer::None : asked->second.late();
    }
    std::unique_ptr<Printer> takeLatePrinter(const QString &name) override {
        return printer(m_queues[name].take());
    }

private:
    using Entry = CupsQueue::Entry;

    QStringList listed(std::vector<Entry> entries) {
        m_listed = std::move(entries);
        m_hasListed = true;
        QStringList names;
        for (const Entry &entry : m_listed)
            names.append(entry.name);
        return names;
    }
    std::unique_ptr<Printer> printer(const std::shared_ptr<CupsQueue> &queue) const {
        return queue ? std::make_unique<CupsPrinter>(queue, m_deliveries) : nullptr;
    }

    Question<std::vector<Entry>> m_list;
    std::vector<Entry> m_listed;
    bool m_hasListed = false;
    std::map<QString, Question<std::shared_ptr<CupsQueue>>> m_queues; ///< by name
    std::shared_ptr<Deliveries> m_deliveries = std::make_shared<Deliveries>();
};

} // namespace

std::unique_ptr<Printers> makePrinters() {
    return std::make_unique<CupsPrinters>();
}
