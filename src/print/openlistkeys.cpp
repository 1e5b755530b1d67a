#include "print/openlistkeys.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QKeyEvent>

OpenListKeys::OpenListKeys(QComboBox *box) : QObject(box), m_box(box) {
    box->view()->installEventFilter(this);
}

bool OpenListKeys::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() != QEvent::ShortcutOverride && event->type() != QEvent::KeyPress)
        return QObject::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent *>(event)->key();
    const bool takes = key == Qt::Key_Return || key == Qt::Key_Enter;
    if (!takes && key != Qt::Key_Escape)
        return QObject::eventFilter(watched, event);
    event->accept();
    if (event->type() == QEvent::ShortcutOverride)
        return true;
    m_box->hidePopup();
    if (takes && m_box->view()->currentIndex().isValid())
        m_box->setCurrentIndex(m_box->view()->currentIndex().row());
    return true;
}
