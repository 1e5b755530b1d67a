"""What a running editor holds of the system, looked at from outside."""
import collections
import os
import re
import subprocess
import time
from pathlib import Path

from editorsession import EDITOR, RUNTIME, WORK

REST_SECONDS = 0.6  # without the use of any processor
REST_LIMIT = 60.0
MEBIBYTE = 1024.0  # in kibibytes
PROGRAM = os.path.realpath(EDITOR)


def processor_ticks(pid):
    fields = Path(f"/proc/{pid}/stat").read_text(encoding="ascii").rsplit(")", 1)[1].split()
    return int(fields[11]) + int(fields[12])


def rest(pid):
    """Waits until the process uses no processor any more."""
    end = time.monotonic() + REST_LIMIT
    before = None
    while before != (now := processor_ticks(pid)):
        if time.monotonic() > end:
            raise AssertionError("the editor never comes to rest")
        before = now
        time.sleep(REST_SECONDS)


def memory(pid):
    """The fields of smaps_rollup, in MiB."""
    rollup = Path(f"/proc/{pid}/smaps_rollup").read_text(encoding="ascii")
    return {name: int(size) / MEBIBYTE for name, size in re.findall(r"(\w+): +(\d+) kB", rollup)}


def descriptors(pid):
    """How many of each kind; files by their paths."""
    kinds = collections.Counter()
    for link in Path(f"/proc/{pid}/fd").iterdir():
        try:
            kinds[re.sub(r":\[\d+\]$", "", os.readlink(link))] += 1
        except FileNotFoundError:
            pass
    return kinds


def shared_mappings(pid):
    """The shared memory that the process has mapped, by what the system calls it."""
    for line in Path(f"/proc/{pid}/maps").read_text(encoding="utf-8").splitlines():
        name = (line.split(None, 5) + [""])[5]
        if name.startswith(("/SYSV", "/memfd:", "/dev/shm/")):
            yield name


def blocks_made_by(pid):
    """How many blocks of shared memory the process made that will not go with their last user."""
    lines = Path("/proc/sysvipc/shm").read_text(encoding="ascii").splitlines()[1:]
    return sum(int(fields[4]) == pid and not int(fields[2], 8) & 0o1000 for fields in map(str.split, lines))


def segments(pid):
    """Shared memory by its kinds, less what tells one from another."""
    kinds = collections.Counter(re.sub(r"[0-9a-f]{8}|\d+", "*", name) for name in shared_mappings(pid))
    return kinds + collections.Counter({"block of its own": blocks_made_by(pid)})


def is_of_this_session(pid):
    environment = Path(f"/proc/{pid}/environ").read_bytes().split(b"\0")
    return f"XDG_RUNTIME_DIR={RUNTIME}".encode() in environment


def companions(pid):
    """Children that nobody has waited for, and other processes of the program, which keep the clipboard."""
    kinds = collections.Counter()
    for entry in Path("/proc").glob("[0-9]*"):
        try:
            state = (entry / "stat").read_text(encoding="utf-8").rsplit(")", 1)[1].split()[0]
            if state == "Z" and parent_of(entry.name) == pid:
                kinds["zombie"] += 1
            elif int(entry.name) != pid and os.readlink(entry / "exe") == PROGRAM and is_of_this_session(entry.name):
                kinds["keeper"] += 1
        except OSError:
            pass
    return kinds


def parent_of(pid):
    return int(Path(f"/proc/{pid}/stat").read_text(encoding="utf-8").rsplit(")", 1)[1].split()[1])


def server_pid():
    """The virtual display, started by one of those that started this; None on a real one."""
    ancestors = [os.getpid()]
    while ancestors[-1] > 1:
        ancestors.append(parent_of(ancestors[-1]))
    for entry in Path("/proc").glob("[0-9]*"):
        try:
            name = (entry / "comm").read_text(encoding="utf-8").strip()
            if name == "Xvfb" and parent_of(entry.name) in ancestors[:-1]:
                return int(entry.name)
        except OSError:
            pass
    return None


def server_windows():
    """All windows that the display server knows, shown or not."""
    tree = subprocess.run(["xwininfo", "-root", "-tree"], capture_output=True, text=True, check=True).stdout
    return len(re.findall(r"^ +0x", tree, re.MULTILINE))


def files_in(*folders):
    """Of all these places, by their paths, less those of captures."""
    return {str(path) for folder in folders for path in folder.rglob("*") if path.suffix != ".png"}


class Census:
    """One look at the editor, when it rests."""

    def __init__(self, pid):
        rest(pid)
        sizes = memory(pid)
        self.proportional, self.resident = sizes["Pss"], sizes["Rss"]
        self.own = sizes["Anonymous"] + sizes.get("Pss_Shmem", 0.0)
        self.descriptors = descriptors(pid)
        self.threads = len(list(Path(f"/proc/{pid}/task").iterdir()))
        # Those of a batch save end when there was nothing to do for a while, and each takes one along.
        self.lasting_descriptors = self.descriptors - collections.Counter({"anon_inode:[eventfd]": self.threads})
        self.segments = segments(pid)
        self.companions = companions(pid)
        self.windows = server_windows()
        server = server_pid()
        self.server = memory(server)["Rss"] if server else 0.0
        self.captures = len(list(WORK.glob("*.png")))
        self.files = files_in(WORK, RUNTIME, Path(os.environ["TMPDIR"]), Path(os.environ["XDG_CACHE_HOME"]))
