#!/usr/bin/env python3
"""Draws the pictures of the assets folder.

    python3 assets/art/generate.py            all of them
    python3 assets/art/generate.py NAME...    those whose file name, with or without its ending, is given

Every module beside this one that has a tuple PICTURES takes part. The same modules and the same versions of
rsvg-convert and pngquant give the same bytes at every run."""

import importlib
import os
import subprocess
import sys
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


def render(picture):
  """The bytes of the finished PNG file."""
  full = run(["rsvg-convert", "--format", "png", "--width", str(picture.width), "--height", str(picture.height)],
             picture.draw().svg().encode())
  return run(["pngquant", "--speed", "1", "--strip", "256", "-"], full)


def main():
  for picture in chosen(all_pictures(), sys.argv[1:]):
    data = render(picture)
    (ASSETS / picture.file_name).write_bytes(data)
    print(f"{picture.file_name}: {picture.width} x {picture.height}, {len(data)} bytes")


if __name__ == "__main__":
  main()
