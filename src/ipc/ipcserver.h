#pragma once

#include <QObject>

class QLocalServer;

/// The receiving side: one message from each connection of the same user.
class IpcServer : public QObject {
    Q_OBJECT
public:
    explicit IpcServer(QObject *parent = nullptr);

    /// Starts to listen; false for an empty name or when the name cannot be had.
    bool Listen(const QString &name);

signals:
    void sig_ipcMessage(QString message);

private slots:
    void OnConnect();

private:
    QLocalServer *m_server = nullptr;
};
