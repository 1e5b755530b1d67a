#include "services/wyvern2.h"

#include <string>
#include <utility>

bool Wyvern2::start(const QString &libraryPath, const QString &endpoint, const QString &releaseTag,
                    const QString &language) {
    if (isStarted())
        return true;
    SignedLibrary library(libraryPath);
    const auto initModule =
        library.resolve<void (*)(const wchar_t *, const wchar_t *, const wchar_t *)>("Wyvern_InitModuleW");
    if (!initModule)
        return false;
    m_library = std::move(library);
    initModule(endpoint.toStdWString().c_str(), releaseTag.toStdWString().c_str(),
               language.toStdWString().c_str());
    return true;
}

void Wyvern2::addBreadCrumb(const QString &note) {
    if (const auto add = m_library.resolve<void (*)(const wchar_t *)>("Wyvern_AddBreadCrumbW"))
        add(note.toStdWString().c_str());
}

void Wyvern2::end() {
    if (const auto exitModule = m_library.resolve<void (*)()>("Wyvern_ExitModule"))
        exitModule();
    m_library = SignedLibrary();
}
