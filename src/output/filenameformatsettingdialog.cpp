#include "output/filenameformatsettingdialog.h"

#include "output/filenameutil.h"
#include "ui/negativebutton.h"
#include "ui/positivebutton.h"

#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QRegExpValidator>
#include <QVBoxLayout>

namespace {

// Designed sizes, at 96 DPI.
constexpr int Margin = 16;
constexpr int Spacing = 8;
constexpr int TitleHeight = 4;

// What no file system of the product's users takes in a name.
const auto AllowedText = QStringLiteral("[^\\\\/:*?\"<>|]+");

} // namespace

FileNameFormatSettingDialog::FileNameFormatSettingDialog(int type, const QString &format, QWidget *parent)
    : QDialog(parent), m_radioLegacy(new QRadioButton(this)), m_legacyFormats(new QComboBox(this)),
      m_radioCustom(new QRadioButton(tr("write yours"), this)), m_userFormat(new QLineEdit(this)) {
    setWindowTitle(tr("FileNameFormatSettingDialog"));
    setAttribute(Qt::WA_StyledBackground);
    m_radioLegacy->setObjectName(QStringLiteral("radioLegacy_"));
    m_legacyFormats->setObjectName(QStringLiteral("legacyFormats_"));
    m_radioCustom->setObjectName(QStringLiteral("radioCustom_"));
    m_userFormat->setObjectName(QStringLiteral("userFormat_"));
    m_userFormat->setValidator(new QRegExpValidator(QRegExp(AllowedText, Qt::CaseSensitive), m_userFormat));
    const QList<FileNameUtil::FormatEntry> &entries = FileNameUtil::formatEntries();
    for (int row = 0; row < entries.size(); ++row)
        m_legacyFormats->addItem(entries[row].display, row);
    buildForm();
    const QList<QAbstractButton *> buttons = findChildren<QAbstractButton *>();
    for (QAbstractButton *button : buttons)
        button->setCursor(Qt::PointingHandCursor);

    connect(m_radioLegacy, &QRadioButton::toggled, this, &FileNameFormatSettingDialog::onRadioToggled);
    load(type, format);
    onRadioToggled();
}

void FileNameFormatSettingDialog::buildForm() {
    auto *group = new QGroupBox(tr("save file name"), this);
    group->setObjectName(QStringLiteral("groupBox"));
    auto *hint = new QLabel(tr("If you do not enter any words in the field,\nfile names are created "
                               "sequentially starting with the number 0001."),
                            this);
    hint->setObjectName(QStringLiteral("label"));
    // No text of its own: the box beside it says what it chooses.
    m_radioLegacy->setAccessibleName(group->title());

    auto *legacyRow = new QHBoxLayout;
    legacyRow->setSpacing(0);
    legacyRow->addWidget(m_radioLegacy);
    legacyRow->addWidget(m_legacyFormats, 1);
    auto *choices = new QVBoxLayout(group);
    choices->setContentsMargins(Margin, Margin + TitleHeight, Margin, Margin);
    choices->setSpacing(Spacing);
    choices->addLayout(legacyRow);
    choices->addWidget(m_radioCustom);
    choices->addWidget(m_userFormat);
    choices->addWidget(hint);

    auto *ok = new PositiveButton(tr("ok"), this);
    ok->setObjectName(QStringLiteral("ok_"));
    ok->setDefault(true);
    auto *cancel = new NegativeButton(tr("cancel"), this);
    cancel->setObjectName(QStringLiteral("cancel_"));
    connect(ok, &QPushButton::clicked, this, &FileNameFormatSettingDialog::onOK);
    connect(cancel, &QPushButton::clicked, this, &FileNameFormatSettingDialog::onCancel);
    auto *bottom = new QHBoxLayout;
    bottom->setSpacing(Spacing);
    bottom->addStretch();
    bottom->addWidget(ok);
    bottom->addWidget(cancel);

    auto *form = new QVBoxLayout(this);
    form->setContentsMargins(Margin, Margin, Margin, Margin);
    form->setSpacing(Margin);
    form->addWidget(group);
    form->addStretch();
    form->addLayout(bottom);
}

void FileNameFormatSettingDialog::load(int type, const QString &format) {
    const int row = FileNameUtil::indexOfFormat(type, format);
    if (row >= 0 || (type != FileNameUtil::Custom && !format.isEmpty())) {
        m_legacyFormats->setCurrentIndex(qMax(row, 0));
        m_radioLegacy->setChecked(true);
        m_legacyFormats->setFocus();
        return;
    }
    m_userFormat->setText(format);
    m_radioCustom->setChecked(true);
    m_userFormat->setFocus();
}

int FileNameFormatSettingDialog::type() const {
    if (!m_radioLegacy->isChecked())
        return FileNameUtil::Custom;
    return FileNameUtil::formatEntries()[m_legacyFormats->currentData().toInt()].type;
}

QString FileNameFormatSettingDialog::format() const {
    if (!m_radioLegacy->isChecked())
        return m_userFormat->text();
    return FileNameUtil::formatEntries()[m_legacyFormats->currentData().toInt()].format;
}

void FileNameFormatSettingDialog::onRadioToggled() {
    const bool legacy = m_radioLegacy->isChecked();
    m_legacyFormats->setEnabled(legacy);
    m_userFormat->setEnabled(!legacy);
}

void FileNameFormatSettingDialog::onOK() {
    done(Accepted);
}

void FileNameFormatSettingDialog::onCancel() {
    done(Rejected);
}
