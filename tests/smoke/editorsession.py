"""What the tests of the real program share: its places, its wire, and an editor that does not outlive its test.

For scripts that tests/support/isolated runs with a display; the first argument of the script is the editor.
"""
import contextlib
import fcntl
import os
import shutil
import socket
import struct
import subprocess
import sys
import time
import unittest
import zlib
from pathlib import Path

EDITOR = sys.argv.pop(1)
SENDER = Path(__file__).resolve().parents[2] / "tools" / "tindra-send"
RUNTIME = Path(os.environ["XDG_RUNTIME_DIR"])
WORK = Path(os.environ["XDG_DATA_HOME"]) / "Norvane/Tindra"
PINS = WORK / "pin"
RESULTS = Path(os.environ["TMPDIR"]) / "results"
SOCKET = RUNTIME / "TNDEMutex"
# Seconds. Ends what hangs; a busy machine and a sanitizer make much of little.
LIMIT = 60.0


def wait_for(condition, limit=LIMIT, step=0.02):
    end = time.monotonic() + limit
    while time.monotonic() < end:
        if condition():
            return True
        time.sleep(step)
    return bool(condition())


def windows():
    return subprocess.run(["wmctrl", "-l"], capture_output=True, text=True, check=False).stdout.splitlines()


def xdotool(*arguments):
    return subprocess.run(["xdotool", *map(str, arguments)], capture_output=True, text=True, check=False).stdout


def newest_has_keyboard():
    """Whether keys go to the window that came last, a dialog as a rule."""
    lines = windows()
    return lines and xdotool("getactivewindow").strip() == str(int(lines[-1].split()[0], 16))


def main_window():
    """The identity of the first window of all; None without one."""
    lines = windows()
    return int(lines[0].split()[0], 16) if lines else None


def size_of(window):
    """Width and height; None when the window is gone."""
    values = dict(line.split("=") for line in xdotool("getwindowgeometry", "--shell", window).split())
    return (int(values["WIDTH"]), int(values["HEIGHT"])) if "WIDTH" in values else None


def pixel_in_bmp(path, x, y):
    """Red, green and blue of a picture of 24 bits, counted from its top left; fails when it is not whole."""
    content = path.read_bytes()
    size, start, _, width, height = struct.unpack_from("<I4xIIii", content, 2)
    assert size == len(content), f"{path} is not whole"
    at = start + (height - 1 - y) * ((width * 3 + 3) // 4 * 4) + x * 3
    return tuple(reversed(content[at:at + 3]))


def write_settings(**settings):
    """Of the next start; folders for results are set already."""
    lines = {"AutoSavePath": RESULTS, "FilePath": RESULTS} | settings
    path = Path(os.environ["XDG_CONFIG_HOME"]) / "Norvane/Tindra.conf"
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text("[Config]\n" + "".join(f"{key}={value}\n" for key, value in lines.items()))


@contextlib.contextmanager
def held(name):
    """A lock of the runtime folder whose holder does not move."""
    with open(RUNTIME / name, "w") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        yield


def answers():
    """Whether somebody listens."""
    with socket.socket(socket.AF_UNIX) as connection:
        return connection.connect_ex(str(SOCKET)) == 0


def wire(line):
    """The bytes of a message."""
    text = line.encode("utf-16-be")
    return struct.pack(">HI", (len(text) + 4) & 0xFFFF, len(text)) + text


def tell(line):
    """Sends the words of a line as another process would, without waiting for what comes of it."""
    with socket.socket(socket.AF_UNIX) as connection:
        connection.settimeout(LIMIT)
        connection.connect(str(SOCKET))
        connection.sendall(wire("tindra " + line))


def png(width, height, colour):
    """A picture of one colour."""
    def chunk(kind, content):
        return (struct.pack(">I", len(content)) + kind + content +
                struct.pack(">I", zlib.crc32(kind + content)))

    rows = (b"\0" + bytes(colour) * width) * height
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)) +
            chunk(b"IDAT", zlib.compress(rows, 1)) + chunk(b"IEND", b""))


def put_capture(name, content):
    """Puts a picture into the work folder as a capture side does: whole under its name, or not at all."""
    WORK.mkdir(parents=True, exist_ok=True, mode=0o700)
    unfinished = WORK / f"{name}.part"
    unfinished.write_bytes(content)
    return unfinished.rename(WORK / name)


class EditorTest(unittest.TestCase):
    """Ends what it started, and leaves no capture to the next test."""

    def setUp(self):
        self.started = []
        RESULTS.mkdir(exist_ok=True)
        write_settings()

    def tearDown(self):
        for process in self.started:
            if process.poll() is None:
                process.kill()
            process.wait()
        for folder in (WORK, RESULTS):
            shutil.rmtree(folder, ignore_errors=True)

    def start(self, *arguments, environment=None):
        process = subprocess.Popen([EDITOR, *map(str, arguments)], env=environment, stdin=subprocess.DEVNULL)
        self.started.append(process)
        return process

    def first(self, *arguments, environment=None):
        process = self.start(*arguments, environment=environment)
        self.assertTrue(wait_for(answers), "the first editor does not listen")
        return process

    def send(self, *arguments, environment=None):
        result = subprocess.run([SENDER, *map(str, arguments)], env=environment, capture_output=True, check=False,
                                timeout=60)
        self.assertEqual(result.returncode, 0, result.stderr.decode())

    def ended(self, process):
        """The exit code."""
        return process.wait(LIMIT)

    def window_count(self, count, limit=LIMIT):
        """Waits for that many windows."""
        self.assertTrue(wait_for(lambda: len(windows()) == count, limit), f"not {count} windows but {windows()}")

    def press_in_dialog(self, keys, windows_left, limit=LIMIT):
        """Presses keys in the newest window, as soon as it has the keyboard, and waits for what they do."""
        self.assertTrue(wait_for(newest_has_keyboard, limit), "the dialog does not become active")
        xdotool("key", *keys.split())
        self.window_count(windows_left, limit)
