#pragma once

#include <QString>

#include <functional>

/// Looks a style variable up; an unknown key gives an empty string.
using StyleVariableLookup = std::function<QString(const QString &key)>;

/// Turns the text of a style sheet of ours into one that Qt understands.
///
/// First every `var(key)` becomes the variable's value, then every `scale(digits)` becomes that many
/// device pixels, truncated, in decimal: so a variable may hold a `scale()`. The key is taken without
/// trimming. What does not match, such as `scale(num)`, stays as it is.
QString preprocessStyleSheet(const QString &text, const StyleVariableLookup &variable, double scale);
