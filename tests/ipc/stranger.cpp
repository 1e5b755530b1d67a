#include "ipc/stranger.h"

#include "support/administrator.h"

#include <grp.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace {
constexpr uid_t nobody = 65534;
}

bool Stranger::isPossible() {
    return isAdministrator();
}

Stranger::Stranger(const std::function<int()> &body) : m_pid(::fork()) {
    if (m_pid != 0)
        return;
    if (::setgroups(0, nullptr) != 0 || ::setgid(nobody) != 0 || ::setuid(nobody) != 0)
        ::_exit(99);
    ::_exit(body());
}

Stranger::~Stranger() {
    if (m_pid <= 0)
        return;
    ::kill(m_pid, SIGKILL);
    wait();
}

int Stranger::wait() {
    int status = 0;
    const bool ended = m_pid > 0 && ::waitpid(m_pid, &status, 0) == m_pid;
    m_pid = -1;
    return ended && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
