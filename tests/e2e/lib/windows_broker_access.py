"""How tests reach the broker of a Hub under Wine, and the key that it keeps: by two small programs in the Hub's Windows."""

import os
import subprocess
import sys
from pathlib import Path

from broker_client.errors import Busy, NotListening

from . import relay
from .broker_access import CLIENT
from .secrets import KEY_NAME
from .windows_hub import WindowsHub

TESTS = Path(__file__).resolve().parents[1]
SOURCES = TESTS / "windows"
COMPILER = "x86_64-w64-mingw32-gcc"
PLACE = Path("Tools")                   # on drive C
RELAY, KEY_READER = "broker_relay", "stored_key"
ERROR_NOT_FOUND = 1168


def build(drive: Path) -> None:
    """Compiles the two programs to their place on this drive."""
    (drive / PLACE).mkdir()
    for name, libraries in ((RELAY, ["-lws2_32"]), (KEY_READER, ["-ladvapi32"])):
        subprocess.run([COMPILER, "-O1", "-s", "-Wall", "-Wextra", "-Werror", "-static", str(SOURCES / f"{name}.c"),
                        "-o", str(drive / PLACE / f"{name}.exe"), *libraries], check=True)


class WindowsBrokerAccess:
    """As BrokerAccess. The key is kept by the Credential Manager of the Hub's Windows, which goes with its home."""

    backend = "Windows Credential Manager"

    def __init__(self, hub: WindowsHub):
        self.hub = hub
        self.transport = relay.Relay(self._port)
        self._relay = self._known_port = None

    def stop(self) -> None:
        if self._relay is not None:
            self._relay.kill()
            self._relay.communicate()

    def contexts(self):
        return relay.as_on_windows(self.transport)

    def keys(self):
        done = subprocess.run(self.hub.command_of(PLACE / f"{KEY_READER}.exe", KEY_NAME), env=self.hub.variables(),
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, timeout=60)
        if done.returncode not in (0, ERROR_NOT_FOUND & 0xFF):      # only the last byte arrives here
            raise AssertionError(f"the Credential Manager cannot be read: {done.returncode}")
        return [done.stdout] if done.returncode == 0 else []

    def command(self, *arguments):
        environment = {**os.environ, "PYTHONPATH": f"{CLIENT}:{TESTS}", "PYTHONDONTWRITEBYTECODE": "1"}
        client = [sys.executable, "-m", relay.__name__, str(self._port())]
        return [*client, *arguments, "--discovery-file", str(self.hub.discovery_file)], environment

    def pipes(self, pipe_name: str):
        try:
            relay.Connection(self._port(), pipe_name).close()
        except NotListening:
            return []
        except Busy:
            pass
        return [pipe_name]

    def _port(self) -> int:
        """The port of the relay, which is started when it is needed first."""
        if self._relay is None:
            self._relay = subprocess.Popen(self.hub.command_of(PLACE / f"{RELAY}.exe"), env=self.hub.variables(),
                                           stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
            self._known_port = int(self._relay.stdout.readline())
        return self._known_port
