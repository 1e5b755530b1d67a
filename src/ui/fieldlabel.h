#pragma once

#include <QLabel>

/// A text that belongs to a field, its name or its unit: it looks as the field does, enabled or disabled.
class FieldLabel : public QLabel {
    Q_OBJECT
public:
    /// The field stays the caller's, and stays as long as the label.
    FieldLabel(const QString &text, QWidget *field, QWidget *parent = nullptr);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *m_field;
};
