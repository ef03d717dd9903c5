"""The tiles of the guitar and of the bass: an instrument on its stand beside its amplifier."""

from canvas import Canvas, Picture, smooth_path
from palette import CYAN, ORANGE
from room import Room, bloom, tile_camera
from solids import (BLACK, CHROME, RUBBER, STEEL, Frame, box, cylinder, extruded, plate, rod, round_plate, shape,
                    spline)
from space import Material, Outline, Scene, plus

MAPLE = Material("#C99A5B", shine=0.35, sharp=18)
ROSEWOOD = Material("#3A2620", shine=0.30, sharp=14)
PEARL = Material("#E9EEF0", shine=0.5, sharp=14)
TOLEX = Material("#23282F", shine=0.16, sharp=8)
CLOTH = Material("#3A4048", shine=0.10, sharp=5)
JEWEL = Material("#FF7A2A", glow=1)

GUITAR_BODY = ((0, 0), (0.095, 0.006), (0.158, 0.05), (0.166, 0.12), (0.138, 0.185), (0.12, 0.235), (0.128, 0.285),
               (0.150, 0.335), (0.138, 0.376), (0.104, 0.366), (0.074, 0.325), (0.036, 0.30), (-0.036, 0.30),
               (-0.076, 0.335), (-0.114, 0.402), (-0.152, 0.424), (-0.170, 0.385), (-0.150, 0.31),
               (-0.126, 0.245), (-0.142, 0.19), (-0.172, 0.12), (-0.158, 0.048), (-0.095, 0.006))
GUITAR_GUARD = ((0.02, 0.10), (0.075, 0.055), (0.128, 0.085), (0.112, 0.16), (0.092, 0.225), (0.108, 0.30),
                (0.06, 0.295), (0.0, 0.30), (-0.06, 0.30), (-0.085, 0.27), (-0.055, 0.16))
BASS_BODY = ((0, 0), (0.10, 0.0), (0.168, 0.045), (0.176, 0.115), (0.145, 0.18), (0.128, 0.235), (0.136, 0.30),
             (0.160, 0.36), (0.150, 0.405), (0.112, 0.395), (0.078, 0.345), (0.036, 0.32), (-0.036, 0.32),
             (-0.074, 0.37), (-0.112, 0.455), (-0.156, 0.505), (-0.184, 0.475), (-0.170, 0.38), (-0.142, 0.27),
             (-0.150, 0.20), (-0.182, 0.125), (-0.172, 0.045), (-0.10, 0.0))
BASS_GUARD = ((0.04, 0.13), (0.095, 0.06), (0.14, 0.085), (0.125, 0.17), (0.105, 0.24), (0.116, 0.32), (0.05, 0.325),
              (-0.05, 0.33), (-0.10, 0.36), (-0.075, 0.22))


def _scaled(points, k):
  return [(x * k, y * k) for x, y in points]


def instrument(frame, k, outline, guard, lacquer, guard_material, bridge, nut, string_count, pickups, pegs_both,
                head_material):
  """A solid body with its neck, in units of `k` metres."""
  neck_width, neck_foot = 0.027 * k, 0.27 * k
  patches = extruded(frame, spline(_scaled(outline, k), 6), 0.042 * k, lacquer, lacquer, rim=0.55)
  patches.append(shape(frame, spline(_scaled(guard, k), 6), guard_material, 0.003, rim=0.35))

  # The neck, its board, frets and inlays.
  patches += box(frame, -neck_width, neck_foot, -0.012, neck_width, nut * k, 0.012, MAPLE, rim=0.2)
  patches.append(plate(frame, -neck_width, neck_foot, neck_width, nut * k, ROSEWOOD, z=0.013))
  span = nut - bridge

  for fret in range(1, 22):
    y = (bridge + span * 2 ** (-fret / 12)) * k

    if y > neck_foot:
      patches.append(plate(frame, -neck_width, y - 0.0012, neck_width, y + 0.0012, CHROME, z=0.0145))

    if fret in (3, 5, 7, 9, 12, 15, 17):
      middle = (bridge + span * 2 ** (-(fret - 0.5) / 12)) * k
      patches.append(round_plate(frame, 0, middle, 0.0075, PEARL, z=0.0147, count=16))

  # The head with its pegs.
  head = spline(_scaled(((-0.026, nut), (0.026, nut), (0.030, nut + 0.04), (0.033, nut + 0.11), (0.052, nut + 0.165),
                         (0.030, nut + 0.195), (-0.012, nut + 0.172), (-0.046, nut + 0.115), (-0.040,
                                                                                              nut + 0.035)), k), 5)
  patches += extruded(frame, head, 0.014 * k, MAPLE, head_material, rim=0.5)

  for i in range(string_count):
    share = (i + 0.5) / string_count
    y = (nut + 0.035 + 0.11 * share) * k
    side = -1 if not pegs_both or i < string_count / 2 else 1
    patches.append(plate(frame, side * 0.042 * k, y - 0.006, side * 0.062 * k, y + 0.007, CHROME, z=0.0)
                   if side > 0 else plate(frame, -0.066 * k, y - 0.006, -0.040 * k, y + 0.007, CHROME, z=0.0))
    patches.append(round_plate(frame, side * 0.020 * k, y, 0.0075 * k, CHROME, z=0.004, count=16))

  for y, height, lean in pickups:
    patches += box(frame, -0.046 * k, y * k - height * k / 2, 0, 0.046 * k, y * k + height * k / 2, 0.010, BLACK,
                   rim=0.3)

    for i in range(string_count):
      x = (-0.034 + 0.068 * i / (string_count - 1)) * k
      patches.append(round_plate(frame, x, y * k + lean * x, 0.0042 * k, CHROME, z=0.0115, count=12))

  patches += box(frame, -0.045 * k, (bridge - 0.024) * k, 0, 0.045 * k, (bridge + 0.012) * k, 0.012, CHROME, rim=0.4)

  for x, y in ((0.098, 0.085), (0.118, 0.125), (0.074, 0.062))[:3 if string_count == 6 else 2]:
    foot, top = frame.point(x * k, y * k, 0.003), frame.point(x * k, y * k, 0.022)
    patches += cylinder(foot, top, 0.013 * k, 0.011 * k, CHROME, count=20, cap=CHROME)

  for i in range(string_count):
    x = (-0.5 + i / (string_count - 1)) * 1.5
    ends = [frame.point(x * 0.044 * k, bridge * k, 0.02), frame.point(x * 0.024 * k, nut * k, 0.02)]
    patches.append(Outline(ends, "#EAF4FA", 0.75, 0.0016 if string_count == 6 else 0.0028, closed=False))

  return patches


def _stand(scene, frame, k):
  """The stand under an instrument: two feet, a back bar and the yoke."""
  x, _, z = frame.origin

  for side in (-1, 1):
    scene.add(rod((x + side * 0.19, 0.014, z + 0.16), (x + side * 0.03, 0.36, z - 0.12), 0.012, STEEL), nearer=-0.3)
    hook = frame.point(side * 0.085 * k, -0.008 * k, -0.05)
    scene.add(rod(hook, plus(hook, frame.z, 0.10), 0.012, RUBBER), nearer=0.5)
    scene.add(rod(plus(hook, frame.z, 0.095), plus(plus(hook, frame.z, 0.095), frame.y, 0.045), 0.012, RUBBER),
              nearer=0.6)

  scene.add(rod((x, 0.014, z - 0.34), (x, 0.42, z - 0.13), 0.012, STEEL), nearer=-0.3)
  scene.add(rod((x - 0.10, 0.2, z - 0.03), (x + 0.10, 0.2, z - 0.03), 0.012, STEEL), nearer=-0.2)


def _speaker(frame, x, y, radius, z):
  """A loudspeaker behind its cloth: rings that the light just finds."""
  tones = (("#14181D", 1.0), ("#2C333B", 0.94), ("#1B2026", 0.88), ("#272D35", 0.60), ("#30373F", 0.34),
           ("#20252C", 0.30))
  return [round_plate(frame, x, y, radius * share, Material(colour, 0.12, 6), z=z + 0.0006 * i)
          for i, (colour, share) in enumerate(tones)]


def _cabinet(frame, width, height, depth, speakers, panel=0.0):
  """An amplifier: box, cloth, speakers, and a control panel of height `panel` at the top."""
  half = width / 2
  patches = box(frame, -half, 0, -depth, half, height, 0, TOLEX, rim=0.5)
  edge = 0.035
  patches.append(plate(frame, -half + edge, edge, half - edge, height - edge - panel, CLOTH, z=0.001))

  for x, y, radius in speakers:
    patches += _speaker(frame, x, y, radius, 0.002)

  top = height - edge - panel

  for i in range(1, 30):
    y = edge + (top - edge) * i / 30
    patches.append(Outline([frame.point(-half + edge, y, 0.006), frame.point(half - edge, y, 0.006)], "#0A0C0F", 0.30,
                           0.0022, False))

  corners = [frame.point(x, y, 0.007) for x, y in ((-half + edge, edge), (half - edge, edge), (half - edge, top),
                                                   (-half + edge, top))]
  patches.append(Outline(corners, "#8C98A4", 0.5, 0.004))

  if panel:
    low = height - edge * 0.6 - panel
    patches.append(plate(frame, -half + edge, low, half - edge, low + panel, Material("#39424C", 0.7, 14), z=0.004,
                         rim=0.5))

    for i in range(7):
      x = -half + edge + (width - 2 * edge) * (i + 0.7) / 8.6
      patches.append(round_plate(frame, x, low + panel / 2, panel * 0.30, BLACK, z=0.006, rim=0.6, count=24))
      patches.append(plate(frame, x - 0.002, low + panel * 0.52, x + 0.002, low + panel * 0.78, PEARL, z=0.008))

    patches.append(round_plate(frame, half - edge - panel * 0.5, low + panel / 2, panel * 0.20, JEWEL, z=0.006,
                               count=20))

  for side in (-1, 1):
    for y in (0, height):
      sign = 1 if y == 0 else -1
      patches.append(plate(frame, *sorted((side * half, side * (half - 0.05)))[:1], min(y, y + sign * 0.05),
                           sorted((side * half, side * (half - 0.05)))[1], max(y, y + sign * 0.05), STEEL, z=0.003))

  return patches


def _cable(canvas, camera, points, colour):
  """A cable on the floor, with the light of its side along its back."""
  flat = [camera.place((x, 0.008, z)) for x, z in points]
  data = smooth_path(flat, closed=False)
  canvas.stroke(data, "#040507", 9)
  canvas.stroke(data, "#1B2128", 5.5)
  canvas.stroke(data, colour, 1.5, opacity=0.55)


def guitar():
  """The guitar before a combo amplifier."""
  canvas = Canvas(1536, 1024)
  camera = tile_camera(1536, 1024)
  room = Room(canvas, camera)
  room.backdrop()
  scene = Scene()
  amp = Frame((0.42, 0.03, -0.42), turn=-14)
  scene.add(_cabinet(amp, 0.92, 0.78, 0.36, ((-0.205, 0.345, 0.19), (0.205, 0.345, 0.19)), panel=0.085), nearer=-0.4)
  scene.add(box(amp, -0.13, 0.78, -0.20, 0.13, 0.815, -0.15, RUBBER), nearer=-0.3)
  body = Frame((-0.38, 0.16, 0.30), turn=16, lean=13, roll=-5)
  k = 1.42
  scene.add(instrument(body, k, GUITAR_BODY, GUITAR_GUARD, Material("#12A0B8", shine=0.7, sharp=24, glow=0.2), PEARL,
                       0.095,
                        0.755, 6, ((0.135, 0.024, 0.18), (0.195, 0.024, 0),
                                   (0.255, 0.024, 0)), False, MAPLE), nearer=0.4)
  _stand(scene, body, k)
  room.shadow(0.42, -0.50, 0.50, 0.28)
  room.shadow(-0.38, 0.22, 0.30, 0.20, 0.7)
  room.furnish(scene)
  _cable(canvas, camera, ((-0.20, 0.32), (-0.02, 0.55), (0.26, 0.62), (0.34, 0.40), (0.62, 0.34), (0.76, 0.02),
                          (0.78, -0.34)), ORANGE)
  x, y = camera.place(amp.point(0.38, 0.716, 0.01))
  bloom(canvas, x, y, 60, ORANGE, 0.7)
  room.finish()
  return canvas


def bass():
  """The bass before a stack of head and cabinet."""
  canvas = Canvas(1536, 1024)
  camera = tile_camera(1536, 1024)
  room = Room(canvas, camera)
  room.backdrop()
  scene = Scene()
  cabinet = Frame((-0.44, 0.03, -0.44), turn=14)
  scene.add(_cabinet(cabinet, 0.82, 0.86, 0.38, [(x, y, 0.160) for x in (-0.19, 0.19) for y in (0.24, 0.62)]),
            nearer=-0.5)
  head = cabinet.moved(0, 0.875, -0.02)
  scene.add(_cabinet(head, 0.76, 0.20, 0.30, (), panel=0.13), nearer=-0.4)
  body = Frame((0.40, 0.15, 0.34), turn=-16, lean=13, roll=5)
  k = 1.24
  scene.add(instrument(body, k, BASS_BODY, BASS_GUARD, Material("#DB5A1A", shine=0.6, sharp=24, glow=0.42),
                        Material("#1A1E24", 0.5, 20), 0.085, 0.945, 4, ((0.165, 0.03, 0),
                                                                        (0.262, 0.03, 0)), True, BLACK),
            nearer=0.4)
  _stand(scene, body, k)
  room.shadow(-0.44, -0.54, 0.46, 0.28)
  room.shadow(0.40, 0.26, 0.30, 0.20, 0.7)
  room.furnish(scene)
  _cable(canvas, camera, ((0.24, 0.36), (0.06, 0.58), (-0.22, 0.62), (-0.34, 0.42), (-0.60, 0.36), (-0.80, 0.04),
                          (-0.82, -0.3)), CYAN)
  x, y = camera.place(head.point(0.305, 0.114, 0.01))
  bloom(canvas, x, y, 60, ORANGE, 0.7)
  room.finish()
  return canvas


PICTURES = (
  Picture("bass_bg.png", 1008, 672, bass),
  Picture("guitar_bg.png", 1008, 672, guitar),
)
