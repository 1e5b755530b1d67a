#include "app/tindraeditor.h"
#include "canvas/editorview.h"
#include "history/historylistwidget.h"
#include "history/historylistwidgetitem.h"
#include "history/historywidget.h"
#include "support/literals.h"
#include "support/modalanswers.h"
#include "support/session.h"

#include <QScreen>
#include <QTemporaryDir>
#include <QToolButton>
#include <QtTest>

namespace {

using Messages = QVector<quint32>;
constexpr int NoQuit = 99;
constexpr int HideBlock = 500; // milliseconds

} // namespace

/// The window as commands, keys and buttons drive it, and what the capture process hears of it.
class Tst_TindraEditor : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    // Structure
    void beginsHiddenAndEmpty();
    void widgetsCarryTheirNames();
    // Commands
    void voidLinesDoNothing_data();
    void voidLinesDoNothing();
    void showBringsUpAndTells();
    void showComesBeforeHide();
    void hideTells_data();
    void hideTells();
    void hideIsBlockedAfterACapture();
    void preferenceValueIsChanged_data();
    void preferenceValueIsChanged();
    void captureIsAddedShownAndTold();
    void skippedCaptureStaysHidden();
    void secondCaptureLeavesTheWindowAlone();
    void autoSaveFollowsTheCapture_data();
    void autoSaveFollowsTheCapture();
    void saveAsksForAName();
    void lineInsideTheDialogOfAnother();
    void brokenCaptureIsReported_data();
    void brokenCaptureIsReported();
    void brokenCaptureIsSilentWhileVisible();
    void fullListIsReported();
    void restoredCapturesAreToldOnce();
    // Placement
    void windowIsFittedToTheCapture();
    void hugeCaptureFillsTheScreen();
    // Tools
    void toolsAreSetAndRemembered_data();
    void toolsAreSetAndRemembered();
    void cropIsNotRemembered();
    void figuresReportUnusualColors();
    void widthsAndStrengthsAreCounted_data();
    void widthsAndStrengthsAreCounted();
    void lastToolIsCheckedAtStart();
    void undoStateReachesTheButtons();
    void drawingsLiveWithTheirCapture();
    void copyGoesToTheClipboard();
    void panelIsHiddenAndShown();
    // Keys
    void keysAct_data();
    void keysAct();
    void escapeEndsTheOpenItemFirst();
    void arrowsWalkTheRows();
    // Hiding and exiting
    void closeOnlyHidesInTrayMode();
    void closeExitsWithoutTrayMode();
    void closeCommandExitsInTrayMode();
    void exitAsksAboutUnsavedImages_data();
    void exitAsksAboutUnsavedImages();
    void refusedExitLeavesTheCloseButtonHiding();
    void exitIsRefusedWhileADialogIsOpen();
    void killAsksNothingAndKeepsTheFiles_data();
    void killAsksNothingAndKeepsTheFiles();
    void exitClearsTheWorkFolder();
    void exitSavesThePreferences();
    void endOfTheSessionAsksNothing();

private:
    void treat(const QString &line) { emit m_window->commandArrived("tindra "_qs + line); }
    QString capture(const QString &name, const QSize &size = {40, 30}) {
        return Session::captureFile(name, size);
    }
    void addCapture(const QString &name) { treat("/path \"%1\" /point 10 10"_qs.arg(capture(name))); }
    void markSaved(int row = 0) { list()->rowItem(row)->editor()->setSavedPath("/saved.png"_qs); }
    HistoryListWidget *list() const { return m_window->findChild<HistoryListWidget *>(); }
    EditorView *view() const { return m_window->findChild<EditorView *>(); }
    Editor *scene() const { return view()->editor(); }
    QToolButton *button(const char *name) const {
        return m_window->findChild<QToolButton *>(QLatin1String(name));
    }
    Messages messages() const { return m_session->platform->postedMessages(); }
    void forgetMessages() { m_session->platform->posted.clear(); }
    void drawStroke();
    void activate();
    /// Whether the action ends the event loop by itself.
    bool quits(const std::function<void()> &action);
    TindraPreferences *preferences() const { return m_session->preferences; }

    std::unique_ptr<Session> m_session;
    std::unique_ptr<QTemporaryDir> m_target;
    std::unique_ptr<TindraEditor> m_window;
};

void Tst_TindraEditor::init() {
    m_session = std::make_unique<Session>();
    m_target = std::make_unique<QTemporaryDir>();
    preferences()->SetString(TindraPreferences::AutoSavePath, m_target->path());
    preferences()->SetString(TindraPreferences::FilePath, m_target->path());
    m_window = std::make_unique<TindraEditor>();
    m_session->usage.clear();
}

void Tst_TindraEditor::cleanup() {
    m_window.reset();
    m_session.reset();
}

void Tst_TindraEditor::drawStroke() {
    treat("/updateprefvalue 0 1"_qs); // any line: the window must not mind
    m_window->onPenSelected(Qt::blue);
    const auto send = [this](QEvent::Type type, const QPointF &pos) {
        const QPoint viewPos = view()->mapFromScene(pos);
        const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, viewPos, view()->viewport()->mapToGlobal(viewPos), button, held,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(view()->viewport(), &event);
    };
    send(QEvent::MouseButtonPress, {5, 5});
    send(QEvent::MouseMove, {15, 15});
    send(QEvent::MouseMove, {25, 10});
    send(QEvent::MouseButtonRelease, {25, 10});
    QCoreApplication::processEvents();
}

void Tst_TindraEditor::activate() {
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
}

bool Tst_TindraEditor::quits(const std::function<void()> &action) {
    QTimer::singleShot(0, this, action);
    QTimer patience;
    connect(&patience, &QTimer::timeout, this, [] { QCoreApplication::exit(NoQuit); });
    patience.start(400);
    return QApplication::exec() != NoQuit;
}

void Tst_TindraEditor::beginsHiddenAndEmpty() {
    QVERIFY(!m_window->isVisible());
    QVERIFY(!scene());
    QVERIFY(button("capture")->isEnabled());
    QVERIFY(!button("save")->isEnabled());
    QVERIFY(!button("pen")->isEnabled());
    QVERIFY(messages().isEmpty());
}

void Tst_TindraEditor::widgetsCarryTheirNames() {
    QCOMPARE(m_window->objectName(), "TindraEditorClass"_qs);
    QCOMPARE(m_window->windowTitle(), "TindraEditor"_qs);
    for (const char *name : {"mainWidget_", "graphicsView_", "historyWidget_", "toolbar_"})
        QVERIFY2(m_window->findChild<QWidget *>(QLatin1String(name)), name);
    QCOMPARE(m_window->findChild<QWidget *>("toolbar_"_qs)->windowTitle(), "toolBar"_qs);
    for (const char *name : {"verticalLayout_2", "imageHorizontalLayout_"})
        QVERIFY2(m_window->findChild<QLayout *>(QLatin1String(name)), name);
    const auto *panel = m_window->findChild<HistoryWidget *>();
    QCOMPARE(panel->minimumWidth(), 172);
    QCOMPARE(panel->maximumWidth(), 172);
}

void Tst_TindraEditor::voidLinesDoNothing_data() {
    QTest::addColumn<QString>("line");
    QTest::newRow("empty") << "";
    QTest::newRow("no command") << "something else";
    QTest::newRow("path missing, hide before it") << "/hide /path";
    QTest::newRow("one number of the point, autosave before it") << "/autosave /skip /point 4";
    QTest::newRow("memory without a path") << "/memory 100";
}

void Tst_TindraEditor::voidLinesDoNothing() {
    QFETCH(QString, line);
    treat(line);
    QVERIFY(messages().isEmpty());
    QVERIFY(m_session->usage.isEmpty());
    QCOMPARE(list()->count(), 0);
}

void Tst_TindraEditor::showBringsUpAndTells() {
    treat("/show"_qs);
    QVERIFY(m_window->isVisible());
    QCOMPARE(messages(), (Messages{0x86E, 0x869, 0x86C}));
    QVERIFY(m_session->platform->broughtToFront > 0);
    const QRect available = m_window->screen()->availableGeometry();
    QVERIFY(available.contains(m_window->frameGeometry()));
    QVERIFY((m_window->frameGeometry().center() - available.center()).manhattanLength() <= 4);

    forgetMessages();
    m_session->platform->broughtToFront = 0;
    treat("/show"_qs);
    QCOMPARE(messages(), (Messages{0x869, 0x86C}));
    QCOMPARE(m_session->platform->broughtToFront, 1);
}

void Tst_TindraEditor::showComesBeforeHide() {
    treat("/hide /show"_qs);
    QVERIFY(m_window->isVisible());
}

void Tst_TindraEditor::hideTells_data() {
    QTest::addColumn<bool>("visible");
    QTest::addColumn<bool>("full");
    QTest::newRow("visible") << true << false;
    QTest::newRow("hidden already") << false << false;
    QTest::newRow("list full") << true << true;
    QTest::newRow("hidden already, list full") << false << true;
}

void Tst_TindraEditor::hideTells() {
    QFETCH(bool, visible);
    QFETCH(bool, full);
    for (int i = 0; full && i < 100; ++i)
        m_window->AddNewPixmap(Session::captureInMemory("m%1"_qs.arg(i)), {}, true);
    if (visible)
        m_window->show();
    forgetMessages();
    treat("/hide"_qs);
    QVERIFY(!m_window->isVisible());
    QCOMPARE(m_session->platform->posted, (QVector<FakePlatform::Event>{{0x86D, quint64(full ? 1 : 0), 0}}));
}

void Tst_TindraEditor::hideIsBlockedAfterACapture() {
    addCapture("a"_qs);
    treat("/hide"_qs);
    QVERIFY(m_window->isVisible());
    QTRY_VERIFY_WITH_TIMEOUT(!m_window->isHideBlocked(), 4 * HideBlock);
    treat("/hide"_qs);
    QVERIFY(!m_window->isVisible());
}

void Tst_TindraEditor::preferenceValueIsChanged_data() {
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("autoSave");
    QTest::addColumn<bool>("askForFile");
    QTest::newRow("auto save on") << "/updateprefvalue 48 1" << true << false;
    QTest::newRow("any number but 0 is on") << "/updateprefvalue 48 -7" << true << false;
    QTest::newRow("auto save off") << "/updateprefvalue 48 0" << false << true;
    QTest::newRow("no such item") << "/updateprefvalue 87 1" << false << true;
    QTest::newRow("another item") << "/updateprefvalue 3 1" << false << true;
}

void Tst_TindraEditor::preferenceValueIsChanged() {
    QFETCH(QString, line);
    preferences()->SetBool(TindraPreferences::ShowFileDlgAfterCapture, true);
    treat(line);
    QTEST(preferences()->GetBool(TindraPreferences::AutoSave, false), "autoSave");
    QTEST(preferences()->GetBool(TindraPreferences::ShowFileDlgAfterCapture, false), "askForFile");
}

void Tst_TindraEditor::captureIsAddedShownAndTold() {
    addCapture("a"_qs);
    QCOMPARE(list()->count(), 1);
    QVERIFY(m_window->isVisible());
    QVERIFY(scene());
    QCOMPARE(scene(), list()->rowItem(0)->editor());
    QVERIFY(button("pen")->isEnabled());
    QVERIFY(!button("undo")->isEnabled());
    QVERIFY(!button("reset")->isEnabled());
    QCOMPARE(messages(), (Messages{0x86E, 0x86C}));
    QCOMPARE(m_session->usage, QStringList{"cap_30_03"_qs});
}

void Tst_TindraEditor::skippedCaptureStaysHidden() {
    treat("/skip /path "_qs + capture("a"_qs, {300, 200}));
    QVERIFY(!m_window->isVisible());
    QCOMPARE(list()->count(), 1);
    QVERIFY(messages().isEmpty());
    QVERIFY(m_session->usage.isEmpty());
    QVERIFY(!m_window->isHideBlocked());
}

void Tst_TindraEditor::secondCaptureLeavesTheWindowAlone() {
    addCapture("a"_qs);
    const QRect geometry = m_window->geometry();
    forgetMessages();
    treat("/point 500 500 /path "_qs + capture("b"_qs, {600, 500}));
    QCOMPARE(m_window->geometry(), geometry);
    QCOMPARE(list()->count(), 2);
    QCOMPARE(scene(), list()->rowItem(0)->editor());
    QVERIFY(messages().isEmpty());
}

void Tst_TindraEditor::autoSaveFollowsTheCapture_data() {
    QTest::addColumn<QString>("options");
    QTest::addColumn<bool>("visible");
    QTest::addColumn<bool>("resultShown");
    QTest::addColumn<bool>("told");
    QTest::newRow("shown") << "/autosave" << true << true << false;
    QTest::newRow("silent") << "/autosave /skip" << false << false << true;
    QTest::newRow("auto save goes before save") << "/save /autosave" << true << true << false;
}

void Tst_TindraEditor::autoSaveFollowsTheCapture() {
    QFETCH(QString, options);
    QFETCH(bool, resultShown);
    ModalAnswers answers;
    if (resultShown)
        answers.addPress("Close"_qs);
    treat(options + " /path "_qs + capture("a"_qs));
    QVERIFY(answers.isDone());
    QCOMPARE(QDir(m_target->path()).entryList(QDir::Files).size(), 1);
    QVERIFY(list()->rowItem(0)->editor()->isSaved());
    QTEST(m_window->isVisible(), "visible");
    QTEST(messages().contains(0x870), "told");
}

void Tst_TindraEditor::saveAsksForAName() {
    addCapture("a"_qs);
    ModalAnswers answers;
    answers.addClose();
    treat("/save"_qs);
    QVERIFY(answers.isDone());
    QVERIFY(!list()->rowItem(0)->editor()->isSaved());
}

void Tst_TindraEditor::lineInsideTheDialogOfAnother() {
    ModalAnswers answers;
    answers.add([this](QWidget *dialog) {
        // Arrives while the failure is still on the screen.
        addCapture("b"_qs);
        QCOMPARE(list()->count(), 1);
        ModalAnswers::press(dialog, "Ok"_qs);
    });
    treat("/path /nothing.png"_qs);
    QVERIFY(answers.isDone());
    QCOMPARE(list()->count(), 1);
    QVERIFY(m_window->isVisible());
}

void Tst_TindraEditor::brokenCaptureIsReported_data() {
    QTest::addColumn<bool>("skip");
    QTest::newRow("shown") << false;
    QTest::newRow("silent") << true;
}

void Tst_TindraEditor::brokenCaptureIsReported() {
    QFETCH(bool, skip);
    ModalAnswers answers;
    answers.addPress("Ok"_qs);
    treat((skip ? "/skip "_qs : QString()) + "/path /nothing.png"_qs);
    QVERIFY(answers.isDone());
    QCOMPARE(answers.texts(), QStringList{"Failed to capture image."_qs});
    QCOMPARE(m_window->isVisible(), !skip);
    QCOMPARE(messages(), skip ? Messages{} : (Messages{0x86E, 0x86C}));
    QVERIFY(m_session->usage.isEmpty());
    QCOMPARE(list()->count(), 0);
}

void Tst_TindraEditor::brokenCaptureIsSilentWhileVisible() {
    addCapture("a"_qs);
    ModalAnswers answers;
    treat("/path /nothing.png"_qs);
    QVERIFY(answers.isDone());
    QCOMPARE(list()->count(), 1);
    QCOMPARE(scene(), list()->rowItem(0)->editor());
}

void Tst_TindraEditor::fullListIsReported() {
    for (int i = 0; i < 100; ++i)
        m_window->AddNewPixmap(Session::captureInMemory("m%1"_qs.arg(i)), {}, true);
    ModalAnswers answers;
    answers.addPress("Ok"_qs);
    addCapture("late"_qs);
    QVERIFY(answers.isDone());
    QCOMPARE(answers.texts(), QStringList{"Failed to capture image."_qs});
    QCOMPARE(list()->count(), 100);
    QVERIFY(!list()->selectedItem());
    QVERIFY(!scene());
}

void Tst_TindraEditor::restoredCapturesAreToldOnce() {
    m_window->setCapturesRestored();
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

void Tst_TindraEditor::windowIsFittedToTheCapture() {
    treat("/point 150 230 /path "_qs + capture("a"_qs, {300, 200}));
    const QSize frame = m_window->frameGeometry().size() - m_window->size();
    const int toolbarHeight = m_window->findChild<QWidget *>("toolbar_"_qs)->height();
    QCOMPARE(m_window->size(), QSize(300 + 200 + 172, 200 + 200 + toolbarHeight) - frame);
    QCOMPARE(m_window->pos() + QPoint(frame.width() / 2, 0), QPoint(50, m_window->y()));
}

void Tst_TindraEditor::hugeCaptureFillsTheScreen() {
    treat("/point 5 5 /path "_qs + capture("a"_qs, {2000, 1500}));
    const QRect available = m_window->screen()->availableGeometry();
    QCOMPARE(m_window->frameGeometry(), available);
}

void Tst_TindraEditor::toolsAreSetAndRemembered_data() {
    QTest::addColumn<int>("tool");
    QTest::addColumn<int>("remembered");
    QTest::newRow("eraser is not remembered") << int(Editor::Eraser) << int(Editor::Rectangle);
    QTest::newRow("pen") << int(Editor::Pen) << int(Editor::Pen);
    QTest::newRow("highlighter") << int(Editor::Highlighter) << int(Editor::Highlighter);
    QTest::newRow("arrow") << int(Editor::Arrow) << int(Editor::Arrow);
    QTest::newRow("mosaic") << int(Editor::Mosaic) << int(Editor::Mosaic);
    QTest::newRow("text") << int(Editor::Text) << int(Editor::Text);
}

void Tst_TindraEditor::toolsAreSetAndRemembered() {
    QFETCH(int, tool);
    addCapture("a"_qs);
    switch (tool) {
    case Editor::Eraser:
        m_window->onClickEraser();
        break;
    case Editor::Pen:
        m_window->onPenSelected(Qt::blue);
        QCOMPARE(preferences()->color(TindraPreferences::PenColor), QColor(Qt::blue));
        break;
    case Editor::Highlighter:
        m_window->onHighlighterSelected(Qt::green);
        QCOMPARE(preferences()->color(TindraPreferences::HighlighterColor), QColor(Qt::green));
        break;
    case Editor::Arrow:
        m_window->onFigureSelected(Editor::Arrow, Qt::DotLine, Qt::red, Qt::blue);
        QCOMPARE(preferences()->GetInt(TindraPreferences::FigureType, -1), int(Editor::Arrow));
        QCOMPARE(preferences()->GetInt(TindraPreferences::FigureLineType, -1), int(Qt::DotLine));
        QCOMPARE(preferences()->color(TindraPreferences::FigureFillColor), QColor(Qt::red));
        QCOMPARE(preferences()->color(TindraPreferences::FigureLineColor), QColor(Qt::blue));
        break;
    case Editor::Mosaic:
        m_window->onMosaicSelected(9);
        QCOMPARE(preferences()->GetInt(TindraPreferences::MosaicStrength, -1), 9);
        break;
    case Editor::Text:
        m_window->onClickText();
        break;
    }
    QCOMPARE(int(scene()->shapeType()), tool);
    QTEST(preferences()->GetInt(TindraPreferences::LastDrawingItem, -1), "remembered");
    if (tool <= Editor::Highlighter) {
        static const char *const buttons[] = {"eraser", "pen", "highlighter"};
        QVERIFY(button(buttons[tool])->isChecked());
    }
}

void Tst_TindraEditor::cropIsNotRemembered() {
    addCapture("a"_qs);
    m_window->onPenSelected(Qt::blue);
    m_window->onClickCrop();
    QCOMPARE(scene()->shapeType(), Editor::Crop);
    QCOMPARE(preferences()->GetInt(TindraPreferences::LastDrawingItem, -1), int(Editor::Pen));
}

void Tst_TindraEditor::figuresReportUnusualColors() {
    m_window->onPenSelected(Qt::red); // the default
    QVERIFY(m_session->usage.isEmpty());
    m_window->onPenSelected(Qt::blue);
    m_window->onPenSelected(Qt::blue);
    m_window->onHighlighterSelected(Qt::blue);
    m_window->onFigureSelected(Editor::Circle, Qt::SolidLine, Qt::green, Qt::blue);
    m_window->onPenSelected(Qt::red);
    QCOMPARE(m_session->usage,
             (QStringList{"cap_303_15"_qs, "cap_303_16"_qs, "cap_303_14"_qs, "cap_303_13"_qs}));
}

void Tst_TindraEditor::widthsAndStrengthsAreCounted_data() {
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("strength");
    QTest::addColumn<QString>("event");
    QTest::newRow("width 1") << 1 << 0 << "cap_30_14";
    QTest::newRow("width 3") << 3 << 0 << "cap_30_15";
    QTest::newRow("width 5") << 5 << 0 << "cap_30_16";
    QTest::newRow("width 8") << 8 << 0 << "cap_30_17";
    QTest::newRow("width 12") << 12 << 0 << "cap_30_18";
    QTest::newRow("other width") << 4 << 0 << "";
    QTest::newRow("weak") << 0 << 4 << "cap_30_06";
    QTest::newRow("medium") << 0 << 6 << "cap_30_07";
    QTest::newRow("strong") << 0 << 9 << "cap_30_08";
}

void Tst_TindraEditor::widthsAndStrengthsAreCounted() {
    QFETCH(int, width);
    QFETCH(int, strength);
    QFETCH(QString, event);
    if (width > 0) {
        m_window->onLineSelected(width);
        QCOMPARE(preferences()->GetInt(TindraPreferences::LineWidth, -1), width);
    } else {
        m_window->onMosaicSelected(strength);
    }
    QCOMPARE(m_session->usage, event.isEmpty() ? QStringList() : QStringList{event});
}

void Tst_TindraEditor::lastToolIsCheckedAtStart() {
    preferences()->SetInt(TindraPreferences::LastDrawingItem, Editor::Highlighter);
    m_window = std::make_unique<TindraEditor>();
    QVERIFY(button("highlighter")->isChecked());
}

void Tst_TindraEditor::undoStateReachesTheButtons() {
    addCapture("a"_qs);
    drawStroke();
    QVERIFY(button("undo")->isEnabled());
    QVERIFY(button("reset")->isEnabled());
    QVERIFY(!button("redo")->isEnabled());
    m_session->usage.clear();
    m_window->onClickUndo();
    QCoreApplication::processEvents();
    QVERIFY(!button("undo")->isEnabled());
    QVERIFY(!button("reset")->isEnabled());
    QVERIFY(button("redo")->isEnabled());
    m_window->onClickRedo();
    m_window->onClickReset();
    QCoreApplication::processEvents();
    QVERIFY(!scene()->canUndo());
    QVERIFY(scene()->canRedo());
    QCOMPARE(m_session->usage, (QStringList{"cap_30_10"_qs, "cap_30_11"_qs, "cap_30_09"_qs}));
}

void Tst_TindraEditor::drawingsLiveWithTheirCapture() {
    addCapture("a"_qs);
    drawStroke();
    const Editor *first = scene();
    addCapture("b"_qs);
    QVERIFY(scene() != first);
    QVERIFY(!button("undo")->isEnabled());
    list()->setCurrentRow(1);
    QCOMPARE(scene(), first);
    QVERIFY(scene()->canUndo());
    QVERIFY(button("undo")->isEnabled());
    QVERIFY(!scene()->isSaved());

    markSaved(0);
    markSaved(1);
    const auto *panel = m_window->findChild<HistoryWidget *>();
    QVERIFY(!panel->hasUnsavedImages());
    drawStroke();
    QVERIFY(panel->hasUnsavedImages());
}

void Tst_TindraEditor::copyGoesToTheClipboard() {
    addCapture("a"_qs);
    m_session->usage.clear();
    m_window->onClickCopy();
    QCOMPARE(m_session->platform->clipboard.size(), QSize(40, 30));
    QCOMPARE(m_session->usage, QStringList{"cap_30_02"_qs});
}

void Tst_TindraEditor::panelIsHiddenAndShown() {
    addCapture("a"_qs);
    auto *panel = m_window->findChild<HistoryWidget *>();
    m_window->resize(1000, 700);
    const QSize size = m_window->size();
    m_window->onClickHistoryHide();
    QVERIFY(!panel->isVisible());
    QCOMPARE(m_window->size(), size - QSize(1, 1));
    emit view()->clickHistoryShow();
    QVERIFY(panel->isVisible());
    QCOMPARE(m_window->size(), size);
}

void Tst_TindraEditor::keysAct_data() {
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("control");
    QTest::addColumn<QStringList>("usage");
    QTest::addColumn<QVector<quint32>>("told");
    QTest::addColumn<int>("rows");
    QTest::newRow("new capture") << int(Qt::Key_N) << true << QStringList{"cap_302_06"_qs} << Messages{0x868}
                                 << 1;
    QTest::newRow("save") << int(Qt::Key_S) << true << QStringList{"cap_302_04"_qs, "cap_30_01"_qs}
                          << Messages{} << 1;
    QTest::newRow("delete") << int(Qt::Key_Delete) << false << QStringList{"cap_302_05"_qs} << Messages{}
                            << 0;
    QTest::newRow("escape hides") << int(Qt::Key_Escape) << false << QStringList{} << Messages{0x86D, 0x86B}
                                  << 1;
    QTest::newRow("return does nothing") << int(Qt::Key_Return) << false << QStringList{} << Messages{} << 1;
}

void Tst_TindraEditor::keysAct() {
    QFETCH(int, key);
    QFETCH(bool, control);
    preferences()->SetBool(TindraPreferences::NotifyDeleteHistory, false);
    addCapture("a"_qs);
    activate();
    m_session->usage.clear();
    forgetMessages();
    ModalAnswers answers;
    if (key == Qt::Key_S)
        answers.addClose();
    QTest::keyClick(m_window.get(), Qt::Key(key), control ? Qt::ControlModifier : Qt::NoModifier);
    QVERIFY(answers.isDone());
    QTEST(m_session->usage, "usage");
    QTEST(messages(), "told");
    QTEST(list()->count(), "rows");
}

void Tst_TindraEditor::escapeEndsTheOpenItemFirst() {
    addCapture("a"_qs);
    activate();
    m_window->onClickCrop();
    QTest::keyClick(m_window.get(), Qt::Key_Escape);
    QVERIFY(m_window->isVisible());
    // Arrows and the row stay away from an open crop; see below for how they act otherwise.
    QTest::keyClick(m_window.get(), Qt::Key_Escape);
    if (scene()->shapeType() != Editor::Crop)
        QVERIFY(!m_window->isVisible());
}

void Tst_TindraEditor::arrowsWalkTheRows() {
    addCapture("a"_qs);
    addCapture("b"_qs);
    activate();
    QCOMPARE(list()->currentRow(), 0);
    QTest::keyClick(m_window.get(), Qt::Key_Down);
    QCOMPARE(list()->currentRow(), 1);
    QTest::keyClick(m_window.get(), Qt::Key_Down);
    QCOMPARE(list()->currentRow(), 1);
    QTest::keyClick(m_window.get(), Qt::Key_Up);
    QCOMPARE(list()->currentRow(), 0);
    m_window->onClickCrop();
    QTest::keyClick(m_window.get(), Qt::Key_Down);
    QCOMPARE(list()->currentRow(), 0);
}

void Tst_TindraEditor::closeOnlyHidesInTrayMode() {
    addCapture("a"_qs);
    forgetMessages();
    QVERIFY(!quits([this] { m_window->close(); }));
    QVERIFY(!m_window->isVisible());
    QCOMPARE(messages(), (Messages{0x86D, 0x86B}));
}

void Tst_TindraEditor::closeExitsWithoutTrayMode() {
    preferences()->SetBool(TindraPreferences::TrayMode, false);
    addCapture("a"_qs);
    markSaved();
    forgetMessages();
    QVERIFY(quits([this] { m_window->close(); }));
    QCOMPARE(messages(), (Messages{0x867, 0x86D}));
}

void Tst_TindraEditor::closeCommandExitsInTrayMode() {
    addCapture("a"_qs);
    markSaved();
    forgetMessages();
    const QString path = capture("b"_qs);
    QVERIFY(quits([this, path] { treat("/close /path "_qs + path); }));
    QCOMPARE(list()->count(), 1);
    QCOMPARE(messages(), (Messages{0x867, 0x86D}));
}

void Tst_TindraEditor::exitAsksAboutUnsavedImages_data() {
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("exits");
    QTest::newRow("yes") << "Yes" << true;
    QTest::newRow("no") << "No" << false;
    QTest::newRow("closed") << "" << false;
}

void Tst_TindraEditor::exitAsksAboutUnsavedImages() {
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

void Tst_TindraEditor::refusedExitLeavesTheCloseButtonHiding() {
    addCapture("a"_qs);
    ModalAnswers answers;
    answers.addPress("No"_qs);
    QVERIFY(!quits([this] { m_window->onClickClose(); }));
    QVERIFY(!quits([this] { m_window->close(); }));
    QVERIFY(answers.isDone());
    QVERIFY(!m_window->isVisible());
}

void Tst_TindraEditor::exitIsRefusedWhileADialogIsOpen() {
    addCapture("a"_qs);
    const QString file = list()->rowItem(0)->editor()->imageKey();
    ModalAnswers answers;
    answers.add([this](QWidget *question) {
        // A second request, while the question of the first stands.
        treat("/close"_qs);
        QCoreApplication::processEvents();
        QVERIFY(question->isVisible());
        ModalAnswers::press(question, "Yes"_qs);
    });
    QVERIFY(quits([this] { treat("/close"_qs); }));
    QVERIFY(answers.isDone());
    // It was a normal exit all the same.
    QVERIFY(!QFile::exists(file));
}

void Tst_TindraEditor::killAsksNothingAndKeepsTheFiles_data() {
    QTest::addColumn<bool>("trayMode");
    QTest::newRow("tray mode") << true;
    QTest::newRow("no tray mode") << false;
}

void Tst_TindraEditor::killAsksNothingAndKeepsTheFiles() {
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

void Tst_TindraEditor::exitClearsTheWorkFolder() {
    QDir work(workFolder());
    for (const QString &folder : {"pin"_qs, "AIRemoveBeta/deep"_qs})
        QVERIFY(work.mkpath(folder));
    const QString stray = capture("stray"_qs);
    const QStringList kept = {work.filePath("pin/0.png"_qs), work.filePath("notes.txt"_qs)};
    for (const QString &path : kept)
        QVERIFY(QFile(path).open(QIODevice::WriteOnly));
    addCapture("a"_qs);
    markSaved();
    QVERIFY(quits([this] { m_window->onClickClose(); }));
    QVERIFY(work.entryList({"*.png"_qs}, QDir::Files).isEmpty());
    QVERIFY(!QFile::exists(stray));
    QVERIFY(!work.exists("AIRemoveBeta"_qs));
    for (const QString &path : kept)
        QVERIFY2(QFile::exists(path), qPrintable(path));
}

void Tst_TindraEditor::exitSavesThePreferences() {
    treat("/updateprefvalue 59 1"_qs);
    QVERIFY(quits([this] { treat("/close"_qs); }));
    m_window.reset();
    TindraPreferences::resetForTesting();
    TindraPreferences::instance()->Init();
    QVERIFY(TindraPreferences::instance()->GetBool(TindraPreferences::AutoHistoryDelete, false));
}

void Tst_TindraEditor::endOfTheSessionAsksNothing() {
    addCapture("a"_qs);
    const QString file = list()->rowItem(0)->editor()->imageKey();
    forgetMessages();
    ModalAnswers answers;
    // The receiver looks at nothing of the manager, which only the desktop can make.
    std::aligned_storage_t<64, alignof(std::max_align_t)> manager;
    QVERIFY(quits([&] { emit qApp->commitDataRequest(reinterpret_cast<QSessionManager &>(manager)); }));
    QVERIFY(answers.isDone());
    QCOMPARE(messages(), (Messages{0x867}));
    QVERIFY(!QFile::exists(file));
}

QTEST_MAIN(Tst_TindraEditor)
#include "tst_tindraeditor.moc"
