#include "ui/stylesheettext.h"

#include <QRegularExpression>

#include <algorithm>
#include <limits>

namespace {

/// In pixels; beyond it a number would wrap.
constexpr double LargestSize = std::numeric_limits<int>::max();

/// Replaces each match of `pattern` by what `replacement` makes of its first group. The text put in is
/// not searched again by the same pass, so a value that holds its own key cannot run for ever.
QString replaceCalls(QString text, const QRegularExpression &pattern,
                     const std::function<QString(const QString &)> &replacement) {
    int position = 0;
    QRegularExpressionMatch match;
    while ((match = pattern.match(text, position)).hasMatch()) {
        const QString value = replacement(match.captured(1));
        text.replace(match.capturedStart(), match.capturedLength(), value);
        position = match.capturedStart() + value.size();
    }
    return text;
}

} // namespace

QString preprocessStyleSheet(const QString &text, const StyleVariableLookup &variable, double scale) {
    static const QRegularExpression varCall(QStringLiteral("var\\(([^\\)]*)\\)"));
    static const QRegularExpression scaleCall(QStringLiteral("scale\\(([0-9]+)\\)"));
    const QString withValues = replaceCalls(text, varCall, variable);
    return replaceCalls(withValues, scaleCall, [scale](const QString &digits) {
        return QString::number(static_cast<int>(std::min(digits.toInt() * scale, LargestSize)));
    });
}
