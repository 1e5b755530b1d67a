#pragma once

#include "ui/windowconnections.h"

#include <QObject>

#include <functional>

class QApplication;
class QLayout;
class QScreen;
class QWidget;

/// Makes every window follow the logical DPI of the screen it stands on, without code in the windows.
///
/// An event filter on the application remembers the designed sizes of each widget and layout when it is
/// polished, and on each change of a window's scale (logical DPI / 96) recomputes all sizes from them,
/// applies the style sheets pre-processed for the new scale, and calls the registered callbacks. Designed
/// sizes are those at 96 DPI; every conversion truncates. A late child of a window that is shown already
/// is taken in when it is polished. All that is remembered of a styled object stands in its dynamic
/// properties, which `uistylerproperties.h` names; connections and callbacks are kept here until the object
/// goes. GUI thread only.
class UIStyler : public QObject {
    Q_OBJECT
public:
    using ScaleCallback = std::function<void(const double &scale)>;

    /// Installs the one filter; a second call does nothing.
    static void install(QApplication *application);
    /// The colour table that `var()` reads.
    static void setColorsIniPath(QApplication *application, const QString &path);
    /// The sheets of every window, in order; an empty list sets nothing.
    static void setStyleSheetPaths(QApplication *application, const QStringList &paths);
    /// Exempts a widget and all below it from the scaling of sizes; sheets and callbacks still reach them.
    static void setDisadjust(QWidget *widget, bool exempt);
    /// What to call, once per change, with the new scale of the object's window. Replaces an earlier one;
    /// forgotten with the object.
    static void setScaleCallback(QObject *object, const ScaleCallback &callback);
    /// Scales a widget's tree; nothing happens when that scale was applied to this widget last.
    static void applyScale(QWidget *widget, double scale);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit UIStyler(QObject *parent);

    void onPolish(QWidget *window);
    void onChildPolished(QWidget *child);
    void onShow(QWidget *window);
    void onScreenChanged(QWidget *window, QScreen *screen);
    void followScreen(QWidget *window, QScreen *screen);

    WindowConnections m_dpiConnections;
    WindowConnections m_screenConnections;
};

/// Logical DPI of the widget over 96, for widgets that draw with sizes of their own; 1.0 for null.
double widgetScale(const QWidget *widget);
