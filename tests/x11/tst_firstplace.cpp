#include "app/windowtest.h"
#include "ui/builtinstyle.h"

/// Where the window stands when `/show` brings it up, with the least size that its style sheet asks for at
/// the screen's scale, which comes with the first show.
class Tst_FirstPlace : public WindowTest {
    Q_OBJECT
private slots:
    void initTestCase() { installBuiltInStyle(qApp); }
    void init() { WindowTest::init(); }
    void cleanup() { WindowTest::cleanup(); }
    void firstShowStandsInTheMiddleOfTheScreen();
    void nextShowStandsThereToo();
    void showOfAMaximisedWindowStandsThereToo();

private:
    void show();
    void compareWithTheMiddle();
};

namespace {
constexpr int LeastWidth = 910; // at 96 DPI
// Before the window is on the screen for the first time nobody knows how large its frame will be.
constexpr int FrameShare = 30;
} // namespace

void Tst_FirstPlace::show() {
    treat("/show"_qs);
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void Tst_FirstPlace::compareWithTheMiddle() {
    const QRect available = m_window->screen()->availableGeometry();
    QVERIFY(m_window->width() >= int(LeastWidth * (m_window->logicalDpiX() / 96.0)));
    // The window manager has its say about the frame a little later.
    const auto offCentre = [&] {
        return (m_window->frameGeometry().center() - available.center()).manhattanLength();
    };
    QTRY_VERIFY2(offCentre() <= FrameShare, qPrintable(QString::number(offCentre())));
    QVERIFY(available.contains(m_window->frameGeometry()));
}

void Tst_FirstPlace::firstShowStandsInTheMiddleOfTheScreen() {
    show();
    compareWithTheMiddle();
}

void Tst_FirstPlace::nextShowStandsThereToo() {
    show();
    m_window->move(7, 9);
    treat("/hide"_qs);
    QCoreApplication::processEvents();
    show();
    compareWithTheMiddle();
}

void Tst_FirstPlace::showOfAMaximisedWindowStandsThereToo() {
    m_window->move(7, 9);
    m_window->showMaximized();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    const int width = m_window->screen()->availableGeometry().width();
    QTRY_VERIFY(m_window->frameGeometry().width() >= width);
    treat("/hide"_qs);
    QTest::qWait(100); // what the window manager still tells of it
    show();
    QTRY_VERIFY(m_window->frameGeometry().width() < width);
    compareWithTheMiddle();
    QVERIFY(!m_window->isMaximized());
}

QTEST_MAIN(Tst_FirstPlace)
#include "tst_firstplace.moc"
