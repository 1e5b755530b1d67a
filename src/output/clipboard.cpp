#include "output/clipboard.h"

#include "platform/clipboardimage.h"
#include "platform/filemanager.h"
#include "platform/platform.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QUrl>
#include <QWidget>
#include <QWindow>

namespace {

/// Many programs that paste have no notion of transparency and would show black.
QImage flattenedOnWhite(const QPixmap &pixmap) {
    QImage source = pixmap.toImage();
    source.setDevicePixelRatio(1.0);
    if (!source.hasAlphaChannel())
        return source.convertToFormat(QImage::Format_RGB32);
    QImage result(source.size(), QImage::Format_RGB32);
    result.fill(Qt::white);
    QPainter painter(&result);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.drawImage(0, 0, source);
    return result;
}

QWindow *nativeWindow(QWidget *widget) {
    QWidget *window = widget->window();
    window->winId();
    return window->windowHandle();
}

} // namespace

bool copyPixmapToClipboard(const QPixmap &pixmap, QWidget *owner) {
    if (pixmap.isNull() || !owner)
        return false;
    return Platform::instance().clipboardImage().setImage(flattenedOnWhite(pixmap), nativeWindow(owner));
}

void showInFileManager(const QString &path) {
    const QFileInfo file(path);
    if (file.exists() && Platform::instance().fileManager().showFile(file.absoluteFilePath()))
        return;
    QDesktopServices::openUrl(QUrl::fromUserInput(file.absolutePath()));
}
