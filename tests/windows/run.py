#!/usr/bin/env python3
"""Runs the Windows test programs under Wine, each test in a process of its own, and says what passed, failed and was left out.

    tests/windows/run.py BUILD-FOLDER [--only REGEX] [--programs PATTERN] [--jobs N] [--limit SECONDS]

The tests see the machine read-only, but for Wine's own folders and a disk in memory, and no network but a loopback of their own.
What Wine cannot show is left out by name: tests/windows/filters.txt says what, and why. Programs that use the message loop need a
display, the one that DISPLAY names; the others run without, in a Windows of their own.
"""
import argparse
import concurrent.futures
import ctypes
import fcntl
import fnmatch
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time

HERE = pathlib.Path(__file__).resolve().parent
PROJECT = HERE.parent.parent
FAILURES = re.compile(r"JUCE Assertion failure|Leaked objects detected")
WITHOUT_DISPLAY = ("hub_unit_support", "hub_unit_app", "hub_unit_creator")
INSIDE = "HUB_TEST_CONFINED"
MOST_TRIED_AGAIN = 40


# ---- confinement ---------------------------------------------------------------------------------------------------
def enter_namespaces():
    """Starts this program again in namespaces of its own; everything it leaves behind ends with it."""
    kinds = ["--mount", "--net", "--pid", "--fork", "--kill-child"]
    if subprocess.run(["unshare", *kinds, "true"], stderr=subprocess.DEVNULL, check=False).returncode != 0:
        kinds = ["--user", "--map-root-user", *kinds]
    os.execvpe("unshare", ["unshare", *kinds, sys.executable, *sys.argv], {**os.environ, INSIDE: "1"})


def make_read_only(writable):
    """The whole machine, but for these folders and those in which Wine's server may keep its socket."""
    subprocess.run(["mount", "--make-rprivate", "/"], check=True)
    server = pathlib.Path(f"/tmp/.wine-{os.getuid()}")
    server.mkdir(mode=0o700, exist_ok=True)
    temporary = writable[0] / "tmp"
    temporary.mkdir(exist_ok=True)
    libc = ctypes.CDLL(None, use_errno=True)
    here, recursive, mount_setattr, read_only = -100, 0x8000, 442, 1

    def set_attributes(path, on, off, flags):
        attributes = (ctypes.c_uint64 * 4)(on, off, 0, 0)
        if libc.syscall(mount_setattr, here, str(path).encode(), flags, ctypes.byref(attributes), 32) != 0:
            sys.exit(f"{path}: {os.strerror(ctypes.get_errno())}")

    set_attributes("/", read_only, 0, recursive)
    for folder in writable:
        subprocess.run(["mount", "--bind", folder, folder], check=True)
        set_attributes(folder, 0, read_only, 0)
    for folder in (server, temporary, pathlib.Path("/run/user")):
        if folder.is_dir():
            subprocess.run(["mount", "-t", "tmpfs", "-o", "mode=700", "wine", folder], check=True)
    os.environ["TMPDIR"] = str(temporary)
    subprocess.run(["ip", "link", "set", "lo", "up"], check=True)


# ---- Wine ----------------------------------------------------------------------------------------------------------
def wine_command():
    for candidate in ("/usr/lib/wine/wine64", "wine64", "wine"):
        found = shutil.which(candidate)
        if found:
            return found
    sys.exit("Wine is missing: scripts/setup-windows.sh installs it")


class Prefix:
    """A Windows of its own, made at its first use and kept for the next run."""

    def __init__(self, folder, display):
        self.folder = folder
        self.environment = {
            **{k: v for k, v in os.environ.items() if not k.lower().endswith("_proxy") and k != "DISPLAY"},
            "WINEPREFIX": str(folder), "WINEARCH": "win64", "WINEDEBUG": "-all", "WINE_D3D_CONFIG": "renderer=no3d",
            "WINEDLLOVERRIDES": "mscoree,mshtml,winemenubuilder.exe=",
            "HUB_TEST_HOST": rf"\\?\unix{HERE}/on-host",
        }
        if display:
            self.environment["DISPLAY"] = display
        self.wine = wine_command()

    def start(self):
        if not (self.folder / "system.reg").exists():
            print(f"== a new Wine prefix: {self.folder.name}", flush=True)
            self.run("wineboot", "--init", timeout=300)
            subprocess.run(["wineserver", "-w"], env=self.environment, check=True, timeout=300)
        self.restart()
        # The tests' disk is a folder on the disk in memory: Wine shows a mounted disk itself as a junction.
        disk = pathlib.Path(os.environ["TMPDIR"]) / f"disk-{self.folder.name}"
        disk.mkdir()
        drive = self.folder / "dosdevices/t:"
        drive.unlink(missing_ok=True)
        drive.symlink_to(disk)
        self.environment["HUB_TEST_ROOT"] = "T:\\"

    def restart(self):
        subprocess.run(["wineserver", "-k"], env=self.environment, check=False, timeout=60)
        # Stays for a minute between two programs, which makes each start twenty times as fast.
        subprocess.run(["wineserver", "-p60"], env=self.environment, check=True, timeout=60)
        self.run("wineboot", timeout=120)

    def run(self, *command, timeout, cwd=None):
        """The exit code and all output; a program that does not end in time is killed and has no exit code."""
        # Into a file: what Wine starts beside the program would hold a pipe open.
        with tempfile.TemporaryFile() as output:
            program = subprocess.Popen([self.wine, *map(str, command)], env=self.environment, cwd=cwd, stdin=subprocess.DEVNULL,
                                       stdout=output, stderr=subprocess.STDOUT)
            try:
                code, note = program.wait(timeout), ""
            except subprocess.TimeoutExpired:
                program.kill()
                code, note = None, f"\n(not finished after {timeout} s)\n"
            output.seek(0)
            return code, output.read().decode("utf-8", "replace") + note


# ---- tests ---------------------------------------------------------------------------------------------------------
def read_filters():
    """Lines "pattern | where | reason"; Wine leaves out both what it cannot show and what no Windows can."""
    filters = []
    for line in (HERE / "filters.txt").read_text(encoding="utf-8").splitlines():
        if line.strip() and not line.startswith("#"):
            pattern, where, reason = (part.strip() for part in line.split("|", 2))
            if where not in ("wine", "windows") or not reason:
                sys.exit(f"filters.txt: {line}")
            filters.append((pattern, where, reason))
    return filters


def tests_of(prefix, program):
    code, text = prefix.run(program, "--gtest_list_tests", timeout=120)
    if code != 0:
        sys.exit(f"{program.name} does not list its tests:\n{text}")
    names, suite = [], ""
    for line in text.splitlines():
        line = line.split("#")[0].rstrip()
        if line.startswith("  "):
            names.append(suite + line.strip())
        elif line.endswith("."):
            suite = line
    return names


class Report:
    def __init__(self, log):
        self.log = log
        self.passed = 0
        self.failures = []      # (program, name), in the order in which they failed

    def add(self, program, name, code, output, seconds):
        good = code == 0 and not FAILURES.search(output)
        self.passed += good
        print(f"{'ok' if good else 'FAILED'} {program.stem} {name} {seconds:.2f} s", file=self.log, flush=True)
        if not good:
            self.failures.append((program, name))
            print(f"FAILED {program.stem} {name} (exit code {code}, {seconds:.1f} s)\n{output}", flush=True)
            print(output, file=self.log, flush=True)


def run_program(prefix, program, names, arguments, report):
    folder = program.parent

    def one(name):
        start = time.monotonic()
        code, output = prefix.run(program, f"--gtest_filter={name}", timeout=arguments.limit, cwd=folder)
        return name, code, output, time.monotonic() - start

    with concurrent.futures.ThreadPoolExecutor(arguments.jobs) as pool:
        for done in concurrent.futures.as_completed([pool.submit(one, name) for name in names]):
            report.add(program, *done.result())


def try_again(prefix, failed, arguments, report):
    """What failed beside other tests gets one more chance in a Windows that was just started, with nothing beside it. Answers with the
    names of those that pass there, which are told, since a test that passes only alone is a weakness of somebody's."""
    prefix.restart()
    passed = []
    report.failures = [one for one in report.failures if one not in failed]
    alone = argparse.Namespace(**{**vars(arguments), "jobs": 1})
    for program, name in failed:
        before = report.passed
        run_program(prefix, program, [name], alone, report)
        passed += [name] * (report.passed - before)
    return passed


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("--only", default="", help="a regular expression over Suite.Test")
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument("--programs", default="*", help="which programs, as a pattern: hub_unit_*")
    parser.add_argument("--limit", type=int, default=240, help="seconds after which a test has failed")
    arguments = parser.parse_args()
    build = arguments.build.resolve()
    prefixes = PROJECT / "build/wine"
    prefixes.mkdir(parents=True, exist_ok=True)
    if os.environ.get(INSIDE) != "1":
        enter_namespaces()
    # The first process of a namespace ends by no signal that it has not asked for.
    for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
        signal.signal(number, lambda number, _: os._exit(128 + number))
    make_read_only([prefixes, build])
    alone = open(prefixes / "lock", "w", encoding="ascii")      # a second run would be a second master of the same Windows
    fcntl.flock(alone, fcntl.LOCK_EX)

    found = [p for p in sorted(build.glob("tests/hub_u*.exe")) if fnmatch.fnmatchcase(p.stem, arguments.programs)]
    display = os.environ.get("DISPLAY")
    if not display and any(p.stem not in WITHOUT_DISPLAY for p in found):
        sys.exit("these tests need a display: run this by scripts/xvfb.sh")
    filters = read_filters()
    unused = {pattern for pattern, _, _ in filters}
    left_out, only_alone = [], []
    with open(build / "wine-tests.log", "w", encoding="utf-8") as log:
        report = Report(log)
        for name, needs in (("console", False), ("gui", True)):
            programs = [p for p in found if (p.stem not in WITHOUT_DISPLAY) == needs]
            if not programs:
                continue
            prefix = Prefix(prefixes / name, display if needs else None)
            prefix.start()
            for program in programs:
                start, before = time.monotonic(), report.passed
                chosen = []
                for test in tests_of(prefix, program):
                    hits = [f for f in filters if fnmatch.fnmatchcase(test, f[0])]
                    unused -= {f[0] for f in hits}
                    if hits:
                        left_out.append((test, hits[0][2]))
                    elif re.search(arguments.only, test):
                        chosen.append(test)
                run_program(prefix, program, chosen, arguments, report)
                print(f"{program.stem}: {report.passed - before} of {len(chosen)} passed in {time.monotonic() - start:.0f} s", flush=True)

            failed = [one for one in report.failures if one[0] in programs]
            if 0 < len(failed) <= MOST_TRIED_AGAIN:
                only_alone += try_again(prefix, failed, arguments, report)

    if not arguments.only:
        print(f"== left out: {len(left_out)} tests")
        for name, reason in left_out:
            print(f"  {name}: {reason}")
    for name in only_alone:
        print(f"== passed only alone: {name}")
    print(f"== Windows tests under Wine: {report.passed} passed ({len(only_alone)} of them only alone), {len(report.failures)} failed, "
          f"{len(left_out)} left out")
    if arguments.programs == "*" and unused:
        sys.exit("filters.txt names tests that do not exist: " + ", ".join(sorted(unused)))
    sys.exit(1 if report.failures or not report.passed else 0)


main()
