#include "print/printserver.h"

#include <QDir>
#include <QFile>
#include <QLocalSocket>
#include <QRegularExpression>
#include <QtTest>

#include <cups/cups.h>

#include <csignal>

namespace {

constexpr int Patience = 15000; // milliseconds
/// A page in fine resolution takes seconds to draw, and a busy machine makes minutes of them.
constexpr int ToolPatience = 300000;

QByteArray outputOf(const QString &program, const QStringList &arguments) {
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished(ToolPatience);
    return process.readAllStandardOutput();
}

ipp_t *queueRequest(ipp_op_t operation, const char *queue) {
    const QByteArray uri = QByteArray("ipp://localhost/printers/") + queue;
    ipp_t *request = ippNewRequest(operation);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_URI, "printer-uri", nullptr, uri.constData());
    return request;
}

/// Takes the request over. The library's own connection would stay with the first server of a process.
bool administer(ipp_t *request) {
    http_t *http = httpConnect2(qgetenv("CUPS_SERVER").constData(), 0, nullptr, AF_UNSPEC,
                                HTTP_ENCRYPTION_NEVER, 1, Patience, nullptr);
    ippDelete(cupsDoRequest(http, request, "/admin/"));
    httpClose(http);
    return cupsLastError() <= IPP_STATUS_OK_EVENTS_COMPLETE;
}

} // namespace

// Below /tmp, as an ordinary user must reach it and the path of a socket is short.
PrintServer::PrintServer() : m_folder(QStringLiteral("/tmp/tindra-print-XXXXXX")) {
    QFile::setPermissions(m_folder.path(), QFile::permissions(m_folder.path()) | QFile::ReadGroup |
                                               QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther);
    const QString socket = m_folder.filePath(QStringLiteral("socket"));
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.start(QStringLiteral(PRINT_SERVER), {m_folder.path()});
    m_isRunning = QTest::qWaitFor(
        [&socket] {
            QLocalSocket probe;
            probe.connectToServer(socket);
            return probe.waitForConnected(100);
        },
        Patience);
    qputenv("CUPS_SERVER", QFile::encodeName(socket));
}

PrintServer::~PrintServer() {
    stop();
    qunsetenv("CUPS_SERVER");
}

void PrintServer::stop() {
    setSilent(false);
    m_process.terminate();
    if (!m_process.waitForFinished(Patience))
        m_process.kill();
}

void PrintServer::kill() {
    m_process.kill();
    m_process.waitForFinished(Patience);
}

QByteArray PrintServer::log() {
    QFile errors(m_folder.filePath(QStringLiteral("log/error")));
    const QByteArray told = errors.open(QIODevice::ReadOnly) ? errors.readAll() : QByteArray();
    return m_process.readAll() + told;
}

void PrintServer::setSilent(bool silent) {
    if (m_process.processId() > 0)
        ::kill(static_cast<pid_t>(m_process.processId()), silent ? SIGSTOP : SIGCONT);
}

bool PrintServer::removeQueue(const char *name) {
    return administer(queueRequest(IPP_OP_CUPS_DELETE_PRINTER, name));
}

bool PrintServer::setDefault(const char *name, const char *option, const char *value) {
    ipp_t *request = queueRequest(IPP_OP_CUPS_ADD_MODIFY_PRINTER, name);
    cups_option_t *options = nullptr;
    const QByteArray attribute = QByteArray(option) + "-default";
    const int count = cupsAddOption(attribute.constData(), value, 0, &options);
    cupsEncodeOptions2(request, count, options, IPP_TAG_PRINTER);
    cupsFreeOptions(count, options);
    return administer(request);
}

PrintServer::Print PrintServer::next() {
    QDir out(m_folder.filePath(QStringLiteral("out")));
    QString name;
    const auto comes = [&] {
        out.refresh();
        const QStringList all =
            out.entryList({QStringLiteral("*.pdf")}, QDir::Files, QDir::Time | QDir::Reversed);
        for (const QString &file : all) {
            if (m_taken.contains(file))
                continue;
            name = file;
            return true;
        }
        return false;
    };
    if (!QTest::qWaitFor(comes, Patience))
        return {};
    m_taken.append(name);
    Print print;
    print.pdf = out.filePath(name);
    QFile job(print.pdf.chopped(4) + QStringLiteral(".job"));
    if (job.open(QIODevice::ReadOnly))
        print.options = QString::fromUtf8(job.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    print.copies = print.options.isEmpty() ? 0 : print.options.takeFirst().toInt();
    return print;
}

bool PrintServer::isIdleFor(int milliseconds) const {
    const QDir out(m_folder.filePath(QStringLiteral("out")));
    QTest::qWait(milliseconds);
    return out.entryList({QStringLiteral("*.pdf")}, QDir::Files).size() == m_taken.size();
}

int PrintServer::pageCount(const QString &pdf) {
    const QByteArray info = outputOf(QStringLiteral("pdfinfo"), {pdf});
    return QRegularExpression(QStringLiteral("Pages: *(\\d+)"))
        .match(QString::fromUtf8(info))
        .captured(1)
        .toInt();
}

QSizeF PrintServer::pageSize(const QString &pdf) {
    const QByteArray info = outputOf(QStringLiteral("pdfinfo"), {pdf});
    const auto match = QRegularExpression(QStringLiteral("Page size: *([\\d.]+) x ([\\d.]+)"))
                           .match(QString::fromUtf8(info));
    return {match.captured(1).toDouble(), match.captured(2).toDouble()};
}

QImage PrintServer::page(const QString &pdf, int number, int perInch) {
    const QString page = QString::number(number);
    return QImage::fromData(outputOf(QStringLiteral("pdftoppm"),
                                     {QStringLiteral("-r"), QString::number(perInch), QStringLiteral("-f"),
                                      page, QStringLiteral("-l"), page, QStringLiteral("-aa"),
                                      QStringLiteral("no"), QStringLiteral("-png"), pdf}));
}
