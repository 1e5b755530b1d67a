#pragma once

#include "preferences/dialog/checkboxsettings.h"
#include "preferences/dialog/preferencespage.h"

class QCheckBox;
class QComboBox;

/// What happens with a capture before the editor has it, and how the program starts and closes.
class GeneralPreferencesWidget : public PreferencesPage {
    Q_OBJECT
public:
    explicit GeneralPreferencesWidget(QWidget *parent = nullptr);

    void load() override;
    void save() override;
    void setDefaults() override;

    QCheckBox *showFileDlgAfterCapture() const { return m_showFileDlgAfterCapture; }
    /// The box of the other page that excludes `showFileDlgAfterCapture`; borrowed.
    void setUseAutoSave(QCheckBox *box) { m_useAutoSave = box; }

    /// After `save`: whether the option to hide the capture's buttons was off when the page was loaded and
    /// has been switched on in it. The capture process explains itself then. After `load` alone: whether it
    /// is on.
    bool hideButtonsTurnedOn() const { return m_hideButtonsTurnedOn; }

private slots:
    void onClickShowFileDlgAfterCapture();
    /// Of both boxes: whoever skips the editor needs the capture in the clipboard.
    void onClickSkipOrClipboard();

private:
    QCheckBox *addBox(QVBoxLayout *section, const char *name, const QString &text, TindraPreferences::Id id);
    void addGuidelines();
    void showGuidelineColors(double scale);
    int ask(const QString &question);

    CheckBoxSettings m_boxes;
    QCheckBox *m_hideButtons;
    QCheckBox *m_showFileDlgAfterCapture;
    QCheckBox *m_skipEditorWnd;
    QCheckBox *m_copyToClipboard;
    QCheckBox *m_useAutoSave = nullptr;
    QComboBox *m_guidelineColor = nullptr;
    bool m_hideButtonsTurnedOn = false;
};
