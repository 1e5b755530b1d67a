#!/usr/bin/env python3
"""check-readme runs each marked block, and refuses blocks that nobody runs and commands that fail."""
import contextlib
import importlib.machinery
import io
import os
import subprocess
import sys
import tempfile
import types
import unittest
from pathlib import Path
from unittest import mock

TOOL = Path(__file__).resolve().parents[2] / "tools" / "check-readme"


def block(mark, *lines, language="sh"):
    return "\n".join(([f"<!-- {mark} -->"] if mark else []) + [f"```{language}", *lines, "```", ""])


class CheckReadme(unittest.TestCase):
    def setUp(self):
        self.tool = types.ModuleType("check_readme")
        self.tool.__file__ = str(TOOL)
        importlib.machinery.SourceFileLoader("check_readme", str(TOOL)).exec_module(self.tool)
        self.folder = Path(tempfile.mkdtemp())

    def test_finds_the_blocks_that_are_to_be_run(self):
        text = "# Title\n\n" + block("run: first", "one", "", "two  # why") + "\ntext\n\n" + block("run: second", "three")
        self.assertEqual(self.tool.blocks(text), ([], [("run", "first", ["one", "two  # why"]), ("run", "second", ["three"])]))

    def test_a_block_that_nobody_runs_is_a_problem(self):
        for mark in ("", "run", "run: ", "note: x", "run by: tools/no-such-script", "run by: README.md"):
            with self.subTest(mark=mark):
                problems, found = self.tool.blocks("text\n" + block(mark, "one"))
                self.assertEqual(found, [])
                self.assertEqual(len(problems), 1)
                self.assertIn("one", problems[0])

    def test_a_mark_counts_only_right_before_its_block(self):
        problems, found = self.tool.blocks("<!-- run: x -->\n\n" + block("", "one"))
        self.assertEqual((len(problems), found), (1, []))

    def test_a_block_that_a_script_runs_is_left_to_it(self):
        self.assertEqual(self.tool.blocks(block("run by: ./test", "./test")), ([], []))
        self.assertEqual(self.tool.blocks(block("run by: tools/check-package --fresh", "apt")), ([], []))

    def test_a_block_for_a_copy_of_the_system_has_its_kind(self):
        kind = "run on a copy of the system"
        self.assertEqual(self.tool.blocks(block(f"{kind}: install", "apt")), ([], [(kind, "install", ["apt"])]))

    def test_blocks_of_other_languages_are_no_commands(self):
        self.assertEqual(self.tool.blocks(block("", "int x;", language="cpp") + block("", "x", language="text")), ([], []))

    def test_no_spelling_of_a_block_hides_commands(self):
        for language in ("", "bash", "console", "shell", "python"):
            for mark in ("", "run: x", "run by: ./test"):
                with self.subTest(language=language, mark=mark):
                    problems, found = self.tool.blocks(block(mark, "one", language=language))
                    self.assertEqual((len(problems), found), (1, []))
        for text in ("~~~sh\none\n~~~\n", "- x\n\n  ```sh\n  one\n  ```\n", "> ```sh\n> one\n> ```\n",
                     "```sh\none\n", "````sh\none\n````\n"):
            with self.subTest(text=text):
                problems, found = self.tool.blocks(block("run: good", "fine") + text)
                self.assertTrue(problems)

    def test_without_a_display_the_told_pictures_are_looked_at(self):
        def picture(name, *options):
            path = self.folder / name
            subprocess.run(["convert", "-size", "40x40", *options, path], check=True)
            return path

        ring = picture("ring.png", "xc:white", "-fill", "red", "-draw", "rectangle 5,5 20,20")
        plain = picture("plain.png", "xc:white")
        torn = self.folder / "torn.png"
        torn.write_bytes(b"no picture")
        for saved, window, right in ((ring, plain, True), (plain, plain, False), (ring, torn, False), (torn, plain, False),
                                     (ring, self.folder / "missing.png", False)):
            with self.subTest(saved=saved.name, window=window.name):
                wrong = self.tool.wrong_in(f"run: building\nsaved:  {saved}\nwindow: {window}\n")
                self.assertEqual(wrong == "", right, wrong)
        self.assertTrue(self.tool.wrong_in(f"saved:  {ring}\n"))

    def test_what_changes_the_system_is_run_on_a_copy(self):
        if os.geteuid() != 0:
            if os.environ.get("CI") == "true":
                self.fail("a copy of the system needs root")
            self.skipTest("a copy of the system needs root")
        (self.folder / "tindra-editor_1_all.deb").write_text("package")
        trace = f"trace-of-{os.getpid()}"
        lines = ["grep package ./build/release/tindra-editor_*.deb  # a comment", f"sudo touch /usr/share/{trace}",
                 f"test -e /usr/share/{trace}"]
        with contextlib.redirect_stdout(io.StringIO()) as printed:
            self.assertEqual(self.tool.run_on_copy(lines, self.folder), 0)
        self.assertIn(f"$ {lines[2]}", printed.getvalue())
        self.assertFalse(Path("/usr/share", trace).exists())
        with contextlib.redirect_stdout(io.StringIO()) as printed:
            self.assertEqual(self.tool.run_on_copy(["echo complaint; (exit 3)", f"touch /{trace}"], self.folder), 3)
        self.assertIn("complaint", printed.getvalue())

    def run_lines(self, *lines):
        """The exit code and what is printed; each time with a home of its own."""
        home = Path(tempfile.mkdtemp(dir=self.folder))
        os.environ.update(HOME=str(home), TMPDIR=str(home), XDG_RUNTIME_DIR=str(home))
        printed = io.StringIO()
        with contextlib.redirect_stdout(printed):
            code = self.tool.run_lines(lines)
        return code, printed.getvalue()

    def test_lines_run_in_the_tree_with_a_picture(self):
        code, printed = self.run_lines("test -s ~/Pictures/shot.png", "test -x tools/check-readme  # a comment")
        self.assertEqual(code, 0, printed)

    def test_where_no_copy_can_be_made_only_ci_fails(self):
        answer = types.SimpleNamespace(returncode=77, stdout="", stderr="needs root")
        for environment, code in (({}, 0), ({"CI": "true"}, 77)):
            with (mock.patch.object(self.tool.subprocess, "run", return_value=answer),
                  mock.patch.dict(os.environ, environment),
                  contextlib.redirect_stdout(io.StringIO()) as printed):
                if not environment:
                    os.environ.pop("CI", None)
                self.assertEqual(self.tool.run_on_copy(["apt"], self.folder), code)
            self.assertIn("needs root", printed.getvalue())

    def test_the_first_line_that_fails_ends_the_block(self):
        code, printed = self.run_lines("true", "echo complaint; exit 3", "touch ~/late")
        self.assertEqual(code, 1)
        self.assertIn("complaint", printed)
        self.assertIn("code 3: echo complaint; exit 3", printed)
        self.assertFalse((Path.home() / "late").exists())

    def test_a_failed_block_fails_the_check(self):
        readme = self.folder / "README.md"
        readme.write_text(block("run: good", "one") + block("run: bad", "two"))
        (self.folder / "bin").mkdir()
        (self.folder / "bin/tindra-editor").touch()
        self.tool.README = readme
        for failing, code in (("none", 0), ("two", 1)):
            self.tool.RUNNERS["run"] = lambda lines, _build, failing=failing: int(lines == [failing])
            with (contextlib.redirect_stdout(io.StringIO()) as printed,
                  mock.patch.object(self.tool.shutil, "which", return_value="Xvfb")):
                self.assertEqual(self.tool.main([str(self.folder)]), code)
            self.assertEqual("bad: a command fails" in printed.getvalue(), code == 1)


if __name__ == "__main__":
    sys.exit(unittest.main())
