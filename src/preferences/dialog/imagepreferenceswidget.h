#pragma once

#include "preferences/dialog/preferencespage.h"

#include <QList>
#include <QSize>
#include <QString>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QPushButton;
class QSpinBox;
class SizePresetTable;

/// How captures are saved, the ready sizes of a capture, and the program that edits it next.
class ImagePreferencesWidget : public PreferencesPage {
    Q_OBJECT
public:
    explicit ImagePreferencesWidget(QWidget *parent = nullptr);

    void load() override;
    void save() override;
    void setDefaults() override;

    QCheckBox *useAutoSave() const { return m_useAutoSave; }
    /// The box of the other page that excludes `useAutoSave`; borrowed.
    void setShowFileDlgAfterCapture(QCheckBox *box) { m_showFileDlgAfterCapture = box; }

private slots:
    void onChangeFormatCombo(QString str);
    void onClickUseAutoSave();
    void onStateChangedUseAutoSave(int state);
    void onClickSetFileNameFormat();
    void onClickBrowseSavePath();
    void onClickBrowseEditTool();
    void onTableItemSelectionChanged();
    void onClickAddPreset();
    void onClickDeletePreset();
    void onClickEditPreset();
    void onChangedQualityValue(int value);

private:
    void addCaptureSave();
    void addAutoSave();
    void addPresets();
    void addEditTool();
    QLineEdit *addPathRow(QVBoxLayout *section, const QString &text, const char *editName,
                          const char *browseName, void (ImagePreferencesWidget::*browse)());
    QPushButton *addPresetButton(QVBoxLayout *column, const char *name, const QString &text,
                                 void (ImagePreferencesWidget::*clicked)());
    void setFormat(int index);
    void setQuality(const QString &stored);
    void setPresets(const QList<QSize> &presets);
    void refreshPresets();

    QComboBox *m_format = nullptr;
    QSpinBox *m_quality = nullptr;
    QCheckBox *m_useAutoSave = nullptr;
    QLineEdit *m_savePath = nullptr;
    QPushButton *m_browseSavePath = nullptr;
    SizePresetTable *m_fixedPresets = nullptr;
    QPushButton *m_addPreset = nullptr;
    QPushButton *m_deletePreset = nullptr;
    QPushButton *m_editPreset = nullptr;
    QLineEdit *m_editTool = nullptr;
    QCheckBox *m_showFileDlgAfterCapture = nullptr;

    int m_fileNameType = 0;
    QString m_fileNameTemplate;
    QList<QSize> m_presets;
};
