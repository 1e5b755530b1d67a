#pragma once

#include <QMenu>

/// The program's menu: what the style sheet selects, with the desktop's shadow where there is one.
class Menu : public QMenu {
    Q_OBJECT
public:
    using QMenu::QMenu;

protected:
    bool event(QEvent *event) override;
};
