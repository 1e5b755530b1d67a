#include "support/fakeplatform.h"
#include "ui/windowplacement.h"

#include <QDialog>
#include <QLineEdit>
#include <QScreen>
#include <QtTest>

Q_DECLARE_METATYPE(ScreenArea)

namespace {

// One screen with a panel of 40 pixels at the bottom.
const QVector<ScreenArea> One{{QRect(0, 0, 1920, 1080), QRect(0, 0, 1920, 1040)}};
// A dock of 60 pixels on the left, a bar of 30 at the top.
const QVector<ScreenArea> Docked{{QRect(0, 0, 1920, 1080), QRect(60, 30, 1860, 1050)}};
// A smaller one to the right of a larger one, and one to the left with negative coordinates.
const QVector<ScreenArea> Three{{QRect(0, 0, 1920, 1080), QRect(0, 0, 1920, 1040)},
                                {QRect(1920, 0, 1280, 800), QRect(1920, 0, 1280, 760)},
                                {QRect(-1024, 0, 1024, 768), QRect(-1024, 0, 1024, 728)}};

} // namespace

class Tst_WindowPlacement : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void place_data();
    void place();
    void centre_data();
    void centre();
    void windowOffScreenIsBroughtBack();
    void windowOnScreenIsNotMoved();
    void windowIsCentredOnItsScreen();
    void frontNeedsFocusAndPlatform();
    void windowWithoutHandleIsLeftToFocus();
    void openDialogsStayAboveTheirWindow();

private:
    FakePlatform *m_platform = nullptr;
};

void Tst_WindowPlacement::init() {
    m_platform = FakePlatform::install();
}

void Tst_WindowPlacement::cleanup() {
    Platform::setInstance(nullptr);
}

void Tst_WindowPlacement::place_data() {
    QTest::addColumn<QVector<ScreenArea>>("screens");
    QTest::addColumn<QRect>("frame");
    QTest::addColumn<QPoint>("expected");

    QTest::newRow("inside") << One << QRect(100, 100, 400, 300) << QPoint(100, 100);
    QTest::newRow("fills the screen") << One << QRect(0, 0, 1920, 1080) << QPoint(0, 0);
    QTest::newRow("under the panel, but on the screen")
        << One << QRect(100, 780, 400, 300) << QPoint(100, 780);
    QTest::newRow("out at the left") << One << QRect(-1, 100, 400, 300) << QPoint(0, 100);
    QTest::newRow("out at the right") << One << QRect(1521, 100, 400, 300) << QPoint(1520, 100);
    QTest::newRow("out at the top") << One << QRect(100, -1, 400, 300) << QPoint(100, 0);
    QTest::newRow("out at the bottom") << One << QRect(100, 781, 400, 300) << QPoint(100, 740);
    QTest::newRow("out at the right moves from under the panel too")
        << One << QRect(1600, 770, 400, 300) << QPoint(1520, 740);
    QTest::newRow("out at two edges") << One << QRect(1900, 1060, 400, 300) << QPoint(1520, 740);
    QTest::newRow("too wide: right edge wins") << One << QRect(-10, 100, 2000, 300) << QPoint(-80, 100);
    QTest::newRow("too high: top edge wins") << One << QRect(100, -10, 400, 2000) << QPoint(100, 0);
    QTest::newRow("dock and bar") << Docked << QRect(-5, -5, 400, 300) << QPoint(60, 30);
    QTest::newRow("nowhere, far right") << One << QRect(5000, 100, 400, 300) << QPoint(1520, 100);
    QTest::newRow("nowhere, far above") << One << QRect(100, -5000, 400, 300) << QPoint(100, 0);

    QTest::newRow("across two screens, all corners seen")
        << Three << QRect(1800, 100, 400, 300) << QPoint(1800, 100);
    QTest::newRow("across, most on the larger, corner in the gap")
        << Three << QRect(1620, 600, 400, 300) << QPoint(1520, 600);
    QTest::newRow("across, most on the smaller, corner in the gap")
        << Three << QRect(1900, 600, 400, 300) << QPoint(1920, 460);
    QTest::newRow("negative coordinates") << Three << QRect(-1100, 100, 400, 300) << QPoint(-1024, 100);
    QTest::newRow("nowhere, nearest is the left one")
        << Three << QRect(-3000, 100, 400, 300) << QPoint(-1024, 100);
    QTest::newRow("nowhere, nearest is the right one")
        << Three << QRect(4000, 100, 400, 300) << QPoint(1920 + 1280 - 400, 100);
    QTest::newRow("no screens") << QVector<ScreenArea>() << QRect(-7, -8, 400, 300) << QPoint(-7, -8);
}

void Tst_WindowPlacement::place() {
    QFETCH(QVector<ScreenArea>, screens);
    QFETCH(QRect, frame);
    QTEST(placedOnScreen(frame, screens), "expected");
}

void Tst_WindowPlacement::centre_data() {
    QTest::addColumn<QRect>("area");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QPoint>("expected");
    QTest::newRow("whole") << QRect(0, 0, 1000, 800) << QSize(400, 200) << QPoint(300, 300);
    QTest::newRow("with offset") << QRect(60, 30, 1000, 800) << QSize(400, 200) << QPoint(360, 330);
    QTest::newRow("odd rest") << QRect(0, 0, 1001, 801) << QSize(400, 200) << QPoint(300, 300);
    QTest::newRow("larger than the area") << QRect(0, 0, 1000, 800) << QSize(1200, 900) << QPoint(-100, -50);
}

void Tst_WindowPlacement::centre() {
    QFETCH(QRect, area);
    QFETCH(QSize, size);
    QTEST(centredIn(area, size), "expected");
}

void Tst_WindowPlacement::windowOffScreenIsBroughtBack() {
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    QWidget window;
    window.resize(200, 100);
    window.move(available.right() - 50, available.bottom() + 500);
    keepOnScreen(&window);
    QCOMPARE(window.frameGeometry().bottomRight(), available.bottomRight());
}

void Tst_WindowPlacement::windowOnScreenIsNotMoved() {
    QWidget window;
    window.resize(200, 100);
    window.move(30, 40);
    keepOnScreen(&window);
    QCOMPARE(window.pos(), QPoint(30, 40));
}

void Tst_WindowPlacement::windowIsCentredOnItsScreen() {
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    QWidget window;
    window.resize(100, 100);
    centreOnScreen(&window, QSize(200, 300)); // not by its own size
    QCOMPARE(window.pos(),
             available.topLeft() + QPoint((available.width() - 200) / 2, (available.height() - 300) / 2));
}

void Tst_WindowPlacement::frontNeedsFocusAndPlatform() {
    QWidget window;
    window.setFocusPolicy(Qt::StrongFocus);
    QLineEdit field(&window);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    field.setFocus();
    QVERIFY(!window.hasFocus());
    bringToFront(&window);
    QCOMPARE(m_platform->broughtToFront, 1);
    QVERIFY(window.hasFocus());
}

void Tst_WindowPlacement::windowWithoutHandleIsLeftToFocus() {
    QWidget window;
    bringToFront(&window);
    QCOMPARE(m_platform->broughtToFront, 0);
}

namespace {

/// Notes which windows are raised.
class RaiseLog : public QObject {
public:
    QStringList names;
    bool eventFilter(QObject *watched, QEvent *event) override {
        if (event->type() == QEvent::ZOrderChange)
            names.append(watched->objectName());
        return false;
    }
};

} // namespace

void Tst_WindowPlacement::openDialogsStayAboveTheirWindow() {
    RaiseLog log;
    QWidget window;
    QWidget part(&window);
    QWidget other;
    const auto open = [&log](QDialog &dialog, const char *name) {
        dialog.setObjectName(QLatin1String(name));
        dialog.installEventFilter(&log);
        dialog.show();
    };
    window.show();
    other.show();
    QDialog preferences(&window);
    QDialog question(&part);
    // Found before the others, but it blocks them.
    question.setModal(true);
    QDialog closed(&window);
    QDialog foreign(&other);
    open(preferences, "preferences");
    open(question, "question on a part");
    open(closed, "closed");
    open(foreign, "of another window");
    closed.close();
    window.hide();
    window.show();
    log.names.clear();
    bringToFront(&window);
    QCOMPARE(log.names, (QStringList{QStringLiteral("preferences"), QStringLiteral("question on a part")}));

    window.hide();
    log.names.clear();
    bringToFront(&window);
    QCOMPARE(log.names, QStringList());
}

QTEST_MAIN(Tst_WindowPlacement)
#include "tst_windowplacement.moc"
