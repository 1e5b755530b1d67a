#include "support/ordinaryuser.h"

#include <QFile>
#include <QTemporaryDir>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr uid_t nobody = 65534;

int runInChild(const std::function<int()> &job) {
    const pid_t child = ::fork();
    if (child == 0) {
        if (::geteuid() == 0 && (::setgid(nobody) != 0 || ::setuid(nobody) != 0))
            ::_exit(-1);
        ::_exit(job());
    }
    int status = 0;
    if (child < 0 || ::waitpid(child, &status, 0) != child || !WIFEXITED(status))
        return -1;
    return WEXITSTATUS(status);
}

} // namespace

int asOrdinaryUser(const std::function<int(const QString &folder)> &job) {
    // Not below TMPDIR: the folders above that one belong to whoever runs the tests.
    QTemporaryDir folder(QStringLiteral("/tmp/tindra-ordinary-XXXXXX"));
    if (!folder.isValid())
        return -1;
    const QByteArray path = QFile::encodeName(folder.path());
    if (::geteuid() == 0 && ::chown(path.constData(), nobody, nobody) != 0)
        return -1;
    return runInChild([&] { return job(folder.path()); });
}
