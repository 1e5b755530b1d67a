#!/usr/bin/env python3
"""line-coverage counts each line once, sums up by module, names what no test reached, and refuses too little."""
import importlib.machinery
import sys
import types
import unittest
from pathlib import Path

TOOLS = Path(__file__).resolve().parents[2] / "tools"
sys.path.insert(0, str(TOOLS))

RANKS = {"ui": 3, "preferences": 1, "preferences/dialog": 6}


def load():
    module = types.ModuleType("line_coverage")
    module.__file__ = str(TOOLS / "line-coverage")
    importlib.machinery.SourceFileLoader("line_coverage", module.__file__).exec_module(module)
    return module


line_coverage = load()


def lines(run, missed):
    """So many lines that ran, and behind them so many that did not."""
    return {line: 7 if line <= run else 0 for line in range(1, run + missed + 1)}


class LineCoverage(unittest.TestCase):
    def rows(self, files):
        """The figures by name, and whether they suffice."""
        text, enough = line_coverage.report(files, RANKS)
        return {part[0]: part[1:] for part in map(str.split, text.splitlines()) if part}, enough

    def test_sums_up_by_module_and_in_total(self):
        rows, _ = self.rows({"ui/a.cpp": lines(30, 10), "ui/b.h": lines(10, 0),
                             "preferences/c.cpp": lines(40, 0), "preferences/dialog/d.cpp": lines(9, 1)})
        self.assertEqual(rows["src/ui"], ["50", "80.0", "%"])
        self.assertEqual(rows["src/preferences"], ["40", "100.0", "%"])
        self.assertEqual(rows["src/preferences/dialog"], ["10", "90.0", "%"])
        self.assertEqual(rows["total"], ["100", "89.0", "%"])

    def test_suffices_from_ninety_per_cent(self):
        for run, enough in ((90, True), (89, False), (100, True), (0, False)):
            with self.subTest(run):
                self.assertEqual(self.rows({"ui/a.cpp": lines(run, 100 - run)})[1], enough)

    def test_nothing_measured_does_not_suffice(self):
        self.assertFalse(line_coverage.report({}, RANKS)[1])

    def test_names_the_missed_lines_of_a_file_that_lacks_tests(self):
        text, enough = line_coverage.report({"ui/poor.cpp": {3: 1, 4: 0, 6: 0, 7: 2, 12: 0}, "ui/fair.cpp": lines(85, 15),
                                             "ui/rich.cpp": lines(99, 0)}, RANKS)
        self.assertIn("src/ui/poor.cpp", text)
        self.assertIn("not run: 4-6, 12\n", text + "\n")
        self.assertNotIn("fair.cpp", text)
        self.assertTrue(enough)


if __name__ == "__main__":
    unittest.main()
