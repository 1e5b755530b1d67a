#!/usr/bin/env python3
"""tindra-send takes each road, hands over private copies, and says what went wrong."""
import contextlib
import ctypes
import fcntl
import importlib.machinery
import io
import os
import re
import resource
import shutil
import socket
import stat
import struct
import subprocess
import sys
import tempfile
import threading
import time
import types
import unittest
from pathlib import Path
from unittest import mock

TOOL = Path(__file__).resolve().parents[2] / "tools" / "tindra-send"
PICTURE = b"\x89PNG not much of a picture" + bytes(range(256)) * 40


def tool_as_module():
    """The tool's own code, for what its outside does not show."""
    tool = types.ModuleType("tindra_send")
    importlib.machinery.SourceFileLoader("tindra_send", str(TOOL)).exec_module(tool)
    return tool


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
    # An editor that takes a moment to listen and then waits for somebody.
    LISTEN = ('exec python3 -c "import socket, time; s = socket.socket(socket.AF_UNIX); time.sleep(0.2); '
              's.bind(\'$XDG_RUNTIME_DIR/TNDEMutex\'); s.listen(); s.accept()"')

    # Answers for each picture by itself, as the editor's program does; some pictures are its end.
    TRIAL = """
import os, signal, struct, sys
while size := sys.stdin.buffer.read(8):
    content = sys.stdin.buffer.read(struct.unpack(">Q", size)[0])
    with open(sys.argv[1], "ab") as question:
        question.write(size + content)
    if content == b"deadly":
        os.kill(os.getpid(), signal.SIGKILL)
    if content == b"endless":
        sys.stdin.buffer.read()
    os.write(1, b"n" if content == b"no picture" else b"y")
"""

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

    def key(self):
        """The key that the key file has now."""
        path = self.runtime / "TindraImageMemory"
        path.touch(mode=0o600)
        return Block.libc.ftok(os.fsencode(path), ord("Q"))

    def as_stranger(self, body):
        """Runs the body as another user of the machine, and waits for it."""
        if os.geteuid() != 0:
            if os.environ.get("CI") == "true":
                self.fail("the tests against other users need root")
            self.skipTest("only root can become another user")
        child = os.fork()
        if child == 0:
            with contextlib.suppress(BaseException):
                os.setgroups([])
                os.setgid(65534)
                os.setuid(65534)
                os._exit(0 if body() else 1)
            os._exit(2)
        self.assertEqual(os.waitpid(child, 0)[1], 0)

    def lines(self, editor, count):
        """The messages, when so many have come."""
        for _ in range(1000):
            if len(editor.lines) >= count:
                break
            threading.Event().wait(0.01)
        return editor.lines

    def program(self, body, trial=""):
        """An editor to be started: writes down its arguments, one a line, and runs `body`. Asked about pictures it
        runs `trial`, or one that keeps the question; told about unopened files it keeps their names."""
        path = self.scratch / "editor"
        (self.scratch / "trial.py").write_text(self.TRIAL)
        trial = trial or f'exec python3 -I "{self.scratch}/trial.py" "{self.scratch}/question"'
        path.write_text(f"""#!/bin/sh
case $1 in
    --try-pictures) {trial}; exit ;;
    --tell-unopened) cat >"{self.scratch}/names"; mv "{self.scratch}/names" "{self.scratch}/told"; exit ;;
esac
printf "%s\\n" "$@" >"{self.scratch}/arguments"
{body}
""")
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

    def test_copies_end_as_the_editor_knows_its_captures(self):
        editor = self.editor()
        for number, ending in enumerate((".jpg", '.p"n g', ""), 1):
            source = self.scratch / f"shot{ending}"
            source.write_bytes(PICTURE)
            self.send(source)
            self.assertRegex(self.lines(editor, number)[-1], r'^"tindra-send" "/path" "[^" ]*/capture-[^". ]+\.png"$')

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

    def test_a_copy_for_which_there_is_no_room_is_taken_back(self):
        self.editor()
        result = subprocess.run([TOOL, self.picture], env=self.environment, capture_output=True, check=False, timeout=60,
                                preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (1000, 1000)))
        self.assertEqual((result.returncode, len(result.stderr.splitlines())), (1, 1), result.stderr.decode())
        self.assertEqual(list(self.work.iterdir()), [])

    def test_a_copy_has_its_name_when_it_is_whole(self):
        tool = tool_as_module()
        during = []

        def interrupted(*_arguments):
            during.extend(path.name for path in self.work.iterdir())
            raise KeyboardInterrupt

        with mock.patch.dict(os.environ, self.environment):
            picture = tool.Picture(self.picture)
            with mock.patch.object(tool, "open", interrupted, create=True), self.assertRaises(KeyboardInterrupt):
                picture.copy()
            self.assertEqual(list(self.work.iterdir()), [])
            whole = Path(picture.copy())
        self.assertEqual(len(during), 1)
        self.assertFalse(during[0].endswith(".png"), "the editor would take it for a capture")
        self.assertEqual(list(self.work.iterdir()), [whole])
        self.assertEqual((whole.suffix, whole.read_bytes()), (".png", PICTURE))

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

    def test_memory_never_goes_into_a_block_of_a_stranger(self):
        editor = self.editor()
        user = os.geteuid()
        for mode, given in ((0o666, False), (0o600, False), (0o600, True)):
            with self.subTest(mode=mode, given=given):
                key = self.key()
                number = os.stat(self.runtime / "TindraImageMemory").st_ino

                def squat():
                    block = Block.libc.shmget(key, 1 << 20, 0o3000 | mode)
                    if given:  # IPC_SET: its maker keeps his rights all the same
                        state = (ctypes.c_uint * 64)()
                        if Block.libc.shmctl(block, 2, state) != 0:
                            return False
                        state[1] = user
                        return Block.libc.shmctl(block, 1, state) == 0
                    return block >= 0

                self.as_stranger(squat)
                foreign = Block.libc.shmget(key, 0, 0)
                self.addCleanup(Block.libc.shmctl, foreign, 0, None)
                editor.contents.clear()
                self.send("--road", "memory", self.picture)
                self.assertEqual(editor.contents, [PICTURE])
                address = Block.libc.shmat(foreign, None, 0)
                self.assertEqual(ctypes.string_at(address, 1 << 20), bytes(1 << 20))
                Block.libc.shmdt(address)
                self.assertNotEqual(os.stat(self.runtime / "TindraImageMemory").st_ino, number)
                self.assertEqual(sorted(path.name for path in self.runtime.iterdir() if path.name[-4:] != "lock"),
                                 ["TNDEMutex", "TindraImageMemory"])

    def test_memory_leaves_the_block_of_a_resident_capture_program(self):
        self.editor()
        block = Block.libc.shmget(self.key(), 100, 0o3600)
        self.addCleanup(Block.libc.shmctl, block, 0, None)
        address = Block.libc.shmat(block, None, 0)
        ctypes.memmove(address, b"resident", 8)
        self.assertIn("keeps the shared memory block", self.send("--road", "memory", self.picture, code=1))
        self.assertEqual(Block.libc.shmget(self.key(), 0, 0), block)
        self.assertEqual(ctypes.string_at(address, 8), b"resident")
        Block.libc.shmdt(address)

    def test_memory_waits_for_the_lock_of_the_block(self):
        editor = self.editor()
        with open(self.runtime / "TindraImageMemory.lock", "w") as lock:
            fcntl.flock(lock, fcntl.LOCK_EX)
            sender = subprocess.Popen([TOOL, "--road", "memory", self.picture], env=self.environment)
            with self.assertRaises(subprocess.TimeoutExpired):
                sender.wait(0.5)
            self.assertEqual(editor.lines, [])
        self.assertEqual(sender.wait(60), 0)
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
        self.send("--road", "commandline", "--editor", self.program(self.LISTEN), self.picture, "--skip")
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

    # Road "open".

    def test_open_hands_over_to_the_editor_that_runs(self):
        editor = self.editor()
        never = self.program("exit 4")
        self.send("--open", self.picture, self.picture, "--editor", never)
        copies = [re.fullmatch(r'"tindra-send" "/path" "(.*)"', line).group(1) for line in self.lines(editor, 2)]
        self.assertEqual([Path(copy).read_bytes() for copy in copies], [PICTURE] * 2)
        self.send("--open", "--editor", never)
        self.assertEqual(self.lines(editor, 3)[2], '"tindra-send" "/show"')
        self.assertFalse((self.scratch / "arguments").exists())
        self.assertEqual(self.picture.read_bytes(), PICTURE)

    def test_open_starts_an_editor_when_none_runs(self):
        self.send("--open", self.picture, "--point", 3, 4, "--editor", self.program(self.LISTEN))
        word, copy, *rest = self.arguments()
        self.assertEqual([word, *rest], ["/path", "/point", "3", "4"])
        self.assertNotEqual(Path(copy), self.picture)
        self.assertEqual(Path(copy).read_bytes(), PICTURE)
        self.assertEqual(len(list(self.work.iterdir())), 1)

    def test_open_without_a_picture_starts_an_editor_with_its_window(self):
        self.send("--road", "open", "--editor", self.program(self.LISTEN))
        self.assertEqual(self.arguments(), ["/show"])

    def test_open_starts_an_editor_for_a_line(self):
        self.send("--open", "--editor", self.program(self.LISTEN), "--", "/preference", "2")
        self.assertEqual(self.arguments(), ["/preference", "2"])

    def test_a_start_that_another_has_overtaken_has_handed_over(self):
        tool = tool_as_module()
        looks = iter((lambda: time.sleep(0.5), lambda: True))  # by then the program has ended
        tool.is_editor_running = lambda: next(looks)()
        tool.start_editor(None, ["/show"], "/bin/true")
        self.assertEqual(list(looks), [])

    def told(self):
        """The files of the window that told of them."""
        path = self.scratch / "told"
        for _ in range(1000):
            if path.exists():
                break
            time.sleep(0.01)
        return path.read_bytes().split(b"\0")

    def test_open_tries_the_bytes_that_it_hands_over(self):
        editor = self.editor()
        other = self.scratch / "other.jpg"
        other.write_bytes(b"other")
        self.send("--open", self.picture, other, "--editor", self.program("exit 4"))
        self.assertEqual(len(self.lines(editor, 2)), 2)
        self.assertEqual((self.scratch / "question").read_bytes(),
                         struct.pack(">Q", len(PICTURE)) + PICTURE + struct.pack(">Q", 5) + b"other")

    def test_open_hands_over_what_it_can_and_tells_the_rest(self):
        editor = self.editor()
        unknown = self.scratch / "it's 100% 그림.txt"
        unknown.write_bytes(b"no picture")
        missing = self.scratch / "none.png"
        error = self.send("--open", missing, unknown, self.picture, "--editor", self.program(""), code=1)
        self.assertEqual(self.told(), [os.fsencode(missing), os.fsencode(unknown)])
        self.assertIn(f"cannot read {missing}", error)
        self.assertIn(f"{unknown} is no picture", error)
        copies = [re.fullmatch(r'"tindra-send" "/path" "(.*)"', line).group(1) for line in self.lines(editor, 1)]
        self.assertEqual([Path(copy).read_bytes() for copy in copies], [PICTURE])
        self.assertEqual(len(list(self.work.iterdir())), 1)

    def test_a_picture_that_ends_the_trial_is_none(self):
        editor = self.editor()
        for trial in ("exit 1", "kill -SEGV $$", "printf n", "printf x", "exec <&-"):
            with self.subTest(trial=trial):
                (self.scratch / "told").unlink(missing_ok=True)
                error = self.send("--open", self.picture, "--editor", self.program("", trial), code=1)
                self.assertIn("is no picture", error)
                self.assertEqual(self.told(), [os.fsencode(self.picture)])
        self.assertEqual(editor.lines, [])

    def test_a_trial_that_reads_nothing_of_a_large_picture(self):
        self.editor()
        large = self.scratch / "large.png"
        large.write_bytes(bytes(1 << 20))
        self.assertIn("is no picture", self.send("--open", large, "--editor", self.program("", "exit 0"), code=1))
        self.assertEqual(self.told(), [os.fsencode(large)])

    def among_others(self, content):
        """A file with this content between two pictures, all different."""
        files = [self.scratch / name for name in ("first.png", "between.png", "last.png")]
        for file, written in zip(files, (PICTURE, content, PICTURE * 2)):
            file.write_bytes(written)
        return files

    def assert_opened(self, editor, *contents):
        copies = [re.fullmatch(r'"tindra-send" "/path" "(.*)"', line).group(1)
                  for line in self.lines(editor, len(contents))]
        self.assertEqual([Path(copy).read_bytes() for copy in copies], list(contents))

    def test_a_picture_that_ends_the_trial_keeps_no_other_back(self):
        editor = self.editor()
        files = self.among_others(b"deadly")
        error = self.send("--open", *files, "--editor", self.program(""), code=1)
        self.assertEqual(error.splitlines(), [f"tindra-send: {files[1]} is no picture that the editor can show"])
        self.assertEqual(self.told(), [os.fsencode(files[1])])
        self.assert_opened(editor, PICTURE, PICTURE * 2)

    def test_a_picture_without_end_keeps_no_other_back(self):
        editor = self.editor()
        files = self.among_others(b"endless")
        tool = tool_as_module()
        self.assertLessEqual(tool.TRIAL_LIMIT, 20)
        with mock.patch.dict(os.environ, self.environment), mock.patch.object(tool, "TRIAL_LIMIT", 5):
            with contextlib.redirect_stderr(io.StringIO()) as printed:
                self.assertEqual(tool.main(["--open", *map(str, files), "--editor", self.program("")]), 1)
        lines = [line for line in printed.getvalue().splitlines() if line.startswith("tindra-send:")]
        self.assertEqual(lines, [f"tindra-send: {files[1]} takes too long to open"])
        self.assertEqual(self.told(), [os.fsencode(files[1])])
        self.assert_opened(editor, PICTURE, PICTURE * 2)

    def test_a_picture_is_opened_before_the_next_is_tried(self):
        editor = self.editor()
        sender = subprocess.Popen([TOOL, "--open", *self.among_others(b"endless"), "--editor", self.program("")],
                                  env=self.environment)
        try:
            self.assert_opened(editor, PICTURE)
            self.assertIsNone(sender.poll())
        finally:
            sender.kill()
            sender.wait()

    def test_open_without_a_program_to_ask_hands_over_to_the_editor_that_runs(self):
        editor = self.editor()
        self.send("--open", self.picture, "--editor", "/nonexistent/editor")
        self.assertEqual(len(self.lines(editor, 1)), 1)
        self.assertIn("cannot read", self.send("--open", self.scratch, "--editor", "/nonexistent/editor", code=1))

    def test_who_has_a_terminal_gets_no_window(self):
        tool = tool_as_module()
        with mock.patch.dict(os.environ, self.environment), mock.patch.object(tool, "has_terminal", lambda: True):
            with contextlib.redirect_stderr(io.StringIO()) as printed:
                self.assertEqual(tool.main(["--open", str(self.scratch), "--editor", self.program("")]), 1)
        self.assertIn("cannot read", printed.getvalue())
        self.assertFalse((self.scratch / "told").exists())

    def test_open_tells_an_editor_that_cannot_start(self):
        self.assertIn("code 4", self.send("--open", self.picture, "--editor", self.program("exit 4"), code=1))
        self.assertIn("code 0", self.send("--open", self.picture, "--editor", self.program("exit 0"), code=1))
        self.assertIn("cannot start", self.send("--open", self.picture, "--editor", "/nonexistent/editor", code=1))
        self.assertEqual(list(self.work.iterdir()), [])

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

    def test_the_document_of_the_protocol_sends_the_same_bytes(self):
        text = (TOOL.parents[1] / "docs/protocol.md").read_text(encoding="utf-8")
        code = re.search(r"```python\n(.*?)```", text, re.DOTALL).group(1)
        tool = tool_as_module()
        for line in ("x /show", "x /path 그림😀.png", "x" * 40000):
            connection = mock.Mock()
            exec(code, {"struct": struct, "line": line, "connection": connection})
            connection.sendall.assert_called_once_with(tool.encoded(line))

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

    def test_the_folder_that_the_system_gives_the_user_serves_without_the_environment(self):
        own = self.scratch / "users" / str(os.geteuid())
        own.mkdir(parents=True, mode=0o700)
        del self.environment["XDG_RUNTIME_DIR"]
        self.environment["TINDRA_USER_FOLDERS"] = str(own.parent)
        editor = FakeEditor(own)
        self.addCleanup(editor.stop)
        self.send("--show")
        self.assertEqual(self.lines(editor, 1), ['"tindra-send" "/show"'])

    def test_a_temporary_folder_that_others_may_move_is_not_used(self):
        above = self.scratch / "above"
        temporary = above / "tmp"
        temporary.mkdir(parents=True)
        above.chmod(0o777)
        (temporary / f"tindra-{os.geteuid()}").mkdir(mode=0o700)
        cache = self.scratch / "cache" / f"tindra-{os.geteuid()}"
        cache.mkdir(parents=True, mode=0o700)
        del self.environment["XDG_RUNTIME_DIR"]
        self.environment.update(TMPDIR=str(temporary), XDG_CACHE_HOME=str(cache.parent))
        editor = FakeEditor(cache)
        self.addCleanup(editor.stop)
        self.send("--show")
        self.assertEqual(self.lines(editor, 1), ['"tindra-send" "/show"'])

    def test_the_work_folder_is_the_one_that_the_editor_takes(self):
        editor = self.editor()
        self.work.mkdir(parents=True)
        self.work.chmod(0o755)  # the editor takes the rights of others and keeps the folder
        self.work.parent.chmod(0o755)
        self.send(self.picture)
        self.assertEqual(len(list(self.work.iterdir())), 1)
        for folder in (self.work, self.work.parent):
            self.assertEqual(stat.S_IMODE(folder.stat().st_mode), 0o700)
        # A link that the user laid is meant.
        elsewhere = self.scratch / "elsewhere"
        elsewhere.mkdir()
        shutil.rmtree(self.work)
        self.work.symlink_to(elsewhere)
        self.send(self.picture)
        self.assertEqual(len(list(elsewhere.iterdir())), 1)
        self.assertIn(str(self.work), self.lines(editor, 2)[1])

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
