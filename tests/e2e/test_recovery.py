"""What the next start makes of a promotion that a crash interrupted: laid out by hand, step by step."""

import json

from lib.case import HubTest
from lib.hub import sha256_of
from lib.promotion import CrashedPromotion
from lib.waiting import stays, wait_for

BEATPAD, FILE = "zorva-beatpad", "ZORVA-Beatpad-1.2.0.exe"
NOTICE = "ZORVA Hub Recovery Notice"
STEPS = ("prepared", "backup moved", "activated", "record written", "committed")


class HandMadeCrash(HubTest):
    def begin(self, with_install=False):
        """A Hub that has the product in its Vault, and perhaps installed, and is not running; the server is gone."""
        self.start_online("zorva-beatpad-1.2.0")
        self.download()
        if with_install:
            self.install()
        self.assertEqual(self.hub.quit(), 0)
        self.shop.server.stop()

    def vault_promotion(self) -> CrashedPromotion:
        folder = self.hub.vault / BEATPAD
        return CrashedPromotion(folder / FILE, folder / "vault.json", folder / f"{FILE}.part", self.hub.recorded_path)

    def crash_in_vault(self, last_step: str) -> CrashedPromotion:
        """A second download of the product, with other content, that died after this step."""
        promotion, new = self.vault_promotion(), b"the new release " * 1000
        record = json.loads(promotion.metadata.read_text())
        promotion.staged.write_bytes(new)
        promotion.begin()
        if last_step != "prepared":
            promotion.keep_old()
        if STEPS.index(last_step) >= STEPS.index("activated"):
            promotion.activate(lambda target: promotion.staged.rename(target))
        if STEPS.index(last_step) >= STEPS.index("record written"):
            record |= {"version": "9.9.9", "sizeBytes": len(new), "sha256": sha256_of(promotion.target)}
            promotion.write_record(json.dumps(record))
        if last_step == "committed":
            promotion.commit_journal()
        return promotion

    def snapshot(self):
        return {str(path): path.read_bytes() for path in self.hub.paths_at_rest(self.hub.home) if path.is_file()}

    def second_start_changes_nothing(self):
        self.assertEqual(self.hub.quit(), 0)
        before = self.snapshot()
        self.hub.start()
        self.assertEqual(self.snapshot(), before)

    def old_release_returns_after(self, last_step):
        self.begin()
        self.crash_in_vault(last_step)
        self.hub.start()
        self.hub.wait_for_card(0, "cached")
        self.assert_vaulted(BEATPAD)
        self.assert_no_leftovers()
        self.assertTrue(stays(lambda: not self.hub.other_windows(), 1.0), "a repaired promotion needs no notice")
        self.second_start_changes_nothing()

    def test_download_prepared_returns_to_the_old(self):
        self.old_release_returns_after("prepared")

    def test_download_with_the_old_moved_away_returns_to_the_old(self):
        self.old_release_returns_after("backup moved")

    def test_download_activated_returns_to_the_old(self):
        self.old_release_returns_after("activated")

    def test_download_with_its_record_written_returns_to_the_old(self):
        self.old_release_returns_after("record written")

    def test_download_committed_stays_the_new(self):
        self.begin()
        self.crash_in_vault("committed")
        self.hub.start()
        self.assertEqual((self.hub.vault / BEATPAD / FILE).read_bytes(), b"the new release " * 1000)
        self.assertEqual(self.hub.vault_record(BEATPAD)["version"], "9.9.9")
        self.assert_no_leftovers()
        self.second_start_changes_nothing()

    def test_install_activated_returns_to_the_old(self):
        self.begin(with_install=True)
        record = self.hub.root / "installed.json"
        before = record.read_bytes()
        staged = self.hub.products / f"{BEATPAD}.installing-{'1' * 32}"
        promotion = CrashedPromotion(self.hub.products / BEATPAD, record, staged, self.hub.recorded_path)

        def make_new(target):
            target.mkdir()
            (target / "New.exe").write_bytes(b"new")
        promotion.begin()
        promotion.keep_old()
        promotion.activate(make_new)
        promotion.write_record(json.dumps({BEATPAD: {"path": self.hub.recorded_path(promotion.target / "New.exe"), "installedAt": "now"}}))
        self.hub.start()
        self.hub.wait_for_card(0, "installed")
        self.assertEqual(record.read_bytes(), before)
        self.assertEqual([path.name for path in promotion.target.iterdir()], [FILE])
        self.assertEqual(sha256_of(promotion.target / FILE), sha256_of(self.shop.original(FILE)))
        self.assert_no_leftovers()
        self.second_start_changes_nothing()

    def test_activated_without_its_record_snapshot_is_told_in_a_notice(self):
        self.begin()
        promotion = self.crash_in_vault("activated")
        promotion.metadata_backup.unlink()
        self.hub.start()
        self.hub.box(NOTICE)
        wait_for(lambda: self.hub.library().status_text_shown(), "the status line")
        self.hub.answer(NOTICE)
        self.hub.open_library()
        self.assert_vault_is_the_old_one()
        self.assertEqual(self.hub.leftovers(), [str(promotion.journal)])
        self.hub.wait_for_card(0, "cached")
        self.assertEqual(self.hub.quit(), 0)
        before = self.snapshot()
        self.hub.start()
        self.hub.answer(NOTICE)
        self.assertEqual(self.snapshot(), before)

    def assert_vault_is_the_old_one(self):
        folder = self.hub.vault / BEATPAD
        self.assertEqual(sha256_of(folder / FILE), sha256_of(self.shop.original(FILE)))
        self.assertEqual(self.hub.vault_record(BEATPAD)["sha256"], sha256_of(folder / FILE))

    def test_an_empty_journal_is_kept_and_told(self):
        self.begin()
        journal = self.vault_promotion().journal
        journal.touch()
        self.hub.start()
        self.hub.answer(NOTICE)
        self.assertEqual(self.hub.leftovers(), [str(journal)])
        self.assert_vault_is_the_old_one()

    def test_a_journal_that_points_outside_touches_nothing(self):
        self.begin()
        victim = self.hub.home / "mine.txt"
        victim.write_text("precious")
        promotion = self.vault_promotion()
        promotion.target = victim
        promotion.had_target = False
        promotion.write_journal("activated")
        self.hub.start()
        self.hub.answer(NOTICE)
        self.assertEqual(victim.read_text(), "precious")
        self.assertTrue(promotion.journal.exists())
        self.assert_vault_is_the_old_one()

    def test_a_staging_directory_of_a_dead_install_goes(self):
        self.begin(with_install=True)
        staging = self.hub.products / f"{BEATPAD}.installing-{'2' * 32}"
        (staging / "deep").mkdir(parents=True)
        (staging / "deep" / "half.exe").write_bytes(b"half")
        self.hub.start()
        self.hub.wait_for_card(0, "installed")
        self.assertFalse(staging.exists())
        self.assert_no_box()
