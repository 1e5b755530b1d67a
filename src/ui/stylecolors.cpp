#include "ui/stylecolors.h"

#include <QStringList>

StyleColors &StyleColors::instance() {
    static StyleColors colors;
    return colors;
}

StyleColors::StyleColors() : m_table(QStringLiteral(":/style/editor_variables.ini"), QSettings::IniFormat) {}

QColor StyleColors::color(const QString &key) const {
    return colorFromStyleValue(m_table.value(key, QString()).toString());
}

QColor colorFromStyleValue(const QString &value) {
    if (!value.contains(QLatin1String("rgb(")) && !value.contains(QLatin1String("rgba("))) {
        QColor named;
        named.setNamedColor(value);
        return named;
    }
    const int open = value.indexOf(QLatin1Char('('));
    const int close = value.lastIndexOf(QLatin1Char(')'));
    const QStringList parts = value.mid(open + 1, close - open - 1).split(QLatin1Char(','));
    if (parts.size() != 3 && parts.size() != 4)
        return QColor();
    const double opacity = parts.size() == 4 ? parts[3].toDouble() : 1.0;
    // Asked this way, what is no number is out of range too.
    if (!(opacity >= 0.0 && opacity <= 1.0))
        return QColor();
    return QColor(parts[0].toInt(), parts[1].toInt(), parts[2].toInt(), static_cast<int>(opacity * 255.0));
}
