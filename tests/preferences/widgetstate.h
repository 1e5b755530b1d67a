#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QSpinBox>
#include <QStringList>
#include <QTableWidget>

/// What a widget of the preferences shows, as text. A null text for widgets that hold no value.
inline QString widgetState(const QWidget *widget) {
    if (const auto *box = qobject_cast<const QCheckBox *>(widget))
        return box->isChecked() ? QStringLiteral("on") : QStringLiteral("off");
    if (const auto *combo = qobject_cast<const QComboBox *>(widget))
        return combo->currentText();
    if (const auto *spin = qobject_cast<const QSpinBox *>(widget))
        return QString::number(spin->value());
    if (const auto *edit = qobject_cast<const QLineEdit *>(widget))
        return edit->text();
    if (const auto *table = qobject_cast<const QTableWidget *>(widget)) {
        QStringList cells;
        for (int column = 0; column < table->columnCount(); ++column) {
            for (int row = 0; row < table->rowCount() && table->item(row, column); ++row)
                cells.append(table->item(row, column)->text());
        }
        return cells.isEmpty() ? QStringLiteral("none") : cells.join(QLatin1Char(','));
    }
    return {};
}

/// Brings the widget into that state as a program does, without a click.
inline void setWidgetState(QWidget *widget, const QString &state) {
    if (auto *box = qobject_cast<QCheckBox *>(widget))
        box->setChecked(state == QStringLiteral("on"));
    else if (auto *combo = qobject_cast<QComboBox *>(widget))
        combo->setCurrentIndex(combo->findText(state));
    else if (auto *spin = qobject_cast<QSpinBox *>(widget))
        spin->setValue(state.toInt());
    else if (auto *edit = qobject_cast<QLineEdit *>(widget))
        edit->setText(state);
}
