#!/usr/bin/env python3
"""The real program: its roles, the ways out, and what it leaves behind. usage: tst_start.py EDITOR"""
import os
import shutil
import signal
import socket
import struct
import subprocess
import sys
import time
import unittest
from pathlib import Path

from editorsession import (LIMIT, RESULTS, RUNTIME, SOCKET, WORK, EditorTest, held, wait_for, windows)


def picture():
    path = Path(os.environ["TMPDIR"]) / "shot.png"
    subprocess.run(["convert", "-size", "60x40", "xc:red", str(path)], check=True)
    return path


class Start(EditorTest):
    def capture(self, name):
        """A capture in the work folder, as a capture side puts it there."""
        WORK.mkdir(parents=True, exist_ok=True)
        copy = WORK / name
        copy.write_bytes(picture().read_bytes())
        return copy

    # Roles.

    def test_a_start_without_arguments_stays_hidden(self):
        first = self.first()
        self.send("--hide")
        time.sleep(0.5)
        self.assertEqual(windows(), [])
        second = self.start()
        self.assertEqual(self.ended(second), 0)
        self.assertEqual(windows(), [])
        self.assertIsNone(first.poll())
        self.assertEqual(self.ended(self.start("/show")), 0)
        self.assertTrue(wait_for(windows), "the second start did not bring up the window")
        self.send("--close")
        self.assertEqual(self.ended(first), 0)
        self.assertFalse(SOCKET.exists())

    def test_a_redirect_that_fails_ends_with_0_too(self):
        with socket.socket(socket.AF_UNIX) as server, held("TNDERedirectMutex.lock"):
            SOCKET.unlink(missing_ok=True)  # of an editor that was killed
            server.bind(str(SOCKET))
            server.listen()
            second = self.start("/show")
            server.settimeout(LIMIT)
            server.accept()[0].close()  # its question whether an editor runs
            server.close()
            SOCKET.unlink()
            self.assertEqual(self.ended(second), 0)
        self.assertEqual(windows(), [])

    def test_a_starter_that_is_stopped_stops_no_other(self):
        with held("TNDEMutex.lock"):
            first = self.first()
            self.assertEqual(self.ended(self.start("/show")), 0)
            self.assertTrue(wait_for(windows))
        self.send("--kill")
        self.assertEqual(self.ended(first), 0)

    # Ends before the event loop: the first line opens a dialog that waits for the user.

    def test_an_end_inside_the_dialog_of_the_first_line_ends_the_program(self):
        ways = {"kill": lambda process: self.send("--kill"), "signal": lambda process: process.terminate()}
        for name, end in ways.items():
            with self.subTest(name):
                copy = self.capture(f"first-{name}.png")
                first = self.start("/path", copy, "/autosave")
                self.assertTrue(wait_for(lambda: len(windows()) == 2), "the result of the save was not shown")
                end(first)
                self.assertEqual(self.ended(first), 0)
                self.assertTrue(copy.exists())
                copy.unlink()

    # Shared memory.

    def test_a_capture_through_memory_is_saved(self):
        self.first()
        self.send("--road", "memory", picture(), "--skip", "--autosave")
        self.assertTrue(wait_for(lambda: any(path.stat().st_size for path in RESULTS.iterdir())))
        colour = subprocess.run(["convert", next(RESULTS.iterdir()), "-format", "%wx%h %[pixel:p{30,20}]", "info:"],
                                capture_output=True, text=True, check=True).stdout
        self.assertIn("60x40", colour)
        self.assertRegex(colour, r"red|255,0,0")
        self.assertFalse((RUNTIME / "TindraImageMemory").exists())

    # Sudden ends.

    def test_a_killed_editor_leaves_captures_and_a_usable_name(self):
        copy = self.capture("kept.png")
        content = copy.read_bytes()
        message = "x /path nothing".encode("utf-16-be")

        def mid_message(first):
            with socket.socket(socket.AF_UNIX) as connection:
                connection.connect(str(SOCKET))
                connection.sendall(struct.pack(">HI", len(message) + 4, len(message))[:1])
                time.sleep(0.2)
                first.kill()
                first.wait()

        def mid_memory(first):
            with held("TindraImageMemory.lock"), socket.socket(socket.AF_UNIX) as connection:
                text = "x /path key /memory 10".encode("utf-16-be")
                connection.connect(str(SOCKET))
                connection.sendall(struct.pack(">HI", len(text) + 4, len(text)) + text)
                time.sleep(0.2)  # it waits for the block's lock now
                first.kill()
                first.wait()

        for sudden in (mid_message, mid_memory):
            with self.subTest(sudden.__name__):
                first = self.first("/skip", "/path", copy)
                sudden(first)
                self.assertTrue(SOCKET.exists())
                self.assertEqual(copy.read_bytes(), content)
                following = self.first()
                self.send("--show")
                self.assertTrue(wait_for(windows), "the next editor does not hear")
                following.send_signal(signal.SIGKILL)
                following.wait()
                self.assertEqual(copy.read_bytes(), content)

    # Two editors that do not know of each other.

    def test_only_the_first_editor_clears_the_work_folder(self):
        copy = self.capture("firsts.png")
        first = self.first("/skip", "/path", copy)
        bare = {name: value for name, value in os.environ.items() if name != "XDG_RUNTIME_DIR"}
        substitute = Path(os.environ["TMPDIR"]) / f"tindra-{os.geteuid()}"
        second = self.start(environment=bare)
        self.assertTrue(wait_for((substitute / "TNDEMutex").exists), "the second editor does not listen")
        self.send("--close", environment=bare)
        self.assertEqual(self.ended(second), 0)
        self.assertTrue(copy.exists())
        self.send("--kill")
        self.assertEqual(self.ended(first), 0)
        self.assertTrue(copy.exists())

    def test_a_start_without_the_environment_meets_the_editor_of_the_session(self):
        folder = Path(os.environ["TINDRA_USER_FOLDERS"]) / str(os.geteuid())
        folder.parent.mkdir(exist_ok=True)
        folder.mkdir(mode=0o700)
        self.addCleanup(shutil.rmtree, folder)
        bare = {name: value for name, value in os.environ.items() if name != "XDG_RUNTIME_DIR"}
        session = dict(os.environ, XDG_RUNTIME_DIR=str(folder))
        first = self.start(environment=session)
        self.assertTrue(wait_for((folder / "TNDEMutex").exists))
        self.assertEqual(self.ended(self.start("/close", environment=bare)), 0)
        self.assertEqual(self.ended(first), 0)


if __name__ == "__main__":
    sys.exit(unittest.main())
