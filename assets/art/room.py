"""The room that all pictures share: a slatted wall, a tube of cyan light at its left and one of orange light at
its right, and a dark floor that reflects both."""

from math import exp

from canvas import polygon_path
from palette import COAL, CYAN, CYAN_HOT, ORANGE, ORANGE_HOT, add, mix, to_hex, to_rgb
from space import Camera

WALL = -1.7  # the depth of the wall
TUBE = 1.72  # how far to the side each tube hangs
PITCH, SLAT = 0.13, 0.082  # from slat to slat, and the breadth of one
TOP = 3.4
GLOW = (to_rgb(CYAN), to_rgb(ORANGE))


def tile_camera(width, height):
  """The camera of all instrument tiles: a little above the thing, a little away from it."""
  return Camera((0, 1.42, 4.3), (0, 0.60, 0), height * 2.05, (width / 2, height * 0.53))


def _wall_light(x, y):
  """The light that falls on the wall at a place, as parts to add up."""
  result = [0.035, 0.042, 0.055]

  for side, colour in zip((-1, 1), GLOW):
    across = abs(x - side * TUBE)
    reach = 0.62 * exp(-across / 0.34) + 0.34 * exp(-across / 1.05)
    upright = exp(-((y - 1.25) / 1.15) ** 2)

    for i in range(3):
      result[i] += colour[i] * reach * (0.10 + 0.90 * upright)

  return result


def _painted(light, own):
  return to_hex(1 - exp(-1.5 * light[i] * own[i]) for i in range(3))


class Room:
  """The room as one camera sees it. The parts are painted in the order in which they stand here."""

  def __init__(self, canvas, camera, dim=1.0, tubes=True):
    self.canvas, self.camera, self.dim, self.tubes = canvas, camera, dim, tubes

  def backdrop(self, soft=0):
    """The wall, the floor, and the image of the wall in it; out of focus by `soft`."""
    canvas = self.canvas

    if soft:
      # A blur mixes the border with the nothing beyond it; what is drawn below it shows there instead.
      self.backdrop()

      with canvas.group(blur=soft):
        self.backdrop()

      return

    canvas.cover(COAL)
    self._wall(1)
    floor_line = self.camera.place((0, 0, WALL))[1]
    height = canvas.view_height

    canvas.rect(0, floor_line, canvas.view_width, height - floor_line,
                canvas.linear((0, floor_line), (0, height), ((0, "#0B0F14"), (0.5, "#090C11"), (1, "#06080B"))))
    fade = canvas.fade((0, floor_line), (0, height), ((0, 0.62), (0.35, 0.34), (0.8, 0.08), (1, 0.0)))
    edge = canvas.clip(polygon_path(((0, floor_line), (canvas.view_width, floor_line), (canvas.view_width, height),
                                     (0, height))))

    with canvas.group(clip=edge), canvas.group(mask=fade), canvas.group(blur=(1.5, 9)):
      self._wall(-1)

    self._pools()
    # A soft dark seam where the wall meets the floor.
    with canvas.group(blur=(0, 7)):
      canvas.rect(-50, floor_line - 8, canvas.view_width + 100, 16, "#030405", opacity=0.8)

  def _quad(self, left, right, bottom, top, z, flip):
    place = self.camera.place
    return [place((x, y * flip, z)) for x, y in ((left, bottom), (right, bottom), (right, top), (left, top))]

  def _wall(self, flip):
    canvas = self.canvas
    count = 34
    canvas.path(polygon_path(self._quad(-count * PITCH, count * PITCH, 0, TOP, WALL - 0.05, flip)), "#04060A",
                seam=2)

    for i in range(-count, count + 1):
      x = i * PITCH
      self._strip(x - SLAT / 2, x + SLAT / 2, WALL, (0.40, 0.42, 0.47), flip)
      # The flanks look along the wall, straight into the nearer tube.
      eye_side = -1 if x > self.camera.eye[0] else 1
      flank = x + eye_side * SLAT / 2
      own = (1.0, 0.95, 0.95) if eye_side * (TUBE - abs(x)) * (1 if x > 0 else -1) > 0 else (0.5, 0.5, 0.5)
      self._flank(flank, own, flip)

    if self.tubes:
      self._tubes(flip)

  def _strip(self, left, right, z, own, flip):
    quad = self._quad(left, right, 0, TOP, z, flip)
    stops = []

    for k in range(9):
      y = TOP * k / 8
      light = [v * self.dim for v in _wall_light((left + right) / 2, y)]
      stops.append((k / 8, _painted(light, own)))

    paint = self.canvas.linear((0, quad[0][1]), (0, quad[3][1]), stops)
    self.canvas.path(polygon_path(quad), paint)

  def _flank(self, x, own, flip):
    place = self.camera.place
    near, far = WALL, WALL - 0.05
    quad = [place((x, 0, near)), place((x, 0, far)), place((x, TOP * flip, far)), place((x, TOP * flip, near))]
    stops = [(k / 6, _painted([v * self.dim for v in _wall_light(x, TOP * k / 6)], own)) for k in range(7)]
    paint = self.canvas.linear((0, quad[0][1]), (0, quad[3][1]), stops)
    self.canvas.path(polygon_path(quad), paint)

  def _tubes(self, flip):
    canvas = self.canvas

    for side, colour, hot in ((-1, CYAN, CYAN_HOT), (1, ORANGE, ORANGE_HOT)):
      x = side * TUBE
      bottom, top = 0.12, 2.55
      quad = self._quad(x - 0.018, x + 0.018, bottom, top, WALL + 0.06, flip)
      middle = (quad[0][0] + quad[1][0]) / 2
      wide = quad[1][0] - quad[0][0]
      low, high = sorted((quad[0][1], quad[2][1]))

      for spread, strength in ((11, 0.30), (4, 0.55), (1.6, 0.8)):
        with canvas.group(blur=(wide * spread * 0.8, wide * spread * 0.6), screen=True, opacity=strength * self.dim):
          canvas.rect(middle - wide * spread / 2, low, wide * spread, high - low, colour)

      canvas.rect(middle - wide / 2, low, wide, high - low, mix(hot, "#FFFFFF", 0.55), radius=wide / 2)

  def _pools(self):
    """The two pools of light on the floor, and the paler one below the thing that is shown."""
    canvas, camera = self.canvas, self.camera

    for x, z, colour, strength in ((-TUBE, WALL + 0.5, CYAN, 0.30), (TUBE, WALL + 0.5, ORANGE, 0.28),
                                   (-1.0, 0.4, CYAN, 0.10), (1.0, 0.4, ORANGE, 0.10)):
      px, py = camera.place((x, 0, z))
      radius = camera.scale((x, 0, z)) * 1.15
      paint = canvas.radial(px, py, radius, ((0, colour, strength * self.dim), (0.5, colour, strength * 0.3 * self.dim),
                                             (1, colour, 0)), squash=0.3)

      with canvas.group(screen=True):
        canvas.ellipse(px, py, radius, radius * 0.3, paint)

  def shadow(self, x, z, across, along, strength=0.75):
    """The dark that a thing leaves on the floor where it stands."""
    px = self.camera.place((x, 0, z))[0]
    scale = self.camera.scale((x, 0, z))
    low = self.camera.place((x, 0, z + along))[1]
    high = self.camera.place((x, 0, z - along))[1]

    with self.canvas.group(blur=(0.05 * scale, 0.02 * scale)):
      self.canvas.ellipse(px, (low + high) / 2, across * scale, (low - high) / 2, "#020304", opacity=strength)

  def furnish(self, scene, image=0.42):
    """A scene and its image in the floor."""
    canvas = self.canvas
    floor_line = self.camera.place((0, 0, WALL))[1]
    fade = canvas.fade((0, floor_line), (0, canvas.view_height), ((0, image), (0.55, image * 0.75), (1, image * 0.1)))

    with canvas.group(mask=fade), canvas.group(blur=(1.2, 3)):
      scene.paint(canvas, self.camera, mirrored=True)

    scene.paint(canvas, self.camera)

  def finish(self, strength=0.8):
    """The haze of both lights over everything, and the dark of the corners."""
    canvas = self.canvas
    width, height = canvas.view_width, canvas.view_height

    with canvas.group(screen=True):
      canvas.cover(canvas.radial(width * 0.03, height * 0.38, width * 0.55, ((0, CYAN, 0.17), (0.5, CYAN, 0.05),
                                                                            (1, CYAN, 0))))
      canvas.cover(canvas.radial(width * 0.97, height * 0.38, width * 0.55, ((0, ORANGE, 0.17), (0.5, ORANGE, 0.05),
                                                                            (1, ORANGE, 0))))

    canvas.cover(canvas.radial(width / 2, height * 0.47, width * 0.66,
                               ((0, COAL, 0), (0.55, COAL, 0), (1, COAL, strength)), squash=height / width * 1.12))


def bloom(canvas, x, y, radius, colour, strength, squash=1):
  """A soft glow around something that shines."""
  hot = add(colour, "#FFFFFF", 0.3)

  with canvas.group(screen=True):
    canvas.ellipse(x, y, radius, radius * squash,
                   canvas.radial(x, y, radius, ((0, hot, strength), (0.25, colour, strength * 0.5),
                                                (0.6, colour, strength * 0.12), (1, colour, 0)), squash=squash))
