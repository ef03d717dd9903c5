#!/usr/bin/env python3
"""Runs the end-to-end tests inside a private world; run.sh starts it there.

    runner.py --binary FILE --samples FOLDER --certificates FOLDER --killer FILE --scratch FOLDER --pictures FOLDER [PATTERN...]

PATTERN: only tests whose name contains one of these. A Windows program runs under Wine, without the tests that
left-out-on-windows.txt names."""

import argparse
import fnmatch
import sys
import time
import unittest
from pathlib import Path

HERE = Path(__file__).resolve().parent
PROJECT = HERE.parents[1]
SERVER_TOOL = PROJECT / "tools" / "catalogue-server"
CLIENT_TOOL = PROJECT / "tools" / "broker-client"
sys.path[:0] = [str(HERE), str(SERVER_TOOL), str(CLIENT_TOOL)]

from lib import hubs  # noqa: E402
from lib.case import World  # noqa: E402
from lib.screen import Screen  # noqa: E402


class Reporter(unittest.TextTestResult):
    """One line a test, with its time; failures are told at once."""

    passed_tests = 0

    def __init__(self):
        super().__init__(unittest.runner._WritelnDecorator(sys.stdout), True, 1)

    def startTest(self, test):
        unittest.TestResult.startTest(self, test)
        self.began = time.monotonic()

    def _line(self, test, word):
        name = test.id().removeprefix("test_")
        print(f"{word}  {name}  ({time.monotonic() - self.began:.1f} s)", flush=True)

    def addSuccess(self, test):
        unittest.TestResult.addSuccess(self, test)
        self.passed_tests += 1
        self._line(test, "ok    ")

    def addFailure(self, test, error):
        unittest.TestResult.addFailure(self, test, error)
        self._line(test, "FAILED")
        print(self.failures[-1][1], flush=True)

    def addError(self, test, error):
        unittest.TestResult.addError(self, test, error)
        self._line(test, "FAILED")
        print(self.errors[-1][1], flush=True)

    def addSubTest(self, test, subtest, error):
        unittest.TestResult.addSubTest(self, test, subtest, error)
        if error is not None:
            self._line(subtest, "FAILED")
            print((self.failures + self.errors)[-1][1], flush=True)


def passed_again(result) -> int:
    """Runs the tests once more in which not the Hub failed, but what it runs on; how many of them pass now."""
    broken = {test.id(): type(test) for test, _ in result.failures + result.errors if getattr(test, "system_failed", False)}
    again = Reporter()
    for name, kind in broken.items():
        print(f"again   {name.removeprefix('test_')}: Wine itself broke", flush=True)
        kind(name.rpartition(".")[2]).run(again)
    return again.passed_tests


def tests_in(suite):
    """Every test of a suite of suites."""
    for item in suite:
        if isinstance(item, unittest.TestSuite):
            yield from tests_in(item)
        else:
            yield item


class LeftOut:
    """What left-out-on-windows.txt names: lines "pattern | reason"."""

    def __init__(self):
        lines = (HERE / "left-out-on-windows.txt").read_text(encoding="utf-8").splitlines()
        entries = [[part.strip() for part in line.split("|", 1)] for line in lines if line.strip() and not line.startswith("#")]
        self._reasons = {f"test_{pattern}": reason for pattern, reason in entries}
        self._unused = set(self._reasons)
        self.tests = []         # pairs of name and reason

    def takes(self, test) -> bool:
        """Whether this test is left out; it is then counted."""
        hits = [pattern for pattern in self._reasons if fnmatch.fnmatchcase(test.id(), pattern)]
        self._unused -= set(hits)
        self.tests += [(test.id().removeprefix("test_"), self._reasons[pattern]) for pattern in hits[:1]]
        return bool(hits)

    def tell(self) -> None:
        for name, reason in self.tests:
            print(f"left out  {name}: {reason}")

    def assert_used(self) -> None:
        """An entry that names nothing is a mistake, which would hide others."""
        if self._unused:
            sys.exit("left-out-on-windows.txt names tests that do not exist: " + ", ".join(sorted(self._unused)))


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    for name in ("binary", "samples", "certificates", "killer", "scratch", "pictures"):
        parser.add_argument(f"--{name}", type=Path, required=True)
    parser.add_argument("patterns", nargs="*")
    options = parser.parse_args()
    for name in ("binary", "samples", "certificates", "killer", "scratch", "pictures"):
        setattr(World, name, getattr(options, name))
    World.project = PROJECT

    loader = unittest.TestLoader()
    left_out = LeftOut() if hubs.is_for_windows(World.binary) else None
    # The tools run on this machine whatever the Hub runs on.
    folders = (HERE,) if left_out else (SERVER_TOOL / "tests", CLIENT_TOOL / "tests", HERE)
    tests = [test for folder in folders for test in tests_in(loader.discover(str(folder), top_level_dir=str(folder)))]
    if left_out:
        tests = [test for test in tests if not left_out.takes(test)]
        left_out.assert_used()
    suite = unittest.TestSuite(test for test in tests if not options.patterns or any(pattern in test.id() for pattern in options.patterns))

    hubs.prepare(World.binary, World.scratch)
    World.screen = Screen()
    result = Reporter()
    try:
        suite.run(result)
        again = passed_again(result)
    finally:
        World.screen.stop()
    # A class that could not be set up is no test, but it is a failure.
    not_even_begun = [test for test, _ in result.errors if not isinstance(test, unittest.TestCase)]
    passed = result.passed_tests + again
    failed = result.testsRun - passed + len(not_even_begun)
    if left_out and not options.patterns:
        left_out.tell()
    count = f", {len(left_out.tests)} left out" if left_out else ""
    second = f" ({again} of them at the second try)" if again else ""
    print(f"{passed} passed{second}, {failed} failed{count}", flush=True)
    return 0 if failed == 0 and passed > 0 else 1


if __name__ == "__main__":
    sys.exit(main())
