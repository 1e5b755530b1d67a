#include "ui/debugdialog.h"

#include "services/tracelog.h"
#include "ui/negativebutton.h"
#include "ui/positivebutton.h"

#include <QButtonGroup>
#include <QDesktopServices>
#include <QGroupBox>
#include <QRadioButton>
#include <QUrl>
#include <QVBoxLayout>

namespace {

// Designed sizes, at 96 DPI.
constexpr int Margin = 16;
constexpr int Spacing = 8;
constexpr int TitleHeight = 4;

/// Outlives the dialog, for the capture process stays in the mode that it was told last.
bool isMemoryMode = false;

} // namespace

DebugDialog::DebugDialog(QWidget *parent)
    : QDialog(parent), m_levels(new QButtonGroup(this)), m_fileMemoryMode(new QPushButton(this)),
      m_level(TraceLog::threshold()) {
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_StyledBackground);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowTitle(tr("DebugDialog"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(Margin, Margin, Margin, Margin);
    layout->setSpacing(Margin);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(buildLogLevels());
    layout->addWidget(buildFeatures());
    layout->addWidget(buildButtons());
    const QList<QAbstractButton *> buttons = findChildren<QAbstractButton *>();
    for (QAbstractButton *button : buttons)
        button->setCursor(Qt::PointingHandCursor);
}

QWidget *DebugDialog::buildLogLevels() {
    auto *group = new QGroupBox(tr("Log level"), this);
    group->setObjectName(QStringLiteral("logLevelGroup_"));
    auto *layout = new QVBoxLayout(group);
    layout->setContentsMargins(Margin, Margin + TitleHeight, Margin, Margin);
    layout->setSpacing(Spacing);
    const auto addLevel = [&](int level, const QString &text, const QString &name) {
        auto *button = new QRadioButton(text, group);
        button->setObjectName(name);
        button->setChecked(level == m_level);
        m_levels->addButton(button, level);
        layout->addWidget(button);
        connect(button, &QRadioButton::clicked, this, &DebugDialog::onChangeLogLevel);
    };
    addLevel(0, tr("log_level_0"), QStringLiteral("logLevel0_"));
    addLevel(1, tr("log_level_1"), QStringLiteral("logLevel1_"));
    addLevel(2, tr("log_level_2"), QStringLiteral("logLevel2_"));
    addLevel(3, tr("log_level_max"), QStringLiteral("logLevelMax_"));

    auto *openLog = new QPushButton(tr("Open log"), group);
    openLog->setObjectName(QStringLiteral("openLog_"));
    openLog->setAutoDefault(false);
    layout->addWidget(openLog);
    connect(openLog, &QPushButton::clicked, this, &DebugDialog::onOpenLog);
    return group;
}

QWidget *DebugDialog::buildFeatures() {
    auto *group = new QGroupBox(tr("Feature"), this);
    group->setObjectName(QStringLiteral("featureGroup_"));
    auto *layout = new QVBoxLayout(group);
    layout->setContentsMargins(Margin, Margin + TitleHeight, Margin, Margin);
    m_fileMemoryMode->setObjectName(QStringLiteral("fileMemoryMode_"));
    m_fileMemoryMode->setAutoDefault(false);
    layout->addWidget(m_fileMemoryMode);
    connect(m_fileMemoryMode, &QPushButton::clicked, this, &DebugDialog::onChangeFileMemoryMode);
    showFileMemoryMode();
    return group;
}

QWidget *DebugDialog::buildButtons() {
    auto *row = new QWidget(this);
    auto *ok = new PositiveButton(tr("Ok"), row);
    ok->setObjectName(QStringLiteral("ok_"));
    ok->setDefault(true);
    auto *close = new NegativeButton(tr("Close"), row);
    close->setObjectName(QStringLiteral("close_"));
    connect(ok, &QPushButton::clicked, this, &DebugDialog::onOk);
    connect(close, &QPushButton::clicked, this, &QDialog::close);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Spacing);
    layout->addStretch();
    layout->addWidget(ok);
    layout->addWidget(close);
    return row;
}

void DebugDialog::onChangeLogLevel() {
    m_level = m_levels->checkedId();
}

void DebugDialog::onOk() {
    setTraceLevel(m_level);
    trace(1, QStringLiteral("DebugDialog"), "Set log level: %d", m_level);
    close();
}

void DebugDialog::onOpenLog() {
    QDesktopServices::openUrl(QUrl::fromUserInput(TraceLog::filePath()));
}

void DebugDialog::onChangeFileMemoryMode() {
    isMemoryMode = !isMemoryMode;
    emit fileMemoryModeChanged(isMemoryMode);
    showFileMemoryMode();
}

void DebugDialog::showFileMemoryMode() {
    m_fileMemoryMode->setText(isMemoryMode ? tr("To file mode") : tr("To memory mode"));
}
