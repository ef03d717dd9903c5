"""What the service answers, and how badly."""

import json
from dataclasses import dataclass, field
from typing import Optional

REASONS = {200: "OK", 302: "Found", 400: "Bad Request", 401: "Unauthorized", 429: "Too Many Requests", 503: "Service Unavailable"}


def reply_body(text: str, *, shortcut: bool = False) -> bytes:
    """A whole reply with this text; `shortcut` adds the text at the top level too, as the service's own libraries do."""
    reply = {
        "id": "resp_0001", "object": "response", "created_at": 1770000000, "status": "completed", "model": "gpt-5.6-terra",
        "output": [{"id": "rs_0001", "type": "reasoning", "summary": []},
                   {"id": "msg_0001", "type": "message", "status": "completed", "role": "assistant",
                    "content": [{"type": "output_text", "text": text, "annotations": []}]}],
        "usage": {"input_tokens": 5, "output_tokens": 7, "total_tokens": 12},
    }
    if shortcut:
        reply["output_text"] = text
    return json.dumps(reply, ensure_ascii=False, indent=1).encode()


def error_body(message: str, code: str = "") -> bytes:
    return json.dumps({"error": {"message": message, "type": code, "code": code}}).encode()


@dataclass
class Answer:
    """One answer. Times are seconds, amounts bytes of the body."""
    status: int = 200
    body: bytes = reply_body("A reply.")
    headers: list = field(default_factory=lambda: [("Content-Type", "application/json"), ("x-request-id", "req_0001")])
    state_length: bool = True               # False: the end of the connection ends the body
    silence: Optional[str] = None           # "handshake", "headers", or "body" after silence_after bytes: says nothing more
    silence_after: int = 0
    head_pause: float = 0.0                 # before each line of the head
    body_pause: float = 0.0                 # before each piece of the body
    piece: int = 65536
    truncate: Optional[int] = None          # hangs up here, although the stated length is the whole

    def head_lines(self):
        yield f"HTTP/1.1 {self.status} {REASONS.get(self.status, 'Whatever')}"
        yield from (f"{name}: {value}" for name, value in self.headers)
        if self.state_length:
            yield f"Content-Length: {len(self.body)}"
        yield "Connection: close"
        yield ""
