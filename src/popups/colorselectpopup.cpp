#include "popups/colorselectpopup.h"

#include "popups/colorpicker.h"
#include "popups/colorselectbutton.h"
#include "preferences/tindrapreferences.h"
#include "ui/menu.h"

#include <QButtonGroup>
#include <QEvent>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

namespace {

constexpr int Columns = 5;
/// Between the swatches and the picker, in device pixels.
constexpr int PickerDistance = 10;

bool isSame(const QColor &a, const QColor &b) {
    return a.isValid() && b.isValid() && a.rgba() == b.rgba();
}

} // namespace

ColorSelectPopup::ColorSelectPopup(QWidget *parent)
    : Popup(parent), m_group(new QButtonGroup(this)), m_grid(new QGridLayout), m_customRow(new QHBoxLayout),
      m_picker(new ColorPicker) {
    build();
    m_pickerMenu = m_picker->toMenu(m_pickerButton);
    m_pickerMenu->installEventFilter(this);
    m_pickerButton->setMenu(m_pickerMenu);

    connect(m_group, QOverload<QAbstractButton *>::of(&QButtonGroup::buttonClicked), this,
            [this] { emitCloseSignal(Triggered); });
    connect(this, &Popup::triggered, this, [this] { emit colorSelected(color()); });
    connect(m_pickerMenu, &QMenu::aboutToShow, this, [this] { m_picker->setColor(color()); });
    connect(m_picker, &ColorPicker::colorSelected, this, &ColorSelectPopup::addCustomColor);
}

void ColorSelectPopup::build() {
    m_grid->setSpacing(0);
    m_customRow->setSpacing(0);
    for (int i = 0; i < BasicCount; ++i) {
        m_basic[i] = new ColorSelectButton(this);
        m_basic[i]->hide();
        m_group->addButton(m_basic[i], i);
        m_grid->addWidget(m_basic[i], i / Columns, i % Columns);
    }
    for (int i = 0; i < CustomCount; ++i) {
        m_custom[i] = new ColorSelectButton(this);
        m_custom[i]->hide();
        m_group->addButton(m_custom[i], BasicCount + i);
        m_customRow->addWidget(m_custom[i]);
    }
    m_customRow->addStretch();
    // After the swatches, as Tab goes from widget to widget in the order in which they are made.
    m_pickerButton = new QPushButton(this);
    m_pickerButton->setObjectName(QStringLiteral("picker_"));
    m_pickerButton->setText(tr("More colors"));
    m_pickerButton->setCursor(Qt::PointingHandCursor);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(10, 14, 10, 14);
    layout->setSpacing(4);
    layout->addLayout(m_grid);
    layout->addLayout(m_customRow);
    layout->addWidget(m_pickerButton);
}

void ColorSelectPopup::setBasicColors(const QList<BasicColor> &colors) {
    for (int i = 0; i < BasicCount; ++i) {
        const BasicColor color = colors.value(i);
        m_basic[i]->setColor(color.color);
        m_basic[i]->setToolTip(color.name);
        m_basic[i]->setAccessibleName(color.name);
        m_basic[i]->setVisible(i < colors.size());
    }
}

void ColorSelectPopup::setCustomColorKey(const QString &key) {
    m_customColorKey = key;
    QList<QColor> colors;
    if (const auto *preferences = TindraPreferences::instance())
        preferences->GetCustomColors(key, colors);
    showCustomColors(colors);
}

void ColorSelectPopup::selectColor(const QColor &color) {
    ColorSelectButton *button = buttonOf(color);
    check(button);
    if (button)
        emit colorSelected(button->color());
}

QColor ColorSelectPopup::color() const {
    const auto *button = qobject_cast<ColorSelectButton *>(m_group->checkedButton());
    return button ? button->color() : QColor();
}

void ColorSelectPopup::addCustomColor(const QColor &color) {
    QList<QColor> colors = customColors();
    for (int i = colors.size() - 1; i >= 0; --i) {
        if (isSame(colors.at(i), color))
            colors.removeAt(i);
    }
    if (colors.size() >= CustomCount)
        colors.removeFirst();
    colors.append(QColor::fromRgba(color.rgba()));
    showCustomColors(colors);
    check(m_custom[colors.size() - 1]);
    if (auto *preferences = TindraPreferences::instance())
        preferences->SetCustomColors(m_customColorKey, colors);
    emitCloseSignal(Triggered);
}

void ColorSelectPopup::showCustomColors(const QList<QColor> &colors) {
    for (int i = 0; i < CustomCount; ++i) {
        const QColor color = colors.value(i);
        const QString name = color.isValid() ? color.name().toUpper() : QString();
        m_custom[i]->setColor(color);
        m_custom[i]->setToolTip(name);
        m_custom[i]->setAccessibleName(name);
        m_custom[i]->setVisible(i < colors.size());
    }
}

QList<QColor> ColorSelectPopup::customColors() const {
    QList<QColor> colors;
    for (const ColorSelectButton *button : m_custom) {
        if (!button->isHidden())
            colors.append(button->color());
    }
    return colors;
}

ColorSelectButton *ColorSelectPopup::buttonOf(const QColor &color) const {
    const auto buttons = m_group->buttons();
    for (QAbstractButton *button : buttons) {
        auto *swatch = static_cast<ColorSelectButton *>(button);
        if (isSame(swatch->color(), color))
            return swatch;
    }
    return nullptr;
}

void ColorSelectPopup::check(ColorSelectButton *button) {
    if (button) {
        button->setChecked(true);
        return;
    }
    // An exclusive group gives its last choice up only this way.
    m_group->setExclusive(false);
    if (QAbstractButton *checked = m_group->checkedButton())
        checked->setChecked(false);
    m_group->setExclusive(true);
}

bool ColorSelectPopup::eventFilter(QObject *watched, QEvent *event) {
    if (watched == m_pickerMenu && event->type() == QEvent::Show) {
        placePicker();
        return true;
    }
    return Popup::eventFilter(watched, event);
}

void ColorSelectPopup::placePicker() {
    const QRect swatches(mapToGlobal(m_grid->geometry().topLeft()), m_grid->geometry().size());
    const QSize size = m_pickerMenu->size();
    QPoint position(swatches.x() + swatches.width() + PickerDistance, swatches.y());
    const QScreen *screen = QGuiApplication::screenAt(swatches.center());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    const QRect available = screen->availableGeometry();
    if (position.x() + size.width() > available.x() + available.width())
        position.setX(swatches.x() - PickerDistance - size.width());
    position.setX(qMax(available.x(), position.x()));
    position.setY(qBound(available.y(), position.y(),
                         qMax(available.y(), available.y() + available.height() - size.height())));
    m_pickerMenu->move(position);
}
