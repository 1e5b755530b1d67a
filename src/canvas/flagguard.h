#pragma once

/// Sets a flag while it lives, against re-entry on one thread.
class FlagGuard {
public:
    explicit FlagGuard(bool &flag) : m_flag(flag) { m_flag = true; }
    ~FlagGuard() { m_flag = false; }
    FlagGuard(const FlagGuard &) = delete;
    FlagGuard &operator=(const FlagGuard &) = delete;

private:
    bool &m_flag;
};
