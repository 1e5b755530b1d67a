#pragma once

#include "services/tracelog.h"

#include <QByteArray>
#include <QFile>

#include <functional>

/// The lines that an action writes to the log while that takes every level in use.
inline QByteArray tracedBy(const std::function<void()> &action) {
    QFile log(TraceLog::filePath());
    const qint64 before = log.size();
    setTraceLevel(2);
    action();
    setTraceLevel(TraceLog::Off);
    return log.open(QIODevice::ReadOnly) && log.seek(before) ? log.readAll() : QByteArray();
}
