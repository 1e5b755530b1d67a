#include "popups/croppopup.h"

#include "ui/negativebutton.h"
#include "ui/positivebutton.h"
#include "ui/rangedspinbox.h"

#include <QEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>

#include <limits>

CropPopup::CropPopup(QWidget *parent) : Popup(parent) {
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(10, 10, 10, 10);
    row->setSpacing(6);
    m_width = addSpinBox(QStringLiteral("widthSpinBox_"), QStringLiteral("label_1"), tr("W"));
    m_height = addSpinBox(QStringLiteral("heightSpinBox_"), QStringLiteral("label_2"), tr("H"));
    m_width->setAccessibleName(tr("width"));
    m_height->setAccessibleName(tr("height"));
    addButton(new PositiveButton(this), QStringLiteral("crop_"), tr("crop"), true);
    addButton(new NegativeButton(this), QStringLiteral("cancel_"), tr("cancel"), false);
}

RangedSpinBox *CropPopup::addSpinBox(const QString &name, const QString &labelName, const QString &text) {
    auto *label = new QLabel(text, this);
    label->setObjectName(labelName);
    auto *box = new RangedSpinBox(this);
    box->setObjectName(name);
    box->setLimits(MinimumSide, std::numeric_limits<int>::max());
    label->setBuddy(box);
    layout()->addWidget(label);
    layout()->addWidget(box);
    connect(box, &RangedSpinBox::afterValueChanged, this, &CropPopup::onChangedCropSize);
    return box;
}

void CropPopup::addButton(QPushButton *button, const QString &name, const QString &text, bool accepts) {
    button->setObjectName(name);
    button->setText(text);
    button->setCursor(Qt::PointingHandCursor);
    layout()->addWidget(button);
    connect(button, &QPushButton::clicked, this, [this, accepts] { emit cropped(accepts); });
}

void CropPopup::setMaximumCropSize(QSize size) {
    // An image may be smaller than the smallest frame.
    m_width->setLimits(qMin(MinimumSide, size.width()), size.width());
    m_height->setLimits(qMin(MinimumSide, size.height()), size.height());
}

void CropPopup::setCropSize(QSize size) {
    const QSignalBlocker blockThis(this);
    m_width->setValue(size.width());
    m_height->setValue(size.height());
}

void CropPopup::onChangedCropSize() {
    // Below the limit the number is still being typed; the box corrects it when editing ends.
    if (m_width->value() < m_width->minLimit() || m_height->value() < m_height->minLimit())
        return;
    QSize size(m_width->value(), m_height->value());
    emit sizeChanged(size);
}

void CropPopup::takeKeyboard() {
    activateWindow();
    m_width->setFocus(Qt::ShortcutFocusReason);
    m_width->selectAll();
}

bool CropPopup::event(QEvent *event) {
    if (event->type() == QEvent::WindowActivate) {
        const bool isClicked = QGuiApplication::mouseButtons() != Qt::NoButton;
        if (!isClicked && (!focusWidget() || focusWidget() == m_width))
            m_width->selectAll();
    } else if (event->type() == QEvent::WindowDeactivate) {
        const auto fields = findChildren<QLineEdit *>();
        for (QLineEdit *field : fields)
            field->deselect();
    }
    return Popup::event(event);
}

void CropPopup::cancelByKey() {
    emit cropped(false);
}
