#pragma once

#include "fuzz/support/property.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

/// A folder of its own, for what works on files. A new one for each input, since settings that were read once
/// are remembered by the path of their file.
class ScratchFolder {
public:
    QString path() const { return m_folder.path(); }
    QString filePath(const QString &name) const { return m_folder.filePath(name); }
    /// Makes the folders on the way too.
    QString write(const QString &name, const QByteArray &bytes) const {
        const QString path = filePath(name);
        QFile file(path);
        require(QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly) &&
                    file.write(bytes) == bytes.size(),
                "a scratch file can be written");
        return path;
    }

private:
    QTemporaryDir m_folder;
};

inline QByteArray contentOf(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
