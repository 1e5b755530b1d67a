#include "platform/applicationidentity.h"
#include "platform/capturechannel.h"
#include "platform/clipboardimage.h"
#include "platform/filemanager.h"
#include "platform/foregroundwindow.h"
#include "platform/linux/linuxservices.h"
#include "platform/platform.h"
#include "platform/printer.h"
#include "platform/sessionend.h"

#include <QGuiApplication>

namespace {

/// The desktop knows programs by the name of their desktop entry, whatever id the program goes by.
class DesktopEntryIdentity : public ApplicationIdentity {
public:
    void setApplicationId(const QString &id) override {
        if (!id.isEmpty())
            QGuiApplication::setDesktopFileName(QStringLiteral("tindra-editor"));
    }
};

class LinuxPlatform : public Platform {
public:
    ApplicationIdentity &applicationIdentity() override { return m_identity; }
    CaptureChannel &captureChannel() override { return *m_captureChannel; }
    ClipboardImage &clipboardImage() override { return *m_clipboardImage; }
    FileManager &fileManager() override { return *m_fileManager; }
    ForegroundWindow &foregroundWindow() override { return *m_foregroundWindow; }
    Printers &printers() override { return *m_printers; }
    SessionEnd &sessionEnd() override { return *m_sessionEnd; }
    bool hasNativePopupShadow() const override { return false; }
    // On Windows the host is a 32-bit library that needs a 64-bit system of a certain age below it. Here
    // program and host have the word size of the system, whose loader refuses what does not fit, and every
    // system that the toolkit runs on is new enough.
    bool canHostPlugins() const override { return true; }

private:
    DesktopEntryIdentity m_identity;
    std::unique_ptr<CaptureChannel> m_captureChannel = makeCaptureChannel();
    std::unique_ptr<ClipboardImage> m_clipboardImage = makeClipboardImage();
    std::unique_ptr<FileManager> m_fileManager = makeFileManager();
    std::unique_ptr<ForegroundWindow> m_foregroundWindow = makeForegroundWindow();
    std::unique_ptr<Printers> m_printers = makePrinters();
    std::unique_ptr<SessionEnd> m_sessionEnd = makeSessionEnd();
};

} // namespace

std::unique_ptr<Platform> createPlatform() {
    return std::make_unique<LinuxPlatform>();
}
