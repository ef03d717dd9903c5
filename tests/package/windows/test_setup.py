"""The installer's life on Windows: silent, for one user, closed doors while the Hub runs, and nothing left but the user's files."""

import re
import shutil
import time
import unittest

from lib.screen import Screen
from lib.waiting import stays, wait_for
from shared import PROJECT, Run, contents
from wine import Windows, is_running, step

PROGRAM = "ZORVA Hub.exe"
FILES = ["LICENSE.txt", "Uninstall.exe", PROGRAM]
ENTRY = "com.zorva.hub"
SETUP = "C:\\hub-setup.exe"
FAILED, RUNNING, TOO_OLD = 2, 3, 4     # exit codes: something could not be done; the Hub runs; this is no Windows 10


def names(folder):
    return sorted(path.name for path in folder.iterdir()) if folder.is_dir() else []


class Setup(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.screen = Screen()
        cls.addClassCleanup(cls.screen.stop)
        cls.windows = Windows()
        shutil.copy(Run.package, cls.windows.file(SETUP))
        cls.folder = cls.windows.local / "Programs" / "ZORVA Hub"
        cls.shortcut = cls.windows.roaming / "Microsoft/Windows/Start Menu/Programs/ZORVA Hub.lnk"
        cls.data = cls.windows.roaming / "ZORVA Hub"

    def hub_windows(self):
        return self.screen.windows("ZORVA Hub")

    def start(self, what: str, file):
        """Starts the Hub by a file and answers with its only window, once that stays."""
        self.assertEqual(step(what, "start", self.windows.path(file)), 0)
        wait_for(lambda: stays(lambda: len(self.hub_windows()) == 1, 0.5), "one window that stays", 60)
        return self.hub_windows()[0]

    def close(self, window):
        began = time.monotonic()
        window.close()
        wait_for(lambda: not is_running(PROGRAM), "its end after the window was closed", 60)
        print(f"\n    its end after the window was closed: {time.monotonic() - began:.1f} s", end=" ", flush=True)

    def uninstall(self, what: str):
        """Removes it as Windows does, and waits for the copy of itself in which the uninstaller goes on: "_?=" is in its command."""
        command = self.windows.registered("HKCU", ENTRY)["QuietUninstallString"]
        program, switch = re.fullmatch(r'"(.*)" (/S)', command).groups()
        self.assertEqual(step(what, program, switch), 0)
        wait_for(lambda: not is_running("_?="), "the end of the uninstaller", 60)

    def assert_nothing_is_installed(self):
        self.assertFalse(self.shortcut.exists())
        self.assertIsNone(self.windows.registered("HKCU", ENTRY))

    def test_a_windows_before_10_gets_nothing(self):
        self.windows.become("win81")
        self.addCleanup(self.windows.become, "win10")
        self.assertEqual(step("installation on Windows 8.1", SETUP, "/S"), TOO_OLD)
        self.assertFalse(self.folder.exists())
        self.assert_nothing_is_installed()

    def test_is_installed_silently_for_one_user_runs_updates_and_leaves_the_users_files(self):
        version = re.search(r'hubVersion = "([0-9.]+)"', (PROJECT / "src/app/HubVersion.h").read_text())[1]
        self.assertEqual(step("silent installation", SETUP, "/S"), 0)
        self.assertEqual(names(self.folder), FILES)
        self.assertTrue(self.shortcut.is_file())
        folder = self.windows.path(self.folder)
        registered = self.windows.registered("HKCU", ENTRY)
        size = int(registered.pop("EstimatedSize"), 16)
        self.assertLess(abs(size * 1024 - sum(path.stat().st_size for path in self.folder.iterdir())), 4096)
        self.assertEqual(registered, {
            "DisplayName": "ZORVA Hub", "DisplayVersion": version, "Publisher": "ZORVA", "DisplayIcon": rf"{folder}\{PROGRAM},0",
            "InstallLocation": folder, "UninstallString": rf'"{folder}\Uninstall.exe"',
            "QuietUninstallString": rf'"{folder}\Uninstall.exe" /S', "URLInfoAbout": "https://www.zorva.example/",
            "NoModify": "0x1", "NoRepair": "0x1"})
        self.assertIsNone(self.windows.registered("HKLM", ENTRY), "it is for one user")
        self.assertFalse(is_running(PROGRAM), "the installation started it")
        self.assertFalse(self.data.exists())

        window = self.start("the start menu's entry", self.shortcut)
        before = contents(self.folder)
        self.assertEqual(step("installation while it runs", SETUP, "/S"), RUNNING)
        self.uninstall("removal while it runs")
        self.assertEqual(contents(self.folder), before)
        self.assertTrue(self.shortcut.exists())
        self.close(window)

        (self.data / "Vault" / "kept.zip").write_bytes(b"a vaulted file")
        kept = contents(self.data)
        good = (self.folder / PROGRAM).read_bytes()
        (self.folder / PROGRAM).write_bytes(b"an older version")
        self.assertEqual(step("update over an older version", SETUP, "/S"), 0)
        self.assertEqual((self.folder / PROGRAM).read_bytes(), good)
        self.assertEqual(contents(self.data), kept)

        self.uninstall("silent removal")
        self.assertFalse(self.folder.exists())
        self.assert_nothing_is_installed()
        self.assertEqual(contents(self.data), kept, "the user's files stay as they were")

    def test_removal_leaves_what_it_did_not_install(self):
        place = self.windows.drive / "Audio" / "Hub"
        self.assertEqual(step("installation elsewhere", SETUP, "/S", r"/D=C:\Audio\Hub"), 0)
        self.assertEqual(names(place), FILES)
        (place / "notes.txt").write_text("mine")
        (place / "Presets").mkdir()
        window = self.start("the program", place / PROGRAM)
        # Told its folder, the uninstaller stays where it is, and its answer can be heard.
        self.assertEqual(step("removal while it runs", r"C:\Audio\Hub\Uninstall.exe", "/S", r"_?=C:\Audio\Hub"), RUNNING)
        self.assertEqual(names(place), sorted([*FILES, "Presets", "notes.txt"]))
        self.close(window)
        self.uninstall("removal from there")
        self.assertEqual(names(place), ["Presets", "notes.txt"])
        self.assert_nothing_is_installed()

    def test_a_file_that_cannot_be_written_ends_the_installation(self):
        place = self.windows.drive / "Taken"
        (place / "LICENSE.txt").mkdir(parents=True)
        self.assertEqual(step("installation over a folder of a file's name", SETUP, "/S", r"/D=C:\Taken"), FAILED)
        self.assertEqual(names(place), ["LICENSE.txt"])
        self.assert_nothing_is_installed()

    def test_asks_for_no_rights(self):
        self.assertIn(b'<requestedExecutionLevel level="asInvoker"', self.windows.file(SETUP).read_bytes())
