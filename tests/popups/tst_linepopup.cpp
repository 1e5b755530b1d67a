#include "popups/linepopup.h"
#include "popups/linewidthbutton.h"
#include "preferences/tindrapreferences.h"

#include <QBoxLayout>
#include <QSignalSpy>
#include <QTest>

class Tst_LinePopup : public QObject {
    Q_OBJECT
private slots:
    void init();
    void offersTheWidths();
    void storedWidthIsChecked_data();
    void storedWidthIsChecked();
    void clickReportsTheWidth();
    void triggeredReportsTheWidth();
};

void Tst_LinePopup::init() {
    TindraPreferences::resetForTesting();
    TindraPreferences::instance()->Init();
}

void Tst_LinePopup::offersTheWidths() {
    const LinePopup popup;
    QVector<int> values;
    for (const auto *button : popup.findChildren<LineWidthButton *>()) {
        QVERIFY(button->isCheckable());
        values += button->value();
    }
    QCOMPARE(values, (QVector<int>{1, 3, 5, 8, 12}));
    QCOMPARE(popup.layout()->contentsMargins(), QMargins(0, 12, 0, 12));
    QCOMPARE(popup.layout()->itemAt(0)->layout()->spacing(), 0);
}

void Tst_LinePopup::storedWidthIsChecked_data() {
    QTest::addColumn<int>("stored");
    QTest::addColumn<int>("checked");
    for (const int width : {1, 3, 5, 8, 12})
        QTest::addRow("%d", width) << width << width;
    QTest::newRow("2 is not in the list") << 2 << 3;
    QTest::newRow("0") << 0 << 3;
    QTest::newRow("negative") << -1 << 3;
    QTest::newRow("huge") << 1000000 << 3;
}

void Tst_LinePopup::storedWidthIsChecked() {
    QFETCH(int, stored);
    QFETCH(int, checked);
    TindraPreferences::instance()->SetInt(TindraPreferences::LineWidth, stored);
    const LinePopup popup;
    for (const auto *button : popup.findChildren<LineWidthButton *>())
        QCOMPARE(button->isChecked(), button->value() == checked);
    // Until a width is chosen, what is stored holds.
    QCOMPARE(TindraPreferences::instance()->GetInt(TindraPreferences::LineWidth, -7), stored);
}

void Tst_LinePopup::clickReportsTheWidth() {
    LinePopup popup;
    popup.show();
    QSignalSpy selected(&popup, &LinePopup::lineSelected);
    QSignalSpy triggered(&popup, &Popup::triggered);
    for (auto *button : popup.findChildren<LineWidthButton *>())
        QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(triggered.count(), 5);
    QVector<int> widths;
    for (const auto &arguments : selected)
        widths += arguments[0].toInt();
    QCOMPARE(widths, (QVector<int>{1, 3, 5, 8, 12}));
}

void Tst_LinePopup::triggeredReportsTheWidth() {
    LinePopup popup;
    QSignalSpy selected(&popup, &LinePopup::lineSelected);
    emit popup.triggered();
    QCOMPARE(selected[0][0].toInt(), 3);
}

QTEST_MAIN(Tst_LinePopup)
#include "tst_linepopup.moc"
