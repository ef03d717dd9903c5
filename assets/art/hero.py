"""The group of musicians at the head of the community page.

The people stand in the right half and their heads in the middle band: a wide card shows only the middle rows, and
lays a dark veil with words over the left half."""

from bodies import Dress, bust, cloth, fist, limb
from canvas import Canvas, Picture
from drums import BRONZE
from palette import COAL, CYAN, ORANGE, mix
from people import Look, Pen
from props import bar, stage_microphone, studio_microphone
from room import Room, bloom
from solids import BLACK, CHROME, STEEL, Frame, ball, box, cymbal, plate, rod
from space import Camera, Material, Scene
from strings import BASS_BODY, BASS_GUARD, GUITAR_BODY, GUITAR_GUARD, PEARL, instrument

WIDTH, HEIGHT = 1774, 887
HORIZON = 430
CAMERA = Camera((0, 1.38, 4.2), (0, 1.38, 0), 2350, (WIDTH / 2, HORIZON))

KEYS = Look("#B87C55", "#201512", "scarf", lashes=1.5, cloth="#23707F", lips="#9C4A48", build=0.84, phones="#8E99A3")
DRUMS = Look("#70452C", "#1A1411", "locs", beard="short", nose=1.5, fullness=1.5, lips="#6E3A34", phones="#262D35")
SINGER = Look("#8E5A3A", "#17110E", "wrap", cloth="#B4551F", lashes=1.6, fullness=1.5, nose=1.2, lips="#96423E",
              build=0.76,
              earring=True, phones="#20262D")
BASS = Look("#D2A57C", "#17171C", "topknot", brow=1.3, lips="#A4605A", phones="#2A3038")
GUITAR = Look("#D0A080", "#A9B1B8", "cap", beard="full", aged=True, glasses=True, cloth="#3A4652", brow=1.5,
              phones="#20262D")


def world(x, y, z):
  """The place in the room, at the depth z, that is seen at a place of the picture."""
  depth = CAMERA.eye[2] - z
  return ((x - WIDTH / 2) * depth / CAMERA.focal, CAMERA.eye[1] - (y - HORIZON) * depth / CAMERA.focal, z)


def _cymbals(canvas):
  scene = Scene()

  for x, y, z, radius, lean in ((1010, 300, -0.75, 0.24, (0.34, 1, 0.50)), (1262, 282, -0.75, 0.26, (-0.30, 1, 0.52)),
                                (950, 452, -0.55, 0.20, (0.10, 1, 0.26))):
    place = world(x, y, z)
    scene.add(rod((place[0], 0.2, z), place, 0.011, CHROME), nearer=-0.2)
    scene.add(cymbal(place, lean, radius, BRONZE), ball((place[0], place[1] + 0.03, z), 0.012, STEEL, 6, 10))

  scene.paint(canvas, CAMERA)


def _drummer(canvas):
  _cymbals(canvas)
  bust(canvas, 1160, 352, 0.47, DRUMS, Dress("tee", "#59636D"), turn=5)
  pen = Pen(canvas)
  limb(canvas, [(1212, 432), (1256, 516), (1248, 600)], (24, 26, 24), cloth(pen, "#59636D", 1040, 1290))
  canvas.stroke("M1262 556L1214 404", "#120C07", 10)
  canvas.stroke("M1262 556L1214 404", "#C79A5E", 6.5)
  fist(canvas, 1252, 530, 0.55, DRUMS, turn=-18, mirror=True)


def _bassist(canvas):
  scene = Scene()
  frame = Frame(world(1404, 716, -0.35), turn=0, lean=6, roll=-17)
  scene.add(instrument(frame, 0.86, BASS_BODY, BASS_GUARD, Material("#B4401E", 0.85, 24),
                       Material("#1A1E24", 0.5, 20), 0.085, 0.945,
                       4, ((0.165, 0.03, 0), (0.262, 0.03, 0)), True, BLACK))
  bust(canvas, 1452, 346, 0.47, BASS, Dress("jacket", "#4A3B36", "#23282F"), left=True, turn=-5)
  pen = Pen(canvas)
  limb(canvas, [(1514, 436), (1548, 490), (1552, 540)], (34, 29, 25), cloth(pen, "#4A3B36", 1400, 1570))
  limb(canvas, [(1560, 556), (1526, 520), (1488, 482)], (25, 23, 17), cloth(pen, "#4A3B36", 1400, 1570))
  scene.paint(canvas, CAMERA)
  fist(canvas, 1478, 474, 0.55, BASS, turn=17)


def _between_rows(canvas):
  """The haze that sets the second row back."""
  canvas.cover(canvas.linear((0, 380), (0, HEIGHT), ((0, COAL, 0.0), (0.4, COAL, 0.36), (1, COAL, 0.7))))

  with canvas.group(screen=True):
    canvas.cover(canvas.radial(1160, 470, 360, ((0, CYAN, 0.10), (1, CYAN, 0)), squash=0.8))
    canvas.cover(canvas.radial(1500, 470, 360, ((0, ORANGE, 0.10), (1, ORANGE, 0)), squash=0.8))


def _keyboard_player(canvas):
  bust(canvas, 1010, 402, 0.57, KEYS, Dress("jacket", "#31424E", "#23707F"), turn=7)
  pen = Pen(canvas)
  paint = cloth(pen, "#31424E", 880, 1140)
  limb(canvas, [(950, 508), (902, 640), (952, 722)], (28, 33, 27), paint)
  limb(canvas, [(1070, 508), (1118, 640), (1072, 722)], (28, 33, 27), paint)
  scene = Scene()
  body = Frame(world(1010, 742, 0.55), turn=10)
  patches = box(body, -0.46, -0.07, -0.16, 0.46, 0.05, 0.10, Material("#222931", 0.45, 12), rim=0.7)
  patches.append(plate(body, -0.43, -0.03, 0.43, -0.018, Material(CYAN, glow=1), z=0.102))
  patches.append(plate(body, -0.06, 0.005, 0.06, 0.03, Material("#AEB9C4", 0.5, 14), z=0.102))
  scene.add(patches)

  for side in (-1, 1):
    scene.add(rod(body.point(side * 0.30, -0.07, 0), body.point(-side * 0.30, -0.75, 0), 0.02, STEEL), nearer=-0.3)

  scene.paint(canvas, CAMERA)
  x, y = CAMERA.place(body.point(0, -0.024, 0.1))
  bloom(canvas, x, y, 300, CYAN, 0.30, squash=0.22)


def _singer(canvas):
  bust(canvas, 1302, 372, 0.61, SINGER, Dress("jacket", "#6A2F3C", "#1D2228"), left=True, turn=-6)
  stage_microphone(canvas, 1262, 424, 0.92, turn=-16)
  pen = Pen(canvas)
  paint = cloth(pen, "#6A2F3C", 1230, 1440)
  limb(canvas, [(1360, 490), (1390, 570), (1404, 640)], (28, 34, 33), paint)
  limb(canvas, [(1424, 640), (1392, 634), (1340, 584), (1300, 520)], (24, 33, 28, 21), paint)
  fist(canvas, 1282, 492, 0.72, SINGER, turn=-20, mirror=True)


def _guitarist(canvas):
  bust(canvas, 1572, 398, 0.58, GUITAR, Dress("jacket", "#3E5560", "#C9CED3"), left=True, turn=4)
  scene = Scene()
  frame = Frame(world(1470, 812, 0.30), turn=0, lean=4, roll=-40)
  scene.add(instrument(frame, 0.84, GUITAR_BODY, GUITAR_GUARD, Material("#0F93AB", 0.85, 24), PEARL, 0.095, 0.755, 6,
                       ((0.135, 0.024, 0.18), (0.195, 0.024, 0), (0.255, 0.024, 0)), False, Material("#1D2A33", 0.35,
                                                                                                     16)))
  pen = Pen(canvas)
  paint = cloth(pen, "#3E5560", 1440, 1720)
  limb(canvas, [(1640, 508), (1676, 590), (1692, 664)], (30, 34, 32), paint)
  limb(canvas, [(1704, 668), (1686, 642), (1660, 604)], (28, 29, 22), paint)
  scene.paint(canvas, CAMERA)
  limb(canvas, [(1504, 508), (1450, 636), (1476, 706), (1524, 738)], (28, 33, 28, 19), paint)
  fist(canvas, 1538, 742, 0.70, GUITAR, turn=44)
  fist(canvas, 1652, 590, 0.70, GUITAR, turn=38)


def _left_half(canvas):
  """What stands in the dark at the left: a microphone that waits."""
  bar(canvas, (-10, 306), (520, 560), 15)
  canvas.disc(520, 560, 14, "#20262D")
  canvas.disc(520, 560, 6, "#59636E")
  bar(canvas, (520, 560), (524, 526), 12)
  studio_microphone(canvas, 534, 402, 0.92, turn=6)


def hero():
  """The whole picture."""
  canvas = Canvas(WIDTH, HEIGHT)
  room = Room(canvas, CAMERA)

  room.backdrop(soft=2)

  with canvas.group(screen=True):
    canvas.cover(canvas.radial(1320, 420, 560, ((0, mix(CYAN, "#FFFFFF", 0.2), 0.13), (0.5, CYAN, 0.05),
                                                (1, CYAN, 0)), squash=0.8))

  _left_half(canvas)
  _drummer(canvas)
  _bassist(canvas)
  _between_rows(canvas)
  _keyboard_player(canvas)
  _guitarist(canvas)
  _singer(canvas)

  with canvas.group(screen=True):
    canvas.cover(canvas.radial(WIDTH, HEIGHT * 0.4, WIDTH * 0.34, ((0, ORANGE, 0.20), (0.5, ORANGE, 0.06),
                                                                   (1, ORANGE, 0))))
    canvas.cover(canvas.radial(0, HEIGHT * 0.4, WIDTH * 0.34, ((0, CYAN, 0.16), (0.5, CYAN, 0.05), (1, CYAN, 0))))

  canvas.cover(canvas.linear((0, HEIGHT * 0.62), (0, HEIGHT), ((0, COAL, 0), (1, COAL, 0.8))))
  canvas.cover(canvas.linear((WIDTH * 0.16, 0), (WIDTH * 0.56, 0), ((0, COAL, 0.15), (0.5, COAL, 0.5), (1, COAL, 0))))
  return canvas


PICTURES = (Picture("zorva_community_hero_people_v1.png", WIDTH, HEIGHT, hero, palette=False),)
