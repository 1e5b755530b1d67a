#include "popups/colorpicker.h"

#include "popups/colorpreview.h"
#include "popups/colorsquare.h"
#include "popups/gradientslider.h"
#include "ui/negativebutton.h"
#include "ui/positivebutton.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRegExpValidator>
#include <QVBoxLayout>

namespace {

constexpr int LastDegree = 359;

QList<QColor> hues() {
    QList<QColor> colors;
    for (int h = LastDegree; h >= 0; --h)
        colors.append(QColor::fromHsvF(h / double(LastDegree), 1.0, 1.0, 1.0));
    return colors;
}

} // namespace

ColorPicker::ColorPicker(QWidget *parent)
    : Popup(parent), m_ok(new PositiveButton(this)), m_cancel(new NegativeButton(this)),
      m_hexEdit(new QLineEdit(this)), m_square(new ColorSquare(this)), m_slider(new GradientSlider(this)),
      m_preview(new ColorPreview(this)) {
    build();
    connectParts();
    setColor(Qt::red);
}

void ColorPicker::build() {
    auto *caption = new QLabel(tr("Select color"), this);
    caption->setObjectName(QStringLiteral("selectColor_"));
    m_ok->setObjectName(QStringLiteral("okBtn_"));
    m_ok->setText(tr("Ok"));
    m_cancel->setObjectName(QStringLiteral("cancelBtn_"));
    m_cancel->setText(tr("Cancel"));
    m_hexEdit->setObjectName(QStringLiteral("hexEdit_"));
    m_hexEdit->setAccessibleName(tr("Hexadecimal color"));
    m_hexEdit->setValidator(
        new QRegExpValidator(QRegExp(QStringLiteral("^#(?:[0-9a-fA-F]{3}){1,2}$")), m_hexEdit));
    m_square->setObjectName(QStringLiteral("colorSquare_"));
    m_slider->setObjectName(QStringLiteral("colorSlider_"));
    m_slider->setAccessibleName(tr("Hue"));
    m_slider->setRange(0, LastDegree);
    m_slider->setGradient(hues());
    m_preview->setObjectName(QStringLiteral("preview_"));
    for (QPushButton *button : {m_ok, m_cancel})
        button->setCursor(Qt::PointingHandCursor);
    const QVector<QWidget *> tabOrder{m_square, m_slider, m_hexEdit, m_ok, m_cancel};
    for (int i = 1; i < tabOrder.size(); ++i)
        setTabOrder(tabOrder[i - 1], tabOrder[i]);

    auto *colors = new QHBoxLayout;
    colors->setObjectName(QStringLiteral("colorLayout_"));
    colors->setSpacing(0);
    colors->addWidget(m_square);
    // The buttons below make the panel wider than square and bar.
    colors->addStretch();
    colors->addWidget(m_slider);
    colors->addStretch();
    auto *text = new QHBoxLayout;
    text->setSpacing(6);
    text->addWidget(m_preview);
    text->addWidget(m_hexEdit, 1);
    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(6);
    buttons->addWidget(m_ok);
    buttons->addWidget(m_cancel);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 12, 12, 12);
    layout->setSpacing(10);
    layout->addWidget(caption);
    layout->addLayout(colors);
    layout->addLayout(text);
    layout->addLayout(buttons);
}

void ColorPicker::connectParts() {
    connect(m_slider, &QSlider::valueChanged, this, &ColorPicker::onHueMoved);
    // `colorSelected` of the square always follows with the same colour.
    connect(m_square, &ColorSquare::colorChanged, this, &ColorPicker::onColorSelected);
    connect(m_hexEdit, &QLineEdit::textEdited, this, &ColorPicker::onTextEdited);
    connect(m_hexEdit, &QLineEdit::textChanged, this,
            [this] { m_ok->setEnabled(m_hexEdit->hasAcceptableInput()); });
    connect(m_hexEdit, &QLineEdit::returnPressed, this, &ColorPicker::confirm);
    connect(m_ok, &QPushButton::clicked, this, &ColorPicker::confirm);
    connect(m_cancel, &QPushButton::clicked, this, [this] { emitCloseSignal(Canceled); });
    connect(this, &Popup::triggered, this, [this] { emit colorSelected(color()); });
}

QColor ColorPicker::color() const {
    return m_square->color();
}

void ColorPicker::setColor(const QColor &color) {
    if (!color.isValid() || color.alpha() != 255)
        return;
    showText(color.name());
    // A gray colour has the hue -1, which takes the slider to its lower end.
    m_slider->setValue(color.hue());
    m_square->SetColor(color);
    onColorSelected(color);
}

void ColorPicker::onHueMoved(int degrees) {
    m_square->SetHue(degrees / double(LastDegree));
}

void ColorPicker::onColorSelected(QColor color) {
    if (!color.isValid() || color.alpha() != 255)
        return;
    m_preview->setColor(color);
    showText(color.name());
}

void ColorPicker::onTextEdited(QString text) {
    if (text.isEmpty()) {
        m_hexEdit->setText(QStringLiteral("#"));
        return;
    }
    const int cursor = m_hexEdit->cursorPosition();
    QColor color;
    color.setNamedColor(text);
    setColor(color);
    showText(text);
    m_hexEdit->setCursorPosition(cursor);
}

void ColorPicker::showText(const QString &text) {
    if (m_hexEdit->text() != text)
        m_hexEdit->setText(text);
}

void ColorPicker::confirm() {
    if (m_hexEdit->hasAcceptableInput())
        emitCloseSignal(Triggered);
}

QWidget *ColorPicker::firstFocus() const {
    return m_hexEdit;
}
