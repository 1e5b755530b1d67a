#!/usr/bin/env python3
"""check_translations.py finds entries that are missing, left over, unfinished or unlike their source."""
import sys
import tempfile
import unittest
from pathlib import Path
from xml.sax.saxutils import escape

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tools"))
import check_translations  # noqa: E402  (the path comes first)

SOURCE = """
class Sample : public QObject {{
    Q_OBJECT
    void show() {{ {} }}
}};
"""
# Spelled by numbers, so that the samples below stand apart from what this file itself says.
SAVE = "\uc800\uc7a5"


def call(text):
    return 'tr("{}");'.format(text.replace("\n", "\\n").replace("\t", "\\t"))


def entry(source, translation, state=""):
    return "<message><source>{}</source><translation{}>{}</translation></message>".format(
        escape(source), f' type="{state}"' if state else "", escape(translation))


class CheckTranslations(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.top = Path(folder.name)
        (self.top / "src").mkdir()
        (self.top / "resources/translations").mkdir(parents=True)

    def problems(self, calls, entries):
        (self.top / "src/sample.cpp").write_text(SOURCE.format("\n".join(calls)), encoding="utf-8")
        (self.top / check_translations.KOREAN).write_text(
            '<?xml version="1.0" encoding="utf-8"?><!DOCTYPE TS><TS version="2.1" language="ko" sourcelanguage="en">'
            "<context><name>Sample</name>" + "".join(entries) + "</context></TS>", encoding="utf-8")
        return check_translations.check(self.top)

    def translated(self, source, translation, state=""):
        return self.problems([call(source)], [entry(source, translation, state)])

    def test_a_whole_translation_is_fine(self):
        self.assertEqual(self.translated("save", SAVE), [])

    def test_the_tree_without_a_translation_is_refused(self):
        self.assertEqual(check_translations.check(self.top), ["resources/translations/TindraEditor_ko.ts is missing"])

    def test_a_text_without_an_entry_is_missing(self):
        self.assertEqual(self.problems([call("save"), call("copy")], [entry("save", SAVE)]),
                         ["Sample: 'copy' has no entry"])

    def test_the_same_text_in_another_context_is_missing(self):
        problems = self.problems([call("save"), '} void other() { QCoreApplication::translate("Other", "save");'],
                                 [entry("save", SAVE)])
        self.assertEqual(problems, ["Other: 'save' has no entry"])

    def test_an_entry_without_a_text_is_left_over(self):
        self.assertEqual(self.problems([call("save")], [entry("save", SAVE), entry("copy", SAVE)]),
                         ["Sample: 'copy' is in no source"])

    def test_states_other_than_finished_are_refused(self):
        for state in ("unfinished", "vanished", "obsolete"):
            with self.subTest(state):
                self.assertEqual(self.translated("save", SAVE, state), [f"Sample: 'save' is {state}"])

    def test_an_empty_translation_is_refused(self):
        for translation in ("", " "):
            with self.subTest(translation):
                self.assertEqual(self.translated("save", translation), ["Sample: 'save' has no translation"])

    def test_keeps_what_the_program_relies_on(self):
        for what, source, good, bad in (
                ("place-holders", "%0 of %1", SAVE + " %1 / %0", SAVE + " %0"),
                ("place-holders", "%1 of %1", SAVE + " %1 %1", SAVE + " %1"),
                ("place-holders", "%L1 files", SAVE + " %L1", SAVE + " %1"),
                ("place-holders", "%n files", SAVE + " %n", SAVE),
                ("place-holders", "files", SAVE, SAVE + " %1"),
                ("shortcut letter", "&Save", SAVE + "(&S)", SAVE),
                ("shortcut letter", "&Save", SAVE + "(&s)", SAVE + "(&V)"),
                ("shortcut letter", "Save && print", SAVE + " && " + SAVE, SAVE + "(&S)"),
                ("tags", "<b>save</b>", f"<b>{SAVE}</b>", SAVE),
                ("tags", "<b>save</b>", f"<b>{SAVE}</b>", f"<i>{SAVE}</i>"),
                ("line breaks", "save\nnow", SAVE + "\n" + SAVE, SAVE + " " + SAVE),
                ("line breaks", "save\n\t\tnow", SAVE + "\n\t\t" + SAVE, SAVE + "\n" + SAVE),
                ("file patterns", "png (*.png)", SAVE + " (*.png)", SAVE + " (*.pgn)"),
                ("parts", "a (*.a);;b (*.b)", SAVE + " (*.a);;" + SAVE + " (*.b)", SAVE + " (*.a);" + SAVE + " (*.b)"),
                ("keys", "save (Ctrl + S)", SAVE + " (Ctrl + S)", SAVE + " (Ctrl + T)")):
            with self.subTest(source=source, bad=bad):
                self.assertEqual(self.translated(source, good), [])
                self.assertEqual(self.translated(source, bad), [f"Sample: {source!r}: other {what}"])

    def test_keeps_the_blanks_around_a_text(self):
        self.assertEqual(self.translated("save ", SAVE + " "), [])
        self.assertEqual(self.translated("save ", SAVE), ["Sample: 'save ': other blanks around it"])
        self.assertEqual(self.translated("save", " " + SAVE), ["Sample: 'save': other blanks around it"])

    def test_a_class_whose_texts_get_lost_is_told(self):
        (self.top / "src/lost.cpp").write_text('class Lost { void show() { tr("save"); } };', encoding="utf-8")
        problems = self.problems([call("save")], [entry("save", SAVE)])
        self.assertTrue(any(problem.startswith("lupdate: ") and "Q_OBJECT" in problem for problem in problems), problems)

    def test_sources_and_resources_speak_english(self):
        for name, line in (("src/a.cpp", f'show("{SAVE}");'), ("src/a.h", f"/// {SAVE}"),
                           ("src/a.cpp", 'show(u"\\uC800");'), ("resources/style/a.qss", f"/* {SAVE} */"),
                           ("resources/res/a.svg", f"<text>{SAVE}</text>")):
            with self.subTest(name=name, line=line):
                path = self.top / name
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text("\n" + line + "\n", encoding="utf-8")
                self.assertEqual(self.translated("save", SAVE), [f"{name}:2: Korean outside the translation"])
                path.unlink()


if __name__ == "__main__":
    unittest.main()
