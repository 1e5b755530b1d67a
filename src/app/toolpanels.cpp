#include "app/toolpanels.h"

#include "popups/basiccolors.h"
#include "popups/colorselectpopup.h"
#include "popups/figurepopup.h"
#include "popups/linepopup.h"
#include "popups/mosaicpopup.h"
#include "preferences/tindrapreferences.h"
#include "ui/menu.h"

namespace {

ColorSelectPopup *colorPanel(const QList<BasicColor> &colors, const QString &customColorKey,
                             TindraPreferences::Id stored) {
    auto *panel = new ColorSelectPopup;
    panel->setBasicColors(colors);
    panel->setCustomColorKey(customColorKey);
    panel->selectColor(TindraPreferences::instance()->color(stored));
    return panel;
}

} // namespace

ToolPanels::ToolPanels(QWidget *parent) : QObject(parent) {
    auto *figure = new FigurePopup;
    auto *pen =
        colorPanel(BasicColors::pen(), TindraPreferences::PenCustomColorKey(), TindraPreferences::PenColor);
    auto *highlighter = colorPanel(BasicColors::highlighter(), TindraPreferences::HighlighterCustomColorKey(),
                                   TindraPreferences::HighlighterColor);
    auto *line = new LinePopup;
    auto *mosaic = new MosaicPopup;
    m_menus[Figure] = figure->toMenu(parent);
    m_menus[Pen] = pen->toMenu(parent);
    m_menus[Highlighter] = highlighter->toMenu(parent);
    m_menus[LineWidth] = line->toMenu(parent);
    m_menus[Mosaic] = mosaic->toMenu(parent);

    connect(figure, &FigurePopup::figureSelected, this, &ToolPanels::figureSelected);
    connect(pen, &ColorSelectPopup::colorSelected, this, &ToolPanels::penSelected);
    connect(highlighter, &ColorSelectPopup::colorSelected, this, &ToolPanels::highlighterSelected);
    connect(line, &LinePopup::lineSelected, this, &ToolPanels::lineSelected);
    connect(mosaic, &MosaicPopup::mosaicSelected, this, &ToolPanels::mosaicSelected);
}

Popup *ToolPanels::popup(Panel panel) const {
    return Popup::findPopup(m_menus[panel]);
}
