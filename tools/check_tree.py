#!/usr/bin/env python3
"""Checks what no compiler sees: the length of the sources and where the texts lead.

A reader has this tree and nothing else. So no text names a folder of somebody's machine, the links between the
documents lead somewhere, and each picture of theirs is shown by one.

usage: check_tree.py [FOLDER]    prints one line a violation; exit code 1 when there is one
"""
import re
import sys
from pathlib import Path

LONGEST_SOURCE = 600
SOURCES = {".h", ".cpp"}
TEXTS = SOURCES | {".py", ".sh", ".md", ".txt", ".cmake", ".json", ".qss", ".ini", ".ts", ".xml", ".desktop", ""}
GENERATED = {"build", ".git", "__pycache__"}

MACHINE_PATH = re.compile(r"(?<![\w.$}/~])/(?:home/\w+|root|work|Users/\w+)/")
LINK = re.compile(r"\]\(([^)#\s]*)(?:#([^)]*))?\)|<img[^>]*\bsrc=\"([^\"]+)\"")
REMOTE = re.compile(r"[a-z]+:")
HEADING = re.compile(r"^#+ (.*?)\s*$", re.MULTILINE)
PICTURES = "docs/images"
# A sheet is shown at one scale; the document says where the others are.
OTHER_SCALE = re.compile(r"-(?:150|200)(?=\.png$)")


def files(top):
    """All files of the tree but what the build makes."""
    for path in sorted(top.rglob("*")):
        parts = path.relative_to(top).parts
        if path.is_file() and not GENERATED.intersection(parts):
            yield path


def check_file(path, top):
    """What is wrong with one file, a list of texts."""
    name = path.relative_to(top).as_posix()
    if path.suffix not in TEXTS or path == Path(__file__).resolve():
        return []
    try:
        text = path.read_text(encoding="utf-8")
    except UnicodeDecodeError:
        return []
    problems = []
    lines = text.splitlines()
    if path.suffix in SOURCES and name.startswith("src/") and len(lines) > LONGEST_SOURCE:
        problems.append(f"{name}: {len(lines)} lines, more than {LONGEST_SOURCE}")
    for number, line in enumerate(lines, 1):
        for folder in MACHINE_PATH.findall(line):
            problems.append(f"{name}:{number}: \"{folder}\" is a folder of one machine")
        if path.suffix == ".md":
            problems += [f"{name}:{number}: the link leads nowhere: {link}" for link in dead_links(path, line)]
    return problems


def anchors(document):
    """The names by which the headings of a document are linked to."""
    headings = HEADING.findall(document.read_text(encoding="utf-8"))
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in headings}


def dead_links(document, line):
    """The links of a line to files, or headings of documents, that do not exist."""
    for file, anchor, picture in LINK.findall(line):
        target = file or picture
        if REMOTE.match(target):
            continue
        path = document.parent / target if target else document
        if not path.exists() or anchor and path.suffix == ".md" and anchor not in anchors(path):
            yield f"{target}#{anchor}" if anchor else target


def unused_pictures(top):
    """The pictures of the documents that none of them shows."""
    shown = set()
    for path in files(top):
        if path.suffix == ".md":
            for file, _, picture in LINK.findall(path.read_text(encoding="utf-8")):
                if file or picture:
                    shown.add((path.parent / (file or picture)).resolve())
    for path in files(top):
        seen_as = path.parent / OTHER_SCALE.sub("-100", path.name)
        if path.relative_to(top).parent.as_posix() == PICTURES and seen_as.resolve() not in shown:
            yield f"{path.relative_to(top).as_posix()}: no document shows it"


def check(top):
    """All violations below `top`, one text each."""
    return [problem for path in files(top) for problem in check_file(path, top)] + list(unused_pictures(top))


def main():
    default = Path(__file__).resolve().parent.parent
    problems = check(Path(sys.argv[1]).resolve() if len(sys.argv) > 1 else default)
    print("\n".join(problems) or "The tree is in order.")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
