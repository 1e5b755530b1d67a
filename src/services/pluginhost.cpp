#include "services/pluginhost.h"

#include "services/managementprogram.h"
#include "services/widetext.h"

#include <algorithm>
#include <string>

namespace {

// In wide characters, as the host was built for.
constexpr unsigned IdSize = 30;
constexpr unsigned NameSize = 30;
constexpr unsigned DescriptionSize = 100;
/// More than anybody could choose from in a menu. A host that counts wrong (-1 is four thousand million)
/// would keep the user waiting for a menu that fits no screen.
constexpr unsigned MostPlugins = 100;

PluginHost *&current() {
    static PluginHost *host = nullptr;
    return host;
}

} // namespace

PluginHost &PluginHost::instance() {
    if (!current())
        current() = new PluginHost;
    return *current();
}

void PluginHost::resetForTesting() {
    delete current();
    current() = nullptr;
}

void PluginHost::start(const QString &appName, const QString &language) {
    m_appName = appName;
    m_language = language;
    if (isLoaded())
        return;
    m_library = SignedLibrary(ManagementProgram::libraryPath(QStringLiteral("kilnworks")));
    m_setAppInfo = m_library.resolve<decltype(m_setAppInfo)>("SetAppInfo");
    m_pluginCount = m_library.resolve<decltype(m_pluginCount)>("PluginCount");
    m_pluginId = m_library.resolve<decltype(m_pluginId)>("PluginId");
    m_pluginName = m_library.resolve<decltype(m_pluginName)>("PluginName");
    m_pluginDescription = m_library.resolve<decltype(m_pluginDescription)>("PluginDescription");
    m_executePlugin = m_library.resolve<decltype(m_executePlugin)>("ExecutePlugin");
    setAppInfo();
}

bool PluginHost::setAppInfo() const {
    return m_setAppInfo && m_setAppInfo(m_appName.toStdWString().c_str(), m_language.toStdWString().c_str());
}

unsigned PluginHost::pluginCount() const {
    return m_pluginCount ? m_pluginCount() : 0;
}

QString PluginHost::pluginId(unsigned index) const {
    return readWideText<IdSize>([this, index](wchar_t *buffer, unsigned size) {
        return m_pluginId && m_pluginId(index, buffer, size);
    });
}

QStringList PluginHost::pluginIds() {
    setAppInfo();
    const unsigned count = std::min(pluginCount(), MostPlugins);
    QStringList ids;
    for (unsigned index = 0; index < count; ++index) {
        const QString id = pluginId(index);
        if (!id.isEmpty())
            ids.append(id);
    }
    return ids;
}

QString PluginHost::pluginName(const QString &id) const {
    const std::wstring wideId = id.toStdWString();
    return readWideText<NameSize>([this, &wideId](wchar_t *buffer, unsigned size) {
        return m_pluginName && m_pluginName(wideId.c_str(), buffer, size);
    });
}

QString PluginHost::pluginDescription(const QString &id) const {
    const std::wstring wideId = id.toStdWString();
    return readWideText<DescriptionSize>([this, &wideId](wchar_t *buffer, unsigned size) {
        return m_pluginDescription && m_pluginDescription(wideId.c_str(), buffer, size);
    });
}

unsigned PluginHost::execute(const QString &id, const QStringList &images) const {
    if (!m_executePlugin)
        return NotLoaded;
    return m_executePlugin(id.toStdWString().c_str(), imageArguments(images).toStdWString().c_str());
}

QString PluginHost::imageArguments(const QStringList &images) {
    if (images.isEmpty())
        return QString();
    return QStringLiteral("--image=\"%1\"").arg(images.join(QLatin1Char('|')));
}
