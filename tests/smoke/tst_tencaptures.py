#!/usr/bin/env python3
"""A day with ten captures, in the real window by real mouse and keys. usage: tst_tencaptures.py EDITOR

They come over the socket, two are drawn on, they are selected back and forth by keys and mouse, one is pinned, all are
saved at once, the window is closed and the program exits; it starts again, is killed, starts again and tells so.
"""
import signal
import subprocess
import sys
import unittest

from editorsession import (PINS, RESULTS, WORK, EditorTest, main_window, pixel_in_bmp, png, put_capture, size_of, tell,
                           wait_for, write_settings, xdotool)

WINDOW = (1000, 700)
SIZE = (800, 450)
MIDDLE = (400, 225)  # of a capture, in the middle of the canvas
CANVAS = ((WINDOW[0] - 172) // 2, 80 + (WINDOW[1] - 80) // 2)  # its middle, at 96 DPI
ROW_X, FIRST_ROW, ROW_STEP = WINDOW[0] - 84, 185, 84
PIN = (WINDOW[0] - 56, 35)  # from the middle of a row
RED = (255, 0, 0)
PEN_COLOUR = -16776961  # the same as the settings keep it
BMP = 2  # the setting FileFormat


def colour(number):
    return 15 * number, 100, 255 - 15 * number


class TenCaptures(EditorTest):
    def setUp(self):
        super().setUp()
        write_settings(FileNameType=0, FileNameTamplate="shot", FileFormat=BMP, ShowPostSaveDlg=0,
                       ShowPostSaveAllDlg=0, LastDrawingItem=1, LineWidth=8, PenColor=PEN_COLOUR)
        self.saves = 0

    def begin(self):
        editor = self.first()
        tell("/show")
        return editor

    def size_window(self):
        xdotool("windowsize", main_window(), *WINDOW)
        self.assertTrue(wait_for(lambda: size_of(main_window()) == WINDOW))

    def add(self, number):
        tell(f"/path \"{put_capture(f'shot{number:02}.png', png(*SIZE, colour(number)))}\" /point 100 100")

    @staticmethod
    def at(x, y, *more):
        xdotool("mousemove", "--window", main_window(), x, y, "sleep", 0.1, *more)

    def key(self, name, times=1):
        xdotool("key", "--window", main_window(), *[name] * times)

    def stroke(self):
        x, y = CANVAS
        moves = [part for dx in range(-30, 40, 10)
                 for part in ("mousemove", "--window", main_window(), x + dx, y, "sleep", 0.02)]
        self.at(x - 40, y, "mousedown", 1, *moves, "mouseup", 1)

    def saved(self):
        """The capture that is shown, as an automatic save writes it."""
        self.saves += 1
        path = RESULTS / ("shot.bmp" if self.saves == 1 else f"shot ({self.saves - 1}).bmp")
        tell("/autosave /skip")
        self.assertTrue(wait_for(lambda: path.exists() and path.stat().st_size), f"save {self.saves}")
        return pixel_in_bmp(path, 0, 0), pixel_in_bmp(path, *MIDDLE)

    def shows(self, number, middle=None):
        """Waits for keys and mouse to have had their effect."""
        expected = (colour(number), middle or colour(number))
        seen = []
        self.assertTrue(wait_for(lambda: seen.append(self.saved()) or seen[-1] == expected, 3, 0.1),
                        f"{seen} instead of {expected}")

    def test_the_road(self):
        editor = self.begin()
        self.window_count(1)
        self.size_window()
        for number in range(1, 11):
            self.add(number)
        self.shows(10)
        self.assertEqual(len(list(WORK.glob("*.png"))), 10)

        # Drawn on, and every scene keeps what is its own.
        self.stroke()
        self.shows(10, RED)
        self.key("Down", 3)
        self.shows(7)
        self.stroke()
        self.shows(7, RED)
        self.key("Up", 3)
        self.shows(10, RED)
        self.key("ctrl+z")
        self.shows(10)
        self.key("ctrl+y")
        self.shows(10, RED)
        self.key("Down", 12)  # no further than the last
        self.shows(1)
        self.key("Up", 9)
        self.shows(10, RED)

        # The mouse selects, and a pin takes its row to the top while the selection stays.
        self.at(ROW_X, FIRST_ROW + ROW_STEP, "click", 1)
        self.shows(9)
        self.at(ROW_X, FIRST_ROW + 2 * ROW_STEP)
        self.at(PIN[0], FIRST_ROW + 2 * ROW_STEP + PIN[1], "click", 1)
        self.shows(9)
        self.key("Up", 2)
        self.shows(8)
        self.add(11)  # behind the pin
        self.shows(11)
        self.key("Up")
        self.shows(8)

        # All at once, the last row first.
        for path in RESULTS.iterdir():
            path.unlink()
        self.at(WINDOW[0] - 84, WINDOW[1] - 56, "click", 1)
        self.window_count(2)
        self.press_in_dialog("alt+s", 1)
        order = [1, 2, 3, 4, 5, 6, 7, 9, 10, 11, 8]
        names = [RESULTS / f"shot_{index}.bmp" for index in range(1, 12)]
        self.assertTrue(wait_for(lambda: all(path.exists() for path in names)))
        self.assertEqual([pixel_in_bmp(path, 0, 0) for path in names], [colour(number) for number in order])
        self.assertEqual([number for path, number in zip(names, order) if pixel_in_bmp(path, *MIDDLE) == RED], [7, 10])

        # Closed by its frame it only hides; all is saved, so the exit asks nothing.
        subprocess.run(["wmctrl", "-i", "-c", hex(main_window())], check=True)
        self.window_count(0)
        self.assertIsNone(editor.poll())
        tell("/show")
        self.window_count(1)
        tell("/close")
        self.assertEqual(self.ended(editor), 0)
        self.assertEqual(list(WORK.glob("*.png")), [])
        self.assertEqual([path.name for path in PINS.iterdir()], ["0.png"])

        # The pin is back. The next end is a sudden one, of which the start after it tells.
        editor = self.begin()
        self.window_count(1)
        self.saves = 0
        for path in RESULTS.iterdir():
            path.unlink()
        self.shows(8)
        self.add(12)
        self.add(13)
        self.shows(13)
        editor.send_signal(signal.SIGKILL)
        editor.wait()
        editor = self.begin()
        self.window_count(2)
        self.press_in_dialog("Return", 1)
        for path in RESULTS.iterdir():
            path.unlink()
        self.saves = 0
        self.shows(13)
        self.key("Down")
        self.shows(12)
        self.key("Down")
        self.shows(8)
        # An exit with something unsaved asks; a drawing alone makes it so.
        self.size_window()
        self.stroke()
        self.shows(8, RED)
        self.stroke()
        tell("/close")
        self.window_count(2)
        self.press_in_dialog("Return", 0)
        self.assertEqual(self.ended(editor), 0)
        self.assertEqual(list(WORK.glob("*.png")), [])


if __name__ == "__main__":
    sys.exit(unittest.main())
