// A program that copies pictures as the editor does, and is its own clipboard keeper.
//
// usage: [TINDRA_TEST_KEEPER=PROGRAM] clipboardcopier stay|quit|text IMAGE…
//
// Copies the images one right after the other, says "copied" or "failed", and stays until it is killed, or
// quits at once, or copies a text a little later and then quits. Another program may be named as the keeper.
// A file that it holds open without the close-on-exec mark stands for a lock.

#include "output/clipboard.h"
#include "platform/clipboardkeeper.h"

#include <QApplication>
#include <QClipboard>
#include <QPixmap>
#include <QTimer>
#include <QWidget>
#include <QX11Info>

#include <fcntl.h>

#include <cstdio>

namespace {

/// Longer than the keeper waits with its claim, as any user does.
constexpr int Pause = 50;

void copyTextAndQuit() {
    QX11Info::setAppTime(QX11Info::getTimestamp()); // that of the key press
    QGuiApplication::clipboard()->setText(QStringLiteral("typed"));
    QCoreApplication::quit();
}

} // namespace

int main(int argc, char **argv) {
    if (platform::isClipboardKeeperCall(argc, argv))
        return platform::runClipboardKeeper(argc, argv);
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    ::open(qPrintable(qEnvironmentVariable("TMPDIR") + QStringLiteral("/a-lock")), O_CREAT | O_RDWR, 0600);
    platform::setClipboardKeeperProgram(qEnvironmentVariable("TINDRA_TEST_KEEPER"));
    QWidget window;
    bool copied = true;
    for (const QString &path : arguments.mid(2))
        copied = copyPixmapToClipboard(QPixmap(path), &window) && copied;
    std::puts(copied ? "copied" : "failed");
    std::fflush(stdout);
    if (arguments.value(1) == QLatin1String("quit"))
        QTimer::singleShot(0, &application, &QCoreApplication::quit);
    else if (arguments.value(1) == QLatin1String("text"))
        QTimer::singleShot(Pause, &application, copyTextAndQuit);
    return QCoreApplication::exec();
}
