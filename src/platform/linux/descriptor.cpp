#include "platform/linux/descriptor.h"

#include <unistd.h>

#include <cerrno>
#include <utility>

void Descriptor::reset(int value) {
    if (m_value >= 0)
        ::close(m_value);
    m_value = value;
}

int Descriptor::release() {
    return std::exchange(m_value, -1);
}

bool platform::writeAll(int descriptor, const void *data, std::size_t size) {
    const char *next = static_cast<const char *>(data);
    while (size > 0) {
        const ssize_t written = ::write(descriptor, next, size);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        next += written;
        size -= std::size_t(written);
    }
    return true;
}
