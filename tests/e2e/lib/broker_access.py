"""How tests reach the broker of a Hub, and the key that it keeps, as the user's other programs do."""

import os
from pathlib import Path

from broker_client import fifo

from .secrets import SecretService

PROJECT = Path(__file__).resolve().parents[3]
CLIENT = PROJECT / "tools" / "broker-client"


class BrokerAccess:
    """On Linux: FIFOs, and a secret store of the Hub's own, which writes below `folder`. Ends with stop()."""

    backend = "Secret Service"
    transport = fifo

    def __init__(self, hub, folder: Path):
        self.hub = hub
        self._secrets = SecretService(folder)
        hub.environment |= self._secrets.environment

    def stop(self) -> None:
        self._secrets.stop()

    def contexts(self):
        """What has to be entered for the reference client to find this Hub."""
        return ()

    def keys(self):
        """The keys that are stored under the Hub's name."""
        return self._secrets.keys()

    def command(self, *arguments):
        """The reference client as the user's shell starts it, and what it needs in its environment."""
        return [str(CLIENT / "broker-client"), *arguments], {**os.environ, "HOME": str(self.hub.home)}

    def pipes(self, pipe_name: str):
        """What there is of this pipe."""
        return [path for path in fifo_paths(pipe_name) if path.exists()]


def fifo_paths(pipe_name: str):
    """The pipe's two ends."""
    return [Path(f"{fifo.FOLDER}/{pipe_name}_{end}") for end in ("in", "out")]
