#include "canvas/viewplacement.h"

#include <QtTest>

class Tst_ViewPlacement : public QObject {
    Q_OBJECT
private slots:
    void imageTool_data();
    void imageTool();
    void historyButton_data();
    void historyButton();
};

void Tst_ViewPlacement::imageTool_data() {
    QTest::addColumn<QSize>("view");
    QTest::addColumn<QSize>("tool");
    QTest::addColumn<double>("scale");
    QTest::addColumn<QPoint>("pos");
    QTest::newRow("96 DPI") << QSize(400, 300) << QSize(200, 30) << 1.0 << QPoint(10, 250);
    QTest::newRow("144 DPI") << QSize(400, 300) << QSize(300, 45) << 1.5 << QPoint(15, 225);
    QTest::newRow("distances are cut, not rounded")
        << QSize(400, 300) << QSize(200, 30) << 1.19 << QPoint(11, 247);
    QTest::newRow("view lower than the tool") << QSize(400, 40) << QSize(200, 30) << 1.0 << QPoint(10, -10);
}

void Tst_ViewPlacement::imageTool() {
    QFETCH(QSize, view);
    QFETCH(QSize, tool);
    QFETCH(double, scale);
    QTEST(ViewPlacement::imageTool(view, tool, scale), "pos");
}

void Tst_ViewPlacement::historyButton_data() {
    QTest::addColumn<QSize>("view");
    QTest::addColumn<QSize>("button");
    QTest::addColumn<int>("bar");
    QTest::addColumn<double>("scale");
    QTest::addColumn<QPoint>("pos");
    QTest::newRow("no scroll bar") << QSize(400, 300) << QSize(24, 24) << 0 << 1.0 << QPoint(366, 10);
    QTest::newRow("scroll bar") << QSize(400, 300) << QSize(24, 24) << 18 << 1.0 << QPoint(348, 10);
    QTest::newRow("192 DPI") << QSize(400, 300) << QSize(48, 48) << 36 << 2.0 << QPoint(296, 20);
    QTest::newRow("distances are cut, not rounded")
        << QSize(400, 300) << QSize(24, 24) << 0 << 1.19 << QPoint(365, 11);
}

void Tst_ViewPlacement::historyButton() {
    QFETCH(QSize, view);
    QFETCH(QSize, button);
    QFETCH(int, bar);
    QFETCH(double, scale);
    QTEST(ViewPlacement::historyButton(view, button, bar, scale), "pos");
}

QTEST_APPLESS_MAIN(Tst_ViewPlacement)
#include "tst_viewplacement.moc"
