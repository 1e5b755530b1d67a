#include "platform/configuration.h"
#include "services/tracelog.h"
#include "support/administrator.h"

#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

namespace {

const QString Key = QStringLiteral("SOFTWARE\\Norvane\\Tindra\\FuncTrace");

QString folderPath() {
    return QDir::tempPath() + QStringLiteral("/Tindra");
}

QByteArray content() {
    QFile file(TraceLog::filePath());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The text behind time, process and tag of each line.
QStringList messages() {
    QStringList texts;
    for (const QString &line : QString::fromUtf8(content()).split(QStringLiteral("\r\n"), Qt::SkipEmptyParts))
        texts.append(line.mid(line.indexOf(QStringLiteral(" :")) + 3));
    return texts;
}

int modeOf(const QString &path) {
    struct stat info;
    return ::lstat(QFile::encodeName(path).constData(), &info) == 0 ? int(info.st_mode & 0777) : -1;
}

void writeFile(const QString &path, const QByteArray &bytes) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

/// What a second process does: `--trace TAG COUNT`.
int traceLines(const QStringList &arguments) {
    loadTraceSettings();
    const QByteArray filler(200, 'x');
    for (int i = 0; i < arguments[3].toInt(); ++i)
        trace(1, arguments[2], "%d %s", i, filler.constData());
    return 0;
}

/// What was traced before there was an application object.
QByteArray earlyLine;

QStringList debugLines;

void collectDebugOutput(QtMsgType type, const QMessageLogContext &, const QString &text) {
    if (type == QtDebugMsg)
        debugLines.append(text);
}

} // namespace

class Tst_TraceLog : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void withoutSettingNothingIsMade();
    void thresholdFromSettings_data();
    void thresholdFromSettings();
    void levelAboveThresholdIsDropped_data();
    void levelAboveThresholdIsDropped();
    void lineFormat();
    void processIdIsZeroWithoutApplication();
    void formats_data();
    void formats();
    void placeMarkersInTextsStand();
    void fileStandsInTemporaryFolder();
    void withoutTemporaryFolderTheLineIsLost();
    void folderAndFileArePrivate();
    void linesAreAppended();
    void fullFileIsBegunAnew_data();
    void fullFileIsBegunAnew();
    void setLevelIsStoredAndActs();
    void outputGoesToDebugToo();
    void scopeReadsAsBracket();
    void timedScopeReportsOnlyLongOnes();
    void processesKeepLinesWhole();
    void processesRotateOnce();
    void trapsLoseTheLine_data();
    void trapsLoseTheLine();
    void folderOfSomebodyElseLosesTheLine();

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};

void Tst_TraceLog::init() {
    m_folder = std::make_unique<QTemporaryDir>(QStringLiteral("/tmp/tindra-trace-XXXXXX"));
    qputenv("XDG_CONFIG_HOME", m_folder->path().toLocal8Bit());
    qputenv("TMPDIR", m_folder->path().toLocal8Bit());
    loadTraceSettings();
}

void Tst_TraceLog::cleanup() {
    qInstallMessageHandler(nullptr);
}

void Tst_TraceLog::withoutSettingNothingIsMade() {
    QCOMPARE(TraceLog::threshold(), -1);
    trace(0, QStringLiteral("tag"), "text");
    trace(1, QStringLiteral("tag"), "text");
    traceMessage(QStringLiteral("tag"), 1, "text");
    {
        const TraceScope scope(QStringLiteral("tag"));
        const TimedScope timed(QStringLiteral("tag"), -1);
    }
    QVERIFY(QDir(m_folder->path()).isEmpty());
}

void Tst_TraceLog::thresholdFromSettings_data() {
    QTest::addColumn<QString>("stored");
    QTest::addColumn<int>("expected");
    for (int level : {-1, 0, 1, 2, 3})
        QTest::newRow(qPrintable(QString::number(level))) << QString::number(level) << level;
    QTest::newRow("no number") << QStringLiteral("on") << -1;
    QTest::newRow("empty") << QStringLiteral("") << -1;
}

void Tst_TraceLog::thresholdFromSettings() {
    QFETCH(QString, stored);
    ConfigurationLocation(Key).setValue(QStringLiteral("trace"), stored);
    loadTraceSettings();
    QTEST(TraceLog::threshold(), "expected");
}

void Tst_TraceLog::levelAboveThresholdIsDropped_data() {
    QTest::addColumn<int>("threshold");
    QTest::addColumn<QStringList>("expected");
    const QString l0 = QStringLiteral("0");
    const QString l1 = QStringLiteral("1");
    const QString l2 = QStringLiteral("2");
    QTest::newRow("off") << -1 << QStringList();
    QTest::newRow("0") << 0 << QStringList{l0};
    QTest::newRow("1") << 1 << QStringList{l0, l1};
    QTest::newRow("2") << 2 << QStringList{l0, l1, l2};
    QTest::newRow("3") << 3 << QStringList{l0, l1, l2};
}

void Tst_TraceLog::levelAboveThresholdIsDropped() {
    QFETCH(int, threshold);
    setTraceLevel(threshold);
    for (int level : {0, 1, 2})
        trace(level, QStringLiteral("tag"), "%d", level);
    QTEST(messages(), "expected");
}

void Tst_TraceLog::lineFormat() {
    setTraceLevel(1);
    const QDateTime before = QDateTime::currentDateTime();
    trace(1, QStringLiteral("SavePinnedHistories"), "Cannot access any temp path");
    const QDateTime after = QDateTime::currentDateTime();

    const QByteArray line = content();
    const QByteArray tail = "](P:" + QByteArray::number(qint64(::getpid())) +
                            ") SavePinnedHistories : Cannot access any temp path\r\n";
    QCOMPARE(line.left(1), QByteArray("["));
    QCOMPARE(line.mid(24), tail); // behind "[" and the 23 characters of the time
    const QDateTime time = QDateTime::fromString(QString::fromLatin1(line.mid(1, 23)),
                                                 QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz"));
    QVERIFY(time >= before && time <= after);
}

void Tst_TraceLog::processIdIsZeroWithoutApplication() {
    QCOMPARE(earlyLine.mid(25), QByteArray("(P:0) early : text\r\n")); // behind the time in its brackets
}

void Tst_TraceLog::formats_data() {
    QTest::addColumn<QString>("expected");
    QTest::newRow("wide") << QString::fromUtf8("show /\xed\x99\x94\xeb\xa9\xb4/\xf0\x9f\x96\xbc.png");
    QTest::newRow("number") << QStringLiteral("Set log level: 3");
    QTest::newRow("narrow") << QString::fromUtf8("caf\xc3\xa9");
    QTest::newRow("percent") << QStringLiteral("100 %");
}

void Tst_TraceLog::formats() {
    QFETCH(QString, expected);
    setTraceLevel(1);
    const QString tag = QStringLiteral("tag");
    const QByteArray row = QTest::currentDataTag();
    if (row == "wide")
        trace(1, tag, "show %ls", expected.mid(5).utf16());
    else if (row == "number")
        trace(1, tag, "Set log level: %d", 3);
    else if (row == "narrow")
        trace(1, tag, "%s", "caf\xc3\xa9");
    else
        trace(1, tag, "%d %%", 100);
    QCOMPARE(messages(), QStringList{expected});
}

void Tst_TraceLog::placeMarkersInTextsStand() {
    setTraceLevel(1);
    trace(1, QStringLiteral("a%1b"), "%s", "x%0y%1z");
    QVERIFY(content().endsWith(") a%1b : x%0y%1z\r\n"));
}

void Tst_TraceLog::fileStandsInTemporaryFolder() {
    QCOMPARE(TraceLog::filePath(), m_folder->path() + QStringLiteral("/Tindra/Tindra.log"));
}

void Tst_TraceLog::withoutTemporaryFolderTheLineIsLost() {
    setTraceLevel(1);
    qputenv("TMPDIR", m_folder->filePath(QStringLiteral("missing")).toLocal8Bit());
    QCOMPARE(TraceLog::filePath(), QString());
    trace(1, QStringLiteral("tag"), "text");
    QVERIFY(!QFileInfo::exists(QStringLiteral("/Tindra")));
}

void Tst_TraceLog::folderAndFileArePrivate() {
    setTraceLevel(1);
    const mode_t usual = ::umask(0);
    trace(1, QStringLiteral("tag"), "text");
    ::umask(usual);
    QCOMPARE(modeOf(folderPath()), 0700);
    QCOMPARE(modeOf(TraceLog::filePath()), 0600);
    // Left open by an older program: mended before anything goes in.
    QCOMPARE(::chmod(QFile::encodeName(folderPath()).constData(), 0777), 0);
    QCOMPARE(::chmod(QFile::encodeName(TraceLog::filePath()).constData(), 0666), 0);
    trace(1, QStringLiteral("tag"), "text");
    QCOMPARE(modeOf(folderPath()), 0700);
    QCOMPARE(modeOf(TraceLog::filePath()), 0600);
}

void Tst_TraceLog::linesAreAppended() {
    setTraceLevel(2);
    trace(1, QStringLiteral("tag"), "first");
    trace(2, QStringLiteral("tag"), "second");
    traceMessage(QStringLiteral("tag"), 2, "th%drd");
    traceMessage(QStringLiteral("tag"), 3, "too chatty");
    QCOMPARE(messages(),
             (QStringList{QStringLiteral("first"), QStringLiteral("second"), QStringLiteral("th%drd")}));
}

void Tst_TraceLog::fullFileIsBegunAnew_data() {
    QTest::addColumn<qint64>("size");
    QTest::addColumn<bool>("isKept");
    QTest::newRow("one byte less") << qint64(52428799) << true;
    QTest::newRow("exactly full") << qint64(52428800) << false;
    QTest::newRow("above") << qint64(60000000) << false;
}

void Tst_TraceLog::fullFileIsBegunAnew() {
    QFETCH(qint64, size);
    QFETCH(bool, isKept);
    QVERIFY(QDir().mkdir(folderPath()));
    writeFile(TraceLog::filePath(), QByteArray());
    QVERIFY(QFile::resize(TraceLog::filePath(), size));
    setTraceLevel(1);
    trace(1, QStringLiteral("tag"), "text");
    // [time] is 25 characters with both brackets, then "(P:", id, ")", " tag : text", "\r\n"
    const qint64 expectedLine = 25 + 3 + QByteArray::number(qint64(::getpid())).size() + 1 + 11 + 2;
    QCOMPARE(QFileInfo(TraceLog::filePath()).size(), (isKept ? size : 0) + expectedLine);
}

void Tst_TraceLog::setLevelIsStoredAndActs() {
    setTraceLevel(2);
    QCOMPARE(TraceLog::threshold(), 2);
    QCOMPARE(ConfigurationLocation(Key).value(QStringLiteral("trace")).toString(), QStringLiteral("2"));
    setTraceLevel(-1);
    QCOMPARE(TraceLog::threshold(), -1);
}

void Tst_TraceLog::outputGoesToDebugToo() {
    setTraceLevel(1);
    qInstallMessageHandler(collectDebugOutput);
    debugLines.clear();
    trace(1, QStringLiteral("tag"), "file only");
    QCOMPARE(debugLines, QStringList());
    setTraceOutput(true);
    trace(1, QStringLiteral("tag"), "both \"quoted\"");
    QCOMPARE(debugLines.size(), 1);
    QVERIFY(debugLines.first().endsWith(QStringLiteral(") tag : both \"quoted\"")));
    ConfigurationLocation(Key).setValue(QStringLiteral("output"), 2);
    loadTraceSettings();
    trace(1, QStringLiteral("tag"), "file only");
    QCOMPARE(debugLines.size(), 1);
    setTraceOutput(false);
    QCOMPARE(ConfigurationLocation(Key).value(QStringLiteral("output")).toString(), QStringLiteral("0"));
    QCOMPARE(messages().size(), 3);
}

void Tst_TraceLog::scopeReadsAsBracket() {
    setTraceLevel(1);
    {
        const TraceScope outer(QStringLiteral("outer"));
        trace(1, QStringLiteral("inner"), "text");
    }
    QCOMPARE(messages(), (QStringList{QStringLiteral("<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<"),
                                      QStringLiteral("text"),
                                      QStringLiteral(">>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>")}));
    QVERIFY(content().contains(") outer : <<<"));
    setTraceLevel(0);
    { const TraceScope silent(QStringLiteral("silent")); }
    QCOMPARE(messages().size(), 3);
}

void Tst_TraceLog::timedScopeReportsOnlyLongOnes() {
    setTraceLevel(1);
    { const TimedScope quick(QStringLiteral("quick"), 1000000); }
    QCOMPARE(messages(), QStringList());
    {
        const TimedScope slow(QStringLiteral("slow"), 5);
        QThread::msleep(8);
    }
    const QRegularExpression expected(QStringLiteral("^Execution time is too long!! \\[(\\d+)\\]$"));
    QCOMPARE(messages().size(), 1);
    const QRegularExpressionMatch match = expected.match(messages().first());
    QVERIFY(match.hasMatch());
    QVERIFY(match.captured(1).toInt() >= 8);
}

void Tst_TraceLog::processesKeepLinesWhole() {
    setTraceLevel(1);
    constexpr int count = 500;
    QProcess processes[2];
    const QStringList tags{QStringLiteral("one"), QStringLiteral("two")};
    for (int i = 0; i < 2; ++i)
        processes[i].start(QCoreApplication::applicationFilePath(),
                           {QStringLiteral("--trace"), tags[i], QString::number(count)});
    for (QProcess &process : processes) {
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitCode(), 0);
    }
    const QRegularExpression whole(QStringLiteral(
        "^\\[\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3}\\]\\(P:\\d+\\) (one|two) : (\\d+) x{200}$"));
    int next[2] = {0, 0};
    const QStringList lines = QString::fromUtf8(content()).split(QStringLiteral("\r\n"));
    QCOMPARE(lines.size(), 2 * count + 1); // the last one is empty
    for (int i = 0; i < 2 * count; ++i) {
        const QRegularExpressionMatch match = whole.match(lines[i]);
        QVERIFY2(match.hasMatch(), qPrintable(lines[i]));
        QCOMPARE(match.captured(2).toInt(), next[tags.indexOf(match.captured(1))]++);
    }
}

void Tst_TraceLog::processesRotateOnce() {
    setTraceLevel(1);
    QVERIFY(QDir().mkdir(folderPath()));
    for (int round = 0; round < 5; ++round) {
        writeFile(TraceLog::filePath(), QByteArray());
        QVERIFY(QFile::resize(TraceLog::filePath(), TraceLog::SizeLimit));
        QProcess processes[3];
        for (QProcess &process : processes)
            process.start(QCoreApplication::applicationFilePath(),
                          {QStringLiteral("--trace"), QStringLiteral("p"), QStringLiteral("1")});
        for (QProcess &process : processes)
            QVERIFY(process.waitForFinished());
        QCOMPARE(messages().size(), 3);
    }
}

void Tst_TraceLog::trapsLoseTheLine_data() {
    QTest::addColumn<QString>("kind");
    for (const char *kind : {"linked folder", "linked file", "pipe", "folder as file", "file as folder"})
        QTest::newRow(kind) << QString::fromLatin1(kind);
}

void Tst_TraceLog::trapsLoseTheLine() {
    QFETCH(QString, kind);
    setTraceLevel(1);
    const QString victim = m_folder->filePath(QStringLiteral("victim"));
    if (kind == QLatin1String("linked folder")) {
        QVERIFY(QDir().mkdir(victim));
        QVERIFY(QFile::link(victim, folderPath()));
    } else if (kind == QLatin1String("file as folder")) {
        writeFile(folderPath(), "file");
    } else {
        QVERIFY(QDir().mkdir(folderPath()));
        if (kind == QLatin1String("linked file")) {
            writeFile(victim, "precious");
            QVERIFY(QFile::link(victim, TraceLog::filePath()));
        } else if (kind == QLatin1String("pipe")) {
            QCOMPARE(::mkfifo(QFile::encodeName(TraceLog::filePath()).constData(), 0600), 0);
        } else {
            QVERIFY(QDir().mkdir(TraceLog::filePath()));
        }
    }
    trace(1, QStringLiteral("tag"), "text");
    if (kind == QLatin1String("linked folder"))
        QVERIFY(QDir(victim).isEmpty());
    if (kind == QLatin1String("linked file"))
        QCOMPARE(content(), QByteArray("precious"));
    if (kind == QLatin1String("file as folder"))
        QCOMPARE(QFileInfo(folderPath()).size(), qint64(4));
}

void Tst_TraceLog::folderOfSomebodyElseLosesTheLine() {
    if (!isAdministrator())
        QSKIP("only an administrator can give a folder away");
    setTraceLevel(1);
    QVERIFY(QDir().mkdir(folderPath()));
    QCOMPARE(::chown(QFile::encodeName(folderPath()).constData(), 12345, 12345), 0);
    trace(1, QStringLiteral("tag"), "text");
    QVERIFY(QDir(folderPath()).isEmpty());
}

int main(int argc, char **argv) {
    QCoreApplication::setApplicationName(QStringLiteral("Tindra"));
    const bool isSecondProcess = argc > 1 && qstrcmp(argv[1], "--trace") == 0;
    if (!isSecondProcess) {
        TraceLog::write(QStringLiteral("early"), QStringLiteral("text"));
        earlyLine = content();
        QFile::remove(TraceLog::filePath());
    }
    QCoreApplication application(argc, argv);
    if (isSecondProcess)
        return traceLines(application.arguments());
    Tst_TraceLog test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_tracelog.moc"
