#pragma once

#include <QImage>
#include <QObject>
#include <QSize>
#include <QVector>

#include <functional>

/// The middle value.
double median(QVector<double> values);

/// Milliseconds of processor time, user and system, that all threads of this process have used.
double processorMs();
/// What of it the work takes.
double costOf(const std::function<void()> &work);
/// The least of what so many runs of the measurement give.
double fastestOf(int runs, const std::function<double()> &measure);
/// Milliseconds that the work takes by the clock.
double clockMs(const std::function<void()> &work);

/// Lets the event loop run for so long. The process sleeps while there is nothing to do.
void settle(int milliseconds);

/// A capture whose pixels differ from their neighbours', opaque.
QImage patternedCapture(const QSize &size);

/// Counts what reaches a widget.
class EventCounter : public QObject {
public:
    int moves = 0;
    int paints = 0;

    bool eventFilter(QObject *, QEvent *event) override;
    /// Lets the event loop run until the widget has painted once more.
    void waitForPaint() const;
};
