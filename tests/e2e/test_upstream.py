"""The stand-in for the AI service does what it is told; otherwise the broker's tests would prove nothing."""

import http.client
import json
import socket
import ssl
import time
import unittest

from lib.case import World
from upstream import HOST, Answer, Upstream, error_body, reply_body


class UpstreamTest(unittest.TestCase):
    def setUp(self):
        self.upstream = Upstream(World.certificates).start()
        self.addCleanup(self.upstream.stop)

    def post(self, body=b"{}", timeout=5, **headers):
        """Status, headers and body of the answer, by Python's client, which trusts what the world trusts."""
        context = ssl.create_default_context(cafile=str(World.certificates / "ca.pem"))
        connection = http.client.HTTPSConnection(HOST, timeout=timeout, context=context)
        self.addCleanup(connection.close)
        connection.request("POST", "/v1/responses", body, headers)
        response = connection.getresponse()
        return response.status, response.getheaders(), response.read()

    def test_records_a_request_and_answers_in_the_services_shape(self):
        status, headers, body = self.post(b'{"input": "x"}', Authorization="Bearer k")
        self.assertEqual((status, dict(headers)["x-request-id"]), (200, "req_0001"))
        self.assertEqual(json.loads(body)["output"][1]["content"][0]["text"], "A reply.")
        request, = self.upstream.requests
        self.assertEqual((request.method, request.path, request.header("authorization"), request.body),
                         ("POST", "/v1/responses", "Bearer k", b'{"input": "x"}'))
        self.assertEqual(request.sent, len(body))

    def test_headers_go_out_in_the_case_that_is_asked_for(self):
        self.upstream.answer = Answer(status=429, body=error_body("slow down"), headers=[("X-rEqUeSt-iD", "7")])
        status, headers, body = self.post()
        self.assertEqual((status, headers[0], json.loads(body)["error"]["message"]), (429, ("X-rEqUeSt-iD", "7"), "slow down"))

    def test_an_answer_may_follow_the_request(self):
        self.upstream.answer = lambda request: Answer(body=reply_body(request.body.decode(), shortcut=True))
        self.assertEqual(json.loads(self.post(b"echo")[2])["output_text"], "echo")

    def test_pauses_in_head_and_body(self):
        self.upstream.answer = Answer(body=b"0123456789", head_pause=0.05, body_pause=0.05, piece=5)
        began = time.monotonic()
        self.assertEqual(self.post()[2], b"0123456789")
        self.assertGreater(time.monotonic() - began, 0.3)

    def test_silence_in_handshake_headers_and_body(self):
        for silence in ("handshake", "headers", "body"):
            with self.subTest(silence):
                self.upstream.answer = Answer(silence=silence, silence_after=3)
                self.assertRaises((TimeoutError, ssl.SSLError), self.post, timeout=0.5)

    def test_an_answer_breaks_off_where_it_should(self):
        self.upstream.answer = Answer(body=b"0123456789", truncate=4)
        with self.assertRaises(http.client.IncompleteRead) as raised:
            self.post()
        self.assertEqual(raised.exception.partial, b"0123")

    def test_without_a_stated_length_the_end_of_the_connection_ends_the_body(self):
        self.upstream.answer = Answer(body=b"x" * 400000, state_length=False)
        _, headers, body = self.post()
        self.assertNotIn("Content-Length", dict(headers))
        self.assertEqual(len(body), 400000)

    def test_stopped_it_refuses(self):
        self.upstream.stop()
        self.assertRaises(ConnectionRefusedError, socket.create_connection, self.upstream.address, 2)
