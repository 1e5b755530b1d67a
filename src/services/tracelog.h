#pragma once

#include <QElapsedTimer>
#include <QString>

#include <atomic>
#include <type_traits>

/// The log: an append-only text file in the temporary folder, off unless the settings switch it on.
///
/// A line is written when its level is at or below the threshold; the default of -1 writes nothing, and
/// a call that writes nothing costs one comparison. Any thread may call these.
class TraceLog {
public:
    static constexpr int Off = -1;
    /// The file is begun anew when it has grown to this many bytes.
    static constexpr qint64 SizeLimit = 52428800;

    static int threshold() { return s_threshold.load(std::memory_order_relaxed); }
    /// Empty when there is no temporary folder.
    static QString filePath();
    /// Writes one line whatever the threshold says. A file that cannot be written loses it silently.
    static void write(const QString &tag, const QString &message);

private:
    friend void loadTraceSettings();
    static std::atomic<int> s_threshold;
    static std::atomic<bool> s_toDebugOutput;
};

/// Writes a formatted line whatever the threshold says.
void traceFormatted(const QString &tag, const char *format, ...);

/// Logs a message. `format` follows `QString::vasprintf`; "%ls" takes `QString::utf16()`.
template <typename... Arguments>
inline void trace(int level, const QString &tag, const char *format, Arguments... arguments) {
    static_assert((std::is_scalar_v<Arguments> && ...), "objects cannot pass through a printf format");
    if (level <= TraceLog::threshold())
        traceFormatted(tag, format, arguments...);
}

/// Logs a text (UTF-8) as it stands.
void traceMessage(const QString &tag, int level, const char *text);

/// Reads threshold and output switch from the settings; called at start and after each change.
void loadTraceSettings();
void setTraceLevel(int level);
/// Whether each line also goes to `qDebug`.
void setTraceOutput(bool on);

/// Logs the way into a scope and out of it, so that nested calls read as brackets.
class TraceScope {
public:
    explicit TraceScope(const QString &tag);
    ~TraceScope();
    TraceScope(const TraceScope &) = delete;
    TraceScope &operator=(const TraceScope &) = delete;

private:
    QString m_tag;
};

/// Logs a scope that took longer than its limit in milliseconds.
class TimedScope {
public:
    TimedScope(const QString &tag, qint64 limit);
    ~TimedScope();
    TimedScope(const TimedScope &) = delete;
    TimedScope &operator=(const TimedScope &) = delete;

private:
    QElapsedTimer m_timer;
    QString m_tag;
    qint64 m_limit;
};
