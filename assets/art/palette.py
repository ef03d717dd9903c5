"""The colours of the studio: its two lights, its dark, and the arithmetic of mixing them.

A colour is written as `#RRGGBB`; where it is calculated with, it is a tuple of three numbers from 0 to 1."""

# The two lights, each from its source (hot) over its colour to where it falls off (deep).
CYAN_HOT, CYAN, CYAN_DEEP = "#52E2FF", "#00D4FF", "#0079BD"
ORANGE_HOT, ORANGE, ORANGE_DEEP = "#FF9340", "#F97316", "#BE3F0C"

# The room that they light, and what is written in it.
NIGHT = "#12161B"
COAL = "#080B0F"
WHITE = "#F5F5F5"


def to_rgb(colour):
  """The three parts, 0 to 1, of a written colour."""
  return tuple(int(colour[i:i + 2], 16) / 255 for i in (1, 3, 5))


def to_hex(rgb):
  """The written form of three parts; what lies outside 0 to 1 is cut."""
  return "#" + "".join(f"{round(min(max(part, 0), 1) * 255):02X}" for part in rgb)


def mix(first, second, amount):
  """The colour that lies `amount` (0 to 1) of the way from the first to the second."""
  return to_hex(a + (b - a) * amount for a, b in zip(to_rgb(first), to_rgb(second)))


def add(colour, light, amount):
  """A colour with `amount` of a light screened over it, as light adds to what it falls on."""
  return to_hex(1 - (1 - a) * (1 - b * amount) for a, b in zip(to_rgb(colour), to_rgb(light)))


def between(amount):
  """The light `amount` (0 to 1) of the way from the cyan lamp to the orange one; where both meet it is pale."""
  pale = "#F3E8DA"
  return mix(CYAN, pale, amount * 2) if amount < 0.5 else mix(pale, ORANGE, amount * 2 - 1)
