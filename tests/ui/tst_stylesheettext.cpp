#include "ui/stylesheettext.h"

#include <QTest>

class Tst_StyleSheetText : public QObject {
    Q_OBJECT
private slots:
    void preprocesses_data();
    void preprocesses();
    void valuesThatNameThemselvesEnd();
};

namespace {

QString variable(const QString &key) {
    if (key == QLatin1String("ink"))
        return QStringLiteral("rgba(34, 34, 34, 1)");
    if (key == QLatin1String("gap"))
        return QStringLiteral("scale(5)px");
    if (key == QLatin1String("self"))
        return QStringLiteral("var(self)");
    return QString();
}

} // namespace

void Tst_StyleSheetText::preprocesses_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("scale");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const char *text, double scale, const char *expected) {
        QTest::newRow(name) << QString::fromUtf8(text) << scale << QString::fromUtf8(expected);
    };
    row("nothing to do", "QWidget { color: red; }", 1.5, "QWidget { color: red; }");
    row("variable", "color: var(ink);", 1.0, "color: rgba(34, 34, 34, 1);");
    row("unknown variable", "color: var(none);", 1.0, "color: ;");
    row("key is not trimmed", "color: var( ink);", 1.0, "color: ;");
    row("empty key", "var()", 1.0, "");
    row("key in a comment of the sheet", "/* var(key): a variable */", 1.0, "/* : a variable */");
    row("scale 1 at 144 DPI", "scale(1)px", 1.5, "1px");
    row("scale 5 at 144 DPI", "scale(5)px", 1.5, "7px");
    row("scale 11 at 144 DPI", "scale(11)px", 1.5, "16px");
    row("scale truncates", "scale(3)px", 1.25, "3px");
    row("scale at 96 DPI", "scale(12)px", 1.0, "12px");
    row("scale at 192 DPI", "scale(12)px", 2.0, "24px");
    row("largest size", "scale(2147483647)px", 1.5, "2147483647px");
    row("more digits than a number has", "scale(2147483648)px", 1.5, "0px");
    row("sign outside", "margin: -scale(5)px;", 1.5, "margin: -7px;");
    row("several", "scale(2)px scale(4)px", 1.5, "3px 6px");
    row("not all digits", "scale(num) scale(-1) scale(1.5)", 2.0, "scale(num) scale(-1) scale(1.5)");
    row("variable that holds a scale", "padding: var(gap);", 2.0, "padding: 10px;");
    row("korean comment", "/* 크기 */ scale(2)", 2.0, "/* 크기 */ 4");
}

void Tst_StyleSheetText::preprocesses() {
    QFETCH(QString, text);
    QFETCH(double, scale);
    QTEST(preprocessStyleSheet(text, variable, scale), "expected");
}

void Tst_StyleSheetText::valuesThatNameThemselvesEnd() {
    QCOMPARE(preprocessStyleSheet(QStringLiteral("a var(self) b"), variable, 1.0),
             QStringLiteral("a var(self) b"));
}

QTEST_APPLESS_MAIN(Tst_StyleSheetText)
#include "tst_stylesheettext.moc"
