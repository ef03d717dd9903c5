#!/usr/bin/env python3
"""Puts all pictures on one sheet, each with its file name, to be looked at together.

    python3 assets/art/contact_sheet.py [FILE]     (docs/screenshots/contact-sheet.png when no file is named)"""

import base64
import sys
from pathlib import Path

sys.dont_write_bytecode = True

from canvas import num  # noqa: E402
from generate import ASSETS, all_pictures, run  # noqa: E402

COLUMNS, CELL, GAP = 4, 400, 20
CAPTION = 26


def _cell(picture, x, y):
  data = (ASSETS / picture.file_name).read_bytes()
  kind = "jpeg" if picture.file_name.endswith(".jpg") else "png"
  scale = min(CELL / picture.width, CELL * 0.667 / picture.height)
  width, height = picture.width * scale, picture.height * scale
  box_height = CELL * 0.667
  return (f'<rect x="{x}" y="{y}" width="{CELL}" height="{num(box_height)}" fill="#393939"/>'
          f'<image x="{num(x + (CELL - width) / 2)}" y="{num(y + (box_height - height) / 2)}" width="{num(width)}" '
          f'height="{num(height)}" href="data:image/{kind};base64,{base64.b64encode(data).decode()}"/>'
          f'<text x="{x}" y="{num(y + box_height + 18)}" font-family="DejaVu Sans" font-size="13" '
          f'fill="#C8CDD2">{picture.file_name}</text>')


def sheet(pictures):
  """The sheet as SVG text."""
  pitch = CELL * 2 // 3 + CAPTION + GAP
  rows = -(-len(pictures) // COLUMNS)
  width, height = COLUMNS * (CELL + GAP) + GAP, rows * pitch + GAP
  cells = "".join(_cell(picture, GAP + i % COLUMNS * (CELL + GAP), GAP + i // COLUMNS * pitch)
                  for i, picture in enumerate(pictures))
  return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}">'
          f'<rect width="{width}" height="{height}" fill="#262626"/>{cells}</svg>')


def main():
  target = Path(sys.argv[1]) if len(sys.argv) > 1 else ASSETS.parent / "docs" / "screenshots" / "contact-sheet.png"
  pictures = [picture for picture in all_pictures().values() if (ASSETS / picture.file_name).exists()]
  full = run(["rsvg-convert", "--unlimited", "--format", "png"], sheet(pictures).encode())
  target.write_bytes(run(["pngquant", "--speed", "1", "--strip", "256", "-"], full))
  total = sum((ASSETS / picture.file_name).stat().st_size for picture in pictures)
  print(f"{target.name}: {len(pictures)} pictures of {total} bytes")


if __name__ == "__main__":
  main()
