#pragma once

#include "popups/popup.h"

#include <QVector>

class QButtonGroup;

/// The line width of figures, pen and highlighter.
class LinePopup : public Popup {
    Q_OBJECT
public:
    explicit LinePopup(QWidget *parent = nullptr);

    /// The widths on offer, in image pixels.
    static const QVector<int> &widths();

signals:
    /// -1 when no width is chosen.
    void lineSelected(int lineWidth);

private:
    QButtonGroup *m_group;
};
