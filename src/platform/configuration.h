#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>

class QSettings;

/// Where settings are looked for.
enum class ConfigurationScope {
    User,   ///< the current user's own, read and written
    Machine ///< set by the administrator for everybody, read only
};

/// One location of the product's settings, addressed by a path of backslash-separated components such
/// as "SOFTWARE\Norvane\Tindra\Config".
///
/// A leading "HKEY_CURRENT_USER" or "HKEY_LOCAL_MACHINE" and a leading "SOFTWARE" (any case) are dropped; the
/// scope alone says where to look. The next component names the vendor's folder, the one after it the file in
/// it, the rest nested groups: the example is the group `Config` of `Norvane/Tindra.conf`, an INI file in
/// UTF-8, and "…\Config\SizePresets" the group `SizePresets` inside that. The capture process opens the same
/// file under the same rule.
///
/// Values that cannot be read count as missing, failed writes are silent, and values that others keep in the
/// same file stay as they are. Changes reach the file when the object goes, merged with what others wrote
/// meanwhile. GUI thread only.
class ConfigurationLocation {
public:
    explicit ConfigurationLocation(const QString &key, ConfigurationScope scope = ConfigurationScope::User);
    ~ConfigurationLocation();
    ConfigurationLocation(const ConfigurationLocation &) = delete;
    ConfigurationLocation &operator=(const ConfigurationLocation &) = delete;

    /// The value of that name (a "/" enters a group), or an invalid `QVariant`. Values come back as text.
    QVariant value(const QString &name) const;
    /// False when the value cannot be written: no file for it, or another program keeps the file to itself.
    bool setValue(const QString &name, const QVariant &value);
    /// Removes a value, or a group with all that is in it.
    void remove(const QString &name);
    QStringList childGroups() const;
    /// Path of the file behind this location; empty when the key names none.
    QString fileName() const;

private:
    QString textOfList(const QString &name, const QStringList &parts) const;
    void keepTextsWithCommas();
    bool prepareToWrite();

    QString m_fileName;
    ConfigurationScope m_scope;
    std::unique_ptr<QSettings> m_settings; ///< null when the file cannot be used at all
    bool m_isPrepared = false;
    bool m_isWritable = false;
};
