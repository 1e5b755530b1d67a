#!/usr/bin/env python3
"""The real program is ended at random moments of a session, by SIGKILL and SIGTERM, and loses nothing.

A session starts the editor, looks at all its captures through a save of the whole list, takes new captures, draws,
pins, deletes and exits, again and again, until the signal comes. What lies on the disk then must hold every capture
that was not deleted and every pin, and the next session must show exactly that.

usage: tst_suddenends.py EDITOR
TINDRA_TEST_MOMENTS: how many moments, 12 by default. TINDRA_TEST_SEED: of the random moments.
"""
import os
import random
import signal
import struct
import sys
import threading
import unittest
import zlib

from editorsession import (LIMIT, PINS, RESULTS, WORK, EditorTest, answers, main_window, newest_has_keyboard,
                           pixel_in_bmp, png, put_capture, size_of, tell, wait_for, windows, write_settings, xdotool)

MOMENTS = int(os.environ.get("TINDRA_TEST_MOMENTS", "12"))
SEED = int(os.environ.get("TINDRA_TEST_SEED", "4711"))
LAST_MOMENT = 2.5  # seconds; a session takes about half of that
SIZE = (800, 450)
WINDOW = (1000, 700)
PANEL, TOOLBAR = 172, 80  # of the window, at 96 DPI
BMP = 2  # the setting FileFormat


class Struck(Exception):
    """The signal of this round was sent."""


def colour(number):
    """Of the capture with that number."""
    return number & 255, number >> 8, 200


def number_in_png(path):
    """The number of a picture, by its first pixel: no filter of the format changes that one."""
    content = path.read_bytes()
    data, position = b"", 8
    while position < len(content):
        length, kind = struct.unpack_from(">I4s", content, position)
        if kind == b"IDAT":
            data += content[position + 8:position + 8 + length]
        position += length + 12
    red, green, blue = zlib.decompress(data)[1:4]
    assert blue == 200, f"{path} shows no capture of this test"
    return red | green << 8


def number_in_bmp(path):
    """The number of a saved picture; two of its corners agree in a whole one."""
    red, green, blue = corner = pixel_in_bmp(path, 0, 0)
    assert corner == pixel_in_bmp(path, SIZE[0] - 1, SIZE[1] - 1), f"{path} is not whole"
    assert blue == 200, f"{path} shows no capture of this test"
    return red | green << 8


def numbers_in(folder):
    """By file name, in the order of the names."""
    return {path.name: number_in_png(path) for path in sorted(folder.glob("*.png"))}


class SuddenEnds(EditorTest):
    def setUp(self):
        super().setUp()
        write_settings(FileNameType=0, FileNameTamplate="shot", FileFormat=BMP, ShowPostSaveAllDlg=0,
                       ShowPostSaveDlg=0, NotifyDeleteHistory=0, LastDrawingItem=1)
        self.last_number = 0
        self.must, self.may = set(), set()  # come back; may come back
        self.rows, self.pinned = [], 0  # numbers from top to bottom; of these, how many from the top
        self.process, self.sign, self.struck, self.step = None, None, False, ""

    # A round.

    def test_nothing_is_lost_at_any_moment(self):
        print(f"{MOMENTS} moments, seed {SEED}", flush=True)
        chance = random.Random(SEED)
        for count in range(1, MOMENTS + 1):
            self.sign = chance.choice((signal.SIGKILL, signal.SIGTERM))
            moment = chance.uniform(0, LAST_MOMENT)
            try:
                self.play_until(moment)
            except AssertionError as error:
                self.fail(f"moment {count}, {self.sign.name} after {moment:.3f} s, in the step \"{self.step}\", "
                          f"seed {SEED}: {error}")
        # And undisturbed.
        self.step, self.struck = "", False
        self.begin()
        self.check()
        self.leave()

    def play_until(self, moment):
        self.struck, self.process = False, None
        timer = threading.Timer(moment, self.strike)
        timer.start()
        try:
            while True:
                self.begin()
                self.check()
                self.work()
                self.leave()
        except Struck:
            self.look_at_remains()
        finally:
            timer.cancel()
            timer.join()

    def strike(self):
        self.struck = True
        if self.process and self.process.poll() is None:
            self.process.send_signal(self.sign)

    def wait(self, condition, what):
        def over():
            return self.struck or condition()

        reached = wait_for(over, step=0.005)
        if self.struck:
            raise Struck
        self.assertTrue(reached, what)
        self.assertIn(self.process.poll(), (None, 0), "the editor ended by itself")

    def look_at_remains(self):
        """What the signal left: nothing is missing, nothing is half, nothing deleted is there."""
        code = self.process.wait(LIMIT)
        # Very early a signal does what it does to every program; and an exit may just have been complete.
        self.assertIn(code, (-self.sign, 0), "the editor ended in another way")
        remains = set(numbers_in(WORK).values()) | set(numbers_in(PINS).values())
        self.assertLessEqual(self.must, remains, "captures are lost")
        self.assertLessEqual(remains, self.must | self.may, "deleted captures are back")
        self.must, self.may = remains, set()
        strange = {path.name for path in WORK.iterdir() if path.suffix not in (".png", ".lock")} - {PINS.name}
        self.assertFalse(strange, "torn files stay in the work folder")
        for folder in (PINS, RESULTS):
            torn = [path.name for path in folder.glob("*") if path.suffix not in (".png", ".bmp")]
            self.assertFalse(torn, "torn files stay")
        for path in RESULTS.iterdir():
            number_in_bmp(path)

    # The steps of a session.

    def begin(self):
        self.step = "start"
        left_over, pins = numbers_in(WORK), numbers_in(PINS)
        copied = [number for index, number in enumerate(pins.values()) if f"{index}.png" not in left_over]
        # Each comes to the top, then what is left over comes behind them.
        self.rows, self.pinned = copied[::-1], len(copied)
        for number in left_over.values():
            self.rows.insert(self.pinned, number)
        self.assertLessEqual(self.must, set(self.rows))
        for path in RESULTS.iterdir():
            path.unlink()
        self.process = self.start()
        if self.struck:
            self.strike()
        self.wait(answers, "the editor does not listen")
        self.step = "show"
        self.tell("/show")
        if left_over:
            self.wait(lambda: len(windows()) == 2, "nothing is told about the captures that are back")
            self.press_in_dialog("Return", 1)
        self.wait(lambda: len(windows()) == 1, "no window")
        # With room for the first rows and their pins.
        xdotool("windowsize", self.window(), *WINDOW)
        self.wait(lambda: self.window_size() == WINDOW, "the window keeps its size")

    def check(self):
        """Saves all captures and compares them with what there must be, from the last row to the first."""
        self.step = "check"
        if not self.rows:
            return
        width, height = self.window_size()
        xdotool("mousemove", "--window", self.window(), width - 84, height - 56, "click", 1)
        self.wait(lambda: len(windows()) == 2, "no dialog for the save of all")
        self.press_in_dialog("alt+s", 1)
        self.wait(lambda: len(self.results()) == len(self.rows), "not all captures were saved")
        saved = [number_in_bmp(RESULTS / f"shot_{index}.bmp") for index in range(1, len(self.rows) + 1)]
        self.assertEqual(saved[::-1], self.rows)

    def work(self):
        self.step = "work"
        self.add()
        self.synchronise(self.add())
        self.stroke()
        self.step = "pin"
        self.pin_first_row()
        self.step = "work"
        self.add()
        self.delete(self.add())

    def leave(self):
        self.step = "exit"
        before = self.must | self.may
        self.must = set(self.rows[:self.pinned])
        self.may = before - self.must
        self.tell("/close")
        self.wait(lambda: self.process.poll() is not None or len(windows()) == 2, "no question, and no end")
        self.wait(lambda: self.process.poll() is not None or newest_has_keyboard(), "the question is not active")
        if self.process.poll() is None:
            xdotool("key", "Return")
        self.wait(lambda: self.process.poll() is not None, "the editor does not end")
        self.assertEqual(self.process.poll(), 0)
        self.assertEqual(list(numbers_in(PINS).values()), self.rows[:self.pinned])
        self.assertEqual(numbers_in(WORK), {})
        self.may = set()

    # What a capture side and a user do.

    def add(self):
        self.last_number += 1
        number = self.last_number
        self.may.add(number)
        path = put_capture(f"shot-{number:05}.png", png(*SIZE, colour(number)))
        self.may.remove(number)
        self.must.add(number)
        self.rows.insert(self.pinned, number)
        self.tell(f"/path \"{path}\" /point 100 100")
        return number

    def synchronise(self, number):
        """Waits until all lines were treated; the capture is selected then, and saved."""
        self.tell("/autosave /skip")
        self.wait(lambda: number in self.results(), f"capture {number} is not saved by itself")

    def stroke(self):
        width, height = self.window_size()
        x, y = (width - PANEL) // 2, TOOLBAR + (height - TOOLBAR) // 2
        points = [part for step in range(1, 8)
                  for part in ("mousemove", "--window", self.window(), x + 20 * step, y + 5 * step)]
        xdotool("mousemove", "--window", self.window(), x, y, "mousedown", 1, *points, "mouseup", 1)

    def pin_first_row(self):
        """Pins it or, when it is pinned, takes that back and so moves it behind the others that are."""
        x = self.window_size()[0] - 56
        xdotool("mousemove", "--window", self.window(), x, 190, "sleep", 0.1,
                "mousemove", "--window", self.window(), x, 220, "click", 1)
        if self.pinned == 0:
            self.pinned = 1
        else:
            self.pinned -= 1
            self.rows.insert(self.pinned, self.rows.pop(0))

    def delete(self, number):
        """Everything that the user did before is done when the file is gone."""
        self.synchronise(number)
        self.step = "delete"
        self.must.remove(number)
        self.may.add(number)
        xdotool("key", "Delete")
        self.wait(lambda: not (WORK / f"shot-{number:05}.png").exists(), "the capture is not deleted")
        self.may.remove(number)
        self.rows.remove(number)

    def tell(self, line):
        try:
            tell(line)
        except OSError:
            self.wait(lambda: False, "the editor does not listen any more")

    def press_in_dialog(self, key, windows_left):
        self.wait(newest_has_keyboard, "the dialog does not become active")
        xdotool("key", key)
        self.wait(lambda: len(windows()) == windows_left, "the dialog stays")

    def window(self):
        """The identity of the main window."""
        window = main_window()
        if not window:
            self.wait(main_window, "no window")
        return window or main_window()

    def window_size(self):
        size = size_of(self.window())
        if not size:
            self.wait(lambda: False, "the window is gone")
        return size

    def results(self):
        """The numbers of the saved captures."""
        return [number_in_bmp(path) for path in RESULTS.glob("*.bmp")]


if __name__ == "__main__":
    sys.exit(unittest.main())
