r"""The transport on Windows: \\.\pipe\NAME, a byte stream that one client at a time can open."""

import contextlib
import ctypes
import time
from ctypes import wintypes

from .discovery import Discovery
from .errors import Busy, ConnectionEnded, NotListening, UntrustedBroker, WaitedInVain

GENERIC_READ_WRITE = 0xC0000000
OPEN_EXISTING = 3
FILE_FLAG_OVERLAPPED = 0x40000000
# The server may learn who calls, but not act in the caller's name.
SECURITY_SQOS_PRESENT, SECURITY_IDENTIFICATION = 0x00100000, 0x00010000
INVALID_HANDLE = ctypes.c_void_p(-1).value
WAIT_OBJECT_0, WAIT_TIMEOUT = 0, 0x102

ERROR_FILE_NOT_FOUND, ERROR_BROKEN_PIPE, ERROR_PIPE_BUSY = 2, 109, 231
ERROR_NO_DATA, ERROR_PIPE_NOT_CONNECTED, ERROR_OPERATION_ABORTED, ERROR_IO_PENDING = 232, 233, 995, 997
ENDED = (ERROR_BROKEN_PIPE, ERROR_NO_DATA, ERROR_PIPE_NOT_CONNECTED, ERROR_OPERATION_ABORTED)


class Overlapped(ctypes.Structure):
    _fields_ = [("internal", ctypes.c_void_p), ("internal_high", ctypes.c_void_p), ("offset", wintypes.DWORD),
                ("offset_high", wintypes.DWORD), ("event", wintypes.HANDLE)]


def _load():
    """The functions of the system that are called here, with their types."""
    system = ctypes.WinDLL("kernel32", use_last_error=True)
    overlapped, size = ctypes.POINTER(Overlapped), ctypes.POINTER(wintypes.DWORD)
    types = {
        "CreateFileW": (wintypes.HANDLE, wintypes.LPCWSTR, wintypes.DWORD, wintypes.DWORD, ctypes.c_void_p, wintypes.DWORD,
                        wintypes.DWORD, wintypes.HANDLE),
        "CreateEventW": (wintypes.HANDLE, ctypes.c_void_p, wintypes.BOOL, wintypes.BOOL, wintypes.LPCWSTR),
        "ReadFile": (wintypes.BOOL, wintypes.HANDLE, ctypes.c_void_p, wintypes.DWORD, size, overlapped),
        "WriteFile": (wintypes.BOOL, wintypes.HANDLE, ctypes.c_void_p, wintypes.DWORD, size, overlapped),
        "GetOverlappedResult": (wintypes.BOOL, wintypes.HANDLE, overlapped, size, wintypes.BOOL),
        "WaitForSingleObject": (wintypes.DWORD, wintypes.HANDLE, wintypes.DWORD),
        "CancelIoEx": (wintypes.BOOL, wintypes.HANDLE, overlapped),
        "CloseHandle": (wintypes.BOOL, wintypes.HANDLE),
    }
    for name, (result, *arguments) in types.items():
        function = getattr(system, name)
        function.restype, function.argtypes = result, arguments
    return system


@contextlib.contextmanager
def turn(folder, end: float):
    """Nothing to wait for: the pipe itself lets one client in at a time."""
    yield


class Connection:
    """One exchange: a request out, a reply in. Closes with its context."""

    def __init__(self, discovery: Discovery):
        self._system = _load()
        flags = FILE_FLAG_OVERLAPPED | SECURITY_SQOS_PRESENT | SECURITY_IDENTIFICATION
        self._pipe = self._system.CreateFileW("\\\\.\\pipe\\" + discovery.pipe_name, GENERIC_READ_WRITE, 0, None, OPEN_EXISTING,
                                              flags, None)
        if self._pipe in (None, INVALID_HANDLE):
            self._pipe = None
            error = ctypes.get_last_error()
            if error == ERROR_PIPE_BUSY:
                raise Busy
            if error == ERROR_FILE_NOT_FOUND:
                raise NotListening
            raise UntrustedBroker(f"the broker's pipe cannot be opened (error {error})")
        self._event = self._system.CreateEventW(None, True, False, None)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self) -> None:
        for handle in filter(None, (self._pipe, self._event)):
            self._system.CloseHandle(handle)
        self._pipe = self._event = None

    def send(self, data: bytes, end: float) -> None:
        """Writes everything in one write. Raises ConnectionEnded when the Hub went away before it could have read all of it."""
        if self._transfer(self._system.WriteFile, ctypes.create_string_buffer(data, len(data)), len(data), end, False) != len(data):
            raise ConnectionEnded

    def receive(self, count: int, end: float) -> bytes:
        """Reads exactly so many bytes. Raises ConnectionEnded when the Hub went away without them."""
        data = bytearray()
        while len(data) < count:
            buffer = ctypes.create_string_buffer(count - len(data))
            got = self._transfer(self._system.ReadFile, buffer, len(buffer), end, True)
            if got == 0:
                raise ConnectionEnded
            data += buffer.raw[:got]
        return bytes(data)

    def _transfer(self, function, buffer, size: int, end: float, may_have_been_served: bool) -> int:
        """Runs one ReadFile or WriteFile until `end`, and answers with the bytes moved."""
        operation, moved = Overlapped(event=self._event), wintypes.DWORD()
        if not function(self._pipe, buffer, size, ctypes.byref(moved), ctypes.byref(operation)):
            error = ctypes.get_last_error()
            if error != ERROR_IO_PENDING:
                self._judge(error)
            left = max(end - time.monotonic(), 0.0)
            if self._system.WaitForSingleObject(self._event, int(left * 1000.0)) != WAIT_OBJECT_0:
                # The buffer belongs to the system until the operation has really ended.
                self._system.CancelIoEx(self._pipe, ctypes.byref(operation))
                self._system.GetOverlappedResult(self._pipe, ctypes.byref(operation), ctypes.byref(moved), True)
                raise WaitedInVain("the broker did not reply in time" if may_have_been_served
                                   else "the broker took only a part of the request", may_have_been_served)
        if not self._system.GetOverlappedResult(self._pipe, ctypes.byref(operation), ctypes.byref(moved), True):
            self._judge(ctypes.get_last_error())
        return moved.value

    @staticmethod
    def _judge(error: int):
        if error in ENDED:
            raise ConnectionEnded
        raise OSError(f"the broker's pipe failed (error {error})")
