"""The package's life on a machine: installed, started from the desktop, started again, closed, removed."""

import re
import subprocess
import unittest
from pathlib import Path

from lib.screen import Screen
from lib.waiting import stays, wait_for
from package import DESKTOP_ENTRY, FILES, NAME, desktop_entry
from shared import Run, contents, outcome, output

ROOT = Path("/")
# What dpkg and the triggers of other packages keep for themselves when a package comes and goes.
NOT_THE_PACKAGES = re.compile(r"\.private-root|var/lib/dpkg/.*|var/log/dpkg\.log|var/cache/(man|fontconfig)/.*"
                              r"|usr/share/applications/mimeinfo\.cache|usr/share/icons/hicolor/icon-theme\.cache")


def running():
    """The process numbers of the program."""
    found = []
    for status in Path("/proc").glob("[0-9]*/status"):
        try:
            text = status.read_text()
        except OSError:
            continue        # it has just ended
        if text.startswith(f"Name:\t{NAME}\n") and "State:\tZ" not in text:
            found.append(int(status.parent.name))
    return found


class Installed(unittest.TestCase):
    def setUp(self):
        # Nothing below may ever happen to the machine itself.
        self.assertTrue((ROOT / ".private-root").exists() and (Run.scratch / "layer/upper/.private-root").exists(), "no private root")
        self.home = Path.home()
        self.assertEqual(self.home, Run.scratch / "home")
        self.screen = Screen()
        self.addCleanup(self.screen.stop)

    def launch(self):
        """Starts what a click on the menu's entry starts. The program keeps the outputs open, so they are a file."""
        said = Run.scratch / "launch.log"
        with said.open("w") as log:
            done = subprocess.run(["gio", "launch", str(ROOT / DESKTOP_ENTRY)], stdin=subprocess.DEVNULL, stdout=log, stderr=log,
                                  timeout=20, check=False)
        self.assertEqual(done.returncode, 0, said.read_text())

    def windows(self):
        return self.screen.windows("ZORVA Hub")

    def settled_window(self):
        """The program's only window, once it stays: while it starts the program makes its window more than once."""
        wait_for(lambda: stays(lambda: len(self.windows()) == 1, 0.5), "one window that stays", 20)
        return self.windows()[0]

    def test_it_is_installed_runs_and_goes_without_a_trace(self):
        paths = [ROOT / line.split()[-1].removeprefix("./") for line in output("dpkg-deb", "--contents", str(Run.package)).splitlines()]
        new_paths = [path for path in paths if not path.exists()]
        (self.home / "song.txt").write_text("mine")
        before = contents(self.home)

        output("dpkg", "--install", str(Run.package))
        self.assertEqual(output("dpkg-query", "-W", "-f=${db:Status-Abbrev}", NAME).strip(), "ii")
        self.assertEqual(output("dpkg", "--verify", NAME), "")
        self.assertEqual([name for name in FILES if not (ROOT / name).is_file()], [])
        self.assertEqual((running(), contents(self.home)), ([], before), "the installation started or wrote something")

        self.launch()
        window = self.settled_window()
        window_class = re.search(r'= "(.*)", "(.*)"', output("xprop", "-id", window.id, "WM_CLASS"))[2]
        self.assertEqual(window_class, desktop_entry(ROOT)["StartupWMClass"])
        self.assertEqual(len(running()), 1)
        first = running()

        self.assertEqual(subprocess.run(["/usr/bin/zorva-hub"], timeout=20, check=False).returncode, 0)
        self.assertEqual(running(), first, "a second start ends, and the first stays")
        self.assertEqual(self.settled_window(), window)

        window.close()
        wait_for(lambda: not running(), "its end after the window was closed")
        kept = contents(self.home)
        self.assertIn(str(self.home / ".config/ZORVA Hub/Vault"), kept)
        self.assertIn(str(self.home / "song.txt"), kept)

        output("dpkg", "--purge", NAME)
        self.assertNotEqual(outcome("dpkg-query", "-W", NAME)[0], 0)
        self.assertEqual([str(path) for path in new_paths if path.exists()], [])
        upper = Run.scratch / "layer/upper"
        changed = (path.relative_to(upper) for path in upper.rglob("*") if path.is_file() or path.is_symlink())
        self.assertEqual([str(path) for path in changed if not NOT_THE_PACKAGES.fullmatch(str(path))], [])
        self.assertEqual(contents(self.home), kept, "the user's files stay as they were")
