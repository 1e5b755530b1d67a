#include "canvas/imagetoolwidget.h"

#include "popups/itembutton.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>

ImageToolWidget::ImageToolWidget(QWidget *parent) : QWidget(parent) {
    // Also where nothing but the style sheet gives it a ground.
    setAttribute(Qt::WA_StyledBackground);
    setAccessibleName(tr("Image size and zoom"));
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    m_imageSize = addLabel(row, QStringLiteral("imageSize_"));
    addLine(row);
    addButton(row, QStringLiteral("zoomOut_"), tr("Zoom out"), &ImageToolWidget::zoomOut);
    m_percent = addLabel(row, QStringLiteral("percent_"));
    addButton(row, QStringLiteral("zoomIn_"), tr("Zoom in"), &ImageToolWidget::zoomIn);
    addLine(row);
    addButton(row, QStringLiteral("originalSize_"), tr("Original size"), &ImageToolWidget::zoomReset)
        ->setText(QStringLiteral("1:1"));
}

QLabel *ImageToolWidget::addLabel(QHBoxLayout *row, const QString &name) {
    auto *label = new QLabel(this);
    label->setObjectName(name);
    label->setAlignment(Qt::AlignCenter);
    row->addWidget(label);
    return label;
}

void ImageToolWidget::addLine(QHBoxLayout *row) {
    auto *line = new QFrame(this);
    line->setFrameShape(QFrame::VLine);
    row->addWidget(line);
}

ItemButton *ImageToolWidget::addButton(QHBoxLayout *row, const QString &name, const QString &purpose,
                                       void (ImageToolWidget::*signal)()) {
    auto *button = new ItemButton(this);
    button->setObjectName(name);
    button->setToolTip(purpose);
    button->setAccessibleName(purpose);
    button->setFocusPolicy(Qt::TabFocus);
    connect(button, &ItemButton::clicked, this, signal);
    row->addWidget(button);
    return button;
}

void ImageToolWidget::setImageSize(const QSize &size) {
    m_imageSize->setText(QStringLiteral("%1 \u00D7 %2").arg(size.width()).arg(size.height()));
}

void ImageToolWidget::setPercent(int percent) {
    m_percent->setText(QStringLiteral("%1%").arg(percent));
}

void ImageToolWidget::keyPressEvent(QKeyEvent *event) {
    switch (event->key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal: // plus without Shift
        emit zoomIn();
        break;
    case Qt::Key_Minus:
        emit zoomOut();
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}
