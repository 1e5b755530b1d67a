#include "output/gifimagewriter.h"

#include <QDebug>
#include <QFile>
#include <QRect>

#include <gif_lib.h>

#include <cstdlib>
#include <cstring>

namespace {

constexpr int ColorResolutionBits = 8;
constexpr int MillisecondsPerTick = 10;
/// Sizes and offsets are 16 bits wide in the file.
constexpr int MaxExtent = 65535;
constexpr int MaxTicks = 65535;
constexpr int MaxColors = 256;

/// Where the library's bytes go. The library overlooks some failing writes, so the first one is kept here.
struct Sink {
    QIODevice *device;
    bool failed = false;
};

int writeBytes(GifFileType *gif, const GifByteType *bytes, int count) {
    auto *sink = static_cast<Sink *>(gif->UserData);
    if (sink->failed || sink->device->write(reinterpret_cast<const char *>(bytes), count) != count) {
        sink->failed = true;
        return 0;
    }
    return count;
}

/// The frames as the library wants them, freed here: closing the file frees everything else, but not these.
class SavedImages {
public:
    explicit SavedImages(int count) {
        m_holder.SavedImages = static_cast<SavedImage *>(std::calloc(size_t(count), sizeof(SavedImage)));
        m_holder.ImageCount = m_holder.SavedImages ? count : 0;
    }
    ~SavedImages() {
        if (m_holder.SavedImages)
            GifFreeSavedImages(&m_holder);
    }
    SavedImages(const SavedImages &) = delete;
    SavedImages &operator=(const SavedImages &) = delete;

    bool isValid() const { return m_holder.SavedImages; }
    void lendTo(GifFileType *gif) {
        gif->ImageCount = m_holder.ImageCount;
        gif->SavedImages = m_holder.SavedImages;
    }

private:
    GifFileType m_holder{};
};

struct FreeColorMap {
    void operator()(ColorMapObject *map) const { GifFreeMapObject(map); }
};
using ColorMap = std::unique_ptr<ColorMapObject, FreeColorMap>;

/// The format knows tables of a power of two only; the rest stays black.
ColorMap makeColorMap(const QVector<QRgb> &colors) {
    ColorMap map(GifMakeMapObject(1 << GifBitSize(colors.size()), nullptr));
    for (int i = 0; map && i < colors.size(); ++i) {
        map->Colors[i].Red = GifByteType(qRed(colors[i]));
        map->Colors[i].Green = GifByteType(qGreen(colors[i]));
        map->Colors[i].Blue = GifByteType(qBlue(colors[i]));
    }
    return map;
}

int indexOfColor(const QColor &color, const QVector<QRgb> &colors) {
    return color.isValid() ? colors.indexOf(color.rgba()) : -1;
}

QImage reduceColors(const QImage &image, const QVector<QRgb> &globalTable, Qt::ImageConversionFlags flags) {
    if (image.format() == QImage::Format_Indexed8)
        return image;
    if (!globalTable.isEmpty())
        return image.convertToFormat(QImage::Format_Indexed8, globalTable, flags);
    return image.convertToFormat(QImage::Format_Indexed8, flags);
}

/// Pixels row by row, without the padding that ends the rows of an image in memory.
bool copyRaster(const QImage &image, SavedImage &saved) {
    const size_t width = size_t(image.width());
    saved.RasterBits = static_cast<GifByteType *>(std::malloc(width * size_t(image.height())));
    if (!saved.RasterBits)
        return false;
    for (int y = 0; y < image.height(); ++y)
        std::memcpy(saved.RasterBits + size_t(y) * width, image.constScanLine(y), width);
    return true;
}

bool addLoopExtension(SavedImage &saved, int loopCount) {
    unsigned char identifier[] = {'N', 'E', 'T', 'S', 'C', 'A', 'P', 'E', '2', '.', '0'};
    unsigned char data[] = {1, static_cast<unsigned char>(loopCount & 0xff),
                            static_cast<unsigned char>((loopCount >> 8) & 0xff)};
    return GifAddExtensionBlock(&saved.ExtensionBlockCount, &saved.ExtensionBlocks, APPLICATION_EXT_FUNC_CODE,
                                sizeof identifier, identifier) == GIF_OK &&
           GifAddExtensionBlock(&saved.ExtensionBlockCount, &saved.ExtensionBlocks, CONTINUE_EXT_FUNC_CODE,
                                sizeof data, data) == GIF_OK;
}

QSize boundingSize(const QList<GifFrame> &frames) {
    QRect bounds;
    for (const GifFrame &frame : frames)
        bounds |= QRect(QPoint(0, 0), frame.image.size() + QSize(frame.xOffset, frame.yOffset));
    return bounds.size();
}

bool fitsFormat(const QSize &canvas, const QList<GifFrame> &frames) {
    if (canvas.isEmpty() || canvas.width() > MaxExtent || canvas.height() > MaxExtent)
        return false;
    for (const GifFrame &frame : frames) {
        if (frame.image.isNull() || frame.image.width() > MaxExtent || frame.image.height() > MaxExtent)
            return false;
        if (frame.xOffset < 0 || frame.yOffset < 0 || frame.xOffset > MaxExtent || frame.yOffset > MaxExtent)
            return false;
    }
    return !frames.isEmpty();
}

} // namespace

void GifImageWriter::addFrame(const QImage &image, int delay) {
    GifFrame frame;
    frame.image = image;
    frame.delay = delay;
    addFrame(frame);
}

void GifImageWriter::addFrame(const GifFrame &frame) {
    m_frames.append(frame);
}

bool GifImageWriter::save(const QString &path, int flags) const {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && save(&file, flags) && file.flush();
}

bool GifImageWriter::save(QIODevice *device, int flags) const {
    const QSize canvas = m_canvasSize.isValid() ? m_canvasSize : boundingSize(m_frames);
    if (!fitsFormat(canvas, m_frames) || m_globalColorTable.size() > MaxColors)
        return false;
    SavedImages images(m_frames.size());
    const ColorMap globalMap = m_globalColorTable.isEmpty() ? nullptr : makeColorMap(m_globalColorTable);
    if (!images.isValid() || (!globalMap && !m_globalColorTable.isEmpty()))
        return false;

    Sink sink{device};
    int error = 0;
    GifFileType *gif = EGifOpen(&sink, writeBytes, &error);
    if (!gif) {
        qWarning("GifImageWriter: %s", GifErrorString(error));
        return false;
    }
    gif->SWidth = canvas.width();
    gif->SHeight = canvas.height();
    gif->SColorResolution = ColorResolutionBits;
    gif->SBackGroundColor = qMax(0, indexOfColor(m_backgroundColor, m_globalColorTable));
    images.lendTo(gif);

    bool ready = true;
    for (int i = 0; ready && i < m_frames.size(); ++i)
        ready = addSavedImage(gif, i, Qt::ImageConversionFlags(flags));

    gif->SColorMap = globalMap.get();
    // The library loses the table of a frame when the next one has none, which single pictures never meet.
    // It copies the global map over our pointer, and closes the file itself only when all went well.
    if (ready && EGifSpew(gif) == GIF_OK)
        return !sink.failed;
    if (gif->SColorMap == globalMap.get())
        gif->SColorMap = nullptr;
    EGifCloseFile(gif, &error);
    return false;
}

bool GifImageWriter::addSavedImage(GifFileType *gif, int index, Qt::ImageConversionFlags flags) const {
    const GifFrame &frame = m_frames[index];
    SavedImage &saved = gif->SavedImages[index];
    const QImage image = reduceColors(frame.image, m_globalColorTable, flags);
    const QVector<QRgb> table = image.colorTable();
    if (image.isNull() || table.size() > MaxColors || (table.isEmpty() && m_globalColorTable.isEmpty()))
        return false;

    saved.ImageDesc.Left = frame.xOffset;
    saved.ImageDesc.Top = frame.yOffset;
    saved.ImageDesc.Width = image.width();
    saved.ImageDesc.Height = image.height();
    saved.ImageDesc.Interlace = frame.interlace;
    if (!table.isEmpty() && table != m_globalColorTable) {
        saved.ImageDesc.ColorMap = makeColorMap(table).release();
        if (!saved.ImageDesc.ColorMap)
            return false;
    }
    if (!copyRaster(image, saved) || (index == 0 && !addLoopExtension(saved, m_loopCount)))
        return false;

    GraphicsControlBlock control;
    control.DisposalMode = DISPOSAL_UNSPECIFIED;
    control.UserInputFlag = false;
    control.TransparentColor =
        indexOfColor(frame.transparentColor.isValid() ? frame.transparentColor : m_defaultTransparentColor,
                     table.isEmpty() ? m_globalColorTable : table);
    const int delay = frame.delay == -1 ? m_defaultDelay : frame.delay;
    control.DelayTime = qBound(0, delay / MillisecondsPerTick, MaxTicks);
    return EGifGCBToSavedExtension(&control, gif, index) == GIF_OK;
}
