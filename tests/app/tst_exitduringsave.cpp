#include "app/windowtest.h"
#include "ui/messagedialog.h"

/// Ends that are asked for while captures are being saved.
class Tst_ExitDuringSave : public WindowTest {
    Q_OBJECT
private slots:
    void init() { WindowTest::init(); }
    void cleanup() { WindowTest::cleanup(); }

    void batchIsWrittenBeforeTheEnd_data();
    void batchIsWrittenBeforeTheEnd();
    void exitDuringABatchAsksBehindItsReport();
    void killDuringABatchWaitsForNoReport();
    void saveIsWrittenBeforeTheEnd_data();
    void saveIsWrittenBeforeTheEnd();
    void dialogInsideASaveHoldsNoKill();
    void dialogAfterAHeldKillHoldsItNoLonger();
    void exitUnderADialogInsideASaveIsRefused();
    void exitDuringASaveWaitsForItsReport();

private:
    void tellSomething() { MessageDialog::warning(m_window.get(), "Tindra"_qs, "something"_qs); }
};

void Tst_ExitDuringSave::batchIsWrittenBeforeTheEnd_data() {
    QTest::addColumn<QString>("line");
    QTest::newRow("exit") << "/close";
    QTest::newRow("kill") << "/kill";
}

void Tst_ExitDuringSave::batchIsWrittenBeforeTheEnd() {
    QFETCH(QString, line);
    preferences()->SetBool(TindraPreferences::ShowPostSaveAllDlg, false);
    preferences()->SetInt(TindraPreferences::FileNameType, FileNameUtil::Custom);
    preferences()->SetString(TindraPreferences::FileNameTamplate, "shot"_qs);
    for (const QString &name : {"a"_qs, "b"_qs, "c"_qs})
        addCapture(name);
    forgetMessages();
    bool endedInside = false;
    connect(list()->rowItem(2)->editor(), &Editor::imageSaved, this, [&] {
        treat(line);
        QCoreApplication::processEvents(); // as the batch does between two files
        endedInside = m_window->hasLeft();
    });
    ModalAnswers answers;
    answers.addPress("save"_qs);
    QVERIFY(quits([this] { m_window->findChild<QPushButton *>("historySaveImages_"_qs)->click(); }));
    QVERIFY(answers.isDone());
    QVERIFY(!endedInside);
    QCOMPARE(QDir(m_target->path()).entryList({"shot_*.png"_qs}, QDir::Files).size(), 3);
    QCOMPARE(messages().count(0x867), 1);
}

void Tst_ExitDuringSave::exitDuringABatchAsksBehindItsReport() {
    preferences()->SetBool(TindraPreferences::ShowPostSaveAllDlg, true);
    for (const QString &name : {"a"_qs, "b"_qs})
        addCapture(name);
    const auto *panel = m_window->findChild<HistoryWidget *>();
    panel->findChild<QPushButton *>("historySelectMode_"_qs)->click();
    const QWidget *row = list()->itemWidget(list()->item(1));
    row->findChild<QPushButton *>("selectButton_"_qs)->setChecked(true);
    connect(list()->rowItem(1)->editor(), &Editor::imageSaved, this, [&] {
        treat("/close"_qs);
        QCoreApplication::processEvents();
    });
    ModalAnswers answers;
    answers.addPress("save"_qs);
    answers.addPress("Close"_qs);
    answers.addPress("Yes"_qs); // row 0 is not saved
    QVERIFY(quits([panel] { panel->findChild<QPushButton *>("historySaveImages_"_qs)->click(); }));
    QVERIFY(answers.isDone());
}

void Tst_ExitDuringSave::killDuringABatchWaitsForNoReport() {
    preferences()->SetBool(TindraPreferences::ShowPostSaveAllDlg, true);
    addCapture("a"_qs);
    connect(list()->rowItem(0)->editor(), &Editor::imageSaved, this, [&] {
        treat("/kill"_qs);
        QCoreApplication::processEvents();
    });
    ModalAnswers answers;
    answers.addPress("save"_qs);
    answers.add([](QWidget *) {}); // the report stays open until the program ends
    QVERIFY(quits([this] { m_window->findChild<QPushButton *>("historySaveImages_"_qs)->click(); }));
    QVERIFY(m_window->hasLeft());
}

void Tst_ExitDuringSave::saveIsWrittenBeforeTheEnd_data() {
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("captureStays");
    QTest::newRow("exit") << "/close" << false;
    QTest::newRow("kill") << "/kill" << true;
    QTest::newRow("end of the session") << "" << true;
}

// What is saved at this moment is not asked about, and nothing goes before it is written.
void Tst_ExitDuringSave::saveIsWrittenBeforeTheEnd() {
    QFETCH(QString, line);
    QFETCH(bool, captureStays);
    preferences()->SetString(TindraPreferences::AutoSavePath, m_target->path());
    addCapture("a"_qs);
    Editor *const editor = list()->rowItem(0)->editor();
    const QString file = editor->imageKey();
    bool leftBefore = false;
    connect(editor, &Editor::imageSaved, this, [&] { leftBefore = m_window->hasLeft(); });
    const auto end = [&] {
        QVERIFY(!editor->isSaved());
        if (line.isEmpty())
            endSession();
        else
            treat(line);
    };
    ModalAnswers answers;
    QVERIFY(quits([this, end] {
        QTimer::singleShot(0, this, end); // comes with the events around the write
        emit m_window->saveCurrentImage(true, false);
    }));
    QVERIFY(answers.isDone());
    QCOMPARE(leftBefore, line.isEmpty()); // only the desktop does not wait
    QCOMPARE(QDir(m_target->path()).entryList({"*.png"_qs}, QDir::Files).size(), 1);
    m_window.reset();
    QCOMPARE(QFile::exists(file), captureStays);
}

void Tst_ExitDuringSave::dialogInsideASaveHoldsNoKill() {
    preferences()->SetString(TindraPreferences::AutoSavePath, m_target->path());
    addCapture("a"_qs);
    bool hasLeftInside = false;
    ModalAnswers answers;
    answers.add([&](QWidget *message) {
        treat("/kill"_qs);
        QCoreApplication::processEvents();
        hasLeftInside = m_window->hasLeft();
        message->close();
    });
    QVERIFY(quits([this] {
        QTimer::singleShot(0, this, [this] { tellSomething(); });
        emit m_window->saveCurrentImage(true, false);
    }));
    QVERIFY(answers.isDone());
    QVERIFY(hasLeftInside);
    QCOMPARE(QDir(m_target->path()).entryList({"*.png"_qs}, QDir::Files).size(), 1); // written all the same
}

// The kill comes first and is held; the dialog that opens then is answered by nobody but the end.
void Tst_ExitDuringSave::dialogAfterAHeldKillHoldsItNoLonger() {
    preferences()->SetString(TindraPreferences::AutoSavePath, m_target->path());
    addCapture("a"_qs);
    bool wasHeld = false;
    bool hasLeftInside = false;
    QVERIFY(quits([&] {
        QTimer::singleShot(0, this, [&] {
            treat("/kill"_qs);
            QCoreApplication::processEvents();
            wasHeld = !m_window->hasLeft();
            ModalAnswers answers;
            answers.add([&](QWidget *message) {
                QTRY_VERIFY(m_window->hasLeft());
                hasLeftInside = true;
                message->close();
            });
            tellSomething();
            QVERIFY(answers.isDone());
        });
        emit m_window->saveCurrentImage(true, false);
    }));
    QVERIFY(wasHeld);
    QVERIFY(hasLeftInside);
}

void Tst_ExitDuringSave::exitUnderADialogInsideASaveIsRefused() {
    preferences()->SetString(TindraPreferences::AutoSavePath, m_target->path());
    addCapture("a"_qs);
    markSaved();
    bool hasLeftInside = true;
    ModalAnswers answers;
    answers.add([&](QWidget *message) {
        treat("/close"_qs);
        QCoreApplication::processEvents();
        hasLeftInside = m_window->hasLeft();
        message->close();
    });
    QVERIFY(!quits([this] {
        QTimer::singleShot(0, this, [this] { tellSomething(); });
        emit m_window->saveCurrentImage(true, false);
    }));
    QVERIFY(answers.isDone());
    QVERIFY(!hasLeftInside);
    QVERIFY(QFile::exists(list()->rowItem(0)->editor()->imageKey()));
}

void Tst_ExitDuringSave::exitDuringASaveWaitsForItsReport() {
    preferences()->SetString(TindraPreferences::AutoSavePath, m_target->path());
    preferences()->SetBool(TindraPreferences::ShowPostSaveDlg, true);
    addCapture("b"_qs); // not saved, so it is asked about
    addCapture("a"_qs);
    ModalAnswers answers;
    answers.addPress("Close"_qs);
    answers.addPress("Yes"_qs);
    QVERIFY(quits([this] {
        QTimer::singleShot(0, this, [this] { treat("/close"_qs); });
        emit m_window->saveCurrentImage(true, true);
    }));
    QVERIFY(answers.isDone());
}

QTEST_MAIN(Tst_ExitDuringSave)
#include "tst_exitduringsave.moc"
