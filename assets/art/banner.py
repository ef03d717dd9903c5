"""The banner of the library page: the mixer and Stagewell side by side on two displays."""

from brand import draw_mark
from canvas import Canvas, Picture
from palette import COAL, CYAN, ORANGE
from room import Room, bloom
from screens import Display, mixer, stage_view
from solids import BLACK, STEEL, Frame, box, cylinder, plate
from space import Camera, Material, Scene

WIDTH, HEIGHT = 1600, 720
HALF, TALL = 0.535, 0.60


def _monitor(x, turn):
  """A display on its foot, and the surface that is drawn on."""
  frame = Frame((x, 0.155, 0.05), turn=turn, lean=2)
  foot = cylinder((x, 0, -0.06), (x, 0.012, -0.06), 0.17, 0.165, STEEL, count=40, cap=STEEL)
  foot += box(Frame((x, 0, -0.08), turn=turn), -0.035, 0.012, -0.02, 0.035, 0.30, 0.02, STEEL, rim=0.3)
  body = box(frame, -HALF - 0.014, -0.022, -0.035, HALF + 0.014, TALL + 0.014, 0, BLACK, rim=0.8)
  body.append(plate(frame, -0.012, -0.014, 0.012, -0.009, Material(CYAN, glow=1), z=0.002))
  return foot + body, Display(frame, HALF, TALL)


def banner():
  """The whole picture. Its edges end in the colour of the plate that it lies on."""
  canvas = Canvas(WIDTH, HEIGHT)
  camera = Camera((0, 0.62, 2.75), (0, 0.40, 0), 1590, (WIDTH / 2, 350))
  room = Room(canvas, camera)
  room.backdrop(soft=2.5)
  scene = Scene()
  left_body, left = _monitor(-0.575, 8)
  right_body, right = _monitor(0.575, -8)
  mixer(left)
  stage_view(right)
  scene.add(left_body + left.patches)
  scene.add(right_body + right.patches)
  room.shadow(-0.575, -0.05, 0.40, 0.16, 0.8)
  room.shadow(0.575, -0.05, 0.40, 0.16, 0.8)

  for x, colour in ((-0.575, CYAN), (0.575, ORANGE)):
    px, py = camera.place((x, 0.45, -0.1))
    bloom(canvas, px, py, 560, colour, 0.30, squash=0.75)

  room.furnish(scene, image=0.50)
  left.word(canvas, camera, "ZORVA DAW", 0.055, 0.026, 0.034, "#F5F5F5", pen=1.7)
  x, y = camera.place(left.frame.point(*left.at(0.030, 0.043), 0.004))
  draw_mark(canvas, x, y, 0.036 * camera.scale(left.frame.origin), backed=False)
  right.word(canvas, camera, "STAGEWELL", 0.055, 0.026, 0.034, "#F5F5F5", pen=1.7)
  x, y = camera.place(right.frame.point(*right.at(0.030, 0.043), 0.004))
  draw_mark(canvas, x, y, 0.036 * camera.scale(right.frame.origin), backed=False)
  right.word(canvas, camera, "STAGEWELL", 0.477, 0.165, 0.066, "#F5F5F5", pen=1.5, centred=True)

  # The edges, and the foot that the strip of words needs.
  for start, end, stops in (((0, 0), (WIDTH * 0.15, 0), ((0, COAL, 1), (0.25, COAL, 0.85), (1, COAL, 0))),
                            ((WIDTH, 0), (WIDTH * 0.85, 0), ((0, COAL, 1), (0.25, COAL, 0.85), (1, COAL, 0))),
                            ((0, 0), (0, HEIGHT * 0.17), ((0, COAL, 1), (0.2, COAL, 0.8), (1, COAL, 0))),
                            ((0, HEIGHT * 0.79), (0, HEIGHT), ((0, COAL, 0), (0.42, COAL, 0.80), (0.68, COAL, 1),
                                                               (1, COAL, 1)))):
    canvas.cover(canvas.linear(start, end, stops))

  return canvas


PICTURES = (Picture("zorva-daw-stagewell-hub-banner-v1.jpg", WIDTH, HEIGHT, banner),)
