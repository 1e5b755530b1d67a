#include "popups/combobox.h"

#include "ui/popupshadow.h"

#include <QEvent>
#include <QListView>

ComboBox::ComboBox(QWidget *parent) : QComboBox(parent) {
    // The style's own list ignores the sheet's rules for items.
    setView(new QListView(this));
    setCursor(Qt::PointingHandCursor);
    view()->window()->installEventFilter(this);
}

bool ComboBox::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::WinIdChange)
        addPopupShadow(qobject_cast<QWidget *>(watched));
    return QComboBox::eventFilter(watched, event);
}
