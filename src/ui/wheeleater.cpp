#include "ui/wheeleater.h"

#include <QEvent>

bool WheelEater::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::Wheel)
        return true;
    return QObject::eventFilter(watched, event);
}
