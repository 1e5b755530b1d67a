#pragma once

#include <QObject>

class EditorView;
class HistoryWidget;
class TindraEditor;

/// The keys that act wherever in the main window the focus is.
class KeyboardActions : public QObject {
    Q_OBJECT
public:
    /// Adds them to the window. All three are borrowed and outlive this object.
    KeyboardActions(TindraEditor *window, EditorView *view, HistoryWidget *history);

private:
    template <typename Function> void add(int key, Function function);
    /// Whether a text or a crop is open, which keeps some keys for itself.
    bool isItemOpen() const;
    void escape();
    void accept();
    void deleteCapture();
    void newCapture();
    void save();
    void selectRow(bool next);

    TindraEditor *m_window;
    EditorView *m_view;
    HistoryWidget *m_history;
};
