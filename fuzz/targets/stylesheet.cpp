// The scale in 1/96, a colour table, a zero byte and a style sheet that uses it.

#include "fuzz/support/input.h"
#include "fuzz/support/scratchfolder.h"
#include "ui/stylecolors.h"
#include "ui/stylesheettext.h"

#include <QSettings>

#include <limits>

namespace {

constexpr int UnscaledDpi = 96;

/// What `var` calls become, read by hand.
QString withValues(const QString &text, const StyleVariableLookup &variable) {
    const QString call = QStringLiteral("var(");
    QString result;
    int position = 0;
    for (;;) {
        const int found = text.indexOf(call, position);
        const int close = found < 0 ? -1 : text.indexOf(QLatin1Char(')'), found);
        if (close < 0)
            return result + text.mid(position);
        const int key = found + call.size();
        result += text.mid(position, found - position) + variable(text.mid(key, close - key));
        position = close + 1;
    }
}

QString scaled(qint64 pixels, double scale) {
    constexpr qint64 largest = std::numeric_limits<int>::max();
    // Beyond what a number of pixels can be, digits stand for nothing.
    const double size = pixels > largest ? 0 : static_cast<double>(pixels) * scale;
    return QString::number(size >= static_cast<double>(largest) ? largest : static_cast<qint64>(size));
}

/// What `scale` calls become, read by hand.
QString withPixels(const QString &text, double scale) {
    const QString call = QStringLiteral("scale(");
    QString result;
    int position = 0;
    for (;;) {
        const int found = text.indexOf(call, position);
        if (found < 0)
            return result + text.mid(position);
        int at = found + call.size();
        const int digits = at;
        qint64 pixels = 0;
        for (; at < text.size() && text[at] >= QLatin1Char('0') && text[at] <= QLatin1Char('9'); ++at)
            pixels =
                std::min<qint64>(pixels * 10 + text[at].unicode() - '0', std::numeric_limits<quint32>::max());
        result += text.mid(position, found - position);
        const bool isCall = at > digits && at < text.size() && text[at] == QLatin1Char(')');
        result += isCall ? scaled(pixels, scale) : text.mid(found, at - found);
        position = isCall ? at + 1 : at;
    }
}

void checkColor(const QString &value) {
    const QColor color = colorFromStyleValue(value);
    if (!color.isValid())
        return;
    const QString again =
        QStringLiteral("rgb(%1, %2, %3)").arg(color.red()).arg(color.green()).arg(color.blue());
    QColor opaque = color;
    opaque.setAlpha(255);
    require(colorFromStyleValue(again).rgba() == opaque.rgba(), "a colour, written again, is the same");
}

/// Of the table that the editor brings.
void checkOwnColor(const QString &key) {
    static const QSettings table(QStringLiteral(":/style/editor_variables.ini"), QSettings::IniFormat);
    const QColor color = StyleColors::instance().color(key);
    require(color == colorFromStyleValue(table.value(key, QString()).toString()),
            "a colour is what the table says of its key");
    require(table.contains(key) || !color.isValid(), "what is not in the table has no colour");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    Input input(data, size);
    const double scale = double(input.number(UnscaledDpi / 2, UnscaledDpi * 10)) / UnscaledDpi;
    const ScratchFolder folder;
    const QString path = folder.write(QStringLiteral("colors.ini"), input.until(0));
    const QSettings table(path, QSettings::IniFormat);
    const auto variable = [&table](const QString &key) { return table.value(key, QString()).toString(); };
    const QString sheet = QString::fromUtf8(input.rest());

    require(preprocessStyleSheet(sheet, variable, scale) == withPixels(withValues(sheet, variable), scale),
            "variables and sizes are replaced, and nothing else");
    const QStringList keys = table.allKeys();
    for (const QString &key : keys) {
        checkColor(variable(key));
        checkOwnColor(key);
    }
    checkColor(sheet);
    return 0;
}
