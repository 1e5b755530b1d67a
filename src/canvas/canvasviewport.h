#pragma once

#include <QWidget>

/// A viewport whose painting can be led into a picture, so that the view's own way of painting a scene
/// serves a picture that is kept.
class CanvasViewport : public QWidget {
    Q_OBJECT
public:
    explicit CanvasViewport(QWidget *parent = nullptr);

    /// Painters on this widget paint into `device` from now on; null ends that. Not owned.
    void setPaintTarget(QPaintDevice *device) { m_target = device; }

protected:
    QPaintDevice *redirected(QPoint *offset) const override;
    QPainter *sharedPainter() const override;

private:
    QPaintDevice *m_target = nullptr;
};
