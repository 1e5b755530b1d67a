#pragma once

#include "canvas/editor.h"
#include "history/batchqueue.h"

#include <QCoreApplication>
#include <QPointer>
#include <QQueue>
#include <QStringList>
#include <QVector>

#include <memory>

class ReservedPaths;

/// Writes many captures under numbered names.
///
/// The first is written on the GUI thread, so that a folder that takes no file fails at once. The others are
/// flattened here and encoded in the thread pool, a few at a time, because each holds a whole picture in
/// memory. Meanwhile windows are painted, the wait cursor shows and each row gets its mark as its file is
/// done, but no input is taken. For one batch; GUI thread only.
class BatchSave {
public:
    /// `base` is the name without number and suffix; `quality` as for `writeImage`.
    BatchSave(const QString &base, int quality);

    /// Writes the captures in that order and returns how many were written; those that are gone by the time
    /// their turn comes are passed over.
    int run(const QVector<QPointer<Editor>> &captures);
    /// The file written first; empty when there is none.
    QString firstPath() const { return m_firstPath; }

private:
    /// A picture that is in the queue.
    struct Job {
        QPointer<Editor> editor;
        QString path;
        std::shared_ptr<const ReservedPaths> reserved; ///< until the file is there
    };

    // A capture may go while one of these waits.
    void save(const QPointer<Editor> &editor);
    void startJob(const QPointer<Editor> &editor, const QString &path);
    void waitForJobs(int remaining);
    void takeResults();

    QString m_base;
    int m_quality;
    QString m_firstPath;
    int m_count = 0;
    QStringList m_used; ///< names given out
    const std::shared_ptr<BatchQueue> m_queue;
    QQueue<Job> m_jobs; ///< in the order of the queue
};
