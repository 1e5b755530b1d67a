#include "platform/clipboardkeeper.h"

#include "platform/linux/keptimage.h"
#include "platform/linux/x11client.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QX11Info>

#include <unistd.h>

#include <cstring>

using platform::SelectionOwner;

namespace {

SelectionOwner takeSelection(const QImage &image, quint32 time) {
    QX11Info::setAppTime(time);
    QGuiApplication::clipboard()->setImage(image);
    return platform::clipboardSelectionOwner();
}

/// Takes the selection over from the program that copied, unless somebody has copied since: the server
/// ignores a claim that is older than the newest. With nobody left holding it, there is nothing to respect.
bool takeOver(const QImage &image, quint32 copyTime) {
    SelectionOwner owner = takeSelection(image, copyTime + platform::KeeperDelay);
    if (owner == SelectionOwner::Nobody)
        owner = takeSelection(image, quint32(QX11Info::getTimestamp()));
    return owner == SelectionOwner::ThisProcess;
}

} // namespace

bool platform::isClipboardKeeperCall(int argc, char **argv) {
    return argc == 2 && std::strcmp(argv[1], ClipboardKeeperArgument) == 0;
}

int platform::runClipboardKeeper(int argc, char **argv) {
    // Whatever the program that copied had open, its locks above all, ends with it and not with us.
    ::close_range(STDERR_FILENO + 1, ~0U, 0);
    quint32 copyTime = 0;
    const QImage image = readKeptImage(STDIN_FILENO, &copyTime);
    if (image.isNull())
        return 1;

    qunsetenv("SESSION_MANAGER");
    QGuiApplication application(argc, argv);
    if (!QX11Info::isPlatformX11() || !takeOver(image, copyTime))
        return 1;
    QObject::connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, &application, [] {
        if (clipboardSelectionOwner() != SelectionOwner::ThisProcess)
            QCoreApplication::quit();
    });
    return QCoreApplication::exec();
}
