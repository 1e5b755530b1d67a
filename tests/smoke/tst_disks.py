#!/usr/bin/env python3
"""The real program on disks that are full, closed, elsewhere or gone, and among files that are no captures.

usage: tst_disks.py EDITOR
Needs a mount table of its own (unshare); without one, what is about small disks is skipped.
"""
import os
import shutil
import subprocess
import sys
import unittest
from pathlib import Path

OWN_MOUNTS = "TINDRA_TEST_OWN_MOUNTS"


def enter_own_mounts():
    """Starts this script anew where what it mounts ends with it."""
    command = ["unshare", "-m"] if os.geteuid() == 0 else ["unshare", "-rm"]
    if OWN_MOUNTS not in os.environ and subprocess.run([*command, "true"], check=False).returncode == 0:
        os.environ[OWN_MOUNTS] = "1"
        os.execvp(command[0], [*command, sys.executable, *sys.argv])


enter_own_mounts()

# Only now: it takes the script's argument away.
from editorsession import (PINS, RESULTS, WORK, EditorTest, main_window, png, put_capture, size_of, tell, wait_for,
                           windows, write_settings, xdotool)

BMP = 2  # the setting FileFormat
PICTURE = png(300, 200, (255, 0, 0))
PICTURE_SIZE = 300 * 200 * 3  # of its BMP, less the header
WINDOW = (1100, 700)


class Disk:
    """A small file system of its own."""

    def __init__(self, test, size):
        if OWN_MOUNTS not in os.environ:
            if os.environ.get("CI") == "true":
                test.fail("the tests of full disks need the right to mount")
            test.skipTest("needs the right to mount")
        self.folder = Path(os.environ["TMPDIR"]) / "disk"
        self.folder.mkdir(exist_ok=True, mode=0o700)
        self._mount("-t", "tmpfs", "-o", f"size={size},mode=0700", "tmpfs")
        test.addCleanup(subprocess.run, ["umount", "-l", self.folder], check=True)

    def _mount(self, *arguments):
        subprocess.run(["mount", *arguments, self.folder], check=True)

    def close(self):
        self._mount("-o", "remount,ro")

    def fill(self):
        """Leaves no byte."""
        with open(self.folder / "filler", "wb", buffering=0) as filler:
            for size in (65536, 1):
                try:
                    while filler.write(b"x" * size):
                        pass
                except OSError:
                    pass

    def names(self):
        files = [path for path in self.folder.rglob("*") if path.is_file() and path.suffix != ".lock"]
        return sorted(path.name for path in files if path.name != "filler")


class Disks(EditorTest):
    def begin(self, **settings):
        """An editor that shows one capture and saves to where the settings say."""
        usual = {"FileNameType": 0, "FileNameTamplate": "shot", "ShowPostSaveDlg": 0, "ShowPostSaveAllDlg": 0}
        write_settings(**(usual | settings))
        editor = self.first()
        tell(f"/path \"{put_capture('shown.png', PICTURE)}\" /point 100 100")
        self.window_count(1)
        return editor

    def save_fails(self):
        """An automatic save that is told to have failed."""
        tell("/autosave /skip")
        self.window_count(2)
        self.press_in_dialog("Return", 1)

    def save_succeeds(self, path):
        tell("/autosave /skip")
        self.assertTrue(wait_for(lambda: path.exists() and path.stat().st_size), f"{path} is not saved")
        self.window_count(1)  # no complaint; that of before may still be closing

    def leave(self, editor):
        tell("/kill")
        self.assertEqual(self.ended(editor), 0)

    # Where pictures are saved to.

    def test_full_disk(self):
        disk = Disk(self, "512k")
        editor = self.begin(AutoSavePath=disk.folder, FileFormat=BMP)
        disk.fill()
        self.save_fails()
        self.assertEqual(disk.names(), [])
        (disk.folder / "filler").unlink()
        self.save_succeeds(disk.folder / "shot.bmp")
        self.leave(editor)

    def test_full_disk_keeps_the_picture_that_was_to_be_replaced(self):
        disk = Disk(self, "512k")
        old = disk.folder / "old.png"
        old.write_bytes(PICTURE)
        editor = self.begin(FilePath=disk.folder)
        disk.fill()
        tell("/save")
        self.window_count(2)
        self.press_in_dialog("ctrl+a o l d Return", 3)  # whether to replace it
        self.press_in_dialog("alt+y", 2)  # that it failed
        self.press_in_dialog("Return", 1)
        self.assertEqual(disk.names(), ["old.png"])
        self.assertEqual(old.read_bytes(), PICTURE)
        (disk.folder / "filler").unlink()
        self.save_succeeds(RESULTS / "shot.png")
        self.leave(editor)

    def test_disk_that_fills_up_in_the_middle_of_a_batch(self):
        disk = Disk(self, f"{3 * PICTURE_SIZE}")
        editor = self.begin(FilePath=disk.folder, FileFormat=BMP)
        for number in range(5):
            tell(f"/path \"{put_capture(f'more{number}.png', PICTURE)}\"")
        # Commands are done in their order: with this one all captures are there, and none changes the window any more.
        tell("/about")
        self.window_count(2)
        self.press_in_dialog("Escape", 1)
        window = main_window()
        width, height = WINDOW
        xdotool("windowsize", window, width, height)
        self.assertTrue(wait_for(lambda: size_of(window) == WINDOW))
        xdotool("mousemove", "--window", window, width - 84, height - 56, "click", 1)
        self.window_count(2)
        self.press_in_dialog("alt+s", 1)
        self.assertTrue(wait_for(disk.names))
        sizes = {(disk.folder / name).stat().st_size for name in disk.names()}
        self.assertEqual(len(sizes), 1)
        self.assertGreater(sizes.pop(), PICTURE_SIZE)
        self.assertLess(len(disk.names()), 6)
        self.leave(editor)

    def test_disk_that_takes_nothing(self):
        disk = Disk(self, "512k")
        disk.close()
        editor = self.begin(AutoSavePath=disk.folder)
        self.save_fails()
        self.leave(editor)

    def test_disk_of_its_own(self):
        disk = Disk(self, "4m")
        self.assertNotEqual(disk.folder.stat().st_dev, WORK.parent.parent.stat().st_dev)
        editor = self.begin(AutoSavePath=disk.folder)
        self.save_succeeds(disk.folder / "shot.png")
        self.leave(editor)

    def test_folder_that_goes_under_way(self):
        target = RESULTS / "folder"
        target.mkdir()
        editor = self.begin(AutoSavePath=target)
        self.save_succeeds(target / "shot.png")
        (target / "shot.png").unlink()
        target.rmdir()
        self.save_fails()
        self.assertFalse(target.exists())
        self.leave(editor)

    def test_text_that_is_too_long_for_a_name(self):
        editor = self.begin(FileNameTamplate="n" * 300)
        cut = "n" * 230  # leaves room for a number and an ending
        self.save_succeeds(RESULTS / f"{cut}.png")
        self.save_succeeds(RESULTS / f"{cut} (1).png")
        self.leave(editor)

    # Where captures and settings are kept.

    def test_settings_on_a_full_disk(self):
        disk = Disk(self, "64k")
        settings = disk.folder / "Norvane/Tindra.conf"
        settings.parent.mkdir(mode=0o700)
        settings.write_text("[Config]\nAutoHistoryDelete=1\n")
        editor = self.first(environment=dict(os.environ, XDG_CONFIG_HOME=str(disk.folder)))
        tell("/show")
        self.window_count(1)
        disk.fill()
        tell("/updateprefvalue 48 1")
        self.leave(editor)
        self.assertEqual(settings.read_text(), "[Config]\nAutoHistoryDelete=1\n")
        self.assertEqual(disk.names(), [settings.name])

    def test_captures_on_a_full_disk(self):
        disk = Disk(self, "256k")
        work = disk.folder / "Norvane/Tindra"
        work.mkdir(parents=True, mode=0o700)
        work.parent.chmod(0o700)
        (work / "pin").mkdir(mode=0o700)
        for name in ("pin/0.png", "shot.png"):
            (work / name).write_bytes(PICTURE)
        disk.fill()
        here = dict(os.environ, XDG_DATA_HOME=str(disk.folder))
        for _ in range(2):
            editor = self.first(environment=here)
            tell("/show")
            self.window_count(2)  # what is left over is told, the pin has no room and waits
            self.press_in_dialog("Return", 1)
            self.leave(editor)
            self.assertEqual(disk.names(), sorted(["0.png", "shot.png"]))
        for name in ("pin/0.png", "shot.png"):
            self.assertEqual((work / name).read_bytes(), PICTURE)

    def test_work_folder_that_goes_under_way(self):
        editor = self.begin()
        shutil.rmtree(WORK)
        self.save_succeeds(RESULTS / "shot.png")  # the canvas still has it
        tell(f"/path \"{put_capture('late.png', PICTURE)}\"")
        self.save_succeeds(RESULTS / "shot (1).png")
        self.leave(editor)
        self.assertEqual([path.name for path in WORK.glob("*.png")], ["late.png"])

    # What is no capture.

    def test_pins_that_are_no_pictures(self):
        """They are told about, and no start fails because of them."""
        PINS.mkdir(parents=True, exist_ok=True, mode=0o700)
        (PINS / "0.png").write_text("no picture")
        (PINS / "1.png").write_bytes(PICTURE[:len(PICTURE) // 2])
        (PINS / "2.png").write_bytes(PICTURE)
        for _ in range(3):
            editor = self.first()
            self.window_count(1)
            self.press_in_dialog("Return", 0)
            self.leave(editor)
        self.assertEqual(sorted(path.name for path in PINS.iterdir()), ["0.png", "1.png", "2.png"])
        self.assertEqual(sorted(path.name for path in WORK.glob("*.png")), ["0.png", "1.png", "2.png"])

    def test_ten_thousand_files(self):
        WORK.mkdir(parents=True, exist_ok=True, mode=0o700)
        small = png(4, 4, (0, 255, 0))
        for number in range(5000):
            (WORK / f"{number:05}.png").write_bytes(small)
            (WORK / f"{number:05}.txt").write_bytes(b"x")
        editor = self.first()
        tell("/show")
        self.window_count(2)
        self.leave(editor)
        self.assertEqual(len(list(WORK.glob("*.png"))), 5000)
        self.assertEqual(len(list(WORK.glob("*.txt"))), 5000)


if __name__ == "__main__":
    sys.exit(unittest.main())
