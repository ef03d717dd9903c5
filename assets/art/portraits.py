"""The three portraits of people at work in the studio. They are of nobody."""

from bodies import Dress, bust
from canvas import Canvas, Picture
from palette import COAL, CYAN, ORANGE, between
from people import Look
from props import bar, studio_microphone
from room import Room, bloom
from solids import BLACK, Frame, box, plate
from sound_designer import loudspeaker
from space import Camera, Material, Outline, Scene

WIDTH, HEIGHT = 1200, 800


def _studio(camera, soft, furnish):
  """The room behind a person, a little out of focus, with what `furnish` puts into it."""
  canvas = Canvas(WIDTH, HEIGHT)
  room = Room(canvas, camera)
  scene = Scene()
  furnish(scene)

  room.backdrop()
  room.furnish(scene)

  # A blur mixes the border with the nothing beyond it; what is drawn below it shows there instead.
  with canvas.group(blur=soft):
    room.backdrop()
    room.furnish(scene)

  return canvas, room


def _display(frame, half, height, phase):
  """A display with the tracks of a song."""
  patches = box(frame, -half - 0.02, -0.02, -0.04, half + 0.02, height + 0.02, 0, BLACK, rim=0.6)
  patches.append(plate(frame, -half, 0, half, height, Material("#071A22", 0.2, 12), z=0.001))
  rows = 7

  for row in range(rows):
    y = height * (row + 0.35) / rows
    x = -half + 0.03

    for k in range(5):
      length = half * (0.16 + 0.22 * ((row * 3 + k * 5 + phase) % 4) / 3)
      end = min(x + length, half - 0.02)

      if (row + k * 2 + phase) % 5 and end > x:
        patches.append(plate(frame, x, y, end, y + height / rows * 0.62, Material(between(row / (rows - 1)),
                                                                                  glow=0.62), z=0.002))

      x = end + 0.012

  patches.append(Outline([frame.point(0.1 * half, 0, 0.004), frame.point(0.1 * half, height, 0.004)], "#FFFFFF", 0.9,
                         0.006, False))
  return patches


def _finish(canvas):
  with canvas.group(screen=True):
    canvas.cover(canvas.radial(0, HEIGHT * 0.42, WIDTH * 0.5, ((0, CYAN, 0.20), (0.5, CYAN, 0.06), (1, CYAN, 0))))
    canvas.cover(canvas.radial(WIDTH, HEIGHT * 0.42, WIDTH * 0.5, ((0, ORANGE, 0.20), (0.5, ORANGE, 0.06),
                                                                   (1, ORANGE, 0))))

  canvas.cover(canvas.linear((0, HEIGHT * 0.55), (0, HEIGHT), ((0, COAL, 0), (1, COAL, 0.85))))
  canvas.cover(canvas.linear((0, 0), (0, HEIGHT * 0.3), ((0, COAL, 0.55), (1, COAL, 0))))
  return canvas


def producer():
  """At the right, looking over to loudspeaker and display."""
  def furnish(scene):
    scene.add(loudspeaker(Frame((-0.98, 1.06, -0.35), turn=24, lean=2)))
    scene.add(_display(Frame((-0.42, 1.10, -0.75), turn=12), 0.44, 0.46, 1))
    scene.add(box(Frame((-0.7, 0.98, -0.4)), -1.2, 0, -0.5, 1.1, 0.06, 0.3, Material("#2A2522", 0.3, 10)), nearer=-0.5)

  camera = Camera((0, 1.38, 3.2), (0, 1.30, 0), 1330, (WIDTH / 2, HEIGHT * 0.48))
  canvas, _ = _studio(camera, 2.2, furnish)
  bloom(canvas, 415, 330, 300, CYAN, 0.25, squash=0.7)
  look = Look("#C98A62", "#1C1512", "bun", lashes=1.5, build=0.86, lips="#A8504C", phones="#232A32", width=0.98)
  bust(canvas, 792, 300, 1.42, look, Dress("jacket", "#2F5560", "#D5D2CA"), left=True, turn=-4)
  return _finish(canvas)


def male_producer():
  """In the middle, with the microphone before him at the right."""
  def furnish(scene):
    for side in (-1, 1):
      scene.add(loudspeaker(Frame((side * 1.02, 1.04, -0.55), turn=-side * 20, lean=2)))

    scene.add(_display(Frame((-0.46, 1.12, -0.95), turn=6), 0.34, 0.40, 3))
    scene.add(box(Frame((0, 0.96, -0.6)), -1.7, 0, -0.5, 1.7, 0.06, 0.3, Material("#2A2522", 0.3, 10)), nearer=-0.5)

  camera = Camera((0, 1.38, 3.2), (0, 1.30, 0), 1330, (WIDTH / 2, HEIGHT * 0.48))
  canvas, _ = _studio(camera, 2.2, furnish)
  look = Look("#7A4A30", "#15100E", "fade", beard="short", brow=1.5, jaw=1.08, nose=1.5, fullness=1.5, lips="#7C4038",
              phones="#262C33")
  bust(canvas, 616, 300, 1.44, look, Dress("hoodie", "#4A525C"), turn=4)
  bar(canvas, (1216, 330), (905, 470), 17)
  canvas.disc(905, 470, 15, "#20262D")
  canvas.disc(905, 470, 6, "#59636E")
  bar(canvas, (905, 470), (888, 436), 14)
  studio_microphone(canvas, 906, 306, 0.98, turn=8)
  return _finish(canvas)


def female_producer():
  """Right of the middle, before a wall of loudspeakers."""
  def furnish(scene):
    for x, turn in ((-1.05, 24), (-0.62, 16)):
      scene.add(loudspeaker(Frame((x, 1.02, -0.55), turn=turn, lean=2)))

    scene.add(_display(Frame((0.92, 1.10, -0.85), turn=-14), 0.40, 0.44, 2))
    scene.add(box(Frame((0, 0.94, -0.6)), -1.7, 0, -0.5, 1.7, 0.06, 0.3, Material("#2A2522", 0.3, 10)), nearer=-0.5)

  camera = Camera((0, 1.38, 3.2), (0, 1.30, 0), 1330, (WIDTH / 2, HEIGHT * 0.48))
  canvas, _ = _studio(camera, 2.2, furnish)
  look = Look("#6B4029", "#14100E", "afro", lashes=1.5, build=0.84, nose=1.35, fullness=1.7, lips="#8A3A42",
              earring=True, phones="#2A3038")
  bust(canvas, 680, 322, 1.36, look, Dress("turtleneck", "#A4592A"), left=True, turn=-5)
  return _finish(canvas)


PICTURES = (
  Picture("fictional_producer_preview.png", WIDTH, HEIGHT, producer, palette=False),
  Picture("fictional_black_male_producer_preview.png", WIDTH, HEIGHT, male_producer, palette=False),
  Picture("fictional_black_female_producer_preview.png", WIDTH, HEIGHT, female_producer, palette=False),
)
