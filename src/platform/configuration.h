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
/// A leading component "SOFTWARE" (any case) is dropped; the next names the vendor's folder, the one
/// after it the file, the rest nested groups. Names are as the capture process knows them, so both
/// programs meet in one file. Values that cannot be read count as missing, failed writes are silent, and
/// values that others keep in the same file stay as they are. GUI thread only.
class ConfigurationLocation {
public:
    explicit ConfigurationLocation(const QString &key, ConfigurationScope scope = ConfigurationScope::User);
    ~ConfigurationLocation();

    /// The value of that name (a "/" enters a group), or an invalid `QVariant`.
    QVariant value(const QString &name) const;
    void setValue(const QString &name, const QVariant &value);
    /// Removes a value, or a group with all that is in it.
    void remove(const QString &name);
    QStringList childGroups() const;
    /// Path of the file behind this location.
    QString fileName() const;

private:
    std::unique_ptr<QSettings> m_settings;
};
