#include "output/filenameutil.h"

#include "output/pictureformats.h"
#include "output/reservedpaths.h"
#include "preferences/tindrapreferences.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStandardPaths>
#include <QThread>

#include <random>

namespace {

constexpr int SerialDigits = 4;
constexpr int MaxUniqueNumber = 5000;
constexpr int ShuffleSides = 24;
constexpr int ShuffleMiddle = 12;
constexpr unsigned long BatchPollMilliseconds = 2;
/// In bytes of UTF-8: a file system takes 255, less a number (" (5000)" behind "_9999") and an ending.
constexpr int LongestText = 230;

/// One bird stands in the list twice, so its chance is double; the settings dialog promises fifty names.
const char *const BirdKeys[] = {
    QT_TRANSLATE_NOOP("FileNameUtil", "name0"),  QT_TRANSLATE_NOOP("FileNameUtil", "name1"),
    QT_TRANSLATE_NOOP("FileNameUtil", "name2"),  QT_TRANSLATE_NOOP("FileNameUtil", "name3"),
    QT_TRANSLATE_NOOP("FileNameUtil", "name4"),  QT_TRANSLATE_NOOP("FileNameUtil", "name5"),
    QT_TRANSLATE_NOOP("FileNameUtil", "name6"),  QT_TRANSLATE_NOOP("FileNameUtil", "name7"),
    QT_TRANSLATE_NOOP("FileNameUtil", "name8"),  QT_TRANSLATE_NOOP("FileNameUtil", "name9"),
    QT_TRANSLATE_NOOP("FileNameUtil", "name10"), QT_TRANSLATE_NOOP("FileNameUtil", "name11"),
    QT_TRANSLATE_NOOP("FileNameUtil", "name12"), QT_TRANSLATE_NOOP("FileNameUtil", "name13"),
    QT_TRANSLATE_NOOP("FileNameUtil", "name14"), QT_TRANSLATE_NOOP("FileNameUtil", "name15"),
    QT_TRANSLATE_NOOP("FileNameUtil", "name16"), QT_TRANSLATE_NOOP("FileNameUtil", "name17"),
    QT_TRANSLATE_NOOP("FileNameUtil", "name18"), QT_TRANSLATE_NOOP("FileNameUtil", "name19"),
    QT_TRANSLATE_NOOP("FileNameUtil", "name20"), QT_TRANSLATE_NOOP("FileNameUtil", "name21"),
    QT_TRANSLATE_NOOP("FileNameUtil", "name22"), QT_TRANSLATE_NOOP("FileNameUtil", "name23"),
    QT_TRANSLATE_NOOP("FileNameUtil", "name24"), QT_TRANSLATE_NOOP("FileNameUtil", "name25"),
    QT_TRANSLATE_NOOP("FileNameUtil", "name26"), QT_TRANSLATE_NOOP("FileNameUtil", "name27"),
    QT_TRANSLATE_NOOP("FileNameUtil", "name28"), QT_TRANSLATE_NOOP("FileNameUtil", "name29"),
    QT_TRANSLATE_NOOP("FileNameUtil", "name30"), QT_TRANSLATE_NOOP("FileNameUtil", "name31"),
    QT_TRANSLATE_NOOP("FileNameUtil", "name32"), QT_TRANSLATE_NOOP("FileNameUtil", "name33"),
    QT_TRANSLATE_NOOP("FileNameUtil", "name34"), QT_TRANSLATE_NOOP("FileNameUtil", "name35"),
    QT_TRANSLATE_NOOP("FileNameUtil", "name36"), QT_TRANSLATE_NOOP("FileNameUtil", "name37"),
    QT_TRANSLATE_NOOP("FileNameUtil", "name38"), QT_TRANSLATE_NOOP("FileNameUtil", "name39"),
    QT_TRANSLATE_NOOP("FileNameUtil", "name40"), QT_TRANSLATE_NOOP("FileNameUtil", "name40"),
    QT_TRANSLATE_NOOP("FileNameUtil", "name41"), QT_TRANSLATE_NOOP("FileNameUtil", "name42"),
    QT_TRANSLATE_NOOP("FileNameUtil", "name43"), QT_TRANSLATE_NOOP("FileNameUtil", "name44"),
    QT_TRANSLATE_NOOP("FileNameUtil", "name45"), QT_TRANSLATE_NOOP("FileNameUtil", "name46"),
    QT_TRANSLATE_NOOP("FileNameUtil", "name47"), QT_TRANSLATE_NOOP("FileNameUtil", "name48")};

struct FormatSource {
    int type;
    const char *format;
    const char *display;
};

/// Semicolons stand where a colon cannot go in a file name.
const FormatSource FormatSources[] = {
    {FileNameUtil::Date, "yyyyMMdd_HHmmss", QT_TRANSLATE_NOOP("FileNameUtil", "yyyyMMdd_HHmmss")},
    {FileNameUtil::Date, "yyyy-MM-dd HH;mm;ss", QT_TRANSLATE_NOOP("FileNameUtil", "yyyy-MM-dd HH;mm;ss")},
    {FileNameUtil::Date, "MM-dd HH;mm;ss", QT_TRANSLATE_NOOP("FileNameUtil", "MM-dd HH;mm;ss")},
    {FileNameUtil::Date, "yyyy-MM-dd", QT_TRANSLATE_NOOP("FileNameUtil", "yyyy-MM-dd")},
    {FileNameUtil::Date, "HH;mm;ss", QT_TRANSLATE_NOOP("FileNameUtil", "HH;mm;ss")},
    {FileNameUtil::Bird, "BIRDNAME", QT_TRANSLATE_NOOP("FileNameUtil", "birdname")},
    {FileNameUtil::Serial, "", QT_TRANSLATE_NOOP("FileNameUtil", "serial")}};

struct Tables {
    QList<FileNameUtil::FormatEntry> formats;
    QStringList birds;
};

QString translated(const char *text) {
    return QCoreApplication::translate("FileNameUtil", text);
}

Tables makeTables() {
    Tables tables;
    for (const FormatSource &source : FormatSources)
        tables.formats.append({source.type, QString::fromLatin1(source.format), translated(source.display)});
    for (const char *key : BirdKeys)
        tables.birds.append(translated(key));
    return tables;
}

Tables &tables() {
    static Tables instance = makeTables();
    return instance;
}

/// Replaceable sources of time, chance and patience; empty means the real one.
struct Sources {
    std::function<QDateTime()> now;
    std::function<int()> random;
    std::function<void()> waitForWorker;
};

Sources &sources() {
    static Sources instance;
    return instance;
}

QDateTime now() {
    return sources().now ? sources().now() : QDateTime::currentDateTime();
}

/// Draws seeded with the milliseconds of the clock: one of a thousand orders, which repeat from run to run.
std::function<int()> seededRandom() {
    if (sources().random)
        return sources().random;
    std::mt19937 generator(static_cast<std::mt19937::result_type>(now().time().msec()));
    return [generator]() mutable { return int(generator() >> 1); };
}

/// A cheap half shuffle: names that came late and went to the front are met first.
QStringList shuffledBirds() {
    const std::function<int()> draw = seededRandom();
    QStringList shuffled;
    for (const QString &name : FileNameUtil::birdNames()) {
        if (draw() % ShuffleSides > ShuffleMiddle)
            shuffled.append(name);
        else
            shuffled.prepend(name);
    }
    return shuffled;
}

bool endsWithSeparator(const QString &folder) {
    return folder.endsWith(QLatin1Char('\\')) || folder.endsWith(QLatin1Char('/'));
}

QString joined(const QString &folder, const QString &name) {
    return endsWithSeparator(folder) ? folder + name : folder + QLatin1Char('/') + name;
}

QString withSuffix(const QString &path) {
    return path + QLatin1Char('.') + FileNameUtil::currentFileSuffix();
}

bool isUnusableFolder(const QString &folder) {
    return folder.isEmpty() || folder.at(0).isNull();
}

/// Cuts between two characters, so that none is torn.
QString shortened(const QString &text) {
    const QByteArray bytes = text.toUtf8();
    if (bytes.size() <= LongestText)
        return text;
    const auto isInsideCharacter = [&bytes](int at) {
        return (static_cast<quint8>(bytes[at]) & 0xC0) == 0x80;
    };
    int end = LongestText;
    while (end > 0 && isInsideCharacter(end))
        --end;
    return QString::fromUtf8(bytes.left(end));
}

/// The text as the name of one file. Nobody can type a separator into the settings dialog, but the stored
/// text may come from elsewhere, and then it must not lead out of the folder.
QString asName(QString text) {
    for (QChar &c : text) {
        if (c == QLatin1Char('/') || c == QLatin1Char('\\') || c.category() == QChar::Other_Control)
            c = QLatin1Char('_');
    }
    return shortened(text);
}

/// How files are named now, from the settings.
struct NameStyle {
    int type;
    QString text;

    static NameStyle current() {
        TindraPreferences *preferences = TindraPreferences::instance();
        NameStyle style;
        style.text = preferences->GetString(TindraPreferences::FileNameTamplate, QString());
        FileNameUtil::normalizeTemplate(style.text);
        style.type = preferences->GetInt(TindraPreferences::FileNameType,
                                         TindraPreferences::defaultInt(TindraPreferences::FileNameType));
        return style;
    }
    bool isSerial() const {
        return type == FileNameUtil::Serial || (type == FileNameUtil::Custom && text.isEmpty());
    }
};

QString styledFileName(const NameStyle &style, const QString &folder, bool numbered) {
    if (style.isSerial())
        return FileNameUtil::serialFileName(folder);
    switch (style.type) {
    case FileNameUtil::Custom:
        return joined(folder, asName(style.text));
    case FileNameUtil::Date:
        return joined(folder, asName(now().toString(style.text)));
    case FileNameUtil::Bird:
        return FileNameUtil::birdFileName(folder, numbered);
    default:
        return QString();
    }
}

/// The first number whose file is neither there nor reserved. The names of `own` may be reserved: a batch
/// comes to its own ones again and waits.
QString nextSerialName(const QString &folder, const QStringList &own) {
    if (isUnusableFolder(folder))
        return QString();
    for (qint64 number = 1;; ++number) {
        const QString name =
            joined(folder, QStringLiteral("%1").arg(number, SerialDigits, 10, QLatin1Char('0')));
        const QString path = withSuffix(name);
        if (!QFileInfo(path).isFile() && (own.contains(path) || !ReservedPaths::contains(path)))
            return name;
    }
}

bool isTaken(const QString &path) {
    return QFileInfo::exists(path) || ReservedPaths::contains(path);
}

void waitForWorker() {
    if (sources().waitForWorker)
        sources().waitForWorker();
    else
        QThread::msleep(BatchPollMilliseconds);
}

} // namespace

void FileNameUtil::initialize() {
    tables() = makeTables();
}

const QList<FileNameUtil::FormatEntry> &FileNameUtil::formatEntries() {
    return tables().formats;
}

const QStringList &FileNameUtil::birdNames() {
    return tables().birds;
}

QString FileNameUtil::currentFileSuffix() {
    const int index = TindraPreferences::instance()->GetInt(
        TindraPreferences::FileFormat, TindraPreferences::defaultInt(TindraPreferences::FileFormat));
    if (index < 0 || index >= int(std::size(PictureFormats)))
        return QString();
    return QString::fromLatin1(PictureFormats[index].suffix);
}

void FileNameUtil::normalizeTemplate(QString &text) {
    text.replace(QLatin1String("%Y"), QLatin1String("yyyy"));
    text.replace(QLatin1String("%m"), QLatin1String("MM"));
    text.replace(QLatin1String("%d"), QLatin1String("dd"));
    text.replace(QLatin1String("%H"), QLatin1String("HH"));
    text.replace(QLatin1String("%M"), QLatin1String("mm"));
    text.replace(QLatin1String("%S"), QLatin1String("ss"));
}

QString FileNameUtil::generateFileName(const QString &folder, bool numbered) {
    const QString name = styledFileName(NameStyle::current(), folder, numbered);
    if (!name.isEmpty())
        return name;
    // The one result that carries an extension, to which callers add theirs: better a name with two than
    // none at all.
    return withSuffix(joined(folder, translated(QT_TRANSLATE_NOOP("FileNameUtil", "Tindra"))));
}

QString FileNameUtil::serialFileName(const QString &folder) {
    return nextSerialName(folder, {});
}

QString FileNameUtil::birdFileName(const QString &folder, bool numbered) {
    if (isUnusableFolder(folder))
        return QString();
    for (const QString &bird : shuffledBirds()) {
        QString name = joined(folder, bird);
        if (numbered && !endsWithSeparator(folder))
            name += QLatin1String("_1");
        if (!isTaken(withSuffix(name)))
            return name;
    }
    return QString();
}

QString FileNameUtil::uniqueFilePath(const QString &path) {
    if (path.isEmpty() || !isTaken(path))
        return path;
    const QFileInfo info(path);
    const QString stem = info.path() + QLatin1Char('/') + info.baseName();
    const QString ending = info.suffix().isEmpty() ? QString() : QLatin1Char('.') + info.suffix();
    QString candidate;
    for (int number = 1; number <= MaxUniqueNumber; ++number) {
        candidate = stem + QStringLiteral(" (%1)").arg(number) + ending;
        if (!isTaken(candidate))
            break;
    }
    return candidate;
}

QString FileNameUtil::batchFileName(const QString &base, const QStringList &used) {
    const NameStyle style = NameStyle::current();
    const QString folder = base.left(base.lastIndexOf(QLatin1Char('/')));
    for (int counter = 1;; ++counter) {
        const QString candidate = style.isSerial()
                                      ? withSuffix(nextSerialName(folder, used))
                                      : withSuffix(base + QLatin1Char('_') + QString::number(counter));
        if (!used.contains(candidate)) {
            if (!QFileInfo(candidate).isFile() && !ReservedPaths::contains(candidate))
                return candidate;
        } else if (style.isSerial()) {
            // The next number is free only once the worker that got this one has written its file.
            waitForWorker();
        }
    }
}

int FileNameUtil::indexOfFormat(int type, const QString &format) {
    if (type == Custom)
        return -1;
    const QList<FormatEntry> &entries = formatEntries();
    for (int row = 0; row < entries.size(); ++row) {
        if (entries[row].type == type && entries[row].format == format)
            return row;
    }
    return -1;
}

QString FileNameUtil::folderOrDefault(const QString &folder) {
    if (!folder.isEmpty())
        return folder;
    return QStandardPaths::standardLocations(QStandardPaths::PicturesLocation).value(0);
}

void FileNameUtil::setClock(std::function<QDateTime()> clock) {
    sources().now = std::move(clock);
}

void FileNameUtil::setRandom(std::function<int()> random) {
    sources().random = std::move(random);
}

void FileNameUtil::setBatchWait(std::function<void()> wait) {
    sources().waitForWorker = std::move(wait);
}
