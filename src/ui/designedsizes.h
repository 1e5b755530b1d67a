#pragma once

class QLayout;
class QObject;
class QWidget;

/// The two walks over a window's tree that know about designed sizes; parts of the `UIStyler`.
///
/// Both cover the widgets and layouts of the root's window and leave out windows of their own below it.
namespace DesignedSizes {

/// Remembers the sizes of every widget and layout that has none remembered yet.
void save(QWidget *root);
/// Sets every size to the remembered one times `scale`, truncated; exempt subtrees stay as they are.
void adjust(QWidget *root, double scale);

/// The widget if the object is one of the root's window, else null.
QWidget *widgetOfWindow(const QWidget *root, QObject *object);
/// The layout if the object is one of the root's window, else null.
QLayout *layoutOfWindow(const QWidget *root, QObject *object);

} // namespace DesignedSizes
