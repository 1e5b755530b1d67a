#pragma once

#include "popups/basiccolors.h"
#include "popups/popup.h"

#include <array>

class ColorPicker;
class ColorSelectButton;
class QButtonGroup;
class QGridLayout;
class QHBoxLayout;
class QMenu;
class QPushButton;

/// The choice of a colour: up to ten named ones, the last four of the user's own, and a way to any other.
///
/// Every choice is a `triggered`, and every `triggered` emits `colorSelected` with the present colour.
/// Own colours are kept in the preferences under the popup's key.
class ColorSelectPopup : public Popup {
    Q_OBJECT
public:
    static constexpr int BasicCount = 10;
    static constexpr int CustomCount = 4;

    explicit ColorSelectPopup(QWidget *parent = nullptr);

    /// At most ten; a list that is shorter leaves the other swatches away.
    void setBasicColors(const QList<BasicColor> &colors);
    /// Shows the own colours of that key of the preferences, and keeps new ones there.
    void setCustomColorKey(const QString &key);
    /// Chooses the swatch of that colour and emits `colorSelected`. Without such a swatch none is chosen
    /// and nothing is emitted.
    void selectColor(const QColor &color);
    /// The chosen colour; invalid when no swatch is chosen.
    QColor color() const;

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    void colorSelected(QColor color);

private:
    void build();
    void addCustomColor(const QColor &color);
    void showCustomColors(const QList<QColor> &colors);
    QList<QColor> customColors() const;
    ColorSelectButton *buttonOf(const QColor &color) const;
    void check(ColorSelectButton *button);
    void placePicker();

    std::array<ColorSelectButton *, BasicCount> m_basic{};
    std::array<ColorSelectButton *, CustomCount> m_custom{};
    QButtonGroup *m_group;
    QGridLayout *m_grid;
    QHBoxLayout *m_customRow;
    QPushButton *m_pickerButton = nullptr;
    ColorPicker *m_picker;
    QMenu *m_pickerMenu = nullptr;
    QString m_customColorKey;
};
