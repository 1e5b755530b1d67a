#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QPoint>
#include <QProcess>
#include <QString>
#include <QVector>

#include <functional>

struct _XDisplay;

/// A capture as the capture process makes them: PNG bytes, and the colour that shows in their middle and
/// tells it from others.
struct MarkedCapture {
    /// What a decoder meets: flat areas, lines of text and a noisy photograph.
    MarkedCapture(const QSize &size, int number);
    /// Writes the bytes to a file of the temporary folder and returns its path.
    QString toFile() const;
    /// The time that decoding the bytes takes in this process.
    double decodeMs() const;

    int number;
    QRgb marker;
    QByteArray bytes;
};

/// The editor as a process of its own, which is asked to end with this.
class RunningEditor {
public:
    explicit RunningEditor(const QString &program);
    ~RunningEditor();
    RunningEditor(const RunningEditor &) = delete;
    RunningEditor &operator=(const RunningEditor &) = delete;

    /// Sends it a command line.
    static void send(const QString &line);
    /// The line that announces a capture.
    static QString captureLine(const QString &key);

private:
    QProcess m_process;
};

/// Looks at the screen from outside of the editor.
class ScreenObserver {
public:
    ScreenObserver();
    ~ScreenObserver();
    ScreenObserver(const ScreenObserver &) = delete;
    ScreenObserver &operator=(const ScreenObserver &) = delete;

    /// Milliseconds from the beginning of the action until that colour is on the screen. The first one tells
    /// where to look from then on.
    double msUntilShown(QRgb marker, const std::function<void()> &action);
    /// Presses and releases a key of that name, as the keyboard does.
    void pressKey(const char *name) const;

private:
    bool finds(QRgb colour);
    /// The colour of one pixel of the root window, whatever window covers it.
    QRgb pixel(QPoint at) const;

    _XDisplay *m_display;
    QPoint m_where;
};

/// What a picture took to come up, and what of that was more than decoding it there and then.
class OverDecoding {
public:
    void add(double decodeMs, double shownMs);
    /// Medians; that of the differences is the figure.
    void print(const QString &what, double bound) const;

private:
    QVector<double> m_decode, m_shown, m_over;
};
