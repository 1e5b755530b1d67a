#include "app/application.h"
#include "app/backgroundrest.h"
#include "app/picturetrial.h"
#include "app/programinformation.h"
#include "app/tindraeditor.h"
#include "app/unopenedfiles.h"
#include "platform/clipboardkeeper.h"
#include "platform/filesignature.h"
#include "platform/loadedlibrary.h"
#include "platform/memoryreturn.h"
#include "ui/builtinstyle.h"

#include <QIcon>
#include <QTimer>

#include <chrono>

namespace {

/// The toolkit lets go bit by bit of the pictures that it has drawn; what they leave is to go back too. And
/// captures often come in a row, with the window hidden between them.
constexpr std::chrono::minutes BackgroundWait(1);

int runEditor(int argc, char **argv) {
    Application application(argc, argv);
    if (application.checkRunningInstance())
        return 0;
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/res/Tindra.ico")));
    installBuiltInStyle(&application);
    TindraEditor editor;
    application.setMainWindow(&editor);
    const BackgroundRest rest(&editor, BackgroundWait, platform::returnFreedMemory);
    emit editor.commandArrived(Application::joinedArguments(QCoreApplication::arguments()));
    // That line may have ended the program already, inside a dialog of its own. The event loop would forget
    // that, but what waits for its end (the last event to the capture process) still has to be done.
    if (editor.hasLeft())
        QTimer::singleShot(0, &application, &QCoreApplication::quit);
    return QApplication::exec();
}

} // namespace

int main(int argc, char **argv) {
    if (platform::isClipboardKeeperCall(argc, argv))
        return platform::runClipboardKeeper(argc, argv);
    if (platform::isLibraryTrialCall(argc, argv))
        platform::runLibraryTrial();
    if (ProgramInformation::isCall(argc, argv))
        return ProgramInformation::run(argc, argv);
    if (PictureTrial::isCall(argc, argv))
        return PictureTrial::run(argc, argv);
    platform::keepOutCryptographySettings();
    if (UnopenedFiles::isCall(argc, argv))
        return UnopenedFiles::run(argc, argv);
    platform::returnLargeBlocks();
    return runEditor(argc, argv);
}
