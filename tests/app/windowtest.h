#pragma once

#include "app/tindraeditor.h"
#include "canvas/editorview.h"
#include "canvas/fakeitems.h"
#include "history/historylistwidget.h"
#include "history/historylistwidgetitem.h"
#include "history/historywidget.h"
#include "popups/toolbutton.h"
#include "support/literals.h"
#include "support/modalanswers.h"
#include "support/session.h"

#include <QScreen>
#include <QTemporaryDir>
#include <QtTest>

/// The main window over a fresh session, for tests that drive it as commands, keys and buttons do.
class WindowTest : public QObject {
    Q_OBJECT
protected:
    void init();
    void cleanup();
    /// A new window, as the next start of the program makes it. The one of before must be gone.
    void start();

    using Messages = QVector<quint32>;

    void treat(const QString &line) { emit m_window->commandArrived("tindra "_qs + line); }
    QString capture(const QString &name, const QSize &size = {40, 30}) {
        return Session::captureFile(name, size);
    }
    void addCapture(const QString &name) { treat("/path \"%1\" /point 10 10"_qs.arg(capture(name))); }
    void markSaved(int row = 0) { list()->rowItem(row)->editor()->setSavedPath("/saved.png"_qs); }
    HistoryListWidget *list() const { return m_window->findChild<HistoryListWidget *>(); }
    EditorView *view() const { return m_window->findChild<EditorView *>(); }
    Editor *scene() const { return view()->editor(); }
    ToolButton *button(const char *name) const {
        return m_window->findChild<ToolButton *>(QLatin1String(name));
    }
    Messages messages() const { return m_session->platform->postedMessages(); }
    void forgetMessages() { m_session->platform->posted.clear(); }
    /// A capture in the top row whose rectangle, text and crop are stand-ins that keep a log.
    TestEditor *addFake(const QString &name);
    /// Left button and mouse on the canvas, in image pixels.
    void sendMouse(QEvent::Type type, const QPointF &pos);
    void drawStroke();
    /// Gives the toolbar room for every button; those without are disabled with their actions.
    void makeWide();
    void endSession();
    void activate();
    /// Whether the action ends the event loop by itself.
    bool quits(const std::function<void()> &action);
    TindraPreferences *preferences() const { return m_session->preferences; }

    std::unique_ptr<Session> m_session;
    std::unique_ptr<QTemporaryDir> m_target;
    std::unique_ptr<TindraEditor> m_window;
};
