#include "popups/basiccolors.h"

#include <QCoreApplication>

#include <initializer_list>

namespace {

struct Entry {
    QRgb value;
    const char *name;
};

constexpr Entry Black{qRgb(0, 0, 0), QT_TRANSLATE_NOOP("BasicColor", "black")};
constexpr Entry Gray{qRgb(146, 146, 146), QT_TRANSLATE_NOOP("BasicColor", "gray")};
constexpr Entry Red{qRgb(255, 0, 0), QT_TRANSLATE_NOOP("BasicColor", "red")};
constexpr Entry Orange{qRgb(255, 192, 0), QT_TRANSLATE_NOOP("BasicColor", "orange")};
constexpr Entry Yellow{qRgb(255, 240, 0), QT_TRANSLATE_NOOP("BasicColor", "yellow")};
constexpr Entry LightGreen{qRgb(142, 204, 76), QT_TRANSLATE_NOOP("BasicColor", "light green")};
constexpr Entry Green{qRgb(0, 176, 80), QT_TRANSLATE_NOOP("BasicColor", "green")};
constexpr Entry LightBlue{qRgb(155, 220, 255), QT_TRANSLATE_NOOP("BasicColor", "light blue")};
constexpr Entry SkyBlue{qRgb(0, 176, 240), QT_TRANSLATE_NOOP("BasicColor", "sky blue")};
constexpr Entry Blue{qRgb(0, 127, 245), QT_TRANSLATE_NOOP("BasicColor", "blue")};
constexpr Entry Purple{qRgb(112, 48, 160), QT_TRANSLATE_NOOP("BasicColor", "purple")};
constexpr Entry Pink{qRgb(255, 0, 153), QT_TRANSLATE_NOOP("BasicColor", "pink")};
constexpr Entry White{qRgb(255, 255, 255), QT_TRANSLATE_NOOP("BasicColor", "white")};
constexpr Entry NoFill{qRgba(0, 0, 0, 0), QT_TRANSLATE_NOOP("BasicColor", "fill transparent")};
constexpr Entry NoOutline{qRgba(0, 0, 0, 0), QT_TRANSLATE_NOOP("BasicColor", "outline transparent")};

QList<BasicColor> table(std::initializer_list<Entry> entries) {
    QList<BasicColor> colors;
    for (const Entry &entry : entries)
        colors.append({QColor::fromRgba(entry.value), QCoreApplication::translate("BasicColor", entry.name)});
    return colors;
}

} // namespace

QList<BasicColor> BasicColors::figureFill() {
    return table({Black, Gray, Red, Orange, LightGreen, Green, SkyBlue, Blue, Purple, NoFill});
}

QList<BasicColor> BasicColors::figureOutline() {
    return table({Black, Gray, Red, Orange, LightGreen, Green, SkyBlue, Blue, Purple, NoOutline});
}

QList<BasicColor> BasicColors::text() {
    return table({Black, Gray, Red, Orange, LightGreen, SkyBlue, Blue, Purple, Pink, White});
}

QList<BasicColor> BasicColors::pen() {
    // Without red, the colour of a new pen: it is drawn with until another one is chosen, and no swatch is
    // checked.
    return table({Black, Gray, Orange, LightGreen, SkyBlue, Blue, Purple, Pink, White});
}

QList<BasicColor> BasicColors::highlighter() {
    return table({Orange, Yellow, LightGreen, Green, Pink, Purple, LightBlue, Blue, SkyBlue});
}
