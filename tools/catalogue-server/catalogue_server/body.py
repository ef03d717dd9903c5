"""The bytes of an answer, changed as a rule wants them."""

import io

from .behaviour import Rule

PIECE = 64 * 1024


def stated_length(size: int, rule: Rule) -> int:
    """The Content-Length of a body of `size` bytes under this rule."""
    return max(size - rule.shorten, 0) + rule.extend


def sent_length(size: int, rule: Rule) -> int:
    """How many bytes of that body are sent before the connection is closed."""
    length = stated_length(size, rule)
    return length if rule.truncate is None else min(length, rule.truncate)


def pieces(stream: io.BufferedIOBase, size: int, rule: Rule, piece: int = PIECE):
    """Yields the body, at most `piece` bytes at a time, from a stream of `size` bytes."""
    real = max(size - rule.shorten, 0)
    offset, end = 0, sent_length(size, rule)
    while offset < end:
        wanted = min(piece, end - offset)
        data = bytearray(stream.read(min(wanted, max(real - offset, 0))))
        if len(data) < wanted and offset + len(data) < real:
            raise OSError("the file shrank while it was sent")
        data.extend(bytes(wanted - len(data)))
        if rule.flip is not None and offset <= rule.flip < offset + wanted:
            data[rule.flip - offset] ^= 0xFF
        yield bytes(data)
        offset += wanted
