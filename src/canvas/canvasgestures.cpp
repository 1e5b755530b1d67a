#include "canvas/canvasgestures.h"

#include <QAbstractScrollArea>
#include <QGestureEvent>
#include <QScroller>
#include <QTouchDevice>

#include <algorithm>
#include <cmath>

namespace {

// The scales that a pinch reaches.
constexpr double LowestPinch = 0.1;
constexpr double HighestPinch = 4.0;

bool hasTouchScreen() {
    const QList<const QTouchDevice *> devices = QTouchDevice::devices();
    return std::any_of(devices.begin(), devices.end(), [](const QTouchDevice *device) {
        return device->type() == QTouchDevice::TouchScreen;
    });
}

void forbidOvershoot(QObject *view) {
    QScroller *scroller = QScroller::scroller(view);
    QScrollerProperties properties = scroller->scrollerProperties();
    for (const QScrollerProperties::ScrollMetric axis :
         {QScrollerProperties::HorizontalOvershootPolicy, QScrollerProperties::VerticalOvershootPolicy})
        properties.setScrollMetric(axis, QVariant::fromValue(QScrollerProperties::OvershootAlwaysOff));
    scroller->setScrollerProperties(properties);
}

} // namespace

CanvasGestures::CanvasGestures(QAbstractScrollArea *view) : QObject(view) {
    if (!hasTouchScreen())
        return;
    view->grabGesture(Qt::PanGesture);
    view->grabGesture(Qt::PinchGesture);
    forbidOvershoot(view);
}

void CanvasGestures::handle(QGestureEvent *event, double zoom) {
    if (const auto *gesture = static_cast<QPanGesture *>(event->gesture(Qt::PanGesture)))
        pan(*gesture);
    if (auto *gesture = static_cast<QPinchGesture *>(event->gesture(Qt::PinchGesture)))
        pinch(gesture, zoom);
}

void CanvasGestures::announce(Qt::GestureState state) {
    if (state == Qt::GestureStarted)
        emit active(true);
    else if (state == Qt::GestureFinished || state == Qt::GestureCanceled)
        emit active(false);
}

void CanvasGestures::pan(const QPanGesture &gesture) {
    announce(gesture.state());
    emit panned(gesture.delta());
}

void CanvasGestures::pinch(QPinchGesture *gesture, double zoom) {
    announce(gesture->state());
    if (gesture->state() == Qt::GestureStarted)
        gesture->setTotalScaleFactor(zoom);
    emit pinched(pinchZoom(gesture->totalScaleFactor()));
}

double CanvasGestures::pinchZoom(double totalScaleFactor) {
    return qBound(LowestPinch, std::round(totalScaleFactor * 10) / 10, HighestPinch);
}
