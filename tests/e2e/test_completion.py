"""Completions: the shipped program between the reference client and an AI service that does not always behave."""

import json
import time

from broker_client import BrokerRefusal
from lib.broker import HEALTHY, KEY, BrokerTest
from lib.waiting import wait_for
from upstream import Answer, error_body, reply_body


class Completion(BrokerTest):
    def test_the_answer_comes_back_and_the_service_saw_exactly_what_it_should(self):
        self.start_with_key()
        self.upstream.answer = Answer(body=reply_body("Regen über dem Hafen 🌧"))
        self.assertEqual(self.json_command("complete", "Ein Lied über Regen?"),
                         (0, {"text": "Regen über dem Hafen 🌧", "upstreamRequestId": "req_0001"}))
        request, = self.upstream.requests
        self.assertEqual((request.method, request.path), ("POST", "/v1/responses"))
        self.assertEqual((request.header("Authorization"), request.header("Content-Type"), request.header("Host")),
                         (f"Bearer {KEY}", "application/json", "api.openai.com"))
        self.assertEqual(list(json.loads(request.body).items()),
                         [("model", "gpt-5.6-terra"), ("input", "Ein Lied über Regen?"), ("store", False), ("max_output_tokens", 2048)])

    def test_the_largest_prompt_goes_out_whole(self):
        self.start_with_key()
        prompt = "0123456789abcdef" * 16384
        self.assertEqual(self.client.complete(prompt)["text"], "A reply.")
        self.assertEqual(json.loads(self.upstream.requests[0].body)["input"], prompt)

    def refusal(self, prompt: str = "x") -> tuple:
        with self.assertRaises(BrokerRefusal) as raised:
            self.client.complete(prompt)
        return raised.exception.code, str(raised.exception), raised.exception.http_status

    def test_every_status_has_its_code_and_message(self):
        rejected = "OpenAI rejected the API key. Replace it in ZORVA Hub Settings."
        credit = "The OpenAI API account has no available credit or quota."
        limited = "OpenAI rate-limited the request. Wait briefly and try again."
        configuration = "OpenAI rejected the pilot request configuration."
        failed, unavailable = "The OpenAI request failed.", "OpenAI is temporarily unavailable. Try again later."
        table = [(401, b"{}", "invalid_key", rejected), (403, b"{}", "invalid_key", rejected), (402, b"{}", "billing", credit),
                 (429, error_body("You exceeded your current QUOTA"), "billing", credit),
                 (429, error_body("slow down"), "rate_limited", limited), (400, b"{}", "bad_request", configuration),
                 (404, b"", "bad_request", configuration), (422, b"{}", "bad_request", configuration),
                 (302, b"", "internal", failed), (409, b"{}", "internal", failed), (500, b"{}", "service_unavailable", unavailable),
                 (503, b"<h1>no</h1>", "service_unavailable", unavailable)]
        self.start_with_key()
        for status, body, code, message in table:
            with self.subTest(status=status, code=code):
                headers = [("Location", "https://api.openai.com/elsewhere")] if status == 302 else []
                self.upstream.answer = Answer(status=status, body=body, headers=headers)
                self.assertEqual(self.refusal(), (code, message, status))
        self.assertEqual({request.path for request in self.upstream.requests}, {"/v1/responses"}, "redirects are not followed")
        self.assertEqual(len(self.upstream.requests), len(table), "nothing is tried again")

    def test_the_request_id_is_found_in_whatever_case_its_header_has(self):
        self.start_with_key()
        for name in ("x-request-id", "X-REQUEST-ID", "X-Request-Id", "OpenAI-Request-ID", "oPENAI-rEQUEST-iD"):
            with self.subTest(name):
                self.upstream.answer = Answer(headers=[("cOnTeNt-TyPe", "application/json"), (name, "  req_77 ")])
                self.assertEqual(self.client.complete("x"), {"text": "A reply.", "upstreamRequestId": "req_77"})
        self.upstream.answer = Answer(headers=[])
        self.assertEqual(self.client.complete("x"), {"text": "A reply.", "upstreamRequestId": ""})

    def test_the_answer_may_have_up_to_393216_bytes(self):
        self.start_with_key()
        body = reply_body("A reply.")
        for size, state_length in ((393216, True), (393216, False)):
            self.upstream.answer = Answer(body=body + b" " * (size - len(body)), state_length=state_length)
            self.assertEqual(self.client.complete("x")["text"], "A reply.")
        for size, status in ((393217, 200), (5000000, 200), (393217, 500)):
            with self.subTest(size=size, status=status):
                self.upstream.answer = Answer(status=status, body=body + b" " * (size - len(body)))
                self.assertEqual(self.refusal(), ("response_too_large", "The OpenAI response exceeded the 384 KB safety limit.", status))

    def test_a_success_without_text_is_no_success(self):
        self.start_with_key()
        for body in (b"", b"no json", b"[]", b"[" * 100000, reply_body(""), b'{"output": 7}', reply_body("cut off")[:-30]):
            with self.subTest(body[:40]):
                self.upstream.answer = Answer(body=body)
                self.assertEqual(self.refusal(), ("invalid_response", "OpenAI returned an empty or unsupported response.", 200))

    def test_a_body_that_breaks_off_is_no_success(self):
        self.start_with_key()
        whole = reply_body("A reply.")
        self.upstream.answer = Answer(body=whole, truncate=len(whole) // 2)
        code, _, status = self.refusal()
        self.assertEqual((code, status), ("invalid_response", 200))

    def test_a_slow_service_is_waited_for(self):
        self.start_with_key()
        self.upstream.answer = Answer(body=reply_body("At last."), head_pause=0.7, body_pause=0.05, piece=10)
        self.assertEqual(self.client.complete("x")["text"], "At last.")

    def test_no_service_at_all_is_the_network(self):
        self.start_with_key()
        self.upstream.stop()
        self.assertEqual(self.refusal(), ("network", "ZORVA Hub could not reach OpenAI. Check your connection.", 0))

    def test_a_service_that_says_nothing_is_the_network_well_before_the_deadline(self):
        self.start_with_key()
        self.upstream.answer = Answer(silence="headers")
        began = time.monotonic()
        self.assertEqual(self.refusal()[0], "network")
        self.assertLess(time.monotonic() - began, 25)
        self.assert_alive()

    def test_a_trickle_ends_with_the_deadline_of_thirty_seconds(self):
        self.start_with_key()
        self.upstream.answer = Answer(body=b" " * 20000 + reply_body("too late"), body_pause=0.1, piece=30)
        began = time.monotonic()
        self.assertEqual(self.refusal(), ("timeout", "The OpenAI request timed out. Try again.", 0))
        self.assertAlmostEqual(time.monotonic() - began, 30.0, delta=2.5)
        self.assert_alive()

    def test_an_answer_that_stalls_half_way_is_no_success_well_before_the_deadline(self):
        self.start_with_key()
        self.upstream.answer = Answer(body=reply_body("A reply."), silence="body", silence_after=50)
        began = time.monotonic()
        self.assertEqual(self.refusal()[0], "invalid_response")
        self.assertLess(time.monotonic() - began, 25)
        self.assert_alive()

    def test_while_a_completion_runs_others_wait_for_their_turn(self):
        self.start_with_key()
        self.upstream.answer = Answer(body=reply_body("slow"), body_pause=2.0)
        completion = self.launch_command("complete", "x")
        wait_for(lambda: self.upstream.requests, "the request at the service")
        began = time.monotonic()
        self.assertEqual(self.json_command("health"), (0, HEALTHY))
        self.assertGreater(time.monotonic() - began, 0.5)
        self.assertEqual(completion.communicate(timeout=20), ("slow\n", ""))

    def test_eight_clients_at_once_are_all_served(self):
        self.start_with_key()
        clients = [self.launch_command("complete", f"number {n}") for n in range(8)]
        for client in clients:
            self.assertEqual(client.communicate(timeout=60), ("A reply.\n", ""))
        self.assertEqual(sorted(json.loads(request.body)["input"] for request in self.upstream.requests),
                         [f"number {n}" for n in range(8)])
