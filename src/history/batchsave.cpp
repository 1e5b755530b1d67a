#include "history/batchsave.h"

#include "output/filenameutil.h"
#include "output/imagewriter.h"
#include "output/reservedpaths.h"
#include "services/tracelog.h"

#include <QCursor>
#include <QGuiApplication>
#include <QThread>
#include <QThreadPool>
#include <QtConcurrent>

namespace {

constexpr unsigned long PollInterval = 5; // milliseconds

/// What holds while a batch runs.
class BusyState {
public:
    explicit BusyState(std::function<void()> whileWaiting) {
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        FileNameUtil::setBatchWait(std::move(whileWaiting));
    }
    ~BusyState() {
        FileNameUtil::setBatchWait({});
        QGuiApplication::restoreOverrideCursor();
    }
    BusyState(const BusyState &) = delete;
    BusyState &operator=(const BusyState &) = delete;
};

/// Runs in the pool: touches its own picture and one file.
bool encode(const BatchQueue::Picture &picture) {
    trace(2, QStringLiteral("future"), "%ls", picture.path.utf16());
    return writeImage(picture.image, picture.path, picture.quality);
}

void paintWindows() {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::ExcludeSocketNotifiers);
    QThread::msleep(PollInterval);
}

} // namespace

BatchSave::BatchSave(const QString &base, int quality)
    : m_base(base), m_quality(quality), m_queue(std::make_shared<BatchQueue>(encode)) {}

int BatchSave::run(const QVector<QPointer<Editor>> &captures) {
    const BusyState busy([this] {
        paintWindows();
        takeResults();
        // The next serial name waits for the file of the last one, which would be for ever if that could not
        // be written or has been taken away since. What was written and is there still is seen in the folder.
        if (m_jobs.isEmpty())
            m_used.clear();
    });
    for (const QPointer<Editor> &editor : captures) {
        if (editor)
            save(editor);
    }
    waitForJobs(0);
    return m_count;
}

void BatchSave::save(const QPointer<Editor> &editor) {
    const QString path = FileNameUtil::batchFileName(m_base, m_used);
    // Asking for a name may have waited for the file before, with events being treated.
    if (!editor)
        return;
    m_used.append(path);
    if (!m_firstPath.isEmpty()) {
        startJob(editor, path);
        return;
    }
    const ReservedPaths reserved({path});
    if (editor->saveFlattened(path, true, m_quality)) {
        m_firstPath = path;
        ++m_count;
    }
}

void BatchSave::startJob(const QPointer<Editor> &editor, const QString &path) {
    waitForJobs(QThreadPool::globalInstance()->maxThreadCount());
    if (!editor)
        return;
    editor->finishDrag();
    editor->finishCurrentItem(true);
    m_queue->add({editor->flatten(true, false).toImage(), path, m_quality});
    m_jobs.enqueue({editor, path, std::make_shared<const ReservedPaths>(QStringList{path})});
    QtConcurrent::run([queue = m_queue] { queue->writeNext(); });
}

void BatchSave::waitForJobs(int remaining) {
    takeResults();
    while (m_jobs.size() > remaining) {
        paintWindows();
        takeResults();
    }
}

void BatchSave::takeResults() {
    while (const std::optional<bool> isWritten = m_queue->takeFirst()) {
        const Job job = m_jobs.dequeue();
        if (!*isWritten)
            continue;
        ++m_count;
        if (job.editor)
            job.editor->setSavedPath(job.path);
    }
}
