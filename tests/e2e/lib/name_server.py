"""A name server that takes every question and answers none."""

import socket
import subprocess
from pathlib import Path

ADDRESS = "127.0.0.53"
HOSTS, SERVERS = Path("/etc/hosts"), Path("/etc/resolv.conf")     # the first is the world's own, and can be written


class SilentNameServer:
    """While it is entered, the world's programs know no name but localhost, and this server to ask."""

    def __init__(self):
        self._socket = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self._questions = []

    def __enter__(self):
        self._socket.bind((ADDRESS, 53))
        self._socket.setblocking(False)
        self._hosts = HOSTS.read_text()
        HOSTS.write_text("127.0.0.1 localhost\n")
        own = Path("/var/tmp/resolv.conf")
        own.write_text(f"nameserver {ADDRESS}\n")
        subprocess.run(["mount", "--bind", own, SERVERS], check=True, timeout=10)
        return self

    def __exit__(self, *_):
        subprocess.run(["umount", SERVERS], check=True, timeout=10)
        HOSTS.write_text(self._hosts)
        self._socket.close()

    def was_asked_for(self, host: str) -> bool:
        """Whether a question for this name has come."""
        try:
            while True:
                self._questions.append(self._socket.recv(4096))
        except BlockingIOError:
            pass
        name = b"".join(bytes([len(part)]) + part.encode() for part in host.split("."))
        return any(name in question for question in self._questions)
