"""The mark, the word and the two pictures made of them.

The mark is a disc, the dial of a studio desk, in two halves that hold each other. The left half stands in the
cyan light and the right one in the orange light; the dark path between them is the Z."""

from math import hypot, sqrt

from canvas import Canvas, Picture, num, polygon_path
from palette import CYAN, CYAN_DEEP, CYAN_HOT, NIGHT, ORANGE, ORANGE_DEEP, ORANGE_HOT, WHITE

# The mark lies around the origin in units of a sixteenth of its diameter, so that at 16, 32 and 48 pixels the
# bars of the Z fall on whole pixel rows: bar and gap between the bars are 2, 4, 2 rows high.
MARK_RADIUS = 8
BAR_MIDDLE = 3
BAR_HEIGHT = 2
RIM = 0.25  # what a backed mark shows of its dark disc around the halves
DIAGONAL_REACH = 2.45  # how far the middle line of the diagonal leans out at the middle of the bars

# The word is 13 units high and its strokes are 3 units thick.
CAP_HEIGHT = 13


def _half_disc(radius):
  """The path of the upper right half of the disc; the lower left one is its half turn."""
  top = -BAR_MIDDLE - BAR_HEIGHT / 2
  bottom = BAR_MIDDLE - BAR_HEIGHT / 2
  length = hypot(BAR_MIDDLE, DIAGONAL_REACH)

  def diagonal_edge(y):
    return (BAR_HEIGHT / 2 * length - y * DIAGONAL_REACH) / BAR_MIDDLE

  def rim(y):
    return sqrt(radius * radius - y * y)

  return (f"M{num(-rim(top))} {num(top)}L{num(diagonal_edge(top))} {num(top)}"
          f"L{num(diagonal_edge(bottom))} {num(bottom)}L{num(rim(bottom))} {num(bottom)}"
          f"A{num(radius)} {num(radius)} 0 0 0 {num(-rim(top))} {num(top)}Z")


def draw_mark(canvas, x, y, diameter, backed):
  """Draws the mark around (x, y). When `backed`, the Z is dark whatever lies behind; otherwise it is open."""
  with canvas.at(x, y, diameter / (2 * MARK_RADIUS)):
    radius = MARK_RADIUS

    if backed:
      canvas.disc(0, 0, MARK_RADIUS, NIGHT)
      radius -= RIM

    # Both halves are painted by the same path: a half turn makes the light come from the other side.
    for turn, hot, colour, deep in ((1, ORANGE_HOT, ORANGE, ORANGE_DEEP), (-1, CYAN_HOT, CYAN, CYAN_DEEP)):
      light = canvas.linear((MARK_RADIUS, 0), (-MARK_RADIUS, 0), ((0, hot), (0.3, colour), (1, deep)))

      with canvas.at(0, 0, turn):
        canvas.path(_half_disc(radius), light)


def _letter_z():
  return polygon_path(((0, 0), (13, 0), (13, 2.8), (4.6, 10), (13, 10), (13, 13), (0, 13), (0, 10.2), (8.4, 3),
                       (0, 3)))


def _letter_o():
  return ("M0 6.5A7.5 6.7 0 0 1 15 6.5A7.5 6.7 0 0 1 0 6.5Z"
          "M3.1 6.5A4.4 3.8 0 0 0 11.9 6.5A4.4 3.8 0 0 0 3.1 6.5Z")


def _letter_r():
  return ("M0 0H8.3A4.4 4.4 0 0 1 9.6 8.6L13.2 13H9.5L6.4 8.8H3V13H0Z"
          "M3 3V5.8H8.2A1.4 1.4 0 0 0 8.2 3Z")


def _letter_v():
  return polygon_path(((0, 0), (3.4, 0), (7.5, 9.2), (11.6, 0), (15, 0), (9.2, 13), (5.8, 13)))


def _letter_a():
  legs = ((0, 13), (5.8, 0), (9.2, 0), (15, 13), (11.6, 13), (10.5, 10.6), (4.5, 10.6), (3.4, 13))
  counter = ((7.5, 3.8), (9.37, 8), (5.63, 8))
  return polygon_path(legs) + polygon_path(counter)


# Each letter with the place of its left edge; the gaps are set by eye.
WORD = ((0, _letter_z), (17, _letter_o), (36, _letter_r), (51, _letter_v), (65, _letter_a))
WORD_WIDTH = 80


def draw_word(canvas, x, y, cap_height, paint):
  """Writes ZORVA with the middle of its top edge at (x, y)."""
  scale = cap_height / CAP_HEIGHT

  with canvas.at(x - WORD_WIDTH * scale / 2, y, scale):
    for left, letter in WORD:
      with canvas.at(left, 0):
        canvas.path(letter(), paint, even_odd=True)


def _splash_logo():
  # 96 x 60 units: at the head of the sidebar, where the picture is smallest, a unit is a pixel. Bars, stems and
  # lines of letters lie on whole units to be sharp there.
  canvas = Canvas(96, 60)
  draw_mark(canvas, 48, 20, 40, backed=False)
  draw_word(canvas, 48, 46, 13, WHITE)
  return canvas


def _app_icon():
  canvas = Canvas(16, 16)
  draw_mark(canvas, 8, 8, 16, backed=True)
  return canvas


PICTURES = (
  Picture("ZorvaSplashLogo.png", 768, 480, _splash_logo),
  Picture("ZorvaAppIcon.png", 512, 512, _app_icon),
)
