#pragma once

#include "canvas/shapetype.h"
#include "ui/menu.h"

#include <QHash>

#include <optional>

class TindraEditor;

/// The menu of the toolbar's last button: what the toolbar has no room for, then the commands that have no
/// button at all.
class OverflowMenu : public Menu {
    Q_OBJECT
public:
    explicit OverflowMenu(QWidget *parent);

    /// Adds an entry with text and menu of the toolbar's action. `name` is that of the button.
    QAction *addCopy(const QString &name, const QAction *original);
    /// Whether any copy is visible. Only then does the menu keep a column for check marks, and the sheet
    /// (`hasCopies`) leaves less room before the texts.
    void setHasCopies(bool has);
    /// The entries at the end.
    void addCommands(TindraEditor *window);
    /// Printing needs a capture.
    void onEmptyEditor(bool isEmpty);
    /// Checks the entry of that tool and no other; without a tool none.
    void checkTool(const std::optional<ShapeTypes::ShapeType> &shape);

private:
    QHash<QString, QAction *> m_copies; ///< by the name of the button
    QAction *m_print = nullptr;
};
