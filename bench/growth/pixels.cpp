#include "canvas/items/drawingcropitem.h"
#include "canvas/pixelate.h"
#include "canvasbench.h"
#include "growth.h"
#include "history/thumbnail.h"
#include "ipc/imageprovider.h"
#include "output/imagewriter.h"

#include <cmath>

namespace {

constexpr double Megapixels[] = {0.1, 0.5, 2, 8, 20, 40, 60};
/// From here on a capture fills the view; a smaller one leaves parts of it empty, which cost nothing.
constexpr double FillsView = 8;
constexpr int Runs = 5;
constexpr QSize IconSize(84, 84);
constexpr int Block = 6;
constexpr int CropMargin = 30;
constexpr int IntoHandle = 4; // of the 16 image pixels of a corner

/// 16 to 9.
QSize sizeOf(double megapixels) {
    const double unit = std::sqrt(megapixels * 1e6 / (16 * 9));
    return QSize(qRound(16 * unit), qRound(9 * unit));
}

QString temporary(const char *name) {
    return qEnvironmentVariable("TMPDIR") + QLatin1Char('/') + QLatin1String(name);
}

/// A capture that is a file, on the screen.
class Capture {
public:
    explicit Capture(const QSize &size) {
        patternedCapture(size).save(m_path, "PNG", 70);
        m_editor.setImageKey(m_path);
    }
    double decoding() {
        return fastestOf(Runs, [this] {
            m_canvas.view().setEditor(nullptr);
            ImageProvider::instance()->forget(m_path);
            const double cost = m_canvas.untilPainted([this] { m_canvas.view().setEditor(&m_editor); });
            settle(CanvasBench::SmoothAfter);
            return cost;
        });
    }
    double zooming() {
        return fastestOf(Runs, [this] {
            const double cost = m_canvas.untilPainted([this] { m_canvas.view().onZoomIn(); });
            m_canvas.view().onZoomOut();
            settle(CanvasBench::SmoothAfter);
            return cost;
        });
    }
    /// The frame is open; accepting it until it is painted.
    double cropping() {
        return fastestOf(Runs, [this] {
            m_editor.setShape(Editor::Crop);
            m_editor.startCrop();
            settle(CanvasBench::SmoothAfter);
            shrinkFrame();
            const double cost = m_canvas.untilPainted([this] { m_editor.finishCurrentItem(true); });
            settle(CanvasBench::SmoothAfter);
            m_editor.undo();
            m_canvas.view().onZoomReset();
            settle(CanvasBench::SmoothAfter);
            return cost;
        });
    }
    double thumbnail() {
        return fastestOf(Runs, [this] {
            return costOf([this] { Thumbnail::intermediate(m_editor.flatten(true, false), IconSize); });
        });
    }
    double mosaic() {
        QImage image = m_editor.flatten(false, true).toImage();
        pixelate(image, image.rect(), Block); // its pixels are its own from now on
        return fastestOf(Runs, [&] { return costOf([&] { pixelate(image, image.rect(), Block); }); });
    }
    double saving() {
        return fastestOf(Runs, [this] {
            return costOf([this] { m_editor.saveFlattened(temporary("saved.png"), false, -1); });
        });
    }

private:
    /// A crop of all is none.
    void shrinkFrame() {
        const auto *crop = dynamic_cast<DrawingCropItem *>(m_editor.currentItem());
        if (!crop)
            qFatal("no crop");
        const QSize before = crop->frame().size();
        // In a reduced view a point on the corner itself may fall beside it.
        const QPoint handle = crop->frame().bottomRight() - QPoint(IntoHandle, IntoHandle);
        const QPoint corner = m_canvas.view().mapFromScene(handle);
        const QPoint to = corner - QPoint(CropMargin, CropMargin);
        m_canvas.send(QEvent::MouseButtonPress, corner);
        m_canvas.send(QEvent::MouseMove, to);
        m_canvas.send(QEvent::MouseButtonRelease, to);
        settle(CanvasBench::SmoothAfter);
        if (crop->frame().size() == before)
            qFatal("the frame of the crop has kept its size");
    }

    QString m_path = temporary("capture.png");
    Editor m_editor;
    CanvasBench m_canvas;
};

} // namespace

void growthWithPixels() {
    Curve decode(QStringLiteral("megapixels from a file to the screen"), figures::Linear);
    Curve zoom(QStringLiteral("zoom step over megapixels"), figures::Flat);
    Curve crop(QStringLiteral("accepting a crop of megapixels"), figures::Linear);
    Curve thumbnail(QStringLiteral("thumbnail of megapixels"), figures::Linear);
    Curve mosaic(QStringLiteral("mosaic over megapixels"), figures::Linear);
    Curve save(QStringLiteral("saving megapixels as PNG"), figures::Linear);
    for (const double megapixels : Megapixels) {
        Capture capture(sizeOf(megapixels));
        decode.add(megapixels, capture.decoding());
        if (megapixels >= FillsView)
            zoom.add(megapixels, capture.zooming());
        crop.add(megapixels, capture.cropping());
        thumbnail.add(megapixels, capture.thumbnail());
        mosaic.add(megapixels, capture.mosaic());
        save.add(megapixels, capture.saving());
    }
    for (const Curve *curve : {&decode, &zoom, &crop, &thumbnail, &mosaic, &save})
        curve->print();
}
