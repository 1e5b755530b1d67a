#pragma once

#include <QLabel>

/// A label that behaves as a link: it tells clicks and the mouse coming and going. Given a focus policy, it
/// is underlined while it has the focus, and Space and Return click it. Screen readers call it a link.
class ClickableLabel : public QLabel {
    Q_OBJECT
public:
    explicit ClickableLabel(QWidget *parent = nullptr);
    explicit ClickableLabel(const QString &text, QWidget *parent = nullptr);

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    /// Pressed with the mouse, or with a key.
    void clicked();
    void hover();
    void leaved();

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void setUnderlined(bool underlined);
};
