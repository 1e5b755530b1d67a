#include "app/keyboardactions.h"

#include "app/tindraeditor.h"
#include "canvas/editorview.h"
#include "history/historywidget.h"
#include "services/usagestatistics.h"

#include <QAction>

KeyboardActions::KeyboardActions(TindraEditor *window, EditorView *view, HistoryWidget *history)
    : QObject(window), m_window(window), m_view(view), m_history(history) {
    add(Qt::Key_Escape, [this] { escape(); });
    add(Qt::Key_Return, [this] { accept(); });
    add(Qt::Key_Delete, [this] { deleteCapture(); });
    add(Qt::CTRL | Qt::Key_N, [this] { newCapture(); });
    add(Qt::CTRL | Qt::Key_S, [this] { save(); });
    add(Qt::Key_Up, [this] { selectRow(false); });
    add(Qt::Key_Down, [this] { selectRow(true); });
}

template <typename Function> void KeyboardActions::add(int key, Function function) {
    auto *action = new QAction(this);
    action->setShortcut(key);
    connect(action, &QAction::triggered, this, function);
    m_window->addAction(action);
}

bool KeyboardActions::isItemOpen() const {
    const Editor *editor = m_view->editor();
    return editor && (editor->shapeType() == Editor::TextEditing || editor->shapeType() == Editor::Crop);
}

void KeyboardActions::escape() {
    if (isItemOpen())
        m_view->editor()->finishCurrentItem(false);
    else
        m_window->close();
}

void KeyboardActions::accept() {
    if (Editor *editor = m_view->editor())
        editor->finishCurrentItem(true);
}

void KeyboardActions::deleteCapture() {
    recordUsage("cap_302_05");
    m_history->onDeleteCurrentImage();
}

void KeyboardActions::newCapture() {
    recordUsage("cap_302_06");
    m_window->onClickCapture();
}

void KeyboardActions::save() {
    recordUsage("cap_302_04");
    m_window->onClickSave();
}

void KeyboardActions::selectRow(bool next) {
    if (!m_view->editor() || isItemOpen())
        return;
    if (next)
        m_history->selectNextRow();
    else
        m_history->selectPreviousRow();
}
