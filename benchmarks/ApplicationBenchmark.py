"""How light the application is, beside the smallest program of its toolkit in the same run.

Usage: ApplicationBenchmark.py DIRECTORY-OF-PROGRAMS [--seconds N] [--starts N]

To be run in a D-Bus session of its own. Everything stands on one virtual screen. Ends with 1 when
a limit is missed.
"""

import argparse
import json
import os
import select
import statistics
import subprocess
import sys
import tempfile
import time
import uuid

from Xlib import X, display, error
from Xlib.ext import damage

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "tests", "endtoend"))
from status_area import StatusArea  # noqa: E402

START_LIMIT = 1.6  # times the smallest program's
MEMORY_LIMIT = 1.5
IDLE_LIMIT = 0.05  # per cent of one core
RUNNING_LIMIT = 0.3
ANIMATED_LIMIT = 3.0
SETTLE_SECONDS = 4  # until what a start leaves for later has been done
PATIENCE_SECONDS = 20


class Screen:
    """A virtual screen with a window manager."""

    def __init__(self):
        reader, writer = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writer), "-screen", "0", "1280x800x24", "-nolisten", "tcp",
             "-noreset"], pass_fds=[writer], stderr=subprocess.DEVNULL)
        os.close(writer)
        with os.fdopen(reader) as numbers:
            os.environ["DISPLAY"] = ":" + numbers.readline().strip()
        self.manager = subprocess.Popen(
            ["openbox"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        time.sleep(1)
        self.display = display.Display()
        self.display.damage_query_version()
        self.display.screen().root.change_attributes(event_mask=X.SubstructureNotifyMask)
        self.display.sync()

    def close(self):
        self.display.close()
        for process in (self.manager, self.server):
            process.terminate()
            process.wait()

    def milliseconds_to_first_frame(self, command):
        """From starting a program until it has drawn into one of its windows."""
        while self.display.pending_events():
            self.display.next_event()
        began = time.monotonic()
        # A program that is told what to do is told on its standard input.
        process = subprocess.Popen(command, stdin=subprocess.PIPE, stderr=subprocess.DEVNULL)
        try:
            while time.monotonic() - began < PATIENCE_SECONDS:
                if self.drawn_window():
                    return process, 1000 * (time.monotonic() - began)
        except BaseException:
            process.kill()
            raise
        process.kill()
        raise SystemExit(f"{command[0]} drew nothing in {PATIENCE_SECONDS} seconds")

    def drawn_window(self):
        """A window that something was drawn into since this was asked last; None without one."""
        if not self.display.pending_events():
            select.select([self.display.fileno()], [], [], PATIENCE_SECONDS)
        while self.display.pending_events():
            event = self.display.next_event()
            if event.type == X.CreateNotify and event.parent == self.display.screen().root:
                self._watch(event.window)
            elif event.type == self.display.extension_event.DamageNotify:
                if self._shows_something(event.drawable):
                    return event.drawable
        return None

    def _shows_something(self, window):
        """Whether it is more than the empty window that the server puts up."""
        try:
            size = window.get_geometry()
            row = window.get_image(0, size.height // 2, size.width, 1, X.ZPixmap, 0xFFFFFFFF)
        except (error.BadMatch, error.BadDrawable):
            return False  # still on its way into its frame, or gone
        return any(row.data)

    def _watch(self, window):
        handler = self.display.display.error_handler
        self.display.set_error_handler(lambda *_: None)  # windows without pictures, or gone
        window.damage_create(damage.DamageReportRawRectangles)
        self.display.sync()
        self.display.set_error_handler(handler)


def proportional_memory_kib(pid):
    with open(f"/proc/{pid}/smaps_rollup", encoding="ascii") as rollup:
        return next(int(line.split()[1]) for line in rollup if line.startswith("Pss:"))


def processor_seconds(pid):
    """Of all threads, to the nanosecond."""
    total = 0
    for thread in os.listdir(f"/proc/{pid}/task"):
        with open(f"/proc/{pid}/task/{thread}/schedstat", encoding="ascii") as schedule:
            total += int(schedule.read().split()[0])
    return total / 1e9


def wakeups(pid):
    total = 0
    for thread in os.listdir(f"/proc/{pid}/task"):
        with open(f"/proc/{pid}/task/{thread}/status", encoding="ascii") as status:
            total += next(int(line.split()[1]) for line in status
                          if line.startswith("voluntary_ctxt_switches"))
    return total


def ledger_with(sessions):
    identifier = lambda: str(uuid.uuid4()).upper()
    client = {"id": identifier(), "name": "Aster Studio", "hourlyRateCents": 15000,
              "colorHex": "B7A5FF", "rateIsKnown": True, "projectsEnabled": True}
    project = {"id": identifier(), "clientID": client["id"], "name": "Website",
               "hourlyRateCents": 15000, "rateIsKnown": True, "isClientDefault": False}
    now = time.time() - 978307200
    entries = []
    for index in range(sessions):
        start = now - 3600.0 * (index + 2)
        entries.append({
            "id": identifier(), "projectID": project["id"], "title": f"Session {index % 40}",
            "hourlyRateCents": 15000, "spans": [{"start": start, "end": start + 1800.0}],
            "isBillable": True, "rateIsKnown": True})
    return {"clients": [client], "projects": [project], "entries": entries}


class Bench:
    def __init__(self, programs, options, folder):
        self.programs = programs
        self.options = options
        self.directory = os.path.join(folder, "ledger")
        self.configuration = os.path.join(folder, "config")
        os.makedirs(self.directory)
        os.makedirs(os.path.join(self.configuration, "Kestry"))
        os.makedirs(os.path.join(folder, "runtime"), mode=0o700)
        os.environ["XDG_CONFIG_HOME"] = self.configuration
        os.environ["XDG_RUNTIME_DIR"] = os.path.join(folder, "runtime")
        with open(os.path.join(self.directory, "ledger.json"), "w", encoding="utf-8") as file:
            json.dump(ledger_with(1000), file)
        self.misses = 0
        self.screen = Screen()

    def kestry(self):
        return [os.path.join(self.programs, "kestry"), "--data-directory", self.directory]

    def smallest(self):
        return [os.path.join(self.programs, "kestry_smallest_window")]

    def control(self, *words):
        subprocess.run(
            [os.path.join(self.programs, "kestryctl"), "--data-directory", self.directory, *words],
            check=True, stdout=subprocess.DEVNULL)

    def judge(self, what, value, limit, form="{:.2f}"):
        verdict = "ok" if value <= limit else "MISSED"
        self.misses += value > limit
        print(f"  {what:<52} {form.format(value):>8}   limit {limit:<5} {verdict}", flush=True)

    def run(self):
        times, memory = self.measure_starts()
        print(f"\nStart and memory, medians of {self.options.starts} starts in turn")
        for name in ("kestry", "smallest"):
            print(f"  {name:<10} first frame {times[name]:6.1f} ms    "
                  f"proportional memory {memory[name] / 1024:5.1f} MiB")
        self.judge("first frame, times the smallest program's",
                   times["kestry"] / times["smallest"], START_LIMIT)
        self.judge("memory, times the smallest program's",
                   memory["kestry"] / memory["smallest"], MEMORY_LIMIT)
        self.measure_loads()
        return 1 if self.misses else 0

    def measure_starts(self):
        commands = {"kestry": self.kestry(), "smallest": self.smallest()}
        times = {name: [] for name in commands}
        memory = {name: [] for name in commands}
        for turn in range(self.options.starts + 1):
            for name, command in commands.items():
                process, milliseconds = self.screen.milliseconds_to_first_frame(command)
                if turn == 0 or turn % 5 == 1:
                    time.sleep(SETTLE_SECONDS)
                    memory[name].append(proportional_memory_kib(process.pid))
                if turn > 0:  # the first one warms the caches
                    times[name].append(milliseconds)
                process.terminate()
                process.wait()
        return ({name: statistics.median(values) for name, values in times.items()},
                {name: statistics.median(values) for name, values in memory.items()})

    def measure_loads(self):
        print(f"\nProcessor time over {self.options.seconds} seconds, per cent of one core")
        process, _ = self.screen.milliseconds_to_first_frame(self.kestry())
        time.sleep(SETTLE_SECONDS)
        self.measure_load(process, "idle", IDLE_LIMIT)
        self.control("start", "Aster Studio", "Website")
        self.measure_load(process, "running, the strip visible", RUNNING_LIMIT)
        self.control("pause")
        self.measure_load(process, "paused", IDLE_LIMIT)
        process.terminate()
        process.wait()
        with open(os.path.join(self.configuration, "Kestry", "Kestry.ini"), "w",
                  encoding="utf-8") as file:
            file.write("[General]\nmenuBarEnabled=true\n")
        with StatusArea() as area:
            process, _ = self.screen.milliseconds_to_first_frame(self.kestry())
            area.wait_for_item(PATIENCE_SECONDS)
            self.control("resume")
            time.sleep(SETTLE_SECONDS)
            pictures = area.pictures()
            self.measure_load(process, "running, the status item turning", ANIMATED_LIMIT)
            shown = (area.pictures() - pictures) / self.options.seconds
            print(f"  pictures that the status area took {shown:18.1f} in a second")
            process.terminate()
            process.wait()

    def measure_load(self, process, what, limit):
        time.sleep(SETTLE_SECONDS)
        before, woken = processor_seconds(process.pid), wakeups(process.pid)
        time.sleep(self.options.seconds)
        spent = processor_seconds(process.pid) - before
        woken = wakeups(process.pid) - woken
        self.judge(f"{what} ({woken / self.options.seconds:.2f} wake-ups a second)",
                   100 * spent / self.options.seconds, limit, "{:.3f}")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("programs")
    parser.add_argument("--seconds", type=int, default=60)
    parser.add_argument("--starts", type=int, default=20)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        bench = Bench(options.programs, options, folder)
        try:
            return bench.run()
        finally:
            bench.screen.close()


if __name__ == "__main__":
    sys.exit(main())
