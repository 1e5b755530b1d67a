#include "preferences/dialog/guidelinecolors.h"
#include "preferences/dialogtest.h"
#include "ui/uistyler.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>

/// The first page, inside its dialog: what it shows and stores, and what it asks.
class Tst_GeneralPreferencesWidget : public DialogTest {
    Q_OBJECT
private slots:
    void init() { freshProfile(); }
    void cleanup() { m_dialog.reset(); }

    void boxesShowAndStoreSettings_data();
    void boxesShowAndStoreSettings();
    void titlesStandInOrder();
    void colorIsShownAndStored();
    void defaultColorIsRed();
    void unknownColorBecomesTheFirst();
    void colorsFollowTheScale_data();
    void colorsFollowTheScale();

    void fileBrowserExcludesAutoSave_data();
    void fileBrowserExcludesAutoSave();
    void skippingNeedsTheClipboard_data();
    void skippingNeedsTheClipboard();
    void keyboardAsksToo();
    void loadingAndDefaultsAskNothing();

    void hideButtonsTurnedOn_data();
    void hideButtonsTurnedOn();
    void hideButtonsOfACancelledDialog();

private:
    bool isOn(const char *name) const { return child<QCheckBox>(name)->isChecked(); }
    /// Brings a box into that state without a click.
    void set(const char *name, bool on) const { child<QCheckBox>(name)->setChecked(on); }
    void setDefaults() const { m_dialog->findChild<GeneralPreferencesWidget *>()->setDefaults(); }
};

void Tst_GeneralPreferencesWidget::boxesShowAndStoreSettings_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("id");
    QTest::addColumn<bool>("byDefault");
    const auto add = [](const char *name, const char *text, int id, bool byDefault) {
        QTest::newRow(name) << QString::fromLatin1(text) << id << byDefault;
    };
    add("showOverlay_", "Show overlay when execute Tindra", P::ShowOverlay, true);
    add("hideButtons_", "Hide capture buttons (use mouse right button)", P::HideButtons, false);
    add("showFileDlgAfterCapture_", "Show file browser after capture", P::ShowFileDlgAfterCapture, false);
    add("autoStart_", "Auto start when windows started", P::AutoStart, true);
    add("trayMode_", "Tray mode when clicked close", P::TrayMode, true);
    add("skipEditorWnd_", "Skip editor window", P::SkipEditorWnd, false);
    add("copyToClipboard_", "Copy captured image to clipboard", P::CopyToClipboard, true);
    add("showPostSaveDlg_", "Show post save window", P::ShowPostSaveDlg, true);
    add("captureIncludeCursor_", "Capture include cursor (except scroll capture)", P::CaptureIncludeCursor,
        false);
    add("drawGuideline_", "Draw guideline", P::DrawLine, false);
}

void Tst_GeneralPreferencesWidget::boxesShowAndStoreSettings() {
    QFETCH(int, id);
    QFETCH(bool, byDefault);
    openDialog();
    auto *box = child<QCheckBox>(QTest::currentDataTag());
    QTEST(box->text(), "text");
    QCOMPARE(box->isChecked(), byDefault);

    preferences()->SetBool(id, !byDefault);
    m_dialog->loadAll();
    QCOMPARE(box->isChecked(), !byDefault);

    setDefaults();
    QCOMPARE(box->isChecked(), byDefault);
    QCOMPARE(preferences()->GetBool(id, byDefault), !byDefault);
    click("ok_");
    QCOMPARE(preferences()->GetBool(id, !byDefault), byDefault);
}

void Tst_GeneralPreferencesWidget::titlesStandInOrder() {
    openDialog();
    QStringList labels;
    const auto *page = m_dialog->findChild<GeneralPreferencesWidget *>();
    for (const QLabel *label : page->findChildren<QLabel *>())
        labels.append(label->text());
    QCOMPARE(labels, (QStringList{"Normal Preferences"_qs, "Capture Preferences"_qs,
                                  "Guidline Preferences"_qs, "Guideline color:"_qs}));
    // The boxes stand in their groups.
    QList<int> tops;
    for (const char *name : {"showOverlay_", "hideButtons_", "showFileDlgAfterCapture_", "autoStart_",
                             "trayMode_", "skipEditorWnd_", "copyToClipboard_", "showPostSaveDlg_",
                             "captureIncludeCursor_", "guidelineColor_", "drawGuideline_"})
        tops.append(widget(name)->mapTo(m_dialog.get(), QPoint()).y());
    QList<int> sorted = tops;
    std::sort(sorted.begin(), sorted.end());
    QCOMPARE(tops, sorted);
}

void Tst_GeneralPreferencesWidget::colorIsShownAndStored() {
    preferences()->SetInt(P::LineColor, int(0xFF800080)); // alpha, blue, green, red
    openDialog();
    auto *colors = child<QComboBox>("guidelineColor_");
    QCOMPARE(colors->count(), 16);
    QCOMPARE(colors->currentText(), "Purple"_qs);
    colors->setCurrentIndex(colors->findText("Blue"_qs));
    click("ok_");
    QCOMPARE(preferences()->GetInt(P::LineColor, 0), int(0xFFFF0000));
}

void Tst_GeneralPreferencesWidget::defaultColorIsRed() {
    const int purple = int(0xFF800080);
    openDialog();
    auto *colors = child<QComboBox>("guidelineColor_");
    QCOMPARE(colors->currentText(), "Red"_qs);
    preferences()->SetInt(P::LineColor, purple);
    m_dialog->loadAll();
    QCOMPARE(colors->currentText(), "Purple"_qs);
    setDefaults();
    QCOMPARE(colors->currentText(), "Red"_qs);
    QCOMPARE(preferences()->GetInt(P::LineColor, 0), purple);
    click("ok_");
    QCOMPARE(preferences()->GetInt(P::LineColor, 0), int(0xFF0000FF));
}

void Tst_GeneralPreferencesWidget::unknownColorBecomesTheFirst() {
    preferences()->SetInt(P::LineColor, int(0xFF010203));
    openDialog();
    QCOMPARE(child<QComboBox>("guidelineColor_")->currentText(), "black"_qs);
    click("cancel_");
    QCOMPARE(preferences()->GetInt(P::LineColor, 0), int(0xFF010203));
    openDialog();
    click("ok_");
    QCOMPARE(preferences()->GetInt(P::LineColor, 0), int(0xFF000000));
}

void Tst_GeneralPreferencesWidget::colorsFollowTheScale_data() {
    QTest::addColumn<double>("scale");
    QTest::addColumn<int>("side");
    QTest::newRow("100 %") << 1.0 << 16;
    QTest::newRow("125 %") << 1.25 << 20;
    QTest::newRow("truncated") << 1.3 << 20;
    QTest::newRow("200 %") << 2.0 << 32;
}

void Tst_GeneralPreferencesWidget::colorsFollowTheScale() {
    QFETCH(double, scale);
    QFETCH(int, side);
    openDialog();
    auto *colors = child<QComboBox>("guidelineColor_");
    colors->setCurrentIndex(12);
    UIStyler::applyScale(m_dialog.get(), scale);
    QCOMPARE(colors->currentIndex(), 12);
    QCOMPARE(colors->count(), 16);
    QCOMPARE(colors->iconSize(), QSize(side, side));
    for (int index = 0; index < 16; ++index) {
        for (const QIcon::Mode mode : {QIcon::Normal, QIcon::Selected}) {
            const QList<QSize> sizes = colors->itemIcon(index).availableSizes(mode);
            QCOMPARE(sizes, QList<QSize>{QSize(side, side)});
            const QImage swatch = colors->itemIcon(index).pixmap(side, side, mode).toImage();
            QCOMPARE(swatch.pixelColor(side / 2, side / 2), GuidelineColors::color(index));
        }
        QCOMPARE(colors->itemText(index), GuidelineColors::name(index));
    }
}

void Tst_GeneralPreferencesWidget::fileBrowserExcludesAutoSave_data() {
    QTest::addColumn<bool>("browser"); // before the click
    QTest::addColumn<bool>("autoSave");
    QTest::addColumn<QString>("answer"); // empty: no question
    QTest::addColumn<bool>("browserAfterwards");
    QTest::addColumn<bool>("autoSaveAfterwards");
    QTest::newRow("checked, auto save off") << false << false << "" << true << false;
    QTest::newRow("unchecked, auto save off") << true << false << "" << false << false;
    QTest::newRow("unchecked, auto save on") << true << true << "" << false << true;
    QTest::newRow("checked, ok") << false << true << "Ok" << true << false;
    QTest::newRow("checked, cancel") << false << true << "Cancel" << false << true;
    QTest::newRow("checked, closed") << false << true << "close" << false << true;
}

void Tst_GeneralPreferencesWidget::fileBrowserExcludesAutoSave() {
    QFETCH(bool, browser);
    QFETCH(bool, autoSave);
    QFETCH(QString, answer);
    openDialog();
    set("showFileDlgAfterCapture_", browser);
    set("useAutoSave_", autoSave);
    ModalAnswers answers;
    QString icon;
    if (!answer.isEmpty())
        answerMessage(answers, answer, icon);
    click("showFileDlgAfterCapture_");
    QVERIFY(answers.isDone());
    if (!answer.isEmpty()) {
        QCOMPARE(icon, "Information"_qs);
        QCOMPARE(answers.texts(), QStringList{"You use auto save.\nIf you enable \"Show file browser after "
                                              "capture\" option\n\"Use auto save\" will be disabled."_qs});
    }
    QTEST(isOn("showFileDlgAfterCapture_"), "browserAfterwards");
    QTEST(isOn("useAutoSave_"), "autoSaveAfterwards");
}

void Tst_GeneralPreferencesWidget::skippingNeedsTheClipboard_data() {
    QTest::addColumn<QString>("clicked");
    QTest::addColumn<bool>("skip"); // before the click
    QTest::addColumn<bool>("clipboard");
    QTest::addColumn<QString>("answer"); // empty: no question
    QTest::addColumn<bool>("skipAfterwards");
    QTest::addColumn<bool>("clipboardAfterwards");
    const QString skip = "skipEditorWnd_"_qs;
    const QString clipboard = "copyToClipboard_"_qs;
    QTest::newRow("skip, with clipboard") << skip << false << true << "" << true << true;
    QTest::newRow("skip, ok") << skip << false << false << "Ok" << true << true;
    QTest::newRow("skip, cancel") << skip << false << false << "Cancel" << false << false;
    QTest::newRow("skip, closed") << skip << false << false << "close" << false << false;
    QTest::newRow("skip no more") << skip << true << true << "" << false << true;
    QTest::newRow("no clipboard, ok") << clipboard << true << true << "Ok" << true << true;
    QTest::newRow("no clipboard, cancel") << clipboard << true << true << "Cancel" << false << false;
    QTest::newRow("no clipboard, closed") << clipboard << true << true << "close" << false << false;
    QTest::newRow("no clipboard, not skipping") << clipboard << false << true << "" << false << false;
    QTest::newRow("clipboard") << clipboard << true << false << "" << true << true;
}

void Tst_GeneralPreferencesWidget::skippingNeedsTheClipboard() {
    QFETCH(QString, clicked);
    QFETCH(bool, skip);
    QFETCH(bool, clipboard);
    QFETCH(QString, answer);
    openDialog();
    set("skipEditorWnd_", skip);
    set("copyToClipboard_", clipboard);
    ModalAnswers answers;
    QString icon;
    if (!answer.isEmpty())
        answerMessage(answers, answer, icon);
    click(qPrintable(clicked));
    QVERIFY(answers.isDone());
    if (!answer.isEmpty()) {
        QCOMPARE(icon, "Information"_qs);
        QCOMPARE(answers.texts(), QStringList{"If you want to skip editor window\nyou must check \"Copy "
                                              "captured image to clipboard\"."_qs});
    }
    QTEST(isOn("skipEditorWnd_"), "skipAfterwards");
    QTEST(isOn("copyToClipboard_"), "clipboardAfterwards");
}

void Tst_GeneralPreferencesWidget::keyboardAsksToo() {
    openDialog();
    set("copyToClipboard_", false);
    ModalAnswers answers;
    answers.add([](QWidget *dialog) {
        QCOMPARE(dialog->windowTitle(), "Tindra"_qs);
        ModalAnswers::press(dialog, "Ok"_qs);
    });
    QTest::keyClick(widget("skipEditorWnd_"), Qt::Key_Space);
    QVERIFY(answers.isDone());
    QVERIFY(isOn("copyToClipboard_"));
}

void Tst_GeneralPreferencesWidget::loadingAndDefaultsAskNothing() {
    preferences()->SetBool(P::ShowFileDlgAfterCapture, true);
    preferences()->SetBool(P::AutoSave, true);
    preferences()->SetBool(P::SkipEditorWnd, true);
    preferences()->SetBool(P::CopyToClipboard, false);
    ModalAnswers answers;
    openDialog();
    QVERIFY(isOn("showFileDlgAfterCapture_") && isOn("useAutoSave_") && isOn("skipEditorWnd_"));
    QVERIFY(!isOn("copyToClipboard_"));
    const auto pages = m_dialog->findChildren<PreferencesPage *>();
    for (PreferencesPage *page : pages)
        page->setDefaults();
    QVERIFY(!isOn("showFileDlgAfterCapture_") && !isOn("useAutoSave_") && !isOn("skipEditorWnd_"));
    QVERIFY(isOn("copyToClipboard_"));
    QVERIFY(answers.isDone() && answers.texts().isEmpty());
}

void Tst_GeneralPreferencesWidget::hideButtonsTurnedOn_data() {
    QTest::addColumn<bool>("before");
    QTest::addColumn<bool>("after");
    QTest::addColumn<bool>("turnedOn");
    QTest::newRow("stays off") << false << false << false;
    QTest::newRow("turned on") << false << true << true;
    QTest::newRow("turned off") << true << false << false;
    QTest::newRow("stays on") << true << true << false;
}

void Tst_GeneralPreferencesWidget::hideButtonsTurnedOn() {
    QFETCH(bool, before);
    QFETCH(bool, after);
    preferences()->SetBool(P::HideButtons, before);
    openDialog();
    set("hideButtons_", after);
    click("ok_");
    QTEST(m_dialog->hideButtonsTurnedOn(), "turnedOn");
}

void Tst_GeneralPreferencesWidget::hideButtonsOfACancelledDialog() {
    for (const bool stored : {false, true}) {
        preferences()->SetBool(P::HideButtons, stored);
        openDialog();
        set("hideButtons_", true);
        click("cancel_");
        QCOMPARE(m_dialog->hideButtonsTurnedOn(), stored);
    }
}

QTEST_MAIN(Tst_GeneralPreferencesWidget)
#include "tst_generalpreferenceswidget.moc"
