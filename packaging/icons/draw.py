#!/usr/bin/env python3
"""Draws the program's icon in the sizes of a desktop's icon theme.

    python3 packaging/icons/draw.py            writes 16.png to 256.png beside this file
    python3 packaging/icons/draw.py --check    draws them again and fails when a kept file differs

The drawing is that of assets/art, rendered anew for each size, because a scaled one is not sharp at 16 pixels. The
largest size, 512, is assets/ZorvaAppIcon.png itself. Needs what assets/art/README.md names."""

import sys
from dataclasses import replace
from pathlib import Path

sys.dont_write_bytecode = True

HERE = Path(__file__).resolve().parent
SIZES = (16, 22, 24, 32, 48, 64, 128, 256)

sys.path.insert(0, str(HERE.parents[1] / "assets" / "art"))

from generate import all_pictures, render  # noqa: E402


def main():
  icon = all_pictures()["ZorvaAppIcon.png"]
  check = sys.argv[1:] == ["--check"]
  differing = 0

  for size in SIZES:
    file = HERE / f"{size}.png"
    # All colours: in a palette the soft edge of a small disc shows.
    drawn = render(replace(icon, file_name=file.name, width=size, height=size, palette=False))

    if not check:
      file.write_bytes(drawn)
      print(f"{file.name}: {len(drawn)} bytes")
    elif not file.is_file() or file.read_bytes() != drawn:
      differing += 1
      print(f"DIFFERENT  {file.name}")

  return 1 if differing else 0


if __name__ == "__main__":
  sys.exit(main())
