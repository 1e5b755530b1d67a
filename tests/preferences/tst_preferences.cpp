#include "platform/configuration.h"
#include "preferences/preferences.h"

#include <QtTest>

namespace {

const QString Root = QStringLiteral("HKEY_CURRENT_USER\\");
const QString Key = QStringLiteral("SOFTWARE\\Norvane\\Tindra\\Config");

void store(const QString &name, const QVariant &value) {
    ConfigurationLocation(Key).setValue(name, value);
}

QVariant stored(const QString &name) {
    return ConfigurationLocation(Key).value(name);
}

} // namespace

class Tst_Preferences : public QObject {
    Q_OBJECT
private slots:
    void init();
    void resizeMakesEmptyItems();
    void resizeToNothingIsRefused_data();
    void resizeToNothingIsRefused();
    void clearRemovesAllItems();
    void defineSetsNameTypeAndValue();
    void indexBeyondTheCountGivesDefaults_data();
    void indexBeyondTheCountGivesDefaults();
    void gettersCheckTheType_data();
    void gettersCheckTheType();
    void setterOfAnotherTypeChangesTheType();
    void textsDifferByCase();
    void nullTextIsFinal();
    void nullTextIsFinalAtLoad();
    void loadConvertsToTheDeclaredType_data();
    void loadConvertsToTheDeclaredType();
    void loadCountsWhatItRead();
    void firstSaveWritesDefaults();
    void saveWritesOnlyWhatChanged();
    void loadedValuesAreNotWrittenAgain();
    void boolsAreStoredAsNumbers();
    void changedTypeIsSavedAndKeptByLoad();
    void emptyStoredTextCanBeChanged();
    void refusedSaveIsMadeUpByTheNext();

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};

void Tst_Preferences::init() {
    m_folder = std::make_unique<QTemporaryDir>();
    qputenv("XDG_CONFIG_HOME", m_folder->path().toLocal8Bit());
}

void Tst_Preferences::resizeMakesEmptyItems() {
    Preferences preferences;
    QVERIFY(!preferences.HasItems());
    QVERIFY(preferences.Resize(2));
    QVERIFY(preferences.HasItems());
    preferences.Define(1, QStringLiteral("Old"), 7);
    QVERIFY(preferences.Resize(3));
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(preferences.Type(i), int(Preferences::None));
        QVERIFY(preferences.Name(i).isEmpty());
    }
}

void Tst_Preferences::resizeToNothingIsRefused_data() {
    QTest::addColumn<int>("count");
    QTest::newRow("zero") << 0;
    QTest::newRow("negative") << -1;
}

void Tst_Preferences::resizeToNothingIsRefused() {
    QFETCH(int, count);
    Preferences preferences;
    preferences.Resize(1);
    preferences.Define(0, QStringLiteral("Kept"), 7);
    QVERIFY(!preferences.Resize(count));
    QCOMPARE(preferences.GetInt(0, 0), 7);
}

void Tst_Preferences::clearRemovesAllItems() {
    Preferences preferences;
    preferences.Resize(1);
    preferences.Define(0, QStringLiteral("A"), 7);
    preferences.Clear();
    QVERIFY(!preferences.HasItems());
    QCOMPARE(preferences.GetInt(0, -5), -5);
}

void Tst_Preferences::defineSetsNameTypeAndValue() {
    Preferences preferences;
    preferences.Resize(3);
    preferences.Define(0, QStringLiteral("B"), true);
    preferences.Define(1, QStringLiteral("I"), 42);
    preferences.Define(2, QStringLiteral("S"), QStringLiteral("text"));
    QCOMPARE(preferences.Name(0), QStringLiteral("B"));
    QCOMPARE(preferences.Type(0), 2);
    QCOMPARE(preferences.GetBool(0, false), true);
    QCOMPARE(preferences.Name(1), QStringLiteral("I"));
    QCOMPARE(preferences.Type(1), 1);
    QCOMPARE(preferences.GetInt(1, 0), 42);
    QCOMPARE(preferences.Name(2), QStringLiteral("S"));
    QCOMPARE(preferences.Type(2), 3);
    QCOMPARE(preferences.GetString(2, QString()), QStringLiteral("text"));
}

void Tst_Preferences::indexBeyondTheCountGivesDefaults_data() {
    QTest::addColumn<int>("index");
    QTest::newRow("at the count") << 2;
    QTest::newRow("far beyond") << 1000000;
    QTest::newRow("negative") << -1;
}

void Tst_Preferences::indexBeyondTheCountGivesDefaults() {
    QFETCH(int, index);
    Preferences preferences;
    preferences.Resize(2);
    preferences.Define(index, QStringLiteral("X"), 3);
    preferences.Define(index, QStringLiteral("X"), true);
    preferences.Define(index, QStringLiteral("X"), QStringLiteral("x"));
    preferences.SetBool(index, true);
    preferences.SetInt(index, 3);
    preferences.SetString(index, QStringLiteral("x"));
    QVERIFY(preferences.Name(index).isNull());
    QCOMPARE(preferences.Type(index), 0);
    QCOMPARE(preferences.GetBool(index, true), true);
    QCOMPARE(preferences.GetInt(index, -5), -5);
    QCOMPARE(preferences.GetString(index, QStringLiteral("d")), QStringLiteral("d"));
}

void Tst_Preferences::gettersCheckTheType_data() {
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("asBool"); // defaults: false, -5, "d"
    QTest::addColumn<int>("asInt");
    QTest::addColumn<QString>("asString");
    const QString d = QStringLiteral("d");
    QTest::newRow("none") << QVariant() << false << -5 << d;
    QTest::newRow("int") << QVariant(8) << true << 8 << d;
    QTest::newRow("int 0") << QVariant(0) << false << 0 << d;
    QTest::newRow("bool") << QVariant(true) << true << -5 << d;
    QTest::newRow("string") << QVariant(QStringLiteral("1")) << false << -5 << QStringLiteral("1");
}

void Tst_Preferences::gettersCheckTheType() {
    QFETCH(QVariant, value);
    Preferences preferences;
    preferences.Resize(1);
    if (value.type() == QVariant::Int)
        preferences.SetInt(0, value.toInt());
    else if (value.type() == QVariant::Bool)
        preferences.SetBool(0, value.toBool());
    else if (value.type() == QVariant::String)
        preferences.SetString(0, value.toString());
    QTEST(preferences.GetBool(0, false), "asBool");
    QTEST(preferences.GetInt(0, -5), "asInt");
    QTEST(preferences.GetString(0, QStringLiteral("d")), "asString");
}

void Tst_Preferences::setterOfAnotherTypeChangesTheType() {
    Preferences preferences;
    preferences.Resize(1);
    preferences.Define(0, QStringLiteral("LineWidth"), 1);
    preferences.SetBool(0, true); // equal by value, different by type
    QCOMPARE(preferences.Type(0), 2);
    QCOMPARE(preferences.GetInt(0, 99), 99);
    preferences.SetString(0, QStringLiteral("x"));
    QCOMPARE(preferences.Type(0), 3);
    QCOMPARE(preferences.GetBool(0, true), true);
    QCOMPARE(preferences.GetBool(0, false), false);
    preferences.SetInt(0, 4);
    QCOMPARE(preferences.GetInt(0, 99), 4);
    QCOMPARE(preferences.GetString(0, QStringLiteral("d")), QStringLiteral("d"));
}

void Tst_Preferences::textsDifferByCase() {
    Preferences preferences;
    preferences.Resize(1);
    preferences.Define(0, QStringLiteral("S"), QStringLiteral("abc"));
    preferences.Save(Root, Key);
    preferences.SetString(0, QStringLiteral("abc"));
    QCOMPARE(preferences.Save(Root, Key), 0);
    preferences.SetString(0, QStringLiteral("ABC"));
    QCOMPARE(preferences.Save(Root, Key), 1);
    QCOMPARE(stored(QStringLiteral("S")).toString(), QStringLiteral("ABC"));
}

void Tst_Preferences::nullTextIsFinal() {
    Preferences preferences;
    preferences.Resize(1);
    preferences.Define(0, QStringLiteral("S"), QString());
    preferences.SetString(0, QStringLiteral("x"));
    QCOMPARE(preferences.GetString(0, QStringLiteral("d")), QString());
}

void Tst_Preferences::nullTextIsFinalAtLoad() {
    store(QStringLiteral("S"), QStringLiteral("stored"));
    Preferences preferences;
    preferences.Resize(1);
    preferences.Define(0, QStringLiteral("S"), QString());
    QCOMPARE(preferences.Load(Root, Key), 1);
    QVERIFY(preferences.GetString(0, QStringLiteral("d")).isNull());
    // What it holds counts as saved, so the stored text stays too.
    QCOMPARE(preferences.Save(Root, Key), 0);
    QCOMPARE(stored(QStringLiteral("S")).toString(), QStringLiteral("stored"));
}

void Tst_Preferences::loadConvertsToTheDeclaredType_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("asBool"); // defined as false, -5, "d"
    QTest::addColumn<int>("asInt");
    QTest::newRow("one") << QStringLiteral("1") << true << 1;
    QTest::newRow("zero") << QStringLiteral("0") << false << 0;
    QTest::newRow("other number") << QStringLiteral("17") << true << 17;
    QTest::newRow("negative") << QStringLiteral("-16776961") << true << -16776961;
    QTest::newRow("unsigned colour") << QStringLiteral("4278190335") << true << -16776961;
    QTest::newRow("beyond 32 bits") << QStringLiteral("4294967296") << true << -5;
    QTest::newRow("word") << QStringLiteral("true") << true << -5;
    QTest::newRow("word false") << QStringLiteral("false") << false << -5;
    QTest::newRow("empty") << QStringLiteral("") << false << -5;
}

void Tst_Preferences::loadConvertsToTheDeclaredType() {
    QFETCH(QString, text);
    for (const char *name : {"B", "I", "S"})
        store(QLatin1String(name), text);
    Preferences preferences;
    preferences.Resize(3);
    preferences.Define(0, QStringLiteral("B"), false);
    preferences.Define(1, QStringLiteral("I"), -5);
    preferences.Define(2, QStringLiteral("S"), QStringLiteral("d"));
    preferences.Load(Root, Key);
    QTEST(preferences.GetBool(0, false), "asBool");
    QTEST(preferences.GetInt(1, 99), "asInt");
    QCOMPARE(preferences.GetString(2, QString()), text);
}

void Tst_Preferences::loadCountsWhatItRead() {
    store(QStringLiteral("A"), 1);
    store(QStringLiteral("C"), QStringLiteral("no number"));
    Preferences preferences;
    preferences.Resize(4); // the last one has no name
    preferences.Define(0, QStringLiteral("A"), 5);
    preferences.Define(1, QStringLiteral("B"), 5);
    preferences.Define(2, QStringLiteral("C"), 5);
    QCOMPARE(preferences.Load(Root, Key), 1);
    QCOMPARE(preferences.GetInt(0, 0), 1);
    QCOMPARE(preferences.GetInt(1, 0), 5);
    QCOMPARE(preferences.GetInt(2, 0), 5);
}

void Tst_Preferences::firstSaveWritesDefaults() {
    Preferences preferences;
    preferences.Resize(3);
    preferences.Define(0, QStringLiteral("A"), 5);
    preferences.Define(2, QStringLiteral("C"), QStringLiteral("c"));
    QCOMPARE(preferences.Load(Root, Key), 0);
    QCOMPARE(preferences.Save(Root, Key), 2);
    QCOMPARE(stored(QStringLiteral("A")).toInt(), 5);
    QCOMPARE(stored(QStringLiteral("C")).toString(), QStringLiteral("c"));
}

void Tst_Preferences::saveWritesOnlyWhatChanged() {
    Preferences preferences;
    preferences.Resize(2);
    preferences.Define(0, QStringLiteral("A"), 1);
    preferences.Define(1, QStringLiteral("B"), 2);
    QCOMPARE(preferences.Save(Root, Key), 2);
    QCOMPARE(preferences.Save(Root, Key), 0);
    preferences.SetInt(0, 1); // no change
    QCOMPARE(preferences.Save(Root, Key), 0);

    store(QStringLiteral("B"), 20); // another program's, which an untouched item must not undo
    preferences.SetInt(0, 10);
    QCOMPARE(preferences.Save(Root, Key), 1);
    QCOMPARE(stored(QStringLiteral("A")).toInt(), 10);
    QCOMPARE(stored(QStringLiteral("B")).toInt(), 20);
}

void Tst_Preferences::loadedValuesAreNotWrittenAgain() {
    store(QStringLiteral("A"), 7);
    Preferences preferences;
    preferences.Resize(2);
    preferences.Define(0, QStringLiteral("A"), 1);
    preferences.Define(1, QStringLiteral("B"), 2);
    preferences.Load(Root, Key);
    QCOMPARE(preferences.Save(Root, Key), 1); // B's default
}

void Tst_Preferences::boolsAreStoredAsNumbers() {
    Preferences preferences;
    preferences.Resize(2);
    preferences.Define(0, QStringLiteral("On"), true);
    preferences.Define(1, QStringLiteral("Off"), false);
    preferences.Save(Root, Key);
    QFile file(m_folder->filePath(QStringLiteral("Norvane/Tindra.conf")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("[Config]\nOff=0\nOn=1\n"));
}

void Tst_Preferences::changedTypeIsSavedAndKeptByLoad() {
    Preferences preferences;
    preferences.Resize(1);
    preferences.Define(0, QStringLiteral("A"), 1);
    preferences.Save(Root, Key);
    preferences.SetString(0, QStringLiteral("12"));
    QCOMPARE(preferences.Save(Root, Key), 1);
    QCOMPARE(preferences.Load(Root, Key), 1);
    QCOMPARE(preferences.Type(0), 3);
    QCOMPARE(preferences.GetString(0, QString()), QStringLiteral("12"));
}

void Tst_Preferences::emptyStoredTextCanBeChanged() {
    store(QStringLiteral("S"), QStringLiteral(""));
    Preferences preferences;
    preferences.Resize(1);
    preferences.Define(0, QStringLiteral("S"), QStringLiteral("d"));
    QCOMPARE(preferences.Load(Root, Key), 1);
    preferences.SetString(0, QStringLiteral("x"));
    QCOMPARE(preferences.GetString(0, QString()), QStringLiteral("x"));
}

void Tst_Preferences::refusedSaveIsMadeUpByTheNext() {
    store(QStringLiteral("A"), 1);
    store(QStringLiteral("B"), 2);
    Preferences preferences;
    preferences.Resize(2);
    preferences.Define(0, QStringLiteral("A"), 1);
    preferences.Define(1, QStringLiteral("B"), 2);
    QCOMPARE(preferences.Load(Root, Key), 2);
    preferences.SetInt(0, 10);
    // Nobody waits for a lock that can never be had.
    const QString lock = m_folder->filePath(QStringLiteral("Norvane/Tindra.conf.lock"));
    QVERIFY(QDir().mkpath(lock));
    QCOMPARE(preferences.Save(Root, Key), 0);
    QCOMPARE(stored(QStringLiteral("A")).toInt(), 1);
    QVERIFY(QDir().rmdir(lock));
    QCOMPARE(preferences.Save(Root, Key), 1); // and not B, which was never changed
    QCOMPARE(stored(QStringLiteral("A")).toInt(), 10);
    QCOMPARE(preferences.Save(Root, Key), 0);
}

QTEST_GUILESS_MAIN(Tst_Preferences)
#include "tst_preferences.moc"
