#include "support/modalanswers.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QEvent>
#include <QLabel>

namespace {

constexpr int PollInterval = 5; // milliseconds

QString labelText(const QWidget *dialog, const QString &name) {
    const auto *label = dialog->findChild<QLabel *>(name);
    // Long words carry invisible break points.
    return label ? label->text().remove(QChar(0x200B)) : QString();
}

} // namespace

ModalAnswers::ModalAnswers(QObject *parent) : QObject(parent) {
    connect(&m_timer, &QTimer::timeout, this, &ModalAnswers::onTick);
    m_timer.start(PollInterval);
}

void ModalAnswers::add(Answer answer) {
    m_answers.append(std::move(answer));
}

void ModalAnswers::addPress(const QString &text) {
    add([text](QWidget *dialog) { press(dialog, text); });
}

void ModalAnswers::addTickAndPress(const QString &text) {
    add([text](QWidget *dialog) {
        if (auto *box = dialog->findChild<QCheckBox *>())
            box->setChecked(true);
        press(dialog, text);
    });
}

void ModalAnswers::addClose() {
    add([](QWidget *dialog) { dialog->close(); });
}

void ModalAnswers::press(QWidget *dialog, const QString &text) {
    const QList<QAbstractButton *> buttons = dialog->findChildren<QAbstractButton *>();
    for (QAbstractButton *button : buttons) {
        if (button->text().remove(QLatin1Char('&')).startsWith(text)) {
            button->click();
            return;
        }
    }
    qWarning("the dialog has no button \"%s\"", qPrintable(text));
    dialog->close();
}

void ModalAnswers::onTick() {
    QWidget *dialog = QApplication::activeModalWidget();
    if (!dialog || !dialog->isVisible() || dialog == m_answered)
        return;
    const QString details = labelText(dialog, QStringLiteral("informativeText_"));
    m_texts.append(labelText(dialog, QStringLiteral("text_")) +
                   (details.isEmpty() ? QString() : QLatin1Char('|') + details));
    if (m_answers.isEmpty()) {
        ++m_unexpected;
        qWarning("unexpected dialog: %s", qPrintable(m_texts.last()));
        dialog->close();
        return;
    }
    m_answered = dialog;
    dialog->installEventFilter(this);
    m_answers.takeFirst()(dialog);
}

bool ModalAnswers::eventFilter(QObject *object, QEvent *event) {
    // Shown again, it asks again.
    if (event->type() == QEvent::Hide && object == m_answered)
        m_answered = nullptr;
    return false;
}
