"""How the server treats a request: plainly, or with a fault that a test asks for."""

import fnmatch
from dataclasses import dataclass, field, fields
from typing import Optional


@dataclass
class Rule:
    """What happens to the requests whose path matches `path` (a shell pattern). Several wishes may be combined.

    Offsets and amounts are bytes of the body."""
    path: str = "*"
    rate: Optional[int] = None           # bytes a second
    silence: Optional[str] = None        # "headers": no answer at all; "body": the answer stops at silence_after
    silence_after: int = 0
    truncate: Optional[int] = None       # the connection ends here, although the stated length is the whole
    shorten: int = 0                     # so many bytes are left out at the end, and the stated length agrees
    extend: int = 0                      # so many zero bytes follow, and the stated length agrees
    flip: Optional[int] = None           # the byte at this offset is inverted
    status: Optional[int] = None         # this status with a short page instead of the file
    location: Optional[str] = None       # a 302 to this address
    hide_length: bool = False            # no Content-Length: the end of the connection ends the body

    def matches(self, path: str) -> bool:
        return fnmatch.fnmatchcase(path, self.path)


@dataclass
class Behaviour:
    """The whole wish: whether to listen, whether to speak after accepting, and the rules, of which the first that matches
    counts."""
    listen: bool = True
    silent: bool = False                 # accepts connections and never says a word, not even of TLS
    rules: list = field(default_factory=list)

    def rule_for(self, path: str) -> Rule:
        return next((rule for rule in self.rules if rule.matches(path)), Rule())


def _known(kind, values: dict, what: str) -> dict:
    unknown = set(values) - {f.name for f in fields(kind)}
    if unknown:
        raise ValueError(f"unknown {what}: {', '.join(sorted(unknown))}")
    return values


def behaviour_from_json(value: dict) -> Behaviour:
    """The behaviour that a control file describes. Raises ValueError for a name that does not exist."""
    rules = [Rule(**_known(Rule, rule, "key of a rule")) for rule in value.get("rules", [])]
    return Behaviour(**{**_known(Behaviour, value, "key"), "rules": rules})
