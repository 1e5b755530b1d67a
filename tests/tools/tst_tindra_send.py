#!/usr/bin/env python3
"""tindra-send takes each road, hands over private copies, and says what went wrong."""
import ctypes
import os
import re
import shutil
import socket
import stat
import struct
import subprocess
import sys
import tempfile
import threading
import unittest
from pathlib import Path

TOOL = Path(__file__).resolve().parents[2] / "tools" / "tindra-send"
PICTURE = b"\x89PNG not much of a picture" + bytes(range(256)) * 40


class Block:
    """The reading side of the shared memory block."""

    libc = ctypes.CDLL(None, use_errno=True)
    libc.shmat.restype = ctypes.c_void_p
    libc.shmat.argtypes = [ctypes.c_int, ctypes.c_void_p, ctypes.c_int]
    libc.shmdt.argtypes = [ctypes.c_void_p]

    def __init__(self, key_file):
        key = self.libc.ftok(os.fsencode(key_file), ord("Q"))
        self.id = self.libc.shmget(key, 0, 0)

    def read(self, size):
        address = self.libc.shmat(self.id, None, 0o10000)  # read only
        content = ctypes.string_at(address, size)
        self.libc.shmdt(address)
        return content

    def remove(self):
        self.libc.shmctl(self.id, 0, None)


class FakeEditor:
    """Listens where the editor does, and keeps the messages, and the block's bytes when one names them."""

    def __init__(self, folder):
        self.folder = folder
        self.lines, self.contents = [], []
        self.socket = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        self.socket.bind(str(folder / "TNDEMutex"))
        self.socket.listen()
        self.thread = threading.Thread(target=self.serve, daemon=True)
        self.thread.start()

    def serve(self):
        while True:
            try:
                connection = self.socket.accept()[0]
            except OSError:
                return
            with connection:
                message = b"".join(iter(lambda: connection.recv(65536), b""))
                if message:
                    self.take(message)

    def take(self, message):
        length, size = struct.unpack(">HI", message[:6])
        assert length == (len(message) - 2) & 0xFFFF and size == len(message) - 6
        line = message[6:].decode("utf-16-be")
        announced = re.search(r'"/memory" "(\d+)"', line)
        if announced:
            block = Block(self.folder / "TindraImageMemory")
            self.contents.append(block.read(int(announced.group(1))))
            block.remove()
        self.lines.append(line)

    def stop(self):
        self.socket.shutdown(socket.SHUT_RDWR)
        self.thread.join(10)
        self.socket.close()
        (self.folder / "TNDEMutex").unlink()


class TindraSend(unittest.TestCase):
    def setUp(self):
        self.scratch = Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.scratch)
        self.runtime, self.work = self.scratch / "run", self.scratch / "data/Norvane/Tindra"
        self.runtime.mkdir(mode=0o700)
        self.environment = dict(os.environ, XDG_RUNTIME_DIR=str(self.runtime), HOME=str(self.scratch),
                                XDG_DATA_HOME=str(self.scratch / "data"))
        self.picture = self.scratch / "shot one.PNG"
        self.picture.write_bytes(PICTURE)

    def editor(self):
        editor = FakeEditor(self.runtime)
        self.addCleanup(editor.stop)
        return editor

    def lines(self, editor, count):
        """The messages, when so many have come."""
        for _ in range(1000):
            if len(editor.lines) >= count:
                break
            threading.Event().wait(0.01)
        return editor.lines

    def program(self, body):
        """An editor to be started: writes down its arguments, one a line, and runs `body`."""
        path = self.scratch / "editor"
        path.write_text(f'#!/bin/sh\nprintf "%s\\n" "$@" >"{self.scratch}/arguments"\n{body}\n')
        path.chmod(0o700)
        return str(path)

    def arguments(self):
        return (self.scratch / "arguments").read_text().splitlines()

    def send(self, *arguments, code=0, content=None):
        result = subprocess.run([TOOL, *map(str, arguments)], env=self.environment, input=content,
                                capture_output=True, check=False, timeout=60)
        self.assertEqual(result.returncode, code, result.stderr.decode())
        return result.stderr.decode()

    # Road "path".

    def test_path_names_a_private_copy_in_the_work_folder(self):
        editor = self.editor()
        self.send(self.picture, "--point", 100, -80)
        line = self.lines(editor, 1)[0]
        match = re.fullmatch(r'"tindra-send" "/path" "(.*)" "/point" "100" "-80"', line)
        copy = Path(match.group(1))
        self.assertEqual(copy.parent, self.work)
        self.assertEqual(copy.suffix, ".png")
        self.assertFalse(copy.stem.isdigit(), "such names are the pinned captures'")
        self.assertEqual(copy.read_bytes(), PICTURE)
        self.assertEqual(stat.S_IMODE(copy.stat().st_mode), 0o600)
        self.assertEqual(stat.S_IMODE(self.work.stat().st_mode), 0o700)
        self.assertEqual(self.picture.read_bytes(), PICTURE)

    def test_odd_endings_are_left_away(self):
        editor = self.editor()
        odd = self.scratch / 'shot.p"n g'
        odd.write_bytes(PICTURE)
        self.send(odd)
        self.assertRegex(self.lines(editor, 1)[0], r'^"tindra-send" "/path" "[^" ]*/capture-[^". ]+"$')

    def test_each_picture_has_its_message(self):
        editor = self.editor()
        self.send(self.picture, self.picture, "--skip", "--autosave")
        lines = self.lines(editor, 2)
        self.assertEqual(len(set(lines)), 2)
        for line in lines:
            self.assertRegex(line, r'^"tindra-send" "/path" ".*" "/skip" "/autosave"$')

    def test_standard_input_is_a_picture(self):
        editor = self.editor()
        self.send("-", content=PICTURE)
        copy = re.search(r'"/path" "(.*)"', self.lines(editor, 1)[0]).group(1)
        self.assertEqual(Path(copy).read_bytes(), PICTURE)

    def test_without_an_editor_nothing_is_left_behind(self):
        self.assertIn("no editor runs", self.send(self.picture, code=3))
        self.assertEqual(list(self.work.iterdir()), [])

    # Road "memory".

    def test_memory_holds_the_bytes(self):
        editor = self.editor()
        self.send("--road", "memory", self.picture, "--point", 1, 2)
        line = self.lines(editor, 1)[0]
        self.assertRegex(line, rf'"/path" "capture-[\d-]+" "/point" "1" "2" "/memory" "{len(PICTURE)}"$')
        self.assertEqual(editor.contents, [PICTURE])
        self.assertFalse(self.work.exists())

    def test_memory_waits_for_each_picture_to_be_fetched(self):
        editor = self.editor()
        others = []
        for number in range(5):
            path = self.scratch / f"{number}.png"
            path.write_bytes(PICTURE * (number + 1))
            others.append(path)
        self.send("--road", "memory", *others)
        self.assertEqual([len(content) for content in editor.contents],
                         [len(PICTURE) * (number + 1) for number in range(5)])
        self.assertEqual(len(set(editor.lines)), 5)

    def test_memory_replaces_what_a_dead_sender_left(self):
        editor = self.editor()
        (self.runtime / "TindraImageMemory").touch(mode=0o600)
        key = Block.libc.ftok(os.fsencode(self.runtime / "TindraImageMemory"), ord("Q"))
        self.assertGreaterEqual(Block.libc.shmget(key, 3, 0o1600), 0)
        self.send("--road", "memory", self.picture)
        self.assertEqual(editor.contents, [PICTURE])

    def test_memory_without_an_editor_makes_no_block(self):
        self.assertIn("no editor runs", self.send("--road", "memory", self.picture, code=3))
        self.assertFalse((self.runtime / "TindraImageMemory").exists())

    def test_memory_sends_commands_too(self):
        editor = self.editor()
        self.send("--road", "memory", "--hide")
        self.assertEqual(self.lines(editor, 1), ['"tindra-send" "/hide"'])

    # Roads that start the editor.

    def test_start_gives_the_arguments_to_a_second_editor(self):
        self.editor()
        self.send("--road", "start", "--editor", self.program(""), self.picture, "--point", 5, 6, "--skip")
        word, copy, *rest = self.arguments()
        self.assertEqual([word, *rest], ["/path", "/point", "5", "6", "/skip"])
        self.assertEqual(Path(copy).read_bytes(), PICTURE)
        self.assertEqual(Path(copy).parent, self.work)

    def test_start_needs_a_first_editor(self):
        self.assertIn("no editor runs", self.send("--road", "start", "--editor", self.program(""), "--show", code=3))
        self.assertFalse((self.scratch / "arguments").exists())

    def test_start_that_fails_is_told(self):
        self.editor()
        self.assertIn("code 7", self.send("--road", "start", "--editor", self.program("exit 7"), self.picture, code=1))
        self.assertEqual(list(self.work.iterdir()), [])

    def test_commandline_starts_the_editor_and_waits_until_it_listens(self):
        listen = ('exec python3 -c "import socket, time; s = socket.socket(socket.AF_UNIX); time.sleep(0.2); '
                  's.bind(\'$XDG_RUNTIME_DIR/TNDEMutex\'); s.listen(); s.accept()"')
        self.send("--road", "commandline", "--editor", self.program(listen), self.picture, "--skip")
        word, copy, *rest = self.arguments()
        self.assertEqual([word, *rest], ["/path", "/skip"])
        self.assertEqual(Path(copy).read_bytes(), PICTURE)
        self.assertTrue((self.runtime / "TNDEMutex").exists())

    def test_commandline_refuses_when_an_editor_runs(self):
        self.editor()
        self.assertIn("runs already",
                      self.send("--road", "commandline", "--editor", self.program(""), self.picture, code=3))

    def test_commandline_tells_an_editor_that_ends_at_once(self):
        self.assertIn("code 4", self.send("--road", "commandline", "--editor", self.program("exit 4"), "--show", code=1))

    def test_a_missing_editor_is_told(self):
        self.assertIn("cannot start", self.send("--road", "start", "--editor", "/nonexistent/editor", "--show", code=1))

    # Words and lines.

    def test_words_alone(self):
        editor = self.editor()
        for word in ("show", "hide", "save", "autosave", "close", "kill"):
            self.send(f"--{word}")
        self.assertEqual(self.lines(editor, 6), [f'"tindra-send" "/{word}"' for word in
                                                 ("show", "hide", "save", "autosave", "close", "kill")])

    def test_a_line_goes_as_it_stands(self):
        editor = self.editor()
        self.send("--", 'x /path "a b" /kill')
        self.send("--", "/preference", "2")
        self.assertEqual(self.lines(editor, 2), ['x /path "a b" /kill', "/preference 2"])

    def test_beyond_latin(self):
        editor = self.editor()
        self.send("--", "/path 그림😀.png")
        self.assertEqual(self.lines(editor, 1), ["/path 그림😀.png"])

    # Wrong usage and bad pictures.

    def test_wrong_usage(self):
        for arguments in ((), ("--road", "air", "x.png"), ("--",), (self.picture, "--", "/show"), ("-", "-"),
                          ("--point", "1", "here", self.picture), (self.picture, "--hide"), (self.picture, "--kill"),
                          ("--road", "commandline", self.picture, self.picture)):
            with self.subTest(arguments=arguments):
                self.assertIn("tindra-send: error", self.send(*arguments, code=2))

    def test_unreadable_pictures(self):
        self.editor()
        self.assertIn("cannot read", self.send(self.scratch / "none.png", code=1))
        self.assertIn("cannot read", self.send(self.scratch, code=1))
        self.assertIn("is empty", self.send("-", content=b"", code=1))

    def test_all_pictures_are_read_before_the_first_is_sent(self):
        editor = self.editor()
        self.send(self.picture, self.scratch / "none.png", code=1)
        self.send("--show")
        self.assertEqual(self.lines(editor, 1), ['"tindra-send" "/show"'])

    # Places.

    def test_without_a_session_folder_the_substitute_is_used(self):
        temporary = self.scratch / "tmp"
        temporary.mkdir()
        temporary.chmod(0o1777)
        substitute = temporary / f"tindra-{os.geteuid()}-1"
        substitute.mkdir(mode=0o700)
        (temporary / f"tindra-{os.geteuid()}").symlink_to(self.runtime)
        del self.environment["XDG_RUNTIME_DIR"]
        self.environment["TMPDIR"] = str(temporary)
        editor = FakeEditor(substitute)
        self.addCleanup(editor.stop)
        self.send("--show")
        self.assertEqual(self.lines(editor, 1), ['"tindra-send" "/show"'])


if __name__ == "__main__":
    sys.exit(unittest.main())
