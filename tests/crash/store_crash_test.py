"""Lets programs share a record store in a file while they are killed and their calls fail.

- Racing: several writers save over each other's records at once and are killed at random places,
  until together they have done the given number of operations.
- At every call: one writer is killed at each of its system calls on the store, and each fails once,
  and from then on, with strace.

What the store has acknowledged is never lost, each version is saved over by one writer alone, the
file is sound to SQLite and to the program, the next writer gets on, and no journal stays behind.

Usage: store_crash_test.py PROGRAM [--seed N] [--operations N] [--seconds N]

With --seconds, each of the two parts ends after that time; the calls are then tried in an order
drawn from the seed, but at least one of each kind.
"""

import argparse
import collections
import os
import pathlib
import random
import re
import shutil
import signal
import sqlite3
import subprocess
import sys
import tempfile
import threading
import time

WRITERS = 3
# Of these at least one call must have been tried; whatever else the writer calls is tried as well.
KINDS = ["openat", "newfstatat", "pread64", "pwrite64", "fcntl", "fdatasync", "unlink", "close"]
OTHER = {"brk", "exit_group", "futex", "madvise", "mmap", "mprotect", "munmap", "write", "getrandom"}
KILL = "signal=SIGKILL"
FAULTS = [KILL, "error=EIO", "error=ENOSPC", "error=EMFILE", "error=EACCES"]
WORDS = re.compile(r"failed .*(record store|workspace).*\.$")

Save = collections.namedtuple("Save", "record version old text")
Point = collections.namedtuple("Point", "call fault when")


class Violation(Exception):
    pass


def require(holds, words):
    if not holds:
        raise Violation(words)


def change(version):
    """The place of a version in the order of changes."""
    return int(version.split("-")[0]) if version != "none" else 0


class Judge:
    """What writers were told, against what the store holds."""

    def __init__(self, program, path):
        self.program, self.path = program, path
        self.saves, self.operations, self.counts = [], 0, collections.Counter()

    def hear(self, output):
        # A line that was not written whole was not acknowledged.
        for line in output.split("\n")[:-1]:
            kind, *rest = line.split(" ")
            self.counts[kind] += 1
            if kind == "saved":
                self.saves.append(Save(*rest))
            elif kind == "done":
                self.operations += 1
            else:
                require(kind != "unsound", line)
                require(kind != "failed" or WORDS.match(line), f"no words for people: {line}")

    def held(self):
        result = subprocess.run([self.program, self.path, "judge", "0", "0"], capture_output=True,
                                text=True, timeout=60)
        require(result.returncode == 0, f"the store is not sound: {result.stdout}{result.stderr}")
        lines = [line.split(" ") for line in result.stdout.splitlines()]
        require(all(line[0] == "holds" for line in lines), f"the store fails: {result.stdout}")
        return {line[1]: line[2] for line in lines}

    def judge(self):
        held = self.held()
        acknowledged = {save.version for save in self.saves}
        require(len(acknowledged) == len(self.saves), "one version was given twice")
        over = collections.Counter((save.record, save.old) for save in self.saves)
        require(not over or max(over.values()) == 1, f"two won: {over.most_common(1)}")
        chains = collections.defaultdict(list)
        for save in sorted(self.saves, key=lambda each: change(each.version)):
            chains[save.record].append(save)
        for record, chain in chains.items():
            require(record in held, f"{record} is gone")
            for earlier, later in zip(chain, chain[1:]):
                self.follows(earlier.version, later.old, acknowledged)
            self.follows(chain[-1].version, held[record], acknowledged)
        self.judge_file()

    @staticmethod
    def follows(earlier, later, acknowledged):
        # Between them may be saves whose writer was killed before it could tell.
        require(later == earlier
                or (later not in acknowledged and change(later) > change(earlier)),
                f"{earlier} was acknowledged and lost, there is {later}")

    def go_on(self):
        """A writer that nobody disturbs, which also clears away what a dead one has left."""
        result = subprocess.run([self.program, self.path, "next", "8", "5"], capture_output=True,
                                text=True, timeout=120)
        require(result.returncode == 0 and "failed" not in result.stdout,
                f"the next writer fails: {result.stdout}{result.stderr}")
        self.hear(result.stdout)

    def judge_file(self):
        connection = sqlite3.connect(self.path)
        found = connection.execute("PRAGMA integrity_check").fetchall()
        connection.close()
        require(found == [("ok",)], f"the file is damaged: {found}")
        files = os.listdir(os.path.dirname(self.path))
        require(files == [os.path.basename(self.path)], f"files stay: {files}")


def race(program, root, arguments, chance):
    """Writers at once, each killed and started anew until the operations are done."""
    folder = root / "race"
    folder.mkdir()
    judge = Judge(program, str(folder / "records"))
    guard, kills = threading.Lock(), collections.Counter()
    end = time.monotonic() + (arguments.seconds or float("inf"))

    def keep_writing(number, seeds):
        generation = 0
        while judge.operations < arguments.operations and time.monotonic() < end:
            generation += 1
            writer = subprocess.Popen(
                [program, judge.path, f"w{number}g{generation}", "1000000",
                 str(seeds.getrandbits(30))], stdout=subprocess.PIPE, text=True)
            # Some die while they make or read the store, most in the middle of saving.
            timer = threading.Timer(seeds.choice([0.01, 0.05, 0.3, 1.0]) * seeds.random(),
                                    writer.kill)
            timer.start()
            output, _ = writer.communicate()
            timer.cancel()
            kills[writer.returncode == -signal.SIGKILL] += 1
            with guard:
                try:
                    judge.hear(output)
                except Violation as violation:
                    violations.append(violation)

    violations = []
    writers = [threading.Thread(target=keep_writing, args=(n, random.Random(chance.random())))
               for n in range(WRITERS)]
    for writer in writers:
        writer.start()
    for writer in writers:
        writer.join()
    if violations:
        raise violations[0]
    require(kills[False] == 0, "a writer ended by itself")
    judge.go_on()
    judge.judge()
    for kind in ("saved", "lost"):
        require(judge.counts[kind] > 0, f"no save was {kind}, so nothing was tried")
    print(f"racing: {judge.operations} operations of {WRITERS} writers, {kills[True]} kills, "
          + ", ".join(f"{count} {kind}" for kind, count in sorted(judge.counts.items())))


class Calls:
    """One writer at a time, disturbed at one call or from one call on."""

    def __init__(self, program, root):
        self.program, self.root = program, root

    def start(self, isFresh):
        """An empty folder, or a store that a writer has used."""
        folder = self.root / "calls"
        shutil.rmtree(folder, ignore_errors=True)
        folder.mkdir()
        judge = Judge(self.program, str(folder / "records"))
        if not isFresh:
            judge.hear(self.write(judge, "first", 6)[0])
        return judge

    def write(self, judge, name, operations, *prefix):
        result = subprocess.run([*prefix, self.program, judge.path, name, str(operations), "5"],
                                capture_output=True, text=True, timeout=120)
        return result.stdout, result.returncode

    def trace(self, judge, *options):
        log = self.root / "log"
        output, code = self.write(judge, "traced", 4, "strace", "-f", "-qq", "-o", str(log),
                                  *options)
        return output, code, log.read_text(errors="replace")

    def points(self, isFresh):
        judge = self.start(isFresh)
        _, _, log = self.trace(judge)
        counts, began = collections.Counter(), False
        for line in log.splitlines():
            call = re.match(r"\d+ +(\w+)\(", line)
            if not call:
                continue
            counts[call[1]] += 1
            began = began or f'"{judge.path}' in line and call[1] != "execve"
            if began and call[1] not in OTHER:
                for fault in FAULTS:
                    yield Point(call[1], fault, str(counts[call[1]]))
                yield Point(call[1], "error=EIO", f"{counts[call[1]]}+")

    def attempt(self, isFresh, point):
        judge = self.start(isFresh)
        output, code, log = self.trace(judge, "-e", "trace=" + point.call, "-e",
                                       f"inject={point.call}:{point.fault}:when={point.when}")
        require("killed by SIGKILL" in log if point.fault == KILL else "(INJECTED)" in log,
                "the call was not reached")
        require(code == 0 or point.fault == KILL, f"the writer ends with {code}: {output}")
        judge.hear(output)
        judge.go_on()
        judge.judge()


def explore(program, root, arguments, chance):
    calls = Calls(program, root)
    points = [(isFresh, point) for isFresh in (True, False)
              for point in calls.points(isFresh)]
    least = len(points)
    if arguments.seconds:
        chance.shuffle(points)
        # One of each kind of call and fault first, and of these the kills.
        first = sorted({(each[1].call, each[1].fault): each for each in points
                        if each[1].call in KINDS}.values(),
                       key=lambda each: each[1].fault != KILL)
        chosen = set(map(id, first))
        points = first + [each for each in points if id(each) not in chosen]
        least = len({point.call for _, point in first})
    end = time.monotonic() + (arguments.seconds or float("inf"))
    tried, violations = collections.Counter(), 0
    for index, (isFresh, point) in enumerate(points):
        if index >= least and time.monotonic() > end:
            break
        tried[point.call] += 1
        try:
            calls.attempt(isFresh, point)
        except Violation as violation:
            violations += 1
            print(f"VIOLATED: {'fresh' if isFresh else 'used'} store, {point}: {violation}")
    print(f"calls: {tried.total()} of {len(points)} points, {violations} violations; "
          + ", ".join(f"{count} {call}" for call, count in sorted(tried.items())))
    missing = [kind for kind in KINDS if kind not in tried]
    for kind in missing:
        print(f"VIOLATED: no call of the kind {kind} was tried")
    return violations == 0 and not missing


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("program")
    parser.add_argument("--seed", type=int, default=random.SystemRandom().getrandbits(32))
    parser.add_argument("--operations", type=int, default=10_000)
    parser.add_argument("--seconds", type=float)
    arguments = parser.parse_args()
    program = os.path.abspath(arguments.program)
    if not shutil.which("strace"):
        sys.exit("strace is not installed.")
    print(f"seed {arguments.seed}")
    chance = random.Random(arguments.seed)
    with tempfile.TemporaryDirectory(prefix="kestry-store-") as name:
        root = pathlib.Path(name)
        try:
            race(program, root, arguments, chance)
        except Violation as violation:
            sys.exit(f"VIOLATED: racing: {violation}")
        sys.exit(0 if explore(program, root, arguments, chance) else 1)


if __name__ == "__main__":
    main()
