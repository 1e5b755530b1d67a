#include "preferences/tindrapreferences.h"
#include "ui/coachmarkwidget.h"
#include "ui/uistyler.h"

#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

class Tst_CoachmarkWidget : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { UIStyler::install(qApp); }
    void init();
    void standsAtItsAnchor_data();
    void standsAtItsAnchor();
    void anchorInAnotherBranch();
    void sizeFollowsTextAndScale_data();
    void sizeFollowsTextAndScale();
    void newTextMeasuresAndPlacesAnew();
    void arrowPointsAtTheAnchor_data();
    void arrowPointsAtTheAnchor();
    void closeButtonStandsInTheCorner();
    void closingIsRemembered();
    void colourGoesToTheLabelsPalette();
    void isHiddenAtFirst();

private:
    static constexpr int Id = TindraPreferences::OnceAiToolsCoachmark;
};

void Tst_CoachmarkWidget::init() {
    TindraPreferences::resetForTesting();
    TindraPreferences::instance()->Init();
}

void Tst_CoachmarkWidget::standsAtItsAnchor_data() {
    QTest::addColumn<int>("side");
    QTest::addColumn<double>("position");
    // The anchor is 41 x 31 at (200, 150), so its centre is (220.5, 165.5).
    QTest::newRow("right") << 0 << 25.0;
    QTest::newRow("below") << 1 << 10.0;
    QTest::newRow("left") << 2 << 75.0;
    QTest::newRow("above") << 3 << 33.3;
    QTest::newRow("start of the side") << 1 << 0.0;
    QTest::newRow("end of the side") << 0 << 100.0;
}

void Tst_CoachmarkWidget::standsAtItsAnchor() {
    QFETCH(int, side);
    QFETCH(double, position);
    QWidget window;
    window.resize(600, 400);
    QWidget anchor(&window);
    anchor.setGeometry(200, 150, 41, 31);
    CoachmarkWidget coachmark(Id, &window);
    coachmark.setText(QStringLiteral("a few words"));
    coachmark.setAnchor(&anchor, static_cast<CoachmarkWidget::Side>(side), position);
    const int w = coachmark.width();
    const int h = coachmark.height();
    QPoint expected;
    switch (side) {
    case 0:
        expected = {241, int(165.5 - position * h / 100)};
        break;
    case 1:
        expected = {int(220.5 - position * w / 100), 181};
        break;
    case 2:
        expected = {200 - w, int(165.5 - position * h / 100)};
        break;
    default:
        expected = {int(220.5 - position * w / 100), 150 - h};
        break;
    }
    QCOMPARE(coachmark.pos(), expected);
    anchor.move(210, 160);
    coachmark.place();
    QCOMPARE(coachmark.pos(), expected + QPoint(10, 10));
}

void Tst_CoachmarkWidget::anchorInAnotherBranch() {
    QWidget window;
    window.resize(600, 400);
    QWidget bar(&window);
    bar.setGeometry(50, 20, 300, 80);
    auto *anchor = new QWidget(&bar);
    anchor->setGeometry(10, 5, 40, 30);
    CoachmarkWidget coachmark(Id, &window);
    coachmark.setText(QStringLiteral("text"));
    coachmark.setAnchor(anchor, CoachmarkWidget::BelowAnchor, 0);
    QCOMPARE(coachmark.pos(), QPoint(50 + 10 + 20, 20 + 5 + 30));
    delete anchor;
    coachmark.place(); // stays, without looking at what is gone
    QCOMPARE(coachmark.pos(), QPoint(80, 55));
}

void Tst_CoachmarkWidget::sizeFollowsTextAndScale_data() {
    QTest::addColumn<double>("scale");
    QTest::addColumn<int>("side");
    for (const double scale : {1.0, 1.5, 2.0}) {
        QTest::addRow("beside at %g", scale) << scale << 0;
        QTest::addRow("below at %g", scale) << scale << 1;
    }
}

void Tst_CoachmarkWidget::sizeFollowsTextAndScale() {
    QFETCH(double, scale);
    QFETCH(int, side);
    QWidget window;
    QWidget anchor(&window);
    CoachmarkWidget coachmark(Id, &window);
    coachmark.setAnchor(&anchor, static_cast<CoachmarkWidget::Side>(side), 50);
    coachmark.setText(QStringLiteral("one\ntwo lines"));
    window.show();
    coachmark.show();
    UIStyler::applyScale(&window, scale);
    const auto *label = coachmark.findChild<QLabel *>(QStringLiteral("label"));
    const QSize text = label->fontMetrics()
                           .boundingRect(QRect(0, 0, 9999, 9999), 0, QStringLiteral("one\ntwo lines"))
                           .size();
    // 8 around the text, 6 between it and the button of 16, 1 behind that, 8 for the arrow on its side.
    const QSize bubble(int(8 * scale) + text.width() + int(6 * scale) + int(16 * scale) + int(scale),
                       text.height() + 2 * int(8 * scale));
    const int arrow = int(8 * scale);
    QCOMPARE(coachmark.size(), bubble + (side == 0 ? QSize(arrow, 0) : QSize(0, arrow)));
    QCOMPARE(label->size(), text);
}

void Tst_CoachmarkWidget::newTextMeasuresAndPlacesAnew() {
    QWidget window;
    window.resize(600, 400);
    QWidget anchor(&window);
    anchor.setGeometry(300, 100, 20, 20);
    CoachmarkWidget coachmark(Id, &window);
    coachmark.setAnchor(&anchor, CoachmarkWidget::LeftOfAnchor, 50);
    coachmark.setText(QStringLiteral("short"));
    const int before = coachmark.width();
    QSignalSpy updated(&coachmark, &CoachmarkWidget::updateText);
    coachmark.setText(QStringLiteral("a text that is a good deal longer"));
    QCOMPARE(updated.count(), 1);
    QCOMPARE(coachmark.text(), QStringLiteral("a text that is a good deal longer"));
    QVERIFY(coachmark.width() > before);
    QCOMPARE(coachmark.x() + coachmark.width(), 300);
}

void Tst_CoachmarkWidget::arrowPointsAtTheAnchor_data() {
    QTest::addColumn<int>("side");
    for (int side = 0; side < 4; ++side)
        QTest::addRow("%d", side) << side;
}

void Tst_CoachmarkWidget::arrowPointsAtTheAnchor() {
    QFETCH(int, side);
    QWidget window;
    QWidget anchor(&window);
    CoachmarkWidget coachmark(Id, &window);
    coachmark.setColor(Qt::red);
    coachmark.setText(QStringLiteral("some words here\nand there"));
    coachmark.setAnchor(&anchor, static_cast<CoachmarkWidget::Side>(side), 50);
    QImage image(coachmark.size(), QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    coachmark.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    const int w = image.width();
    const int h = image.height();
    // Three pixels behind the tip there is colour in the middle of the side, and none beside it.
    const QPoint tips[] = {{3, h / 2}, {w / 2, 3}, {w - 4, h / 2}, {w / 2, h - 4}};
    const QPoint beside = side % 2 == 0 ? QPoint(0, 10) : QPoint(10, 0);
    QCOMPARE(image.pixelColor(tips[side]), QColor(Qt::red));
    QCOMPARE(image.pixelColor(tips[side] + beside).alpha(), 0);
    QCOMPARE(image.pixelColor(tips[side] - beside).alpha(), 0);
}

void Tst_CoachmarkWidget::closeButtonStandsInTheCorner() {
    QWidget window;
    CoachmarkWidget coachmark(Id, &window);
    coachmark.setText(QStringLiteral("words"));
    coachmark.setAnchor(&window, CoachmarkWidget::BelowAnchor, 50);
    window.show();
    coachmark.show();
    const auto *close = coachmark.findChild<QPushButton *>(QStringLiteral("close_"));
    // One unit from the bubble's top right corner, which the arrow pushes down by eight.
    QCOMPARE(close->geometry(), QRect(coachmark.width() - 1 - 16, 8 + 1, 16, 16));
    coachmark.resize(coachmark.width() + 50, coachmark.height());
    QApplication::processEvents();
    QCOMPARE(close->x(), coachmark.width() - 1 - 16);
    QVERIFY(!close->accessibleName().isEmpty());
}

void Tst_CoachmarkWidget::closingIsRemembered() {
    QWidget window;
    auto *coachmark = new CoachmarkWidget(Id, &window);
    QVERIFY(!coachmark->wasClosed());
    coachmark->setText(QStringLiteral("words"));
    window.show();
    coachmark->show();
    QSignalSpy destroyed(coachmark, &QObject::destroyed);
    QTest::mouseClick(coachmark->findChild<QPushButton *>(QStringLiteral("close_")), Qt::LeftButton);
    QVERIFY(destroyed.wait());
    QVERIFY(TindraPreferences::instance()->GetBool(Id, false));
    QVERIFY(CoachmarkWidget(Id, &window).wasClosed());
}

void Tst_CoachmarkWidget::colourGoesToTheLabelsPalette() {
    QWidget window;
    CoachmarkWidget coachmark(Id, &window);
    coachmark.setColor(QColor(1, 2, 3));
    const auto *label = coachmark.findChild<QLabel *>(QStringLiteral("label"));
    QCOMPARE(label->palette().brush(static_cast<QPalette::ColorRole>(5)).color(), QColor(1, 2, 3));
}

void Tst_CoachmarkWidget::isHiddenAtFirst() {
    QWidget window;
    CoachmarkWidget coachmark(Id, &window);
    window.show();
    QVERIFY(!coachmark.isVisible());
}

QTEST_MAIN(Tst_CoachmarkWidget)
#include "tst_coachmarkwidget.moc"
