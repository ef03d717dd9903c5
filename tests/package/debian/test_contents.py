"""The package as a file: what is in it, and what Debian's own judges say about it."""

import gzip
import re
import struct
import unittest
import xml.etree.ElementTree as ElementTree

from package import DESKTOP_ENTRY, FILES, ICON_SIZES, METAINFO, NAME, desktop_entry
from shared import PROJECT, Run, files_below, outcome, output

LIBRARIES_LOADED_BY_NAME = ("libx11-6", "libxext6", "libxrender1", "libxrandr2", "libxinerama1", "libxcursor1")


class Contents(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.root = Run.scratch / "unpacked"
        output("dpkg-deb", "--extract", str(Run.package), str(cls.root))

    def field(self, name: str) -> str:
        return output("dpkg-deb", "--field", str(Run.package), name).strip()

    def assert_content(self, *command):
        """The command succeeds and has nothing to say."""
        self.assertEqual(outcome(*command), (0, ""))

    def test_holds_exactly_the_files_of_an_installed_hub(self):
        self.assertEqual(files_below(self.root), FILES)

    def test_everything_is_roots_and_writable_by_nobody_else(self):
        modes = {}
        for line in output("dpkg-deb", "--contents", str(Run.package)).splitlines():
            mode, owner, *_, path = line.split()
            self.assertEqual(owner, "root/root", path)
            modes[path.removeprefix("./")] = mode
        self.assertEqual(modes.pop("usr/bin/zorva-hub"), "-rwxr-xr-x")
        self.assertEqual(set(modes.values()), {"drwxr-xr-x", "-rw-r--r--"})

    def test_nothing_runs_at_its_installation(self):
        control = Run.scratch / "control"
        output("dpkg-deb", "--control", str(Run.package), str(control))
        self.assertEqual(files_below(control), ["control", "md5sums"])

    def test_depends_on_linked_libraries_and_on_those_that_are_loaded_by_name(self):
        depends = [part.split()[0] for part in self.field("Depends").split(",")]
        self.assertEqual([name for name in LIBRARIES_LOADED_BY_NAME if name not in depends], [])
        for start in ("libc6", "libcurl4", "libsecret-1-0", "libfreetype6", "libssl3"):
            self.assertTrue([name for name in depends if name.startswith(start)], f"{start} in {depends}")
        self.assertIn("ca-certificates", depends)

    def test_all_places_tell_the_same_version(self):
        version = re.search(r'hubVersion = "([0-9.]+)"', (PROJECT / "src/app/HubVersion.h").read_text())[1]
        changelog = gzip.decompress((self.root / f"usr/share/doc/{NAME}/changelog.gz").read_bytes()).decode()
        releases = ElementTree.parse(self.root / METAINFO).findall("./releases/release")
        self.assertEqual(self.field("Version"), version)
        self.assertEqual(changelog.split("\n")[0].split()[:2], [NAME, f"({version})"])
        self.assertEqual(releases[0].get("version"), version)

    def test_the_desktop_entry_is_valid(self):
        self.assert_content("desktop-file-validate", str(self.root / DESKTOP_ENTRY))

    def test_the_desktop_entry_names_what_is_in_the_package(self):
        entry = desktop_entry(self.root)
        self.assertEqual(entry["Name"], "ZORVA Hub")
        self.assertIn("usr/bin/" + entry["Exec"].split()[0], FILES)
        self.assertIn(f"usr/share/icons/hicolor/48x48/apps/{entry['Icon']}.png", FILES)

    def test_the_metainfo_is_valid(self):
        for command in (["validate", str(self.root / METAINFO)], ["validate-tree", str(self.root)]):
            code, text = outcome("appstreamcli", command[0], "--no-net", "--pedantic", command[1])
            self.assertEqual(code, 0, text)

    def test_lintian_has_no_errors_and_no_warnings(self):
        code, text = outcome("lintian", "--allow-root", "--fail-on", "error,warning", "--tag-display-limit", "0", str(Run.package))
        self.assertEqual((code, text), (0, ""))

    def test_every_icon_has_the_size_of_its_folder(self):
        for size in ICON_SIZES:
            head = (self.root / f"usr/share/icons/hicolor/{size}x{size}/apps/com.zorva.hub.png").read_bytes()[:24]
            self.assertEqual(struct.unpack(">II", head[16:24]), (size, size))

    def test_the_licence_is_there_in_full(self):
        text = (self.root / f"usr/share/doc/{NAME}/copyright").read_text()
        kept = "\n".join(line[1:] if line != " ." else "" for line in text.split("License: AGPL-3.0-only\n")[-1].split("\n"))
        self.assertEqual(kept.strip(), (PROJECT / "LICENSE").read_text().strip())

    def test_the_program_is_stripped_and_tells_nothing_of_its_builder(self):
        program = self.root / "usr/bin/zorva-hub"
        self.assertRegex(output("file", "--brief", str(program)), r"^ELF .*pie executable.*, stripped")
        self.assertNotIn(str(PROJECT).encode(), program.read_bytes())
