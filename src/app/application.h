#pragma once

#include "ipc/ipcclient.h"
#include "ipc/ipcserver.h"
#include "services/wyvern.h"

#include <QApplication>
#include <QPointer>

class TindraEditor;

/// The process: what exists once in it, and the rule that only one editor runs per user.
class Application : public QApplication {
    Q_OBJECT
public:
    Application(int &argc, char **argv);
    ~Application() override;

    /// True: another editor runs and has been handed this start's arguments. False: this process is the
    /// editor from now on, and its server listens.
    bool checkRunningInstance();
    /// Names the window that command lines go to; it stays the caller's. A request of the system to end
    /// the process reaches it from now on as "/kill".
    void setMainWindow(TindraEditor *mainWindow);

    /// The process's crash client of older systems; null in a process that is no `Application`.
    static Wyvern *olderCrashClient();

    /// The arguments as one line, each in double quotes. A quote inside an argument is not escaped.
    static QString joinedArguments(const QStringList &arguments);

public slots:
    /// Passes a command line on to the main window; dropped while there is none.
    void OnIpcMessage(QString message);

private:
    void loadTranslation();
    void startCrashClient();
    void startServer();
    void redirectArguments();

    QPointer<TindraEditor> m_mainWindow;
    IpcServer m_ipcServer;
    IpcClient m_ipcClient;
    Wyvern m_crashClient;
};
