#pragma once

class QPixmap;
class QString;
class QWidget;

/// Puts the image on the clipboard, transparency flattened onto white. True if the data went in; a null
/// pixmap or owner gives false. GUI thread.
bool copyPixmapToClipboard(const QPixmap &pixmap, QWidget *owner);

/// Shows the file in the desktop's file manager, or opens its folder where that is not to be had.
void showInFileManager(const QString &path);
