#include "services/tracelog.h"

#include "platform/configuration.h"
#include "platform/privatefile.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDebug>
#include <QDir>

#include <cstdarg>
#include <mutex>
#include <type_traits>

namespace {

constexpr int OrdinaryLevel = 1;
// 43 characters each. Ready-made, since a call that writes nothing may not allocate.
constexpr char OpeningBracket[] = "<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<";
constexpr char ClosingBracket[] = ">>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>";
static_assert(sizeof(OpeningBracket) == 43 + 1 && sizeof(ClosingBracket) == 43 + 1);

std::mutex mutex;
static_assert(std::is_trivially_destructible_v<std::mutex>,
              "static objects may trace while the process ends");

QString settingsKey() {
    return QStringLiteral("HKEY_CURRENT_USER\\Software\\Norvane\\%0\\FuncTrace")
        .arg(QCoreApplication::applicationName());
}

QString lineHead(const QString &tag) {
    const qint64 process = QCoreApplication::instance() ? QCoreApplication::applicationPid() : 0;
    return QDateTime::currentDateTime().toString(QStringLiteral("[yyyy-MM-dd hh:mm:ss.zzz]")) +
           QStringLiteral("(P:%0)").arg(process) + QStringLiteral(" %0 :").arg(tag);
}

void store(const QString &name, int value) {
    ConfigurationLocation(settingsKey()).setValue(name, value);
    loadTraceSettings();
}

} // namespace

std::atomic<int> TraceLog::s_threshold{TraceLog::Off};
std::atomic<bool> TraceLog::s_toDebugOutput{false};

QString TraceLog::filePath() {
    const QString temporary = QDir::tempPath();
    // Empty when TMPDIR names no folder; the log must not end up below the root then.
    if (temporary.isEmpty())
        return QString();
    const QString name = QCoreApplication::applicationName();
    return QStringLiteral("%0/%1.log").arg(temporary + QLatin1Char('/') + name, name);
}

void TraceLog::write(const QString &tag, const QString &message) {
    QString line;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        // Joined as plain strings: a message may itself hold what looks like a place marker.
        line = lineHead(tag) + QLatin1Char(' ') + message;
        platform::appendToPrivateFile(filePath(), QByteArray::fromStdString(line.toStdString() + "\r\n"),
                                      SizeLimit);
    }
    // Outside the lock, since whoever handles debug output may trace in turn.
    if (s_toDebugOutput.load(std::memory_order_relaxed))
        qDebug().noquote() << line;
}

void traceFormatted(const QString &tag, const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const QString message = QString::vasprintf(format, arguments);
    va_end(arguments);
    TraceLog::write(tag, message);
}

void traceMessage(const QString &tag, int level, const char *text) {
    if (level <= TraceLog::threshold())
        TraceLog::write(tag, QString::fromUtf8(text));
}

void loadTraceSettings() {
    const ConfigurationLocation location(settingsKey());
    bool isNumber = false;
    const int level = location.value(QStringLiteral("trace")).toString().toInt(&isNumber);
    TraceLog::s_threshold.store(isNumber ? level : TraceLog::Off, std::memory_order_relaxed);
    TraceLog::s_toDebugOutput.store(location.value(QStringLiteral("output")).toInt() == 1,
                                    std::memory_order_relaxed);
}

void setTraceLevel(int level) {
    store(QStringLiteral("trace"), level);
}

void setTraceOutput(bool on) {
    store(QStringLiteral("output"), on ? 1 : 0);
}

TraceScope::TraceScope(const QString &tag) : m_tag(tag) {
    traceMessage(m_tag, OrdinaryLevel, OpeningBracket);
}

TraceScope::~TraceScope() {
    traceMessage(m_tag, OrdinaryLevel, ClosingBracket);
}

TimedScope::TimedScope(const QString &tag, qint64 limit) : m_tag(tag), m_limit(limit) {
    m_timer.start();
}

TimedScope::~TimedScope() {
    const qint64 elapsed = m_timer.elapsed();
    if (elapsed > m_limit)
        trace(OrdinaryLevel, m_tag, "Execution time is too long!! [%d]", static_cast<int>(elapsed));
}
