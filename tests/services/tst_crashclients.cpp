#include "services/wyvern.h"
#include "services/wyvern2.h"
#include "support/literals.h"
#include "support/substitutelibraries.h"

#include <QtTest>

/// Both crash clients, each of which serves another generation of systems.
class Tst_CrashClients : public QObject {
    Q_OBJECT
private slots:
    void init() { m_libraries.reset(new SubstituteLibraries); }
    void cleanup();
    void olderOneIsArmedWithThreeTexts();
    void olderOneWatchesTheThreadOnce();
    void crashReachesTheCallback();
    void olderOneMustBeWhole();
    void olderOneIsDoneWithout();
    void currentOneIsArmedAndEnded();
    void currentOneTakesNotes();
    void currentOneIsDoneWithout_data();
    void currentOneIsDoneWithout();

private:
    bool start(Wyvern &client, const QString &library = "WyvernC"_qs) {
        return client.start(m_libraries->add(library), "/texts/한글.so"_qs, "Tindra"_qs, "1.2_ko_KR"_qs);
    }
    QScopedPointer<SubstituteLibraries> m_libraries;
    const QString m_armed = "WyvernCProcessInitializeW Tindra 1.2_ko_KR /texts/한글.so"_qs;
};

void Tst_CrashClients::cleanup() {
    qunsetenv("TINDRA_TEST_CRASH");
    m_libraries.reset();
}

void Tst_CrashClients::olderOneIsArmedWithThreeTexts() {
    {
        Wyvern client;
        QVERIFY(!client.isLoaded());
        QVERIFY(start(client));
        QVERIFY(client.isLoaded());
        QVERIFY(start(client));
        QCOMPARE(m_libraries->calls(), QStringList{m_armed});
    }
    QCOMPARE(m_libraries->calls(), (QStringList{m_armed, "WyvernCProcessFinalizeW"_qs}));
}

void Tst_CrashClients::olderOneWatchesTheThreadOnce() {
    {
        Wyvern client;
        start(client);
        client.endThread();
        client.startThread();
        client.startThread();
        client.endThread();
        client.endThread();
    }
    // The client finds the product again, long after it was told.
    QCOMPARE(m_libraries->calls(), (QStringList{m_armed, "WyvernCThreadInitializeW Tindra"_qs,
                                                "WyvernCThreadFinalizeW"_qs, "WyvernCProcessFinalizeW"_qs}));
}

void Tst_CrashClients::crashReachesTheCallback() {
    qputenv("TINDRA_TEST_CRASH", "1");
    int crashes = 0;
    {
        Wyvern client;
        start(client);
        client.startThread(); // a crash without a callback is reported all the same
        client.endThread();
        client.setCallback([&] { ++crashes; });
        client.startThread();
    }
    QCOMPARE(crashes, 1);
}

void Tst_CrashClients::olderOneMustBeWhole() {
    Wyvern client;
    QVERIFY(!start(client, "Torn"_qs));
    QVERIFY(!client.isLoaded());
    client.startThread();
    client.endThread();
    QCOMPARE(m_libraries->calls(), QStringList());
}

void Tst_CrashClients::olderOneIsDoneWithout() {
    Wyvern client;
    QVERIFY(!client.start("/nonexistent/WyvernC.so"_qs, "x"_qs, "Tindra"_qs, "1"_qs));
    client.setCallback([] {});
    client.startThread();
    client.endThread();
    QVERIFY(!client.isLoaded());
}

void Tst_CrashClients::currentOneIsArmedAndEnded() {
    const QString armed = "Wyvern_InitModuleW https://crash.example/x Tindra@1.2 ko-kr"_qs;
    {
        Wyvern2 client;
        const QString path = m_libraries->add("wyvern2_x86"_qs);
        for (int i = 0; i < 2; ++i)
            QVERIFY(client.start(path, "https://crash.example/x"_qs, "Tindra@1.2"_qs, "ko-kr"_qs));
        QCOMPARE(m_libraries->calls(), QStringList{armed});
        client.end();
        QVERIFY(!client.isStarted());
    }
    QCOMPARE(m_libraries->calls(), (QStringList{armed, "Wyvern_ExitModule"_qs}));
}

void Tst_CrashClients::currentOneTakesNotes() {
    Wyvern2 client;
    client.addBreadCrumb("before"_qs);
    client.start(m_libraries->add("wyvern2_x86"_qs), "e"_qs, "r"_qs, "l"_qs);
    client.addBreadCrumb("capture added"_qs);
    QCOMPARE(m_libraries->calls(),
             (QStringList{"Wyvern_InitModuleW e r l"_qs, "Wyvern_AddBreadCrumbW capture added"_qs}));
}

void Tst_CrashClients::currentOneIsDoneWithout_data() {
    QTest::addColumn<QString>("library");
    QTest::newRow("not there") << QString();
    QTest::newRow("lacks the function") << "works";
}

void Tst_CrashClients::currentOneIsDoneWithout() {
    QFETCH(QString, library);
    Wyvern2 client;
    const QString path = library.isEmpty() ? "/nonexistent/wyvern2_x86.so"_qs : m_libraries->add(library);
    QVERIFY(!client.start(path, "e"_qs, "r"_qs, "l"_qs));
    QVERIFY(!client.isStarted());
    client.addBreadCrumb("note"_qs);
    client.end();
}

QTEST_GUILESS_MAIN(Tst_CrashClients)
#include "tst_crashclients.moc"
