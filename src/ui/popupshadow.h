#pragma once

class QWidget;

/// Asks the desktop for its shadow around a frameless popup, once the popup has a native window.
///
/// Nothing happens for null, without a native window, and on a desktop without such shadows; there the
/// supplementary style sheet draws a border instead.
void addPopupShadow(QWidget *popup);
