#include "preferences/dialog/sizeinputdialog.h"
#include "preferences/dialogtest.h"
#include "services/workfolder.h"
#include "ui/rangedspinbox.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QStandardPaths>
#include <QTableWidget>

/// The second page, inside its dialog.
class Tst_ImagePreferencesWidget : public DialogTest {
    Q_OBJECT
private slots:
    void init() { freshProfile(); }
    void cleanup() { m_dialog.reset(); }

    void texts();
    void freshProfileIsShown();
    void settingsAreShownAndStored();
    void unknownFormatIsTheFirst_data();
    void unknownFormatIsTheFirst();
    void defaultsAreShown();

    // Format and quality
    void qualityIsForJpg_data();
    void qualityIsForJpg();
    void disabledQualityIsKept();
    void storedQualityIsMadeValid_data();
    void storedQualityIsMadeValid();
    void typedZeroIsOne();

    // File name
    void fileNameStyleIsChosen();
    void cancelledFileNameStyleStays();

    // Auto save
    void browsingNeedsAutoSave();
    void autoSaveExcludesFileBrowser_data();
    void autoSaveExcludesFileBrowser();
    void folderIsChosen();
    void cancelledFolderStays();
    void browsingBeginsWhereEmptyPathSaves();
    void workFolderIsRefused();
    void lockedFolderIsRefused();

    // Presets
    void presetsFillColumns_data();
    void presetsFillColumns();
    void cellsShareTheTable();
    void tableStaysInItsPlace();
    void buttonsFollowTheSelection();
    void emptyCellHasNoEffect();
    void presetIsAdded();
    void addBeginsWithTheLockedSize();
    void knownPresetIsNotAdded();
    void seventhPresetCannotBeAdded();
    void moreThanSixStoredPresetsAreCut();
    void presetIsEdited();
    void presetIsDeleted_data();
    void presetIsDeleted();
    void cancelledDialogsChangeNothing();

    // Edit tool
    void toolIsChosen_data();
    void toolIsChosen();
    void cancelledToolStays();

private:
    QTableWidget *table() const { return child<QTableWidget>("fixedPresets_"); }
    QStringList cells() const;
    void select(int row, int column) const { table()->setCurrentCell(row, column); }
    bool isEnabled(const char *name) const { return widget(name)->isEnabled(); }
    static void answerSize(ModalAnswers &answers, const QSize &expected, const QSize &size,
                           const QString &button, const QString &title);
    static void chooseFile(
        ModalAnswers &answers, const QString &path, const std::function<void(QFileDialog *)> &look = {},
        const std::function<void()> &afterwards = [] {});
    QList<QSize> storedPresets() const {
        QList<QSize> presets;
        preferences()->GetSizePresets(presets);
        return presets;
    }
    static QString pictures() {
        return QStandardPaths::standardLocations(QStandardPaths::PicturesLocation).first();
    }
};

/// The table's texts, row by row; "-" for an empty cell.
QStringList Tst_ImagePreferencesWidget::cells() const {
    QStringList texts;
    for (int row = 0; row < table()->rowCount(); ++row) {
        for (int column = 0; column < table()->columnCount(); ++column) {
            const QTableWidgetItem *cell = table()->item(row, column);
            texts.append(cell ? cell->text() : "-"_qs);
        }
    }
    return texts;
}

void Tst_ImagePreferencesWidget::answerSize(ModalAnswers &answers, const QSize &expected, const QSize &size,
                                            const QString &button, const QString &title) {
    answers.add([=](QWidget *widget) {
        auto *dialog = qobject_cast<SizeInputDialog *>(widget);
        QVERIFY(dialog);
        QCOMPARE(dialog->windowTitle(), title);
        QCOMPARE(dialog->size(), expected);
        dialog->setSize(size);
        ModalAnswers::press(dialog, button);
    });
}

void Tst_ImagePreferencesWidget::chooseFile(ModalAnswers &answers, const QString &path,
                                            const std::function<void(QFileDialog *)> &look,
                                            const std::function<void()> &afterwards) {
    answers.add([=](QWidget *widget) {
        auto *dialog = qobject_cast<QFileDialog *>(widget);
        QVERIFY(dialog);
        if (look)
            look(dialog);
        dialog->findChild<QLineEdit *>("fileNameEdit"_qs)->setText(path);
        static_cast<QDialog *>(dialog)->accept();
        afterwards();
    });
}

void Tst_ImagePreferencesWidget::texts() {
    openDialog(1);
    const auto *page = m_dialog->findChild<ImagePreferencesWidget *>();
    QStringList labels;
    for (const QLabel *label : page->findChildren<QLabel *>())
        labels.append(label->text());
    QCOMPARE(labels,
             (QStringList{"Capture Save Preferences"_qs, "format"_qs, "quality"_qs, "file name"_qs,
                          "Auto Save Preferences"_qs, "Save path"_qs, "Sizing Capture Preset Settings"_qs,
                          "You can pre-register sizing capture sizes that you will use frequently. "
                          "(up to 6)"_qs,
                          "Edit Tool Preferences"_qs, "Edit tool"_qs}));
    QCOMPARE(child<QPushButton>("setFileNameFormat_")->text(), "set file name format"_qs);
    QCOMPARE(child<QCheckBox>("useAutoSave_")->text(), "Use auto save"_qs);
    QCOMPARE(child<QPushButton>("addPreset_")->text(), "Add"_qs);
    QCOMPARE(child<QPushButton>("deletePreset_")->text(), "Delete"_qs);
    QCOMPARE(child<QPushButton>("editPreset_")->text(), "Edit"_qs);
    const auto *format = child<QComboBox>("format_");
    QStringList formats;
    for (int index = 0; index < format->count(); ++index)
        formats.append(format->itemText(index));
    QCOMPARE(formats, (QStringList{"PNG"_qs, "JPG"_qs, "BMP"_qs, "GIF"_qs, "WEBP"_qs}));
    const auto *quality = child<QSpinBox>("quality_");
    QCOMPARE(quality->minimum(), 0);
    QCOMPARE(quality->maximum(), 100);
}

void Tst_ImagePreferencesWidget::freshProfileIsShown() {
    openDialog(1);
    QCOMPARE(child<QComboBox>("format_")->currentIndex(), 0);
    QCOMPARE(child<QSpinBox>("quality_")->value(), 100);
    QVERIFY(!child<QCheckBox>("useAutoSave_")->isChecked());
    QCOMPARE(child<QLineEdit>("savePath_")->text(), QString());
    // What an empty path stands for.
    QCOMPARE(child<QLineEdit>("savePath_")->placeholderText(), pictures());
    QVERIFY(child<QLineEdit>("savePath_")->isReadOnly());
    QCOMPARE(child<QLineEdit>("editTool_")->text(), QString());
    QCOMPARE(cells(), (QStringList{"-"_qs, "-"_qs, "-"_qs, "-"_qs, "-"_qs, "-"_qs}));
    QVERIFY(isEnabled("addPreset_") && !isEnabled("deletePreset_") && !isEnabled("editPreset_"));
    QVERIFY(!isEnabled("browseSavePath_"));
}

void Tst_ImagePreferencesWidget::settingsAreShownAndStored() {
    preferences()->SetInt(P::FileFormat, 4);
    preferences()->SetString(P::JpgQuality, "37"_qs);
    preferences()->SetInt(P::FileNameType, 0);
    preferences()->SetString(P::FileNameTamplate, "shot"_qs);
    preferences()->SetBool(P::AutoSave, true);
    preferences()->SetString(P::AutoSavePath, "/some/where"_qs);
    preferences()->SetString(P::ToolFileName, "/bin/tool"_qs);
    preferences()->SetSizePresets({{100, 50}});
    openDialog(1);
    QCOMPARE(child<QComboBox>("format_")->currentText(), "WEBP"_qs);
    QCOMPARE(child<QSpinBox>("quality_")->value(), 37);
    QVERIFY(child<QCheckBox>("useAutoSave_")->isChecked());
    QCOMPARE(child<QLineEdit>("savePath_")->text(), "/some/where"_qs);
    QVERIFY(isEnabled("browseSavePath_"));
    QCOMPARE(child<QLineEdit>("editTool_")->text(), "/bin/tool"_qs);

    child<QComboBox>("format_")->setCurrentIndex(1);
    child<QSpinBox>("quality_")->setValue(42);
    child<QCheckBox>("useAutoSave_")->setChecked(false);
    child<QLineEdit>("editTool_")->setText("/bin/other"_qs);
    QCOMPARE(preferences()->GetInt(P::FileFormat, -1), 4);
    click("ok_");
    QCOMPARE(preferences()->GetInt(P::FileFormat, -1), 1);
    QCOMPARE(preferences()->GetString(P::JpgQuality, {}), "42"_qs);
    QCOMPARE(preferences()->GetInt(P::FileNameType, -1), 0);
    QCOMPARE(preferences()->GetString(P::FileNameTamplate, {}), "shot"_qs);
    QCOMPARE(preferences()->GetBool(P::AutoSave, true), false);
    QCOMPARE(preferences()->GetString(P::AutoSavePath, {}), "/some/where"_qs);
    QCOMPARE(preferences()->GetString(P::ToolFileName, {}), "/bin/other"_qs);
    QCOMPARE(storedPresets(), (QList<QSize>{{100, 50}}));
}

void Tst_ImagePreferencesWidget::unknownFormatIsTheFirst_data() {
    QTest::addColumn<int>("stored");
    QTest::newRow("beyond the last") << 5;
    QTest::newRow("negative") << -1;
}

void Tst_ImagePreferencesWidget::unknownFormatIsTheFirst() {
    QFETCH(int, stored);
    preferences()->SetInt(P::FileFormat, stored);
    openDialog(1);
    QCOMPARE(child<QComboBox>("format_")->currentText(), "PNG"_qs);
}

void Tst_ImagePreferencesWidget::defaultsAreShown() {
    preferences()->SetInt(P::FileFormat, 4);
    preferences()->SetString(P::JpgQuality, "37"_qs);
    preferences()->SetInt(P::FileNameType, 3);
    preferences()->SetString(P::FileNameTamplate, "BIRDNAME"_qs);
    preferences()->SetBool(P::AutoSave, true);
    preferences()->SetString(P::AutoSavePath, "/some/where"_qs);
    preferences()->SetString(P::ToolFileName, "/bin/tool"_qs);
    preferences()->SetSizePresets({{100, 50}, {300, 200}});
    openDialog(1);
    m_dialog->findChild<ImagePreferencesWidget *>()->setDefaults();
    QCOMPARE(child<QComboBox>("format_")->currentIndex(), 0);
    QCOMPARE(child<QSpinBox>("quality_")->value(), 100);
    QVERIFY(!child<QCheckBox>("useAutoSave_")->isChecked());
    QVERIFY(!isEnabled("browseSavePath_"));
    QCOMPARE(child<QLineEdit>("savePath_")->text(), pictures());
    QCOMPARE(child<QLineEdit>("editTool_")->text(), QString());
    QCOMPARE(cells().count("-"_qs), 6);
    QCOMPARE(storedPresets().size(), 2);
    click("ok_");
    QCOMPARE(preferences()->GetInt(P::FileNameType, -1), 1);
    QCOMPARE(preferences()->GetString(P::FileNameTamplate, {}), "%Y%m%d_%H%M%S"_qs);
    QCOMPARE(preferences()->GetString(P::AutoSavePath, {}), pictures());
    QVERIFY(storedPresets().isEmpty());
}

void Tst_ImagePreferencesWidget::qualityIsForJpg_data() {
    QTest::addColumn<int>("format");
    QTest::addColumn<bool>("enabled");
    QTest::newRow("PNG") << 0 << false;
    QTest::newRow("JPG") << 1 << true;
    QTest::newRow("BMP") << 2 << false;
    QTest::newRow("GIF") << 3 << false;
    QTest::newRow("WEBP") << 4 << false;
}

void Tst_ImagePreferencesWidget::qualityIsForJpg() {
    QFETCH(int, format);
    preferences()->SetInt(P::FileFormat, format);
    openDialog(1);
    QTEST(isEnabled("quality_"), "enabled");
    child<QComboBox>("format_")->setCurrentIndex(format == 1 ? 0 : 1);
    child<QComboBox>("format_")->setCurrentIndex(format);
    QTEST(isEnabled("quality_"), "enabled");
}

void Tst_ImagePreferencesWidget::disabledQualityIsKept() {
    preferences()->SetInt(P::FileFormat, 1);
    preferences()->SetString(P::JpgQuality, "37"_qs);
    openDialog(1);
    child<QComboBox>("format_")->setCurrentText("GIF"_qs);
    QVERIFY(!isEnabled("quality_"));
    QCOMPARE(child<QSpinBox>("quality_")->value(), 37);
    click("ok_");
    QCOMPARE(preferences()->GetString(P::JpgQuality, {}), "37"_qs);
}

void Tst_ImagePreferencesWidget::storedQualityIsMadeValid_data() {
    QTest::addColumn<QString>("stored");
    QTest::addColumn<int>("shown");
    QTest::newRow("zero") << "0" << 1;
    QTest::newRow("negative") << "-5" << 1;
    QTest::newRow("lowest") << "1" << 1;
    QTest::newRow("best") << "100" << 100;
    QTest::newRow("too high") << "101" << 100;
    QTest::newRow("no number") << "fine" << 100;
    QTest::newRow("hexadecimal is none") << "0x10" << 100;
}

void Tst_ImagePreferencesWidget::storedQualityIsMadeValid() {
    QFETCH(QString, stored);
    QFETCH(int, shown);
    preferences()->SetString(P::JpgQuality, stored);
    openDialog(1);
    QCOMPARE(child<QSpinBox>("quality_")->value(), shown);
    click("ok_");
    QCOMPARE(preferences()->GetString(P::JpgQuality, {}), QString::number(shown));
}

void Tst_ImagePreferencesWidget::typedZeroIsOne() {
    preferences()->SetInt(P::FileFormat, 1);
    openDialog(1);
    auto *quality = child<QSpinBox>("quality_");
    quality->setFocus();
    quality->selectAll();
    QTest::keyClicks(quality, "0"_qs);
    QCOMPARE(quality->value(), 1);
    QCOMPARE(quality->text(), "1"_qs);
    quality->stepBy(-1);
    QCOMPARE(quality->value(), 1);
}

void Tst_ImagePreferencesWidget::fileNameStyleIsChosen() {
    preferences()->SetInt(P::FileNameType, 1);
    preferences()->SetString(P::FileNameTamplate, "yyyy-MM-dd"_qs);
    openDialog(1);
    ModalAnswers answers;
    answers.add([](QWidget *names) {
        auto *styles = names->findChild<QComboBox *>("legacyFormats_"_qs);
        QCOMPARE(styles->currentIndex(), 3);
        styles->setCurrentIndex(5);
        ModalAnswers::press(names, "ok"_qs);
    });
    // What was chosen is shown when it is opened again.
    answers.add([](QWidget *names) {
        QCOMPARE(names->findChild<QComboBox *>("legacyFormats_"_qs)->currentIndex(), 5);
        ModalAnswers::press(names, "ok"_qs);
    });
    click("setFileNameFormat_");
    click("setFileNameFormat_");
    QVERIFY(answers.isDone());
    QCOMPARE(preferences()->GetInt(P::FileNameType, -1), 1);
    click("ok_");
    QCOMPARE(preferences()->GetInt(P::FileNameType, -1), 3);
    QCOMPARE(preferences()->GetString(P::FileNameTamplate, {}), "BIRDNAME"_qs);
}

void Tst_ImagePreferencesWidget::cancelledFileNameStyleStays() {
    openDialog(1);
    ModalAnswers answers;
    answers.add([](QWidget *names) {
        names->findChild<QComboBox *>("legacyFormats_"_qs)->setCurrentIndex(5);
        ModalAnswers::press(names, "cancel"_qs);
    });
    click("setFileNameFormat_");
    QVERIFY(answers.isDone());
    click("ok_");
    QCOMPARE(preferences()->GetInt(P::FileNameType, -1), 1);
    QCOMPARE(preferences()->GetString(P::FileNameTamplate, {}), "%Y%m%d_%H%M%S"_qs);
}

void Tst_ImagePreferencesWidget::browsingNeedsAutoSave() {
    openDialog(1);
    QVERIFY(!isEnabled("browseSavePath_"));
    click("useAutoSave_");
    QVERIFY(isEnabled("browseSavePath_"));
    click("useAutoSave_");
    QVERIFY(!isEnabled("browseSavePath_"));
}

void Tst_ImagePreferencesWidget::autoSaveExcludesFileBrowser_data() {
    QTest::addColumn<bool>("autoSave"); // before the click
    QTest::addColumn<bool>("browser");
    QTest::addColumn<QString>("answer"); // empty: no question
    QTest::addColumn<bool>("autoSaveAfterwards");
    QTest::addColumn<bool>("browserAfterwards");
    QTest::newRow("checked, browser off") << false << false << "" << true << false;
    QTest::newRow("unchecked, browser on") << true << true << "" << false << true;
    QTest::newRow("checked, ok") << false << true << "Ok" << true << false;
    QTest::newRow("checked, cancel") << false << true << "Cancel" << false << true;
    QTest::newRow("checked, closed") << false << true << "close" << false << true;
}

void Tst_ImagePreferencesWidget::autoSaveExcludesFileBrowser() {
    QFETCH(bool, autoSave);
    QFETCH(bool, browser);
    QFETCH(QString, answer);
    openDialog(1);
    auto *autoSaveBox = child<QCheckBox>("useAutoSave_");
    auto *browserBox = child<QCheckBox>("showFileDlgAfterCapture_");
    autoSaveBox->setChecked(autoSave);
    browserBox->setChecked(browser);
    ModalAnswers answers;
    QString icon;
    if (!answer.isEmpty())
        answerMessage(answers, answer, icon);
    autoSaveBox->click();
    QVERIFY(answers.isDone());
    if (!answer.isEmpty()) {
        QCOMPARE(icon, "Information"_qs);
        QCOMPARE(answers.texts(), QStringList{"If you enable \"Use auto save\" option\n\"Show file browser "
                                              "after capture\" will be disabled."_qs});
    }
    QTEST(autoSaveBox->isChecked(), "autoSaveAfterwards");
    QTEST(browserBox->isChecked(), "browserAfterwards");
    QCOMPARE(isEnabled("browseSavePath_"), autoSaveBox->isChecked());
}

void Tst_ImagePreferencesWidget::folderIsChosen() {
    QTemporaryDir before;
    QTemporaryDir folder;
    preferences()->SetBool(P::AutoSave, true);
    preferences()->SetString(P::AutoSavePath, before.path());
    openDialog(1);
    ModalAnswers answers;
    chooseFile(answers, folder.path(), [&before](QFileDialog *dialog) {
        QCOMPARE(dialog->windowTitle(), "browse folder"_qs);
        QCOMPARE(dialog->directory().absolutePath(), before.path());
        QVERIFY(dialog->testOption(QFileDialog::ShowDirsOnly));
    });
    click("browseSavePath_");
    QVERIFY(answers.isDone());
    QCOMPARE(child<QLineEdit>("savePath_")->text(), folder.path());
    click("ok_");
    QCOMPARE(preferences()->GetString(P::AutoSavePath, {}), folder.path());
}

void Tst_ImagePreferencesWidget::cancelledFolderStays() {
    preferences()->SetBool(P::AutoSave, true);
    preferences()->SetString(P::AutoSavePath, "/some/where"_qs);
    openDialog(1);
    ModalAnswers answers;
    answers.addClose();
    click("browseSavePath_");
    QVERIFY(answers.isDone());
    QCOMPARE(child<QLineEdit>("savePath_")->text(), "/some/where"_qs);
}

void Tst_ImagePreferencesWidget::browsingBeginsWhereEmptyPathSaves() {
    QVERIFY(QDir().mkpath(pictures()));
    QVERIFY(QDir::current() != QDir(pictures()));
    preferences()->SetBool(P::AutoSave, true);
    openDialog(1);
    QString folder;
    ModalAnswers answers;
    answers.add([&folder](QWidget *widget) {
        folder = qobject_cast<QFileDialog *>(widget)->directory().absolutePath();
        widget->close();
    });
    click("browseSavePath_");
    QVERIFY(answers.isDone());
    QCOMPARE(folder, pictures());
}

// An exit would clear away what is saved there.
void Tst_ImagePreferencesWidget::workFolderIsRefused() {
    preferences()->SetBool(P::AutoSave, true);
    preferences()->SetString(P::AutoSavePath, "/some/where"_qs);
    openDialog(1);
    ModalAnswers answers;
    chooseFile(answers, workFolder());
    answers.addPress("Ok"_qs);
    click("browseSavePath_");
    QVERIFY(answers.isDone());
    QCOMPARE(answers.texts().last(), "It`s not readable or writable. Please choose another."_qs);
    QCOMPARE(child<QLineEdit>("savePath_")->text(), "/some/where"_qs);
}

// An administrator may write into every folder there is, so this one goes once it is chosen.
void Tst_ImagePreferencesWidget::lockedFolderIsRefused() {
    QTemporaryDir folder;
    preferences()->SetBool(P::AutoSave, true);
    preferences()->SetString(P::AutoSavePath, "/some/where"_qs);
    openDialog(1);
    ModalAnswers answers;
    chooseFile(answers, folder.path(), {}, [&folder] { folder.remove(); });
    QString icon;
    answers.add([&icon](QWidget *message) {
        icon = iconOf(message);
        QCOMPARE(message->windowTitle(), "Tindra"_qs);
        QCOMPARE(message->findChildren<QAbstractButton *>().size(), 1);
        ModalAnswers::press(message, "Ok"_qs);
    });
    click("browseSavePath_");
    QVERIFY(answers.isDone());
    QCOMPARE(icon, "Warning"_qs);
    QCOMPARE(answers.texts().last(), "It`s not readable or writable. Please choose another."_qs);
    QCOMPARE(child<QLineEdit>("savePath_")->text(), "/some/where"_qs);
}

void Tst_ImagePreferencesWidget::presetsFillColumns_data() {
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("cells"); // row by row
    QTest::newRow("one") << 1 << "10 x 11,-,-,-,-,-";
    QTest::newRow("three") << 3 << "10 x 11,-,20 x 21,-,30 x 31,-";
    QTest::newRow("four") << 4 << "10 x 11,40 x 41,20 x 21,-,30 x 31,-";
    QTest::newRow("six") << 6 << "10 x 11,40 x 41,20 x 21,50 x 51,30 x 31,60 x 61";
}

void Tst_ImagePreferencesWidget::presetsFillColumns() {
    QFETCH(int, count);
    QFETCH(QString, cells);
    QList<QSize> presets;
    for (int i = 1; i <= count; ++i)
        presets.append({10 * i, 10 * i + 1});
    preferences()->SetSizePresets(presets);
    openDialog(1);
    QCOMPARE(table()->rowCount(), 3);
    QCOMPARE(table()->columnCount(), 2);
    QCOMPARE(this->cells(), cells.split(QLatin1Char(',')));
    for (int index = 0; index < count; ++index) {
        const QTableWidgetItem *cell = table()->item(index % 3, index / 3);
        QCOMPARE(cell->data(Qt::UserRole).toInt(), index);
        QCOMPARE(cell->textAlignment(), 0x84);
    }
    QCOMPARE(isEnabled("addPreset_"), count < 6);
}

void Tst_ImagePreferencesWidget::cellsShareTheTable() {
    openDialog(1);
    QVERIFY(!table()->horizontalHeader()->isVisible() && !table()->verticalHeader()->isVisible());
    QCOMPARE(table()->selectionMode(), QAbstractItemView::SingleSelection);
    for (const int width : {202, 301}) {
        table()->setFixedSize(width, 100);
        QCoreApplication::processEvents();
        QCOMPARE(table()->columnWidth(0), width / 2);
        QCOMPARE(table()->columnWidth(1), width / 2);
    }
}

// The columns are wider than what the frame leaves, yet nothing may scroll.
void Tst_ImagePreferencesWidget::tableStaysInItsPlace() {
    preferences()->SetSizePresets({{10, 11}, {20, 21}, {30, 31}, {40, 41}, {50, 51}, {60, 61}});
    openDialog(1);
    QCoreApplication::processEvents();
    const QRect first = table()->visualItemRect(table()->item(0, 0));
    select(2, 1);
    table()->setFocus();
    QTest::keyClick(table(), Qt::Key_End);
    QWheelEvent wheel(QPointF(5, 5), table()->viewport()->mapToGlobal(QPoint(5, 5)), QPoint(),
                      QPoint(-120, -120), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(table()->viewport(), &wheel);
    QCOMPARE(table()->visualItemRect(table()->item(0, 0)), first);
}

void Tst_ImagePreferencesWidget::buttonsFollowTheSelection() {
    preferences()->SetSizePresets({{10, 11}});
    openDialog(1);
    QVERIFY(!isEnabled("deletePreset_") && !isEnabled("editPreset_"));
    select(0, 0);
    QVERIFY(isEnabled("deletePreset_") && isEnabled("editPreset_"));
    table()->clearSelection();
    QVERIFY(!isEnabled("deletePreset_") && !isEnabled("editPreset_"));
}

void Tst_ImagePreferencesWidget::emptyCellHasNoEffect() {
    preferences()->SetSizePresets({{10, 11}});
    openDialog(1);
    ModalAnswers answers;
    select(1, 1);
    QVERIFY(isEnabled("deletePreset_") && isEnabled("editPreset_"));
    click("editPreset_");
    click("deletePreset_");
    QVERIFY(answers.texts().isEmpty());
    QCOMPARE(cells().first(), "10 x 11"_qs);
    click("ok_");
    QCOMPARE(storedPresets(), (QList<QSize>{{10, 11}}));
}

void Tst_ImagePreferencesWidget::presetIsAdded() {
    preferences()->SetSizePresets({{10, 11}});
    openDialog(1);
    ModalAnswers answers;
    answerSize(answers, {20, 20}, {640, 480}, "ok"_qs, "Add fixed preset"_qs);
    click("addPreset_");
    QVERIFY(answers.isDone());
    QCOMPARE(cells().filter("640 x 480"_qs).size(), 1);
    QCOMPARE(table()->item(1, 0)->text(), "640 x 480"_qs);
    QCOMPARE(storedPresets().size(), 1);
    click("ok_");
    QCOMPARE(storedPresets(), (QList<QSize>{{10, 11}, {640, 480}}));
}

void Tst_ImagePreferencesWidget::addBeginsWithTheLockedSize() {
    preferences()->SetInt(P::LockedSizeCx, 321);
    preferences()->SetInt(P::LockedSizeCy, 123);
    openDialog(1);
    ModalAnswers answers;
    answerSize(answers, {321, 123}, {321, 123}, "ok"_qs, "Add fixed preset"_qs);
    click("addPreset_");
    QVERIFY(answers.isDone());
    QCOMPARE(cells().first(), "321 x 123"_qs);
}

void Tst_ImagePreferencesWidget::knownPresetIsNotAdded() {
    preferences()->SetSizePresets({{100, 50}});
    openDialog(1);
    QSize kept;
    ModalAnswers answers;
    answers.add([&kept](QWidget *widget) {
        auto *dialog = qobject_cast<SizeInputDialog *>(widget);
        dialog->setSize({100, 50});
        // Later: the message inside wants an answer, too.
        QTimer::singleShot(0, dialog, [dialog, &kept] {
            ModalAnswers::press(dialog, "ok"_qs);
            if (dialog->isVisible())
                kept = dialog->size();
            ModalAnswers::press(dialog, "cancel"_qs);
        });
    });
    answers.addPress("Ok"_qs);
    click("addPreset_");
    QVERIFY(answers.isDone());
    QCOMPARE(answers.texts().last(), "This size has already been added."_qs);
    QCOMPARE(kept, QSize(100, 50));
    QCOMPARE(cells().count("-"_qs), 5);
}

void Tst_ImagePreferencesWidget::seventhPresetCannotBeAdded() {
    preferences()->SetSizePresets({{10, 11}, {20, 21}, {30, 31}, {40, 41}, {50, 51}});
    openDialog(1);
    QVERIFY(isEnabled("addPreset_"));
    ModalAnswers answers;
    answerSize(answers, {20, 20}, {640, 480}, "ok"_qs, "Add fixed preset"_qs);
    click("addPreset_");
    QVERIFY(answers.isDone());
    QVERIFY(!isEnabled("addPreset_"));
    select(0, 0);
    click("deletePreset_");
    QVERIFY(isEnabled("addPreset_"));
}

void Tst_ImagePreferencesWidget::moreThanSixStoredPresetsAreCut() {
    QList<QSize> presets;
    for (int i = 0; i < 7; ++i)
        presets.append({100 + i, 100});
    preferences()->SetSizePresets(presets);
    openDialog(1);
    QVERIFY(!isEnabled("addPreset_"));
    click("ok_");
    QCOMPARE(storedPresets(), presets.mid(0, 6));
}

void Tst_ImagePreferencesWidget::presetIsEdited() {
    preferences()->SetSizePresets({{100, 50}, {200, 51}, {300, 52}, {400, 53}});
    openDialog(1);
    ModalAnswers answers;
    answerSize(answers, {400, 53}, {640, 480}, "ok"_qs, "Edit fixed preset"_qs);
    select(0, 1);
    click("editPreset_");
    QVERIFY(answers.isDone());
    QCOMPARE(cells(),
             (QStringList{"100 x 50"_qs, "640 x 480"_qs, "200 x 51"_qs, "-"_qs, "300 x 52"_qs, "-"_qs}));
}

void Tst_ImagePreferencesWidget::presetIsDeleted_data() {
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("cells");
    QTest::newRow("first") << 0 << "20 x 21,-,30 x 31,-,-,-";
    QTest::newRow("last") << 2 << "10 x 11,-,20 x 21,-,-,-";
}

void Tst_ImagePreferencesWidget::presetIsDeleted() {
    QFETCH(int, row);
    preferences()->SetSizePresets({{10, 11}, {20, 21}, {30, 31}});
    openDialog(1);
    select(row, 0);
    click("deletePreset_");
    QTEST(this->cells().join(QLatin1Char(',')), "cells");
    // The others have moved up, with new places in the list, and none is selected.
    for (int index = 0; index < 2; ++index)
        QCOMPARE(table()->item(index, 0)->data(Qt::UserRole).toInt(), index);
    QVERIFY(!isEnabled("deletePreset_") && !isEnabled("editPreset_"));
    QCOMPARE(storedPresets().size(), 3);
}

void Tst_ImagePreferencesWidget::cancelledDialogsChangeNothing() {
    preferences()->SetSizePresets({{100, 50}});
    openDialog(1);
    ModalAnswers answers;
    answerSize(answers, {20, 20}, {640, 480}, "cancel"_qs, "Add fixed preset"_qs);
    answerSize(answers, {100, 50}, {640, 480}, "cancel"_qs, "Edit fixed preset"_qs);
    click("addPreset_");
    select(0, 0);
    click("editPreset_");
    QVERIFY(answers.isDone());
    QCOMPARE(cells().first(), "100 x 50"_qs);
    QCOMPARE(cells().count("-"_qs), 5);
}

void Tst_ImagePreferencesWidget::toolIsChosen_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("byLink");
    QTest::newRow("file") << "tool.exe" << false;
    QTest::newRow("symbolic link") << "tool.exe" << true;
    QTest::newRow("program of this system") << "tool" << false;
}

void Tst_ImagePreferencesWidget::toolIsChosen() {
    QFETCH(QString, name);
    QFETCH(bool, byLink);
    QTemporaryDir folder;
    const QString tool = QDir(folder.path()).canonicalPath() + QLatin1Char('/') + name;
    const QString link = QDir(folder.path()).canonicalPath() + "/link.exe"_qs;
    QFile file(tool);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    QVERIFY(QFile::link(tool, link));
    openDialog(1);
    ModalAnswers answers;
    chooseFile(answers, byLink ? link : tool, [](QFileDialog *dialog) {
        QCOMPARE(dialog->nameFilters(),
                 (QStringList{"execute file (*.exe)"_qs, "batch file (*.bat)"_qs, "all files (*)"_qs}));
        QCOMPARE(dialog->selectedNameFilter(), "all files (*)"_qs);
    });
    click("browseEditTool_");
    QVERIFY(answers.isDone());
    QCOMPARE(child<QLineEdit>("editTool_")->text(), tool);
}

void Tst_ImagePreferencesWidget::cancelledToolStays() {
    preferences()->SetString(P::ToolFileName, "/bin/tool"_qs);
    openDialog(1);
    ModalAnswers answers;
    answers.addClose();
    click("browseEditTool_");
    QVERIFY(answers.isDone());
    QCOMPARE(child<QLineEdit>("editTool_")->text(), "/bin/tool"_qs);
}

QTEST_MAIN(Tst_ImagePreferencesWidget)
#include "tst_imagepreferenceswidget.moc"
