#pragma once

#include "ui/menu.h"

class TindraEditor;

/// The menu of the help button. Its keys work in the whole window, wherever the menu hangs.
class HelpMenu : public Menu {
    Q_OBJECT
public:
    HelpMenu(TindraEditor *window, QWidget *parent);
};
