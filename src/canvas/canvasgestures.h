#pragma once

#include <QObject>

class QAbstractScrollArea;
class QGestureEvent;
class QPanGesture;
class QPinchGesture;
class QPointF;

/// The touch gestures of the canvas: a pan scrolls it, a pinch zooms it.
///
/// Grabs them for the view if there is a touch screen when this is built. The view hands its gesture events
/// over and does what the signals ask for.
class CanvasGestures : public QObject {
    Q_OBJECT
public:
    /// The parent of this object as well.
    explicit CanvasGestures(QAbstractScrollArea *view);

    /// `zoom` is the present scale, from which a pinch starts.
    void handle(QGestureEvent *event, double zoom);

    /// The scale for what the fingers have come to: one decimal, from 0.1 to 4.0.
    static double pinchZoom(double totalScaleFactor);

signals:
    /// Whether a gesture is running now.
    void active(bool active);
    /// The fingers have moved by that many pixels.
    void panned(const QPointF &delta);
    void pinched(double zoom);

private:
    void announce(Qt::GestureState state);
    void pan(const QPanGesture &gesture);
    void pinch(QPinchGesture *gesture, double zoom);
};
