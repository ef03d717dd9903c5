"""Waiting for a condition, with a limit."""

import time


def wait_for(condition, what: str, limit: float = 10.0, every: float = 0.04):
    """Asks the condition again and again and answers with its first true value. Raises AssertionError, which names `what`,
    when the limit in seconds has passed."""
    end = time.monotonic() + limit
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError(f"waited {limit:g} s in vain for {what}")
        time.sleep(every)


def stays(condition, seconds: float, every: float = 0.05) -> bool:
    """True when the condition holds at every look for this long. Only for "nothing happens", which has no event."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        if not condition():
            return False
        time.sleep(every)
    return True
