#pragma once

#include <functional>

/// Requests of the system that the process should end (termination signals).
class SessionEnd {
public:
    virtual ~SessionEnd() = default;

    /// Runs `handler` in the event loop of the calling thread when the process is asked to end.
    virtual void onTerminate(std::function<void()> handler) = 0;
};
