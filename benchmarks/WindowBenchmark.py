"""How quick the workspace window is, beside the smallest window with as many texts in the same run.

Usage: WindowBenchmark.py DIRECTORY-OF-PROGRAMS [--sizes N,N…] [--starts N] [--seconds N]

To be run in a D-Bus session of its own. Everything stands on one virtual screen, and what is
compared takes turns. Ends with 1 when a limit is missed.
"""

import argparse
import json
import os
import random
import select
import shutil
import statistics
import subprocess
import sys
import tempfile
import time
import uuid

from gi.repository import Gio, GLib
from Xlib import X, XK
from Xlib.ext import damage, xtest

from ApplicationBenchmark import Screen, processor_seconds, proportional_memory_kib, wakeups

OPEN_LIMIT = 1.6  # times the plain window's
PAGE_LIMIT = 2.0  # times that of a page of 40 sessions
FRAME_LIMIT = 16.0  # milliseconds, for 95 of 100 frames
RUNNING_LIMIT = 1.0  # per cent of one core
MEMORY_LIMIT = 2.0  # times the plain window's
PASSES_LIMIT = 3  # passes over the sessions in memory, beside the plain window's first frame
TICK_LIMIT = 0.5  # per cent of one core
WAKE_LIMIT = 1.0  # a second, while a session runs
IDLE_WAKE_LIMIT = 0.1  # a second, while none does
TO_FIRST_CLIENT = ("Tab",) * 3  # from the sidebar's second row
CLIENTS = 20
MANY_CLIENTS = 200
# From the sidebar's first row backwards: the main menu, the sessions, "View all", the chart, the
# tracked time, and the way to the month before.
BACK_TO_PREVIOUS_MONTH = ("shift+Tab",) * 6
FEW_SESSIONS = 40
SIDEBAR_WIDTH = 240
LEAST_WIDTH = 600  # of a window; strips and tool tips are smaller
SETTLE_SECONDS = 2.0  # longer than any animation, and than what a start leaves for later
UNLOAD_SECONDS = 63  # a closed window is kept for a minute
PATIENCE_SECONDS = 30
WHEEL_STEPS = 240
WHEEL_PAUSE = 1 / 30
WHEEL_DOWN = 5
LEAST_FRAMES = 20  # to speak of 95 in 100

WORDS = ("Review", "layout", "figures", "call", "draft", "photographs", "chapter", "round",
         "corrections", "kick-off", "notes", "prototype", "cover", "index", "proof", "Überarbeitung")


def ledger_with(sessions, client_count=CLIENTS):
    """Years of work."""
    chance = random.Random(1)
    identifier = lambda: str(uuid.UUID(int=chance.getrandbits(128), version=4)).upper()
    now = time.time() - 978307200
    clients = [{"id": identifier(), "name": f"Client {number}", "hourlyRateCents": 15000,
                "colorHex": "B7A5FF", "rateIsKnown": True, "projectsEnabled": True}
               for number in range(client_count)]
    projects = [{"id": identifier(), "clientID": clients[number % client_count]["id"],
                 "name": f"Project {number}", "hourlyRateCents": 15000, "rateIsKnown": True,
                 "isClientDefault": False} for number in range(3 * client_count)]
    entries = []
    for index in range(sessions):
        start = now - 2400.0 * (index + 2)
        entries.append({
            "id": identifier(), "projectID": chance.choice(projects)["id"],
            "title": " ".join(chance.choices(WORDS, k=chance.randrange(1, 6))),
            "hourlyRateCents": 15000, "isBillable": True, "rateIsKnown": True,
            "spans": [{"start": start, "end": start + chance.randrange(60, 2300)}]})
    return {"clients": clients, "projects": projects, "entries": entries}


class Program:
    """A program that runs, and its window once that is open."""

    def __init__(self, screen, command):
        self.screen = screen
        self.process, _ = screen.milliseconds_to_first_frame(command)
        self.window = None
        time.sleep(SETTLE_SECONDS)

    def processor_seconds(self):
        return processor_seconds(self.process.pid)

    def memory_kib(self):
        return proportional_memory_kib(self.process.pid)

    def is_busy(self):
        with open(f"/proc/{self.process.pid}/stat", encoding="ascii") as file:
            return file.read().rpartition(") ")[2][0] == "R"

    def end(self):
        self.process.terminate()
        self.process.wait()

    def milliseconds_to_window(self):
        """From asking for the window until it has drawn."""
        self.screen.forget_events()
        began = time.monotonic()
        self.ask()
        self.window = self.screen.wait_for_drawn_window(began)
        return 1000 * (time.monotonic() - began)


class Kestry(Program):
    def __init__(self, screen, programs, directory):
        self.directory = directory
        self.control_program = os.path.join(programs, "kestryctl")
        super().__init__(
            screen, [os.path.join(programs, "kestry"), "--data-directory", directory])

    def ask(self):
        """As a press on the program's icon does."""
        Gio.bus_get_sync(Gio.BusType.SESSION).call_sync(
            "org.kestry.Kestry", "/org/kestry/Kestry", "org.freedesktop.Application", "Activate",
            GLib.Variant("(a{sv})", ({},)), None, Gio.DBusCallFlags.NONE, -1)

    def control(self, *words):
        subprocess.run(
            [self.control_program, "--data-directory", self.directory, *words],
            check=True, stdout=subprocess.DEVNULL)


class Peer(Program):
    def __init__(self, screen, programs, count):
        super().__init__(
            screen, [os.path.join(programs, "kestry_list_window"), str(count)])

    def ask(self):
        self.process.stdin.write(b"\n")
        self.process.stdin.flush()


class WindowScreen(Screen):
    """A screen on which windows are opened, and used by keyboard and wheel."""

    def forget_events(self):
        self.display.sync()
        while self.display.pending_events():
            self.display.next_event()

    def wait_for_drawn_window(self, began):
        while time.monotonic() - began < PATIENCE_SECONDS:
            drawn = self.drawn_window()
            if drawn and drawn.get_geometry().width > LEAST_WIDTH:
                window = self.display.create_resource_object("window", drawn.id)
                if window.get_wm_class():  # and not the frame around it
                    return window
        raise SystemExit(f"no window in {PATIENCE_SECONDS} seconds")

    def take_focus(self, program):
        # Asked of the window manager, which else takes the focus back.
        subprocess.run(["xdotool", "windowactivate", "--sync", str(program.window.id)], check=True)
        time.sleep(0.2)

    def press(self, *names):
        """Keys, as their names have it: "ctrl+w"."""
        for name in names:
            codes = [self.display.keysym_to_keycode(XK.string_to_keysym(
                {"ctrl": "Control_L", "shift": "Shift_L"}.get(key, key)))
                     for key in name.split("+")]
            for code in codes:
                xtest.fake_input(self.display, X.KeyPress, code)
            for code in reversed(codes):
                xtest.fake_input(self.display, X.KeyRelease, code)
            self.display.sync()

    def milliseconds_to_page(self, program, key):
        """From a key until the window has drawn beside its sidebar."""
        self.forget_events()
        began = time.monotonic()
        self.press(key)
        while time.monotonic() - began < PATIENCE_SECONDS:
            for event in self.damages(PATIENCE_SECONDS):
                area = event.area
                if event.drawable.id == program.window.id and area.x + area.width > SIDEBAR_WIDTH + 40:
                    return 1000 * (time.monotonic() - began)
        raise SystemExit("the page did not change")

    def damages(self, patience):
        """What was drawn, once something was."""
        if not self.display.pending_events():
            select.select([self.display.fileno()], [], [], patience)
        result = []
        while self.display.pending_events():
            event = self.display.next_event()
            if event.type == self.display.extension_event.DamageNotify:
                result.append(event)
        return result

    def frames_while_scrolling(self, program):
        """The processor time in milliseconds of each frame, all of the work before it included."""
        geometry = program.window.get_geometry()
        place = program.window.translate_coords(self.display.screen().root, 0, 0)
        xtest.fake_input(self.display, X.MotionNotify, x=geometry.width * 2 // 3 - place.x,
                         y=geometry.height * 2 // 3 - place.y)
        self.display.sync()
        time.sleep(1)
        self.forget_events()
        frames = []
        before = program.processor_seconds()
        next_step = time.monotonic()
        steps = 0
        while steps < WHEEL_STEPS or time.monotonic() < next_step + 0.5:
            if steps < WHEEL_STEPS and time.monotonic() >= next_step:
                xtest.fake_input(self.display, X.ButtonPress, WHEEL_DOWN)
                xtest.fake_input(self.display, X.ButtonRelease, WHEEL_DOWN)
                self.display.flush()
                next_step += WHEEL_PAUSE
                steps += 1
            if not self.damages(max(0.001, min(0.01, next_step - time.monotonic()))):
                continue
            while program.is_busy():  # what it has spent is known when it rests
                time.sleep(0.0005)
            self.forget_events()  # the other parts of the same frame
            spent = program.processor_seconds()
            frames.append(1000 * (spent - before))
            before = spent
        return frames


class Bench:
    def __init__(self, programs, options, folder):
        self.programs = programs
        self.options = options
        self.folder = folder
        os.environ["XDG_CONFIG_HOME"] = os.path.join(folder, "config")
        os.environ["XDG_RUNTIME_DIR"] = os.path.join(folder, "runtime")
        os.makedirs(os.environ["XDG_RUNTIME_DIR"], mode=0o700)
        self.misses = 0
        self.screen = WindowScreen()
        self.few = self.directory(FEW_SESSIONS)

    def directory(self, sessions, clients=CLIENTS):
        path = os.path.join(self.folder, f"ledger-{sessions}-{clients}")
        os.makedirs(path, exist_ok=True)
        with open(os.path.join(path, "ledger.json"), "w", encoding="utf-8") as file:
            json.dump(ledger_with(sessions, clients), file)
        return path

    def judge(self, what, value, limit, form="{:.2f}"):
        verdict = "ok" if value <= limit else "MISSED"
        self.misses += value > limit
        print(f"  {what:<64} {form.format(value):>8}   limit {limit:<5} {verdict}", flush=True)

    def run(self):
        for size in self.options.sizes:
            print(f"\n{size} sessions", flush=True)
            directory = self.directory(size)
            self.measure_opening(directory, size)
            self.measure_page(directory)
            self.measure_scrolling(directory)
            self.measure_running(directory)
            self.measure_memory(directory, size)
            shutil.rmtree(directory)
            many = self.directory(size, MANY_CLIENTS)
            self.measure_overview(many, size)
            self.measure_tick(many)
            shutil.rmtree(many)
        return 1 if self.misses else 0

    def kestry(self, directory):
        return Kestry(self.screen, self.programs, directory)

    def peer(self, size):
        return Peer(self.screen, self.programs, size)

    def measure_opening(self, directory, size):
        ours, theirs, started = [], [], []
        at_once = [os.path.join(self.programs, "kestry_list_window"), str(size), "open"]
        for _ in range(self.options.starts):
            for make, times in ((lambda: self.kestry(directory), ours),
                                (lambda: self.peer(size), theirs)):
                program = make()
                times.append(program.milliseconds_to_window())
                program.end()
            process, milliseconds = self.screen.milliseconds_to_first_frame(at_once)
            started.append(milliseconds)
            process.terminate()
            process.wait()
        ours, theirs = statistics.median(ours), statistics.median(theirs)
        self.judge(f"window to its first frame: {ours:.0f} ms, the plain one's {theirs:.0f} ms",
                   ours / theirs, OPEN_LIMIT)
        print(f"  the plain program takes {statistics.median(started):.0f} ms from its start",
              flush=True)

    def open_with_focus_on_sessions(self, directory):
        program = self.kestry(directory)
        program.milliseconds_to_window()
        time.sleep(SETTLE_SECONDS)
        self.screen.take_focus(program)
        self.screen.press("Tab", "Tab")
        time.sleep(0.5)
        return program

    def measure_page(self, directory):
        """The first time that the page is shown, and the times after that."""
        first, later = {}, {}
        for turn in range(self.options.starts):
            for name, each in (("all", directory), ("few", self.few)):
                program = self.open_with_focus_on_sessions(each)
                first.setdefault(name, []).append(
                    self.screen.milliseconds_to_page(program, "Return"))
                for _ in range(3):
                    time.sleep(0.6)
                    self.screen.press("shift+Tab", "Return")
                    time.sleep(0.6)
                    self.screen.press("Tab")
                    time.sleep(0.3)
                    later.setdefault(name, []).append(
                        self.screen.milliseconds_to_page(program, "Return"))
                program.end()
        for what, times in (("first time", first), ("again", later)):
            all_of_them, few = statistics.median(times["all"]), statistics.median(times["few"])
            self.judge(f"sessions page, {what}: {all_of_them:.0f} ms, of {FEW_SESSIONS} rows"
                       f" {few:.0f} ms", all_of_them / few, PAGE_LIMIT)

    def open_sessions(self, directory):
        program = self.open_with_focus_on_sessions(directory)
        self.screen.milliseconds_to_page(program, "Return")
        time.sleep(SETTLE_SECONDS)
        return program

    def open_with_focus_on_overview(self, directory):
        program = self.open_with_focus_on_sessions(directory)
        self.screen.press("shift+Tab")
        time.sleep(0.3)
        return program

    def measure_overview(self, directory, size):
        """From a key on the sessions page to the Overview, and from there a month back."""
        one_pass = float(subprocess.run(
            [os.path.join(self.programs, "kestry_session_pass"), str(size)],
            check=True, capture_output=True, text=True).stdout)
        pages, months, frames = [], [], []
        for _ in range(self.options.starts):
            peer = self.peer(FEW_SESSIONS)
            frames.append(peer.milliseconds_to_window())
            peer.end()
            program = self.open_with_focus_on_sessions(directory)
            for _ in range(3):
                self.screen.press("Return")
                time.sleep(1)
                self.screen.press("shift+Tab")
                time.sleep(0.3)
                pages.append(self.screen.milliseconds_to_page(program, "Return"))
                time.sleep(SETTLE_SECONDS)
                self.screen.press(*BACK_TO_PREVIOUS_MONTH)
                time.sleep(0.5)
                months.append(self.screen.milliseconds_to_page(program, "space"))
                time.sleep(SETTLE_SECONDS)
                # There is a next month now, and the row after the first is that of the sessions.
                self.screen.press(*["Tab"] * (len(BACK_TO_PREVIOUS_MONTH) + 2))
                time.sleep(0.3)
            program.end()
        limit = round(PASSES_LIMIT * one_pass + statistics.median(frames), 1)
        what = f"one pass {one_pass:.1f}, the plain window's frame {statistics.median(frames):.0f}"
        self.judge(f"Overview from key to frame, ms ({what})", statistics.median(pages), limit,
                   "{:.1f}")
        self.judge("a month back, ms", statistics.median(months), limit, "{:.1f}")

    def measure_tick(self, directory):
        """What each second costs on a page that shows the session, and that nothing does without."""
        program = self.open_with_focus_on_overview(directory)
        self.measure_second(program, "Overview")
        program.end()
        program = self.open_with_focus_on_sessions(directory)
        self.screen.press(*TO_FIRST_CLIENT)
        time.sleep(0.3)
        self.screen.press("Return")
        self.measure_second(program, "a dashboard")
        program.end()

    def measure_second(self, program, page):
        program.control("start", "Client 1", "Project 1")
        share, woken = self.cost(program)
        self.judge(f"running session on {page}, per cent of one core", share, TICK_LIMIT)
        self.judge("  wake-ups a second", woken, WAKE_LIMIT)
        program.control("stop")
        _, woken = self.cost(program)
        self.judge("  wake-ups a second once it is stopped", woken, IDLE_WAKE_LIMIT)

    def cost(self, program):
        """Per cent of one core, and how often the program wakes in a second."""
        time.sleep(SETTLE_SECONDS)
        seconds, woken = program.processor_seconds(), wakeups(program.process.pid)
        time.sleep(self.options.seconds)
        return (100 * (program.processor_seconds() - seconds) / self.options.seconds,
                (wakeups(program.process.pid) - woken) / self.options.seconds)

    def measure_scrolling(self, directory):
        program = self.open_sessions(directory)
        frames = sorted(self.screen.frames_while_scrolling(program))
        if len(frames) < LEAST_FRAMES:
            raise SystemExit(f"only {len(frames)} frames while scrolling")
        self.judge(f"scrolling: 95% of {len(frames)} frames within ms"
                   f" (median {statistics.median(frames):.1f}, longest {frames[-1]:.1f})",
                   frames[int(0.95 * len(frames))], FRAME_LIMIT, "{:.1f}")
        program.end()

    def measure_running(self, directory):
        program = self.open_sessions(directory)
        program.control("start", "Client 1", "Project 1")
        time.sleep(SETTLE_SECONDS)
        before = program.processor_seconds()
        time.sleep(self.options.seconds)
        share = 100 * (program.processor_seconds() - before) / self.options.seconds
        self.judge("running session with the window open, per cent of one core", share,
                   RUNNING_LIMIT)
        program.end()

    def measure_memory(self, directory, size):
        """Of each program alone: what several share would count in part only."""
        peer = self.peer(size)
        peer.milliseconds_to_window()
        time.sleep(SETTLE_SECONDS)
        theirs = peer.memory_kib()
        peer.end()
        program = self.kestry(directory)
        before = program.memory_kib()
        program.end()
        program = self.open_sessions(directory)
        ours = program.memory_kib()
        self.judge(f"memory: {ours / 1024:.1f} MiB, the plain one's {theirs / 1024:.1f} MiB",
                   ours / theirs, MEMORY_LIMIT)
        self.screen.take_focus(program)
        self.screen.press("ctrl+w")
        time.sleep(UNLOAD_SECONDS)
        print(f"  memory before the window {before / 1024:.1f} MiB, a minute after it was closed"
              f" {program.memory_kib() / 1024:.1f} MiB", flush=True)
        program.end()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("programs")
    parser.add_argument("--sizes", default="1000,10000,100000",
                        type=lambda text: [int(each) for each in text.split(",")])
    parser.add_argument("--starts", type=int, default=7)
    parser.add_argument("--seconds", type=int, default=60)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        bench = Bench(options.programs, options, folder)
        try:
            return bench.run()
        finally:
            bench.screen.close()


if __name__ == "__main__":
    sys.exit(main())
