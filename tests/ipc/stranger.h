#pragma once

#include <functional>

/// A child process of this test that runs `body` as another user of the machine and ends with its result.
/// Only root can make one; `isPossible` tells, and fails the test where none may be skipped.
class Stranger {
public:
    static bool isPossible();

    explicit Stranger(const std::function<int()> &body);
    ~Stranger();
    Stranger(const Stranger &) = delete;
    Stranger &operator=(const Stranger &) = delete;

    /// Waits for its end; the exit code, or -1.
    int wait();

private:
    int m_pid = -1;
};
