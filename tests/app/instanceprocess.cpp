#include "app/application.h"
#include "app/tindraeditor.h"

#include <QTextStream>

/// A start of the program that tells on standard output which role it got and what lines it was given.
int main(int argc, char **argv) {
    Application application(argc, argv);
    QTextStream out(stdout);
    if (application.checkRunningInstance()) {
        out << "redirected" << Qt::endl;
        return 0;
    }
    TindraEditor editor;
    application.setMainWindow(&editor);
    QObject::connect(&editor, &TindraEditor::commandArrived, &editor,
                     [&out](const QString &line) { out << "line " << line << Qt::endl; });
    out << "first" << Qt::endl;
    return QApplication::exec();
}
