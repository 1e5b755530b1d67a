#pragma once

class QImage;
class QWindow;

/// The system clipboard as far as pictures go.
class ClipboardImage {
public:
    virtual ~ClipboardImage() = default;

    /// Offers the (opaque) image to other programs in the common picture formats. What was set stays
    /// on the clipboard after this program has ended, and the end does not wait for it. In a native Wayland
    /// session it stays only as long as the program runs: there a program that has no window in use
    /// cannot take the clipboard over.
    /// `owner` is the window on whose behalf it happens; without one the result is false.
    virtual bool setImage(const QImage &image, QWindow *owner) = 0;
};
