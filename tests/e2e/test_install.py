"""Installing each kind of product from the Vault, and starting what was installed."""

import io
import json
import os
import shutil
import zipfile

from lib.case import HubTest, World
from lib.hub import sha256_of
from lib.waiting import stays, wait_for

BEATPAD, STAGEWELL, PACK, DAW = "zorva-beatpad", "zorva-stagewell", "zorva-foundry-staples", "zorva-daw"


def tree(folder):
    """Every file below a folder, by its relative name, with its bytes."""
    return {str(path.relative_to(folder)): path.read_bytes() for path in sorted(folder.rglob("*")) if path.is_file()}


def entries(archive):
    with zipfile.ZipFile(archive) as file:
        return {info.filename: file.read(info) for info in file.infolist() if not info.is_dir()}


class Application(HubTest):
    def test_a_single_executable_is_copied_into_place_and_not_run(self):
        self.start_online("zorva-beatpad-1.2.0")
        self.download()
        self.install()
        program = self.hub.products / BEATPAD / "ZORVA-Beatpad-1.2.0.exe"
        self.assertEqual(tree(self.hub.products), {f"{BEATPAD}/{program.name}": self.shop.original(program.name).read_bytes()})
        self.assertTrue(self.hub.can_be_started(program))
        self.assertEqual(list(self.hub.installed()), [BEATPAD])
        self.assertEqual(self.hub.installed()[BEATPAD]["path"], self.hub.recorded_path(program))
        self.assertEqual(self.hub.started_programs, [])
        self.assert_vaulted(BEATPAD)
        self.assert_no_leftovers()

    def test_an_archive_is_unpacked_with_its_tree(self):
        self.start_online("zorva-stagewell-2.4.0")
        self.download()
        self.install()
        self.assertEqual(tree(self.hub.products / STAGEWELL), entries(self.shop.original("ZORVA-Stagewell-2.4.0.zip")))
        program = self.hub.products / STAGEWELL / "Stagewell" / "Program" / "ZORVA Stagewell.exe"
        self.assertEqual(self.hub.installed()[STAGEWELL]["path"], self.hub.recorded_path(program))
        self.assertTrue(self.hub.can_be_started(program))
        self.assert_no_leftovers()

    def test_an_install_asked_for_during_another_waits_its_turn(self):
        archive = io.BytesIO()
        with zipfile.ZipFile(archive, "w") as file:
            file.write(World.samples / "files" / "ZORVA-Beatpad-1.2.0.exe", "Tool.exe")
            for number in range(20000):
                file.writestr(f"parts/{number % 100}/{number}", b"x")
        self.open_shop("zorva-beatpad-1.2.0")
        self.shop.publish_application("my-tool", "tool.zip", archive.getvalue())
        self.hub.start()
        self.hub.wait_online()
        self.download(0)
        self.download(1)
        self.hub.click_card_button(1)
        self.hub.click_card_button(0)
        wait_for(lambda: len(self.hub.installed()) == 2, "both records", 30)
        self.assertEqual(list(self.hub.installed()), ["my-tool", BEATPAD])
        wait_for(lambda: len(self.hub.screen.windows("Install Complete")) == 2, "both boxes")
        self.hub.answer_all("Install Complete")
        for index in range(2):
            self.hub.wait_for_card(index, "installed")
        self.assert_no_leftovers()

    def test_a_vaulted_file_that_changed_is_not_installed(self):
        self.start_online("zorva-beatpad-1.2.0")
        self.download()
        vaulted = self.hub.vault / BEATPAD / "ZORVA-Beatpad-1.2.0.exe"
        content = bytearray(vaulted.read_bytes())
        content[1_000_000] ^= 1
        vaulted.write_bytes(content)
        self.hub.click_card_button(0)
        self.hub.answer("Install Failed")
        self.hub.wait_for_card(0, "cached")
        self.assertEqual(self.hub.installed(), {})
        self.assertFalse((self.hub.products / BEATPAD).exists())


class SoundPack(HubTest):
    def test_is_unpacked_beside_a_manifest_of_the_hubs_own(self):
        self.start_online("zorva-foundry-staples-1.0.0")
        self.download()
        self.install()
        folder = self.hub.packs / PACK / "1.0.0"
        product = self.shop.product(PACK)
        archive = self.shop.original("ZORVA-Foundry-Staples-1.0.0.zip")
        unpacked, expected = tree(folder), entries(archive)
        manifest = json.loads(unpacked.pop("manifest.json"))
        expected.pop("manifest.json")
        self.assertEqual(unpacked, expected)
        self.assertEqual(list(manifest.items()), list({
            "schema": 1, "packId": PACK, "version": "1.0.0", "displayName": "ZORVA Foundry Staples", "license": "CC0-1.0",
            "defaultPatch": "FoundryStaples/Patches/Init.zpatch", "sourceUrl": product["platforms"]["win"]["url"],
            "archiveSha256": sha256_of(archive)}.items()))
        self.assertEqual(self.hub.installed(), {})
        self.assert_no_leftovers()


class Open(HubTest):
    def test_starts_the_program_with_the_users_own_mask_and_no_arguments(self):
        self.addCleanup(os.umask, os.umask(0o027))
        self.start_online("zorva-beatpad-1.2.0", "zorva-stagewell-2.4.0")
        for index in range(2):
            self.download(index)
            self.install(index)
        folders = (self.hub.products / BEATPAD, self.hub.products / STAGEWELL / "Stagewell" / "Program")
        expected = [self.hub.mark_of("ZORVA Beatpad 1.2.0", folders[0], "027"),
                    self.hub.mark_of("ZORVA Stagewell 2.4.0", folders[1], "027")]
        for index in range(2):
            self.hub.click_card_button(index)
            self.hub.wait_for_started(index + 1)
        self.assertEqual(self.hub.started_programs, expected)
        self.assert_no_box()

    def test_of_a_product_that_vanished_says_so(self):
        self.start_online("zorva-beatpad-1.2.0")
        self.download()
        self.install()
        shutil.rmtree(self.hub.products / BEATPAD)
        self.hub.click_card_button(0)
        self.hub.answer("Open Failed")
        self.assertTrue(stays(lambda: not self.hub.started_programs, 0.5))

    def install_own(self, file_name, content):
        self.open_shop()
        self.shop.publish_application("my-tool", file_name, content)
        self.hub.start()
        self.hub.wait_online()
        self.download()
        self.install()
        self.hub.click_card_button(0)

    def test_never_hands_a_name_to_a_shell(self):
        name, archive = "$(touch pwned) `touch pwned`; touch pwned.exe", io.BytesIO()
        with zipfile.ZipFile(archive, "w") as file:
            file.write(World.samples / "files" / "ZORVA-Beatpad-1.2.0.exe", name)
        self.install_own("tool.zip", archive.getvalue())
        self.hub.wait_for_started(1)
        self.assertEqual(list(self.hub.home.rglob("pwned")), [])
        self.assert_no_box()

    def test_never_lets_a_shell_run_what_is_no_program(self):
        self.install_own("tool.exe", b"touch \"$HOME/pwned\"\n")
        self.hub.answer("Open Failed")
        self.assertEqual(list(self.hub.home.rglob("pwned")), [])
