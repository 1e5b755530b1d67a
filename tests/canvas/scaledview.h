#pragma once

#include "canvas/editorview.h"

/// Stands on a screen of any resolution, and its popup with it.
class ScaledView : public EditorView {
public:
    int dpi = 96;

protected:
    int metric(PaintDeviceMetric which) const override {
        return which == PdmDpiX || which == PdmDpiY ? dpi : EditorView::metric(which);
    }
};
