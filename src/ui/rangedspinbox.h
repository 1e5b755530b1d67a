#pragma once

#include <QSpinBox>

/// A spin box that checks its lower limit late, so that "50" can be typed through "5".
///
/// A value above the upper limit is cut at once, one below the lower limit when editing ends. Steps stay
/// within both. The range of the base class is all integers and is left alone; use `setLimits`.
class RangedSpinBox : public QSpinBox {
    Q_OBJECT
public:
    explicit RangedSpinBox(QWidget *parent = nullptr);

    void setLimits(int min, int max);
    int minLimit() const { return m_minLimit; }
    int maxLimit() const { return m_maxLimit; }

    void stepBy(int steps) override;

public slots:
    void onValueChanged(int value);
    void onEditingFinished();

signals:
    /// After a change, with the upper limit kept.
    void afterValueChanged();
    /// After the end of editing, with both limits kept.
    void afterEditingFinished();

protected:
    /// The keys that step do so here, even where a window has them as shortcuts.
    bool event(QEvent *event) override;
    StepEnabled stepEnabled() const override;

private:
    int m_minLimit;
    int m_maxLimit;
};
