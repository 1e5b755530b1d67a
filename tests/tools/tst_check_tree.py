#!/usr/bin/env python3
"""check_tree.py finds long sources, paths of somebody's machine, and dead links."""
import sys
import tempfile
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tools"))
import check_tree  # noqa: E402  (the path comes first)


class CheckTree(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.top = Path(self.folder.name)

    def problems(self, name, text):
        path = self.top / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")
        return check_tree.check(self.top)

    def test_a_source_of_the_longest_length_is_fine(self):
        self.assertEqual(self.problems("src/a.cpp", "\n" * 600), [])

    def test_a_longer_source_is_not(self):
        self.assertEqual(self.problems("src/a.cpp", "\n" * 601), ["src/a.cpp: 601 lines, more than 600"])

    def test_only_sources_have_a_longest_length(self):
        self.assertEqual(self.problems("docs/a.md", "\n" * 601), [])

    def test_refuses_folders_of_one_machine(self):
        # Put together here, so that this file keeps the rule too.
        for text in ("cd {}".format("/ro" + "ot/x"), "cd {}".format("/ho" + "me/me/x"),
                     "cd {}".format("/Us" + "ers/me/x")):
            for name in ("src/a.h", "docs/a.md", "tools/a", "CMakeLists.txt"):
                with self.subTest(text=text, name=name):
                    problems = self.problems(name, "first\n" + text + "\n")
                    self.assertEqual(len(problems), 1, problems)
                    self.assertTrue(problems[0].startswith(name + ":2:"), problems)
                    (self.top / name).unlink()

    def test_accepts_what_only_looks_alike(self):
        for text in ("$HOME/x", "build/root/x", "~/root/x", "/usr/share/x", "/home"):
            with self.subTest(text):
                self.assertEqual(self.problems("docs/a.md", text), [])

    def test_links_lead_somewhere(self):
        self.problems("docs/b.md", "")
        self.assertEqual(self.problems("docs/a.md", "[b](b.md) [c](../docs/b.md) [e](https://e.example/x#y)"), [])
        self.assertEqual(self.problems("docs/a.md", "[x](x.md)"), ["docs/a.md:1: the link leads nowhere: x.md"])
        self.assertEqual(self.problems("docs/a.md", '<img alt="" src="x.png">'),
                         ["docs/a.md:1: the link leads nowhere: x.png"])

    def test_links_to_headings_lead_to_one(self):
        self.problems("docs/b.md", "# First, *the* `word` of 2_3\n")
        good = "[b](b.md#first-the-word-of-2_3)\n## Here, too\n[here](#here-too)\n"
        self.assertEqual(self.problems("docs/a.md", good), [])
        for link in ("b.md#first", "#there", "b.md#here-too"):
            with self.subTest(link=link):
                self.assertEqual(self.problems("docs/a.md", f"[x]({link})\n## Here, too\n"),
                                 [f"docs/a.md:1: the link leads nowhere: {link}"])

    def test_each_picture_is_shown(self):
        for name in ("one.png", "two.svg", "sheet-100.png", "sheet-200.png", "lost.png", "other-150.png"):
            self.problems(f"docs/images/{name}", "")
        problems = self.problems("README.md", '![a](docs/images/one.png) <img src="docs/images/two.svg">\n'
                                 "![c](docs/images/sheet-100.png)\n")
        self.assertEqual(problems, ["docs/images/lost.png: no document shows it",
                                    "docs/images/other-150.png: no document shows it"])

    def test_what_the_build_makes_is_not_looked_at(self):
        self.assertEqual(self.problems("build/dev/src/a.cpp", "\n" * 601), [])


if __name__ == "__main__":
    unittest.main()
