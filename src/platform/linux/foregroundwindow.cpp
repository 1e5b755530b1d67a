#include "platform/foregroundwindow.h"

#include "platform/linux/linuxservices.h"
#include "platform/linux/x11client.h"

#include <QGuiApplication>
#include <QWindow>
#include <QX11Info>

#include <xcb/xcb.h>

namespace {

/// Tells the window manager that the user asked for it. A plain request of an application may be
/// answered with a blinking entry in the task bar; a request of this source is not.
constexpr uint32_t SourceUser = 2;

void askWindowManager(QWindow *window) {
    xcb_connection_t *connection = QX11Info::connection();
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = xcb_window_t(window->winId());
    event.type = platform::x11Atom("_NET_ACTIVE_WINDOW");
    event.data.data32[0] = SourceUser;
    event.data.data32[1] = uint32_t(QX11Info::getTimestamp());
    xcb_send_event(connection, 0, xcb_window_t(QX11Info::appRootWindow()),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&event));
    xcb_flush(connection);
}

class LinuxForegroundWindow : public ForegroundWindow {
public:
    void bringToFront(QWindow *window) override {
        if (!window)
            return;
        window->raise();
        window->requestActivate();
        if (window->isVisible() && QX11Info::isPlatformX11())
            askWindowManager(window);
    }
};

} // namespace

std::unique_ptr<ForegroundWindow> makeForegroundWindow() {
    return std::make_unique<LinuxForegroundWindow>();
}
