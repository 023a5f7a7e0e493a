"""Record stores with an account on each, and what a test does to them."""

import contextlib
import os
import shutil
import sqlite3
import subprocess
import sys

from couch_server import Relay, ask
from desktop import wait_until


class SqliteStore:
    """A store in one file, which knows no users."""

    user, password = None, None
    GONE = "iCloud is unavailable. Your local changes are saved and will retry."

    def __init__(self, folder, name="store"):
        self.folder = folder
        self.path = os.path.join(folder, name + ".sqlite")
        self.address = "sqlite:" + self.path

    def other(self):
        """A store of somebody else."""
        return SqliteStore(self.folder, "other")

    def records(self):
        """How many the store has."""
        with contextlib.closing(sqlite3.connect(self.path)) as store:
            return store.execute("SELECT count(*) FROM records").fetchone()[0]

    @contextlib.contextmanager
    def stuck(self, _request):
        """While this lasts no exchange ends. Gives a function: whether one has begun."""
        with subprocess.Popen([sys.executable, "-c", f"""
import sqlite3, sys
store = sqlite3.connect({self.path!r}, isolation_level=None)
store.execute("BEGIN EXCLUSIVE")
print("held", flush=True)
sys.stdin.read()
"""], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True) as holder:
            holder.stdout.readline()
            yield lambda: True
            holder.stdin.close()

    def take_away(self):
        os.rename(self.path, self.path + ".away")

    def bring_back(self):
        os.rename(self.path + ".away", self.path)

    def close(self):
        pass


class CouchStore:
    """A database of a user on a server, and the way there."""

    GONE = "The record store cannot be reached. Your local changes are saved and will retry."

    def __init__(self, server):
        self.server = server
        self.relay = Relay(server.url)
        self.user, self.password = server.new_user()
        self.database = server.new_database(self.user)
        self.address = f"{self.relay.url()}/{self.database}"

    def other(self):
        return CouchStore(self.server)

    def records(self):
        answer = ask(f"{self.server.url}/{self.database}/_changes", (self.user, self.password),
                     fails=(404,))
        # All other documents have no solidus in their names.
        return sum("/" in row["id"] for row in answer.get("results", []))

    @contextlib.contextmanager
    def stuck(self, request):
        self.relay.mute_after(request.encode())
        yield self.relay.is_mute.is_set
        self.relay.shut()
        self.relay.open()

    def take_away(self):
        self.relay.shut()

    def bring_back(self):
        self.relay.open()

    def back_up(self):
        self.server.back_up(self.database)

    def restore(self):
        self.server.restore(self.database)

    def close(self):
        self.relay.close()
