#pragma once

#include <QColor>
#include <QSettings>

/// The colours of the style variables, for code that paints by hand. GUI thread only.
class StyleColors {
public:
    /// Opened at first use, on the colour table of the style sheets.
    static StyleColors &instance();

    /// The colour under that key: `rgb(r, g, b)`, `rgba(r, g, b, a)` with a from 0 to 1, or a name that
    /// `QColor` knows. Invalid for an unknown key or a malformed value.
    QColor color(const QString &key) const;

private:
    StyleColors();

    QSettings m_table;
};

/// The colour that a value of the table stands for.
QColor colorFromStyleValue(const QString &value);
