// The output side of the editor: what leaves it for a file or the clipboard.
#include "canvas/editor.h"
#include "output/clipboard.h"
#include "output/imagewriter.h"

#include <QCoreApplication>
#include <QCursor>
#include <QEventLoop>
#include <QGuiApplication>
#include <QPointer>

namespace {

/// The wait cursor while it lives. Events are processed on both sides, so that the windows show it and
/// stay painted. The user's have to wait: a stroke drawn now is not in the file, but would count as saved
/// with it.
class WaitCursor {
public:
    WaitCursor() {
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }
    ~WaitCursor() {
        QGuiApplication::restoreOverrideCursor();
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }
    WaitCursor(const WaitCursor &) = delete;
    WaitCursor &operator=(const WaitCursor &) = delete;
};

} // namespace

bool Editor::saveFlattened(const QString &path, bool mark, int quality) {
    // A stroke that went on after the save would be missing in the file, which counts as all there is.
    finishDrag();
    finishCurrentItem(true);
    return savePixmap(flatten(true, false), path, mark, quality);
}

bool Editor::savePixmap(const QPixmap &pixmap, const QString &path, bool mark, int quality) {
    if (pixmap.isNull())
        return false;
    const QPointer<Editor> self(this); // the events processed meanwhile may delete the capture
    const WriteGuard guard = m_writeGuard;
    const auto write = [&] { return writeImage(pixmap.toImage(), path, quality); };
    bool written = false;
    {
        const WaitCursor cursor;
        written = guard ? guard(path, write) : write();
    }
    if (written && mark && self)
        setSavedPath(path);
    return written;
}

bool Editor::savePinImage(const QString &path) {
    finishCurrentItem(true);
    const QPixmap pixmap = flatten(false, true);
    return !pixmap.isNull() && writePinImage(pixmap.toImage(), path);
}

bool Editor::copyToClipboard(QWidget *owner) {
    finishDrag();
    return copyPixmapToClipboard(flatten(true, false), owner);
}
