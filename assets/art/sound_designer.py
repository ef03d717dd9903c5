"""The tile of the sound generator: a desk with a wide display of moving spectra between two loudspeakers."""

from math import exp, sin

from canvas import Canvas, Picture, polygon_path
from keyboards import knob
from palette import CYAN, ORANGE, mix
from room import Room, bloom, tile_camera
from solids import BLACK, CHROME, RUBBER, STEEL, Frame, box, plate, rod, round_plate
from space import Material, Outline, Scene

GLASS = Material("#04141B", shine=0.16, sharp=10)
CONE = Material("#20262D", shine=0.25, sharp=6)


def _ridge(x, row):
  """The height, 0 to 1, of a line of the spectra at x from 0 to 1."""
  value = 0.0

  for centre, width, height, drift in ((0.16, 0.05, 0.75, 0.010), (0.31, 0.035, 1.0, -0.008), (0.46, 0.06, 0.55, 0.012),
                                       (0.62, 0.04, 0.85, -0.010), (0.80, 0.055, 0.6, 0.006)):
    swell = 0.55 + 0.45 * sin(row * 0.55 + centre * 17)
    value += height * swell * exp(-((x - centre - drift * row) / width) ** 2)

  return value + 0.05 * sin(x * 60 + row) * sin(x * 9)


def _spectra(screen, half, bottom, top):
  """Lines of spectra, one before the other, from orange in the distance to cyan in front."""
  patches = []
  rows = 11

  for row in range(rows):
    near = row / (rows - 1)
    reach = half * (0.66 + 0.28 * near)
    base = top - 0.10 - (top - bottom - 0.145) * near ** 1.25
    points = []

    for i in range(81):
      x = i / 80
      points.append(screen.point(-reach + 2 * reach * x, base + _ridge(x, row) * (0.050 + 0.060 * near), 0.004))

    colour = mix(ORANGE, CYAN, min(1, near * 1.25))
    patches.append(Fill(points))
    patches.append(Outline(points, colour, 0.28, 0.011, False))
    patches.append(Outline(points, mix(colour, "#FFFFFF", 0.12), 0.55 + 0.45 * near, 0.0040, False))

  return patches


class Fill:
  """The dark below a line of the spectra, which hides those behind it."""

  def __init__(self, points):
    self.points = points

  def paint(self, canvas, camera, mirrored):
    """Draws the dark, or its image in the floor when `mirrored`."""
    flip = -1 if mirrored else 1
    flat = [camera.place((x, y * flip, z)) for x, y, z in self.points]
    canvas.path(polygon_path(flat), "#04141B", opacity=0.88)


def loudspeaker(frame):
  """A near-field monitor on its foot."""
  patches = box(frame, -0.135, 0, -0.22, 0.135, 0.44, 0, Material("#2A3038", 0.3, 10), rim=0.55)

  for y, radius in ((0.155, 0.108), (0.345, 0.052)):
    patches += [round_plate(frame, 0, y, radius * 1.10, Material("#454F5A", 0.7, 14), z=0.002, rim=0.3),
                round_plate(frame, 0, y, radius, RUBBER, z=0.003),
                round_plate(frame, 0, y, radius * 0.86, CONE, z=0.004),
                round_plate(frame, 0, y, radius * 0.40, Material("#3C4650", 0.4, 8), z=0.005)]

  patches.append(round_plate(frame, 0, 0.03, 0.007, Material(CYAN, glow=1), z=0.004, count=14))
  return patches


def _surface(frame):
  """The control surface on the desk: pads of light, knobs and faders."""
  patches = box(frame, -0.46, 0, -0.04, 0.46, 0.28, 0, BLACK, rim=0.5, faces={"front": Material("#2B323B", 0.35, 10)})

  for row in range(3):
    for i in range(6):
      lit = (row * 5 + i * 3) % 7
      colour = CYAN if lit in (0, 3) else ORANGE if lit == 5 else "#46505B"
      x, y = -0.43 + i * 0.060, 0.03 + row * 0.078
      light = Material(colour, 0.3, 8, glow=0.9 if lit in (0, 3, 5) else 0.0)
      patches.append(plate(frame, x, y, x + 0.048, y + 0.062, light, z=0.006, rim=0.4))

  for i in range(4):
    patches += knob(frame, -0.01 + i * 0.075, 0.225, 0.022, 0.0, (CYAN, ORANGE)[i % 2], angle=i * 0.9 - 1.2)

  for i in range(4):
    x = -0.01 + i * 0.075
    patches.append(plate(frame, x - 0.004, 0.03, x + 0.004, 0.16, RUBBER, z=0.001))
    y = 0.05 + 0.08 * abs(sin(i * 1.7 + 0.5))
    patches += box(frame, x - 0.018, y, 0, x + 0.018, y + 0.022, 0.02, CHROME, rim=0.6)

  patches += knob(frame, 0.375, 0.15, 0.058, 0.0, CYAN, angle=0.7)
  return patches


def sound_designer():
  """The desk."""
  canvas = Canvas(1536, 1024)
  camera = tile_camera(1536, 1024)
  room = Room(canvas, camera)
  room.backdrop()
  scene = Scene()
  wood = Material("#2A2522", 0.4, 12)
  desk = Frame((0, 0, 0.12))
  scene.add(box(desk, -1.06, 0.50, -0.42, 1.06, 0.55, 0.38, wood, rim=0.5), nearer=0.05)

  for side in (-1, 1):
    scene.add(box(desk, side * 0.92 - 0.03, 0, -0.34, side * 0.92 + 0.03, 0.50, 0.30, STEEL, rim=0.4), nearer=-0.3)

  scene.add(box(desk, -0.89, 0.30, -0.34, 0.89, 0.46, -0.31, BLACK, rim=0.3), nearer=-0.4)

  for side in (-1, 1):
    speaker = Frame((side * 0.83, 0.565, -0.02), turn=-side * 20, lean=4)
    scene.add(loudspeaker(speaker), nearer=0.3)

  screen = Frame((0, 0.86, -0.10), lean=6)
  half, low, high = 0.56, -0.235, 0.275
  scene.add(box(Frame((0, 0.55, -0.14)), -0.16, 0, -0.08, 0.16, 0.015, 0.08, STEEL, rim=0.4), nearer=0.2)
  scene.add(rod((0, 0.55, -0.16), (0, 0.80, -0.16), 0.03, STEEL), nearer=0.1)
  patches = box(screen, -half - 0.018, low - 0.018, -0.03, half + 0.018, high + 0.018, 0, BLACK, rim=0.6)
  patches.append(plate(screen, -half, low, half, high, GLASS, z=0.001))
  patches += _spectra(screen, half, low, high)

  for i in range(7):
    x = -half + 0.06 + i * 0.075
    patches.append(plate(screen, x, high - 0.045, x + 0.055, high - 0.022, Material(CYAN if i == 1 else "#17343F",
                                                                                    glow=0.9), z=0.003))

  patches.append(plate(screen, half - 0.18, high - 0.045, half - 0.05, high - 0.022, Material(ORANGE, glow=0.9),
                       z=0.003))
  scene.add(patches, nearer=0.4)
  scene.add(_surface(Frame((0, 0.595, 0.44), lean=66)), nearer=0.8)
  room.shadow(0, 0.1, 1.15, 0.40, 0.5)
  room.furnish(scene)
  x, y = camera.place(screen.point(0, 0, 0))
  bloom(canvas, x, y, 420, CYAN, 0.26, squash=0.62)
  room.finish()
  return canvas


PICTURES = (
  Picture("sound_designer_bg.png", 1008, 672, sound_designer),
)
