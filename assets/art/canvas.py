"""The canvas that collects SVG, and the record of a picture.

All numbers are written with at most three decimals, so that the SVG of a picture is the same text on every
machine. Coordinates grow to the right and downwards."""

import re
from contextlib import contextmanager
from dataclasses import dataclass
from typing import Callable


def num(value):
  """A coordinate as text: at most three decimals, no trailing zeros, no negative zero."""
  text = f"{value:.3f}".rstrip("0").rstrip(".") if value % 1 else str(int(value))
  return "0" if text == "-0" else text


def polygon_path(points):
  """The path data of a closed polygon through the given (x, y) points."""
  return "M" + "L".join(f"{num(x)} {num(y)}" for x, y in points) + "Z"


def line_path(points):
  """The path data of an open line through the given points."""
  return "M" + "L".join(f"{num(x)} {num(y)}" for x, y in points)


def smooth_path(points, closed=True, tension=1.0):
  """The path data of a smooth curve through the given points (a Catmull-Rom spline as cubic curves)."""
  count = len(points)

  def at(i):
    return points[i % count] if closed else points[min(max(i, 0), count - 1)]

  data = f"M{num(points[0][0])} {num(points[0][1])}"

  for i in range(count if closed else count - 1):
    (ax, ay), (bx, by), (cx, cy), (dx, dy) = at(i - 1), at(i), at(i + 1), at(i + 2)
    k = tension / 6
    data += "C" + " ".join(num(v) for v in (bx + (cx - ax) * k, by + (cy - ay) * k,
                                            cx - (dx - bx) * k, cy - (dy - by) * k, cx, cy))

  return data + ("Z" if closed else "")


def bounds(data):
  """The box (left, top, right, bottom) around all points, also the guiding ones, of a path in absolute numbers."""
  numbers = [float(text) for text in re.findall(r"-?[0-9.]+", data)]
  return min(numbers[::2]), min(numbers[1::2]), max(numbers[::2]), max(numbers[1::2])


class Canvas:
  """Collects the elements of one SVG picture in painting order.

  `view_width` and `view_height` are the units that a picture draws in; they stretch over the pixels that are
  asked for when the picture is rendered. Every paint is a colour or the answer of `linear` or `radial`."""

  def __init__(self, view_width, view_height):
    self.view_width = view_width
    self.view_height = view_height
    self._defs = {}
    self._body = []

  def _define(self, tag, attributes, inner):
    key = (tag, attributes, inner)
    return self._defs.setdefault(key, f"d{len(self._defs)}")

  @staticmethod
  def _stops(stops):
    return "".join(f'<stop offset="{num(stop[0])}" stop-color="{stop[1]}"'
                   + (f' stop-opacity="{num(stop[2])}"' if len(stop) > 2 else "") + "/>" for stop in stops)

  def linear(self, start, end, stops):
    """Defines a linear gradient from `start` to `end` (points in the units of the shape that is filled) and
    returns the paint to fill with. `stops` are (offset 0 to 1, colour[, opacity]). Equal ones are defined once."""
    (x1, y1), (x2, y2) = start, end
    place = f'gradientUnits="userSpaceOnUse" x1="{num(x1)}" y1="{num(y1)}" x2="{num(x2)}" y2="{num(y2)}"'
    return f"url(#{self._define('linearGradient', place, self._stops(stops))})"

  def radial(self, x, y, radius, stops, squash=1):
    """Defines a radial gradient around (x, y), `squash` times as high as wide, and returns its paint."""
    place = (f'gradientUnits="userSpaceOnUse" cx="0" cy="0" r="{num(radius)}" '
             f'gradientTransform="translate({num(x)} {num(y)}) scale(1 {num(squash)})"')
    return f"url(#{self._define('radialGradient', place, self._stops(stops))})"

  def clip(self, data):
    """Defines a clip by a path and returns its name for `group`."""
    return self._define("clipPath", "", f'<path d="{data}"/>')

  def fade(self, start, end, stops):
    """Defines a mask that fades along a line and returns its name for `group`; `stops` are (offset, opacity)."""
    paint = self.linear(start, end, [(offset, "#FFFFFF", opacity) for offset, opacity in stops])
    width, height = self.view_width, self.view_height
    return self._define("mask", f'maskUnits="userSpaceOnUse" x="{num(-width)}" y="{num(-height)}" '
                        f'width="{num(3 * width)}" height="{num(3 * height)}"',
                        f'<rect x="{num(-width)}" y="{num(-height)}" width="{num(3 * width)}" '
                        f'height="{num(3 * height)}" fill="{paint}"/>')

  def _blur(self, sides, box):
    across, along = sides if isinstance(sides, tuple) else (sides, sides)
    # The region is never that of the shape's own box: a line has none, and what has none vanishes.
    left, top, right, bottom = box or (-self.view_width, -self.view_height, 2 * self.view_width, 2 * self.view_height)
    left, top, right, bottom = left - 3 * across, top - 3 * along, right + 3 * across, bottom + 3 * along
    return self._define("filter", f'filterUnits="userSpaceOnUse" x="{num(left)}" y="{num(top)}" '
                        f'width="{num(right - left)}" height="{num(bottom - top)}" color-interpolation-filters="sRGB"',
                        f'<feGaussianBlur stdDeviation="{num(across)} {num(along)}"/>')

  @contextmanager
  def group(self, opacity=None, clip=None, mask=None, blur=None, box=None, screen=False,
            transform=None):
    """Opens a group for the elements drawn inside the `with`. `blur` is a deviation or a pair of them (across,
    along), reckoned within `box` (left, top, right, bottom; everything when not given). `screen` adds the
    group's light to what lies below."""
    parts = ""
    parts += f' transform="{transform}"' if transform else ""
    parts += f' opacity="{num(opacity)}"' if opacity is not None else ""
    parts += f' clip-path="url(#{clip})"' if clip else ""
    parts += f' mask="url(#{mask})"' if mask else ""
    parts += f' filter="url(#{self._blur(blur, box)})"' if blur else ""
    parts += ' style="mix-blend-mode:screen"' if screen else ""
    self._body.append(f"<g{parts}>")
    yield
    self._body.append("</g>")

  def at(self, x, y, scale=1, turn=0, mirror=False):
    """A group whose origin lies at (x, y), whose units are `scale` of the surrounding ones, turned by `turn`
    degrees clockwise and, when `mirror`, flipped left to right before that."""
    across = -scale if mirror else scale
    return self.group(transform=f"translate({num(x)} {num(y)})" + (f" rotate({num(turn)})" if turn else "")
                      + f" scale({num(across)} {num(scale)})")

  def path(self, data, paint, even_odd=False, opacity=None, seam=0):
    """Fills a path. A `seam` is the width of an outline in the same paint, which closes the hairlines between
    neighbours."""
    rule = ' fill-rule="evenodd"' if even_odd else ""
    rule += f' opacity="{num(opacity)}"' if opacity is not None else ""
    rule += f' stroke="{paint}" stroke-width="{num(seam)}" stroke-linejoin="round"' if seam else ""
    self._body.append(f'<path d="{data}" fill="{paint}"{rule}/>')

  def stroke(self, data, paint, width, opacity=None, cap="round"):
    """Draws along a path."""
    extra = f' opacity="{num(opacity)}"' if opacity is not None else ""
    self._body.append(f'<path d="{data}" fill="none" stroke="{paint}" stroke-width="{num(width)}" '
                      f'stroke-linecap="{cap}" stroke-linejoin="round"{extra}/>')

  def disc(self, x, y, radius, paint, opacity=None):
    """Fills a circle."""
    extra = f' opacity="{num(opacity)}"' if opacity is not None else ""
    self._body.append(f'<circle cx="{num(x)}" cy="{num(y)}" r="{num(radius)}" fill="{paint}"{extra}/>')

  def ellipse(self, x, y, across, along, paint, opacity=None):
    """Fills an ellipse of the given half width and half height."""
    extra = f' opacity="{num(opacity)}"' if opacity is not None else ""
    self._body.append(f'<ellipse cx="{num(x)}" cy="{num(y)}" rx="{num(across)}" ry="{num(along)}" '
                      f'fill="{paint}"{extra}/>')

  def rect(self, x, y, width, height, paint, radius=0, opacity=None):
    """Fills a rectangle, with rounded corners when a radius is given."""
    extra = f' rx="{num(radius)}"' if radius else ""
    extra += f' opacity="{num(opacity)}"' if opacity is not None else ""
    self._body.append(f'<rect x="{num(x)}" y="{num(y)}" width="{num(width)}" height="{num(height)}" '
                      f'fill="{paint}"{extra}/>')

  def cover(self, paint, opacity=None):
    """Fills the whole picture."""
    self.rect(0, 0, self.view_width, self.view_height, paint, opacity=opacity)

  def svg(self):
    """The whole picture as SVG text."""
    defs = "".join(f'<{tag} id="{name}" {attributes}>{inner}</{tag}>'
                   for (tag, attributes, inner), name in self._defs.items())
    return (f'<svg xmlns="http://www.w3.org/2000/svg" preserveAspectRatio="none" '
            f'viewBox="0 0 {num(self.view_width)} {num(self.view_height)}">'
            f"<defs>{defs}</defs>{''.join(self._body)}</svg>\n")


@dataclass(frozen=True)
class Picture:
  """One file of the assets folder: its name, its size in pixels, and the function that returns its canvas.

  A picture that is never shown large, or has few colours, is stored with a palette of 256 colours; the others keep
  all of theirs, because a palette shows as grain in the dark."""

  file_name: str
  width: int
  height: int
  draw: Callable[[], Canvas]
  palette: bool = True
