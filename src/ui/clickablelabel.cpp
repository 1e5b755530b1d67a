#include "ui/clickablelabel.h"

#include <QEvent>

ClickableLabel::ClickableLabel(QWidget *parent) : QLabel(parent) {
    watchItself();
}

ClickableLabel::ClickableLabel(const QString &text, QWidget *parent) : QLabel(text, parent) {
    watchItself();
}

void ClickableLabel::watchItself() {
    installEventFilter(this);
    setAttribute(Qt::WA_Hover);
}

bool ClickableLabel::eventFilter(QObject *watched, QEvent *event) {
    switch (event->type()) {
    case QEvent::HoverEnter:
        setCursor(Qt::PointingHandCursor);
        emit hover();
        break;
    case QEvent::HoverLeave:
        setCursor(Qt::ArrowCursor);
        emit leaved();
        break;
    case QEvent::MouseButtonPress:
        emit clicked();
        break;
    default:
        break;
    }
    return QLabel::eventFilter(watched, event);
}
