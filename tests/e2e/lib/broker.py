"""The broker as a client sees it: the reference client, single frames, and the base of the tests that need them."""

import json
import subprocess
import time
import wave
from pathlib import Path

from broker_client import BrokerClient, discovery, new_draft, protocol
from broker_client.errors import Busy, ConnectionEnded, NotListening
from upstream import Upstream

from .case import HubTest, World
from .hubs import broker_access_for
from .waiting import wait_for

CODES = ("message_size", "invalid_json", "protocol_version", "unauthorized", "unsupported_operation", "invalid_request_id",
         "input_size")
HEALTHY = {"ready": True, "model": "gpt-5.6-terra"}
KEY = "sk-e2e-0123456789.abcdef_XYZ"


class BrokerTest(HubTest):
    """A Hub with a secret store of its own, and an AI service that is not listening yet."""

    stores = 0

    def setUp(self):
        super().setUp()
        BrokerTest.stores += 1
        self.access = broker_access_for(self.hub, World.scratch / f"secrets-{BrokerTest.stores}")
        self.addCleanup(self.access.stop)
        for context in self.access.contexts():
            self.enterContext(context)
        self.transport = self.access.transport
        self.upstream = Upstream(World.certificates)
        self.addCleanup(self.upstream.stop)
        self.client = BrokerClient(self.hub.discovery_file)

    def start_with_key(self, key: str = KEY) -> None:
        """A running Hub in which the user has stored a key, and the service listening."""
        self.upstream.start()
        self.hub.start()
        self.hub.save_key(key)

    # ---- the reference client as a command
    def launch_command(self, *arguments) -> subprocess.Popen:
        """Starts it as a user of the Hub's home would."""
        command, environment = self.access.command(*map(str, arguments))
        process = subprocess.Popen(command, env=environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE, text=True)
        self.addCleanup(_end, process)
        return process

    def command(self, *arguments, limit: float = 100.0):
        """Runs it: exit code, standard output, standard error."""
        process = self.launch_command(*arguments)
        out, errors = process.communicate(timeout=limit)
        return process.returncode, out, errors

    def json_command(self, *arguments):
        """Runs it with --json: exit code and what it printed."""
        code, out, errors = self.command(*arguments, "--json")
        self.assertEqual(errors, "")
        return code, json.loads(out)

    # ---- frames of the test's own making
    def found(self) -> discovery.Discovery:
        """The discovery file as soon as there is one of the running Hub."""
        def read():
            try:
                found = discovery.read(self.hub.discovery_file)
                return found if self.hub.has_written(found) else None
            except NotListening:
                return None
        return wait_for(read, "the discovery file", every=0.01)

    def exchange(self, data: bytes, limit: float = 20.0):
        """Sends these bytes and answers with the reply's payload, or None when the Hub closes the pipe without one."""
        end = time.monotonic() + limit
        while True:
            try:
                with self.transport.turn(self.hub.discovery_file.parent, end), self.transport.Connection(self.found()) as connection:
                    try:
                        connection.send(data, end)
                        return connection.receive(protocol.payload_length(connection.receive(4, end)), end)
                    except ConnectionEnded:
                        return None
            except (NotListening, Busy):
                self.assertLess(time.monotonic(), end, "no Hub listened")
                time.sleep(0.005)

    def reply_to(self, payload: bytes) -> dict:
        """The reply to one payload, which there must be."""
        answer = self.exchange(protocol.frame(payload))
        self.assertIsNotNone(answer, "the Hub closed the pipe without a reply")
        return json.loads(answer.decode("utf-8"))

    def request(self, **changes) -> bytes:
        """The payload of a good health request, with these keys changed; None leaves one out."""
        request = {"version": 2, "token": self.found().token, "op": "broker.health", "requestId": "e2e-1", **changes}
        return json.dumps({key: value for key, value in request.items() if value is not None}).encode()

    def assert_alive(self) -> None:
        """The same process still answers."""
        self.assertIsNone(self.hub.process.poll())
        self.assertEqual(self.client.health(), HEALTHY)

    # ---- drafts
    def new_draft(self, source: Path, title: str) -> dict:
        """A draft of a file of this machine, for which the person has the rights."""
        return new_draft(self.hub.recorded_path(source), title, rights_confirmed=True)

    def make_wav(self, seconds: int = 90) -> Path:
        """A silent WAV file in the user's home."""
        return silent_wav(self.hub.home / "mix.wav", seconds)


def silent_wav(file: Path, seconds: int) -> Path:
    """Writes the file and answers with it."""
    with wave.open(str(file), "wb") as writer:
        writer.setnchannels(1)
        writer.setsampwidth(1)
        writer.setframerate(8000)
        writer.writeframes(b"\x80" * 8000 * seconds)
    return file


def _end(process: subprocess.Popen) -> None:
    if process.poll() is None:
        process.kill()
    process.communicate()
