#include "app/tindraeditor.h"

#include "services/tracelog.h"

TindraEditor::TindraEditor(QWidget *parent) : QMainWindow(parent) {
    setObjectName(QStringLiteral("TindraEditorClass"));
    connect(this, &TindraEditor::commandArrived, this, &TindraEditor::treatCommand);
}

void TindraEditor::treatCommand(QString cmdline) {
    trace(2, QStringLiteral("treatCommand"), "%ls", cmdline.utf16());
}
