#!/usr/bin/env python3
"""The real program among many: connections, starts at one instant, endless lines, a list full of large captures.

usage: tst_crowds.py EDITOR
TINDRA_TEST_STARTS: how many pairs of starts at one instant, 10 by default.
"""
import contextlib
import os
import resource
import socket
import sys
import time
import unittest

from editorsession import (LIMIT, RESULTS, SOCKET, WORK, EditorTest, png, put_capture, tell, wait_for, windows, wire,
                           write_settings)

PAIRS = int(os.environ.get("TINDRA_TEST_STARTS", "10"))
CONNECTIONS = 500
LINE_BYTES = 1 << 20
LARGE = (3840, 2160)
ROWS = 100
DECODING_LIMIT = 150.0  # seconds; each is decoded to be added and again for its thumbnail, some 20 s of one core


def connect():
    connection = socket.socket(socket.AF_UNIX)
    connection.connect(str(SOCKET))  # waits while too many others do
    connection.settimeout(LIMIT)
    return connection


def descriptors(process):
    return len(os.listdir(f"/proc/{process.pid}/fd"))


class Crowds(EditorTest):
    def hidden_editor(self):
        """One that rests, with its window hidden."""
        editor = self.first()
        tell("/show")
        self.window_count(1)
        self.hide()
        return editor

    def hide(self):
        tell("/hide")
        self.window_count(0)

    def hears(self):
        """It takes lines as ever."""
        tell("/show")
        self.window_count(1)
        self.hide()

    # Connections.

    def test_a_silent_connection_stops_no_other(self):
        self.hidden_editor()
        with connect():
            tell("/show")
            self.window_count(1)
        self.hide()

    def test_many_connections_at_once(self):
        resource.setrlimit(resource.RLIMIT_NOFILE, (4096, resource.getrlimit(resource.RLIMIT_NOFILE)[1]))
        editor = self.hidden_editor()
        before = descriptors(editor)
        last = put_capture("last.png", png(60, 40, (0, 0, 255)))
        crowd = []
        for number in range(CONNECTIONS):
            crowd.append(connect())
            crowd[-1].sendall(wire("tindra /nothing" if number < CONNECTIONS - 1 else f"tindra /path \"{last}\""))
        self.window_count(1)  # the last of them was heard too
        # Each is closed by the editor, and none goes on holding a descriptor.
        for connection in crowd:
            self.assertEqual(connection.recv(1), b"")
            connection.close()
        self.assertTrue(wait_for(lambda: descriptors(editor) <= before + 2))
        time.sleep(0.6)  # for that long a capture that was just shown cannot be hidden
        self.hide()
        self.hears()

    # Lines.

    def test_endless_lines(self):
        self.hidden_editor()
        units = LINE_BYTES // 2
        for line in ("/path " + "x" * units, "/path \"" + "x" * units, "\"" * units, "a " * (units // 2),
                     "/point " * (units // 7), "\\" * units):
            with self.subTest(line[:8]):
                with contextlib.suppress(BrokenPipeError, ConnectionResetError):
                    tell(line)  # the editor hangs up once it has read what came with the first word
                self.hears()

    def test_endless_arguments(self):
        """A second start hands on what the system lets a program have, and ends."""
        self.hidden_editor()
        second = self.start(*["y" * 100000] * 10)
        self.assertEqual(self.ended(second), 0)
        self.hears()

    # Starts.

    def test_of_two_starts_at_one_instant_one_stays(self):
        write_settings(ShowPostSaveDlg=0, FileNameType=2)
        for pair in range(PAIRS):
            captures = [put_capture(f"pair{pair}-{name}.png", png(30, 20, (pair, index, 90)))
                        for index, name in enumerate("ab")]
            both = [self.start("/path", capture, "/skip", "/autosave") for capture in captures]
            self.assertTrue(wait_for(lambda: any(start.poll() is not None for start in both)), f"pair {pair}")
            # The captures of both came to the one that stayed.
            self.assertTrue(wait_for(lambda: len([path for path in RESULTS.iterdir() if path.stat().st_size]) == 2),
                            f"pair {pair}: {[path.name for path in RESULTS.iterdir()]}")
            self.assertEqual(sorted([start.poll() for start in both], key=str), [0, None], f"pair {pair}")
            tell("/close")
            for start in both:
                self.assertEqual(self.ended(start), 0, f"pair {pair}")
            for path in RESULTS.iterdir():
                path.unlink()
            self.assertEqual(list(WORK.glob("*.png")), [], f"pair {pair}")

    # A full list.

    def test_a_hundred_large_captures(self):
        write_settings(ShowPostSaveDlg=0, FileNameType=2)
        content = png(*LARGE, (10, 20, 30))
        for number in range(ROWS):
            put_capture(f"large{number:03}.png", content)
        editor = self.first()
        tell("/show")
        self.window_count(2, DECODING_LIMIT)
        self.press_in_dialog("Return", 1, DECODING_LIMIT)
        # The list is full: one more is refused, and the selected one stays.
        tell(f"/path \"{put_capture('more.png', png(60, 40, (9, 9, 9)))}\"")
        tell("/autosave")
        self.assertTrue(wait_for(lambda: any(path.stat().st_size for path in RESULTS.iterdir()), DECODING_LIMIT))
        saved = next(RESULTS.iterdir())
        self.assertEqual(saved.read_bytes()[16:24], content[16:24])  # width and height
        tell("/kill")
        self.assertEqual(editor.wait(DECODING_LIMIT), 0)
        self.assertEqual(len(list(WORK.glob("large*.png"))), ROWS)


if __name__ == "__main__":
    sys.exit(unittest.main())
