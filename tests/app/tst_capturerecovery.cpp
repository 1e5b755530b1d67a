#include "app/windowtest.h"
#include "history/historybuttonwidget.h"
#include "services/tracelog.h"
#include "support/imagecompare.h"

#include <QBuffer>

/// What a start finds of the last run, for each way in which that may have ended.
class Tst_CaptureRecovery : public WindowTest {
    Q_OBJECT
private slots:
    void init() { WindowTest::init(); }
    void cleanup() { WindowTest::cleanup(); }

    void nothingLeftTellsNothing();
    void exitKeepsPinnedCapturesOnly();
    void orderOfPinsTurnsAtEachRestart();
    void endOfTheSessionKeepsPins();
    void pinsOfCapturesFromElsewhereComeBack();
    void pinsOutliveARowThatShowsOneOfTheirFiles();
    void killKeepsTheFilesAndTheOldPins();
    void captureThatWasSavedOverComesBackUntouched();
    void crashBringsEverythingBack();
    void unpinnedCaptureIsGoneAfterAnExit();
    void leftOversStandBehindThePins();
    void restoredCapturesAreToldOnce();
    void restoredCapturesAreToldWithTheFirstVisibleOne();
    void takenNumberKeepsItsCapture();
    void firstCaptureStaysInFrontAndUnpinned();
    void firstCaptureIsNotRestoredTwice();
    void lineOfARestoredCaptureSelectsIt();
    void lineOfADeletedLeftOverAddsItsSuccessor();
    void brokenLeftOverIsReportedOnce_data();
    void brokenLeftOverIsReportedOnce();
    void brokenLeftOverIsSilentBehindAVisibleWindow();
    void linkIsNoLeftOver();
    void moreThanFit_data();
    void moreThanFit();
    void tenThousandFilesDoNotHangTheStart();
    void withoutAWorkFolderTheProgramRuns();

private:
    /// The end without an exit: the window goes, and nothing is cleared away.
    void crash() { m_window.reset(); }
    void exit() {
        for (int row = 0; row < list()->count(); ++row)
            markSaved(row);
        QVERIFY(quits([this] { m_window->onClickClose(); }));
        m_window.reset();
    }
    void pin(int row) { list()->rowWidget(list()->rowItem(row))->setPinned(true); }
    bool isPinned(int row) const { return list()->rowWidget(list()->rowItem(row))->isPinned(); }
    int pinnedRows() const { return list()->pinnedCount(nullptr); }
    /// Captures differ by their width; the rows' widths tell their order.
    QVector<int> widths() const {
        QVector<int> found;
        for (int row = 0; row < list()->count(); ++row)
            found.append(list()->rowItem(row)->editor()->imageRect().width());
        return found;
    }
    void addWide(int width) { treat("/skip /path "_qs + capture("shot%1"_qs.arg(width), {width, 5})); }
    QStringList filesIn(const QString &folder) const {
        return QDir(workFolder() + folder).entryList({"*.png"_qs}, QDir::Files);
    }
    void write(const QString &name, const QByteArray &bytes) {
        QFile file(workFolder() + "/"_qs + name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    void quietStart() {
        ModalAnswers answers;
        start();
        QVERIFY(answers.isDone());
    }

    using Widths = QVector<int>;
};

void Tst_CaptureRecovery::nothingLeftTellsNothing() {
    crash();
    quietStart();
    ModalAnswers answers;
    treat("/show"_qs);
    QVERIFY(answers.isDone());
    QCOMPARE(list()->count(), 0);
}

void Tst_CaptureRecovery::exitKeepsPinnedCapturesOnly() {
    addWide(11);
    addWide(12);
    pin(1);
    exit();
    QCOMPARE(filesIn({}), QStringList());
    QCOMPARE(filesIn("/pin"_qs), QStringList{"0.png"_qs});
    quietStart();
    QCOMPARE(widths(), Widths{11});
    QVERIFY(isPinned(0));
    QVERIFY(!list()->rowItem(0)->editor()->isSaved());
    // Pins alone are nothing to tell about.
    ModalAnswers answers;
    treat("/show"_qs);
    QVERIFY(answers.isDone());
}

void Tst_CaptureRecovery::orderOfPinsTurnsAtEachRestart() {
    for (int width : {11, 12, 13}) {
        addWide(width);
        pin(list()->row(list()->selectedItem()));
    }
    QCOMPARE(widths(), (Widths{13, 12, 11}));
    exit();
    start();
    QCOMPARE(widths(), (Widths{11, 12, 13}));
    QCOMPARE(pinnedRows(), 3);
    exit();
    start();
    QCOMPARE(widths(), (Widths{13, 12, 11}));
}

void Tst_CaptureRecovery::endOfTheSessionKeepsPins() {
    addWide(11);
    addWide(12);
    pin(0);
    ModalAnswers answers;
    // The receiver looks at nothing of the manager, which only the desktop can make.
    std::aligned_storage_t<64, alignof(std::max_align_t)> manager;
    QVERIFY(quits([&] { emit qApp->commitDataRequest(reinterpret_cast<QSessionManager &>(manager)); }));
    QVERIFY(answers.isDone());
    m_window.reset();
    QCOMPARE(filesIn({}), QStringList());
    quietStart();
    QCOMPARE(widths(), Widths{12});
    QVERIFY(isPinned(0));
}

void Tst_CaptureRecovery::pinsOfCapturesFromElsewhereComeBack() {
    addWide(11);
    pin(0);
    const QString outside = m_target->filePath("outside.png"_qs);
    QVERIFY(QFile::rename(capture("x"_qs, {12, 5}), outside));
    treat("/skip /path "_qs + outside);
    pin(1);
    QCOMPARE(widths(), (Widths{12, 11}));
    // Twice: what comes back is a copy in the work folder, and its picture has to be kept again.
    for (const Widths &expected : {Widths{11, 12}, Widths{12, 11}}) {
        exit();
        QVERIFY(!QFile::exists(outside));
        QCOMPARE(filesIn({}), QStringList());
        QCOMPARE(filesIn("/pin"_qs), (QStringList{"0.png"_qs, "1.png"_qs}));
        quietStart();
        QCOMPARE(widths(), expected);
        QCOMPARE(pinnedRows(), 2);
    }
}

// Under the name of such a row's file another picture stands by the time the rows' files go.
void Tst_CaptureRecovery::pinsOutliveARowThatShowsOneOfTheirFiles() {
    addWide(11);
    pin(0);
    exit();
    start();
    treat("/skip /path "_qs + workFolder() + "/pin/../pin/0.png"_qs);
    QCOMPARE(widths(), (Widths{11, 11}));
    QCOMPARE(pinnedRows(), 1);
    exit();
    quietStart();
    QCOMPARE(widths(), Widths{11});
    QCOMPARE(pinnedRows(), 1);
}

void Tst_CaptureRecovery::killKeepsTheFilesAndTheOldPins() {
    addWide(11);
    pin(0);
    exit();
    start();
    addWide(12);
    pin(1);
    QCOMPARE(pinnedRows(), 2);
    QVERIFY(quits([this] { treat("/kill"_qs); }));
    m_window.reset();
    // The pin that the kill came upon is not written.
    QCOMPARE(filesIn("/pin"_qs), QStringList{"0.png"_qs});
    QCOMPARE(filesIn({}), (QStringList{"0.png"_qs, "shot12.png"_qs}));
}

void Tst_CaptureRecovery::captureThatWasSavedOverComesBackUntouched() {
    const QString file = m_target->filePath("shot.png"_qs);
    QImage untouched(40, 30, QImage::Format_RGB32);
    untouched.fill(Qt::red);
    QVERIFY(untouched.save(file));
    treat("/path "_qs + file);
    drawStroke();
    QVERIFY(list()->rowItem(0)->editor()->saveFlattened(file, true, -1));
    QVERIFY(QImage(file).convertToFormat(untouched.format()) != untouched);
    QVERIFY(quits([this] { treat("/kill"_qs); }));
    m_window.reset();
    quietStart();
    QCOMPARE(list()->count(), 1);
    COMPARE_IMAGES(list()->rowItem(0)->editor()->flatten(true, false).toImage(), untouched, "restored");
}

void Tst_CaptureRecovery::crashBringsEverythingBack() {
    addWide(11);
    addWide(12);
    treat("/show"_qs);
    drawStroke();
    markSaved();
    crash();
    quietStart();
    QCOMPARE(widths(), (Widths{12, 11}));
    QCOMPARE(pinnedRows(), 0);
    for (int row = 0; row < 2; ++row) {
        QVERIFY(!list()->rowItem(row)->editor()->isSaved());
        QVERIFY(!list()->rowItem(row)->editor()->canUndo());
    }
    // Each is a temporary file of the new session.
    list()->removeItem(list()->rowItem(0), false, true);
    QCOMPARE(filesIn({}), QStringList{"shot11.png"_qs});
}

void Tst_CaptureRecovery::unpinnedCaptureIsGoneAfterAnExit() {
    addWide(11);
    pin(0);
    exit();
    start();
    m_window->findChild<HistoryWidget *>()->setPinnedImages(false);
    QVERIFY(!isPinned(0));
    exit();
    QCOMPARE(filesIn("/pin"_qs), QStringList());
    start();
    QCOMPARE(list()->count(), 0);
}

void Tst_CaptureRecovery::leftOversStandBehindThePins() {
    addWide(11);
    pin(0);
    exit();
    capture("a"_qs, {21, 5});
    capture("b"_qs, {22, 5});
    quietStart();
    QCOMPARE(widths(), (Widths{11, 22, 21}));
    QCOMPARE(pinnedRows(), 1);
}

void Tst_CaptureRecovery::restoredCapturesAreToldOnce() {
    addWide(11);
    crash();
    start();
    forgetMessages();
    ModalAnswers answers;
    answers.add([this](QWidget *dialog) {
        // Told before the capture process hears that the window is up.
        QCOMPARE(messages(), (Messages{0x86E}));
        ModalAnswers::press(dialog, "Ok"_qs);
    });
    treat("/show"_qs);
    treat("/show"_qs);
    QVERIFY(answers.isDone());
    QCOMPARE(
        answers.texts(),
        QStringList{"Temporarily saved recent capture list has been restored.|Part of the recent capture "
                    "list is restored when Tindra is updated or abnormally terminated.\n\t\tPlease save "
                    "important captured images safely in advance."_qs});
    QCOMPARE(m_session->usage, QStringList{"cap_308_01"_qs});
}

void Tst_CaptureRecovery::restoredCapturesAreToldWithTheFirstVisibleOne() {
    addWide(11);
    crash();
    start();
    addWide(12);
    ModalAnswers answers;
    answers.addPress("Ok"_qs);
    addCapture("visible"_qs);
    QVERIFY(answers.isDone());
    QCOMPARE(list()->count(), 3);
}

void Tst_CaptureRecovery::takenNumberKeepsItsCapture() {
    addWide(11);
    pin(0);
    exit();
    capture("0"_qs, {77, 5});
    quietStart();
    QCOMPARE(widths(), Widths{77});
    QCOMPARE(pinnedRows(), 0);
}

void Tst_CaptureRecovery::firstCaptureStaysInFrontAndUnpinned() {
    addWide(11);
    pin(0);
    exit();
    capture("left"_qs, {22, 5});
    m_window = std::make_unique<TindraEditor>();
    // The program's own arguments come before the event loop.
    addCapture("first"_qs);
    ModalAnswers answers;
    answers.addPress("Ok"_qs);
    QCoreApplication::processEvents();
    // Seen already, so it is told at once.
    QVERIFY(answers.isDone());
    QVERIFY(answers.texts().first().startsWith("Temporarily saved"_qs));
    QCOMPARE(widths(), (Widths{11, 22, 40}));
    QCOMPARE(pinnedRows(), 1);
    QCOMPARE(list()->row(list()->selectedItem()), 2);
    QCOMPARE(scene(), list()->rowItem(2)->editor());
}

void Tst_CaptureRecovery::firstCaptureIsNotRestoredTwice() {
    crash();
    m_window = std::make_unique<TindraEditor>();
    const QString path = capture("first"_qs);
    treat("/path \"%1/./first.png\""_qs.arg(QFileInfo(path).path()));
    QCoreApplication::processEvents();
    QCOMPARE(list()->count(), 1);
    ModalAnswers answers;
    treat("/show"_qs);
    QVERIFY(answers.isDone());
}

// The file came into the folder between the start and the look at it, its line comes later.
void Tst_CaptureRecovery::lineOfARestoredCaptureSelectsIt() {
    crash();
    const QString path = capture("new"_qs);
    capture("older"_qs);
    quietStart();
    QCOMPARE(list()->count(), 2);
    ModalAnswers answers;
    answers.addPress("Ok"_qs);
    treat("/path \"%1\" /point 10 10"_qs.arg(path));
    QCOMPARE(list()->count(), 2);
    QCOMPARE(list()->selectedItem()->editor()->imageKey(), path);
    QVERIFY(m_window->isVisible());
    QVERIFY(answers.isDone()); // the older one is back
    // The same name again is another capture.
    treat("/path \"%1\""_qs.arg(path));
    QCOMPARE(list()->count(), 3);
    m_window->hide();

    crash();
    QVERIFY(QFile::remove(workFolder() + "/older.png"_qs));
    quietStart();
    ModalAnswers none;
    treat("/path \"%1\""_qs.arg(path));
    QCOMPARE(list()->count(), 1);
    QVERIFY(none.isDone()); // nothing else is back
}

void Tst_CaptureRecovery::lineOfADeletedLeftOverAddsItsSuccessor() {
    const QString path = capture("name"_qs);
    crash();
    quietStart();
    list()->removeItem(list()->rowItem(0), false, true);
    QCOMPARE(capture("name"_qs, {77, 5}), path);
    ModalAnswers answers;
    answers.addPress("Ok"_qs);
    treat("/path \"%1\""_qs.arg(path));
    QCOMPARE(widths(), Widths{77});
}

void Tst_CaptureRecovery::brokenLeftOverIsReportedOnce_data() {
    QTest::addColumn<QByteArray>("bytes");
    QImage image(300, 300, QImage::Format_RGB32);
    for (int y = 0; y < 300; ++y) {
        for (int x = 0; x < 300; ++x)
            image.setPixel(x, y, qRgb(x * y, x ^ y, x + y));
    }
    QBuffer whole;
    whole.open(QIODevice::WriteOnly);
    image.save(&whole, "PNG");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no image") << QByteArray("no image");
    QTest::newRow("header alone") << whole.data().left(40);
    QTest::newRow("half written") << whole.data().left(whole.data().size() / 2);
}

void Tst_CaptureRecovery::brokenLeftOverIsReportedOnce() {
    QFETCH(QByteArray, bytes);
    crash();
    write("bad1.png"_qs, bytes);
    write("bad2.png"_qs, bytes);
    capture("good"_qs, {33, 5});
    ModalAnswers answers;
    answers.addPress("Ok"_qs);
    start();
    QVERIFY(answers.isDone());
    QCOMPARE(answers.texts(), QStringList{"Failed to capture image."_qs});
    QCOMPARE(widths(), Widths{33});
    QVERIFY(!m_window->isVisible());
    QCOMPARE(filesIn({}).size(), 3);
}

void Tst_CaptureRecovery::brokenLeftOverIsSilentBehindAVisibleWindow() {
    crash();
    write("bad.png"_qs, "no image");
    m_window = std::make_unique<TindraEditor>();
    addCapture("first"_qs);
    ModalAnswers answers;
    answers.addPress("Ok"_qs);
    QCoreApplication::processEvents();
    QVERIFY(answers.isDone());
    QVERIFY(!answers.texts().contains("Failed to capture image."_qs));
    QCOMPARE(list()->count(), 1);
}

void Tst_CaptureRecovery::linkIsNoLeftOver() {
    crash();
    const QString outside = m_target->filePath("outside.png"_qs);
    QVERIFY(QFile::rename(capture("x"_qs), outside));
    QVERIFY(QFile::link(outside, workFolder() + "/link.png"_qs));
    quietStart();
    QCOMPARE(list()->count(), 0);
    exit();
    QVERIFY(QFile::exists(outside));
    QCOMPARE(filesIn({}), QStringList());
}

void Tst_CaptureRecovery::moreThanFit_data() {
    QTest::addColumn<bool>("dropsOldest");
    QTest::addColumn<int>("top");
    QTest::addColumn<int>("bottom");
    QTest::newRow("full list refuses") << false << 199 << 100;
    QTest::newRow("full list drops its oldest") << true << 204 << 105;
}

void Tst_CaptureRecovery::moreThanFit() {
    QFETCH(bool, dropsOldest);
    crash();
    preferences()->SetBool(TindraPreferences::AutoHistoryDelete, dropsOldest);
    for (int width = 100; width < 205; ++width)
        capture("shot%1"_qs.arg(width), {width, 2});
    quietStart();
    QCOMPARE(list()->count(), 100);
    QTEST(widths().first(), "top");
    QTEST(widths().last(), "bottom");
    QCOMPARE(filesIn({}).size(), 105);
}

void Tst_CaptureRecovery::tenThousandFilesDoNotHangTheStart() {
    crash();
    QFile original(capture("0000"_qs, {2, 2}));
    QVERIFY(original.open(QIODevice::ReadOnly));
    const QByteArray picture = original.readAll();
    for (int i = 1; i < 10000; ++i)
        write("%1.png"_qs.arg(i, 4, 10, QLatin1Char('0')), picture);
    // Each that is refused would cost a decode and a message.
    quietStart();
    QCOMPARE(list()->count(), 100);
    QCOMPARE(filesIn({}).size(), 10000);
}

void Tst_CaptureRecovery::withoutAWorkFolderTheProgramRuns() {
    crash();
    setTraceLevel(1);
    setTraceOutput(true); // there is no place for the file either
    const QByteArray before[] = {qgetenv("XDG_DATA_HOME"), qgetenv("TMPDIR"), qgetenv("HOME")};
    const QString blocked = m_target->filePath("blocked"_qs);
    QVERIFY(QFile(blocked).open(QIODevice::WriteOnly));
    for (const char *name : {"XDG_DATA_HOME", "TMPDIR", "HOME"})
        qputenv(name, QFile::encodeName(blocked));
    QVERIFY(workFolder().isEmpty());
    quietStart();
    treat("/skip /path "_qs + Session::captureInMemory("m"_qs));
    m_window->AddNewPixmap("m"_qs, {}, true);
    pin(0);
    QTest::ignoreMessage(QtDebugMsg,
                         QRegularExpression(" SavePinnedHistories : Cannot access any temp path$"_qs));
    exit();
    QVERIFY(!QFile::exists("/pin"_qs));
    qputenv("XDG_DATA_HOME", before[0]);
    qputenv("TMPDIR", before[1]);
    qputenv("HOME", before[2]);
    setTraceOutput(false);
    setTraceLevel(TraceLog::Off);
}

QTEST_MAIN(Tst_CaptureRecovery)
#include "tst_capturerecovery.moc"
