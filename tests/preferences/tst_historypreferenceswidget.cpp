#include "preferences/dialogtest.h"

#include <QCheckBox>
#include <QLabel>

class Tst_HistoryPreferencesWidget : public DialogTest {
    Q_OBJECT
private slots:
    void init() { freshProfile(); }
    void cleanup() { m_dialog.reset(); }

    void boxesShowAndStoreSettings_data();
    void boxesShowAndStoreSettings();
    void fourBoxesUnderOneTitle();
};

void Tst_HistoryPreferencesWidget::boxesShowAndStoreSettings_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("id");
    QTest::addColumn<bool>("byDefault");
    QTest::newRow("notifyDeleteAllHistory_")
        << "Ask before delete all images" << int(P::NotifyDeleteAllHistory) << true;
    QTest::newRow("showPostSaveAllDlg_")
        << "Show message after save all images" << int(P::ShowPostSaveAllDlg) << true;
    QTest::newRow("notifyDeleteHistory_") << "Ask before delete image" << int(P::NotifyDeleteHistory) << true;
    QTest::newRow("autoHistoryDelete_") << "Auto cleanup history" << int(P::AutoHistoryDelete) << false;
}

void Tst_HistoryPreferencesWidget::boxesShowAndStoreSettings() {
    QFETCH(int, id);
    QFETCH(bool, byDefault);
    openDialog(3);
    auto *box = child<QCheckBox>(QTest::currentDataTag());
    QTEST(box->text(), "text");
    QCOMPARE(box->isChecked(), byDefault);

    preferences()->SetBool(id, !byDefault);
    m_dialog->loadAll();
    QCOMPARE(box->isChecked(), !byDefault);
    m_dialog->findChild<HistoryPreferencesWidget *>()->setDefaults();
    QCOMPARE(box->isChecked(), byDefault);
    QCOMPARE(preferences()->GetBool(id, byDefault), !byDefault);
    click("ok_");
    QCOMPARE(preferences()->GetBool(id, !byDefault), byDefault);
}

void Tst_HistoryPreferencesWidget::fourBoxesUnderOneTitle() {
    openDialog(3);
    const auto *page = m_dialog->findChild<HistoryPreferencesWidget *>();
    QStringList names;
    for (const QCheckBox *box : page->findChildren<QCheckBox *>())
        names.append(box->objectName());
    QCOMPARE(names, (QStringList{"notifyDeleteAllHistory_"_qs, "showPostSaveAllDlg_"_qs,
                                 "notifyDeleteHistory_"_qs, "autoHistoryDelete_"_qs}));
    QCOMPARE(page->findChild<QLabel *>()->text(), "History Preferences"_qs);
}

QTEST_MAIN(Tst_HistoryPreferencesWidget)
#include "tst_historypreferenceswidget.moc"
