"""A real Secret Service: gnome-keyring on a session bus of its own, with a keyring of its own."""

import os
import re
import subprocess
from pathlib import Path

from .waiting import wait_for

SERVICE = "org.freedesktop.secrets"
KEY_NAME = "ZORVA_DAW/Hub/OpenAI/default"     # under which the Hub stores its key, on Windows too


class SecretService:
    """Runs until stop(). `environment` is what a program needs to find it; `folder` holds all that it writes."""

    def __init__(self, folder: Path):
        self.folder = Path(folder)
        for name in ("home", "runtime"):
            (self.folder / name).mkdir(parents=True, mode=0o700)
        self._log = (self.folder / "log").open("wb")
        socket = self.folder / "bus"
        self.environment = {"DBUS_SESSION_BUS_ADDRESS": f"unix:path={socket}"}
        self._own = {**os.environ, **self.environment, "HOME": str(self.folder / "home"),
                     "XDG_RUNTIME_DIR": str(self.folder / "runtime")}
        self._bus = self._run("dbus-daemon", "--session", "--nofork", "--nopidfile", f"--address=unix:path={socket}")
        wait_for(socket.exists, "the session bus")
        # The password on its input makes the login keyring, and opens it; without one every call would ask the user.
        self._keyring = self._run("gnome-keyring-daemon", "--foreground", "--unlock", "--components=secrets",
                                  f"--control-directory={self.folder / 'runtime'}", stdin=subprocess.PIPE)
        self._keyring.stdin.write(b"e2e")
        self._keyring.stdin.close()
        wait_for(self._has_owner, "the secret service")

    def _run(self, *command, stdin=subprocess.DEVNULL):
        return subprocess.Popen(command, env=self._own, stdin=stdin, stdout=self._log, stderr=self._log)

    def _has_owner(self) -> bool:
        done = subprocess.run(["dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.DBus", "/",
                               "org.freedesktop.DBus.NameHasOwner", f"string:{SERVICE}"],
                              env=self._own, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, timeout=10)
        return b"boolean true" in done.stdout

    def keys(self):
        """The secrets stored under the Hub's name."""
        done = subprocess.run(["secret-tool", "search", "--all", "--unlock", "target", KEY_NAME],
                              env=self._own, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, timeout=20)
        return re.findall(r"(?m)^secret = (.*)$", done.stdout)

    def stop(self) -> None:
        for process in (self._keyring, self._bus):
            process.terminate()
            process.wait(10)
        self._log.close()
