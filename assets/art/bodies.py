"""Heads put together with necks, shoulders, arms and clothes; in the units of a head, whose eyes are the origin."""

from dataclasses import dataclass
from math import hypot

import hair
from canvas import bounds, num, smooth_path
from palette import CYAN, ORANGE, add, mix
from people import (SHADE, Pen, face_outline, features, glasses, headphones_far, headphones_near, lit, skin_paint)

SHOULDERS = [(-50, 150), (-98, 174), (-170, 200), (-212, 256), (-236, 380), (-248, 960), (236, 960), (222, 380),
             (196, 258),
             (152, 202), (84, 174), (42, 150), (18, 182), (-22, 186)]


@dataclass(frozen=True)
class Dress:
  """What somebody wears: the style names the cut, `inner` is what shows at the collar."""

  style: str
  colour: str
  inner: str = "#C9CED3"


def cloth(pen, colour, left=-240, right=230):
  """Cloth between the lights: it falls into the dark in the middle."""
  return pen.across(left, right, ((0, add(mix(colour, SHADE, 0.40), CYAN, 0.30)), (0.22, mix(colour, SHADE, 0.42)),
                                  (0.5, mix(colour, SHADE, 0.58)), (0.76, mix(colour, SHADE, 0.32)),
                                  (1, add(mix(colour, SHADE, 0.30), ORANGE, 0.26))))


def _neck(pen, look):
  data = pen.curve([(-48, 40), (-48, 108), (-60, 158), (-30, 200), (24, 200), (46, 152), (34, 108), (28, 80)])
  lit(pen.canvas, data, skin_paint(pen, look, -60, 50), depth=6, blur=4, cyan=0.6, orange=0.6)

  with pen.canvas.group(clip=pen.canvas.clip(data)):
    pen.soft([(-60, 70), (-30, 104), (6, 122), (40, 112), (60, 120), (40, 142), (0, 150), (-40, 132), (-70, 110)],
             "#05070B", 7, 0.75)


def _folds(pen, colour):
  dark, light = mix(colour, "#04060A", 0.75), mix(colour, "#FFFFFF", 0.22)

  for points in (((-168, 260), (-150, 330), (-158, 430), (-150, 560)), ((150, 262), (138, 330), (146, 430),
                                                                        (136, 560))):
    data = pen.curve(points, closed=False)

    with pen.canvas.group(blur=2.2, box=bounds(data)):
      pen.canvas.stroke(data, dark, 7, opacity=0.6)

    with pen.canvas.group(transform="translate(-4 -2)"):
      pen.canvas.stroke(data, light, 1.6, opacity=0.16)


def clothes(pen, dress):
  """The clothes on shoulders and chest."""
  canvas, colour = pen.canvas, dress.colour
  data = pen.curve(SHOULDERS)
  paint = cloth(pen, colour)

  if dress.style == "jacket":
    inner = pen.curve([(-56, 168), (-24, 200), (22, 198), (46, 168), (80, 260), (60, 960), (-70, 960), (-84, 260)])
    canvas.path(inner, cloth(pen, dress.inner, -120, 110))
    left = pen.curve([(-50, 152), (-98, 174), (-170, 200), (-212, 256), (-236, 380), (-248, 960), (-34, 960),
                      (-30, 420),
                      (-46, 300), (-62, 220)])
    right = pen.curve([(42, 152), (84, 174), (152, 202), (196, 258), (222, 380), (236, 960), (30, 960), (30, 420),
                       (40, 300),
                       (54, 220)])
    lit(canvas, left, paint, depth=13, blur=7, orange=0.25 if pen.sign > 0 else 0.8, cyan=0.8 if pen.sign > 0 else 0.25)
    lit(canvas, right, paint, depth=13, blur=7, orange=0.8 if pen.sign > 0 else 0.25,
        cyan=0.25 if pen.sign > 0 else 0.8)

    for lapel in ([(-50, 148), (-74, 170), (-104, 250), (-66, 268), (-72, 292), (-36, 400), (-44, 300), (-60, 214)],
                  [(42, 148), (66, 170), (96, 250), (60, 268), (66, 292), (30, 400), (38, 300), (52, 214)]):
      lit(canvas, pen.curve(lapel), cloth(pen, mix(colour, "#FFFFFF", 0.10)), depth=4, blur=2, cyan=0.5, orange=0.5)
  else:
    lit(canvas, data, paint, depth=13, blur=7, cyan=0.8, orange=0.8)

  with canvas.group(clip=canvas.clip(data)):
    _folds(pen, colour)

  if dress.style == "hoodie":
    for hood in ([(-54, 128), (-86, 150), (-104, 186), (-70, 216), (-20, 228), (2, 226), (-14, 206), (-40, 186),
                  (-52, 158)],
                 [(46, 130), (74, 152), (90, 186), (60, 216), (20, 228), (-6, 226), (12, 206), (34, 184), (44, 158)]):
      lit(canvas, pen.curve(hood), cloth(pen, mix(colour, "#FFFFFF", 0.08), -110, 100), depth=6, blur=3, cyan=0.7,
          orange=0.7)

    for x, drop in ((-24, 330), (22, 314)):
      pen.line([(x, 218), (x - 3, 260), (x + 1, drop)], "#05070B", 5.5, 0.8)
      pen.line([(x, 218), (x - 3, 260), (x + 1, drop)], "#C4CCD3", 3, 0.75)
  elif dress.style == "turtleneck":
    roll = pen.curve([(-54, 108), (-60, 150), (-66, 180), (-30, 202), (24, 200), (52, 176), (44, 142), (38, 108),
                      (0, 128)])
    lit(canvas, roll, cloth(pen, mix(colour, "#FFFFFF", 0.04), -66, 52), depth=6, blur=3, cyan=0.5, orange=0.5)

    for k in range(9):
      x = -50 + 11 * k
      pen.line([(x, 126 + 10 * (1 - abs(x + 4) / 50)), (x - 2, 160), (x - 1, 190)], "#05070B", 1.8, 0.35)
  elif dress.style == "tee":
    pen.line([(-60, 164), (-36, 194), (0, 206), (32, 194), (52, 164)], mix(colour, "#04060A", 0.6), 9, 0.7)
    pen.line([(-62, 166), (-37, 197), (0, 210), (33, 197), (54, 166)], mix(colour, "#FFFFFF", 0.3), 1.6, 0.35)


def head(pen, look):
  """A whole head with its hair, beard and headphones."""
  canvas = pen.canvas
  data = pen.curve(face_outline(look))

  headphones_far(pen, look)

  lit(canvas, data, skin_paint(pen, look, -74, 76), depth=8, blur=4, cyan=0.6, orange=0.6)

  with canvas.group(clip=canvas.clip(data)):
    features(pen, look)

  hair.beard(pen, look)
  hair.front(pen, look)

  if look.glasses:
    glasses(pen)

  headphones_near(pen, look)

  if look.earring:
    canvas.stroke(pen.curve([(-55, 42), (-47, 50), (-48, 62), (-56, 67), (-63, 60), (-63, 49)]), "#E8C277", 3.2)


def bust(canvas, x, y, scale, look, dress, left=False, turn=0):
  """A person down to the chest, the eyes at (x, y); looks to the left when `left`. `turn` tilts the head."""
  pen = Pen(canvas, left)

  with canvas.at(x, y, scale):
    with canvas.group(transform=f"rotate({turn} 0 110)"):
      hair.back(pen, look)

    # The shoulders are set a little higher and, for a slighter person, closer than they are drawn.
    with canvas.group(transform=f"translate(0 -28) scale({num(look.build)} 1)"):
      _neck(pen, look)
      clothes(pen, dress)

    with canvas.group(transform=f"rotate({turn} 0 110)"):
      head(pen, look)


def limb(canvas, points, radii, paint, depth=7, blur=4, cyan=0.7, orange=0.7):
  """An arm through some points, as thick there as `radii` say. Its beginning grows out of what lies below it: it
  fades in, and no light falls on its end."""
  def outline(points):
    left, right = [], []

    for i, ((x, y), radius) in enumerate(zip(points, radii)):
      (ax, ay), (bx, by) = points[max(i - 1, 0)], points[min(i + 1, len(points) - 1)]
      length = hypot(bx - ax, by - ay)
      nx, ny = (ay - by) / length, (bx - ax) / length
      left.append((x + nx * radius, y + ny * radius))
      right.append((x - nx * radius, y - ny * radius))

    return smooth_path(left + right[::-1])

  (ax, ay), (bx, by) = points[:2]
  raised = [(ax - (bx - ax) * 0.7, ay - (by - ay) * 0.7)] + list(points[1:])
  fade = canvas.fade((ax, ay), (ax + (bx - ax) * 0.6, ay + (by - ay) * 0.6), ((0, 0), (1, 1)))

  with canvas.group(mask=fade):
    lit(canvas, outline(points), paint, depth=depth, blur=blur, cyan=cyan, orange=orange, edge=outline(raised))


def fist(canvas, x, y, scale, look, turn=0, mirror=False):
  """A hand closed around something that runs upright through (x, y); the back of the hand is at the left."""
  skin = look.skin
  paint = canvas.linear((-24, 0), (24, 0), ((0, add(mix(skin, SHADE, 0.45), CYAN, 0.25)),
                                            (0.45, mix(skin, SHADE, 0.42)),
                                            (1, add(mix(skin, SHADE, 0.34), ORANGE, 0.25))))
  with canvas.at(x, y, scale, turn, mirror):
    lit(canvas, smooth_path([(-26, -22), (-6, -27), (8, -18), (10, 10), (4, 27), (-16, 28), (-27, 12)]), paint,
        depth=4, blur=2,
        cyan=0.5, orange=0.5)

    for i, reach in enumerate((23, 26, 25, 20)):
      y0 = -19 + i * 12.2
      finger = smooth_path([(-10, y0 - 6), (reach - 6, y0 - 6.2), (reach, y0), (reach - 6, y0 + 6), (-10, y0 + 6)])
      lit(canvas, finger, paint, depth=3, blur=1.5, cyan=0.35, orange=0.45)
      canvas.stroke(f"M-8 {num(y0 + 6.1)}L{reach - 5} {num(y0 + 6.1)}", mix(skin, "#05070B", 0.85), 1.4, opacity=0.7)

    lit(canvas, smooth_path([(-14, -24), (-2, -33), (12, -34), (16, -27), (6, -22), (-4, -16)]), paint, depth=3,
        blur=1.5, cyan=0.4,
        orange=0.4)
