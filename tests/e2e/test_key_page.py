"""The API key on the settings page: typed, saved, tested and deleted as a user does, against a real secret store."""

import json

from lib.broker import KEY, BrokerTest
from lib.case import World
from lib.waiting import wait_for
from upstream import Answer, error_body


class KeyPage(BrokerTest):
    def key_is_present(self) -> bool:
        return self.client.key_status()["present"]

    def picture(self, name: str) -> None:
        """Keeps a picture of the page beside those of failures."""
        World.screen.picture().save(World.pictures / f"settings-{name}.png")

    def test_a_key_is_saved_tested_and_deleted(self):
        self.upstream.start()
        self.hub.start()
        self.hub.open_settings()
        self.assertFalse(self.hub.key_page().can_delete())
        empty = self.hub.key_page().field()
        self.picture("no-key")

        self.hub.type_key(KEY)
        self.picture("typed")
        self.hub.press_key_button("save")
        page = self.hub.key_page()
        self.assertTrue(page.can_delete())
        self.assertNotEqual(page.field(), empty, "the field says that a key is stored")
        self.assertEqual(self.access.keys(), [KEY])
        self.assertTrue(self.key_is_present())
        self.assertEqual(self.upstream.connections, 0, "saving asks nobody")
        self.picture("saved")

        self.hub.press_key_button("test")
        request, = self.upstream.requests
        self.assertEqual(request.header("Authorization"), f"Bearer {KEY}")
        self.assertEqual(list(json.loads(request.body).items()),
                         [("model", "gpt-5.6-terra"), ("input", "Reply with OK."), ("store", False), ("max_output_tokens", 128)])
        self.picture("verified")

        self.hub.press_key_button("delete")
        page = self.hub.key_page()
        self.assertFalse(page.can_delete())
        self.assertEqual(page.field(), empty)
        self.assertEqual(self.access.keys(), [])
        self.assertFalse(self.key_is_present())

    def test_testing_a_typed_key_does_not_store_it(self):
        self.upstream.start()
        self.hub.start()
        self.hub.open_settings()
        self.hub.type_key("sk-only-tried")
        self.hub.press_key_button("test")
        self.assertEqual([request.header("Authorization") for request in self.upstream.requests], ["Bearer sk-only-tried"])
        self.assertEqual(self.access.keys(), [])
        self.assertFalse(self.hub.key_page().can_delete())

    def test_another_key_replaces_the_first(self):
        self.hub.start()
        self.hub.save_key(KEY)
        self.hub.type_key("sk-second")
        before = self.hub.key_page().field()
        self.hub.window.click(self.hub.layout.key_button("save").centre)
        wait_for(lambda: self.hub.key_page().field() != before, "the field to be wiped")
        wait_for(lambda: self.access.keys() == ["sk-second"], "the second key in the store")

    def test_saving_nothing_stores_nothing(self):
        self.hub.start()
        self.hub.open_settings()
        self.hub.press_key_button("save")
        self.assertEqual(self.access.keys(), [])

    def test_a_key_that_the_service_refuses_stays_until_it_is_replaced(self):
        self.start_with_key()
        self.upstream.answer = Answer(status=401, body=error_body("Incorrect API key provided"))
        self.hub.press_key_button("test")
        self.assertEqual(len(self.upstream.requests), 1)
        self.assertEqual(self.access.keys(), [KEY])
        self.picture("refused")

    def test_a_test_on_the_page_takes_precedence_over_a_running_completion(self):
        self.start_with_key()
        self.upstream.answer = Answer(silence="headers")
        completion = self.launch_command("complete", "x")
        wait_for(lambda: self.upstream.requests, "the completion at the service")
        self.upstream.answer = Answer()
        self.hub.press_key_button("test")
        self.assertEqual(completion.wait(10), 1)
        self.assertIn("network", completion.communicate()[1])
        self.assertEqual(json.loads(self.upstream.requests[-1].body)["input"], "Reply with OK.")

    def test_the_key_survives_a_restart(self):
        self.start_with_key()
        self.assertEqual(self.hub.quit(), 0)
        self.hub.start()
        self.assertTrue(self.key_is_present())
        self.hub.open_settings()
        self.assertTrue(self.hub.key_page().can_delete())
