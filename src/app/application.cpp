#include "app/application.h"

#include "app/namedmutex.h"
#include "app/orderlystart.h"
#include "app/scaleenvironment.h"
#include "app/tindraeditor.h"
#include "app/translation.h"
#include "platform/applicationidentity.h"
#include "platform/platform.h"
#include "platform/sessionend.h"
#include "services/programfolder.h"
#include "services/tracelog.h"
#include "services/workfolder.h"

#include <QFileInfo>
#include <QLocale>

namespace {

const QLatin1String serverName("TNDEMutex");

/// Runs ahead of the base class, which reads these settings as it is built, and fails without a display.
int &prepared(int &argc) {
    OrderlyStart::begin();
    prepareScaleEnvironment();
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    // The processor paints everything. Windows that graphics hardware could paint as well have its driver
    // loaded with the first of them, compiler and all, which doubles what a resident editor keeps.
    QCoreApplication::setAttribute(Qt::AA_ForceRasterWidgets);
    return argc;
}

} // namespace

Application::Application(int &argc, char **argv) : QApplication(prepared(argc), argv) {
    OrderlyStart::end();
    setApplicationName(QStringLiteral("Tindra"));
    setApplicationVersion(QStringLiteral(TINDRA_VERSION));
    loadTraceSettings();
    Platform::instance().applicationIdentity().setApplicationId(
        QStringLiteral("{7C5A40EF-A0FB-4BFC-874A-C0F2E0B9FA8E}\\Norvane\\Tindra\\Tindra.exe"));
    // The process lives on while its window is hidden.
    setQuitOnLastWindowClosed(false);
    loadTranslation();
    startCrashClient();
}

Application::~Application() = default;

bool Application::checkRunningInstance() {
    // Without a lock the question and the answer of two starts could cross, and both would be the editor.
    platform::NamedLock election(serverName);
    // One that is stopped while it holds the lock must not stop every later start: this one goes on without.
    election.lock();
    if (!m_ipcClient.Test(serverName)) {
        startServer();
        ownsWorkFolder();
        return false;
    }
    election.unlock();
    redirectArguments();
    return true;
}

void Application::setMainWindow(TindraEditor *mainWindow) {
    m_mainWindow = mainWindow;
    // Who sends from now on must learn that nobody takes it.
    connect(mainWindow, &TindraEditor::leaving, &m_ipcServer, &IpcServer::Close);
    Platform::instance().sessionEnd().onTerminate([self = QPointer<Application>(this)] {
        if (self)
            self->OnIpcMessage(QStringLiteral("/kill"));
    });
}

Wyvern *Application::olderCrashClient() {
    auto *application = qobject_cast<Application *>(QCoreApplication::instance());
    return application ? &application->m_crashClient : nullptr;
}

QString Application::joinedArguments(const QStringList &arguments) {
    QString line;
    for (const QString &argument : arguments) {
        if (!line.isEmpty())
            line.append(QLatin1Char(' '));
        line.append(QLatin1Char('"') + argument + QLatin1Char('"'));
    }
    return line;
}

void Application::OnIpcMessage(QString message) {
    if (m_mainWindow)
        emit m_mainWindow->commandArrived(message);
}

void Application::loadTranslation() {
    if (installProgramTranslation())
        installToolkitTranslation();
}

void Application::startCrashClient() {
    if (m_crashClient.isLoaded())
        return;
    const QString texts = QFileInfo(tr("WyvernC_EN.dll")).completeBaseName();
    m_crashClient.start(libraryInProgramFolder(QStringLiteral("WyvernC")), libraryInProgramFolder(texts),
                        QStringLiteral("Tindra"),
                        applicationVersion() + QLatin1Char('_') + QLocale::system().name());
}

void Application::startServer() {
    trace(1, QStringLiteral("StartServer"), "%ls", applicationVersion().utf16());
    m_ipcServer.Listen(serverName);
    connect(&m_ipcServer, &IpcServer::sig_ipcMessage, this, &Application::OnIpcMessage);
}

void Application::redirectArguments() {
    // Not held while the line is sent: the server takes the clients one after the other, and a start that
    // waits for it must not hold up those behind it.
    NamedMutex mutex(QStringLiteral("TNDERedirectMutex"));
    mutex.lock();
    const QString line = joinedArguments(arguments());
    mutex.unlock();
    m_ipcClient.Send(serverName, line);
}
