"""The base of every end-to-end test: a new home, a new catalogue, and a picture when something goes wrong."""

import os
import re
import unittest
from pathlib import Path

from .hubs import hub_for
from .shop import MANIFEST_URL, Shop


class World:
    """What the runner prepared once for all tests."""
    project = None
    screen = None
    binary = None
    samples = None
    certificates = None
    scratch = None
    pictures = None
    killer = None       # the library that ends a Hub at one exact step


class HubTest(unittest.TestCase):
    """Each test gets a Hub that was never started, and a server that is not listening yet."""

    system_failed = False       # known after a failure

    def setUp(self):
        name = re.sub(r"\W+", "-", self.id().split(".", 1)[-1])
        folder = World.scratch / name
        while folder.exists():      # it runs again
            folder = folder.with_name(folder.name + "-again")
        folder.mkdir()
        self.shop = Shop(folder / "catalogue", World.samples, World.certificates)
        self.hub = hub_for(World.binary, folder / "home", World.screen)
        self.addCleanup(self.shop.close)
        self.addCleanup(self.hub.destroy)
        self.addCleanup(self._keep_picture_of_failure, World.pictures / f"{name}.png")

    def _keep_picture_of_failure(self, file: Path):
        outcome = self._outcome.result
        if any(test is self for test, _ in outcome.failures + outcome.errors):
            self.system_failed = self.hub.system_failed()
            World.screen.picture().save(file)
            print(f"  picture: {file}", flush=True)
            if self.hub.last_words():
                print("  the Hub wrote: " + self.hub.last_words(), flush=True)

    # ---- common beginnings
    def open_shop(self, *releases: str) -> None:
        """Publishes the releases, starts the server and points the Hub to it."""
        self.shop.publish(*releases)
        self.shop.server.start()
        self.hub.write_settings(manifestUrl=MANIFEST_URL)

    def start_online(self, *releases: str) -> None:
        """A started Hub that shows these releases, in this order."""
        self.open_shop(*releases)
        self.hub.start()
        self.hub.wait_online()

    def download(self, index: int = 0) -> None:
        """Downloads the product of a card and waits until the card offers to install it."""
        self.hub.wait_for_card(index, "downloadable")
        self.hub.click_card_button(index)
        self.hub.wait_for_card(index, "cached", 20)

    def install(self, index: int = 0) -> None:
        """Installs the product of a card from the Vault, and waits until the card says so."""
        self.hub.wait_for_card(index, "cached")
        self.hub.click_card_button(index)
        self.hub.answer("Install Complete")
        self.hub.wait_for_card(index, "installed")

    # ---- common endings
    def assert_vaulted(self, product_id: str) -> None:
        """The Vault holds the product as the catalogue describes it now, and nothing else of it."""
        product = self.shop.product(product_id)
        platform = product["platforms"]["win"]
        file = os.path.basename(platform["url"])
        self.assertEqual(self.hub.vault_files(product_id), sorted([file, "vault.json"]))
        self.assertEqual((self.hub.vault / product_id / file).read_bytes(), self.shop.original(file).read_bytes())
        record = self.hub.vault_record(product_id)
        expected = {key: product[key] for key in ("id", "name", "vendor", "version", "description", "category")}
        expected |= {"platform": "win", "fileName": file, "sizeBytes": platform["sizeBytes"],
                     "downloadedAt": record["downloadedAt"], "sha256": platform["sha256"], "url": platform["url"],
                     "installType": product.get("installType", "application")}
        if "content" in product:
            names = ("packId", "archiveRoot", "defaultPatch", "licenseFile", "licenseId")
            expected["content"] = {name: product["content"][name] for name in names}
        self.assertEqual(list(record.items()), list(expected.items()))

    def assert_nothing_vaulted(self, product_id: str) -> None:
        self.assertEqual(self.hub.vault_files(product_id), [])

    def assert_no_leftovers(self) -> None:
        self.assertEqual(self.hub.leftovers(), [])

    def assert_no_box(self) -> None:
        self.assertEqual(self.hub.other_windows(), [])
