"""The client itself: finds the broker, sends one request, and knows when it may try again."""

import json
import os
import time
from pathlib import Path

from . import discovery as discovery_file
from . import protocol
from .errors import Busy, ConnectionEnded, HubNotRunning, NoReply, NotListening, WaitedInVain

if os.name == "nt":
    from . import windows_pipe as transport
else:
    from . import fifo as transport

# The broker serves one request at a time, and a completion takes it 30 s and a little more, its own or somebody else's.
DEFAULT_TIMEOUT = 45.0
COMPLETION_TIMEOUT = 75.0
# While no client takes a reply that is due, the Hub offers it for 5 s, and during these has no discovery file.
DEFAULT_PATIENCE = 8.0
SHORTEST_PAUSE, LONGEST_PAUSE = 0.002, 0.05     # between two looks; a renewed pipe is back within a few milliseconds


class BrokerClient:
    """Calls the broker of this user's Hub. Each call is an exchange of its own, so one object may serve several threads.

    timeout: seconds for a whole call, waiting for one's turn included; None for the defaults.
    patience: seconds that nothing may listen before a call gives up; a Hub that renews its pipe is away for an instant only."""

    def __init__(self, file=None, timeout=None, patience: float = DEFAULT_PATIENCE):
        self.file = Path(file) if file is not None else discovery_file.default_file()
        self.timeout, self.patience = timeout, patience

    def health(self) -> dict:
        """{"ready", "model"} of a Hub that runs."""
        return self._call(protocol.HEALTH)

    def key_status(self) -> dict:
        """{"present", "backend"}: whether an API key is stored, and in what."""
        return self._call(protocol.KEY_STATUS)

    def complete(self, prompt: str) -> dict:
        """{"text", "upstreamRequestId"}. Costs money, so it is never sent a second time once it may have been delivered."""
        return self._call(protocol.COMPLETE, prompt, COMPLETION_TIMEOUT)

    def save_draft(self, draft: dict) -> dict:
        """{"accepted", "jobId", "status", "idempotentReplay", ...} for a draft as new_draft makes it."""
        return self._call(protocol.SAVE_DRAFT, json.dumps(draft, ensure_ascii=False))

    def _call(self, op: str, text=None, default_timeout: float = DEFAULT_TIMEOUT) -> dict:
        end = time.monotonic() + (default_timeout if self.timeout is None else self.timeout)
        give_up = time.monotonic() + self.patience      # unless a Hub is seen meanwhile
        pause = SHORTEST_PAUSE
        while True:
            try:
                with transport.turn(self.file.parent, end):
                    found = discovery_file.read(self.file)
                    with transport.Connection(found) as connection:
                        return self._exchange(connection, found.token, op, text, end)
            except NotListening:
                if time.monotonic() >= min(give_up, end):
                    raise HubNotRunning("ZORVA Hub is not running, or its AI broker is not.") from None
            except (Busy, protocol.RepliedToAnother):
                give_up = time.monotonic() + self.patience
                if time.monotonic() >= end:
                    raise WaitedInVain("the broker is busy with somebody else", may_have_been_served=False) from None
            except _NotServed:
                give_up = time.monotonic() + self.patience
                if time.monotonic() >= end:
                    raise WaitedInVain("the broker went away before it replied, again and again",
                                       may_have_been_served=op in protocol.REPEATABLE) from None
            time.sleep(pause)
            pause = min(pause * 2, LONGEST_PAUSE)

    def _exchange(self, connection, token: str, op: str, text, end: float) -> dict:
        request_id = protocol.new_request_id()
        data = protocol.frame(protocol.request(op, token, request_id, text))
        try:
            connection.send(data, end)
        except ConnectionEnded:
            raise _NotServed from None          # a part of a request is never served
        try:
            header = connection.receive(protocol.HEADER.size, end)
            payload = connection.receive(protocol.payload_length(header), end)
        except ConnectionEnded:
            # Lost in a pipe that was being renewed, or the Hub died over it: from here these look the same.
            if op in protocol.REPEATABLE:
                raise _NotServed from None
            raise NoReply("the broker closed the connection without a reply; the request may have been carried out") from None
        return protocol.read_reply(payload, request_id)


class _NotServed(Exception):
    """The request was not served, or may be sent again although it perhaps was."""
