#!/usr/bin/env python3
"""check_layers.py finds each kind of violation, and nothing in a tree that keeps the rules."""
import sys
import tempfile
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tools"))
import check_layers  # noqa: E402  (the path comes first)

RANKS = {"platform": 0, "preferences": 1, "services": 1, "ipc": 2, "ui": 3, "popups": 4, "output": 4,
         "canvas": 5, "preferences/dialog": 6}


class CheckLayers(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.src = Path(self.folder.name)
        for module, rank in RANKS.items():
            self.write(f"{module}/CMakeLists.txt", f"tindra_module(NAME {module} RANK {rank}\n  HEADERS a.h)\n")
            self.write(f"{module}/a.h", "#pragma once\n")
        self.write("canvas/editor.h", "#pragma once\n")
        self.write("canvas/shapetype.h", "#pragma once\n")

    def write(self, name, text):
        path = self.src / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")

    def problems(self, name, text):
        self.write(name, text)
        return check_layers.check(self.src)

    def test_accepts(self):
        rows = {
            "lower layer": ("canvas/x.cpp", '#include "output/a.h"'),
            "own module": ("canvas/x.cpp", '#include "canvas/editor.h"'),
            "nested module uses the store": ("preferences/dialog/x.cpp", '#include "preferences/a.h"'),
            "the leaf of the tool numbers": ("popups/x.h", '#include "canvas/shapetype.h"'),
            "Qt and the standard library": ("ipc/x.cpp", "#include <QString>\n#include <memory>\n#include <cmath>"),
            "system headers in the platform": ("platform/linux/x.cpp", "#include <unistd.h>\n#include <X11/Xlib.h>"),
            "system switch in the platform": ("platform/x.cpp", "#ifdef Q_OS_LINUX\n#endif"),
            "what moc makes": ("ipc/x.cpp", '#include "x.moc"'),
            "a message box above the services": ("ui/x.cpp", "#include <QMessageBox>"),
        }
        for case, (name, text) in rows.items():
            with self.subTest(case):
                self.assertEqual(self.problems(name, text), [])
                (self.src / name).unlink()

    def test_refuses(self):
        rows = {
            "upwards": ("ui/x.cpp", '#include "canvas/editor.h"', "rank 5"),
            "sideways": ("output/x.h", '#include "popups/a.h"', "rank 4"),
            "upwards in angle brackets": ("ui/x.cpp", "#include <canvas/editor.h>", "rank 5"),
            "upwards, spaced out": ("ui/x.cpp", '  #  include  "canvas/editor.h"', "rank 5"),
            "store uses its dialog": ("preferences/x.cpp", '#include "preferences/dialog/a.h"', "rank 6"),
            "a leaf that is none": ("popups/x.h", '#include "canvas/a.h"', "rank 5"),
            "no path by module": ("canvas/x.cpp", '#include "editor.h"', "not a path"),
            "item knows the scene": ("canvas/items/x.h", '#include "canvas/editor.h"', "item"),
            "POSIX": ("ipc/x.cpp", "#include <unistd.h>", "operating system"),
            "POSIX below sys": ("services/x.cpp", "#include <sys/stat.h>", "operating system"),
            "X11": ("ui/x.cpp", "#include <X11/Xlib.h>", "operating system"),
            "X11 by Qt": ("ui/x.cpp", "#include <QX11Info>", "operating system"),
            "D-Bus": ("canvas/x.cpp", "#include <QDBusConnection>", "operating system"),
            "D-Bus by its module": ("canvas/x.cpp", "#include <QtDBus/QDBusMessage>", "operating system"),
            "CUPS": ("output/x.cpp", "#include <cups/cups.h>", "operating system"),
            "signals": ("ui/x.cpp", "#include <csignal>", "operating system"),
            "system switch": ("ui/x.cpp", "#if defined(Q_OS_LINUX)\n#endif", "Q_OS_LINUX"),
            "services speak": ("services/x.cpp", "#include <QMessageBox>", "message box"),
            "services speak by Qt's module": ("services/x.cpp", "#include <QtWidgets/QMessageBox>", "message box"),
            "ipc speaks through ui": ("ipc/x.cpp", '#include "ui/messagedialog.h"', "message box"),
            "no module": ("stray/x.cpp", "", "no module"),
        }
        for case, (name, text, reason) in rows.items():
            with self.subTest(case):
                problems = self.problems(name, text)
                self.assertEqual(len(problems), 1, problems)
                self.assertTrue(problems[0].startswith(name), problems)
                self.assertIn(reason, problems[0])
                (self.src / name).unlink()

    def test_tells_the_line(self):
        problems = self.problems("ui/x.cpp", '#include "ui/a.h"\n\n#include "canvas/editor.h"\n')
        self.assertTrue(problems[0].startswith("ui/x.cpp:3:"), problems)


if __name__ == "__main__":
    unittest.main()
