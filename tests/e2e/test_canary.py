"""One run of everything with a key that is easy to find; then it is looked for wherever it must not be."""

import base64
import os
import secrets
import signal
import subprocess
import urllib.parse
from pathlib import Path
from unittest import mock

from broker_client import BrokerRefusal, client
from lib.broker import BrokerTest
from lib.case import World
from lib.waiting import wait_for
from upstream import Answer, error_body

BEATPAD = "zorva-beatpad-1.2.0"


def forms_of(key: str):
    """How the key could lie somewhere: plain, in two-byte characters, in hexadecimal, in base64 at any offset, percent-encoded, and
    half of it."""
    plain = key.encode()
    middle = plain[3:-3]
    encoded = {base64.b64encode(b"\0" * offset + plain)[4:-4] for offset in range(3)}
    return {plain, key.encode("utf-16-le"), key.encode("utf-16-be"), plain.hex().encode(), plain.hex().upper().encode(),
            urllib.parse.quote(key, safe="").encode(), middle[:len(middle) // 2], middle[len(middle) // 2:], *encoded}


def find(keys, data: bytes):
    """The forms of the keys that occur in the data."""
    return [form for key in keys for form in forms_of(key) if form in data]


def find_in_tree(keys, *folders):
    """Files below the folders, links not followed, that hold a key in their name or content."""
    found = []
    for folder in folders:
        for parent, names, files in os.walk(folder):
            for name in names + files:
                path = Path(parent) / name
                if find(keys, os.fsencode(name)) or (path.is_file() and not path.is_symlink() and find(keys, path.read_bytes())):
                    found.append(str(path))
    return found


class Recorder:
    """A transport that keeps every byte that crosses the pipe by another."""

    def __init__(self, transport):
        self.frames = []
        self._transport = transport
        self.turn = transport.turn

    def Connection(self, found):    # noqa: N802  (as in the client's own transports)
        connection = self._transport.Connection(found)
        send, receive = connection.send, connection.receive

        def recording_send(data, end):
            self.frames.append(bytes(data))
            send(data, end)

        def recording_receive(count, end):
            self.frames.append(receive(count, end))
            return self.frames[-1]

        connection.send, connection.receive = recording_send, recording_receive
        return connection


class Log(BrokerTest):
    def test_it_names_the_requests_and_nothing_of_what_was_said(self):
        self.start_with_key()
        self.assertEqual(self.client.complete("Hello")["text"], "A reply.")
        self.client.save_draft(self.new_draft(self.make_wav(), "Rain"))
        self.hub.kill()
        log = self.hub.errors.read_text()
        self.assertRegex(log, r"\[HUB\.AI\] request id=client-[0-9a-f]+ status=complete_ok")
        self.assertRegex(log, r"\[HUB\.CREATOR\] request id=client-[0-9a-f]+ status=draft_saved")
        for said in ("Hello", "A reply.", "Rain", "mix.wav"):
            self.assertNotIn(said, log)


# Same user, same rights, but without root's right to look into every process.
UNPRIVILEGED = ["setpriv", "--bounding-set", "-sys_ptrace", "--inh-caps", "-all", "--"]


class Canary(BrokerTest):
    def setUp(self):
        super().setUp()
        self.stored, self.tried = (f"sk-canary.{secrets.token_hex(12)}_{word}" for word in ("stored", "tried"))
        self.keys = (self.stored, self.tried)
        self.seen = []          # (where, bytes) of everything that is no file
        self.transport = Recorder(self.transport)
        self.enterContext(mock.patch.object(client, "transport", self.transport))

    def run_command(self, *arguments):
        code, out, errors = self.command(*arguments)
        self.seen.append((f"output of {arguments[0]}", (out + errors).encode()))
        return code

    def look_at_process(self):
        """What any program of the user may read about the process."""
        process = Path(f"/proc/{self.hub.process.pid}")
        for name in ("cmdline", "environ", "comm", "status", "maps", "limits"):
            self.seen.append((f"/proc {name}", (process / name).read_bytes()))
        for handle in (process / "fd").iterdir():
            try:
                self.seen.append(("/proc fd", os.fsencode(os.readlink(handle))))
            except FileNotFoundError:
                continue                    # closed meanwhile
        self.seen.append(("names in /tmp", "\n".join(os.listdir("/tmp")).encode()))

    def use_everything(self):
        """Catalogue, download, install, settings, key, broker and drafts, with good and bad answers of the service."""
        wav = self.make_wav()
        self.upstream.start()
        self.start_online(BEATPAD)
        self.download()
        self.install()
        self.hub.save_key(self.stored)
        self.hub.press_key_button("test")
        self.hub.type_key(self.tried)
        self.hub.press_key_button("test", until=lambda: len(self.upstream.requests) == 2)
        self.look_at_process()
        for arguments in (("health",), ("key-status",), ("complete", "Hello", "--json"),
                          ("save-draft", "--source", self.hub.recorded_path(wav), "--title", "T", "--confirm-rights")):
            self.assertEqual(self.run_command(*arguments), 0)
        self.client.complete("Hello")
        self.client.save_draft(self.new_draft(wav, "U"))
        # A service that gives the key away must not find a messenger in the Hub.
        gossip = error_body(f"Incorrect API key provided: {self.stored}", self.stored)
        for answer in (Answer(status=401, body=gossip), Answer(status=429, body=gossip), Answer(status=500, body=gossip),
                       Answer(status=400, body=gossip), Answer(body=gossip), Answer(body=gossip, truncate=30)):
            self.upstream.answer = answer
            with self.assertRaises(BrokerRefusal) as raised:
                self.client.complete("Hello")
            self.seen.append(("refusal", str(raised.exception).encode()))
        self.look_at_process()

    def test_the_key_is_nowhere_after_a_test_on_the_page_has_ended_a_completion(self):
        self.start_with_key(self.stored)
        self.upstream.answer = Answer(silence="headers")
        count = len(self.upstream.requests)
        completion = self.launch_command("complete", "Hello")
        wait_for(lambda: len(self.upstream.requests) > count, "the completion at the service")
        self.upstream.answer = Answer(status=401, body=error_body("no"))
        self.hub.press_key_button("test")
        self.assertEqual(completion.wait(10), 1)
        self.seen.append(("output of the cancelled completion", "".join(completion.communicate()).encode()))
        self.look_at_process()
        self.assert_nowhere()

    def assert_nowhere(self):
        # Home, catalogue and the Hub's output lie beside each other; the secret store writes elsewhere.
        self.assertEqual(find_in_tree(self.keys, self.hub.home.parent, "/var/tmp"), [])
        self.assertEqual([where for where, data in self.seen if find(self.keys, data)], [])
        self.assertEqual([frame[:200] for frame in self.transport.frames if find(self.keys, frame)], [])
        self.assertEqual(find(self.keys, self.hub.errors.read_bytes()), [])

    def test_the_key_is_nowhere_but_in_the_store_and_at_the_service(self):
        self.use_everything()
        self.assertEqual({request.header("Authorization") for request in self.upstream.requests},
                         {f"Bearer {self.stored}", f"Bearer {self.tried}"}, "both keys were really used")
        self.assertEqual(self.access.keys(), [self.stored])
        bodies = [request.path.encode() + request.body for request in self.upstream.requests]
        self.assertEqual([body for body in bodies if find(self.keys, body)], [])
        self.assertGreater(len(self.transport.frames), 10)
        self.assert_nowhere()

        # Killed with a key in the field, and quit after the next start, it still is.
        self.hub.type_key(self.tried)
        self.hub.kill()
        self.assert_nowhere()
        self.hub.start()
        self.assertEqual(self.hub.quit(), 0)
        self.assert_nowhere()

    def test_the_token_is_nowhere_but_in_the_discovery_file(self):
        self.hub.start()
        token = self.found().token
        self.client.health()
        self.run_command("health", "--json")
        self.reply_to(self.request(token="0" * 64))
        self.look_at_process()
        replies = [frame for frame in self.transport.frames if token.encode() in frame and b'"ok"' in frame]
        self.assertEqual(replies, [])
        self.assertEqual([where for where, data in self.seen if token.encode() in data], [])
        self.assertNotIn(token, self.hub.errors.read_text())
        self.assertEqual(self.hub.quit(), 0)
        self.assertEqual(find_in_tree((token,), self.hub.home), [])

    def test_the_search_finds_what_is_there(self):
        folder = self.hub.home / "planted"
        folder.mkdir()
        key = self.stored.encode()
        contents = (b"..." + key + b"...", self.stored.encode("utf-16-le"), key.hex().encode(), base64.b64encode(key),
                    base64.b64encode(b"x" + key), base64.b64encode(b"xy" + key), key[:len(key) // 2 + 3])
        for number, content in enumerate(contents):
            with self.subTest(content):
                (folder / str(number)).write_bytes(content)
                self.assertEqual(find_in_tree(self.keys, folder), [str(folder / str(number))])
                (folder / str(number)).unlink()
        (folder / self.stored).write_bytes(b"")
        self.assertEqual(find_in_tree(self.keys, folder), [str(folder / self.stored)])


class Memory(BrokerTest):
    """Builds for people keep other programs of the user, and core files, away from their memory; builds for debugging do not."""

    def is_for_debugging(self) -> bool:
        return World.binary.parent.name == "Debug"

    def may_look_into(self, pid: int) -> bool:
        """Whether another process of the same user may, which is how the system shows what is dumpable."""
        done = subprocess.run([*UNPRIVILEGED, "sh", "-c", f": < /proc/{pid}/mem"], stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL, timeout=10)
        return done.returncode == 0

    def test_other_programs_of_the_user_cannot_read_it(self):
        ordinary = subprocess.Popen([*UNPRIVILEGED, "sleep", "60"])
        self.addCleanup(ordinary.wait)
        self.addCleanup(ordinary.kill)
        wait_for(lambda: Path(f"/proc/{ordinary.pid}/comm").read_text() == "sleep\n", "the ordinary program")
        self.assertTrue(self.may_look_into(ordinary.pid), "otherwise the next lines prove nothing")

        self.hub.prefix = UNPRIVILEGED
        self.hub.start()
        self.assertEqual(self.may_look_into(self.hub.process.pid), self.is_for_debugging())

    @staticmethod
    def way_to_die(process):
        """Aborts it: CLD_KILLED, or CLD_DUMPED when the system made a core of it."""
        process.send_signal(signal.SIGABRT)
        ended = os.waitid(os.P_PID, process.pid, os.WEXITED | os.WNOWAIT)
        process.wait(10)
        return ended.si_code

    def test_a_crash_leaves_no_core(self):
        cores_allowed = ["prlimit", "--core=unlimited"]
        ordinary = subprocess.Popen([*cores_allowed, "sleep", "60"], cwd=self.hub.home)
        wait_for(lambda: Path(f"/proc/{ordinary.pid}/comm").read_text() == "sleep\n", "the ordinary program")
        usual = self.way_to_die(ordinary)
        self.hub.prefix = cores_allowed
        self.hub.start()
        self.assertEqual(self.way_to_die(self.hub.process), usual if self.is_for_debugging() else os.CLD_KILLED)
