#include "preferences/dialog/sizeinputdialog.h"
#include "preferences/dialogtest.h"
#include "preferences/widgetstate.h"

#include <QProcess>

/// Each item on its way through the dialog, the settings file and the next process.
class Tst_PreferencesRoundTrip : public DialogTest {
    Q_OBJECT
private slots:
    void initTestCase();
    void init() { freshProfile(); }
    void cleanup() { m_dialog.reset(); }

    void everyWidgetHasItsKey_data();
    void everyWidgetHasItsKey();
    void fileNameStyle();
    void presets();
    void everyItemIsCovered();

private:
    using Found = QMap<QString, QString>;
    /// What a new process finds in the file, by key and by name of the widget.
    static Found nextProcess();
    void accept() const {
        click("ok_");
        preferences()->SaveAll();
    }
    /// What differs from a fresh profile.
    Found changes() const;

    Found m_fresh;
};

void Tst_PreferencesRoundTrip::initTestCase() {
    freshProfile();
    m_fresh = nextProcess();
    QVERIFY(m_fresh.contains("TrayMode"_qs) && m_fresh.contains("trayMode_"_qs));
    // A file with all defaults is the same profile.
    openDialog();
    accept();
    QVERIFY(ConfigurationLocation(location()).value("TrayMode"_qs).isValid());
    QCOMPARE(nextProcess(), m_fresh);
}

Tst_PreferencesRoundTrip::Found Tst_PreferencesRoundTrip::nextProcess() {
    QProcess process;
    process.start(QStringLiteral(PREFERENCES_READER), QStringList());
    Found found;
    if (!process.waitForFinished() || process.exitCode() != 0)
        return found;
    const QStringList lines = QString::fromUtf8(process.readAllStandardOutput()).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        if (line.contains(QLatin1Char('\t')))
            found.insert(line.section(QLatin1Char('\t'), 0, 0), line.section(QLatin1Char('\t'), 1));
    }
    return found;
}

Tst_PreferencesRoundTrip::Found Tst_PreferencesRoundTrip::changes() const {
    const Found found = nextProcess();
    Found changed;
    for (auto entry = found.cbegin(); entry != found.cend(); ++entry) {
        if (m_fresh.value(entry.key()) != entry.value() || !m_fresh.contains(entry.key()))
            changed.insert(entry.key(), entry.value());
    }
    return found.size() == m_fresh.size() ? changed : Found();
}

void Tst_PreferencesRoundTrip::everyWidgetHasItsKey_data() {
    QTest::addColumn<QString>("state"); // unlike that of a fresh profile
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("stored");
    const auto add = [](const QString &widget, const QString &state, const QString &key,
                        const QString &stored) {
        QTest::newRow(qPrintable(widget)) << state << key << stored;
    };
    const auto turn = [&add](const char *widget, bool on, const char *key) {
        add(QString::fromLatin1(widget), on ? "on"_qs : "off"_qs, QString::fromLatin1(key),
            on ? "true"_qs : "false"_qs);
    };
    turn("showOverlay_", false, "ShowOverlay");
    turn("hideButtons_", true, "HideButtons");
    turn("showFileDlgAfterCapture_", true, "ShowFileDlgAfterCapture");
    turn("autoStart_", false, "AutoStart");
    turn("trayMode_", false, "TrayMode");
    turn("skipEditorWnd_", true, "SkipEditorWnd");
    turn("copyToClipboard_", false, "CopyToClipboard");
    turn("showPostSaveDlg_", false, "ShowPostSaveDlg");
    turn("captureIncludeCursor_", true, "CaptureIncludeCursor");
    // 0xFF808000: alpha, blue, green, red.
    add("guidelineColor_"_qs, "Teal"_qs, "LineColor"_qs, QString::number(int(0xFF808000)));
    turn("drawGuideline_", true, "DrawLine");

    add("format_"_qs, "BMP"_qs, "FileFormat"_qs, "2"_qs);
    add("quality_"_qs, "7"_qs, "JpgQuality"_qs, "7"_qs);
    turn("useAutoSave_", true, "AutoSave");
    add("savePath_"_qs, "/home/그림, 100 %; \"a\"=b"_qs, "AutoSavePath"_qs, "/home/그림, 100 %; \"a\"=b"_qs);
    add("editTool_"_qs, "C:\\도구\\new tool.exe"_qs, "ToolFileName"_qs, "C:\\도구\\new tool.exe"_qs);

    turn("usePrintScreenKey_", false, "UsePrintScreen");
    add("captureMode_"_qs, "Scroll Capture"_qs, "PrintScreenCaptureMode"_qs, "4"_qs);
    const QPair<QString, QString> rows[] = {{"region"_qs, ""_qs},     {"window"_qs, "_W"_qs},
                                            {"childwnd"_qs, "_C"_qs}, {"fullscreen"_qs, "_F"_qs},
                                            {"scroll"_qs, "_S"_qs},   {"fixedregion"_qs, "_FR"_qs}};
    for (const auto &row : rows) {
        add(row.first + "_"_qs, "off"_qs, "UseHotKey"_qs + row.second, "false"_qs);
        // Ctrl and Shift, 2 and 4, are on.
        add(row.first + "Ctrl_"_qs, "off"_qs, "HotKeyMod"_qs + row.second, "4"_qs);
        add(row.first + "Alt_"_qs, "on"_qs, "HotKeyMod"_qs + row.second, "7"_qs);
        add(row.first + "Shift_"_qs, "off"_qs, "HotKeyMod"_qs + row.second, "2"_qs);
        add(row.first + "Win_"_qs, "on"_qs, "HotKeyMod"_qs + row.second, "14"_qs);
        add(row.first + "Key_"_qs, "F12"_qs, "HotKeyChar"_qs + row.second, "123"_qs);
    }

    turn("notifyDeleteAllHistory_", false, "NotifyDeleteAllHistory");
    turn("showPostSaveAllDlg_", false, "ShowPostSaveAllDlg");
    turn("notifyDeleteHistory_", false, "NotifyDeleteHistory");
    turn("autoHistoryDelete_", true, "AutoHistoryDelete");
}

void Tst_PreferencesRoundTrip::everyWidgetHasItsKey() {
    const QString name = QString::fromUtf8(QTest::currentDataTag());
    QFETCH(QString, state);
    QFETCH(QString, key);
    QFETCH(QString, stored);
    openDialog();
    const QVector<QVariant> before = DialogTest::stored();
    setWidgetState(widget(qPrintable(name)), state);
    QCOMPARE(DialogTest::stored(), before);
    accept();
    // This key, this widget, and nothing else.
    QCOMPARE(changes(), (Found{{key, stored}, {name, state}}));
}

void Tst_PreferencesRoundTrip::fileNameStyle() {
    openDialog(1);
    const QVector<QVariant> before = stored();
    ModalAnswers answers;
    answers.add([](QWidget *names) {
        names->findChild<QAbstractButton *>("radioCustom_"_qs)->setChecked(true);
        names->findChild<QLineEdit *>("userFormat_"_qs)->setText("내 캡처 %1"_qs);
        ModalAnswers::press(names, "ok"_qs);
    });
    click("setFileNameFormat_");
    QVERIFY(answers.isDone());
    QCOMPARE(stored(), before);
    accept();
    QCOMPARE(changes(), (Found{{"FileNameType"_qs, "0"_qs}, {"FileNameTamplate"_qs, "내 캡처 %1"_qs}}));
}

void Tst_PreferencesRoundTrip::presets() {
    preferences()->SetSizePresets({{100, 50}, {200, 51}, {300, 52}});
    preferences()->SaveAll();
    QCOMPARE(changes(), (Found{{"SizePresets"_qs, "100x50,200x51,300x52"_qs},
                               {"fixedPresets_"_qs, "100 x 50,200 x 51,300 x 52"_qs}}));
    openDialog(1);
    const QVector<QVariant> before = stored();
    child<QTableWidget>("fixedPresets_")->setCurrentCell(0, 0);
    click("deletePreset_");
    QCOMPARE(stored(), before);
    ModalAnswers answers;
    for (const QSize &size : {QSize(640, 480), QSize(800, 600)}) {
        answers.add([size](QWidget *dialog) {
            qobject_cast<SizeInputDialog *>(dialog)->setSize(size);
            ModalAnswers::press(dialog, "ok"_qs);
        });
    }
    child<QTableWidget>("fixedPresets_")->setCurrentCell(1, 0);
    click("editPreset_");
    QCOMPARE(stored(), before);
    click("addPreset_");
    QCOMPARE(stored(), before);
    QVERIFY(answers.isDone());
    accept();
    QCOMPARE(changes(), (Found{{"SizePresets"_qs, "200x51,640x480,800x600"_qs},
                               {"fixedPresets_"_qs, "200 x 51,640 x 480,800 x 600"_qs}}));
}

// A widget that is added needs a row above.
void Tst_PreferencesRoundTrip::everyItemIsCovered() {
    int widgets = 0;
    for (const QString &name : m_fresh.keys()) {
        if (name.endsWith(QLatin1Char('_')))
            ++widgets;
    }
    // 11 of the first page, 5 and the table of the second, 2 + 6 x 6 of the third, 4 of the last.
    QCOMPARE(widgets, 11 + 6 + 38 + 4);
}

QTEST_MAIN(Tst_PreferencesRoundTrip)
#include "tst_preferencesroundtrip.moc"
