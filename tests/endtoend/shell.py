"""Real programs on buses and in folders of their own, with no screen."""

import json
import os
import subprocess
import tempfile
import time
import uuid

REFERENCE_DATE = 978307200  # 2001-01-01T00:00:00Z, from which dates are counted
WAIT_SECONDS = 25


def now():
    return time.time() - REFERENCE_DATE


def identifier():
    return str(uuid.uuid4()).upper()


def ledger_with_client():
    client = {"id": identifier(), "name": "Aster Studio", "hourlyRateCents": 15000,
              "colorHex": "B7A5FF", "rateIsKnown": True, "projectsEnabled": False}
    return {"clients": [client], "projects": [], "entries": []}


def wait_until(attempt, what):
    """What `attempt` returns, as soon as that is something."""
    deadline = time.monotonic() + WAIT_SECONDS
    while time.monotonic() < deadline:
        result = attempt()
        if result:
            return result
        time.sleep(0.02)
    raise AssertionError(f"{what}: not there after {WAIT_SECONDS} seconds")


class Home:
    """A user's folders, empty but for what a test puts there."""

    def __init__(self, programs):
        self.programs = os.path.abspath(programs)
        self.folder = tempfile.TemporaryDirectory(prefix="kestry-home-")
        self.directory = self.path("ledger")
        self.environment = {
            "PATH": os.environ["PATH"], "HOME": self.folder.name, "TZ": "UTC", "LANG": "C.UTF-8",
            "QT_QPA_PLATFORM": "offscreen", "KESTRY_DATA_DIR": self.directory,
            "XDG_RUNTIME_DIR": self.path("run"), "XDG_CONFIG_HOME": self.path("config"),
            "XDG_DATA_HOME": self.path("share"), "XDG_CACHE_HOME": self.path("cache"),
            # No bus, unless a test has one of its own.
            "DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent",
            "DBUS_SYSTEM_BUS_ADDRESS": "unix:path=/nonexistent"}
        for name in ("run", "config", "share", "cache", "ledger"):
            os.mkdir(self.path(name), 0o700)
        self.processes = []

    def path(self, *names):
        return os.path.join(self.folder.name, *names)

    def close(self):
        for process in self.processes:
            if process.poll() is None:
                process.kill()
            process.wait()
        self.folder.cleanup()

    def file(self, name):
        return os.path.join(self.directory, name)

    def write(self, name, content):
        with open(self.file(name), "w", encoding="utf-8") as file:
            file.write(content)

    def read_json(self, name):
        with open(self.file(name), encoding="utf-8") as file:
            return json.load(file)

    def content(self, name):
        with open(self.file(name), "rb") as file:
            return file.read()

    def files(self):
        return sorted(os.listdir(self.directory))

    def sockets(self):
        return sorted(name for name in os.listdir(self.path("run")) if name.endswith(".socket"))

    def active(self):
        return self.read_json("ledger.json").get("active")

    def program(self, name):
        return os.path.join(self.programs, name)

    def launch(self, *arguments):
        process = subprocess.Popen([self.program("kestry"), *arguments], env=self.environment,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.processes.append(process)
        return process

    def start_demo(self, *arguments):
        return self.launch("--demo", *arguments)

    def start(self, *arguments):
        """Starts the application; it answers when this returns."""
        process = self.launch(*arguments)
        wait_until(lambda: self.sockets() or process.poll() is not None, "the application")
        # The socket is there before the application is, which answers when it is up.
        self.do("status")
        return process

    def run(self, *words, **options):
        return subprocess.run([self.program("kestryctl"), *words], env=self.environment, text=True,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, timeout=60, check=False, **options)

    def do(self, *words, **options):
        result = self.run(*words, **options)
        if result.returncode != 0:
            raise AssertionError(result.stderr)
        return result.stdout

    def again(self, *arguments):
        """Starts the application once more, beside the one that runs."""
        return subprocess.run([self.program("kestry"), *arguments], env=self.environment, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=30,
                              check=False)
