#include "popups/textpopup.h"

#include "popups/colorselectbutton.h"
#include "popups/colorselectpopup.h"
#include "popups/combobox.h"
#include "preferences/tindrapreferences.h"
#include "services/usagestatistics.h"
#include "ui/menu.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QWindow>

namespace {

bool isEnter(int key) {
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

} // namespace

TextPopup::TextPopup(QWidget *parent) : Popup(parent) {
    setWindowFlag(Qt::WindowDoesNotAcceptFocus);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(10, 10, 10, 10);
    row->setSpacing(10);
    addSizeBox(row);
    addColorButton(row);
    m_bold = addStyleButton(row, QStringLiteral("bold_"), tr("bold"));
    m_italic = addStyleButton(row, QStringLiteral("italic_"), tr("italic"));
    m_underline = addStyleButton(row, QStringLiteral("underline_"), tr("underline"));
    loadSettings();

    connect(m_size, &QComboBox::currentTextChanged, this, &TextPopup::onChanged);
    connect(m_color, &ColorSelectPopup::colorSelected, this, &TextPopup::onColorSelected);
    connect(m_bold, &QPushButton::clicked, this, &TextPopup::onClickBoldButton);
    connect(m_italic, &QPushButton::clicked, this, &TextPopup::onClickItalicButton);
    connect(m_underline, &QPushButton::clicked, this, &TextPopup::onClickUnderlineButton);
}

const QVector<int> &TextPopup::sizes() {
    static const QVector<int> list{7, 8, 9, 10, 12, 14, 16, 18, 24, 30, 36, 48, 60, 72, 96, 100};
    return list;
}

void TextPopup::addSizeBox(QHBoxLayout *row) {
    m_size = new ComboBox(this);
    m_size->setObjectName(QStringLiteral("size_"));
    m_size->setAccessibleName(tr("font size"));
    m_size->setToolTip(tr("font size (F6)"));
    m_size->setEditable(true);
    m_size->setInsertPolicy(QComboBox::NoInsert);
    // A completer would add digits that nobody typed.
    m_size->setCompleter(nullptr);
    for (const int size : sizes())
        m_size->addItem(QString::number(size), size);
    // The mouse reaches the field, the keys reach the box, which passes them on.
    m_size->lineEdit()->installEventFilter(this);
    m_size->installEventFilter(this);
    row->addWidget(m_size);
}

void TextPopup::addColorButton(QHBoxLayout *row) {
    m_colorButton = new ColorSelectButton(this);
    m_colorButton->setObjectName(QStringLiteral("color_"));
    m_colorButton->setCheckable(false);
    m_colorButton->setAccessibleName(tr("font color"));
    m_color = new ColorSelectPopup;
    m_color->setBasicColors(BasicColors::text());
    m_colorButton->setMenu(m_color->toMenu(m_colorButton));
    row->addWidget(m_colorButton);
}

ItemButton *TextPopup::addStyleButton(QHBoxLayout *row, const QString &name, const QString &text) {
    auto *button = new ItemButton(this);
    button->setObjectName(name);
    button->setCheckable(true);
    button->setToolTip(text);
    button->setAccessibleName(text);
    row->addWidget(button);
    return button;
}

void TextPopup::loadSettings() {
    const auto *preferences = TindraPreferences::instance();
    if (!preferences)
        return;
    const QSignalBlocker blockThis(this);
    const QSignalBlocker blockColor(m_color);
    showSize(QString::number(preferences->GetInt(
        TindraPreferences::TextSize, TindraPreferences::defaultInt(TindraPreferences::TextSize))));
    const int style = preferences->GetInt(TindraPreferences::TextStyle, 0);
    m_bold->setChecked(style & Bold);
    m_italic->setChecked(style & Italic);
    m_underline->setChecked(style & Underline);
    const QColor color = preferences->color(TindraPreferences::TextColor);
    m_color->setCustomColorKey(TindraPreferences::TextCustomColorKey());
    m_color->selectColor(color);
    m_colorButton->setColor(color);
}

void TextPopup::showSize(const QString &size) {
    const QSignalBlocker blockSize(m_size);
    // The place in the list first, from which the arrow keys go on; it would overwrite the text.
    m_size->setCurrentIndex(m_size->findText(size));
    m_size->setCurrentText(size);
}

void TextPopup::onClickBoldButton() {
    onChosen();
    recordUsage("cap_303_18");
    onChanged();
}

void TextPopup::onClickItalicButton() {
    onChosen();
    recordUsage("cap_303_19");
    onChanged();
}

void TextPopup::onClickUnderlineButton() {
    onChosen();
    recordUsage("cap_303_20");
    onChanged();
}

void TextPopup::onColorSelected(const QColor &color) {
    if (!color.isValid())
        return;
    onChosen();
    m_colorButton->setColor(color);
    recordUsage("cap_303_17");
    onChanged();
}

void TextPopup::onChanged() {
    const QColor color = m_colorButton->color();
    const int size = m_size->currentText().toInt();
    const int format = (m_bold->isChecked() ? Bold : 0) | (m_italic->isChecked() ? Italic : 0) |
                       (m_underline->isChecked() ? Underline : 0);
    if (auto *preferences = TindraPreferences::instance()) {
        preferences->SetInt(TindraPreferences::TextColor, TindraPreferences::colorToInt(color));
        preferences->SetInt(TindraPreferences::TextSize, size);
        preferences->SetInt(TindraPreferences::TextStyle, format);
    }
    const bool typing = isTyping();
    emit fontChanged(size, color, format);
    // The text takes the keyboard back at every change, but the user may be at the first digit only.
    if (typing)
        activateWindow();
}

bool TextPopup::isTyping() const {
    return windowHandle() && !windowHandle()->flags().testFlag(Qt::WindowDoesNotAcceptFocus);
}

void TextPopup::onChosen() {
    if (!m_walkedByKeys)
        stopTyping();
}

void TextPopup::takeKeyboard() {
    startTyping();
    m_walkedByKeys = isTyping();
    m_size->setFocus(Qt::ShortcutFocusReason);
    m_size->lineEdit()->selectAll();
}

void TextPopup::startTyping() {
    if (isTyping() || !windowHandle())
        return;
    m_windowBefore = QApplication::activeWindow();
    windowHandle()->setFlag(Qt::WindowDoesNotAcceptFocus, false);
    activateWindow();
}

void TextPopup::stopTyping() {
    if (!isTyping())
        return;
    m_walkedByKeys = false;
    windowHandle()->setFlag(Qt::WindowDoesNotAcceptFocus, true);
    if (QWidget *focused = focusWidget())
        focused->clearFocus();
    QWidget *target = m_windowBefore ? m_windowBefore.data() : parentWidget();
    if (target)
        target->activateWindow();
}

void TextPopup::hideEvent(QHideEvent *event) {
    Popup::hideEvent(event);
    // Shown again, it must not take the keyboard from a text.
    stopTyping();
}

bool TextPopup::typeKey(QKeyEvent *event, bool announced) {
    const int key = event->key();
    const bool ends = isEnter(key) || key == Qt::Key_Escape || key == EnteringKey;
    if (announced) {
        // Shortcuts of the window behind: they would close the text or walk through the captures.
        if (ends || key == Qt::Key_Up || key == Qt::Key_Down)
            event->accept();
        return event->isAccepted();
    }
    if (ends)
        stopTyping();
    else if (key == Qt::Key_Up || key == Qt::Key_Down)
        showSize(m_size->currentText()); // as the box does itself only when it loses the focus
    return ends;
}

bool TextPopup::pressKey(const QAbstractButton *button, QKeyEvent *event, bool announced) {
    const int key = event->key();
    if (announced) {
        // As for the size box; and Delete would ask whether to delete the capture.
        if (key == Qt::Key_Escape || key == Qt::Key_Delete)
            event->accept();
        return event->isAccepted();
    }
    if (key == EnteringKey) {
        stopTyping();
        return true;
    }
    // Enter presses the button as well, and that is the last choice unless it opens the colours.
    if (isEnter(key) && button != m_colorButton)
        m_walkedByKeys = false;
    return false;
}

void TextPopup::cancelByKey() {
    if (isTyping())
        stopTyping();
    else
        Popup::cancelByKey();
}

bool TextPopup::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::MouseButtonPress) {
        m_walkedByKeys = false;
        if (watched == m_size->lineEdit())
            startTyping();
    }
    const bool announced = event->type() == QEvent::ShortcutOverride;
    if (isTyping() && (announced || event->type() == QEvent::KeyPress)) {
        auto *key = static_cast<QKeyEvent *>(event);
        const auto *button = qobject_cast<QAbstractButton *>(watched);
        if ((watched == m_size && typeKey(key, announced)) || (button && pressKey(button, key, announced)))
            return true;
    }
    return Popup::eventFilter(watched, event);
}
