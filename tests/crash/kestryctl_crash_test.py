"""Kills the real kestryctl at its system calls, and makes them fail, with strace.

For every command and every call that it makes from the first one on the data directory: it is
killed there, the call fails once and from then on, and it fails with another error and with one of
the moment; calls that a signal may interrupt are interrupted. Each time
`kestryctl check` is clean afterwards, the ledger is the one before or the one after, what was
reported is what happened, and the next change succeeds and leaves no temporary file.

It is also stopped there, the directory is moved away and a copy put in its place, and it goes on:
then one of the two is the one before, and the other is, as reported, the one before or after.

Usage: kestryctl_crash_test.py PROGRAM [--seed N] [--seconds N]

With --seconds, the points are tried in an order drawn from the seed until the time is over, but
at least one for each call that a command makes.
"""

import argparse
import collections
import errno
import json
import os
import pathlib
import random
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time

# What saving is made of; further calls that the commands turn out to make are tried as well.
KINDS = ["open", "newfstatat", "read", "flock", "mkdir", "write", "fsync", "link", "rename",
         "unlink", "close"]
# Calls that have nothing to do with files.
OTHER = {"brk", "exit_group", "futex", "madvise", "mmap", "mprotect", "munmap"}
KILL = "signal=SIGKILL"
EXCHANGE = "signal=SIGSTOP"
# Refusals that say nothing of the error: the ledger counts as unreadable, so that the backup's
# session is what is seen; there are no random numbers; a close made to fail has left a lock.
GENERAL = re.compile("It has been preserved|Saving is disabled|No valid backup|No (running )?session "
                     "to|Session cannot resume|random numbers|is using this data")
# An error beside EIO is drawn for each point. Looking at a file that is there never gives ENOENT.
ERRORS = ["EACCES", "EDQUOT", "ENOSPC", "EROFS", "ENOENT"]
# Errors of the moment: one of them is drawn for each point too. None is ever taken for damage.
PASSING = ["EMFILE", "ENFILE", "ENOMEM", "EAGAIN", "ESTALE", "ETIMEDOUT", "ENOBUFS"]
DAMAGE = re.compile("It has been preserved|Saving is disabled")
# Calls that a signal may interrupt, and that are repeated then.
REPEATED = {"rename", "linkat", "unlink", "mkdir", "flock", "fsync", "writev"}
UUID = re.compile(r"[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}", re.IGNORECASE)
EARLIEST_DATE = 7e8  # Numbers beyond it are moments, which differ from run to run.
DAMAGED = b'{"clients":['

# `when` counts the calls of that name; with a plus, those after it are meant too.
Point = collections.namedtuple("Point", "command call fault when")


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


def content(file):
    return file.read_bytes() if file.exists() else None


class Violation(Exception):
    pass


def require(holds, words):
    if not holds:
        raise Violation(words)


class Command:
    """A command, the data directory it starts from, and the one it leads to undisturbed."""

    def __init__(self, workshop, name, preparation, words, change=None):
        self.workshop = workshop
        self.name = name
        self.words = words
        self.start = workshop.root / name
        for step in preparation:
            workshop.do(self.start, *step)
        if change:
            change(self.start / "ledger.json")
        # What an earlier crash may have left, so that it has to be removed.
        for file in ("ledger.json", "ledger.backup.json"):
            if self.start.exists():
                for ending in (".new", ".new-2", ".new-3"):
                    (self.start / (file + ending)).write_bytes(b"torn")
        self.before = content(self.start / "ledger.json")
        directory = workshop.fresh(self.start)
        lines = workshop.trace(directory, words)[1].splitlines()
        self.after = shape(json.loads(content(directory / "ledger.json")))
        self.calls = list(self.calls_on(str(directory), lines))

    @staticmethod
    def calls_on(directory, lines):
        """Each call from the first on the directory: its name, and which of that name it is."""
        counts, began = collections.Counter(), False
        for line in lines:
            call = re.match(r"\d+ +(\w+)\(", line)
            if call:
                counts[call[1]] += 1
                # The program before the one that works on the files only looks at the folder.
                began = began or (counts["execve"] > 1 and f'"{directory}' in line)
                if began and call[1] not in OTHER:
                    yield call[1], counts[call[1]]

    def points(self, chance):
        for call, number in self.calls:
            errors = ERRORS[:-1] if call == "newfstatat" else ERRORS
            yield Point(self, call, KILL, str(number))
            yield Point(self, call, EXCHANGE, str(number))
            yield Point(self, call, "error=EIO", str(number))
            yield Point(self, call, "error=EIO", f"{number}+")
            yield Point(self, call, "error=" + chance.choice(errors), str(number))
            yield Point(self, call, "error=" + chance.choice(PASSING), str(number))
            if call in REPEATED:
                yield Point(self, call, "error=EINTR", str(number))


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
        """Runs a command; returns what came of it, and its system calls."""
        log = self.root / "calls"
        result = self.run(
            directory, *words, prefix=("strace", "-f", "-qq", "-o", str(log), *options))
        return result, log.read_text(errors="replace")

    def fresh(self, start):
        directory = self.root / "data"
        shutil.rmtree(directory, ignore_errors=True)
        if start.exists():
            shutil.copytree(start, directory)
        return directory

    def stopped(self, log):
        """The process that has stopped, as soon as one has."""
        while True:
            found = re.search(r"^(\d+) +--- stopped by SIGSTOP", log.read_text(), re.MULTILINE)
            if found:
                return int(found[1])
            time.sleep(0.002)

    def attempt_exchange(self, point):
        directory, away = self.fresh(point.command.start), self.root / "away"
        shutil.rmtree(away, ignore_errors=True)
        log = self.root / "calls"
        log.write_text("")
        copied = []

        def exchange():
            process = self.stopped(log)
            if directory.exists():
                directory.rename(away)
                shutil.copytree(away, directory)
                copied.append(content(away / "ledger.json"))
            os.kill(process, signal.SIGCONT)

        other = threading.Thread(target=exchange)
        other.start()
        result, _ = self.trace(directory, point.command.words, "-e", "trace=" + point.call,
                               "-e", f"inject={point.call}:{EXCHANGE}:when={point.when}")
        other.join()
        both = [each for each in (directory, away) if each.exists()]
        happened = [self.judge(each, point) for each in both]
        changed = [each for each in both if copied and content(each / "ledger.json") != copied[0]]
        require(len(changed) <= 1, "both directories were written to")
        require(any(happened) == (result.returncode == 0),
                f"what was reported is not what happened: {result.stderr.decode()}")
        if copied:
            shutil.rmtree(directory)
            away.rename(directory)
        self.go_on(directory, point, happened[-1])

    def attempt(self, point):
        if point.fault == EXCHANGE:
            self.attempt_exchange(point)
            return
        directory = self.fresh(point.command.start)
        inject = f"inject={point.call}:{point.fault}:when={point.when}"
        result, log = self.trace(
            directory, point.command.words, "-e", "trace=" + point.call, "-e", inject)
        require("killed by SIGKILL" in log if point.fault == KILL else "(INJECTED)" in log,
                "the call was not reached")
        happened = self.judge(directory, point)
        words = result.stderr.decode()
        require("The file could not" not in words, f"the message names no file: {words}")
        error = point.fault.removeprefix("error=")
        if error in PASSING and point.command.before != DAMAGED:
            require(not DAMAGE.search(words), f"an error of the moment is taken for damage: {words}")
        if error == "EINTR":
            require(happened and result.returncode == 0, f"an interruption is a failure: {words}")
        # A message that cannot be written is told as a failure, after the change.
        if point.fault != KILL and point.call != "write":
            require(happened or result.returncode != 0, "success was reported, nothing happened")
            require(not happened or result.returncode == 0, "failure was reported, yet it happened")
            told = os.strerror(getattr(errno, error))
            require(happened or told in words or GENERAL.search(words),
                    f"the words are not the system's: {words}")
        self.go_on(directory, point, happened)

    def judge(self, directory, point):
        """Whether the ledger is the one after; it must be that or the one before."""
        ledger = content(directory / "ledger.json")
        if ledger == point.command.before:
            return False
        try:
            left = shape(json.loads(ledger))
        except (TypeError, ValueError):
            raise Violation("the ledger is torn or gone") from None
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
        left = [file.name for file in directory.glob("*.new*")]
        require(not left, f"temporary files stay: {left}")


def spread_out(ledger):
    """Gives a ledger a form that the program reads but does not write: its backup is a copy."""
    ledger.write_text(json.dumps(json.loads(ledger.read_bytes()), indent=1))


def commands(workshop):
    base = [["client", "add", "Acme", "--rate", "100"], ["client", "add", "Beta"]]
    base += [["add", "Acme", "--start", "-2h", "--duration", "1h", "--title", f"Session {number}"]
             for number in range(30)]
    running = [*base, ["start", "Acme", "--title", "Work"]]
    for name, *rest in [
            ("first save", [], ["client", "add", "Acme"]),
            ("client add", base, ["client", "add", "Gamma"]),
            ("client add, copied backup", base, ["client", "add", "Gamma"], spread_out),
            ("start", base, ["start", "Acme", "--title", "Work"]),
            ("pause", running, ["pause"]),
            ("resume", [*running, ["pause"]], ["resume"]),
            ("stop", running, ["stop"]),
            ("restore", base, ["restore", "--yes"], lambda ledger: ledger.write_bytes(DAMAGED))]:
        yield Command(workshop, name, *rest)


def in_drawn_order(points, chance):
    """The points in another order, one of each call first; and how many of these there are."""
    chance.shuffle(points)
    first = list({point.call: point for point in points}.values())
    chosen = set(map(id, first))
    return first + [point for point in points if id(point) not in chosen], len(first)


def explore(workshop, arguments):
    chance = random.Random(arguments.seed)
    points = [point for command in commands(workshop) for point in command.points(chance)]
    least = len(points)
    if arguments.seconds:
        points, least = in_drawn_order(points, chance)
    end = time.monotonic() + (arguments.seconds or float("inf"))
    tried, calls, violations = collections.Counter(), collections.Counter(), 0
    for index, point in enumerate(points):
        if index >= least and time.monotonic() > end:
            break
        tried[point.command.name] += 1
        calls[point.call] += 1
        try:
            workshop.attempt(point)
        except Violation as violation:
            violations += 1
            print(f"VIOLATED: {point.command.name}, {point.call} {point.when}, {point.fault}: "
                  f"{violation}")
    for counts in (tried, calls):
        for name, count in counts.items():
            print(f"{name:28} {count:6}")
    print(f"{tried.total()} of {len(points)} points, {violations} violations")
    missing = [kind for kind in KINDS if not any(call.startswith(kind) for call in calls)]
    for kind in missing:
        print(f"VIOLATED: no call of the kind {kind} was tried")
    return violations == 0 and not missing


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
