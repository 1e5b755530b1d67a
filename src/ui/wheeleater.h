#pragma once

#include <QObject>

/// An event filter that keeps the mouse wheel from the widgets it is installed on.
class WheelEater : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override;
};
