#include "popups/basiccolors.h"

#include <QTest>
#include <QTranslator>

using Colors = QList<BasicColor>;

namespace {

/// Translates the colours' context into itself with a mark.
class Marker : public QTranslator {
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *text, const char *, int) const override {
        return qstrcmp(context, "BasicColor") == 0 ? QStringLiteral("<") + QLatin1String(text) : QString();
    }
};

QStringList described(const Colors &colors) {
    QStringList list;
    for (const BasicColor &color : colors)
        list += QStringLiteral("%1 %2").arg(color.name, color.color.name(QColor::HexArgb));
    return list;
}

} // namespace

class Tst_BasicColors : public QObject {
    Q_OBJECT
private slots:
    void tables_data();
    void tables();
    void namesAreTranslatedInTheirContext();
};

void Tst_BasicColors::tables_data() {
    QTest::addColumn<QStringList>("actual");
    QTest::addColumn<QString>("expected");
    const QString shared = QStringLiteral("black #ff000000,gray #ff929292,red #ffff0000,orange #ffffc000,"
                                          "light green #ff8ecc4c,green #ff00b050,sky blue #ff00b0f0,"
                                          "blue #ff007ff5,purple #ff7030a0,");
    const QString text = QStringLiteral("black #ff000000,gray #ff929292,red #ffff0000,orange #ffffc000,"
                                        "light green #ff8ecc4c,sky blue #ff00b0f0,blue #ff007ff5,"
                                        "purple #ff7030a0,pink #ffff0099,white #ffffffff");
    QTest::newRow("fill") << described(BasicColors::figureFill())
                          << shared + QStringLiteral("fill transparent #00000000");
    QTest::newRow("outline") << described(BasicColors::figureOutline())
                             << shared + QStringLiteral("outline transparent #00000000");
    QTest::newRow("text") << described(BasicColors::text()) << text;
    QTest::newRow("pen") << described(BasicColors::pen())
                         << QString(text).remove(QStringLiteral("red #ffff0000,"));
    QTest::newRow("highlighter") << described(BasicColors::highlighter())
                                 << QStringLiteral("orange #ffffc000,yellow #fffff000,light green #ff8ecc4c,"
                                                   "green #ff00b050,pink #ffff0099,purple #ff7030a0,"
                                                   "light blue #ff9bdcff,blue #ff007ff5,sky blue #ff00b0f0");
}

void Tst_BasicColors::tables() {
    QFETCH(QStringList, actual);
    QFETCH(QString, expected);
    QCOMPARE(actual, expected.split(QLatin1Char(',')));
}

void Tst_BasicColors::namesAreTranslatedInTheirContext() {
    Marker marker;
    QVERIFY(qApp->installTranslator(&marker));
    QCOMPARE(BasicColors::figureFill().last().name, QStringLiteral("<fill transparent"));
    qApp->removeTranslator(&marker);
    QCOMPARE(BasicColors::figureFill().last().name, QStringLiteral("fill transparent"));
}

QTEST_MAIN(Tst_BasicColors)
#include "tst_basiccolors.moc"
