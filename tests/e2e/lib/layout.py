"""Where things are in the Hub's window. The layout is fixed, so a click needs no help from the program.

All numbers are logical pixels from the top left corner of the window's content."""

from dataclasses import dataclass

SIDEBAR_WIDTH, HEADER_HEIGHT, PAGE_TOP, STATUS_HEIGHT = 160, 60, 106, 40
PANE_WIDTH, SCROLL_BAR = 320, 6
LOGO_HEIGHT, TAB_HEIGHT = 84, 34
TABS = ("community", "library", "settings", "about")
CARD_HEIGHT, CARD_GAP, GRID_LEFT, GRID_TOP = 380, 16, 20, 20


@dataclass(frozen=True)
class Box:
    x: int
    y: int
    width: int
    height: int

    @property
    def centre(self):
        return self.x + self.width // 2, self.y + self.height // 2

    def inner(self, x: int, y: int):
        """The point at this offset from the box's own corner."""
        return self.x + x, self.y + y


@dataclass(frozen=True)
class Layout:
    """The layout of a content of this size, with the detail pane open or not."""
    width: int = 1100
    height: int = 720
    pane: bool = False

    def tab(self, name: str) -> Box:
        return Box(0, LOGO_HEIGHT + TABS.index(name) * TAB_HEIGHT, SIDEBAR_WIDTH, TAB_HEIGHT)

    @property
    def away(self):
        """A point where the mouse lights up nothing: the sidebar below its tabs."""
        return SIDEBAR_WIDTH // 2, self.height - STATUS_HEIGHT - 40

    # ---- the grid of cards
    @property
    def _grid_width(self) -> int:
        page = self.width - SIDEBAR_WIDTH - (PANE_WIDTH if self.pane else 0)
        return max(page - SCROLL_BAR, 0)

    @property
    def columns(self) -> int:
        return min(max((self._grid_width - 24) // 256, 1), 3)

    @property
    def card_width(self) -> int:
        return (self._grid_width - self.columns * CARD_GAP - 24) // self.columns

    def card(self, index: int) -> Box:
        """The card as it lies while the library is not scrolled."""
        row, column = divmod(index, self.columns)
        return Box(SIDEBAR_WIDTH + (self.card_width + CARD_GAP) * column + GRID_LEFT,
                   PAGE_TOP + GRID_TOP + row * (CARD_HEIGHT + CARD_GAP), self.card_width, CARD_HEIGHT)

    def card_button(self, index: int) -> Box:
        card = self.card(index)
        return Box(card.x + 10, card.y + CARD_HEIGHT - 46, card.width - 20, 36)

    def card_menu(self, index: int) -> Box:
        card = self.card(index)
        return Box(card.x + card.width - 28, card.y + 4, 24, 24)

    def card_picture(self, index: int):
        """A point of the card that selects it and is no button."""
        card = self.card(index)
        return card.inner(card.width // 2, 80)

    def chip(self, index: int) -> Box:
        """The left end of the state chip, whose width follows its text."""
        card = self.card(index)
        return Box(card.x + 12, card.y + 232, 8, 20)

    # ---- the detail pane
    @property
    def pane_box(self) -> Box:
        return Box(self.width - PANE_WIDTH, PAGE_TOP, PANE_WIDTH, self.height - PAGE_TOP - STATUS_HEIGHT)

    @property
    def pane_close(self) -> Box:
        return Box(self.width - 40, PAGE_TOP + 16, 24, 24)

    def _pane_row(self, bottom: int, height: int) -> Box:
        return Box(self.width - PANE_WIDTH + 16, bottom - height, PANE_WIDTH - 32, height)

    @property
    def pane_reveal(self) -> Box:
        return self._pane_row(self.height - STATUS_HEIGHT - 16, 20)

    @property
    def pane_reinstall(self) -> Box:
        return self._pane_row(self.pane_reveal.y - 8, 36)

    def pane_primary(self, with_reinstall: bool) -> Box:
        above = self.pane_reinstall if with_reinstall else self.pane_reveal
        return self._pane_row(above.y - 8, 36)

    # ---- the settings page
    @property
    def _column(self) -> Box:
        page = self.width - SIDEBAR_WIDTH
        width = min(page - 48, 400)
        return Box(SIDEBAR_WIDTH + (page - width) // 2, PAGE_TOP + 24, width, self.height - PAGE_TOP - STATUS_HEIGHT - 48)

    @property
    def key_field(self) -> Box:
        return Box(self._column.x, self._column.y + 22, self._column.width, 30)

    def key_button(self, name: str) -> Box:
        index, width = ("save", "test", "delete").index(name), (self._column.width - 16) // 3
        return Box(self._column.x + index * (width + 8), self._column.y + 60, width, 28)

    @property
    def key_status(self) -> Box:
        return Box(self._column.x, self._column.y + 94, self._column.width, 18)

    # ---- header and status bar
    @property
    def pill_strip(self) -> Box:
        """The part of the header in which the connection pill lies, at its right end."""
        right = self.width - 16 - 200 - 12
        return Box(right - 320, 17, 320, 26)

    @property
    def status_bar(self) -> Box:
        return Box(0, self.height - STATUS_HEIGHT, self.width, STATUS_HEIGHT)

    @property
    def progress_track(self) -> Box:
        return Box(self.width - 162, self.height - STATUS_HEIGHT + 15, 150, 4)

    @property
    def status_message(self) -> Box:
        """The right end of the status bar, where a message or the running download is written."""
        return Box(self.width - 282, self.height - STATUS_HEIGHT + 1, 270, STATUS_HEIGHT - 1)
