#include "preferences/dialog/guidelinecolors.h"

#include "ui/stylecolors.h"

#include <QCoreApplication>
#include <QPainter>

#include <iterator>

namespace {

constexpr const char *Context = "GeneralPreferencesWidget";
constexpr int FramesPerSide = 16; // the frame is a sixteenth of the side

struct Entry {
    const char *name;
    int red, green, blue;
};

constexpr Entry Entries[] = {
    {QT_TRANSLATE_NOOP("GeneralPreferencesWidget", "black"), 0, 0, 0},
    {QT_TRANSLATE_NOOP("GeneralPreferencesWidget", "Maroon"), 128, 0, 0},
    {QT_TRANSLATE_NOOP("GeneralPreferencesWidget", "Green"), 0, 128, 0},
    {QT_TRANSLATE_NOOP("GeneralPreferencesWidget", "Olive"), 128, 128, 0},
    {QT_TRANSLATE_NOOP("GeneralPreferencesWidget", "Navy"), 0, 0, 128},
    {QT_TRANSLATE_NOOP("GeneralPreferencesWidget", "Purple"), 128, 0, 128},
    {QT_TRANSLATE_NOOP("GeneralPreferencesWidget", "Teal"), 0, 128, 128},
    {QT_TRANSLATE_NOOP("GeneralPreferencesWidget", "Gray"), 128, 128, 128},
    {QT_TRANSLATE_NOOP("GeneralPreferencesWidget", "Silver"), 192, 192, 192},
    {QT_TRANSLATE_NOOP("GeneralPreferencesWidget", "Red"), 255, 0, 0},
    {QT_TRANSLATE_NOOP("GeneralPreferencesWidget", "Lime"), 0, 255, 0},
    {QT_TRANSLATE_NOOP("GeneralPreferencesWidget", "Yellow"), 255, 255, 0},
    {QT_TRANSLATE_NOOP("GeneralPreferencesWidget", "Blue"), 0, 0, 255},
    {QT_TRANSLATE_NOOP("GeneralPreferencesWidget", "Magenta"), 255, 0, 255},
    {QT_TRANSLATE_NOOP("GeneralPreferencesWidget", "Cyan"), 0, 255, 255},
    {QT_TRANSLATE_NOOP("GeneralPreferencesWidget", "White"), 255, 255, 255},
};

int brightness(const QColor &color) {
    return (color.red() * 11 + color.green() * 16 + color.blue() * 5) / 32;
}

} // namespace

int GuidelineColors::count() {
    return static_cast<int>(std::size(Entries));
}

QColor GuidelineColors::color(int index) {
    return {Entries[index].red, Entries[index].green, Entries[index].blue};
}

QString GuidelineColors::name(int index) {
    return QCoreApplication::translate(Context, Entries[index].name);
}

int GuidelineColors::indexOf(const QColor &wanted) {
    for (int index = 0; index < count(); ++index) {
        if (color(index) == wanted)
            return index;
    }
    return 0;
}

QColor GuidelineColors::darker(const QColor &first, const QColor &second) {
    return brightness(first) < brightness(second) ? first : second;
}

QPixmap GuidelineColors::swatch(const QColor &color, int side) {
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    const int frame = qMax(1, side / FramesPerSide);
    QPainter painter(&pixmap);
    painter.fillRect(pixmap.rect(), darker(color, StyleColors::instance().color(QStringLiteral("color6"))));
    painter.fillRect(pixmap.rect().adjusted(frame, frame, -frame, -frame), color);
    return pixmap;
}
