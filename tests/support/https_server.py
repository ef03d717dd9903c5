#!/usr/bin/env python3
"""A local server for tests: one port speaks HTTPS, one plain HTTP, and one accepts connections and never says a word.

It makes its own certificate authority, prints one line of JSON with the ports and the authority's certificate, then obeys
one line of JSON at a time on its standard input, each answered by one line. It ends with its input. With "--connect PORT" both
run over a connection to that port of this machine instead.

  {"do": "answer", "path": "/x", ...}   what requests for a path get from now on; see Answer
  {"do": "release", "path": "/x"}       lets held answers of this path go on
  {"do": "log"}                         the requests so far, oldest first, and the number of silent connections
"""
import base64
import http.server
import json
import os
import shutil
import socket
import socketserver
import ssl
import subprocess
import sys
import tempfile
import threading
import time

PIECE = 65536


def openssl(folder, *arguments):
    subprocess.run(["openssl", *arguments], cwd=folder, check=True, stdin=subprocess.DEVNULL,
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def make_certificates(folder):
    """An authority of our own and a certificate for this machine's loopback names."""
    with open(os.path.join(folder, "names"), "w", encoding="ascii") as names:
        names.write("subjectAltName=DNS:localhost,IP:127.0.0.1\nbasicConstraints=CA:FALSE\n")
    new_key = ["-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes", "-batch"]
    openssl(folder, "req", "-x509", *new_key, "-keyout", "authority.key", "-out", "authority.pem", "-days", "3",
            "-subj", "/CN=Test authority %d" % os.getpid(), "-addext", "keyUsage=critical,keyCertSign")
    openssl(folder, "req", *new_key, "-keyout", "server.key", "-out", "server.req", "-subj", "/CN=localhost")
    openssl(folder, "x509", "-req", "-in", "server.req", "-CA", "authority.pem", "-CAkey", "authority.key",
            "-CAcreateserial", "-days", "3", "-extfile", "names", "-out", "server.pem")


class Answer:
    """What a path gives: status, headers, a body sent so many times; where it holds until it is released."""

    def __init__(self, order):
        self.status = order.get("status", 200)
        self.headers = order.get("headers", {})
        self.header_lines = order.get("headerLines", [])                    # sent just as they stand
        self.body = base64.b64decode(order.get("body", ""))
        self.repeat = order.get("repeat", 1)
        self.stated = order.get("stated", len(self.body) * self.repeat)     # -1: no length is stated
        self.hold_after = order.get("holdAfter", -1)                        # bytes of the body; -1: never
        self.silent = order.get("silent", False)                            # hold before the first byte of the answer
        self.pause = order.get("pauseMs", 0) / 1000.0                       # between pieces
        self.piece = order.get("pieceBytes", PIECE)
        self.released = threading.Event()

    def pieces(self):
        """The body in pieces, none of which crosses the holding point; None stands for that point."""
        block = self.body * max(1, min(self.repeat, PIECE // max(1, len(self.body))))
        total, sent = len(self.body) * self.repeat, 0
        while sent < total or sent == self.hold_after:
            if sent == self.hold_after and not self.released.is_set():
                yield None
                if sent >= total:
                    return
            end = min(total, sent + self.piece)
            if sent < self.hold_after < end:
                end = self.hold_after
            start = sent % max(1, len(self.body))
            data = block[start:start + end - sent]
            if not data:
                return
            yield data
            sent += len(data)


class State:
    def __init__(self):
        self.lock = threading.Lock()
        self.answers = {}
        self.log = []
        self.silent = []

    def answer_for(self, path):
        with self.lock:
            return self.answers.get(path)


STATE = State()


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    received = b""

    def log_message(self, *_):
        pass

    def do_GET(self):
        entry = {"scheme": self.server.scheme, "method": self.command, "path": self.path, "sent": 0, "finished": False,
                 "headers": "".join(f"{name}: {value}\n" for name, value in self.headers.items()),
                 "body": base64.b64encode(self.received).decode("ascii")}
        answer = STATE.answer_for(self.path) or Answer({"status": 404})
        with STATE.lock:
            STATE.log.append(entry)
        self.close_connection = True
        try:
            self.send_answer(answer, entry)
            entry["finished"] = True
        except OSError:
            pass

    def do_POST(self):
        self.received = self.rfile.read(int(self.headers.get("Content-Length", 0)))
        self.do_GET()

    def send_answer(self, answer, entry):
        if answer.silent:
            answer.released.wait()
        self.send_response(answer.status)
        for name, value in answer.headers.items():
            self.send_header(name, value)
        for line in answer.header_lines:
            self._headers_buffer.append(line.encode("latin-1") + b"\r\n")
        if answer.stated >= 0:
            self.send_header("Content-Length", str(answer.stated))
        self.send_header("Connection", "close")
        self.end_headers()
        for data in answer.pieces():
            if data is None:
                self.wfile.flush()
                answer.released.wait()
                continue
            self.wfile.write(data)
            entry["sent"] += len(data)
            if answer.pause:
                time.sleep(answer.pause)
        if answer.stated < 0 and self.server.context is not None:
            self.connection.settimeout(2)
            self.connection.unwrap()        # says that this is the end, not a broken connection


class Server(socketserver.ThreadingMixIn, socketserver.TCPServer):
    daemon_threads = True
    allow_reuse_address = True
    request_queue_size = 64

    def __init__(self, scheme, context=None):
        self.scheme, self.context = scheme, context
        super().__init__(("127.0.0.1", 0), Handler)
        threading.Thread(target=self.serve_forever, daemon=True).start()

    def finish_request(self, request, client_address):
        """Runs in the connection's own thread, so a slow handshake holds up nobody else."""
        try:
            if self.context is None:
                super().finish_request(request, client_address)
                return
            with self.context.wrap_socket(request, server_side=True) as connection:
                super().finish_request(connection, client_address)
        except OSError:
            pass


def listen_silently():
    listener = socket.create_server(("127.0.0.1", 0), backlog=64)

    def accept():
        while True:
            connection = listener.accept()[0]
            with STATE.lock:
                STATE.silent.append(connection)

    threading.Thread(target=accept, daemon=True).start()
    return listener.getsockname()[1]


def obey(order):
    what = order["do"]
    if what == "answer":
        with STATE.lock:
            STATE.answers[order["path"]] = Answer(order)
    elif what == "release":
        STATE.answer_for(order["path"]).released.set()
    elif what == "log":
        with STATE.lock:
            return {"requests": STATE.log, "silent": len(STATE.silent)}
    else:
        raise ValueError(what)
    return {}


def lines():
    """Where orders come from and answers go."""
    if sys.argv[1:2] != ["--connect"]:
        return sys.stdin, sys.stdout
    connection = socket.create_connection(("127.0.0.1", int(sys.argv[2])))
    return connection.makefile("r", encoding="utf-8"), connection.makefile("w", encoding="utf-8")


def main():
    orders, answers = lines()
    folder = tempfile.mkdtemp(prefix="zorva-test-server-")
    try:
        make_certificates(folder)
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(os.path.join(folder, "server.pem"), os.path.join(folder, "server.key"))
        secure, plain = Server("https", context), Server("http")
        with open(os.path.join(folder, "authority.pem"), encoding="ascii") as file:
            authority = file.read()
        print(json.dumps({"https": secure.server_address[1], "http": plain.server_address[1],
                          "silent": listen_silently(), "authority": authority}), file=answers, flush=True)
        for line in orders:
            print(json.dumps(obey(json.loads(line))), file=answers, flush=True)
    finally:
        shutil.rmtree(folder, ignore_errors=True)
        os._exit(0)


if __name__ == "__main__":
    main()
