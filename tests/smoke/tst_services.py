#!/usr/bin/env python3
"""The real program without the maker's libraries, and with them.

usage: tst_services.py EDITOR TRUSTING LIBRARIES MAKERS

TRUSTING is an editor that takes the makers of the libraries for known ones. LIBRARIES and MAKERS are what
tindra_substitute_library() builds: libraries with their signatures, and those who signed them.
"""
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

MAKERS = Path(sys.argv.pop(4))
LIBRARIES = Path(sys.argv.pop(3))
TRUSTING = Path(sys.argv.pop(2)).resolve()

from editorsession import (EDITOR, LIMIT, RESULTS, RUNTIME, WORK, EditorTest, answers, png,  # noqa: E402  (the arguments come first)
                           put_capture, wait_for, windows)

CONFIGURATION = Path(os.environ["XDG_CONFIG_HOME"]) / "Norvane"
PROGRAM = Path(EDITOR).resolve()

# A call of strace -f: process, name, arguments, result.
CALL = re.compile(r"^(\d+) +(\w+)\((.*)\) += (-?\d+|\?)")
BROKEN_OFF = " <unfinished ...>"
RESUMED = re.compile(r"^\d+ +<\.\.\. \w+ resumed>(.*)$")
PATH = re.compile(r'"([^"]*)"')
CHANGES = {"mkdir", "mkdirat", "rename", "renameat", "renameat2", "unlink", "unlinkat", "link", "linkat", "symlink",
           "symlinkat", "truncate", "chmod", "fchmodat", "creat", "mknod", "mknodat", "rmdir"}
OPENS = {"open", "openat", "openat2"}
WRITING = re.compile(r"O_WRONLY|O_RDWR|O_CREAT|O_TRUNC")

# The libraries that the editor looks for in its folder, and how often their names may reach the system.
SOUGHT = {"WyvernC": 1, "Ostler": 1, "quoin2": 1, "Quoin": 1, "wyvern2_x86": 1, "Freshet": 0}
# Places where it looks for those of the management program.
ELSEWHERE = ("kilnworks.so", "passkin.so")

# What may be opened. Of the system: its libraries, and the folders where these have their parts; /usr/lib as a whole
# would let the settings of the cryptography through.
SYSTEM_LIBRARY = r"(/usr)?/lib(64)?/.*\.so[.\d]*"
SYSTEM_FOLDERS = (
    r"/usr/lib/locale", r"/usr/lib/[^/]+/(dri|gconv|qt5)", r"/usr/share/(X11|drirc\.d|icons|locale|mime|qt5|zoneinfo)",
    r"(/usr/share|/usr/local/share|/etc|/var/cache)/(fonts|fontconfig)", r"/sys", r"/dev/dri")
SYSTEM_FILES = (r"/etc/ld\.so\.cache", r"(/etc|/var/lib/dbus)/machine-id", r"/etc/localtime",
                r"/proc/sys/kernel/random/boot_id", r"/dev/(null|urandom)")
# Of its own: the work folder and the one above it, results, the settings, and what the first of the user's editors
# is known by.
OWN_FOLDERS = (re.escape(str(WORK)), re.escape(str(RESULTS)))
OWN_FILES = (re.escape(str(WORK.parent)), re.escape(str(CONFIGURATION)) + r"(/Tindra\.conf(\.lock|\.\w{6})?)?",
             re.escape(str(RUNTIME)) + r"/(TNDEMutex\.lock|\.\w{6})")
EXPECTED = re.compile("|".join([SYSTEM_LIBRARY, *SYSTEM_FILES, *OWN_FILES] +
                               [f"{folder}(/.*)?" for folder in SYSTEM_FOLDERS + OWN_FOLDERS]))


def can_trace():
    try:
        return subprocess.run(["strace", "-o", "/dev/null", "true"], capture_output=True, check=False).returncode == 0
    except FileNotFoundError:
        return False


class Trace:
    """The successful and failed calls of a program and its children."""

    def __init__(self, path):
        lines = self.whole(path.read_text(errors="replace").splitlines())
        # A program that counts its lines leaves the counts where it was built.
        self.calls = [match.groups() for match in map(CALL.match, lines) if match and '.gcda"' not in match[3]]

    @staticmethod
    def whole(lines):
        """A call that another thread's came into stands in two lines."""
        begun = {}
        for line in lines:
            thread = line.split(None, 1)[0]
            if line.endswith(BROKEN_OFF):
                begun[thread] = line[:-len(BROKEN_OFF)]
            elif resumed := RESUMED.match(line):
                yield begun.pop(thread, "") + resumed.group(1)
            else:
                yield line

    def named(self, names):
        """(name, arguments) of the successful ones."""
        return [(name, arguments) for _, name, arguments, result in self.calls
                if name in names and not result.startswith("-")]

    def changed(self):
        """Every path that something was written to, made at or taken away from."""
        opened = [arguments for _, arguments in self.named(OPENS) if WRITING.search(arguments)]
        changed = [arguments for _, arguments in self.named(CHANGES)]
        bound = [arguments for _, arguments in self.named({"bind"}) if "sun_path=" in arguments]
        paths = {path for arguments in opened + changed + bound for path in PATH.findall(arguments)}
        # A file without a name yet is linked to its name by its number.
        return sorted(path for path in paths if not re.fullmatch(r"/proc/self/fd/\d+", path))

    def opened(self):
        """Every path that was opened, for whatever it was."""
        return sorted({os.path.normpath(PATH.search(arguments).group(1)) for _, arguments in self.named(OPENS)})

    def is_own_process(self, path):
        """Whether it tells of a process of the program."""
        parts = Path(path).parts
        return parts[:2] == ("/", "proc") and parts[2:3] and parts[2] in {"self", *(call[0] for call in self.calls)}

    def mentions(self, name):
        return [call for call in self.calls if f"/{name}\"" in call[2]]


class Absent(EditorTest):
    """One capture that is saved, from the start to the end of the program, as the system sees it."""

    @classmethod
    def setUpClass(cls):
        if not can_trace():
            # Where every test must run, none may be left out.
            if os.environ.get("CI") == "true":
                raise AssertionError("the tests of absent libraries need strace and the right to trace")
            raise unittest.SkipTest("strace may not look at programs here")
        cls.folder = tempfile.TemporaryDirectory()

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def traced_run(self):
        output = Path(self.folder.name) / "trace"
        # The leak check of a sanitized build cannot work where somebody traces already.
        environment = os.environ | {"ASAN_OPTIONS": os.environ.get("ASAN_OPTIONS", "") + ":detect_leaks=0"}
        calls = "trace=%file,%network,execve,memfd_create"
        process = subprocess.Popen(["strace", "-f", "-qq", "-s", "4096", "-o", output, "-e", calls, EDITOR],
                                   env=environment, stdin=subprocess.DEVNULL, start_new_session=True)
        self.addCleanup(self.end_group, process)
        self.assertTrue(wait_for(answers), "the editor does not listen")
        self.send("--show")
        self.window_count(1)
        # Not before: the start would bring it back as one that was left over, with a note of that.
        put_capture("a.png", png(60, 40, (200, 0, 0)))
        subprocess.run([EDITOR, "/path", str(WORK / "a.png"), "/point", "10", "10", "/skip", "/autosave"], check=True)
        self.assertTrue(wait_for(lambda: list(RESULTS.iterdir())), "nothing was saved")
        subprocess.run([EDITOR, "/close"], check=True)
        self.assertEqual(process.wait(LIMIT), 0)
        return Trace(output)

    @staticmethod
    def end_group(process):
        if process.poll() is None:
            os.killpg(process.pid, signal.SIGKILL)
            process.wait()

    def test_the_system_sees_nothing_of_the_services(self):
        trace = self.traced_run()
        self.assertGreater(len(trace.calls), 100)
        with self.subTest("what is written"):
            places = [WORK, CONFIGURATION, RESULTS, RUNTIME]
            strangers = [path for path in trace.changed() if path.startswith("/") and path != "/dev/null" and
                         not any(Path(path) == place or place in Path(path).parents or path == str(place.parent)
                                 for place in places)]
            self.assertEqual(strangers, [])
            self.assertTrue(any(str(RESULTS) in path for path in trace.changed()))
        with self.subTest("what is opened"):
            self.assertIn(str(CONFIGURATION / "Tindra.conf"), trace.opened())
            self.assertEqual([path for path in trace.opened()
                              if not EXPECTED.fullmatch(path) and not trace.is_own_process(path)], [])
        with self.subTest("in the runtime folder"):
            names = {Path(path).relative_to(RUNTIME).parts[:1] for path in trace.changed()
                     if RUNTIME in Path(path).parents}
            strangers = [name for name in names if not re.fullmatch(r"TNDEMutex(\.lock)?|\.\w{6}", name[0])]
            self.assertEqual(strangers, [])
        with self.subTest("what is connected to"):
            connections = [arguments for _, arguments in trace.named({"connect"})]
            self.assertTrue(connections)
            self.assertEqual([call for call in connections if "AF_UNIX" not in call], [])
            families = {arguments.split(",")[0] for _, arguments in trace.named({"socket"})}
            self.assertLessEqual(families, {"AF_UNIX", "AF_NETLINK"})
            own = re.compile(r'sun_path=@?"(/tmp/\.X11-unix/X\d+|' + re.escape(str(RUNTIME / "TNDEMutex")) + ')"')
            bus = os.environ["DBUS_SESSION_BUS_ADDRESS"].split("=", 1)[1].split(",")[0]
            self.assertEqual([call for call in connections if not own.search(call) and bus not in call], [])
        with self.subTest("what is started"):
            self.assertEqual(len(trace.named({"execve"})), 1)
            self.assertEqual(trace.named({"memfd_create"}), [])
        for library, looks in SOUGHT.items():
            with self.subTest(library):
                mentions = trace.mentions(f"{library}.so")
                self.assertEqual(len(mentions), looks, mentions)
                self.assertFalse(any(name in OPENS for _, name, _, _ in mentions))
                self.assertEqual(trace.mentions(f"{library}.so.p7s"), [])
        for library in ELSEWHERE:
            with self.subTest(library):
                self.assertEqual(len(trace.mentions(library)), 1)
        with self.subTest("settings of the banners"):
            self.assertEqual(len(trace.mentions("rconfig.json")), 1)


class Present(EditorTest):
    """A copy of the program in a folder with libraries."""

    def setUp(self):
        super().setUp()
        self.folder = Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)
        self.editor = self.folder / PROGRAM.name
        self.take(TRUSTING)
        self.calls = self.folder / "calls"
        self.environment = os.environ | {"TINDRA_TEST_CALLS": str(self.calls)}

    def take(self, program):
        self.editor.unlink(missing_ok=True)
        try:
            os.link(program, self.editor)
        except OSError:
            shutil.copy2(program, self.editor)

    def add(self, library, name=None, signature=".p7s"):
        target = self.folder / f"{name or library}.so"
        shutil.copy(LIBRARIES / f"{library}.so", target)
        shutil.copy(LIBRARIES / f"{library}.so{signature}", f"{target}.p7s")

    def run_to_the_end(self):
        process = subprocess.Popen([self.editor, "/show"], env=self.environment, stdin=subprocess.DEVNULL)
        self.started.append(process)
        self.assertTrue(wait_for(windows), "no window")
        self.send("--close")
        self.assertEqual(self.ended(process), 0)
        return self.calls.read_text().splitlines() if self.calls.exists() else []

    def test_each_is_started_and_ended_in_order(self):
        for library in ("WyvernC", "Ostler", "Quoin", "wyvern2_x86", "Freshet"):
            self.add(library)
        calls = self.run_to_the_end()
        names = [call.split()[0] for call in calls]
        self.assertEqual(names, ["WyvernCProcessInitializeW", "Quoin_Initialize", "Ostler_Initialize",
                                 "Wyvern_InitModuleW", "Quoin_Finalize", "Ostler_Finalize", "Wyvern_ExitModule",
                                 "WyvernCProcessFinalizeW"])
        product, version, texts = calls[0].split()[1:]
        self.assertEqual(product, "Tindra")
        self.assertRegex(version, r"^[\d.]+_C$|^[\d.]+_[a-z]{2}_[A-Z]{2}$")
        self.assertRegex(texts, re.escape(str(self.folder)) + r"/WyvernC_(KR|EN)\.so$")

    def test_one_that_crashes_or_hangs_takes_nothing_along(self):
        for library, name in (("crashes", "Ostler"), ("hangs", "Quoin"), ("crashesatend", "wyvern2_x86")):
            self.add(library, name)
        calls = self.run_to_the_end()
        # Each was tried, and none came into the editor.
        self.assertEqual(sorted({call.split()[0] for call in calls}), ["crashes", "process"])
        self.assertEqual(calls.count("crashes"), 1)

    def test_one_of_another_maker_is_not_even_tried(self):
        self.add("works", "Ostler", ".other.p7s")
        self.add("works", "wyvern2_x86")
        os.unlink(self.folder / "wyvern2_x86.so.p7s")
        self.assertEqual(self.run_to_the_end(), [])

    def test_the_environment_makes_nobody_a_maker(self):
        self.take(PROGRAM)
        self.add("works", "Ostler")
        self.environment |= {"SSL_CERT_FILE": str(MAKERS / "root.pem"), "SSL_CERT_DIR": str(MAKERS)}
        self.assertEqual(self.run_to_the_end(), [])

    def test_settings_of_the_cryptography_bring_nothing_in(self):
        self.add("works", "module")
        settings = self.folder / "settings"
        settings.write_text("openssl_conf = all\n[all]\nproviders = modules\n[modules]\nown = own\n"
                            f"[own]\nmodule = {self.folder / 'module.so'}\nactivate = 1\n")
        self.add("Ostler")
        self.environment["OPENSSL_CONF"] = str(settings)
        self.assertEqual([call.split()[0] for call in self.run_to_the_end()], ["Ostler_Initialize", "Ostler_Finalize"])


if __name__ == "__main__":
    unittest.main(verbosity=2)
