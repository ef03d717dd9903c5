"""The creator's profile wizard, and what a crash and a damaged profile leave to tell."""

import shutil
from pathlib import Path

from lib.layout import PAGE_TOP, SIDEBAR_WIDTH, STATUS_HEIGHT, Layout
from lib.promotion import CrashedPromotion
from lib.stage import BOX_MARGIN, DEFAULT, Stage
from lib.waiting import wait_for

from .catalogue import BEATPAD_FILE, download

PROJECT = Path(__file__).resolve().parents[2]


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
    stage.save("box-choose-image", chooser, (-BOX_MARGIN,) * 4)
    choose(stage, chooser, PROJECT / "assets" / "ZorvaAppIcon.png")
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
    stage.save("box-export", hub.box("Export Local Creator Draft"), (-BOX_MARGIN,) * 4)


def choose(stage: Stage, chooser, file: Path) -> None:
    """Names a file in the system's dialog."""
    if stage.on_windows:
        own = stage.hub.home / file.name
        shutil.copy(file, own)
        chooser.type(stage.hub.recorded_path(own))        # the field for a name has the keyboard
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
