#include "platform/linux/pdfpages.h"

#include <QImage>

namespace {

constexpr double PointsPerInch = 72.0;
constexpr double FrameWidth = 1.0; // device pixels

QPageSize pageSize(const QSize &tenths) {
    return QPageSize(QSizeF(tenths) / 10.0, QPageSize::Millimeter, QString(), QPageSize::ExactMatch);
}

} // namespace

PdfPages::PdfPages(const Sheet &sheet, const QString &title)
    : m_sheet(sheet),
      m_writer((m_buffer.open(QIODevice::WriteOnly), std::make_unique<QPdfWriter>(&m_buffer))) {
    m_writer->setPageSize(pageSize(sheet.size));
    m_writer->setPageMargins(QMarginsF());
    m_writer->setResolution(sheet.metrics.logPixelsX);
    m_writer->setTitle(title);
}

QTransform PdfPages::printableCorner() const {
    QTransform transform;
    if (m_sheet.isLandscape) {
        // A quarter turn to the left: what is read at the left lies at the lower end of the sheet. The end is
        // that of the document's page, which is whole points long and so hardly ever exactly the paper.
        const double length =
            m_writer->pageLayout().fullRectPoints().height() / PointsPerInch * m_sheet.metrics.logPixelsX;
        transform = QTransform(0, -1, 1, 0, 0, length);
    }
    return transform.translate(m_sheet.metrics.physicalOffsetX, m_sheet.metrics.physicalOffsetY);
}

void PdfPages::startPage() {
    if (m_painter.isActive()) {
        m_writer->newPage();
    } else {
        m_painter.begin(m_writer.get());
        // Captures are full of letters and thin lines.
        m_painter.setRenderHint(QPainter::LosslessImageRendering);
    }
    m_painter.setTransform(printableCorner());
}

// Only whole pixels can be cut out of the image, so what is too much at the edges is clipped away.
void PdfPages::drawImage(const QImage &image, const QRectF &target, const QRectF &source) {
    const QRect whole = source.toAlignedRect() & image.rect();
    if (!m_painter.isActive() || whole.isEmpty() || target.isEmpty())
        return;
    const double x = target.width() / source.width();
    const double y = target.height() / source.height();
    const QRectF wholeTarget(target.left() + (whole.left() - source.left()) * x,
                             target.top() + (whole.top() - source.top()) * y, whole.width() * x,
                             whole.height() * y);
    const QImage part = whole == image.rect() ? image : image.copy(whole);
    m_painter.save();
    m_painter.setClipRect(target);
    m_painter.drawImage(wholeTarget, m_sheet.isGray ? part.convertToFormat(QImage::Format_Grayscale8) : part);
    m_painter.restore();
}

void PdfPages::drawFrame(const QRectF &rect) {
    if (!m_painter.isActive() || rect.isEmpty())
        return;
    m_painter.setPen(QPen(Qt::black, FrameWidth, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    m_painter.setBrush(Qt::NoBrush);
    m_painter.drawRect(rect);
}

QByteArray PdfPages::finish() {
    if (!m_painter.isActive())
        return {};
    m_painter.end();
    m_writer.reset();
    return m_buffer.data();
}
