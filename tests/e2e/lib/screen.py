"""An X display: its server and window manager, its windows, keys, mouse and pictures."""

import os
import re
import subprocess
from dataclasses import dataclass
from pathlib import Path

from .waiting import wait_for

SCREEN_SIZE = (1400, 900)
DISPLAY_NUMBERS = range(61, 100)     # never 0: a program without DISPLAY tries that one


def run(*command, check=True) -> str:
    """The output of a command; "" when it failed and that is allowed."""
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, timeout=20)
    if check and done.returncode != 0:
        raise AssertionError(f"{' '.join(map(str, command))} ended with {done.returncode}")
    return done.stdout if done.returncode == 0 else ""


class WindowGone(AssertionError):
    """The window that was asked about no longer exists."""


class Picture:
    """What was on the whole screen at one moment."""

    def __init__(self):
        raw = subprocess.run(["import", "-window", "root", "-depth", "8", "ppm:-"], stdout=subprocess.PIPE, check=True,
                             timeout=20).stdout
        header = re.match(rb"P6\s+(\d+)\s+(\d+)\s+255\s", raw)
        self.width, self.height = int(header[1]), int(header[2])
        self.ppm = raw
        self.pixels = memoryview(raw)[header.end():]

    def at(self, x: int, y: int):
        """The colour of a pixel: three numbers up to 255."""
        start = 3 * (y * self.width + x)
        return tuple(self.pixels[start:start + 3])

    def part(self, x: int, y: int, width: int, height: int) -> bytes:
        """The pixels of a rectangle, to be compared."""
        return b"".join(self.pixels[3 * (row * self.width + x):3 * (row * self.width + x + width)]
                        for row in range(y, y + height))

    def save(self, file: Path) -> None:
        subprocess.run(["convert", "ppm:-", str(file)], input=self.ppm, check=True, timeout=20)


@dataclass(frozen=True)
class Place:
    """A window's content on the screen."""
    x: int
    y: int
    width: int
    height: int


class Window:
    """One window of the display."""

    def __init__(self, window_id: str):
        self.id = window_id

    def __eq__(self, other):
        return isinstance(other, Window) and self.id == other.id

    def __hash__(self):
        return hash(self.id)

    def place(self) -> Place:
        text = run("xwininfo", "-id", self.id, check=False)
        if not text:
            raise WindowGone(f"there is no window {self.id}")
        numbers = [int(re.search(rf"{name}:\s+(-?\d+)", text)[1])
                   for name in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height")]
        return Place(*numbers)

    def frame(self):
        """What the window manager draws around it: left, right, top, bottom."""
        found = re.search(r"= (\d+), (\d+), (\d+), (\d+)", run("xprop", "-id", self.id, "_NET_FRAME_EXTENTS"))
        return tuple(map(int, found.groups())) if found else (0, 0, 0, 0)

    def is_open(self) -> bool:
        return bool(run("xwininfo", "-id", self.id, check=False))

    def move_mouse(self, point) -> None:
        """Moves the mouse to a point of the content; nothing happens when the window has gone."""
        run("xdotool", "mousemove", "--window", self.id, str(point[0]), str(point[1]), check=False)

    def click(self, point) -> None:
        """Moves the mouse to a point of the content, and clicks once the window had the time to notice it there."""
        run("xdotool", "mousemove", "--window", self.id, str(point[0]), str(point[1]), "sleep", "0.08", "click", "1")

    def press(self, *keys) -> None:
        """Gives the window the keyboard and presses the keys; nothing happens when the window has gone."""
        run("xdotool", "windowfocus", "--sync", self.id, "key", "--delay", "60", *keys, check=False)

    def type(self, text: str) -> None:
        """Gives the window the keyboard and types a text. The text is no argument of a command, which anybody could list."""
        run("xdotool", "windowfocus", "--sync", self.id)
        subprocess.run(["xdotool", "type", "--delay", "12", "--file", "-"], input=text.encode(), check=True, timeout=60)

    def resize(self, width: int, height: int) -> None:
        """Asks the window manager for another size of the content, as a user's drag would."""
        run("wmctrl", "-i", "-r", self.id, "-e", f"0,-1,-1,{width},{height}")

    def close(self) -> None:
        """Asks to close it, as its close button would."""
        run("wmctrl", "-i", "-c", self.id)


class Screen:
    """A display of its own, with a window manager. Ends with stop()."""

    def __init__(self, size=SCREEN_SIZE):
        self._size = "%dx%dx24" % size
        number = next(filter(self._start_server, DISPLAY_NUMBERS), None)
        if number is None:
            raise RuntimeError("Xvfb did not start")
        os.environ["DISPLAY"] = f":{number}"
        self._manager = subprocess.Popen(["openbox"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        wait_for(lambda: "window id" in run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK", check=False), "the window manager", 60)

    def _start_server(self, number: int) -> bool:
        """Starts Xvfb under this number. False when it is taken."""
        read_end, write_end = os.pipe()
        self._server = subprocess.Popen(["Xvfb", f":{number}", "-displayfd", str(write_end), "-screen", "0", self._size, "-nolisten",
                                         "tcp"], pass_fds=[write_end], stderr=subprocess.DEVNULL)
        os.close(write_end)
        with os.fdopen(read_end) as pipe:
            if pipe.readline().strip():
                return True
        self._server.wait(10)
        return False

    def stop(self) -> None:
        for process in (self._manager, self._server):
            process.terminate()
            process.wait(10)

    @staticmethod
    def windows(title: str):
        """The visible windows with exactly this title."""
        found = run("xdotool", "search", "--onlyvisible", "--name", f"^{re.escape(title)}$", check=False)
        return [Window(line) for line in found.split()]

    @staticmethod
    def popups():
        """The visible menus. The window manager puts everything else into a frame, which has no class of its own."""
        text = run("xwininfo", "-root", "-children")
        with_class = re.findall(r'^\s+(0x[0-9a-f]+) .*: \("[^)]*\)\s+(\d+)x(\d+)', text, re.M)
        return [Window(str(int(number, 16))) for number, width, height in with_class if int(width) > 40 and int(height) > 20
                and "IsViewable" in run("xwininfo", "-id", number, check=False)]

    @staticmethod
    def stacking():
        """The managed windows from bottom to top."""
        text = run("xprop", "-root", "_NET_CLIENT_LIST_STACKING")
        return [Window(str(int(number, 16))) for number in re.findall(r"0x[0-9a-f]+", text)]

    @staticmethod
    def active():
        """The window that has the keyboard, or None."""
        found = run("xdotool", "getactivewindow", check=False).strip()
        return Window(found) if found else None

    @staticmethod
    def picture() -> Picture:
        return Picture()
