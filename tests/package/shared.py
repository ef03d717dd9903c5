"""What the tests of both packages share: commands, and files."""

import hashlib
import os
import subprocess
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]


class Run:
    """Where this run of the tests keeps its things, and the package that it judges."""
    scratch = None
    package = None


def outcome(*command, limit: float = 120.0):
    """Runs a command: exit code, and what it said on both outputs."""
    done = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, timeout=limit,
                          check=False)
    return done.returncode, done.stdout


def output(*command) -> str:
    """What a command that has to succeed says."""
    code, text = outcome(*command)
    if code != 0:
        raise AssertionError(f"{' '.join(map(str, command))} ended with {code}: {text}")
    return text


def files_below(folder: Path):
    """Everything below a folder that is not itself a folder, as paths relative to it."""
    return sorted(os.path.relpath(os.path.join(where, name), folder) for where, _, names in os.walk(folder) for name in names)


def contents(folder: Path) -> dict:
    """Every path below a folder, with the hash of what is a plain file."""
    return {str(path): hashlib.sha256(path.read_bytes()).hexdigest() if path.is_file() else None for path in sorted(folder.rglob("*"))}
