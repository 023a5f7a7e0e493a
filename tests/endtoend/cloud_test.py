"""Two machines that share a record store, as their user sees them.

Usage: cloud_test.py PROGRAM [unittest arguments]
"""

import json
import os
import stat
import subprocess
import sys
import time
import unittest

from desktop import Application, Atspi, named, wait_until
from ledgers import one_client
from program_test import ProgramTest

ProgramTest.PROGRAM = sys.argv.pop(1)
SWITCH = "iCloud sync"


class Machine:
    """A program with a data directory and settings of its own."""

    def __init__(self, test, name, ledger=None):
        self.test = test
        self.home = os.path.join(test.folder, name)
        self.directory = os.path.join(self.home, "ledger")
        os.makedirs(self.directory)
        os.mkdir(os.path.join(self.home, "runtime"), 0o700)
        if ledger:
            test.directory = self.directory
            test.write_ledger(ledger)
        self.start()

    def start(self):
        os.environ["XDG_CONFIG_HOME"] = os.path.join(self.home, "config")
        os.environ["XDG_RUNTIME_DIR"] = os.path.join(self.home, "runtime")
        self.app = Application(self.test.PROGRAM, self.directory)
        self.test.addCleanup(self.kill)
        self.app.press("Open Kestry")
        self.app.find("Overview")
        self.app.press("Settings")
        self.app.find("Theme")

    def kill(self):
        if self.app.process.poll() is None:
            self.app.kill()

    def kestryctl(self, *words):
        program = os.path.join(os.path.dirname(self.test.PROGRAM), "kestryctl")
        environment = {**os.environ, "XDG_CONFIG_HOME": os.path.join(self.home, "config"),
                       "XDG_RUNTIME_DIR": os.path.join(self.home, "runtime")}
        result = subprocess.run([program, "--data-directory", self.directory, *words],
                                capture_output=True, text=True, timeout=60, check=False,
                                env=environment)
        self.test.assertEqual(result.returncode, 0, result.stderr)
        return result.stdout

    def wait_for_delivery(self):
        def attempt():
            return json.loads(self.kestryctl("sync", "status", "--json"))["pending"] == 0
        wait_until(attempt, "the delivery")

    def come_to_front(self):
        """What is typed goes to this program's window."""
        numbers = subprocess.run(
            ["xdotool", "search", "--onlyvisible", "--pid", str(self.app.process.pid),
             "--name", "^Kestry$"], capture_output=True, text=True, check=True).stdout.split()
        subprocess.run(["xdotool", "windowactivate", "--sync", numbers[-1],
                        "windowraise", numbers[-1]], check=False, stderr=subprocess.DEVNULL)
        wait_until(lambda: self.test.desktop.focused_window() == numbers[-1],
                   "the window in front")

    def tab_to(self, name, limit=60):
        """Goes to a control by the Tab key, which brings it into view."""
        self.come_to_front()
        for _ in range(limit):
            if self.app.focused() == name:
                return
            before = self.app.focused()
            self.test.desktop.type("Tab")
            late = time.monotonic() + 0.5
            while self.app.focused() in (before, None) and time.monotonic() < late:
                time.sleep(0.02)
        raise AssertionError(f"no way by Tab to {name}, but {self.app.focused()}")

    def sign_in(self, address):
        self.come_to_front()
        self.app.press("Sign in…")
        self.app.wait_for_focus("Address")
        self.test.desktop.type("ctrl+a")
        self.test.desktop.write(address)
        self.test.desktop.type("Return")
        self.app.find(f"Record store, {address}")

    def turn_on(self):
        self.app.press(SWITCH)
        self.wait_for_status("Up to date")

    def status(self):
        return self.app.find(SWITCH).get_description() or ""

    def wait_for_status(self, words):
        wait_until(lambda: self.status().startswith(words), f"{words}, not {self.status()}")

    def sync(self):
        """One exchange, to its end."""
        self.app.press("Sync now")
        wait_until(lambda: self.app.shows("Sync now"), "the end of the exchange")

    def client(self):
        clients = self.app.ledger()["clients"]
        return clients[0]["name"] if clients else None

    def wait_for_client(self, name):
        def attempt():
            self.sync()
            return self.client() == name
        wait_until(attempt, f"the client {name}, not {self.client()}")


class CloudTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.store = "sqlite:" + os.path.join(self.folder, "store.sqlite")

    def one_machine(self):
        desk = Machine(self, "desk", one_client())
        desk.sign_in(self.store)
        desk.turn_on()
        return desk

    def two_machines(self):
        """Of which the second has its window in front."""
        desk = self.one_machine()
        laptop = Machine(self, "laptop")
        laptop.sign_in(self.store)
        laptop.turn_on()
        return desk, laptop

    def test_two_machines_share_a_ledger(self):
        desk, laptop = self.two_machines()
        self.assertEqual(laptop.client(), "Aster Studio")
        laptop.kestryctl("client", "edit", "Aster Studio", "--name", "Aster & Sons")
        desk.wait_for_client("Aster & Sons")
        mode = os.stat(os.path.join(self.folder, "store.sqlite")).st_mode
        self.assertEqual(stat.S_IMODE(mode), 0o600)

    def test_a_local_change_goes_out_by_itself(self):
        desk, laptop = self.two_machines()
        desk.kestryctl("client", "edit", "Aster Studio", "--name", "Aster Ltd")
        # Two seconds after the change, and without a word to the program.
        desk.wait_for_delivery()
        laptop.wait_for_client("Aster Ltd")

    def test_a_session_that_runs_on_one_is_seen_on_the_other(self):
        desk, laptop = self.two_machines()
        desk.kestryctl("start", "Aster Studio", "--title", "Drawing")
        desk.wait_for_delivery()
        laptop.sync()
        laptop.app.press("Sync details")
        row = laptop.app.find_starting("Drawing, ")
        self.assertIn("Running when last synced", named(row))
        laptop.app.find_starting("Session on ")  # in the sidebar

    def test_a_conflict_is_reviewed_and_decided(self):
        desk, laptop = self.two_machines()
        desk.kill()
        laptop.kestryctl("client", "edit", "Aster Studio", "--name", "Aster & Sons")
        laptop.wait_for_delivery()
        desk.kestryctl("client", "edit", "Aster Studio", "--name", "Aster Ltd")
        desk.start()
        desk.wait_for_status("Review sync conflicts")
        desk.tab_to("Sync details")
        self.desktop.type("space")
        desk.app.find("Two versions need your review")
        desk.app.find("Name, differs, on this Mac Aster Ltd, iCloud Aster & Sons")
        desk.tab_to("Keep this Mac’s version")
        self.desktop.type("space")
        desk.app.wait_for_focus("Sync details")
        laptop.wait_for_client("Aster Ltd")
        desk.wait_for_status("Up to date")

    def test_a_killed_program_goes_on_where_it_was(self):
        desk, laptop = self.two_machines()
        name = "Aster Studio"
        for number in range(4):
            laptop.kestryctl("client", "edit", name, "--name", f"Aster {number}")
            name = f"Aster {number}"
            laptop.kill()
            laptop.start()
        laptop.wait_for_client("Aster 3")
        desk.wait_for_client("Aster 3")

    def test_signing_out_turns_it_off_and_signing_in_again_goes_on(self):
        desk, laptop = self.two_machines()
        laptop.app.press("Sign out")
        laptop.app.find("Record store, Not signed in")
        wait_until(lambda: not self.is_on(laptop), "off")
        laptop.kestryctl("client", "edit", "Aster Studio", "--name", "Aster Ltd")
        laptop.sign_in(self.store)
        laptop.turn_on()
        desk.wait_for_client("Aster Ltd")

    def test_another_store_is_another_account(self):
        desk = self.one_machine()
        desk.sign_in("sqlite:" + os.path.join(self.folder, "other.sqlite"))
        wait_until(lambda: not self.is_on(desk), "off")
        desk.app.press(SWITCH)
        desk.app.find("This ledger belongs to another iCloud account. Switch back before syncing; "
                      "your local data has been preserved.")
        desk.sign_in(self.store)
        desk.turn_on()

    def is_on(self, machine):
        states = machine.app.find(SWITCH).get_state_set()
        return states.contains(Atspi.StateType.CHECKED)

    def test_a_store_that_is_gone_is_told_and_found_again(self):
        desk = self.one_machine()
        path = os.path.join(self.folder, "store.sqlite")
        os.rename(path, path + ".away")
        desk.app.press("Sync now")
        desk.wait_for_status("Sync needs attention")
        os.rename(path + ".away", path)
        desk.sync()
        desk.wait_for_status("Up to date")


if __name__ == "__main__":
    unittest.main()
