#!/usr/bin/env python3
"""Builds the sample products of the demo and the end-to-end tests.

    build_samples.py FOLDER

makes FOLDER/files (what is downloaded) and FOLDER/products (one description a release, in the form that the catalogue
server reads). Nothing is built again when FOLDER is complete and newer than these sources."""

import json
import shutil
import sys
import tempfile
from pathlib import Path

from archives import sound_pack_entries, write_zip
from programs import HERE, build_native_program, build_windows_program

MEBIBYTE = 1024 * 1024
DONE = "complete"


def describe(product_id, name, version, file, description, category, notes, **more):
    """One product of the catalogue; its platform names a file, and the server adds address, size and hash."""
    product = {
        "id": product_id, "name": name, "vendor": "ZORVA", "version": version, "description": description,
        "category": category, "releaseDate": "2026-07-15", **more,
        "releaseNotes": [{"title": title, "summary": summary} for title, summary in notes],
        "platforms": {"win": {"file": file}},
    }
    return product


def daw(files: Path, version: str, file: str, notes):
    """The main application as a Windows installer: a single executable."""
    build_windows_program(files / file, "ZORVA DAW", version, size=6 * MEBIBYTE)
    return describe("zorva-daw", "ZORVA DAW", version, file,
                    "A complete studio in one installer: record, arrange, and mix with nine instrument modules, eight effects, and "
                    "room for every take.", "DAW", notes)


def stagewell(files: Path, native: bool):
    """An application that comes as an archive with one executable inside: native, or for Windows."""
    version = "2.4.0"
    file = f"ZORVA-Stagewell-{version}{'' if native else '-Windows'}.zip"
    with tempfile.TemporaryDirectory() as folder:
        program = Path(folder) / "ZORVA Stagewell.exe"
        (build_native_program if native else build_windows_program)(program, "ZORVA Stagewell", version, size=2 * MEBIBYTE)
        write_zip(files / file, {
            "Stagewell/Program/ZORVA Stagewell.exe": program.read_bytes(),
            "Stagewell/Read me.txt": b"ZORVA Stagewell, a sample product.\r\n",
            "Stagewell/Scenes/Empty stage.zscene": b'{ "lamps": [] }\n',
        })
    return describe("zorva-stagewell", "ZORVA Stagewell", version, file,
                    "Light and sound cues for small stages, on the second display of the studio: they follow the song, and the song "
                    "follows the band.", "Live",
                    [("Scenes follow the song", "A scene can now follow the markers of a song.")])


def beatpad(files: Path):
    """An application whose installer is a single executable that really starts on this machine."""
    version, file = "1.2.0", "ZORVA-Beatpad-1.2.0.exe"
    build_native_program(files / file, "ZORVA Beatpad", version, size=3 * MEBIBYTE)
    return describe("zorva-beatpad", "ZORVA Beatpad", version, file, "Sixteen pads and a clock.", "Instrument", [])


def foundry_staples(files: Path, version: str):
    """A sound pack."""
    root, file = "FoundryStaples", f"ZORVA-Foundry-Staples-{version}.zip"
    write_zip(files / file, sound_pack_entries(root, version, notes=16))
    return describe("zorva-foundry-staples", "ZORVA Foundry Staples", version, file,
                    "The notes that every first song needs.", "Sound Pack",
                    [("Sixteen notes", "Computed, not recorded, and therefore perfectly in tune.")],
                    installType="factory-content",
                    content={"packId": "zorva-foundry-staples", "archiveRoot": root,
                             "defaultPatch": f"{root}/Patches/Init.zpatch", "licenseFile": f"{root}/LICENSE.txt",
                             "licenseId": "CC0-1.0", "credit": "ZORVA Foundry",
                             "sourceUrl": "https://catalogue.zorva.test/foundry"})


def build(folder: Path) -> None:
    """Builds everything into an empty folder."""
    files, products = folder / "files", folder / "products"
    files.mkdir(parents=True)
    products.mkdir()
    first = [("The Hub keeps your installers", "Reinstall at any time without a network.")]
    second = first + [("Faster mixdown", "Mixing down a song now uses every core of the machine.")]
    releases = {
        "zorva-daw-13.0.0": daw(files, "13.0.0", "ZORVA-DAW-13.0.0.exe", first),
        "zorva-daw-13.1.0": daw(files, "13.1.0", "ZORVA-DAW-Setup-13.1.0.exe", second),
        "zorva-stagewell-2.4.0": stagewell(files, native=True),
        "zorva-stagewell-2.4.0-windows": stagewell(files, native=False),
        "zorva-beatpad-1.2.0": beatpad(files),
        "zorva-foundry-staples-1.0.0": foundry_staples(files, "1.0.0"),
        "zorva-foundry-staples-1.1.0": foundry_staples(files, "1.1.0"),
    }
    for name, product in releases.items():
        (products / f"{name}.json").write_text(json.dumps(product, indent=2) + "\n")
    (folder / DONE).touch()


def is_current(folder: Path) -> bool:
    """True when a whole build is there that is not older than the sources."""
    done = folder / DONE
    if not done.is_file():
        return False
    sources = [path for path in HERE.iterdir() if path.suffix in (".py", ".c", ".rc")]
    return done.stat().st_mtime >= max(path.stat().st_mtime for path in sources)


def main() -> int:
    if len(sys.argv) != 2:
        print(__doc__, file=sys.stderr)
        return 2
    folder = Path(sys.argv[1])
    if is_current(folder):
        return 0
    shutil.rmtree(folder, ignore_errors=True)
    build(folder)
    return 0


if __name__ == "__main__":
    sys.exit(main())
