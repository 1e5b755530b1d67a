#pragma once

#include <QVector>

/// What the overflow has to know about one entry of the toolbar.
struct OverflowEntry {
    int width;     ///< device pixels
    bool isButton; ///< a separator takes room too, but never leaves by itself
};

/// The room of the toolbar, in device pixels.
struct OverflowRoom {
    int toolbar;    ///< its whole width
    int banner;     ///< width of what lies over its right end, 0 for nothing
    int menuButton; ///< the button that opens the menu of what has left
    int separator;  ///< the one that always stays
    int spacing;    ///< between two entries
};

/// Which entries stay in the toolbar, by their index; the others go into the menu.
///
/// `entries` are all but the menu button and the separator that always stays, in their order. Entries leave
/// from right to left: behind the first button that does not fit there is none that does.
QVector<bool> entriesThatStay(const QVector<OverflowEntry> &entries, const OverflowRoom &room);
