#pragma once

#include <QObject>
#include <QPointer>

class CoachmarkWidget;
class QWidget;

/// The bubble that points the user to the AI tools' button until he closes it for good, in this run or an
/// earlier one.
///
/// Follows the button wherever the toolbar moves it, and is not to be seen while the button is not.
class AiToolsCoachmark : public QObject {
    Q_OBJECT
public:
    /// Both are borrowed and outlive this object; the bubble is the window's child. Hidden at first.
    AiToolsCoachmark(QWidget *button, QWidget *window);

    /// Places the bubble and shows it above everything else.
    void show();
    /// Places a bubble that is shown anew and raises it.
    void follow() const;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *m_button;
    bool m_isWanted = false;
    QPointer<CoachmarkWidget> m_bubble; ///< null once it was closed
};
