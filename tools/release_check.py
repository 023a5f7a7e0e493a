#!/usr/bin/env python3
"""Everything that a release has to pass, on one machine, in a few hours.

    release_check.py [ROW...]

Prints the commit that is checked, a row for each check as it ends, and a table of all at the end: its name, the result, how long
it took, and where to read more. The exit status is 1 when one has failed. Names choose rows; one that
several rows begin with, as "fuzz", chooses all of them.
"""

import os
import pathlib
import signal
import subprocess
import sys
import time
from dataclasses import dataclass

ROOT = pathlib.Path(__file__).resolve().parent.parent
LOGS = ROOT / "build/release-check"
FUZZ_SECONDS = 600
SIMULATED_RUNS = 10_000
# These are about the commit, so nothing may have changed since.
OF_THE_COMMIT = ("package", "packages", "reproducible")
NO_PROGRAM, OUT_OF_TIME = 127, 124  # The statuses by which shells tell of these.
BENCHMARKS = ("save", "open", "report", "store", "sync", "cloud", "ctl", "app", "window", "huge")


@dataclass(frozen=True)
class Row:
    name: str
    command: tuple
    minutes: float = 120  # After these it is ended, and has failed.


@dataclass(frozen=True)
class Outcome:
    row: Row
    status: int
    seconds: float
    log: pathlib.Path

    def __str__(self):
        minutes, seconds = divmod(round(self.seconds), 60)
        result = "passed" if self.status == 0 else "FAILED"
        return f"{self.row.name:<18} {result:<8} {minutes:>4}:{seconds:02}   {self.log}"


def fuzzers(root=ROOT):
    return sorted(each.name for each in (root / "fuzz/corpus").iterdir() if each.is_dir())


def all_rows():
    """From what says most in the least time to what takes longest; what measures stands alone."""
    packages = str(ROOT / "build/packages")
    rows = [
        Row("documents", ("tools/check_documents.sh",)),
        Row("test", ("./dev", "test")),
        Row("sanitize", ("./dev", "sanitize")),
        Row("couch", ("./dev", "couch")),
        Row("spreadsheet", ("./dev", "spreadsheet")),
        Row("contrast", ("./dev", "contrast")),
        Row("shots", ("./dev", "shots")),
        Row("package", ("./dev", "package")),
        Row("packages", ("python3", "-B", "packaging/check_packages.py", packages)),
        Row("reproducible", ("python3", "-B", "packaging/check_reproducible.py", packages)),
        Row("lint", ("./dev", "lint"), 360),
        Row("crash", ("./dev", "crash"), 360),
        Row("simulation", ("./dev", "sim", "--runs", str(SIMULATED_RUNS)), 360),
    ]
    rows += [Row(f"bench-{name}", ("./dev", "bench", name)) for name in BENCHMARKS]
    rows += [Row(f"fuzz-{name}", ("./dev", "fuzz", name, str(FUZZ_SECONDS))) for name in fuzzers()]
    return rows


def chosen(rows, names):
    """The rows of these names, in their own order; all when there is no name."""
    if not names:
        return rows
    taken = set()
    for name in names:
        found = {row.name for row in rows if row.name == name}
        found = found or {row.name for row in rows if row.name.startswith(name + "-")}
        if not found:
            known = " ".join(row.name for row in rows)
            raise SystemExit(f"release-check: There is no row \"{name}\". These are: {known}")
        taken |= found
    return [row for row in rows if row.name in taken]


def run(row, root, output):
    """Runs the command of a row, and ends all that it has started when its time is over."""
    try:
        process = subprocess.Popen(row.command, cwd=root, stdin=subprocess.DEVNULL, stdout=output,
                                   stderr=subprocess.STDOUT, start_new_session=True)
    except OSError as failure:
        print(f"{row.command[0]} cannot be run: {failure.strerror}.", file=output)
        return NO_PROGRAM
    try:
        return process.wait(row.minutes * 60)
    except subprocess.TimeoutExpired:
        print(f"It was ended after {row.minutes:g} minutes.", file=output)
        return OUT_OF_TIME
    finally:
        if process.returncode is None:
            os.killpg(process.pid, signal.SIGTERM)
            try:
                process.wait(10)
            except subprocess.TimeoutExpired:
                os.killpg(process.pid, signal.SIGKILL)
                process.wait()


def git(*words, root=ROOT):
    return subprocess.check_output(["git", *words], cwd=root, text=True).strip()


def describe_sources(rows, root=ROOT):
    """A line on what is checked. Refuses rows about the commit where that is not what is here."""
    changed = git("status", "--porcelain", root=root)
    refused = [row.name for row in rows if row.name in OF_THE_COMMIT]
    if changed and refused:
        raise SystemExit("release-check: There are changes that are not committed, and no package has "
                         f"them. Commit them, or leave out: {' '.join(refused)}")
    return f"commit {git('rev-parse', 'HEAD', root=root)}{', with changes' if changed else ''}"


def carry_out(row, logs=LOGS, root=ROOT):
    logs.mkdir(parents=True, exist_ok=True)
    log = logs / f"{row.name}.log"
    began = time.monotonic()
    with open(log, "w", encoding="utf-8") as output:
        status = run(row, root, output)
    shown = log.relative_to(root) if log.is_relative_to(root) else log
    return Outcome(row, status, time.monotonic() - began, shown)


def check(rows, logs=LOGS, root=ROOT, show=print):
    """Carries out all rows, also after one has failed; returns the exit status."""
    outcomes = []
    try:
        for row in rows:
            outcomes.append(carry_out(row, logs, root))
            show(outcomes[-1])
    except KeyboardInterrupt:
        show(f"Interrupted in {rows[len(outcomes)].name}.")
    failed = [outcome for outcome in outcomes if outcome.status != 0]
    show(f"\n{'check':<18} {'result':<8} {'time':>7}   log")
    for outcome in outcomes:
        show(outcome)
    whole = len(outcomes) == len(rows)
    show(f"{len(outcomes)} of {len(rows)} checks, {len(failed)} failed")
    return 0 if whole and not failed else 1


def main():
    os.environ["PYTHONUNBUFFERED"] = "1"
    rows = chosen(all_rows(), sys.argv[1:])
    print(describe_sources(rows), flush=True)
    return check(rows, show=lambda line: print(line, flush=True))


if __name__ == "__main__":
    sys.exit(main())
