#include "platform/linux/cupsqueue.h"

#include "platform/linux/papertable.h"

#include <cups/cups.h>
#include <cups/pwg.h>

#include <algorithm>
#include <cstdlib>

namespace {

constexpr int ConnectLimit = 5000;   // milliseconds
constexpr double AnswerLimit = 20.0; // seconds without a byte
constexpr int DefaultResolution = 600;
constexpr int LowestResolution = 72;
// A place in the list of the driver: settings that hold one may mean another sheet after an update of it.
constexpr int FirstOwnPaper = 256;
// A driver tells sizes in points; the standard size of that name is meant when it is that near.
constexpr int SameSize = 30;     // hundredths of a millimetre
constexpr int QuarterInch = 635; // hundredths of a millimetre

/// A connection to the user's server, which gives up by itself. Null inside when nobody listens.
class Connection {
public:
    Connection()
        : m_http(httpConnect2(cupsServer(), ippPort(), nullptr, AF_UNSPEC, cupsEncryption(), 1, ConnectLimit,
                              nullptr)) {
        // Without a password: asked for one, the library would ask on the terminal.
        cupsSetPasswordCB2([](const char *, http_t *, const char *, const char *,
                              void *) -> const char * { return nullptr; },
                           nullptr);
        if (m_http)
            httpSetTimeout(
                m_http, AnswerLimit, [](http_t *, void *) { return 0; }, nullptr);
    }
    ~Connection() {
        if (m_http)
            httpClose(m_http);
    }
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    http_t *http() const { return m_http; }

private:
    http_t *m_http;
};

/// Destinations of the server, released together.
class Destinations {
public:
    explicit Destinations(http_t *http) : m_count(http ? cupsGetDests2(http, &m_list) : 0) {}
    ~Destinations() { cupsFreeDests(m_count, m_list); }
    Destinations(const Destinations &) = delete;
    Destinations &operator=(const Destinations &) = delete;

    const cups_dest_t *begin() const { return m_list; }
    const cups_dest_t *end() const { return m_list + m_count; }

private:
    cups_dest_t *m_list = nullptr;
    int m_count;
};

/// Options in the library's own form.
class NativeOptions {
public:
    ~NativeOptions() { cupsFreeOptions(m_count, m_list); }
    NativeOptions() = default;
    NativeOptions(const NativeOptions &) = delete;
    NativeOptions &operator=(const NativeOptions &) = delete;

    void add(const QByteArray &name, const QByteArray &value) {
        m_count = cupsAddOption(name.constData(), value.constData(), m_count, &m_list);
    }
    int count() const { return m_count; }
    cups_option_t *list() const { return m_list; }

private:
    cups_option_t *m_list = nullptr;
    int m_count = 0;
};

bool contains(ipp_attribute_t *attribute, const char *keyword) {
    return attribute && ippContainsString(attribute, keyword);
}

} // namespace

/// The library's view of a queue, with what reads it.
class CupsQueue::Native {
public:
    /// Takes the destination over.
    Native(http_t *http, cups_dest_t *dest, const CupsPresets &presets)
        : m_http(http), m_dest(dest), m_info(cupsCopyDestInfo(http, dest)), m_presets(presets) {}
    ~Native() {
        cupsFreeDestInfo(m_info);
        cupsFreeDests(1, m_dest);
    }
    Native(const Native &) = delete;
    Native &operator=(const Native &) = delete;

    cups_dest_t *dest() const { return m_dest; }
    cups_dinfo_t *info() const { return m_info; }

    CupsQueueDescription read() const;
    void forgetConnection() { m_http = nullptr; }

private:
    using Media = CupsQueueDescription::Media;

    ipp_attribute_t *supported(const char *option) const {
        return cupsFindDestSupported(m_http, m_dest, m_info, option);
    }
    ipp_attribute_t *preset(const char *option) const {
        return cupsFindDestDefault(m_http, m_dest, m_info, option);
    }
    QVector<Media> readMedia() const;
    Media toMedia(const cups_size_t &size, int index) const;
    PrinterChoices readChoices() const;
    QByteArray serversText(const char *option) const;
    QByteArray presetText(const char *option) const;
    QByteArray presetMedia() const;
    PrinterMode readMode(const QVector<Media> &media) const;
    int readResolution() const;

    http_t *m_http; ///< as long as the description is read
    cups_dest_t *m_dest;
    cups_dinfo_t *m_info;
    CupsPresets m_presets;
};

CupsQueueDescription CupsQueue::Native::read() const {
    CupsQueueDescription description;
    description.media = readMedia();
    description.choices = readChoices();
    description.mode = readMode(description.media);
    description.resolution = readResolution();
    description.presets = m_presets;
    return description;
}

CupsQueueDescription::Media CupsQueue::Native::toMedia(const cups_size_t &size, int index) const {
    const QString borderless = QStringLiteral("_borderless");
    QString name = QString::fromUtf8(size.media);
    const bool isBorderless = name.endsWith(borderless);
    if (isBorderless)
        name.chop(borderless.size());
    const KnownPaper known = knownPaper(name);
    const pwg_media_t *standard = pwgMediaForPWG(name.toUtf8().constData());
    int width = size.width;
    int length = size.length;
    if (standard && std::abs(width - standard->width) < SameSize &&
        std::abs(length - standard->length) < SameSize) {
        width = standard->width;
        length = standard->length;
    }
    QString label = known.name;
    if (label.isEmpty() && standard && standard->ppd)
        label = QString::fromUtf8(standard->ppd);
    const bool isNamed = !label.isEmpty();
    if (!isNamed) {
        cups_size_t local = size;
        label = QString::fromUtf8(
            cupsLocalizeDestMedia(m_http, m_dest, m_info, CUPS_MEDIA_FLAGS_DEFAULT, &local));
    }
    const bool isCommon = known.id != 0 && !isBorderless;
    const quint16 id = isCommon ? known.id : static_cast<quint16>(FirstOwnPaper + index);
    return {{id, label, QSize(qRound(width / 10.0), qRound(length / 10.0))},
            QByteArray(size.media),
            {size.left, size.top, size.right, size.bottom},
            isNamed && isBorderless};
}

QVector<CupsQueueDescription::Media> CupsQueue::Native::readMedia() const {
    QVector<Media> media;
    const int count = cupsGetDestMediaCount(m_http, m_dest, m_info, CUPS_MEDIA_FLAGS_DEFAULT);
    for (int i = 0; i < count; ++i) {
        cups_size_t size;
        if (!cupsGetDestMediaByIndex(m_http, m_dest, m_info, i, CUPS_MEDIA_FLAGS_DEFAULT, &size))
            continue;
        // The ends of a range of sizes are no sheets.
        const QByteArray name(size.media);
        if (name.startsWith("custom_min_") || name.startsWith("custom_max_"))
            continue;
        const Media read = toMedia(size, i);
        const auto same = std::find_if(media.begin(), media.end(), [&read](const Media &other) {
            return other.standardName == read.standardName;
        });
        // The name alone is what a job can ask for, and it gives the sheet with margins.
        if (same == media.end())
            media.append(read);
        else if (same->margins.left + same->margins.top < read.margins.left + read.margins.top)
            same->margins = read.margins;
    }
    // A queue without a driver tells nothing of its paper.
    if (media.isEmpty()) {
        const CupsQueueDescription::Margins margins{QuarterInch, QuarterInch, QuarterInch, QuarterInch};
        media.append(
            {{PrinterMode::A4, QStringLiteral("A4"), {2100, 2970}}, "iso_a4_210x297mm", margins, false});
        media.append({{1, QStringLiteral("Letter"), {2159, 2794}}, "na_letter_8.5x11in", margins, false});
    }
    return media;
}

PrinterChoices CupsQueue::Native::readChoices() const {
    PrinterChoices choices;
    ipp_attribute_t *colors = supported(CUPS_PRINT_COLOR_MODE);
    choices.colors.append(PrinterMode::Monochrome);
    if (!colors || contains(colors, CUPS_PRINT_COLOR_MODE_COLOR) ||
        contains(colors, CUPS_PRINT_COLOR_MODE_AUTO))
        choices.colors.append(PrinterMode::FullColor);
    ipp_attribute_t *sides = supported(CUPS_SIDES);
    choices.duplexes.append(PrinterMode::OneSided);
    if (contains(sides, CUPS_SIDES_TWO_SIDED_PORTRAIT))
        choices.duplexes.append(PrinterMode::LongEdge);
    if (contains(sides, CUPS_SIDES_TWO_SIDED_LANDSCAPE))
        choices.duplexes.append(PrinterMode::ShortEdge);
    ipp_attribute_t *qualities = supported(CUPS_PRINT_QUALITY);
    for (const auto quality :
         {PrinterMode::DraftQuality, PrinterMode::NormalQuality, PrinterMode::HighQuality}) {
        if (qualities ? ippContainsInteger(qualities, quality) : quality == PrinterMode::NormalQuality)
            choices.qualities.append(quality);
    }
    return choices;
}

QByteArray CupsQueue::Native::serversText(const char *option) const {
    ipp_attribute_t *attribute = preset(option);
    if (!attribute)
        return {};
    const ipp_tag_t tag = ippGetValueTag(attribute);
    if (tag == IPP_TAG_INTEGER || tag == IPP_TAG_ENUM)
        return QByteArray::number(ippGetInteger(attribute, 0));
    return ippGetString(attribute, 0, nullptr);
}

QByteArray CupsQueue::Native::presetText(const char *option) const {
    const QByteArray own = m_presets.value(option);
    return own.isEmpty() ? serversText(option) : own;
}

// The library's own answer is Letter for a queue whose default paper is told by its server only.
QByteArray CupsQueue::Native::presetMedia() const {
    cups_size_t size;
    // A user may have named the paper as drivers do, and a tray and a kind of paper with it.
    const QList<QByteArray> words =
        m_presets.value(CUPS_MEDIA).split(',') + QList<QByteArray>{serversText(CUPS_MEDIA)};
    for (const QByteArray &word : words) {
        const pwg_media_t *known = pwgMediaForPPD(word.constData());
        const char *name = known ? known->pwg : word.constData();
        if (!word.isEmpty() &&
            cupsGetDestMediaByName(m_http, m_dest, m_info, name, CUPS_MEDIA_FLAGS_DEFAULT, &size))
            return size.media;
    }
    if (cupsGetDestMediaDefault(m_http, m_dest, m_info, CUPS_MEDIA_FLAGS_DEFAULT, &size))
        return size.media;
    return {};
}

PrinterMode CupsQueue::Native::readMode(const QVector<Media> &media) const {
    PrinterMode mode;
    const Media *paper = &media.first();
    const QByteArray name = presetMedia();
    const auto found = std::find_if(media.begin(), media.end(),
                                    [&name](const Media &other) { return other.standardName == name; });
    if (found != media.end())
        paper = &*found;
    mode.paperSize = paper->paper.id;
    mode.paperWidth = paper->paper.size.width();
    mode.paperLength = paper->paper.size.height();
    mode.copies = std::max(presetText(CUPS_COPIES).toInt(), 1);
    if (presetText(CUPS_PRINT_COLOR_MODE) == CUPS_PRINT_COLOR_MODE_MONOCHROME)
        mode.color = PrinterMode::Monochrome;
    const QByteArray sides = presetText(CUPS_SIDES);
    if (sides == CUPS_SIDES_TWO_SIDED_PORTRAIT)
        mode.duplex = PrinterMode::LongEdge;
    else if (sides == CUPS_SIDES_TWO_SIDED_LANDSCAPE)
        mode.duplex = PrinterMode::ShortEdge;
    const int quality = presetText(CUPS_PRINT_QUALITY).toInt();
    if (quality >= PrinterMode::DraftQuality && quality <= PrinterMode::HighQuality)
        mode.quality = quality;
    const int orientation = presetText(CUPS_ORIENTATION).toInt();
    if (orientation == IPP_ORIENT_LANDSCAPE || orientation == IPP_ORIENT_REVERSE_LANDSCAPE)
        mode.orientation = PrinterMode::Landscape;
    return mode;
}

// One for both directions: what is sent has no pixels, and the printer makes its own of it.
int CupsQueue::Native::readResolution() const {
    ipp_attribute_t *attribute = preset("printer-resolution");
    if (!attribute || ippGetValueTag(attribute) != IPP_TAG_RESOLUTION)
        return DefaultResolution;
    int down = 0;
    ipp_res_t unit = IPP_RES_PER_INCH;
    const int across = ippGetResolution(attribute, 0, &down, &unit);
    const int perInch = unit == IPP_RES_PER_CM ? qRound(across * 2.54) : across;
    return std::max(perInch, LowestResolution);
}

const CupsQueueDescription::Media *CupsQueueDescription::mediaOf(quint16 paperId) const {
    const auto found = std::find_if(media.begin(), media.end(),
                                    [paperId](const Media &other) { return other.paper.id == paperId; });
    return found == media.end() ? nullptr : &*found;
}

std::vector<CupsQueue::Entry> CupsQueue::list() {
    const Connection connection;
    const Destinations destinations(connection.http());
    std::vector<Entry> entries;
    QString defaultName;
    for (const cups_dest_t &dest : destinations) {
        const QString name = QString::fromUtf8(dest.name);
        // An instance is a set of presets for a queue that stands in the list by itself. A user's default may
        // be one, and then its queue is meant.
        if (!dest.instance)
            entries.push_back({name, false});
        if (dest.is_default)
            defaultName = name;
    }
    for (Entry &entry : entries)
        entry.isDefault = entry.name == defaultName;
    return entries;
}

std::shared_ptr<CupsQueue> CupsQueue::open(const QString &name, const CupsPresets &presets) {
    const Connection connection;
    cups_dest_t *found =
        connection.http() ? cupsGetNamedDest(connection.http(), name.toUtf8().constData(), nullptr) : nullptr;
    if (!found)
        return nullptr;
    auto native = std::make_unique<Native>(connection.http(), found, presets);
    if (!native->info())
        return nullptr;
    return std::shared_ptr<CupsQueue>(new CupsQueue(std::move(native)));
}

CupsQueue::CupsQueue(std::unique_ptr<Native> native)
    : m_native(std::move(native)), m_description(m_native->read()) {
    m_native->forgetConnection();
}

CupsQueue::~CupsQueue() = default;

int CupsQueue::createJob(const QByteArray &title, const CupsOptions &options) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Connection connection;
    if (!connection.http())
        return 0;
    NativeOptions native;
    for (const auto &[name, value] : m_description.presets.besides(options))
        native.add(name, value);
    for (const auto &[name, value] : options) {
        // More copies than the queue tells of are the queue's to cut.
        const bool isSupported = name == CUPS_COPIES ||
                                 cupsCheckDestSupported(connection.http(), m_native->dest(), m_native->info(),
                                                        name.constData(), value.constData());
        const QByteArray supported = isSupported ? value : QByteArray();
        const QByteArray sent = name == CUPS_MEDIA ? m_description.presets.withTray(supported) : supported;
        if (!sent.isEmpty())
            native.add(name, sent);
    }
    int job = 0;
    const ipp_status_t status = cupsCreateDestJob(connection.http(), m_native->dest(), m_native->info(), &job,
                                                  title.constData(), native.count(), native.list());
    return status <= IPP_STATUS_OK_EVENTS_COMPLETE ? job : 0;
}

bool CupsQueue::sendDocument(int job, const QByteArray &title, const QByteArray &pdf) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Connection connection;
    http_t *http = connection.http();
    cups_dest_t *dest = m_native->dest();
    cups_dinfo_t *info = m_native->info();
    if (!http || cupsStartDestDocument(http, dest, info, job, title.constData(), CUPS_FORMAT_PDF, 0, nullptr,
                                       1) != HTTP_STATUS_CONTINUE)
        return false;
    const http_status_t written =
        cupsWriteRequestData(http, pdf.constData(), static_cast<size_t>(pdf.size()));
    const ipp_status_t status = cupsFinishDestDocument(http, dest, info);
    return written == HTTP_STATUS_CONTINUE && status <= IPP_STATUS_OK_EVENTS_COMPLETE;
}

void CupsQueue::cancelJob(int job) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Connection connection;
    if (connection.http())
        cupsCancelDestJob(connection.http(), m_native->dest(), job);
}
