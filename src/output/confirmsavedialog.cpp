#include "output/confirmsavedialog.h"

#include "output/filenameformatsettingdialog.h"
#include "output/filenameutil.h"
#include "output/pictureformats.h"
#include "platform/folderaccess.h"
#include "preferences/tindrapreferences.h"
#include "services/workfolder.h"
#include "ui/filedialog.h"
#include "ui/messagedialog.h"
#include "ui/named.h"
#include "ui/negativebutton.h"
#include "ui/positivebutton.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QVBoxLayout>

namespace {

// Designed sizes, at 96 DPI.
constexpr int Margin = 16;
constexpr int Spacing = 8;
constexpr int FieldSpacing = 10;
constexpr int TitleHeight = 4;

constexpr int LowestQuality = 1;
constexpr int BestQuality = 100;

} // namespace

ConfirmSaveDialog::ConfirmSaveDialog(Type type, QWidget *parent)
    : QDialog(parent), m_saveText(named(new QLabel(this), "saveText_")),
      m_saveText2(named(new QLabel(this), "saveText2_")), m_format(named(new QComboBox(this), "format_")),
      m_fileName(named(new QLabel(this), "fileName_")), m_quality(named(new QSpinBox(this), "quality_")),
      m_savePath(named(new QLineEdit(this), "savePath_")) {
    setAttribute(Qt::WA_StyledBackground);
    setTexts(type);
    for (const PictureFormat &format : PictureFormats)
        m_format->addItem(QString::fromLatin1(format.name));
    m_quality->setRange(LowestQuality, BestQuality);
    // A text of the user's own is shown as he wrote it.
    m_fileName->setTextFormat(Qt::PlainText);
    buildForm();
    const QList<QWidget *> children = findChildren<QWidget *>();
    for (QWidget *child : children) {
        if (qobject_cast<QAbstractButton *>(child) || qobject_cast<QAbstractSpinBox *>(child))
            child->setCursor(Qt::PointingHandCursor);
    }
    connect(m_format, &QComboBox::currentTextChanged, this, &ConfirmSaveDialog::onFormatTextChanged);
    load();
}

void ConfirmSaveDialog::setTexts(Type type) {
    const bool all = type == AllImages;
    setWindowTitle(all ? tr("Confirm Save All Images") : tr("Confirm Save Selected Images"));
    m_saveText->setText(all ? tr("Save all images in history") : tr("Save selected images in history"));
    m_saveText2->setText(all ? tr("When you save all, save all images to new file name")
                             : tr("When you save images, save selected images to new file name"));
}

void ConfirmSaveDialog::buildForm() {
    auto *pathRow = new QHBoxLayout;
    pathRow->setSpacing(Spacing);
    auto *browse = named(new QPushButton(tr("..."), this), "browse_");
    browse->setAutoDefault(false);
    connect(browse, &QPushButton::clicked, this, &ConfirmSaveDialog::onClickBrowse);
    browse->setAccessibleName(tr("browse folder"));
    auto *pathLabel = new QLabel(tr("save path:"), this);
    pathLabel->setBuddy(m_savePath);
    pathRow->addWidget(pathLabel);
    pathRow->addWidget(m_savePath, 1);
    pathRow->addWidget(browse);

    auto *texts = new QVBoxLayout;
    texts->setSpacing(Spacing / 2);
    texts->addWidget(m_saveText);
    texts->addWidget(m_saveText2);

    auto *form = new QVBoxLayout(this);
    form->setContentsMargins(Margin, Margin, Margin, Margin);
    form->setSpacing(Margin);
    form->addLayout(texts);
    form->addWidget(buildFields());
    form->addWidget(
        named(new QLabel(tr("When you save, save file with number at tail"), this), "saveText3_"));
    form->addLayout(pathRow);
    form->addStretch();
    form->addWidget(buildButtons());
}

QWidget *ConfirmSaveDialog::buildFields() {
    auto *group = named(new QGroupBox(tr("File names and format"), this), "groupBox");
    auto *setFormat = named(new QPushButton(tr("set file name format"), this), "setFileNameFormat_");
    setFormat->setAutoDefault(false);
    connect(setFormat, &QPushButton::clicked, this, &ConfirmSaveDialog::onClickSetFileNameFormat);

    auto *fields = new QGridLayout(group);
    fields->setContentsMargins(Margin, Margin + TitleHeight, Margin, Margin);
    // One spacing for both directions: of two, the styler would know neither.
    fields->setSpacing(FieldSpacing);
    fields->setColumnStretch(1, 1);
    const auto addField = [&](int row, const QString &label, QWidget *field) {
        auto *name = new QLabel(label, this);
        name->setBuddy(field);
        fields->addWidget(name, row, 0);
        fields->addWidget(field, row, 1, Qt::AlignLeft | Qt::AlignVCenter);
    };
    addField(0, tr("format"), m_format);
    addField(1, tr("file name"), m_fileName);
    fields->addWidget(setFormat, 1, 2);
    addField(2, tr("quality"), m_quality);
    return group;
}

QWidget *ConfirmSaveDialog::buildButtons() {
    auto *row = new QWidget(this);
    auto *ok = named(new PositiveButton(tr("save(&S)"), row), "ok_");
    ok->setDefault(true);
    auto *cancel = named(new NegativeButton(tr("cancel"), row), "cancel_");
    connect(ok, &QPushButton::clicked, this, &ConfirmSaveDialog::onOK);
    connect(cancel, &QPushButton::clicked, this, &ConfirmSaveDialog::onCancel);
    auto *buttons = new QHBoxLayout(row);
    buttons->setContentsMargins(0, 0, 0, 0);
    buttons->setSpacing(Spacing);
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    return row;
}

void ConfirmSaveDialog::load() {
    TindraPreferences *preferences = TindraPreferences::instance();
    m_nameType = preferences->GetInt(TindraPreferences::FileNameType,
                                     TindraPreferences::defaultInt(TindraPreferences::FileNameType));
    m_nameTemplate = preferences->GetString(TindraPreferences::FileNameTamplate, QString());
    m_format->setCurrentIndex(preferences->GetInt(TindraPreferences::FileFormat, 0));
    m_savePath->setText(
        FileNameUtil::folderOrDefault(preferences->GetString(TindraPreferences::FilePath, QString())));
    bool isNumber = false;
    const int quality = preferences->GetString(TindraPreferences::JpgQuality, QString()).toInt(&isNumber);
    m_quality->setValue(isNumber ? quality : BestQuality);
    onFormatTextChanged(m_format->currentText());
    showFileNameFormat();
}

QString ConfirmSaveDialog::formatText() const {
    return m_format->currentText();
}

void ConfirmSaveDialog::onFormatTextChanged(const QString &text) {
    m_quality->setEnabled(text.compare(QLatin1String("JPG"), Qt::CaseInsensitive) == 0);
}

void ConfirmSaveDialog::showFileNameFormat() {
    const QList<FileNameUtil::FormatEntry> &entries = FileNameUtil::formatEntries();
    const int row = FileNameUtil::indexOfFormat(m_nameType, m_nameTemplate);
    if (row < 0 && m_nameType == FileNameUtil::Custom && !m_nameTemplate.isEmpty())
        m_fileName->setText(m_nameTemplate);
    else
        m_fileName->setText(entries.value(qMax(row, 0)).display);
}

void ConfirmSaveDialog::onClickSetFileNameFormat() {
    FileNameFormatSettingDialog dialog(m_nameType, m_nameTemplate, this);
    if (dialog.exec() != Accepted)
        return;
    m_nameType = dialog.type();
    m_nameTemplate = dialog.format();
    showFileNameFormat();
}

void ConfirmSaveDialog::onClickBrowse() {
    const QString folder = FileDialog::askFolder(this, tr("browse folder"), m_savePath->text());
    if (folder.isEmpty())
        return;
    if (isInWorkFolder(folder) || !isDirectoryWritable(folder)) {
        MessageDialog::warning(this, tr("Tindra"),
                               tr("It`s not readable or writable. Please choose another."));
        return;
    }
    m_savePath->setText(folder);
}

void ConfirmSaveDialog::onOK() {
    TindraPreferences *preferences = TindraPreferences::instance();
    preferences->SetInt(TindraPreferences::FileNameType, m_nameType);
    preferences->SetString(TindraPreferences::FileNameTamplate, m_nameTemplate);
    preferences->SetInt(TindraPreferences::FileFormat, m_format->currentIndex());
    preferences->SetString(TindraPreferences::FilePath, m_savePath->text());
    preferences->SetString(TindraPreferences::JpgQuality, m_quality->text());
    done(Accepted);
}

void ConfirmSaveDialog::onCancel() {
    done(Rejected);
}
