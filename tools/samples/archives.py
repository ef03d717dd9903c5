"""The archives among the sample products. Entry times and order are fixed, so that the same input gives the same bytes."""

import array
import functools
import json
import math
import sys
import wave
import zipfile
from io import BytesIO
from pathlib import Path

ENTRY_TIME = (2026, 1, 1, 0, 0, 0)
SAMPLE_RATE = 44100


def write_zip(archive: Path, entries: dict, stored=(".wav", ".exe")) -> None:
    """Writes entries (a name inside the archive to its bytes) in the given order. Suffixes in `stored` are not compressed."""
    archive.parent.mkdir(parents=True, exist_ok=True)
    with zipfile.ZipFile(archive, "w") as file:
        for name, content in entries.items():
            info = zipfile.ZipInfo(name, ENTRY_TIME)
            info.external_attr = 0o644 << 16
            info.compress_type = zipfile.ZIP_STORED if name.lower().endswith(stored) else zipfile.ZIP_DEFLATED
            file.writestr(info, content)


@functools.cache
def plucked_note(frequency: float, seconds: float = 1.5) -> bytes:
    """A WAV file, 16-bit mono: a decaying note of three partials."""
    samples = array.array("h")
    for index in range(int(SAMPLE_RATE * seconds)):
        time = index / SAMPLE_RATE
        value = sum(math.sin(2 * math.pi * frequency * partial * time) * math.exp(-2.5 * partial * time) / partial
                    for partial in (1, 2, 3))
        samples.append(int(12000 * value))
    if sys.byteorder == "big":
        samples.byteswap()
    out = BytesIO()
    with wave.open(out, "wb") as file:
        file.setnchannels(1)
        file.setsampwidth(2)
        file.setframerate(SAMPLE_RATE)
        file.writeframes(samples.tobytes())
    return out.getvalue()


def sound_pack_entries(root: str, version: str, notes: int) -> dict:
    """The tree of a sound pack below one directory: a patch, a licence document and some notes from A2 upwards.
    It also brings a manifest.json of its own at the top, which the Hub must not believe."""
    files = [f"Samples/note-{number:02d}.wav" for number in range(notes)]
    patch = {"instrument": root, "version": version, "keys": {str(45 + n): f for n, f in enumerate(files)}}
    entries = {
        f"{root}/Patches/Init.zpatch": json.dumps(patch, indent=2).encode(),
        f"{root}/LICENSE.txt": b"These sounds were computed for the sample catalogue. Use them as you like.\n",
        "manifest.json": b'{ "schema": 1, "packId": "somebody-else" }\n',
    }
    for number, name in enumerate(files):
        entries[f"{root}/{name}"] = plucked_note(110.0 * 2 ** (number / 12))
    return entries
