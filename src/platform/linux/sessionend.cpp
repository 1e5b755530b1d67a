#include "platform/sessionend.h"

#include "platform/linux/linuxservices.h"

#include <QSocketNotifier>

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>

namespace {

constexpr std::array<int, 3> terminationSignals = {SIGTERM, SIGINT, SIGHUP};

/// The end of the pipe that the signal handler writes to; a handler knows only what is global.
std::atomic<int> wakeUpDescriptor{-1};
static_assert(std::atomic<int>::is_always_lock_free, "the signal handler must not wait");

void wakeUpEventLoop(int) {
    const int savedError = errno;
    const char byte = 1;
    // A full pipe has woken the loop already.
    [[maybe_unused]] const ssize_t written = ::write(wakeUpDescriptor.load(), &byte, sizeof byte);
    errno = savedError;
}

/// Signals arrive between any two instructions, so the handler only writes into a pipe, and the event loop
/// reads it when it is safe to run program code.
class SignalSessionEnd : public SessionEnd {
public:
    SignalSessionEnd() = default;
    SignalSessionEnd(const SignalSessionEnd &) = delete;
    SignalSessionEnd &operator=(const SignalSessionEnd &) = delete;
    ~SignalSessionEnd() override;

    void onTerminate(std::function<void()> handler) override;

private:
    bool openPipe();
    void catchSignals();
    void drainPipe();

    std::function<void()> m_handler;
    std::array<int, 2> m_pipe = {-1, -1};
    std::array<struct sigaction, terminationSignals.size()> m_previous = {};
    std::unique_ptr<QSocketNotifier> m_notifier;
};

SignalSessionEnd::~SignalSessionEnd() {
    if (!m_notifier)
        return;
    for (std::size_t i = 0; i < terminationSignals.size(); ++i)
        ::sigaction(terminationSignals[i], &m_previous[i], nullptr);
    wakeUpDescriptor = -1;
    m_notifier.reset();
    ::close(m_pipe[0]);
    ::close(m_pipe[1]);
}

void SignalSessionEnd::onTerminate(std::function<void()> handler) {
    m_handler = std::move(handler);
    if (m_notifier || !openPipe())
        return;
    m_notifier = std::make_unique<QSocketNotifier>(m_pipe[0], QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this] {
        drainPipe();
        // The handler may replace itself.
        const std::function<void()> current = m_handler;
        if (current)
            current();
    });
    catchSignals();
}

bool SignalSessionEnd::openPipe() {
    return ::pipe2(m_pipe.data(), O_CLOEXEC | O_NONBLOCK) == 0;
}

void SignalSessionEnd::catchSignals() {
    wakeUpDescriptor = m_pipe[1];
    struct sigaction action = {};
    action.sa_handler = wakeUpEventLoop;
    action.sa_flags = SA_RESTART;
    ::sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < terminationSignals.size(); ++i) {
        const int number = terminationSignals[i];
        ::sigaction(number, nullptr, &m_previous[i]);
        // Whoever starts us with a signal ignored (nohup, a shell's background job) means it.
        if (m_previous[i].sa_handler != SIG_IGN)
            ::sigaction(number, &action, nullptr);
    }
}

void SignalSessionEnd::drainPipe() {
    std::array<char, 64> bytes;
    while (::read(m_pipe[0], bytes.data(), bytes.size()) > 0) {
    }
}

} // namespace

std::unique_ptr<SessionEnd> makeSessionEnd() {
    return std::make_unique<SignalSessionEnd>();
}
