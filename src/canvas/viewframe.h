#pragma once

#include <QBrush>
#include <QImage>
#include <QRegion>
#include <QTransform>

/// What the viewport of a view shows, as a picture of its own, and which parts of it are out of date.
///
/// While it is up to date, a paint is a copy, and a change that lies on top of everything is painted into
/// it instead of making the scene be painted anew. In device pixels of the viewport.
class ViewFrame {
public:
    /// Everything is stale when the picture was made under other circumstances.
    void adapt(const QSize &size, const QTransform &viewportTransform, const QBrush &around);
    /// Gives the picture's memory back.
    void clear();
    bool isNull() const { return m_image.isNull(); }
    QImage &image() { return m_image; }

    void markStale(const QRegion &region);
    void markAllStale();
    /// The stale part of `exposed`, which no longer counts as stale: the caller paints it now.
    QRegion takeStale(const QRegion &exposed);

private:
    QImage m_image;
    QTransform m_transform;
    QBrush m_around;
    QRegion m_stale;
};
