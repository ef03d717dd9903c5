#!/usr/bin/env python3
"""Runs the end-to-end tests inside a private world; run.sh starts it there.

    runner.py --binary FILE --samples FOLDER --certificates FOLDER --killer FILE --scratch FOLDER --pictures FOLDER [PATTERN...]

PATTERN: only tests whose name contains one of these."""

import argparse
import sys
import time
import unittest
from pathlib import Path

HERE = Path(__file__).resolve().parent
PROJECT = HERE.parents[1]
SERVER_TOOL = PROJECT / "tools" / "catalogue-server"
CLIENT_TOOL = PROJECT / "tools" / "broker-client"
sys.path[:0] = [str(HERE), str(SERVER_TOOL), str(CLIENT_TOOL)]

from lib.case import World  # noqa: E402
from lib.screen import Screen  # noqa: E402


class Reporter(unittest.TextTestResult):
    """One line a test, with its time; failures are told at once."""

    def startTest(self, test):
        unittest.TestResult.startTest(self, test)
        self.began = time.monotonic()
        self.passed_tests = getattr(self, "passed_tests", 0)

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


def chosen(suite, patterns):
    """The tests whose name contains one of the patterns; all of them without patterns."""
    for item in suite:
        if isinstance(item, unittest.TestSuite):
            yield from chosen(item, patterns)
        elif not patterns or any(pattern in item.id() for pattern in patterns):
            yield item


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
    suite = unittest.TestSuite()
    for folder in (SERVER_TOOL / "tests", CLIENT_TOOL / "tests", HERE):
        suite.addTests(chosen(loader.discover(str(folder), top_level_dir=str(folder)), options.patterns))

    World.screen = Screen()
    result = Reporter(unittest.runner._WritelnDecorator(sys.stdout), True, 1)
    result.passed_tests = 0
    try:
        suite.run(result)
    finally:
        World.screen.stop()
    # A class that could not be set up is no test, but it is a failure.
    not_even_begun = [test for test, _ in result.errors if not isinstance(test, unittest.TestCase)]
    failed = result.testsRun - result.passed_tests + len(not_even_begun)
    print(f"{result.passed_tests} passed, {failed} failed", flush=True)
    return 0 if failed == 0 and result.passed_tests > 0 else 1


if __name__ == "__main__":
    sys.exit(main())
