#include "preferences/dialog/sizeinputdialog.h"

#include "preferences/dialog/formparts.h"
#include "ui/messagedialog.h"
#include "ui/named.h"
#include "ui/negativebutton.h"
#include "ui/positivebutton.h"
#include "ui/rangedspinbox.h"
#include "ui/snaptoscreen.h"
#include "ui/uistyler.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QScreen>
#include <QVBoxLayout>

namespace {

// Designed sizes, at 96 DPI.
constexpr QSize DialogSize(236, 126);
constexpr int Margin = 12;
constexpr int LabelSpacing = 6;

constexpr int SmallestSide = 20; // pixels of the desktop

/// Of the rectangle that covers all screens.
QSize desktopSize() {
    QRect desktop;
    for (const QScreen *screen : QGuiApplication::screens())
        desktop |= screen->geometry();
    return desktop.size();
}

void setBounded(RangedSpinBox *box, int value) {
    box->setValue(qBound(box->minLimit(), value, box->maxLimit()));
}

} // namespace

SizeInputDialog::SizeInputDialog(Mode mode, const QList<QSize> *presets, QWidget *parent)
    : QDialog(parent), m_width(named(new RangedSpinBox(this), "width_")),
      m_height(named(new RangedSpinBox(this), "height_")), m_presets(presets) {
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowTitle(mode == Add ? tr("Add fixed preset") : tr("Edit fixed preset"));
    setAttribute(Qt::WA_StyledBackground);
    setFixedSize(DialogSize);
    const QSize desktop = desktopSize();
    m_width->setLimits(SmallestSide, desktop.width());
    m_height->setLimits(SmallestSide, desktop.height());

    auto *form = new QVBoxLayout(this);
    form->setContentsMargins(0, 0, 0, 0);
    form->setSpacing(0);
    form->addWidget(buildTop(), 1);
    form->addWidget(buildBottom());
    UIStyler::setScaleCallback(this, [this](double) { snapToScreen(this); });
}

QWidget *SizeInputDialog::buildTop() {
    auto *top = named(new QWidget(this), "top_");
    auto *row = new QHBoxLayout(top);
    row->setContentsMargins(Margin, 0, Margin, 0);
    row->setSpacing(LabelSpacing);
    const auto addField = [&](const QString &text, RangedSpinBox *box) {
        auto *label = new QLabel(text, top);
        label->setBuddy(box);
        row->addWidget(label);
        row->addWidget(box);
        box->setCursor(Qt::PointingHandCursor);
    };
    addField(tr("W"), m_width);
    row->addStretch(1);
    addField(tr("H"), m_height);
    return top;
}

QWidget *SizeInputDialog::buildBottom() {
    auto *bottom = named(new QWidget(this), "bottom_");
    bottom->setAttribute(Qt::WA_StyledBackground);
    auto *ok = named(new PositiveButton(tr("ok"), bottom), "ok_");
    ok->setDefault(true);
    auto *cancel = named(new NegativeButton(tr("cancel"), bottom), "cancel_");
    connect(ok, &QPushButton::clicked, this, &SizeInputDialog::onOK);
    connect(cancel, &QPushButton::clicked, this, &SizeInputDialog::onCancel);
    auto *row = new QHBoxLayout(bottom);
    row->setContentsMargins(Margin, Margin, Margin, Margin);
    row->setSpacing(FormParts::FieldSpacing);
    row->addStretch(1);
    for (QPushButton *button : {static_cast<QPushButton *>(ok), static_cast<QPushButton *>(cancel)}) {
        button->setCursor(Qt::PointingHandCursor);
        row->addWidget(button);
    }
    return bottom;
}

void SizeInputDialog::setSize(const QSize &size) {
    setBounded(m_width, size.width());
    setBounded(m_height, size.height());
    // The first number typed takes its place.
    m_width->selectAll();
}

QSize SizeInputDialog::size() const {
    return {m_width->value(), m_height->value()};
}

void SizeInputDialog::onOK() {
    // An assistive program presses the button without moving the focus, in the middle of a box's editing.
    setSize(size());
    if (m_presets->contains(size())) {
        MessageDialog::warning(this, tr("Tindra"), tr("This size has already been added."));
        return;
    }
    done(Accepted);
}

void SizeInputDialog::onCancel() {
    done(Rejected);
}
