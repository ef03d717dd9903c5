"""A new release, with another file name, of what is installed."""

from lib.case import HubTest
from lib.hub import sha256_of

DAW, PACK = "zorva-daw", "zorva-foundry-staples"
OLD, NEW = "ZORVA-DAW-13.0.0.exe", "ZORVA-DAW-Setup-13.1.0.exe"


class NewRelease(HubTest):
    def install_the_old_and_publish_the_new(self):
        self.start_online("zorva-daw-13.0.0")
        self.download()
        self.install()
        self.assertEqual(self.hub.quit(), 0)
        self.shop.publish("zorva-daw-13.1.0")
        self.hub.start()
        self.hub.wait_online()
        self.hub.wait_for_card(0, "update available")

    def test_shows_as_an_update_and_retires_the_old_installer(self):
        self.install_the_old_and_publish_the_new()
        self.assertEqual(self.hub.vault_files(DAW), [OLD, "vault.json"])
        self.hub.click_card_button(0)
        self.hub.wait_for_download(DAW, NEW)
        self.hub.wait_for_card(0, "update available")
        self.assert_vaulted(DAW)
        self.assertEqual(sha256_of(self.hub.products / DAW / OLD), sha256_of(self.shop.original(OLD)))
        self.hub.select_card(0)
        self.hub.window.click(self.hub.layout.pane_reinstall.centre)
        self.hub.answer("Install Complete")
        self.hub.wait_for_card(0, "installed")
        self.assertEqual([path.name for path in (self.hub.products / DAW).iterdir()], [NEW])
        self.assertEqual(self.hub.installed()[DAW]["path"], self.hub.recorded_path(self.hub.products / DAW / NEW))
        self.assert_no_leftovers()

    def test_that_fails_its_check_leaves_the_old_installer_and_record(self):
        self.install_the_old_and_publish_the_new()
        record = self.hub.vault_record(DAW)
        self.shop.rule(flip=10)
        self.hub.click_card_button(0)
        self.hub.answer("Download Failed")
        self.hub.wait_for_card(0, "update available")
        self.assertEqual(self.hub.vault_record(DAW), record)
        self.assertEqual(self.hub.vault_files(DAW), [OLD, "vault.json"])
        self.assertEqual(sha256_of(self.hub.vault / DAW / OLD), record["sha256"])

    def test_is_not_offered_while_offline(self):
        self.install_the_old_and_publish_the_new()
        self.assertEqual(self.hub.quit(), 0)
        self.shop.server.stop()
        self.hub.start()
        self.hub.wait_for_card(0, "busy or no update now")

    def test_of_a_sound_pack_installs_beside_the_old_one(self):
        self.start_online("zorva-foundry-staples-1.0.0")
        self.download()
        self.install()
        self.assertEqual(self.hub.quit(), 0)
        self.shop.publish("zorva-foundry-staples-1.1.0")
        self.hub.start()
        self.hub.wait_online()
        # The Vault's pack is not the one that the catalogue describes now: it is refused, and makes room for the new one.
        self.hub.wait_for_card(0, "cached")
        self.hub.click_card_button(0)
        self.hub.answer("Install Failed")
        self.hub.choose_from_card_menu(0, 2)
        self.hub.answer("Delete from Vault")
        self.download()
        self.install()
        self.assertEqual(sorted(path.name for path in (self.hub.packs / PACK).iterdir()), ["1.0.0", "1.1.0"])
        self.assert_no_leftovers()
