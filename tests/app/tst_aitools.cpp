#include "app/aitools.h"
#include "app/plugintest.h"
#include "app/toolbar.h"
#include "canvas/canvasmenu.h"
#include "support/openedurls.h"
#include "ui/menu.h"
#include "ui/messagedialog.h"

#include <QBuffer>
#include <QDir>
#include <QLabel>
#include <QPushButton>

/// The AI tools in the main window: where they are offered, what a plug-in gets, what the user is told.
class Tst_AiTools : public PluginTest {
    Q_OBJECT
private slots:
    void init();
    void cleanup() { PluginTest::cleanup(); }

    void buttonStandsBetweenSeparators();
    void buttonTellsWhatItIs();
    void areThereOnlyWithAPlugin_data();
    void areThereOnlyWithAPlugin();
    void hostIsToldWhoAsksAtTheStart();
    void menuIsListedAtEachOpening();
    void entriesHaveNoShortcut();
    void menuIsTheSameInTheCanvasMenu();
    void pressIsCounted();
    void needACapture();
    void leaveTheOverflowAlone();
    void entryRunsItsPlugin();
    void pluginGetsThePicture();
    void pictureIsPrivate();
    void secondPictureOfTheMomentReplacesTheFirst();
    void idStaysInTheWorkFolder_data();
    void idStaysInTheWorkFolder();
    void pictureThatCannotBeWrittenRunsNothing_data();
    void pictureThatCannotBeWrittenRunsNothing();
    void pathThatCannotBeToldRunsNothing();
    void cursorWaitsMeanwhile();
    void pictureIsThatOfTheCaptureShownLast();
    void captureThatGoesMeanwhileRunsNothing();
    void endOfTheProgramRunsNothing_data();
    void endOfTheProgramRunsNothing();
    void oneRunAtATime();
    void resultIsTold_data();
    void resultIsTold();
    void missingHostOffersTheDownload_data();
    void missingHostOffersTheDownload();
    void withoutAHostTheRunFails();
    void picturesGoAtTheExit();

private:
    AiTools *tools() const { return m_window->findChild<AiTools *>(); }
    QMenu *menu() const { return m_window->findChild<Menu *>("aitoolsMenu_"_qs); }
    QAction *canvasEntry() const;
    QStringList entries() const;
    static QString folder(const char *id = "erase") {
        return workFolder() + "/capture_"_qs + QString::fromUtf8(id);
    }
    static QString picture() { return folder() + "/erase_1234.png"_qs; }
    void begin();
    /// Everything below the parent of the work folder.
    static QStringList allFiles();
};

void Tst_AiTools::init() {
    prepareHost("erase|Erase background|\nsharp|Sharpen|");
    WindowTest::init();
    tools()->setClock([] { return 1234; });
}

QAction *Tst_AiTools::canvasEntry() const {
    return m_window->findChild<CanvasMenu *>()->action(CanvasMenu::AiTools);
}

QStringList Tst_AiTools::entries() const {
    QStringList texts;
    for (const QAction *action : menu()->actions())
        texts.append(action->text());
    return texts;
}

void Tst_AiTools::begin() {
    addCapture("a"_qs);
    makeWide();
    m_session->usage.clear();
    m_libraries->forgetCalls();
}

QStringList Tst_AiTools::allFiles() {
    QStringList files;
    QDirIterator all(QDir(workFolder()).filePath(".."_qs),
                     QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden, QDirIterator::Subdirectories);
    while (all.hasNext())
        files.append(all.next());
    files.sort();
    return files;
}

void Tst_AiTools::buttonStandsBetweenSeparators() {
    QStringList names;
    const auto *toolbar = m_window->findChild<Toolbar *>();
    for (QAction *action : toolbar->actions())
        names.append(action->isSeparator() ? "|"_qs : toolbar->widgetForAction(action)->objectName());
    QCOMPARE(names.join(QLatin1Char(' ')),
             "capture | save copy undo redo reset | aitools | figure pen highlighter "
             "line | text crop mosaic eraser | help menu"_qs);
}

void Tst_AiTools::buttonTellsWhatItIs() {
    const ToolButton *tool = button("aitools");
    QCOMPARE(tool->text(), "AI tools"_qs);
    QCOMPARE(tool->toolTip(), "Enhance images beautifully with AI features!"_qs);
    QVERIFY(!tool->isCheckable());
    QVERIFY(!tool->group());
    QVERIFY(!tool->isMenuButtonShown());
    QCOMPARE(tool->menu(), menu());
    QVERIFY(tool->shortcut().isEmpty());
}

void Tst_AiTools::areThereOnlyWithAPlugin_data() {
    QTest::addColumn<QString>("change");
    QTest::addColumn<bool>("areThere");
    QTest::newRow("all is there") << QString() << true;
    QTest::newRow("process of another kind") << "platform"_qs << false;
    QTest::newRow("no library") << "library"_qs << false;
    QTest::newRow("unsigned library") << "signature"_qs << false;
    QTest::newRow("no plug-in") << "plugins"_qs << false;
    QTest::newRow("only plug-ins without an id") << "ids"_qs << false;
}

void Tst_AiTools::areThereOnlyWithAPlugin() {
    QFETCH(QString, change);
    QFETCH(bool, areThere);
    const QString library = m_libraries->folder() + "/kilnworks.so"_qs;
    PluginHost::resetForTesting();
    m_session->platform->pluginsCanBeHosted = change != "platform"_qs;
    if (change == "library"_qs)
        QVERIFY(QFile::remove(library));
    else if (change == "signature"_qs)
        QVERIFY(QFile::remove(library + ".p7s"_qs));
    else if (change == "plugins"_qs)
        qputenv("TINDRA_TEST_PLUGINS", "");
    else if (change == "ids"_qs)
        qputenv("TINDRA_TEST_PLUGINS", "?||\n?||");
    m_window.reset();
    start();
    QCOMPARE(button("aitools") != nullptr, areThere);
    QCOMPARE(canvasEntry() != nullptr, areThere);
    // With its separator.
    int separators = 0;
    for (const QAction *action : m_window->findChild<Toolbar *>()->actions())
        separators += action->isSeparator();
    QCOMPARE(separators, areThere ? 5 : 4);
    // Without them the window works as ever.
    begin();
    QVERIFY(scene());
}

void Tst_AiTools::hostIsToldWhoAsksAtTheStart() {
    QCOMPARE(m_libraries->calls(), (QStringList{"SetAppInfo tindra ko-kr"_qs, "SetAppInfo tindra ko-kr"_qs,
                                                "PluginCount"_qs, "PluginId 0 30"_qs, "PluginId 1 30"_qs}));
}

void Tst_AiTools::menuIsListedAtEachOpening() {
    begin();
    menu()->popup(QPoint());
    QCOMPARE(entries(), (QStringList{"Erase background"_qs, "Sharpen"_qs}));
    QCOMPARE(m_libraries->calls(),
             (QStringList{"SetAppInfo tindra ko-kr"_qs, "PluginCount"_qs, "PluginId 0 30"_qs,
                          "PluginId 1 30"_qs, "PluginName 30 erase"_qs, "PluginName 30 sharp"_qs}));
    for (const QAction *action : menu()->actions())
        QVERIFY(action->shortcut().isEmpty());
    menu()->close();
    qputenv("TINDRA_TEST_PLUGINS", "new|Brand new|\nnameless||");
    menu()->popup(QPoint());
    QCOMPARE(entries(), (QStringList{"Brand new"_qs, "nameless"_qs}));
    menu()->close();
    qputenv("TINDRA_TEST_PLUGINS", "");
    menu()->popup(QPoint());
    QCOMPARE(entries(), QStringList());
    menu()->close();
}

void Tst_AiTools::entriesHaveNoShortcut() {
    qputenv("TINDRA_TEST_PLUGINS", "erase|Erase background\tCtrl+S|\nsharp|\tF1|");
    emit menu()->aboutToShow();
    QCOMPARE(entries(), (QStringList{"Erase background"_qs, "sharp"_qs}));
}

void Tst_AiTools::menuIsTheSameInTheCanvasMenu() {
    QCOMPARE(canvasEntry()->text(), "AI tools"_qs);
    QVERIFY(!canvasEntry()->isCheckable());
    QCOMPARE(canvasEntry()->menu(), menu());
    const auto *canvasMenu = m_window->findChild<CanvasMenu *>();
    QCOMPARE(canvasMenu->actions().first(), canvasEntry());
    QVERIFY(canvasMenu->actions().at(1)->isSeparator());
}

void Tst_AiTools::pressIsCounted() {
    begin();
    QStringList whileOpen;
    QTimer::singleShot(50, menu(), [&] {
        whileOpen = m_session->usage;
        menu()->close();
    });
    QTest::mousePress(button("aitools"), Qt::LeftButton);
    QCOMPARE(whileOpen, QStringList{"cap_320_01"_qs});
    QTest::mouseRelease(button("aitools"), Qt::LeftButton);
    QCOMPARE(m_session->usage, QStringList{"cap_320_01"_qs});
}

void Tst_AiTools::needACapture() {
    makeWide();
    QVERIFY(!button("aitools")->isEnabled());
    addCapture("a"_qs);
    QVERIFY(button("aitools")->isEnabled());
    m_window->findChild<HistoryWidget *>()->clearSelection();
    QVERIFY(!button("aitools")->isEnabled());
}

void Tst_AiTools::leaveTheOverflowAlone() {
    begin();
    const QMenu *overflow = button("menu")->menu();
    QVERIFY(!overflow->findChild<QAction *>("aitools"_qs));
    const auto widthOfRow = [this] {
        m_window->resize(300, 400);
        QCoreApplication::processEvents();
        int width = 300;
        for (; !button("text")->isVisible(); width += 5) {
            m_window->resize(width, 400);
            QCoreApplication::processEvents();
        }
        return width;
    };
    // What stands behind it leaves the toolbar that much earlier.
    const int with = widthOfRow();
    const int room = button("aitools")->sizeHint().width();
    m_window.reset();
    qputenv("TINDRA_TEST_PLUGINS", "");
    start();
    begin();
    QVERIFY2(with - widthOfRow() >= room, qPrintable(QString::number(with)));
}

void Tst_AiTools::entryRunsItsPlugin() {
    begin();
    menu()->popup(QPoint());
    m_libraries->forgetCalls();
    QTest::keyClick(menu(), Qt::Key_Down);
    QTest::keyClick(menu(), Qt::Key_Down);
    QTest::keyClick(menu(), Qt::Key_Return);
    QCOMPARE(m_libraries->calls(),
             QStringList{"ExecutePlugin sharp --image=\"%1/sharp_1234.png\""_qs.arg(folder("sharp"))});
}

void Tst_AiTools::pluginGetsThePicture() {
    begin();
    drawStroke();
    const QImage expected = scene()->flatten(true, false).toImage();
    m_window->onAiToolsAction("erase"_qs);
    QCOMPARE(m_libraries->calls(), QStringList{"ExecutePlugin erase --image=\"%1\""_qs.arg(picture())});
    const QImage written(picture());
    QCOMPARE(written.size(), QSize(40, 30));
    QVERIFY(written.pixelColor(15, 15) == QColor(Qt::blue));
    QCOMPARE(written.convertToFormat(QImage::Format_ARGB32), expected.convertToFormat(QImage::Format_ARGB32));

    QFile file(picture());
    QVERIFY(file.open(QIODevice::ReadOnly));
    const auto encoded = [&expected](int quality) {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        expected.save(&buffer, "PNG", quality);
        return buffer.data();
    };
    QVERIFY(encoded(70) != encoded(0));
    QCOMPARE(file.readAll(), encoded(70));
    // The scene is as it was.
    QCOMPARE(scene()->flatten(true, false).toImage(), expected);
    QVERIFY(scene()->canUndo());
}

void Tst_AiTools::pictureIsPrivate() {
    begin();
    m_window->onAiToolsAction("erase"_qs);
    constexpr auto Others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther |
                            QFile::WriteOther | QFile::ExeOther;
    QVERIFY(QFile::exists(picture()));
    QVERIFY(!(QFile::permissions(picture()) & Others));
    QVERIFY(!(QFile::permissions(folder()) & Others));
}

void Tst_AiTools::secondPictureOfTheMomentReplacesTheFirst() {
    begin();
    m_window->onAiToolsAction("erase"_qs);
    drawStroke();
    m_window->onAiToolsAction("erase"_qs);
    QCOMPARE(QDir(folder()).entryList(QDir::Files), QStringList{"erase_1234.png"_qs});
    QVERIFY(QImage(picture()).pixelColor(15, 15) == QColor(Qt::blue));
    tools()->setClock([] { return 1235; });
    m_window->onAiToolsAction("erase"_qs);
    QCOMPARE(QDir(folder()).entryList(QDir::Files), (QStringList{"erase_1234.png"_qs, "erase_1235.png"_qs}));
    QCOMPARE(calls("ExecutePlugin"_qs).size(), 3);
}

void Tst_AiTools::idStaysInTheWorkFolder_data() {
    QTest::addColumn<QString>("id");
    QTest::addColumn<bool>("runs");
    const auto row = [](const char *id, bool runs) {
        QTest::newRow(*id ? id : "none") << QString::fromUtf8(id) << runs;
    };
    row("", false);
    row(".", false);
    row("..", false);
    row("/", false);
    row("a/b", false);
    row("../../out", false);
    row("/../../out", false);
    row("/etc", false);
    // The argument's own marks: there would be two pictures, or another option.
    row("a|b", false);
    row("a\" --x=\"", false);
    row("a b", true);
    row("a..b", true);
    row("...", true);
    row("%1%2", true);
    row("지우개", true);
    QTest::newRow("end in the middle") << QString(QLatin1String("a\0b", 3)) << false;
}

void Tst_AiTools::idStaysInTheWorkFolder() {
    QFETCH(QString, id);
    QFETCH(bool, runs);
    begin();
    const QStringList before = allFiles();
    m_window->onAiToolsAction(id);
    if (runs) {
        QVERIFY(QFile::exists("%1/capture_"_qs.arg(workFolder()) + id + "/"_qs + id + "_1234.png"_qs));
        QCOMPARE(calls("ExecutePlugin"_qs).size(), 1);
    } else {
        QCOMPARE(allFiles(), before);
        QCOMPARE(m_libraries->calls(), QStringList());
    }
    QVERIFY(!QApplication::overrideCursor());
}

void Tst_AiTools::pictureThatCannotBeWrittenRunsNothing_data() {
    QTest::addColumn<bool>("isFolderInTheWay");
    QTest::newRow("no folder can be made") << false;
    QTest::newRow("no file can be written") << true;
}

void Tst_AiTools::pictureThatCannotBeWrittenRunsNothing() {
    QFETCH(bool, isFolderInTheWay);
    begin();
    if (isFolderInTheWay)
        QVERIFY(QDir().mkpath(picture()));
    else
        QVERIFY(QFile(folder()).open(QIODevice::WriteOnly));
    ModalAnswers answers;
    m_window->onAiToolsAction("erase"_qs);
    QCOMPARE(m_libraries->calls(), QStringList());
    QVERIFY(!QApplication::overrideCursor());
    QVERIFY(answers.isDone());
}

void Tst_AiTools::pathThatCannotBeToldRunsNothing() {
    begin();
    const QByteArray before = qgetenv("XDG_DATA_HOME");
    qputenv("XDG_DATA_HOME", before + "/a|b");
    QVERIFY(workFolder().contains("a|b"_qs));
    m_window->onAiToolsAction("erase"_qs);
    QDir(QFile::decodeName(qgetenv("XDG_DATA_HOME"))).removeRecursively();
    qputenv("XDG_DATA_HOME", before);
    QCOMPARE(m_libraries->calls(), QStringList());
}

void Tst_AiTools::cursorWaitsMeanwhile() {
    begin();
    QVector<Qt::CursorShape> shapes;
    const auto note = [&shapes] {
        shapes.append(QApplication::overrideCursor() ? QApplication::overrideCursor()->shape()
                                                     : Qt::ArrowCursor);
    };
    // Treated ahead of the plug-in.
    QMetaObject::invokeMethod(this, note, Qt::QueuedConnection);
    m_window->onAiToolsAction("erase"_qs);
    note();
    QCOMPARE(shapes, (QVector<Qt::CursorShape>{Qt::WaitCursor, Qt::ArrowCursor}));
}

void Tst_AiTools::pictureIsThatOfTheCaptureShownLast() {
    begin();
    QMetaObject::invokeMethod(
        this,
        [this] {
            treat("/path \"%1\" /point 10 10"_qs.arg(capture("b"_qs, {70, 50})));
        },
        Qt::QueuedConnection);
    m_window->onAiToolsAction("erase"_qs);
    QCOMPARE(QImage(picture()).size(), QSize(70, 50));
}

void Tst_AiTools::captureThatGoesMeanwhileRunsNothing() {
    begin();
    QMetaObject::invokeMethod(
        this, [this] { m_window->findChild<HistoryWidget *>()->clearSelection(); }, Qt::QueuedConnection);
    m_window->onAiToolsAction("erase"_qs);
    QVERIFY(!scene());
    QCOMPARE(m_libraries->calls(), QStringList());
    QVERIFY(!QFile::exists(picture()));
}

void Tst_AiTools::endOfTheProgramRunsNothing_data() {
    QTest::addColumn<bool>("isKill");
    QTest::newRow("exit") << false;
    QTest::newRow("kill, which leaves the folder there") << true;
}

void Tst_AiTools::endOfTheProgramRunsNothing() {
    QFETCH(bool, isKill);
    begin();
    markSaved();
    qputenv("TINDRA_TEST_RESULT", "1");
    ModalAnswers answers;
    QVERIFY(quits([this, isKill] {
        if (isKill)
            m_window->kill();
        else
            m_window->onClickClose();
        m_window->onAiToolsAction("erase"_qs);
    }));
    QVERIFY(m_window->hasLeft());
    QCOMPARE(m_libraries->calls(), QStringList());
    QVERIFY(!QFile::exists(picture()));
    QCOMPARE(QFile::exists(folder()), isKill);
    QVERIFY(answers.isDone());
}

void Tst_AiTools::oneRunAtATime() {
    begin();
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_window->onAiToolsAction("sharp"_qs);
            menu()->popup(QPoint());
            menu()->close();
        },
        Qt::QueuedConnection);
    m_window->onAiToolsAction("erase"_qs);
    QCOMPARE(m_libraries->calls(), QStringList{"ExecutePlugin erase --image=\"%1\""_qs.arg(picture())});
    m_window->onAiToolsAction("sharp"_qs);
    QCOMPARE(calls("ExecutePlugin"_qs).size(), 2);
}

void Tst_AiTools::resultIsTold_data() {
    QTest::addColumn<QByteArray>("result");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("icon");
    const auto updating =
        "Updating Brindlehub (the management program of Brindle).\nPlease try again later."_qs;
    const auto failure =
        "An unexpected error occurred. Reinstalling the program may fix this problem. If the issue "
        "continues, please contact customer support."_qs;
    QTest::newRow("done") << QByteArray("0") << QString() << QString();
    QTest::newRow("updating") << QByteArray("1306") << updating << "Information"_qs;
    for (const char *result : {"1", "125", "127", "1305", "1307", "1627", "4294967295"})
        QTest::newRow(result) << QByteArray(result) << failure << "Critical"_qs;
}

void Tst_AiTools::resultIsTold() {
    QFETCH(QByteArray, result);
    QFETCH(QString, text);
    QFETCH(QString, icon);
    begin();
    qputenv("TINDRA_TEST_RESULT", result);
    OpenedUrls opened;
    ModalAnswers answers;
    QStringList seen;
    if (!text.isEmpty()) {
        answers.add([&](QWidget *dialog) {
            seen << dialog->windowTitle()
                 << dialog->findChild<QLabel *>("icon_"_qs)->property("icon").toString();
            for (const QPushButton *offered : dialog->findChildren<QPushButton *>())
                seen << offered->text();
            QVERIFY(!QApplication::overrideCursor());
            QCOMPARE(dialog->parentWidget(), m_window.get());
            ModalAnswers::press(dialog, "Ok"_qs);
        });
    }
    m_window->onAiToolsAction("erase"_qs);
    QVERIFY(answers.isDone());
    QCOMPARE(answers.texts(), text.isEmpty() ? QStringList() : QStringList{text});
    QCOMPARE(seen, text.isEmpty() ? QStringList() : (QStringList{"Tindra"_qs, icon, "Ok"_qs}));
    QVERIFY(opened.urls.isEmpty());
    QVERIFY(QFile::exists(picture()));
}

void Tst_AiTools::missingHostOffersTheDownload_data() {
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QVector<QUrl>>("urls");
    QTest::newRow("yes") << "Yes"_qs << QVector<QUrl>{QUrl("https://www.brindle.example/download"_qs)};
    QTest::newRow("no") << "No"_qs << QVector<QUrl>();
    QTest::newRow("closed") << QString() << QVector<QUrl>();
}

void Tst_AiTools::missingHostOffersTheDownload() {
    QFETCH(QString, answer);
    begin();
    qputenv("TINDRA_TEST_RESULT", "126");
    OpenedUrls opened;
    ModalAnswers answers;
    QStringList seen;
    answers.add([&](QWidget *dialog) {
        seen << dialog->windowTitle() << dialog->findChild<QLabel *>("icon_"_qs)->property("icon").toString();
        if (answer.isEmpty())
            dialog->close();
        else
            ModalAnswers::press(dialog, answer);
    });
    m_window->onAiToolsAction("erase"_qs);
    QVERIFY(answers.isDone());
    QCOMPARE(answers.texts(),
             QStringList{
                 "The AI features require Brindlehub (the management program of Brindle).\nWould you like to "
                 "install Brindlehub now?"_qs});
    QCOMPARE(seen, (QStringList{"Tindra"_qs, "Information"_qs}));
    QTEST(opened.urls, "urls");
}

void Tst_AiTools::withoutAHostTheRunFails() {
    PluginHost::resetForTesting();
    QVERIFY(QFile::remove(m_libraries->folder() + "/kilnworks.so"_qs));
    m_window.reset();
    start();
    begin();
    ModalAnswers answers;
    answers.addPress("Ok"_qs);
    m_window->onAiToolsAction("erase"_qs);
    QVERIFY(answers.isDone());
    QVERIFY(answers.texts().first().startsWith("An unexpected error occurred."_qs));
    QCOMPARE(m_libraries->calls(), QStringList());
}

void Tst_AiTools::picturesGoAtTheExit() {
    begin();
    markSaved();
    m_window->onAiToolsAction("erase"_qs);
    const QTemporaryDir outside;
    QVERIFY(QFile(outside.filePath("kept"_qs)).open(QIODevice::WriteOnly));
    QVERIFY(QFile::link(outside.path(), folder("link")));
    QVERIFY(QDir(workFolder()).mkpath("captured"_qs));
    QVERIFY(quits([this] { m_window->onClickClose(); }));
    QVERIFY(!QFile::exists(folder()));
    QVERIFY(QFile::exists(outside.filePath("kept"_qs)));
    QVERIFY(QDir(workFolder()).exists("captured"_qs));
}

QTEST_MAIN(Tst_AiTools)
#include "tst_aitools.moc"
