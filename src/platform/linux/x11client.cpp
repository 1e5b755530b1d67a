#include "platform/linux/x11client.h"

#include <QX11Info>

#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>

quint32 platform::x11Atom(const char *name) {
    xcb_connection_t *connection = QX11Info::connection();
    const auto cookie = xcb_intern_atom(connection, 0, uint16_t(std::strlen(name)), name);
    xcb_intern_atom_reply_t *reply = xcb_intern_atom_reply(connection, cookie, nullptr);
    const quint32 atom = reply ? reply->atom : quint32(XCB_ATOM_NONE);
    std::free(reply);
    return atom;
}

platform::SelectionOwner platform::clipboardSelectionOwner() {
    xcb_connection_t *connection = QX11Info::connection();
    const auto cookie = xcb_get_selection_owner(connection, x11Atom("CLIPBOARD"));
    xcb_get_selection_owner_reply_t *reply = xcb_get_selection_owner_reply(connection, cookie, nullptr);
    const quint32 owner = reply ? reply->owner : quint32(XCB_WINDOW_NONE);
    std::free(reply);
    if (owner == XCB_WINDOW_NONE)
        return SelectionOwner::Nobody;
    // Every client has a range of its own for the ids of its windows.
    const xcb_setup_t *setup = xcb_get_setup(connection);
    const bool ours = (owner & ~setup->resource_id_mask) == setup->resource_id_base;
    return ours ? SelectionOwner::ThisProcess : SelectionOwner::Other;
}
