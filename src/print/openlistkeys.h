#pragma once

#include <QObject>

class QComboBox;

/// Keeps Escape and Return in the open list of a combo box, in a window that has actions with these keys:
/// Escape closes the list, Return takes the current row.
///
/// By itself a list closes at the question whose key it is, and then the window's action answers it too.
class OpenListKeys : public QObject {
    Q_OBJECT
public:
    /// Lives as long as the box.
    explicit OpenListKeys(QComboBox *box);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QComboBox *m_box;
};
