#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QPoint>

#include <vector>

struct _XDisplay;

/// What a capture looks like to a decoder: flat areas, lines of text and a noisy photograph. The middle shows
/// one colour that differs from run to run.
QImage drawCapture(QSize size, QColor marker);
QByteArray encoded(const QImage &image);
/// The time that decoding takes in this process.
double decodeMs(const QByteArray &bytes);
double median(std::vector<double> values);
/// Until the editor that was started listens.
void waitForServer();

/// Looks at the screen from outside of the editor.
class ScreenObserver {
public:
    ScreenObserver();
    ~ScreenObserver();
    ScreenObserver(const ScreenObserver &) = delete;
    ScreenObserver &operator=(const ScreenObserver &) = delete;

    /// Whether the colour stands somewhere on a coarse grid over the screen.
    bool shows(QRgb colour, QPoint *where) const;
    /// The colour of one pixel of the root window, whatever window covers it.
    QRgb pixel(QPoint at) const;
    /// Presses and releases a key of that name, as the keyboard does.
    void pressKey(const char *name) const;

private:
    _XDisplay *m_display;
};
