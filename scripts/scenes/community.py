"""The community page and what it opens."""

from broker_client import BrokerClient, new_draft
from lib.broker import silent_wav
from lib.hub import Hub
from lib.layout import SIDEBAR_WIDTH, STATUS_HEIGHT
from lib.stage import DEFAULT, FAR, PAGE_POINT, SMALLEST, TALL, Stage

from .catalogue import DEMO

COMMUNITY_HEIGHT = 2224                     # of the page when it is wide


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
    stage.reach_broker()
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
    mix = silent_wav(hub.home / "mix.wav", 60)
    BrokerClient(hub.discovery_file).save_draft(new_draft(hub.recorded_path(mix), "First mix", rights_confirmed=True))
