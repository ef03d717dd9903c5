"""With the server gone: everything in the Vault stays usable, until the user deletes it."""

from lib.case import HubTest
from lib.waiting import stays, wait_for

DAW, BEATPAD, PACK = "zorva-daw", "zorva-beatpad", "zorva-foundry-staples"


class ServerGone(HubTest):
    def go_offline(self):
        self.assertEqual(self.hub.quit(), 0)
        self.shop.server.stop()
        self.hub.start()
        self.assertEqual(self.hub.library().connection(), "offline")

    def test_a_damaged_product_is_reinstalled(self):
        self.start_online("zorva-beatpad-1.2.0")
        self.download()
        self.install()
        before = self.hub.installed()[BEATPAD]
        self.go_offline()
        self.hub.wait_for_card(0, "installed")
        program = self.hub.products / BEATPAD / "ZORVA-Beatpad-1.2.0.exe"
        program.write_bytes(b"damaged")
        self.hub.select_card(0)
        self.hub.window.click(self.hub.layout.pane_reinstall.centre)
        self.hub.answer("Install Complete")
        self.assertEqual(program.read_bytes(), self.shop.original(program.name).read_bytes())
        after = self.hub.installed()[BEATPAD]
        self.assertEqual(after["path"], before["path"])
        self.assertGreater(after["installedAt"], before["installedAt"])
        self.assert_no_leftovers()

    def test_what_was_downloaded_is_installed_for_the_first_time(self):
        self.start_online("zorva-beatpad-1.2.0", "zorva-foundry-staples-1.0.0")
        self.download(0)
        self.download(1)
        self.go_offline()
        self.install(0)
        self.install(1)
        self.assertTrue((self.hub.packs / PACK / "1.0.0" / "manifest.json").is_file())

    def test_what_the_catalogue_no_longer_lists_stays_installable(self):
        self.start_online("zorva-daw-13.0.0", "zorva-beatpad-1.2.0")
        self.download(1)
        self.assertEqual(self.hub.quit(), 0)
        self.shop.publish("zorva-daw-13.0.0")
        self.hub.start()
        self.hub.wait_online()
        self.hub.wait_for_card(1, "cached")
        self.install(1)
        self.assertEqual(list(self.hub.installed()), [BEATPAD])


class DeleteFromVault(HubTest):
    def begin(self):
        self.start_online("zorva-beatpad-1.2.0")
        self.download()

    def test_removes_the_installer_and_leaves_the_installed_copy(self):
        self.begin()
        self.install()
        program = self.hub.products / BEATPAD / "ZORVA-Beatpad-1.2.0.exe"
        self.hub.choose_from_card_menu(0, 2)
        self.hub.answer("Delete from Vault")
        wait_for(lambda: not (self.hub.vault / BEATPAD).exists(), "the product's folder to go")
        self.assertEqual(program.read_bytes(), self.shop.original(program.name).read_bytes())
        self.hub.wait_for_card(0, "installed")
        # Nothing to reinstall from: the pane's button is a frame without a fill.
        self.hub.select_card(0)
        wait_for(lambda: self.hub.library().pane_button(self.hub.layout.pane_reinstall) == "surface", "an empty frame")

    def test_of_a_product_that_is_not_installed_offers_the_download_again(self):
        self.begin()
        self.hub.choose_from_card_menu(0, 2)
        self.hub.answer("Delete from Vault")
        self.hub.wait_for_card(0, "downloadable")
        self.assertFalse((self.hub.vault / BEATPAD).exists())

    def test_refused_in_the_box_removes_nothing(self):
        self.begin()
        self.hub.choose_from_card_menu(0, 2)
        self.hub.answer("Delete from Vault", "Escape")
        self.hub.wait_for_card(0, "cached")
        self.assertTrue(stays(lambda: self.hub.library().card(0) == "cached", 0.5))
        self.assert_vaulted(BEATPAD)
