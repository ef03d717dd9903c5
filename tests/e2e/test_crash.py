"""Real crashes: the process dies at one exact step of a promotion, and the next start finds the old or the new, whole."""

import shutil

from lib.case import HubTest, World
from lib.hub import sha256_of

DAW, BEATPAD, PACK = "zorva-daw", "zorva-beatpad", "zorva-foundry-staples"
NOTICE = "ZORVA Hub Recovery Notice"
JOURNAL = ".zorva-promotion-" + "[0-9a-f]" * 32 + ".json"

# The journal is written four times: prepared, backup_moved, activated, committed.
JOURNAL_POINTS = [f"{moment}:{number}:{JOURNAL}" for number in (1, 2, 3, 4) for moment in ("before", "after")]


def points_around(record: str):
    return JOURNAL_POINTS + [f"before:1:{record}", f"after:1:{record}"]


class Crash(HubTest):
    def tear_down_to(self, snapshot):
        """Puts the home back as it was."""
        self.hub.kill()
        shutil.rmtree(self.hub.home)
        shutil.copytree(snapshot, self.hub.home, symlinks=True)

    def try_every(self, points, act, check):
        """For each point: the same beginning, `act` with a process that dies there, then two starts, each judged by
        `check`, which answers "old" or "new"; the second must change nothing."""
        self.assertEqual(self.hub.quit(), 0)
        snapshot = self.hub.home.with_name("snapshot")
        shutil.copytree(self.hub.home, snapshot, symlinks=True)
        outcomes = {}
        for point in points:
            with self.subTest(point.replace("[0-9a-f]" * 32, "T")):
                self.tear_down_to(snapshot)
                outcomes[point] = self.crash_at(point, act, check)
        last = f"after:4:{JOURNAL}"
        self.assertEqual(outcomes.get(last), "new", "what was committed stays")
        for point, outcome in outcomes.items():
            if point not in (last, f"before:4:{JOURNAL}"):
                self.assertEqual(outcome, "old", f"what was not committed goes: {point}")

    def crash_at(self, point, act, check):
        self.hub.start_to_crash_at(point, World.killer)
        self.hub.wait_online()
        act()
        self.hub.wait_for_crash()
        self.hub.start()
        self.take_notice()
        outcome = check()
        self.assertIn(outcome, ("old", "new"))
        self.hub.kill()
        before = self.files()
        self.hub.start()
        self.take_notice()
        self.assertEqual(check(), outcome)
        self.assertEqual(self.files(), before)
        return outcome

    def take_notice(self):
        """Whatever recovery had to leave behind is told, and nothing is told when nothing is left."""
        if self.hub.leftovers():
            self.hub.answer(NOTICE)
        else:
            self.assert_no_box()

    def files(self):
        return {str(path): sha256_of(path) for path in self.hub.paths_at_rest(self.hub.home)
                if path.is_file() and path != self.hub.cache}

    def test_in_the_promotion_of_an_update_in_the_vault(self):
        self.start_online("zorva-daw-13.0.0")
        self.download()
        self.install()
        self.shop.publish("zorva-daw-13.1.0")

        def act():
            self.hub.wait_for_card(0, "update available")
            self.hub.click_card_button(0)

        def check():
            record = self.hub.vault_record(DAW)
            self.assertEqual(sha256_of(self.hub.vault / DAW / record["fileName"]), record["sha256"])
            return {"13.0.0": "old", "13.1.0": "new"}[record["version"]]
        self.try_every(points_around("vault.json"), act, check)

    def test_in_the_promotion_of_a_first_download(self):
        self.start_online("zorva-daw-13.0.0")

        def act():
            self.hub.wait_for_card(0, "downloadable")
            self.hub.click_card_button(0)

        def check():
            record = self.hub.vault_record(DAW)
            if record is None:
                self.assertFalse((self.hub.vault / DAW / "ZORVA-DAW-13.0.0.exe").exists())
                return "old"
            self.assertEqual(sha256_of(self.hub.vault / DAW / record["fileName"]), record["sha256"])
            return "new"
        self.try_every(points_around("vault.json"), act, check)

    def test_in_the_promotion_of_a_reinstalled_application(self):
        self.start_online("zorva-beatpad-1.2.0")
        self.download()
        self.install()
        program = self.hub.products / BEATPAD / "ZORVA-Beatpad-1.2.0.exe"
        program.write_bytes(b"an older build")
        installed_at = self.hub.installed()[BEATPAD]["installedAt"]

        def act():
            self.hub.select_card(0)
            self.hub.window.click(self.hub.layout.pane_reinstall.centre)

        def check():
            self.assertEqual([path.name for path in (self.hub.products / BEATPAD).iterdir()], [program.name])
            self.assertEqual(list(self.hub.installed()), [BEATPAD])
            old = self.hub.installed()[BEATPAD]["installedAt"] == installed_at
            self.assertEqual(program.read_bytes() == b"an older build", old)
            return "old" if old else "new"
        self.try_every(points_around("installed.json"), act, check)

    def test_in_the_promotion_of_a_sound_pack(self):
        self.start_online("zorva-foundry-staples-1.0.0")
        self.download()
        folder = self.hub.packs / PACK / "1.0.0"

        def act():
            self.hub.wait_for_card(0, "cached")
            self.hub.click_card_button(0)

        def check():
            if not folder.exists():
                return "old"
            self.assertEqual(len([path for path in folder.rglob("*") if path.is_file()]), 19)
            self.assertTrue((folder / "manifest.json").is_file())
            return "new"
        self.try_every(JOURNAL_POINTS, act, check)
