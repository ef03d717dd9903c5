"""The Hub is killed or quit in the middle of a request."""

import json
import os
import time

from broker_client import BrokerClient, NoReply
from lib.broker import HEALTHY, BrokerTest
from lib.name_server import SilentNameServer
from lib.waiting import stays, wait_for
from upstream import Answer


class KilledAndQuit(BrokerTest):
    def begin_silent_completion(self):
        """A completion that the service never answers."""
        self.start_with_key()
        self.upstream.answer = Answer(silence="headers")
        completion = self.launch_command("complete", "x", "--timeout", "60")
        wait_for(lambda: self.upstream.requests, "the request at the service")
        return completion

    def test_killed_over_a_completion_the_client_says_that_it_may_have_been_carried_out_and_does_not_repeat_it(self):
        completion = self.begin_silent_completion()
        self.hub.kill()
        self.assertEqual(completion.wait(5), 4)
        self.assertIn("no_reply", completion.communicate()[1])
        self.hub.start()
        self.assertEqual(self.json_command("health"), (0, HEALTHY))
        self.assertEqual(len(self.upstream.requests), 1)
        self.upstream.answer = Answer()
        self.assertEqual(self.client.complete("again")["text"], "A reply.", "the key survived too")

    def test_what_a_killed_hub_leaves_is_taken_for_a_hub_by_nobody(self):
        self.hub.start()
        dead = self.found()
        self.hub.kill()
        self.assertEqual(self.command("health", "--patience", "0.5")[0], 3)
        self.hub.start()
        alive = self.found()
        self.assertNotEqual(alive.pipe_name, dead.pipe_name)
        self.assertNotEqual(alive.token, dead.token)
        for path in self.access.pipes(dead.pipe_name):
            with self.assertRaises(OSError, msg=f"somebody reads {path}"):
                os.open(path, os.O_WRONLY | os.O_NONBLOCK)
            path.unlink()
        self.assert_alive()

    def test_clients_that_wait_while_the_hub_is_away_are_served_by_the_next_one(self):
        draft = self.hub.home / "draft.json"
        draft.write_text(json.dumps(self.new_draft(self.make_wav(), "First")))
        self.hub.start()
        self.found()
        self.hub.kill()
        commands = (("health",), ("key-status",), ("save-draft", draft))
        waiting = [self.launch_command(*arguments, "--patience", "30") for arguments in commands]
        self.assertTrue(stays(lambda: all(client.poll() is None for client in waiting), 0.5))
        self.hub.start()
        self.assertEqual([client.wait(30) for client in waiting], [0, 0, 0])

    def test_killed_again_and_again_under_load_a_client_that_asks_recovers(self):
        for _ in range(3):
            self.hub.start()
            client = BrokerClient(self.hub.discovery_file, timeout=40, patience=30)
            for _ in range(20):
                self.assertEqual(client.health(), HEALTHY)
            self.hub.kill()
        self.hub.start()
        self.assertEqual(client.health(), HEALTHY)

    def quit_quickly(self, completion):
        found = self.found()
        began = time.monotonic()
        self.hub.window.close()
        self.assertEqual(self.hub.process.wait(10), 0)
        self.assertLess(time.monotonic() - began, 3.0)
        self.assertFalse(self.hub.discovery_file.exists())
        self.assertEqual(self.access.pipes(found.pipe_name), [])
        self.assertEqual(completion.wait(5), 4)

    def test_quitting_while_the_service_says_nothing_takes_under_three_seconds_and_leaves_nothing(self):
        self.quit_quickly(self.begin_silent_completion())

    def test_quitting_while_no_name_server_answers_takes_under_three_seconds_and_leaves_nothing(self):
        self.start_with_key()
        server = self.enterContext(SilentNameServer())
        completion = self.launch_command("complete", "x", "--timeout", "60")
        wait_for(lambda: server.was_asked_for("api.openai.com"), "the question for the service's address")
        self.quit_quickly(completion)

    def test_quitting_while_the_service_stalls_in_its_answer_too(self):
        self.start_with_key()
        self.upstream.answer = Answer(silence="body", silence_after=20)
        completion = self.launch_command("complete", "x")
        wait_for(lambda: self.upstream.requests and self.upstream.requests[0].sent == 20, "the beginning of the answer")
        self.quit_quickly(completion)

    def test_a_completion_whose_hub_quits_raises_no_reply(self):
        completion = self.begin_silent_completion()
        self.hub.quit()
        self.assertEqual(completion.wait(5), 4)
        self.assertIn(NoReply.code, completion.communicate()[1])
