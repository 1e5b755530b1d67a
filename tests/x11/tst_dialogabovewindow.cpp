#include "ui/windowplacement.h"

#include <QDialog>
#include <QX11Info>
#include <QtTest>

#include <xcb/xcb.h>

/// A window that comes to the front, with a dialog that stayed open, under a window manager.
class Tst_DialogAboveWindow : public QObject {
    Q_OBJECT
private slots:
    void hiddenWindowComesBackBelowItsDialog();
};

namespace {

constexpr int FirstWindowPatience = 60000; // milliseconds

/// The windows of the screen, the lowest first.
QVector<WId> stack() {
    xcb_connection_t *connection = QX11Info::connection();
    const char name[] = "_NET_CLIENT_LIST_STACKING";
    const auto atomCookie = xcb_intern_atom(connection, 0, sizeof(name) - 1, name);
    xcb_intern_atom_reply_t *atom = xcb_intern_atom_reply(connection, atomCookie, nullptr);
    const auto cookie = xcb_get_property(connection, 0, xcb_window_t(QX11Info::appRootWindow()), atom->atom,
                                         XCB_ATOM_WINDOW, 0, 1024);
    free(atom);
    xcb_get_property_reply_t *reply = xcb_get_property_reply(connection, cookie, nullptr);
    const auto *values = static_cast<const xcb_window_t *>(xcb_get_property_value(reply));
    const int count = xcb_get_property_value_length(reply) / int(sizeof(xcb_window_t));
    const QVector<WId> windows(values, values + count);
    free(reply);
    return windows;
}

} // namespace

void Tst_DialogAboveWindow::hiddenWindowComesBackBelowItsDialog() {
    QWidget window;
    window.setGeometry(100, 100, 400, 300);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window, FirstWindowPatience));
    QDialog dialog(&window);
    dialog.resize(200, 100);
    dialog.show();
    const QVector<WId> both{window.winId(), dialog.winId()};
    QTRY_COMPARE(stack(), both);
    window.hide();
    QTRY_VERIFY(!stack().contains(window.winId()));
    window.show();
    bringToFront(&window);
    QTRY_VERIFY(window.isActiveWindow());
    QTRY_COMPARE(stack(), both);
    QTest::qWait(200); // for a request that is still on its way
    QCOMPARE(stack(), both);
    QVERIFY(window.isActiveWindow());
}

QTEST_MAIN(Tst_DialogAboveWindow)
#include "tst_dialogabovewindow.moc"
