#include "ui/menu.h"

#include "ui/popupshadow.h"

#include <QEvent>

bool Menu::event(QEvent *event) {
    if (event->type() == QEvent::WinIdChange)
        addPopupShadow(this);
    return QMenu::event(event);
}
