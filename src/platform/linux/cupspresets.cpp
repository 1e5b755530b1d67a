#include "platform/linux/cupspresets.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cups/cups.h>
#include <cups/pwg.h>

#include <algorithm>
#include <cctype>
#include <utility>
#include <vector>

namespace {

/// In bytes. Far above any real file of presets: what is larger is not one, and would be read into memory.
constexpr qint64 LargestFile = qint64(1024) * 1024;

constexpr char Scaling[] = "print-scaling";
constexpr char MediaCollection[] = "media-col";

/// Another name of an option, of drivers or of old.
struct Synonym {
    const char *standard;
    const char *name;
};

constexpr Synonym Synonyms[] = {
    {CUPS_MEDIA, "PageSize"},
    {CUPS_MEDIA, "PageRegion"},
    {CUPS_MEDIA, MediaCollection},
    {CUPS_SIDES, "Duplex"},
    {CUPS_PRINT_COLOR_MODE, "ColorModel"},
    {CUPS_PRINT_QUALITY, "cupsPrintQuality"},
    {CUPS_ORIENTATION, "landscape"},
    {CUPS_NUMBER_UP, "number-up-layout"},
    {Scaling, "crop-to-fit"},
    {Scaling, "fill"},
    {Scaling, "fit-to-page"},
    {Scaling, "fitplot"},
    {Scaling, "natural-scaling"},
    {Scaling, "page-bottom"},
    {Scaling, "page-left"},
    {Scaling, "page-right"},
    {Scaling, "page-top"},
    {Scaling, "position"},
    {Scaling, "ppi"},
    {Scaling, "scaling"},
};

/// What a driver calls a value of an option.
struct Word {
    const char *name; ///< of the option
    const char *driver;
    const char *standard;
};

constexpr Word Words[] = {
    {"Duplex", "None", CUPS_SIDES_ONE_SIDED},
    {"Duplex", "DuplexNoTumble", CUPS_SIDES_TWO_SIDED_PORTRAIT},
    {"Duplex", "DuplexTumble", CUPS_SIDES_TWO_SIDED_LANDSCAPE},
    {"ColorModel", "Gray", CUPS_PRINT_COLOR_MODE_MONOCHROME},
    {"ColorModel", "Grayscale", CUPS_PRINT_COLOR_MODE_MONOCHROME},
    {"ColorModel", "KGray", CUPS_PRINT_COLOR_MODE_MONOCHROME},
    {"ColorModel", "Black", CUPS_PRINT_COLOR_MODE_MONOCHROME},
    {"ColorModel", "Mono", CUPS_PRINT_COLOR_MODE_MONOCHROME},
    {"cupsPrintQuality", "Draft", CUPS_PRINT_QUALITY_DRAFT},
    {"cupsPrintQuality", "Normal", CUPS_PRINT_QUALITY_NORMAL},
    {"cupsPrintQuality", "High", CUPS_PRINT_QUALITY_HIGH},
    {"landscape", "true", CUPS_ORIENTATION_LANDSCAPE},
};

/// Names of options are the same in capitals and in small letters.
bool isSame(const QByteArray &name, const char *other) {
    return name.compare(other, Qt::CaseInsensitive) == 0;
}

/// What the library notes of a queue beside its presets, and what would not let a PDF through as one.
bool isNoPreset(const QByteArray &name) {
    return (name.startsWith("printer-") && name != "printer-resolution") || name.startsWith("marker-") ||
           name == "device-uri" || name == "auth-info-required" || name == "document-format" || name == "raw";
}

QByteArray inStandardWords(const QByteArray &name, const QByteArray &value) {
    if (isSame(name, "PageSize") || isSame(name, "PageRegion")) {
        const pwg_media_t *media = pwgMediaForPPD(value.constData());
        return media ? QByteArray(media->pwg) : QByteArray();
    }
    const auto word = std::find_if(std::begin(Words), std::end(Words), [&](const Word &other) {
        return isSame(name, other.name) && isSame(value, other.driver);
    });
    if (word != std::end(Words))
        return word->standard;
    return isSame(name, "ColorModel") ? QByteArray(CUPS_PRINT_COLOR_MODE_COLOR) : QByteArray();
}

/// The library sends the standard's words for numbers as zero.
QByteArray inNumbers(const char *name, const QByteArray &value) {
    QList<QByteArray> words = value.split(',');
    for (QByteArray &word : words) {
        const bool isNumber = !word.isEmpty() && std::isdigit(static_cast<unsigned char>(word[0]));
        const int number = isNumber ? -1 : ippEnumValue(name, word.constData());
        if (number > 0)
            word = QByteArray::number(number);
    }
    return words.join(',');
}

/// Drivers have kinds of their sheets, behind a point: "A4.Fullbleed".
bool isSize(const QByteArray &word) {
    const char *name = word.constData();
    const QByteArray sheet = word.left(word.indexOf('.'));
    return isSame(sheet, "Custom") || pwgMediaForPWG(name) || pwgMediaForLegacy(name) ||
           pwgMediaForPPD(name) || pwgMediaForPPD(sheet.constData());
}

/// Options as the library reads them from a text.
class ParsedOptions {
public:
    // An option that stands for another takes it out; where that was the only one the library loses its list.
    ParsedOptions() : m_count(cupsAddOption(Keeper, "", 0, &m_list)) {}
    explicit ParsedOptions(const QByteArray &text) : ParsedOptions() { add(text.constData()); }
    ~ParsedOptions() { cupsFreeOptions(m_count, m_list); }
    ParsedOptions(const ParsedOptions &) = delete;
    ParsedOptions &operator=(const ParsedOptions &) = delete;

    void add(const char *text) { m_count = cupsParseOptions(text, m_count, &m_list); }
    /// Null when there is none of that name.
    const char *value(const char *name) const { return cupsGetOption(name, m_count, m_list); }
    std::vector<std::pair<const char *, const char *>> all() const {
        std::vector<std::pair<const char *, const char *>> options;
        for (int i = 0; i < m_count; ++i) {
            if (!isSame(m_list[i].name, Keeper))
                options.emplace_back(m_list[i].name, m_list[i].value);
        }
        return options;
    }

private:
    static constexpr char Keeper[] = "tindra-keeps-the-list";
    cups_option_t *m_list = nullptr;
    int m_count;
};

/// The tray and the kind of paper of a collection, as one of their own; empty when it names neither.
QByteArray withoutSize(const QByteArray &collection) {
    const ParsedOptions members(collection);
    QList<QByteArray> kept;
    for (const char *name : {CUPS_MEDIA_SOURCE, CUPS_MEDIA_TYPE}) {
        if (const char *value = members.value(name))
            kept.append(QByteArray(name) + '=' + value);
    }
    return kept.isEmpty() ? QByteArray() : '{' + kept.join(' ') + '}';
}

/// Opening a pipe would wait for a writer and a device may never end, while the dialog waits for this.
QByteArray contentOf(const QString &path) {
    const QFileInfo info(path);
    QFile file(path);
    if (!info.isFile() || info.size() > LargestFile || !file.open(QIODevice::ReadOnly))
        return QByteArray();
    return file.read(LargestFile) + '\n';
}

} // namespace

CupsPresets::CupsPresets(const QByteArray &text, const QByteArray &queue) {
    ParsedOptions given;
    for (const QByteArray &line : text.split('\n')) {
        // KIND QUEUE OPTION=VALUE OPTION=VALUE ...
        const QByteArray words = QByteArray(line).replace('\t', ' ').trimmed();
        const int kindEnd = words.indexOf(' ');
        const int queueEnd = words.indexOf(' ', kindEnd + 1);
        const QByteArray kind = words.left(kindEnd).toLower();
        if (queueEnd > kindEnd && (kind == "dest" || kind == "default") &&
            isSame(words.mid(kindEnd + 1, queueEnd - kindEnd - 1), queue))
            given.add(words.constData() + queueEnd + 1);
    }
    for (const auto &[name, value] : given.all()) {
        if (!isNoPreset(name))
            m_options.emplace_back(name, inNumbers(name, value));
    }
}

CupsPresets CupsPresets::read(const QString &queue) {
    return {contentOf(QStringLiteral("/etc/cups/lpoptions")) +
                contentOf(QDir::homePath() + QStringLiteral("/.cups/lpoptions")),
            queue.toUtf8()};
}

QByteArray CupsPresets::given(const char *option) const {
    const auto found = std::find_if(m_options.begin(), m_options.end(),
                                    [option](const auto &other) { return isSame(other.first, option); });
    return found == m_options.end() ? QByteArray() : found->second;
}

QByteArray CupsPresets::withTray(const QByteArray &media) const {
    QList<QByteArray> words = QList<QByteArray>{media} + given(CUPS_MEDIA).split(',');
    // The size first, where the server looks for it.
    const auto end = std::remove_if(words.begin() + 1, words.end(), isSize);
    words.erase(std::remove(words.begin(), end, QByteArray()), words.end());
    return words.join(',');
}

QByteArray CupsPresets::value(const char *option) const {
    QByteArray translated;
    for (const auto &[name, value] : m_options) {
        if (isSame(name, option))
            return value;
        for (const Synonym &synonym : Synonyms) {
            if (translated.isEmpty() && isSame(name, synonym.name) && isSame(synonym.standard, option))
                translated = inStandardWords(name, value);
        }
    }
    return translated;
}

CupsOptions CupsPresets::besides(const CupsOptions &named) const {
    const auto isNamed = [&named](const QByteArray &name) {
        return std::any_of(named.begin(), named.end(),
                           [&name](const auto &option) { return isSame(name, option.first); });
    };
    CupsOptions others;
    std::copy_if(m_options.begin(), m_options.end(), std::back_inserter(others), [&](const auto &option) {
        return !isNamed(option.first) &&
               std::none_of(std::begin(Synonyms), std::end(Synonyms), [&](const Synonym &synonym) {
                   return isSame(option.first, synonym.name) && isNamed(synonym.standard);
               });
    });
    const QByteArray tray = isNamed(CUPS_MEDIA) ? withoutSize(given(MediaCollection)) : QByteArray();
    if (!tray.isEmpty())
        others.emplace_back(MediaCollection, tray);
    return others;
}
