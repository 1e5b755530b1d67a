#pragma once

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTimer>

#include <functional>

class QWidget;

/// Answers modal dialogs while it lives: the first that opens gets the first answer, and so on.
///
/// An answer must end its dialog. A dialog that nobody expects is closed and noted; check `isDone` at the
/// end of the test. One at a time.
class ModalAnswers : public QObject {
    Q_OBJECT
public:
    using Answer = std::function<void(QWidget *dialog)>;

    explicit ModalAnswers(QObject *parent = nullptr);

    void add(Answer answer);
    /// Presses the button whose text, without mnemonics, begins with `text`.
    void addPress(const QString &text);
    /// The same after ticking the dialog's check box.
    void addTickAndPress(const QString &text);
    /// Closes the dialog by its frame.
    void addClose();

    /// Whether exactly the expected dialogs came.
    bool isDone() const { return m_answers.isEmpty() && m_unexpected == 0; }
    /// Text of each dialog so far, its details behind a "|".
    QStringList texts() const { return m_texts; }

    static void press(QWidget *dialog, const QString &text);

private:
    bool eventFilter(QObject *object, QEvent *event) override;
    void onTick();

    QTimer m_timer;
    QList<Answer> m_answers;
    QStringList m_texts;
    /// Has its answer and is on its way out: it may take a turn of the event loop to go.
    QPointer<QWidget> m_answered;
    int m_unexpected = 0;
};
