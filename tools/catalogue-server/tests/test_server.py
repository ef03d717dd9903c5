"""The catalogue server's own tests: they talk to it with Python's client on a port that the system picks."""

import hashlib
import http.client
import json
import socket
import ssl
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

TOOL = Path(__file__).resolve().parents[1]
sys.path.insert(0, str(TOOL))

from catalogue_server.behaviour import Behaviour, Rule, behaviour_from_json  # noqa: E402
from catalogue_server.catalogue import Catalogue  # noqa: E402
from catalogue_server.https_server import CatalogueServer  # noqa: E402

CONTENT = bytes(range(256)) * 1000


class ServerTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory()
        cls.folder = Path(cls.scratch.name)
        subprocess.run([str(TOOL / "make-certs.sh"), str(cls.folder / "certs"), "localhost"], check=True)
        (cls.folder / "products").mkdir()
        (cls.folder / "files").mkdir()
        (cls.folder / "files" / "a b.exe").write_bytes(CONTENT)
        (cls.folder / "products" / "10-a.json").write_text(json.dumps(
            {"id": "a", "name": "A", "version": "1.0", "platforms": {"win": {"file": "a b.exe"}}}))

    @classmethod
    def tearDownClass(cls):
        cls.scratch.cleanup()

    def setUp(self):
        catalogue = Catalogue(self.folder, "https://localhost")
        self.server = CatalogueServer(catalogue, self.folder / "certs", port=0)
        self.server.start()
        self.addCleanup(self.server.stop)

    def get(self, path, timeout=5):
        context = ssl.create_default_context(cafile=str(self.folder / "certs" / "ca.pem"))
        connection = http.client.HTTPSConnection("localhost", self.server.address[1], timeout=timeout, context=context)
        self.addCleanup(connection.close)
        connection.request("GET", path)
        return connection.getresponse()

    def with_rule(self, **wishes):
        self.server.set_behaviour(Behaviour(rules=[Rule(**wishes)]))

    def test_manifest_takes_address_size_and_hash_from_the_file(self):
        manifest = json.loads(self.get("/manifest.json").read())
        self.assertEqual(manifest, {"manifestVersion": 1, "products": [
            {"id": "a", "name": "A", "version": "1.0", "platforms": {"win": {
                "url": "https://localhost/files/a%20b.exe", "sha256": hashlib.sha256(CONTENT).hexdigest(),
                "sizeBytes": len(CONTENT)}}}]})

    def test_a_file_comes_as_it_is_and_is_counted(self):
        self.assertEqual(self.get("/files/a%20b.exe").read(), CONTENT)
        self.assertEqual((self.server.requests[-1].path, self.server.requests[-1].sent), ("/files/a%20b.exe", len(CONTENT)))

    def test_what_is_not_in_the_folder_is_not_found(self):
        for path in ("/files/none", "/files/../products/10-a.json", "/files/%2e%2e%2fproducts%2f10-a.json", "/"):
            self.assertEqual(self.get(path).status, 404, path)

    def test_rate_holds_the_transfer_back(self):
        self.with_rule(rate=500_000)
        begin = time.monotonic()
        self.assertEqual(self.get("/files/a%20b.exe").read(), CONTENT)
        self.assertGreater(time.monotonic() - begin, 0.4)

    def test_flip_changes_one_byte(self):
        self.with_rule(flip=70_000)
        body = self.get("/files/a%20b.exe").read()
        self.assertEqual([i for i in range(len(CONTENT)) if body[i] != CONTENT[i]], [70_000])

    def test_shorten_and_extend_agree_with_the_stated_length(self):
        self.with_rule(shorten=10)
        self.assertEqual(self.get("/files/a%20b.exe").read(), CONTENT[:-10])
        self.with_rule(extend=10)
        self.assertEqual(self.get("/files/a%20b.exe").read(), CONTENT + bytes(10))

    def test_truncate_breaks_its_promise(self):
        self.with_rule(truncate=1000)
        with self.assertRaises(http.client.IncompleteRead) as caught:
            self.get("/files/a%20b.exe").read()
        self.assertEqual(len(caught.exception.partial), 1000)

    def test_hidden_length_states_none(self):
        self.with_rule(hide_length=True)
        answer = self.get("/files/a%20b.exe")
        self.assertIsNone(answer.getheader("Content-Length"))
        self.assertEqual(answer.read(), CONTENT)

    def test_status_and_redirect(self):
        self.with_rule(status=500)
        self.assertEqual(self.get("/manifest.json").status, 500)
        self.with_rule(location="http://localhost/x")
        answer = self.get("/manifest.json")
        self.assertEqual((answer.status, answer.getheader("Location")), (302, "http://localhost/x"))

    def test_silence_before_and_within_the_answer(self):
        self.with_rule(silence="headers")
        with self.assertRaises(TimeoutError):
            self.get("/manifest.json", timeout=0.5)
        self.with_rule(silence="body", silence_after=100)
        answer = self.get("/files/a%20b.exe", timeout=0.5)
        self.assertEqual(answer.read(100), CONTENT[:100])
        with self.assertRaises(TimeoutError):
            answer.read(1)

    def test_silent_server_accepts_and_says_nothing(self):
        self.server.set_behaviour(Behaviour(silent=True))
        with socket.create_connection(self.server.address, timeout=0.5) as connection:
            with self.assertRaises(TimeoutError):
                connection.recv(1)

    def test_stopping_hangs_up_and_refuses(self):
        self.with_rule(silence="body", silence_after=100)
        answer = self.get("/files/a%20b.exe")
        answer.read(100)
        port = self.server.address[1]
        self.server.set_behaviour(Behaviour(listen=False))
        self.assertRaises((http.client.IncompleteRead, OSError), answer.read)
        self.assertRaises(ConnectionRefusedError, socket.create_connection, ("127.0.0.1", port))
        self.server.set_behaviour(Behaviour())
        self.assertEqual(self.get("/manifest.json").status, 200)

    def test_a_control_text_with_an_unknown_name_is_refused(self):
        for value in ({"liste": True}, {"rules": [{"speed": 1}]}):
            self.assertRaises(ValueError, behaviour_from_json, value)
        self.assertEqual(behaviour_from_json({"rules": [{"path": "/x", "rate": 5}]}).rule_for("/x"), Rule(path="/x", rate=5))


if __name__ == "__main__":
    unittest.main()
