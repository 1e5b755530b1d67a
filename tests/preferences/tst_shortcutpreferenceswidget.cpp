#include "preferences/dialog/hotkeyentry.h"
#include "preferences/dialogtest.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>

class Tst_ShortcutPreferencesWidget : public DialogTest {
    Q_OBJECT
private slots:
    void init() { freshProfile(); }
    void cleanup() { m_dialog.reset(); }

    void texts();
    void captureModesAreStoredByNumber_data();
    void captureModesAreStoredByNumber();
    void unknownCaptureModeIsTheFirst_data();
    void unknownCaptureModeIsTheFirst();
    void printScreenIsShownAndStored();

    void rowsShowTheirDefaults_data() { addRows(); }
    void rowsShowTheirDefaults();
    void rowsStoreTheirOwnItems_data() { addRows(); }
    void rowsStoreTheirOwnItems();
    void rowIsEnabledByItsBox_data() { addRows(); }
    void rowIsEnabledByItsBox();
    void storedDisabledRowIsShownSo_data() { addRows(); }
    void storedDisabledRowIsShownSo();
    void disabledRowKeepsItsValues_data() { addRows(); }
    void disabledRowKeepsItsValues();
    void defaultsComeBack_data() { addRows(); }
    void defaultsComeBack();

    void modifiersAreBits_data();
    void modifiersAreBits();
    void everyKeyCanBeChosen();
    void unknownKeyBecomesTheFirst_data();
    void unknownKeyBecomesTheFirst();
    void sameCombinationTwiceIsAllowed();

private:
    static void addRows();
    QByteArray name(const char *part) const { return m_row.toLatin1() + part; }
    QCheckBox *use() const { return child<QCheckBox>(name("_")); }
    QCheckBox *modifier(const char *part) const { return child<QCheckBox>(name(part)); }
    QComboBox *key() const { return child<QComboBox>(name("Key_")); }
    /// The row's modifiers as they are stored.
    int shownModifiers() const {
        return (modifier("Alt_")->isChecked() ? 1 : 0) + (modifier("Ctrl_")->isChecked() ? 2 : 0) +
               (modifier("Shift_")->isChecked() ? 4 : 0) + (modifier("Win_")->isChecked() ? 8 : 0);
    }
    bool isEnabled() const {
        const bool enabled = key()->isEnabled();
        for (const char *part : {"Ctrl_", "Alt_", "Shift_", "Win_"}) {
            if (modifier(part)->isEnabled() != enabled)
                qFatal("half of the row is enabled");
        }
        return enabled;
    }
    void setDefaults() const { m_dialog->findChild<ShortcutPreferencesWidget *>()->setDefaults(); }

    QString m_row = "region"_qs;
};

void Tst_ShortcutPreferencesWidget::addRows() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("useId");
    QTest::addColumn<int>("modifierId");
    QTest::addColumn<int>("keyId");
    QTest::addColumn<int>("defaultKey");
    const auto add = [](const char *name, const char *text, int use, int modifiers, int key, char character) {
        QTest::newRow(name) << QString::fromLatin1(text) << use << modifiers << key << int(character);
    };
    add("region", "Region", P::UseHotKey, P::HotKeyMod, P::HotKeyChar, 'C');
    add("window", "Window", P::UseHotKey_W, P::HotKeyMod_W, P::HotKeyChar_W, 'W');
    add("childwnd", "ChildWnd", P::UseHotKey_C, P::HotKeyMod_C, P::HotKeyChar_C, 'D');
    add("fullscreen", "Fullscreen", P::UseHotKey_F, P::HotKeyMod_F, P::HotKeyChar_F, 'A');
    add("scroll", "Scroll", P::UseHotKey_S, P::HotKeyMod_S, P::HotKeyChar_S, 'S');
    add("fixedregion", "FixedRegion", P::UseHotKey_FR, P::HotKeyMod_FR, P::HotKeyChar_FR, 'F');
}

void Tst_ShortcutPreferencesWidget::texts() {
    openDialog(2);
    const auto *page = m_dialog->findChild<ShortcutPreferencesWidget *>();
    QStringList labels;
    for (const QLabel *label : page->findChildren<QLabel *>())
        labels.append(label->text());
    QCOMPARE(labels,
             (QStringList{"Print Screen Key Preferences"_qs, "mode"_qs, "Cpature Shortcut Preferences"_qs,
                          "You can set or off shortcut per each capture mode."_qs}));
    QCOMPARE(child<QCheckBox>("usePrintScreenKey_")->text(), "Use Print Screen key as"_qs);
    const QPair<const char *, QString> boxes[] = {{"regionCtrl_", "Ctrl"_qs},
                                                  {"windowAlt_", "Alt"_qs},
                                                  {"scrollShift_", "Shift"_qs},
                                                  {"fixedregionWin_", "Win"_qs}};
    for (const auto &box : boxes)
        QCOMPARE(child<QCheckBox>(box.first)->text(), box.second);
}

void Tst_ShortcutPreferencesWidget::captureModesAreStoredByNumber_data() {
    QTest::addColumn<int>("number");
    int number = 0;
    for (const char *text : {"Region Capture", "Window Capture", "Child Window Capture", "Fullscreen Capture",
                             "Scroll Capture", "Fixed Region Capture"})
        QTest::newRow(text) << number++;
}

void Tst_ShortcutPreferencesWidget::captureModesAreStoredByNumber() {
    QFETCH(int, number);
    preferences()->SetInt(P::PrintScreenCaptureMode, number);
    openDialog(2);
    auto *mode = child<QComboBox>("captureMode_");
    QCOMPARE(mode->count(), 6);
    QCOMPARE(mode->currentText(), QString::fromLatin1(QTest::currentDataTag()));
    mode->setCurrentIndex(5 - number);
    click("ok_");
    QCOMPARE(preferences()->GetInt(P::PrintScreenCaptureMode, -1), 5 - number);
}

void Tst_ShortcutPreferencesWidget::unknownCaptureModeIsTheFirst_data() {
    QTest::addColumn<int>("stored");
    QTest::newRow("beyond the last") << 6;
    QTest::newRow("negative") << -1;
}

void Tst_ShortcutPreferencesWidget::unknownCaptureModeIsTheFirst() {
    QFETCH(int, stored);
    preferences()->SetInt(P::PrintScreenCaptureMode, stored);
    openDialog(2);
    QCOMPARE(child<QComboBox>("captureMode_")->currentIndex(), 0);
    click("ok_");
    QCOMPARE(preferences()->GetInt(P::PrintScreenCaptureMode, -1), 0);
}

void Tst_ShortcutPreferencesWidget::printScreenIsShownAndStored() {
    openDialog(2);
    auto *box = child<QCheckBox>("usePrintScreenKey_");
    QVERIFY(box->isChecked());
    box->setChecked(false);
    click("ok_");
    QCOMPARE(preferences()->GetBool(P::UsePrintScreen, true), false);
    openDialog(2);
    QVERIFY(!child<QCheckBox>("usePrintScreenKey_")->isChecked());
    setDefaults();
    QVERIFY(child<QCheckBox>("usePrintScreenKey_")->isChecked());
}

void Tst_ShortcutPreferencesWidget::rowsShowTheirDefaults() {
    m_row = QString::fromLatin1(QTest::currentDataTag());
    QFETCH(int, defaultKey);
    openDialog(2);
    QTEST(use()->text(), "text");
    QVERIFY(use()->isChecked() && isEnabled());
    QCOMPARE(shownModifiers(), 6);
    QCOMPARE(key()->currentData().toInt(), defaultKey);
    QCOMPARE(key()->currentText(), QString(QLatin1Char(char(defaultKey))));
}

void Tst_ShortcutPreferencesWidget::rowsStoreTheirOwnItems() {
    m_row = QString::fromLatin1(QTest::currentDataTag());
    QFETCH(int, useId);
    QFETCH(int, modifierId);
    QFETCH(int, keyId);
    QMap<int, QVariant> before;
    for (int id = 0; id < P::ItemCount; ++id)
        before[id] = preferences()->GetInt(id, -1);
    openDialog(2);
    use()->setChecked(false);
    modifier("Alt_")->setChecked(true);
    modifier("Ctrl_")->setChecked(false);
    key()->setCurrentIndex(key()->findText("F11"_qs));
    click("ok_");
    QCOMPARE(preferences()->GetBool(useId, true), false);
    QCOMPARE(preferences()->GetInt(modifierId, 0), 1 + 4);
    QCOMPARE(preferences()->GetInt(keyId, 0), 122);
    for (int id = P::UsePrintScreen; id <= P::HotKeyMod_FR; ++id) {
        if (id != useId && id != modifierId && id != keyId && id != P::JpgQuality)
            QCOMPARE(preferences()->GetInt(id, -1), before[id].toInt());
    }
}

void Tst_ShortcutPreferencesWidget::rowIsEnabledByItsBox() {
    m_row = QString::fromLatin1(QTest::currentDataTag());
    openDialog(2);
    use()->click();
    QVERIFY(!isEnabled());
    use()->click();
    QVERIFY(isEnabled());
    use()->setChecked(false);
    const QString own = m_row;
    for (const char *other : {"region", "window", "childwnd", "fullscreen", "scroll", "fixedregion"}) {
        m_row = QString::fromLatin1(other);
        QCOMPARE(isEnabled(), m_row != own);
    }
    setDefaults();
    m_row = own;
    QVERIFY(isEnabled());
}

void Tst_ShortcutPreferencesWidget::storedDisabledRowIsShownSo() {
    m_row = QString::fromLatin1(QTest::currentDataTag());
    QFETCH(int, useId);
    preferences()->SetBool(useId, false);
    openDialog(2);
    QVERIFY(!use()->isChecked());
    QVERIFY(!isEnabled());
    preferences()->SetBool(useId, true);
    m_dialog->loadAll();
    QVERIFY(isEnabled());
}

void Tst_ShortcutPreferencesWidget::disabledRowKeepsItsValues() {
    m_row = QString::fromLatin1(QTest::currentDataTag());
    QFETCH(int, modifierId);
    QFETCH(int, keyId);
    preferences()->SetInt(modifierId, 3);
    preferences()->SetInt(keyId, '7');
    openDialog(2);
    use()->setChecked(false);
    QCOMPARE(shownModifiers(), 3);
    QCOMPARE(key()->currentText(), "7"_qs);
    click("ok_");
    QCOMPARE(preferences()->GetInt(modifierId, 0), 3);
    QCOMPARE(preferences()->GetInt(keyId, 0), int('7'));
    m_dialog->loadAll();
    QCOMPARE(shownModifiers(), 3);
    QCOMPARE(key()->currentText(), "7"_qs);
}

void Tst_ShortcutPreferencesWidget::defaultsComeBack() {
    m_row = QString::fromLatin1(QTest::currentDataTag());
    QFETCH(int, useId);
    QFETCH(int, modifierId);
    QFETCH(int, keyId);
    QFETCH(int, defaultKey);
    preferences()->SetBool(useId, false);
    preferences()->SetInt(modifierId, 9);
    preferences()->SetInt(keyId, 'Q');
    preferences()->SetInt(P::PrintScreenCaptureMode, 4);
    openDialog(2);
    setDefaults();
    QVERIFY(use()->isChecked());
    QCOMPARE(shownModifiers(), 6);
    QCOMPARE(key()->currentData().toInt(), defaultKey);
    QCOMPARE(child<QComboBox>("captureMode_")->currentIndex(), 0);
    // Shown only.
    QCOMPARE(preferences()->GetInt(modifierId, 0), 9);
}

void Tst_ShortcutPreferencesWidget::modifiersAreBits_data() {
    QTest::addColumn<int>("modifiers");
    QTest::newRow("none") << 0;
    QTest::newRow("Alt") << 1;
    QTest::newRow("Ctrl") << 2;
    QTest::newRow("Shift") << 4;
    QTest::newRow("Win") << 8;
    QTest::newRow("Win and Alt") << 9;
    QTest::newRow("all") << 15;
}

void Tst_ShortcutPreferencesWidget::modifiersAreBits() {
    QFETCH(int, modifiers);
    m_row = "region"_qs;
    // A bit that no box stands for is not kept.
    preferences()->SetInt(P::HotKeyMod, modifiers + 16);
    openDialog(2);
    QCOMPARE(shownModifiers(), modifiers);
    click("ok_");
    QCOMPARE(preferences()->GetInt(P::HotKeyMod, -1), modifiers);
}

void Tst_ShortcutPreferencesWidget::everyKeyCanBeChosen() {
    openDialog(2);
    const QVector<HotKeyEntry> entries = hotKeyEntries();
    for (const char *row : {"region", "window", "childwnd", "fullscreen", "scroll", "fixedregion"}) {
        m_row = QString::fromLatin1(row);
        QCOMPARE(key()->count(), 48);
        for (int index = 0; index < 48; ++index) {
            QCOMPARE(key()->itemText(index), entries[index].label);
            QCOMPARE(key()->itemData(index).toInt(), entries[index].code);
        }
    }
}

void Tst_ShortcutPreferencesWidget::unknownKeyBecomesTheFirst_data() {
    QTest::addColumn<int>("code");
    QTest::newRow("full stop") << 190;
    QTest::newRow("small letter") << int('c');
    QTest::newRow("none") << 0;
}

void Tst_ShortcutPreferencesWidget::unknownKeyBecomesTheFirst() {
    QFETCH(int, code);
    m_row = "scroll"_qs;
    preferences()->SetInt(P::HotKeyChar_S, code);
    openDialog(2);
    QCOMPARE(key()->currentText(), "0"_qs);
    click("cancel_");
    QCOMPARE(preferences()->GetInt(P::HotKeyChar_S, -1), code);
    openDialog(2);
    click("ok_");
    QCOMPARE(preferences()->GetInt(P::HotKeyChar_S, -1), 48);
}

void Tst_ShortcutPreferencesWidget::sameCombinationTwiceIsAllowed() {
    ModalAnswers answers;
    openDialog(2);
    for (const char *row : {"window", "scroll"}) {
        m_row = QString::fromLatin1(row);
        modifier("Ctrl_")->setChecked(false);
        modifier("Shift_")->setChecked(false);
        key()->setCurrentIndex(10);
    }
    click("ok_");
    QCOMPARE(m_dialog->result(), 1);
    QVERIFY(answers.texts().isEmpty());
    QCOMPARE(preferences()->GetInt(P::HotKeyMod_W, -1), 0);
    QCOMPARE(preferences()->GetInt(P::HotKeyMod_S, -1), 0);
    QCOMPARE(preferences()->GetInt(P::HotKeyChar_W, -1), preferences()->GetInt(P::HotKeyChar_S, -2));
}

QTEST_MAIN(Tst_ShortcutPreferencesWidget)
#include "tst_shortcutpreferenceswidget.moc"
