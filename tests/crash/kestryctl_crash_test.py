"""Kills the real kestryctl at its system calls, and makes them fail, with strace.

For every command, every call of each kind and both faults: `kestryctl check` is clean afterwards,
the ledger is the one before or the one after, what was reported is what happened, and the next
change succeeds and leaves no temporary file.

Usage: kestryctl_crash_test.py PROGRAM [--seed N] [--seconds N]

With --seconds, the points are tried in an order drawn from the seed until the time is over.
"""

import argparse
import collections
import json
import os
import pathlib
import random
import re
import shutil
import subprocess
import sys
import tempfile
import time

CALLS = ["openat", "write", "writev", "fsync", "rename", "linkat", "unlink", "close"]
KILL, FAIL = "signal=SIGKILL", "error=EIO"
UUID = re.compile(r"[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}", re.IGNORECASE)
EARLIEST_DATE = 7e8  # Numbers beyond it are moments, which differ from run to run.
DAMAGED = b'{"clients":['

Point = collections.namedtuple("Point", "command call fault number")


def shape(value):
    """A ledger without what differs from run to run: identifiers and moments."""
    if isinstance(value, dict):
        return {key: shape(member) for key, member in value.items()}
    if isinstance(value, list):
        return [shape(member) for member in value]
    if isinstance(value, str):
        return UUID.sub("id", value)
    if isinstance(value, (int, float)) and value > EARLIEST_DATE:
        return "moment"
    return value


class Violation(Exception):
    pass


def require(holds, words):
    if not holds:
        raise Violation(words)


class Command:
    """A command, the data directory it starts from, and the one it leads to undisturbed."""

    def __init__(self, workshop, name, preparation, words):
        self.workshop = workshop
        self.words = words
        self.start = workshop.root / name
        self.start.mkdir()
        for step in preparation:
            workshop.do(self.start, *step)
        if name == "restore":
            (self.start / "ledger.json").write_bytes(DAMAGED)
        # What an earlier crash may have left, so that it has to be removed.
        for file in ("ledger.json", "ledger.backup.json"):
            (self.start / (file + ".new")).write_bytes(b"torn")
        self.before = (self.start / "ledger.json").read_bytes()
        directory = workshop.fresh(self.start)
        log = workshop.root / "calls"
        workshop.trace(directory, words, "-o", str(log), "-e", "trace=" + ",".join(CALLS))
        self.counts = collections.Counter(re.findall(r"^(?:\d+ +)?(\w+)\(", log.read_text(), re.M))
        self.after = shape(json.loads((directory / "ledger.json").read_bytes()))

    def points(self):
        for call in CALLS:
            for number in range(1, self.counts[call] + 1):
                for fault in (KILL, FAIL):
                    yield Point(self, call, fault, number)


class Workshop:
    def __init__(self, program, root):
        self.program = program
        self.root = pathlib.Path(root)

    def run(self, directory, *words, prefix=()):
        environment = {"PATH": os.environ["PATH"], "HOME": str(self.root), "TZ": "UTC",
                       "XDG_RUNTIME_DIR": str(self.root), "KESTRY_DATA_DIR": str(directory)}
        return subprocess.run(
            [*prefix, self.program, *words], env=environment, stdin=subprocess.DEVNULL,
            capture_output=True, timeout=60)

    def do(self, directory, *words):
        result = self.run(directory, *words)
        require(result.returncode == 0, f"{' '.join(words)} fails: {result.stderr.decode()}")

    def trace(self, directory, words, *options):
        return self.run(directory, *words, prefix=("strace", "-f", "-qq", *options))

    def fresh(self, start):
        directory = self.root / "data"
        shutil.rmtree(directory, ignore_errors=True)
        shutil.copytree(start, directory)
        return directory

    def attempt(self, point):
        directory = self.fresh(point.command.start)
        inject = f"inject={point.call}:{point.fault}:when={point.number}"
        result = self.trace(directory, point.command.words, "-o", "/dev/null",
                            "-e", "trace=" + point.call, "-e", inject)
        happened = self.judge(directory, point)
        # A message that cannot be written is told as a failure, after the change.
        if point.fault == FAIL and point.call != "write":
            require(happened or result.returncode != 0, "success was reported, nothing happened")
            require(not happened or result.returncode == 0, "failure was reported, yet it happened")
        self.go_on(directory, point, happened)

    def judge(self, directory, point):
        """Whether the ledger is the one after; it must be that or the one before."""
        ledger = (directory / "ledger.json").read_bytes()
        if ledger == point.command.before:
            return False
        try:
            left = shape(json.loads(ledger))
        except ValueError:
            raise Violation("the ledger is torn") from None
        require(left == point.command.after, "the ledger is neither the one before nor after")
        return True

    def go_on(self, directory, point, happened):
        if point.command.before == DAMAGED:
            copies = [file.read_bytes() for file in directory.glob("ledger.corrupt-*.json")]
            require(all(copy == DAMAGED for copy in copies), "a preserved ledger is torn")
            require(copies or not happened, "the damaged ledger was lost")
            if not happened:
                self.do(directory, "restore", "--yes")
        self.do(directory, "check")
        self.do(directory, "client", "add", "Next")
        self.do(directory, "check")
        left = [file.name for file in directory.glob("*.new")]
        require(not left, f"temporary files stay: {left}")


def commands(workshop):
    base = [["client", "add", "Acme", "--rate", "100"], ["client", "add", "Beta"]]
    base += [["add", "Acme", "--start", "-2h", "--duration", "1h", "--title", f"Session {number}"]
             for number in range(30)]
    running = [*base, ["start", "Acme", "--title", "Work"]]
    for name, preparation, words in [
            ("start", base, ["start", "Acme", "--title", "Work"]),
            ("pause", running, ["pause"]),
            ("resume", [*running, ["pause"]], ["resume"]),
            ("stop", running, ["stop"]),
            ("restore", base, ["restore", "--yes"]),
            ("client", base, ["client", "add", "Gamma"])]:
        yield Command(workshop, name, preparation, words)


def explore(workshop, arguments):
    points = [point for command in commands(workshop) for point in command.points()]
    if arguments.seconds:
        random.Random(arguments.seed).shuffle(points)
    end = time.monotonic() + (arguments.seconds or float("inf"))
    counts, violations = collections.Counter(), 0
    for point in points:
        if time.monotonic() > end:
            break
        name = " ".join(point.command.words[:2])
        counts[name] += 1
        try:
            workshop.attempt(point)
        except Violation as violation:
            violations += 1
            print(f"VIOLATED: {name}, {point.call} {point.number}, {point.fault}: {violation}")
    for name, count in counts.items():
        print(f"{name:16} {count:6}")
    print(f"{counts.total()} of {len(points)} points, {violations} violations")
    return violations == 0 and counts.total() > 0


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("program")
    parser.add_argument("--seed", type=int, default=random.SystemRandom().getrandbits(32))
    parser.add_argument("--seconds", type=float)
    arguments = parser.parse_args()
    arguments.program = os.path.abspath(arguments.program)
    if not shutil.which("strace"):
        sys.exit("strace is not installed.")
    print(f"seed {arguments.seed}")
    with tempfile.TemporaryDirectory(prefix="kestry-crash-") as root:
        sys.exit(0 if explore(Workshop(arguments.program, root), arguments) else 1)


if __name__ == "__main__":
    main()
