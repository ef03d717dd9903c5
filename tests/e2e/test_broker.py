"""The AI broker by the reference client: its discovery file, its answers without a key, and drafts."""

import json
import os
import stat
from pathlib import Path

from broker_client import BrokerRefusal
from lib.broker import HEALTHY, BrokerTest
from lib.broker_access import fifo_paths
from lib.waiting import wait_for

REFUSED = "ZORVA Hub could not save the local preview draft."


def mode_of(file: Path) -> int:
    return stat.S_IMODE(file.stat().st_mode)


class WithoutKey(BrokerTest):
    def test_health_and_key_status_answer(self):
        self.hub.start()
        self.assertEqual(self.json_command("health"), (0, HEALTHY))
        self.assertEqual(self.json_command("key-status"), (0, {"present": False, "backend": self.access.backend}))
        self.assertEqual(self.command("health"), (0, "ready, model gpt-5.6-terra\n", ""))

    def test_a_completion_says_that_the_key_is_missing_and_asks_nobody(self):
        self.upstream.start()
        self.hub.start()
        self.assertEqual(self.json_command("complete", "Hello"),
                         (1, {"ok": False, "error": "missing_key", "message": "No OpenAI API key is stored in ZORVA Hub.",
                              "httpStatus": 0}))
        self.assertEqual(self.upstream.connections, 0)

    def test_without_any_secret_store_the_broker_still_answers(self):
        self.hub.environment.clear()
        self.hub.start()
        self.assertEqual(self.json_command("health"), (0, HEALTHY))
        self.assertEqual(self.json_command("key-status"), (0, {"present": False, "backend": self.access.backend}))


class Discovery(BrokerTest):
    def test_file_and_pipes_are_private_and_the_file_holds_its_keys_in_order(self):
        self.hub.start()
        found = self.found()
        seen = wait_for(lambda: self.look(found), "the file and both pipes at once", every=0.005)
        self.assertEqual(seen["modes"], [0o600, 0o600, 0o600])
        self.assertEqual(mode_of(self.hub.discovery_file.parent), 0o700)
        self.assertEqual(seen["owners"], {os.getuid()})
        value = json.loads(seen["text"].decode())
        self.assertEqual(list(value), ["version", "transport", "pipeName", "token", "pid", "startedAt"])
        self.assertEqual((value["version"], value["transport"], value["pid"]), (2, "length_prefixed_named_pipe", self.hub.process.pid))
        self.assertRegex(value["startedAt"], r"\A\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}([+-]\d\d:\d\d|Z)\Z")
        self.assertEqual(seen["text"].count(b"\n"), seen["text"].count(b"\r\n"))
        self.assertGreater(seen["text"].count(b"\r\n"), 6)

    def look(self, found):
        try:
            files = [self.hub.discovery_file, *fifo_paths(found.pipe_name)]
            return {"modes": [mode_of(file) for file in files], "owners": {file.stat().st_uid for file in files},
                    "text": self.hub.discovery_file.read_bytes()}
        except FileNotFoundError:
            return None                     # just being renewed

    def test_an_idle_hub_renews_the_file_every_five_seconds_and_keeps_name_and_token(self):
        self.hub.start()
        first = self.found()
        renewed = wait_for(lambda: self.found() if self.found().written > first.written else None, "the next cycle", 7)
        again = wait_for(lambda: self.found() if self.found().written > renewed.written else None, "the cycle after that", 7)
        self.assertEqual({(f.pipe_name, f.token, f.pid) for f in (renewed, again)}, {(first.pipe_name, first.token, first.pid)})
        self.assertAlmostEqual(again.written - renewed.written, 5.0, delta=0.7)

    def test_quitting_leaves_neither_file_nor_pipes(self):
        self.hub.start()
        name = self.found().pipe_name
        self.assertEqual(self.hub.quit(), 0)
        self.assertFalse(self.hub.discovery_file.exists())
        self.assertEqual(self.access.pipes(name), [])
        self.assertEqual(self.command("health", "--patience", "0.5")[0], 3)


class Drafts(BrokerTest):
    def records(self):
        return sorted(self.hub.drafts.iterdir()) if self.hub.drafts.is_dir() else []

    def test_a_draft_becomes_a_record_without_the_consent(self):
        wav = self.make_wav()
        self.hub.start()
        code, payload = self.json_command("save-draft", "--source", self.hub.recorded_path(wav), "--title", "Régen", "--start", "30", "--duration", "60",
                                          "--tag", "ambient", "--tag", "rain", "--confirm-rights")
        self.assertEqual(code, 0)
        self.assertEqual(payload, {"accepted": True, "jobId": payload["jobId"], "status": "draft-local", "idempotentReplay": False,
                                   "serviceAvailable": False, "requiresFreshHubConfirmation": True})
        record_file, = self.records()
        self.assertEqual(record_file.name, payload["jobId"] + ".json")
        self.assertTrue(self.hub.is_private(record_file))
        text = record_file.read_bytes()
        self.assertNotIn(b"\n", text)
        record = json.loads(text)
        self.assertRegex(record.pop("payloadHash"), r"\A[0-9a-f]{64}\Z")
        self.assertRegex(record.pop("renderPreparationRightsAcknowledgedAt"), r"\A\d{4}-")
        self.assertRegex(record.pop("savedAt"), r"\A\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}")
        self.assertEqual(record, {
            "schemaVersion": 1, "jobId": payload["jobId"], "sourcePath": self.hub.recorded_path(wav), "title": "Régen", "description": "", "genre": "",
            "origin": "zorva-daw-render-complete", "previewStartSeconds": 30, "previewDurationSeconds": 60, "tags": ["ambient", "rain"],
            "renderPreparationRightsAcknowledged": True, "localDraftVisibility": "private", "status": "Draft",
            "serviceAvailable": False, "hubTransferConsent": False, "requiresFreshRightsAndVisibilityConfirmation": True})

    def test_the_same_draft_again_is_a_replay_and_another_under_its_id_a_conflict(self):
        draft = self.new_draft(self.make_wav(), "First")
        self.hub.start()
        self.assertFalse(self.client.save_draft(draft)["idempotentReplay"])
        before = self.records()[0].read_bytes()
        self.assertTrue(self.client.save_draft(draft)["idempotentReplay"])
        file = self.hub.home / "draft.json"
        file.write_text(json.dumps({**draft, "title": "Second"}))
        self.assertEqual(self.json_command("save-draft", file),
                         (1, {"ok": False, "error": "job_id_conflict", "message": REFUSED, "httpStatus": 0}))
        self.assertEqual([record.read_bytes() for record in self.records()], [before])

    def test_a_replay_is_recognised_by_the_next_hub(self):
        draft = self.new_draft(self.make_wav(), "First")
        self.hub.start()
        self.client.save_draft(draft)
        self.hub.kill()
        self.hub.start()
        self.assertTrue(self.client.save_draft(draft)["idempotentReplay"])

    def test_every_reason_to_refuse_one_writes_nothing(self):
        def home(*names):
            return self.hub.recorded_path(self.hub.home.joinpath(*names))
        wav = self.make_wav()
        (self.hub.home / "plain.wav").write_bytes(b"no sound" * 100)
        (self.hub.home / "cover.png").write_bytes(b"no picture")
        good = self.new_draft(wav, "First")
        table = [({"schemaVersion": 2}, "unsupported_schema"), ({"jobId": "0" * 32}, "invalid_metadata"),
                 ({"title": " "}, "invalid_metadata"), ({"visibility": "public"}, "invalid_metadata"),
                 ({"rightsConfirmed": False}, "invalid_metadata"), ({"rightsConfirmedAt": "yesterday"}, "invalid_metadata"),
                 ({"previewDurationSeconds": 45}, "invalid_metadata"), ({"fullReleaseUrl": "http://example.com/"}, "invalid_metadata"),
                 ({"tags": ["x"] * 17}, "invalid_tags"), ({"tags": None}, "invalid_tags"),
                 ({"sourcePath": "mix.wav"}, "invalid_source_wav"), ({"sourcePath": home("no.wav")}, "invalid_source_wav"),
                 ({"sourcePath": home("..", self.hub.home.name, "mix.wav")}, "invalid_source_wav"),
                 ({"sourcePath": home("plain.wav")}, "preview_out_of_range"), ({"previewStartSeconds": 61}, "preview_out_of_range"),
                 ({"coverArtPath": home("cover.png")}, "invalid_cover_art")]
        self.hub.start()
        for changes, reason in table:
            with self.subTest(changes):
                self.assert_refused({**good, **changes}, reason)
        self.assertEqual(self.records(), [])

    def test_a_link_to_a_wav_is_refused(self):
        link = self.hub.home / "link.wav"
        link.symlink_to(self.make_wav())
        self.hub.start()
        self.assert_refused(self.new_draft(link, "First"), "invalid_source_wav")
        self.assertEqual(self.records(), [])

    def assert_refused(self, draft: dict, reason: str):
        with self.assertRaises(BrokerRefusal) as raised:
            self.client.save_draft(draft)
        self.assertEqual((raised.exception.code, str(raised.exception)), (reason, REFUSED))
