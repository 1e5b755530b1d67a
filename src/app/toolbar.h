#pragma once

#include "canvas/shapetype.h"

#include <QHash>
#include <QToolBar>

class QButtonGroup;
class QToolButton;

/// The one toolbar: a button per function, the tools among them in an exclusive group.
///
/// Tells what the user chose; the main window says what is enabled and which tool is current.
class Toolbar : public QToolBar {
    Q_OBJECT
public:
    explicit Toolbar(QWidget *parent = nullptr);

    /// Checks the button of a tool; a tool without a button leaves none checked.
    void showShape(ShapeTypes::ShapeType shape);

public slots:
    /// Without a capture only what makes one stays usable.
    void onEmptyEditor(bool isEmpty);
    /// Where nothing can be undone there is nothing to reset either.
    void onCanUndo(bool can);
    void onCanRedo(bool can);

signals:
    void captureClicked();
    void saveClicked();
    void copyClicked();
    void undoClicked();
    void redoClicked();
    void resetClicked();
    void penSelected(QColor lineColor);
    void highlighterSelected(QColor lineColor);
    void eraserClicked();

private:
    QToolButton *addFunction(const QString &name, const QString &label, const QString &toolTip,
                             const QKeySequence &shortcut = {});
    QToolButton *addTool(const QString &name, const QString &label, const QString &toolTip);
    void addFunctions();
    void addTools();

    QHash<QString, QToolButton *> m_buttons;
    QButtonGroup *m_tools;
};
