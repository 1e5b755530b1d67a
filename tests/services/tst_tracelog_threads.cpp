#include "services/tracelog.h"

#include <QtTest>

#include <thread>
#include <vector>

/// Small on purpose: this is what the thread sanitizer judges, and it knows nothing of what happens inside
/// the toolkit's libraries.
class Tst_TraceLogThreads : public QObject {
    Q_OBJECT
private slots:
    void threadsKeepLinesWholeAndInOrder();
};

// A line gets its time and its place in the file in one step: what stands below another was never written
// before it. A file is nothing that the sanitizer looks at, so it is this order that tells of a missing lock;
// the sanitizer judges threshold and settings.
void Tst_TraceLogThreads::threadsKeepLinesWholeAndInOrder() {
    constexpr int threadCount = 8;
    constexpr int lineCount = 500;
    setTraceLevel(1);
    std::vector<std::thread> threads;
    for (int thread = 0; thread < threadCount; ++thread) {
        threads.emplace_back([thread] {
            const QString text = QString(60, QChar('a' + thread));
            for (int line = 0; line < lineCount; ++line) {
                trace(1, QStringLiteral("writer"), "%d %ls", line, text.utf16());
                trace(2, QStringLiteral("writer"), "too chatty");
            }
        });
    }
    // What the settings say may be read anew at any time while others trace.
    for (int i = 0; i < lineCount; ++i)
        loadTraceSettings();
    for (std::thread &thread : threads)
        thread.join();

    QFile file(TraceLog::filePath());
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QStringLiteral("\r\n"));
    QCOMPARE(lines.size(), threadCount * lineCount + 1);
    const QRegularExpression whole(
        QStringLiteral("^\\[([-0-9 :.]{23})\\]\\(P:\\d+\\) writer : (\\d+) (a+|b+|c+|d+|e+|f+|g+|h+)$"));
    int next[threadCount] = {};
    QString time;
    for (int i = 0; i < threadCount * lineCount; ++i) {
        const QRegularExpressionMatch match = whole.match(lines[i]);
        QVERIFY2(match.hasMatch(), qPrintable(lines[i]));
        QVERIFY2(match.captured(1) >= time, qPrintable(lines[i]));
        time = match.captured(1);
        QCOMPARE(match.captured(3).size(), 60);
        QCOMPARE(match.captured(2).toInt(), next[match.captured(3).at(0).toLatin1() - 'a']++);
    }
}

int main(int argc, char **argv) {
    QCoreApplication::setApplicationName(QStringLiteral("Tindra"));
    QCoreApplication application(argc, argv);
    Tst_TraceLogThreads test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_tracelog_threads.moc"
