#include "ipc/rawsocket.h"
#include "platform/localserversocket.h"
#include "platform/namedlock.h"

#include <QtTest>

#include <unistd.h>

#include <csignal>

namespace {

/// One start of the test's own program.
class Start {
public:
    explicit Start(const QStringList &arguments = QStringList()) {
        m_process.setProcessChannelMode(QProcess::SeparateChannels);
        m_process.start(program(), arguments);
    }
    ~Start() { kill(); }

    static QString program() { return QStringLiteral(INSTANCE_PROGRAM); }

    QStringList output() {
        m_output += QString::fromUtf8(m_process.readAllStandardOutput());
        return m_output.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }
    bool isFirst() { return output().contains(QStringLiteral("first")); }
    bool isRedirected() { return output().contains(QStringLiteral("redirected")); }
    bool isRunning() const { return m_process.state() == QProcess::Running; }
    bool endedWell() const {
        return m_process.state() == QProcess::NotRunning && m_process.exitStatus() == QProcess::NormalExit &&
               m_process.exitCode() == 0;
    }
    void send(int number) { ::kill(pid_t(m_process.processId()), number); }
    void kill() {
        m_process.kill();
        m_process.waitForFinished();
    }

private:
    QProcess m_process;
    QString m_output;
};

QString lineOf(const QStringList &arguments) {
    QString line = QStringLiteral("line \"%1\"").arg(Start::program());
    for (const QString &argument : arguments)
        line += QStringLiteral(" \"%1\"").arg(argument);
    return line;
}

} // namespace

class Tst_SingleInstance : public QObject {
    Q_OBJECT
private slots:
    void ofManyStartsAtOnceOneIsFirst_data();
    void ofManyStartsAtOnceOneIsFirst();
    void secondStartHandsItsArgumentsOver_data();
    void secondStartHandsItsArgumentsOver();
    void startAfterAKillIsFirst();
    void startAfterAnEndIsFirst();
    void worksWithoutSessionFolder();
    void blockedTemporaryFolderDoesNotStopAStart();
    void terminationSignalBecomesAKillLine_data();
    void terminationSignalBecomesAKillLine();
    void silentHolderOfTheNameStopsOnlyRedirects();
    void redirectWaitsForAnotherThatBuildsItsLine();
    void redirectThatHasToWaitHoldsNobodyUp();
    void startIsLoggedWhenTheSettingsSaySo();
};

void Tst_SingleInstance::ofManyStartsAtOnceOneIsFirst_data() {
    QTest::addColumn<bool>("staleSocket");
    for (int round = 0; round < 4; ++round) {
        QTest::addRow("free name %d", round) << false;
        QTest::addRow("dead editor's name %d", round) << true;
    }
}

void Tst_SingleInstance::ofManyStartsAtOnceOneIsFirst() {
    QFETCH(bool, staleSocket);
    if (staleSocket) {
        Start dead;
        QTRY_VERIFY(dead.isFirst());
        dead.send(SIGKILL);
        QTRY_VERIFY(!dead.isRunning());
    }
    // The lock holds them at the door until all have come there.
    platform::NamedLock door(QStringLiteral("TNDEMutex"));
    QVERIFY(door.lock());
    constexpr int count = 4;
    std::vector<std::unique_ptr<Start>> starts;
    for (int i = 0; i < count; ++i)
        starts.push_back(std::make_unique<Start>(QStringList(QStringLiteral("start %1").arg(i))));
    QTest::qWait(200);
    for (const auto &start : starts)
        QVERIFY(start->output().isEmpty());
    door.unlock();

    const auto number = [&starts](bool (Start::*role)()) {
        return std::count_if(starts.begin(), starts.end(),
                             [role](const auto &start) { return (start.get()->*role)(); });
    };
    QTRY_COMPARE_WITH_TIMEOUT(number(&Start::isFirst) + number(&Start::isRedirected), count, 20000);
    QCOMPARE(number(&Start::isFirst), 1);
    const auto first =
        std::find_if(starts.begin(), starts.end(), [](const auto &start) { return start->isFirst(); });
    // "first" and a line from each of the others.
    QTRY_COMPARE((*first)->output().size(), count);
    QVERIFY((*first)->isRunning());
    for (auto start = starts.begin(); start != starts.end(); ++start) {
        if (start != first)
            QTRY_VERIFY((*start)->endedWell());
    }
}

void Tst_SingleInstance::secondStartHandsItsArgumentsOver_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("none") << QStringList();
    QTest::newRow("commands") << QStringList{QStringLiteral("/about"), QStringLiteral("nothing")};
    QTest::newRow("blanks") << QStringList{QStringLiteral("a b"), QString()};
    QTest::newRow("quote stays as it is") << QStringList{QStringLiteral("a\"b c")};
    QTest::newRow("Hangul") << QStringList{QString::fromUtf8("그림 1.png")};
}

void Tst_SingleInstance::secondStartHandsItsArgumentsOver() {
    QFETCH(QStringList, arguments);
    Start first;
    QTRY_VERIFY(first.isFirst());
    Start second(arguments);
    QTRY_VERIFY(second.endedWell());
    QVERIFY(second.isRedirected());
    QTRY_COMPARE(first.output(), QStringList({QStringLiteral("first"), lineOf(arguments)}));
}

void Tst_SingleInstance::startAfterAKillIsFirst() {
    Start first;
    QTRY_VERIFY(first.isFirst());
    first.send(SIGKILL);
    QTRY_VERIFY(!first.isRunning());
    QVERIFY(QFileInfo::exists(platform::localSocketPath(QStringLiteral("TNDEMutex"))));
    Start next;
    QTRY_VERIFY(next.isFirst());
    Start third({QStringLiteral("hello")});
    QTRY_COMPARE(next.output().size(), 2);
    QCOMPARE(next.output().last(), lineOf({QStringLiteral("hello")}));
}

void Tst_SingleInstance::startAfterAnEndIsFirst() {
    {
        Start first;
        QTRY_VERIFY(first.isFirst());
        first.send(SIGTERM);
        QTRY_VERIFY(first.endedWell());
    }
    QVERIFY(!QFileInfo::exists(platform::localSocketPath(QStringLiteral("TNDEMutex"))));
    Start next;
    QTRY_VERIFY(next.isFirst());
}

void Tst_SingleInstance::worksWithoutSessionFolder() {
    const QByteArray before = qgetenv("XDG_RUNTIME_DIR");
    qunsetenv("XDG_RUNTIME_DIR");
    {
        Start first;
        QTRY_VERIFY(first.isFirst());
        Start second;
        QTRY_VERIFY(second.isRedirected());
    }
    qputenv("XDG_RUNTIME_DIR", before);
}

void Tst_SingleInstance::blockedTemporaryFolderDoesNotStopAStart() {
    const QByteArray session = qgetenv("XDG_RUNTIME_DIR");
    const QByteArray temporary = qgetenv("TMPDIR");
    QTemporaryDir crowded;
    qunsetenv("XDG_RUNTIME_DIR");
    qputenv("TMPDIR", QFile::encodeName(crowded.path()));
    // What another user may have put there: the socket's own name, and every name of our folder.
    QVERIFY(QDir(crowded.path()).mkdir(QStringLiteral("TNDEMutex")));
    const QString folder = QStringLiteral("tindra-%1").arg(::geteuid());
    QVERIFY(QFile::link(QStringLiteral("/nonexistent"), crowded.filePath(folder)));
    for (int i = 1; i < 100; ++i)
        QVERIFY(QFile::link(QStringLiteral("/nonexistent"),
                            crowded.filePath(QStringLiteral("%1-%2").arg(folder).arg(i))));
    {
        Start first;
        QTRY_VERIFY(first.isFirst());
        Start second({QStringLiteral("hello")});
        QTRY_VERIFY(second.isRedirected());
        QTRY_COMPARE(first.output().last(), lineOf({QStringLiteral("hello")}));
    }
    qputenv("XDG_RUNTIME_DIR", session);
    qputenv("TMPDIR", temporary);
}

void Tst_SingleInstance::terminationSignalBecomesAKillLine_data() {
    QTest::addColumn<int>("number");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGHUP") << SIGHUP;
}

void Tst_SingleInstance::terminationSignalBecomesAKillLine() {
    QFETCH(int, number);
    Start first;
    QTRY_VERIFY(first.isFirst());
    first.send(number);
    QTRY_VERIFY(first.output().contains(QStringLiteral("line /kill")));
    QTRY_VERIFY(first.endedWell());
}

void Tst_SingleInstance::silentHolderOfTheNameStopsOnlyRedirects() {
    // A stopped editor still has the name: a start hands over and ends, and must not take the name away.
    Start first;
    QTRY_VERIFY(first.isFirst());
    first.send(SIGSTOP);
    Start second({QStringLiteral("hello")});
    QTRY_VERIFY(second.isRedirected());
    QTRY_VERIFY(second.endedWell());
    first.send(SIGCONT);
    QTRY_COMPARE(first.output().last(), lineOf({QStringLiteral("hello")}));
}

void Tst_SingleInstance::redirectWaitsForAnotherThatBuildsItsLine() {
    Start first;
    QTRY_VERIFY(first.isFirst());
    platform::NamedLock other(QStringLiteral("TNDERedirectMutex"));
    QVERIFY(other.lock());
    QElapsedTimer waiting;
    waiting.start();
    Start second({QStringLiteral("hello")});
    const auto hasArrived = [&first] { return first.output().size() > 1; };
    // Not for ever: one that keeps the lock stops nobody.
    const bool isEarly = QTest::qWaitFor(hasArrived, 700) && waiting.elapsed() < 1000;
    other.unlock();
    QVERIFY(!isEarly);
    QTRY_VERIFY(hasArrived());
    QCOMPARE(first.output().last(), lineOf({QStringLiteral("hello")}));
    QTRY_VERIFY(second.endedWell());
}

void Tst_SingleInstance::redirectThatHasToWaitHoldsNobodyUp() {
    // Takes the question whether an editor runs, and has no room for the arguments after it.
    const QString path = platform::localSocketPath(QStringLiteral("TNDEMutex"));
    QFile::remove(path); // of an editor that was killed
    RawSocket full;
    QVERIFY(full.bindAndListen(path, 0));
    Start second({QStringLiteral("hello")});
    const QStringList names{QStringLiteral("TNDEMutex"), QStringLiteral("TNDERedirectMutex")};
    // Counted in looks and not in time: on a busy machine some time passes between two looks.
    QVector<int> heldLooks(names.size());
    int longest = 0;
    QElapsedTimer waiting;
    waiting.start();
    while (!second.endedWell() && waiting.elapsed() < 20000) {
        for (int i = 0; i < names.size(); ++i) {
            heldLooks[i] = platform::NamedLock(names.at(i)).tryLock() ? 0 : heldLooks.at(i) + 1;
            longest = qMax(longest, heldLooks.at(i));
        }
        QTest::qWait(5);
    }
    QVERIFY(QFile::remove(path));
    QVERIFY(second.endedWell());
    QVERIFY(waiting.elapsed() > 900); // it did wait
    // A lock that is held while a start waits for the server is found held by nearly two hundred looks.
    QVERIFY2(longest < 50, qPrintable(QString::number(longest)));
}

void Tst_SingleInstance::startIsLoggedWhenTheSettingsSaySo() {
    const QDir folder(qEnvironmentVariable("XDG_CONFIG_HOME") + QStringLiteral("/Norvane"));
    QVERIFY(folder.mkpath(QStringLiteral(".")));
    QFile settings(folder.filePath(QStringLiteral("Tindra.conf")));
    QVERIFY(settings.open(QIODevice::WriteOnly));
    settings.write("[FuncTrace]\ntrace=1\n");
    settings.close();
    {
        Start first;
        QTRY_VERIFY(first.isFirst());
    }
    QVERIFY(settings.remove());
    QFile log(QDir::tempPath() + QStringLiteral("/Tindra/Tindra.log"));
    QVERIFY(log.open(QIODevice::ReadOnly));
    QVERIFY(log.readAll().contains(" StartServer : "));
}

QTEST_GUILESS_MAIN(Tst_SingleInstance)
#include "tst_singleinstance.moc"
