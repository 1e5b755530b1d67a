#include "support/imagecompare.h"

#include <QDir>

namespace {

bool samePixel(QRgb a, QRgb b) {
    return a == b || (qAlpha(a) == 0 && qAlpha(b) == 0);
}

void writePictures(const QImage &actual, const QImage &expected, const QImage &diff, const QString &name) {
    const QDir folder(qEnvironmentVariable("TINDRA_TEST_PICTURES", QStringLiteral(".")));
    actual.save(folder.filePath(name + QStringLiteral("-actual.png")));
    expected.save(folder.filePath(name + QStringLiteral("-expected.png")));
    if (!diff.isNull())
        diff.save(folder.filePath(name + QStringLiteral("-diff.png")));
}

} // namespace

bool sameImage(const QImage &actual, const QImage &expected, const QString &name, QString *message) {
    if (actual.size() != expected.size()) {
        *message = QStringLiteral("%1: size %2x%3, expected %4x%5")
                       .arg(name)
                       .arg(actual.width())
                       .arg(actual.height())
                       .arg(expected.width())
                       .arg(expected.height());
        writePictures(actual, expected, QImage(), name);
        return false;
    }
    const QImage a = actual.convertToFormat(QImage::Format_ARGB32);
    const QImage b = expected.convertToFormat(QImage::Format_ARGB32);
    QImage diff(a.size(), QImage::Format_RGB32);
    diff.fill(Qt::white);
    int differing = 0;
    QPoint first;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            if (samePixel(a.pixel(x, y), b.pixel(x, y)))
                continue;
            if (differing++ == 0)
                first = QPoint(x, y);
            diff.setPixel(x, y, qRgb(255, 0, 0));
        }
    }
    if (differing == 0)
        return true;
    *message = QStringLiteral("%1: %2 pixels differ, first at (%3, %4): %5, expected %6")
                   .arg(name)
                   .arg(differing)
                   .arg(first.x())
                   .arg(first.y())
                   .arg(a.pixel(first), 8, 16, QLatin1Char('0'))
                   .arg(b.pixel(first), 8, 16, QLatin1Char('0'));
    writePictures(actual, expected, diff, name);
    return false;
}
