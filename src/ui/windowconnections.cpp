#include "ui/windowconnections.h"

void WindowConnections::replace(QObject *window, const QMetaObject::Connection &connection) {
    const auto known = m_connections.find(window);
    if (known != m_connections.end()) {
        disconnect(*known);
        *known = connection;
        return;
    }
    m_connections.insert(window, connection);
    connect(window, &QObject::destroyed, this, [this](QObject *gone) { m_connections.remove(gone); });
}
