#include "canvas/canvasmenu.h"

#include "popups/popup.h"

#include <QCoreApplication>

namespace {

struct Row {
    CanvasMenu::Entry entry;
    int group;
    const char *text;
    bool checkable;
};

constexpr Row Rows[] = {
    {CanvasMenu::AiTools, 1, QT_TRANSLATE_NOOP("EditorView", "AI tools"), false},
    {CanvasMenu::Figure, 2, QT_TRANSLATE_NOOP("EditorView", "Figure (&S)"), true},
    {CanvasMenu::Pen, 2, QT_TRANSLATE_NOOP("EditorView", "Pen (&D)"), true},
    {CanvasMenu::Highlighter, 2, QT_TRANSLATE_NOOP("EditorView", "Highlighter (&H)"), true},
    {CanvasMenu::LineWidth, 2, QT_TRANSLATE_NOOP("EditorView", "Line Width (&L)"), false},
    {CanvasMenu::Text, 3, QT_TRANSLATE_NOOP("EditorView", "Text (&T)"), true},
    {CanvasMenu::Crop, 3, QT_TRANSLATE_NOOP("EditorView", "Crop (&C)"), true},
    {CanvasMenu::Mosaic, 3, QT_TRANSLATE_NOOP("EditorView", "Mosaic (&M)"), true},
    {CanvasMenu::Eraser, 4, QT_TRANSLATE_NOOP("EditorView", "Eraser (&E)"), true},
    {CanvasMenu::Reset, 4, QT_TRANSLATE_NOOP("EditorView", "Reset (&R)"), false},
    {CanvasMenu::Print, 5, QT_TRANSLATE_NOOP("EditorView", "Print (&P)"), false},
};

constexpr int NoEntry = -1;

int entryOfTool(ShapeTypes::ShapeType shape) {
    switch (shape) {
    case ShapeTypes::Eraser:
        return CanvasMenu::Eraser;
    case ShapeTypes::Pen:
        return CanvasMenu::Pen;
    case ShapeTypes::Highlighter:
        return CanvasMenu::Highlighter;
    case ShapeTypes::Line:
    case ShapeTypes::Arrow:
    case ShapeTypes::Rectangle:
    case ShapeTypes::Circle:
    case ShapeTypes::SpeechBalloon:
        return CanvasMenu::Figure;
    case ShapeTypes::Mosaic:
        return CanvasMenu::Mosaic;
    case ShapeTypes::Text:
        return CanvasMenu::Text;
    case ShapeTypes::Crop:
        return CanvasMenu::Crop;
    case ShapeTypes::TextEditing:
    case ShapeTypes::TextFinished:
        break;
    }
    return NoEntry;
}

} // namespace

CanvasMenu::CanvasMenu(bool withAiTools, QWidget *parent) : Menu(parent) {
    int group = 0;
    for (const Row &row : Rows) {
        if (row.entry == AiTools && !withAiTools)
            continue;
        if (group != 0 && group != row.group)
            addSeparator();
        group = row.group;
        QAction *action = addAction(QCoreApplication::translate("EditorView", row.text));
        action->setCheckable(row.checkable);
        m_actions[row.entry] = action;
    }
}

void CanvasMenu::setPanel(Entry entry, QMenu *menu) {
    QAction *action = m_actions[entry];
    if (!action)
        return;
    action->setMenu(menu);
    if (const Popup *panel = Popup::findPopup(menu))
        connect(panel, &Popup::triggered, this, &QWidget::hide);
}

void CanvasMenu::checkTool(ShapeTypes::ShapeType shape) {
    const int current = entryOfTool(shape);
    for (int entry = 0; entry < EntryCount; ++entry) {
        if (m_actions[entry] && m_actions[entry]->isCheckable())
            m_actions[entry]->setChecked(entry == current);
    }
}
