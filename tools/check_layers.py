#!/usr/bin/env python3
"""Refuses includes of src/ that point upwards or sideways in the layers.

A module's rank stands in its CMakeLists.txt (tindra_module(NAME … RANK …)); CMake checks the declared
dependencies, this script the includes, which compile whether declared or not.

usage: check_layers.py [SOURCE FOLDER]    prints one line a violation; exit code 1 when there is one
"""
import re
import sys
from pathlib import Path

# The figure panel below the canvas needs the tool numbers, so this one enum stands outside the ranks.
LEAVES = {"canvas/shapetype.h"}

MODULE = re.compile(r"tindra_module\(\s*NAME\s+(\S+)\s+RANK\s+(\d+)")
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.MULTILINE)
OPERATING_SYSTEM = re.compile(
    r"(X11|xcb|cups|openssl|sys|netinet|arpa|linux|dbus)/|QtDBus|QDBus|QtX11Extras|QX11Info|"
    r"(unistd|fcntl|signal|csignal|pwd|grp|poll|dlfcn|pthread|semaphore|termios|syslog)(\.h)?$")
SYSTEM_SWITCH = re.compile(r"\bQ_(OS|WS)_[A-Z]+")
MESSAGE_BOX = re.compile(r"(^|/)q?messagebox(\.h)?$|messagedialog\.h$", re.IGNORECASE)
SPEECHLESS = ("services", "ipc")


def read_ranks(src):
    """The rank of each module, from the build files."""
    return {name: int(rank) for build_file in sorted(src.rglob("CMakeLists.txt"))
            for name, rank in MODULE.findall(build_file.read_text(encoding="utf-8"))}


def includes(path):
    """(line, is quoted, name) of each include of a file."""
    text = path.read_text(encoding="utf-8")
    return [(text.count("\n", 0, match.start(2)) + 1, match[1] == '"', match[2])
            for match in INCLUDE.finditer(text)]


def module_of(name, ranks):
    """The module that a file such as "canvas/items/x.h" belongs to: the longest that fits."""
    fitting = [module for module in ranks if name.startswith(module + "/")]
    return max(fitting, key=len, default=None)


def check_include(name, included, quoted, src, ranks):
    """What is wrong with one include of the file `name`, or None."""
    own = module_of(name, ranks)
    if included.endswith(".moc"):
        return None
    if own != "platform" and OPERATING_SYSTEM.match(included):
        return f"{included} belongs to the operating system, which only platform/ may use"
    if own in SPEECHLESS and MESSAGE_BOX.search(included):
        return f"{own} reports to its caller and shows no message box, but includes {included}"
    if name.startswith("canvas/items/") and included == "canvas/editor.h":
        return "an item knows its scene by signals only, but includes canvas/editor.h"
    if not (src / included).is_file():
        return f"{included} is not a path below src/" if quoted else None
    target = module_of(included, ranks)
    if target == own or included in LEAVES:
        return None
    if target is None or ranks[target] >= ranks[own]:
        rank = "in no module" if target is None else f"of rank {ranks[target]}"
        return f"{own} (rank {ranks[own]}) includes {included}, {rank}"
    return None


def check(src):
    """All violations below `src`, one text each."""
    ranks = read_ranks(src)
    problems = []
    for path in sorted([*src.rglob("*.h"), *src.rglob("*.cpp")]):
        name = path.relative_to(src).as_posix()
        own = module_of(name, ranks)
        if own is None:
            problems.append(f"{name}: belongs to no module")
            continue
        for line, quoted, included in includes(path):
            problem = check_include(name, included, quoted, src, ranks)
            if problem:
                problems.append(f"{name}:{line}: {problem}")
        switch = SYSTEM_SWITCH.search(path.read_text(encoding="utf-8"))
        if switch and own != "platform":
            problems.append(f"{name}: {switch[0]} asks for the operating system outside platform/")
    return problems


def main():
    default = Path(__file__).resolve().parent.parent / "src"
    problems = check(Path(sys.argv[1]) if len(sys.argv) > 1 else default)
    print("\n".join(problems) or "The layers hold.")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
