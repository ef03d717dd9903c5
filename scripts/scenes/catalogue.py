"""What several scenes do with the products of the catalogue."""

from lib.stage import Stage

DEMO = ("zorva-daw-13.0.0", "zorva-stagewell-2.4.0", "zorva-foundry-staples-1.0.0", "zorva-beatpad-1.2.0")
BEATPAD_FILE = "ZORVA-Beatpad-1.2.0.exe"


def download(stage: Stage, index: int) -> None:
    stage.hub.wait_for_card(index, "downloadable")
    stage.hub.click_card_button(index)
    stage.hub.wait_for_card(index, "cached", 60)


def install(stage: Stage, index: int) -> None:
    stage.hub.click_card_button(index)
    stage.hub.answer("Install Complete", limit=60)
    stage.hub.wait_for_card(index, "installed")
