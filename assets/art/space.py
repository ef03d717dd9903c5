"""A small world in metres, seen by one camera and lit by the two lights.

Things are lists of patches (flat polygons with a normal and a material). A patch is painted with a gradient of
the light that falls on it, so that broad faces shade softly and curved ones are made of narrow strips. x grows
to the right, y upwards, z towards the camera; the floor is y = 0."""

from dataclasses import dataclass, field
from math import exp, sqrt

from canvas import line_path, polygon_path
from palette import CYAN, ORANGE, to_hex, to_rgb


def plus(a, b, k=1):
  """a + k * b."""
  return (a[0] + b[0] * k, a[1] + b[1] * k, a[2] + b[2] * k)


def minus(a, b):
  """a - b."""
  return (a[0] - b[0], a[1] - b[1], a[2] - b[2])


def dot(a, b):
  """The scalar product."""
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]


def cross(a, b):
  """The vector product."""
  return (a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0])


def unit(a):
  """A vector of length 1 in the same direction."""
  length = sqrt(dot(a, a)) or 1
  return (a[0] / length, a[1] / length, a[2] / length)


def middle(points):
  """The mean of some points."""
  return tuple(sum(part) / len(points) for part in zip(*points))


@dataclass(frozen=True)
class Material:
  """How a surface answers light: its own colour, the strength and sharpness of its shine, whether the shine
  takes its colour (metal), and how much it glows by itself."""

  colour: str
  shine: float = 0.25
  sharp: float = 18
  metal: float = 0.0
  glow: float = 0.0


@dataclass(frozen=True)
class Lamp:
  """A light at a place; it falls to the half at the distance `reach`. `gleam` is its share in the shine of things."""

  place: tuple
  colour: tuple
  power: float
  reach: float
  gleam: float


LAMPS = (
  Lamp((-2.7, 1.7, 1.3), to_rgb(CYAN), 2.3, 2.2, 1.0),
  Lamp((2.7, 1.7, 1.3), to_rgb(ORANGE), 2.4, 2.2, 1.0),
  Lamp((-1.9, 1.2, -1.5), to_rgb(CYAN), 0.9, 1.3, 1.0),
  Lamp((1.9, 1.2, -1.5), to_rgb(ORANGE), 0.9, 1.3, 1.0),
  Lamp((0.0, 3.2, 2.6), (0.95, 0.96, 1.0), 1.05, 4.5, 0.3),
)
AMBIENT = (0.050, 0.058, 0.075)


def shade(point, normal, material, eye):
  """The colour, in parts, of a surface point as the eye sees it."""
  own = to_rgb(material.colour)
  look = unit(minus(eye, point))
  diffuse = list(AMBIENT)
  shine = [0.0, 0.0, 0.0]

  for lamp in LAMPS:
    way = minus(lamp.place, point)
    distance = sqrt(dot(way, way))
    way = (way[0] / distance, way[1] / distance, way[2] / distance)
    power = lamp.power / (1 + (distance / lamp.reach) ** 2)
    facing = max(dot(normal, way), 0)
    half = unit(plus(way, look))
    gleam = lamp.gleam * max(dot(normal, half), 0) ** material.sharp * (facing > 0)

    for i in range(3):
      diffuse[i] += lamp.colour[i] * power * facing
      shine[i] += lamp.colour[i] * power * gleam

  result = []

  for i in range(3):
    gleam_colour = 1 + (own[i] - 1) * material.metal
    light = own[i] * diffuse[i] * (1 - 0.45 * material.metal) + shine[i] * material.shine * gleam_colour * 1.6
    light = 1 - exp(-1.25 * light)
    result.append(light + (own[i] - light) * material.glow)

  return result


@dataclass
class Camera:
  """A camera at `eye` that looks at `target`; `focal` is in units of the picture, `centre` where the target falls."""

  eye: tuple
  target: tuple
  focal: float
  centre: tuple
  axes: tuple = field(init=False)

  def __post_init__(self):
    forward = unit(minus(self.target, self.eye))
    right = unit(cross(forward, (0, 1, 0)))
    self.axes = (right, cross(right, forward), forward)

  def place(self, point):
    """Where a point of the world falls in the picture."""
    way = minus(point, self.eye)
    right, up, forward = self.axes
    depth = max(dot(way, forward), 0.05)
    return (self.centre[0] + self.focal * dot(way, right) / depth,
            self.centre[1] - self.focal * dot(way, up) / depth)

  def scale(self, point):
    """How many units of the picture a metre has at a point."""
    return self.focal / max(dot(minus(point, self.eye), self.axes[2]), 0.05)

  def distance(self, point):
    """How far a point lies from the eye."""
    way = minus(point, self.eye)
    return sqrt(dot(way, way))


@dataclass
class Patch:
  """A flat polygon in space. `rim` outlines it with a lighter line of the given strength."""

  points: list
  normal: tuple
  material: Material
  rim: float = 0.0
  two_sided: bool = False
  normals: list = None  # one for each point, where the surface is bent

  def paint(self, canvas, camera, mirrored):
    """Draws the patch, or its image in the floor when `mirrored`."""
    flip = -1 if mirrored else 1
    seen = [(x, y * flip, z) for x, y, z in self.points]
    normal = (self.normal[0], self.normal[1] * flip, self.normal[2])

    if dot(normal, minus(camera.eye, seen[0])) <= 0:
      if not self.two_sided:
        return

    eye = (camera.eye[0], camera.eye[1] * flip, camera.eye[2])
    facing = self.normal if dot(self.normal, minus(eye, self.points[0])) > 0 else tuple(-n for n in self.normal)
    flat = [camera.place(point) for point in seen]
    data = polygon_path(flat)
    paint = self._gradient(canvas, flat, facing, eye)
    canvas.path(data, paint, seam=0.8)

    if self.rim:
      edge = shade(middle(self.points), unit(plus(facing, (0, 0.6, 0.5))), self.material, eye)
      canvas.stroke(data, to_hex(min(1, part * 1.5 + 0.06) for part in edge), 1.3, opacity=self.rim)

  def _gradient(self, canvas, flat, normal, eye):
    xs, ys = [p[0] for p in flat], [p[1] for p in flat]
    # A bent strip changes across its breadth, a flat face along its greater extent.
    share = 0.04 if self.normals else 0.5
    axis = 0 if max(xs) - min(xs) >= share * (max(ys) - min(ys)) else 1
    order = sorted(range(len(flat)), key=lambda i: flat[i][axis])
    low, high = order[0], order[-1]
    length = flat[high][axis] - flat[low][axis]

    if length < 3 or self.material.glow >= 1:
      return to_hex(shade(middle(self.points), normal, self.material, eye))

    def end(index):
      near = [i for i in order if abs(flat[i][axis] - flat[index][axis]) < 0.12 * length]
      return middle([self.points[i] for i in near]), (middle([self.normals[i] for i in near]) if self.normals
                                                      else normal)

    (start, n0), (finish, n1) = end(low), end(high)
    steps = 2 if length < 14 else 6
    stops = [(i / steps, to_hex(shade(plus(start, minus(finish, start), i / steps),
                                      unit(plus(n0, minus(n1, n0), i / steps)), self.material, eye)))
             for i in range(steps + 1)]
    a = (flat[low][0], 0) if axis == 0 else (0, flat[low][1])
    b = (flat[high][0], 0) if axis == 0 else (0, flat[high][1])
    return canvas.linear(a, b, stops)


@dataclass
class Outline:
  """A thin closed line in space, for grooves and edges that shine; `width` is in metres."""

  points: list
  colour: str
  opacity: float
  width: float = 0.003
  closed: bool = True

  def paint(self, canvas, camera, mirrored):
    """Draws the line, or its image in the floor when `mirrored`."""
    flip = -1 if mirrored else 1
    flat = [camera.place((x, y * flip, z)) for x, y, z in self.points]
    width = max(self.width * camera.scale(self.points[0]), 0.8)
    canvas.stroke(polygon_path(flat) if self.closed else line_path(flat), self.colour, width, opacity=self.opacity)


class Scene:
  """Things in the room, painted from the farthest to the nearest."""

  def __init__(self):
    self._things = []

  def add(self, *patches, nearer=0.0):
    """Adds one thing made of patches that are already in their painting order. `nearer` moves it forward in the
    order of things, in metres, without moving it."""
    flat = []

    for patch in patches:
      flat.extend(patch if isinstance(patch, list) else [patch])

    self._things.append((flat, nearer))

  def paint(self, canvas, camera, mirrored=False):
    """Draws everything, or its image in the floor."""
    def far(thing):
      points = [point for patch in thing[0] for point in patch.points]
      return camera.distance(middle(points)) - thing[1]

    for patches, _ in sorted(self._things, key=far, reverse=True):
      for patch in patches:
        patch.paint(canvas, camera, mirrored)
