#include "app/boundservices.h"
#include "app/exitroutine.h"
#include "app/windowtest.h"
#include "services/programfolder.h"
#include "services/statisticslibrary.h"
#include "services/usagestatistics.h"
#include "services/wyvern.h"
#include "support/openedurls.h"
#include "support/substitutelibraries.h"

/// The maker's optional libraries around the main window: what each of them sees, and in which order.
class Tst_BoundServices : public WindowTest {
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void startInOrder();
    void olderSystemHasTheOlderCrashClient();
    void onlyTheCrashClientOfTheSystemStarts();
    void oneIsEnoughAndNoneToo_data();
    void oneIsEnoughAndNoneToo();
    void eachEndEndsEachOnceInOrder_data();
    void eachEndEndsEachOnceInOrder();
    void endBehindTheSettings_data();
    void endBehindTheSettings();
    void nothingIsReportedBehindTheEnd();
    void crashIsReportedAndEndsTheStatistics();
    void workIsReportedInOrder();
    void toolsAreReported_data();
    void toolsAreReported();

private:
    void restart(const QStringList &libraries);
    void end(const QString &how);
    /// The events that the statistics got since the last look.
    QStringList events();

    std::unique_ptr<SubstituteLibraries> m_libraries;
};

namespace {

const QStringList all{"Ostler"_qs, "Freshet"_qs, "wyvern2_x86"_qs, "Quoin"_qs};

void addEnds() {
    QTest::addColumn<QString>("end");
    QTest::newRow("exit") << "/close";
    QTest::newRow("kill") << "/kill";
    QTest::newRow("end of the session") << "";
}

} // namespace

void Tst_BoundServices::init() {
    QCoreApplication::setApplicationVersion("1.2.3"_qs);
    m_libraries = std::make_unique<SubstituteLibraries>();
    setProgramFolder(m_libraries->folder());
    WindowTest::init();
}

void Tst_BoundServices::cleanup() {
    WindowTest::cleanup();
    setProgramFolder({});
    m_libraries.reset();
    qunsetenv("TINDRA_TEST_CRASH");
}

void Tst_BoundServices::restart(const QStringList &libraries) {
    m_window.reset();
    for (const QString &library : libraries)
        m_libraries->add(library);
    m_libraries->forgetCalls();
    start();
}

void Tst_BoundServices::end(const QString &how) {
    QVERIFY(quits([this, how] {
        if (how.isEmpty())
            endSession();
        else
            treat(how);
    }));
}

QStringList Tst_BoundServices::events() {
    QStringList events;
    const QStringList calls = m_libraries->calls();
    for (const QString &call : calls) {
        if (call.startsWith("Ostler_ExecuteAction "_qs))
            events.append(call.section(QLatin1Char(' '), 1));
    }
    m_libraries->forgetCalls();
    return events;
}

void Tst_BoundServices::startInOrder() {
    restart(all);
    QCOMPARE(m_libraries->calls(),
             (QStringList{"Quoin_Initialize"_qs, "Ostler_Initialize Tindra"_qs,
                          "Wyvern_InitModuleW https://crash.norvane.example/tindra Tindra@1.2.3 ko-kr"_qs}));
}

void Tst_BoundServices::olderSystemHasTheOlderCrashClient() {
    m_window.reset();
    m_session->platform->olderCrashClient = true;
    Wyvern client;
    client.start(m_libraries->add("WyvernC"_qs), "t"_qs, "Tindra"_qs, "1"_qs);
    m_libraries->add("wyvern2_x86"_qs);
    m_libraries->forgetCalls();
    {
        BoundServices services(&client);
        services.startCrashClient();
        QCOMPARE(m_libraries->calls(), QStringList{"WyvernCThreadInitializeW Tindra"_qs});
        services.end();
        QCOMPARE(m_libraries->calls(),
                 (QStringList{"WyvernCThreadInitializeW Tindra"_qs, "WyvernCThreadFinalizeW"_qs}));
    }
    QCOMPARE(m_libraries->calls().size(), 2);
}

void Tst_BoundServices::onlyTheCrashClientOfTheSystemStarts() {
    m_window.reset();
    Wyvern client;
    client.start(m_libraries->add("WyvernC"_qs), "t"_qs, "Tindra"_qs, "1"_qs);
    m_libraries->forgetCalls();
    BoundServices services(&client);
    services.startCrashClient();
    QCOMPARE(m_libraries->calls(), QStringList());
}

void Tst_BoundServices::oneIsEnoughAndNoneToo_data() {
    QTest::addColumn<QStringList>("libraries");
    QTest::addColumn<QStringList>("calls");
    QTest::newRow("none") << QStringList() << QStringList();
    QTest::newRow("statistics") << QStringList{"Ostler"_qs}
                                << QStringList{"Ostler_Initialize Tindra"_qs,
                                               "Ostler_ExecuteAction cap_30_03"_qs, "Ostler_Finalize"_qs};
    QTest::newRow("banner") << QStringList{"Quoin"_qs}
                            << QStringList{"Quoin_Initialize"_qs, "Quoin_Finalize"_qs};
    QTest::newRow("crash reports")
        << QStringList{"wyvern2_x86"_qs}
        << QStringList{"Wyvern_InitModuleW https://crash.norvane.example/tindra Tindra@1.2.3 ko-kr"_qs,
                       "Wyvern_ExitModule"_qs};
    QTest::newRow("update") << QStringList{"Freshet"_qs} << QStringList();
}

void Tst_BoundServices::oneIsEnoughAndNoneToo() {
    QFETCH(QStringList, libraries);
    restart(libraries);
    addCapture("a"_qs);
    QVERIFY(scene());
    QVERIFY(m_window->isVisible());
    markSaved();
    end("/close"_qs);
    QTEST(m_libraries->calls(), "calls");
}

void Tst_BoundServices::eachEndEndsEachOnceInOrder_data() {
    addEnds();
}

void Tst_BoundServices::eachEndEndsEachOnceInOrder() {
    QFETCH(QString, end);
    restart(all);
    m_libraries->forgetCalls();
    this->end(end);
    const QStringList ends{"Quoin_Finalize"_qs, "Ostler_Finalize"_qs, "Wyvern_ExitModule"_qs};
    QCOMPARE(m_libraries->calls(), ends);
    m_window.reset();
    QCOMPARE(m_libraries->calls(), ends);
}

void Tst_BoundServices::endBehindTheSettings_data() {
    addEnds();
}

void Tst_BoundServices::endBehindTheSettings() {
    QFETCH(QString, end);
    addCapture("a"_qs);
    markSaved();
    const QString file = scene()->imageKey();
    preferences()->SetBool(TindraPreferences::AutoHistoryDelete, true);
    int ended = 0;
    connect(m_window->findChild<ExitRoutine *>(), &ExitRoutine::servicesEnding, this, [&] {
        ++ended;
        const ConfigurationLocation stored("SOFTWARE\\Norvane\\Tindra\\Config"_qs);
        QCOMPARE(stored.value("AutoHistoryDelete"_qs).toString(), "1"_qs);
        // A kill leaves the captures; a session that ends clears them away as the very last.
        QCOMPARE(QFile::exists(file), end != "/close"_qs);
    });
    this->end(end);
    QCOMPARE(ended, 1);
}

void Tst_BoundServices::nothingIsReportedBehindTheEnd() {
    restart({"Ostler"_qs});
    end("/kill"_qs);
    m_libraries->forgetCalls();
    m_window->onClickUndo();
    QCOMPARE(m_libraries->calls(), QStringList());
}

void Tst_BoundServices::crashIsReportedAndEndsTheStatistics() {
    m_window.reset();
    qputenv("TINDRA_TEST_CRASH", "1");
    m_session->platform->olderCrashClient = true;
    Wyvern client;
    client.start(m_libraries->add("WyvernC"_qs), "t"_qs, "Tindra"_qs, "1"_qs);
    m_libraries->add("Ostler"_qs);
    m_libraries->forgetCalls();
    BoundServices services(&client);
    services.startCrashClient();
    services.end();
    QCOMPARE(m_libraries->calls(),
             (QStringList{"Ostler_Initialize Tindra"_qs, "WyvernCThreadInitializeW Tindra"_qs,
                          "Ostler_ExecuteAction cap_30_26"_qs, "Ostler_Finalize"_qs,
                          "WyvernCThreadFinalizeW"_qs}));
}

void Tst_BoundServices::workIsReportedInOrder() {
    const OpenedUrls urls;
    restart({"Ostler"_qs});
    addCapture("a"_qs);
    m_window->onClickCopy();
    m_window->onClickUndo();
    m_window->onClickRedo();
    m_window->onClickReset();
    m_window->onClickHelp();
    activate();
    preferences()->SetBool(TindraPreferences::NotifyDeleteHistory, false);
    QTest::keyClick(m_window.get(), Qt::Key_N, Qt::ControlModifier);
    ModalAnswers answers;
    answers.addClose(); // the question for a name
    QTest::keyClick(m_window.get(), Qt::Key_S, Qt::ControlModifier);
    activate();
    QTest::keyClick(m_window.get(), Qt::Key_Delete);
    QCOMPARE(events(), (QStringList{"cap_30_03"_qs, "cap_30_02"_qs, "cap_30_10"_qs, "cap_30_11"_qs,
                                    "cap_30_09"_qs, "capt_1_052"_qs, "cap_302_06"_qs, "cap_302_04"_qs,
                                    "cap_30_01"_qs, "cap_302_05"_qs}));
}

void Tst_BoundServices::toolsAreReported_data() {
    QTest::addColumn<int>("mosaic");
    QTest::addColumn<int>("line");
    QTest::addColumn<QStringList>("events");
    QTest::newRow("mosaic of 4") << 4 << 0 << QStringList{"cap_30_06"_qs};
    QTest::newRow("mosaic of 6") << 6 << 0 << QStringList{"cap_30_07"_qs};
    QTest::newRow("mosaic of 9") << 9 << 0 << QStringList{"cap_30_08"_qs};
    QTest::newRow("mosaic of 5") << 5 << 0 << QStringList();
    QTest::newRow("line of 1") << 0 << 1 << QStringList{"cap_30_14"_qs};
    QTest::newRow("line of 3") << 0 << 3 << QStringList{"cap_30_15"_qs};
    QTest::newRow("line of 5") << 0 << 5 << QStringList{"cap_30_16"_qs};
    QTest::newRow("line of 8") << 0 << 8 << QStringList{"cap_30_17"_qs};
    QTest::newRow("line of 12") << 0 << 12 << QStringList{"cap_30_18"_qs};
    QTest::newRow("colours") << 0 << 0
                             << QStringList{"cap_303_14"_qs, "cap_303_13"_qs, "cap_303_15"_qs,
                                            "cap_303_16"_qs};
}

void Tst_BoundServices::toolsAreReported() {
    QFETCH(int, mosaic);
    QFETCH(int, line);
    restart({"Ostler"_qs});
    m_libraries->forgetCalls();
    if (mosaic) {
        m_window->onMosaicSelected(mosaic);
    } else if (line) {
        m_window->onLineSelected(line);
    } else {
        m_window->onFigureSelected(Editor::Rectangle, Qt::SolidLine, QColor(1, 2, 3), QColor(4, 5, 6));
        m_window->onPenSelected(QColor(7, 8, 9));
        m_window->onHighlighterSelected(QColor(10, 11, 12));
    }
    QTEST(events(), "events");
}

QTEST_MAIN(Tst_BoundServices)
#include "tst_boundservices.moc"
