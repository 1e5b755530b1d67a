#pragma once

#include <QLocalSocket>

/// A local socket that carries one text message.
///
/// Wire format, big-endian: 2 bytes total size less 2 (low 16 bits, ignored by the reader), 4 bytes text
/// size in bytes (0xFFFFFFFF for a null text), the text in UTF-16. All calls block for at most 1000 ms.
class IpcSocket : public QLocalSocket {
    Q_OBJECT
public:
    explicit IpcSocket(QObject *parent = nullptr);
    ~IpcSocket() override;

    /// Connects to the server of this user; another user's server is none.
    bool ConnectToServer(const QString &name);
    bool WriteMessage(const QString &text);
    /// Reads the message that arrives first, as far as it has arrived: a text that is not whole by then
    /// comes out empty. False when nothing readable came in time.
    bool ReadMessage(QString &text);
    /// The same from a connection that a server accepted.
    static bool ReadMessage(QLocalSocket &socket, QString &text);

private slots:
    void OnSocketError(QLocalSocket::LocalSocketError socketError);
};
