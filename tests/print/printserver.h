#pragma once

#include <QImage>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

/// A print server of the test's own, which the program finds by its environment; tests/support/printserver
/// tells its queues.
class PrintServer {
public:
    /// What came out of the printer.
    struct Print {
        int copies = 0;
        QStringList options;
        QString pdf; ///< path; empty when nothing came
    };

    PrintServer();
    ~PrintServer();

    bool isRunning() const { return m_isRunning; }
    /// What went wrong, for the test's message.
    QByteArray log();
    /// Lets the server accept and never answer, or answer again.
    void setSilent(bool silent);
    void stop();
    /// Ends the server without an answer to those who wait for one.
    void kill();
    /// Takes a queue away.
    bool removeQueue(const char *name);
    /// Gives a queue a default of its own for an option of jobs.
    bool setDefault(const char *name, const char *option, const char *value);

    /// Waits for the next print; the jobs come in order.
    Print next();
    /// Whether nothing comes for that time.
    bool isIdleFor(int milliseconds) const;

    static int pageCount(const QString &pdf);
    /// The size of the first sheet in points.
    static QSizeF pageSize(const QString &pdf);
    /// A sheet, counted from 1, at that many pixels per inch.
    static QImage page(const QString &pdf, int number, int perInch);

private:
    QTemporaryDir m_folder;
    QProcess m_process;
    QStringList m_taken;
    bool m_isRunning = false;
};
