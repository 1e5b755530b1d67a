#include "preferences/dialog/hotkeyentry.h"

namespace {

constexpr int FunctionKeys = 12;
constexpr int FirstFunctionKey = 112;

} // namespace

// The codes of digits and letters are those of their characters.
QVector<HotKeyEntry> hotKeyEntries() {
    QVector<HotKeyEntry> entries;
    for (char digit = '0'; digit <= '9'; ++digit)
        entries.append({digit, QString(QLatin1Char(digit))});
    for (int number = 1; number <= FunctionKeys; ++number)
        entries.append({FirstFunctionKey + number - 1, QStringLiteral("F%1").arg(number)});
    for (char letter = 'A'; letter <= 'Z'; ++letter)
        entries.append({letter, QString(QLatin1Char(letter))});
    return entries;
}
