#include "app/toolbar.h"

#include "app/helpmenu.h"
#include "app/overflowlayout.h"
#include "app/overflowmenu.h"
#include "app/tindraeditor.h"
#include "popups/popup.h"
#include "popups/toolbutton.h"
#include "services/usagestatistics.h"
#include "ui/uistyler.h"

#include <QButtonGroup>
#include <QLayout>
#include <QShortcut>
#include <QStyle>

#include <algorithm>

/// One place of the toolbar. What it does is one of a slot, a panel and the help menu.
struct ToolbarRow {
    using Slot = void (TindraEditor::*)();
    enum Kind { Separator, LastSeparator, Function, AiTools, Tool, Setting, Help };

    Kind kind;
    const char *name = nullptr; ///< of the button, and translated its label
    const char *toolTip = nullptr;
    Slot clicked = nullptr;
    ToolPanels::Panel panel = ToolPanels::None;
    int key = 0;
    enum Place { StaysOut, Overflows, EndsGroup } place = StaysOut; ///< in the overflow menu
};

namespace {

using Row = ToolbarRow;

constexpr int Spacing = 4; // between two buttons, at 96 DPI

constexpr Row Rows[] = {
    {Row::Function, QT_TRANSLATE_NOOP("Toolbar", "capture"),
     QT_TRANSLATE_NOOP("Toolbar", "Run new capture (Ctrl + N)"), &TindraEditor::onClickCapture},
    {Row::Separator},
    {Row::Function, QT_TRANSLATE_NOOP("Toolbar", "save"),
     QT_TRANSLATE_NOOP("Toolbar", "Save current image (Ctrl + S)"), &TindraEditor::onClickSave},
    {Row::Function, QT_TRANSLATE_NOOP("Toolbar", "copy"),
     QT_TRANSLATE_NOOP("Toolbar", "Copy current image (Ctrl + C)"), &TindraEditor::onClickCopy,
     ToolPanels::None, Qt::CTRL | Qt::Key_C},
    {Row::Function, QT_TRANSLATE_NOOP("Toolbar", "undo"),
     QT_TRANSLATE_NOOP("Toolbar", "Undo last work (Ctrl + Z)"), &TindraEditor::onClickUndo, ToolPanels::None,
     Qt::CTRL | Qt::Key_Z},
    {Row::Function, QT_TRANSLATE_NOOP("Toolbar", "redo"),
     QT_TRANSLATE_NOOP("Toolbar", "Redo last work (Ctrl + Y)"), &TindraEditor::onClickRedo, ToolPanels::None,
     Qt::CTRL | Qt::Key_Y},
    {Row::Function, QT_TRANSLATE_NOOP("Toolbar", "reset"), QT_TRANSLATE_NOOP("Toolbar", "Reset all works"),
     &TindraEditor::onClickReset},
    {Row::Separator},
    {Row::AiTools, "aitools", QT_TRANSLATE_NOOP("Toolbar", "Enhance images beautifully with AI features!")},
    {Row::Separator},
    {Row::Tool, QT_TRANSLATE_NOOP("Toolbar", "figure"),
     QT_TRANSLATE_NOOP("Toolbar", "Draw figure on current image"), nullptr, ToolPanels::Figure},
    {Row::Tool, QT_TRANSLATE_NOOP("Toolbar", "pen"),
     QT_TRANSLATE_NOOP("Toolbar", "Draw pen on current image"), nullptr, ToolPanels::Pen},
    {Row::Tool, QT_TRANSLATE_NOOP("Toolbar", "highlighter"),
     QT_TRANSLATE_NOOP("Toolbar", "Draw highlighter on current image"), nullptr, ToolPanels::Highlighter},
    {Row::Setting, QT_TRANSLATE_NOOP("Toolbar", "line"),
     QT_TRANSLATE_NOOP("Toolbar", "Set line width for figure, pen, highlighter"), nullptr,
     ToolPanels::LineWidth, 0, Row::EndsGroup},
    {Row::Separator},
    {Row::Tool, QT_TRANSLATE_NOOP("Toolbar", "text"),
     QT_TRANSLATE_NOOP("Toolbar", "Add text on current image"), &TindraEditor::onClickText, ToolPanels::None,
     0, Row::Overflows},
    {Row::Tool, QT_TRANSLATE_NOOP("Toolbar", "crop"), QT_TRANSLATE_NOOP("Toolbar", "Crop current image"),
     &TindraEditor::onClickCrop, ToolPanels::None, 0, Row::Overflows},
    {Row::Tool, QT_TRANSLATE_NOOP("Toolbar", "mosaic"),
     QT_TRANSLATE_NOOP("Toolbar", "Add mosaic region of current image"), nullptr, ToolPanels::Mosaic, 0,
     Row::Overflows},
    {Row::Tool, QT_TRANSLATE_NOOP("Toolbar", "eraser"), QT_TRANSLATE_NOOP("Toolbar", "Erase drawn object"),
     &TindraEditor::onClickEraser, ToolPanels::None, 0, Row::EndsGroup},
    {Row::LastSeparator},
    {Row::Help, QT_TRANSLATE_NOOP("Toolbar", "help"),
     QT_TRANSLATE_NOOP("Toolbar", "Click to show help, about, etc."), nullptr, ToolPanels::None, 0,
     Row::EndsGroup},
};

/// The label of the one button whose name would not do.
const char *const aiToolsLabel = QT_TRANSLATE_NOOP("Toolbar", "AI tools");
const char *const menuName = QT_TRANSLATE_NOOP("Toolbar", "menu");

const char *buttonOf(ShapeTypes::ShapeType shape) {
    switch (shape) {
    case ShapeTypes::Eraser:
        return "eraser";
    case ShapeTypes::Pen:
        return "pen";
    case ShapeTypes::Highlighter:
        return "highlighter";
    case ShapeTypes::Mosaic:
        return "mosaic";
    case ShapeTypes::Text:
    case ShapeTypes::TextEditing:
    case ShapeTypes::TextFinished:
        return "text";
    case ShapeTypes::Crop:
        return "crop";
    default:
        return "figure";
    }
}

bool isOf(const Row &row, const char *name) {
    return qstrcmp(row.name, name) == 0;
}

bool needsCapture(const Row &row) {
    return row.kind != Row::Help && row.clicked != &TindraEditor::onClickCapture;
}

/// The width that the toolbar gives a widget, whether it shows it or not.
int naturalWidth(QWidget *widget) {
    widget->ensurePolished();
    return widget->sizeHint()
        .expandedTo(widget->minimumSizeHint())
        .expandedTo(widget->minimumSize())
        .boundedTo(widget->maximumSize())
        .width();
}

} // namespace

Toolbar::Toolbar(TindraEditor *window, Menu *aiTools)
    : QToolBar(window), m_window(window), m_aiTools(aiTools), m_panels(new ToolPanels(this)),
      m_overflow(new OverflowMenu(this)), m_tools(new QButtonGroup(this)) {
    setObjectName(QStringLiteral("toolbar_"));
    setMovable(false);
    setContextMenuPolicy(Qt::NoContextMenu);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    // What does not fit has a menu of its own.
    if (auto *extension = findChild<QWidget *>(QStringLiteral("qt_toolbar_ext_button")))
        extension->setFixedSize(0, 0);
    addRows();
    addMenuButton();
    setBannerWidth(0);
}

void Toolbar::addRows() {
    for (const Row &row : Rows) {
        if (row.kind == Row::Separator) {
            // A group that is not there leaves one separator, not two.
            if (!m_separatorOfNext)
                m_separatorOfNext = addSeparator();
        } else if (row.kind == Row::LastSeparator) {
            m_lastSeparator = addSeparator();
        } else if (row.kind != Row::AiTools || m_aiTools) {
            addButton(row);
        }
    }
}

void Toolbar::addButton(const Row &row) {
    auto *button = new ToolButton(this);
    button->setObjectName(QLatin1String(row.name));
    button->setText(tr(row.kind == Row::AiTools ? aiToolsLabel : row.name));
    button->setToolTip(tr(row.toolTip));
    Entry entry{&row, button, addWidget(button), nullptr};
    entry.action->setText(button->text());
    // Ahead of the menu, which a press opens at once and which returns when it closes.
    if (row.kind == Row::AiTools)
        connect(button, &QPushButton::pressed, button, [] { recordUsage("cap_320_01"); });
    addMenuOf(row, entry);
    addToOverflow(row, entry);
    if (row.clicked)
        connect(button, &QPushButton::clicked, m_window, row.clicked);
    // A press of a setting chooses nothing: its panel may show a fallback for a stored width that it does
    // not offer, and that width holds until another is chosen.
    if (row.kind == Row::Tool)
        joinTools(row, button);
    if (row.key)
        addShortcut(row, button);
    // A group that has left takes its separator along. The one that must is that before "text", but any other
    // whose first button has left would stand for nothing as well.
    if (QAction *separator = m_separatorOfNext) {
        connect(entry.action, &QAction::changed, separator,
                [separator, action = entry.action] { separator->setVisible(action->isVisible()); });
        m_separatorOfNext = nullptr;
    }
    m_entries.append(entry);
}

QMenu *Toolbar::menuOf(const Row &row) {
    switch (row.kind) {
    case Row::Help:
        return new HelpMenu(m_window, this);
    case Row::AiTools:
        return m_aiTools;
    default:
        return m_panels->menu(row.panel);
    }
}

// Panels of tools open from a half of their button, the rest of which chooses the tool.
void Toolbar::addMenuOf(const Row &row, Entry &entry) {
    QMenu *menu = menuOf(row);
    if (!menu)
        return;
    entry.button->setShowMenuButton(row.kind == Row::Tool);
    entry.button->setMenuAccessibleName(tr("Options: %0").arg(entry.button->text()));
    entry.button->setMenu(menu);
    entry.action->setMenu(menu);
}

void Toolbar::addToOverflow(const Row &row, Entry &entry) {
    if (row.place == Row::StaysOut)
        return;
    entry.copy = m_overflow->addCopy(entry.button->objectName(), entry.action);
    if (row.clicked)
        connect(entry.copy, &QAction::triggered, m_window, row.clicked);
    if (row.place == Row::EndsGroup)
        m_overflow->addSeparator();
}

void Toolbar::addShortcut(const Row &row, ToolButton *button) {
    // Not the button's own shortcut, which works at most every 100 ms.
    const auto *key = new QShortcut(row.key, button);
    connect(key, &QShortcut::activated, button, [button] { emit button->clicked(); });
}

void Toolbar::joinTools(const Row &row, ToolButton *button) {
    button->setCheckable(true);
    m_tools->addButton(button);
    Popup *panel = m_panels->popup(row.panel);
    if (!panel)
        return;
    connect(panel, &Popup::triggered, button, [button] { button->setChecked(true); });
    // The press chooses the tool already, with what its panel shows.
    connect(button, &ToolButton::beforePress, panel, &Popup::triggered);
}

void Toolbar::addMenuButton() {
    m_overflow->addCommands(m_window);
    connect(m_overflow, &QMenu::aboutToShow, m_window, &TindraEditor::onClickMenuBtn);
    m_menuButton = new ToolButton(this);
    m_menuButton->setObjectName(QLatin1String(menuName));
    m_menuButton->setText(tr(menuName));
    m_menuButton->setToolTip(tr("Click to show features, save, print, preferences, etc."));
    m_menuButton->setMenu(m_overflow);
    addWidget(m_menuButton);
}

const Toolbar::Entry *Toolbar::entry(const char *name) const {
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [name](const Entry &entry) { return isOf(*entry.row, name); });
    return found == m_entries.end() ? nullptr : &*found;
}

void Toolbar::showShape(ShapeTypes::ShapeType shape) {
    entry(buttonOf(shape))->button->setChecked(true);
}

ToolButton *Toolbar::aiToolsButton() const {
    const Entry *aiTools = entry("aitools");
    return aiTools ? aiTools->button : nullptr;
}

void Toolbar::checkEntry(const std::optional<ShapeTypes::ShapeType> &shape) {
    m_overflow->checkTool(shape);
}

void Toolbar::setBannerWidth(int width) {
    const QVariant hasBanner = width > 0 ? QStringLiteral("true") : QStringLiteral("false");
    if (property("hasBanner") != hasBanner) {
        setProperty("hasBanner", hasBanner);
        style()->unpolish(this);
        style()->polish(this);
    }
    QMargins margins = layout()->contentsMargins();
    margins.setRight(width);
    layout()->setContentsMargins(margins);
}

void Toolbar::layOut(int bannerWidth) {
    setBannerWidth(bannerWidth);
    QWidget *last = widgetForAction(m_lastSeparator);
    QVector<QAction *> overflowing;
    QVector<OverflowEntry> entries;
    const QList<QAction *> all = actions();
    for (QAction *action : all) {
        QWidget *widget = widgetForAction(action);
        if (!widget || widget == last || widget == m_menuButton)
            continue;
        overflowing.append(action);
        entries.append({naturalWidth(widget), !action->isSeparator()});
    }
    const int spacing = static_cast<int>(Spacing * widgetScale(this));
    const QVector<bool> stays = entriesThatStay(
        entries, {width(), bannerWidth, naturalWidth(m_menuButton), naturalWidth(last), spacing});
    for (int i = 0; i < stays.size(); ++i) {
        if (entries[i].isButton)
            overflowing[i]->setVisible(stays[i]);
    }
    // Before the copies change, after which the menu measures its entries again.
    m_overflow->setHasCopies(std::any_of(m_entries.cbegin(), m_entries.cend(), [](const Entry &entry) {
        return entry.copy && !entry.action->isVisible();
    }));
    for (const Entry &entry : qAsConst(m_entries)) {
        if (entry.copy)
            entry.copy->setVisible(!entry.action->isVisible());
    }
    emit laidOut();
}

void Toolbar::onEmptyEditor(bool isEmpty) {
    m_overflow->onEmptyEditor(isEmpty);
    for (const Entry &entry : qAsConst(m_entries)) {
        if (!needsCapture(*entry.row))
            continue;
        entry.action->setDisabled(isEmpty);
        if (entry.copy)
            entry.copy->setDisabled(isEmpty);
    }
}

void Toolbar::onCanUndo(bool can) {
    entry("undo")->action->setEnabled(can);
    entry("reset")->action->setEnabled(can);
}

void Toolbar::onCanRedo(bool can) {
    entry("redo")->action->setEnabled(can);
}
