#pragma once

#include <memory>

class ApplicationIdentity;
class CaptureChannel;
class ClipboardImage;
class FileManager;
class ForegroundWindow;
class Printers;
class QWindow;
class SessionEnd;

/// The services of the desktop that the program needs, one object each.
///
/// The program asks `instance()`; a test puts a fake in its place before anything else runs. What only
/// touches files (locks, folders, configuration) has no object here: tests point it elsewhere through
/// the environment. GUI thread only.
class Platform {
public:
    virtual ~Platform() = default;

    virtual ApplicationIdentity &applicationIdentity() = 0;
    virtual CaptureChannel &captureChannel() = 0;
    virtual ClipboardImage &clipboardImage() = 0;
    virtual FileManager &fileManager() = 0;
    virtual ForegroundWindow &foregroundWindow() = 0;
    virtual Printers &printers() = 0;
    virtual SessionEnd &sessionEnd() = 0;

    /// Whether menus and popups get a shadow from the desktop; without one they draw a border.
    virtual bool hasNativePopupShadow() const = 0;
    /// Gives the frameless window that shadow; asked only where there is one.
    virtual void addPopupShadow(QWindow *) {}

    /// Whether the system is of the generation that only the maker's older crash client serves.
    virtual bool usesOlderCrashClient() const { return false; }

    /// Whether this process is one that the host of the AI tools' plug-ins was made for; whether it is
    /// installed is another question.
    virtual bool canHostPlugins() const = 0;

    /// The one platform of the process; the operating system's own is made at first use.
    static Platform &instance();
    /// Replaces it; null brings the operating system's own back at the next use.
    static void setInstance(std::unique_ptr<Platform> platform);
};

/// Makes the services of the operating system that this build is for.
std::unique_ptr<Platform> createPlatform();
