#!/usr/bin/env python3
"""Takes a picture of every page, state and message box of the Hub, as a person meets them.

    screenshots.py FOLDER [SCENE...]     every scene, or only those named, such as community, wizard, library, keys

The release build runs in a private world with a catalogue server, a secret store and a stand-in for the AI service, and is driven by
mouse and keyboard as in tests/e2e. Pages are taken at three sizes of the window, as NAME-WIDTHxHEIGHT.png; HUB_BINARY names another
program. One that ends in .exe runs under Wine, without the scene that needs what only Linux has. The scenes are in scenes/.
docs/screenshots is a choice of these, made small by pngquant."""

import os
import subprocess
import sys
import tempfile
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[1]
TOOLS = PROJECT / "tools"
BINARY = Path(os.environ.get("HUB_BINARY", PROJECT / "build/release/ZorvaHub_artefacts/Release/ZORVA Hub")).resolve()
sys.path[:0] = [str(PROJECT / "tests" / "e2e"), str(TOOLS / "catalogue-server"), str(TOOLS / "broker-client")]

from lib import hubs  # noqa: E402
from lib.screen import Screen  # noqa: E402
from lib.shop import HOST  # noqa: E402
from lib.stage import SCREEN_SIZE, Stage  # noqa: E402
from scenes.community import community, community_boxes  # noqa: E402
from scenes.library import library, library_boxes, offline  # noqa: E402
from scenes.settings import about, keys, no_store  # noqa: E402
from scenes.wizard import recovery, wizard  # noqa: E402

ON_WINDOWS = hubs.is_for_windows(BINARY)
PREPARED = PROJECT / "build" / ("e2e-windows" if ON_WINDOWS else "e2e")
HOME = Path("/var/tmp/home/creator")        # of the world; the status bar shows it
SCENES = (community, community_boxes, wizard, recovery, offline, library, library_boxes, keys, no_store, about)
LINUX_ONLY = (no_store,)                    # every Windows has a secret store


def enter(*arguments) -> int:
    """Prepares what the scenes need and runs this script again inside the private world."""
    kind = ["--windows"] if ON_WINDOWS else []
    subprocess.run([sys.executable, TOOLS / "samples" / "build_samples.py", *kind, PREPARED / "samples"], check=True)
    subprocess.run([TOOLS / "catalogue-server" / "make-certs.sh", PREPARED / "certificates", HOST, "api.openai.com"], check=True)
    left_out = ("DISPLAY", "XAUTHORITY", "WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "LD_PRELOAD")
    environment = {name: value for name, value in os.environ.items() if name not in left_out}
    with tempfile.TemporaryDirectory() as scratch:
        world = [TOOLS / "world" / "run-in-world.sh", "--home", f"{scratch}/home", "--ca", PREPARED / "certificates" / "ca.pem",
                 "--host", HOST, "--host", "api.openai.com=127.0.0.2", "--"]
        return subprocess.run([*world, sys.executable, __file__, "--inside", scratch, *arguments],
                              env=environment | {"PYTHONDONTWRITEBYTECODE": "1", "LC_ALL": "C.UTF-8"}, check=False).returncode


def take(scratch: Path, folder: Path, names) -> int:
    """Plays the scenes; one that fails does not keep the others from being played."""
    hubs.prepare(BINARY, scratch)
    screen, failed = Screen(SCREEN_SIZE), 0
    for scene in SCENES:
        if (names and scene.__name__ not in names) or (ON_WINDOWS and scene in LINUX_ONLY):
            continue
        home = scratch / f"home-{scene.__name__}" if ON_WINDOWS else HOME
        stage = Stage(screen, BINARY, PREPARED, scratch / scene.__name__, home, folder)
        try:
            scene(stage)
            print(f"{scene.__name__}: taken", flush=True)
        except AssertionError as error:
            failed += 1
            screen.picture().save(folder / f"failed-{scene.__name__}.png")
            print(f"{scene.__name__}: {error}", file=sys.stderr, flush=True)
        finally:
            stage.close()
    screen.stop()
    return 1 if failed else 0


def main() -> int:
    arguments = sys.argv[1:]
    if arguments[:1] == ["--inside"]:
        return take(Path(arguments[1]), Path(arguments[2]), arguments[3:])
    if not arguments or arguments[0].startswith("-"):
        print(__doc__, file=sys.stderr)
        return 2
    if not BINARY.is_file():
        print(f"screenshots.py: there is no program {BINARY}", file=sys.stderr)
        return 2
    folder = Path(arguments[0]).resolve()
    folder.mkdir(parents=True, exist_ok=True)
    return enter(folder, *arguments[1:])


if __name__ == "__main__":
    sys.exit(main())
