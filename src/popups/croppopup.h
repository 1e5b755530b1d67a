#pragma once

#include "popups/popup.h"

#include <QSize>

class QPushButton;
class RangedSpinBox;

/// The size of the crop frame, and the buttons that accept and leave the crop.
class CropPopup : public Popup {
    Q_OBJECT
public:
    /// The smallest frame that can be typed, in image pixels.
    static constexpr int MinimumSide = 40;

    explicit CropPopup(QWidget *parent = nullptr);

    /// The image's size, in image pixels.
    void setMaximumCropSize(QSize size);
    /// Shows the size of the frame; nothing is emitted.
    void setCropSize(QSize size);
    /// For `EnteringKey`: the width has the focus, and Tab goes on.
    void takeKeyboard();

public slots:
    void onChangedCropSize();

signals:
    void cropped(bool accepted);
    /// The user wants that size. Whoever listens may change the argument; nothing reads it afterwards.
    void sizeChanged(QSize &size);

protected:
    void cancelByKey() override;
    /// What is typed first replaces the width. A number is selected only while typing reaches it.
    bool event(QEvent *event) override;

private:
    RangedSpinBox *addSpinBox(const QString &name, const QString &labelName, const QString &text);
    void addButton(QPushButton *button, const QString &name, const QString &text, bool accepts);

    RangedSpinBox *m_width;
    RangedSpinBox *m_height;
};
