// A program that copies pictures as the editor does, and is its own clipboard keeper.
//
// usage: [TINDRA_TEST_KEEPER=PROGRAM] clipboardcopier stay|quit IMAGE…
//
// Copies the images one right after the other, says "copied" or "failed", and stays until it is killed, or
// quits at once. Another program may be named as the keeper. A file that it holds open without the
// close-on-exec mark stands for a lock.

#include "platform/clipboardimage.h"
#include "platform/clipboardkeeper.h"
#include "platform/platform.h"

#include <QGuiApplication>
#include <QImage>
#include <QTimer>
#include <QWindow>

#include <fcntl.h>

#include <cstdio>

int main(int argc, char **argv) {
    if (platform::isClipboardKeeperCall(argc, argv))
        return platform::runClipboardKeeper(argc, argv);
    QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    ::open(qPrintable(qEnvironmentVariable("TMPDIR") + QStringLiteral("/a-lock")), O_CREAT | O_RDWR, 0600);
    platform::setClipboardKeeperProgram(qEnvironmentVariable("TINDRA_TEST_KEEPER"));
    QWindow window;
    window.create();
    bool copied = true;
    for (const QString &path : arguments.mid(2))
        copied = Platform::instance().clipboardImage().setImage(QImage(path), &window) && copied;
    std::puts(copied ? "copied" : "failed");
    std::fflush(stdout);
    if (arguments.value(1) == QLatin1String("quit"))
        QTimer::singleShot(0, &application, &QCoreApplication::quit);
    return QCoreApplication::exec();
}
