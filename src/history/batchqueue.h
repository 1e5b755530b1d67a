#pragma once

#include <QImage>
#include <QString>

#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <utility>

/// The pictures of a batch on their way to the disk: one thread hands them in and takes what became of them,
/// in the same order, and workers write them.
///
/// All of them hold it together, since a worker may still be on its way out of `writeNext` when the last
/// result has been taken. Any thread; `takeFirst` belongs to one.
class BatchQueue {
public:
    struct Picture {
        QImage image;
        QString path;
        int quality = -1; ///< as for `writeImage`
    };
    /// True when the file is there. Called by several workers at once. An exception counts as false: thrown
    /// on, it would end the program.
    using Writer = std::function<bool(const Picture &)>;

    explicit BatchQueue(Writer writer) : m_writer(std::move(writer)) {}
    BatchQueue(const BatchQueue &) = delete;
    BatchQueue &operator=(const BatchQueue &) = delete;

    void add(Picture picture);
    /// Writes the picture that has waited longest and lets its memory go; nothing when none waits. Call it
    /// once for each picture that was added.
    void writeNext();
    /// What became of the picture that was added first of those not taken yet; empty while it is not known,
    /// and when there is none.
    std::optional<bool> takeFirst();

private:
    struct Entry {
        Picture picture; ///< empty once a worker has it
        bool isTaken = false;
        std::optional<bool> isWritten;
    };
    Entry *beginNext(Picture *picture);
    bool write(const Picture &picture) const;

    const Writer m_writer;
    std::mutex m_mutex; ///< guards the entries
    /// One that a worker is at stays where it is: others come and go at the ends only, and it goes when it is
    /// done.
    std::deque<Entry> m_entries;
};
