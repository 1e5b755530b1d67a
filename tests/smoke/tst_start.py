#!/usr/bin/env python3
"""The real program: its roles, the ways out, and what it leaves behind. usage: tst_start.py EDITOR"""
import os
import re
import select
import shutil
import signal
import socket
import struct
import subprocess
import sys
import time
import unittest
from pathlib import Path

from editorsession import (EDITOR, LIMIT, RESULTS, RUNTIME, SENDER, SOCKET, WORK, EditorTest, held, main_window, png,
                           wait_for, windows)

TOP = Path(__file__).resolve().parents[2]


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

    def test_the_window_has_the_icon_of_the_program(self):
        icon = (TOP / "resources/res/Tindra.ico").read_bytes()
        count = struct.unpack_from("<H", icon, 4)[0]
        # One byte for each side, where 0 stands for 256.
        sizes = {tuple(side or 256 for side in icon[at:at + 2]) for at in range(6, 6 + 16 * count, 16)}
        self.first("/show")
        self.assertTrue(wait_for(windows))
        # A window without one gets the window manager's, in one size.
        told = subprocess.run(["xprop", "-len", "1000000", "-id", str(main_window()), "_NET_WM_ICON"],
                              capture_output=True, text=True, check=True).stdout
        shown = {(int(width), int(height)) for width, height in re.findall(r"Icon \((\d+) x (\d+)\)", told)}
        self.assertEqual(shown, sizes)

    def test_the_desktop_knows_the_window_as_that_of_its_entry(self):
        entry = (TOP / "packaging/tindra-editor.desktop").read_text()
        expected = re.search(r"^StartupWMClass=(.*)$", entry, re.MULTILINE).group(1)
        self.first("/show")
        self.assertTrue(wait_for(windows))
        told = subprocess.run(["xprop", "-id", str(main_window()), "WM_CLASS"], capture_output=True, text=True,
                              check=True).stdout
        self.assertEqual(re.findall(r'"(.*?)"', told)[1], expected)

    def test_the_window_needs_no_graphics_driver(self):
        """It would take more memory than the editor does."""
        first = self.first("/show")
        self.assertTrue(wait_for(windows))
        libraries = {Path(line.split()[-1]).name for line in Path(f"/proc/{first.pid}/maps").read_text().splitlines()}
        self.assertEqual([name for name in libraries if re.search("glx-integration|_mesa|_dri|LLVM", name)], [])

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

    # Questions.

    def asked(self, *arguments, question=b"", **environment):
        """What the program prints when it has neither a display nor anything else of a desktop."""
        for name in ("DISPLAY", "QT_QPA_PLATFORM", "DBUS_SESSION_BUS_ADDRESS"):
            environment.setdefault(name, None)
        wanted = {name: value for name, value in (os.environ | environment).items() if value is not None}
        return subprocess.run([EDITOR, *arguments], env=wanted, input=question, capture_output=True, check=False,
                              timeout=60)

    def test_a_question_is_answered_without_a_display(self):
        version = re.search(r"project\(Tindra VERSION ([\d.]+)", (TOP / "CMakeLists.txt").read_text()).group(1)
        for locale in ("C", "C.UTF-8"):
            told = self.asked("--version", LC_ALL=locale)
            self.assertEqual((told.returncode, told.stdout.decode(), told.stderr), (0, f"Tindra {version}\n", b""))
            told = self.asked("--help", LC_ALL=locale)
            self.assertEqual((told.returncode, told.stderr), (0, b""))
            self.assertIn("/updateprefvalue ID VALUE", told.stdout.decode("utf-8"))
            self.assertNotIn("?", told.stdout.decode("utf-8"))

    def test_a_question_disturbs_no_editor_and_leaves_nothing_behind(self):
        def everything():
            folders = [os.environ[name] for name in ("HOME", "TMPDIR", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME",
                                                     "XDG_DATA_HOME", "XDG_CACHE_HOME")]
            return sorted(str(path) for folder in folders for path in Path(folder).rglob("*"))

        SOCKET.unlink(missing_ok=True)
        before = everything()
        self.assertEqual(self.asked("--help").returncode, 0)
        self.assertEqual(self.asked("--version").returncode, 0)
        self.assertEqual(everything(), before)
        with socket.socket(socket.AF_UNIX) as server:
            server.bind(str(SOCKET))
            server.listen()
            self.assertEqual(self.asked("--help").returncode, 0)
            server.settimeout(0)
            with self.assertRaises(BlockingIOError):
                server.accept()
        SOCKET.unlink()

    def test_an_answer_that_nobody_can_read_is_a_failure(self):
        with open("/dev/full", "wb") as full:
            code = subprocess.run([EDITOR, "--help"], stdout=full, check=False, timeout=60).returncode
        self.assertEqual(code, 1)

    def test_a_start_without_a_display_ends_with_a_word_and_no_crash(self):
        for display in ({"DISPLAY": None}, {"DISPLAY": ":987"}):
            for words in ((), ("/show",)):
                with self.subTest(display=display, words=words):
                    told = self.asked(*words, **display)
                    self.assertEqual(told.returncode, 1, told.stderr.decode())
                    self.assertIn("tindra-editor: could not connect to display", told.stderr.decode())
        self.assertFalse(SOCKET.exists())

    def test_pictures_are_tried_without_a_display_and_disturb_no_editor(self):
        self.first()
        pictures = (png(20, 10, (255, 0, 0)), b"no picture", b"")
        question = b"".join(struct.pack(">Q", len(picture)) + picture for picture in pictures)
        told = self.asked("--try-pictures", question=question)
        self.assertEqual((told.returncode, told.stdout, told.stderr), (0, b"ynn", b""))
        self.assertEqual(windows(), [])
        # A question that comes in pieces, as a pipe brings it.
        slow = subprocess.Popen([EDITOR, "--try-pictures"], stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.started.append(slow)
        for at in range(0, len(question), 40):
            time.sleep(0.05)
            slow.stdin.write(question[at:at + 40])
            slow.stdin.flush()
        self.assertEqual(slow.communicate(timeout=60)[0], b"ynn")

    def test_each_picture_is_answered_while_more_may_come(self):
        trial = subprocess.Popen([EDITOR, "--try-pictures"], stdin=subprocess.PIPE, stdout=subprocess.PIPE, bufsize=0)
        self.started.append(trial)
        for content, letter in ((png(20, 10, (255, 0, 0)), b"y"), (b"no picture", b"n"), (png(3, 3, (0, 0, 0)), b"y")):
            trial.stdin.write(struct.pack(">Q", len(content)) + content)
            self.assertTrue(select.select([trial.stdout], [], [], LIMIT)[0], "no answer before the end of the question")
            self.assertEqual(trial.stdout.read(1), letter)
        trial.kill()
        self.assertEqual(trial.stdout.read(), b"")

    def test_a_file_that_cannot_be_opened_is_told_in_a_window(self):
        note = Path(os.environ["TMPDIR"]) / "a note.txt"
        note.write_text("no picture")
        for shown in (False, True):
            with self.subTest(shown=shown):
                first = self.first("/show" if shown else "/hide")
                self.window_count(int(shown))
                failed = subprocess.run([SENDER, "--open", note, "--editor", EDITOR], capture_output=True, check=False,
                                        timeout=60)
                self.assertEqual(failed.returncode, 1)
                self.window_count(int(shown) + 1)
                self.press_in_dialog("Return", int(shown))
                self.send("--kill")
                self.assertEqual(self.ended(first), 0)
        self.assertEqual(list(WORK.glob("*.png*")), [])
        # Names that come late, as a pipe brings them.
        message = subprocess.Popen([EDITOR, "--tell-unopened"], stdin=subprocess.PIPE)
        self.started.append(message)
        for name in (b"one.txt\0", b"another.txt"):
            time.sleep(0.3)
            message.stdin.write(name)
            message.stdin.flush()
        message.stdin.close()
        self.window_count(1)
        self.press_in_dialog("Return", 0)
        self.assertEqual(self.ended(message), 0)
        nothing = subprocess.run([EDITOR, "--tell-unopened"], stdin=subprocess.DEVNULL, check=False, timeout=60)
        self.assertEqual(nothing.returncode, 0)

    def test_a_reader_who_has_seen_enough_is_no_trouble(self):
        # The pipe of a shell: its reader is gone before the program writes.
        reader, writer = os.pipe()
        os.close(reader)
        with os.fdopen(writer, "wb") as pipe:
            for word in ("--help", "--version"):
                ended = subprocess.run([EDITOR, word], stdout=pipe, stderr=subprocess.PIPE, check=False, timeout=60)
                self.assertEqual((ended.returncode, ended.stderr), (-signal.SIGPIPE, b""))

    def test_in_a_longer_line_an_option_is_no_question(self):
        first = self.first("--help", "--version")
        self.assertEqual(windows(), [])
        self.assertEqual(self.ended(self.start("--version", "/show")), 0)
        self.assertTrue(wait_for(windows), "the words behind the option were not heard")
        self.send("--close")
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
        seconds = self.capture("seconds.png")
        elsewhere = RESULTS / "capture of the second.png"
        elsewhere.write_bytes(picture().read_bytes())
        for number, file in enumerate((seconds, elsewhere), 1):
            self.send("--", "x", "/path", f'"{file}"', "/skip", "/autosave", environment=bare)
            # The capture from elsewhere lies among what is saved.
            self.assertTrue(wait_for(lambda files=number + 1: len(list(RESULTS.iterdir())) == files))
        self.send("--close", environment=bare)
        self.assertEqual(self.ended(second), 0)
        self.assertFalse(elsewhere.exists(), "its own capture, which nobody else clears")
        for file in (copy, seconds):
            self.assertTrue(file.exists())
        self.assertEqual(len(list(RESULTS.iterdir())), 2)
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
