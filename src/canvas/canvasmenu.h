#pragma once

#include "canvas/shapetype.h"
#include "ui/menu.h"

#include <array>

/// The canvas' context menu. Entries whose panel belongs to the main window take it as a submenu.
class CanvasMenu : public Menu {
    Q_OBJECT
public:
    enum Entry { AiTools, Figure, Pen, Highlighter, LineWidth, Text, Crop, Mosaic, Eraser, Reset, Print };
    static constexpr int EntryCount = Print + 1;

    /// The group of the AI tools is there only `withAiTools`.
    explicit CanvasMenu(bool withAiTools, QWidget *parent = nullptr);

    /// Null for the AI tools where they are not available.
    QAction *action(Entry entry) const { return m_actions[entry]; }
    /// Gives an entry its panel's menu, which is not owned. A choice in the panel closes this menu too.
    /// Nothing happens where the entry is not available.
    void setPanel(Entry entry, QMenu *menu);
    /// Checks the entry of the present tool, and no other.
    void checkTool(ShapeTypes::ShapeType shape);

private:
    std::array<QAction *, EntryCount> m_actions{};
};
