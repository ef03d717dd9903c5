"""Downloads: whole, cancelled, killed, silent, and with every kind of wrong content."""

import http.server
import threading
import time

from lib.case import HubTest
from lib.shop import HOST
from lib.waiting import stays, wait_for

DAW, BEATPAD, PACK = "zorva-daw", "zorva-beatpad", "zorva-foundry-staples"
SLOW = 1_500_000


class Download(HubTest):
    def test_reaches_the_vault_and_shows_its_progress(self):
        self.start_online("zorva-daw-13.0.0")
        self.shop.rule(rate=SLOW)
        self.hub.wait_for_card(0, "downloadable")
        self.hub.click_card_button(0)
        seen = []

        def finished():
            library = self.hub.library()
            seen.append(library.progress())
            return library.card(0) == "cached"
        wait_for(finished, "the download", 30)
        shown = [value for value in seen if value is not None]
        self.assertGreaterEqual(len({round(value, 2) for value in shown}), 4, f"too little progress was seen: {seen}")
        self.assertEqual(shown, sorted(shown))
        wait_for(lambda: self.hub.library().progress() is None, "the progress to go")
        self.assert_vaulted(DAW)
        self.assert_no_leftovers()
        self.assert_no_box()

    def test_the_part_file_grows_beside_the_future_installer(self):
        self.start_online("zorva-daw-13.0.0")
        self.shop.rule(rate=SLOW)
        self.hub.wait_for_card(0, "downloadable")
        self.hub.click_card_button(0)
        part = wait_for(lambda: self.hub.part_file(DAW), "the .part file")
        self.assertEqual(part.name, "ZORVA-DAW-13.0.0.exe.part")
        wait_for(lambda: part.stat().st_size > 1_000_000, "a megabyte")
        self.hub.wait_for_card(0, "busy or no update now")
        self.assertEqual(self.hub.vault_files(DAW), ["ZORVA-DAW-13.0.0.exe.part"])

    def test_of_several_products_comes_one_after_the_other(self):
        self.start_online("zorva-daw-13.0.0", "zorva-beatpad-1.2.0", "zorva-foundry-staples-1.0.0")
        self.shop.rule(rate=4_000_000)
        for index in range(3):
            self.hub.wait_for_card(index, "downloadable")
        for index in range(3):
            self.hub.click_card_button(index)
        for index in range(3):
            self.hub.wait_for_card(index, "cached", 30)
        for product in (DAW, BEATPAD, PACK):
            self.assert_vaulted(product)
        self.assertEqual([request.path for request in self.shop.requests_for("/files/")],
                         ["/files/ZORVA-DAW-13.0.0.exe", "/files/ZORVA-Beatpad-1.2.0.exe",
                          "/files/ZORVA-Foundry-Staples-1.0.0.zip"])

    def test_over_a_redirect_to_another_https_address(self):
        self.start_online("zorva-beatpad-1.2.0")
        address = f"https://{HOST}/files/ZORVA-Beatpad-1.2.0.exe"
        self.shop.rule(path="/files/*.exe", location=address + "?second")
        self.hub.wait_for_card(0, "downloadable")
        self.hub.click_card_button(0)
        self.hub.wait_for_card(0, "cached")
        self.assert_vaulted(BEATPAD)


class Interrupted(HubTest):
    def begin(self, **wishes):
        """A download that has brought a megabyte and goes on slowly."""
        self.start_online("zorva-daw-13.0.0")
        self.shop.rule(**(wishes or {"rate": SLOW}))
        self.hub.wait_for_card(0, "downloadable")
        self.hub.click_card_button(0)
        wait_for(lambda: (self.hub.part_file(DAW) and self.hub.part_file(DAW).stat().st_size > 900_000), "a megabyte")

    def test_killed_and_started_again_it_begins_anew(self):
        self.begin()
        self.hub.kill()
        self.assertIsNotNone(self.hub.part_file(DAW), "the .part file should be what the crash left")
        self.shop.rule()
        self.hub.start()
        self.assertIsNone(self.hub.part_file(DAW))
        self.assert_no_box()
        self.hub.wait_online()
        self.download()
        self.assert_vaulted(DAW)
        self.assert_no_leftovers()

    def test_closing_the_window_quits_at_once_and_asks_nothing(self):
        self.begin()
        asked = time.monotonic()
        self.assertEqual(self.hub.quit(), 0)
        self.assertLess(time.monotonic() - asked, 5.0)

    def test_cancelled_it_leaves_nothing_and_says_nothing(self):
        self.begin()
        self.hub.choose_from_card_menu(0, 2)
        self.hub.wait_for_card(0, "downloadable")
        self.assert_nothing_vaulted(DAW)
        wait_for(lambda: self.hub.library().progress() is None, "the progress to go")
        self.assertTrue(stays(lambda: not self.hub.other_windows(), 1.0))
        self.shop.rule()
        self.download()
        self.assert_vaulted(DAW)

    def cancel_in_silence(self):
        """The window answers for ten seconds of silence; then the cancel works at once."""
        end = time.monotonic() + 10
        while time.monotonic() < end:
            asked = time.monotonic()
            self.hub.select_card(0)
            self.hub.close_pane()
            self.assertLess(time.monotonic() - asked, 10.0)     # against the 30 s of a transfer that gives up
        self.hub.wait_for_card(0, "busy or no update now")
        asked = time.monotonic()
        self.hub.choose_from_card_menu(0, 2)
        self.hub.wait_for_card(0, "downloadable", 4)
        self.assertLess(time.monotonic() - asked, 4.0)
        self.assert_nothing_vaulted(DAW)
        self.assert_no_box()

    def test_a_server_that_falls_silent_in_the_middle(self):
        self.begin(silence="body", silence_after=1_000_000)
        self.cancel_in_silence()

    def test_a_server_that_never_says_a_word(self):
        self.start_online("zorva-daw-13.0.0")
        self.shop.server.behaviour.silent = True
        self.hub.wait_for_card(0, "downloadable")
        self.hub.click_card_button(0)
        wait_for(lambda: self.shop.server.silent_connections, "the Hub to call")
        self.cancel_in_silence()

    def test_closing_the_window_in_silence_quits_at_once(self):
        self.start_online("zorva-daw-13.0.0")
        self.shop.server.behaviour.silent = True
        self.hub.wait_for_card(0, "downloadable")
        self.hub.click_card_button(0)
        wait_for(lambda: self.shop.server.silent_connections, "the Hub to call")
        asked = time.monotonic()
        self.assertEqual(self.hub.quit(), 0)
        self.assertLess(time.monotonic() - asked, 5.0)

    def test_a_server_that_hangs_up(self):
        self.begin()
        self.shop.server.stop()
        self.hub.answer("Download Failed")
        self.assert_nothing_vaulted(DAW)
        self.hub.wait_for_card(0, "downloadable")


class WrongContent(HubTest):
    def fails(self, **wishes):
        """The download fails with its box and leaves nothing; afterwards a good one works."""
        self.start_online("zorva-daw-13.0.0")
        self.shop.rule(**wishes)
        self.hub.wait_for_card(0, "downloadable")
        self.hub.click_card_button(0)
        self.hub.answer("Download Failed")
        self.hub.wait_for_card(0, "downloadable")
        self.assert_nothing_vaulted(DAW)
        self.assert_no_leftovers()
        self.shop.rule()
        self.download()
        self.assert_vaulted(DAW)

    def test_one_flipped_byte(self):
        self.fails(flip=3_000_000)

    def test_one_byte_too_few(self):
        self.fails(shorten=1)

    def test_a_transfer_that_breaks_off(self):
        self.fails(truncate=2_000_000)

    def test_an_error_page(self):
        self.fails(status=404)

    def test_an_error_page_without_a_length(self):
        self.fails(status=500, hide_length=True)

    def test_a_redirect_to_http_is_not_followed(self):
        asked = []

        class Plain(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                asked.append(self.path)
                self.send_error(404)
        server = http.server.ThreadingHTTPServer(("127.0.0.1", 80), Plain)
        self.addCleanup(server.server_close)
        self.addCleanup(server.shutdown)
        threading.Thread(target=server.serve_forever, daemon=True).start()
        self.fails(location=f"http://{HOST}/ZORVA-DAW-13.0.0.exe")
        self.assertEqual(asked, [])

    def test_a_body_far_beyond_its_size_is_stopped(self):
        self.start_online("zorva-daw-13.0.0")
        size = self.shop.product(DAW)["platforms"]["win"]["sizeBytes"]
        for hide_length in (False, True):
            self.shop.rule(extend=2_000_000_000, hide_length=hide_length)
            self.hub.wait_for_card(0, "downloadable")
            self.hub.click_card_button(0)
            self.hub.answer("Download Failed")
            self.assert_nothing_vaulted(DAW)
            self.assertLess(self.shop.requests_for("/files/")[-1].sent, size + 50_000_000)
