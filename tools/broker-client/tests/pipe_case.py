"""The base of the tests that need a pipe."""

import tempfile
import unittest
from pathlib import Path
from unittest import mock

from broker_client import BrokerClient, fifo
from fake_hub import FakeHub, success


class PipeTest(unittest.TestCase):
    """Every test has folders of its own for the discovery file and the FIFOs."""

    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.runtime, self.fifos = Path(scratch.name) / "Runtime", Path(scratch.name) / "tmp"
        self.fifos.mkdir()
        self.enterContext(mock.patch.object(fifo, "FOLDER", str(self.fifos)))
        self.file = self.runtime / "ai-broker.json"

    def hub(self, *steps, **options) -> FakeHub:
        hub = FakeHub(self.runtime, self.fifos, steps or [success()], **options).start()
        self.addCleanup(hub.stop)
        return hub

    def client(self, timeout=10.0, patience=5.0) -> BrokerClient:
        return BrokerClient(self.file, timeout, patience)
