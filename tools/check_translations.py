#!/usr/bin/env python3
"""Checks the Korean texts against the sources.

Every text of src/ has a finished entry and every entry has a text. A translation keeps what the program relies
on: place-holders, the letter of a shortcut, tags, line breaks, file patterns. And only the translation speaks
Korean, so that an editor that is built in English shows English alone.

usage: check_translations.py [FOLDER]    prints one line a violation; exit code 1 when there is one
"""
import re
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree
from collections import Counter
from pathlib import Path

TRANSLATIONS = "resources/translations"
KOREAN = f"{TRANSLATIONS}/TindraEditor_ko.ts"
# Where texts stand that the program shows. Pictures in them are read too, as SVG may hold text.
SPEAKING = {"src": {".h", ".cpp"}, "resources": {".qss", ".ini", ".qrc", ".svg"}}

HANGUL = re.compile(r"[\u1100-\u11ff\u3130-\u318f\uac00-\ud7a3]|\\u(?:a[c-f]|[bc][0-9a-f]|d[0-6])[0-9a-f]{2}", re.I)

# What a translation must have as often as its source, by what a reader calls it.
KEPT = {
    "place-holders": re.compile(r"%L?\d{1,2}|%L?n"),
    "shortcut letter": re.compile(r"&(?:&|(\w))"),
    "tags": re.compile(r"</?[a-zA-Z][^>]*>"),
    "line breaks": re.compile(r"\n\t*"),
    "file patterns": re.compile(r"\*\.\w+"),
    "keys": re.compile(r"\((?:Ctrl|Shift|Alt) [^)]*\)"),
    "parts": re.compile(r";;"),
}


class Message:
    def __init__(self, context, element):
        self.source = element.findtext("source") or ""
        translation = element.find("translation")
        self.state = translation.get("type")
        forms = translation.findall("numerusform") or [translation]
        self.forms = [form.text or "" for form in forms]
        self.key = (context, self.source, element.findtext("comment") or "")
        self.name = f"{context}: {self.source!r}"


def read(path):
    """The messages of a .ts file."""
    root = ElementTree.parse(path).getroot()
    return [Message(context.findtext("name"), element)
            for context in root.iter("context") for element in context.iter("message")]


def kept(pattern, text):
    """How often each thing of one kind stands in a text. Order is the translator's business."""
    return Counter(match[match.lastindex or 0].upper() for match in pattern.finditer(text) if match[0] != "&&")


def check_message(message):
    """What is wrong with one entry, a list of texts."""
    if message.state:
        return [f"{message.name} is {message.state}"]
    problems = []
    for form in message.forms:
        if not form.strip():
            problems.append(f"{message.name} has no translation")
            continue
        problems += [f"{message.name}: other {what}" for what, pattern in KEPT.items()
                     if kept(pattern, message.source) != kept(pattern, form)]
        if re.match(r"\s*", message.source)[0] != re.match(r"\s*", form)[0] or \
                re.search(r"\s*$", message.source)[0] != re.search(r"\s*$", form)[0]:
            problems.append(f"{message.name}: other blanks around it")
    return problems


def texts_of_sources(top):
    """The messages that the sources hold now, and what the collector complains about."""
    with tempfile.TemporaryDirectory() as folder:
        fresh = Path(folder) / "fresh.ts"
        run = subprocess.run(["lupdate", "-silent", "-locations", "none", "src", "-ts", str(fresh)], cwd=top,
                             stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
        complaints = [f"lupdate: {line}" for line in run.stdout.splitlines() if line.strip()]
        return (read(fresh) if fresh.exists() else []), complaints


def check_entries(top):
    """Entries that are missing, left over, unfinished or wrong."""
    if not (top / KOREAN).exists():
        return [f"{KOREAN} is missing"]
    entries = {message.key: message for message in read(top / KOREAN)}
    wanted, problems = texts_of_sources(top)
    wanted = {message.key: message for message in wanted}
    problems += [f"{message.name} has no entry" for key, message in wanted.items() if key not in entries]
    problems += [f"{message.name} is in no source" for key, message in entries.items() if key not in wanted]
    for message in entries.values():
        problems += check_message(message)
    return problems


def check_english(top):
    """Korean outside the translation."""
    problems = []
    for folder, endings in SPEAKING.items():
        for path in sorted((top / folder).rglob("*")):
            name = path.relative_to(top).as_posix()
            if path.suffix not in endings or name.startswith(TRANSLATIONS):
                continue
            for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
                if HANGUL.search(line):
                    problems.append(f"{name}:{number}: Korean outside the translation")
    return problems


def check(top):
    """All violations below `top`, one text each."""
    return check_entries(top) + check_english(top)


def main():
    default = Path(__file__).resolve().parent.parent
    problems = check(Path(sys.argv[1]).resolve() if len(sys.argv) > 1 else default)
    print("\n".join(problems) or "The translation is whole.")
    if problems:
        print("tools/update-translations brings the entries up to date; the Korean goes into " + KOREAN)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
