#include "platform/foregroundwindow.h"
#include "platform/platform.h"

#include <QProcess>
#include <QTest>
#include <QWindow>
#include <QX11Info>

#include <xcb/xcb.h>

namespace {

xcb_atom_t atom(const char *name) {
    const auto cookie = xcb_intern_atom(QX11Info::connection(), 0, uint16_t(qstrlen(name)), name);
    xcb_intern_atom_reply_t *reply = xcb_intern_atom_reply(QX11Info::connection(), cookie, nullptr);
    const xcb_atom_t result = reply->atom;
    free(reply);
    return result;
}

/// The argument that makes this program the other one.
const QString OtherProgram = QStringLiteral("--other-program");
constexpr int FirstWindowPatience = 60000; // milliseconds

void showWindow(QWindow &window) {
    window.setGeometry(100, 100, 300, 200);
    window.show();
}

/// A list of windows that the window manager keeps on the root window.
QVector<WId> rootWindows(const char *property) {
    const auto cookie = xcb_get_property(QX11Info::connection(), 0, xcb_window_t(QX11Info::appRootWindow()),
                                         atom(property), XCB_ATOM_WINDOW, 0, 1024);
    xcb_get_property_reply_t *reply = xcb_get_property_reply(QX11Info::connection(), cookie, nullptr);
    QVector<WId> windows;
    const auto *values = static_cast<const xcb_window_t *>(xcb_get_property_value(reply));
    for (int i = 0; i < xcb_get_property_value_length(reply) / int(sizeof(xcb_window_t)); ++i)
        windows.append(values[i]);
    free(reply);
    return windows;
}

WId activeWindow() {
    return rootWindows("_NET_ACTIVE_WINDOW").value(0);
}

WId topWindow() {
    const QVector<WId> stack = rootWindows("_NET_CLIENT_LIST_STACKING");
    return stack.isEmpty() ? 0 : stack.last();
}

void bringToFront(QWindow *window) {
    Platform::instance().foregroundWindow().bringToFront(window);
}

} // namespace

class Tst_ForegroundWindow : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void comesInFrontOfAnotherProgram();
    void comesBackFromTheTaskBar();
    void hiddenWindowStaysHidden();
    void noWindowIsNoError() { bringToFront(nullptr); }

private:
    std::unique_ptr<QWindow> m_window;
    QProcess m_other;
};

void Tst_ForegroundWindow::init() {
    m_window = std::make_unique<QWindow>();
    showWindow(*m_window);
    // The first window of a program waits for all that the display has to tell.
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get(), FirstWindowPatience));
    QTRY_COMPARE(activeWindow(), m_window->winId());
    m_other.start(QCoreApplication::applicationFilePath(), {OtherProgram});
    QTRY_COMPARE(rootWindows("_NET_CLIENT_LIST").size(), 2);
    const QVector<WId> windows = rootWindows("_NET_CLIENT_LIST");
    const WId other = windows[0] == m_window->winId() ? windows[1] : windows[0];
    QProcess::execute(QStringLiteral("xdotool"), {QStringLiteral("windowactivate"), QString::number(other)});
    QTRY_COMPARE(activeWindow(), other);
    QTRY_COMPARE(topWindow(), other);
}

void Tst_ForegroundWindow::cleanup() {
    m_other.kill();
    m_other.waitForFinished();
    m_window.reset();
    QTRY_COMPARE(rootWindows("_NET_CLIENT_LIST").size(), 0);
}

void Tst_ForegroundWindow::comesInFrontOfAnotherProgram() {
    bringToFront(m_window.get());
    QTRY_COMPARE(activeWindow(), m_window->winId());
    QTRY_COMPARE(topWindow(), m_window->winId());
    QTRY_VERIFY(m_window->isActive());
}

void Tst_ForegroundWindow::comesBackFromTheTaskBar() {
    m_window->showMinimized();
    QTRY_VERIFY(!m_window->isExposed());
    bringToFront(m_window.get());
    QTRY_VERIFY(m_window->isExposed());
    QTRY_COMPARE(activeWindow(), m_window->winId());
    QTRY_COMPARE(topWindow(), m_window->winId());
}

void Tst_ForegroundWindow::hiddenWindowStaysHidden() {
    const WId other = activeWindow();
    m_window->hide();
    QTRY_COMPARE(rootWindows("_NET_CLIENT_LIST").size(), 1);
    bringToFront(m_window.get());
    QTest::qWait(100);
    QVERIFY(!m_window->isVisible());
    QCOMPARE(activeWindow(), other);
}

int main(int argc, char **argv) {
    QGuiApplication application(argc, argv);
    if (QCoreApplication::arguments().value(1) == OtherProgram) {
        QWindow window;
        showWindow(window);
        return QGuiApplication::exec();
    }
    Tst_ForegroundWindow test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_foregroundwindow.moc"
