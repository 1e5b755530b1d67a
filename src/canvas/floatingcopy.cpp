#include "canvas/floatingcopy.h"

#include "canvas/drageventfilter.h"
#include "canvas/editor.h"

#include <QLabel>
#include <QVBoxLayout>

void FloatingCopy::open(Editor *editor, QWidget *parent) {
    const QPixmap picture = editor->flatten(true, false);
    if (picture.isNull())
        return;
    auto *copy = new FloatingCopy(picture, parent);
    connect(editor, &QObject::destroyed, copy, &QWidget::close);
    copy->show();
}

FloatingCopy::FloatingCopy(const QPixmap &picture, QWidget *parent)
    : QDialog(parent, Qt::Dialog | Qt::WindowStaysOnTopHint | Qt::FramelessWindowHint) {
    setAttribute(Qt::WA_DeleteOnClose);
    auto *label = new QLabel(this);
    label->setPixmap(picture);
    label->setScaledContents(true);
    // Else a picture larger than the screen would keep the window from being any smaller.
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(label);
    installEventFilter(new DragEventFilter(this));
    resize(picture.size());
}
