#include "ui/rangedspinbox.h"

#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

#include <limits>

class Tst_RangedSpinBox : public QObject {
    Q_OBJECT
private slots:
    void baseRangeIsAllIntegers();
    void typingPassesThroughValuesBelowTheMinimum();
    void typingAboveTheMaximumIsCutAtOnce();
    void setValueKeepsTheMaximum_data();
    void setValueKeepsTheMaximum();
    void endOfEditingCorrectsBeforeItReports();
    void stepsStayWithinTheLimits_data();
    void stepsStayWithinTheLimits();
    void boxThatIsOnlyReadHasNoSteps();
    void steppingKeysAreNoShortcuts_data();
    void steppingKeysAreNoShortcuts();

private:
    static void type(RangedSpinBox &box, const QString &text);
};

void Tst_RangedSpinBox::type(RangedSpinBox &box, const QString &text) {
    box.findChild<QLineEdit *>()->selectAll();
    QTest::keyClicks(&box, text);
}

void Tst_RangedSpinBox::baseRangeIsAllIntegers() {
    RangedSpinBox box;
    box.setLimits(20, 100);
    QCOMPARE(box.minimum(), std::numeric_limits<int>::min());
    QCOMPARE(box.maximum(), std::numeric_limits<int>::max());
}

void Tst_RangedSpinBox::typingPassesThroughValuesBelowTheMinimum() {
    RangedSpinBox box;
    box.setLimits(20, 100);
    box.setValue(60);
    box.show();
    type(box, QStringLiteral("5"));
    QCOMPARE(box.value(), 5);
    QTest::keyClick(&box, Qt::Key_0);
    QCOMPARE(box.value(), 50);
    type(box, QStringLiteral("7"));
    QTest::keyClick(&box, Qt::Key_Return);
    QCOMPARE(box.value(), 20);
    QCOMPARE(box.text(), QStringLiteral("20"));
}

void Tst_RangedSpinBox::typingAboveTheMaximumIsCutAtOnce() {
    RangedSpinBox box;
    box.setLimits(20, 100);
    box.show();
    QSignalSpy changed(&box, &RangedSpinBox::afterValueChanged);
    type(box, QStringLiteral("500"));
    QCOMPARE(box.value(), 100);
    QCOMPARE(box.text(), QStringLiteral("100"));
    QVERIFY(changed.count() >= 3); // 5, 50 and the cut 500
}

void Tst_RangedSpinBox::setValueKeepsTheMaximum_data() {
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("kept");
    QTest::newRow("below the minimum, for later") << 19 << 19;
    QTest::newRow("minimum") << 20 << 20;
    QTest::newRow("maximum") << 100 << 100;
    QTest::newRow("one above") << 101 << 100;
    QTest::newRow("largest integer") << std::numeric_limits<int>::max() << 100;
}

void Tst_RangedSpinBox::setValueKeepsTheMaximum() {
    QFETCH(int, value);
    RangedSpinBox box;
    box.setLimits(20, 100);
    int last = -1;
    connect(&box, &RangedSpinBox::afterValueChanged, &box, [&] { last = box.value(); });
    box.setValue(value);
    QTEST(box.value(), "kept");
    QTEST(last, "kept");
}

void Tst_RangedSpinBox::endOfEditingCorrectsBeforeItReports() {
    RangedSpinBox box;
    box.setLimits(20, 100);
    box.setValue(3);
    int reported = -1;
    connect(&box, &RangedSpinBox::afterEditingFinished, &box, [&] { reported = box.value(); });
    box.onEditingFinished();
    QCOMPARE(reported, 20);
}

void Tst_RangedSpinBox::stepsStayWithinTheLimits_data() {
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("expected");
    QTest::newRow("up") << 50 << int(Qt::Key_Up) << 51;
    QTest::newRow("down") << 50 << int(Qt::Key_Down) << 49;
    QTest::newRow("down at the minimum") << 20 << int(Qt::Key_Down) << 20;
    QTest::newRow("up at the maximum") << 100 << int(Qt::Key_Up) << 100;
    QTest::newRow("page down over the minimum") << 25 << int(Qt::Key_PageDown) << 20;
    QTest::newRow("page up over the maximum") << 95 << int(Qt::Key_PageUp) << 100;
}

void Tst_RangedSpinBox::stepsStayWithinTheLimits() {
    QFETCH(int, value);
    QFETCH(int, key);
    RangedSpinBox box;
    box.setLimits(20, 100);
    box.setValue(value);
    box.show();
    QTest::keyClick(&box, static_cast<Qt::Key>(key));
    QTEST(box.value(), "expected");
}

void Tst_RangedSpinBox::boxThatIsOnlyReadHasNoSteps() {
    RangedSpinBox box;
    box.setLimits(20, 100);
    box.setValue(60);
    box.show();
    box.setReadOnly(true);
    for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp, Qt::Key_PageDown}) {
        QTest::keyClick(&box, key);
        QCOMPARE(box.value(), 60);
    }
    box.setReadOnly(false);
    QTest::keyClick(&box, Qt::Key_Up);
    QCOMPARE(box.value(), 61);
}

void Tst_RangedSpinBox::steppingKeysAreNoShortcuts_data() {
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("own");
    QTest::newRow("up") << int(Qt::Key_Up) << true;
    QTest::newRow("down") << int(Qt::Key_Down) << true;
    QTest::newRow("page up") << int(Qt::Key_PageUp) << true;
    QTest::newRow("page down") << int(Qt::Key_PageDown) << true;
    QTest::newRow("return") << int(Qt::Key_Return) << false;
    QTest::newRow("escape") << int(Qt::Key_Escape) << false;
}

void Tst_RangedSpinBox::steppingKeysAreNoShortcuts() {
    QFETCH(int, key);
    RangedSpinBox box;
    QKeyEvent event(QEvent::ShortcutOverride, key, Qt::NoModifier);
    event.ignore();
    QCoreApplication::sendEvent(&box, &event);
    QTEST(event.isAccepted(), "own");
}

QTEST_MAIN(Tst_RangedSpinBox)
#include "tst_rangedspinbox.moc"
