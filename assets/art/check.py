#!/usr/bin/env python3
"""Draws every picture again and compares it, byte for byte, with the one that is kept.

    python3 assets/art/check.py

Says which pictures differ and ends with 1 when one does. Another version of a tool may write other bytes for the same
picture: README.md names the versions that the kept ones come from."""

import hashlib
import sys

sys.dont_write_bytecode = True

from generate import ASSETS, all_pictures, render  # noqa: E402


def fingerprint(data):
  """The SHA-256 of some bytes."""
  return hashlib.sha256(data).hexdigest()


def main():
  differing = 0

  for name, picture in sorted(all_pictures().items()):
    drawn = fingerprint(render(picture))
    file = ASSETS / name
    kept = fingerprint(file.read_bytes()) if file.exists() else "missing"
    differing += drawn != kept
    print(f"{'same' if drawn == kept else 'DIFFERENT'}  {name}  {drawn[:16]}")

  print(f"{differing} differ")
  return 1 if differing else 0


if __name__ == "__main__":
  sys.exit(main())
