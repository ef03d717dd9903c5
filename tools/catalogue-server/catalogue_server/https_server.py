"""The HTTPS server itself."""

import http.server
import io
import select
import socket
import ssl
import threading
import time
from dataclasses import dataclass
from pathlib import Path
from urllib.parse import unquote, urlsplit

from .behaviour import Behaviour
from .body import pieces, sent_length, stated_length
from .catalogue import FILES_PATH, MANIFEST_PATH, Catalogue

TICK = 0.05


@dataclass
class Request:
    """One request that arrived: its path, the status of the answer and the bytes of the body sent so far."""
    path: str
    status: int = 0
    sent: int = 0


class Handler(http.server.BaseHTTPRequestHandler):
    """Answers one request and closes the connection."""

    def do_GET(self):
        rule = self.server.behaviour.rule_for(self.path)
        request = Request(self.path)
        self.server.requests.append(request)
        if rule.silence == "headers":
            self._wait_for_the_other_side()
        elif rule.location is not None:
            self._send_head(request, 302, 0, rule, {"Location": rule.location})
        elif rule.status is not None:
            self._send(request, rule.status, f"<h1>{rule.status}</h1>\n".encode(), rule)
        else:
            self._answer(request, unquote(urlsplit(self.path).path), rule)

    def _answer(self, request, path, rule):
        catalogue = self.server.catalogue
        file = catalogue.file(path[len(FILES_PATH):]) if path.startswith(FILES_PATH) else None
        if path == MANIFEST_PATH:
            self._send(request, 200, catalogue.manifest_bytes(), rule)
        elif file is not None:
            with file.open("rb") as stream:
                self._send_stream(request, 200, stream, file.stat().st_size, rule)
        else:
            self._send(request, 404, b"<h1>404</h1>\n", rule)

    def _send(self, request, status, content, rule):
        self._send_stream(request, status, io.BytesIO(content), len(content), rule)

    def _send_head(self, request, status, length, rule, headers=None):
        request.status = status
        self.send_response(status)
        self.send_header("Connection", "close")
        if not rule.hide_length:
            self.send_header("Content-Length", str(length))
        for name, value in (headers or {}).items():
            self.send_header(name, value)
        self.end_headers()

    def _send_stream(self, request, status, stream, size, rule):
        self._send_head(request, status, stated_length(size, rule), rule)
        silent_at = rule.silence_after if rule.silence == "body" else sent_length(size, rule) + 1
        if silent_at == 0:
            return self._wait_for_the_other_side()
        piece = max(1, int(rule.rate * TICK)) if rule.rate else 64 * 1024
        for data in pieces(stream, size, rule, piece):
            data = data[:silent_at - request.sent]
            self.wfile.write(data)
            request.sent += len(data)
            if request.sent >= silent_at:
                return self._wait_for_the_other_side()
            if rule.rate:
                time.sleep(len(data) / rule.rate)

    def _wait_for_the_other_side(self):
        """Says nothing until the client goes away or the server is stopped."""
        while not self.server.stopping.is_set():
            if select.select([self.connection], [], [], TICK)[0]:
                return

    def log_message(self, format, *args):
        if self.server.verbose:
            super().log_message(format, *args)


class _Listener(http.server.ThreadingHTTPServer):
    """Accepts connections; TLS begins in the connection's own thread, so that a slow client holds nobody up."""
    daemon_threads = True
    block_on_close = False
    request_queue_size = 64

    def __init__(self, address, owner, context):
        self.context = context
        self.catalogue = owner.catalogue
        self.requests = owner.requests
        self.verbose = owner.verbose
        self.owner = owner
        self.stopping = threading.Event()
        self.connections = set()
        super().__init__(address, Handler)

    @property
    def behaviour(self) -> Behaviour:
        return self.owner.behaviour

    def finish_request(self, request, client_address):
        self.connections.add(request)
        try:
            if self.behaviour.silent:
                self.owner.silent_connections += 1
                self.stopping.wait()
                return
            secure = self.context.wrap_socket(request, server_side=True)
            self.connections.add(secure)
            try:
                self.RequestHandlerClass(secure, client_address, self)
            finally:
                self.connections.discard(secure)
                self._hang_up(secure)
        finally:
            self.connections.discard(request)

    @staticmethod
    def _hang_up(secure):
        try:
            secure.shutdown(socket.SHUT_RDWR)
        except (OSError, ValueError):
            pass                            # the other side was faster
        secure.close()

    def handle_error(self, request, client_address):
        """A client that hangs up or refuses the certificate is nothing to report here: the tests look at the Hub."""

    def hang_up_on_everyone(self):
        self.stopping.set()
        for connection in list(self.connections):
            self._hang_up(connection)


class CatalogueServer:
    """A catalogue over HTTPS, which can be started, stopped and told to misbehave at any time, from any thread.

    `requests` lists what arrived, in order, across restarts."""

    def __init__(self, catalogue: Catalogue, certificates, port: int = 443, address: str = "127.0.0.1", verbose: bool = False):
        """certificates: a folder with server.pem and server.key, as make-certs.sh makes it."""
        self.catalogue = catalogue
        self.certificates = Path(certificates)
        self.address = (address, port)
        self.verbose = verbose
        self.behaviour = Behaviour()
        self.requests = []
        self.silent_connections = 0
        self._listener = None

    @property
    def running(self) -> bool:
        return self._listener is not None

    def start(self) -> None:
        """Listens; does nothing when it already does."""
        if self.running:
            return
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(self.certificates / "server.pem", self.certificates / "server.key")
        self._listener = _Listener(self.address, self, context)
        self.address = self._listener.server_address
        threading.Thread(target=self._listener.serve_forever, kwargs={"poll_interval": TICK}, daemon=True).start()

    def stop(self) -> None:
        """Stops listening and hangs up on everyone; does nothing when it is not running."""
        listener, self._listener = self._listener, None
        if listener is not None:
            listener.shutdown()
            listener.server_close()
            listener.hang_up_on_everyone()

    def set_behaviour(self, behaviour: Behaviour) -> None:
        """Takes effect with the next connection or request; `listen` starts or stops the server."""
        self.behaviour = behaviour
        if behaviour.listen:
            self.start()
        else:
            self.stop()
