"""The file by which the Hub tells where its broker listens."""

import json
import os
import re
import stat
import time
from dataclasses import dataclass
from pathlib import Path

from .errors import NotListening, UntrustedBroker
from .protocol import VERSION

TRANSPORT = "length_prefixed_named_pipe"
MAXIMUM_BYTES = 65536


def default_file() -> Path:
    """Where the Hub of this user keeps the file."""
    configuration = Path(os.environ["APPDATA"]) if os.name == "nt" else Path.home() / ".config"
    return configuration / "ZORVA Hub" / "Runtime" / "ai-broker.json"


@dataclass(frozen=True)
class Discovery:
    pipe_name: str
    token: str
    pid: int
    written: float          # the file's time stamp, in seconds since the epoch

    def age(self) -> float:
        """Seconds since this copy was written; 0 when the clock was set back."""
        return max(time.time() - self.written, 0.0)


def read(file: Path) -> Discovery:
    """Reads the file. Raises NotListening while there is none and UntrustedBroker for one that this client must not believe."""
    try:
        with open(file, "rb") as stream:
            status = os.fstat(stream.fileno())
            text = stream.read(MAXIMUM_BYTES + 1)
    except (FileNotFoundError, NotADirectoryError):
        raise NotListening from None
    except PermissionError:
        if os.name == "nt":                     # it is being replaced at this moment
            raise NotListening from None
        raise UntrustedBroker(f"{file} cannot be read") from None
    if not stat.S_ISREG(status.st_mode) or (os.name != "nt" and status.st_uid != os.geteuid()):
        raise UntrustedBroker(f"{file} is not this user's own file")
    return _judge(text, status.st_mtime, file)


def _judge(text: bytes, written: float, file: Path) -> Discovery:
    try:
        if len(text) > MAXIMUM_BYTES:
            raise ValueError("it is too long")
        found = json.loads(text.decode("utf-8"))
        if found["version"] != VERSION or found["transport"] != TRANSPORT:
            raise ValueError("it speaks of another version of the protocol")
        if not re.fullmatch("zorva_hub_ai_[0-9a-f]{32}", found["pipeName"]) or not re.fullmatch("[0-9a-f]{64}", found["token"]):
            raise ValueError("its pipe name or token has another form")
        return Discovery(found["pipeName"], found["token"], int(found["pid"]), written)
    except (ValueError, KeyError, TypeError, RecursionError) as error:
        raise UntrustedBroker(f"{file} is not understood: {error}") from None
