// What is done with whole pictures, each beside the toolkit's own routine for the bare work in it.

#include "canvas/editor.h"
#include "canvas/smoothbackground.h"
#include "history/thumbnail.h"
#include "ipc/imagedecoder.h"
#include "ipc/imageprovider.h"
#include "measuring.h"
#include "output/imagewriter.h"
#include "platform/sharedimageblock.h"
#include "runningeditor.h"
#include "sceneitems.h"

#include <QBuffer>
#include <QFile>
#include <QPainter>
#include <QSharedMemory>

#include <benchmark/benchmark.h>

#include <cstring>
#include <functional>
#include <memory>

namespace {

constexpr QSize CaptureSize(3840, 2160);
/// Encoders are slow, and cost by the pixel.
constexpr QSize EncodedSize(1280, 720);
constexpr double Half = 0.505;
constexpr QSize IconSize(84, 84);
constexpr int PngQuality = 70;
constexpr int JpegQuality = 90;
constexpr int Items = 1000;

using Work = std::function<void()>;

void repeat(benchmark::State &state, const Work &work) {
    for (auto _ : state)
        work();
}

/// Builds what the work needs only when it is its turn.
void add(const char *name, std::function<Work()> prepare) {
    benchmark::RegisterBenchmark(name, [prepare](benchmark::State &state) { repeat(state, prepare()); })
        ->MeasureProcessCPUTime() // the toolkit scales in several threads
        ->Unit(benchmark::kMillisecond);
}

template <class Result> void keep(const Result &result) {
    benchmark::DoNotOptimize(result);
}

/// What is measured with. Pixmaps must not outlive the application, so this is no static object.
struct World {
    MarkedCapture encoded{CaptureSize, 1};
    QPixmap pixmap = QPixmap::fromImage(QImage::fromData(encoded.bytes));
    Editor plain, drawn;
};

void addDecoding(World &world) {
    add("decode/toolkit", [&world] { return [&world] { keep(QImage::fromData(world.encoded.bytes)); }; });
    add("decode/file", [path = world.encoded.toFile()] {
        return [path] {
            ImageProvider::instance()->forget(path);
            keep(ImageProvider::instance()->pixmap(path));
        };
    });
    add("decode/memory", [&world] {
        const auto block = std::make_shared<QSharedMemory>();
        const QByteArray &bytes = world.encoded.bytes;
        block->setNativeKey(platform::sharedImageBlock().nativeKey);
        if (!block->create(bytes.size()))
            qFatal("the shared block cannot be made");
        std::memcpy(block->data(), bytes.constData(), std::size_t(bytes.size()));
        return [block] {
            const QString key = QStringLiteral("by memory");
            ImageProvider::instance()->forget(key);
            ImageProvider::instance()->loadFromMemory(key, block->size());
            if (!ImageProvider::instance()->isInMemory(key))
                qFatal("the shared block cannot be read");
        };
    });
}

void addScaling(World &world) {
    const QSize half = CaptureSize * Half;
    add("scale/toolkit half", [&world, half] {
        return [half, image = world.pixmap.toImage()] {
            keep(image.scaled(half, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
        };
    });
    add("scale/background", [&world] {
        return [&world] {
            SmoothBackground background;
            background.refresh(world.pixmap, world.pixmap.rect(), Half);
        };
    });
    const QSize thumbnail = Thumbnail::intermediate(world.pixmap, IconSize).size();
    add("scale/toolkit small", [&world, thumbnail] {
        return [thumbnail, image = world.pixmap.toImage()] {
            keep(image.scaled(thumbnail, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
        };
    });
    add("scale/thumbnail",
        [&world] { return [&world] { keep(Thumbnail::intermediate(world.pixmap, IconSize)); }; });
}

void addEncoding() {
    const QImage image = QImage::fromData(MarkedCapture(EncodedSize, 2).bytes);
    const auto pair = [image](const char *toolkit, const char *own, const QString &name, int quality) {
        const QString path = qEnvironmentVariable("TMPDIR") + QLatin1Char('/') + name;
        add(toolkit, [=] { return [=] { image.save(path, nullptr, quality); }; });
        add(own, [=] { return [=] { writeImage(image, path, quality); }; });
    };
    pair("encode/toolkit png", "encode/png", QStringLiteral("picture.png"), PngQuality);
    pair("encode/toolkit jpg", "encode/jpg", QStringLiteral("picture.jpg"), JpegQuality);
    pair("encode/toolkit bmp", "encode/bmp", QStringLiteral("picture.bmp"), 0);
    pair("encode/toolkit webp", "encode/webp", QStringLiteral("picture.webp"), JpegQuality);
    // The toolkit writes no GIF; finding its colours is what there is no way around.
    add("encode/toolkit colours",
        [image] { return [image] { keep(image.convertToFormat(QImage::Format_Indexed8)); }; });
    const QString gif = qEnvironmentVariable("TMPDIR") + QLatin1String("/picture.gif");
    add("encode/gif", [=] { return [=] { writeImage(image, gif, -1); }; });
}

void addFlattening(World &world) {
    for (Editor *editor : {&world.plain, &world.drawn}) {
        const QString key = QStringLiteral("capture %1").arg(quintptr(editor));
        ImageProvider::instance()->insert(key, world.pixmap);
        editor->setImageKey(key);
    }
    addItems(world.drawn, Items);
    add("flatten/copy", [&world] { return [image = world.pixmap.toImage()] { keep(image.copy()); }; });
    add("flatten/without items", [&world] { return [&world] { keep(world.plain.flatten(true, false)); }; });
    add("flatten/with items", [&world] { return [&world] { keep(world.drawn.flatten(true, false)); }; });
    add("flatten/toolkit", [&world] {
        return [&world] {
            QPixmap copy = world.pixmap.copy();
            QPainter painter(&copy);
            world.drawn.render(&painter);
            painter.end();
            keep(copy);
        };
    });
}

} // namespace

std::shared_ptr<void> addPictures() {
    auto world = std::make_shared<World>();
    addDecoding(*world);
    addScaling(*world);
    addEncoding();
    addFlattening(*world);
    return world;
}
