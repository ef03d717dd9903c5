"""The library: its cards, panes, menus and boxes."""

import io
import json
import shutil
import zipfile

from lib.layout import PAGE_TOP, SIDEBAR_WIDTH, STATUS_HEIGHT
from lib.stage import DEFAULT, FAR, LARGE, PAGE_POINT, TALL, Stage, rows_changed
from lib.waiting import wait_for

from .catalogue import BEATPAD_FILE, DEMO, download, install

CARDS_SIZE = (1100, 962)                    # six cards and no more


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


def large_archive(stage: Stage) -> bytes:
    """An application that takes its time to unpack."""
    archive = io.BytesIO()
    with zipfile.ZipFile(archive, "w") as file:
        file.write(stage.prepared / "samples" / "files" / BEATPAD_FILE, "Drum Room.exe")
        for number in range(8000 if stage.on_windows else 45000):     # every file costs Wine dear
            file.writestr(f"kits/{number % 100}/{number}.hit", b"x")
    return archive.getvalue()


def library(stage: Stage) -> None:
    """Six products, each in a state of its own, with a download under way."""
    hub = stage.hub
    stage.open_shop(*DEMO)
    add_product(stage, 4, "zorva-grand", "ZORVA Grand", "1.2.0", "A concert grand with three microphones, two pedals and a lid that opens.",
                bytes(2_000_000), "grand.exe")
    add_product(stage, 5, "zorva-drum-room", "ZORVA Drum Room", "1.9.2", "Nine kits in a tiled room.", large_archive(stage), "drum-room.zip")
    stage.start(size=TALL)
    stage.shoot("library-first", [DEFAULT])
    for index in (0, 2, 3, 5):
        download(stage, index)
    for index in (0, 2):
        install(stage, index)
    hub.quit()

    update = "ZORVA-DAW-Setup-13.1.0.exe"
    shutil.copy(stage.prepared / "samples" / "products" / "zorva-daw-13.1.0.json", stage.shop.folder / "products" / "0-zorva-daw-13.0.0.json")
    shutil.copy(stage.prepared / "samples" / "files" / update, stage.shop.folder / "files" / update)
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
    hub.put_mouse_aside()
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
