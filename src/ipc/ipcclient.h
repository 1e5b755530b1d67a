#pragma once

#include <QObject>

class IpcSocket;

/// The sending side: asks whether an editor runs, and hands it a command line.
class IpcClient : public QObject {
    Q_OBJECT
public:
    explicit IpcClient(QObject *parent = nullptr);

    /// Whether a server of this user listens under that name.
    bool Test(const QString &name);
    bool Send(const QString &name, const QString &text);

private:
    IpcSocket *m_socket;
};
