#pragma once

#include "popups/popup.h"

#include <QVector>

class ColorSelectButton;
class ColorSelectPopup;
class ComboBox;
class ItemButton;
class QAbstractButton;
class QHBoxLayout;

/// Size, colour and style of the text that is being written, floating above it.
///
/// Takes no keyboard focus, so that typing stays in the text, but while the user types a size, and from
/// `takeKeyboard` until Escape, Return or the same key again leads back to the text. Every change is stored
/// in the preferences and reported at once.
class TextPopup : public Popup {
    Q_OBJECT
public:
    /// Bits of a text's style.
    enum Format { Bold = 1, Italic = 2, Underline = 4 };

    explicit TextPopup(QWidget *parent = nullptr);

    /// The sizes on offer, in points.
    static const QVector<int> &sizes();
    /// Takes the stored settings over without reporting them, for a text that is opened.
    void loadSettings();
    /// For the key that leads here from the text, `EnteringKey`: the size box has the focus, and Tab goes on.
    void takeKeyboard();

    bool eventFilter(QObject *watched, QEvent *event) override;

public slots:
    void onClickBoldButton();
    void onClickItalicButton();
    void onClickUnderlineButton();

signals:
    /// `format`: the bits of `Format`. A size that is no number is 0.
    void fontChanged(int fontSize, QColor color, int format);

protected:
    void hideEvent(QHideEvent *event) override;
    void cancelByKey() override;

private:
    void addSizeBox(QHBoxLayout *row);
    void addColorButton(QHBoxLayout *row);
    ItemButton *addStyleButton(QHBoxLayout *row, const QString &name, const QString &text);
    void onColorSelected(const QColor &color);
    void onChanged();
    void showSize(const QString &size);
    /// A choice gives the keyboard back, unless the user walks through the panel by keys.
    void onChosen();
    void startTyping();
    void stopTyping();
    bool isTyping() const;
    // A key for the size box, or for a button; `announced`: only whether it is one for a shortcut. Both give
    // whether it is done.
    bool typeKey(QKeyEvent *event, bool announced);
    bool pressKey(const QAbstractButton *button, QKeyEvent *event, bool announced);

    ComboBox *m_size = nullptr;
    ColorSelectButton *m_colorButton = nullptr;
    ColorSelectPopup *m_color = nullptr;
    ItemButton *m_bold = nullptr;
    ItemButton *m_italic = nullptr;
    ItemButton *m_underline = nullptr;
    QPointer<QWidget> m_windowBefore;
    bool m_walkedByKeys = false;
};
