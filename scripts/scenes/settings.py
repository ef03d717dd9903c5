"""The settings page, and the page about the Hub."""

import subprocess

from lib.broker import KEY
from lib.hub import Hub
from lib.layout import Layout
from lib.secrets import KEY_NAME
from lib.shop import MANIFEST_URL
from lib.stage import DEFAULT, Stage
from lib.waiting import wait_for
from upstream import Answer, Upstream, error_body


def settings_row(layout: Layout, x: int, y: int):
    """A point of the settings page's column."""
    return layout.key_field.x + x, layout.key_field.y - 22 + y


def keys(stage: Stage) -> None:
    """The settings page in each state of the key, and its advanced section."""
    hub = stage.hub
    stage.reach_broker()
    upstream = Upstream(stage.prepared / "certificates")
    stage.endings.callback(upstream.stop)
    upstream.start()
    stage.start(online=False)
    hub.open_settings()
    stage.shoot("settings")
    hub.type_key(KEY)
    stage.save_here("settings-typed")
    hub.press_key_button("save")
    stage.shoot("settings-stored")
    if not stage.on_windows:      # under Wine a request that stalls does not end
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
    if not stage.on_windows:
        plant_foreign_item(hub)
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


def plant_foreign_item(hub: Hub) -> None:
    """A secret under the Hub's name that is no key."""
    subprocess.run(["secret-tool", "store", "--label", "foreign", "target", KEY_NAME, "user", "default"],
                   input=b"k" * 3000, env=hub.variables(), check=True, timeout=20)


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
