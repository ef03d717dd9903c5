"""Frames, requests and replies: bytes in, bytes out, without any input or output."""

import json
import secrets
import struct

from .errors import BrokerRefusal, UnusableReply

VERSION = 2
HEADER = struct.Struct(">I")
MAXIMUM_PAYLOAD = 0x80000
MAXIMUM_INPUT = 0x40000

HEALTH, KEY_STATUS, COMPLETE, SAVE_DRAFT = ("broker.health", "key.status", "openai.complete", "creator.preview.draft.save")

# A second delivery of these does no harm: two only ask, and a draft is recognised by its job id and content.
REPEATABLE = frozenset((HEALTH, KEY_STATUS, SAVE_DRAFT))

# Said before the broker has read the request's id, so that the reply cannot repeat it.
_CODES_WITHOUT_ID = frozenset(("message_size", "invalid_json", "protocol_version", "unauthorized"))


class RepliedToAnother(Exception):
    """The reply belongs to another client's request; the broker has not read this one."""


def new_request_id() -> str:
    return "client-" + secrets.token_hex(12)


def frame(payload: bytes) -> bytes:
    """The payload with its header. Raises ValueError for a payload that no frame can hold."""
    if not 1 <= len(payload) <= MAXIMUM_PAYLOAD:
        raise ValueError(f"a frame holds 1 to {MAXIMUM_PAYLOAD} bytes, not {len(payload)}")
    return HEADER.pack(len(payload)) + payload


def payload_length(header: bytes) -> int:
    """The length that a reply's header announces."""
    length, = HEADER.unpack(header)
    if not 1 <= length <= MAXIMUM_PAYLOAD:
        raise UnusableReply(f"the broker announced a reply of {length} bytes")
    return length


def request(op: str, token: str, request_id: str, text=None) -> bytes:
    """A request's payload. Raises ValueError for a text that the broker would refuse for its size."""
    message = {"version": VERSION, "token": token, "op": op, "requestId": request_id}
    if text is not None:
        size = len(text.encode("utf-8"))
        if not 1 <= size <= MAXIMUM_INPUT:
            raise ValueError(f"the input must be 1 to {MAXIMUM_INPUT} bytes of UTF-8, not {size}")
        message["input"] = text
    return json.dumps(message, ensure_ascii=False).encode("utf-8")


def read_reply(payload: bytes, request_id: str) -> dict:
    """The "payload" object of a success. Raises BrokerRefusal for an error, RepliedToAnother for somebody else's reply, and
    UnusableReply for everything that is no reply."""
    try:
        reply = json.loads(payload.decode("utf-8"))
        version, answered_id, ok = reply["version"], reply["requestId"], reply["ok"]
    except (ValueError, KeyError, TypeError, RecursionError) as error:
        raise UnusableReply(f"the reply cannot be read: {error}") from None
    if version != VERSION or not isinstance(ok, bool):
        raise UnusableReply("the reply speaks another version of the protocol")
    if answered_id != request_id and not (answered_id == "" and not ok and reply.get("error") in _CODES_WITHOUT_ID):
        raise RepliedToAnother
    if ok:
        return _field(reply, "payload", dict)
    raise BrokerRefusal(_field(reply, "error", str), _field(reply, "message", str), _field(reply, "httpStatus", int))


def _field(reply: dict, name: str, kind):
    if not isinstance(reply.get(name), kind):
        raise UnusableReply(f"the reply has no usable \"{name}\"")
    return reply[name]
