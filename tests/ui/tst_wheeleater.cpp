#include "ui/wheeleater.h"

#include <QApplication>
#include <QComboBox>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>

class Tst_WheelEater : public QObject {
    Q_OBJECT
private slots:
    void wheelNeitherChangesTheValueNorScrolls_data();
    void wheelNeitherChangesTheValueNorScrolls();
    void everythingElsePasses();
};

void Tst_WheelEater::wheelNeitherChangesTheValueNorScrolls_data() {
    QTest::addColumn<bool>("eaten");
    QTest::newRow("with the eater") << true;
    QTest::newRow("without it the value changes") << false;
}

void Tst_WheelEater::wheelNeitherChangesTheValueNorScrolls() {
    QFETCH(bool, eaten);
    QScrollArea area;
    auto *content = new QWidget;
    auto *combo = new QComboBox(content);
    combo->addItems({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
    content->resize(100, 2000);
    area.setWidget(content);
    area.resize(200, 200);
    area.show();
    WheelEater eater;
    if (eaten)
        combo->installEventFilter(&eater);
    const QPointF centre = combo->rect().center();
    QWheelEvent wheel(centre, combo->mapToGlobal(centre.toPoint()), QPoint(), QPoint(0, -120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(combo, &wheel);
    QCOMPARE(combo->currentIndex(), eaten ? 0 : 1);
    QCOMPARE(area.verticalScrollBar()->value(), 0);
}

void Tst_WheelEater::everythingElsePasses() {
    QComboBox combo;
    combo.addItems({QStringLiteral("a"), QStringLiteral("b")});
    WheelEater eater;
    combo.installEventFilter(&eater);
    combo.show();
    QTest::keyClick(&combo, Qt::Key_Down);
    QCOMPARE(combo.currentIndex(), 1);
}

QTEST_MAIN(Tst_WheelEater)
#include "tst_wheeleater.moc"
