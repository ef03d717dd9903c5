"""A Hub that is shown rather than tested: pictures of its window, its boxes and all that scrolls, for scripts/screenshots.py."""

import subprocess
from contextlib import ExitStack
from pathlib import Path

from .hubs import broker_access_for, hub_for
from .layout import PAGE_TOP, SIDEBAR_WIDTH, Layout
from .screen import run
from .shop import MANIFEST_URL, Shop
from .waiting import wait_for
from .windows_hub import WindowsHub

DEFAULT, SMALLEST, LARGE = (1100, 720), (900, 600), (1600, 1000)
TALL = (1100, 1250)             # six cards, or most of the community page
SIZES = (DEFAULT, SMALLEST, LARGE)
SCREEN_SIZE = (1640, 1300)
PAGE_POINT = (SIDEBAR_WIDTH + 60, PAGE_TOP + 60)
BOX_MARGIN = 40                 # how much of what lies behind a message box is shown
LIVELY_ROWS = 60                # a blinking caret and a growing progress are no movement
FAR = 150                       # notches beyond the end of any page
NOTCH = 45                      # about the pixels that a notch of the mouse wheel scrolls


class Stage:
    """One scene: a Hub with a new home, a catalogue that is not served yet, and the camera. Ends with close()."""

    def __init__(self, screen, binary: Path, prepared: Path, scratch: Path, home: Path, folder: Path):
        """prepared: the folder with the samples and certificates; scratch, home: do not exist yet; folder: where the pictures go."""
        self.screen, self.scratch, self.folder = screen, scratch, folder
        scratch.mkdir()
        self.shop = Shop(scratch / "catalogue", prepared / "samples", prepared / "certificates")
        self.hub = hub_for(binary, home, screen)
        self.prepared, self.on_windows = prepared, isinstance(self.hub, WindowsHub)
        self.endings = ExitStack()
        self.endings.callback(self.shop.close)
        self.endings.callback(self.hub.destroy)

    def close(self) -> None:
        self.endings.close()

    # ---- beginnings
    def open_shop(self, *releases: str) -> None:
        self.shop.publish(*releases)
        self.shop.server.start()
        self.hub.write_settings(manifestUrl=MANIFEST_URL)

    def start(self, online=True, size=DEFAULT, tab="library") -> None:
        """Shows this page of a new process in this size."""
        self.hub.layout = Layout()
        self.hub.open()
        if tab != "community":      # which is there from the start
            self.tab(tab)
        if online:
            self.hub.wait_online()
        self.resize(size)

    def reach_broker(self) -> None:
        """Gives the Hub a secret store, and lets the reference client find it; to be called before its first start."""
        access = broker_access_for(self.hub, self.scratch / "s")
        self.endings.callback(access.stop)
        for context in access.contexts():
            self.endings.enter_context(context)

    # ---- what a user does
    def tab(self, name: str) -> None:
        self.hub.window.click(self.hub.layout.tab(name).centre)

    def click(self, point) -> None:
        """Clicks at a point of the window and waits for what comes of it."""
        self.hub.window.click(point)
        self.at_rest()

    def fill(self, point, text: str) -> None:
        """Replaces what the field at this point holds."""
        window = self.hub.window
        window.click(point)
        window.press("ctrl+a", "Delete")
        window.type(text)

    def wheel(self, point, notches: int) -> None:
        """Turns the mouse wheel at a point of the window, downwards, or upwards when negative."""
        self.hub.window.move_mouse(point)
        run("xdotool", "click", "--repeat", str(abs(notches)), "--delay", "10", "5" if notches > 0 else "4")

    def resize(self, size) -> None:
        """Gives the window this size, and a place where all of it is on the screen."""
        window = self.hub.window
        run("wmctrl", "-i", "-r", window.id, "-e", f"0,10,10,{size[0]},{size[1]}")
        wait_for(lambda: (window.place().width, window.place().height) == tuple(size), f"the window to be {size}")
        self.hub.layout = Layout(*size, pane=self.hub.layout.pane)

    # ---- the camera
    def at_rest(self):
        """A picture of the screen once nothing to speak of has moved on it for about half a second."""
        seen = []

        def unchanged():
            seen.append(self.screen.picture())
            del seen[:-4]
            return len(seen) == 4 and all(rows_changed(seen[-1], other) <= LIVELY_ROWS for other in seen[:-1])
        wait_for(unchanged, "the screen to come to rest", 20, every=0.1)
        return seen[-1]

    def save(self, name: str, window=None, inset=(0, 0, 0, 0)):
        """Saves a window's content, the Hub's if none is named, less these widths at the left, top, right and bottom. Answers with
        the picture of the whole screen."""
        picture, place = self.at_rest(), (window or self.hub.window).place()
        left, top = max(place.x + inset[0], 0), max(place.y + inset[1], 0)
        crop = f"{place.x + place.width - inset[2] - left}x{place.y + place.height - inset[3] - top}+{left}+{top}"
        subprocess.run(["convert", "ppm:-", "-crop", crop, "+repage", str(self.folder / f"{name}.png")], input=picture.ppm,
                       check=True, timeout=30)
        return picture

    def save_here(self, name: str) -> None:
        """The window as it is, named after its size."""
        self.save(f"{name}-{self.hub.layout.width}x{self.hub.layout.height}")

    def shoot(self, name: str, sizes=SIZES, scrolled=0) -> None:
        """One picture a size, with the mouse out of the way, after so many notches of its wheel; then the window has the size that
        it had."""
        before = self.hub.layout.width, self.hub.layout.height
        for size in sizes:
            self.resize(size)
            if scrolled:
                self.wheel(PAGE_POINT, -FAR)
                self.wheel(PAGE_POINT, scrolled)
            self.hub.put_mouse_aside()
            self.save_here(name)
        self.resize(before)

    def box(self, name: str, title: str, answer="Return") -> None:
        """Waits for the message box, saves it as box-NAME and answers it with a key; None leaves it open."""
        box = self.hub.box(title, 60)
        self.save(f"box-{name}", box, (-BOX_MARGIN,) * 4)
        if answer:
            wait_for(lambda: box.press(answer) or not box.is_open(), f"the box \"{title}\" to go", every=0.5)

    def scroll_through(self, name: str, point_of=lambda layout: PAGE_POINT, sizes=SIZES) -> None:
        """Pictures NAME, NAME-2, NAME-3 ... down to the end of what scrolls at a point of the layout."""
        before = self.hub.layout.width, self.hub.layout.height
        for size in sizes:
            self.resize(size)
            point, last = point_of(self.hub.layout), None
            self.wheel(point, -FAR)
            for number in range(1, 20):
                self.hub.put_mouse_aside()
                picture = self.at_rest()
                if last is not None and rows_changed(last, picture) <= LIVELY_ROWS:
                    break
                self.save_here(name if number == 1 else f"{name}-{number}")
                last = picture
                self.wheel(point, (size[1] - 250) // NOTCH)
            self.wheel(point, -FAR)
        self.resize(before)


def rows_changed(a, b) -> int:
    """In how many rows of pixels two pictures of the screen differ."""
    if a.ppm == b.ppm:
        return 0
    row = 3 * a.width
    return sum(a.pixels[i:i + row] != b.pixels[i:i + row] for i in range(0, row * a.height, row))
