/// Makes the samples of the mosaic panel: a picture, untouched and in blocks of each strength.
///
/// usage: mosaic-samples PICTURE.svg FOLDER
///
/// Drawn three times as large as they are shown at 96 DPI, so that larger scales stay sharp.

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

namespace {

/// Side of a sample at 96 DPI: a multiple of every block.
constexpr int Side = 72;
constexpr int Enlargement = 3;

struct Sample {
    const char *name;
    int block; ///< in pixels of the sample at 96 DPI
};
constexpr Sample Samples[] = {{"original", 1}, {"weak", 4}, {"medium", 6}, {"strong", 9}};

QImage render(QSvgRenderer &picture) {
    QImage image(Side * Enlargement, Side * Enlargement, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    picture.render(&painter);
    return image;
}

QColor average(const QImage &image, const QRect &block) {
    int red = 0;
    int green = 0;
    int blue = 0;
    for (int y = block.top(); y <= block.bottom(); ++y) {
        for (int x = block.left(); x <= block.right(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            red += qRed(pixel);
            green += qGreen(pixel);
            blue += qBlue(pixel);
        }
    }
    const int count = block.width() * block.height();
    return QColor(red / count, green / count, blue / count);
}

QImage inBlocks(const QImage &image, int block) {
    QImage result(image);
    QPainter painter(&result);
    for (int y = 0; y < image.height(); y += block) {
        for (int x = 0; x < image.width(); x += block) {
            const QRect area(x, y, block, block);
            painter.fillRect(area, average(image, area));
        }
    }
    return result;
}

} // namespace

int main(int argc, char **argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    if (argc != 3) {
        std::fprintf(stderr, "usage: mosaic-samples PICTURE.svg FOLDER\n");
        return 2;
    }
    QSvgRenderer picture(QString::fromLocal8Bit(argv[1]));
    if (!picture.isValid()) {
        std::fprintf(stderr, "mosaic-samples: no picture: %s\n", argv[1]);
        return 1;
    }
    const QImage original = render(picture);
    for (const Sample &sample : Samples) {
        const QImage image = sample.block == 1 ? original : inBlocks(original, sample.block * Enlargement);
        const QString path =
            QStringLiteral("%1/%2.png").arg(QString::fromLocal8Bit(argv[2]), QLatin1String(sample.name));
        if (!image.save(path)) {
            std::fprintf(stderr, "mosaic-samples: cannot write %s\n", qPrintable(path));
            return 1;
        }
    }
    return 0;
}
