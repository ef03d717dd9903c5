"""Reads the library page from a picture of the screen."""

from .layout import Layout

COLOURS = {
    "accent": (0x00, 0xD4, 0xFF), "action": (0xF9, 0x73, 0x16), "success": (0x4C, 0xAF, 0x50), "warning": (0xFF, 0x98, 0x00),
    "border": (0x3E, 0x3E, 0x3E), "surface": (0x44, 0x44, 0x44), "window": (0x43, 0x43, 0x43), "raised": (0x4A, 0x4A, 0x4A),
}
TOLERANCE = 2


def name_of(colour) -> str:
    """The palette's name of a colour, or its numbers."""
    best = min(COLOURS, key=lambda name: max(abs(a - b) for a, b in zip(COLOURS[name], colour)))
    near = max(abs(a - b) for a, b in zip(COLOURS[best], colour)) <= TOLERANCE
    return best if near else "#%02x%02x%02x" % tuple(colour)


# A card shows its state by the fill of its button, the edge of its chip and the inside of its chip.
_STATES = {
    ("action", "accent", "surface"): "downloadable",
    ("surface", "accent", "surface"): "not downloadable",
    ("surface", "warning", "warning"): "busy or no update now",
    ("action", "border", "surface"): "cached",
    ("accent", "success", "success"): "installed",
    ("action", "warning", "warning"): "update available",
}


class Library:
    """The library page on one picture; `place` is where the Hub's window is."""

    def __init__(self, picture, place, layout: Layout):
        self.picture, self.place, self.layout = picture, place, layout

    def _colour(self, point) -> str:
        return name_of(self.picture.at(self.place.x + point[0], self.place.y + point[1]))

    def _part(self, box) -> bytes:
        return self.picture.part(self.place.x + box.x, self.place.y + box.y, box.width, box.height)

    def card(self, index: int) -> str:
        """The state that the card shows, "no card" where there is none, or the three colours when they make no sense."""
        layout = self.layout
        seen = (self._colour(layout.card_button(index).inner(6, 6)), self._colour(layout.chip(index).inner(0, 10)),
                self._colour(layout.chip(index).inner(4, 10)))
        return "no card" if seen == ("window",) * 3 else _STATES.get(seen, str(seen))

    def connection(self) -> str:
        """What the dot of the connection pill says: "online" or "offline"."""
        strip = self._part(self.layout.pill_strip)
        found = {name_of(strip[i:i + 3]) for i in range(0, len(strip), 3)} & {"success", "warning"}
        return {"success": "online", "warning": "offline"}.get(found.pop()) if len(found) == 1 else f"unclear {found}"

    def progress(self):
        """The filled part of the status bar's progress track, 0 to 1, or None while there is no track."""
        track = self.layout.progress_track
        row = [self._colour((track.x + x, track.y + 2)) for x in range(2, track.width - 2)]
        filled = row.count("action")
        return None if filled == 0 and "raised" not in row else filled / len(row)

    def pane_is_open(self) -> bool:
        """The pane's left edge is a line from top to bottom."""
        pane = self.layout.pane_box
        return all(self._colour(pane.inner(0, y)) == "border" for y in range(10, pane.height, 40))

    def status_text_shown(self) -> bool:
        """Something is written at the right end of the status bar."""
        message = self._part(self.layout.status_message)
        return len({message[i:i + 3] for i in range(0, len(message), 3)}) > 1

    def pane_button(self, box) -> str:
        """The fill of a button of the pane."""
        return self._colour(box.inner(6, 6))
