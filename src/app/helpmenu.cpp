#include "app/helpmenu.h"

#include "app/tindraeditor.h"

HelpMenu::HelpMenu(TindraEditor *window, QWidget *parent) : Menu(parent) {
    setObjectName(QStringLiteral("help_"));
    QAction *help = addAction(tr("Help (&H)"), window, &TindraEditor::onClickHelp, Qt::Key_F1);
    addAction(tr("Read me (&R)"), window, &TindraEditor::onClickReadme);
    addSeparator();
    addAction(tr("FAQ (&F)"), window, &TindraEditor::onClickFAQ);
    addAction(tr("Customer services (&S)"), window, &TindraEditor::onClickCustomerServices);
    addSeparator();
    addAction(tr("Brindle Page (&A)"), window, &TindraEditor::onClickBrindlePage);
    addAction(tr("Norvane Page (&E)"), window, &TindraEditor::onClickNorvanePage);
    addSeparator();
    addAction(tr("About (&I)"), window, [window] { window->onClickAbout(); });
    // The menu hangs on a button or in the overflow menu, and a key of a hidden one is dead.
    window->addAction(help);
}
