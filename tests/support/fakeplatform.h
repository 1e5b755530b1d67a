#pragma once

#include "platform/applicationidentity.h"
#include "platform/capturechannel.h"
#include "platform/clipboardimage.h"
#include "platform/filemanager.h"
#include "platform/foregroundwindow.h"
#include "platform/platform.h"
#include "platform/sessionend.h"
#include "support/fakeprinters.h"

#include <QImage>
#include <QStringList>
#include <QVector>

#include <functional>

/// A desktop that does nothing and remembers what it was asked for.
class FakePlatform : public Platform,
                     private ApplicationIdentity,
                     private CaptureChannel,
                     private ClipboardImage,
                     private FileManager,
                     private ForegroundWindow,
                     private SessionEnd {
public:
    struct Event {
        quint32 message;
        quint64 wParam;
        qint64 lParam;
        bool operator==(const Event &o) const {
            return message == o.message && wParam == o.wParam && lParam == o.lParam;
        }
    };

    /// Puts a fresh fake in the place of the system's platform and returns it.
    static FakePlatform *install();

    bool captureProcessPresent = true;
    QVector<Event> posted; ///< events that reached the capture process
    std::function<void(quint32 message)> onPost;
    QString applicationId;
    QImage clipboard;
    bool clipboardWorks = true;
    QStringList shownFiles;
    bool fileManagerWorks = true;
    FakePrinters printerList;
    int broughtToFront = 0;
    bool nativeShadow = false;
    bool olderCrashClient = false;
    bool pluginsCanBeHosted = true;
    QVector<QWindow *> shadowed; ///< windows that got the desktop's shadow
    std::function<void()> terminate;

    ApplicationIdentity &applicationIdentity() override { return *this; }
    CaptureChannel &captureChannel() override { return *this; }
    ClipboardImage &clipboardImage() override { return *this; }
    FileManager &fileManager() override { return *this; }
    ForegroundWindow &foregroundWindow() override { return *this; }
    Printers &printers() override { return printerList; }
    SessionEnd &sessionEnd() override { return *this; }
    bool hasNativePopupShadow() const override { return nativeShadow; }
    bool usesOlderCrashClient() const override { return olderCrashClient; }
    bool canHostPlugins() const override { return pluginsCanBeHosted; }
    void addPopupShadow(QWindow *window) override { shadowed.append(window); }

    /// The numbers of the posted events, in order.
    QVector<quint32> postedMessages() const;

private:
    void setApplicationId(const QString &id) override { applicationId = id; }
    bool isCaptureProcessPresent() override { return captureProcessPresent; }
    bool post(quint32 message, quint64 wParam, qint64 lParam) override;
    qint64 send(quint32 message, quint64 wParam, qint64 lParam) override;
    bool setImage(const QImage &image, QWindow *owner) override;
    bool showFile(const QString &path) override;
    void bringToFront(QWindow *window) override;
    void onTerminate(std::function<void()> handler) override;
};
