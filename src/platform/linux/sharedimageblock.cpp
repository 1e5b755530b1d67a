#include "platform/sharedimageblock.h"

#include "platform/namedlock.h"

#include <QFile>

#include <sys/ipc.h>
#include <sys/shm.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
/// With the key file it makes the id of the block; fixed between the programs.
constexpr int projectId = 'Q';
} // namespace

platform::SharedImageBlock platform::sharedImageBlock() {
    const QString name = QStringLiteral("TindraImageMemory");
    const QString folder = privateRuntimeFolder();
    // The system derives the block's id from a file: a relative path would be another file for a process
    // with another working folder, and one in an open folder could be anybody's.
    return {folder.isEmpty() ? QString() : folder + QLatin1Char('/') + name, name};
}

bool platform::isBlockOfThisUserAlone(const QString &nativeKey) {
    const key_t key = ::ftok(QFile::encodeName(nativeKey).constData(), projectId);
    const int id = key == -1 ? -1 : ::shmget(key, 0, 0);
    struct shmid_ds block;
    if (id < 0 || ::shmctl(id, IPC_STAT, &block) != 0)
        return false;
    // Whoever made a block keeps his rights when he gives it to another owner.
    const uid_t user = ::geteuid();
    return block.shm_perm.uid == user && block.shm_perm.cuid == user &&
           !(block.shm_perm.mode & (S_IRWXG | S_IRWXO));
}
