#pragma once

#include <QObject>

class QLocalServer;

/// The receiving side: one message from each connection of the same user.
///
/// Who asks `IpcClient::Test` and listens when nobody answers does both under one
/// `platform::NamedLock` of the server's name, so that of two who start at once only one listens. The
/// server takes that lock itself when it goes.
class IpcServer : public QObject {
    Q_OBJECT
public:
    explicit IpcServer(QObject *parent = nullptr);
    ~IpcServer() override;

    /// Starts to listen, once in a server's life; false for an empty name, without a private
    /// folder for the socket, and when the name cannot be had.
    /// The socket that a dead editor left behind is replaced, that of a living one never.
    bool Listen(const QString &name);
    /// Ends listening for good: who sends from now on finds no editor.
    void Close();

signals:
    void sig_ipcMessage(QString message);

private slots:
    void OnConnect();

private:
    bool listenAt(const QString &path);
    void watchForEnd();
    void listenAgain();

    QLocalServer *m_server = nullptr;
    QString m_name;
    bool m_isClosed = false;
};
