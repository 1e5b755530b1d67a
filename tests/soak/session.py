"""A user and a capture side at work on one editor, and what its list must hold after each of their doings."""
import collections
import subprocess
import time
import types
from concurrent.futures import ThreadPoolExecutor
from importlib.machinery import SourceFileLoader
from pathlib import Path

import user as places
from drawer import Drawer
from editorsession import EDITOR, RESULTS, SENDER, WORK, put_capture, tell
from pictures import COLOURS, Picture, Pixels, png
from user import User, wait

# The tool's own code: a process for each picture would cost more time than the editor takes.
sender = types.ModuleType("tindra_send")
SourceFileLoader("tindra_send", str(SENDER)).exec_module(sender)

ROWS, PINS = 100, 5  # at most
FORMATS = ("png", "jpg", "bmp", "gif", "webp")  # in the order of the setting FileFormat
FIRST_FORMAT = "bmp"  # until a batch is saved in another: quick to write and to read
SETTINGS = {"FileNameType": 0, "FileNameTamplate": "shot", "ShowPostSaveDlg": 0, "ShowPostSaveAllDlg": 0,
            "FileFormat": FORMATS.index(FIRST_FORMAT), "NotifyDeleteHistory": 0, "NotifyDeleteAllHistory": 0,
            "AutoHistoryDelete": 1, "LastDrawingItem": 1}
AUTO_HISTORY_DELETE = 59  # the number of that setting in /updateprefvalue
LARGE = (3840, 2160)  # from here on a thumbnail waits for a pause
PREFERENCE_PAGES = 4
NARROW = (960, 600)  # some buttons are in the menu


def only_when(condition):
    """Of something that a user does: what must hold of the session for it."""
    def mark(doing):
        doing.condition = condition
        return doing
    return mark


def words(name):
    return name.removeprefix("do_").replace("_", " ")


class Capture:
    def __init__(self, number, size):
        self.number, self.size = number, size
        self.shown_size = size  # less what is cropped away
        self.file = None  # without one it is in the editor's memory alone
        self.is_drawn_on = self.is_erased = False

    def __repr__(self):
        return f"capture {self.number} of {self.size[0]}x{self.size[1]}"


class Session(Drawer):
    """Everything that is done at random takes its chance from one generator, so a seed plays the same again."""

    def __init__(self, chance):
        super().__init__(User(), chance)
        self.rows, self.pinned, self.selected = [], 0, None
        self.taken = self.last_number = 0
        self.asked_for = 0
        self.format = FIRST_FORMAT
        self.refused = 0  # their files stay in the work folder until the end
        self.doing = ""
        self.lately = collections.deque(maxlen=12)
        self.done = {}  # how often
        self.bag = []  # what is still to come before anything comes again
        self.fill_bag()
        self.saves = self.silent_saves = 0  # files that were looked at; those of which the capture side is told

    # The capture side.

    def take(self):
        """One capture by one of the roads, saved by itself as it arrives, which proves that it has."""
        self.doing = "taking a capture"
        self.taken += 1
        number = self.free_number()
        capture = Capture(number, self.size())
        content = png(*capture.size, number)
        x, y = self.chance.randrange(600), self.chance.randrange(400)
        silent = ["/skip"] * (self.chance.random() < 0.3)
        self.silent_saves += len(silent)
        words = ["/point", str(x), str(y), "/autosave", *silent]
        self.chance.choices((self.by_path, self.by_memory, self.by_second_start), (5, 3, 2))[0](capture, content, words)
        if self.is_full():
            self.rows.pop()
        self.rows.insert(self.pinned, capture)
        self.selected = capture
        self.looks_at_save(capture)

    def size(self):
        if self.chance.random() < 0.01:
            return LARGE
        return self.chance.randrange(400, 1500), self.chance.randrange(300, 1000)

    def free_number(self):
        """Pinned captures stay long enough for the colours to begin anew."""
        used = {capture.number for capture in self.rows}
        while True:
            self.last_number = (self.last_number + 1) % COLOURS
            if self.last_number not in used:
                return self.last_number

    def by_path(self, capture, content, words):
        capture.file = put_capture(f"shot-{self.taken:05}.png", content)
        tell(f"/path \"{capture.file}\" {' '.join(words)}")

    @staticmethod
    def by_memory(_capture, content, words):
        """In this process, which is how a capture side would do it too."""
        options = [word.replace("/", "--") for word in words]
        picture = RESULTS.with_name("picture")
        picture.write_bytes(content)
        assert sender.main(["--road", "memory", str(picture), *options]) == 0, "no hand-over through memory"
        picture.unlink()

    def by_second_start(self, capture, content, words):
        capture.file = put_capture(f"shot-{self.taken:05}.png", content)
        subprocess.run([EDITOR, "/path", capture.file, *words], check=True, timeout=places.NEVER)

    def looks_at_save(self, capture):
        """The one file that a save has just written; it takes its name when it is whole. While the save before is
        still being finished, that one's name counts as taken."""
        self.look_at(self.one_saved(capture), capture)

    def one_saved(self, capture):
        wait(lambda: any(RESULTS.glob(f"shot*.{self.format}")), f"{capture} is not saved")
        return next(RESULTS.glob(f"shot*.{self.format}"))

    def look_at(self, path, capture):
        picture = Picture(path)
        assert picture.shows(capture), (f"{path.name} shows {picture.size} of {picture.number()} instead of {capture},"
                                        f" whose share is {picture.share_of(capture.number)}")
        path.unlink()
        self.saves += 1

    def pixels(self):
        """All of the selected capture as it is now, from a save that loses nothing."""
        if self.format == FIRST_FORMAT:
            tell("/autosave /skip")
            self.silent_saves += 1
            path = self.one_saved(self.selected)
        else:
            path = self.save_by_dialog(FIRST_FORMAT)
        seen = Pixels.of(path)
        path.unlink()
        self.saves += 1
        return seen

    # The user.

    def fill_bag(self):
        """What waits there already comes before all others."""
        new = sorted(name for name in dir(self) if name.startswith("do_") and name not in self.bag)
        self.chance.shuffle(new)
        self.bag = new + self.bag

    def act(self):
        """One thing of all that can be done; each comes once before any comes again, or as soon as it can be done."""
        if not self.can_do_another():
            self.fill_bag()
        name = next(name for name in reversed(self.bag) if self.can_do(name))
        self.bag.remove(name)
        self.do(name)

    def do(self, name):
        self.doing = words(name)
        self.lately.append(self.doing)
        self.user.show()
        getattr(self, name)()
        self.done[name] = self.done.get(name, 0) + 1
        self.user.heard()

    def can_act(self):
        """Whether there are enough rows for any of it."""
        return len(self.rows) > places.ROWS_IN_SIGHT

    def can_do(self, name):
        condition = getattr(getattr(self, name), "condition", None)
        return condition is None or condition(self)

    def can_do_another(self):
        """Whether anything can be done before all comes again."""
        return any(map(self.can_do, self.bag))

    def never_done(self):
        """What a user does and this one did not."""
        return sorted(name for name in dir(self) if name.startswith("do_") and name not in self.done)

    def do_zoom_by_wheel(self):
        button = self.chance.choice((places.WHEEL_UP, places.WHEEL_DOWN))
        self.user.turn_wheel(places.CANVAS, button, self.chance.randint(1, 6), b"Control_L")
        self.user.click(places.ZOOM_RESET)

    def do_zoom_by_buttons(self):
        for place in (places.ZOOM_IN, places.ZOOM_IN, places.ZOOM_OUT, places.ZOOM_RESET):
            self.user.click(place)

    def do_scroll(self):
        self.user.turn_wheel(places.CANVAS, places.WHEEL_DOWN, 3)
        self.user.turn_wheel(places.CANVAS, places.WHEEL_UP, 3)

    def do_canvas_menu(self):
        self.user.click(places.CANVAS, button=3)
        self.user.key("Escape")

    # The list.

    def select(self, row):
        self.selected = self.rows[row]

    def do_up_and_down(self):
        row = self.rows.index(self.selected)
        downs = self.chance.randint(1, 6)
        self.user.key(*["Down"] * downs, "Up")
        self.select(max(0, min(row + downs, len(self.rows) - 1) - 1))
        self.user.heard()
        self.do_save_by_itself()

    def row_in_sight(self):
        return self.chance.randrange(min(places.ROWS_IN_SIGHT, len(self.rows)))

    def do_click_on_row(self):
        self.user.scroll_to_first_row()
        row = self.row_in_sight()
        self.user.click_on_row(row)
        self.user.leave_rows()
        self.select(row)

    def do_row_menu(self):
        self.user.scroll_to_first_row()
        self.user.click(self.user.row(0), button=3)
        self.select(0)
        self.user.key("Escape")

    def rows_to_pin(self):
        """In sight, when the list is at its begin; a capture in memory alone has no pin."""
        rows = range(self.pinned, min(places.ROWS_IN_SIGHT, len(self.rows)))
        return [row for row in rows if self.rows[row].file] if self.pinned < PINS - 1 else []

    @only_when(rows_to_pin)
    def do_pin(self):
        self.user.scroll_to_first_row()
        row = self.chance.choice(self.rows_to_pin())
        self.user.click_on_row(row, places.PIN)
        self.user.leave_rows()
        self.rows.insert(0, self.rows.pop(row))
        self.pinned += 1

    @only_when(lambda self: self.pinned)
    def do_unpin(self):
        self.user.scroll_to_first_row()
        row = self.chance.randrange(self.pinned)
        self.user.click_on_row(row, places.PIN)
        self.user.leave_rows()
        self.pinned -= 1
        self.rows.insert(self.pinned, self.rows.pop(row))

    def delete(self, row):
        """What is said of the list here, it does itself."""
        capture = self.rows.pop(row)
        self.pinned -= row < self.pinned
        self.select(max(row - 1, 0))
        if capture.file:
            wait(lambda: not capture.file.exists(), f"{capture} is not deleted")

    def do_delete_by_key(self):
        self.user.key("Delete")
        self.delete(self.rows.index(self.selected))

    def do_delete_by_mouse(self):
        self.user.scroll_to_first_row()
        row = self.row_in_sight()
        self.user.click_on_row(row, places.CLOSE)
        self.user.leave_rows()
        self.delete(row)

    def check_two_rows(self):
        self.user.scroll_to_first_row()
        self.user.click(places.SELECT)
        rows = sorted(self.chance.sample(range(places.ROWS_IN_SIGHT), 2), reverse=True)
        for row in rows:
            self.user.click_on_row(row, places.CHECK)
        return rows

    def do_delete_checked(self):
        rows = self.check_two_rows()
        self.user.click(places.DELETE_ALL)
        for row in rows:
            self.delete(row)
        self.select(0)

    def do_save_checked(self):
        rows = self.check_two_rows()
        self.save_batch([self.rows[row] for row in rows], FIRST_FORMAT)

    def do_hide_list(self):
        self.user.click(places.HIDE_LIST)
        # The window treats events on its way, and only then the button is there.
        time.sleep(0.1)
        self.user.heard()
        self.user.click(places.SHOW_LIST)

    # Saving, and the other windows.

    def do_save_by_itself(self):
        tell("/autosave /skip")
        self.silent_saves += 1
        self.looks_at_save(self.selected)

    def do_save_by_dialog(self):
        self.look_at(self.save_by_dialog(self.chance.choice(FORMATS)), self.selected)

    def save_by_dialog(self, suffix):
        self.user.key("ctrl+s")
        self.user.dialog()
        self.user.key("ctrl+a")
        self.user.type(f"by hand.{suffix}")
        self.user.key("Return")
        path = RESULTS / f"by hand.{suffix}"
        wait(path.exists, f"{self.selected} is not saved by hand")
        self.user.dialog_closed()
        return path

    def save_batch(self, captures, suffix):
        """Those that are meant, from the last row to the first; the next saves are of that format, too."""
        self.user.click(places.SAVE_ALL)
        self.user.dialog()
        self.user.key("Home", *["Down"] * FORMATS.index(suffix), "alt+s")
        self.format = suffix
        paths = [RESULTS / f"shot_{number}.{suffix}" for number in range(1, len(captures) + 1)]
        wait(lambda: len(list(RESULTS.glob(f"shot_*.{suffix}"))) == len(paths), f"not {len(paths)} files saved")
        self.user.dialog_closed()
        self.user.heard()
        # A number too many would be a row that should not be.
        assert sorted(RESULTS.iterdir()) == sorted(paths), f"{sorted(path.name for path in RESULTS.iterdir())}"
        with ThreadPoolExecutor(2) as readers:
            list(readers.map(self.look_at, paths, captures))

    def save_all(self):
        """Which shows the whole list, in its order."""
        self.user.show()
        self.save_batch(self.rows[::-1], self.chance.choice(FORMATS))

    def do_ask_for_capture(self):
        self.user.key("ctrl+n")
        self.asked_for += 1

    def do_copy(self):
        self.user.key("ctrl+c")

    def do_preferences(self):
        self.user.key("F4")
        self.user.dialog()
        self.user.key(*["Down"] * self.chance.randrange(PREFERENCE_PAGES),
                      self.chance.choice(("Return", "Escape")))
        self.user.dialog_closed()

    def do_preferences_by_command(self):
        tell(f"/preference {self.chance.randrange(PREFERENCE_PAGES)}")
        self.close_dialog()

    def do_about(self):
        tell("/about")
        self.close_dialog()

    def do_print_preview(self):
        self.user.key("ctrl+p")
        self.close_dialog()

    def close_dialog(self):
        self.user.dialog()
        self.user.key("Escape")
        self.user.dialog_closed()

    def do_floating_copy(self):
        """It goes with its capture."""
        row = self.rows.index(self.selected)
        self.user.key("ctrl+alt+shift+f")
        self.user.dialog()
        subprocess.run(["wmctrl", "-i", "-a", hex(self.user.window)], check=True)
        wait(lambda: self.user.display.active_window() == self.user.window, "the window is not active")
        self.user.heard()
        self.user.key("Delete")
        self.user.dialog_closed()
        self.delete(row)

    def do_menus(self):
        for button in (places.HELP, places.MENU):
            self.user.click(button)
            self.user.key("Escape")

    def do_hide(self):
        self.user.hide()

    def do_close(self):
        subprocess.run(["wmctrl", "-i", "-c", hex(self.user.window)], check=True)
        wait(lambda: not self.user.windows(), "closing does not hide")

    def do_resize(self):
        self.user.resize(NARROW)

    def is_full(self):
        return len(self.rows) == ROWS

    @only_when(is_full)
    def do_refused_captures(self):
        """A full list takes none when the oldest is not to go."""
        tell(f"/updateprefvalue {AUTO_HISTORY_DELETE} 0")
        self.user.heard()
        content = png(600, 400, 0)
        tell(f"/path \"{put_capture(f'refused-{self.refused}.png', content)}\"")
        self.by_memory(None, content, [])
        self.user.heard()
        tell(f"/updateprefvalue {AUTO_HISTORY_DELETE} 1")
        self.refused += 1
        self.do_save_by_itself()

    # The list as a whole.

    def check(self):
        """Saves everything and compares it with what was done."""
        self.doing = "checking the list"
        self.save_all()
        files = {capture.file for capture in self.rows if capture.file}
        left = {path for path in WORK.glob("*.png") if not path.name.startswith("refused")}
        assert left == files, f"in the work folder: {left ^ files}"

    def empty(self):
        self.doing = "emptying the list"
        self.user.show()
        self.user.click(places.DELETE_ALL)
        files = [capture.file for capture in self.rows if capture.file]
        wait(lambda: not any(file.exists() for file in files), "not all captures are deleted")
        self.rows, self.pinned, self.selected = [], 0, None
        for path in WORK.glob("refused-*.png"):
            path.unlink()

    @staticmethod
    def left_over():
        """Captures on the disk."""
        return sorted(path.name for folder in (WORK, Path(WORK, "pin")) for path in folder.glob("*.png"))
