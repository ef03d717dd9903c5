"""Compiles the sample program: as a Windows executable with a version resource, or as a native one with the name of one."""

import os
import random
import subprocess
import tempfile
from pathlib import Path

HERE = Path(__file__).resolve().parent
WINDOWS_COMPILER = "x86_64-w64-mingw32-gcc"
RESOURCE_COMPILER = "x86_64-w64-mingw32-windres"


def version_numbers(version: str) -> str:
    """The four comma separated numbers of a version resource: "13.1.0" becomes "13,1,0,0"."""
    parts = (version.split(".") + ["0"] * 4)[:4]
    return ",".join(parts)


def _write_header(folder: Path, name: str, version: str) -> None:
    (folder / "sample.h").write_text(
        f'#define SAMPLE_NAME "{name}"\n'
        f'#define SAMPLE_VERSION "{version}"\n'
        f"#define SAMPLE_VERSION_NUMBERS {version_numbers(version)}\n")


def _append_payload(program: Path, size: int) -> None:
    """Brings the program to `size` bytes the way real installers carry their payload: as data behind the image.
    The bytes follow from the file name alone and do not compress."""
    missing = size - program.stat().st_size
    if missing > 0:
        with program.open("ab") as file:
            file.write(random.Random(program.name).randbytes(missing))


def _build(program: Path, name: str, version: str, size: int, command) -> None:
    program.parent.mkdir(parents=True, exist_ok=True)
    with tempfile.TemporaryDirectory() as folder:
        _write_header(Path(folder), name, version)
        command(Path(folder))
    _append_payload(program, size)


def build_windows_program(program: Path, name: str, version: str, size: int = 0) -> None:
    """A PE executable for 64-bit Windows whose product version is `version`, at least `size` bytes long."""
    def compile_in(folder: Path) -> None:
        resource = folder / "version.o"
        subprocess.run([RESOURCE_COMPILER, f"-I{folder}", "-O", "coff", str(HERE / "program.rc"), str(resource)], check=True)
        subprocess.run([WINDOWS_COMPILER, "-Os", "-s", "-mwindows", "-Wl,--no-insert-timestamp", f"-I{folder}",
                        str(HERE / "program.c"), str(resource), "-o", str(program)], check=True)
    _build(program, name, version, size, compile_in)


def build_native_program(program: Path, name: str, version: str, size: int = 0) -> None:
    """An executable of this machine under an ".exe" name, so that "Open" has something to start here. It carries no
    version resource, so that the Hub takes its version as unknown."""
    compiler = os.environ.get("CC") or next((c for c in ("cc", "gcc", "clang-19", "clang") if _exists(c)), "cc")

    def compile_in(folder: Path) -> None:
        subprocess.run([compiler, "-Os", "-s", f"-I{folder}", str(HERE / "program.c"), "-o", str(program)], check=True)
    _build(program, name, version, size, compile_in)


def _exists(command: str) -> bool:
    return any((Path(folder) / command).is_file() for folder in os.environ.get("PATH", "").split(os.pathsep))
