#pragma once

#include <pthread.h>

#include <cstddef>

/// As long as it lives the system has no thread to give to this process: each would get a stack that no
/// address space holds. Unlike a limit of the system's, it counts for root as well.
class NoThreads {
public:
    NoThreads() {
        ::pthread_getattr_default_np(&m_before);
        pthread_attr_t attributes;
        ::pthread_attr_init(&attributes);
        ::pthread_attr_setstacksize(&attributes, std::size_t(1) << 47);
        ::pthread_setattr_default_np(&attributes);
        ::pthread_attr_destroy(&attributes);
    }
    ~NoThreads() {
        ::pthread_setattr_default_np(&m_before);
        ::pthread_attr_destroy(&m_before);
    }
    NoThreads(const NoThreads &) = delete;
    NoThreads &operator=(const NoThreads &) = delete;

private:
    pthread_attr_t m_before{};
};
