#include "ui/rangedspinbox.h"

#include <QKeyEvent>

#include <limits>

namespace {

bool isSteppingKey(int key) {
    return key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp || key == Qt::Key_PageDown;
}

} // namespace

RangedSpinBox::RangedSpinBox(QWidget *parent)
    : QSpinBox(parent), m_minLimit(std::numeric_limits<int>::min()),
      m_maxLimit(std::numeric_limits<int>::max()) {
    setRange(m_minLimit, m_maxLimit);
    connect(this, QOverload<int>::of(&QSpinBox::valueChanged), this, &RangedSpinBox::onValueChanged);
    connect(this, &QSpinBox::editingFinished, this, &RangedSpinBox::onEditingFinished);
}

void RangedSpinBox::setLimits(int min, int max) {
    m_minLimit = min;
    m_maxLimit = max;
}

void RangedSpinBox::stepBy(int steps) {
    const qint64 target = qint64(value()) + qint64(steps) * singleStep();
    if (steps < 0 && target < m_minLimit)
        setValue(qMin(value(), m_minLimit));
    else if (steps > 0 && target > m_maxLimit)
        setValue(m_maxLimit);
    else
        QSpinBox::stepBy(steps);
}

void RangedSpinBox::onValueChanged(int value) {
    if (value > m_maxLimit)
        setValue(m_maxLimit);
    emit afterValueChanged();
}

void RangedSpinBox::onEditingFinished() {
    if (value() < m_minLimit)
        setValue(m_minLimit);
    emit afterEditingFinished();
}

bool RangedSpinBox::event(QEvent *event) {
    if (event->type() == QEvent::ShortcutOverride && isSteppingKey(static_cast<QKeyEvent *>(event)->key())) {
        event->accept();
        return true;
    }
    return QSpinBox::event(event);
}

QAbstractSpinBox::StepEnabled RangedSpinBox::stepEnabled() const {
    StepEnabled enabled = StepNone;
    if (isReadOnly())
        return enabled;
    if (value() > m_minLimit)
        enabled |= StepDownEnabled;
    if (value() < m_maxLimit)
        enabled |= StepUpEnabled;
    return enabled;
}
