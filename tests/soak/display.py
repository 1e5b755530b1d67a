"""A client of the display server: its own mouse and keys, the windows that there are, and waiting until the window
manager and the editor have handled all of it. Otherwise a line over the socket overtakes a click on a busy machine."""
import ctypes
import select
import time

LIMIT = 60.0  # seconds
CLIENT_MESSAGE, PROPERTY_NOTIFY = 33, 28
STRUCTURE, SUBSTRUCTURE, REDIRECT, PROPERTY_CHANGES = 1 << 17, 1 << 19, 1 << 20, 1 << 22  # masks
LONGS_OF_AN_EVENT = 24
MODIFIERS = {"ctrl": b"Control_L", "alt": b"Alt_L", "shift": b"Shift_L"}
KEYS = {" ": b"space", ".": b"period"}
WINDOW_KIND, MOST_WINDOWS = 33, 1024  # XA_WINDOW


class ClientMessage(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("sent", ctypes.c_int),
                ("display", ctypes.c_void_p), ("window", ctypes.c_ulong), ("kind", ctypes.c_ulong),
                ("format", ctypes.c_int), ("data", ctypes.c_long * 5)]


class PropertyChange(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("sent", ctypes.c_int),
                ("display", ctypes.c_void_p), ("window", ctypes.c_ulong), ("atom", ctypes.c_ulong)]


class Event(ctypes.Union):
    _fields_ = [("type", ctypes.c_int), ("message", ClientMessage), ("change", PropertyChange),
                ("room", ctypes.c_long * LONGS_OF_AN_EVENT)]


class Display:
    def __init__(self):
        self.x11, self.test = ctypes.CDLL("libX11.so.6"), ctypes.CDLL("libXtst.so.6")
        self.x11.XOpenDisplay.restype = ctypes.c_void_p
        self.x11.XDefaultRootWindow.restype = self.x11.XInternAtom.restype = ctypes.c_ulong
        self.x11.XStringToKeysym.restype = ctypes.c_ulong
        # A window that has just gone is no reason to end.
        self.forgiving = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p)(lambda *_: 0)
        self.x11.XSetErrorHandler(self.forgiving)
        self.display = ctypes.c_void_p(self.x11.XOpenDisplay(None))
        assert self.display, "no display"
        self.root = ctypes.c_ulong(self.x11.XDefaultRootWindow(self.display))
        self.desktops, self.protocols, self.ping, self.clients, self.active = (
            ctypes.c_ulong(self.x11.XInternAtom(self.display, name, 0)) for name in (
                b"_NET_NUMBER_OF_DESKTOPS", b"WM_PROTOCOLS", b"_NET_WM_PING", b"_NET_CLIENT_LIST",
                b"_NET_ACTIVE_WINDOW"))
        # Pings come back under a mask of the toolkit's choice.
        self.x11.XSelectInput(self.display, self.root, ctypes.c_long(STRUCTURE | PROPERTY_CHANGES))
        self.wanted, self.pings = 1, 0  # desktops; pings until now

    # Mouse and keys.

    def move(self, window, x, y):
        self.x11.XWarpPointer(self.display, ctypes.c_ulong(0), ctypes.c_ulong(window), 0, 0, 0, 0, int(x), int(y))
        self.x11.XSync(self.display, 0)

    def press(self, button, down):
        self.test.XTestFakeButtonEvent(self.display, button, down, ctypes.c_ulong(0))
        self.x11.XSync(self.display, 0)

    def click(self, button=1):
        self.press(button, True)
        self.press(button, False)

    def hold(self, name, down):
        """A key, by the name that the server's library has for it."""
        code = self.x11.XKeysymToKeycode(self.display, ctypes.c_ulong(self.x11.XStringToKeysym(name)))
        assert code, f"no key {name}"
        self.test.XTestFakeKeyEvent(self.display, code, down, ctypes.c_ulong(0))
        self.x11.XSync(self.display, 0)

    def key(self, keys):
        """One with the modifiers before it: ctrl+shift+f."""
        *modifiers, last = keys.split("+")
        names = [MODIFIERS[name] for name in modifiers] + [last.encode()]
        for name in names:
            self.hold(name, True)
        for name in reversed(names):
            self.hold(name, False)

    def type(self, text):
        for character in text:
            name = KEYS.get(character, character.encode())
            self.hold(name, True)
            self.hold(name, False)

    # Windows.

    def windows_of(self, atom):
        """Windows that the window manager names in a property of the root."""
        kind, size, count, left = ctypes.c_ulong(), ctypes.c_int(), ctypes.c_ulong(), ctypes.c_ulong()
        values = ctypes.POINTER(ctypes.c_ulong)()
        self.x11.XGetWindowProperty(self.display, self.root, atom, ctypes.c_long(0), ctypes.c_long(MOST_WINDOWS), 0,
                                    ctypes.c_ulong(WINDOW_KIND), ctypes.byref(kind), ctypes.byref(size),
                                    ctypes.byref(count), ctypes.byref(left), ctypes.byref(values))
        found = values[:count.value] if values else []
        if values:
            self.x11.XFree(values)
        return found

    def windows(self):
        """From the first that came to the last."""
        return self.windows_of(self.clients)

    def active_window(self):
        return (self.windows_of(self.active) or [0])[0]

    def size_of(self, window):
        """Width and height; zeros when the window is gone."""
        root, (x, y), (width, height, border, depth) = ctypes.c_ulong(), (ctypes.c_int(), ctypes.c_int()), (
            ctypes.c_uint(), ctypes.c_uint(), ctypes.c_uint(), ctypes.c_uint())
        self.x11.XGetGeometry(self.display, ctypes.c_ulong(window),
                              *map(ctypes.byref, (root, x, y, width, height, border, depth)))
        return width.value, height.value

    # Waiting.

    def send(self, window, kind, values, mask):
        message = Event()
        message.message.type, message.message.window, message.message.kind = CLIENT_MESSAGE, window.value, kind.value
        message.message.format = 32
        message.message.data[:len(values)] = values
        self.x11.XSendEvent(self.display, window, 0, ctypes.c_long(mask), ctypes.byref(message))
        self.x11.XFlush(self.display)

    def wait_for(self, answers):
        """Whether an event comes that is the answer."""
        event = Event()
        end = time.monotonic() + LIMIT
        while time.monotonic() < end:
            while self.x11.XPending(self.display):
                self.x11.XNextEvent(self.display, ctypes.byref(event))
                if answers(event):
                    return True
            select.select([self.x11.XConnectionNumber(self.display)], [], [], 0.1)
        return False

    def window_manager_is_through(self):
        """A press goes to it first, and it hands the press on. So it is asked for something else that it tells when it
        is done, one thing after the other: another number of desktops, of two."""
        self.wanted = 3 - self.wanted
        self.send(self.root, self.desktops, [self.wanted], SUBSTRUCTURE | REDIRECT)
        assert self.wait_for(lambda event: event.type == PROPERTY_NOTIFY and
                             event.change.atom == self.desktops.value), "the window manager does not answer"

    def is_through(self, window):
        """Whether the program of that window has handled all events until now: it sends a ping on to the root."""
        self.pings += 1
        self.send(ctypes.c_ulong(window), self.protocols, [self.ping.value, self.pings, window], 0)
        return self.wait_for(lambda event: event.type == CLIENT_MESSAGE and event.message.window == self.root.value and
                             event.message.kind == self.protocols.value and
                             tuple(event.message.data[:2]) == (self.ping.value, self.pings))
