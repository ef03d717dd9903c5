"""People: flat heads in three-quarter view, with closed eyes, between the two lights.

A head is drawn around the middle of its eyes. It is about 230 units high, from the crown at -118 to the chin at 112,
and looks to the right; a `Pen` that is flipped makes it look to the left while the lights stay where they are."""

from dataclasses import dataclass
from math import cos, pi, sin

from canvas import bounds, num, smooth_path
from palette import CYAN, CYAN_HOT, ORANGE, ORANGE_HOT, add, mix

SHADE = "#080C14"
FAR_AWAY = "M-3000 -3000H3000V3000H-3000Z"


@dataclass(frozen=True)
class Look:
  """What makes a person: colours, the proportions of the face, and the names of hair and beard."""

  skin: str
  hair_colour: str
  hair: str
  beard: str = ""
  lips: str = "#8E4A44"
  build: float = 1.0  # the breadth of the shoulders
  width: float = 1.0  # of the face
  jaw: float = 1.0  # how strong it is
  fullness: float = 1.0  # of the lips
  nose: float = 1.0  # its breadth
  brow: float = 1.0  # the thickness of the brows
  lashes: float = 1.0
  phones: str = "#1B2128"
  glasses: bool = False
  earring: bool = False
  aged: bool = False
  cloth: str = "#2B3440"  # of a scarf or a cap


class Pen:
  """Draws curves in the units of a person, flipped when the person looks to the left."""

  def __init__(self, canvas, flip=False):
    self.canvas = canvas
    self.sign = -1 if flip else 1

  def points(self, points):
    """The points as they lie in the picture."""
    return [(self.sign * x, y) for x, y in points]

  def curve(self, points, closed=True):
    """The data of a smooth curve."""
    return smooth_path(self.points(points), closed)

  def fill(self, points, paint, opacity=None):
    """Fills a smooth outline."""
    self.canvas.path(self.curve(points), paint, opacity=opacity)

  def soft(self, points, paint, blur, opacity=1.0):
    """Fills a smooth outline whose edge is soft."""
    data = self.curve(points)

    with self.canvas.group(blur=blur, box=bounds(data), opacity=opacity):
      self.canvas.path(data, paint)

  def line(self, points, paint, width, opacity=None):
    """Draws along a smooth line."""
    self.canvas.stroke(self.curve(points, closed=False), paint, width, opacity=opacity)

  def across(self, left, right, stops):
    """A gradient that always runs from the left of the picture to its right."""
    return self.canvas.linear((left, 0), (right, 0), stops)


def lit(canvas, data, paint, depth=9, blur=4, cyan=0.9, orange=0.9, lift=3, edge=None):
  """Fills a shape and lets both lights graze its edges: cyan along the left ones, orange along the right ones. When
  the shape is part of a larger one, `edge` is the outline of that, and only there the light is seen."""
  canvas.path(data, paint)
  edge = edge or data
  box = bounds(data)

  with canvas.group(clip=canvas.clip(data)):
    for shift, colour, strength in ((depth, CYAN, cyan), (-depth, ORANGE, orange)):
      if strength > 0:
        with canvas.group(blur=blur, box=box, screen=True, opacity=min(strength, 1)):
          with canvas.group(transform=f"translate({shift} {lift})"):
            canvas.path(FAR_AWAY + edge, colour, even_odd=True)

    for shift, colour, strength in ((depth * 0.28, CYAN_HOT, cyan), (-depth * 0.28, ORANGE_HOT, orange)):
      if strength > 0:
        with canvas.group(blur=blur * 0.2, box=box, screen=True, opacity=min(0.6 * strength, 1)):
          with canvas.group(transform=f"translate({num(shift)} {num(lift * 0.3)})"):
            canvas.path(FAR_AWAY + edge, colour, even_odd=True)


def skin_paint(pen, look, left, right):
  """The skin between the lights: cool at the left, dark in the middle, warm at the right."""
  skin = look.skin
  return pen.across(left, right, (
    (0, add(mix(skin, SHADE, 0.55), CYAN, 0.40)), (0.15, add(mix(skin, SHADE, 0.48), CYAN, 0.16)),
    (0.40, mix(skin, SHADE, 0.42)), (0.60, mix(skin, SHADE, 0.32)),
    (0.84, add(mix(skin, SHADE, 0.28), ORANGE, 0.10)), (1, add(mix(skin, SHADE, 0.48), ORANGE, 0.34))))


def face_outline(look):
  """The outline of the face, with the forehead under the hair."""
  w, j = look.width, look.jaw
  return [(-8, -112), (40, -102), (66, -76), (75 * w, -46), (73 * w, -24), (68 * w, -6), (74 * w, 14), (73 * w, 34),
          (66 * w, 58), (57 * j, 82), (43 * j, 102), (24, 111 + 2 * j), (2, 106), (-24 * j, 91), (-46 * j, 66),
          (-58 * w, 40), (-64 * w, 14), (-68, -14), (-72, -50), (-60, -92), (-38, -108)]


def features(pen, look):
  """The face itself: shades, lit planes, nose, closed eyes, mouth."""
  deep = mix(look.skin, SHADE, 0.78)
  ink = mix(look.skin, "#05070B", 0.90)
  warm = add(mix(look.skin, "#FFFFFF", 0.06), ORANGE if pen.sign > 0 else CYAN, 0.20)
  n = look.nose

  # The sockets, the near side of the nose, the hollow below the cheekbone and the shade under the lip.
  pen.soft([(-30, -16), (0, -22), (28, -18), (30, -2), (8, 10), (-22, 6)], deep, 4, 0.55)
  pen.soft([(42, -18), (60, -20), (70, -14), (66, 6), (50, 8), (42, 0)], deep, 3.5, 0.5)
  pen.soft([(26, -20), (33, -10), (34, 12), (36, 26), (30 - 8 * n, 36), (20 - 4 * n, 34), (24, 10)], deep, 3, 0.62)
  pen.soft([(-44, 24), (-12, 34), (4, 56), (-8, 82), (-30, 70)], deep, 9, 0.5)
  pen.soft([(24, 86), (38, 83), (50, 86), (40, 92), (28, 91)], deep, 2.5, 0.6)

  # The lit planes: bridge and tip of the nose, far cheek, brow bone, chin.
  pen.soft([(35, -16), (40, -16), (47, 10), (54 + 2 * n, 26), (50, 34), (43, 30), (39, 8)], warm, 1.6, 0.85)
  pen.soft([(56, 14), (70, 16), (68, 38), (58, 48), (52, 32)], warm, 4, 0.55)
  pen.soft([(20, -64), (58, -66), (68, -44), (44, -38), (22, -42)], warm, 7, 0.34)
  pen.soft([(18, 98), (34, 95), (46, 97), (36, 107), (22, 107)], warm, 3.5, 0.45)

  # The nostrils and the wing.
  pen.fill([(46, 35), (40, 38.5), (32, 38), (36, 35)], ink, 0.85)
  pen.fill([(24 - 3 * n, 37), (19 - 5 * n, 31), (21 - 5 * n, 25), (16 - 5 * n, 32), (20 - 4 * n, 39)], deep, 0.75)
  pen.fill([(52, 34), (57 + n, 31), (55, 36)], deep, 0.5)

  _eyes(pen, look, ink, deep)
  _mouth(pen, look, ink, deep)

  if look.aged:
    for points in (((-34, -2), (-42, 0), (-49, -3)), ((-33, 5), (-41, 9), (-47, 9)), ((14, 40), (6, 52), (2, 66)),
                   ((6, -66), (30, -70), (54, -66)), ((4, -78), (28, -82), (50, -79))):
      pen.line(points, deep, 1.6, 0.6)

def _eyes(pen, look, ink, deep):
  lid = mix(look.skin, SHADE, 0.52)
  glint = add(mix(look.skin, SHADE, 0.30), ORANGE if pen.sign > 0 else CYAN, 0.14)
  # The lids: a full curve that the lashes close at the bottom.
  pen.fill([(-22, -1), (-12, -11), (3, -13), (16, -8), (22, 0), (10, 7), (-4, 9), (-16, 6)], lid)
  pen.fill([(43, -1), (49, -9), (58, -10), (66, -4), (68, 1), (60, 6), (50, 6)], lid)
  pen.soft([(-6, -7), (4, -9), (13, -5), (10, -1), (0, -2)], glint, 2.2, 0.75)
  pen.soft([(50, -6), (58, -7), (64, -3), (58, -1), (51, -2)], glint, 2, 0.85)
  pen.line([(-23, -5), (-12, -15), (3, -17), (17, -11), (23, -4)], deep, 1.8, 0.8)
  pen.line([(42, -4), (49, -12), (58, -14), (67, -8)], deep, 1.6, 0.8)
  # The lashes.
  a = look.lashes
  pen.fill([(-26, -3), (-16, 5), (-3, 9), (10, 7), (23, -1), (11, 9.5 + a), (-3, 12.5 + a), (-17, 8.5 + a)], ink)
  pen.fill([(42, -1), (50, 6), (60, 6), (70, -2), (61, 8.5 + a), (50, 8.5 + a)], ink)

  if look.lashes > 1:
    for x, y, dx, dy in ((-24, 0, -6, 4), (-18, 6, -5, 6), (-9, 10, -3, 6), (68, 1, 5, 4), (62, 7, 3, 5)):
      pen.line([(x, y), (x + dx * 0.6, y + dy * 0.7), (x + dx, y + dy)], ink, 1.7)

  # The brows.
  b = look.brow
  hair = mix(look.hair_colour, "#05070B", 0.35 if not look.aged else 0.0)
  pen.fill([(-31, -24), (-14, -33 - b), (8, -34 - b), (25, -29), (24, -25 + b), (8, -28 + 2 * b),
            (-13, -27 + 1.6 * b)], hair)
  pen.fill([(41, -29), (53, -34 - b), (64, -32), (72, -25), (63, -27 + b), (53, -28 + 1.6 * b), (42, -25 + b)], hair)


def _mouth(pen, look, ink, deep):
  with pen.canvas.group(transform=f"translate({-3 * pen.sign} 0)"):
    _lips(pen, look, ink)

  pen.soft([(2, 62), (7, 63), (7, 68), (3, 68)], deep, 1.5, 0.5)


def _lips(pen, look, ink):
  f = look.fullness
  upper = mix(look.lips, SHADE, 0.48)
  lower = mix(look.lips, SHADE, 0.26)
  pen.fill([(9, 66), (22, 61 - 2 * f), (32, 58 - 3 * f), (37, 60 - 2 * f), (43, 58 - 3 * f), (52, 61 - 2 * f), (59, 66),
            (48, 68), (38, 68), (24, 68)], upper)
  pen.fill([(11, 66.5), (24, 68), (38, 68), (49, 68), (58, 66.5), (52, 74 + 2 * f), (40, 77 + 4 * f), (26, 76 + 3 * f),
            (17, 72 + f)], lower)
  pen.line([(7, 63.5), (20, 67), (37, 67.4), (50, 66.6), (59, 64)], ink, 2.2)
  pen.soft([(36, 72), (44, 71.5), (48, 73), (43, 75.5), (37, 75.5)], mix(lower, "#FFFFFF", 0.30), 1.6, 0.5)


def glasses(pen):
  """A pair of thin glasses with a gleam of each light."""
  for points, colour in (([(-34, -14), (-8, -22), (22, -18), (28, 0), (14, 18), (-16, 20), (-33, 6)], CYAN),
                         ([(42, -16), (58, -20), (74, -14), (74, 4), (64, 17), (48, 15), (41, 2)], ORANGE)):
    pen.fill(points, colour, 0.10)
    pen.canvas.stroke(pen.curve(points), "#0B0E13", 4.2)
    pen.canvas.stroke(pen.curve(points), "#AEB9C4", 1.3, opacity=0.7)

  pen.line([(27, -4), (34, -9), (41, -5)], "#0B0E13", 4)
  pen.line([(-34, -6), (-52, -8), (-66, -10)], "#0B0E13", 4)


def _band(pen, look):
  """The band of the headphones, from the near cup over the crown to the far one."""
  canvas = pen.canvas
  over = hairline_height(look)
  points = []

  for i in range(13):
    angle = pi * (1 - i / 12)
    low = 1 - sin(angle)
    points.append((4 + 86 * cos(angle) + (16 * low if angle > pi / 2 else -4 * low), -22 + (over + 17) * sin(angle)))

  data = pen.curve(points, closed=False)
  canvas.stroke(data, "#06080B", 15)
  canvas.stroke(data, mix(look.phones, "#FFFFFF", 0.06), 11.5)
  shine = pen.across(-84, 84, ((0, CYAN_HOT, 1), (0.28, CYAN, 0.25), (0.5, "#FFFFFF", 0.16), (0.72, ORANGE, 0.3),
                               (1, ORANGE_HOT, 1)))

  with canvas.group(transform="translate(0 -3.2)"):
    canvas.stroke(data, shine, 2.4)


def headphones_far(pen, look):
  """The far cup and the whole band; head and hair then hide what lies behind them."""
  _band(pen, look)
  data = pen.curve([(66, -34), (82, -32), (90, -10), (90, 12), (81, 31), (66, 32)])
  lit(pen.canvas, data, look.phones, depth=5, blur=2)


def headphones_near(pen, look):
  """The half of the band before the head, which sinks into the hair at the crown, and the cup on the near ear."""
  canvas = pen.canvas
  fade = canvas.fade((pen.sign * -6, 0), (pen.sign * 26, 0), ((0, 1), (1, 0)))

  with canvas.group(mask=fade):
    _band(pen, look)

  cup = pen.curve([(-62, -40), (-44, -34), (-35, -8), (-37, 18), (-50, 36), (-68, 37), (-80, 22), (-84, -4),
                   (-78, -30)])
  lit(canvas, cup, mix(look.phones, "#000000", 0.35), depth=5, blur=2.5)
  plate = pen.curve([(-66, -31), (-54, -26), (-48, -6), (-49, 14), (-58, 27), (-70, 27), (-78, 14), (-80, -6),
                     (-76, -24)])
  lit(canvas, plate, mix(look.phones, "#FFFFFF", 0.10), depth=4, blur=2)
  ring = pen.curve([(-65, -16), (-58, -12), (-55, 0), (-58, 11), (-66, 14), (-72, 8), (-74, -3), (-71, -13)])
  canvas.stroke(ring, CYAN if pen.sign > 0 else ORANGE, 2.2, opacity=0.9)


def hairline_height(look):
  """How high the band of the headphones must pass over the hair."""
  return {"afro": -140, "wrap": -140, "fade": -126, "scarf": -132, "cap": -130}.get(look.hair, -131)
