#pragma once

#include <QDialog>

class Editor;

/// A picture of a capture that stays above all windows, without a frame, to be moved about by the mouse. Ends
/// with the capture, by Escape, or with its parent; deletes itself then.
class FloatingCopy : public QDialog {
    Q_OBJECT
public:
    /// Shows the capture as it is now; nothing happens where there is no picture. The copy belongs to
    /// `parent`.
    static void open(Editor *editor, QWidget *parent);

private:
    FloatingCopy(const QPixmap &picture, QWidget *parent);
};
