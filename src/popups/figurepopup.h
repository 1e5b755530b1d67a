#pragma once

#include "canvas/shapetype.h"
#include "popups/popup.h"

#include <QColor>

class ColorSelectPopup;
class ColorSelectTabButton;
class QAbstractButton;
class QButtonGroup;
class QHBoxLayout;
class QVBoxLayout;

/// The options of the figure tool: shape with line style, and the colours of fill and outline.
///
/// Every choice is a `triggered`, and every `triggered` emits `figureSelected` with all of it.
class FigurePopup : public Popup {
    Q_OBJECT
public:
    /// One of the ten buttons, by the number of its place.
    struct Figure {
        ShapeTypes::ShapeType shapeType;
        Qt::PenStyle lineType;
    };

    explicit FigurePopup(QWidget *parent = nullptr);

    /// The figure of a button; the first one for a number that no button has.
    static Figure figureOf(int id);
    /// The button of a figure; every line type but the solid one counts as dotted. -1 for a shape that is
    /// no figure.
    static int idOf(int shapeType, int lineType);

public slots:
    void onColorTabToggled(QAbstractButton *btn, bool checked);

signals:
    void figureSelected(ShapeTypes::ShapeType shapeType, Qt::PenStyle lineType, QColor fillColor,
                        QColor outlineColor);

private:
    void addShapeButtons(QVBoxLayout *layout);
    void addColorTabs(QVBoxLayout *layout);
    ColorSelectTabButton *addTab(QHBoxLayout *row, int id, const QString &name, const QString &text);
    void addPage(QVBoxLayout *layout, ColorSelectPopup *page, ColorSelectTabButton *tab);
    void loadSettings();
    void emitFigure();

    QButtonGroup *m_shapes;
    QButtonGroup *m_tabs;
    ColorSelectPopup *m_fillPage;
    ColorSelectPopup *m_outlinePage;
    ColorSelectTabButton *m_fillTab = nullptr;
    ColorSelectTabButton *m_outlineTab = nullptr;
};
