"""Hostile frames: every rejection in its order, 500 random and 500 mutated frames, and a Hub that lives on."""

import json
import random
import struct

from broker_client import protocol
from lib.broker import CODES, HEALTHY, BrokerTest

REJECTED = "The local broker request was rejected."


class Rejections(BrokerTest):
    def assert_rejected(self, payload: bytes, code: str, request_id: str):
        self.assertEqual(list(self.reply_to(payload).items()),
                         [("version", 2), ("requestId", request_id), ("ok", False), ("error", code), ("message", REJECTED),
                          ("httpStatus", 0)])

    def test_the_first_failure_in_order_is_the_one_that_is_told(self):
        self.hub.start()
        wrong = "f" * 64
        everything_wrong = dict(version=3, token=wrong, op="no", requestId="a b")
        table = [(b"[1, 2]", "invalid_json", ""), (b"nonsense", "invalid_json", ""), (b"\xff\xfe{}", "invalid_json", ""),
                 (b"\xef\xbb\xbf" + self.request(), "invalid_json", ""), (b"[" * 40000, "invalid_json", ""),
                 (b'{"a":' * 40000 + b"1" + b"}" * 40000, "invalid_json", ""),
                 (self.request(**everything_wrong), "protocol_version", ""),
                 (self.request(**{**everything_wrong, "version": 2}), "unauthorized", ""),
                 (self.request(token=self.found().token[:63]), "unauthorized", ""), (self.request(token=None), "unauthorized", ""),
                 (self.request(op="no", requestId="a b"), "unsupported_operation", "a b"),
                 (self.request(op="Broker.health"), "unsupported_operation", "e2e-1"),
                 (self.request(requestId="a b"), "invalid_request_id", "a b"), (self.request(requestId=""), "invalid_request_id", ""),
                 (self.request(requestId="x" * 81), "invalid_request_id", "x" * 81),
                 (self.request(op="openai.complete", requestId="a/b", input=""), "invalid_request_id", "a/b"),
                 (self.request(op="openai.complete"), "input_size", "e2e-1"),
                 (self.request(op="openai.complete", input=""), "input_size", "e2e-1"),
                 (self.request(op="openai.complete", input="x" * 262145), "input_size", "e2e-1"),
                 (self.request(op="creator.preview.draft.save", input=""), "input_size", "e2e-1")]
        for payload, code, request_id in table:
            with self.subTest(payload[:120], code=code):
                self.assert_rejected(payload, code, request_id)
        self.assert_alive()

    def test_what_is_unusual_but_right_is_served(self):
        self.hub.start()
        for changes in ({"version": "2"}, {"version": 2.5}, {"version": 4294967298}, {"requestId": "x" * 80},
                        {"requestId": "Ünï.cödé-7_"}, {"input": 7}, {"more": [1]}):
            with self.subTest(changes):
                reply = self.reply_to(self.request(**changes))
                self.assertEqual((reply["ok"], reply.get("payload")), (True, HEALTHY))
                self.assertEqual(reply["requestId"], changes.get("requestId", "e2e-1"))

    def test_a_bad_length_or_half_a_frame_gets_no_reply_and_the_next_client_is_served(self):
        self.hub.start()
        for header in (0, 0x80001, 0xFFFFFFFF):
            with self.subTest(header):
                self.assertIsNone(self.exchange(struct.pack(">I", header) + self.request()))
                self.assert_alive()
        self.assertIsNone(self.exchange(protocol.frame(self.request())[:-1]), "five seconds, then the Hub gives up")
        self.assert_alive()

    def test_500_random_frames_are_all_rejected_and_the_hub_lives(self):
        self.hub.start()
        process, source = self.hub.process.pid, random.Random(20260504)
        for number in range(500):
            payload = self.random_payload(source)
            reply = self.reply_to(payload)
            self.assertFalse(reply["ok"], payload)
            self.assertIn(reply["error"], ("invalid_json", "protocol_version", "unauthorized"), f"number {number}")
            self.assertEqual(reply["requestId"], "")
        self.assertEqual(self.hub.process.pid, process)
        self.assert_alive()

    @staticmethod
    def random_payload(source) -> bytes:
        """Any bytes, what looks like JSON, or a good request with a token out of the air."""
        size, kind = source.choice((1, 7, 64, 700, 5000)), source.randrange(3)
        if kind == 0:
            return source.randbytes(size)
        if kind == 1:
            return bytes(source.choice(b'{}[]",:0eE-.\\u tfn') for _ in range(size))
        return json.dumps({"version": 2, "token": source.randbytes(32).hex(), "op": "broker.health", "requestId": "r"}).encode()

    def test_500_mutated_frames_never_stop_the_hub(self):
        wav = self.make_wav(31)
        self.hub.start()
        source, outcomes = random.Random(20260505), {}
        draft = json.dumps(self.new_draft(wav, "M"))
        kinds = ((protocol.HEALTH, None), (protocol.KEY_STATUS, None), (protocol.COMPLETE, "x"), (protocol.SAVE_DRAFT, draft))
        for number in range(500):
            op, text = source.choice(kinds)
            payload = bytearray(protocol.request(op, self.found().token, f"m-{number}", text))
            for _ in range(source.randrange(1, 5)):
                self.mutate(source, payload)
            reply = self.reply_to(bytes(payload))
            outcome = "ok" if reply["ok"] else reply["error"]
            outcomes[outcome] = outcomes.get(outcome, 0) + 1
        self.assertLessEqual({"invalid_json", "unauthorized"}, set(outcomes), outcomes)
        self.assertGreater(sum(count for code, count in outcomes.items() if code in CODES), 100, outcomes)
        self.assert_alive()

    @staticmethod
    def mutate(source, payload: bytearray) -> None:
        """One change: a flipped bit, a byte replaced, a piece left out, or a piece said twice."""
        place = source.randrange(len(payload))
        length = source.randrange(1, 20)
        kind = source.randrange(4)
        if kind == 0:
            payload[place] ^= 1 << source.randrange(8)
        elif kind == 1:
            payload[place] = source.randrange(256)
        elif kind == 2 and len(payload) > 40:
            del payload[place:place + length]
        else:
            payload[place:place] = payload[place:place + length]
