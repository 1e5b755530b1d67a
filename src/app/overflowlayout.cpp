#include "app/overflowlayout.h"

QVector<bool> entriesThatStay(const QVector<OverflowEntry> &entries, const OverflowRoom &room) {
    const int available =
        room.toolbar - room.banner - room.menuButton - room.spacing - room.separator - room.spacing;
    int used = room.separator + room.spacing;
    QVector<bool> stays;
    stays.reserve(entries.size());
    for (const OverflowEntry &entry : entries) {
        used += entry.width + room.spacing;
        stays.append(!entry.isButton || used < available);
    }
    return stays;
}
