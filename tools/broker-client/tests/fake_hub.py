"""The Hub's end of the pipe as it behaves on Linux, with a script of what to do in each cycle."""

import json
import os
import secrets
import select
import struct
import threading
import time
from pathlib import Path


class FakeHub:
    """Publishes a discovery file and serves one request a cycle until stop().

    steps: what to do with the requests, in order; each is a function (hub, request) that answers with the bytes to write, or with
    None to close without a word. When they are used up, the last one goes on."""

    def __init__(self, runtime: Path, fifos: Path, steps, cycle: float = 5.0):
        self.runtime, self.fifos, self.steps, self.cycle = Path(runtime), Path(fifos), list(steps), cycle
        self.file = self.runtime / "ai-broker.json"
        self.token, self.pipe_name = secrets.token_hex(32), "zorva_hub_ai_" + secrets.token_hex(16)
        self.requests = []          # the parsed payloads
        self.cycles = 0
        self._stopping = threading.Event()
        self._thread = threading.Thread(target=self._run, daemon=True)

    def start(self) -> "FakeHub":
        self._thread.start()
        return self

    def stop(self) -> None:
        self._stopping.set()
        self._thread.join(10)

    def path(self, end: str) -> Path:
        return self.fifos / f"{self.pipe_name}_{end}"

    def write_discovery(self, **changes) -> None:
        found = {"version": 2, "transport": "length_prefixed_named_pipe", "pipeName": self.pipe_name, "token": self.token,
                 "pid": os.getpid(), "startedAt": "2026-01-01T00:00:00.000Z", **changes}
        self.runtime.mkdir(parents=True, exist_ok=True)
        sibling = self.file.with_suffix(".tmp")
        sibling.write_bytes(json.dumps(found, indent=2).replace("\n", "\r\n").encode())
        sibling.replace(self.file)

    # ---- the cycle
    def _run(self):
        while not self._stopping.is_set():
            self.cycles += 1
            os.mkfifo(self.path("in"), 0o600)
            os.mkfifo(self.path("out"), 0o600)
            handle = os.open(self.path("in"), os.O_RDWR | os.O_NONBLOCK)
            try:
                self.write_discovery()
                self._serve(handle)
            finally:
                self.file.unlink(missing_ok=True)
                os.close(handle)
                self.path("in").unlink()
                self.path("out").unlink()

    def _serve(self, handle):
        header = self._read(handle, 4)
        payload = self._read(handle, struct.unpack(">I", header)[0]) if header else None
        if payload is None:
            return
        request = json.loads(payload)
        self.requests.append(request)
        step = self.steps.pop(0) if len(self.steps) > 1 else self.steps[0]
        answer = step(self, request)
        if answer is not None:
            self.file.unlink(missing_ok=True)
            self._write(answer)

    def _read(self, handle, count):
        data, end = b"", time.monotonic() + self.cycle
        while len(data) < count:
            if self._stopping.is_set() or time.monotonic() >= end:
                return None
            select.select([handle], [], [], 0.01)
            try:
                data += os.read(handle, count - len(data))
            except BlockingIOError:
                pass
        return data

    def _write(self, data):
        end = time.monotonic() + 5.0
        handle = -1
        while handle < 0 and time.monotonic() < end and not self._stopping.is_set():
            try:
                handle = os.open(self.path("out"), os.O_WRONLY | os.O_NONBLOCK)
            except OSError:
                time.sleep(0.002)
        if handle < 0:
            return
        os.set_blocking(handle, True)
        try:
            while data:
                data = data[os.write(handle, data):]
        except BrokenPipeError:
            pass                    # the client left
        finally:
            os.close(handle)


# ---- steps
def framed(value) -> bytes:
    payload = json.dumps(value, indent=2).encode()
    return struct.pack(">I", len(payload)) + payload


def success(**payload):
    return lambda hub, request: framed({"version": 2, "requestId": request["requestId"], "ok": True, "payload": payload})


def error(code, message="No.", status=0, request_id=None):
    return lambda hub, request: framed({"version": 2, "requestId": request["requestId"] if request_id is None else request_id,
                                        "ok": False, "error": code, "message": message, "httpStatus": status})


def silence(hub, request):
    """Closes the pipe without a reply, as a Hub that dies."""
    return None


def raw(data: bytes):
    return lambda hub, request: data
