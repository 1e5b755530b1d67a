#pragma once

#include <QImage>

#include <mutex>

/// The picture under a mosaic while it is being pixelated, shared by the item on the GUI thread and its job.
///
/// Every access is locked. The job holds the lock for one band of rows at a time, so that a reader never
/// waits for more than a band.
class MosaicSnapshot {
public:
    static constexpr int BandHeight = 3000;

    explicit MosaicSnapshot(const QImage &image) : m_image(image) {}

    /// Pixelates all of it, band by band from the top. Each band has a grid of blocks of its own, so the
    /// last blocks of a band may be cut. One thread, any.
    void pixelateAll(int block);

    /// Calls `reader(const QImage &)` with the picture as far as the job got; the picture is locked
    /// meanwhile, and `reader` must keep no copy, which would make the job copy all the pixels. Any thread.
    template <class Reader> void read(Reader reader) const {
        const std::lock_guard<std::mutex> lock(m_mutex);
        reader(m_image);
    }

private:
    mutable std::mutex m_mutex;
    QImage m_image;
};
