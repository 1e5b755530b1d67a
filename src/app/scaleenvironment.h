#pragma once

#include <QString>

#include <optional>

/// What the user's environment says about the size of the interface, as the variables stand.
struct ScaleSettings {
    QString fontDpi;            ///< QT_FONT_DPI
    QString scaleFactor;        ///< QT_SCALE_FACTOR
    QString screenScaleFactors; ///< QT_SCREEN_SCALE_FACTORS
};

/// The DPI that makes the interface as large as the factors ask for; nothing when they ask for nothing.
/// Of factors for several screens the largest counts, since there is one DPI for all.
std::optional<int> dpiForScaleFactors(const ScaleSettings &settings);

/// Makes one logical pixel one device pixel whatever the screen's density, and turns the user's scale
/// factors into a larger DPI. Call it before the application object exists.
void prepareScaleEnvironment();
