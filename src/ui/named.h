#pragma once

#include <QLatin1String>

/// Gives a new widget the name by which the style sheet and the tests know it; returns the widget.
template <typename Widget> Widget *named(Widget *widget, const char *name) {
    widget->setObjectName(QLatin1String(name));
    return widget;
}
