#pragma once

#include <QLabel>

/// A label that behaves as a link: it tells clicks and the mouse coming and going.
class ClickableLabel : public QLabel {
    Q_OBJECT
public:
    explicit ClickableLabel(QWidget *parent = nullptr);
    explicit ClickableLabel(const QString &text, QWidget *parent = nullptr);

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    void clicked();
    void hover();
    void leaved();

private:
    void watchItself();
};
