#include "services/httptransfer.h"

#include "services/tracelog.h"

#include <QEventLoop>
#include <QNetworkReply>
#include <QProgressBar>
#include <QSslConfiguration>
#include <QTimer>

#include <limits>

namespace {

constexpr int RedirectedTimeout = 10000; // milliseconds
/// What is fetched into memory is a small configuration. A server that sends more is not what it should be.
constexpr qint64 LargestData = 16 << 20;

QNetworkRequest requestFor(const QString &url, bool verifyPeer) {
    QNetworkRequest request{QUrl(url)};
    // Each hop is looked at before it is taken.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    if (!verifyPeer) {
        QSslConfiguration configuration = request.sslConfiguration();
        configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
        request.setSslConfiguration(configuration);
    }
    return request;
}

QEventLoop::ProcessEventsFlags loopFlags(bool allowUserInput) {
    return allowUserInput ? QEventLoop::AllEvents : QEventLoop::ExcludeUserInputEvents;
}

QUrl redirectOf(const QNetworkReply *reply) {
    const QUrl target = reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    return target.isEmpty() ? QUrl() : reply->url().resolved(target);
}

/// A server may not lead us to a file of this machine, nor off an encrypted road.
bool isAllowedHop(const QUrl &from, const QUrl &to) {
    return to.scheme() == QLatin1String("https") ||
           (to.scheme() == QLatin1String("http") && from.scheme() != QLatin1String("https"));
}

/// The same, and a refusal is in the log.
bool mayFollow(const QUrl &from, const QUrl &to, const QString &tag) {
    if (to.isEmpty() || isAllowedHop(from, to))
        return true;
    trace(1, tag, "[ERROR]Redirect refused_(%ls)", to.toString(QUrl::FullyEncoded).utf16());
    return false;
}

} // namespace

HttpTransfer::HttpTransfer(QObject *parent) : QObject(parent) {}

HttpTransfer::~HttpTransfer() = default;

bool HttpTransfer::download(const QString &url, const QString &destination, bool verifyPeer,
                            QProgressBar *bar, bool allowUserInput) {
    QString source = url;
    // Round by round and not by recursion: a server that leads in a circle may not exhaust the stack.
    for (;;) {
        if (!openTarget(source, destination))
            return false;
        m_bar = bar;
        QString redirect;
        if (!downloadOnce(requestFor(source, verifyPeer), allowUserInput, &redirect))
            return false;
        if (redirect.isEmpty())
            return true;
        source = redirect;
    }
}

bool HttpTransfer::openTarget(const QString &url, const QString &destination) {
    const QString tag = QStringLiteral("Download");
    if (url.isEmpty()) {
        traceMessage(tag, 1, "[ERROR]Source url is empty_");
        return false;
    }
    if (destination.isEmpty()) {
        traceMessage(tag, 1, "[ERROR]Dest filename is empty_");
        return false;
    }
    m_writeError.clear();
    m_file.setFileName(destination);
    if (m_file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return true;
    trace(1, tag, "[ERROR]Open file fail_(%ls)", destination.utf16());
    return false;
}

QNetworkReply *HttpTransfer::start(const QNetworkRequest &request) {
    // A connection is kept by its host alone: one whose peer nobody verified would serve the next call too.
    m_manager.clearConnectionCache();
    m_reply = m_manager.get(request);
    return m_reply;
}

bool HttpTransfer::downloadOnce(const QNetworkRequest &request, bool allowUserInput, QString *redirect) {
    const QString tag = QStringLiteral("Download");
    QEventLoop loop;
    QNetworkReply *reply = start(request);
    connect(reply, &QNetworkReply::downloadProgress, this, &HttpTransfer::OnDownloadProgress);
    connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    if (!reply->isFinished())
        loop.exec(loopFlags(allowUserInput));
    // The end of the program leaves every event loop; what is here by then is not the file.
    if (!reply->isFinished())
        reply->abort();
    writeArrived();
    const bool isWritten = m_file.flush() && m_writeError.isEmpty();
    const QString fileError = m_writeError.isEmpty() ? m_file.errorString() : m_writeError;
    m_file.close();
    m_reply = nullptr;
    reply->deleteLater();
    if (!isWritten) {
        trace(1, tag, "[ERROR](%d)%ls", int(QFileDevice::WriteError), fileError.utf16());
        return false;
    }
    if (hasFailed(reply, "[ERROR](%d)%ls", tag))
        return false;
    const QUrl target = redirectOf(reply);
    *redirect = target.toString(QUrl::FullyEncoded);
    trace(2, tag, "RedirectURL: %ls", redirect->utf16());
    return mayFollow(reply->url(), target, tag);
}

bool HttpTransfer::hasFailed(QNetworkReply *reply, const char *format, const QString &tag) {
    if (reply->error() == QNetworkReply::NoError)
        return false;
    const QString text = reply->errorString();
    trace(1, tag, format, int(reply->error()), text.utf16());
    return true;
}

void HttpTransfer::OnDownloadProgress(qlonglong bytesReceived, qlonglong bytesTotal) {
    if (!m_reply)
        return;
    if (m_bar && redirectOf(m_reply).isEmpty()) {
        // Without a length the total is -1, which leaves the bar busy.
        const qlonglong most = std::numeric_limits<int>::max();
        m_bar->setRange(0, static_cast<int>(qMin(bytesTotal, most)));
        m_bar->setValue(static_cast<int>(qMin(bytesReceived, most)));
    }
    writeArrived();
}

void HttpTransfer::writeArrived() {
    if (!m_reply || !m_reply->isOpen() || !m_file.isOpen())
        return;
    const QByteArray arrived = m_reply->readAll();
    if (m_file.write(arrived) == arrived.size())
        return;
    m_writeError = m_file.errorString(); // the next write forgets it
    m_reply->abort();
}

bool HttpTransfer::getData(const QString &url, QByteArray &data, bool verifyPeer, int timeoutMs,
                           bool allowUserInput) {
    const QString tag = QStringLiteral("Get");
    if (url.isEmpty()) {
        traceMessage(tag, 1, "[ERROR]Source url is empty_");
        return false;
    }
    QString redirect;
    if (!getOnce(requestFor(url, verifyPeer), data, timeoutMs, allowUserInput, &redirect))
        return false;
    while (!redirect.isEmpty()) {
        const QString source = redirect;
        if (!getOnce(requestFor(source, true), data, RedirectedTimeout, false, &redirect))
            return false;
    }
    return true;
}

bool HttpTransfer::getOnce(const QNetworkRequest &request, QByteArray &data, int timeoutMs,
                           bool allowUserInput, QString *redirect) {
    const QString tag = QStringLiteral("Get");
    QEventLoop loop;
    QTimer timer;
    timer.setSingleShot(true);
    connect(&timer, &QTimer::timeout, &loop, &QEventLoop::quit);
    const auto finished = connect(&m_manager, &QNetworkAccessManager::finished, &loop, &QEventLoop::quit);
    timer.start(timeoutMs);
    QNetworkReply *reply = start(request);
    connect(reply, &QNetworkReply::downloadProgress, this, [reply](qint64 received) {
        if (received > LargestData)
            reply->abort();
    });
    if (!reply->isFinished())
        loop.exec(loopFlags(allowUserInput));
    disconnect(finished);
    m_reply = nullptr;
    reply->deleteLater();
    if (!reply->isFinished()) {
        reply->abort();
        emit reply->errorOccurred(QNetworkReply::TimeoutError);
        return false;
    }
    timer.stop();
    if (hasFailed(reply, "[ERROR] get (%d) %ls", tag))
        return false;
    // The last piece and the end may have come together, without a chance to break off.
    if (reply->bytesAvailable() > LargestData) {
        traceMessage(tag, 1, "[ERROR]Too much data_");
        return false;
    }
    data = reply->readAll();
    trace(2, tag, "GetDataLen: %d", data.size());
    const QUrl target = redirectOf(reply);
    *redirect = target.toString(QUrl::FullyEncoded);
    if (target.isEmpty())
        return true;
    trace(2, tag, "RedirectURL: %ls", redirect->utf16());
    return mayFollow(reply->url(), target, tag);
}

void HttpTransfer::cancelTransfer() {
    if (m_reply)
        m_reply->abort();
}
