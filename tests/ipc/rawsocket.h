#pragma once

#include <QByteArray>
#include <QString>

/// A local stream socket by the system's own calls: the view of a program that shares no code with ours.
class RawSocket {
public:
    RawSocket();
    ~RawSocket();
    RawSocket(const RawSocket &) = delete;
    RawSocket &operator=(const RawSocket &) = delete;

    bool bindAndListen(const QString &path, int backlog = 5);
    /// Never waits: false also when the other side's queue is full.
    bool connectTo(const QString &path);
    bool writeAll(const QByteArray &bytes);
    /// Reads until the other side closes; `*closed` is false when that takes longer than the limit.
    QByteArray readToEnd(int limitMs, bool *closed);
    void close();

private:
    int m_descriptor = -1;
};
