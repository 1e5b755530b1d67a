#include "services/pluginhost.h"
#include "support/literals.h"
#include "support/machinesettings.h"
#include "support/substitutelibraries.h"

#include <QtTest>

using Signature = SubstituteLibraries::Signature;

Q_DECLARE_METATYPE(SubstituteLibraries::Signature)

class Tst_PluginHost : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void tellsWhoAsksAtTheStart();
    void startsOnce();
    void listsWhatTheHostHas();
    void leavesOutWhatHasNoId();
    void asksNoHostTooOften();
    void textsAreTheHosts_data();
    void textsAreTheHosts();
    void failureLeavesNoText();
    void textWithoutEndIsEnded();
    void runsAPlugin_data();
    void runsAPlugin();
    void imagesBecomeOneArgument_data();
    void imagesBecomeOneArgument();
    void withoutAHostNothingRuns_data();
    void withoutAHostNothingRuns();

private:
    static PluginHost &host() { return PluginHost::instance(); }
    void start() const { host().start("tindra"_qs, "ko-kr"_qs); }
    /// Puts a library in the host's place.
    void install(const QString &library, Signature signature = Signature::Good) const;
    QStringList callsOf(const QString &function) const {
        return m_libraries->calls().filter(QRegularExpression(QLatin1Char('^') + function));
    }

    std::unique_ptr<MachineSettings> m_settings;
    std::unique_ptr<SubstituteLibraries> m_libraries;
};

namespace {
const auto Kilnworks = "kilnworks"_qs;
}

void Tst_PluginHost::init() {
    m_settings = std::make_unique<MachineSettings>();
    m_libraries = std::make_unique<SubstituteLibraries>();
    m_settings->set("BrindleManager"_qs, "RootDir"_qs, m_libraries->folder());
    qputenv("TINDRA_TEST_PLUGINS",
            "erase|Erase background|Removes what is behind\nsharp|Sharpen|Makes it clear");
}

void Tst_PluginHost::cleanup() {
    PluginHost::resetForTesting();
    m_libraries.reset();
    m_settings.reset();
    for (const char *name :
         {"TINDRA_TEST_PLUGINS", "TINDRA_TEST_COUNT", "TINDRA_TEST_FILL", "TINDRA_TEST_RESULT"})
        qunsetenv(name);
}

void Tst_PluginHost::install(const QString &library, Signature signature) const {
    const QString path = m_libraries->add(library, signature);
    const QString place = m_libraries->folder() + "/kilnworks.so"_qs;
    if (path == place)
        return;
    QVERIFY(QFile::rename(path, place));
    QVERIFY(QFile::rename(path + ".p7s"_qs, place + ".p7s"_qs));
}

void Tst_PluginHost::tellsWhoAsksAtTheStart() {
    install(Kilnworks);
    QVERIFY(!host().isLoaded());
    start();
    QVERIFY(host().isLoaded());
    QCOMPARE(m_libraries->calls(), QStringList{"SetAppInfo tindra ko-kr"_qs});
}

void Tst_PluginHost::startsOnce() {
    install(Kilnworks);
    start();
    QVERIFY(QFile::remove(m_libraries->folder() + "/kilnworks.so"_qs));
    start();
    QVERIFY(host().isLoaded());
    QCOMPARE(callsOf("SetAppInfo"_qs).size(), 1);
}

void Tst_PluginHost::listsWhatTheHostHas() {
    install(Kilnworks);
    start();
    m_libraries->forgetCalls();
    QCOMPARE(host().pluginIds(), (QStringList{"erase"_qs, "sharp"_qs}));
    QCOMPARE(m_libraries->calls(), (QStringList{"SetAppInfo tindra ko-kr"_qs, "PluginCount"_qs,
                                                "PluginId 0 30"_qs, "PluginId 1 30"_qs}));
    qputenv("TINDRA_TEST_PLUGINS", "other|Other");
    QCOMPARE(host().pluginIds(), QStringList{"other"_qs});
    qputenv("TINDRA_TEST_PLUGINS", "");
    QCOMPARE(host().pluginIds(), QStringList());
}

void Tst_PluginHost::leavesOutWhatHasNoId() {
    install(Kilnworks);
    start();
    qputenv("TINDRA_TEST_PLUGINS", "erase\n?\n|nameless\nsharp");
    QCOMPARE(host().pluginIds(), (QStringList{"erase"_qs, "sharp"_qs}));
}

void Tst_PluginHost::asksNoHostTooOften() {
    install(Kilnworks);
    start();
    qputenv("TINDRA_TEST_COUNT", "4294967295");
    QCOMPARE(host().pluginIds(), (QStringList{"erase"_qs, "sharp"_qs}));
    QCOMPARE(callsOf("PluginId"_qs).size(), 100);
}

void Tst_PluginHost::textsAreTheHosts_data() {
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("description");
    // Of 29 and 99 characters, the longest that leave room for their end.
    const QString name(29, QLatin1Char('n'));
    const QString description(99, QLatin1Char('d'));
    QTest::newRow("short") << "erase"_qs
                           << "Erase"_qs
                           << "Removes what is behind"_qs;
    QTest::newRow("longest") << "long"_qs << name << description;
    QTest::newRow("one too long") << "longer"_qs << name + "n"_qs << description + "d"_qs;
    QTest::newRow("beyond ASCII") << "지움"_qs
                                  << "배경 지우기 é"_qs
                                  << "ß 그림"_qs;
}

void Tst_PluginHost::textsAreTheHosts() {
    QFETCH(QString, id);
    QFETCH(QString, name);
    QFETCH(QString, description);
    install(Kilnworks);
    start();
    qputenv("TINDRA_TEST_PLUGINS", QStringList{id, name, description}.join(QLatin1Char('|')).toUtf8());
    QCOMPARE(host().pluginIds(), QStringList{id});
    m_libraries->forgetCalls();
    QCOMPARE(host().pluginName(id), name.size() < 30 ? name : QString());
    QCOMPARE(host().pluginDescription(id), description.size() < 100 ? description : QString());
    QCOMPARE(m_libraries->calls(), (QStringList{"PluginName 30 "_qs + id, "PluginDescription 100 "_qs + id}));
}

// The substitute writes something before it fails.
void Tst_PluginHost::failureLeavesNoText() {
    install(Kilnworks);
    start();
    qputenv("TINDRA_TEST_PLUGINS", "erase|?|?");
    QCOMPARE(host().pluginName("erase"_qs), QString());
    QCOMPARE(host().pluginDescription("erase"_qs), QString());
    QCOMPARE(host().pluginName("unknown"_qs), QString());
    QCOMPARE(callsOf("PluginName"_qs).size(), 2);
}

void Tst_PluginHost::textWithoutEndIsEnded() {
    install(Kilnworks);
    start();
    qputenv("TINDRA_TEST_FILL", "z");
    QCOMPARE(host().pluginIds(), (QStringList{QString(30, QLatin1Char('z')), QString(30, QLatin1Char('z'))}));
    QCOMPARE(host().pluginName("erase"_qs), QString(30, QLatin1Char('z')));
    QCOMPARE(host().pluginDescription("erase"_qs), QString(100, QLatin1Char('z')));
}

void Tst_PluginHost::runsAPlugin_data() {
    QTest::addColumn<unsigned>("result");
    for (const unsigned result : {0U, 1U, 126U, 1306U, 1627U, 4294967295U})
        QTest::addRow("%u", result) << result;
}

void Tst_PluginHost::runsAPlugin() {
    QFETCH(unsigned, result);
    install(Kilnworks);
    start();
    m_libraries->forgetCalls();
    qputenv("TINDRA_TEST_RESULT", QByteArray::number(result));
    QCOMPARE(host().execute("erase"_qs, {"/a b/c.png"_qs}), result);
    QCOMPARE(host().execute("sharp"_qs, {}), result);
    QCOMPARE(m_libraries->calls(),
             (QStringList{"ExecutePlugin erase --image=\"/a b/c.png\""_qs, "ExecutePlugin sharp "_qs}));
}

void Tst_PluginHost::imagesBecomeOneArgument_data() {
    QTest::addColumn<QStringList>("images");
    QTest::addColumn<QString>("argument");
    QTest::newRow("none") << QStringList() << QString();
    QTest::newRow("one") << QStringList{"/a.png"_qs} << "--image=\"/a.png\""_qs;
    QTest::newRow("two") << QStringList{"/a.png"_qs, "/b c.png"_qs} << "--image=\"/a.png|/b c.png\""_qs;
    QTest::newRow("place-holder in a path") << QStringList{"/%1.png"_qs} << "--image=\"/%1.png\""_qs;
}

void Tst_PluginHost::imagesBecomeOneArgument() {
    QFETCH(QStringList, images);
    QTEST(PluginHost::imageArguments(images), "argument");
}

void Tst_PluginHost::withoutAHostNothingRuns_data() {
    QTest::addColumn<QString>("library");
    QTest::addColumn<Signature>("signature");
    QTest::addColumn<bool>("isLoaded");
    QTest::newRow("no library") << QString() << Signature::Good << false;
    QTest::newRow("unsigned") << Kilnworks << Signature::None << false;
    QTest::newRow("signed by another maker") << Kilnworks << Signature::OfAnother << false;
    QTest::newRow("changed since it was signed") << Kilnworks << Signature::Broken << false;
    QTest::newRow("crashes as it is loaded") << "crashes"_qs << Signature::Good << false;
    QTest::newRow("lacks the functions") << "works"_qs << Signature::Good << true;
}

void Tst_PluginHost::withoutAHostNothingRuns() {
    QFETCH(QString, library);
    QFETCH(Signature, signature);
    if (!library.isEmpty())
        install(library, signature);
    start();
    QTEST(host().isLoaded(), "isLoaded");
    QCOMPARE(host().pluginIds(), QStringList());
    QCOMPARE(host().pluginName("erase"_qs), QString());
    QCOMPARE(host().pluginDescription("erase"_qs), QString());
    QCOMPARE(host().execute("erase"_qs, {"/a.png"_qs}), 1627U);
    QVERIFY(callsOf("SetAppInfo|Plugin|Execute"_qs).isEmpty());
}

QTEST_GUILESS_MAIN(Tst_PluginHost)
#include "tst_pluginhost.moc"
