#include "ui/clickablelabel.h"

#include <QAccessibleWidget>
#include <QKeyEvent>

namespace {

/// A label is a mere text for those who do not see it; this one can be pressed.
class LinkFace : public QAccessibleWidget {
public:
    explicit LinkFace(ClickableLabel *label) : QAccessibleWidget(label, QAccessible::Link), m_label(label) {}

    QString text(QAccessible::Text kind) const override {
        const QString given = QAccessibleWidget::text(kind);
        return kind == QAccessible::Name && given.isEmpty() ? m_label->text() : given;
    }
    QStringList actionNames() const override {
        return QStringList(pressAction()) + QAccessibleWidget::actionNames();
    }
    void doAction(const QString &name) override {
        if (name == pressAction())
            emit m_label->clicked();
        else
            QAccessibleWidget::doAction(name);
    }

private:
    ClickableLabel *m_label; ///< which the face does not outlive
};

QAccessibleInterface *makeLinkFace(const QString &, QObject *object) {
    auto *label = qobject_cast<ClickableLabel *>(object);
    return label ? new LinkFace(label) : nullptr;
}

void installLinkFace() {
    static const bool isInstalled = [] {
        QAccessible::installFactory(makeLinkFace);
        return true;
    }();
    Q_UNUSED(isInstalled)
}

} // namespace

ClickableLabel::ClickableLabel(QWidget *parent) : QLabel(parent) {
    installLinkFace();
    installEventFilter(this);
    setAttribute(Qt::WA_Hover);
}

ClickableLabel::ClickableLabel(const QString &text, QWidget *parent) : ClickableLabel(parent) {
    // Not by the base class: its face is made for good when it gets a text, and would be that of a label.
    setText(text);
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
