"""The transport for Windows, against a stand-in for the system's functions: what they are given, and what their answers mean."""

import ctypes
import sys
import time
import unittest
from pathlib import Path
from unittest import mock

sys.path.insert(0, str(Path(__file__).resolve().parents[1]))

from broker_client import windows_pipe  # noqa: E402
from broker_client.discovery import Discovery  # noqa: E402
from broker_client.errors import Busy, ConnectionEnded, NotListening, UntrustedBroker, WaitedInVain  # noqa: E402

FOUND = Discovery("zorva_hub_ai_" + "0" * 32, "1" * 64, 4711, 0.0)
PIPE, EVENT = 77, 88


class FakeSystem:
    """A pipe whose other side has said `incoming`. Operations are pending first, as on a real overlapped handle."""

    def __init__(self, incoming=b"", open_error=0, ended=False, taken=None):
        self.incoming, self.open_error, self.ended, self.taken = incoming, open_error, ended, taken
        self.calls, self.written, self.error, self._moved = [], b"", 0, None

    def get_last_error(self):
        return self.error

    def CreateFileW(self, *arguments):
        self.calls.append(("CreateFileW", *arguments))
        self.error = self.open_error
        return windows_pipe.INVALID_HANDLE if self.open_error else PIPE

    def CreateEventW(self, *arguments):
        return EVENT

    def WriteFile(self, pipe, buffer, size, moved, operation):
        if self.ended:
            return self._fail(windows_pipe.ERROR_NO_DATA)
        self.written += buffer.raw[:size]
        self._moved = size if self.taken is None else self.taken
        return self._fail(windows_pipe.ERROR_IO_PENDING)

    def ReadFile(self, pipe, buffer, size, moved, operation):
        piece, self.incoming = self.incoming[:min(size, 3)], self.incoming[min(size, 3):]
        ctypes.memmove(buffer, piece, len(piece))
        self._moved = len(piece) or None
        if not piece and self.ended:
            return self._fail(windows_pipe.ERROR_BROKEN_PIPE)
        return self._fail(windows_pipe.ERROR_IO_PENDING)

    def _fail(self, error):
        self.error = error
        return 0

    def WaitForSingleObject(self, event, milliseconds):
        self.calls.append(("WaitForSingleObject", event, milliseconds))
        return windows_pipe.WAIT_TIMEOUT if self._moved is None else windows_pipe.WAIT_OBJECT_0

    def GetOverlappedResult(self, pipe, operation, moved, wait):
        if self._moved is None:
            return self._fail(windows_pipe.ERROR_OPERATION_ABORTED)
        moved._obj.value = self._moved
        return 1

    def CancelIoEx(self, pipe, operation):
        self.calls.append(("CancelIoEx", pipe))
        return 1

    def CloseHandle(self, handle):
        self.calls.append(("CloseHandle", handle))
        return 1


class WindowsPipe(unittest.TestCase):
    def connect(self, **options):
        self.system = FakeSystem(**options)
        for patch in (mock.patch.object(windows_pipe, "_load", lambda: self.system),
                      mock.patch.object(windows_pipe.ctypes, "get_last_error", self.system.get_last_error, create=True)):
            self.enterContext(patch)
        return windows_pipe.Connection(FOUND)

    def test_opens_the_pipe_for_itself_alone_and_lends_nobody_its_rights(self):
        self.connect()
        self.assertEqual(self.system.calls,
                         [("CreateFileW", r"\\.\pipe" + "\\" + FOUND.pipe_name, 0xC0000000, 0, None, 3, 0x40110000, None)])

    def test_what_a_failed_opening_means(self):
        for error, expected in ((2, NotListening), (231, Busy), (5, UntrustedBroker)):
            with self.subTest(error), self.assertRaises(expected):
                self.connect(open_error=error)

    def test_writes_in_one_go_and_gathers_short_reads(self):
        with self.connect(incoming=b"0123456789") as connection:
            connection.send(b"request", time.monotonic() + 5)
            self.assertEqual(connection.receive(10, time.monotonic() + 5), b"0123456789")
        self.assertEqual(self.system.written, b"request")
        self.assertEqual(self.system.calls[-2:], [("CloseHandle", PIPE), ("CloseHandle", EVENT)])

    def test_the_end_of_the_stream_is_the_end_of_the_connection(self):
        with self.connect(incoming=b"01", ended=True) as connection:
            self.assertRaises(ConnectionEnded, connection.send, b"request", time.monotonic() + 5)
            self.assertRaises(ConnectionEnded, connection.receive, 4, time.monotonic() + 5)

    def test_a_part_of_a_request_counts_as_not_delivered(self):
        with self.connect(taken=3) as connection:
            self.assertRaises(ConnectionEnded, connection.send, b"request", time.monotonic() + 5)

    def test_at_the_end_of_its_time_an_operation_is_cancelled_before_its_buffer_goes(self):
        with self.connect() as connection:
            with self.assertRaises(WaitedInVain) as raised:
                connection.receive(4, time.monotonic() - 1)
        self.assertTrue(raised.exception.may_have_been_served)
        self.assertEqual(self.system.calls[1:], [("WaitForSingleObject", EVENT, 0), ("CancelIoEx", PIPE),
                                                 ("CloseHandle", PIPE), ("CloseHandle", EVENT)])


if __name__ == "__main__":
    unittest.main()
