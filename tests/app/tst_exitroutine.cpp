#include "app/windowtest.h"
#include "history/historybuttonwidget.h"
#include "support/tracedby.h"
#include "ui/messagedialog.h"

#include <QLockFile>

#include <chrono>
#include <thread>

namespace {

/// Watches whether a window is raised.
class RaiseWatch : public QObject {
public:
    int raised = 0;
    bool eventFilter(QObject *, QEvent *event) override {
        raised += event->type() == QEvent::ZOrderChange;
        return false;
    }
};

} // namespace

/// Hiding, the ways out, and what each of them leaves behind.
class Tst_ExitRoutine : public WindowTest {
    Q_OBJECT
private slots:
    void init() { WindowTest::init(); }
    void cleanup() { WindowTest::cleanup(); }

    void closeOnlyHidesInTrayMode();
    void hidingIsLogged();
    void closeExitsWithoutTrayMode();
    void closeCommandExitsInTrayMode();
    void exitAsksAboutUnsavedImages_data();
    void exitAsksAboutUnsavedImages();
    void refusedExitLeavesTheCloseButtonHiding();
    void escapeExitsWithoutTrayMode();
    void exitIsRefusedWhileADialogIsOpen();
    void exitUnderAnotherDialog_data();
    void exitUnderAnotherDialog();
    void killAsksNothingAndKeepsTheFiles_data();
    void killAsksNothingAndKeepsTheFiles();
    void exitClearsTheWorkFolder();
    void rowsFileGoesWhereverItLies_data();
    void rowsFileGoesWhereverItLies();
    void savedFileOutlivesTheExit_data();
    void savedFileOutlivesTheExit();
    void pinThatCannotBeWrittenKeepsItsFile();
    void everyEndSavesThePreferences_data();
    void everyEndSavesThePreferences();
    void endOfTheSessionSavesThePreferencesFirst();
    void endOfTheSessionEndsTheOpenItem();
    void endOfTheSessionAsksNothing();
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
    void twoKillsEndOnce();
    void killInsideTheQuestionEndsOnce();
    void leavingIsToldBeforeTheFilesGo();
    void exitIsRememberedOutsideTheLoop();

private:
    /// A capture that lies where the capture side put it, in whatever format.
    QString captureAt(const QString &path) {
        QDir().mkpath(QFileInfo(path).path());
        QImage image(40, 30, QImage::Format_RGB32);
        image.fill(Qt::red);
        image.save(path);
        treat("/skip /path \"%1\""_qs.arg(path));
        return path;
    }
    QString elsewhere(const QString &name) const { return m_target->filePath(name); }
    void tellSomething() { MessageDialog::warning(m_window.get(), "Tindra"_qs, "something"_qs); }
    void pin(int row) { list()->rowWidget(list()->rowItem(row))->setPinned(true); }
    bool ends(const QString &way) {
        return quits([this, way] {
            if (way.isEmpty())
                endSession();
            else
                treat(way);
        });
    }
};

void Tst_ExitRoutine::closeOnlyHidesInTrayMode() {
    addCapture("a"_qs);
    forgetMessages();
    QVERIFY(!quits([this] { m_window->close(); }));
    QVERIFY(!m_window->isVisible());
    QCOMPARE(messages(), (Messages{0x86D, 0x86B}));
}

void Tst_ExitRoutine::hidingIsLogged() {
    const QByteArray log = tracedBy([this] { m_window->close(); });
    QVERIFY(log.contains(" closeEvent : hide\r\n"));
}

void Tst_ExitRoutine::closeExitsWithoutTrayMode() {
    preferences()->SetBool(TindraPreferences::TrayMode, false);
    addCapture("a"_qs);
    markSaved();
    forgetMessages();
    QVERIFY(quits([this] { m_window->close(); }));
    QCOMPARE(messages(), (Messages{0x867, 0x86D}));
}

void Tst_ExitRoutine::closeCommandExitsInTrayMode() {
    addCapture("a"_qs);
    markSaved();
    forgetMessages();
    const QString path = capture("b"_qs);
    QVERIFY(quits([this, path] { treat("/close /path "_qs + path); }));
    QCOMPARE(list()->count(), 1);
    QCOMPARE(messages(), (Messages{0x867, 0x86D}));
}

void Tst_ExitRoutine::exitAsksAboutUnsavedImages_data() {
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("exits");
    QTest::newRow("yes") << "Yes" << true;
    QTest::newRow("no") << "No" << false;
    QTest::newRow("closed") << "" << false;
}

void Tst_ExitRoutine::exitAsksAboutUnsavedImages() {
    QFETCH(QString, button);
    QFETCH(bool, exits);
    treat("/skip /path "_qs + capture("a"_qs));
    ModalAnswers answers;
    if (button.isEmpty())
        answers.addClose();
    else
        answers.addPress(button);
    QCOMPARE(quits([this] { treat("/close"_qs); }), exits);
    QVERIFY(answers.isDone());
    QCOMPARE(answers.texts(), QStringList{"Unsaved images exist in history.\nWould you exit tindra?|If you "
                                          "exit, it will remove all images in history."_qs});
    QCOMPARE(messages(), exits ? (Messages{0x86E, 0x869, 0x867, 0x86D}) : (Messages{0x86E, 0x869}));
    QCOMPARE(m_window->isVisible(), !exits);
}

void Tst_ExitRoutine::refusedExitLeavesTheCloseButtonHiding() {
    addCapture("a"_qs);
    ModalAnswers answers;
    answers.addPress("No"_qs);
    QVERIFY(!quits([this] { m_window->onClickClose(); }));
    QVERIFY(!quits([this] { m_window->close(); }));
    QVERIFY(answers.isDone());
    QVERIFY(!m_window->isVisible());
}

void Tst_ExitRoutine::escapeExitsWithoutTrayMode() {
    preferences()->SetBool(TindraPreferences::TrayMode, false);
    addCapture("a"_qs);
    markSaved();
    activate();
    forgetMessages();
    QVERIFY(quits([this] { QTest::keyClick(m_window.get(), Qt::Key_Escape); }));
    QCOMPARE(messages(), (Messages{0x867, 0x86D}));
}

void Tst_ExitRoutine::exitIsRefusedWhileADialogIsOpen() {
    addCapture("a"_qs);
    const QString file = list()->rowItem(0)->editor()->imageKey();
    ModalAnswers answers;
    answers.add([this](QWidget *question) {
        QWidget before(question, Qt::Window);
        before.show();
        before.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&before));
        RaiseWatch watch;
        question->installEventFilter(&watch);
        // A second request, while the question of the first stands.
        treat("/close"_qs);
        QCoreApplication::processEvents();
        QVERIFY(question->isVisible());
        QVERIFY(question->isActiveWindow());
        QCOMPARE(watch.raised, 1);
        ModalAnswers::press(question, "Yes"_qs);
    });
    QVERIFY(quits([this] { treat("/close"_qs); }));
    QVERIFY(answers.isDone());
    // It was a normal exit all the same.
    QVERIFY(!QFile::exists(file));
}

void Tst_ExitRoutine::exitUnderAnotherDialog_data() {
    QTest::addColumn<bool>("saved");
    QTest::newRow("unsaved: the dialog comes first") << false;
    QTest::newRow("all saved: nothing to ask") << true;
}

void Tst_ExitRoutine::exitUnderAnotherDialog() {
    QFETCH(bool, saved);
    addCapture("a"_qs);
    if (saved)
        markSaved();
    QDialog dialog(m_window.get());
    dialog.open();
    QWidget before(&dialog, Qt::Window);
    before.show();
    before.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&before));
    RaiseWatch watch;
    dialog.installEventFilter(&watch);
    forgetMessages();
    QCOMPARE(quits([this] { treat("/close"_qs); }), saved);
    QCOMPARE(watch.raised > 0, !saved);
    QCOMPARE(dialog.isActiveWindow(), !saved);
    QCOMPARE(messages(), saved ? (Messages{0x867, 0x86D}) : Messages{});
    if (saved)
        return;
    // The request is forgotten: the close button hides.
    dialog.close();
    QVERIFY(!quits([this] { m_window->close(); }));
    QVERIFY(!m_window->isVisible());
}

void Tst_ExitRoutine::killAsksNothingAndKeepsTheFiles_data() {
    QTest::addColumn<bool>("trayMode");
    QTest::newRow("tray mode") << true;
    QTest::newRow("no tray mode") << false;
}

void Tst_ExitRoutine::killAsksNothingAndKeepsTheFiles() {
    QFETCH(bool, trayMode);
    preferences()->SetBool(TindraPreferences::TrayMode, trayMode);
    addCapture("a"_qs);
    const QString file = list()->rowItem(0)->editor()->imageKey();
    forgetMessages();
    ModalAnswers answers;
    QVERIFY(quits([this] { treat("/kill"_qs); }));
    QVERIFY(answers.isDone());
    QCOMPARE(messages(), (Messages{0x867, 0x86D}));
    m_window.reset();
    QVERIFY(QFile::exists(file));
}

void Tst_ExitRoutine::exitClearsTheWorkFolder() {
    QDir work(workFolder());
    for (const QString &folder : {"pin"_qs, "AIRemoveBeta/deep"_qs})
        QVERIFY(work.mkpath(folder));
    const QString stray = capture("stray"_qs);
    const QString notes = work.filePath("notes.txt"_qs);
    QVERIFY(QFile(notes).open(QIODevice::WriteOnly));
    addCapture("a"_qs);
    markSaved();
    QVERIFY(quits([this] { m_window->onClickClose(); }));
    QVERIFY(work.entryList({"*.png"_qs}, QDir::Files).isEmpty());
    QVERIFY(!QFile::exists(stray));
    QVERIFY(!work.exists("AIRemoveBeta"_qs));
    QVERIFY(work.exists("pin"_qs));
    QVERIFY(QFile::exists(notes));
}

void Tst_ExitRoutine::rowsFileGoesWhereverItLies_data() {
    QTest::addColumn<QString>("place"); // below the work folder, or elsewhere
    QTest::addColumn<QString>("end");
    QTest::addColumn<bool>("stays");
    const QStringList places{"elsewhere/shot.png"_qs, "shot.jpg"_qs, "deeper/shot.png"_qs};
    for (const QString &place : places) {
        const QByteArray name = place.toUtf8();
        QTest::addRow("%s, exit", name.constData()) << place << "/close" << false;
        QTest::addRow("%s, end of the session", name.constData()) << place << "" << false;
        QTest::addRow("%s, kill", name.constData()) << place << "/kill" << true;
    }
}

void Tst_ExitRoutine::rowsFileGoesWhereverItLies() {
    QFETCH(QString, place);
    QFETCH(QString, end);
    QFETCH(bool, stays);
    const bool isElsewhere = place.startsWith("elsewhere"_qs);
    const QString file = captureAt(isElsewhere ? elsewhere(place) : workFolder() + "/"_qs + place);
    const QString neighbour = QFileInfo(file).path() + "/neighbour.jpg"_qs;
    QVERIFY(QFile::copy(file, neighbour));
    QCOMPARE(list()->count(), 1);
    markSaved();
    QVERIFY(ends(end));
    m_window.reset();
    QCOMPARE(QFile::exists(file), stays);
    QVERIFY(QFile::exists(neighbour));
}

void Tst_ExitRoutine::savedFileOutlivesTheExit_data() {
    QTest::addColumn<QString>("target");
    QTest::addColumn<bool>("drawsAfterwards");
    QTest::addColumn<bool>("removesRow");
    QTest::addColumn<QString>("end");
    QTest::newRow("beside the capture") << "saved.png" << false << false << "/close";
    QTest::newRow("beside, end of the session") << "saved.png" << false << false << "";
    QTest::newRow("over the capture's own file") << "shot.png" << false << false << "/close";
    QTest::newRow("over it, end of the session") << "shot.png" << false << false << "";
    QTest::newRow("over it through a link") << "link.png" << false << false << "/close";
    QTest::newRow("over it, then drawn on") << "shot.png" << true << false << "/close";
    QTest::newRow("over it, row deleted") << "shot.png" << false << true << "/close";
}

// The user's own file, even where a capture was.
void Tst_ExitRoutine::savedFileOutlivesTheExit() {
    QFETCH(QString, target);
    QFETCH(bool, drawsAfterwards);
    QFETCH(bool, removesRow);
    QFETCH(QString, end);
    const QString file = captureAt(elsewhere("shot.png"_qs));
    QVERIFY(QFile::link(file, elsewhere("link.png"_qs)));
    const QString saved = elsewhere(target);
    QVERIFY(list()->rowItem(0)->editor()->saveFlattened(saved, true, -1));
    ModalAnswers answers;
    if (drawsAfterwards) {
        treat("/show"_qs);
        drawStroke();
        QVERIFY(!list()->rowItem(0)->editor()->isSaved());
        answers.addPress("Yes"_qs);
    }
    if (removesRow)
        list()->removeItem(list()->rowItem(0), false, true);
    QVERIFY(ends(end));
    QVERIFY(answers.isDone());
    m_window.reset();
    QCOMPARE(QImage(saved).size(), QSize(40, 30));
    QCOMPARE(QFile::exists(file), target != "saved.png"_qs);
}

// The next start does not get it back, but it is not lost.
void Tst_ExitRoutine::pinThatCannotBeWrittenKeepsItsFile() {
    QVERIFY(QFile(workFolder() + "/pin"_qs).open(QIODevice::WriteOnly)); // where the folder would be
    const QString unpinned = captureAt(elsewhere("unpinned.png"_qs));
    const QStringList pinned{captureAt(elsewhere("pinned.png"_qs)), capture("pinned"_qs)};
    treat("/skip /path \"%1/./pinned.png\""_qs.arg(workFolder()));
    pin(0);
    pin(1);
    for (int row = 0; row < list()->count(); ++row)
        markSaved(row);
    QVERIFY(ends("/close"_qs));
    m_window.reset();
    for (const QString &file : pinned)
        QVERIFY2(QFile::exists(file), qPrintable(file));
    QVERIFY(!QFile::exists(unpinned));
}

void Tst_ExitRoutine::everyEndSavesThePreferences_data() {
    QTest::addColumn<QString>("end");
    QTest::newRow("exit") << "/close";
    QTest::newRow("kill") << "/kill";
    QTest::newRow("end of the session") << "";
}

void Tst_ExitRoutine::everyEndSavesThePreferences() {
    QFETCH(QString, end);
    treat("/updateprefvalue 59 1"_qs);
    QVERIFY(quits([this, end] {
        if (end.isEmpty())
            endSession();
        else
            treat(end);
    }));
    m_window.reset();
    TindraPreferences::resetForTesting();
    TindraPreferences::instance()->Init();
    QVERIFY(TindraPreferences::instance()->GetBool(TindraPreferences::AutoHistoryDelete, false));
}

// While another program has the settings to itself, the captures wait too.
void Tst_ExitRoutine::endOfTheSessionSavesThePreferencesFirst() {
    addCapture("a"_qs);
    const QString file = list()->rowItem(0)->editor()->imageKey();
    preferences()->SetBool(TindraPreferences::AutoHistoryDelete, true);
    const QString settings = ConfigurationLocation("SOFTWARE\\Norvane\\Tindra\\Config"_qs).fileName();
    QVERIFY(QDir().mkpath(QFileInfo(settings).path()));
    QLockFile lock(settings + ".lock"_qs);
    QVERIFY(lock.lock());
    bool isCaptureThere = false;
    std::thread other([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(150));
        isCaptureThere = QFile::exists(file);
        lock.unlock();
    });
    const bool hasQuit = quits([this] { endSession(); });
    other.join();
    QVERIFY(hasQuit);
    QVERIFY(isCaptureThere);
    QVERIFY(!QFile::exists(file));
}

void Tst_ExitRoutine::endOfTheSessionEndsTheOpenItem() {
    m_window->show();
    TestEditor *editor = addFake("a"_qs);
    m_window->onClickCrop();
    QVERIFY(editor->crop);
    const ItemLog log = editor->sharedLog;
    QVERIFY(quits([this] { endSession(); }));
    QCOMPARE(log->filter("crop finish"_qs), QStringList{"crop finish 0"_qs});
}

void Tst_ExitRoutine::endOfTheSessionAsksNothing() {
    addCapture("a"_qs);
    const QString file = list()->rowItem(0)->editor()->imageKey();
    forgetMessages();
    ModalAnswers answers;
    QVERIFY(quits([this] { endSession(); }));
    QVERIFY(answers.isDone());
    QCOMPARE(messages(), (Messages{0x867}));
    QVERIFY(!QFile::exists(file));
}

void Tst_ExitRoutine::batchIsWrittenBeforeTheEnd_data() {
    QTest::addColumn<QString>("line");
    QTest::newRow("exit") << "/close";
    QTest::newRow("kill") << "/kill";
}

void Tst_ExitRoutine::batchIsWrittenBeforeTheEnd() {
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

void Tst_ExitRoutine::exitDuringABatchAsksBehindItsReport() {
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

void Tst_ExitRoutine::killDuringABatchWaitsForNoReport() {
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

void Tst_ExitRoutine::saveIsWrittenBeforeTheEnd_data() {
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("captureStays");
    QTest::newRow("exit") << "/close" << false;
    QTest::newRow("kill") << "/kill" << true;
    QTest::newRow("end of the session") << "" << true;
}

// What is saved at this moment is not asked about, and nothing goes before it is written.
void Tst_ExitRoutine::saveIsWrittenBeforeTheEnd() {
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

void Tst_ExitRoutine::dialogInsideASaveHoldsNoKill() {
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
void Tst_ExitRoutine::dialogAfterAHeldKillHoldsItNoLonger() {
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

void Tst_ExitRoutine::exitUnderADialogInsideASaveIsRefused() {
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

void Tst_ExitRoutine::exitDuringASaveWaitsForItsReport() {
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

void Tst_ExitRoutine::twoKillsEndOnce() {
    QVERIFY(quits([this] {
        treat("/kill"_qs);
        treat("/kill"_qs);
    }));
    QCoreApplication::processEvents();
    QCOMPARE(messages().count(0x867), 1);
}

void Tst_ExitRoutine::killInsideTheQuestionEndsOnce() {
    addCapture("a"_qs);
    const QString file = list()->rowItem(0)->editor()->imageKey();
    forgetMessages();
    ModalAnswers answers;
    answers.add([this](QWidget *) { treat("/kill"_qs); });
    QVERIFY(quits([this] { treat("/close"_qs); }));
    QCoreApplication::processEvents();
    QCOMPARE(messages().count(0x867), 1);
    QVERIFY(QFile::exists(file));
}

void Tst_ExitRoutine::leavingIsToldBeforeTheFilesGo() {
    addCapture("a"_qs);
    markSaved();
    const QString file = list()->rowItem(0)->editor()->imageKey();
    QVector<bool> fileThere;
    connect(m_window.get(), &TindraEditor::leaving, this, [&] { fileThere.append(QFile::exists(file)); });
    QVERIFY(quits([this] { treat("/close"_qs); }));
    QCOMPARE(fileThere, QVector<bool>{true});
    QVERIFY(!QFile::exists(file));
}

void Tst_ExitRoutine::exitIsRememberedOutsideTheLoop() {
    QVERIFY(!m_window->hasLeft());
    ModalAnswers answers;
    answers.add([this](QWidget *) { treat("/kill"_qs); });
    treat("/path /nothing.png"_qs); // its complaint is a loop of its own
    QVERIFY(answers.isDone());
    QVERIFY(m_window->hasLeft());
}

QTEST_MAIN(Tst_ExitRoutine)
#include "tst_exitroutine.moc"
