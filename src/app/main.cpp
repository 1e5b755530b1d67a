#include "app/application.h"
#include "app/tindraeditor.h"
#include "platform/clipboardkeeper.h"
#include "platform/platform.h"
#include "ui/uistyler.h"

#include <QIcon>

namespace {

void installStyle(Application &application) {
    UIStyler::install(&application);
    UIStyler::setColorsIniPath(&application, QStringLiteral(":/style/editor_variables.ini"));
    QStringList sheets = {QStringLiteral(":/style/editor.qss")};
    if (!Platform::instance().hasNativePopupShadow())
        sheets.append(QStringLiteral(":/style/editor_non_dwm_shadows.qss"));
    UIStyler::setStyleSheetPaths(&application, sheets);
}

int runEditor(int argc, char **argv) {
    Application application(argc, argv);
    if (application.checkRunningInstance())
        return 0;
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/res/Tindra.ico")));
    installStyle(application);
    TindraEditor editor;
    application.setMainWindow(&editor);
    emit editor.commandArrived(Application::joinedArguments(QCoreApplication::arguments()));
    return QApplication::exec();
}

} // namespace

int main(int argc, char **argv) {
    if (platform::isClipboardKeeperCall(argc, argv))
        return platform::runClipboardKeeper(argc, argv);
    return runEditor(argc, argv);
}
