#include "canvas/drageventfilter.h"

#include <QMouseEvent>
#include <QWidget>

namespace {

/// Where the mouse was last, on the screen. One for all windows, as there is but one mouse.
QPoint &lastPosition() {
    static QPoint position;
    return position;
}

} // namespace

bool DragEventFilter::eventFilter(QObject *watched, QEvent *event) {
    auto *window = qobject_cast<QWidget *>(watched);
    if (!window || (event->type() != QEvent::MouseButtonPress && event->type() != QEvent::MouseMove))
        return QObject::eventFilter(watched, event);
    const auto *mouse = static_cast<QMouseEvent *>(event);
    if (event->type() == QEvent::MouseMove) {
        if (!(mouse->buttons() & Qt::LeftButton))
            return QObject::eventFilter(watched, event);
        window->move(window->pos() + mouse->globalPos() - lastPosition());
    }
    lastPosition() = mouse->globalPos();
    return true;
}
