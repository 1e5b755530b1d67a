#pragma once

#include <QString>

/// What the pages of the preferences have in common in their forms. Lengths are at 96 per inch.
namespace FormParts {

constexpr int RowSpacing = 8;
constexpr int FieldSpacing = 8; // between a label and its field, and between two fields

/// Gives a new widget the name by which the style sheet and the tests know it.
template <typename Widget> Widget *named(Widget *widget, const char *name) {
    widget->setObjectName(QLatin1String(name));
    return widget;
}

} // namespace FormParts
