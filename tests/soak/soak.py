#!/usr/bin/env python3
"""Captures without end through one editor, with everything that a user does in between; then what it holds is judged.

usage: soak.py EDITOR [CAPTURES] [SEED]
For tests/support/isolated, which ./test --soak starts; README.md beside this tells what is measured.
TINDRA_TEST_PICTURES: where a picture of the screen is left when something goes wrong.
"""
import os
import random
import subprocess
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "smoke"))
# Only now; the first takes the editor from the arguments.
from editorsession import EDITOR, RESULTS, RUNTIME, SOCKET, answers, tell, wait_for, write_settings
from captureside import CAPTURE_WANTED, PROGRAM_ENDS, SILENT_CAPTURE_SAVED, CaptureSide
from census import Census, blocks_made_by, descriptors, shared_mappings
from session import ROWS, SETTINGS, Session, words
from user import NEVER, wait

CAPTURES, SEED = 2000, 4711
STAGE = 100  # captures between two looks
EMPTIES, JUDGES = 200, 600  # captures between two empty lists, and from the first of them between two that are judged
LONG = 400  # captures from which on the bound is strict
SHORT_BEGIN = 20  # captures of a short form before its first look
SHORT_REST = 0.1  # of the captures there are followed by something that a user does
SHORTEST = SHORT_BEGIN + ROWS  # captures of a form in which there is time for everything
GROWTH = 10.0  # MiB
# Left alone, the toolkit lets go what it kept in case of need: the threads of a batch after half a minute, then every
# ten seconds a quarter of its drawn pictures, of which it keeps 10 MiB while there is something to do.
LEFT_ALONE = 90.0  # seconds
# The short form has no time for that. What it must find is a picture that nobody frees, and a hundred are 45 MiB.
SHORT_GROWTH = 20.0  # MiB
HEAD = ("captures", "list", "PSS", "RSS", "own", "server", "files open", "threads", "segments", "windows", "keepers",
        "seconds")


class Soak:
    def __init__(self, captures, seed):
        self.captures, self.is_long = captures, captures >= LONG
        self.chance = random.Random(seed)
        self.session = Session(self.chance)
        self.begin = time.monotonic()
        self.editor = self.capture_side = None
        self.empty = []  # the looks at it without a capture, from the first that counts

    # What is done.

    def run(self):
        RESULTS.mkdir(exist_ok=True)
        write_settings(**SETTINGS)
        self.capture_side = CaptureSide()
        self.editor = subprocess.Popen([EDITOR], stdin=subprocess.DEVNULL)
        try:
            wait(answers, "the editor does not listen")
            print("\t".join(HEAD), flush=True)
            self.play()
            faults = self.faults() + self.leave()
        except Exception as error:
            raise SystemExit(f"soak: {self.session.taken} captures, {self.session.doing}: "
                             f"{type(error).__name__}: {error}{self.what_is_seen()}\n"
                             f"lately: {', '.join(self.session.lately)}") from error
        finally:
            if self.editor.poll() is None:
                self.editor.kill()
            self.editor.wait()
        return faults

    def play(self):
        while self.session.taken < self.captures:
            self.session.take()
            self.use()
            assert self.editor.poll() is None, "the editor is gone"
            self.look_when_due()

    def use(self):
        if not self.session.can_act():
            return
        if self.session.taken == SHORT_BEGIN:
            # Once everything that can be, so that the first look has all that is made once behind it.
            while self.session.can_do_another():
                self.refill()
                self.session.act()
        elif self.is_long or self.chance.random() < SHORT_REST:
            self.session.act()
        if not self.is_long and self.session.taken >= self.captures:
            self.catch_up()

    def refill(self):
        """Some of it deletes, and all of it needs a few rows."""
        while not self.session.can_act():
            self.session.take()

    def catch_up(self):
        """With what the short form had to leave, which is what a full list does."""
        while not self.session.is_full():
            self.session.take()
        for name in filter(self.session.can_do, self.session.never_done()):
            self.session.do(name)

    def look_when_due(self):
        taken = self.session.taken
        if self.is_long:
            if taken % STAGE == 0 or taken >= self.captures:
                last = taken >= self.captures
                self.look(empties=last or taken % EMPTIES == 0, judges=last or taken % JUDGES == EMPTIES)
        elif taken >= self.captures or (taken >= SHORT_BEGIN and not self.empty):
            self.look(empties=True, judges=True)

    def look(self, empties, judges):
        """A full list for the eye; lists of other pictures weigh other, so only empty ones are compared."""
        self.session.check()
        self.session.user.hide()
        self.tell(Census(self.editor.pid))
        if empties:
            self.session.empty()
            self.session.user.hide()
            seen = Census(self.editor.pid)
            self.tell(seen)
            if judges and self.is_long:
                time.sleep(LEFT_ALONE)
                seen = Census(self.editor.pid)
                self.tell(seen)
            if judges:
                self.empty.append(seen)

    def tell(self, seen):
        print(self.session.taken, len(self.session.rows), *(f"{size:.1f}" for size in (
            seen.proportional, seen.resident, seen.own, seen.server)), seen.descriptors.total(), seen.threads,
            seen.segments.total(), seen.windows, seen.companions.total(), f"{time.monotonic() - self.begin:.0f}",
            sep="\t", flush=True)

    def what_is_seen(self):
        folder = os.environ.get("TINDRA_TEST_PICTURES")
        if not folder:
            return ""
        subprocess.run(["import", "-silent", "-window", "root", f"{folder}/soak.png"], check=False)
        return f" ({folder}/soak.png)"

    # What is judged.

    def faults(self):
        first, *later = self.empty
        last = later[-1]
        found = [f"not done once: {words(name)}" for name in self.session.never_done()]
        bound = GROWTH if self.is_long else SHORT_GROWTH
        if not self.is_sanitized():
            for name in ("resident", "own"):
                growth = max(getattr(look, name) for look in later) - getattr(first, name)
                print(f"growth of {name} memory without captures: {growth:.1f} MiB, at most {bound:.1f}")
                if growth >= bound:
                    found.append(f"{name} memory grew by {growth:.1f} MiB")
        for name in ("lasting_descriptors", "segments", "windows"):
            before, after = getattr(first, name), getattr(last, name)
            if before != after:
                found.append(f"{name.replace('_', ' ')} were {before} and are {after}")
        # A batch starts as many as there are processors, and they end when nothing is left to do for a while.
        if last.threads > first.threads + os.cpu_count():
            found.append(f"{first.threads} threads became {last.threads}")
        if last.companions["zombie"] or last.companions["keeper"] > 1:
            found.append(f"other processes: {dict(last.companions)}")
        if last.captures:
            found.append(f"{last.captures} captures of an empty list lie in the work folder")
        if last.files - first.files:
            found.append(f"files came and stay: {sorted(last.files - first.files)}")
        return found

    def is_sanitized(self):
        """Memory says nothing then: the sanitizer holds back what is freed."""
        return "libasan" in Path(f"/proc/{self.editor.pid}/maps").read_text(encoding="utf-8")

    def leave(self):
        """Ends it, and looks for what it leaves behind."""
        self.session.doing = "ending"
        pid = self.editor.pid
        mine = {Path(name) for name in (*descriptors(pid), *shared_mappings(pid)) if name.startswith("/dev/shm/")}
        tell("/close")
        code = self.editor.wait(NEVER)
        found = [f"ended with {code}"] if code else []
        for event, count in ((SILENT_CAPTURE_SAVED, self.session.silent_saves),
                             (CAPTURE_WANTED, self.session.asked_for), (PROGRAM_ENDS, 1)):
            if not wait_for(lambda event=event, count=count: self.capture_side.events[event] == count):
                found.append(f"{self.capture_side.events[event]} events {event:#x} instead of {count}")
        left = [*self.session.left_over(), *(str(path) for path in mine if path.exists())]
        left += [path.name for path in (SOCKET, RUNTIME / "TindraImageMemory") if path.exists()]
        if blocks_made_by(pid):
            left.append("a shared memory block")
        return found + [f"left behind: {name}" for name in left]


def main():
    captures, seed = (int(value) for value in (sys.argv[1:] + [CAPTURES, SEED][len(sys.argv) - 1:])[:2])
    if captures < SHORTEST:
        raise SystemExit(f"soak: {captures} captures do not fill the list again; {SHORTEST} are the fewest")
    print(f"soak: {captures} captures, seed {seed}", flush=True)
    soak = Soak(captures, seed)
    faults = soak.run()
    done = soak.session.done
    print(f"saved files that were looked at: {soak.session.saves}; done meanwhile: " +
          ", ".join(f"{words(name)} {count}" for name, count in sorted(done.items())))
    print("\n".join(f"soak: {fault}" for fault in faults) or "soak: nothing leaks")
    return bool(faults)


if __name__ == "__main__":
    sys.exit(main())
