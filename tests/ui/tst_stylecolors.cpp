#include "ui/stylecolors.h"

#include <QSettings>
#include <QTest>

class Tst_StyleColors : public QObject {
    Q_OBJECT
private slots:
    void valuesBecomeColours_data();
    void valuesBecomeColours();
    void readsTheTableOfTheSheets_data();
    void readsTheTableOfTheSheets();
    void tableHasNoOtherKeys();
};

void Tst_StyleColors::valuesBecomeColours_data() {
    QTest::addColumn<QString>("value");
    QTest::addColumn<QColor>("expected");
    QTest::newRow("rgb") << QStringLiteral("rgb(1, 2, 3)") << QColor(1, 2, 3);
    QTest::newRow("rgba opaque") << QStringLiteral("rgba(1, 2, 3, 1)") << QColor(1, 2, 3, 255);
    QTest::newRow("half is truncated") << QStringLiteral("rgba(0, 0, 0, 0.5)") << QColor(0, 0, 0, 127);
    QTest::newRow("0.07 is truncated") << QStringLiteral("rgba(0, 0, 0, 0.07)") << QColor(0, 0, 0, 17);
    QTest::newRow("two parts") << QStringLiteral("rgb(1, 2)") << QColor();
    QTest::newRow("five parts") << QStringLiteral("rgba(1, 2, 3, 1, 1)") << QColor();
    QTest::newRow("opacity beyond a number's range") << QStringLiteral("rgba(0, 0, 0, 1e300)") << QColor();
    QTest::newRow("opacity above 1") << QStringLiteral("rgba(0, 0, 0, 1.001)") << QColor();
    QTest::newRow("opacity below 0") << QStringLiteral("rgba(0, 0, 0, -0.001)") << QColor();
    QTest::newRow("opacity that is no number") << QStringLiteral("rgba(0, 0, 0, nan)") << QColor();
    QTest::newRow("name") << QStringLiteral("#ff8000") << QColor(255, 128, 0);
    QTest::newRow("upper case is no function") << QStringLiteral("RGB(1, 2, 3)") << QColor();
    QTest::newRow("empty") << QString() << QColor();
}

void Tst_StyleColors::valuesBecomeColours() {
    QFETCH(QString, value);
    QFETCH(QColor, expected);
    const QColor color = colorFromStyleValue(value);
    QCOMPARE(color.isValid(), expected.isValid());
    QCOMPARE(color, expected);
}

void Tst_StyleColors::readsTheTableOfTheSheets_data() {
    QTest::addColumn<QString>("key");
    QTest::addColumn<QColor>("expected");
    const auto row = [](const char *key, int r, int g, int b, int a) {
        QTest::newRow(key) << QString::fromLatin1(key) << QColor(r, g, b, a);
    };
    row("color1", 0, 0, 0, 255);
    row("color2", 255, 255, 255, 255);
    row("color3", 0, 0, 0, 127);
    row("color6", 204, 212, 221, 255);
    row("color7", 240, 240, 240, 255);
    row("color8", 34, 34, 34, 255);
    row("color9", 196, 196, 196, 255);
    row("color11", 83, 85, 89, 178);
    row("color12", 255, 255, 255, 38);
    row("color13", 0, 127, 245, 255);
    row("color14", 248, 249, 252, 255);
    row("color15", 247, 247, 247, 255);
    row("color17", 0, 71, 239, 255);
    row("color18", 0, 51, 239, 255);
    row("color19", 0, 0, 0, 178);
    row("color20", 0, 0, 0, 51);
    row("color21", 242, 248, 254, 255);
    row("color22", 230, 243, 254, 255);
    row("color23", 0, 0, 0, 51);
    row("color24", 0, 127, 245, 255);
    row("color27", 255, 255, 255, 76);
    row("color28", 232, 234, 241, 255);
    row("color31", 235, 237, 241, 255);
    row("color32", 0, 0, 0, 17);
    row("color33", 0, 0, 0, 76);
    row("color34", 179, 179, 179, 255);
    row("color35", 255, 0, 0, 255);
    row("color36", 0, 0, 0, 25);
    row("color37", 255, 255, 255, 127);
    row("color38", 34, 34, 34, 127);
    row("color39", 224, 229, 235, 255);
    row("color40", 184, 191, 199, 255);
    row("color41", 232, 234, 241, 255);
    row("color42", 255, 255, 255, 153);
    row("color43", 228, 228, 228, 255);
    QTest::newRow("nothing") << QStringLiteral("nothing") << QColor();
    for (int gap : {4, 5, 10, 16, 25, 26, 29, 30})
        QTest::addRow("gap %d", gap) << QStringLiteral("color%1").arg(gap) << QColor();
}

void Tst_StyleColors::readsTheTableOfTheSheets() {
    QFETCH(QString, key);
    QFETCH(QColor, expected);
    const QColor color = StyleColors::instance().color(key);
    QCOMPARE(color.isValid(), expected.isValid());
    QCOMPARE(color, expected);
}

void Tst_StyleColors::tableHasNoOtherKeys() {
    const QSettings table(QStringLiteral(":/style/editor_variables.ini"), QSettings::IniFormat);
    QCOMPARE(table.allKeys().size(), 35);
}

QTEST_APPLESS_MAIN(Tst_StyleColors)
#include "tst_stylecolors.moc"
