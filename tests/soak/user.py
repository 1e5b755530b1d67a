"""What a user does with mouse and keys, and where the buttons of the main window are."""
import socket
import time

from display import Display
from editorsession import SOCKET, tell, wait_for, wire, xdotool

WINDOW = (1200, 800)
PLACE = (60, 20)
# From the window's top left, at 96 DPI and in the size above.
FIGURE, PEN, HIGHLIGHTER, LINE = (440, 30), (504, 30), (573, 30), (639, 30)
RESET, TEXT, CROP, MOSAIC, ERASER = (363, 30), (715, 30), (780, 30), (843, 30), (908, 30)
HELP, MENU = (985, 66), (1043, 66)
ARROW = 40  # below the middle of a button: what opens its panel
FIGURES = tuple((436 + 30 * column, 108) for column in range(5))
FIGURE_COLOURS = tuple((436 + 30 * column, 217) for column in range(5))
PEN_COLOURS = tuple((500 + 30 * column, 109) for column in range(5))
HIGHLIGHTER_COLOURS = tuple((569 + 30 * column, 109) for column in range(5))
LINE_WIDTHS = tuple((676, 107 + 32 * row) for row in range(5))
STRENGTHS = ((951, 131), (1040, 131), (1129, 131))
CROP_WIDTH = (60, 22)  # in the window of its own
CANVAS = (514, 440)  # its middle
ZOOM_OUT, ZOOM_IN, ZOOM_RESET = (105, 764), (177, 764), (218, 764)
SELECT, SAVE_ALL, DELETE_ALL = (1168, 100), (1116, 744), (1116, 780)
HIDE_LIST, SHOW_LIST = (1033, 440), (1172, 105)
ROW_X, FIRST_ROW, ROW_STEP, ROWS_IN_SIGHT = 1110, 190, 84, 6
# From the middle of a row. Here and above a scroll bar moves things by a little.
CLOSE, PIN, CHECK = (32, -29), (32, 28), (-22, -23)
WHEEL_UP, WHEEL_DOWN = 4, 5
NEVER = 60.0  # seconds; the machine may be busy with other things


def wait(condition, what, limit=NEVER):
    assert wait_for(condition, limit, 0.005), what


class User:
    def __init__(self):
        self.display = Display()
        self.window = None  # the main one

    def heard(self):
        """Returns when the editor has handled what it was sent, by the display and by the socket: it hangs up after
        each line that it has read, and goes around its loop of events between two of them."""
        self.display.window_manager_is_through()
        if self.window:
            assert self.display.is_through(self.window), "the editor does not answer the display"
        for _ in range(2):
            with socket.socket(socket.AF_UNIX) as connection:
                connection.settimeout(NEVER)
                connection.connect(str(SOCKET))
                connection.sendall(wire("tindra /nothing"))
                connection.recv(1)

    def click(self, place, button=1):
        self.display.move(self.window, *place)
        self.display.click(button)
        self.heard()

    def drag(self, points):
        self.display.move(self.window, *points[0])
        self.display.press(1, True)
        for point in points[1:]:
            self.display.move(self.window, *point)
        self.display.press(1, False)
        self.heard()

    def turn_wheel(self, place, button, steps, held=None):
        self.display.move(self.window, *place)
        if held:
            self.display.hold(held, True)
        for _ in range(steps):
            self.display.click(button)
        if held:
            self.display.hold(held, False)
        self.heard()

    def key(self, *names):
        for name in names:
            self.display.key(name)
        self.heard()

    def type(self, text):
        self.display.type(text)
        self.heard()

    def open_panel(self, button):
        self.click((button[0], button[1] + ARROW))

    def click_in_popup(self, place):
        """In the newest window, which has no need of the keyboard before."""
        wait(lambda: self.windows() == 2, "no popup")
        popup = self.display.windows()[-1]
        self.display.move(popup, *place)
        self.display.click()
        self.heard()
        wait(lambda: self.display.active_window() == popup, "the popup does not take the keyboard")
        self.heard()

    def windows(self):
        return len(self.display.windows())

    def dialog(self):
        """Waits for one and for the keyboard to be its."""
        wait(lambda: self.windows() == 2 and self.display.active_window() == self.display.windows()[-1],
             "no dialog that is active")

    def dialog_closed(self):
        wait(lambda: self.windows() == 1, "the dialog stays")
        self.heard()

    def show(self):
        """Sees to it that the main window is there, in the size that the places above are for."""
        if not self.windows():
            tell("/show")
            wait(lambda: self.windows() == 1, "no window")
        self.window = self.display.windows()[0]
        self.resize(WINDOW)

    def resize(self, size):
        if self.display.size_of(self.window) != size:
            xdotool("windowsize", self.window, *size, "windowmove", self.window, *PLACE)
            wait(lambda: self.display.size_of(self.window) == size, "the window keeps its size")
        self.heard()

    def hide(self):
        """A capture that was just shown keeps it up for half a second."""
        wait(lambda: not self.windows() or tell("/hide") or self.heard() or not self.windows(), "the window stays")

    def row(self, row, offset=(0, 0)):
        return ROW_X + offset[0], FIRST_ROW + ROW_STEP * row + offset[1]

    def scroll_to_first_row(self):
        self.turn_wheel(self.row(2), WHEEL_UP, 25)

    def click_on_row(self, row, offset=(0, 0)):
        """With a stop in its middle: the buttons of a row come with the mouse."""
        self.display.move(self.window, *self.row(row))
        time.sleep(0.05)
        self.heard()
        self.click(self.row(row, offset))

    def leave_rows(self):
        self.display.move(self.window, *CANVAS)
