// Pictures for a GIF file, which another reader of the format must find again in it.

#include "fuzz/support/input.h"
#include "fuzz/support/property.h"
#include "output/gifimagewriter.h"

#include <QBuffer>

#include <gif_lib.h>

#include <memory>

namespace {

constexpr int MostFrames = 4;
constexpr int LargestSide = 40;
constexpr int LargestOffset = 300;
constexpr int BeyondTheFormat = 70000;
constexpr int MostColors = 256;
constexpr int MillisecondsPerTick = 10;
constexpr int DefaultDelay = 1000;

struct Sample {
    GifImageWriter writer;
    QList<GifFrame> frames;
    QSize canvas; ///< invalid: as large as the frames need
    QVector<QRgb> globalTable;
};

QVector<QRgb> colorTable(Input *input, int most) {
    QVector<QRgb> table;
    const int size = input->number(0, most);
    for (int i = 0; i < size; ++i)
        table.append(qRgb(input->byte(), i, size));
    return table;
}

/// Null when a side is 0.
QImage indexedImage(const QSize &size, const QVector<QRgb> &table, Input *input) {
    QImage image(size, QImage::Format_Indexed8);
    image.setColorTable(table);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.scanLine(y)[x] = static_cast<uchar>(input->byte() % std::max(1, table.size()));
    }
    return image;
}

QImage colorfulImage(const QSize &size, QImage::Format format, Input *input) {
    QImage image(size, format);
    image.fill(Qt::black);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgba(input->byte(), y, x, 255 - y));
    }
    return image;
}

GifFrame frameFrom(Input *input, const QVector<QRgb> &globalTable) {
    GifFrame frame;
    const int width = input->number(0, LargestSide);
    const QSize size(width, input->number(0, LargestSide));
    const int offset = input->number(-1, LargestOffset);
    frame.xOffset = offset == LargestOffset ? BeyondTheFormat : offset;
    frame.yOffset = input->number(-1, LargestOffset);
    frame.delay = input->number(-1, 65000) * (input->flag() ? 1 : MillisecondsPerTick * 2);
    frame.interlace = input->flag();
    switch (input->number(0, 3)) {
    case 0:
        frame.image = indexedImage(size, colorTable(input, MostColors), input);
        break;
    case 1:
        frame.image = colorfulImage(size, QImage::Format_RGB32, input);
        break;
    case 2:
        frame.image = colorfulImage(size, QImage::Format_ARGB32_Premultiplied, input);
        break;
    default:
        frame.image = indexedImage(size, globalTable, input);
    }
    if (input->flag())
        frame.transparentColor = QColor::fromRgba(frame.image.isNull() ? 0 : frame.image.pixel(0, 0));
    return frame;
}

Sample sampleFrom(Input *input) {
    Sample sample;
    // The library loses the table of a frame that another one without a table follows.
    const bool hasGlobalTable = input->flag();
    if (hasGlobalTable)
        sample.globalTable = colorTable(input, MostColors + LargestSide);
    sample.writer.setGlobalColorTable(sample.globalTable);
    sample.writer.setDefaultDelay(DefaultDelay);
    sample.writer.setLoopCount(input->word());
    if (input->flag()) {
        const int width = input->number(0, 1000);
        sample.canvas = QSize(width, input->flag() ? BeyondTheFormat : LargestSide);
        sample.writer.setCanvasSize(sample.canvas);
    }
    const int count = input->number(0, hasGlobalTable ? 1 : MostFrames);
    for (int i = 0; i < count; ++i) {
        sample.frames.append(frameFrom(input, sample.globalTable));
        sample.writer.addFrame(sample.frames.last());
    }
    return sample;
}

/// Whether the format has a place for the sample.
bool canBeWritten(const Sample &sample) {
    const auto isWritable = [&sample](const GifFrame &frame) {
        const bool hasTable = frame.image.format() != QImage::Format_Indexed8 ||
                              frame.image.colorCount() > 0 || !sample.globalTable.isEmpty();
        return !frame.image.isNull() && frame.xOffset >= 0 && frame.yOffset >= 0 &&
               frame.xOffset < BeyondTheFormat && hasTable;
    };
    const bool isCanvasSmall =
        !sample.canvas.isValid() || (!sample.canvas.isEmpty() && sample.canvas.height() < BeyondTheFormat);
    return isCanvasSmall && sample.globalTable.size() <= MostColors && !sample.frames.isEmpty() &&
           std::all_of(sample.frames.begin(), sample.frames.end(), isWritable);
}

struct Closer {
    void operator()(GifFileType *file) const {
        int error = 0;
        DGifCloseFile(file, &error);
    }
};

int readBytes(GifFileType *file, GifByteType *bytes, int count) {
    auto *device = static_cast<QIODevice *>(file->UserData);
    return static_cast<int>(device->read(reinterpret_cast<char *>(bytes), count));
}

bool isColor(const GifColorType &color, QRgb expected) {
    return color.Red == qRed(expected) && color.Green == qGreen(expected) && color.Blue == qBlue(expected);
}

void checkPixels(const SavedImage &saved, const ColorMapObject *colors, const QImage &expected,
                 const QVector<QRgb> &table) {
    require(colors != nullptr, "a frame has colours");
    for (int y = 0; y < expected.height(); ++y) {
        for (int x = 0; x < expected.width(); ++x) {
            const int index = saved.RasterBits[y * expected.width() + x];
            require(index == expected.constScanLine(y)[x], "each pixel is found again");
            require(index < colors->ColorCount &&
                        (index >= table.size() || isColor(colors->Colors[index], table[index])),
                    "each colour is found again");
        }
    }
}

void checkFrame(GifFileType *file, int number, const GifFrame &frame, const QVector<QRgb> &globalTable) {
    const SavedImage &saved = file->SavedImages[number];
    const GifImageDesc &place = saved.ImageDesc;
    require(QSize(place.Width, place.Height) == frame.image.size(), "a frame keeps its size");
    require(place.Left == frame.xOffset && place.Top == frame.yOffset, "a frame keeps its place");
    require(place.Interlace == frame.interlace, "a frame keeps the order of its rows");

    GraphicsControlBlock control;
    require(DGifSavedExtensionToGCB(file, number, &control) == GIF_OK, "a frame tells how long it is shown");
    const int delay = (frame.delay == -1 ? DefaultDelay : frame.delay) / MillisecondsPerTick;
    require(control.DelayTime == std::clamp(delay, 0, 0xFFFF),
            "a frame keeps its time, as far as the format goes");

    QImage expected = frame.image;
    if (expected.format() != QImage::Format_Indexed8)
        expected = globalTable.isEmpty()
                       ? expected.convertToFormat(QImage::Format_Indexed8, Qt::AutoColor)
                       : expected.convertToFormat(QImage::Format_Indexed8, globalTable, Qt::AutoColor);
    const QVector<QRgb> table = expected.colorCount() > 0 ? expected.colorTable() : globalTable;
    checkPixels(saved, place.ColorMap ? place.ColorMap : file->SColorMap, expected, table);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    Input input(data, size);
    const Sample sample = sampleFrom(&input);
    QBuffer buffer;
    buffer.open(QIODevice::ReadWrite);
    const bool isSaved = sample.writer.save(&buffer, 0);
    require(isSaved == canBeWritten(sample), "what the format has a place for is written, and nothing else");
    if (!isSaved)
        return 0;

    buffer.seek(0);
    int error = 0;
    const std::unique_ptr<GifFileType, Closer> file(DGifOpen(&buffer, readBytes, &error));
    require(file && DGifSlurp(file.get()) == GIF_OK, "what was written can be read");
    require(file->ImageCount == sample.frames.size(), "all frames are there");
    for (int i = 0; i < sample.frames.size(); ++i)
        checkFrame(file.get(), i, sample.frames[i], sample.globalTable);
    return 0;
}
