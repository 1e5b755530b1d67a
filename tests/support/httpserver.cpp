#include "support/httpserver.h"

#include <QSslSocket>
#include <QTimer>

HttpServer::HttpServer() {
    listen(QHostAddress::LocalHost);
}

void HttpServer::encrypt(const QSslCertificate &certificate, const QSslKey &key) {
    m_certificate = certificate;
    m_key = key;
}

QString HttpServer::url(const QString &path) const {
    return QStringLiteral("%1://127.0.0.1:%2%3")
        .arg(m_key.isNull() ? QStringLiteral("http") : QStringLiteral("https"))
        .arg(serverPort())
        .arg(path);
}

void HttpServer::answer(const QString &path, const QByteArray &status, const QByteArray &body,
                        const QByteArray &headers, bool withLength) {
    QByteArray text = "HTTP/1.1 " + status + "\r\nConnection: close\r\n" + headers;
    if (withLength)
        text += "Content-Length: " + QByteArray::number(body.size()) + "\r\n";
    m_answers[path] = text + "\r\n" + body;
}

void HttpServer::redirect(const QString &path, const QString &target, const QByteArray &body) {
    answer(path, "302 Found", body, "Location: " + target.toUtf8() + "\r\n");
}

void HttpServer::stall(const QString &path) {
    m_stalled.append(path);
}

void HttpServer::keepSending(const QString &path, const QByteArray &sent) {
    answer(path, "200 OK", sent, {}, false);
    m_more[path] = sent;
}

void HttpServer::breakOff(const QString &path, const QByteArray &sent, int promised) {
    answer(path, "200 OK", sent, "Content-Length: " + QByteArray::number(promised) + "\r\n", false);
}

void HttpServer::incomingConnection(qintptr descriptor) {
    auto *socket = new QSslSocket(this);
    socket->setSocketDescriptor(descriptor);
    connect(socket, &QSslSocket::readyRead, this, [this, socket] { read(socket); });
    connect(socket, &QSslSocket::disconnected, socket, &QObject::deleteLater);
    if (m_key.isNull())
        return;
    socket->setLocalCertificate(m_certificate);
    socket->setPrivateKey(m_key);
    socket->startServerEncryption();
}

void HttpServer::read(QTcpSocket *socket) {
    const QByteArray head = socket->peek(socket->bytesAvailable());
    if (!head.contains("\r\n\r\n"))
        return;
    socket->readAll();
    const QString path = QString::fromUtf8(head.split(' ').value(1));
    requests.append(path);
    if (m_stalled.contains(path))
        return;
    socket->write(m_answers.value(path, "HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n"));
    if (m_more.contains(path))
        QTimer::singleShot(250, socket, [this, socket, path] { socket->write(m_more.value(path)); });
    else
        socket->disconnectFromHost();
}
