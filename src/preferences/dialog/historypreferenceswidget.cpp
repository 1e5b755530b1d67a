#include "preferences/dialog/historypreferenceswidget.h"

#include "ui/named.h"

#include <QCheckBox>
#include <QVBoxLayout>

HistoryPreferencesWidget::HistoryPreferencesWidget(QWidget *parent) : PreferencesPage(parent) {
    QVBoxLayout *section = addSection(tr("History Preferences"));
    const auto addBox = [&](const char *name, const QString &text, TindraPreferences::Id id) {
        auto *box = named(new QCheckBox(text, this), name);
        section->addWidget(box);
        m_boxes.add(box, id);
    };
    addBox("notifyDeleteAllHistory_", tr("Ask before delete all images"),
           TindraPreferences::NotifyDeleteAllHistory);
    addBox("showPostSaveAllDlg_", tr("Show message after save all images"),
           TindraPreferences::ShowPostSaveAllDlg);
    addBox("notifyDeleteHistory_", tr("Ask before delete image"), TindraPreferences::NotifyDeleteHistory);
    addBox("autoHistoryDelete_", tr("Auto cleanup history"), TindraPreferences::AutoHistoryDelete);
}
