"""The covers of the four sound packs: one thing each, out of the dark, between the two lights."""

from math import cos, pi, sin

from canvas import Canvas, Picture
from drums import drum_shell
from keyboards import EBONY, IVORY, BLACK_AFTER
from palette import COAL, CYAN, ORANGE, between, mix
from room import bloom
from solids import (BLACK, CHROME, STEEL, Frame, ball, box, cylinder, disc, plate, rod, round_plate)
from space import Camera, Material, Outline, Patch, Scene, minus, plus, unit

SIDE = 1024


class Cover:
  """A square of dark with the two lights behind its thing and a floor that reflects it."""

  def __init__(self, eye, target, focal, floor=True):
    self.canvas = Canvas(SIDE, SIDE)
    self.camera = Camera(eye, target, focal, (SIDE / 2, SIDE / 2))
    self.floor = floor
    canvas = self.canvas
    canvas.cover(COAL)

    with canvas.group(screen=True):
      for x, colour in ((290, CYAN), (734, ORANGE)):
        canvas.cover(canvas.radial(x, 430, 500, ((0, colour, 0.46), (0.35, colour, 0.20), (0.7, colour, 0.05),
                                                 (1, colour, 0))))

  def furnish(self, scene):
    """The thing and its image in the floor."""
    canvas = self.canvas

    if self.floor:
      fade = canvas.fade((0, SIDE * 0.55), (0, SIDE), ((0, 0.42), (0.7, 0.14), (1, 0)))

      with canvas.group(mask=fade), canvas.group(blur=(1, 3)):
        scene.paint(canvas, self.camera, mirrored=True)

    scene.paint(canvas, self.camera)

  def finish(self):
    """The dark that takes the edges back to the colour of the tile."""
    canvas = self.canvas
    canvas.cover(canvas.radial(SIDE / 2, SIDE / 2, SIDE * 0.72, ((0, COAL, 0), (0.56, COAL, 0), (0.70, COAL, 1),
                                                                 (1, COAL, 1))),
                 opacity=1)
    return canvas


def synths():
  """An octave of keys from which the sound rises as columns of light."""
  cover = Cover((0, 1.55, 2.5), (0, 0.36, 0), 1830, floor=True)
  canvas, scene = cover.canvas, Scene()
  frame = Frame((0, 0.12, 0.12), lean=74)
  count, width, depth = 8, 1.02, 0.36
  pitch = width / count
  pressed = {1: CYAN, 3: between(0.45), 6: ORANGE}
  patches = box(frame, -width / 2 - 0.05, -0.05, -0.12, width / 2 + 0.05, depth + 0.12, -0.045, BLACK, rim=0.6)
  patches += box(frame, -width / 2 - 0.05, depth + 0.006, -0.12, width / 2 + 0.05, depth + 0.12, 0.03, BLACK, rim=0.6)

  for i in range(count):
    x = -width / 2 + i * pitch
    sink = 0.012 if i in pressed else 0
    colour = Material(mix("#E6E6E2", pressed[i], 0.75), 0.3, 12, glow=0.55) if i in pressed else IVORY
    patches += box(frame, x + 0.003, 0, -0.045, x + pitch - 0.003, depth, -sink, colour, rim=0.2,
                   faces={"left": EBONY, "right": EBONY})

  for i in range(count - 1):
    if i % 7 in BLACK_AFTER:
      x = -width / 2 + (i + 1) * pitch
      patches += box(frame, x - pitch * 0.29, depth * 0.38, 0, x + pitch * 0.29, depth, 0.035, EBONY, rim=0.6)

  scene.add(patches)
  cover.furnish(scene)

  # A column of light over each pressed key: bars of level, paler and thinner as they rise.
  for i, height in ((0, 4), (1, 10), (2, 6), (3, 13), (4, 8), (5, 5), (6, 11), (7, 4)):
    colour = between(i / 7)
    x, y = cover.camera.place(frame.point(-width / 2 + (i + 0.5) * pitch, depth + 0.06, 0.03))
    wide = 56
    strong = i in pressed

    for k in range(height):
      low = y - 26 - k * 27
      strength = (0.95 if strong else 0.55) * (1 - 0.55 * k / height)

      if k == height - 1:
        strength = min(1, strength * 1.4)

      with canvas.group(screen=True):
        canvas.rect(x - wide / 2, low - 16, wide, 16, mix(colour, "#FFFFFF", 0.28 if strong else 0.05), radius=4,
                    opacity=strength)

    bloom(canvas, x, y - 26 - height * 13, 130 if strong else 80, colour, 0.40 if strong else 0.16, squash=height / 6)

  return cover.finish()


def hip_hop():
  """A record on the turntable under the tone arm."""
  cover = Cover((0, 1.95, 1.75), (0, 0.10, 0.02), 1640, floor=False)
  scene = Scene()
  deck = Frame((0, 0.10, 0), turn=-14, lean=90)
  patches = box(deck, -0.60, -0.46, -0.10, 0.60, 0.46, 0, Material("#262D35", 0.35, 8), rim=0.8)
  centre = deck.point(-0.10, 0.0, 0)
  up = deck.z
  patches += cylinder(plus(centre, up, 0.002), plus(centre, up, 0.03), 0.405, 0.405, STEEL, count=64, cap=STEEL)

  for i in range(80):
    a = 2 * pi * i / 80
    dots = deck.point(-0.10 + 0.396 * cos(a), 0.396 * sin(a), 0.032)
    patches.append(Outline([dots, plus(dots, deck.x, 0.004)], "#DDE6EC", 0.8, 0.010, False))

  # The record: its grooves shine in fans towards the lamps.
  z = 0.036

  for i in range(160):
    a, b = 2 * pi * i / 160, 2 * pi * (i + 1) / 160
    left = max(cos(2 * (a - 2.75)), 0) ** 14
    right = max(cos(2 * (a - 0.55)), 0) ** 14
    colour = mix(mix("#0C0F13", CYAN, 0.80 * left), ORANGE, 0.80 * right)
    points = [(-0.10 + r * cos(t), r * sin(t)) for r, t in ((0.145, a), (0.385, a), (0.385, b), (0.145, b))]
    patches.append(Patch([deck.point(x, y, z) for x, y in points], deck.z, Material(colour, 0, 4, glow=1)))

  for i in range(34):
    radius = 0.150 + 0.0070 * i
    ring = [deck.point(-0.10 + radius * cos(2 * pi * k / 90), radius * sin(2 * pi * k / 90),
                       z + 0.001) for k in range(90)]
    patches.append(Outline(ring, "#020304", 0.42 if i % 9 else 0.95, 0.0016 if i % 9 else 0.006))

  patches += [round_plate(deck, -0.10, 0, 0.142, Material(ORANGE, 0.2, 8, glow=0.55), z=z + 0.002, count=64),
              round_plate(deck, -0.10, 0, 0.105, Material("#F6EBDD", 0.2, 8, glow=0.3), z=z + 0.003, count=64),
              round_plate(deck, -0.10, 0, 0.060, Material(CYAN, 0.2, 8, glow=0.55), z=z + 0.004, count=48),
              round_plate(deck, -0.10, 0, 0.010, CHROME, z=z + 0.006, count=20)]

  # The arm, its base and weight; the pitch fader.
  base = deck.point(0.44, 0.29, 0)
  patches += cylinder(plus(base, up, 0.0), plus(base, up, 0.05), 0.095, 0.085, STEEL, count=40,
                      cap=Material("#3B444E", 0.5, 10))
  patches += cylinder(plus(base, up, 0.05), plus(base, up, 0.10), 0.045, 0.04, CHROME, count=28, cap=CHROME)
  joint = deck.point(0.43, -0.16, 0.095)
  tip = deck.point(0.20, -0.27, 0.065)
  patches += rod(deck.point(0.452, 0.42, 0.085), plus(base, up, 0.085), 0.017, CHROME)
  patches += cylinder(deck.point(0.455, 0.36, 0.085), deck.point(0.457, 0.43, 0.085), 0.034, 0.034, STEEL, count=24,
                      cap=CHROME)
  patches += rod(plus(base, up, 0.085), joint, 0.013, CHROME)
  patches += ball(joint, 0.014, CHROME, 6, 10) + rod(joint, tip, 0.013, CHROME)
  patches += rod(tip, plus(tip, unit(minus(tip, joint)), 0.07), 0.022, BLACK)
  patches.append(plate(deck, 0.485, -0.40, 0.535, -0.05, EBONY, z=0.001))
  patches += box(deck, 0.475, -0.25, 0, 0.545, -0.205, 0.03, CHROME, rim=0.7)
  patches += cylinder(deck.point(-0.50, -0.37, 0), deck.point(-0.50, -0.37, 0.03), 0.042, 0.038, CHROME, count=28,
                      cap=STEEL)
  patches.append(round_plate(deck, 0.33, -0.40, 0.012, Material(CYAN, glow=1), z=0.002, count=16))
  scene.add(patches)
  cover.furnish(scene)
  return cover.finish()


def drum_pack():
  """A snare drum with its crossed sticks."""
  cover = Cover((0, 1.60, 2.4), (0, 0.25, 0), 1780)
  canvas, scene = cover.canvas, Scene()
  lean = unit((0.0, 1, 0.10))
  scene.add(drum_shell((0, 0.10, 0), plus((0, 0.10, 0), lean, 0.30), 0.52, lacquer=Material("#B4343C", 0.9, 20),
                       lugs=10))
  top = plus((0, 0.10, 0), lean, 0.30)
  face = [disc(plus(top, lean, 0.004), lean, 0.34, Material("#F1EFE9", 0.1, 8)),
          disc(plus(top, lean, 0.005), lean, 0.335, Material("#DEDCD6", 0.1, 8))]
  scene.add(face, nearer=0.6)
  wood = Material("#DCA25C", 0.4, 14, glow=0.3)

  for side, lift in ((1, 0.03), (-1, 0.055)):
    start, end = plus((side * 0.62, 0.50, 0.42), lean, lift), plus((side * -0.26, 0.42, -0.20), lean, lift)
    along = unit(minus(end, start))
    patches = cylinder(start, end, 0.026, 0.019, wood, count=20, cap=wood)
    patches += cylinder(end, plus(end, along, 0.07), 0.019, 0.012, wood, count=16, cap=wood)
    patches += ball(plus(end, along, 0.085), 0.024, Material("#EFD5A6", 0.4, 14), 8, 14)
    scene.add(patches, nearer=1.5 + lift)

  with canvas.group(blur=(26, 12)):
    x, y = cover.camera.place((0, 0, 0))
    canvas.ellipse(x, y + 30, 420, 110, "#020304", opacity=0.8)

  cover.furnish(scene)
  return cover.finish()


DJEMBE = ((0.0, 0.235), (0.04, 0.232), (0.20, 0.150), (0.34, 0.118), (0.42, 0.128), (0.52, 0.185), (0.64, 0.262),
          (0.74, 0.295),
          (0.82, 0.300))


def afro_beats():
  """A goblet drum with its laced head and a band of carved triangles, before a low sun."""
  cover = Cover((0, 1.28, 2.9), (0, 0.44, 0), 2050)
  canvas, scene = cover.canvas, Scene()

  # The sun: rings of small triangles around the drum.
  with canvas.group(screen=True):
    for ring, (radius, count, size, strength) in enumerate(((372, 40, 20, 0.85), (418, 44, 13, 0.5))):
      for i in range(count):
        a = 2 * pi * (i + 0.5 * ring) / count
        side = (cos(a) + 1) / 2
        colour = between(min(max((side - 0.2) / 0.6, 0), 1))
        point = [(512 + r * cos(a + d), 452 + r * sin(a + d)) for r, d in ((radius - size, size / radius * 0.7),
                                                                           (radius + size, 0),
                                                                           (radius - size, -size / radius * 0.7))]
        canvas.path("M" + "L".join(f"{x:.1f} {y:.1f}" for x, y in point) + "Z", colour, opacity=strength)

  wood = Material("#8A4B25", 0.4, 14)
  patches = []

  for (low, first), (high, last) in zip(DJEMBE, DJEMBE[1:]):
    patches += cylinder((0, low, 0), (0, high, 0), first, last, wood, count=64)

  def on_bowl(angle, height, lift=1.004):
    for (low, first), (high, last) in zip(DJEMBE, DJEMBE[1:]):
      if low <= height <= high:
        radius = (first + (last - first) * (height - low) / (high - low)) * lift
        return (radius * sin(angle), height, radius * cos(angle))

  # Carved bands on the foot and at the waist.
  for low, high, count, colour in ((0.05, 0.16, 22, "#F0C070"), (0.225, 0.30, 20, CYAN), (0.335, 0.40, 16, "#F4EAD8")):
    for i in range(count):
      a = 2 * pi * i / count
      step = pi / count
      points = [on_bowl(a - step, low), on_bowl(a + step, low), on_bowl(a, high)]
      patches.append(Patch(points, unit((sin(a), 0.1, cos(a))), Material(colour, 0.15, 8, glow=0.15)))

  # The lacing from ring to ring.
  for i in range(26):
    a = 2 * pi * i / 26
    step = pi / 26

    if cos(a) > 0.05:
      for lean in (-step, step):
        line = [on_bowl(a + lean * (1 - 2 * k / 6), 0.45 + 0.34 * k / 6, 1.012) for k in range(7)]
        shine = CYAN if sin(a) < -0.35 else ORANGE if sin(a) > 0.35 else "#FFFFFF"
        patches.append(Outline(line, "#1A0E08", 0.9, 0.014, False))
        patches.append(Outline(line, mix("#E6D6B4", shine, 0.35), 1, 0.009, False))

  for height, radius, thick in ((0.445, 0.142, 0.014), (0.79, 0.302, 0.016), (0.835, 0.308, 0.014)):
    for k in range(3):
      ring = [(radius * sin(t * pi / 40), height + (k - 1) * thick * 0.5, radius * cos(t * pi / 40))
              for t in range(-40, 41)
              if cos(t * pi / 40) > -0.15]
      patches.append(Outline(ring, ("#2A1A10", "#C9A873", "#E9D3A6")[k], 1, thick * (1.3 - 0.3 * k), False))

  patches += cylinder((0, 0.82, 0), (0, 0.862, 0), 0.302, 0.296, Material("#C9B08A", 0.2, 10), count=64)
  patches.append(disc((0, 0.862, 0), (0, 1, 0), 0.297, Material("#EADFC8", 0.12, 8), rim=0.6))
  patches.append(disc((0, 0.863, 0), (0, 1, 0), 0.19, Material("#D9C7A4", 0.12, 8)))
  scene.add(patches)

  with canvas.group(blur=(24, 10)):
    x, y = cover.camera.place((0, 0, 0))
    canvas.ellipse(x, y + 8, 230, 56, "#020304", opacity=0.85)

  cover.furnish(scene)
  return cover.finish()


PICTURES = (
  Picture("zorva-synths-pack.png", 512, 512, synths, palette=False),
  Picture("zorva-hip-hop-pack.png", 512, 512, hip_hop, palette=False),
  Picture("zorva-drum-pack.png", 512, 512, drum_pack, palette=False),
  Picture("zorva-afro-beats-pack.png", 512, 512, afro_beats, palette=False),
)
