#pragma once

#include "app/captureplacement.h"

#include <QObject>
#include <QTimer>

#include <optional>

class QWidget;

/// Gives the window the geometry for a capture and keeps it fully on a screen.
///
/// A window manager tells the size of its frame only some time after the window was shown first; when it
/// does, the geometry is corrected by it, once.
class CaptureFitting : public QObject {
    Q_OBJECT
public:
    /// The window is borrowed and outlives this object.
    explicit CaptureFitting(QWidget *window);

    /// `fit.frame` is taken from the window.
    void apply(CaptureFit fit);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QSize frame() const;

    QWidget *m_window;
    std::optional<CaptureFit> m_awaitingFrame;
    QTimer m_patience;
};
