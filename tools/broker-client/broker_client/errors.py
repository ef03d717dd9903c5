"""Why a call failed. Each kind has a code for programs and a text for people."""


class BrokerFailure(Exception):
    """Base of all failures. `may_have_been_served` tells whether the broker may have carried the request out."""
    code = "failure"
    may_have_been_served = False

    def as_json(self) -> dict:
        return {"ok": False, "error": self.code, "message": str(self), "httpStatus": 0}


class BrokerRefusal(BrokerFailure):
    """The broker answered with an error: `code` is the broker's own, `http_status` the upstream's or 0."""

    def __init__(self, code: str, message: str, http_status: int):
        super().__init__(message)
        self.code, self.http_status = code, http_status

    def as_json(self) -> dict:
        return {**super().as_json(), "httpStatus": self.http_status}


class HubNotRunning(BrokerFailure):
    """Nothing listened for as long as the caller wanted to wait."""
    code = "not_running"


class WaitedInVain(BrokerFailure):
    """The time of the call is over: somebody else kept the broker busy, or the reply did not come."""
    code = "timed_out"

    def __init__(self, message: str, may_have_been_served: bool):
        super().__init__(message)
        self.may_have_been_served = may_have_been_served


class NoReply(BrokerFailure):
    """The connection ended after the whole request was on its way, and the request must not be sent twice."""
    code = "no_reply"
    may_have_been_served = True


class UnusableReply(BrokerFailure):
    """A reply arrived that is none of this protocol."""
    code = "unusable_reply"
    may_have_been_served = True


class UntrustedBroker(BrokerFailure):
    """The discovery file or the pipe is not what the user's own Hub makes. Nothing was sent."""
    code = "untrusted"


class NotListening(Exception):
    """Internal: no Hub listens on the pipe now; look for it anew."""


class Busy(Exception):
    """Internal: a Hub is there, and serves somebody else or is about to renew its pipe; try again shortly."""


class ConnectionEnded(Exception):
    """Internal: the Hub closed its end."""
