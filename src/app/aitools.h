#pragma once

#include <QObject>
#include <QStringList>

#include <functional>

class EditorView;
class Menu;
class QWidget;

/// The AI tools: plug-ins of another program, one entry of a menu each, which work on a picture of the
/// capture.
///
/// There are none unless the management program of the product family has installed their host. While a
/// plug-in works, the program waits for it.
class AiTools : public QObject {
    Q_OBJECT
public:
    /// Starts the host. The window is borrowed, outlives this object and owns the menu.
    explicit AiTools(QWidget *window);

    /// Whether there was a plug-in when the program started.
    bool isAvailable() const { return m_isAvailable; }
    /// Lists the plug-ins anew each time it is about to show.
    Menu *menu() const { return m_menu; }

    /// Hands the picture of the capture that is shown to the plug-in and waits for the end of its work. The
    /// view is borrowed: events are treated on the way, and another capture may be shown then.
    void run(const QString &pluginId, const EditorView *view);
    /// The program ends: nothing more is run or said.
    void onLeaving() { m_hasLeft = true; }

    /// Milliseconds since the epoch from another source than the system's clock.
    void setClock(std::function<qint64()> clock) { m_clock = std::move(clock); }

signals:
    void chosen(QString pluginId);

private:
    void rebuildMenu();
    void report(unsigned result) const;

    QWidget *m_window;
    Menu *m_menu;
    bool m_isAvailable;
    bool m_isRunning = false;
    bool m_hasLeft = false;
    std::function<qint64()> m_clock;
};
