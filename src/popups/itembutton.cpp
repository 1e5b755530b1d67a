#include "popups/itembutton.h"

ItemButton::ItemButton(QWidget *parent) : QPushButton(parent) {
    setCursor(Qt::PointingHandCursor);
}
