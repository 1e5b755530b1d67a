#include "app/windowtest.h"
#include "history/historybuttonwidget.h"

#include <QLockFile>

#include <chrono>
#include <thread>

/// What each way out leaves behind: captures, what the user has saved, pins and preferences.
class Tst_ExitRemains : public WindowTest {
    Q_OBJECT
private slots:
    void init() { WindowTest::init(); }
    void cleanup() { WindowTest::cleanup(); }

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
    void leavingIsToldBeforeTheFilesGo();

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

void Tst_ExitRemains::killAsksNothingAndKeepsTheFiles_data() {
    QTest::addColumn<bool>("trayMode");
    QTest::newRow("tray mode") << true;
    QTest::newRow("no tray mode") << false;
}

void Tst_ExitRemains::killAsksNothingAndKeepsTheFiles() {
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

void Tst_ExitRemains::exitClearsTheWorkFolder() {
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

void Tst_ExitRemains::rowsFileGoesWhereverItLies_data() {
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

void Tst_ExitRemains::rowsFileGoesWhereverItLies() {
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

void Tst_ExitRemains::savedFileOutlivesTheExit_data() {
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
void Tst_ExitRemains::savedFileOutlivesTheExit() {
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
void Tst_ExitRemains::pinThatCannotBeWrittenKeepsItsFile() {
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

void Tst_ExitRemains::everyEndSavesThePreferences_data() {
    QTest::addColumn<QString>("end");
    QTest::newRow("exit") << "/close";
    QTest::newRow("kill") << "/kill";
    QTest::newRow("end of the session") << "";
}

void Tst_ExitRemains::everyEndSavesThePreferences() {
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
void Tst_ExitRemains::endOfTheSessionSavesThePreferencesFirst() {
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

void Tst_ExitRemains::leavingIsToldBeforeTheFilesGo() {
    addCapture("a"_qs);
    markSaved();
    const QString file = list()->rowItem(0)->editor()->imageKey();
    QVector<bool> fileThere;
    connect(m_window.get(), &TindraEditor::leaving, this, [&] { fileThere.append(QFile::exists(file)); });
    QVERIFY(quits([this] { treat("/close"_qs); }));
    QCOMPARE(fileThere, QVector<bool>{true});
    QVERIFY(!QFile::exists(file));
}

QTEST_MAIN(Tst_ExitRemains)
#include "tst_exitremains.moc"
