#pragma once

#include <QStringList>

/// Files that are still to be written, or whose names belong to a capture: while this lives, `FileNameUtil`
/// counts them as taken, though nothing may stand there yet.
///
/// Saves nest, since events are processed around a write; the inner one must not find the name of the outer
/// one free. GUI thread only.
class ReservedPaths {
public:
    explicit ReservedPaths(const QStringList &paths);
    ~ReservedPaths();
    ReservedPaths(const ReservedPaths &) = delete;
    ReservedPaths &operator=(const ReservedPaths &) = delete;

    /// Whether the file of that path is reserved, over whatever links its folder is named.
    static bool contains(const QString &path);

private:
    QStringList m_files;
};
