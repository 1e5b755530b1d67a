#include "popups/itembutton.h"
#include "popups/mosaicpopup.h"
#include "preferences/tindrapreferences.h"

#include <QImage>
#include <QLabel>
#include <QTest>

class Tst_MosaicPopup : public QObject {
    Q_OBJECT
private slots:
    void init();
    void captions();
    void storedStrengthIsChecked_data();
    void storedStrengthIsChecked();
    void clickReportsOnce_data();
    void clickReportsOnce();
    void triggeredReports();
    void samplesAreInBlocks_data();
    void samplesAreInBlocks();
};

void Tst_MosaicPopup::init() {
    TindraPreferences::resetForTesting();
    TindraPreferences::instance()->Init();
}

void Tst_MosaicPopup::captions() {
    const MosaicPopup popup;
    QStringList texts;
    for (const auto *label : popup.findChildren<QLabel *>(QStringLiteral("caption_")))
        texts += label->text();
    QCOMPARE(texts, (QStringList{QStringLiteral("original"), QStringLiteral("weak"), QStringLiteral("medium"),
                                 QStringLiteral("strong")}));
    for (const auto *button : popup.findChildren<ItemButton *>()) {
        QCOMPARE(button->cursor().shape(), Qt::PointingHandCursor);
        QVERIFY(!button->accessibleName().isEmpty());
    }
}

void Tst_MosaicPopup::storedStrengthIsChecked_data() {
    QTest::addColumn<int>("stored");
    QTest::addColumn<QString>("checked");
    QTest::newRow("4") << 4 << QStringLiteral("weak_");
    QTest::newRow("6") << 6 << QStringLiteral("medium_");
    QTest::newRow("9") << 9 << QStringLiteral("strong_");
    QTest::newRow("5 is none of them") << 5 << QStringLiteral("medium_");
    QTest::newRow("negative") << -1 << QStringLiteral("medium_");
}

void Tst_MosaicPopup::storedStrengthIsChecked() {
    QFETCH(int, stored);
    QFETCH(QString, checked);
    TindraPreferences::instance()->SetInt(TindraPreferences::MosaicStrength, stored);
    const MosaicPopup popup;
    for (const auto *button : popup.findChildren<ItemButton *>())
        QCOMPARE(button->isChecked(), button->objectName() == checked);
}

void Tst_MosaicPopup::clickReportsOnce_data() {
    QTest::addColumn<QString>("button");
    QTest::addColumn<int>("strength");
    QTest::newRow("weak") << QStringLiteral("weak_") << 4;
    QTest::newRow("medium") << QStringLiteral("medium_") << 6;
    QTest::newRow("strong") << QStringLiteral("strong_") << 9;
}

void Tst_MosaicPopup::clickReportsOnce() {
    QFETCH(QString, button);
    QFETCH(int, strength);
    MosaicPopup popup;
    popup.show();
    QVector<int> reported;
    connect(&popup, &MosaicPopup::mosaicSelected, &popup,
            [&](MosaicPopup::Strength selected) { reported += selected; });
    // On the picture, which leaves the mouse to the button.
    auto *target = popup.findChild<ItemButton *>(button);
    QTest::mouseClick(target, Qt::LeftButton, {}, QPoint(20, 20));
    QCOMPARE(reported, QVector<int>{strength});
}

void Tst_MosaicPopup::triggeredReports() {
    MosaicPopup popup;
    QVector<int> reported;
    connect(&popup, &MosaicPopup::mosaicSelected, &popup,
            [&](MosaicPopup::Strength selected) { reported += selected; });
    emit popup.triggered();
    QCOMPARE(reported, QVector<int>{6});
}

void Tst_MosaicPopup::samplesAreInBlocks_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("block");
    QTest::newRow("weak") << QStringLiteral("weak") << 4;
    QTest::newRow("medium") << QStringLiteral("medium") << 6;
    QTest::newRow("strong") << QStringLiteral("strong") << 9;
}

void Tst_MosaicPopup::samplesAreInBlocks() {
    QFETCH(QString, name);
    QFETCH(int, block);
    const QString path = QStringLiteral(":/res/popup/mosaic/%1.png");
    const QImage original(path.arg(QStringLiteral("original")));
    const QImage sample(path.arg(name));
    QCOMPARE(original.size(), QSize(216, 216)); // three times 72
    QCOMPARE(sample.size(), original.size());
    QVERIFY(original.pixel(0, 0) != 0);
    const int side = block * 3;
    int differing = 0;
    for (int y = 0; y < 216; ++y) {
        for (int x = 0; x < 216; ++x) {
            QCOMPARE(sample.pixel(x, y), sample.pixel(x / side * side, y / side * side));
            differing += sample.pixel(x, y) != original.pixel(x, y);
        }
    }
    QVERIFY(differing > 1000);
}

QTEST_MAIN(Tst_MosaicPopup)
#include "tst_mosaicpopup.moc"
