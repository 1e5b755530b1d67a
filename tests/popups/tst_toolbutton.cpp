#include "popups/toolbutton.h"

#include <QApplication>
#include <QLabel>
#include <QLayout>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

class Tst_ToolButton : public QObject {
    Q_OBJECT
private slots:
    void parts();
    void menuGoesToTheShownHalf();
    void pressTellsBefore_data();
    void pressTellsBefore();
    void halfTellsBeforeAndOpensTheMenu();
    void disabledHalfTellsNothing();
    void keysTellBefore();
    void hoverLightsTheHalf();
    void halvesAreCheckedAsOne();
    void focusIsSeen();

private:
    static QPushButton *half(const ToolButton &button) {
        return button.findChild<QPushButton *>(QStringLiteral("menuBtn_"));
    }
};

void Tst_ToolButton::parts() {
    ToolButton button;
    QCOMPARE(button.cursor().shape(), Qt::PointingHandCursor);
    QVERIFY(half(button) && half(button)->isCheckable());
    QVERIFY(!half(button)->isVisibleTo(&button));
    QVERIFY(button.findChild<QLabel *>(QStringLiteral("image_")));
    QLayout *layout = button.layout();
    QCOMPARE(layout->contentsMargins(), QMargins());
    QCOMPARE(layout->spacing(), 0);
    QCOMPARE(layout->itemAt(layout->count() - 1)->widget(), half(button));
    QVERIFY(layout->itemAt(layout->count() - 2)->spacerItem());
}

void Tst_ToolButton::menuGoesToTheShownHalf() {
    ToolButton button;
    QMenu menu;
    const QPushButton &base = button;
    QCOMPARE(button.menu(), nullptr);
    button.setMenu(&menu);
    QCOMPARE(base.menu(), &menu);
    QCOMPARE(half(button)->menu(), nullptr);
    button.setShowMenuButton(true);
    QCOMPARE(base.menu(), nullptr);
    QCOMPARE(half(button)->menu(), &menu);
    QCOMPARE(button.menu(), &menu);
    QVERIFY(half(button)->isVisibleTo(&button));
    QMenu other;
    button.setMenu(&other);
    QCOMPARE(half(button)->menu(), &other);
    button.setShowMenuButton(false);
    QCOMPARE(base.menu(), &other);
    QCOMPARE(half(button)->menu(), nullptr);
    QVERIFY(!half(button)->isVisibleTo(&button));
    button.setMenu(nullptr);
    QCOMPARE(button.menu(), nullptr);
}

void Tst_ToolButton::pressTellsBefore_data() {
    QTest::addColumn<bool>("half");
    QTest::newRow("whole button") << false;
    QTest::newRow("with a half") << true;
}

void Tst_ToolButton::pressTellsBefore() {
    QFETCH(bool, half);
    ToolButton button;
    button.setShowMenuButton(half);
    button.resize(60, 80);
    button.show();
    QStringList order;
    connect(&button, &ToolButton::beforePress, &button, [&] { order += QStringLiteral("before"); });
    connect(&button, &QPushButton::pressed, &button, [&] { order += QStringLiteral("pressed"); });
    connect(&button, &QPushButton::clicked, &button, [&] { order += QStringLiteral("clicked"); });
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(30, 10));
    QCOMPARE(order,
             (QStringList{QStringLiteral("before"), QStringLiteral("pressed"), QStringLiteral("clicked")}));
}

void Tst_ToolButton::halfTellsBeforeAndOpensTheMenu() {
    ToolButton button;
    QMenu menu;
    menu.addAction(QStringLiteral("entry"));
    button.setShowMenuButton(true);
    button.setMenu(&menu);
    button.resize(60, 80);
    button.show();
    bool openBefore = true;
    int told = 0;
    connect(&button, &ToolButton::beforePress, &button, [&] {
        ++told;
        openBefore = menu.isVisible();
    });
    QSignalSpy clicked(&button, &QPushButton::clicked);
    bool opened = false;
    // The press returns only when the menu is closed again.
    QTimer::singleShot(0, &menu, [&] {
        opened = menu.isVisible();
        menu.close();
    });
    QTest::mousePress(half(button), Qt::LeftButton);
    QCOMPARE(told, 1);
    QVERIFY(!openBefore);
    QVERIFY(opened);
    QCOMPARE(clicked.count(), 0);
}

void Tst_ToolButton::disabledHalfTellsNothing() {
    ToolButton button;
    button.setShowMenuButton(true);
    button.show();
    QSignalSpy told(&button, &ToolButton::beforePress);
    button.setEnabled(false);
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(2, 2), Qt::LeftButton, Qt::LeftButton, {});
    QVERIFY(!button.eventFilter(half(button), &press));
    QCOMPARE(told.count(), 0);
    button.setEnabled(true);
    QVERIFY(!button.eventFilter(half(button), &press)); // never eaten
    QCOMPARE(told.count(), 1);
}

void Tst_ToolButton::keysTellBefore() {
    ToolButton button;
    button.setShowMenuButton(true);
    button.show();
    QSignalSpy told(&button, &ToolButton::beforePress);
    QTest::keyClick(&button, Qt::Key_Space);
    QCOMPARE(told.count(), 1);
    QTest::keyClick(half(button), Qt::Key_Space);
    QCOMPARE(told.count(), 2);
    QTest::keyClick(&button, Qt::Key_A);
    QCOMPARE(told.count(), 2);
}

void Tst_ToolButton::hoverLightsTheHalf() {
    ToolButton button;
    button.setStyleSheet(QStringLiteral("#menuBtn_ { border: none; background-color: rgb(9, 9, 9); }"
                                        "#menuBtn_[hover=\"1\"] { background-color: rgb(90, 9, 9); }"));
    button.setShowMenuButton(true);
    button.resize(60, 80);
    button.show();
    QEvent leave(QEvent::Leave);
    QEnterEvent enter(QPointF(5, 5), QPointF(5, 5), QPointF(5, 5));
    QApplication::sendEvent(&button, &enter);
    QCOMPARE(half(button)->property("hover").toInt(), 1);
    QCOMPARE(half(button)->grab().toImage().pixelColor(2, 2), QColor(90, 9, 9));
    QApplication::sendEvent(&button, &leave);
    QCOMPARE(half(button)->property("hover"), QVariant(0));
    QCOMPARE(half(button)->grab().toImage().pixelColor(2, 2), QColor(9, 9, 9));
}

void Tst_ToolButton::halvesAreCheckedAsOne() {
    ToolButton button;
    button.setCheckable(true);
    button.setShowMenuButton(true);
    button.show();
    button.setChecked(true);
    QVERIFY(half(button)->isChecked());
    QTest::mouseClick(half(button), Qt::LeftButton);
    QVERIFY(half(button)->isChecked() && button.isChecked());
    button.setChecked(false);
    QVERIFY(!half(button)->isChecked());
    QTest::mouseClick(half(button), Qt::LeftButton);
    QVERIFY(!half(button)->isChecked());
}

void Tst_ToolButton::focusIsSeen() {
    QWidget window;
    ToolButton button(&window);
    button.setGeometry(10, 10, 60, 80);
    QPushButton other(&window);
    other.setFocus();
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    const QImage without = button.grab().toImage();
    QTest::keyClick(&other, Qt::Key_Tab);
    QVERIFY(button.hasFocus());
    QVERIFY(button.grab().toImage() != without);
}

QTEST_MAIN(Tst_ToolButton)
#include "tst_toolbutton.moc"
