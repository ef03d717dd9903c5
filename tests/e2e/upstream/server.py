"""The server: one thread a connection, one request a connection."""

import select
import socket
import ssl
import threading
from dataclasses import dataclass, field
from pathlib import Path

from .answer import Answer

HOST = "api.openai.com"
ADDRESS = "127.0.0.2"           # where run.sh lets the name lead, so that the catalogue can have port 443 of 127.0.0.1
TICK = 0.05
LARGEST_REQUEST = 4 * 1024 * 1024


@dataclass
class UpstreamRequest:
    """One request as it arrived; `sent` counts the bytes of the answer's body."""
    method: str
    path: str
    headers: list = field(default_factory=list)
    body: bytes = b""
    sent: int = 0

    def header(self, name: str):
        """The value of a header, or None; the values joined when it came more than once."""
        found = [value for key, value in self.headers if key.lower() == name.lower()]
        return ", ".join(found) if found else None


class Upstream:
    """The service. `answer` says how the next requests are answered: an Answer, or a function from the request to one. `requests`
    lists what arrived; `connections` counts what connected."""

    def __init__(self, certificates, address: str = ADDRESS, port: int = 443):
        """certificates: a folder with server.pem and server.key."""
        self.certificates, self.address = Path(certificates), (address, port)
        self.answer = Answer()
        self.requests, self.connections = [], 0
        self._listener = None
        self._stopping = threading.Event()

    def start(self) -> "Upstream":
        self._context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        self._context.load_cert_chain(self.certificates / "server.pem", self.certificates / "server.key")
        self._stopping.clear()
        self._listener = socket.create_server(self.address, backlog=64)
        self._listener.settimeout(TICK)
        self.address = self._listener.getsockname()
        self._acceptor = threading.Thread(target=self._accept, args=(self._listener,), daemon=True)
        self._acceptor.start()
        return self

    def stop(self) -> None:
        """Stops listening and hangs up on everyone; does nothing when it is not running."""
        self._stopping.set()
        listener, self._listener = self._listener, None
        if listener is not None:
            self._acceptor.join()               # while it waits for a connection the port stays taken
            listener.close()

    def _accept(self, listener):
        while not self._stopping.is_set():
            try:
                connection, _ = listener.accept()
            except TimeoutError:
                continue
            self.connections += 1
            threading.Thread(target=self._converse, args=(connection,), daemon=True).start()

    def _converse(self, connection):
        try:
            if isinstance(self.answer, Answer) and self.answer.silence == "handshake":
                self._wait_for_the_other_side(connection)
                return
            connection.settimeout(30)
            with self._context.wrap_socket(connection, server_side=True) as secure:
                request = self._read_request(secure)
                if request is not None:
                    self.requests.append(request)
                    self._reply(secure, request, self.answer if isinstance(self.answer, Answer) else self.answer(request))
        except OSError:
            pass                                # the other side hung up, which some tests want
        finally:
            connection.close()

    @staticmethod
    def _read_request(secure):
        data = b""
        while b"\r\n\r\n" not in data:
            piece = secure.recv(65536)
            if not piece or len(data) > LARGEST_REQUEST:
                return None
            data += piece
        head, _, body = data.partition(b"\r\n\r\n")
        first, *lines = head.decode("latin-1").split("\r\n")
        method, path, _ = first.split(" ", 2)
        split = (line.partition(":") for line in lines)
        request = UpstreamRequest(method, path, [(name, value.strip()) for name, _, value in split])
        if (request.header("Expect") or "").lower() == "100-continue":
            secure.sendall(b"HTTP/1.1 100 Continue\r\n\r\n")
        length = int(request.header("Content-Length") or 0)
        while len(body) < min(length, LARGEST_REQUEST):
            piece = secure.recv(65536)
            if not piece:
                return None
            body += piece
        request.body = body
        return request

    def _reply(self, secure, request, answer):
        if answer.silence == "headers":
            return self._wait_for_the_other_side(secure)
        for line in answer.head_lines():
            self._stopping.wait(answer.head_pause)
            secure.sendall(line.encode("latin-1") + b"\r\n")
        end = len(answer.body) if answer.truncate is None else answer.truncate
        silent_at = answer.silence_after if answer.silence == "body" else end + 1
        while request.sent < min(end, silent_at) and not self._stopping.is_set():
            self._stopping.wait(answer.body_pause)
            piece = answer.body[request.sent:min(request.sent + answer.piece, end, silent_at)]
            secure.sendall(piece)
            request.sent += len(piece)
        if request.sent >= silent_at:
            self._wait_for_the_other_side(secure)

    def _wait_for_the_other_side(self, connection):
        """Says nothing until the client goes away or the server is stopped."""
        while not self._stopping.is_set():
            if select.select([connection], [], [], TICK)[0]:
                try:
                    if not connection.recv(65536):
                        return
                except OSError:
                    return
