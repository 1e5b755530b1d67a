#include "popups/linepopup.h"

#include "popups/linewidthbutton.h"
#include "preferences/tindrapreferences.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QVBoxLayout>

namespace {

constexpr int DefaultWidth = 3;

} // namespace

const QVector<int> &LinePopup::widths() {
    static const QVector<int> list{1, 3, 5, 8, 12};
    return list;
}

LinePopup::LinePopup(QWidget *parent) : Popup(parent), m_group(new QButtonGroup(this)) {
    auto *outer = new QHBoxLayout(this);
    outer->setContentsMargins(0, 12, 0, 12);
    auto *column = new QVBoxLayout;
    column->setSpacing(0);
    outer->addLayout(column);
    for (const int width : widths()) {
        auto *button = new LineWidthButton(this);
        button->setCheckable(true);
        button->setValue(width);
        m_group->addButton(button, width);
        column->addWidget(button);
    }

    const auto *preferences = TindraPreferences::instance();
    const int stored =
        preferences ? preferences->GetInt(TindraPreferences::LineWidth, DefaultWidth) : DefaultWidth;
    m_group->button(widths().contains(stored) ? stored : DefaultWidth)->setChecked(true);

    connect(m_group, QOverload<QAbstractButton *>::of(&QButtonGroup::buttonClicked), this,
            [this] { emitCloseSignal(Triggered); });
    connect(this, &Popup::triggered, this, [this] { emit lineSelected(m_group->checkedId()); });
}
