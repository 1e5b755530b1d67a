#include "platform/clipboardimage.h"

#include "platform/clipboardkeeper.h"
#include "platform/linux/descriptor.h"
#include "platform/linux/keptimage.h"
#include "platform/linux/linuxservices.h"
#include "platform/linux/x11client.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>
#include <QPointer>
#include <QProcess>
#include <QX11Info>

namespace {

QString &keeperProgram() {
    static QString program;
    return program;
}

/// Starts the process that keeps the image when we are gone. Without one the image is still there as long
/// as the program runs.
bool startKeeper(const QImage &image, quint32 copyTime) {
    const Descriptor file(platform::writeKeptImage(image, copyTime));
    if (!file.isValid())
        return false;
    QProcess keeper;
    keeper.setProgram(keeperProgram().isEmpty() ? QCoreApplication::applicationFilePath() : keeperProgram());
    keeper.setArguments({QLatin1String(platform::ClipboardKeeperArgument)});
    keeper.setWorkingDirectory(QDir::rootPath());
    keeper.setStandardInputFile(QStringLiteral("/proc/self/fd/%1").arg(file.get()));
    // Somebody may wait for the end of our output.
    keeper.setStandardOutputFile(QProcess::nullDevice());
    keeper.setStandardErrorFile(QProcess::nullDevice());
    return keeper.startDetached();
}

/// At the end of the program the toolkit offers what it still holds to the clipboard manager and waits up
/// to five seconds for it. A keeper has that image, so nothing is lost by letting go of it. Anything copied
/// since has no keeper and is worth the wait.
void releaseSelection(const QMimeData *kept) {
    QClipboard *clipboard = QGuiApplication::clipboard();
    if (kept && clipboard->ownsClipboard() && clipboard->mimeData() == kept)
        clipboard->clear();
}

class LinuxClipboardImage : public ClipboardImage {
public:
    bool setImage(const QImage &image, QWindow *owner) override;

private:
    quint32 claimTime();

    QMetaObject::Connection m_releaseAtExit;
    quint32 m_lastClaim = 0;
};

/// The server's time now, which is later than anything the keeper of the last copy claims.
quint32 LinuxClipboardImage::claimTime() {
    quint32 now = 0;
    do {
        now = quint32(QX11Info::getTimestamp());
    } while (m_lastClaim != 0 && now - m_lastClaim <= platform::KeeperDelay);
    m_lastClaim = now;
    return now;
}

bool LinuxClipboardImage::setImage(const QImage &image, QWindow *owner) {
    if (image.isNull() || !owner)
        return false;
    if (!QX11Info::isPlatformX11()) {
        QGuiApplication::clipboard()->setImage(image);
        return true;
    }
    // The server refuses a claim older than the newest one, and the last event that this program saw may
    // be long past when the capture process asks for a copy.
    const quint32 copyTime = claimTime();
    QX11Info::setAppTime(copyTime);
    const QPointer<QMimeData> data = new QMimeData;
    data->setImageData(image);
    QGuiApplication::clipboard()->setMimeData(data);
    QObject::disconnect(m_releaseAtExit);
    if (platform::clipboardSelectionOwner() != platform::SelectionOwner::ThisProcess)
        return false;
    if (startKeeper(image, copyTime)) {
        m_releaseAtExit =
            QObject::connect(qApp, &QCoreApplication::aboutToQuit, qApp, [data] { releaseSelection(data); });
    }
    return true;
}

} // namespace

void platform::setClipboardKeeperProgram(const QString &path) {
    keeperProgram() = path;
}

std::unique_ptr<ClipboardImage> makeClipboardImage() {
    return std::make_unique<LinuxClipboardImage>();
}
