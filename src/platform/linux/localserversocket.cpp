#include "platform/localserversocket.h"

#include "platform/namedlock.h"

#include <QString>

#include <sys/socket.h>
#include <unistd.h>

QString platform::localSocketPath(const QString &name) {
    if (name.isEmpty() || name.startsWith(QLatin1Char('/')))
        return name;
    const QString folder = privateRuntimeFolder();
    return folder.isEmpty() ? QString() : folder + QLatin1Char('/') + name;
}

bool platform::isPeerCurrentUser(qintptr socketDescriptor) {
    struct ucred peer;
    socklen_t size = sizeof peer;
    return ::getsockopt(int(socketDescriptor), SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 &&
           size == sizeof peer && peer.uid == ::geteuid();
}
