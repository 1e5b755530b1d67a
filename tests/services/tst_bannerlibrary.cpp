#include "platform/configuration.h"
#include "services/bannerlibrary.h"
#include "support/literals.h"
#include "support/substitutelibraries.h"

#include <QtTest>

namespace {

const QString clients = QStringLiteral("Software\\Microsoft\\EdgeUpdate\\Clients");
const QString webView = QStringLiteral("{F3017226-FE2A-4295-8BDF-00C3A9A7E4C5}");

void installWebView() {
    ConfigurationLocation(clients + QLatin1Char('\\') + webView)
        .setValue(QStringLiteral("pv"), QStringLiteral("1.2"));
}

const QList<QByteArray> firstFunctions{"Quoin_Initialize",
                                       "Quoin_Finalize",
                                       "Quoin_CreateArea",
                                       "Quoin_CreateAreaEx",
                                       "Quoin_DeleteArea",
                                       "Quoin_SetScale",
                                       "Quoin_SetOpenBrowserCallback",
                                       "Quoin_PrepareStats"};
const QList<QByteArray> secondFunctions{
    "Create", "Close", "SetScale", "Finalize", "CopyAdCookies", "SetOpenBrowserCallback", "PrepareStats"};

} // namespace

class Tst_BannerLibrary : public QObject {
    Q_OBJECT
private slots:
    void init() { m_libraries.reset(new SubstituteLibraries); }
    void cleanup();
    void nothingWithoutALibrary();
    void bindsTheFunctionsOfItsKind_data();
    void bindsTheFunctionsOfItsKind();
    void secondOneNeedsTheWebView();
    void secondOneThatCannotBeLoadedLeavesTheFirst();
    void areaIsTakenAway();
    void endsOnce();

private:
    QScopedPointer<SubstituteLibraries> m_libraries;
};

void Tst_BannerLibrary::cleanup() {
    ConfigurationLocation(clients).remove(webView);
    m_libraries.reset();
}

void Tst_BannerLibrary::nothingWithoutALibrary() {
    installWebView();
    BannerLibrary library;
    QCOMPARE(library.start(m_libraries->folder()), BannerLibrary::None);
    QVERIFY(!library.has("Quoin_Initialize"));
    library.deleteArea("AD_CAP_B01"_qs);
    library.end();
    QCOMPARE(library.kind(), BannerLibrary::None);
}

void Tst_BannerLibrary::bindsTheFunctionsOfItsKind_data() {
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("kind");
    QTest::addColumn<QList<QByteArray>>("functions");
    QTest::addColumn<QStringList>("calls");
    QTest::newRow("first") << "Quoin" << int(BannerLibrary::First) << firstFunctions
                           << QStringList{"Quoin_Initialize"_qs};
    QTest::newRow("second") << "quoin2" << int(BannerLibrary::Second) << secondFunctions << QStringList();
}

void Tst_BannerLibrary::bindsTheFunctionsOfItsKind() {
    QFETCH(QString, file);
    QFETCH(QList<QByteArray>, functions);
    installWebView();
    m_libraries->add(file);
    BannerLibrary library;
    QTEST(int(library.start(m_libraries->folder())), "kind");
    QTEST(int(library.start(m_libraries->folder())), "kind");
    for (const QByteArray &name : firstFunctions + secondFunctions)
        QVERIFY2(library.has(name) == functions.contains(name), name);
    QTEST(m_libraries->calls(), "calls");
}

void Tst_BannerLibrary::secondOneNeedsTheWebView() {
    m_libraries->add("Quoin"_qs);
    m_libraries->add("quoin2"_qs);
    BannerLibrary library;
    QCOMPARE(library.start(m_libraries->folder()), BannerLibrary::First);
    library.end();
    installWebView();
    QCOMPARE(library.start(m_libraries->folder()), BannerLibrary::Second);
}

void Tst_BannerLibrary::secondOneThatCannotBeLoadedLeavesTheFirst() {
    installWebView();
    m_libraries->add("Quoin"_qs);
    m_libraries->add("quoin2"_qs, SubstituteLibraries::Signature::Broken);
    BannerLibrary library;
    QCOMPARE(library.start(m_libraries->folder()), BannerLibrary::First);
}

void Tst_BannerLibrary::areaIsTakenAway() {
    m_libraries->add("Quoin"_qs);
    BannerLibrary first;
    first.start(m_libraries->folder());
    first.deleteArea("AD_CAP_B01"_qs);
    QCOMPARE(m_libraries->calls().last(), "Quoin_DeleteArea AD_CAP_B01"_qs);
    installWebView();
    m_libraries->add("quoin2"_qs);
    BannerLibrary second;
    second.start(m_libraries->folder());
    second.deleteArea("AD_CAP_B01"_qs);
    QCOMPARE(m_libraries->calls().last(), "Close AD_CAP_B01"_qs);
}

void Tst_BannerLibrary::endsOnce() {
    installWebView();
    for (const char *file : {"Quoin", "quoin2"}) {
        m_libraries->add(QLatin1String(file));
        BannerLibrary library;
        library.start(m_libraries->folder());
        m_libraries->forgetCalls();
        library.end();
        library.end();
        const QString call = qstrcmp(file, "Quoin") == 0 ? "Quoin_Finalize"_qs : "Finalize"_qs;
        QCOMPARE(m_libraries->calls(), QStringList{call});
    }
}

QTEST_GUILESS_MAIN(Tst_BannerLibrary)
#include "tst_bannerlibrary.moc"
