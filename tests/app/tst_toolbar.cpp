#include "app/toolbar.h"
#include "app/windowtest.h"
#include "popups/colorselectpopup.h"
#include "popups/figurepopup.h"
#include "popups/linepopup.h"
#include "popups/mosaicpopup.h"
#include "ui/menu.h"

#include <QButtonGroup>
#include <QLayout>
#include <QMenu>

/// Buttons, panels and menus of the toolbar, and which of them are there at which width.
class Tst_Toolbar : public WindowTest {
    Q_OBJECT
private slots:
    void init() { WindowTest::init(); }
    void cleanup() { WindowTest::cleanup(); }

    void buttonsStandInOrder();
    void buttonsTellWhatTheyDo_data();
    void buttonsTellWhatTheyDo();
    void functionsReachTheWindow_data();
    void functionsReachTheWindow();
    void keysWorkAtOnceAndAgain();
    void keysOfDisabledButtonsAreDead();
    void shapeChecksItsButton_data();
    void shapeChecksItsButton();
    void panelsBelongToTheirButtons_data();
    void panelsBelongToTheirButtons();
    void buildingThemChoosesNothing();
    void pressChoosesTheTool();
    void arrowsMoveTheFocusWithoutChoosing();
    void choiceInThePanelChoosesTheTool();
    void colorOutsideTheSwatchesIsKept();
    void lineWidthIsNoTool();
    void emptyEditorLeavesWhatNeedsNoCapture();
    void widthLeavesTheEnabledAlone();
    void printingNeedsACapture();
    void currentCaptureIsPrinted_data();
    void currentCaptureIsPrinted();
    void resetNeedsAnUndo();
    void extensionButtonIsGone();
    void menuHoldsWhatHasNoButton();
    void narrowWindowMovesToolsIntoTheMenu();
    void bannerTakesRoom();
    void hiddenToolIsChosenByItsEntry();
    void hiddenToolIsChosenInItsPanel();
    void menuChecksThePresentTool_data();
    void menuChecksThePresentTool();
    void panelsOpenFromTheCanvasMenuToo();
    void choiceInThePanelClosesTheMenus();

private:
    Toolbar *toolbar() const { return m_window->findChild<Toolbar *>(); }
    QMenu *overflow() const { return button("menu")->menu(); }
    template <class Panel> Panel *panel(const char *name) const {
        return button(name)->menu()->template findChild<Panel *>();
    }
    QAction *actionOf(const QString &text) const {
        for (QAction *action : overflow()->actions()) {
            if (action->text() == text)
                return action;
        }
        return nullptr;
    }
    QAction *entry(const char *name) const {
        for (QAction *action : overflow()->actions()) {
            if (action->objectName() == QLatin1String(name))
                return action;
        }
        return nullptr;
    }
    QString enabled() const;
    QStringList visible() const;
    /// The names of the buttons behind the separators that are seen.
    QStringList separated() const;
    /// How many of the buttons are to stay in a toolbar of that width, by what each entry takes.
    int fitting(int width) const;
    void resizeTo(int width);
    /// Adds a capture; the window has room for every button.
    void begin();
};

namespace {
constexpr auto All =
    "capture save copy undo redo reset figure pen highlighter line text crop mosaic eraser help";
constexpr auto Overflowing = "line text crop mosaic eraser help";
constexpr auto Wide = 1800;

QStringList words(const char *list) {
    return QString::fromLatin1(list).split(QLatin1Char(' '));
}
} // namespace

QString Tst_Toolbar::enabled() const {
    QStringList names;
    for (const QString &name : words(All)) {
        if (m_window->findChild<ToolButton *>(name)->isEnabled())
            names.append(name);
    }
    return names.join(QLatin1Char(' '));
}

QStringList Tst_Toolbar::visible() const {
    QStringList names;
    for (const QString &name : words(All)) {
        if (m_window->findChild<ToolButton *>(name)->isVisible())
            names.append(name);
    }
    return names;
}

QStringList Tst_Toolbar::separated() const {
    QStringList names;
    const QList<QAction *> actions = toolbar()->actions();
    for (int i = 0; i + 1 < actions.size(); ++i) {
        if (actions[i]->isSeparator() && toolbar()->widgetForAction(actions[i])->isVisible())
            names.append(toolbar()->widgetForAction(actions[i + 1])->objectName());
    }
    return names;
}

int Tst_Toolbar::fitting(int width) const {
    constexpr int spacing = 4;
    const auto widthOf = [this](QAction *action) {
        return toolbar()->widgetForAction(action)->sizeHint().width();
    };
    const QList<QAction *> actions = toolbar()->actions();
    const auto lastSeparator = std::find_if(actions.crbegin(), actions.crend(),
                                            [](const QAction *action) { return action->isSeparator(); });
    const int menu = widthOf(actions.last());
    const int separator = widthOf(*lastSeparator);
    int used = separator + spacing;
    int buttons = 0;
    for (QAction *action : actions) {
        if (action == *lastSeparator || action == actions.last())
            continue;
        used += widthOf(action) + spacing;
        buttons += !action->isSeparator() && used < width - menu - spacing - separator - spacing;
    }
    return buttons;
}

void Tst_Toolbar::resizeTo(int width) {
    m_window->show();
    m_window->resize(width, 400);
    QCoreApplication::processEvents();
    QCOMPARE(m_window->width(), width);
}

void Tst_Toolbar::begin() {
    addCapture("a"_qs);
    resizeTo(Wide);
    m_session->usage.clear();
}

void Tst_Toolbar::buttonsStandInOrder() {
    QStringList names;
    for (QAction *action : toolbar()->actions())
        names.append(action->isSeparator() ? "|"_qs : toolbar()->widgetForAction(action)->objectName());
    QCOMPARE(names, words("capture | save copy undo redo reset | figure pen highlighter line | "
                          "text crop mosaic eraser | help menu"));
}

void Tst_Toolbar::buttonsTellWhatTheyDo_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("toolTip");
    QTest::addColumn<bool>("isTool");
    const auto row = [](const char *name, const char *toolTip, bool isTool = false) {
        QTest::newRow(name) << QString::fromLatin1(name) << QString::fromLatin1(toolTip) << isTool;
    };
    row("capture", "Run new capture (Ctrl + N)");
    row("save", "Save current image (Ctrl + S)");
    row("copy", "Copy current image (Ctrl + C)");
    row("undo", "Undo last work (Ctrl + Z)");
    row("redo", "Redo last work (Ctrl + Y)");
    row("reset", "Reset all works");
    row("figure", "Draw figure on current image", true);
    row("pen", "Draw pen on current image", true);
    row("highlighter", "Draw highlighter on current image", true);
    row("line", "Set line width for figure, pen, highlighter");
    row("text", "Add text on current image", true);
    row("crop", "Crop current image", true);
    row("mosaic", "Add mosaic region of current image", true);
    row("eraser", "Erase drawn object", true);
    row("help", "Click to show help, about, etc.");
    row("menu", "Click to show features, save, print, preferences, etc.");
}

void Tst_Toolbar::buttonsTellWhatTheyDo() {
    QFETCH(QString, name);
    const auto *button = m_window->findChild<ToolButton *>(name);
    QVERIFY(button);
    QCOMPARE(button->text(), name);
    QTEST(button->toolTip(), "toolTip");
    QTEST(button->isCheckable(), "isTool");
    QTEST(button->group() != nullptr, "isTool");
    if (button->group())
        QVERIFY(button->group()->exclusive());
}

void Tst_Toolbar::functionsReachTheWindow_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("usage");
    QTest::newRow("copy") << "copy" << QStringList{"cap_30_02"_qs};
    QTest::newRow("undo") << "undo" << QStringList{"cap_30_10"_qs};
    QTest::newRow("redo") << "redo" << QStringList{"cap_30_11"_qs};
    QTest::newRow("reset") << "reset" << QStringList{"cap_30_09"_qs};
}

void Tst_Toolbar::functionsReachTheWindow() {
    QFETCH(QString, name);
    emit m_window->emptyEditor(false);
    m_window->findChild<ToolButton *>(name)->click();
    QTEST(m_session->usage, "usage");
}

void Tst_Toolbar::keysWorkAtOnceAndAgain() {
    begin();
    for (int i = 0; i < 3; ++i)
        drawStroke();
    activate();
    m_session->usage.clear();
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(m_window.get(), Qt::Key_Z, Qt::ControlModifier);
    QCoreApplication::processEvents();
    QTest::keyClick(m_window.get(), Qt::Key_Y, Qt::ControlModifier);
    QTest::keyClick(m_window.get(), Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(m_session->usage,
             (QStringList{"cap_30_10"_qs, "cap_30_10"_qs, "cap_30_10"_qs, "cap_30_11"_qs, "cap_30_02"_qs}));
}

void Tst_Toolbar::keysOfDisabledButtonsAreDead() {
    begin();
    activate();
    QVERIFY(!button("undo")->isEnabled());
    m_session->usage.clear();
    QTest::keyClick(m_window.get(), Qt::Key_Z, Qt::ControlModifier);
    QVERIFY(m_session->usage.isEmpty());
}

void Tst_Toolbar::shapeChecksItsButton_data() {
    QTest::addColumn<int>("shape");
    QTest::addColumn<QString>("checked");
    const QStringList names{"eraser"_qs, "pen"_qs,    "highlighter"_qs, "figure"_qs, "figure"_qs,
                            "figure"_qs, "figure"_qs, "figure"_qs,      "mosaic"_qs, "text"_qs,
                            "text"_qs,   "text"_qs,   "crop"_qs};
    for (int shape = 0; shape < names.size(); ++shape)
        QTest::addRow("%d", shape) << shape << names[shape];
}

void Tst_Toolbar::shapeChecksItsButton() {
    QFETCH(int, shape);
    QFETCH(QString, checked);
    m_window->onChangeShape(Editor::ShapeType(shape == Editor::Pen ? Editor::Eraser : Editor::Pen));
    m_window->onChangeShape(Editor::ShapeType(shape));
    for (const QString &name : words(All))
        QCOMPARE(m_window->findChild<ToolButton *>(name)->isChecked(), name == checked);
}

void Tst_Toolbar::panelsBelongToTheirButtons_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("panel");
    QTest::addColumn<bool>("half");
    QTest::newRow("figure") << "figure" << QByteArray("FigurePopup") << true;
    QTest::newRow("pen") << "pen" << QByteArray("ColorSelectPopup") << true;
    QTest::newRow("highlighter") << "highlighter" << QByteArray("ColorSelectPopup") << true;
    QTest::newRow("line") << "line" << QByteArray("LinePopup") << false;
    QTest::newRow("mosaic") << "mosaic" << QByteArray("MosaicPopup") << true;
    QTest::newRow("eraser") << "eraser" << QByteArray() << false;
}

void Tst_Toolbar::panelsBelongToTheirButtons() {
    QFETCH(QString, name);
    QFETCH(QByteArray, panel);
    const auto *button = m_window->findChild<ToolButton *>(name);
    const Popup *popup = Popup::findPopup(button->menu());
    QCOMPARE(QByteArray(popup ? popup->metaObject()->className() : ""), panel);
    QTEST(button->isMenuButtonShown(), "half");
}

void Tst_Toolbar::buildingThemChoosesNothing() {
    preferences()->SetInt(TindraPreferences::LastDrawingItem, Editor::Circle);
    preferences()->SetInt(TindraPreferences::LineWidth, 2);
    m_session->usage.clear();
    m_window = std::make_unique<TindraEditor>();
    QVERIFY(m_session->usage.isEmpty());
    QCOMPARE(preferences()->GetInt(TindraPreferences::LastDrawingItem, -1), int(Editor::Circle));
    QCOMPARE(preferences()->GetInt(TindraPreferences::LineWidth, -1), 2);
}

void Tst_Toolbar::pressChoosesTheTool() {
    begin();
    button("eraser")->click();
    QCOMPARE(scene()->shapeType(), Editor::Eraser);
    QTest::mousePress(button("pen"), Qt::LeftButton);
    QCOMPARE(scene()->shapeType(), Editor::Pen);
    QVERIFY(button("pen")->isChecked());
    QVERIFY(!button("eraser")->isChecked());
    QTest::mouseRelease(button("pen"), Qt::LeftButton);
    QTest::mouseClick(button("highlighter"), Qt::LeftButton);
    QCOMPARE(scene()->shapeType(), Editor::Highlighter);
    QVERIFY(button("highlighter")->isChecked());
}

void Tst_Toolbar::arrowsMoveTheFocusWithoutChoosing() {
    begin();
    activate();
    button("eraser")->click();
    button("figure")->setFocus(Qt::TabFocusReason);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    QCOMPARE(QApplication::focusWidget(), button("pen"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    QCOMPARE(QApplication::focusWidget(), button("highlighter"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Left);
    QCOMPARE(QApplication::focusWidget(), button("pen"));
    QVERIFY(button("eraser")->isChecked());
    QCOMPARE(scene()->shapeType(), Editor::Eraser);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QVERIFY(button("pen")->isChecked());
    QCOMPARE(scene()->shapeType(), Editor::Pen);

    // Past what is disabled, and not beyond the ends.
    QVERIFY(!button("undo")->isEnabled() && !button("redo")->isEnabled() && !button("reset")->isEnabled());
    button("copy")->setFocus(Qt::TabFocusReason);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    QCOMPARE(QApplication::focusWidget(), button("figure"));
    button("capture")->setFocus(Qt::TabFocusReason);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Left);
    QCOMPARE(QApplication::focusWidget(), button("capture"));
}

void Tst_Toolbar::choiceInThePanelChoosesTheTool() {
    begin();
    button("eraser")->click();
    const auto *pens = panel<ColorSelectPopup>("pen");
    QVERIFY(!pens->color().isValid()); // a new pen is red, which is not among the swatches
    const auto swatches = pens->findChildren<QAbstractButton *>();
    for (QAbstractButton *swatch : swatches) {
        if (swatch->toolTip() == "purple"_qs)
            swatch->click();
    }
    QCOMPARE(preferences()->color(TindraPreferences::PenColor), QColor(112, 48, 160));
    QCOMPARE(scene()->shapeType(), Editor::Pen);
    QVERIFY(button("pen")->isChecked());
    QCOMPARE(panel<ColorSelectPopup>("highlighter")->color(),
             preferences()->color(TindraPreferences::HighlighterColor));
}

void Tst_Toolbar::colorOutsideTheSwatchesIsKept() {
    const QColor own(1, 2, 3);
    preferences()->SetInt(TindraPreferences::PenColor, TindraPreferences::colorToInt(own));
    m_window = std::make_unique<TindraEditor>();
    begin();
    m_session->usage.clear();
    button("eraser")->click();
    QTest::mouseClick(button("pen"), Qt::LeftButton);
    QCOMPARE(scene()->shapeType(), Editor::Pen);
    QCOMPARE(preferences()->color(TindraPreferences::PenColor), own);
    QVERIFY(m_session->usage.isEmpty());
}

void Tst_Toolbar::lineWidthIsNoTool() {
    preferences()->SetInt(TindraPreferences::LineWidth, 2);
    m_window = std::make_unique<TindraEditor>();
    begin();
    button("eraser")->click();
    m_session->usage.clear();
    emit button("line")->beforePress();
    // Only a choice replaces a width that is none of those on offer.
    QCOMPARE(preferences()->GetInt(TindraPreferences::LineWidth, -1), 2);
    const auto widths = panel<LinePopup>("line")->findChildren<QAbstractButton *>();
    widths.last()->click();
    QCOMPARE(preferences()->GetInt(TindraPreferences::LineWidth, -1), 12);
    QCOMPARE(m_session->usage, QStringList{"cap_30_18"_qs});
    QCOMPARE(scene()->shapeType(), Editor::Eraser);
    QVERIFY(button("eraser")->isChecked());
}

void Tst_Toolbar::emptyEditorLeavesWhatNeedsNoCapture() {
    resizeTo(Wide);
    QCOMPARE(enabled(), "capture help"_qs);
    QVERIFY(button("menu")->isEnabled());
    resizeTo(300);
    QVERIFY(!entry("eraser")->isEnabled());
    QVERIFY(entry("help")->isEnabled());
    emit m_window->emptyEditor(false);
    QVERIFY(entry("eraser")->isEnabled());
    resizeTo(Wide);
    QCOMPARE(enabled(), words(All).join(QLatin1Char(' ')));
}

void Tst_Toolbar::widthLeavesTheEnabledAlone() {
    begin();
    m_window->onCanUndo(false);
    m_window->onCanRedo(true);
    const QString before = enabled();
    QVERIFY(!button("undo")->isEnabled() && button("redo")->isEnabled());
    resizeTo(300);
    QVERIFY(!button("redo")->isVisible());
    QVERIFY(entry("eraser")->isEnabled());
    resizeTo(Wide);
    QCOMPARE(enabled(), before);
}

void Tst_Toolbar::printingNeedsACapture() {
    const auto *print = actionOf("Print (&P)"_qs);
    QCOMPARE(print->shortcut(), QKeySequence("Ctrl+P"_qs));
    QVERIFY(!print->isEnabled());
    addCapture("a"_qs);
    QVERIFY(print->isEnabled());
    m_window->findChild<HistoryWidget *>()->clearSelection();
    QVERIFY(!print->isEnabled());
}

void Tst_Toolbar::currentCaptureIsPrinted_data() {
    QTest::addColumn<QString>("road");
    QTest::newRow("menu") << "menu";
    QTest::newRow("key") << "key";
    QTest::newRow("canvas menu") << "canvas";
}

void Tst_Toolbar::currentCaptureIsPrinted() {
    QFETCH(QString, road);
    m_session->platform->printerList.add("Office"_qs);
    treat("/path \"%1\" /point 10 10"_qs.arg(capture("a"_qs, {60, 20})));
    addCapture("b"_qs);
    list()->setCurrentRow(1);
    activate();
    ModalAnswers answers;
    answers.add([](QWidget *dialog) {
        QCOMPARE(QByteArray(dialog->metaObject()->className()), QByteArray("PrintPreviewDialog"));
        dialog->findChild<QPushButton *>("print_"_qs)->click();
    });
    if (road == "menu"_qs)
        actionOf("Print (&P)"_qs)->trigger();
    else if (road == "key"_qs)
        QTest::keyClick(m_window.get(), Qt::Key_P, Qt::ControlModifier);
    else
        emit view()->contextMenuPrint();
    QVERIFY(answers.isDone());
    const auto &jobs = m_session->platform->printerList.jobs;
    QCOMPARE(jobs.size(), 1);
    QCOMPARE(jobs.first()->pages.size(), 1);
    QCOMPARE(jobs.first()->pages.first().drawings.first().image.size(), QSize(60, 20));
}

void Tst_Toolbar::resetNeedsAnUndo() {
    emit m_window->emptyEditor(false);
    m_window->onCanUndo(false);
    QVERIFY(!button("undo")->isEnabled() && !button("reset")->isEnabled() && button("redo")->isEnabled());
    m_window->onCanUndo(true);
    m_window->onCanRedo(false);
    QVERIFY(button("undo")->isEnabled() && button("reset")->isEnabled() && !button("redo")->isEnabled());
}

void Tst_Toolbar::extensionButtonIsGone() {
    const auto *extension = toolbar()->findChild<QWidget *>("qt_toolbar_ext_button"_qs);
    QVERIFY(extension);
    QCOMPARE(extension->maximumSize(), QSize(0, 0));
    QCOMPARE(toolbar()->contextMenuPolicy(), Qt::NoContextMenu);
    // Nor does the window behind it offer to hide the toolbar.
    QContextMenuEvent event(QContextMenuEvent::Mouse, {3, 3}, toolbar()->mapToGlobal({3, 3}));
    QApplication::sendEvent(toolbar(), &event);
    QVERIFY(!QApplication::activePopupWidget());
    QVERIFY(!toolbar()->isMovable());
}

void Tst_Toolbar::menuHoldsWhatHasNoButton() {
    QCOMPARE(overflow()->objectName(), "contextMenu_"_qs);
    QStringList texts;
    for (const QAction *action : overflow()->actions())
        texts.append(action->isSeparator() ? "|"_qs : action->text());
    QStringList expected = words("line | text crop mosaic eraser | help |");
    expected += {"Print (&P)"_qs, "Online update (&U)"_qs, "|"_qs, "Preferences (&O)"_qs, "Close (&X)"_qs};
    QCOMPARE(texts, expected);
    for (const QString &name : words(Overflowing)) {
        const QAction *copy = entry(qPrintable(name));
        QVERIFY(copy->isCheckable());
        QCOMPARE(copy->menu(), m_window->findChild<ToolButton *>(name)->menu());
    }
    actionOf("Online update (&U)"_qs)->trigger();
    QCOMPARE(messages(), Messages{0x86A});
}

void Tst_Toolbar::narrowWindowMovesToolsIntoTheMenu() {
    const QStringList all = words(All);
    resizeTo(Wide);
    QCOMPARE(visible(), all);
    int before = all.size();
    int steps = 0;
    for (int width = Wide; width >= 400; width -= 10) {
        resizeTo(width);
        const QStringList shown = visible();
        QCOMPARE(shown, all.mid(0, fitting(width)));
        // A separator is there for the group behind it; the last one stays.
        for (const QString &first : {"save"_qs, "figure"_qs, "text"_qs})
            QCOMPARE(separated().contains(first), shown.contains(first));
        QVERIFY(separated().contains("help"_qs));
        QVERIFY(shown.size() <= before);
        steps += shown.size() < before;
        before = shown.size();
        // What is shown is not cut off either.
        QVERIFY(button("menu")->isVisible());
        QVERIFY(toolbar()->rect().contains(button("menu")->geometry()));
        for (const QString &name : words(Overflowing))
            QCOMPARE(entry(qPrintable(name))->isVisible(), !shown.contains(name));
    }
    QVERIFY(steps > 3);
    QVERIFY(!button("line")->isVisible());
    resizeTo(Wide);
    QCOMPARE(visible(), all);
}

void Tst_Toolbar::bannerTakesRoom() {
    constexpr int banner = 300;
    resizeTo(700);
    const QStringList narrow = visible();
    resizeTo(700 + banner);
    const QStringList wide = visible();
    QVERIFY(narrow.size() < wide.size());
    toolbar()->layOut(banner);
    QCoreApplication::processEvents();
    QCOMPARE(visible(), narrow);
    QCOMPARE(toolbar()->property("hasBanner"), QVariant("true"_qs));
    QCOMPARE(toolbar()->layout()->contentsMargins().right(), banner);
    QCoreApplication::processEvents();
    QVERIFY(button("menu")->geometry().right() < toolbar()->width() - banner);
    toolbar()->layOut(0);
    QCoreApplication::processEvents();
    QCOMPARE(visible(), wide);
    QCOMPARE(toolbar()->property("hasBanner"), QVariant("false"_qs));
    QCOMPARE(toolbar()->layout()->contentsMargins().right(), 0);
}

void Tst_Toolbar::hiddenToolIsChosenByItsEntry() {
    addCapture("a"_qs);
    resizeTo(400);
    QVERIFY(!button("eraser")->isVisible());
    entry("eraser")->trigger();
    QCOMPARE(scene()->shapeType(), Editor::Eraser);
    QVERIFY(entry("eraser")->isChecked());
    m_window->onPenSelected(Qt::blue);
    QVERIFY(!entry("eraser")->isChecked());
}

void Tst_Toolbar::hiddenToolIsChosenInItsPanel() {
    addCapture("a"_qs);
    resizeTo(400);
    QVERIFY(!button("mosaic")->isVisible());
    QMenu *strengths = entry("mosaic")->menu();
    strengths->popup(m_window->mapToGlobal(QPoint(50, 50)));
    strengths->findChild<MosaicPopup *>()->findChildren<QAbstractButton *>().last()->click();
    QVERIFY(!strengths->isVisible());
    QCOMPARE(scene()->shapeType(), Editor::Mosaic);
    emit overflow()->aboutToShow();
    QVERIFY(entry("mosaic")->isChecked());
}

void Tst_Toolbar::menuChecksThePresentTool_data() {
    QTest::addColumn<int>("shape");
    QTest::addColumn<QString>("checked");
    QTest::newRow("eraser") << int(Editor::Eraser) << "eraser";
    QTest::newRow("pen") << int(Editor::Pen) << "";
    QTest::newRow("mosaic") << int(Editor::Mosaic) << "mosaic";
    QTest::newRow("text") << int(Editor::Text) << "text";
    QTest::newRow("crop") << int(Editor::Crop) << "crop";
}

void Tst_Toolbar::menuChecksThePresentTool() {
    QFETCH(int, shape);
    QFETCH(QString, checked);
    addCapture("a"_qs);
    entry("line")->setChecked(true);
    scene()->setShape(Editor::ShapeType(shape));
    emit overflow()->aboutToShow();
    for (const QString &name : words(Overflowing))
        QCOMPARE(entry(qPrintable(name))->isChecked(), name == checked);
    m_window->findChild<HistoryWidget *>()->clearSelection();
    QVERIFY(!scene());
    emit overflow()->aboutToShow();
    for (const QString &name : words(Overflowing))
        QVERIFY(!entry(qPrintable(name))->isChecked());
}

void Tst_Toolbar::panelsOpenFromTheCanvasMenuToo() {
    const auto *menu = view()->findChild<QMenu *>("contextMenu_"_qs);
    QHash<QString, QMenu *> menus;
    for (const QAction *action : menu->actions())
        menus.insert(action->text(), action->menu());
    QCOMPARE(menus.value("Pen (&D)"_qs), button("pen")->menu());
    QCOMPARE(menus.value("Highlighter (&H)"_qs), button("highlighter")->menu());
    QCOMPARE(menus.value("Line Width (&L)"_qs), button("line")->menu());
    QVERIFY(menus.value("Figure (&S)"_qs)->findChild<FigurePopup *>());
    QVERIFY(menus.value("Mosaic (&M)"_qs)->findChild<MosaicPopup *>());
}

void Tst_Toolbar::choiceInThePanelClosesTheMenus() {
    addCapture("a"_qs);
    for (QMenu *menu : {view()->findChild<QMenu *>("contextMenu_"_qs), overflow()}) {
        menu->setEnabled(true);
        menu->popup(m_window->mapToGlobal(QPoint(50, 50)));
        QMenu *lines = button("line")->menu();
        lines->popup(m_window->mapToGlobal(QPoint(200, 50)));
        QVERIFY(menu->isVisible() && lines->isVisible());
        panel<LinePopup>("line")->findChildren<QAbstractButton *>().first()->click();
        QVERIFY(!menu->isVisible() && !lines->isVisible());
    }
}

QTEST_MAIN(Tst_Toolbar)
#include "tst_toolbar.moc"
