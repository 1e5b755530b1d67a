#include "output/filenameformatsettingdialog.h"
#include "output/filenameutil.h"
#include "support/literals.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QtTest>

class Tst_FileNameFormatSettingDialog : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { FileNameUtil::initialize(); }

    void texts();
    void choiceFollowsTheStyle_data();
    void choiceFollowsTheStyle();
    void fieldsFollowTheChoice();
    void textTakesNoSeparators_data();
    void textTakesNoSeparators();
    void buttonsEndIt_data();
    void buttonsEndIt();

private:
    template <typename Widget> static Widget *child(QWidget &dialog, const char *name) {
        return dialog.findChild<Widget *>(QLatin1String(name));
    }
};

void Tst_FileNameFormatSettingDialog::texts() {
    FileNameFormatSettingDialog dialog(FileNameUtil::Serial, {});
    QCOMPARE(dialog.windowTitle(), "FileNameFormatSettingDialog"_qs);
    QCOMPARE(child<QGroupBox>(dialog, "groupBox")->title(), "save file name"_qs);
    QCOMPARE(child<QRadioButton>(dialog, "radioCustom_")->text(), "write yours"_qs);
    QCOMPARE(child<QLabel>(dialog, "label")->text(),
             "If you do not enter any words in the field,\nfile names are created sequentially starting with "
             "the number 0001."_qs);
    QCOMPARE(child<QPushButton>(dialog, "ok_")->text(), "ok"_qs);
    QCOMPARE(child<QPushButton>(dialog, "cancel_")->text(), "cancel"_qs);
    const auto *formats = child<QComboBox>(dialog, "legacyFormats_");
    QStringList shown;
    for (int row = 0; row < formats->count(); ++row) {
        shown.append(formats->itemText(row));
        QCOMPARE(formats->itemData(row).toInt(), row);
    }
    QCOMPARE(shown, (QStringList{"yyyyMMdd_HHmmss"_qs, "yyyy-MM-dd HH;mm;ss"_qs, "MM-dd HH;mm;ss"_qs,
                                 "yyyy-MM-dd"_qs, "HH;mm;ss"_qs, "birdname"_qs, "serial"_qs}));
    for (const char *name : {"radioLegacy_", "radioCustom_", "ok_", "cancel_"})
        QCOMPARE(child<QWidget>(dialog, name)->cursor().shape(), Qt::PointingHandCursor);
}

void Tst_FileNameFormatSettingDialog::choiceFollowsTheStyle_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("format");
    QTest::addColumn<int>("row"); // -1: the user's own text
    QTest::addColumn<int>("resultType");
    QTest::addColumn<QString>("resultFormat");
    QTest::newRow("date") << 1 << "yyyy-MM-dd" << 3 << 1 << "yyyy-MM-dd";
    QTest::newRow("bird") << 3 << "BIRDNAME" << 5 << 3 << "BIRDNAME";
    QTest::newRow("serial") << 2 << "" << 6 << 2 << "";
    QTest::newRow("unknown date") << 1 << "dd.MM." << 0 << 1 << "yyyyMMdd_HHmmss";
    QTest::newRow("own text") << 0 << "shot" << -1 << 0 << "shot";
    QTest::newRow("own text like a date") << 0 << "yyyy-MM-dd" << -1 << 0 << "yyyy-MM-dd";
    QTest::newRow("no text") << 0 << "" << -1 << 0 << "";
    QTest::newRow("date without a text") << 1 << "" << -1 << 0 << "";
}

void Tst_FileNameFormatSettingDialog::choiceFollowsTheStyle() {
    QFETCH(int, row);
    QFETCH(QString, format);
    QFETCH(int, type);
    FileNameFormatSettingDialog dialog(type, format);
    QCOMPARE(child<QRadioButton>(dialog, "radioLegacy_")->isChecked(), row >= 0);
    QCOMPARE(child<QRadioButton>(dialog, "radioCustom_")->isChecked(), row < 0);
    if (row >= 0)
        QCOMPARE(child<QComboBox>(dialog, "legacyFormats_")->currentIndex(), row);
    else
        QCOMPARE(child<QLineEdit>(dialog, "userFormat_")->text(), format);
    QTEST(dialog.type(), "resultType");
    QTEST(dialog.format(), "resultFormat");
}

void Tst_FileNameFormatSettingDialog::fieldsFollowTheChoice() {
    FileNameFormatSettingDialog dialog(FileNameUtil::Serial, {});
    QVERIFY(child<QWidget>(dialog, "legacyFormats_")->isEnabled());
    QVERIFY(!child<QWidget>(dialog, "userFormat_")->isEnabled());
    child<QRadioButton>(dialog, "radioCustom_")->click();
    QVERIFY(!child<QWidget>(dialog, "legacyFormats_")->isEnabled());
    QVERIFY(child<QWidget>(dialog, "userFormat_")->isEnabled());
    child<QRadioButton>(dialog, "radioLegacy_")->click();
    QVERIFY(!child<QWidget>(dialog, "userFormat_")->isEnabled());
}

void Tst_FileNameFormatSettingDialog::textTakesNoSeparators_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("taken");
    QTest::newRow("letters") << "My shot; 1.2"
                             << "My shot; 1.2";
    for (const char forbidden : {'\\', '/', ':', '*', '?', '"', '<', '>', '|'})
        QTest::addRow("%c", forbidden) << "a%1b"_qs.arg(QLatin1Char(forbidden)) << "ab";
}

void Tst_FileNameFormatSettingDialog::textTakesNoSeparators() {
    QFETCH(QString, typed);
    FileNameFormatSettingDialog dialog(FileNameUtil::Custom, {});
    QTest::keyClicks(child<QLineEdit>(dialog, "userFormat_"), typed);
    QTEST(dialog.format(), "taken");
}

void Tst_FileNameFormatSettingDialog::buttonsEndIt_data() {
    QTest::addColumn<QString>("button");
    QTest::addColumn<int>("result");
    QTest::newRow("ok") << "ok_" << 1;
    QTest::newRow("cancel") << "cancel_" << 0;
}

void Tst_FileNameFormatSettingDialog::buttonsEndIt() {
    QFETCH(QString, button);
    FileNameFormatSettingDialog dialog(FileNameUtil::Serial, {});
    dialog.setResult(7);
    dialog.open();
    dialog.findChild<QPushButton *>(button)->click();
    QVERIFY(!dialog.isVisible());
    QTEST(dialog.result(), "result");
}

QTEST_MAIN(Tst_FileNameFormatSettingDialog)
#include "tst_filenameformatsettingdialog.moc"
