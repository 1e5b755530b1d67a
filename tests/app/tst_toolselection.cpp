#include "app/windowtest.h"
#include "history/historybutton.h"
#include "history/historybuttonwidget.h"

/// The tool of the scene, the button that shows it and the preference that remembers it.
class Tst_ToolSelection : public WindowTest {
    Q_OBJECT
private slots:
    void init() { WindowTest::init(); }
    void cleanup() { WindowTest::cleanup(); }

    void toolsAreSetAndRemembered_data();
    void toolsAreSetAndRemembered();
    void cropIsNotRemembered();
    void figuresReportUnusualColors();
    void usualColorIsNotCounted_data();
    void usualColorIsNotCounted();
    void widthsAndStrengthsAreCounted_data();
    void widthsAndStrengthsAreCounted();
    void lastToolIsCheckedAtStart();
    void undoStateReachesTheButtons();
    void drawingsLiveWithTheirCapture();
    void copyGoesToTheClipboard();
    void panelIsHiddenAndShown();
};

void Tst_ToolSelection::toolsAreSetAndRemembered_data() {
    QTest::addColumn<int>("tool");
    QTest::addColumn<int>("remembered");
    QTest::newRow("eraser is not remembered") << int(Editor::Eraser) << int(Editor::Rectangle);
    QTest::newRow("pen") << int(Editor::Pen) << int(Editor::Pen);
    QTest::newRow("highlighter") << int(Editor::Highlighter) << int(Editor::Highlighter);
    QTest::newRow("arrow") << int(Editor::Arrow) << int(Editor::Arrow);
    QTest::newRow("mosaic") << int(Editor::Mosaic) << int(Editor::Mosaic);
    QTest::newRow("text") << int(Editor::Text) << int(Editor::Text);
}

void Tst_ToolSelection::toolsAreSetAndRemembered() {
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

void Tst_ToolSelection::cropIsNotRemembered() {
    addCapture("a"_qs);
    m_window->onPenSelected(Qt::blue);
    m_window->onClickCrop();
    QCOMPARE(scene()->shapeType(), Editor::Crop);
    QCOMPARE(preferences()->GetInt(TindraPreferences::LastDrawingItem, -1), int(Editor::Pen));
}

void Tst_ToolSelection::figuresReportUnusualColors() {
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

void Tst_ToolSelection::usualColorIsNotCounted_data() {
    QTest::addColumn<QColor>("usual");
    QTest::addColumn<QString>("event");
    QTest::newRow("pen") << QColor(Qt::red) << "cap_303_15";
    QTest::newRow("highlighter") << QColor(255, 240, 0) << "cap_303_16";
    QTest::newRow("fill") << QColor(Qt::transparent) << "cap_303_14";
    QTest::newRow("outline") << QColor(Qt::red) << "cap_303_13";
}

void Tst_ToolSelection::usualColorIsNotCounted() {
    QFETCH(QColor, usual);
    QFETCH(QString, event);
    const auto select = [this](const QColor &color) {
        const QByteArray part = QTest::currentDataTag();
        if (part == "pen")
            m_window->onPenSelected(color);
        else if (part == "highlighter")
            m_window->onHighlighterSelected(color);
        else if (part == "fill")
            m_window->onFigureSelected(Editor::Circle, Qt::SolidLine, color, Qt::red);
        else
            m_window->onFigureSelected(Editor::Circle, Qt::SolidLine, Qt::transparent, color);
    };
    select(usual);
    QCOMPARE(m_session->usage, QStringList());
    select(Qt::blue);
    select(Qt::blue);
    QCOMPARE(m_session->usage, QStringList{event});
    select(usual);
    QCOMPARE(m_session->usage, QStringList{event});
}

void Tst_ToolSelection::widthsAndStrengthsAreCounted_data() {
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

void Tst_ToolSelection::widthsAndStrengthsAreCounted() {
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

void Tst_ToolSelection::lastToolIsCheckedAtStart() {
    preferences()->SetInt(TindraPreferences::LastDrawingItem, Editor::Highlighter);
    m_window = std::make_unique<TindraEditor>();
    QVERIFY(button("highlighter")->isChecked());
}

void Tst_ToolSelection::undoStateReachesTheButtons() {
    addCapture("a"_qs);
    makeWide();
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

void Tst_ToolSelection::drawingsLiveWithTheirCapture() {
    addCapture("a"_qs);
    makeWide();
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
    const auto *button = list()->rowWidget(list()->rowItem(1))->findChild<HistoryButton *>();
    const auto *mark = button->findChild<QWidget *>("saveIcon_"_qs);
    QVERIFY(button->isImageSaved());
    QVERIFY(mark->isVisible());
    drawStroke();
    QVERIFY(panel->hasUnsavedImages());
    QVERIFY(!button->isImageSaved());
    QVERIFY(!mark->isVisible());
    QCOMPARE(button->overlay().alpha(), 0);
}

void Tst_ToolSelection::copyGoesToTheClipboard() {
    addCapture("a"_qs);
    m_session->usage.clear();
    m_window->onClickCopy();
    QCOMPARE(m_session->platform->clipboard.size(), QSize(40, 30));
    QCOMPARE(m_session->usage, QStringList{"cap_30_02"_qs});
}

void Tst_ToolSelection::panelIsHiddenAndShown() {
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

QTEST_MAIN(Tst_ToolSelection)
#include "tst_toolselection.moc"
