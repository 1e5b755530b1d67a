#pragma once

#include <QComboBox>

/// A combo box whose list follows the style sheet and has the desktop's shadow where there is one.
class ComboBox : public QComboBox {
    Q_OBJECT
public:
    explicit ComboBox(QWidget *parent = nullptr);

    bool eventFilter(QObject *watched, QEvent *event) override;
};
