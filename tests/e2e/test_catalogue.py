"""The catalogue: fetched over HTTPS from a server that is good, foreign, silent or confused."""

import json
import subprocess
import time

from lib.case import HubTest, World
from lib.shop import HOST, MANIFEST_URL
from lib.waiting import stays, wait_for

TOOLS = "tools/catalogue-server/make-certs.sh"
THREE = ("zorva-daw-13.0.0", "zorva-stagewell-2.4.0", "zorva-foundry-staples-1.0.0")


class Refresh(HubTest):
    def test_over_https_shows_the_catalogue_and_keeps_it(self):
        self.start_online(*THREE)
        for index in range(3):
            self.hub.wait_for_card(index, "downloadable")
        self.assertEqual(json.loads(self.hub.cache.read_text()), self.shop.catalogue.manifest())
        self.assert_no_leftovers()

    def test_without_a_server_shows_what_was_kept(self):
        self.start_online(*THREE)
        self.assertEqual(self.hub.quit(), 0)
        self.shop.server.stop()
        self.hub.start()
        for index in range(3):
            self.hub.wait_for_card(index, "not downloadable")
        self.assertEqual(self.hub.library().connection(), "offline")

    def test_a_product_that_the_server_drops_leaves_the_library(self):
        self.start_online(*THREE)
        self.assertEqual(self.hub.quit(), 0)
        self.shop.publish("zorva-daw-13.0.0")
        self.hub.start()
        self.hub.wait_online()
        wait_for(lambda: self.hub.library().card(1) == "no card", "the dropped products to go")

    def stays_offline_with_the_fallback(self):
        self.hub.start()
        wait_for(lambda: self.shop.server.requests, "the request")
        self.assertTrue(stays(lambda: self.hub.library().connection() == "offline", 1.5))
        self.hub.wait_for_card(0, "not downloadable")
        self.assertFalse(self.hub.cache.exists())

    def test_an_error_page_changes_nothing(self):
        self.open_shop(*THREE)
        self.shop.rule(path="*", status=500)
        self.stays_offline_with_the_fallback()

    def test_a_manifest_that_breaks_a_rule_changes_nothing(self):
        self.open_shop(*THREE)
        broken = self.shop.folder / "products" / "9-broken.json"
        broken.write_text(json.dumps({"id": "zorva-broken", "name": "B", "version": "1", "installType": "script"}))
        self.stays_offline_with_the_fallback()

    def test_a_redirect_from_https_to_http_is_not_followed(self):
        self.open_shop(*THREE)
        self.shop.rule(path="*", location=f"http://{HOST}/manifest.json")
        self.stays_offline_with_the_fallback()


class ForeignServer(HubTest):
    def refuses(self):
        self.hub.start()
        self.assertTrue(stays(lambda: self.hub.library().connection() == "offline", 2.0))
        self.assertEqual(self.shop.server.requests, [], "a request was sent to a server that has no valid certificate")
        self.assertFalse(self.hub.cache.exists())

    def serve_with_certificates_for(self, name):
        certificates = World.scratch / f"certificates-{name}"
        subprocess.run([str(World.project / TOOLS), str(certificates), name], check=True)
        self.shop.server.certificates = certificates
        self.open_shop(*THREE)

    def test_a_certificate_of_an_unknown_authority_is_refused(self):
        self.serve_with_certificates_for(HOST)
        self.refuses()

    def test_a_certificate_for_another_name_is_refused(self):
        self.shop.publish(*THREE)
        self.shop.server.start()
        self.hub.write_settings(manifestUrl=MANIFEST_URL.replace(HOST, "localhost"))
        self.refuses()


class SilentServer(HubTest):
    def test_the_window_lives_while_the_server_says_nothing(self):
        self.shop.publish(*THREE)
        self.open_shop(*THREE)
        self.shop.server.behaviour.silent = True
        begin = time.monotonic()
        self.hub.start()
        wait_for(lambda: self.shop.server.silent_connections, "the Hub to call")
        for _ in range(5):
            asked = time.monotonic()
            self.hub.select_card(0)
            self.hub.close_pane()
            self.assertLess(time.monotonic() - asked, 3.0)
        self.assertEqual(self.shop.server.silent_connections, 1)
        self.assertLess(time.monotonic() - begin, 30.0)
