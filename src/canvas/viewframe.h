#pragma once

#include <QBrush>
#include <QImage>
#include <QRegion>
#include <QTransform>

/// What the viewport of a view shows, as a picture of its own, and which parts of it are out of date.
///
/// While it is up to date, a paint is a copy, and a change that lies on top of everything is painted into
/// it instead of making the scene be painted anew. For a figure that changes its shape again and again there
/// can be an underlay as well: the same picture without the figure. In device pixels of the viewport.
class ViewFrame {
public:
    /// Everything is stale when the picture was made under other circumstances.
    void adapt(const QSize &size, const QTransform &viewportTransform, const QBrush &around);
    /// Gives the picture's memory back.
    void clear();
    bool isNull() const { return m_image.isNull(); }
    QImage &image() { return m_image; }

    void markStale(const QRegion &region);
    /// The same for a change of what the underlay goes without.
    void markStaleAbove(const QRegion &region);
    void markAllStale();
    /// The stale part of `exposed`, which no longer counts as stale: the caller paints it now.
    QRegion takeStale(const QRegion &exposed);

    /// Makes an underlay, right but for `unknown` and what is stale. Costs no copy until one of both changes.
    void beginUnderlay(const QRegion &unknown);
    void endUnderlay();
    bool hasUnderlay() const { return !m_underlay.isNull(); }
    QImage &underlay() { return m_underlay; }
    /// What of the underlay is out of date, and no longer counts as that.
    QRegion takeStaleUnderlay();
    /// Brings a part of the underlay into the picture.
    void uncover(const QRect &rect);

private:
    QImage m_image;
    QTransform m_transform;
    QBrush m_around;
    QRegion m_stale;
    QImage m_underlay;
    QRegion m_staleUnderlay;
};
