#pragma once

/// Names of the dynamic properties in which the styler keeps its state. Other code, tests and style tools
/// set and read them by these names.
namespace UIStylerProperty {

// On the application.
constexpr const char *IsInstalledEventFilter = "UI_STYLER_PROPERTY_IS_INSTALLED_EVENT_FILTER";
constexpr const char *ColorsIniPath = "UI_STYLER_PROPERTY_COLORS_INI_PATH";

// On the application, for every window, or on a widget, for itself and the windows below it.
constexpr const char *QssPaths = "UI_STYLER_PROPERTY_QSS_PATHS";

// On widgets and layouts.
constexpr const char *Scale = "UI_STYLER_PROPERTY_SCALE";
constexpr const char *IsWindowLoaded = "UI_STYLER_PROPERTY_IS_WINDOW_LOADED";
constexpr const char *IsSavedInitialSize = "UI_STYLER_PROPERTY_IS_SAVED_INITIAL_SIZE";
constexpr const char *IsDisadjust = "UI_STYLER_PROPERTY_IS_DISADJUST";
constexpr const char *DisableScreenChanged = "UI_STYLER_PROPERTY_DISABLE_SCREEN_CHANGED";
constexpr const char *WindowPrevWidth = "UI_STYLER_PROPERTY_WINDOW_PREV_WIDTH";
constexpr const char *WindowPrevHeight = "UI_STYLER_PROPERTY_WINDOW_PREV_HEIGHT";

// Designed sizes, at 96 DPI.
constexpr const char *InitialFontPt = "UI_STYLER_PROPERTY_INITIAL_FONT_PT";
constexpr const char *InitialIconWidth = "UI_STYLER_PROPERTY_INITIAL_ICON_WIDTH";
constexpr const char *InitialIconHeight = "UI_STYLER_PROPERTY_INITIAL_ICON_HEIGHT";
constexpr const char *InitialMaxWidth = "UI_STYLER_PROPERTY_INITIAL_MAX_WIDTH";
constexpr const char *InitialMaxHeight = "UI_STYLER_PROPERTY_INITIAL_MAX_HEIGHT";
constexpr const char *InitialMinWidth = "UI_STYLER_PROPERTY_INITIAL_MIN_WIDTH";
constexpr const char *InitialMinHeight = "UI_STYLER_PROPERTY_INITIAL_MIN_HEIGHT";
constexpr const char *InitialLayoutSpace = "UI_STYLER_PROPERTY_INITIAL_LAYOUT_SPACE";
constexpr const char *InitialLayoutLeft = "UI_STYLER_PROPERTY_INITIAL_LAYOUT_LEFT";
constexpr const char *InitialLayoutTop = "UI_STYLER_PROPERTY_INITIAL_LAYOUT_TOP";
constexpr const char *InitialLayoutRight = "UI_STYLER_PROPERTY_INITIAL_LAYOUT_RIGHT";
constexpr const char *InitialLayoutBottom = "UI_STYLER_PROPERTY_INITIAL_LAYOUT_BOTTOM";

} // namespace UIStylerProperty
