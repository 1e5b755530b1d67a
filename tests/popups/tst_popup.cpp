#include "popups/popup.h"
#include "support/fakeplatform.h"
#include "ui/menu.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

namespace {

/// A panel of three buttons in a row.
class Panel : public Popup {
public:
    explicit Panel(QWidget *parent = nullptr) : Popup(parent) {
        auto *row = new QHBoxLayout(this);
        row->setContentsMargins(20, 20, 20, 20);
        row->setSpacing(10);
        for (int i = 0; i < 3; ++i) {
            auto *button = new QPushButton(QString::number(i), this);
            button->setFixedSize(40, 30);
            row->addWidget(button);
            buttons.append(button);
        }
    }
    QList<QPushButton *> buttons;
};

struct Spies {
    explicit Spies(Popup *popup)
        : triggered(popup, &Popup::triggered), canceled(popup, &Popup::canceled),
          closed(popup, &Popup::closed) {}
    QVector<int> counts() const { return {triggered.count(), canceled.count(), closed.count()}; }
    QSignalSpy triggered, canceled, closed;
};

} // namespace

class Tst_Popup : public QObject {
    Q_OBJECT
private slots:
    void init() { m_platform = FakePlatform::install(); }
    void isAFramelessToolWindow();
    void modeNamesTheSignal_data();
    void modeNamesTheSignal();
    void findsThePopupOfAHolder();
    void menuReportsItsClosing_data();
    void menuReportsItsClosing();
    void modeCountsOnce();
    void ownSignalClosesTheMenuAndIsTheOnlyReport_data();
    void ownSignalClosesTheMenuAndIsTheOnlyReport();
    void leftPressInAGapIsSwallowed();
    void escapeClosesTheMenu();
    void escapeClosesAFloatingPanel();
    void otherKeysEndInAMenu_data();
    void otherKeysEndInAMenu();
    void tabGoesRoundThePanel();
    void tabWithoutAFocusComesToTheEnd_data();
    void tabWithoutAFocusComesToTheEnd();
    void arrowsMoveTheFocusWithoutChoosing();
    void enterChooses();
    void keysOfAButtonAreNoShortcuts_data();
    void keysOfAButtonAreNoShortcuts();
    void opensWithTheFocusOnTheChoice();
    void menuFollowsTheContents();
    void floatingPanelFollowsTheContents();
    void sheetAppliesToThePanel();
    void nativeWindowGetsTheShadow();

private:
    FakePlatform *m_platform = nullptr;
};

void Tst_Popup::isAFramelessToolWindow() {
    QWidget parent;
    Popup popup(&parent);
    QCOMPARE(int(popup.windowFlags()) & 0x8ff, 0x80b);
    QVERIFY(popup.isWindow());
    QCOMPARE(popup.closeMode(), 2);
}

void Tst_Popup::modeNamesTheSignal_data() {
    QTest::addColumn<int>("mode");
    QTest::addColumn<QVector<int>>("counts");
    QTest::newRow("chosen") << 0 << QVector<int>{1, 0, 0};
    QTest::newRow("canceled") << 1 << QVector<int>{0, 1, 0};
    QTest::newRow("closed") << 2 << QVector<int>{0, 0, 1};
    QTest::newRow("unknown") << 3 << QVector<int>{0, 0, 0};
}

void Tst_Popup::modeNamesTheSignal() {
    QFETCH(int, mode);
    Popup popup;
    const Spies spies(&popup);
    popup.emitCloseSignal(mode);
    QTEST(spies.counts(), "counts");
}

void Tst_Popup::findsThePopupOfAHolder() {
    QWidget parent;
    auto *panel = new Panel;
    Menu *menu = panel->toMenu(&parent);
    QCOMPARE(Popup::findPopup(menu), panel);
    QCOMPARE(Popup::findPopup(&parent), panel);
    QCOMPARE(menu->actions().size(), 1);
    QWidget other;
    QCOMPARE(Popup::findPopup(&other), nullptr);
    QCOMPARE(Popup::findPopup(nullptr), nullptr);
}

void Tst_Popup::menuReportsItsClosing_data() {
    modeNamesTheSignal_data();
}

void Tst_Popup::menuReportsItsClosing() {
    QFETCH(int, mode);
    QWidget parent;
    auto *panel = new Panel;
    Menu *menu = panel->toMenu(&parent);
    menu->popup(QPoint(50, 50));
    const Spies spies(panel);
    panel->setCloseMode(mode);
    menu->close();
    QTEST(spies.counts(), "counts");
}

void Tst_Popup::modeCountsOnce() {
    QWidget parent;
    auto *panel = new Panel;
    Menu *menu = panel->toMenu(&parent);
    const Spies spies(panel);
    panel->setCloseMode(Popup::Canceled);
    for (int i = 0; i < 2; ++i) {
        menu->popup(QPoint(50, 50));
        menu->close();
    }
    QCOMPARE(spies.counts(), (QVector<int>{0, 1, 1}));
}

void Tst_Popup::ownSignalClosesTheMenuAndIsTheOnlyReport_data() {
    QTest::addColumn<int>("mode");
    QTest::addColumn<QVector<int>>("counts");
    QTest::newRow("chosen") << 0 << QVector<int>{1, 0, 0};
    QTest::newRow("canceled") << 1 << QVector<int>{0, 1, 0};
    QTest::newRow("closed") << 2 << QVector<int>{0, 0, 1};
}

void Tst_Popup::ownSignalClosesTheMenuAndIsTheOnlyReport() {
    QFETCH(int, mode);
    QWidget parent;
    auto *panel = new Panel;
    Menu *menu = panel->toMenu(&parent);
    menu->popup(QPoint(50, 50));
    QVERIFY(menu->isVisible());
    const Spies spies(panel);
    // As the toolbar does before a press, past emitCloseSignal.
    if (mode == 0)
        emit panel->triggered();
    else if (mode == 1)
        emit panel->canceled();
    else
        emit panel->closed();
    QVERIFY(!menu->isVisible());
    QTEST(spies.counts(), "counts");
    // The next time counts afresh.
    menu->popup(QPoint(50, 50));
    menu->close();
    QCOMPARE(spies.closed.count(), mode == 2 ? 2 : 1);
}

void Tst_Popup::leftPressInAGapIsSwallowed() {
    class Parent : public QWidget {
    public:
        int presses = 0;

    protected:
        void mousePressEvent(QMouseEvent *) override { ++presses; }
    } parent;
    Panel panel(&parent);
    panel.setWindowFlags(Qt::Widget);
    parent.show();
    panel.show();
    QTest::mousePress(&panel, Qt::LeftButton, {}, QPoint(2, 2));
    QCOMPARE(parent.presses, 0);
    QTest::mousePress(&panel, Qt::RightButton, {}, QPoint(2, 2));
    QCOMPARE(parent.presses, 1);
}

void Tst_Popup::escapeClosesTheMenu() {
    QWidget parent;
    auto *panel = new Panel;
    Menu *menu = panel->toMenu(&parent);
    menu->popup(QPoint(50, 50));
    const Spies spies(panel);
    QTest::keyClick(panel->buttons[1], Qt::Key_Escape);
    QVERIFY(!menu->isVisible());
    QCOMPARE(spies.counts(), (QVector<int>{0, 0, 1}));
}

void Tst_Popup::escapeClosesAFloatingPanel() {
    Panel panel;
    panel.show();
    const Spies spies(&panel);
    QTest::keyClick(panel.buttons[1], Qt::Key_Escape);
    QVERIFY(!panel.isVisible());
    QCOMPARE(spies.counts(), (QVector<int>{0, 1, 0}));
}

void Tst_Popup::otherKeysEndInAMenu_data() {
    QTest::addColumn<bool>("inMenu");
    // The menu would take the letter for a mnemonic.
    QTest::newRow("in a menu") << true;
    // The window behind may have a use for it.
    QTest::newRow("floating") << false;
}

void Tst_Popup::otherKeysEndInAMenu() {
    QFETCH(bool, inMenu);
    QWidget parent;
    auto *panel = new Panel;
    if (inMenu)
        panel->toMenu(&parent)->popup(QPoint(50, 50));
    else
        panel->setParent(&parent);
    QKeyEvent letter(QEvent::KeyPress, Qt::Key_S, Qt::NoModifier, QStringLiteral("s"));
    QCoreApplication::sendEvent(panel, &letter);
    QCOMPARE(letter.isAccepted(), inMenu);
}

void Tst_Popup::tabGoesRoundThePanel() {
    QWidget parent;
    auto *panel = new Panel;
    Menu *menu = panel->toMenu(&parent);
    parent.show();
    menu->popup(QPoint(50, 50));
    QCOMPARE(menu->focusWidget(), panel->buttons[0]);
    for (const int expected : {1, 2, 0}) {
        QTest::keyClick(menu->focusWidget(), Qt::Key_Tab);
        QCOMPARE(menu->focusWidget(), panel->buttons[expected]);
    }
    for (const int expected : {2, 1}) {
        QTest::keyClick(menu->focusWidget(), Qt::Key_Backtab);
        QCOMPARE(menu->focusWidget(), panel->buttons[expected]);
    }
    panel->buttons[0]->setEnabled(false);
    QTest::keyClick(menu->focusWidget(), Qt::Key_Backtab);
    QCOMPARE(menu->focusWidget(), panel->buttons[2]);
    QVERIFY(menu->isVisible());
}

void Tst_Popup::tabWithoutAFocusComesToTheEnd_data() {
    QTest::addColumn<bool>("next");
    QTest::addColumn<int>("expected");
    QTest::newRow("Tab comes to the first") << true << 0;
    QTest::newRow("Shift and Tab come to the last") << false << 2;
}

void Tst_Popup::tabWithoutAFocusComesToTheEnd() {
    QFETCH(bool, next);
    QFETCH(int, expected);
    QWidget parent;
    auto *panel = new Panel;
    Menu *menu = panel->toMenu(&parent);
    parent.show();
    menu->popup(QPoint(50, 50));
    panel->setFocusPolicy(Qt::ClickFocus);
    panel->setFocus();
    QCOMPARE(menu->focusWidget(), panel);
    QTest::keyClick(panel, next ? Qt::Key_Tab : Qt::Key_Backtab);
    QCOMPARE(menu->focusWidget(), panel->buttons[expected]);
}

void Tst_Popup::arrowsMoveTheFocusWithoutChoosing() {
    QWidget parent;
    auto *panel = new Panel;
    for (QPushButton *button : panel->buttons) {
        button->setCheckable(true);
        button->setAutoExclusive(true);
    }
    panel->buttons[0]->setChecked(true);
    Menu *menu = panel->toMenu(&parent);
    parent.show();
    menu->popup(QPoint(50, 50));
    QTest::keyClick(panel->buttons[0], Qt::Key_Right);
    QCOMPARE(menu->focusWidget(), panel->buttons[1]);
    QVERIFY(panel->buttons[0]->isChecked());
    QTest::keyClick(panel->buttons[1], Qt::Key_Right);
    QCOMPARE(menu->focusWidget(), panel->buttons[2]);
    QTest::keyClick(panel->buttons[2], Qt::Key_Right); // the end of the row
    QCOMPARE(menu->focusWidget(), panel->buttons[2]);
    QTest::keyClick(panel->buttons[2], Qt::Key_Left);
    QCOMPARE(menu->focusWidget(), panel->buttons[1]);
    QTest::keyClick(panel->buttons[1], Qt::Key_Down); // nothing there
    QCOMPARE(menu->focusWidget(), panel->buttons[1]);
    QTest::keyClick(panel->buttons[1], Qt::Key_Space);
    QVERIFY(panel->buttons[1]->isChecked());
}

void Tst_Popup::enterChooses() {
    QWidget parent;
    auto *panel = new Panel;
    Menu *menu = panel->toMenu(&parent);
    menu->popup(QPoint(50, 50));
    QSignalSpy clicked(panel->buttons[2], &QPushButton::clicked);
    QTest::keyClick(panel->buttons[2], Qt::Key_Return);
    QTest::keyClick(panel->buttons[2], Qt::Key_Enter);
    QCOMPARE(clicked.count(), 2);
    QVERIFY(menu->isVisible());
}

void Tst_Popup::keysOfAButtonAreNoShortcuts_data() {
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("own");
    for (const Qt::Key key :
         {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down})
        QTest::addRow("%x", key) << int(key) << true;
    QTest::newRow("escape") << int(Qt::Key_Escape) << false;
    QTest::newRow("letter") << int(Qt::Key_S) << false;
}

void Tst_Popup::keysOfAButtonAreNoShortcuts() {
    QFETCH(int, key);
    Panel panel;
    panel.show();
    QSignalSpy clicked(panel.buttons[2], &QPushButton::clicked);
    QKeyEvent event(QEvent::ShortcutOverride, key, Qt::NoModifier);
    event.ignore();
    QCoreApplication::sendEvent(panel.buttons[2], &event);
    QTEST(event.isAccepted(), "own");
    QCOMPARE(clicked.count(), 0);
}

void Tst_Popup::opensWithTheFocusOnTheChoice() {
    QWidget parent;
    auto *panel = new Panel;
    panel->buttons[2]->setCheckable(true);
    panel->buttons[2]->setChecked(true);
    Menu *menu = panel->toMenu(&parent);
    menu->popup(QPoint(50, 50));
    QCOMPARE(menu->focusWidget(), panel->buttons[2]);
}

void Tst_Popup::menuFollowsTheContents() {
    QWidget parent;
    auto *panel = new Panel;
    Menu *menu = panel->toMenu(&parent);
    menu->popup(QPoint(50, 50));
    QCOMPARE(panel->width(), 180); // three buttons of 40, two gaps of 10, margins of 20
    const int surplus = menu->width() - panel->width();
    panel->buttons[1]->hide();
    QTRY_COMPARE(panel->width(), 130);
    QCOMPARE(menu->width() - panel->width(), surplus);
    menu->close();
    panel->buttons[1]->show();
    menu->popup(QPoint(50, 50));
    QTRY_COMPARE(panel->width(), 180);
    QCOMPARE(menu->width() - panel->width(), surplus);
}

void Tst_Popup::floatingPanelFollowsTheContents() {
    Panel panel;
    panel.resize(400, 300);
    panel.show();
    QCOMPARE(panel.size(), QSize(180, 70));
    panel.buttons[0]->hide();
    QTRY_COMPARE(panel.size(), QSize(130, 70));
}

void Tst_Popup::sheetAppliesToThePanel() {
    Panel panel;
    panel.setStyleSheet(QStringLiteral("Popup { background-color: rgb(1, 200, 3); }"));
    panel.show();
    QCOMPARE(panel.grab().toImage().pixelColor(3, 3), QColor(1, 200, 3));
}

void Tst_Popup::nativeWindowGetsTheShadow() {
    m_platform->nativeShadow = true;
    Panel panel;
    panel.show();
    QVERIFY(m_platform->shadowed.contains(panel.windowHandle()));
}

QTEST_MAIN(Tst_Popup)
#include "tst_popup.moc"
