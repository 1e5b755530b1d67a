#include "services/onlineupdate.h"

std::optional<int> OnlineUpdate::init(const QByteArray &product) {
    return call("Freshet_Init", product);
}

std::optional<int> OnlineUpdate::exit(const QByteArray &product) {
    return call("Freshet_Exit", product);
}

std::optional<int> OnlineUpdate::updateProduct(const QByteArray &product) {
    return call("Freshet_UpdateProduct", product);
}

std::optional<int> OnlineUpdate::checkEula(const QByteArray &product) {
    return call("Freshet_CheckEULA", product);
}

std::optional<int> OnlineUpdate::call(const char *function, const QByteArray &product) {
    if (!m_library)
        m_library.emplace(m_path);
    const auto entry = m_library->resolve<int (*)(const char *)>(function);
    return entry ? std::optional<int>(entry(product.constData())) : std::nullopt;
}
