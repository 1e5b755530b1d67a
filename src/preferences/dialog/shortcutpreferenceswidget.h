#pragma once

#include "preferences/dialog/checkboxsettings.h"
#include "preferences/dialog/hotkeyentry.h"
#include "preferences/dialog/preferencespage.h"

class QCheckBox;
class QComboBox;
class QGridLayout;

/// The global shortcuts of the capture. They are only stored here; the capture process registers them, and
/// it alone knows whether a combination is free.
class ShortcutPreferencesWidget : public PreferencesPage {
    Q_OBJECT
public:
    explicit ShortcutPreferencesWidget(QWidget *parent = nullptr);

    void load() override;
    void save() override;
    void setDefaults() override;

private slots:
    void onToggledShortcutRegion();
    void onToggledShortcutWindow();
    void onToggledShortcutChildWnd();
    void onToggledShortcutFullscreen();
    void onToggledShortcutScroll();
    void onToggledShortcutFixedRegion();

private:
    enum Mode { Region, Window, ChildWnd, Fullscreen, Scroll, FixedRegion, ModeCount };
    struct Row;
    /// The widgets of one mode's shortcut.
    struct RowWidgets {
        QCheckBox *use;
        QVector<QCheckBox *> modifiers; ///< in the order in which they are shown
        QComboBox *key;
    };
    static const Row &row(int mode);

    void addPrintScreen();
    void addShortcuts();
    RowWidgets addRowWidgets(QGridLayout *grid, int mode);
    void enableRow(Mode mode);
    static void setModifiers(const RowWidgets &widgets, int modifiers);
    static int modifiers(const RowWidgets &widgets);
    void setKey(const RowWidgets &widgets, int code) const;

    const QVector<HotKeyEntry> m_keys;
    CheckBoxSettings m_boxes; ///< the one for Print Screen and those of the rows
    QComboBox *m_captureMode = nullptr;
    QVector<RowWidgets> m_rows; ///< by mode
};
