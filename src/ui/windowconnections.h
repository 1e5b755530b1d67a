#pragma once

#include <QHash>
#include <QMetaObject>
#include <QObject>

/// One connection for each window, which a new one replaces. What a window had is forgotten when it goes:
/// menus and dialogs come and go as long as the program runs. GUI thread only.
class WindowConnections : public QObject {
public:
    /// The window is not owned.
    void replace(QObject *window, const QMetaObject::Connection &connection);
    int count() const { return m_connections.size(); }

private:
    QHash<QObject *, QMetaObject::Connection> m_connections;
};
