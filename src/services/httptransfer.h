#pragma once

#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkRequest>
#include <QObject>
#include <QPointer>

class QNetworkReply;
class QProgressBar;

/// Fetches over HTTP as a plain call: an event loop of its own runs until the transfer has ended.
///
/// One transfer at a time, on the GUI thread. Redirects are followed, relative ones too, but only to HTTP and
/// HTTPS, and never from HTTPS down to HTTP. What goes wrong is in the trace log; nothing is shown.
class HttpTransfer : public QObject {
    Q_OBJECT
public:
    explicit HttpTransfer(QObject *parent = nullptr);
    ~HttpTransfer() override;

    /// Writes what `url` has into the file `destination`, as it arrives. `bar`, if any, follows the transfer.
    /// Without `verifyPeer` any certificate is taken. Without `allowUserInput` keys and clicks wait until the
    /// end.
    bool download(const QString &url, const QString &destination, bool verifyPeer, QProgressBar *bar,
                  bool allowUserInput);
    /// The same into memory, for no more than 16 MiB, ended after `timeoutMs` milliseconds. A redirect gets
    /// 10 s, a verified peer and no user input, whatever the first call used.
    bool getData(const QString &url, QByteArray &data, bool verifyPeer, int timeoutMs, bool allowUserInput);
    /// Ends a running transfer, whose call returns false then. So does the end of the program.
    void cancelTransfer();

public slots:
    void OnDownloadProgress(qlonglong bytesReceived, qlonglong bytesTotal);

private:
    bool openTarget(const QString &url, const QString &destination);
    QNetworkReply *start(const QNetworkRequest &request);
    /// One answer into the file; `redirect` is where it leads, if anywhere.
    bool downloadOnce(const QNetworkRequest &request, bool allowUserInput, QString *redirect);
    bool getOnce(const QNetworkRequest &request, QByteArray &data, int timeoutMs, bool allowUserInput,
                 QString *redirect);
    void writeArrived();
    bool hasFailed(QNetworkReply *reply, const char *format, const QString &tag);

    QPointer<QProgressBar> m_bar;
    QNetworkAccessManager m_manager;
    QPointer<QNetworkReply> m_reply; ///< the running one
    QFile m_file;
    QString m_writeError;
};
