#pragma once

#include "canvas/shapetype.h"

#include <QColor>
#include <QObject>

class Menu;
class Popup;
class QWidget;

/// The option panels of the tools, each in the one menu that toolbar, overflow menu and canvas menu share.
///
/// Shows at first what the preferences remember and tells every choice; nothing is told while it is built.
class ToolPanels : public QObject {
    Q_OBJECT
public:
    enum Panel { None, Figure, Pen, Highlighter, LineWidth, Mosaic };

    /// The menus belong to `parent`.
    explicit ToolPanels(QWidget *parent);

    /// Null for `None`.
    Menu *menu(Panel panel) const { return m_menus[panel]; }
    Popup *popup(Panel panel) const;

signals:
    void figureSelected(ShapeTypes::ShapeType shapeType, Qt::PenStyle lineType, QColor fillColor,
                        QColor lineColor);
    /// Invalid when the remembered colour is none of the swatches.
    void penSelected(QColor lineColor);
    void highlighterSelected(QColor lineColor);
    void lineSelected(int lineWidth);
    void mosaicSelected(int strength);

private:
    Menu *m_menus[Mosaic + 1] = {};
};
