#include "preferences/dialog/generalpreferenceswidget.h"

#include "popups/combobox.h"
#include "preferences/dialog/guidelinecolors.h"
#include "ui/messagedialog.h"
#include "ui/named.h"
#include "ui/uistyler.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>

namespace {

using P = TindraPreferences;

constexpr int SwatchSide = 16; // at 96 DPI

} // namespace

GeneralPreferencesWidget::GeneralPreferencesWidget(QWidget *parent) : PreferencesPage(parent) {
    QVBoxLayout *normal = addSection(tr("Normal Preferences"));
    addBox(normal, "showOverlay_", tr("Show overlay when execute Tindra"), P::ShowOverlay);
    m_hideButtons = addBox(normal, "hideButtons_", tr("Hide capture buttons (use mouse right button)"), //
                           P::HideButtons);
    m_showFileDlgAfterCapture = addBox(normal, "showFileDlgAfterCapture_",
                                       tr("Show file browser after capture"), P::ShowFileDlgAfterCapture);
    addBox(normal, "autoStart_", tr("Auto start when windows started"), P::AutoStart);
    addBox(normal, "trayMode_", tr("Tray mode when clicked close"), P::TrayMode);

    QVBoxLayout *capture = addSection(tr("Capture Preferences"));
    m_skipEditorWnd = addBox(capture, "skipEditorWnd_", tr("Skip editor window"), P::SkipEditorWnd);
    m_copyToClipboard =
        addBox(capture, "copyToClipboard_", tr("Copy captured image to clipboard"), P::CopyToClipboard);
    addBox(capture, "showPostSaveDlg_", tr("Show post save window"), P::ShowPostSaveDlg);
    addBox(capture, "captureIncludeCursor_", tr("Capture include cursor (except scroll capture)"),
           P::CaptureIncludeCursor);
    addGuidelines();

    // By the user's clicks only: loading and defaults ask nothing.
    connect(m_showFileDlgAfterCapture, &QCheckBox::clicked, this,
            &GeneralPreferencesWidget::onClickShowFileDlgAfterCapture);
    connect(m_skipEditorWnd, &QCheckBox::clicked, this, &GeneralPreferencesWidget::onClickSkipOrClipboard);
    connect(m_copyToClipboard, &QCheckBox::clicked, this, &GeneralPreferencesWidget::onClickSkipOrClipboard);
    UIStyler::setScaleCallback(this, [this](double scale) { showGuidelineColors(scale); });
}

QCheckBox *GeneralPreferencesWidget::addBox(QVBoxLayout *section, const char *name, const QString &text,
                                            P::Id id) {
    auto *box = named(new QCheckBox(text, this), name);
    section->addWidget(box);
    m_boxes.add(box, id);
    return box;
}

void GeneralPreferencesWidget::addGuidelines() {
    QVBoxLayout *section = addSection(tr("Guidline Preferences"));
    QHBoxLayout *row = addRow(section);
    auto *label = new QLabel(tr("Guideline color:"), this);
    m_guidelineColor = named(new ComboBox(this), "guidelineColor_");
    label->setBuddy(m_guidelineColor);
    row->addWidget(label);
    row->addWidget(m_guidelineColor);
    row->addStretch(1);
    showGuidelineColors(widgetScale(this));
    addBox(section, "drawGuideline_", tr("Draw guideline"), P::DrawLine);
}

// The swatches are pixmaps, which do not grow by themselves.
void GeneralPreferencesWidget::showGuidelineColors(double scale) {
    const int current = qMax(0, m_guidelineColor->currentIndex());
    const int side = static_cast<int>(SwatchSide * scale);
    m_guidelineColor->clear();
    for (int index = 0; index < GuidelineColors::count(); ++index) {
        const QPixmap swatch = GuidelineColors::swatch(GuidelineColors::color(index), side);
        QIcon icon(swatch);
        // The style would tint the selected one, and this is about colours.
        icon.addPixmap(swatch, QIcon::Selected);
        m_guidelineColor->addItem(icon, GuidelineColors::name(index));
    }
    m_guidelineColor->setCurrentIndex(current);
    m_guidelineColor->view()->update();
}

void GeneralPreferencesWidget::load() {
    const P *preferences = P::instance();
    m_boxes.load();
    m_guidelineColor->setCurrentIndex(GuidelineColors::indexOf(preferences->color(P::LineColor)));
    m_hideButtonsTurnedOn = m_hideButtons->isChecked();
}

void GeneralPreferencesWidget::save() {
    m_boxes.save();
    const QColor color = GuidelineColors::color(m_guidelineColor->currentIndex());
    P::instance()->SetInt(P::LineColor, P::colorToInt(color));
    m_hideButtonsTurnedOn = !m_hideButtonsTurnedOn && m_hideButtons->isChecked();
}

void GeneralPreferencesWidget::setDefaults() {
    m_boxes.setDefaults();
    const QColor color = P::colorFromInt(P::defaultInt(P::LineColor), true);
    m_guidelineColor->setCurrentIndex(GuidelineColors::indexOf(color));
}

void GeneralPreferencesWidget::onClickShowFileDlgAfterCapture() {
    if (!m_showFileDlgAfterCapture->isChecked() || !m_useAutoSave->isChecked())
        return;
    const int answer = ask(tr("You use auto save.\nIf you enable \"Show file browser after capture\" "
                              "option\n\"Use auto save\" will be disabled."));
    if (answer == MessageDialog::Ok)
        m_useAutoSave->setChecked(false);
    else if (answer == MessageDialog::Cancel)
        m_showFileDlgAfterCapture->setChecked(false);
}

void GeneralPreferencesWidget::onClickSkipOrClipboard() {
    if (!m_skipEditorWnd->isChecked() || m_copyToClipboard->isChecked())
        return;
    const int answer = ask(tr("If you want to skip editor window\nyou must check \"Copy captured image to "
                              "clipboard\"."));
    if (answer == MessageDialog::Ok)
        m_copyToClipboard->setChecked(true);
    else if (answer == MessageDialog::Cancel)
        m_skipEditorWnd->setChecked(false);
}

// Neither button when the program ends meanwhile: this page may be gone then.
int GeneralPreferencesWidget::ask(const QString &question) {
    return MessageDialog::information(this, tr("Tindra"), question,
                                      MessageDialog::Ok | MessageDialog::Cancel);
}
