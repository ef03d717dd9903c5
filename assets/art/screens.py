"""What is on the displays of the banner: the mixer of the DAW and the stage view of Stagewell."""

from math import cos, pi, sin

from lettering import width_of, write
from palette import CYAN, ORANGE, between, mix
from solids import plate, shape
from space import Material, Outline

GROUND, PANEL, RAISED, LINE = "#10151B", "#1A2129", "#27303A", "#3A4550"


class Display:
  """A flat display in space. Its own places run from (0, 0) at the top left to (1, 1) at the bottom right."""

  def __init__(self, frame, half, height):
    self.frame, self.half, self.height = frame, half, height
    self.patches = []

  def at(self, x, y):
    """The place on the frame's front."""
    return -self.half + 2 * self.half * x, self.height * (1 - y)

  def rect(self, x, y, width, height, colour):
    """A filled rectangle."""
    left, top = self.at(x, y)
    right, bottom = self.at(x + width, y + height)
    self.patches.append(plate(self.frame, left, bottom, right, top, Material(colour, glow=1), z=0.003))

  def line(self, points, colour, width, opacity=1.0):
    """A line of light."""
    self.patches.append(Outline([self.frame.point(*self.at(x, y), 0.004) for x, y in points], colour, opacity, width,
                                False))

  def ring(self, x, y, radius, colour, width, start=0.0, end=1.0):
    """A part of a circle, clockwise from the top; `radius` is in widths of the display."""
    stretch = 2 * self.half / self.height
    points = [(x + radius * sin(2 * pi * (start + (end - start) * k / 40)),
               y - radius * stretch * cos(2 * pi * (start + (end - start) * k / 40))) for k in range(41)]
    self.line(points, colour, width)

  def disc(self, x, y, radius, colour):
    """A filled circle."""
    cx, cy = self.at(x, y)
    size = radius * 2 * self.half
    outline = [(cx + size * cos(2 * pi * k / 28), cy + size * sin(2 * pi * k / 28)) for k in range(28)]
    self.patches.append(shape(self.frame, outline, Material(colour, glow=1), z=0.004))

  def word(self, canvas, camera, text, x, y, size, paint, pen=1.5, centred=False):
    """A word with the cap height `size` (in heights of the display), written straight onto the canvas."""
    scale = size * self.height / 10
    left, top = self.at(x, y)

    if centred:
      left -= width_of(text) * scale / 2

    o, a, b = (camera.place(self.frame.point(px, py, 0.004)) for px, py in
               ((left, top), (left + scale, top), (left, top - scale)))
    matrix = " ".join(f"{v:.5f}" for v in (a[0] - o[0], a[1] - o[1], b[0] - o[0], b[1] - o[1], o[0], o[1]))

    with canvas.group(transform=f"matrix({matrix})"):
      write(canvas, text, paint, pen)


def _bar(display):
  display.rect(0, 0, 1, 1, GROUND)
  display.rect(0, 0, 1, 0.085, PANEL)

  for i, colour in enumerate((CYAN, "#5A6672", ORANGE)):
    display.disc(0.46 + i * 0.034, 0.043, 0.0085, colour)


def mixer(display):
  """Twelve channels with their faders and meters, and the master."""
  _bar(display)
  display.rect(0.60, 0.022, 0.15, 0.042, "#05222C")

  for i in range(22):
    level = 0.006 + 0.026 * abs(sin(i * 0.8) * cos(i * 0.23))
    display.rect(0.606 + i * 0.0064, 0.058 - level, 0.0036, level, CYAN)

  levels = (0.62, 0.78, 0.55, 0.86, 0.47, 0.70, 0.64, 0.90, 0.52, 0.73, 0.40, 0.66)
  faders = (0.42, 0.30, 0.48, 0.24, 0.56, 0.38, 0.44, 0.22, 0.50, 0.34, 0.60, 0.40)
  pitch = 0.069

  for i in range(12):
    x = 0.012 + i * pitch
    colour = between(i / 11)
    display.rect(x, 0.105, pitch - 0.007, 0.875, PANEL)
    display.rect(x, 0.105, pitch - 0.007, 0.020, colour)

    for k in range(3):
      y = 0.150 + k * 0.038
      display.rect(x + 0.006, y, pitch - 0.019, 0.024, RAISED)

      if (i + k) % 3:
        display.rect(x + 0.006, y, (pitch - 0.019) * (0.35 + 0.2 * ((i * 2 + k) % 4)), 0.024, mix(colour, RAISED, 0.55))

    for k, y in enumerate((0.300, 0.370)):
      cx = x + (pitch - 0.007) / 2
      display.disc(cx, y, 0.0125, RAISED)
      display.ring(cx, y, 0.0145, LINE, 0.0045, -0.36, 0.36)
      display.ring(cx, y, 0.0145, colour if k else "#C9D3DB", 0.0045, -0.36,
                   -0.36 + 0.72 * (0.25 + 0.13 * ((i * 5 + k * 3) % 6)))

    # The fader in its slot, and the meter beside it.
    low, high = 0.900, 0.430
    display.rect(x + 0.018, high, 0.0035, low - high, "#07090C")
    y = high + (low - high) * faders[i]
    display.rect(x + 0.0075, y - 0.020, 0.0245, 0.040, "#9DA8B2")
    display.rect(x + 0.0075, y - 0.003, 0.0245, 0.006, "#10151B")
    steps = 26

    for k in range(steps):
      share = k / (steps - 1)
      lit = share < levels[i]
      tone = (CYAN if share < 0.62 else mix(CYAN, "#F3E8DA",
                                            (share - 0.62) / 0.16) if share < 0.78 else ORANGE) if lit else "#1F2831"
      for side in (0, 1):
        if side and lit and share > levels[i] - 0.05:
          tone = "#1F2831"
        display.rect(x + 0.040 + side * 0.009, low - (low - high) * (k + 0.86) / steps, 0.007,
                     (low - high) / steps * 0.66, tone)

    half = (pitch - 0.019) / 2

    for side, on, colour in ((0, i in (4, 10), ORANGE), (1, i in (1, 7), CYAN)):
      tone = mix(colour, PANEL, 0.25) if on else RAISED
      display.rect(x + 0.006 + side * (half + 0.002), 0.922, half - 0.002, 0.034, tone)

  x = 0.012 + 12 * pitch + 0.006
  display.rect(x, 0.105, 1 - x - 0.012, 0.875, RAISED)
  display.rect(x, 0.105, 1 - x - 0.012, 0.020, "#F3E8DA")
  display.ring(x + 0.070, 0.235, 0.040, LINE, 0.010, -0.36, 0.36)
  display.ring(x + 0.070, 0.235, 0.040, CYAN, 0.010, -0.36, 0.20)

  for side in (0, 1):
    for k in range(34):
      share = k / 33
      tone = ("#1F2831" if share > 0.80 - side * 0.04 else CYAN if share < 0.6 else mix(CYAN, "#F3E8DA",
                                                                                        (share - 0.6) / 0.14)
              if share < 0.74 else ORANGE)
      display.rect(x + 0.072 + side * 0.026, 0.940 - 0.56 * (k + 0.8) / 34, 0.020, 0.0112, tone)

  display.rect(x + 0.030, 0.380, 0.006, 0.56, "#07090C")
  display.rect(x + 0.014, 0.470, 0.038, 0.056, "#C9D3DB")
  display.rect(x + 0.014, 0.494, 0.038, 0.008, "#10151B")


def stage_view(display):
  """The set at the left, the song that is on in the middle, pads and levels at the right, the timeline below."""
  _bar(display)
  display.rect(0.012, 0.105, 0.215, 0.875, PANEL)

  for i in range(9):
    y = 0.125 + i * 0.094
    on = i == 2
    display.rect(0.022, y, 0.195, 0.080, mix(ORANGE, PANEL, 0.12) if on else RAISED)
    ink = "#1B120A" if on else "#77838F"
    display.rect(0.034, y + 0.020, 0.060 + 0.016 * ((i * 5) % 6), 0.014, ink)
    display.rect(0.034, y + 0.048, 0.040 + 0.010 * ((i * 3) % 5), 0.010, mix(ink, PANEL, 0.3))
    display.disc(0.200, y + 0.040, 0.006, "#FFFFFF" if on else between(i / 8))

  display.rect(0.240, 0.105, 0.475, 0.500, PANEL)
  display.ring(0.477, 0.435, 0.088, LINE, 0.014)
  display.ring(0.477, 0.435, 0.088, ORANGE, 0.014, 0.0, 0.64)
  display.ring(0.477, 0.435, 0.070, mix(CYAN, PANEL, 0.45), 0.004)

  for i in range(4):
    display.disc(0.444 + i * 0.022, 0.435, 0.0085 if i else 0.011, CYAN if i == 0 else LINE)

  for side in (-1, 1):
    for i in range(9):
      reach = 0.03 + 0.075 * abs(sin(i * 0.9 + 0.5 + side))
      x = 0.477 + side * 0.115 if side > 0 else 0.477 - 0.115 - reach
      display.rect(x, 0.335 + i * 0.0225, reach, 0.010, between(0.5 + side * (0.15 + 0.04 * i)))

  for row in range(4):
    for i in range(4):
      lit = (row * 3 + i * 5) % 7
      colour = mix(between(((row * 4 + i) % 8) / 7), PANEL, 0.15) if lit in (0, 2, 5) else RAISED
      display.rect(0.730 + i * 0.065, 0.110 + row * 0.124, 0.058, 0.108, colour)

  display.rect(0.240, 0.625, 0.748, 0.355, PANEL)

  for track in range(4):
    y = 0.650 + track * 0.080
    x = 0.252

    for k in range(7):
      length = 0.055 + 0.030 * ((track * 3 + k * 2) % 4)

      if (track + k * 3) % 4 and x + length < 0.98:
        tone = between(track / 3)
        display.rect(x, y, length, 0.062, mix(tone, PANEL, 0.45))
        count = int(length / 0.005)

        for j in range(count):
          height = 0.008 + 0.040 * abs(sin(j * 1.7 + k + track) * cos(j * 0.5 + k))
          display.rect(x + 0.003 + j * 0.0048, y + 0.031 - height / 2, 0.0022, height, mix(tone, "#FFFFFF", 0.25))

      x += length + 0.008

  display.line([(0.560, 0.632), (0.560, 0.972)], "#FFFFFF", 0.004)
