#!/usr/bin/env python3
"""runner.py debian|windows SCRATCH PACKAGE: runs the tests of one kind of package; run.sh and windows.sh start it where nothing of
the machine is touched. The last line is "N passed, N failed"."""

import sys
import unittest
from pathlib import Path

HERE = Path(__file__).resolve().parent
sys.path[:0] = [str(HERE), str(HERE.parent / "e2e")]

from shared import Run  # noqa: E402


def main() -> int:
    folder = str(HERE / sys.argv[1])
    Run.scratch, Run.package = map(Path, sys.argv[2:4])
    suite = unittest.TestLoader().discover(folder, top_level_dir=folder)
    result = unittest.TextTestRunner(stream=sys.stdout, verbosity=2).run(suite)
    failed = len(result.failures) + len(result.errors)
    print(f"{result.testsRun - failed} passed, {failed} failed", flush=True)
    return 0 if failed == 0 and result.testsRun > 0 else 1


if __name__ == "__main__":
    sys.exit(main())
