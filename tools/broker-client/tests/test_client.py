"""The client against a stand-in for the Hub that behaves as its pipe does on Linux: what comes back, what is tried again, and what
is never sent twice."""

import fcntl
import os
import sys
import threading
import time
import unittest
from pathlib import Path
from unittest import mock

TOOL = Path(__file__).resolve().parents[1]
sys.path[:0] = [str(TOOL), str(TOOL / "tests")]

from broker_client import (BrokerClient, BrokerRefusal, HubNotRunning, NoReply, UntrustedBroker, UnusableReply,  # noqa: E402
                           WaitedInVain)
from broker_client import discovery, fifo  # noqa: E402
from fake_hub import FakeHub, error, framed, raw, silence, success  # noqa: E402
from pipe_case import PipeTest  # noqa: E402


def wait_for_file(file: Path) -> Path:
    end = time.monotonic() + 5
    while not file.exists() and time.monotonic() < end:
        time.sleep(0.005)
    return file


class Exchange(PipeTest):
    def test_health_comes_back(self):
        hub = self.hub(success(ready=True, model="gpt-5.6-terra"))
        self.assertEqual(self.client().health(), {"ready": True, "model": "gpt-5.6-terra"})
        request, = hub.requests
        self.assertEqual((request["version"], request["token"], request["op"]), (2, hub.token, "broker.health"))

    def test_each_operation_has_its_name_and_input(self):
        hub = self.hub()
        client = self.client()
        client.key_status()
        client.complete("Write a hook.")
        client.save_draft({"jobId": "1"})
        self.assertEqual([(r["op"], r.get("input")) for r in hub.requests],
                         [("key.status", None), ("openai.complete", "Write a hook."), ("creator.preview.draft.save", '{"jobId": "1"}')])

    def test_a_request_and_a_reply_larger_than_a_pipe_arrive_whole(self):
        hub = self.hub(lambda hub, request: success(text=request["input"])(hub, request))
        text = "0123456789abcdef" * 16384
        self.assertEqual(self.client().complete(text)["text"], text)
        self.assertEqual(len(hub.requests), 1)

    def test_a_slow_reply_is_waited_for_although_the_end_of_the_pipe_seems_reached(self):
        self.hub(lambda hub, request: time.sleep(0.3) or success(text="late")(hub, request))
        self.assertEqual(self.client().complete("x")["text"], "late")

    def test_an_error_is_raised_and_not_repeated(self):
        hub = self.hub(error("missing_key", "No key.", 0))
        with self.assertRaises(BrokerRefusal) as raised:
            self.client().complete("x")
        self.assertEqual(raised.exception.code, "missing_key")
        self.assertEqual(len(hub.requests), 1)

    def test_twenty_threads_take_turns(self):
        hub = self.hub(lambda hub, request: success(echo=request["requestId"])(hub, request))
        client, echoes = self.client(timeout=30), []
        threads = [threading.Thread(target=lambda: echoes.append(client.health()["echo"])) for _ in range(20)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(sorted(echoes), sorted(request["requestId"] for request in hub.requests))
        self.assertEqual(len(echoes), 20)

    def test_a_reply_that_makes_no_sense_is_unusable(self):
        for data in (b"\x00\x00\x00\x00", b"\x7f\xff\xff\xff", framed([]), b"\x00\x00\x00\x03abc"):
            with self.subTest(data):
                hub = self.hub(raw(data))
                self.assertRaises(UnusableReply, self.client().health)
                hub.stop()


class Retries(PipeTest):
    def test_a_hub_that_starts_meanwhile_is_found(self):
        starter = threading.Timer(0.3, self.hub)
        starter.start()
        self.addCleanup(starter.join)
        self.assertEqual(self.client().health(), {})

    def test_without_a_hub_it_gives_up_when_its_patience_ends(self):
        self.runtime.mkdir()
        began = time.monotonic()
        self.assertRaises(HubNotRunning, self.client(patience=0.3).health)
        self.assertLess(time.monotonic() - began, 3)

    def test_a_hub_that_never_ran_is_not_running(self):
        self.assertRaises(HubNotRunning, self.client(patience=0.1).health)

    def leave_stale_pipe(self):
        """What a kill -9 leaves: the file and the FIFOs, and nobody who reads."""
        dead = FakeHub(self.runtime, self.fifos, [])
        dead.write_discovery()
        os.mkfifo(dead.path("in"))
        os.mkfifo(dead.path("out"))
        return dead

    def test_the_remains_of_a_killed_hub_are_not_taken_for_one(self):
        self.leave_stale_pipe()
        self.assertRaises(HubNotRunning, self.client(patience=0.3).health)

    def test_the_next_hub_is_found_behind_the_remains_of_a_killed_one(self):
        self.leave_stale_pipe()
        starter = threading.Timer(0.3, self.hub)
        starter.start()
        self.addCleanup(starter.join)
        self.assertEqual(self.client().health(), {})

    def test_what_only_asks_and_a_draft_are_sent_again_when_the_hub_closes_without_a_reply(self):
        for call in (BrokerClient.health, BrokerClient.key_status, lambda client: client.save_draft({"jobId": "7"})):
            hub = self.hub(silence, silence, success(done=1))
            self.assertEqual(call(self.client()), {"done": 1})
            self.assertEqual(len(hub.requests), 3)
            self.assertEqual(len({request["requestId"] for request in hub.requests}), 3)
            self.assertEqual(len({request.get("input") for request in hub.requests}), 1)
            hub.stop()

    def test_a_completion_is_never_sent_twice(self):
        hub = self.hub(silence, success(text="paid twice"))
        with self.assertRaises(NoReply) as raised:
            self.client().complete("x")
        self.assertTrue(raised.exception.may_have_been_served)
        self.assertEqual(len(hub.requests), 1)

    def test_a_reply_that_breaks_off_counts_as_none(self):
        hub = self.hub(raw(b"\x00\x00\x00\x10{"), success(whole=1))
        self.assertEqual(self.client().health(), {"whole": 1})
        hub.stop()
        self.hub(raw(b"\x00\x00\x00\x10{"), success())
        self.assertRaises(NoReply, self.client().complete, "x")

    def test_somebody_elses_reply_means_that_even_a_completion_may_be_sent_again(self):
        hub = self.hub(raw(framed({"version": 2, "requestId": "stranger", "ok": True, "payload": {"text": "not yours"}})),
                       success(text="yours"))
        self.assertEqual(self.client().complete("x")["text"], "yours")
        self.assertEqual(len(hub.requests), 2)

    def test_nothing_is_sent_when_the_hubs_five_seconds_are_nearly_over(self):
        hub = self.hub(success(cycle="new"), cycle=1.0)
        with mock.patch.object(fifo, "OLDEST_DISCOVERY", 0.0):      # every copy is too old: nothing may be sent
            with self.assertRaises(WaitedInVain) as raised:
                self.client(timeout=0.5).complete("x")
        self.assertFalse(raised.exception.may_have_been_served)
        self.assertEqual(hub.requests, [])

    def test_a_reply_that_does_not_come_ends_with_the_time_and_says_that_it_may_have_been_served(self):
        released = threading.Event()
        self.hub(lambda hub, request: released.wait(20) and None)
        self.addCleanup(released.set)
        with self.assertRaises(WaitedInVain) as raised:
            self.client(timeout=0.4).complete("x")
        self.assertTrue(raised.exception.may_have_been_served)

    def test_a_client_that_keeps_its_turn_makes_the_next_one_wait(self):
        self.runtime.mkdir()
        hub = self.hub(success())
        handle = os.open(self.runtime, os.O_RDONLY)
        fcntl.flock(handle, fcntl.LOCK_EX)
        with self.assertRaises(WaitedInVain) as raised:
            self.client(timeout=0.3).complete("x")
        self.assertFalse(raised.exception.may_have_been_served)
        self.assertEqual(hub.requests, [])
        os.close(handle)
        self.assertEqual(self.client().complete("x"), {})


class HalvesOfDifferentPipes(PipeTest):
    def test_are_noticed_and_not_used(self):
        hub = self.hub(success(fresh=1))
        real, renewed = fifo._open_own_fifo, []

        def renew_between(path, flags):
            handle = real(path, flags)
            if path.endswith("_out") and not renewed:
                renewed.append(path)
                os.rename(path, path + ".old")              # as when the Hub renews its pipe at this moment
                os.mkfifo(path)
            return handle

        with mock.patch.object(fifo, "_open_own_fifo", renew_between):
            self.assertEqual(self.client().health(), {"fresh": 1})
        self.assertEqual((len(renewed), len(hub.requests)), (1, 1))


class Trust(PipeTest):
    def refuses(self):
        with self.assertRaises(UntrustedBroker) as raised:
            self.client().health()
        return str(raised.exception)

    def test_a_discovery_file_of_another_form_is_refused(self):
        hub = FakeHub(self.runtime, self.fifos, [])
        for changes in ({"version": 3}, {"transport": "carrier_pigeon"}, {"pipeName": "zorva_hub_ai_../../etc"}, {"pipeName": 7},
                        {"token": "A" * 64}, {"token": "a" * 63}, {"pid": "x"}):
            with self.subTest(changes):
                hub.write_discovery(**changes)
                self.assertIn("is not understood", self.refuses())

    def test_a_discovery_file_that_is_no_object_is_refused(self):
        self.runtime.mkdir()
        for text in (b"", b"[]", b"[" * 60000, b"\xff", b"{}", b" " * 70000):
            with self.subTest(text[:10]):
                self.file.write_bytes(text)
                self.assertIn("is not understood", self.refuses())

    def test_a_plain_file_in_the_place_of_a_pipe_is_refused_and_left_alone(self):
        hub = FakeHub(self.runtime, self.fifos, [])
        hub.write_discovery()
        os.mkfifo(hub.path("out"))
        hub.path("in").write_bytes(b"")
        self.assertIn("is not a pipe of this user", self.refuses())
        self.assertEqual(hub.path("in").read_bytes(), b"")

    def test_a_link_in_the_place_of_a_pipe_is_refused(self):
        hub = FakeHub(self.runtime, self.fifos, [])
        hub.write_discovery()
        os.mkfifo(self.fifos / "elsewhere")
        hub.path("out").symlink_to(self.fifos / "elsewhere")
        self.assertIn("cannot be opened", self.refuses())

    def test_a_pipe_of_another_user_is_refused(self):
        self.hub(success())
        found = discovery.read(wait_for_file(self.file))
        with mock.patch.object(fifo.os, "geteuid", lambda: os.getuid() + 1):
            self.assertRaises(UntrustedBroker, fifo.Connection, found)

    def test_a_discovery_file_of_another_user_is_refused(self):
        self.hub(success())
        wait_for_file(self.file)
        with mock.patch.object(discovery.os, "geteuid", lambda: os.getuid() + 1):
            self.assertIn("is not this user's own file", self.refuses())


if __name__ == "__main__":
    unittest.main()
