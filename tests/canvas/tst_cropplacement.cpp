#include "canvas/cropplacement.h"

#include <QtTest>

/// A view of 600 x 400 at (100, 50), so to (700, 450), and a popup of 300 x 60.
class Tst_CropPlacement : public QObject {
    Q_OBJECT
private slots:
    void place_data();
    void place();
};

void Tst_CropPlacement::place_data() {
    QTest::addColumn<QPoint>("corner");
    QTest::addColumn<QSize>("bars");
    QTest::addColumn<QPoint>("expected");
    const QSize none(0, 0);
    const auto row = [](const char *name, QPoint corner, QSize bars, QPoint expected) {
        QTest::newRow(name) << corner << bars << expected;
    };
    row("below the corner, to its left", {600, 300}, none, {300, 310});
    row("not left of the view", {350, 300}, none, {100, 310});
    row("left edge exactly", {400, 300}, none, {100, 310});
    row("not right of the view", {900, 300}, none, {400, 310});
    row("left of the vertical bar", {900, 300}, {17, 0}, {383, 310});
    row("not above the view", {600, -100}, none, {300, 50});
    row("pushed up by the lower border", {600, 385}, none, {300, 390});
    row("above the horizontal bar", {600, 385}, {0, 15}, {300, 450 - 60 - 15});
    row("room for exactly the popup", {600, 390}, none, {300, 390});
    // A pixel less than the popup's height below the corner: above it, and clear of the corner to the left.
    row("too little room below", {600, 391}, none, {290, 391 - 60 - 10});
    row("last row of the view", {600, 449}, none, {290, 379});
    row("at the view's bottom", {600, 450}, none, {290, 390});
    row("below the view", {600, 800}, none, {290, 390});
    row("below the view, with a bar", {600, 800}, {17, 15}, {290, 375});
    // As far left as it takes to clear the corner, even out of the view.
    row("too little room, at the left", {200, 430}, none, {-110, 360});
    row("below the view, at the left", {200, 500}, none, {-110, 390});
    // The frame reaches far beyond the right border: the popup is clear of the corner anyhow.
    row("too little room, far to the right", {1000, 430}, none, {400, 360});
    row("clear of the corner by exactly the gap", {710, 430}, none, {400, 360});
    row("a pixel less", {709, 430}, none, {399, 360});
}

void Tst_CropPlacement::place() {
    QFETCH(QPoint, corner);
    QFETCH(QSize, bars);
    QTEST(cropPopupPlace(corner, QSize(300, 60), QRect(100, 50, 600, 400), bars), "expected");
}

QTEST_MAIN(Tst_CropPlacement)
#include "tst_cropplacement.moc"
