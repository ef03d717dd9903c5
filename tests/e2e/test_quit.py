"""The window is closed while something is open or under way: the process ends in order, soon, and asks nothing."""

from lib.broker import KEY, BrokerTest
from lib.case import HubTest
from lib.waiting import wait_for
from upstream import Answer


class WithSomethingOpen(HubTest):
    def test_a_menu(self):
        self.start_online("zorva-beatpad-1.2.0")
        self.hub.wait_for_card(0, "downloadable")
        self.hub.window.click(self.hub.layout.card_menu(0).centre)
        wait_for(lambda: self.hub.screen.popups(), "the menu")
        self.assertEqual(self.hub.quit(), 0)

    def test_a_question(self):
        self.start_online("zorva-beatpad-1.2.0")
        self.download()
        self.hub.choose_from_card_menu(0, 2)
        self.hub.box("Delete from Vault")
        self.assertEqual(self.hub.quit(), 0)
        self.assert_vaulted("zorva-beatpad")

    def test_the_news_of_an_install(self):
        self.start_online("zorva-beatpad-1.2.0")
        self.download()
        self.hub.click_card_button(0)
        self.hub.box("Install Complete")
        self.assertEqual(self.hub.quit(), 0)


class DuringAKeyTest(BrokerTest):
    def test_that_is_never_answered(self):
        self.upstream.start()
        self.upstream.answer = Answer(silence="headers")
        self.hub.start()
        self.hub.open_settings()
        self.hub.type_key(KEY)
        self.hub.window.click(self.hub.layout.key_button("test").centre)
        wait_for(lambda: self.upstream.requests, "the request at the service")
        self.assertEqual(self.hub.quit(), 0)
        self.assertEqual(self.access.keys(), [])
