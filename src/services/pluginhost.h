#pragma once

#include "services/signedlibrary.h"

#include <QStringList>

/// The library that hosts the AI tools' plug-ins, one per process, bound at run time.
///
/// docs/plugins.md tells its functions. Without the library, or without one of its functions, there are no
/// plug-ins and no texts, and nothing runs. The library stays loaded until the process ends: a plug-in may
/// leave threads behind. GUI thread only.
class PluginHost {
public:
    /// What running a plug-in ended with, as far as the program tells the cases apart.
    enum Result : unsigned {
        Done = 0,
        HostMissing = 126,   ///< as the host tells where its own parts are missing
        HostUpdating = 1306, ///< the management program is exchanging them
        NotLoaded = 1627     ///< there is no host in this process
    };

    static PluginHost &instance();
    /// Takes the library out of the process, as if it had never been started.
    static void resetForTesting();

    PluginHost(const PluginHost &) = delete;
    PluginHost &operator=(const PluginHost &) = delete;

    /// Loads the library, if there is one, and tells it who asks, now and before each listing.
    void start(const QString &appName, const QString &language);
    bool isLoaded() const { return m_library.isLoaded(); }

    /// The ids of the plug-ins, asked anew; those that cannot be had are left out.
    QStringList pluginIds();
    /// Empty when the host does not tell.
    QString pluginName(const QString &id) const;
    QString pluginDescription(const QString &id) const;

    /// Has a plug-in work on the images and returns when it is done. A `Result`, or any other number for a
    /// failure.
    unsigned execute(const QString &id, const QStringList &images) const;
    /// The images in the form that plug-ins take; empty for none. Paths must hold neither a double quote nor
    /// a vertical bar, which the form has no way to write.
    static QString imageArguments(const QStringList &images);

private:
    PluginHost() = default;
    ~PluginHost() = default;

    bool setAppInfo() const;
    unsigned pluginCount() const;
    QString pluginId(unsigned index) const;

    SignedLibrary m_library;
    QString m_appName;
    QString m_language;

    bool (*m_setAppInfo)(const wchar_t *appName, const wchar_t *language) = nullptr;
    unsigned (*m_pluginCount)() = nullptr;
    bool (*m_pluginId)(unsigned index, wchar_t *buffer, unsigned size) = nullptr;
    bool (*m_pluginName)(const wchar_t *id, wchar_t *buffer, unsigned size) = nullptr;
    bool (*m_pluginDescription)(const wchar_t *id, wchar_t *buffer, unsigned size) = nullptr;
    unsigned (*m_executePlugin)(const wchar_t *id, const wchar_t *arguments) = nullptr;
};
