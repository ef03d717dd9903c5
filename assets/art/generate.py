#!/usr/bin/env python3
"""Draws the pictures of the assets folder.

    python3 assets/art/generate.py            all of them
    python3 assets/art/generate.py NAME...    those whose file name, with or without its ending, is given

Every module beside this one that has a tuple PICTURES takes part. The same modules and the same versions of
the tools give the same bytes at every run."""

import importlib
import os
import struct
import subprocess
import sys
import tempfile
import zlib
from pathlib import Path

sys.dont_write_bytecode = True

ART = Path(__file__).resolve().parent
ASSETS = ART.parent
TOOLS = ("generate", "contact_sheet", "check")  # the programs beside the modules that draw


def all_pictures():
  """Every picture of every module, by file name. Two of the same name are an error."""
  pictures = {}

  for module_file in sorted(ART.glob("*.py")):
    if module_file.stem in TOOLS:
      continue

    for picture in getattr(importlib.import_module(module_file.stem), "PICTURES", ()):
      if picture.file_name in pictures:
        raise SystemExit(f"{picture.file_name} is drawn by two modules")

      pictures[picture.file_name] = picture

  return pictures


def chosen(pictures, names):
  """The pictures that are named, in the order of the names; all when none is named."""
  if not names:
    return list(pictures.values())

  by_name = {Path(file_name).stem: picture for file_name, picture in pictures.items()} | pictures
  unknown = [name for name in names if name not in by_name]

  if unknown:
    raise SystemExit(f"no such picture: {', '.join(unknown)}\nthere are: {', '.join(pictures)}")

  return [by_name[name] for name in names]


def run(command, data):
  """Sends bytes through a program and returns what it writes. One thread, because the palette that pngquant
  chooses may depend on how many share the work."""
  try:
    return subprocess.run(command, input=data, stdout=subprocess.PIPE, check=True,
                          env=os.environ | {"OMP_NUM_THREADS": "1"}).stdout
  except FileNotFoundError:
    raise SystemExit(f"{command[0]} is not installed; README.md names the packages") from None
  except subprocess.CalledProcessError as failure:
    raise SystemExit(f"{command[0]} failed with {failure.returncode}") from None


def pixels(png):
  """Width, height and the rows of RGB bytes of a PNG file as rsvg-convert writes it: eight bits, not interlaced.
  Alpha is dropped: what is stored without one covers its whole area."""
  width, height, depth, kind, _, _, interlaced = struct.unpack(">IIBBBBB", png[16:29])

  if depth != 8 or kind not in (2, 6) or interlaced:
    raise SystemExit(f"rsvg-convert wrote a PNG file of an unknown kind: {depth} bits, kind {kind}")

  packed, place = b"", 8

  while place < len(png):
    size, name = struct.unpack(">I4s", png[place:place + 8])
    packed += png[place + 8:place + 8 + size] if name == b"IDAT" else b""
    place += 12 + size

  raw = zlib.decompress(packed)
  step = 3 if kind == 2 else 4
  stride = width * step
  above = bytearray(stride)
  rows = []

  for y in range(height):
    start = y * (stride + 1)
    row = bytearray(raw[start + 1:start + 1 + stride])
    unfilter(raw[start], row, above, step)
    rows.append(b"".join(bytes(row[i:i + 3]) for i in range(0, stride, step)))
    above = row

  return width, height, rows


def unfilter(kind, row, above, step):
  """Undoes the filter of one PNG row of `step` bytes a pixel, in place."""
  for i, value in enumerate(row):
    left = row[i - step] if i >= step else 0
    up = above[i]

    if kind == 1:
      row[i] = (value + left) & 255
    elif kind == 2:
      row[i] = (value + up) & 255
    elif kind == 3:
      row[i] = (value + (left + up) // 2) & 255
    elif kind == 4:
      corner = above[i - step] if i >= step else 0
      guess = left + up - corner
      distances = abs(guess - left), abs(guess - up), abs(guess - corner)
      nearest = (left, up, corner)[distances.index(min(distances))]
      row[i] = (value + nearest) & 255


def as_jpeg(png):
  """A PNG file as a JPEG file."""
  width, height, rows = pixels(png)
  return run(["cjpeg", "-quality", "90", "-sample", "1x1", "-optimize", "-progressive"],
             b"P6 %d %d 255\n" % (width, height) + b"".join(rows))


def squeezed(png):
  """A PNG file with all its colours, packed tighter."""
  with tempfile.TemporaryDirectory() as folder:
    file = Path(folder) / "picture.png"
    file.write_bytes(png)
    run(["optipng", "-quiet", "-o2", "-strip", "all", str(file)], b"")
    return file.read_bytes()


def render(picture):
  """The bytes of the finished file."""
  full = run(["rsvg-convert", "--unlimited", "--format", "png", "--width", str(picture.width), "--height",
              str(picture.height)], picture.draw().svg().encode())

  if picture.file_name.endswith(".jpg"):
    return as_jpeg(full)

  return run(["pngquant", "--speed", "1", "--strip", "256", "-"], full) if picture.palette else squeezed(full)


def main():
  for picture in chosen(all_pictures(), sys.argv[1:]):
    data = render(picture)
    (ASSETS / picture.file_name).write_bytes(data)
    print(f"{picture.file_name}: {picture.width} x {picture.height}, {len(data)} bytes")


if __name__ == "__main__":
  main()
