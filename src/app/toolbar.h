#pragma once

#include "app/toolpanels.h"
#include "canvas/shapetype.h"

#include <QToolBar>
#include <QVector>

#include <optional>

class Menu;
class OverflowMenu;
class QButtonGroup;
class QMenu;
class TindraEditor;
class ToolButton;
struct ToolbarRow;

/// The one toolbar: a button per function, the tools among them in an exclusive group, and a menu that takes
/// what does not fit.
///
/// Hands what the user chose to the window's slots; the window says what is enabled and which tool is
/// current.
class Toolbar : public QToolBar {
    Q_OBJECT
public:
    /// Connects itself to the window's slots, which may be called from the first event on. `aiTools`: the
    /// menu of the AI tools, which is not owned; without one they have no button.
    Toolbar(TindraEditor *window, Menu *aiTools);

    const ToolPanels *panels() const { return m_panels; }
    /// The button of the AI tools, or null.
    ToolButton *aiToolsButton() const;

    /// Checks the button of a tool.
    void showShape(ShapeTypes::ShapeType shape);
    /// Checks the entry of a tool in the overflow menu and no other; without a tool none.
    void checkEntry(const std::optional<ShapeTypes::ShapeType> &shape);
    /// Moves what does not fit into the menu and what fits back again. The banner lies over the right end;
    /// its width in device pixels is 0 while there is none.
    void layOut(int bannerWidth);

signals:
    /// Buttons and banner have their places.
    void laidOut();

public slots:
    /// Without a capture only what needs none stays usable.
    void onEmptyEditor(bool isEmpty);
    /// Where nothing can be undone there is nothing to reset either.
    void onCanUndo(bool can);
    void onCanRedo(bool can);

private:
    struct Entry {
        const ToolbarRow *row;
        ToolButton *button;
        QAction *action; ///< of the button in the toolbar, which rules whether it is enabled
        QAction *copy;   ///< in the overflow menu, null for what never goes there
    };

    void addRows();
    void addButton(const ToolbarRow &row);
    QMenu *menuOf(const ToolbarRow &row);
    void addMenuOf(const ToolbarRow &row, Entry &entry);
    void addToOverflow(const ToolbarRow &row, Entry &entry);
    void addShortcut(const ToolbarRow &row, ToolButton *button);
    void joinTools(const ToolbarRow &row, ToolButton *button);
    void addMenuButton();
    void setBannerWidth(int width);
    /// Null for a name that no button has.
    const Entry *entry(const char *name) const;

    TindraEditor *m_window;
    Menu *m_aiTools;
    ToolPanels *m_panels;
    OverflowMenu *m_overflow;
    QButtonGroup *m_tools;
    QVector<Entry> m_entries; ///< all buttons but that of the menu
    QAction *m_separatorOfNext = nullptr;
    QAction *m_lastSeparator = nullptr; ///< the one that always stays
    ToolButton *m_menuButton = nullptr;
};
