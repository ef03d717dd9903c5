"""Hair, beards and what is worn on the head; in the units of a head as `people` draws it."""

from math import cos, pi, sin

from canvas import bounds
from palette import CYAN, ORANGE, add, mix
from people import lit

SKULL = [(-66, 10), (-80, -10), (-90, -46), (-84, -88), (-58, -116), (-16, -129), (28, -122), (56, -106), (70, -84),
         (76, -64), (74.5, -46)]


def _cloud(pen, x, y, radius, bumps, bump):
  """An outline of many small curls around a circle."""
  points = []

  for i in range(bumps * 2):
    a = 2 * pi * i / (bumps * 2)
    r = radius + (bump if i % 2 else -bump * 0.6) * (1 + 0.7 * sin(i * 1.9)) + 1.4 * sin(i * 0.83)
    points.append((x + r * cos(a), y + r * sin(a) * 0.94))

  return pen.curve(points)


def _afro(pen):
  """The outline of a round head of small curls."""
  return _cloud(pen, -13, -58, 116, 44, 2.2)


def back(pen, look):
  """What hangs behind neck and shoulders; drawn before the body."""
  colour, style, canvas = look.hair_colour, look.hair, pen.canvas

  if style == "afro":
    lit(canvas, _afro(pen), mix(colour, "#05070B", 0.25), depth=13, blur=7)
  elif style == "locs":
    for i in range(11):
      x = -92 + 13.2 * i
      bend = 10 * sin(i * 1.7)
      end = 190 - 26 * abs(sin(i * 1.1))
      _rope(pen, [(x * 0.72 - 8, -70), (x - 6, 0), (x - 10 + bend, end * 0.5), (x - 6 - bend, end)], colour, i)
  elif style == "bun":
    knot = [(-80, -58), (-104, -66), (-120, -42), (-112, -12), (-88, -2), (-70, -24)]
    lit(canvas, pen.curve(knot), colour, depth=8, blur=4)
  elif style == "topknot":
    lit(canvas, _cloud(pen, -34, -140, 30, 10, 2), colour, depth=8, blur=4)
  elif style == "wrap":
    knot = [(-60, -128), (-84, -158), (-66, -184), (-30, -192), (6, -180), (18, -150), (0, -126)]
    lit(canvas, pen.curve(knot), cloth_paint(pen, look.cloth), depth=9, blur=4, cyan=0.6, orange=0.6)


def cloth_paint(pen, colour, left=-96, right=90):
  """Cloth between the lights."""
  return pen.across(left, right, ((0, add(mix(colour, "#05070B", 0.35), CYAN, 0.25)),
                                  (0.3, mix(colour, "#05070B", 0.45)),
                                  (0.65, mix(colour, "#05070B", 0.25)), (1, add(colour, ORANGE, 0.12))))


def _rope(pen, points, colour, index):
  """One of the locs; neighbours differ a little in tone."""
  canvas = pen.canvas
  width = 16
  data = pen.curve(points, closed=False)
  middle = sum(pen.sign * x for x, _ in points) / len(points)
  light = CYAN if middle < -10 else ORANGE
  strength = min(abs(middle + 10) / 90, 1)
  canvas.stroke(data, "#05070B", width + 3)
  canvas.stroke(data, mix(colour, "#05070B", 0.2 + 0.25 * (index % 2)), width)

  with canvas.group(transform=f"translate({-width * 0.26 if light == CYAN else width * 0.26} 0)"):
    canvas.stroke(data, light, width * 0.20, opacity=0.25 + 0.6 * strength)


# The outline of a whole head with its neck: where the lights are seen on hair.
WHOLE = SKULL + [(79, -46), (82, 0), (78, 60), (62, 110), (50, 220), (-60, 220), (-58, 60)]


def _cap(pen, edge, colour, depth=10, blur=5):
  """Hair that follows the skull down to the given front edge, listed from the front to the ear."""
  data = pen.curve(SKULL + edge)
  lit(pen.canvas, data, mix(colour, "#05070B", 0.2), depth=depth, blur=blur, edge=pen.curve(WHOLE))
  return data


def front(pen, look):
  """The hair over the forehead, drawn over the face."""
  STYLES[look.hair](pen, look)


def _front_afro(pen, look):
  cloud = _afro(pen)
  data = pen.curve([(-66, 40), (-92, 10), (-102, -44), (-92, -104), (-56, -138), (-4, -148), (48, -136), (78, -100),
                    (82, -62), (76, -40), (68, -58), (54, -78), (28, -86), (-8, -82), (-36, -64), (-48, -32),
                    (-54, 10)])

  with pen.canvas.group(clip=pen.canvas.clip(cloud)), pen.canvas.group(blur=3, box=bounds(data)):
    pen.canvas.path(data, mix(look.hair_colour, "#05070B", 0.25))

  _curls(pen, cloud)


def _front_fade(pen, look):
  edge = [(68, -64), (56, -77), (32, -84), (0, -82), (-32, -70), (-48, -48), (-54, -18), (-58, 12)]
  _cap(pen, edge, look.hair_colour)
  _stubble(pen, [(-66, 18), (-78, -14), (-82, -44), (-56, -48), (-54, 10)], look.hair_colour)


def _front_combed(pen, look):
  edge = [(68, -64), (58, -79), (42, -87), (14, -84), (-16, -70), (-40, -44), (-50, -10), (-56, 20)]
  _streaks(pen, look.hair_colour, _cap(pen, edge, look.hair_colour, depth=11))


def _front_locs(pen, look):
  edge = [(68, -64), (56, -77), (36, -84), (8, -80), (-22, -68), (-42, -48), (-50, -12), (-56, 16)]
  _cap(pen, edge, look.hair_colour)

  for i in range(8):
    x = 58 - 15 * i
    _rope(pen, [(x, -92 + abs(x - 10) * 0.10), (x - 14, -112), (x * 0.8 - 30, -122 + abs(x) * 0.1),
                (x * 0.5 - 52, -100)], look.hair_colour, i)

  for i in range(3):
    x = -52 - i * 15
    _rope(pen, [(x + 4, -62), (x - 4, 0), (x - 2, 70), (x - 8, 140 + 14 * i)], look.hair_colour, i)


def _front_wrap(pen, look):
  canvas = pen.canvas
  top = [(-64, 0), (-88, -30), (-94, -76), (-72, -124), (-24, -146), (30, -140), (70, -112), (80, -74)]
  data = pen.curve(top + [(62, -66), (24, -70), (-14, -62), (-44, -40), (-54, -10)])
  lit(canvas, data, cloth_paint(pen, look.cloth), depth=9, blur=4, cyan=0.6, orange=0.6,
      edge=pen.curve(top + WHOLE[11:]))

  with canvas.group(clip=canvas.clip(data)):
    for k in range(4):
      for up, colour, width, opacity in ((0, "#05070B", 3, 0.35), (4, "#FFFFFF", 1.5, 0.16)):
        pen.line([(-100, -30 - up - 26 * k), (-40, -66 - up - 22 * k), (30, -84 - up - 18 * k),
                  (90, -82 - up - 20 * k)], colour, width, opacity)


def _front_cap(pen, look):
  canvas = pen.canvas
  _stubble(pen, [(-62, 26), (-80, -10), (-84, -50), (-54, -50), (-52, 12)], look.hair_colour)
  top = [(-90, -70), (-80, -112), (-40, -136), (14, -136), (60, -114), (82, -78)]
  crown = pen.curve([(-74, -46)] + top + [(84, -62), (30, -66), (-20, -58)])
  lit(canvas, crown, cloth_paint(pen, look.cloth), depth=10, blur=5,
      edge=pen.curve([(-90, -30)] + top + [(90, 0), (0, 200)]))
  peak = pen.curve([(10, -68), (50, -72), (88, -66), (116, -50), (108, -46), (70, -54), (30, -58)])
  lit(canvas, peak, mix(look.cloth, "#000000", 0.35), depth=4, blur=2)


def _curls(pen, data):
  """Small arcs that catch the light, so that a mass of curls is not a flat shape."""
  canvas = pen.canvas

  with canvas.group(clip=canvas.clip(data)):
    for i in range(240):
      a, r = i * 2.399963, 126 * ((i + 0.5) / 240) ** 0.5
      x, y = -13 + r * cos(a), -58 + r * sin(a) * 0.94

      if y > -40 + 0.2 * abs(x + 13) and -60 < pen.sign * x < 80 or y > -84 and -40 < pen.sign * x < 66:
        continue

      light = CYAN if x < -14 else ORANGE
      strength = min(abs(x + 14) / 110, 1) * 0.55 + 0.10
      canvas.stroke(f"M{x - 5:.1f} {y + 2:.1f}q4 -8 10 -3", light, 1.8, opacity=strength * 0.75)


def _streaks(pen, colour, data):
  """Strands along the skull, from the forehead to behind the ear."""
  with pen.canvas.group(clip=pen.canvas.clip(data)):
    for k in range(9):
      x = 58 - 12 * k
      y = -80 + (x - 14) ** 2 * 0.010
      pen.line([(x, y), (x * 0.55 - 26, y - 14 + 2 * k), (x * 0.25 - 66, y + 6 + 2 * k), (-88 + k, -40 + 5 * k)],
               mix(colour, "#FFFFFF", 0.34), 1.5, 0.26)


def _stubble(pen, points, colour):
  """Hair cropped to a shadow."""
  pen.soft(points, mix(colour, "#05070B", 0.2), 3, 0.75)


def _scarf(pen, look):
  """A scarf around head and neck that leaves the face free."""
  canvas = pen.canvas
  outer = [(-30, 150), (-76, 110), (-92, 40), (-96, -30), (-88, -84), (-58, -122), (-12, -138), (40, -128), (74, -98),
           (88, -54), (84, 0), (80, 50), (66, 96), (40, 132), (20, 160)]
  inner = [(20, -88), (52, -80), (70, -52), (72, -8), (74, 24), (64, 68), (48, 98), (24, 110), (-6, 102), (-34, 80),
           (-50, 44),
           (-54, 0), (-48, -44), (-22, -76)]
  data = pen.curve(outer) + pen.curve(inner)
  paint = pen.across(-96, 90, ((0, add(look.cloth, CYAN, 0.5)), (0.22, mix(look.cloth, CYAN, 0.08)),
                               (0.5, mix(look.cloth, "#05070B", 0.35)),
                               (0.8, look.cloth), (1, add(look.cloth, ORANGE, 0.5))))
  canvas.path(data, paint, even_odd=True)
  canvas.stroke(pen.curve(inner), "#05070B", 3, opacity=0.55)

  for points in (((-40, -112), (-72, -60), (-76, 20), (-54, 96), (-8, 136)),
                 ((-10, -122), (-56, -74), (-64, 10), (-44, 84), (4, 124)),
                 ((20, -122), (66, -96), (80, -50)), ((-60, 110), (-10, 128), (44, 112), (72, 66))):
    pen.line(points, "#05070B", 3, 0.35)
    pen.line([(x - 3, y - 2) for x, y in points], "#FFFFFF", 1.3, 0.20)


def beard(pen, look):
  """A beard, drawn over the face and below the hair."""
  colour, canvas = look.hair_colour, pen.canvas

  if look.beard == "full":
    data = pen.curve([(-60, 6), (-64, 40), (-54, 74), (-28, 108), (6, 130), (34, 132), (54, 112), (64, 82), (68, 58),
                      (65, 52),
                      (58, 53), (44, 50), (36, 52), (28, 50), (12, 54), (2, 66), (-22, 62), (-44, 36), (-52, 8)])
    mouth = pen.curve([(6, 67), (20, 60), (37, 59), (52, 60), (61, 67), (52, 77), (38, 81), (20, 77)])
    edge = pen.curve([(-64, 40), (-54, 74), (-28, 108), (6, 130), (34, 132), (54, 112), (66, 82), (72, 48),
                      (84, -100), (-84, -100)])
    lit(canvas, data, cloth_paint(pen, colour), depth=9, blur=5, edge=edge)
    canvas.path(mouth, mix(look.lips, "#080C14", 0.45))
    pen.line([(9, 67), (24, 69), (38, 68), (59, 67)], "#0A0A0D", 2.4)
    pen.soft([(28, 72), (48, 71), (44, 77), (32, 77)], mix(look.lips, "#FFFFFF", 0.35), 1.5, 0.5)

    with canvas.group(clip=canvas.clip(data)):
      for k in range(10):
        x = -48 + 12 * k
        pen.line([(x, 74 + 14 * sin(k * 0.36)), (x + 5, 96 + 14 * sin(k * 0.36)), (x + 15, 112 + 12 * sin(k * 0.36))],
                 mix(colour, "#FFFFFF", 0.35), 1.6, 0.3)
  elif look.beard == "short":
    shape = [(-60, 20), (-58, 48), (-42, 76), (-18, 98), (10, 113), (32, 115), (50, 102), (59, 84), (61, 74),
             (57, 76), (53, 82),
             (48, 86), (30, 88), (14, 84), (-2, 72), (-30, 62), (-50, 36)]
    with canvas.group(opacity=0.92):
      lit(canvas, pen.curve(shape), mix(colour, "#05070B", 0.15), depth=7, blur=4, cyan=0.7, orange=0.7,
          edge=pen.curve(shape[1:9] + [(72, 50), (84, -100), (-84, -100)]))
    pen.fill([(4, 61), (18, 53.5), (33, 54.5), (45, 53.5), (57, 61), (45, 59), (34, 58), (20, 59)],
             mix(colour, "#05070B", 0.2), 0.95)


STYLES = {"afro": _front_afro, "fade": _front_fade, "bun": _front_combed, "topknot": _front_combed,
          "locs": _front_locs, "wrap": _front_wrap, "cap": _front_cap, "scarf": _scarf}
