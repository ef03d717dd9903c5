"""Frames, requests, replies and drafts, byte by byte."""

import json
import os
import re
import sys
import unittest
from pathlib import Path

TOOL = Path(__file__).resolve().parents[1]
sys.path[:0] = [str(TOOL), str(TOOL / "tests")]

from broker_client import BrokerRefusal, UnusableReply, new_draft  # noqa: E402
from broker_client import discovery, protocol  # noqa: E402


class Framing(unittest.TestCase):
    def test_the_length_is_big_endian_and_does_not_count_itself(self):
        self.assertEqual(protocol.frame(b"{}"), b"\x00\x00\x00\x02{}")

    def test_a_frame_holds_1_to_524288_bytes(self):
        self.assertEqual(protocol.frame(b"x" * 524288)[:4], b"\x00\x08\x00\x00")
        for size in (0, 524289):
            self.assertRaises(ValueError, protocol.frame, b"x" * size)

    def test_a_reply_may_announce_1_to_524288_bytes(self):
        self.assertEqual(protocol.payload_length(b"\x00\x08\x00\x00"), 524288)
        for header in (b"\x00\x00\x00\x00", b"\x00\x08\x00\x01", b"\xff\xff\xff\xff"):
            self.assertRaises(UnusableReply, protocol.payload_length, header)


class Requests(unittest.TestCase):
    def test_holds_the_keys_of_the_protocol(self):
        found = json.loads(protocol.request(protocol.COMPLETE, "t" * 64, "id-1", "Grüße"))
        self.assertEqual(found, {"version": 2, "token": "t" * 64, "op": "openai.complete", "requestId": "id-1", "input": "Grüße"})

    def test_an_operation_without_input_sends_none(self):
        self.assertNotIn("input", json.loads(protocol.request(protocol.HEALTH, "t" * 64, "id-1")))

    def test_the_input_is_1_to_262144_bytes_of_utf_8(self):
        protocol.request(protocol.COMPLETE, "", "", "é" * 131072)
        for text in ("", "é" * 131073):
            self.assertRaises(ValueError, protocol.request, protocol.COMPLETE, "", "", text)

    def test_ids_are_fresh_and_of_the_allowed_form(self):
        ids = {protocol.new_request_id() for _ in range(100)}
        self.assertEqual(len(ids), 100)
        for request_id in ids:
            self.assertRegex(request_id, r"\A[A-Za-z0-9._-]{1,80}\Z")


class Replies(unittest.TestCase):
    def reply(self, **changes):
        return json.dumps({"version": 2, "requestId": "id", "ok": True, "payload": {"a": 1}, **changes}).encode()

    def test_a_success_gives_its_payload(self):
        self.assertEqual(protocol.read_reply(self.reply(), "id"), {"a": 1})

    def test_an_error_gives_code_message_and_status(self):
        with self.assertRaises(BrokerRefusal) as raised:
            protocol.read_reply(self.reply(ok=False, error="rate_limited", message="Wait.", httpStatus=429), "id")
        self.assertEqual((raised.exception.code, str(raised.exception), raised.exception.http_status), ("rate_limited", "Wait.", 429))

    def test_a_reply_with_another_id_is_somebody_elses(self):
        self.assertRaises(protocol.RepliedToAnother, protocol.read_reply, self.reply(requestId="other"), "id")
        self.assertRaises(protocol.RepliedToAnother, protocol.read_reply, self.reply(requestId=""), "id")

    def test_an_error_from_before_the_id_was_read_counts_as_ones_own(self):
        refused = self.reply(requestId="", ok=False, error="unauthorized", message="", httpStatus=0)
        self.assertRaises(BrokerRefusal, protocol.read_reply, refused, "id")
        later = self.reply(requestId="", ok=False, error="input_size", message="", httpStatus=0)
        self.assertRaises(protocol.RepliedToAnother, protocol.read_reply, later, "id")

    def test_what_is_no_reply_is_unusable(self):
        for payload in (b"\xff", b"", b"[]", b"7", b"{}", b"[" * 200000, self.reply(version=3), self.reply(ok=1), self.reply(payload=[]),
                        self.reply(ok=False), self.reply(ok=False, error="x", message="y", httpStatus="z")):
            with self.subTest(payload[:60]):
                self.assertRaises(UnusableReply, protocol.read_reply, payload, "id")


class Document(unittest.TestCase):
    def test_the_worked_example_is_what_this_client_speaks(self):
        text = (TOOL.parents[1] / "docs" / "broker-protocol.md").read_text(encoding="utf-8")
        dumps = [re.findall(r"(?m)^[0-9a-f]{4}  ((?:[0-9a-f]{2} ?)+)  ", block) for block in re.findall(r"(?s)```\n(0000 .*?)```", text)]
        request, reply = (bytes.fromhex("".join(lines)) for lines in dumps)
        for data in (request, reply):
            self.assertEqual(protocol.payload_length(data[:4]), len(data) - 4)
        found = json.loads(re.search(r"(?s)```json\n(.*?)```", text)[1])
        mine = json.loads(protocol.request(protocol.HEALTH, found["token"], "daw-1"))
        self.assertEqual(json.loads(request[4:]), mine)
        self.assertEqual(protocol.read_reply(reply[4:], "daw-1"), {"ready": True, "model": "gpt-5.6-terra"})
        discovery._judge(json.dumps(found).encode(), 0.0, "example")


class Drafts(unittest.TestCase):
    def test_hold_every_required_key_in_its_form(self):
        draft = new_draft("mix.wav", "First", start=5, duration=60, tags=["a"], rights_confirmed=True)
        self.assertRegex(draft.pop("jobId"), r"\A[0-9a-f]{32}\Z")
        self.assertRegex(draft.pop("rightsConfirmedAt"), r"\A\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z\Z")
        self.assertEqual(draft, {"schemaVersion": 1, "sourcePath": os.path.abspath("mix.wav"), "title": "First", "description": "",
                                 "genre": "", "visibility": "private", "rightsConfirmed": True, "origin": "zorva-daw-render-complete",
                                 "previewStartSeconds": 5, "previewDurationSeconds": 60, "tags": ["a"]})

    def test_job_ids_are_fresh_unless_given(self):
        first, second = (new_draft("a.wav", "A", rights_confirmed=True)["jobId"] for _ in range(2))
        self.assertNotEqual(first, second)
        self.assertEqual(new_draft("a.wav", "A", rights_confirmed=True, job_id="7" * 32)["jobId"], "7" * 32)

    def test_cover_and_address_are_there_only_when_given(self):
        draft = new_draft("a.wav", "A", rights_confirmed=True, cover="c.png", release_url="https://example.com/a")
        self.assertEqual((draft["coverArtPath"], draft["fullReleaseUrl"]), (os.path.abspath("c.png"), "https://example.com/a"))
        self.assertFalse({"coverArtPath", "fullReleaseUrl"} & set(new_draft("a.wav", "A", rights_confirmed=True)))


if __name__ == "__main__":
    unittest.main()
