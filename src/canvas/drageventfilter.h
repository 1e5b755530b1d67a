#pragma once

#include <QObject>

/// Moves a window without a frame by its contents: watches the window it is installed on and eats the presses
/// and moves that it uses.
class DragEventFilter : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override;
};
