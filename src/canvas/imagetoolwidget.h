#pragma once

#include <QWidget>

class ItemButton;
class QHBoxLayout;
class QLabel;

/// The zoom tool over the canvas: tells the size of the visible image and the scale, and asks for another
/// scale. Knows nothing of the view; whoever shows it keeps size and scale up to date.
///
/// Its buttons take the focus by Tab alone, so that a click leaves an open text where it is. With the focus
/// in it, plus and minus zoom as well.
class ImageToolWidget : public QWidget {
    Q_OBJECT
public:
    explicit ImageToolWidget(QWidget *parent = nullptr);

    /// In image pixels.
    void setImageSize(const QSize &size);
    void setPercent(int percent);

signals:
    void zoomIn();
    void zoomOut();
    void zoomReset();

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    QLabel *addLabel(QHBoxLayout *row, const QString &name);
    void addLine(QHBoxLayout *row);
    ItemButton *addButton(QHBoxLayout *row, const QString &name, const QString &purpose,
                          void (ImageToolWidget::*signal)());

    QLabel *m_imageSize;
    QLabel *m_percent;
};
