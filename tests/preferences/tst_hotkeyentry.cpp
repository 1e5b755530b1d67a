#include "preferences/dialog/hotkeyentry.h"
#include "support/literals.h"

#include <QtTest>

class Tst_HotKeyEntry : public QObject {
    Q_OBJECT
private slots:
    void digitsFunctionKeysLetters();
};

void Tst_HotKeyEntry::digitsFunctionKeysLetters() {
    const QVector<HotKeyEntry> entries = hotKeyEntries();
    const QString labels =
        "0 1 2 3 4 5 6 7 8 9 F1 F2 F3 F4 F5 F6 F7 F8 F9 F10 F11 F12 A B C D E F G H I J K L M N "
        "O P Q R S T U V W X Y Z"_qs;
    QList<int> codes;
    for (int code = 48; code <= 57; ++code)
        codes.append(code);
    for (int code = 112; code <= 123; ++code)
        codes.append(code);
    for (int code = 65; code <= 90; ++code)
        codes.append(code);
    QCOMPARE(entries.size(), 48);
    QStringList shown;
    QList<int> stored;
    for (const HotKeyEntry &entry : entries) {
        shown.append(entry.label);
        stored.append(entry.code);
    }
    QCOMPARE(shown, labels.split(QLatin1Char(' ')));
    QCOMPARE(stored, codes);
}

QTEST_GUILESS_MAIN(Tst_HotKeyEntry)
#include "tst_hotkeyentry.moc"
