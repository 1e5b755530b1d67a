#pragma once

#include <QString>
#include <QVector>

/// A key that a shortcut of the capture may have.
struct HotKeyEntry {
    int code; ///< the virtual-key code that is stored
    QString label;
};

/// Modifiers of a shortcut as they are stored: a sum of these.
namespace HotKeyModifier {
enum : int { Alt = 1, Ctrl = 2, Shift = 4, Win = 8 };
}

/// All of them: the digits, the function keys, the letters.
QVector<HotKeyEntry> hotKeyEntries();
