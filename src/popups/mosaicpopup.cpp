#include "popups/mosaicpopup.h"

#include "popups/itembutton.h"
#include "preferences/tindrapreferences.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace {

/// A sample with its caption below, which leave the mouse to whatever they lie on.
void addSample(QWidget *holder, const QString &caption) {
    auto *layout = new QVBoxLayout(holder);
    layout->setContentsMargins(6, 6, 6, 4);
    layout->setSpacing(4);
    auto *image = new QLabel(holder);
    image->setObjectName(QStringLiteral("image_"));
    auto *text = new QLabel(caption, holder);
    text->setObjectName(QStringLiteral("caption_"));
    text->setAlignment(Qt::AlignCenter);
    for (QLabel *label : {image, text})
        label->setAttribute(Qt::WA_TransparentForMouseEvents);
    layout->addWidget(image, 0, Qt::AlignCenter);
    layout->addWidget(text);
}

} // namespace

MosaicPopup::MosaicPopup(QWidget *parent) : Popup(parent), m_group(new QButtonGroup(this)) {
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(10, 10, 10, 10);
    row->setSpacing(4);
    addOriginal(row);
    addStrength(row, Weak, QStringLiteral("weak_"), tr("weak"));
    addStrength(row, Medium, QStringLiteral("medium_"), tr("medium"));
    addStrength(row, Strong, QStringLiteral("strong_"), tr("strong"));

    const auto *preferences = TindraPreferences::instance();
    const int stored = preferences ? preferences->GetInt(TindraPreferences::MosaicStrength, Medium) : Medium;
    QAbstractButton *button = m_group->button(stored);
    // Without a choice the tool would get -1 for the size of its blocks.
    (button ? button : m_group->button(Medium))->setChecked(true);

    connect(m_group, QOverload<QAbstractButton *>::of(&QButtonGroup::buttonClicked), this,
            [this] { emitCloseSignal(Triggered); });
    connect(this, &Popup::triggered, this,
            [this] { emit mosaicSelected(static_cast<Strength>(m_group->checkedId())); });
}

void MosaicPopup::addOriginal(QHBoxLayout *row) {
    auto *original = new QWidget(this);
    original->setObjectName(QStringLiteral("original_"));
    addSample(original, tr("original"));
    row->addWidget(original);
}

void MosaicPopup::addStrength(QHBoxLayout *row, Strength strength, const QString &name, const QString &text) {
    auto *button = new ItemButton(this);
    button->setObjectName(name);
    button->setCheckable(true);
    button->setAccessibleName(text);
    addSample(button, text);
    m_group->addButton(button, strength);
    row->addWidget(button);
}
