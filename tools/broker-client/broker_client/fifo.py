"""The transport on Linux: two FIFOs, /tmp/NAME_in which the client writes and /tmp/NAME_out which it reads.

A FIFO knows no connections. Whatever a stream would tell has to be found out by looking: whether a Hub is there (opening _in),
whether it went away (an error on _in), whether a reply is one's own (its id). The end of _out tells nothing, because the Hub
opens its side of it only when it replies."""

import contextlib
import errno
import fcntl
import os
import select
import stat
import time

from .discovery import Discovery
from .errors import Busy, ConnectionEnded, NotListening, UntrustedBroker, WaitedInVain

FOLDER = "/tmp"

# The Hub waits 5 s for a request and then renews its pipe; what is written at that moment is lost. An older copy of the discovery
# file means that this moment is near, or that the Hub is serving somebody, and will renew the pipe when it has replied.
OLDEST_DISCOVERY = 4.5

LOCK_POLL = 0.02


@contextlib.contextmanager
def turn(folder, end: float):
    """Waits until no other client that keeps this rule is talking to the broker: an exclusive lock on the folder of the discovery
    file, which the system releases when a client dies. Raises NotListening when there is no such folder, Busy at the end."""
    try:
        handle = os.open(folder, os.O_RDONLY | os.O_DIRECTORY | os.O_CLOEXEC)
    except (FileNotFoundError, NotADirectoryError):
        raise NotListening from None
    try:
        while True:
            try:
                fcntl.flock(handle, fcntl.LOCK_EX | fcntl.LOCK_NB)
                break
            except BlockingIOError:
                if time.monotonic() >= end:
                    raise Busy from None
                time.sleep(LOCK_POLL)
        yield
    finally:
        os.close(handle)


def _open_own_fifo(path: str, flags: int) -> int:
    """Opens a FIFO that belongs to this user. Raises NotListening when it is not there or nobody reads it."""
    try:
        handle = os.open(path, flags | os.O_NONBLOCK | os.O_NOFOLLOW | os.O_CLOEXEC)
    except OSError as error:
        if error.errno in (errno.ENOENT, errno.ENXIO):
            raise NotListening from None
        raise UntrustedBroker(f"{path} cannot be opened: {error.strerror}") from None
    status = os.fstat(handle)
    if not stat.S_ISFIFO(status.st_mode) or status.st_uid != os.geteuid():
        os.close(handle)
        raise UntrustedBroker(f"{path} is not a pipe of this user")
    return handle


class Connection:
    """One exchange: a request out, a reply in. Closes with its context."""

    def __init__(self, discovery: Discovery):
        path = f"{FOLDER}/{discovery.pipe_name}"
        self._input = self._output = -1
        try:
            # Reading comes first: the Hub gives up its reply when nobody has _out open.
            self._output = _open_own_fifo(path + "_out", os.O_RDONLY)
            self._input = _open_own_fifo(path + "_in", os.O_WRONLY)
            if not self._is_still_there(path + "_out"):
                raise NotListening              # the pipe was renewed between the two: these are halves of different ones
            if discovery.age() > OLDEST_DISCOVERY:
                raise Busy
        except BaseException:
            self.close()
            raise

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self) -> None:
        for handle in (self._input, self._output):
            if handle >= 0:
                os.close(handle)
        self._input = self._output = -1

    def _is_still_there(self, path: str) -> bool:
        try:
            return os.path.samestat(os.stat(path, follow_symlinks=False), os.fstat(self._output))
        except FileNotFoundError:
            return False

    def send(self, data: bytes, end: float) -> None:
        """Writes everything. Raises ConnectionEnded when the Hub went away before it could have read all of it."""
        rest = memoryview(data)
        poll = select.poll()
        poll.register(self._input, select.POLLOUT)
        while rest:
            try:
                rest = rest[os.write(self._input, rest):]
            except BlockingIOError:
                self._wait(poll, end, "the broker took only a part of the request", may_have_been_served=False)
            except BrokenPipeError:
                raise ConnectionEnded from None

    def receive(self, count: int, end: float) -> bytes:
        """Reads exactly so many bytes. Raises ConnectionEnded when the Hub went away without them."""
        data = bytearray()
        gone = False
        poll = select.poll()
        poll.register(self._output, select.POLLIN)
        poll.register(self._input, 0)           # errors are reported without being asked for
        while len(data) < count:
            try:
                piece = os.read(self._output, count - len(data))
            except BlockingIOError:
                piece = b""
            if piece:
                data += piece
            elif gone:
                raise ConnectionEnded           # looked once more after the Hub had left: it replies before it leaves
            else:
                events = self._wait(poll, end, "the broker did not reply in time", may_have_been_served=True)
                gone = any(event & (select.POLLERR | select.POLLHUP) for _, event in events)
        return bytes(data)

    @staticmethod
    def _wait(poll, end: float, message: str, may_have_been_served: bool):
        left = end - time.monotonic()
        events = poll.poll(max(left, 0.0) * 1000.0)
        if not events and left <= 0:
            raise WaitedInVain(message, may_have_been_served)
        return events
