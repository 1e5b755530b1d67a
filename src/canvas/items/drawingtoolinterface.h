#pragma once

#include <QList>
#include <QMetaObject>
#include <QObject>

/// How an open item (text, crop) is bound to the popup with its settings. The popup is not owned.
template <class Popup> class DrawingToolInterface {
public:
    virtual ~DrawingToolInterface() = default;

    /// Stores the popup and connects it with the item.
    virtual void attachPopup(Popup *popup) = 0;
    /// Undoes that.
    virtual void detachPopup() {
        for (const QMetaObject::Connection &connection : m_popupConnections)
            QObject::disconnect(connection);
        m_popupConnections.clear();
        m_popup = nullptr;
    }

protected:
    Popup *m_popup = nullptr;
    QList<QMetaObject::Connection> m_popupConnections;
};
