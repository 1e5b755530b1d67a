#include "app/scaleenvironment.h"

#include <QStringList>
#include <QtGlobal>

#include <algorithm>

namespace {

constexpr int referenceDpi = 96;
/// Beyond these nothing of the interface can be used.
constexpr double lowestDpi = 24;
constexpr double highestDpi = 960;

constexpr char fontDpiVariable[] = "QT_FONT_DPI";
constexpr char scaleFactorVariable[] = "QT_SCALE_FACTOR";
constexpr char screenScaleFactorsVariable[] = "QT_SCREEN_SCALE_FACTORS";

/// The factor that a text names; nothing unless it is a positive number.
std::optional<double> positiveFactor(const QString &text) {
    bool isNumber = false;
    const double factor = text.toDouble(&isNumber);
    return isNumber && factor > 0 ? std::optional(factor) : std::nullopt;
}

/// The largest of "1.5;2" or "HDMI-1=2;DP-1=1".
std::optional<double> largestScreenFactor(const QString &list) {
    std::optional<double> largest;
    const QStringList entries = list.split(QLatin1Char(';'));
    for (const QString &entry : entries) {
        const std::optional<double> factor = positiveFactor(entry.section(QLatin1Char('='), -1));
        // An empty optional is less than any number.
        largest = std::max(largest, factor);
    }
    return largest;
}

} // namespace

std::optional<int> dpiForScaleFactors(const ScaleSettings &settings) {
    const std::optional<double> whole = positiveFactor(settings.scaleFactor);
    const std::optional<double> screen = largestScreenFactor(settings.screenScaleFactors);
    if (!whole && !screen)
        return std::nullopt;
    // The screen's own DPI stays out of it: desktops that set these factors raise it by the same amount.
    const double base = positiveFactor(settings.fontDpi).value_or(referenceDpi);
    const double dpi = base * whole.value_or(1) * screen.value_or(1);
    return qRound(std::clamp(dpi, lowestDpi, highestDpi));
}

void prepareScaleEnvironment() {
    qputenv("QT_ENABLE_HIGHDPI_SCALING", "0");
    const std::optional<int> dpi =
        dpiForScaleFactors({qEnvironmentVariable(fontDpiVariable), qEnvironmentVariable(scaleFactorVariable),
                            qEnvironmentVariable(screenScaleFactorsVariable)});
    if (dpi)
        qputenv(fontDpiVariable, QByteArray::number(*dpi));
    qunsetenv(scaleFactorVariable);
    qunsetenv(screenScaleFactorsVariable);
}
