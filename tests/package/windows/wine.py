"""A Windows of this run's own: programs, folders and the registry."""

import re
import shutil
import subprocess
import time
from pathlib import Path

from shared import Run

WINE = next(path for path in ("/usr/lib/wine/wine64", shutil.which("wine64"), shutil.which("wine")) if path and Path(path).exists())
UNINSTALL_LIST = r"Software\Microsoft\Windows\CurrentVersion\Uninstall"


def wine(*command, limit: float = 180.0):
    """Runs a Windows program: exit code and output, which is a file because what it starts keeps it open."""
    said = Run.scratch / "wine.log"
    with said.open("w") as log:
        done = subprocess.run([WINE, *command], stdin=subprocess.DEVNULL, stdout=log, stderr=log, timeout=limit, check=False,
                              cwd=Run.scratch)
    return done.returncode, said.read_text(errors="replace")


def step(what: str, *command) -> int:
    """The same as a step that is told, with its time. Answers with the exit code."""
    began = time.monotonic()
    code, _ = wine(*command)
    print(f"\n    {what}: exit code {code}, {time.monotonic() - began:.1f} s", end=" ", flush=True)
    return code


class Windows:
    """A new prefix; its drive C is all that its programs see of this machine."""

    def __init__(self):
        code = step("a new Windows", "wineboot", "--init")
        if code != 0:
            raise AssertionError(f"Wine made no prefix: {code}")
        subprocess.run(["wineserver", "-w"], check=True, timeout=180)
        prefix = Run.scratch / "prefix"
        self.drive = prefix / "drive_c"
        for letter in (prefix / "dosdevices").iterdir():
            if letter.name != "c:":
                letter.unlink()
        self.become("win10")    # not what every Wine takes itself for
        variables = dict(line.split("=", 1) for line in wine("cmd", "/c", "set")[1].splitlines() if "=" in line)
        self.roaming, self.local = (self.file(variables[name]) for name in ("APPDATA", "LOCALAPPDATA"))

    @staticmethod
    def become(version: str) -> None:
        """Another release of Windows, by Wine's name for it."""
        if wine("winecfg", "-v", version)[0] != 0:
            raise AssertionError(f"Wine does not become {version}")

    def file(self, path: str) -> Path:
        """A path on drive C as a file of this machine."""
        return self.drive / path.strip().removeprefix("C:\\").replace("\\", "/")

    def path(self, file: Path) -> str:
        """The other way round."""
        return "C:\\" + str(file.relative_to(self.drive)).replace("/", "\\")

    @staticmethod
    def registered(root: str, name: str):
        """The values of an entry of the list of programs that can be removed; None when there is none."""
        code, text = wine("reg", "query", rf"{root}\{UNINSTALL_LIST}\{name}")
        return dict(re.findall(r"^ {4}(\w+) {4}REG_\w+ {4}(.*?)\r?$", text, re.M)) if code == 0 else None


def is_running(program: str) -> bool:
    """Whether a process with this program in its command runs."""
    for file in Path("/proc").glob("[0-9]*/cmdline"):
        try:
            if program.encode() in file.read_bytes():
                return True
        except OSError:
            continue        # it has just ended
    return False
