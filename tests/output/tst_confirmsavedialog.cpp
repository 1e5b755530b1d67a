#include "output/confirmsavedialog.h"
#include "output/filenameutil.h"
#include "platform/configuration.h"
#include "preferences/tindrapreferences.h"
#include "services/workfolder.h"
#include "support/literals.h"
#include "support/modalanswers.h"

#include <QComboBox>
#include <QFileDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QStandardPaths>
#include <QtTest>

class Tst_ConfirmSaveDialog : public QObject {
    Q_OBJECT
private slots:
    void init();

    void texts_data();
    void texts();
    void settingsAreShown();
    void emptyFolderStandsForPictures();
    void qualityThatIsNoNumberIsTheBest();
    void qualityIsForJpg_data();
    void qualityIsForJpg();
    void nameStyleIsShown_data();
    void nameStyleIsShown();
    void nameStyleIsSet();
    void cancelledNameStyleStays();
    void folderIsChosen();
    void cancelledFolderStays();
    void workFolderIsRefused();
    void lockedFolderIsRefused();
    void okWritesTheSettings();
    void cancelWritesNothing();

private:
    using P = TindraPreferences;
    static TindraPreferences *preferences() { return TindraPreferences::instance(); }
    template <typename Widget> static Widget *child(QWidget &dialog, const char *name) {
        return dialog.findChild<Widget *>(QLatin1String(name));
    }
    static QString shownStyle(QWidget &dialog) { return child<QLabel>(dialog, "fileName_")->text(); }
    static void chooseFolder(
        ModalAnswers &answers, const QString &folder, const std::function<void()> &afterwards = [] {}) {
        answers.add([=](QWidget *widget) {
            auto *dialog = qobject_cast<QFileDialog *>(widget);
            QVERIFY(dialog);
            QCOMPARE(dialog->windowTitle(), "browse folder"_qs);
            dialog->findChild<QLineEdit *>("fileNameEdit"_qs)->setText(folder);
            static_cast<QDialog *>(dialog)->accept();
            afterwards();
        });
    }
};

void Tst_ConfirmSaveDialog::init() {
    TindraPreferences::resetForTesting();
    ConfigurationLocation("SOFTWARE\\Norvane\\Tindra"_qs).remove("Config"_qs);
    preferences()->Init();
    FileNameUtil::initialize();
}

void Tst_ConfirmSaveDialog::texts_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("text2");
    QTest::newRow("selected") << 0 << "Confirm Save Selected Images"
                              << "Save selected images in history"
                              << "When you save images, save selected images to new file name";
    QTest::newRow("all") << 1 << "Confirm Save All Images"
                         << "Save all images in history"
                         << "When you save all, save all images to new file name";
}

void Tst_ConfirmSaveDialog::texts() {
    QFETCH(int, type);
    ConfirmSaveDialog dialog{ConfirmSaveDialog::Type(type)};
    QTEST(dialog.windowTitle(), "title");
    QTEST(child<QLabel>(dialog, "saveText_")->text(), "text");
    QTEST(child<QLabel>(dialog, "saveText2_")->text(), "text2");
    QCOMPARE(child<QLabel>(dialog, "saveText3_")->text(), "When you save, save file with number at tail"_qs);
    QCOMPARE(child<QGroupBox>(dialog, "groupBox")->title(), "File names and format"_qs);
    QCOMPARE(child<QPushButton>(dialog, "setFileNameFormat_")->text(), "set file name format"_qs);
    QCOMPARE(child<QPushButton>(dialog, "browse_")->text(), "..."_qs);
    QCOMPARE(child<QPushButton>(dialog, "ok_")->text(), "save(&S)"_qs);
    QCOMPARE(child<QPushButton>(dialog, "cancel_")->text(), "cancel"_qs);
    QStringList labels;
    const QList<QLabel *> all = dialog.findChildren<QLabel *>();
    for (const QLabel *label : all)
        labels.append(label->text());
    for (const QString &label : {"format"_qs, "file name"_qs, "quality"_qs, "save path:"_qs})
        QVERIFY2(labels.contains(label), qPrintable(label));
    for (const char *name : {"setFileNameFormat_", "browse_", "ok_", "cancel_", "quality_"})
        QCOMPARE(child<QWidget>(dialog, name)->cursor().shape(), Qt::PointingHandCursor);
}

void Tst_ConfirmSaveDialog::settingsAreShown() {
    preferences()->SetInt(P::FileFormat, 4);
    preferences()->SetString(P::FilePath, "/some/where"_qs);
    preferences()->SetString(P::JpgQuality, "37"_qs);
    ConfirmSaveDialog dialog(ConfirmSaveDialog::AllImages);
    const auto *format = child<QComboBox>(dialog, "format_");
    QStringList formats;
    for (int row = 0; row < format->count(); ++row)
        formats.append(format->itemText(row));
    QCOMPARE(formats, (QStringList{"PNG"_qs, "JPG"_qs, "BMP"_qs, "GIF"_qs, "WEBP"_qs}));
    QCOMPARE(dialog.formatText(), "WEBP"_qs);
    QCOMPARE(child<QLineEdit>(dialog, "savePath_")->text(), "/some/where"_qs);
    const auto *quality = child<QSpinBox>(dialog, "quality_");
    QCOMPARE(quality->value(), 37);
    QCOMPARE(quality->minimum(), 1);
    QCOMPARE(quality->maximum(), 100);
}

void Tst_ConfirmSaveDialog::emptyFolderStandsForPictures() {
    ConfirmSaveDialog dialog(ConfirmSaveDialog::AllImages);
    QCOMPARE(child<QLineEdit>(dialog, "savePath_")->text(),
             QStandardPaths::standardLocations(QStandardPaths::PicturesLocation).first());
}

void Tst_ConfirmSaveDialog::qualityThatIsNoNumberIsTheBest() {
    preferences()->SetString(P::JpgQuality, "fine"_qs);
    ConfirmSaveDialog dialog(ConfirmSaveDialog::AllImages);
    QCOMPARE(child<QSpinBox>(dialog, "quality_")->value(), 100);
}

void Tst_ConfirmSaveDialog::qualityIsForJpg_data() {
    QTest::addColumn<int>("format");
    QTest::addColumn<bool>("enabled");
    QTest::newRow("png") << 0 << false;
    QTest::newRow("jpg") << 1 << true;
    QTest::newRow("webp") << 4 << false;
}

void Tst_ConfirmSaveDialog::qualityIsForJpg() {
    QFETCH(int, format);
    preferences()->SetInt(P::FileFormat, format);
    ConfirmSaveDialog stored(ConfirmSaveDialog::AllImages);
    QTEST(child<QWidget>(stored, "quality_")->isEnabled(), "enabled");

    preferences()->SetInt(P::FileFormat, 1 - qMin(format, 1));
    ConfirmSaveDialog changed(ConfirmSaveDialog::AllImages);
    child<QComboBox>(changed, "format_")->setCurrentIndex(format);
    QTEST(child<QWidget>(changed, "quality_")->isEnabled(), "enabled");
}

void Tst_ConfirmSaveDialog::nameStyleIsShown_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("shown");
    QTest::newRow("date") << 1 << "yyyy-MM-dd"
                          << "yyyy-MM-dd";
    QTest::newRow("bird") << 3 << "BIRDNAME"
                          << "birdname";
    QTest::newRow("serial") << 2 << ""
                            << "serial";
    QTest::newRow("own text") << 0 << "<b>shot</b>"
                              << "<b>shot</b>";
    QTest::newRow("no text") << 0 << ""
                             << "yyyyMMdd_HHmmss";
    QTest::newRow("unknown date") << 1 << "dd.MM."
                                  << "yyyyMMdd_HHmmss";
}

void Tst_ConfirmSaveDialog::nameStyleIsShown() {
    QFETCH(int, type);
    QFETCH(QString, format);
    preferences()->SetInt(P::FileNameType, type);
    preferences()->SetString(P::FileNameTamplate, format);
    ConfirmSaveDialog dialog(ConfirmSaveDialog::AllImages);
    QTEST(shownStyle(dialog), "shown");
    QCOMPARE(child<QLabel>(dialog, "fileName_")->textFormat(), Qt::PlainText);
}

void Tst_ConfirmSaveDialog::nameStyleIsSet() {
    ConfirmSaveDialog dialog(ConfirmSaveDialog::AllImages);
    ModalAnswers answers;
    answers.add([](QWidget *names) {
        names->findChild<QComboBox *>("legacyFormats_"_qs)->setCurrentIndex(5);
        ModalAnswers::press(names, "ok"_qs);
    });
    child<QPushButton>(dialog, "setFileNameFormat_")->click();
    QVERIFY(answers.isDone());
    QCOMPARE(shownStyle(dialog), "birdname"_qs);
    child<QPushButton>(dialog, "ok_")->click();
    QCOMPARE(preferences()->GetInt(P::FileNameType, -1), 3);
    QCOMPARE(preferences()->GetString(P::FileNameTamplate, {}), "BIRDNAME"_qs);
}

void Tst_ConfirmSaveDialog::cancelledNameStyleStays() {
    ConfirmSaveDialog dialog(ConfirmSaveDialog::AllImages);
    ModalAnswers answers;
    answers.add([](QWidget *names) {
        names->findChild<QComboBox *>("legacyFormats_"_qs)->setCurrentIndex(5);
        ModalAnswers::press(names, "cancel"_qs);
    });
    child<QPushButton>(dialog, "setFileNameFormat_")->click();
    QVERIFY(answers.isDone());
    QCOMPARE(shownStyle(dialog), "yyyyMMdd_HHmmss"_qs);
}

void Tst_ConfirmSaveDialog::folderIsChosen() {
    QTemporaryDir folder;
    ConfirmSaveDialog dialog(ConfirmSaveDialog::AllImages);
    ModalAnswers answers;
    chooseFolder(answers, folder.path());
    child<QPushButton>(dialog, "browse_")->click();
    QVERIFY(answers.isDone());
    QCOMPARE(child<QLineEdit>(dialog, "savePath_")->text(), folder.path());
}

void Tst_ConfirmSaveDialog::cancelledFolderStays() {
    preferences()->SetString(P::FilePath, "/some/where"_qs);
    ConfirmSaveDialog dialog(ConfirmSaveDialog::AllImages);
    ModalAnswers answers;
    answers.addClose();
    child<QPushButton>(dialog, "browse_")->click();
    QVERIFY(answers.isDone());
    QCOMPARE(child<QLineEdit>(dialog, "savePath_")->text(), "/some/where"_qs);
}

// An exit would clear away what is saved there.
void Tst_ConfirmSaveDialog::workFolderIsRefused() {
    preferences()->SetString(P::FilePath, "/some/where"_qs);
    ConfirmSaveDialog dialog(ConfirmSaveDialog::AllImages);
    ModalAnswers answers;
    chooseFolder(answers, workFolder());
    answers.addPress("Ok"_qs);
    child<QPushButton>(dialog, "browse_")->click();
    QVERIFY(answers.isDone());
    QCOMPARE(answers.texts().last(), "It`s not readable or writable. Please choose another."_qs);
    QCOMPARE(child<QLineEdit>(dialog, "savePath_")->text(), "/some/where"_qs);
}

// An administrator may write into every folder there is, so this one goes once it is chosen.
void Tst_ConfirmSaveDialog::lockedFolderIsRefused() {
    QTemporaryDir folder;
    preferences()->SetString(P::FilePath, "/some/where"_qs);
    ConfirmSaveDialog dialog(ConfirmSaveDialog::AllImages);
    ModalAnswers answers;
    chooseFolder(answers, folder.path(), [&folder] { folder.remove(); });
    answers.addPress("Ok"_qs);
    child<QPushButton>(dialog, "browse_")->click();
    QVERIFY(answers.isDone());
    QCOMPARE(answers.texts().last(), "It`s not readable or writable. Please choose another."_qs);
    QCOMPARE(child<QLineEdit>(dialog, "savePath_")->text(), "/some/where"_qs);
}

void Tst_ConfirmSaveDialog::okWritesTheSettings() {
    ConfirmSaveDialog dialog(ConfirmSaveDialog::SelectedImages);
    dialog.open();
    child<QComboBox>(dialog, "format_")->setCurrentIndex(1);
    child<QSpinBox>(dialog, "quality_")->setValue(42);
    child<QLineEdit>(dialog, "savePath_")->setText("/else/where"_qs);
    child<QPushButton>(dialog, "ok_")->click();
    QCOMPARE(dialog.result(), 1);
    QCOMPARE(preferences()->GetInt(P::FileFormat, -1), 1);
    QCOMPARE(preferences()->GetString(P::JpgQuality, {}), "42"_qs);
    QCOMPARE(preferences()->GetString(P::FilePath, {}), "/else/where"_qs);
    // What was not touched is as it came.
    QCOMPARE(preferences()->GetInt(P::FileNameType, -1), 1);
    QCOMPARE(preferences()->GetString(P::FileNameTamplate, {}), "%Y%m%d_%H%M%S"_qs);
}

void Tst_ConfirmSaveDialog::cancelWritesNothing() {
    ConfirmSaveDialog dialog(ConfirmSaveDialog::SelectedImages);
    dialog.open();
    child<QComboBox>(dialog, "format_")->setCurrentIndex(1);
    child<QLineEdit>(dialog, "savePath_")->setText("/else/where"_qs);
    child<QPushButton>(dialog, "cancel_")->click();
    QCOMPARE(dialog.result(), 0);
    QCOMPARE(preferences()->GetInt(P::FileFormat, -1), 0);
    QCOMPARE(preferences()->GetString(P::FilePath, {}), QString());
}

QTEST_MAIN(Tst_ConfirmSaveDialog)
#include "tst_confirmsavedialog.moc"
