#include "platform/configuration.h"

#include "platform/configurationfiles.h"
#include "platform/folderaccess.h"
#include "platform/privatefile.h"

#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSettings>
#include <QTextCodec>

#include <algorithm>

namespace {

/// Far above any real settings file: what is larger is not one, and would be read into memory.
constexpr qint64 LargestFile = qint64(4) * 1024 * 1024;
/// In milliseconds. A writer holds the lock for a few; one that was stopped in between may keep it for good.
constexpr int LockTimeout = 2000;

struct Address {
    QString vendor;
    QString file;
    QString group;
    bool isValid() const { return !vendor.isEmpty() && !file.isEmpty(); }
};

bool isFileName(const QString &component) {
    return !component.contains(QLatin1Char('/')) && component != QLatin1String(".") &&
           component != QLatin1String("..");
}

Address parseKey(const QString &key) {
    QStringList components = key.split(QLatin1Char('\\'), Qt::SkipEmptyParts);
    for (const QLatin1String root : {QLatin1String("HKEY_CURRENT_USER"), QLatin1String("HKEY_LOCAL_MACHINE"),
                                     QLatin1String("SOFTWARE")}) {
        if (!components.isEmpty() && components.first().compare(root, Qt::CaseInsensitive) == 0)
            components.removeFirst();
    }
    if (components.size() < 2 || !isFileName(components[0]) || !isFileName(components[1]))
        return {};
    return {components[0], components[1], QStringList(components.mid(2)).join(QLatin1Char('/'))};
}

/// Opening a pipe would wait for a writer, and a device may never end.
bool canBeSettingsFile(const QString &path) {
    const QFileInfo info(path);
    return !path.isEmpty() && (!info.exists() || (info.isFile() && info.size() <= LargestFile));
}

bool isWellFormedLine(const QByteArray &line) {
    return line.isEmpty() || line.startsWith(';') || line.startsWith('#') || line.contains('=') ||
           (line.startsWith('[') && line.endsWith(']'));
}

bool isWellFormed(const QByteArray &content) {
    QTextCodec::ConverterState state;
    QTextCodec::codecForName("UTF-8")->toUnicode(content.constData(), content.size(), &state);
    if (state.invalidChars > 0 || state.remainingChars > 0 || content.contains('\0'))
        return false;
    const QList<QByteArray> lines = content.split('\n');
    return std::all_of(lines.begin(), lines.end(),
                       [](const QByteArray &line) { return isWellFormedLine(line.trimmed()); });
}

/// The text of a value in the file, as it stands there; the last one counts. Empty when it is not found.
QByteArray rawValue(const QString &path, const QString &section, const QByteArray &name) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray head = '[' + section.toUtf8() + ']';
    QByteArray found;
    bool isInSection = false;
    const QList<QByteArray> lines = file.read(LargestFile).split('\n');
    for (const QByteArray &line : lines) {
        const QByteArray text = line.trimmed();
        const int equals = line.indexOf('=');
        if (text.startsWith('['))
            isInSection = text == head;
        else if (isInSection && equals >= 0 && line.left(equals).trimmed() == name)
            found = line.mid(equals + 1); // with the blanks at its end, which may follow a comma
    }
    return found;
}

/// The commas outside quotes, each with the blanks around it.
QStringList separatorsIn(const QByteArray &text) {
    const auto isBlank = [&text](int i) {
        return i >= 0 && i < text.size() && (text[i] == ' ' || text[i] == '\t');
    };
    QStringList separators;
    int end = 0; // of the separator before
    bool isQuoted = false;
    for (int i = 0; i < text.size(); ++i) {
        if (text[i] == '\\') {
            ++i; // and what it escapes
        } else if (text[i] == '"') {
            isQuoted = !isQuoted;
        } else if (text[i] == ',' && !isQuoted) {
            int first = i;
            while (first > end && isBlank(first - 1))
                --first;
            while (isBlank(i + 1))
                ++i;
            end = i + 1;
            separators.append(QString::fromLatin1(text.mid(first, end - first)));
        }
    }
    return separators;
}

/// What a save puts between the parts of a list.
QString writtenSeparator() {
    return QStringLiteral(", ");
}

/// The parts of a list in one text again. Separators that were not found in the file, as where a quote stays
/// open, are taken for those of a save, so that the next one changes nothing.
QString joined(const QStringList &parts, const QStringList &separators) {
    if (separators.size() != parts.size() - 1)
        return parts.join(writtenSeparator());
    QString text = parts.first();
    for (int i = 1; i < parts.size(); ++i)
        text += separators[i - 1] + parts[i];
    return text;
}

/// Saving drops the lines that cannot be understood. They may be somebody's settings all the same (a file
/// stored in another encoding, say), so the first damaged state stays beside the file.
void keepCopyOfDamagedFile(const QString &path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return;
    if (!isWellFormed(file.read(LargestFile)))
        QFile::copy(path, path + QStringLiteral(".damaged"));
}

/// `QSettings` waits for its lock file without limit. This looks first whether the lock can be had, so that
/// a stuck program costs a save but never stops this one.
bool isLockAvailable(const QString &path) {
    const QString lockPath = path + QStringLiteral(".lock");
    const QFileInfo present(lockPath);
    if (present.isSymLink() || (present.exists() && !present.isFile()))
        return false;
    QLockFile lock(lockPath);
    return lock.tryLock(LockTimeout);
}

} // namespace

ConfigurationLocation::ConfigurationLocation(const QString &key, ConfigurationScope scope) : m_scope(scope) {
    const Address address = parseKey(key);
    if (!address.isValid())
        return;
    m_fileName = platform::configurationFile(address.vendor, address.file, scope);
    if (!canBeSettingsFile(m_fileName))
        return;
    m_settings = std::make_unique<QSettings>(m_fileName, QSettings::IniFormat);
    m_settings->setIniCodec("UTF-8");
    m_settings->beginGroup(address.group);
}

ConfigurationLocation::~ConfigurationLocation() {
    if (!m_isWritable)
        return;
    m_settings->sync();
    if (QFileInfo(m_fileName).isFile())
        QFile::setPermissions(m_fileName, platform::PrivateFileRights);
}

QVariant ConfigurationLocation::value(const QString &name) const {
    if (!m_settings)
        return QVariant();
    const QVariant value = m_settings->value(name);
    return value.type() == QVariant::StringList ? textOfList(name, value.toStringList()) : value;
}

// A text with a comma that somebody wrote without quotes, such as a path, reads as a list, and the blanks at
// the commas are lost.
QString ConfigurationLocation::textOfList(const QString &name, const QStringList &parts) const {
    QStringList components =
        (m_settings->group() + QLatin1Char('/') + name).split(QLatin1Char('/'), Qt::SkipEmptyParts);
    const QString section = components.size() > 1 ? components.takeFirst() : QStringLiteral("General");
    const QByteArray key = components.join(QLatin1Char('\\')).toUtf8();
    return joined(parts, separatorsIn(rawValue(m_fileName, section, key)));
}

// A save writes all lists of the file its own way. What stands there in any other is a text, and is stored as
// one from now on.
void ConfigurationLocation::keepTextsWithCommas() {
    const QString group = m_settings->group();
    m_settings->endGroup();
    const QStringList names = m_settings->allKeys();
    for (const QString &name : names) {
        const QVariant value = m_settings->value(name);
        if (value.type() != QVariant::StringList)
            continue;
        const QStringList parts = value.toStringList();
        const QString text = textOfList(name, parts);
        if (text != parts.join(writtenSeparator()))
            m_settings->setValue(name, text);
    }
    m_settings->beginGroup(group);
}

bool ConfigurationLocation::setValue(const QString &name, const QVariant &value) {
    const QVariant present = this->value(name);
    // Writing the file anew for a value that it holds already costs a flush to the disk.
    if (present.isValid() && present.toString() == value.toString())
        return true;
    if (!prepareToWrite())
        return false;
    m_settings->setValue(name, value);
    return true;
}

void ConfigurationLocation::remove(const QString &name) {
    if (!m_settings)
        return;
    m_settings->beginGroup(name);
    const bool isGroup = !m_settings->allKeys().isEmpty();
    m_settings->endGroup();
    if ((isGroup || m_settings->contains(name)) && prepareToWrite())
        m_settings->remove(name);
}

QStringList ConfigurationLocation::childGroups() const {
    return m_settings ? m_settings->childGroups() : QStringList();
}

QString ConfigurationLocation::fileName() const {
    return m_fileName;
}

bool ConfigurationLocation::prepareToWrite() {
    if (m_isPrepared || !m_settings || m_scope == ConfigurationScope::Machine)
        return m_isWritable;
    m_isPrepared = true;
    // A file system without access rights cannot make a folder private; that is no reason to lose settings.
    platform::makePrivateFolder(QFileInfo(m_fileName).path());
    m_isWritable = isLockAvailable(m_fileName);
    if (m_isWritable) {
        keepCopyOfDamagedFile(m_fileName);
        keepTextsWithCommas();
    }
    return m_isWritable;
}
