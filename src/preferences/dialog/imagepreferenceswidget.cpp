#include "preferences/dialog/imagepreferenceswidget.h"

#include "output/filenameformatsettingdialog.h"
#include "output/filenameutil.h"
#include "output/pictureformats.h"
#include "platform/folderaccess.h"
#include "popups/combobox.h"
#include "preferences/dialog/formparts.h"
#include "preferences/dialog/sizeinputdialog.h"
#include "preferences/dialog/sizepresettable.h"
#include "preferences/tindrapreferences.h"
#include "services/workfolder.h"
#include "ui/filedialog.h"
#include "ui/messagedialog.h"
#include "ui/named.h"

#include <QCheckBox>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

namespace {

using P = TindraPreferences;

constexpr int LowestQuality = 1;
constexpr int BestQuality = 100;

} // namespace

ImagePreferencesWidget::ImagePreferencesWidget(QWidget *parent) : PreferencesPage(parent) {
    addCaptureSave();
    addAutoSave();
    addPresets();
    addEditTool();
}

void ImagePreferencesWidget::addCaptureSave() {
    QVBoxLayout *section = addSection(tr("Capture Save Preferences"));
    QHBoxLayout *row = addRow(section);
    const auto addField = [&](const QString &text, QWidget *field) {
        auto *label = new QLabel(text, this);
        label->setBuddy(field);
        row->addWidget(label);
        row->addWidget(field);
    };
    m_format = named(new ComboBox(this), "format_");
    for (const PictureFormat &format : PictureFormats)
        m_format->addItem(QString::fromLatin1(format.name));
    addField(tr("format"), m_format);
    row->addSpacing(FormParts::FieldSpacing);
    m_quality = named(new QSpinBox(this), "quality_");
    // 0 can be typed, on the way to nothing else, and becomes 1 at once.
    m_quality->setRange(0, BestQuality);
    m_quality->setValue(BestQuality);
    addField(tr("quality"), m_quality);
    row->addStretch(1);

    row = addRow(section);
    auto *setFileNameFormat = named(new QPushButton(tr("set file name format"), this), "setFileNameFormat_");
    addField(tr("file name"), setFileNameFormat);
    row->addStretch(1);

    connect(m_format, &QComboBox::currentTextChanged, this, &ImagePreferencesWidget::onChangeFormatCombo);
    connect(m_quality, QOverload<int>::of(&QSpinBox::valueChanged), this,
            &ImagePreferencesWidget::onChangedQualityValue);
    connect(setFileNameFormat, &QPushButton::clicked, this,
            &ImagePreferencesWidget::onClickSetFileNameFormat);
    onChangeFormatCombo(m_format->currentText());
}

void ImagePreferencesWidget::addAutoSave() {
    QVBoxLayout *section = addSection(tr("Auto Save Preferences"));
    m_useAutoSave = named(new QCheckBox(tr("Use auto save"), this), "useAutoSave_");
    section->addWidget(m_useAutoSave);
    m_savePath = addPathRow(section, tr("Save path"), "savePath_", "browseSavePath_",
                            &ImagePreferencesWidget::onClickBrowseSavePath);
    // Only folders that passed the access test get in; without one the user's pictures are saved to.
    m_savePath->setReadOnly(true);
    m_savePath->setPlaceholderText(FileNameUtil::folderOrDefault(QString()));
    m_browseSavePath = findChild<QPushButton *>(QStringLiteral("browseSavePath_"));
    connect(m_useAutoSave, &QCheckBox::clicked, this, &ImagePreferencesWidget::onClickUseAutoSave);
    connect(m_useAutoSave, &QCheckBox::stateChanged, this,
            &ImagePreferencesWidget::onStateChangedUseAutoSave);
    onStateChangedUseAutoSave(m_useAutoSave->checkState());
}

void ImagePreferencesWidget::addPresets() {
    QVBoxLayout *section = addSection(tr("Sizing Capture Preset Settings"));
    addExplanation(section, tr("You can pre-register sizing capture sizes that you will use frequently. "
                               "(up to 6)"));
    QHBoxLayout *row = addRow(section);
    m_fixedPresets = named(new SizePresetTable(this), "fixedPresets_");
    m_fixedPresets->setAccessibleName(tr("Sizing Capture Preset Settings"));
    auto *buttons = new QVBoxLayout;
    buttons->setSpacing(0);
    row->addWidget(m_fixedPresets);
    row->addLayout(buttons);
    row->addStretch(1);
    m_addPreset = addPresetButton(buttons, "addPreset_", tr("Add"), //
                                  &ImagePreferencesWidget::onClickAddPreset);
    buttons->addStretch(1);
    m_deletePreset =
        addPresetButton(buttons, "deletePreset_", tr("Delete"), &ImagePreferencesWidget::onClickDeletePreset);
    buttons->addStretch(1);
    m_editPreset = addPresetButton(buttons, "editPreset_", tr("Edit"), //
                                   &ImagePreferencesWidget::onClickEditPreset);
    connect(m_fixedPresets, &QTableWidget::itemSelectionChanged, this,
            &ImagePreferencesWidget::onTableItemSelectionChanged);
    refreshPresets();
}

void ImagePreferencesWidget::addEditTool() {
    QVBoxLayout *section = addSection(tr("Edit Tool Preferences"));
    m_editTool = addPathRow(section, tr("Edit tool"), "editTool_", "browseEditTool_",
                            &ImagePreferencesWidget::onClickBrowseEditTool);
}

QLineEdit *ImagePreferencesWidget::addPathRow(QVBoxLayout *section, const QString &text, const char *editName,
                                              const char *browseName,
                                              void (ImagePreferencesWidget::*browse)()) {
    QHBoxLayout *row = addRow(section);
    auto *label = new QLabel(text, this);
    auto *edit = named(new QLineEdit(this), editName);
    auto *button = named(new QPushButton(tr("..."), this), browseName);
    label->setBuddy(edit);
    button->setAccessibleName(text);
    row->addWidget(label);
    row->addWidget(edit, 1);
    row->addWidget(button);
    connect(button, &QPushButton::clicked, this, browse);
    return edit;
}

QPushButton *ImagePreferencesWidget::addPresetButton(QVBoxLayout *column, const char *name,
                                                     const QString &text,
                                                     void (ImagePreferencesWidget::*clicked)()) {
    auto *button = named(new QPushButton(text, this), name);
    column->addWidget(button);
    connect(button, &QPushButton::clicked, this, clicked);
    return button;
}

void ImagePreferencesWidget::load() {
    const P *preferences = P::instance();
    setFormat(preferences->GetInt(P::FileFormat, P::defaultInt(P::FileFormat)));
    setQuality(preferences->GetString(P::JpgQuality, P::defaultString(P::JpgQuality)));
    m_fileNameType = preferences->GetInt(P::FileNameType, P::defaultInt(P::FileNameType));
    m_fileNameTemplate = preferences->GetString(P::FileNameTamplate, P::defaultString(P::FileNameTamplate));
    m_useAutoSave->setChecked(preferences->GetBool(P::AutoSave, P::defaultBool(P::AutoSave)));
    m_savePath->setText(preferences->GetString(P::AutoSavePath, P::defaultString(P::AutoSavePath)));
    QList<QSize> presets;
    preferences->GetSizePresets(presets);
    setPresets(presets);
    m_editTool->setText(preferences->GetString(P::ToolFileName, P::defaultString(P::ToolFileName)));
}

void ImagePreferencesWidget::save() {
    P *preferences = P::instance();
    preferences->SetInt(P::FileFormat, m_format->currentIndex());
    preferences->SetString(P::JpgQuality, QString::number(m_quality->value()));
    preferences->SetInt(P::FileNameType, m_fileNameType);
    preferences->SetString(P::FileNameTamplate, m_fileNameTemplate);
    preferences->SetBool(P::AutoSave, m_useAutoSave->isChecked());
    preferences->SetString(P::AutoSavePath, m_savePath->text());
    preferences->SetSizePresets(m_presets);
    preferences->SetString(P::ToolFileName, m_editTool->text());
}

void ImagePreferencesWidget::setDefaults() {
    setFormat(P::defaultInt(P::FileFormat));
    setQuality(P::defaultString(P::JpgQuality));
    m_fileNameType = P::defaultInt(P::FileNameType);
    m_fileNameTemplate = P::defaultString(P::FileNameTamplate);
    m_useAutoSave->setChecked(P::defaultBool(P::AutoSave));
    m_savePath->setText(FileNameUtil::folderOrDefault(QString()));
    setPresets({});
    m_editTool->setText(P::defaultString(P::ToolFileName));
}

void ImagePreferencesWidget::setFormat(int index) {
    const bool isKnown = index >= 0 && index < m_format->count();
    m_format->setCurrentIndex(isKnown ? index : 0);
}

void ImagePreferencesWidget::setQuality(const QString &stored) {
    bool isNumber = false;
    const int quality = stored.toInt(&isNumber);
    m_quality->setValue(isNumber ? quality : BestQuality);
}

void ImagePreferencesWidget::setPresets(const QList<QSize> &presets) {
    m_presets = presets.mid(0, SizePresetTable::Capacity);
    refreshPresets();
}

void ImagePreferencesWidget::refreshPresets() {
    m_fixedPresets->setPresets(m_presets);
    m_addPreset->setDisabled(m_presets.size() == SizePresetTable::Capacity);
    onTableItemSelectionChanged();
}

void ImagePreferencesWidget::onChangeFormatCombo(QString str) {
    m_quality->setEnabled(str.compare(QLatin1String("JPG"), Qt::CaseInsensitive) == 0);
}

void ImagePreferencesWidget::onChangedQualityValue(int value) {
    if (value < LowestQuality)
        m_quality->setValue(LowestQuality);
}

void ImagePreferencesWidget::onStateChangedUseAutoSave(int state) {
    m_browseSavePath->setEnabled(state != Qt::Unchecked);
}

void ImagePreferencesWidget::onClickUseAutoSave() {
    if (!m_useAutoSave->isChecked() || !m_showFileDlgAfterCapture->isChecked())
        return;
    const int answer = MessageDialog::information(
        this, tr("Tindra"),
        tr("If you enable \"Use auto save\" option\n\"Show file browser after capture\" will be disabled."),
        MessageDialog::Ok | MessageDialog::Cancel);
    // Neither when the program ends meanwhile: this page may be gone then.
    if (answer == MessageDialog::Ok)
        m_showFileDlgAfterCapture->setChecked(false);
    else if (answer == MessageDialog::Cancel)
        m_useAutoSave->setChecked(false);
}

void ImagePreferencesWidget::onClickSetFileNameFormat() {
    FileNameFormatSettingDialog dialog(m_fileNameType, m_fileNameTemplate, this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    m_fileNameType = dialog.type();
    m_fileNameTemplate = dialog.format();
}

void ImagePreferencesWidget::onClickBrowseSavePath() {
    const QString folder =
        FileDialog::askFolder(this, tr("browse folder"), FileNameUtil::folderOrDefault(m_savePath->text()));
    if (folder.isEmpty())
        return;
    if (isInWorkFolder(folder) || !isDirectoryWritable(folder)) {
        MessageDialog::warning(this, tr("Tindra"),
                               tr("It`s not readable or writable. Please choose another."));
        return;
    }
    m_savePath->setText(folder);
}

void ImagePreferencesWidget::onClickBrowseEditTool() {
    // Programs of this system have no such endings, so the browser begins with all files.
    const QString allFiles = tr("all files (*)");
    FileDialog dialog(this);
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setNameFilters(tr("execute file (*.exe);;batch file (*.bat)").split(QStringLiteral(";;"))
                          << allFiles);
    dialog.selectNameFilter(allFiles);
    const QString path = dialog.askPath();
    if (path.isEmpty())
        return;
    const QFileInfo tool(path);
    m_editTool->setText(tool.isSymLink() ? tool.canonicalFilePath() : path);
}

void ImagePreferencesWidget::onTableItemSelectionChanged() {
    const bool hasSelection = m_fixedPresets->hasSelection();
    m_deletePreset->setEnabled(hasSelection);
    m_editPreset->setEnabled(hasSelection);
}

void ImagePreferencesWidget::onClickAddPreset() {
    const P *preferences = P::instance();
    SizeInputDialog dialog(SizeInputDialog::Add, &m_presets, this);
    dialog.setSize({preferences->GetInt(P::LockedSizeCx, P::defaultInt(P::LockedSizeCx)),
                    preferences->GetInt(P::LockedSizeCy, P::defaultInt(P::LockedSizeCy))});
    if (dialog.exec() != QDialog::Accepted)
        return;
    m_presets.append(dialog.size());
    refreshPresets();
}

void ImagePreferencesWidget::onClickEditPreset() {
    const int index = m_fixedPresets->selectedPreset();
    if (index < 0 || index >= m_presets.size())
        return;
    SizeInputDialog dialog(SizeInputDialog::Edit, &m_presets, this);
    dialog.setSize(m_presets[index]);
    if (dialog.exec() != QDialog::Accepted)
        return;
    m_presets[index] = dialog.size();
    refreshPresets();
}

void ImagePreferencesWidget::onClickDeletePreset() {
    const int index = m_fixedPresets->selectedPreset();
    if (index < 0 || index >= m_presets.size())
        return;
    m_presets.removeAt(index);
    refreshPresets();
}
