#include "ui/fieldlabel.h"

#include <QEvent>

FieldLabel::FieldLabel(const QString &text, QWidget *field, QWidget *parent)
    : QLabel(text, parent), m_field(field) {
    setEnabled(field->isEnabled());
    field->installEventFilter(this);
}

bool FieldLabel::eventFilter(QObject *watched, QEvent *event) {
    if (watched == m_field && event->type() == QEvent::EnabledChange)
        setEnabled(m_field->isEnabled());
    return QLabel::eventFilter(watched, event);
}
