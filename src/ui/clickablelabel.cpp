#include "ui/clickablelabel.h"

#include <QKeyEvent>

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
    case QEvent::FocusIn:
        setUnderlined(true);
        break;
    case QEvent::FocusOut:
        setUnderlined(false);
        break;
    default:
        break;
    }
    return QLabel::eventFilter(watched, event);
}

void ClickableLabel::keyPressEvent(QKeyEvent *event) {
    switch (event->key()) {
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        emit clicked();
        break;
    default:
        QLabel::keyPressEvent(event);
    }
}

// A style sheet cannot do it: a label takes the font of its plain state only.
void ClickableLabel::setUnderlined(bool underlined) {
    QFont underlinedOrNot = font();
    underlinedOrNot.setUnderline(underlined);
    setFont(underlinedOrNot);
}
