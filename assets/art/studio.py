"""What every picture shares: the colours of the studio, the canvas that collects SVG, the record of a picture.

All numbers are written with at most three decimals, so that the SVG of a picture is the same text on every
machine. Coordinates grow to the right and downwards."""

from dataclasses import dataclass
from typing import Callable

# The two lights, each from its source (hot) over its colour to where it falls off (deep).
CYAN_HOT, CYAN, CYAN_DEEP = "#52E2FF", "#00D4FF", "#0079BD"
ORANGE_HOT, ORANGE, ORANGE_DEEP = "#FF9340", "#F97316", "#BE3F0C"

# The room that they light, and what is written in it.
NIGHT = "#12161B"
WHITE = "#F5F5F5"


def num(value):
  """A coordinate as text: at most three decimals, no trailing zeros, no negative zero."""
  text = f"{value:.3f}".rstrip("0").rstrip(".")
  return "0" if text == "-0" else text


def polygon_path(points):
  """The path data of a closed polygon through the given (x, y) points."""
  return "M" + "L".join(f"{num(x)} {num(y)}" for x, y in points) + "Z"


class Canvas:
  """Collects the elements of one SVG picture in painting order.

  `view_width` and `view_height` are the units that a picture draws in; they stretch over the pixels that are
  asked for when the picture is rendered."""

  def __init__(self, view_width, view_height):
    self.view_width = view_width
    self.view_height = view_height
    self._gradients = {}
    self._body = []

  def linear(self, start, end, stops):
    """Defines a linear gradient from `start` to `end` (points in the units of the shape that is filled) and
    returns the paint to fill with. `stops` are (offset 0 to 1, colour). Equal gradients are defined once."""
    (x1, y1), (x2, y2) = start, end
    inner = "".join(f'<stop offset="{num(offset)}" stop-color="{colour}"/>' for offset, colour in stops)
    key = f'x1="{num(x1)}" y1="{num(y1)}" x2="{num(x2)}" y2="{num(y2)}">{inner}'
    return f"url(#{self._gradients.setdefault(key, f'g{len(self._gradients)}')})"

  def path(self, data, paint, even_odd=False):
    """Fills a path."""
    rule = ' fill-rule="evenodd"' if even_odd else ""
    self._body.append(f'<path d="{data}" fill="{paint}"{rule}/>')

  def disc(self, x, y, radius, paint):
    """Fills a circle."""
    self._body.append(f'<circle cx="{num(x)}" cy="{num(y)}" r="{num(radius)}" fill="{paint}"/>')

  def begin(self, x, y, scale=1):
    """Opens a group whose origin lies at (x, y) and whose units are `scale` of the surrounding ones."""
    self._body.append(f'<g transform="translate({num(x)} {num(y)}) scale({num(scale)})">')

  def end(self):
    """Closes the group that was opened last."""
    self._body.append("</g>")

  def svg(self):
    """The whole picture as SVG text."""
    defs = "".join(f'<linearGradient id="{name}" gradientUnits="userSpaceOnUse" {key}</linearGradient>'
                   for key, name in self._gradients.items())
    return (f'<svg xmlns="http://www.w3.org/2000/svg" preserveAspectRatio="none" '
            f'viewBox="0 0 {num(self.view_width)} {num(self.view_height)}">'
            f"<defs>{defs}</defs>{''.join(self._body)}</svg>\n")


@dataclass(frozen=True)
class Picture:
  """One file of the assets folder: its name, its size in pixels, and the function that returns its canvas."""

  file_name: str
  width: int
  height: int
  draw: Callable[[], Canvas]
