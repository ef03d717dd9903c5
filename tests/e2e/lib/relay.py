"""The transport of the reference client for a Hub under Wine: Windows' own pipes, reached through windows/broker_relay.c.

python3 -m lib.relay PORT ARGUMENT...: the reference client's command, with this transport."""

import ntpath
import socket
import struct
import sys
import time
from types import SimpleNamespace
from unittest import mock

from broker_client import __main__ as command
from broker_client import client, draft
from broker_client.errors import Busy, ConnectionEnded, NotListening, UntrustedBroker, WaitedInVain
from broker_client.windows_pipe import ERROR_FILE_NOT_FOUND, ERROR_PIPE_BUSY, turn

OPENING_LIMIT = 30.0
PIECE = struct.Struct(">I")


class Relay:
    """What the client takes for its module of the system. `port`: answers with the port of the relay that runs."""

    turn = staticmethod(turn)

    def __init__(self, port):
        self._port = port

    def Connection(self, found):    # noqa: N802  (the name of the class in the client's own transports)
        return Connection(self._port(), found.pipe_name)


class Connection:
    """One exchange, as in the client's own transports."""

    def __init__(self, port: int, pipe_name: str):
        self._socket = socket.create_connection(("127.0.0.1", port), OPENING_LIMIT)
        try:
            self._socket.sendall(pipe_name.encode() + b"\n")
            error = int(self._line())
            if error == ERROR_PIPE_BUSY:
                raise Busy
            if error == ERROR_FILE_NOT_FOUND:
                raise NotListening
            if error:
                raise UntrustedBroker(f"the broker's pipe cannot be opened (error {error})")
        except BaseException:
            self.close()
            raise

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self) -> None:
        self._socket.close()

    def _line(self) -> bytes:
        line = b""
        while not line.endswith(b"\n"):
            piece = self._socket.recv(1)
            if not piece:
                raise RuntimeError("the relay ended")
            line += piece
        return line

    def send(self, data: bytes, end: float) -> None:
        self._limit(end)
        try:
            self._socket.sendall(PIECE.pack(len(data)) + data)      # one write for the Hub, as it needs it
        except TimeoutError:
            raise WaitedInVain("the broker took only a part of the request", may_have_been_served=False) from None
        except ConnectionError:
            raise ConnectionEnded from None

    def receive(self, count: int, end: float) -> bytes:
        data = b""
        while len(data) < count:
            self._limit(end)
            try:
                piece = self._socket.recv(count - len(data))
            except TimeoutError:
                raise WaitedInVain("the broker did not reply in time", may_have_been_served=True) from None
            except ConnectionError:
                piece = b""
            if not piece:
                raise ConnectionEnded
            data += piece
        return data

    def _limit(self, end: float) -> None:
        self._socket.settimeout(max(end - time.monotonic(), 0.001))


def as_on_windows(transport):
    """Contexts in which the client speaks through this transport, and takes paths as it does on Windows."""
    return (mock.patch.object(client, "transport", transport), mock.patch.object(draft, "os", SimpleNamespace(path=ntpath)))


if __name__ == "__main__":
    for context in as_on_windows(Relay(lambda: int(sys.argv[1]))):
        context.start()
    sys.exit(command.main(sys.argv[2:]))
