#pragma once

#include <QColor>
#include <QImage>
#include <QList>
#include <QSize>
#include <QVector>

class QIODevice;
struct GifFileType;

/// One picture of a GIF file.
struct GifFrame {
    QImage image;
    int xOffset = 0;
    int yOffset = 0;
    int delay = -1; ///< milliseconds; -1: the writer's default
    bool interlace = false;
    QColor transparentColor;
};

/// Writes GIF files with the loop extension.
///
/// Images that are not indexed are reduced to 256 colours by Qt's own conversion. The format carries sizes
/// up to 65535 and tables up to 256 colours; more than that, images that are null or have no colours and a
/// writer without frames give false. A delay is kept as far as its 16 bits of hundredths go. Any thread, one
/// writer per thread.
class GifImageWriter {
public:
    void setCanvasSize(const QSize &size) { m_canvasSize = size; }
    void setLoopCount(int count) { m_loopCount = count; }
    void setDefaultDelay(int milliseconds) { m_defaultDelay = milliseconds; }
    void setDefaultTransparentColor(const QColor &color) { m_defaultTransparentColor = color; }
    void setGlobalColorTable(const QVector<QRgb> &colors) { m_globalColorTable = colors; }
    void setBackgroundColor(const QColor &color) { m_backgroundColor = color; }

    void addFrame(const QImage &image, int delay);
    void addFrame(const GifFrame &frame);

    /// `flags`: `Qt::ImageConversionFlags` of the colour reduction.
    bool save(const QString &path, int flags) const;
    bool save(QIODevice *device, int flags) const;

private:
    bool addSavedImage(GifFileType *gif, int index, Qt::ImageConversionFlags flags) const;

    QSize m_canvasSize;
    int m_loopCount = 0;
    int m_defaultDelay = 1000;
    QColor m_defaultTransparentColor;
    QVector<QRgb> m_globalColorTable;
    QColor m_backgroundColor;
    QList<GifFrame> m_frames;
};
