#!/usr/bin/env python3
"""Builds the sample products of the demo and the end-to-end tests.

    build_samples.py [--windows] FOLDER

makes FOLDER/files (what is downloaded) and FOLDER/products (one description a release, in the form that the catalogue
server reads). With --windows every program is one for Windows, also those that would else start on this machine.
Nothing is built again when FOLDER is complete and newer than these sources."""

import argparse
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


def stagewell(files: Path, build_program, suffix: str = ""):
    """An application that comes as an archive with one executable inside."""
    version = "2.4.0"
    file = f"ZORVA-Stagewell-{version}{suffix}.zip"
    with tempfile.TemporaryDirectory() as folder:
        program = Path(folder) / "ZORVA Stagewell.exe"
        build_program(program, "ZORVA Stagewell", version, size=2 * MEBIBYTE)
        write_zip(files / file, {
            "Stagewell/Program/ZORVA Stagewell.exe": program.read_bytes(),
            "Stagewell/Read me.txt": b"ZORVA Stagewell, a sample product.\r\n",
            "Stagewell/Scenes/Empty stage.zscene": b'{ "lamps": [] }\n',
        })
    return describe("zorva-stagewell", "ZORVA Stagewell", version, file,
                    "Light and sound cues for small stages, on the second display of the studio: they follow the song, and the song "
                    "follows the band.", "Live",
                    [("Scenes follow the song", "A scene can now follow the markers of a song.")])


def beatpad(files: Path, build_program):
    """An application whose installer is a single executable that really starts."""
    version, file = "1.2.0", "ZORVA-Beatpad-1.2.0.exe"
    build_program(files / file, "ZORVA Beatpad", version, size=3 * MEBIBYTE)
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


def build(folder: Path, for_windows: bool) -> None:
    """Builds everything into an empty folder."""
    build_program = build_windows_program if for_windows else build_native_program
    files, products = folder / "files", folder / "products"
    files.mkdir(parents=True)
    products.mkdir()
    first = [("The Hub keeps your installers", "Reinstall at any time without a network.")]
    second = first + [("Faster mixdown", "Mixing down a song now uses every core of the machine.")]
    releases = {
        "zorva-daw-13.0.0": daw(files, "13.0.0", "ZORVA-DAW-13.0.0.exe", first),
        "zorva-daw-13.1.0": daw(files, "13.1.0", "ZORVA-DAW-Setup-13.1.0.exe", second),
        "zorva-stagewell-2.4.0": stagewell(files, build_program),
        "zorva-stagewell-2.4.0-windows": stagewell(files, build_windows_program, "-Windows"),
        "zorva-beatpad-1.2.0": beatpad(files, build_program),
        "zorva-foundry-staples-1.0.0": foundry_staples(files, "1.0.0"),
        "zorva-foundry-staples-1.1.0": foundry_staples(files, "1.1.0"),
    }
    for name, product in releases.items():
        (products / f"{name}.json").write_text(json.dumps(product, indent=2) + "\n")
    (folder / DONE).write_text(kind(for_windows))


def kind(for_windows: bool) -> str:
    """What a complete folder says about its programs."""
    return "programs for Windows\n" if for_windows else "programs for this machine\n"


def is_current(folder: Path, for_windows: bool) -> bool:
    """True when a whole build of this kind is there that is not older than the sources."""
    done = folder / DONE
    if not done.is_file() or done.read_text() != kind(for_windows):
        return False
    sources = [path for path in HERE.iterdir() if path.suffix in (".py", ".c", ".rc")]
    return done.stat().st_mtime >= max(path.stat().st_mtime for path in sources)


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--windows", action="store_true")
    parser.add_argument("folder", type=Path)
    options = parser.parse_args()
    if not is_current(options.folder, options.windows):
        shutil.rmtree(options.folder, ignore_errors=True)
        build(options.folder, options.windows)
    return 0


if __name__ == "__main__":
    sys.exit(main())
