#pragma once

#include "popups/popup.h"

class ItemButton;
class QButtonGroup;
class QHBoxLayout;

/// How coarse the mosaic is, with a sample of each strength beside the original.
class MosaicPopup : public Popup {
    Q_OBJECT
public:
    /// The size of a block, in image pixels.
    enum Strength { Weak = 4, Medium = 6, Strong = 9 };
    Q_ENUM(Strength)

    explicit MosaicPopup(QWidget *parent = nullptr);

signals:
    void mosaicSelected(Strength strength);

private:
    void addOriginal(QHBoxLayout *row);
    void addStrength(QHBoxLayout *row, Strength strength, const QString &name, const QString &text);

    QButtonGroup *m_group;
};
