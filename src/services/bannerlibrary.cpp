#include "services/bannerlibrary.h"

#include "platform/configuration.h"

#include <QDir>
#include <QVector>

namespace {

const QVector<const char *> &functionsOf(BannerLibrary::Kind kind) {
    static const QVector<const char *> none;
    static const QVector<const char *> first{"Quoin_Initialize",
                                             "Quoin_Finalize",
                                             "Quoin_CreateArea",
                                             "Quoin_CreateAreaEx",
                                             "Quoin_DeleteArea",
                                             "Quoin_SetScale",
                                             "Quoin_SetOpenBrowserCallback",
                                             "Quoin_PrepareStats"};
    static const QVector<const char *> second{
        "Create", "Close", "SetScale", "Finalize", "CopyAdCookies", "SetOpenBrowserCallback", "PrepareStats"};
    return kind == BannerLibrary::First ? first : kind == BannerLibrary::Second ? second : none;
}

/// Whether the system has the runtime of its web view.
bool hasWebView() {
    const QString clients = QStringLiteral("Software\\Microsoft\\EdgeUpdate\\Clients");
    const QString runtime = QStringLiteral("{F3017226-FE2A-4295-8BDF-00C3A9A7E4C5}");
    return ConfigurationLocation(clients, ConfigurationScope::Machine).childGroups().contains(runtime) ||
           ConfigurationLocation(clients).childGroups().contains(runtime);
}

} // namespace

BannerLibrary::Kind BannerLibrary::start(const QString &folder) {
    if (m_kind != None)
        return m_kind;
    const QDir libraries(folder);
    const QString second = libraries.filePath(libraryFileName(QStringLiteral("quoin2")));
    if (QFile::exists(second) && hasWebView() && bind(Second, second))
        return m_kind;
    if (bind(First, libraries.filePath(libraryFileName(QStringLiteral("Quoin"))))) {
        if (const auto initialize = function<void (*)()>("Quoin_Initialize"))
            initialize();
    }
    return m_kind;
}

bool BannerLibrary::bind(Kind kind, const QString &path) {
    SignedLibrary library(path);
    if (!library.isLoaded())
        return false;
    m_library = std::move(library);
    m_kind = kind;
    for (const char *name : functionsOf(kind))
        m_functions.insert(name, m_library.resolve<QFunctionPointer>(name));
    return true;
}

void BannerLibrary::deleteArea(const QString &areaId) {
    const char *name = m_kind == Second ? "Close" : "Quoin_DeleteArea";
    if (const auto remove = function<void (*)(const wchar_t *)>(name))
        remove(areaId.toStdWString().c_str());
}

void BannerLibrary::end() {
    const char *name = m_kind == Second ? "Finalize" : "Quoin_Finalize";
    if (const auto finalize = function<void (*)()>(name))
        finalize();
    m_functions.clear();
    m_library = SignedLibrary();
    m_kind = None;
}
