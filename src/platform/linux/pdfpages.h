#pragma once

#include "platform/printer.h"

#include <QBuffer>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QTransform>

#include <memory>

/// Draws the pages of a job as a PDF document in memory.
///
/// The sheets lie as the paper does in the printer. What is read the other way round is drawn turned: turned
/// by the printing system it would depend on each queue which way, and with it which edge gets which margin.
class PdfPages {
public:
    struct Sheet {
        QSize size; ///< upright, tenths of a millimetre
        bool isLandscape;
        bool isGray;            ///< not every queue can do it by itself
        PrinterMetrics metrics; ///< with the same resolution across and down
    };

    PdfPages(const Sheet &sheet, const QString &title);

    void startPage();
    void drawImage(const QImage &image, const QRectF &target, const QRectF &source);
    void drawFrame(const QRectF &rect);
    /// The document; empty without a page. Ends the drawing.
    QByteArray finish();

private:
    QTransform printableCorner() const;

    Sheet m_sheet;
    QBuffer m_buffer;
    std::unique_ptr<QPdfWriter> m_writer;
    QPainter m_painter;
};
