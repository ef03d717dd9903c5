"""Small words on the things that are shown, drawn with a pen of even width, so that no font takes part."""

from canvas import num

# Each letter on a cap height of 10: its breadth and the path of the pen.
PEN = {
  "A": (8, "M0 10L4 0L8 10M1.4 6.8H6.6"), "D": (7.4, "M0 0V10H3A5 5 0 0 0 3 0Z"), "E": (6, "M6 0H0V10H6M0 5H5"),
  "G": (8.4, "M7.9 2.2A4.7 5 0 1 0 8.2 6.6V5.4H4.8"), "I": (0.2, "M0 0V10"), "L": (5.6, "M0 0V10H5.6"),
  "M": (8.4, "M0 10V0L4.2 6.2L8.4 0V10"), "O": (9, "M4.5 0A4.5 5 0 0 1 4.5 10A4.5 5 0 0 1 4.5 0Z"),
  "R": (6.8, "M0 10V0H4A2.8 2.8 0 0 1 4 5.6H0M3.6 5.6L6.8 10"),
  "S": (6.6, "M6.2 1.9C5.4 -0.6 0.6 -0.6 0.6 2.5C0.6 5.6 6.6 4.3 6.6 7.4C6.6 10.7 1 10.7 0.1 7.9"),
  "T": (7, "M0 0H7M3.5 0V10"), "V": (8, "M0 0L4 10L8 0"), "W": (11, "M0 0L2.8 10L5.5 1.6L8.2 10L11 0"),
  "X": (7, "M0 0L7 10M7 0L0 10"), "Z": (7, "M0 0H7L0 10H7"), " ": (3, ""),
}
GAP = 3.0


def width_of(word):
  """How broad a word is at a cap height of 10."""
  return sum(PEN[letter][0] + GAP for letter in word) - GAP


def write(canvas, word, paint, pen=1.5):
  """Writes a word at a cap height of 10 with its top left corner at the origin."""
  x = 0

  for letter in word:
    breadth, path = PEN[letter]

    if path:
      with canvas.group(transform=f"translate({num(x)} 0)"):
        canvas.stroke(path, paint, pen)

    x += breadth + GAP
