"""The solid things that the room is furnished with, as lists of patches in painting order."""

from math import cos, pi, sin

from palette import mix
from space import Material, Outline, Patch, cross, middle, minus, plus, unit


class Frame:
  """A place with three directions of its own, in which a thing is described."""

  def __init__(self, origin, turn=0, lean=0, roll=0):
    """`turn` is about the upright axis (to the right when positive), then `lean` tips the top backwards, then
    `roll` turns it in its own plane, counter-clockwise; all in degrees."""
    self.origin = origin
    yaw, tip, rot = (angle * pi / 180 for angle in (turn, lean, roll))
    right = (cos(yaw), 0, -sin(yaw))
    back = (sin(yaw), 0, cos(yaw))
    up = plus((0, cos(tip), 0), back, -sin(tip))
    front = plus((0, sin(tip), 0), back, cos(tip))
    self.x = plus(tuple(v * cos(rot) for v in right), up, sin(rot))
    self.y = plus(tuple(v * cos(rot) for v in up), right, -sin(rot))
    self.z = front

  def point(self, x, y, z=0):
    """The place in the world of a place in the frame."""
    return plus(plus(plus(self.origin, self.x, x), self.y, y), self.z, z)

  def moved(self, x, y, z=0):
    """The same frame with its origin moved to a place of its own."""
    other = Frame.__new__(Frame)
    other.origin, other.x, other.y, other.z = self.point(x, y, z), self.x, self.y, self.z
    return other


def bent(patch, across, amount):
  """A flat patch that takes the light as if it were bowed: its normals lean to the left at its left end and to the
  right at its right end. Broad faces come to life by it."""
  places = [sum(a * b for a, b in zip(point, across)) for point in patch.points]
  low, high = min(places), max(places)
  patch.normals = [unit(plus(patch.normal, across, amount * (2 * (place - low) / ((high - low) or 1) - 1)))
                   for place in places]
  return patch


def box(frame, left, bottom, back, right, top, front, material, rim=0.25, faces=None):
  """A box in a frame. `faces` may give another material to "front", "top", "left" or "right"."""
  faces = faces or {}
  p = frame.point
  sides = {
    "back": ((right, bottom, back), (left, bottom, back), (left, top, back), (right, top, back)),
    "bottom": ((left, bottom, back), (right, bottom, back), (right, bottom, front), (left, bottom, front)),
    "left": ((left, bottom, back), (left, bottom, front), (left, top, front), (left, top, back)),
    "right": ((right, bottom, front), (right, bottom, back), (right, top, back), (right, top, front)),
    "top": ((left, top, front), (right, top, front), (right, top, back), (left, top, back)),
    "front": ((left, bottom, front), (right, bottom, front), (right, top, front), (left, top, front)),
  }
  out = {"back": tuple(-v for v in frame.z), "bottom": tuple(-v for v in frame.y),
         "left": tuple(-v for v in frame.x), "right": frame.x, "top": frame.y, "front": frame.z}
  return [bent(Patch([p(*corner) for corner in corners], out[name], faces.get(name, material), rim), frame.x,
               0.3 if name in ("front", "top") else 0)
          for name, corners in sides.items()]


def plate(frame, left, bottom, right, top, material, z=0.0, rim=0.0):
  """A rectangle that lies on the front of a frame."""
  corners = ((left, bottom), (right, bottom), (right, top), (left, top))
  return bent(Patch([frame.point(x, y, z) for x, y in corners], frame.z, material, rim), frame.x, 0.3)


def round_plate(frame, x, y, radius, material, z=0.0, rim=0.0, count=40):
  """A disc that lies on the front of a frame."""
  points = [frame.point(x + radius * cos(2 * pi * i / count), y + radius * sin(2 * pi * i / count), z)
            for i in range(count)]
  return bent(Patch(points, frame.z, material, rim), frame.x, 0.3)


def _around(axis):
  helper = (0, 1, 0) if abs(axis[1]) < 0.9 else (1, 0, 0)
  side = unit(cross(axis, helper))
  return side, cross(axis, side)


def disc(centre, axis, radius, material, rim=0.0, count=72, two_sided=False):
  """A round face that looks along `axis`."""
  axis = unit(axis)
  u, v = _around(axis)
  points = [plus(plus(centre, u, radius * cos(2 * pi * i / count)), v, radius * sin(2 * pi * i / count))
            for i in range(count)]
  return bent(Patch(points, axis, material, rim, two_sided), (1, 0, 0), 0.3)


def cylinder(start, end, first, last, material, count=36, cap=None, rim=0.0):
  """A round body from `start` (radius `first`) to `end` (radius `last`), with a face of material `cap` at both
  ends."""
  axis = unit(minus(end, start))
  u, v = _around(axis)
  length = sum(part * part for part in minus(end, start)) ** 0.5
  slope = (first - last) / length
  rays = []

  for i in range(count + 1):
    a = 2 * pi * i / count
    rays.append(plus(tuple(part * cos(a) for part in u), v, sin(a)))

  patches = []

  for i in range(count):
    a, b = rays[i], rays[i + 1]
    na, nb = unit(plus(a, axis, slope)), unit(plus(b, axis, slope))
    points = [plus(start, a, first), plus(start, b, first), plus(end, b, last), plus(end, a, last)]
    patches.append(Patch(points, unit(plus(na, nb)), material, normals=[na, nb, nb, na]))

  # Strips that look away are skipped when they are painted; a wider tube needs no order among the others.
  if cap:
    patches.append(disc(start, tuple(-part for part in axis), first, cap, rim))
    patches.append(disc(end, axis, last, cap, rim))

  return patches


def rod(start, end, radius, material):
  """A thin round bar."""
  return cylinder(start, end, radius, radius, material, count=12, cap=material)


def ball(centre, radius, material, rings=10, count=22):
  """A sphere."""
  patches = []

  def at(i, j):
    a, b = pi * i / rings, 2 * pi * j / count
    return (sin(a) * cos(b), cos(a), sin(a) * sin(b))

  for i in range(rings):
    for j in range(count):
      rays = [at(i, j), at(i + 1, j), at(i + 1, j + 1), at(i, j + 1)]
      patches.append(Patch([plus(centre, ray, radius) for ray in rays], unit(middle(rays)), material, normals=rays))

  return patches


def extruded(frame, outline, depth, side, front, rim=0.35):
  """A body with a flat outline (points of the frame, counter-clockwise) that is `depth` thick behind its front."""
  patches = []
  count = len(outline)

  for i in range(count):
    (ax, ay), (bx, by) = outline[i], outline[(i + 1) % count]
    out = unit(plus(tuple(part * (by - ay) for part in frame.x), frame.y, -(bx - ax)))
    patches.append(Patch([frame.point(ax, ay, -depth), frame.point(bx, by, -depth), frame.point(bx, by),
                          frame.point(ax, ay)], out, side))

  patches.append(bent(Patch([frame.point(x, y) for x, y in outline], frame.z, front, rim), frame.x, 0.65))
  return patches


def shape(frame, outline, material, z=0.002, rim=0.0):
  """A flat shape that lies on the front of a frame."""
  return bent(Patch([frame.point(x, y, z) for x, y in outline], frame.z, material, rim), frame.x, 0.5)


def spline(points, steps=8):
  """A smooth closed outline through some points, as a longer list of points."""
  result = []
  count = len(points)

  for i in range(count):
    a, b, c, d = (points[(i + k) % count] for k in (-1, 0, 1, 2))

    for step in range(steps):
      t = step / steps
      result.append(tuple(0.5 * (2 * b[k] + (c[k] - a[k]) * t + (2 * a[k] - 5 * b[k] + 4 * c[k] - d[k]) * t * t
                                 + (3 * b[k] - a[k] - 3 * c[k] + d[k]) * t ** 3) for k in (0, 1)))

  return result


def cymbal(centre, axis, radius, material, sectors=96):
  """A round cymbal: a low bell and a bow whose turned grooves shine in opposite fans of light."""
  axis = unit(axis)
  u, v = _around(axis)
  patches = []
  own = material.colour

  for inner, outer, rise_in, rise_out in ((0.24, 1.0, 0.05, 0), (0.0, 0.24, 0.12, 0.05)):
    for i in range(sectors):
      rays = [plus(tuple(p * cos(2 * pi * k / sectors) for p in u), v, sin(2 * pi * k / sectors)) for k in (i, i + 1)]
      angle = 2 * pi * i / sectors
      # The grooves run around the bow, so each lamp is seen as a fan towards it and another away from it.
      fan = max(cos(angle * 2 - 0.5), 0) ** 5 + 0.55 * max(cos(angle * 2 + 1.7), 0) ** 9
      colour = mix(mix(own, "#3A220C", 0.52), "#FFF0C8", min(fan, 1) * 0.72)
      points = [plus(plus(centre, ray, radius * r), axis, radius * h)
                for ray, r, h in ((rays[0], inner, rise_in), (rays[0], outer, rise_out), (rays[1], outer, rise_out),
                                  (rays[1], inner, rise_in))]
      bent = unit(plus(axis, middle(rays), 0.3))
      groove = Material(colour, material.shine, material.sharp, material.metal, material.glow)
      patches.append(Patch(points, axis, groove, two_sided=True, normals=[bent] * 4))

  for share in (0.42, 0.60, 0.78, 0.992):
    ring = [plus(plus(plus(centre, u, radius * share * cos(2 * pi * k / 72)), v,
                      radius * share * sin(2 * pi * k / 72)), axis, radius * 0.05 * (1 - share) / 0.76)
            for k in range(72)]
    patches.append(Outline(ring, "#FFF3D6" if share > 0.9 else "#2A1808", 0.5 if share > 0.9 else 0.22))

  return patches


CHROME = Material("#B9C4CE", shine=0.95, sharp=26, metal=0.35)
STEEL = Material("#59636E", shine=0.7, sharp=20, metal=0.4)
RUBBER = Material("#15191F", shine=0.12, sharp=6)
BLACK = Material("#1B2027", shine=0.35, sharp=22)
