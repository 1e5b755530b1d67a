#include "services/statisticslibrary.h"

#include "services/signedlibrary.h"
#include "services/usagestatistics.h"

#include <memory>
#include <mutex>
#include <string>

namespace {

struct Binding {
    explicit Binding(const QString &path)
        : library(path), initialize(library.resolve<int (*)(const wchar_t *)>("Ostler_Initialize")),
          initializeEx(library.resolve<QFunctionPointer>("Ostler_InitializeEx")),
          finalize(library.resolve<void (*)()>("Ostler_Finalize")),
          executeAction(library.resolve<int (*)(const wchar_t *)>("Ostler_ExecuteAction")) {}

    SignedLibrary library;
    int (*initialize)(const wchar_t *product);
    QFunctionPointer initializeEx; ///< part of the table, called by nobody
    void (*finalize)();
    int (*executeAction)(const wchar_t *id);
    bool isStarted = false;
};

/// The critical section of all entries. Recursive: a library that crashes inside an event ends itself.
std::recursive_mutex &section() {
    static std::recursive_mutex mutex;
    return mutex;
}

std::unique_ptr<Binding> &binding() {
    static std::unique_ptr<Binding> instance;
    return instance;
}

} // namespace

bool StatisticsLibrary::start(const QString &libraryPath, const QString &product) {
    {
        const std::lock_guard<std::recursive_mutex> locker(section());
        if (binding())
            return true;
        auto started = std::make_unique<Binding>(libraryPath);
        if (started->initialize)
            started->isStarted = started->initialize(product.toStdWString().c_str()) != 0;
        if (!started->isStarted)
            return false;
        binding() = std::move(started);
    }
    // Outside the section: a reported event holds the recorder and then asks for the section.
    setUsageRecorder([](const QString &code) { send(code); });
    return true;
}

bool StatisticsLibrary::isStarted() {
    const std::lock_guard<std::recursive_mutex> locker(section());
    return binding() && binding()->isStarted;
}

bool StatisticsLibrary::send(const QString &id) {
    const std::lock_guard<std::recursive_mutex> locker(section());
    const Binding *library = binding().get();
    return library && library->isStarted && library->executeAction &&
           library->executeAction(id.toStdWString().c_str()) != 0;
}

void StatisticsLibrary::end() {
    if (!isStarted())
        return;
    setUsageRecorder({});
    const std::lock_guard<std::recursive_mutex> locker(section());
    // Out of the way first, so that whatever the library does at its end finds it ended.
    const std::unique_ptr<Binding> ending = std::move(binding());
    if (ending && ending->finalize)
        ending->finalize();
}
