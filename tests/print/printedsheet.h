#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QPixmap>
#include <QRectF>
#include <QVector>

/// A sheet is looked at with that many pixels for one at 96 per inch.
constexpr int Fine = 3;

/// Of the quarters of an image, which tell on paper which way round and which part it is.
extern const QColor TopLeft;
extern const QColor TopRight;
extern const QColor BottomLeft;
extern const QColor BottomRight;

/// An image of four quarters in these colours.
QPixmap quarters(const QSize &size);
/// The smallest rectangle around the pixels of these colours, in pixels at 96 per inch of a `Fine` sheet.
QRectF areaOf(const QImage &sheet, const QVector<QColor> &colors);
/// Whether no edge is further away than that.
bool isNear(const QRectF &actual, const QRectF &expected, double tolerance = 0.5);
/// For the message of a test.
QByteArray told(const QRectF &actual, const QRectF &expected);
