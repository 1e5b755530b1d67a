#pragma once

#include <QImage>

#include <functional>
#include <mutex>
#include <vector>

class QPainter;

/// The picture under a mosaic while it is being pixelated, shared by the item on the GUI thread and its job.
///
/// The job works on one band of rows at a time, in a copy of that band alone: the first band of a tall
/// capture is there long before a copy of all of it would be. Readers see a band as it was or done, and never
/// wait for one.
class MosaicSnapshot {
public:
    static constexpr int BandHeight = 3000;

    /// Shares the pixels of `image`.
    explicit MosaicSnapshot(const QImage &image);

    /// Pixelates all of it, band by band from the top. Each band has a grid of blocks of its own, so the
    /// last blocks of a band may be cut. Calls `bandDone` after each band. One thread, any.
    /// Throws nothing: an exception, such as memory running out, ends it, and the rest stays as it is.
    void pixelateAll(
        int block, const std::function<void()> &bandDone = [] {});

    /// A part of the picture as far as the job got; null for an empty area. Any thread.
    QImage copy(const QRect &area) const;
    /// Draws that part in its place. Any thread.
    void draw(QPainter *painter, const QRect &area) const;

private:
    void pixelateBands(int block, const std::function<void()> &bandDone);
    std::vector<QImage> doneBands() const;

    const QImage m_image;
    mutable std::mutex m_mutex; ///< guards the list; a band in it does not change any more
    std::vector<QImage> m_done; ///< from the top
};
