"""Flat things that stand among people: microphones and their stands."""

from canvas import polygon_path
from palette import CYAN, ORANGE, mix
from people import lit


def _capsule(x, y, width, height, radius):
  """The path of an upright shape with round corners around (x, y)."""
  left, right, top, bottom = x - width / 2, x + width / 2, y - height / 2, y + height / 2
  r = radius
  return " ".join(str(part) for part in (
    "M", left + r, top, "L", right - r, top, "Q", right, top, right, top + r, "L", right, bottom - r,
    "Q", right, bottom, right - r, bottom, "L", left + r, bottom, "Q", left, bottom, left, bottom - r,
    "L", left, top + r, "Q", left, top, left + r, top, "Z"))


def bar(canvas, start, end, width):
  """A thin round bar with the gleam of both lights along it."""
  (ax, ay), (bx, by) = start, end
  across = ((ay - by), (bx - ax))
  length = (across[0] ** 2 + across[1] ** 2) ** 0.5
  ux, uy = across[0] / length, across[1] / length

  if ux > 0:
    ux, uy = -ux, -uy

  def strip(low, high):
    return polygon_path([(ax + ux * low, ay + uy * low), (bx + ux * low, by + uy * low),
                         (bx + ux * high, by + uy * high),
                         (ax + ux * high, ay + uy * high)])

  canvas.path(strip(-width / 2, width / 2), "#161B21")
  canvas.path(strip(-width * 0.10, width * 0.22), "#2E3740")
  canvas.path(strip(width * 0.34, width * 0.5), mix(CYAN, "#0B0E12", 0.15))
  canvas.path(strip(-width * 0.5, -width * 0.34), mix(ORANGE, "#0B0E12", 0.15))


def studio_microphone(canvas, x, y, scale, turn=0):
  """A large microphone in its cradle, hanging from an arm that ends at (x, y)."""
  with canvas.at(x, y, scale, turn):
    lit(canvas, _capsule(0, 76, 74, 92, 12), "#20262E", depth=8, blur=4)
    grille = _capsule(0, -6, 74, 108, 34)
    lit(canvas, grille, "#2C343D", depth=10, blur=5)

    with canvas.group(clip=canvas.clip(grille)):
      for i in range(-14, 15):
        canvas.stroke(f"M{i * 7 - 60} -64L{i * 7 + 60} 56", "#06080B", 1.5, opacity=0.55)
        canvas.stroke(f"M{i * 7 + 60} -64L{i * 7 - 60} 56", "#06080B", 1.5, opacity=0.55)

    canvas.rect(-40, 46, 80, 9, mix("#AEB9C4", "#12161B", 0.45), radius=3)
    canvas.stroke("M-58 24L-58 112L58 112L58 24", "#0A0D11", 9)
    canvas.stroke("M-60 24L-60 112", CYAN, 2, opacity=0.8)
    canvas.stroke("M60 24L60 112", ORANGE, 2, opacity=0.8)

    for side in (-1, 1):
      canvas.stroke(f"M{side * 58} 36L{side * 36} 62M{side * 58} 62L{side * 36} 36M{side * 58} 96L{side * 36} 84",
                    "#59636E", 2.4)

    canvas.disc(0, 80, 5, CYAN)
    canvas.rect(-9, 110, 18, 30, "#171C22", radius=3)


def stage_microphone(canvas, x, y, scale, turn=0):
  """A hand microphone whose head lies at (x, y), its body hanging down before it is turned."""
  with canvas.at(x, y, scale, turn):
    lit(canvas, "M-12 14L12 14L8 96L-8 96Z", "#1B2127", depth=4, blur=2)
    lit(canvas, _capsule(0, 0, 38, 40, 17), "#39424C", depth=6, blur=3)
    canvas.rect(-19, 6, 38, 7, "#9AA6B1", radius=2, opacity=0.8)
