#pragma once

#include "canvas/editor.h"

#include <QEvent>
#include <QPoint>

/// The mouse in scene coordinates, without a view.
void sendToScene(Editor &editor, QEvent::Type type, const QPoint &pos);

/// Draws that many more items, with all drawing tools by turns, 60 pixels wide each, in an area of 760 by 960
/// pixels at the top left.
void addItems(Editor &editor, int count);
