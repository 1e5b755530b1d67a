#pragma once

#include <QMap>
#include <QSslCertificate>
#include <QSslKey>
#include <QStringList>
#include <QTcpServer>

class QTcpSocket;

/// A web server on this machine that says word for word what a test gave it, plain or encrypted.
class HttpServer : public QTcpServer {
    Q_OBJECT
public:
    HttpServer();
    /// Speaks TLS from now on.
    void encrypt(const QSslCertificate &certificate, const QSslKey &key);

    QString url(const QString &path) const;
    /// What `path` answers: head lines without the empty one, and the body. Without a length the connection's
    /// end is the body's end.
    void answer(const QString &path, const QByteArray &status, const QByteArray &body,
                const QByteArray &headers = {}, bool withLength = true);
    void redirect(const QString &path, const QString &target, const QByteArray &body = {});
    /// Reads the request for `path` and is silent.
    void stall(const QString &path);
    /// Sends this without a length, once more a quarter of a second later, and keeps the connection open.
    void keepSending(const QString &path, const QByteArray &sent);
    /// Promises more than it sends.
    void breakOff(const QString &path, const QByteArray &sent, int promised);

    QStringList requests; ///< the paths that were asked for, in order

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    void read(QTcpSocket *socket);

    QMap<QString, QByteArray> m_answers;
    QStringList m_stalled;
    QMap<QString, QByteArray> m_more;
    QSslCertificate m_certificate;
    QSslKey m_key;
};
