#!/usr/bin/env python3
"""The Debian package, made of a build that stands and looked at without being installed.

usage: tst_package.py BUILD_FOLDER      (the target "installable" is built there)
"""
import configparser
import os
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree
from pathlib import Path

BUILD = Path(sys.argv.pop(1)).resolve()
TOP = Path(__file__).resolve().parents[2]
VERSION = re.search(r"project\(Tindra VERSION ([\d.]+)", (TOP / "CMakeLists.txt").read_text()).group(1)
PROGRAMS = ("tindra-editor", "tindra-send")
ICON_SIDES = (16, 22, 24, 32, 48, 64, 128, 256, 512)


def output(*command, **more):
    """What a command prints; it must succeed."""
    result = subprocess.run([str(word) for word in command], capture_output=True, check=False, text=True,
                            timeout=120, **more)
    if result.returncode != 0:
        raise AssertionError(f"{command[0]}: code {result.returncode}\n{result.stdout}{result.stderr}")
    return result.stdout


class Package(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = Path(tempfile.mkdtemp())
        cls.addClassCleanup(shutil.rmtree, cls.scratch)
        output("cpack", "--config", BUILD / "CPackConfig.cmake", "-B", cls.scratch, "-D",
               f"CPACK_OUTPUT_FILE_PREFIX={cls.scratch}", cwd=cls.scratch)
        cls.file = next(cls.scratch.glob("*.deb"))
        cls.root = cls.scratch / "root"
        output("dpkg-deb", "-x", cls.file, cls.root)
        cls.share = cls.root / "usr/share"

    def field(self, name):
        return output("dpkg-deb", "-f", self.file, name).strip()

    def desktop_entry(self):
        entry = configparser.ConfigParser(interpolation=None, delimiters="=")
        entry.optionxform = str
        entry.read(self.share / "applications/tindra-editor.desktop", encoding="utf-8")
        return entry

    def help_of(self, program):
        """Of the program in the package."""
        return output(self.root / "usr/bin" / program, "--help")

    def words_of(self, text):
        """The options and commands with which a line of a help or a manual page begins."""
        return set(re.findall(r"^ +(?:-\w, )?(--[a-z]+|/[a-z]+)\b(?!/)", text, re.MULTILINE))

    def manual(self, program):
        """The manual page as plain text; rendering it must complain of nothing."""
        page = self.share / f"man/man1/{program}.1.gz"
        result = subprocess.run(["man", "--warnings", "-E", "UTF-8", "-l", page], capture_output=True, text=True,
                                check=True, timeout=60, env=dict(os.environ, MANWIDTH="80"))
        self.assertEqual(result.stderr, "")
        return result.stdout

    def completed(self, program, *words):
        """What bash offers for the last word."""
        script = ('. "$1"; shift; compopt() { :; }; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); '
                  f'_{program.replace("-", "_")}; printf "%s\\n" "${{COMPREPLY[@]}}"')
        file = self.share / "bash-completion/completions" / program
        offered = output("bash", "-c", script, "bash", file, program, *words, cwd=self.scratch)
        return set(offered.splitlines()) - {""}

    # The package.

    def test_its_fields(self):
        self.assertEqual(self.field("Package"), "tindra-editor")
        self.assertEqual(self.field("Version"), VERSION)
        self.assertEqual(self.file.name, f"tindra-editor_{VERSION}_{self.field('Architecture')}.deb")
        self.assertNotRegex(self.field("Description"), "PROJECT|CPACK|built using")

    def test_it_depends_on_what_the_program_opens_and_what_it_is_linked_to(self):
        names = {re.split(r"[ :(]", entry.strip())[0] for entry in re.split(r"[,|]", self.field("Depends"))}
        opened = {"libqt5svg5", "qt5-image-formats-plugins", "qttranslations5-l10n", "fonts-noto-cjk", "python3"}
        self.assertLessEqual(opened, names)
        # Each linked library is some package's, and that package is named.
        program = self.root / "usr/lib/tindra/tindra-editor"
        needed = re.findall(r"NEEDED +(\S+)", output("objdump", "-p", program))
        self.assertIn("libQt5Widgets.so.5", needed)
        for library in needed:
            path = output("sh", "-c", f"ldconfig -p | awk '$1 == \"{library}\" {{ print $NF; exit }}'").strip()
            owners = {line.split(":")[0] for line in output("dpkg", "-S", f"*/{Path(path).resolve().name}").splitlines()}
            self.assertTrue(owners & names, f"{library} of {owners}")

    def test_its_files_are_roots_and_nobody_else_may_write_them(self):
        for line in output("dpkg-deb", "-c", self.file).splitlines():
            mode, owner = line.split()[:2]
            self.assertEqual(owner, "root/root", line)
            self.assertRegex(mode, r"^(d|-)rwxr-xr-x$|^-rw-r--r--$|^lrwxrwxrwx$", line)

    def test_its_program_is_stripped(self):
        sections = output("objdump", "-h", self.root / "usr/lib/tindra/tindra-editor")
        self.assertNotIn(".debug_info", sections)

    def test_lintian_finds_neither_errors_nor_warnings(self):
        output("lintian", "--allow-root", "--fail-on", "error,warning", self.file)

    # The programs.

    def test_they_run(self):
        self.assertEqual(output(self.root / "usr/bin/tindra-editor", "--version"), f"Tindra {VERSION}\n")
        self.assertIn("--open", self.help_of("tindra-send"))
        self.assertEqual((self.root / "usr/bin/tindra-send").read_text().splitlines()[0], "#!/usr/bin/python3")

    def test_the_program_finds_its_companions_beside_itself(self):
        link = self.root / "usr/bin/tindra-editor"
        self.assertFalse(os.path.isabs(os.readlink(link)))
        folder = link.resolve().parent
        self.assertEqual(folder, (self.root / "usr/lib/tindra").resolve())
        self.assertEqual((folder / "readme.txt").read_text().splitlines()[0], "Tindra")

    # The desktop.

    def test_the_desktop_entry_is_valid_and_hands_over_copies(self):
        output("desktop-file-validate", self.share / "applications/tindra-editor.desktop")
        entry = self.desktop_entry()
        commands = [entry[section]["Exec"].split() for section in entry.sections()]
        self.assertEqual(commands[0], ["tindra-send", "--open", "%F"])
        for command in commands:
            self.assertEqual(command[:2], ["tindra-send", "--open"])
        for key in ("GenericName", "Comment", "Keywords"):
            self.assertRegex(entry["Desktop Entry"][f"{key}[ko]"], "[가-힣]")

    def test_the_icon_is_there_in_each_size(self):
        name = self.desktop_entry()["Desktop Entry"]["Icon"]
        icons = self.share / "icons/hicolor"
        for side in ICON_SIDES:
            head = (icons / f"{side}x{side}/apps/{name}.png").read_bytes()[:24]
            self.assertEqual(struct.unpack(">8x4x4sII", head), (b"IHDR", side, side))
        drawing = xml.etree.ElementTree.parse(icons / f"scalable/apps/{name}.svg").getroot()
        self.assertEqual(drawing.tag, "{http://www.w3.org/2000/svg}svg")
        self.assertEqual(len(list(icons.iterdir())), len(ICON_SIDES) + 1)

    def test_the_appstream_data_is_valid_and_of_this_version(self):
        file = self.share / "metainfo/com.norvane.Tindra.metainfo.xml"
        output("appstreamcli", "validate", "--no-net", "--no-color", file)
        root = xml.etree.ElementTree.parse(file).getroot()
        self.assertEqual(root.find("launchable").text, "tindra-editor.desktop")
        self.assertEqual(root.find("releases")[0].get("version"), VERSION)
        self.assertEqual({binary.text for binary in root.findall("provides/binary")},
                         {path.name for path in (self.root / "usr/bin").iterdir()})

    def test_the_changelog_is_of_this_version(self):
        changelog = output("zcat", self.share / "doc/tindra-editor/changelog.gz")
        self.assertTrue(changelog.startswith(f"tindra-editor ({VERSION}) "), changelog)

    def test_the_links_of_its_documents_lead_to_what_it_brings(self):
        folder = self.share / "doc/tindra-editor"
        link = re.compile(r'(?:\]\(|src=")([^)#:"]+)')
        links = {document.name: set(link.findall(document.read_text(encoding="utf-8")))
                 for document in folder.glob("*.md")}
        self.assertEqual(set(links), {"guide.md", "protocol.md"})
        self.assertIn("protocol.md", links["guide.md"])
        for document, targets in links.items():
            self.assertEqual({target for target in targets if not (folder / target).is_file()}, set(), document)
        # No picture that the guide does not show.
        self.assertEqual({f"images/{path.name}" for path in folder.glob("images/*")},
                         {target for target in links["guide.md"] if target.startswith("images/")})

    # Texts that tell the same words as the programs.

    def test_the_manual_pages_tell_all_words_and_no_others(self):
        for program in PROGRAMS:
            words = self.words_of(self.help_of(program))
            self.assertIn("--help", words)
            self.assertEqual(self.words_of(self.manual(program)), words)

    def test_bash_completes_all_words_and_no_others(self):
        (self.scratch / "a picture.png").touch()
        words = self.words_of(self.help_of("tindra-send"))
        roads = set(re.search(r"--road \{(.*?)\}", self.help_of("tindra-send")).group(1).split(","))
        self.assertEqual(self.completed("tindra-send", "--"), words)
        self.assertEqual(self.completed("tindra-send", "--road", ""), roads)
        self.assertEqual(self.completed("tindra-send", "--skip", "a pi"), {"a picture.png"})
        words = self.words_of(self.help_of("tindra-editor"))
        self.assertEqual(self.completed("tindra-editor", ""), words)
        self.assertEqual(self.completed("tindra-editor", "/show", ""), words - {"--help", "--version"})
        self.assertEqual(self.completed("tindra-editor", "/preference", ""), set("0123"))
        self.assertEqual(self.completed("tindra-editor", "/point", ""), set())
        self.assertEqual(self.completed("tindra-editor", "/path", "a pi"), {"a picture.png"})

    def test_zsh_completes_all_words_and_no_others(self):
        for program in PROGRAMS:
            file = self.share / "zsh/vendor-completions" / f"_{program}"
            output("zsh", "-n", file)
            self.assertEqual(file.read_text().splitlines()[0], f"#compdef {program}")
            offered = re.findall(r"['{,](--[a-z]+|/[a-z]+)[:\['}]", file.read_text())
            self.assertEqual(set(offered), self.words_of(self.help_of(program)))


if __name__ == "__main__":
    sys.exit(unittest.main())
