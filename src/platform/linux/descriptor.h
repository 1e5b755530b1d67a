#pragma once

#include <cstddef>

/// Owns a file descriptor, and closes it when it goes. One owner at a time; any thread.
class Descriptor {
public:
    /// Takes what a call of the system has returned, a negative number for none included.
    explicit Descriptor(int value) : m_value(value) {}
    ~Descriptor() { reset(); }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    int get() const { return m_value; }
    bool isValid() const { return m_value >= 0; }

    /// Closes what it owns and takes another.
    void reset(int value = -1);
    /// Gives the descriptor to the caller, who closes it.
    int release();

private:
    int m_value;
};

namespace platform {

/// Writes all of it, in as many pieces as the system takes it in; false when one of them fails, and what has
/// been written by then is left there.
bool writeAll(int descriptor, const void *data, std::size_t size);

} // namespace platform
