#include "platform/platform.h"

namespace {

std::unique_ptr<Platform> &current() {
    static std::unique_ptr<Platform> platform;
    return platform;
}

} // namespace

Platform &Platform::instance() {
    if (!current())
        current() = createPlatform();
    return *current();
}

void Platform::setInstance(std::unique_ptr<Platform> platform) {
    current() = std::move(platform);
}
