"""Mouse and keys of the display server, where the buttons of the main window are, and its socket."""
import socket

from editorsession import (SOCKET, main_window, newest_has_keyboard, size_of, tell, wait_for, windows, wire, xdotool)

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


def heard():
    """Returns when the editor has handled what it was sent before, events of the display included: it hangs up
    after each line that it has read, and goes around its loop of events between two of them."""
    for _ in range(2):
        with socket.socket(socket.AF_UNIX) as connection:
            connection.settimeout(NEVER)
            connection.connect(str(SOCKET))
            connection.sendall(wire("tindra /nothing"))
            connection.recv(1)


class User:
    def __init__(self):
        self.window = None
        self.desktops = 0

    def window_manager_is_through(self):
        """A press goes to the window manager first, which hands it on. So it is asked for something that shows when
        it is done; it does one thing after the other."""
        self.desktops = 1 + self.desktops % 2
        xdotool("set_num_desktops", self.desktops)
        wait(lambda: xdotool("get_num_desktops").strip() == str(self.desktops), "the window manager does not answer")

    def at(self, place):
        return ["mousemove", "--window", self.window, *place]

    def click(self, place, button=1):
        xdotool(*self.at(place), "click", button)
        self.window_manager_is_through()

    def drag(self, points):
        moves = [part for point in points[1:] for part in self.at(point)]
        xdotool(*self.at(points[0]), "mousedown", 1, *moves, "mouseup", 1)
        self.window_manager_is_through()

    def turn_wheel(self, place, button, steps, held=None):
        keys = (["keydown", held], ["keyup", held]) if held else ([], [])
        xdotool(*self.at(place), *keys[0], "click", "--repeat", steps, "--delay", 2, button, *keys[1])

    @staticmethod
    def key(*names):
        xdotool("key", *names)

    @staticmethod
    def type(text):
        xdotool("type", "--delay", 2, text)

    def open_panel(self, button):
        self.click((button[0], button[1] + ARROW))
        heard()

    @staticmethod
    def dialog():
        """Waits for one and for the keyboard to be its."""
        wait(lambda: len(windows()) == 2 and newest_has_keyboard(), f"no dialog: {windows()}")

    @staticmethod
    def dialog_closed():
        wait(lambda: len(windows()) == 1, f"the dialog stays: {windows()}")
        heard()

    def show(self):
        """Sees to it that the main window is there, in the size that the places above are for."""
        if not windows():
            tell("/show")
            wait(lambda: len(windows()) == 1, "no window")
        self.window = main_window()
        if size_of(self.window) != WINDOW:
            xdotool("windowsize", self.window, *WINDOW, "windowmove", self.window, *PLACE)
            wait(lambda: size_of(self.window) == WINDOW, f"the window keeps its size {size_of(self.window)}")
        heard()

    def hide(self):
        """A capture that was just shown keeps it up for half a second."""
        wait(lambda: not windows() or tell("/hide") or heard() or not windows(), "the window stays")

    def row(self, row, offset=(0, 0)):
        return ROW_X + offset[0], FIRST_ROW + ROW_STEP * row + offset[1]

    def scroll_to_first_row(self):
        self.turn_wheel(self.row(2), WHEEL_UP, 25)
        heard()

    def click_on_row(self, row, offset=(0, 0)):
        """With a stop in its middle: the buttons of a row come with the mouse."""
        xdotool(*self.at(self.row(row)), "sleep", 0.06, *self.at(self.row(row, offset)), "sleep", 0.03, "click", 1)
        self.window_manager_is_through()
        heard()

    def leave_rows(self):
        xdotool(*self.at(CANVAS))
