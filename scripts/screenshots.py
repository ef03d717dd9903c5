#!/usr/bin/env python3
"""Takes a picture of every page, state and message box of the Hub, as a person meets them.

    screenshots.py FOLDER [SCENE...]     every scene, or only those named, such as community, wizard, library, keys

The release build runs in a private world with a catalogue server, a secret store and a stand-in for the AI service, and is driven by
mouse and keyboard as in tests/e2e. Pages are taken at three sizes of the window, as NAME-WIDTHxHEIGHT.png; HUB_BINARY names another
program. One that ends in .exe runs under Wine, without the scenes that need what only Linux has.
docs/screenshots is a choice of these, made small by pngquant."""

import io
import json
import os
import shutil
import subprocess
import sys
import tempfile
import wave
import zipfile
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[1]
TOOLS = PROJECT / "tools"
BINARY = Path(os.environ.get("HUB_BINARY", PROJECT / "build/release/ZorvaHub_artefacts/Release/ZORVA Hub")).resolve()
sys.path[:0] = [str(PROJECT / "tests" / "e2e"), str(TOOLS / "catalogue-server"), str(TOOLS / "broker-client")]

from broker_client import BrokerClient, new_draft  # noqa: E402
from lib import hubs  # noqa: E402
from lib.broker import KEY  # noqa: E402
from lib.hub import Hub  # noqa: E402
from lib.layout import PAGE_TOP, SIDEBAR_WIDTH, STATUS_HEIGHT, Layout  # noqa: E402
from lib.promotion import CrashedPromotion  # noqa: E402
from lib.screen import Screen  # noqa: E402
from lib.shop import HOST, MANIFEST_URL  # noqa: E402
from lib.stage import BOX_MARGIN, DEFAULT, FAR, LARGE, PAGE_POINT, SCREEN_SIZE, SMALLEST, TALL, Stage, rows_changed  # noqa: E402
from lib.waiting import wait_for  # noqa: E402
from upstream import Answer, Upstream, error_body  # noqa: E402

ON_WINDOWS = hubs.is_for_windows(BINARY)
PREPARED = PROJECT / "build" / ("e2e-windows" if ON_WINDOWS else "e2e")
DEMO = ("zorva-daw-13.0.0", "zorva-stagewell-2.4.0", "zorva-foundry-staples-1.0.0", "zorva-beatpad-1.2.0")
BEATPAD_FILE = "ZORVA-Beatpad-1.2.0.exe"
COMMUNITY_HEIGHT = 2224                     # of the page when it is wide
CARDS_SIZE = (1100, 962)                    # six cards and no more
MARGINS = (-BOX_MARGIN,) * 4
HOME = Path("/var/tmp/home/creator")        # of the world; the status bar shows it


# ---- the community page and its wizard
def community(stage: Stage) -> None:
    stage.open_shop(*DEMO)
    stage.start(tab="community")
    stage.save_here("community-start")
    stage.resize(SMALLEST)          # only now the pill has the width of its text
    stage.scroll_through("community")
    stage.resize(DEFAULT)
    stage.hub.window.press(*["Tab"] * 8)
    stage.save_here("community-focus")


def community_boxes(stage: Stage) -> None:
    """The guides, and the box about local drafts without and with one."""
    hub = stage.hub
    stage.start(online=False, size=TALL, tab="community")
    stage.at_rest()
    stage.wheel(PAGE_POINT, FAR)
    stage.at_rest()
    top = hub.layout.height - STATUS_HEIGHT - COMMUNITY_HEIGHT      # scrolled to its end
    column = (hub.layout.width - SIDEBAR_WIDTH - 6 - 48 - 14) // 2
    for index, name, title in ((0, "guide-multitimbral", "16-Channel Multitimbral Recording"), (1, "guide-script", "ZORVA Script Starter"),
                               (3, "guide-headroom", "ZORVA Tip 001 - Preserve Headroom")):
        stage.click((SIDEBAR_WIDTH + 100 + (index % 2) * (column + 14), top + 1398 + (index // 2) * 194 + 147))
        stage.box(name, title)
    for name in ("local-drafts-none", "local-drafts-one"):
        stage.click((SIDEBAR_WIDTH + 24 + 300, top + 1164 + 178 - 37))
        stage.box(name, "Local Preview Drafts", "Escape")
        save_draft(hub)


def save_draft(hub: Hub) -> None:
    """A preview draft, handed over as the DAW would."""
    mix = hub.home / "mix.wav"
    with wave.open(str(mix), "wb") as writer:
        writer.setnchannels(1)
        writer.setsampwidth(1)
        writer.setframerate(8000)
        writer.writeframes(b"\x80" * 8000 * 60)
    BrokerClient(hub.discovery_file).save_draft(new_draft(mix, "First mix", rights_confirmed=True))


class Wizard:
    """Where the wizard's controls are, from the window's corner."""

    def __init__(self, layout: Layout):
        left, right, bottom, middle = SIDEBAR_WIDTH, layout.width, layout.height - STATUS_HEIGHT, (SIDEBAR_WIDTH + layout.width) // 2
        self.back, self.skip = (left + 86, bottom - 42), (left + 166, bottom - 42)
        self.save_draft, self.preview, self.next = (right - 398, bottom - 42), (right - 299, bottom - 42), (right - 98, bottom - 42)
        self.delete, self.export = (right - 222, bottom - 81), (right - 104, bottom - 81)
        self.primary, self.secondary = (middle, PAGE_TOP + 219), (middle, PAGE_TOP + 287)
        self.choose_image = (left + 140, PAGE_TOP + 219)


def open_wizard(stage: Stage) -> Wizard:
    stage.tab("community")
    stage.at_rest()
    stage.click((SIDEBAR_WIDTH + 24 + 98, PAGE_TOP + 20 + 330 - 42))
    return Wizard(stage.hub.layout)


def wizard(stage: Stage) -> None:
    """Every step as it is filled in, and what each of the buttons says."""
    hub = stage.hub
    stage.start(online=False)
    at = open_wizard(stage)
    stage.shoot("wizard-1")
    stage.click(at.next)

    stage.click(at.next)
    stage.box("wizard-name-missing", "Check This Step")
    stage.shoot("wizard-2-error", [DEFAULT])
    stage.click(at.save_draft)
    stage.box("wizard-not-saved", "Profile Draft Needs Attention")
    stage.click(at.preview)
    stage.box("wizard-no-preview", "Preview Needs Attention")
    stage.fill(at.primary, "Nightglass")
    stage.shoot("wizard-2")
    stage.click(at.next)

    hub.window.click(at.primary)
    wait_for(hub.screen.popups, "the list of roles")
    stage.save_here("wizard-3-roles")
    hub.window.press("Down", "Down", "Return")
    stage.fill(at.secondary, "Producer, Composer, Mixing Engineer")
    stage.shoot("wizard-3")
    stage.click(at.next)

    for number, text in ((4, "Ambient, Electronica, Film score, Trip hop"),
                         (5, "Slow pads, close pianos and field recordings from the harbour, mixed quietly and late.")):
        stage.fill(at.primary, text)
        stage.shoot(f"wizard-{number}")
        stage.click(at.next)

    stage.fill(at.primary, "orange")
    stage.click(at.next)
    stage.box("wizard-bad-accent", "Check This Step")
    stage.fill(at.primary, "#F97316")
    stage.shoot("wizard-6")
    stage.click(at.next)

    stage.shoot("wizard-7")
    stage.click(at.choose_image)
    chooser = hub.box("Choose PNG or JPEG")
    stage.save("box-choose-image", chooser, MARGINS)
    choose(hub, chooser, PROJECT / "assets" / "ZorvaAppIcon.png")
    stage.shoot("wizard-7-chosen")
    stage.click(at.next)

    stage.shoot("wizard-8")
    stage.click(at.skip)

    stage.fill(at.primary, "no link at all")
    stage.click(at.next)
    stage.box("wizard-bad-link", "Check This Step")
    stage.fill(at.primary, "Music: https://music.zorva.example/nightglass")
    hub.window.press("Return")
    hub.window.type("Site: https://nightglass.example")
    stage.shoot("wizard-9")
    stage.click(at.next)

    stage.click((at.primary[0] - 300, at.primary[1]))
    stage.shoot("wizard-10")
    stage.click(at.preview)
    stage.box("wizard-preview", "Creator Profile Preview")
    stage.click(at.next)
    stage.box("wizard-saved", "Local Draft Saved")
    stage.click(at.delete)
    stage.box("wizard-delete", "Delete Local Creator Draft?", "Escape")
    stage.save_here("wizard-10-after-box")
    hub.window.press("Tab", "Tab")
    stage.save_here("wizard-10-focus")
    stage.click(at.export)
    stage.save("box-export", hub.box("Export Local Creator Draft"), MARGINS)


def choose(hub: Hub, chooser, file: Path) -> None:
    """Names a file in the system's dialog."""
    if ON_WINDOWS:
        own = hub.home / file.name
        shutil.copy(file, own)
        chooser.type(hub.recorded_path(own))        # the field for a name has the keyboard
        chooser.press("Return")
    else:
        place = chooser.place()
        chooser.click((place.width // 2, place.height - 63))        # the dialog's field for a name
        chooser.type(str(file))
        chooser.press("Return")
        chooser.click((place.width - 54, place.height - 24))
    wait_for(lambda: not chooser.is_open(), "the dialog to close")


def recovery(stage: Stage) -> None:
    """What a crash in the middle of a download and a damaged profile leave to tell."""
    hub = stage.hub
    stage.open_shop("zorva-beatpad-1.2.0")
    stage.start()
    download(stage, 0)
    hub.quit()
    profile = hub.root / "Creator" / "profile-v1.json"
    profile.parent.mkdir(parents=True, exist_ok=True)
    profile.write_text("{ damaged")
    folder = hub.vault / "zorva-beatpad"
    promotion = CrashedPromotion(folder / BEATPAD_FILE, folder / "vault.json", folder / f"{BEATPAD_FILE}.part", hub.recorded_path)
    promotion.staged.write_bytes(b"the new release " * 1000)
    promotion.begin()
    promotion.keep_old()
    promotion.activate(lambda target: promotion.staged.rename(target))
    promotion.metadata_backup.unlink()
    hub.open()
    stage.box("recovery-notice", "ZORVA Hub Recovery Notice", None)
    stage.save_here("recovery")
    hub.answer("ZORVA Hub Recovery Notice")
    stage.resize(DEFAULT)
    at = open_wizard(stage)
    stage.shoot("wizard-1-recovery")
    stage.click(at.save_draft)
    stage.box("wizard-recovery-kept", "Profile Draft Needs Attention")


# ---- the library
def download(stage: Stage, index: int) -> None:
    stage.hub.wait_for_card(index, "downloadable")
    stage.hub.click_card_button(index)
    stage.hub.wait_for_card(index, "cached", 60)


def install(stage: Stage, index: int) -> None:
    stage.hub.click_card_button(index)
    stage.hub.answer("Install Complete", limit=60)
    stage.hub.wait_for_card(index, "installed")


def offline(stage: Stage) -> None:
    """A first start without a network: the list that is compiled in."""
    hub = stage.hub
    stage.start(online=False)
    stage.scroll_through("offline")
    before = stage.at_rest()
    hub.window.move_mouse((hub.layout.width - 116, 30))
    wait_for(lambda: rows_changed(before, hub.screen.picture()) > 0, "the tooltip of the search")
    stage.save_here("search")
    hub.select_card(0)
    stage.shoot("offline-pane")


def add_product(stage: Stage, place: int, product_id: str, name: str, version: str, description: str, content: bytes, file: str) -> None:
    (stage.shop.folder / "files" / file).write_bytes(content)
    (stage.shop.folder / "products" / f"{place}-{product_id}.json").write_text(json.dumps(
        {"id": product_id, "name": name, "vendor": "ZORVA", "version": version, "description": description, "category": "Instrument",
         "releaseDate": "2026-07-15", "platforms": {"win": {"file": file}}}))


def large_archive() -> bytes:
    """An application that takes its time to unpack."""
    archive = io.BytesIO()
    with zipfile.ZipFile(archive, "w") as file:
        file.write(PREPARED / "samples" / "files" / BEATPAD_FILE, "Drum Room.exe")
        for number in range(8000 if ON_WINDOWS else 45000):     # every file costs Wine dear
            file.writestr(f"kits/{number % 100}/{number}.hit", b"x")
    return archive.getvalue()


def library(stage: Stage) -> None:
    """Six products, each in a state of its own, with a download under way."""
    hub = stage.hub
    stage.open_shop(*DEMO)
    add_product(stage, 4, "zorva-grand", "ZORVA Grand", "1.2.0", "A concert grand with three microphones, two pedals and a lid that opens.",
                bytes(2_000_000), "grand.exe")
    add_product(stage, 5, "zorva-drum-room", "ZORVA Drum Room", "1.9.2", "Nine kits in a tiled room.", large_archive(), "drum-room.zip")
    stage.start(size=TALL)
    stage.shoot("library-first", [DEFAULT])
    for index in (0, 2, 3, 5):
        download(stage, index)
    for index in (0, 2):
        install(stage, index)
    hub.quit()

    update = "ZORVA-DAW-Setup-13.1.0.exe"
    shutil.copy(PREPARED / "samples" / "products" / "zorva-daw-13.1.0.json", stage.shop.folder / "products" / "0-zorva-daw-13.0.0.json")
    shutil.copy(PREPARED / "samples" / "files" / update, stage.shop.folder / "files" / update)
    stage.shop.rule(path="/files/grand.exe", rate=6_000)
    stage.start(size=TALL)
    hub.wait_for_card(0, "update available")
    hub.click_card_button(4)
    hub.wait_for_card(4, "busy or no update now")

    for index, name in ((0, "pane"), (1, "pane-new"), (2, "pack"), (3, "pane-cached"), (4, "pane-downloading")):
        hub.select_card(index)
        stage.shoot(name)
        if index == 0:
            stage.scroll_through("pane-gallery", lambda layout: (layout.width - 160, layout.height - 220), [LARGE])
            stage.shoot("pane-lower", scrolled=FAR)
            stage.wheel(PAGE_POINT, -FAR)
        hub.close_pane()
    for index, name in ((0, "menu-update"), (1, "menu-new"), (2, "menu-installed"), (4, "menu-downloading")):
        hub.window.click(hub.layout.card_menu(index).centre)
        wait_for(hub.screen.popups, "the menu")
        stage.save_here(name)
        hub.window.press("Escape")
    stage.scroll_through("library")
    stage.shoot("library-lower", scrolled=FAR)
    stage.wheel(PAGE_POINT, -FAR)
    wait_for(lambda: (hub.library().progress() or 0) > 0.42, "the download to be well under way", 200)
    stage.resize(CARDS_SIZE)
    hub.click_card_button(5)
    hub.window.move_mouse(hub.layout.away)
    stage.save("cards", inset=(SIDEBAR_WIDTH, PAGE_TOP, 6, STATUS_HEIGHT))
    stage.save_here("library-installing")
    stage.box("install-complete-application", "Install Complete")


def library_boxes(stage: Stage) -> None:
    """What the library has to say or to ask."""
    hub = stage.hub
    stage.open_shop(*DEMO)
    stage.start(size=TALL)
    stage.shop.rule(flip=100_000)
    hub.wait_for_card(0, "downloadable")
    hub.click_card_button(0)
    stage.box("download-failed", "Download Failed")
    stage.shop.rule()
    for index in (1, 2, 3):
        download(stage, index)
    hub.click_card_button(3)
    stage.box("install-complete", "Install Complete")
    hub.wait_for_card(3, "installed")
    hub.choose_from_card_menu(3, 2)
    stage.box("delete-from-vault", "Delete from Vault", "Escape")
    shutil.rmtree(hub.products / "zorva-beatpad")
    hub.click_card_button(3)
    stage.box("open-failed", "Open Failed")
    next((hub.vault / "zorva-stagewell").glob("*.zip")).write_bytes(b"changed")
    hub.click_card_button(1)
    stage.box("install-failed", "Install Failed")
    next((hub.vault / "zorva-foundry-staples").glob("*.zip")).unlink()
    hub.click_card_button(2)
    stage.box("not-in-vault", "Not in Vault")


# ---- settings and about
def settings_row(layout: Layout, x: int, y: int):
    """A point of the settings page's column."""
    return layout.key_field.x + x, layout.key_field.y - 22 + y


def keys(stage: Stage) -> None:
    """The settings page in each state of the key, and its advanced section."""
    hub = stage.hub
    secrets = stage.secret_store()
    upstream = Upstream(PREPARED / "certificates")
    stage.endings.append(upstream.stop)
    upstream.start()
    stage.start(online=False)
    hub.open_settings()
    stage.shoot("settings")
    hub.type_key(KEY)
    stage.save_here("settings-typed")
    hub.press_key_button("save")
    stage.shoot("settings-stored")
    if not ON_WINDOWS:      # under Wine a request that stalls does not end
        upstream.answer = Answer(silence="headers")
        stage.click(hub.layout.key_button("test").centre)
        stage.shoot("settings-testing")
        wait_for(lambda: hub.key_page().is_idle(), "the test to end", 60)
        stage.shoot("settings-unreachable", [DEFAULT])
    upstream.answer = Answer()
    hub.press_key_button("test")
    stage.shoot("settings-verified")
    upstream.answer = Answer(status=401, body=error_body("Incorrect API key provided"))
    hub.press_key_button("test")
    stage.shoot("settings-refused")
    hub.press_key_button("delete")
    stage.shoot("settings-deleted", [DEFAULT])
    hub.press_key_button("save")
    stage.shoot("settings-nothing-to-save", [DEFAULT])
    if secrets:
        plant_foreign_item(secrets)
        stage.tab("about")
        hub.open_settings()
        hub.press_key_button("test")
        stage.shoot("settings-foreign")
    stage.click(settings_row(hub.layout, 80, 431))
    stage.shoot("settings-advanced")
    stage.click(settings_row(hub.layout, 10, 468))
    hub.window.press("Tab")
    stage.save_here("settings-focus")
    stage.click(settings_row(hub.layout, 65, 505))
    stage.box("cache-cleared", "Cache Cleared")


def plant_foreign_item(secrets) -> None:
    """A secret under the Hub's name that is no key."""
    subprocess.run(["secret-tool", "store", "--label", "foreign", "target", "ZORVA_DAW/Hub/OpenAI/default", "user", "default"],
                   input=b"k" * 3000, env={**os.environ, **secrets.environment}, check=True, timeout=20)


def no_store(stage: Stage) -> None:
    """Without a secret store, and with an address of the user's own."""
    hub = stage.hub
    hub.write_settings(manifestUrl=MANIFEST_URL)
    stage.start(online=False)
    hub.open_settings()
    hub.type_key(KEY)
    hub.press_key_button("save")
    stage.shoot("settings-no-store")


def about(stage: Stage) -> None:
    stage.start(online=False, tab="about")
    stage.shoot("about")
    stage.hub.window.press("Tab", "Tab")
    stage.save_here("about-focus")


SCENES = (community, community_boxes, wizard, recovery, offline, library, library_boxes, keys, no_store, about)
LINUX_ONLY = (community_boxes, no_store)        # the reference client, and a system without a secret store


# ---- the world
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
