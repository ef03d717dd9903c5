"""The Hub for Windows under Wine: each home is a Windows of its own, with its registry and its user's folders."""

import json
import os
import shutil
import subprocess
from pathlib import Path

from .hub import Hub

INSTALLED = Path("Program Files/ZORVA Hub/ZORVA Hub.exe")     # on drive C
SAMPLE_BOX = "Sample program"
# A crash leaves a report with the addresses on its stack, and shows no dialog that would keep the process from ending.
CRASH_SCRIPT, CRASH_REPORT = "crash.bat", "crash.txt"
CRASH_SETTINGS = [["reg", "add", r"HKCU\Software\Wine\WineDbg", "/v", "ShowCrashDialog", "/t", "REG_DWORD", "/d", "0", "/f"],
                  ["reg", "add", r"HKLM\Software\Microsoft\Windows NT\CurrentVersion\AeDebug", "/v", "Debugger", "/t", "REG_SZ",
                   "/d", rf"cmd /c C:\{CRASH_SCRIPT} %ld %ld", "/f"]]
NOT_SHARED = ("users", "ProgramData")                           # what programs write to, of the folders on drive C


def wine() -> str:
    """The program itself: the command "wine" of some systems complains about 32 bits first."""
    found = next((path for path in ("/usr/lib/wine/wine64", shutil.which("wine64"), shutil.which("wine")) if path and Path(path).exists()),
                 None)
    if found is None:
        raise RuntimeError("Wine is missing: scripts/setup-windows.sh installs it")
    return found


def variables_for(prefix: Path) -> dict:
    """Its renderer stays Wine's own choice: without one there is no screen to keep time by, and nothing is painted twice."""
    return {"WINEPREFIX": str(prefix), "WINEARCH": "win64", "WINEDEBUG": "-all",
            "WINEDLLOVERRIDES": "mscoree,mshtml,winemenubuilder.exe="}


def end(prefix: Path) -> None:
    """Ends this Windows with all its programs."""
    subprocess.run(["wineserver", "-k"], env={**os.environ, **variables_for(prefix)}, stderr=subprocess.DEVNULL, timeout=30, check=False)


class WindowsHub(Hub):
    """`home` becomes a folder with drive C in it; afterwards it is the user's folder there, as on other systems."""

    start_limit = 60.0
    is_one_further = False      # the mouse, of two places
    template = None     # a Windows with the program, in which it was never started

    @classmethod
    def prepare(cls, binary, scratch: Path) -> None:
        """Makes the Windows of which every home is a copy."""
        prefix = Path(scratch) / "windows"
        # Drive C is all that its programs see of this machine, from the start: fonts are remembered by their drive.
        (prefix / "drive_c").mkdir(parents=True)
        (prefix / "dosdevices").mkdir()
        (prefix / "dosdevices" / "c:").symlink_to("../drive_c")
        environment = {**os.environ, **variables_for(prefix)}
        for command in (["wineboot", "--init"], ["winecfg", "-v", "win10"], *CRASH_SETTINGS):
            subprocess.run([wine(), *command], env=environment, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                           stderr=subprocess.DEVNULL, timeout=300, check=True)
        subprocess.run(["wineserver", "-w"], env=environment, timeout=300, check=True)
        for folder in user_of(prefix).iterdir():            # some lead to the folders of whoever runs this
            if folder.is_symlink():
                folder.unlink()
                folder.mkdir()
        (prefix / "drive_c" / CRASH_SCRIPT).write_text(rf"@C:\windows\system32\winedbg.exe --auto %1 %2 > C:\{CRASH_REPORT}" + "\r\n")
        program = prefix / "drive_c" / INSTALLED
        program.parent.mkdir(parents=True)
        shutil.copy(binary, program)
        cls.template = prefix

    def __init__(self, binary, home: Path, screen):
        self.windows_folder = Path(home)
        self.drive = self.windows_folder / "drive_c"
        super().__init__(binary, self.windows_folder / user_of(self.template).relative_to(self.template), screen)
        self.errors = self.windows_folder.with_suffix(".stderr")
        self.environment |= variables_for(self.windows_folder)

    def make_home(self) -> None:
        """Copies the template. The system's files are shared with it, which costs a moment and no space; what is written to is copied."""
        self.windows_folder.parent.mkdir(parents=True, exist_ok=True)
        subprocess.run(["cp", "-al", self.template, self.windows_folder], timeout=60, check=True)
        copies = [*self.template.glob("*.reg"), *(self.template / "drive_c" / name for name in NOT_SHARED)]
        for original in copies:
            copy = self.windows_folder / original.relative_to(self.template)
            shutil.rmtree(copy) if copy.is_dir() else copy.unlink()
            subprocess.run(["cp", "-a", original, copy], timeout=60, check=True)

    def last_words(self) -> str:
        report = self.drive / CRASH_REPORT
        return super().last_words() + (report.read_text(errors="replace") if report.is_file() else "")

    def system_failed(self) -> bool:
        return "wine client error" in super().last_words()      # a thread has lost Wine's server, and ends with what it held

    # ---- files
    def is_private(self, file: Path) -> bool:
        return file.is_file() and self.home in file.parents     # a user's folders are nobody else's there

    def has_written(self, found) -> bool:
        return found.token != self._old_token

    def _token(self):
        """What the discovery file holds now, or None: a Hub that was killed leaves it."""
        try:
            return json.loads(self.discovery_file.read_bytes())["token"]
        except FileNotFoundError:
            return None

    @property
    def configuration(self) -> Path:
        return self.home / "AppData" / "Roaming"

    @property
    def local_data(self) -> Path:
        return self.home / "AppData" / "Local"

    def recorded_path(self, path: Path) -> str:
        return "C:\\" + str(path.relative_to(self.drive)).replace("/", "\\")

    def put_mouse_aside(self):
        """Wine loses a movement now and then, after which a card stays lit, and notices with the next one."""
        window, (x, y) = self.window, self.layout.away
        self.is_one_further = not self.is_one_further
        window.move_mouse((x + self.is_one_further, y))
        return window

    def can_be_started(self, program: Path) -> bool:
        return program.suffix == ".exe" and program.is_file()

    def mark_of(self, program: str, folder: Path, mask: str) -> str:
        return f"{program} arguments=0 folder={self.recorded_path(folder)}"

    def wait_for_started(self, count: int) -> None:
        """There they also show a box, which is answered so that they end."""
        super().wait_for_started(count)
        self.answer(SAMPLE_BOX)

    # ---- process
    @property
    def command(self):
        return self.command_of(INSTALLED)

    def command_of(self, program: Path, *arguments):
        """What starts a program of drive C in this Windows."""
        return [wine(), self.recorded_path(self.drive / program), *arguments]

    def variables(self, more=None) -> dict:
        return {**os.environ, **self.environment, **(more or {})}

    def launch(self, *arguments, environment=None) -> None:
        """Wine's server stays for a minute between two starts, which makes the second as fast as on Windows."""
        self._old_token = self._token()
        if environment:
            end(self.windows_folder)        # else the one that runs would not know these variables
        # Ends with 2 when one runs already.
        subprocess.run(["wineserver", "-p60"], env=self.variables(environment), stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL, timeout=30, check=False)
        super().launch(*arguments, environment=environment)
        try:
            # Far less than the Hub needs to begin, so that it was Wine that did not start; that happens once in hundreds of times.
            if self.process.wait(0.4) == 1:
                print("  Wine did not start, and is asked once more", flush=True)
                super().launch(*arguments, environment=environment)
        except subprocess.TimeoutExpired:
            pass

    def wait_for_crash(self, limit: float = 20.0) -> None:
        """Files are renamed by Wine's server for the Hub, so that the server is what dies: more like a power cut than like one process
        that is killed. Without it no program gets on, or even ends."""
        try:
            subprocess.run(["wineserver", "-w"], env=self.variables(), timeout=limit, check=True)
        except subprocess.TimeoutExpired:
            raise AssertionError(f"waited {limit:g} s in vain for the crash") from None
        self.kill()

    def destroy(self) -> None:
        self.kill()
        end(self.windows_folder)
        shutil.rmtree(self._server_folder(), ignore_errors=True)
        shutil.rmtree(self.windows_folder, ignore_errors=True)

    def _server_folder(self) -> Path:
        """Where Wine's server keeps its socket, outside of the Windows that it serves."""
        facts = self.windows_folder.stat()
        return Path(f"/tmp/.wine-{os.getuid()}/server-{facts.st_dev:x}-{facts.st_ino:x}")


def user_of(prefix: Path) -> Path:
    """The folder of the only user."""
    user, = [folder for folder in (prefix / "drive_c" / "users").iterdir() if folder.name != "Public"]
    return user
