#include "print/printedsheet.h"

#include <QDebug>
#include <QPainter>

#include <algorithm>

const QColor TopLeft(255, 0, 0);
const QColor TopRight(0, 0, 255);
const QColor BottomLeft(0, 255, 0);
const QColor BottomRight(255, 0, 255);

QPixmap quarters(const QSize &size) {
    QPixmap pixmap(size);
    QPainter painter(&pixmap);
    const QRect whole = pixmap.rect();
    const int x = size.width() / 2;
    const int y = size.height() / 2;
    painter.fillRect(whole, TopLeft);
    painter.fillRect(whole.adjusted(x, 0, 0, 0), TopRight);
    painter.fillRect(whole.adjusted(0, y, 0, 0), BottomLeft);
    painter.fillRect(whole.adjusted(x, y, 0, 0), BottomRight);
    return pixmap;
}

QRectF areaOf(const QImage &sheet, const QVector<QColor> &colors) {
    const QImage pixels = sheet.convertToFormat(QImage::Format_RGB32);
    QVector<QRgb> wanted;
    for (const QColor &color : colors)
        wanted.append(color.rgb());
    QRect area;
    for (int y = 0; y < pixels.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(pixels.constScanLine(y));
        const auto isWanted = [&wanted](QRgb pixel) { return wanted.contains(pixel); };
        const QRgb *end = line + pixels.width();
        const QRgb *first = std::find_if(line, end, isWanted);
        if (first == end)
            continue;
        const QRgb *last = end - 1;
        while (!isWanted(*last))
            --last;
        area |= QRect(QPoint(int(first - line), y), QPoint(int(last - line), y));
    }
    return QRectF(QPointF(area.topLeft()) / Fine, QSizeF(area.size()) / Fine);
}

bool isNear(const QRectF &actual, const QRectF &expected, double tolerance) {
    return qAbs(actual.left() - expected.left()) <= tolerance &&
           qAbs(actual.top() - expected.top()) <= tolerance &&
           qAbs(actual.right() - expected.right()) <= tolerance &&
           qAbs(actual.bottom() - expected.bottom()) <= tolerance;
}

QByteArray told(const QRectF &actual, const QRectF &expected) {
    QString text;
    QDebug(&text) << actual << "instead of" << expected;
    return text.toLatin1();
}
