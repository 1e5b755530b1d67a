#include "platform/loadedlibrary.h"

#include "platform/linux/descriptor.h"

#include <QByteArray>
#include <QFile>

#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>

// This header of glibc forgets to say that its functions are C's.
extern "C" {
#include <sys/pidfd.h>
}

extern char **environ; // NOLINT(readability-redundant-declaration): not every system header declares it

namespace platform {

namespace {

constexpr char TrialArgument[] = "--try-library";
/// Loading takes milliseconds; this is what a machine under load may need for the process around it.
constexpr int TrialLimitMs = 5000;
/// Where the process that tries a library finds it.
constexpr int TrialDescriptor = STDERR_FILENO + 1;

QByteArray &trialProgram() {
    static QByteArray program;
    return program;
}

QByteArray pathOf(const Descriptor &file) {
    return "/proc/self/fd/" + QByteArray::number(file.get());
}

/// A file in memory alone, which nobody can change any more, this process included; negative on failure.
int makeSealedFile(const QByteArray &bytes) {
    Descriptor file(::memfd_create("library", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    if (!file.isValid() || !writeAll(file.get(), bytes.constData(), std::size_t(bytes.size())))
        return -1;
    if (::fcntl(file.get(), F_ADD_SEALS, F_SEAL_WRITE | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL) != 0)
        return -1;
    return file.release();
}

/// Starts the process that tries the library, in a group of its own so that all that it starts ends with it.
pid_t startTrial(const Descriptor &library) {
    const QByteArray program = trialProgram().isEmpty() ? QByteArray("/proc/self/exe") : trialProgram();
    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawnattr_init(&attributes);
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream)
        ::posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_RDWR, 0);
    ::posix_spawn_file_actions_adddup2(&actions, library.get(), TrialDescriptor);
    ::posix_spawn_file_actions_addclosefrom_np(&actions, TrialDescriptor + 1);
    ::posix_spawnattr_setpgroup(&attributes, 0);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
    QByteArray name = program;
    QByteArray argument(TrialArgument);
    char *const arguments[] = {name.data(), argument.data(), nullptr};
    pid_t process = -1;
    const int error = ::posix_spawn(&process, program.constData(), &actions, &attributes, arguments, environ);
    ::posix_spawnattr_destroy(&attributes);
    ::posix_spawn_file_actions_destroy(&actions);
    return error == 0 ? process : -1;
}

/// Whether the process ended well and in time. It is gone afterwards in any case.
bool endsWell(pid_t process) {
    const Descriptor watch(::pidfd_open(process, 0));
    pollfd wait{watch.get(), POLLIN, 0};
    int ready = 0;
    do {
        ready = watch.isValid() ? ::poll(&wait, 1, TrialLimitMs) : 0;
    } while (ready < 0 && errno == EINTR);
    ::kill(-process, SIGKILL);
    int status = 0;
    while (::waitpid(process, &status, 0) < 0) {
        if (errno != EINTR)
            return false;
    }
    return ready == 1 && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

bool survivesTrial(const Descriptor &library) {
    const pid_t process = startTrial(library);
    return process > 0 && endsWell(process);
}

class LinuxLibrary : public LoadedLibrary {
public:
    LinuxLibrary(int file, void *handle) : m_file(file), m_handle(handle) {}
    ~LinuxLibrary() override;
    LinuxLibrary(const LinuxLibrary &) = delete;
    LinuxLibrary &operator=(const LinuxLibrary &) = delete;

    QFunctionPointer resolve(const char *name) const override {
        return reinterpret_cast<QFunctionPointer>(::dlsym(m_handle, name));
    }

private:
    Descriptor m_file;
    void *m_handle;
};

/// The loader knows a library by its path, which is the descriptor's number. So the descriptor stays open as
/// long as the library is there, for ever when it refuses to go: another library under the same number would
/// be taken for this one.
LinuxLibrary::~LinuxLibrary() {
    ::dlclose(m_handle);
    if (::dlopen(pathOf(m_file).constData(), RTLD_NOW | RTLD_NOLOAD))
        m_file.release();
}

} // namespace

std::unique_ptr<LoadedLibrary> loadLibrary(const QByteArray &bytes) {
    Descriptor file(makeSealedFile(bytes));
    if (!file.isValid() || !survivesTrial(file))
        return nullptr;
    void *handle = ::dlopen(pathOf(file).constData(), RTLD_NOW | RTLD_LOCAL);
    if (!handle)
        return nullptr;
    return std::make_unique<LinuxLibrary>(file.release(), handle);
}

QString libraryFileName(const QString &baseName) {
    return baseName + QStringLiteral(".so");
}

bool isLibraryTrialCall(int argc, char **argv) {
    return argc == 2 && std::strcmp(argv[1], TrialArgument) == 0;
}

void runLibraryTrial() {
    // Nothing of it outlives the program that waits for it, and a crash is expected: no picture of it.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const rlimit noCore{0, 0};
    ::setrlimit(RLIMIT_CORE, &noCore);
    const QByteArray path = "/proc/self/fd/" + QByteArray::number(TrialDescriptor);
    void *handle = ::dlopen(path.constData(), RTLD_NOW | RTLD_LOCAL);
    // At once: it is about the library alone, and what else ends with a process may take its time.
    ::_exit(handle && ::dlclose(handle) == 0 ? 0 : 1);
}

void setLibraryTrialProgram(const QString &path) {
    trialProgram() = QFile::encodeName(path);
}

} // namespace platform
