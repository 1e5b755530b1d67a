#include "canvas/editor.h"
#include "history/historylistwidget.h"
#include "history/historylistwidgetitem.h"
#include "history/historywidget.h"
#include "support/literals.h"
#include "support/modalanswers.h"
#include "support/session.h"

#include <QFileDialog>
#include <QImageReader>
#include <QLineEdit>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

class Tst_SaveFlow : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void autoSaveWritesWithoutAsking();
    void autoSaveNeverOverwrites();
    void autoSaveInsideAnotherTakesANameOfItsOwn_data();
    void autoSaveInsideAnotherTakesANameOfItsOwn();
    void dialogInsideASaveCannotTakeItsName();
    void writtenFileMayBeReplacedWhileItIsReported();
    void autoSaveWhileTheClockGoesBackwards();
    void autoSaveFallsBackToPictures();
    void autoSaveMovesTheFolderOfTheNextSave();
    void autoSaveWithoutItsFolderFails();
    void dialogSuggestsNameAndFilter_data();
    void dialogSuggestsNameAndFilter();
    void missingFolderBeginsInTheNearestOne();
    void suffixComesFromNameOrFilter_data();
    void suffixComesFromNameOrFilter();
    void nameTypedUntilTheEndGetsItsSuffix_data();
    void nameTypedUntilTheEndGetsItsSuffix();
    void quoteIsALetterOfTheName_data();
    void quoteIsALetterOfTheName();
    void folderWithAQuoteIsOpened();
    void missingFolderTakesNoFileElsewhere_data();
    void missingFolderTakesNoFileElsewhere();
    void existingFileIsReplacedAfterOneQuestion_data();
    void existingFileIsReplacedAfterOneQuestion();
    void refusedReplacementLeadsBackToTheDialog();
    void cancelledDialogDoesNothing();
    void noRowCountsAndDoesNothing();
    void rowThatVanishesDuringTheDialog();
    void formatsAreCounted_data();
    void formatsAreCounted();
    void jpgQualityIsATextOfANumber_data();
    void jpgQualityIsATextOfANumber();
    void resultIsShownUnlessUnwanted_data();
    void resultIsShownUnlessUnwanted();
    void skipSwitchesTheResultOff();
    void failureNamesItsKind_data();
    void failureNamesItsKind();
    void workFolderTakesNoSave_data();
    void workFolderTakesNoSave();
    void workFolderTakesNoBatch();

private:
    void saveTyped(const QString &typed, const QString &file, bool isThere);
    void select(const QString &name, const QSize &size = {40, 30}) {
        m_panel->addImage(Session::captureFile(name, size));
    }
    Editor *editor() const { return m_panel->findChild<HistoryListWidget *>()->rowItem(0)->editor(); }
    QString target(const QString &name) const { return m_target->filePath(name); }
    void answerFileDialog(ModalAnswers &answers, const QString &name, const QString &filter = {}) {
        answers.add([=](QWidget *widget) {
            auto *dialog = qobject_cast<QFileDialog *>(widget);
            QVERIFY(dialog);
            if (!filter.isEmpty()) {
                dialog->selectNameFilter(filter);
                emit dialog->filterSelected(filter);
            }
            dialog->findChild<QLineEdit *>("fileNameEdit"_qs)->setText(name);
            static_cast<QDialog *>(dialog)->accept();
        });
    }
    /// Accepts the file dialog while its field has the focus, as Enter does.
    static void acceptWhileTyping(QWidget *dialog, const QString &name) {
        auto *field = dialog->findChild<QLineEdit *>("fileNameEdit"_qs);
        dialog->activateWindow();
        field->setFocus();
        QTRY_VERIFY(field->hasFocus());
        field->setText(name);
        static_cast<QDialog *>(dialog)->accept();
    }
    void setText(TindraPreferences::Id id, const QString &text) {
        m_session->preferences->SetString(id, text);
    }
    QString text(TindraPreferences::Id id) { return m_session->preferences->GetString(id, {}); }

    std::unique_ptr<Session> m_session;
    std::unique_ptr<HistoryWidget> m_panel;
    std::unique_ptr<QTemporaryDir> m_target;
};

void Tst_SaveFlow::init() {
    m_session = std::make_unique<Session>();
    m_session->preferences->SetBool(TindraPreferences::ShowPostSaveDlg, false);
    m_panel = std::make_unique<HistoryWidget>();
    m_target = std::make_unique<QTemporaryDir>();
    setText(TindraPreferences::FilePath, m_target->path());
    FileNameUtil::setClock([] { return QDateTime({2024, 5, 6}, {7, 8, 9}); });
}

void Tst_SaveFlow::cleanup() {
    FileNameUtil::setClock({});
    m_panel.reset();
    m_session.reset();
}

void Tst_SaveFlow::autoSaveWritesWithoutAsking() {
    setText(TindraPreferences::AutoSavePath, m_target->path());
    select("a"_qs, {40, 30});
    ModalAnswers answers;
    m_panel->onSaveCurrentImage(true, true);
    QVERIFY(answers.isDone());
    QCOMPARE(QImageReader(target("20240506_070809.png"_qs)).size(), QSize(40, 30));
    QCOMPARE(editor()->savedPath(), target("20240506_070809.png"_qs));
}

void Tst_SaveFlow::autoSaveNeverOverwrites() {
    setText(TindraPreferences::AutoSavePath, m_target->path());
    select("a"_qs);
    m_panel->onSaveCurrentImage(true, true);
    m_panel->onSaveCurrentImage(true, true);
    QCOMPARE(QDir(m_target->path()).entryList(QDir::Files).size(), 2);
}

void Tst_SaveFlow::autoSaveInsideAnotherTakesANameOfItsOwn_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("outer");
    QTest::addColumn<QString>("inner");
    QTest::newRow("date") << int(FileNameUtil::Date) << "20240506_070809.png"
                          << "20240506_070809 (1).png";
    QTest::newRow("serial") << int(FileNameUtil::Serial) << "0001.png"
                            << "0002.png";
}

// The second capture comes with the events before the first one's first byte.
void Tst_SaveFlow::autoSaveInsideAnotherTakesANameOfItsOwn() {
    QFETCH(int, type);
    QFETCH(QString, outer);
    QFETCH(QString, inner);
    m_session->preferences->SetInt(TindraPreferences::FileNameType, type);
    setText(TindraPreferences::AutoSavePath, m_target->path());
    const QString link = target("link"_qs);
    QVERIFY(QFile::link(m_target->path(), link)); // another road to the same folder
    select("a"_qs, {40, 30});
    const Editor *const first = editor();
    QTimer::singleShot(0, this, [&] {
        QVERIFY(!first->isSaved());
        setText(TindraPreferences::AutoSavePath, link);
        select("b"_qs, {7, 5});
        m_panel->onSaveCurrentImage(true, false);
    });
    m_panel->onSaveCurrentImage(true, false);
    QCOMPARE(QImageReader(target(outer)).size(), QSize(40, 30));
    QCOMPARE(QImageReader(target(inner)).size(), QSize(7, 5));
    QCOMPARE(first->savedPath(), target(outer));
    QCOMPARE(QFileInfo(editor()->savedPath()).canonicalFilePath(), target(inner));
}

void Tst_SaveFlow::dialogInsideASaveCannotTakeItsName() {
    setText(TindraPreferences::AutoSavePath, m_target->path());
    select("a"_qs, {40, 30});
    const Editor *const first = editor();
    ModalAnswers answers;
    QTimer::singleShot(0, this, [&] {
        QVERIFY(!first->isSaved());
        select("b"_qs, {7, 5});
        answerFileDialog(answers, target("20240506_070809.png"_qs));
        answers.addPress("Ok"_qs);
        m_panel->onSaveCurrentImage(false, true);
    });
    m_panel->onSaveCurrentImage(true, false);
    QVERIFY(answers.isDone());
    QCOMPARE(QImageReader(target("20240506_070809.png"_qs)).size(), QSize(40, 30));
    QVERIFY(first->isSaved());
    QVERIFY(!editor()->isSaved());
}

void Tst_SaveFlow::writtenFileMayBeReplacedWhileItIsReported() {
    const QString file = target("20240506_070809.png"_qs);
    setText(TindraPreferences::AutoSavePath, m_target->path());
    m_session->preferences->SetBool(TindraPreferences::ShowPostSaveDlg, true);
    select("a"_qs, {40, 30});
    ModalAnswers report;
    report.add([&](QWidget *message) {
        select("b"_qs, {7, 5});
        QVERIFY(m_panel->saveImageTo(editor(), file, true, false));
        message->close();
    });
    m_panel->onSaveCurrentImage(true, true);
    QVERIFY(report.isDone());
    QCOMPARE(QImageReader(file).size(), QSize(7, 5));
    QCOMPARE(editor()->savedPath(), file);
}

// As it does once a year, and when the computer learns the right time: a second comes twice.
void Tst_SaveFlow::autoSaveWhileTheClockGoesBackwards() {
    setText(TindraPreferences::AutoSavePath, m_target->path());
    int second = 9;
    FileNameUtil::setClock([&second] { return QDateTime({2024, 5, 6}, {7, 8, second}); });
    int width = 10;
    for (const int shown : {9, 8, 9, 8}) {
        second = shown;
        ++width;
        select("shot%1"_qs.arg(width), {width, 4});
        m_panel->onSaveCurrentImage(true, true);
    }
    const QStringList names{"20240506_070809.png"_qs, "20240506_070808.png"_qs, "20240506_070809 (1).png"_qs,
                            "20240506_070808 (1).png"_qs};
    for (int i = 0; i < names.size(); ++i)
        QCOMPARE(QImageReader(target(names[i])).size(), QSize(11 + i, 4));
    QCOMPARE(QDir(m_target->path()).entryList(QDir::Files).size(), names.size());
}

void Tst_SaveFlow::autoSaveFallsBackToPictures() {
    setText(TindraPreferences::AutoSavePath, {});
    const QString pictures = QStandardPaths::standardLocations(QStandardPaths::PicturesLocation).first();
    QVERIFY(QDir().mkpath(pictures));
    select("a"_qs);
    m_panel->onSaveCurrentImage(true, true);
    QVERIFY(QFile::remove(pictures + "/20240506_070809.png"_qs));
}

void Tst_SaveFlow::autoSaveMovesTheFolderOfTheNextSave() {
    QTemporaryDir other;
    setText(TindraPreferences::AutoSavePath, other.path());
    select("a"_qs);
    m_panel->onSaveCurrentImage(true, true);
    QCOMPARE(text(TindraPreferences::FilePath), other.path());
}

void Tst_SaveFlow::autoSaveWithoutItsFolderFails() {
    setText(TindraPreferences::AutoSavePath, target("missing"_qs));
    select("a"_qs);
    ModalAnswers answers;
    answers.addPress("Ok"_qs);
    m_panel->onSaveCurrentImage(true, true);
    QVERIFY(answers.isDone());
    QCOMPARE(answers.texts(), QStringList{"failed to access save file."_qs});
    QVERIFY(!QFile::exists(target("missing"_qs)));
    QVERIFY(!editor()->isSaved());
    QCOMPARE(text(TindraPreferences::FilePath), m_target->path());
}

void Tst_SaveFlow::dialogSuggestsNameAndFilter_data() {
    QTest::addColumn<int>("format");
    QTest::addColumn<QString>("filter");
    QTest::newRow("png") << 0 << "png file (*.png)";
    QTest::newRow("jpg") << 1 << "jpg file (*.jpg)";
    QTest::newRow("bmp") << 2 << "bmp file (*.bmp)";
    QTest::newRow("gif") << 3 << "gif file (*.gif)";
    QTest::newRow("webp") << 4 << "webp file (*.webp)";
    QTest::newRow("unknown") << 5 << "png file (*.png)";
}

void Tst_SaveFlow::dialogSuggestsNameAndFilter() {
    QFETCH(int, format);
    m_session->preferences->SetInt(TindraPreferences::FileFormat, format);
    select("a"_qs);
    QString folder;
    QString name;
    QString filter;
    QStringList filters;
    ModalAnswers answers;
    answers.add([&](QWidget *widget) {
        auto *dialog = qobject_cast<QFileDialog *>(widget);
        QVERIFY(dialog);
        folder = dialog->directory().absolutePath();
        name = dialog->findChild<QLineEdit *>("fileNameEdit"_qs)->text();
        filter = dialog->selectedNameFilter();
        filters = dialog->nameFilters();
        dialog->reject();
    });
    m_panel->onSaveCurrentImage(false, true);
    QVERIFY(answers.isDone());
    QCOMPARE(folder, m_target->path());
    QCOMPARE(name, "20240506_070809"_qs);
    QTEST(filter, "filter");
    QCOMPARE(filters, (QStringList{"png file (*.png)"_qs, "jpg file (*.jpg)"_qs, "bmp file (*.bmp)"_qs,
                                   "gif file (*.gif)"_qs, "webp file (*.webp)"_qs}));
}

void Tst_SaveFlow::missingFolderBeginsInTheNearestOne() {
    setText(TindraPreferences::FilePath, target("missing/too"_qs));
    select("a"_qs, {40, 30});
    ModalAnswers answers;
    answers.add([&](QWidget *widget) {
        auto *dialog = qobject_cast<QFileDialog *>(widget);
        QVERIFY(dialog);
        QCOMPARE(dialog->directory().absolutePath(), m_target->path());
        QCOMPARE(dialog->findChild<QLineEdit *>("fileNameEdit"_qs)->text(), "20240506_070809"_qs);
        static_cast<QDialog *>(dialog)->accept();
    });
    m_panel->onSaveCurrentImage(false, true);
    QVERIFY(answers.isDone());
    QCOMPARE(QImageReader(target("20240506_070809.png"_qs)).size(), QSize(40, 30));
}

void Tst_SaveFlow::suffixComesFromNameOrFilter_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("format");
    QTest::newRow("no suffix") << "shot"
                               << ""
                               << "shot.png" << QByteArray("png");
    QTest::newRow("no suffix, other filter") << "shot"
                                             << "bmp file (*.bmp)"
                                             << "shot.bmp" << QByteArray("bmp");
    QTest::newRow("typed suffix wins") << "shot.gif"
                                       << "bmp file (*.bmp)"
                                       << "shot.gif" << QByteArray("gif");
    QTest::newRow("typed in capitals") << "shot.PNG"
                                       << ""
                                       << "shot.PNG" << QByteArray("png");
    QTest::newRow("a dot is no suffix") << "version 1.5"
                                        << ""
                                        << "version 1.5.png" << QByteArray("png");
    QTest::newRow("nor is one at the end") << "shot."
                                           << ""
                                           << "shot.png" << QByteArray("png");
    QTest::newRow("several at the end, other filter") << "shot..."
                                                      << "bmp file (*.bmp)"
                                                      << "shot.bmp" << QByteArray("bmp");
    QTest::newRow("one behind the suffix") << "shot.gif."
                                           << ""
                                           << "shot.gif" << QByteArray("gif");
}

void Tst_SaveFlow::suffixComesFromNameOrFilter() {
    QFETCH(QString, typed);
    QFETCH(QString, filter);
    QFETCH(QString, file);
    select("a"_qs);
    ModalAnswers answers;
    answerFileDialog(answers, typed, filter);
    m_panel->onSaveCurrentImage(false, true);
    QVERIFY(answers.isDone());
    QCOMPARE(QDir(m_target->path()).entryList(QDir::Files), QStringList{file});
    QImageReader reader(target(file));
    reader.setDecideFormatFromContent(true);
    QTEST(reader.format(), "format");
    QCOMPARE(editor()->savedPath(), target(file));
    QCOMPARE(m_session->preferences->GetInt(TindraPreferences::FileFormat, -1), 0);
}

void Tst_SaveFlow::nameTypedUntilTheEndGetsItsSuffix_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("file");
    QTest::addColumn<bool>("isThere");
    for (const bool isThere : {false, true}) {
        const auto row = [&](const char *name, const QString &typed, const QString &file) {
            QTest::addRow("%s, %s", name, isThere ? "there already" : "new") << typed << file << isThere;
        };
        row("name", "shot"_qs, "shot.png"_qs);
        row("with a dot", "version 1.5"_qs, "version 1.5.png"_qs);
        row("in a folder", "inner/shot"_qs, "inner/shot.png"_qs);
        row("with a dot in a folder", "inner/version 1.5"_qs, "inner/version 1.5.png"_qs);
    }
}

/// The user saves while the field has the focus, and replaces what is there.
void Tst_SaveFlow::saveTyped(const QString &typed, const QString &file, bool isThere) {
    if (isThere)
        QVERIFY(QImage(7, 7, QImage::Format_RGB32).save(file));
    select("a"_qs, {40, 30});
    ModalAnswers answers;
    answers.add([&](QWidget *dialog) {
        ModalAnswers question;
        if (isThere)
            question.addPress("Yes"_qs);
        acceptWhileTyping(dialog, typed);
        QVERIFY(question.isDone());
        QVERIFY(!dialog->isVisible());
    });
    m_panel->onSaveCurrentImage(false, true);
    QVERIFY(answers.isDone());
    QCOMPARE(QImageReader(file).size(), QSize(40, 30));
    QCOMPARE(editor()->savedPath(), file);
}

// While the field has the focus, the toolkit's dialog keeps what stands there whatever it is told.
void Tst_SaveFlow::nameTypedUntilTheEndGetsItsSuffix() {
    QFETCH(QString, typed);
    QFETCH(QString, file);
    QFETCH(bool, isThere);
    QVERIFY(QDir(m_target->path()).mkdir("inner"_qs));
    saveTyped(typed, target(file), isThere);
}

void Tst_SaveFlow::quoteIsALetterOfTheName_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("isThere");
    const QString home = QDir::homePath() + "/"_qs;
    for (const bool isThere : {false, true}) {
        const auto row = [&](const char *name, const QString &typed, const QString &path) {
            QTest::addRow("%s, %s", name, isThere ? "there already" : "new") << typed << path << isThere;
        };
        row("one", "5\" screen"_qs, "5\" screen.png"_qs);
        row("one at the end", "5\""_qs, "5\".png"_qs);
        row("a pair", "say \"hi\".png"_qs, "say \"hi\".png"_qs);
        row("all of it", "\"shot.png\""_qs, "\"shot.png\".png"_qs);
        row("in a folder", "inner/5\" screen.bmp"_qs, "inner/5\" screen.bmp"_qs);
        row("in a folder that has one", "7\" inner/shot"_qs, "7\" inner/shot.png"_qs);
        row("in the folder above", "inner/../5\" screen"_qs, "5\" screen.png"_qs);
        row("at home", "~/5\" screen"_qs, home + "5\" screen.png"_qs);
    }
}

void Tst_SaveFlow::quoteIsALetterOfTheName() {
    QFETCH(QString, typed);
    QFETCH(QString, path);
    QFETCH(bool, isThere);
    const QString file = QDir(m_target->path()).absoluteFilePath(path);
    QVERIFY(QDir(m_target->path()).mkdir("inner"_qs));
    QVERIFY(QDir(m_target->path()).mkdir("7\" inner"_qs));
    QFile::remove(file);
    saveTyped(typed, file, isThere);
}

void Tst_SaveFlow::folderWithAQuoteIsOpened() {
    QVERIFY(QDir(m_target->path()).mkdir("7\" inner"_qs));
    select("a"_qs, {40, 30});
    ModalAnswers answers;
    answers.add([&](QWidget *widget) {
        acceptWhileTyping(widget, "7\" inner"_qs);
        QVERIFY(widget->isVisible());
        QCOMPARE(qobject_cast<QFileDialog *>(widget)->directory().absolutePath(), target("7\" inner"_qs));
        acceptWhileTyping(widget, "shot"_qs);
    });
    m_panel->onSaveCurrentImage(false, true);
    QVERIFY(answers.isDone());
    QCOMPARE(QImageReader(target("7\" inner/shot.png"_qs)).size(), QSize(40, 30));
}

void Tst_SaveFlow::missingFolderTakesNoFileElsewhere_data() {
    QTest::addColumn<QString>("typed");
    QTest::newRow("suffix of the filter") << "missing/shot";
    QTest::newRow("typed with its suffix") << "missing/shot.png";
}

// The folder that is shown has a file of that name, which nobody spoke of.
void Tst_SaveFlow::missingFolderTakesNoFileElsewhere() {
    QFETCH(QString, typed);
    QVERIFY(QImage(7, 7, QImage::Format_RGB32).save(target("shot.png"_qs)));
    select("a"_qs);
    ModalAnswers answers;
    answers.add([&](QWidget *dialog) {
        acceptWhileTyping(dialog, typed);
        QVERIFY(!dialog->isVisible());
    });
    answers.addPress("Ok"_qs);
    m_panel->onSaveCurrentImage(false, true);
    QVERIFY(answers.isDone());
    QCOMPARE(answers.texts().last(), "failed to access save file."_qs);
    QCOMPARE(QDir(m_target->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList{"shot.png"_qs});
    QCOMPARE(QImageReader(target("shot.png"_qs)).size(), QSize(7, 7));
    QVERIFY(!editor()->isSaved());
}

void Tst_SaveFlow::existingFileIsReplacedAfterOneQuestion_data() {
    QTest::addColumn<QString>("typed");
    QTest::newRow("typed with its suffix") << "shot.png";
    QTest::newRow("suffix of the filter") << "shot";
}

void Tst_SaveFlow::existingFileIsReplacedAfterOneQuestion() {
    QFETCH(QString, typed);
    QVERIFY(QImage(7, 7, QImage::Format_RGB32).save(target("shot.png"_qs)));
    select("a"_qs, {40, 30});
    ModalAnswers answers;
    answers.add([&](QWidget *dialog) {
        ModalAnswers question;
        question.addPress("Yes"_qs);
        dialog->findChild<QLineEdit *>("fileNameEdit"_qs)->setText(typed);
        static_cast<QDialog *>(dialog)->accept();
        QVERIFY(question.isDone());
        QCOMPARE(question.texts(), QStringList{"\"shot.png\" exists already.\nWould you replace it?"_qs});
        QVERIFY(!dialog->isVisible());
    });
    m_panel->onSaveCurrentImage(false, true);
    QVERIFY(answers.isDone());
    QCOMPARE(QImageReader(target("shot.png"_qs)).size(), QSize(40, 30));
    QCOMPARE(QDir(m_target->path()).entryList(QDir::Files), QStringList{"shot.png"_qs});
}

void Tst_SaveFlow::refusedReplacementLeadsBackToTheDialog() {
    QVERIFY(QImage(7, 7, QImage::Format_RGB32).save(target("shot.png"_qs)));
    select("a"_qs, {40, 30});
    ModalAnswers answers;
    answers.add([&](QWidget *dialog) {
        auto *name = dialog->findChild<QLineEdit *>("fileNameEdit"_qs);
        {
            ModalAnswers question;
            // Enter is the harmless answer.
            question.add([](QWidget *asking) {
                QVERIFY(asking->inherits("MessageDialog"));
                QTest::keyClick(asking, Qt::Key_Return);
            });
            name->setText("shot"_qs);
            static_cast<QDialog *>(dialog)->accept();
            QVERIFY(question.isDone());
        }
        QVERIFY(dialog->isVisible());
        QCOMPARE(QImageReader(target("shot.png"_qs)).size(), QSize(7, 7));
        // A name that is free needs no question.
        dialog->activateWindow();
        name->setFocus();
        QTRY_VERIFY(name->hasFocus());
        name->setText("other"_qs);
        static_cast<QDialog *>(dialog)->accept();
        QVERIFY(!dialog->isVisible());
    });
    m_panel->onSaveCurrentImage(false, true);
    QVERIFY(answers.isDone());
    QCOMPARE(QImageReader(target("shot.png"_qs)).size(), QSize(7, 7));
    QCOMPARE(QImageReader(target("other.png"_qs)).size(), QSize(40, 30));
}

void Tst_SaveFlow::cancelledDialogDoesNothing() {
    select("a"_qs);
    ModalAnswers answers;
    answers.addClose();
    m_panel->onSaveCurrentImage(false, true);
    QVERIFY(answers.isDone());
    QVERIFY(!editor()->isSaved());
    QVERIFY(QDir(m_target->path()).isEmpty());
    QCOMPARE(m_session->usage, QStringList{"cap_30_01"_qs});
}

void Tst_SaveFlow::noRowCountsAndDoesNothing() {
    ModalAnswers answers;
    m_panel->onSaveCurrentImage(false, true);
    m_panel->onSaveCurrentImage(true, true);
    QVERIFY(answers.isDone());
    QCOMPARE(m_session->usage, (QStringList{"cap_30_01"_qs, "cap_30_01"_qs}));
}

void Tst_SaveFlow::rowThatVanishesDuringTheDialog() {
    select("a"_qs);
    ModalAnswers answers;
    answers.add([this](QWidget *dialog) {
        m_panel->removeOldestImage();
        dialog->findChild<QLineEdit *>("fileNameEdit"_qs)->setText("shot"_qs);
        static_cast<QDialog *>(dialog)->accept();
    });
    answers.addPress("Ok"_qs);
    m_panel->onSaveCurrentImage(false, true);
    QVERIFY(answers.isDone());
    QCOMPARE(answers.texts().last(), "failed to save image."_qs);
    QVERIFY(QDir(m_target->path()).isEmpty());
}

void Tst_SaveFlow::formatsAreCounted_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("event");
    QTest::newRow("png") << "a.png"
                         << "capt_1_011";
    QTest::newRow("jpg") << "a.JPG"
                         << "capt_1_012";
    QTest::newRow("bmp") << "a.bmp"
                         << "capt_1_013";
    QTest::newRow("gif") << "a.gif"
                         << "capt_1_014";
    QTest::newRow("webp") << "a.webp"
                          << "cap_302_01";
    QTest::newRow("others are not") << "a.jpeg"
                                    << "";
}

void Tst_SaveFlow::formatsAreCounted() {
    QFETCH(QString, name);
    QFETCH(QString, event);
    select("a"_qs);
    QVERIFY(m_panel->saveImageTo(editor(), target(name), false, true));
    QCOMPARE(m_session->usage, event.isEmpty() ? QStringList() : QStringList{event});
}

void Tst_SaveFlow::jpgQualityIsATextOfANumber_data() {
    QTest::addColumn<QString>("quality");
    QTest::addColumn<int>("writtenAs");
    QTest::newRow("number") << "10" << 10;
    QTest::newRow("best") << "100" << 100;
    QTest::newRow("no number") << "good" << 100;
    QTest::newRow("empty") << "" << 100;
}

void Tst_SaveFlow::jpgQualityIsATextOfANumber() {
    QFETCH(QString, quality);
    QFETCH(int, writtenAs);
    const QString source = workFolder() + "/noise.png"_qs;
    QImage noise(64, 64, QImage::Format_RGB32);
    for (int y = 0; y < noise.height(); ++y) {
        for (int x = 0; x < noise.width(); ++x)
            noise.setPixel(x, y, qRgb(x * 37 % 256, y * 91 % 256, x * y * 13 % 256));
    }
    noise.save(source);
    m_panel->addImage(source);
    setText(TindraPreferences::JpgQuality, quality);
    QVERIFY(m_panel->saveImageTo(editor(), target("a.jpg"_qs), false, true));
    noise.save(target("expected.jpg"_qs), "jpg", writtenAs);
    QCOMPARE(QImage(target("a.jpg"_qs)), QImage(target("expected.jpg"_qs)));
}

void Tst_SaveFlow::resultIsShownUnlessUnwanted_data() {
    QTest::addColumn<bool>("preference");
    QTest::addColumn<bool>("showResult");
    QTest::addColumn<int>("dialogs");
    QTest::newRow("shown") << true << true << 1;
    QTest::newRow("switched off") << false << true << 0;
    QTest::newRow("silent") << true << false << 0;
}

void Tst_SaveFlow::resultIsShownUnlessUnwanted() {
    QFETCH(bool, preference);
    QFETCH(bool, showResult);
    QFETCH(int, dialogs);
    m_session->preferences->SetBool(TindraPreferences::ShowPostSaveDlg, preference);
    select("a"_qs);
    ModalAnswers answers;
    for (int i = 0; i < dialogs; ++i)
        answers.addPress("Close"_qs);
    const QString path = target("a.png"_qs);
    QVERIFY(m_panel->saveImageTo(editor(), path, false, showResult));
    QVERIFY(answers.isDone());
    QCOMPARE(answers.texts().size(), dialogs);
    if (dialogs > 0)
        QCOMPARE(answers.texts().first(), "Saved captured image.|"_qs + path);
    QCOMPARE(m_session->preferences->GetBool(TindraPreferences::ShowPostSaveDlg, !preference), preference);
}

void Tst_SaveFlow::skipSwitchesTheResultOff() {
    m_session->preferences->SetBool(TindraPreferences::ShowPostSaveDlg, true);
    select("a"_qs);
    ModalAnswers answers;
    answers.addTickAndPress("Close"_qs);
    QVERIFY(m_panel->saveImageTo(editor(), target("a.png"_qs), false, true));
    QVERIFY(m_panel->saveImageTo(editor(), target("b.png"_qs), false, true));
    QVERIFY(answers.isDone());
}

void Tst_SaveFlow::failureNamesItsKind_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("message");
    QTest::newRow("no such folder") << "missing/a.png"
                                    << "failed to access save file.";
    QTest::newRow("writable, but no format") << "existing.xyz"
                                             << "failed to save image.";
}

void Tst_SaveFlow::failureNamesItsKind() {
    QFETCH(QString, name);
    QFETCH(QString, message);
    QFile existing(target("existing.xyz"_qs));
    QVERIFY(existing.open(QIODevice::WriteOnly));
    existing.close();
    select("a"_qs);
    ModalAnswers answers;
    answers.addPress("Ok"_qs);
    QVERIFY(!m_panel->saveImageTo(editor(), target(name), true, true));
    QVERIFY(answers.isDone());
    QCOMPARE(answers.texts(), QStringList{message});
    QVERIFY(!editor()->isSaved());
    QVERIFY(!m_panel->saveImageTo(nullptr, target("b.png"_qs), true, true));
}

void Tst_SaveFlow::workFolderTakesNoSave_data() {
    QTest::addColumn<QString>("name");
    QTest::newRow("new file") << "saved.png";
    QTest::newRow("over the capture") << "a.png";
}

// An exit clears it, whatever the user saved there.
void Tst_SaveFlow::workFolderTakesNoSave() {
    QFETCH(QString, name);
    select("a"_qs);
    const QStringList before = QDir(workFolder()).entryList(QDir::Files);
    setText(TindraPreferences::AutoSavePath, workFolder());
    ModalAnswers answers;
    answers.addPress("Ok"_qs);
    m_panel->onSaveCurrentImage(true, true);
    answerFileDialog(answers, workFolder() + "/fresh.png"_qs);
    answers.addPress("Ok"_qs);
    m_panel->onSaveCurrentImage(false, true);
    answers.addPress("Ok"_qs);
    QVERIFY(!m_panel->saveImageTo(editor(), workFolder() + "/"_qs + name, true, true));
    QVERIFY(answers.isDone());
    QCOMPARE(answers.texts().filter("failed to access save file."_qs).size(), 3);
    QVERIFY(!editor()->isSaved());
    QCOMPARE(QDir(workFolder()).entryList(QDir::Files), before);
    QCOMPARE(text(TindraPreferences::FilePath), m_target->path());
}

void Tst_SaveFlow::workFolderTakesNoBatch() {
    select("a"_qs);
    setText(TindraPreferences::FilePath, workFolder() + "/folder"_qs);
    ModalAnswers answers;
    answers.addPress("save"_qs);
    answers.addPress("Ok"_qs);
    m_panel->onClickSaveImages();
    QVERIFY(answers.isDone());
    QCOMPARE(answers.texts().last(), "failed to save images.\nplease change save folder."_qs);
    QVERIFY(!editor()->isSaved());
    QVERIFY(!QFile::exists(workFolder() + "/folder"_qs));
}

QTEST_MAIN(Tst_SaveFlow)
#include "tst_saveflow.moc"
