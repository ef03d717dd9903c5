"""The tiles of the drum kit and of the electronic drums."""

from math import cos, pi, sin

from canvas import Canvas, Picture
from room import Room, bloom, tile_camera
from palette import CYAN, ORANGE
from solids import (BLACK, CHROME, RUBBER, STEEL, Frame, ball, box, cylinder, cymbal, disc, plate, rod, round_plate)
from space import Material, Scene, cross, dot, minus, plus, unit

LACQUER = Material("#A02A34", shine=0.9, sharp=26)
HEAD = Material("#E4E2DC", shine=0.12, sharp=8)
BRONZE = Material("#F6A552", shine=0.45, sharp=14, metal=0.25, glow=0.28)
EYE = (0, 1.42, 4.3)  # where the tiles are seen from: what lies behind a drum is not built


def drum_shell(start, end, radius, lacquer=LACQUER, lugs=8, front_head=HEAD):
  """A drum: shell, two hoops, lugs and heads. `end` is the head that is struck."""
  axis = unit(minus(end, start))
  hoop = radius + 0.010
  patches = cylinder(start, end, radius, radius, lacquer, count=48)
  helper = (0, 1, 0) if abs(axis[1]) < 0.9 else (1, 0, 0)
  u = unit(cross(axis, helper))
  v = cross(axis, u)
  length = sum(part * part for part in minus(end, start)) ** 0.5

  for i in range(lugs):
    a = 2 * pi * (i + 0.5) / lugs
    ray = plus(tuple(part * cos(a) for part in u), v, sin(a))
    foot = plus(plus(start, ray, radius * 1.02), axis, length * 0.08)

    if dot(ray, minus(EYE, foot)) > 0.3:
      patches += rod(foot, plus(foot, axis, length * 0.84), 0.007, CHROME)
      patches += rod(plus(foot, axis, length * 0.30), plus(foot, axis, length * 0.54), 0.014, CHROME)

  rim = min(0.022, length * 0.14)

  for at in (0.0, length - rim):
    low = plus(start, axis, at)
    patches += cylinder(low, plus(low, axis, rim), hoop, hoop, CHROME, count=56)

  patches.append(disc(end, axis, hoop, CHROME, rim=0.5))
  patches.append(disc(plus(end, axis, 0.001), axis, radius * 0.955, front_head))
  return patches


def _tripod(x, z, height, spread=0.2):
  """A stand with three legs, from the floor up to `height`."""
  patches = []

  for angle in (0.4, 2.5, 4.6):
    foot = (x + spread * cos(angle), 0.012, z + spread * sin(angle))
    patches += rod((x, 0.26, z), foot, 0.011, STEEL)

  return patches + rod((x, 0.12, z), (x, height, z), 0.013, CHROME)


def _kit(scene):
  # The bass drum looks at the camera; a ring of light lies around its dark front head.
  front = Material("#242B34", shine=0.34, sharp=7)
  scene.add(drum_shell((0, 0.335, -0.42), (0, 0.335, 0.02), 0.325, front_head=front, lugs=10))
  badge = Frame((0, 0.335, 0.025))
  scene.add([round_plate(badge, 0, 0, 0.235, Material("#5A6672", 0.3, 14)),
             round_plate(badge, 0, 0, 0.228, front, z=0.001)], nearer=0.4)

  # Two toms above it, tipped towards the camera, so that the heads show.
  for side in (-1, 1):
    base = (side * 0.215, 0.72, -0.10)
    lean = unit((-side * 0.10, 1, 0.40))
    scene.add(rod((side * 0.06, 0.60, -0.22), (side * 0.17, 0.78, -0.16), 0.014, CHROME))
    scene.add(drum_shell(base, plus(base, lean, 0.21), 0.185, lugs=6), nearer=0.5)

  # The floor tom and the snare.
  for x, z, low, high, radius in ((0.60, 0.16, 0.20, 0.58, 0.225), (-0.56, 0.24, 0.49, 0.63, 0.20)):
    lean = unit((-x * 0.12, 1, 0.14))
    scene.add(drum_shell((x, low, z), plus((x, low, z), lean, high - low), radius, lugs=8), nearer=0.2)

  for angle in (0.5, 2.6, 4.7):
    x, z = 0.60 + 0.235 * cos(angle), 0.16 + 0.235 * sin(angle)
    scene.add(rod((x, 0.0, z), (x, 0.34, z), 0.011, CHROME), nearer=0.35 if sin(angle) > 0 else -0.2)

  scene.add(_tripod(-0.56, 0.24, 0.48, 0.2))

  for x, z, height, radius, lean in ((-0.56, -0.35, 1.17, 0.30, (0.30, 1, 0.46)),
                                     (0.60, -0.38, 1.22, 0.34, (-0.30, 1, 0.46)),
                                     (-0.94, 0.16, 0.80, 0.215, (0.08, 1, 0.20))):
    scene.add(_tripod(x, z, height, 0.2), nearer=-0.3)
    scene.add(cymbal((x, height, z), lean, radius, BRONZE), ball((x, height + 0.04, z), 0.015, STEEL, 6, 10))

  # The lower one of the hi-hat's pair.
  scene.add(cymbal((-0.94, 0.772, 0.16), (0.08, 1, 0.20), 0.215, BRONZE), nearer=-0.02)


def drum_kit():
  """The acoustic kit."""
  canvas = Canvas(1536, 1024)
  room = Room(canvas, tile_camera(1536, 1024))
  room.backdrop()
  scene = Scene()
  _kit(scene)
  room.shadow(0, -0.15, 0.42, 0.30)
  room.shadow(0.66, 0.12, 0.28, 0.20, 0.6)
  room.shadow(-0.60, 0.22, 0.28, 0.18, 0.5)
  room.furnish(scene)
  room.finish()
  return canvas


def _pad(scene, x, y, z, radius, lean, colour, nearer=0.0):
  """A rubber pad with a lit ring."""
  axis = unit(lean)
  low = (x, y, z)
  face = plus(low, axis, 0.045)
  scene.add(cylinder(low, face, radius * 0.9, radius, BLACK, count=48),
            [disc(face, axis, radius, RUBBER),
             disc(plus(face, axis, 0.002), axis, radius * 0.96, Material(colour, glow=0.85)),
             disc(plus(face, axis, 0.003), axis, radius * 0.915, Material("#2A3038", shine=0.35, sharp=8)),
             disc(plus(face, axis, 0.004), axis, radius * 0.42, Material("#323943", shine=0.35, sharp=8))],
            nearer=nearer)


def _rack(scene):
  """The tubular rack, its pads, and the brain of the kit with its display."""
  for x in (-0.86, 0.86):
    scene.add(rod((x, 0.02, 0.18), (x * 0.92, 0.98, -0.12), 0.021, CHROME))
    scene.add(rod((x - 0.12, 0.016, 0.30), (x + 0.12, 0.016, 0.10), 0.018, STEEL))

  scene.add(rod((-0.82, 0.80, -0.08), (0.82, 0.80, -0.08), 0.021, CHROME), nearer=-0.2)
  scene.add(rod((-0.80, 0.62, -0.02), (0.80, 0.62, -0.02), 0.017, STEEL), nearer=-0.2)

  for x, y, z, radius, lean, colour in (
      (-0.26, 0.80, 0.02, 0.165, (0.05, 1, 0.62), CYAN), (0.26, 0.80, 0.02, 0.165, (-0.05, 1, 0.62), ORANGE),
      (-0.66, 0.62, 0.18, 0.185, (0.14, 1, 0.50), CYAN), (0.68, 0.58, 0.20, 0.195, (-0.14, 1, 0.50), ORANGE),
      (-0.80, 1.10, -0.22, 0.215, (0.30, 1, 0.56), CYAN), (0.80, 1.10, -0.22, 0.215, (-0.30, 1, 0.56), ORANGE)):
    scene.add(rod((x * 0.95, 0.66 if y < 1 else 0.80, -0.06), (x, y, z), 0.015, STEEL))
    _pad(scene, x, y, z, radius, lean, colour, nearer=0.1)

  # The kick tower.
  tower = Frame((0.0, 0.0, 0.10))
  scene.add(box(tower, -0.15, 0.0, -0.10, 0.15, 0.05, 0.24, STEEL))
  scene.add(box(tower, -0.13, 0.05, -0.07, 0.13, 0.48, 0.0, BLACK))
  face = Frame((0.0, 0.27, 0.11))
  scene.add([round_plate(face, 0, 0, 0.165, RUBBER), round_plate(face, 0, 0, 0.155, Material("#E8F6FF", glow=0.7),
                                                                 z=0.004),
             round_plate(face, 0, 0, 0.145, Material("#2A3038", 0.35, 8), z=0.006),
             round_plate(face, 0, 0, 0.06, Material("#39424D", 0.35, 8), z=0.008)], nearer=0.5)

  # The brain.
  brain = Frame((0.0, 1.06, -0.16), lean=28)
  scene.add(rod((0, 0.80, -0.08), (0, 1.02, -0.18), 0.015, STEEL))
  patches = box(brain, -0.21, -0.12, -0.05, 0.21, 0.12, 0.0, BLACK, rim=0.4)
  patches.append(plate(brain, -0.125, -0.02, 0.125, 0.095, Material("#06222B", 0.6, 30), z=0.003))

  for i in range(14):
    level = 0.018 + 0.06 * abs(sin(i * 1.3 + 0.7))
    colour = CYAN if i < 9 else ORANGE
    patches.append(plate(brain, -0.115 + i * 0.0167, -0.012, -0.104 + i * 0.0167, -0.012 + level,
                         Material(colour, glow=1), z=0.004))

  for i in range(6):
    patches.append(round_plate(brain, -0.16 + i * 0.064, -0.072, 0.021, CHROME if i < 2 else STEEL, z=0.004, count=24))

  for side, colour in ((-0.165, CYAN), (0.165, ORANGE)):
    patches.append(plate(brain, side - 0.022, 0.0, side + 0.022, 0.035, Material(colour, glow=0.9), z=0.003))

  scene.add(patches, nearer=0.3)


def electronic_drums():
  """The electronic kit."""
  canvas = Canvas(1586, 992)
  camera = tile_camera(1586, 1000)
  room = Room(canvas, camera)
  room.backdrop()
  scene = Scene()
  _rack(scene)
  room.shadow(0, 0.15, 0.30, 0.20)
  room.shadow(-0.86, 0.2, 0.16, 0.12, 0.6)
  room.shadow(0.86, 0.2, 0.16, 0.12, 0.6)
  room.furnish(scene)
  x, y = camera.place((0, 1.08, -0.12))
  bloom(canvas, x, y, 190, CYAN, 0.22)
  room.finish()
  return canvas


PICTURES = (
  Picture("drums_bg.png", 1008, 672, drum_kit),
  Picture("electronic_drums_bg.png", 1007, 630, electronic_drums),
)
