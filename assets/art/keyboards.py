"""The tiles of the keys and of the synth."""

from math import cos, sin

from canvas import Canvas, Picture, num
from palette import CYAN, ORANGE, mix
from room import Room, bloom, tile_camera
from solids import BLACK, CHROME, RUBBER, STEEL, Frame, box, cylinder, plate, rod, round_plate
from space import Material, Outline, Scene

IVORY = Material("#E6E6E2", shine=0.25, sharp=14)
EBONY = Material("#14171B", shine=0.55, sharp=16)
PANEL = Material("#2B323B", shine=0.35, sharp=10)
WALNUT = Material("#8E4A24", shine=0.2, sharp=14, glow=0.32)
BLACK_AFTER = (0, 1, 3, 4, 5)  # the white keys of an octave that have a black one at their right


def key_row(frame, left, width, count, depth, z=0.0, first=0):
  """White and black keys in a frame whose front is the top of the instrument; y grows away from the player."""
  pitch = width / count
  patches = []

  for i in range(count):
    x = left + i * pitch
    patches += box(frame, x + 0.0009, 0, z - 0.02, x + pitch - 0.0009, depth, z, IVORY, rim=0.12,
                   faces={"left": EBONY, "right": EBONY})

  for i in range(count - 1):
    if (i + first) % 7 in BLACK_AFTER:
      x = left + (i + 1) * pitch
      patches += box(frame, x - pitch * 0.29, depth * 0.37, z, x + pitch * 0.29, depth, z + 0.013, EBONY, rim=0.45)

  return patches


def knob(frame, x, y, radius, z, colour=None, angle=0.6):
  """A turned knob with its pointer, and a ring of light around its foot when a colour is given."""
  patches = []

  if colour:
    patches += [round_plate(frame, x, y, radius * 1.55, Material(colour, glow=1), z=z + 0.0004, count=24),
                round_plate(frame, x, y, radius * 1.28, PANEL, z=z + 0.0008, count=24)]

  foot, top = frame.point(x, y, z), frame.point(x, y, z + radius * 1.2)
  patches += cylinder(foot, top, radius, radius * 0.86, STEEL, count=18, cap=Material("#4A535D", 0.5, 10))
  patches.append(Outline([frame.point(x, y, z + radius * 1.22),
                          frame.point(x + radius * 0.8 * sin(angle), y + radius * 0.8 * cos(angle), z + radius * 1.22)],
                         "#F2F6F8", 0.95, 0.004, closed=False))
  return patches


def _crossed_stand(scene, x, z, half, height):
  """A stand of two crossed bars, at the front and at the back."""
  for depth in (-0.13, 0.13):
    scene.add(rod((x - half, 0.03, z + depth), (x + half * 0.9, height, z + depth), 0.019, STEEL), nearer=depth)
    scene.add(rod((x + half, 0.03, z + depth), (x - half * 0.9, height, z + depth), 0.019, STEEL), nearer=depth + 0.02)

  for side in (-1, 1):
    scene.add(rod((x + side * half, 0.02, z - 0.22), (x + side * half, 0.02, z + 0.22), 0.02, RUBBER))


def keys():
  """The stage piano on its crossed stand, with its bench and pedal."""
  canvas = Canvas(1536, 1024)
  room = Room(canvas, tile_camera(1536, 1024))
  room.backdrop()
  scene = Scene()
  red = Material("#8E2431", shine=0.6, sharp=20)
  top = Frame((0.02, 0.76, 0.30), turn=-12, lean=48)
  half, depth = 0.86, 0.185
  patches = box(top, -half, -0.03, -0.13, half, 0.36, -0.022, BLACK, rim=0.4, faces={"bottom": EBONY})
  patches += box(top, -half + 0.07, depth + 0.004, -0.13, half - 0.07, 0.36, 0.028, PANEL, rim=0.4)
  patches += key_row(top, -half + 0.075, 2 * half - 0.15, 42, depth)
  patches.append(plate(top, -half + 0.08, depth + 0.006, half - 0.08, depth + 0.012, CHROME, z=0.0285))
  patches.append(plate(top, -0.15, 0.225, 0.15, 0.325, Material("#05222C", 0.5, 20), z=0.029, rim=0.4))

  for i in range(24):
    level = 0.020 + 0.05 * abs(sin(i * 0.55) * cos(i * 0.21))
    patches.append(plate(top, -0.135 + i * 0.0113, 0.236, -0.128 + i * 0.0113, 0.236 + level,
                         Material(mix(CYAN, ORANGE, max(0, (i - 12) / 11)), glow=1), z=0.030))

  for i in range(5):
    patches += knob(top, -0.62 + i * 0.092, 0.277, 0.022, 0.028, CYAN if i % 2 == 0 else None, angle=i - 1.8)
    patches += knob(top, 0.25 + i * 0.092, 0.277, 0.022, 0.028, ORANGE if i % 2 else None, angle=1.7 - i)

  patches += box(top, -half, -0.03, -0.13, -half + 0.07, 0.36, 0.028, red, rim=0.6)
  patches += box(top, half - 0.07, -0.03, -0.13, half, 0.36, 0.028, red, rim=0.6)
  scene.add(patches, nearer=0.5)
  _crossed_stand(scene, 0.0, 0.16, 0.48, 0.68)

  # The bench behind and the pedal before it.
  bench = Frame((-0.1, 0, -0.75), turn=-13)
  scene.add(box(bench, -0.30, 0.43, -0.15, 0.30, 0.50, 0.15, Material("#2A2F36", 0.3, 8), rim=0.4), nearer=-0.3)

  for x in (-0.26, 0.26):
    scene.add(rod(bench.point(x, 0, 0.1), bench.point(x, 0.43, 0.1), 0.014, STEEL), nearer=-0.4)

  pedal = Frame((0.08, 0.0, 0.52), turn=-13)
  scene.add(box(pedal, -0.05, 0, -0.10, 0.05, 0.035, 0.10, BLACK, rim=0.5),
            box(pedal, -0.028, 0.035, -0.02, 0.028, 0.05, 0.13, CHROME, rim=0.5))
  room.shadow(0, 0.16, 0.75, 0.34, 0.5)
  room.furnish(scene)
  x, y = room.camera.place(top.point(0, 0.27, 0.03))
  bloom(canvas, x, y, 200, CYAN, 0.20, squash=0.5)
  room.finish()
  return canvas


def _patch_cords(canvas, camera, top):
  """Cords from socket to socket, hanging over the panel."""
  for (ax, ay), (bx, by), sag, colour in (((0.33, 0.37), (0.53, 0.33), 0.10, ORANGE),
                                          ((0.39, 0.40), (0.58, 0.41), 0.07, CYAN),
                                          ((0.36, 0.31), (0.47, 0.40), 0.06, "#E9EEF0")):
    a, b = camera.place(top.point(ax, ay, 0.05)), camera.place(top.point(bx, by, 0.05))
    drop = sag * camera.scale(top.point(ax, ay))
    numbers = (a[0] + 6, a[1] + drop, b[0] - 6, b[1] + drop, b[0], b[1])
    data = f"M{num(a[0])} {num(a[1])}C" + " ".join(num(number) for number in numbers)
    canvas.stroke(data, "#07090C", 9, opacity=0.7)
    canvas.stroke(data, mix(colour, "#10141A", 0.30), 6)
    canvas.stroke(data, mix(colour, "#FFFFFF", 0.4), 1.6, opacity=0.8)

    for x, y in (a, b):
      canvas.disc(x, y, 6.5, "#0B0E12")
      canvas.disc(x, y, 4, mix(colour, "#FFFFFF", 0.2))


def _synth_panel(top, half):
  patches = []
  z = 0.034
  display = (-0.17, 0.29, 0.13, 0.43)
  patches.append(plate(top, *display, Material("#04181F", 0.6, 24), z=z + 0.001, rim=0.5))
  wave = [(display[0] + 0.012 + i * 0.00467, 0.36 + 0.045 * sin(i * 0.30) * cos(i * 0.045) + 0.012 * sin(i * 0.9))
          for i in range(60)]
  patches.append(Outline([top.point(x, y, z + 0.002) for x, y in wave], CYAN, 0.35, 0.012, False))
  patches.append(Outline([top.point(x, y, z + 0.002) for x, y in wave], "#B8F4FF", 1, 0.0042, False))

  for row in range(3):
    for i in range(5):
      colour = (CYAN, None, ORANGE)[(row + i) % 3]
      patches += knob(top, -half + 0.215 + i * 0.084, 0.425 - row * 0.080, 0.020, z, colour, angle=(row * 5 + i) * 1.1)

  for i in range(7):
    x = -0.155 + i * 0.045
    patches.append(plate(top, x - 0.004, 0.225, x + 0.004, 0.275, EBONY, z=z + 0.001))
    y = 0.232 + 0.030 * abs(sin(i * 1.9 + 0.4))
    patches += box(top, x - 0.012, y, z, x + 0.012, y + 0.012, z + 0.016, CHROME, rim=0.5)

  for row in range(3):
    for i in range(6):
      x, y = 0.24 + i * 0.062, 0.415 - row * 0.055
      patches += [round_plate(top, x, y, 0.0135, CHROME, z=z + 0.001, count=18),
                  round_plate(top, x, y, 0.0075, EBONY, z=z + 0.002, count=14)]

  for i in range(16):
    lit = CYAN if i in (0, 3, 6, 10, 13) else ORANGE if i in (4, 12) else "#55606B"
    x = 0.18 + i * (half - 0.06 - 0.18) / 16
    patches.append(plate(top, x, 0.222, x + 0.021, 0.252, Material(lit, glow=0.95 if lit != "#55606B" else 0.2),
                         z=z + 0.001))

  return patches


def synth():
  """The synthesizer with its field of knobs, on a desk."""
  canvas = Canvas(1536, 1024)
  camera = tile_camera(1536, 1024)
  room = Room(canvas, camera)
  room.backdrop()
  scene = Scene()
  top = Frame((0.0, 0.665, 0.44), turn=10, lean=48)
  half, depth, deep = 0.82, 0.17, 0.48
  patches = box(top, -half, -0.03, -0.10, half, deep, -0.022, BLACK, rim=0.4, faces={"bottom": EBONY})
  patches += box(top, -half + 0.04, -0.03, -0.06, -half + 0.165, depth, 0.006, PANEL, rim=0.3)

  for x in (-half + 0.075, -half + 0.125):
    patches.append(plate(top, x - 0.015, 0.035, x + 0.015, 0.135, EBONY, z=0.007))
    patches += box(top, x - 0.011, 0.06, 0.0, x + 0.011, 0.115, 0.02, Material("#6B7681", 0.5, 10), rim=0.5)

  patches += box(top, -half + 0.04, depth + 0.004, -0.10, half - 0.04, deep, 0.034, PANEL, rim=0.4)
  patches += key_row(top, -half + 0.17, 2 * half - 0.22, 35, depth, first=3)
  patches += box(top, -half, -0.03, -0.10, -half + 0.04, deep, 0.055, WALNUT, rim=0.6)
  patches += box(top, half - 0.04, -0.03, -0.10, half, deep, 0.055, WALNUT, rim=0.6)
  patches += _synth_panel(top, half)
  scene.add(patches, nearer=0.8)

  # The desk: a slab on two frames.
  desk = Frame((0, 0, 0.28), turn=10)
  scene.add(box(desk, -0.98, 0.50, -0.34, 0.98, 0.545, 0.32, Material("#2A2522", 0.35, 10), rim=0.4), nearer=0.1)

  for x in (-0.86, 0.86):
    for z in (-0.28, 0.26):
      scene.add(rod(desk.point(x, 0.0, z), desk.point(x, 0.50, z), 0.02, STEEL), nearer=0.2 if z > 0 else -0.4)
    scene.add(rod(desk.point(x, 0.03, -0.28), desk.point(x, 0.03, 0.26), 0.018, STEEL))

  room.shadow(0, 0.2, 1.1, 0.40, 0.45)
  room.furnish(scene)
  _patch_cords(canvas, camera, top)
  x, y = camera.place(top.point(-0.02, 0.36, 0.04))
  bloom(canvas, x, y, 230, CYAN, 0.28, squash=0.6)
  room.finish()
  return canvas


PICTURES = (
  Picture("keys_bg.png", 1008, 672, keys),
  Picture("synth_bg.png", 1008, 672, synth),
)
