#pragma once

#include "canvasbench.h"

#include <functional>

/// What users do with a capture that a view shows, in processor time: of each the fastest of several runs.
/// Editor and view outlive it.
class CanvasActions {
public:
    CanvasActions(Editor &capture, CanvasBench &canvas, int runs)
        : m_capture(capture), m_canvas(canvas), m_runs(runs) {}

    double fastestOf(const std::function<double()> &measure) const;

    /// Near that place of the view, where nothing lies: one of several moves.
    double eraserMove(const QPoint &pos);
    /// Press and release of the pen, which leave nothing.
    double press(const QPoint &pos);
    /// The same once.
    double onePress(const QPoint &pos);
    /// The last step, until it is painted.
    double undoing();
    double redoing();
    double flattening();

private:
    Editor &m_capture;
    CanvasBench &m_canvas;
    int m_runs;
};
