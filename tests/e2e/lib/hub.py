"""A Hub with a home of its own: its process, its window and its files."""

import hashlib
import json
import os
import shutil
import signal
import stat
import subprocess
from pathlib import Path

from .layout import Layout
from .library import Library
from .settings_page import KeyPage
from .screen import Screen, WindowGone
from .waiting import wait_for

WINDOW_TITLE = "ZORVA Hub"


def sha256_of(file: Path) -> str:
    with Path(file).open("rb") as stream:
        return hashlib.file_digest(stream, "sha256").hexdigest()


class Hub:
    """The binary under test, started in a home that stays from one start to the next."""

    start_limit = 20.0

    def __init__(self, binary, home: Path, screen: Screen):
        self.binary, self.home, self.screen = str(binary), Path(home), screen
        self.make_home()
        self.process = None
        self.layout = Layout()
        self.errors = self.home.parent / f"{self.home.name}.stderr"
        self.environment = {}       # what every start gets beside the test's own environment
        self.prefix = []            # a command that becomes the Hub, such as one that limits its rights

    def last_words(self) -> str:
        """What it has written to its outputs, and what is known of a crash."""
        return self.errors.read_text(errors="replace")[-1500:].strip() if self.errors.is_file() else ""

    def system_failed(self) -> bool:
        """Whether what it ran on broke under it, and said so: such a run tells nothing of the Hub."""
        return False

    def make_home(self) -> None:
        self.home.mkdir(parents=True)

    # ---- files
    @property
    def configuration(self) -> Path:
        """Where the system wants what users set."""
        return self.home / ".config"

    @property
    def local_data(self) -> Path:
        """Where the system wants what stays on this machine."""
        return self.home / ".local" / "share"

    @property
    def root(self) -> Path:
        return self.configuration / "ZORVA Hub"

    @property
    def vault(self) -> Path:
        return self.root / "Vault"

    @property
    def products(self) -> Path:
        return self.local_data / "ZORVA" / "Products"

    @property
    def packs(self) -> Path:
        return self.configuration / "ZORVA DAW" / "Factory Content"

    @property
    def cache(self) -> Path:
        return self.root / "manifest.json"

    @property
    def discovery_file(self) -> Path:
        """Where the AI broker tells of itself; it comes and goes while the Hub runs."""
        return self.root / "Runtime" / "ai-broker.json"

    @property
    def drafts(self) -> Path:
        return self.root / "Creator" / "Publish Drafts"

    def paths_at_rest(self, folder: Path):
        """Everything below a folder but what the broker renews all the time."""
        return [path for path in Path(folder).rglob("*") if path.parent != self.discovery_file.parent]

    def is_private(self, file: Path) -> bool:
        """Whether nobody but the user can read or write it."""
        return stat.S_IMODE(file.stat().st_mode) == 0o600

    def has_written(self, found) -> bool:
        """Whether this discovery file is that of the process that runs."""
        return found.pid == self.process.pid

    def recorded_path(self, path: Path) -> str:
        """What the Hub calls a file of this machine."""
        return str(path)

    def can_be_started(self, program: Path) -> bool:
        """Whether the system would start it."""
        return os.access(program, os.X_OK)

    @property
    def started_programs(self):
        """The lines that the sample programs left when they were started."""
        log = self.home / "zorva-sample-programs.log"
        return log.read_text().splitlines() if log.is_file() else []

    def wait_for_started(self, count: int) -> None:
        """Waits until so many sample programs have left their lines."""
        wait_for(lambda: len(self.started_programs) >= count, f"the mark of program {count}")

    def mark_of(self, program: str, folder: Path, mask: str) -> str:
        """The line of a sample program that was started with no arguments, in this folder and with this mask for new files."""
        return f"{program} arguments=0 umask={mask} folder={self.recorded_path(folder)}"

    def write_settings(self, **settings) -> None:
        self.root.mkdir(parents=True, exist_ok=True)
        (self.root / "settings.json").write_text(json.dumps(settings))

    def vault_record(self, product_id: str):
        """The record of a vaulted product, or None."""
        return _json(self.vault / product_id / "vault.json")

    def installed(self) -> dict:
        """installed.json, {} when there is none."""
        return _json(self.root / "installed.json") or {}

    def vault_files(self, product_id: str):
        """The names in the product's folder of the Vault."""
        return _names(self.vault / product_id)

    def part_file(self, product_id: str):
        """The unfinished download of a product, or None."""
        return next(iter((self.vault / product_id).glob("*.part")), None)

    def leftovers(self):
        """Everything that only an unfinished or failed promotion leaves behind."""
        marks = (".zorva-promotion-", ".backup-", ".promotion-backup-", ".rejected-", ".installing-")
        places = (self.root, self.products.parent, self.packs)
        return sorted(str(path) for place in places if place.is_dir() for path in place.rglob("*")
                      if any(mark in path.name for mark in marks) or path.name.endswith(".part"))

    # ---- process
    def start(self, *arguments, environment=None) -> "Hub":
        """Starts it, waits until its window is there and laid out, and opens the library."""
        self.open(*arguments, environment=environment)
        self.open_library()     # a box in front takes the click
        return self

    def open(self, *arguments, environment=None) -> None:
        """Starts it and waits until its window is there and laid out, with the community page on which it opens."""
        self.launch(*arguments, environment=environment)
        wait_for(lambda: self.process.poll() is not None or self.windows(), "the window", self.start_limit)
        if self.process.poll() is not None:
            raise AssertionError(f"the Hub ended with {self.process.returncode}: {self.errors.read_text()[-2000:]}")
        wait_for(self._is_painted, "the first painting", self.start_limit)

    def open_library(self) -> None:
        self.window.click(self.layout.tab("library").centre)

    def _is_painted(self) -> bool:
        """True when the page is on the screen. While it starts the program makes its window more than once."""
        try:
            return self.library().connection() in ("online", "offline")
        except WindowGone:
            return False

    def launch(self, *arguments, environment=None) -> None:
        """Starts it and does not wait."""
        with self.errors.open("w") as errors:
            self.process = subprocess.Popen([*self.prefix, *self.command, *arguments], env=self.variables(environment),
                                            stdout=errors, stderr=errors, cwd=self.home)

    def start_again(self, *arguments) -> int:
        """Starts it beside the one that runs, and answers with the exit code of the second."""
        return subprocess.run([*self.command, *arguments], env=self.variables(), stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL, cwd=self.home, timeout=15, check=False).returncode

    @property
    def command(self):
        """What starts it, without arguments."""
        return [self.binary]

    def variables(self, more=None) -> dict:
        """The environment of every start."""
        return {**os.environ, "HOME": str(self.home), **self.environment, **(more or {})}

    def start_to_crash_at(self, point: str, killer: Path) -> None:
        """Starts it so that it dies at this step of a promotion; `killer` is the library that does it."""
        self.start(environment={"LD_PRELOAD": str(killer), "HUB_KILL_AT": point})

    def wait_for_crash(self, limit: float = 20.0) -> None:
        """Waits for the death that start_to_crash_at() prepared."""
        wait_for(lambda: self.process.poll() is not None, "the crash", limit)
        if self.process.returncode != -signal.SIGKILL:
            raise AssertionError(f"it was not killed but ended with {self.process.returncode}")

    def kill(self) -> None:
        """kill -9, as a crash or a power cut."""
        if self.process is not None and self.process.poll() is None:
            self.process.send_signal(signal.SIGKILL)
            self.process.wait(10)

    def quit(self) -> int:
        """Closes the window and answers with the exit code."""
        self.window.close()
        try:
            return self.process.wait(10)
        except subprocess.TimeoutExpired:
            raise AssertionError(f"closed, it did not end within 10 s; its threads wait in {self._waits()}") from None

    def _waits(self):
        """Where each thread of the process sleeps, by the name of the system call."""
        tasks = Path(f"/proc/{self.process.pid}/task").iterdir()
        return [f"{(task / 'comm').read_text().strip()}: {(task / 'wchan').read_text()}" for task in tasks]

    def destroy(self) -> None:
        self.kill()
        shutil.rmtree(self.home, ignore_errors=True)

    # ---- window
    def windows(self):
        return self.screen.windows(WINDOW_TITLE)

    @property
    def window(self):
        return wait_for(self.windows, "the Hub's window")[0]

    def library(self) -> Library:
        """The library page as it is on the screen now, with the mouse out of its way."""
        window = self.put_mouse_aside()
        return Library(self.screen.picture(), window.place(), self.layout)

    def put_mouse_aside(self):
        """Moves it to where it lights nothing up; answers with the window."""
        window = self.window
        window.move_mouse(self.layout.away)
        return window

    def wait_for_card(self, index: int, state: str, limit: float = 10.0) -> None:
        seen = []
        try:
            wait_for(lambda: seen.append(self.library().card(index)) or seen[-1] == state, "the card", limit)
        except AssertionError:
            raise AssertionError(f"card {index} shows \"{seen[-1]}\" and not \"{state}\" after {limit:g} s") from None

    def wait_online(self) -> None:
        wait_for(lambda: self.library().connection() == "online", "the pill to say that the catalogue was reached", 15)

    def wait_for_download(self, product_id: str, file_name: str, limit: float = 20.0) -> None:
        """Waits until the record names this file and nothing but the two is left of the download."""
        wait_for(lambda: (self.vault_record(product_id) or {}).get("fileName") == file_name
                 and self.vault_files(product_id) == sorted([file_name, "vault.json"]), f"{file_name} in the Vault", limit)

    # ---- what a user does
    def click_card_button(self, index: int) -> None:
        self.window.click(self.layout.card_button(index).centre)

    def choose_from_card_menu(self, index: int, entry: int) -> None:
        """Opens a card's menu and chooses its enabled entry with this number, from 1, by the keyboard."""
        self.window.click(self.layout.card_menu(index).centre)
        popup = wait_for(lambda: self.screen.popups(), "the menu")[0]
        self.window.press(*["Down"] * entry, "Return")
        wait_for(lambda: not popup.is_open(), "the menu to go")

    def select_card(self, index: int) -> None:
        """Opens the detail pane for a card."""
        self.window.click(self.layout.card_picture(index))
        self.layout = Layout(self.layout.width, self.layout.height, pane=True)
        wait_for(lambda: self.library().pane_is_open(), "the detail pane")

    def close_pane(self) -> None:
        self.window.click(self.layout.pane_close.centre)
        wait_for(lambda: not self.library().pane_is_open(), "the detail pane to close")
        self.layout = Layout(self.layout.width, self.layout.height)

    def box(self, title: str, limit: float = 15.0):
        """Waits for the message box with this title."""
        return wait_for(lambda: self.screen.windows(title), f"the box \"{title}\"", limit)[0]

    def open_settings(self) -> None:
        """Opens the settings page, and waits until it has asked the secret store."""
        self.window.click(self.layout.tab("settings").centre)
        wait_for(lambda: self.key_page().is_shown(), "the settings page")

    def key_page(self) -> KeyPage:
        """The settings page as it is on the screen now, with the mouse out of its way."""
        window = self.put_mouse_aside()
        return KeyPage(self.screen.picture(), window.place(), self.layout)

    def type_key(self, key: str) -> None:
        """Types a key into the field of the settings page."""
        before = self.key_page().field()
        self.window.click(self.layout.key_field.centre)
        self.window.type(key)
        wait_for(lambda: self.key_page().field() != before, "the key's dots in the field")

    def press_key_button(self, name: str, until=None) -> None:
        """Presses "save", "test" or "delete" on the settings page, and waits until the page is at rest again: until the condition
        holds, or without one until the status line says something else."""
        before = self.key_page().status()
        self.window.click(self.layout.key_button(name).centre)
        wait_for(lambda: (until() if until else self.key_page().status() != before) and self.key_page().is_idle(),
                 f"the outcome of \"{name}\"", 20)

    def save_key(self, key: str) -> None:
        """Stores a key as a user does."""
        self.open_settings()
        self.type_key(key)
        self.press_key_button("save")

    def answer(self, title: str, key: str = "Return", limit: float = 15.0) -> None:
        """Waits for the message box with this title, presses a key in it and waits until it has gone."""
        box = self.box(title, limit)
        box.press(key)
        wait_for(lambda: not box.is_open(), f"the box \"{title}\" to go")

    def answer_all(self, title: str) -> None:
        """Answers several boxes with this title that are open at once. Only the newest listens, wherever it lies."""
        def pressed_away():
            for box in self.screen.windows(title):
                box.press("Return")
            return not self.screen.windows(title)
        wait_for(pressed_away, f"all boxes \"{title}\" to go")

    def other_windows(self):
        """All managed windows but the Hub's own."""
        return [window for window in self.screen.stacking() if window not in self.windows()]


def _json(file: Path):
    return json.loads(file.read_text(encoding="utf-8")) if file.is_file() else None


def _names(folder: Path):
    return sorted(path.name for path in folder.iterdir()) if folder.is_dir() else []
