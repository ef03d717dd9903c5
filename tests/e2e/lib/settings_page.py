"""Reads the key section of the settings page from a picture of the screen."""

from .layout import Layout
from .library import name_of


class KeyPage:
    """The key section on one picture; `place` is where the Hub's window is."""

    def __init__(self, picture, place, layout: Layout):
        self.picture, self.place, self.layout = picture, place, layout

    def _part(self, box) -> bytes:
        return self.picture.part(self.place.x + box.x, self.place.y + box.y, box.width, box.height)

    def _colours(self, box):
        part = self._part(box)
        return {name_of(part[i:i + 3]) for i in range(0, len(part), 3)}

    def _has_text(self, name: str, colour: str) -> bool:
        return colour in self._colours(self.layout.key_button(name))

    def is_shown(self) -> bool:
        """SAVE KEY and TEST are there, one beside the other; a button that is disabled has no fill."""
        corners = [self.layout.key_button(name).inner(6, 6) for name in ("save", "test")]
        return all(name_of(self.picture.at(self.place.x + x, self.place.y + y)) == "raised" for x, y in corners)

    def is_idle(self) -> bool:
        """No test runs: SAVE KEY has its full colour."""
        return self._has_text("save", "accent")

    def can_delete(self) -> bool:
        """DELETE has its full colour."""
        return self._has_text("delete", "warning")

    def field(self) -> bytes:
        """The inside of the key's field without its edge, where the caret does not blink."""
        box = self.layout.key_field
        return self._part(type(box)(box.x + 12, box.y + 4, box.width - 24, box.height - 8))

    def status(self) -> bytes:
        """The status line."""
        return self._part(self.layout.key_status)
