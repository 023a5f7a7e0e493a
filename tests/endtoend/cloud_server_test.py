"""Two machines that share a server, as their user sees them.

Usage: cloud_server_test.py PROGRAM DOUBLE [unittest arguments]
       cloud_server_test.py PROGRAM --server URL --admin NAME [unittest arguments] < password
"""

import argparse
import atexit
import glob
import os
import signal
import sys
import unittest

from cloud_machine import CloudTest, Machine, Morning
from couch_server import Couch, Double
from desktop import WAIT_SECONDS, named, wait_until
from ledgers import one_client
from program_test import ProgramTest
from record_store import CouchStore
from secret_service import SecretService

ProgramTest.PROGRAM = sys.argv.pop(1)
REFUSED = ("The record store did not accept the user name or the password. Check both, then sign in "
           "again.")
FORGETS = "This desktop keeps no passwords. Sign in again after the next start."
OUT_OF_REACH = ("The record store cannot be reached. Check the address and the network, or sign in "
                "again later.")
RESTORED = "The record store was restored from a backup or made anew, "
WRONG = "alibaba-and-40"


def server_of_this_run():
    if not sys.argv[1].startswith("--"):
        return Double(sys.argv.pop(1))
    words = argparse.ArgumentParser()
    words.add_argument("--server", required=True)
    words.add_argument("--admin", required=True)
    told, sys.argv[1:] = words.parse_known_args()
    return Couch(told.server, told.admin, sys.stdin.readline().rstrip("\n"))


class OnServer(CloudTest):
    """One user's database, on a desktop that keeps passwords."""

    KEEPER = "open"

    def setUp(self):
        super().setUp()
        self.secrets = self.enterContext(SecretService(self.KEEPER))
        self.store = CouchStore(server)
        self.addCleanup(self.store.close)

    def account(self, machine):
        return machine.told()["account"]


class MorningOnServerTest(Morning, OnServer):
    def test_a_server_that_went_back_in_time_gets_the_records_again(self):
        self.desk, self.laptop = self.two_machines()
        self.desk.add("Before")
        self.desk.wait_for_delivery()
        self.store.back_up()
        self.desk.add("After")
        self.desk.wait_for_delivery()
        self.laptop.wait_for_titles("Before", "After")
        self.store.restore()
        for machine in (self.desk, self.laptop):
            self.wait_until_the_loss_is_believed(machine)
        for machine in (self.desk, self.laptop):
            machine.press("Upload this device’s records again")
            machine.wait_for_status("Up to date")
        self.ledgers_are_equal("Before", "After")

    @staticmethod
    def wait_until_the_loss_is_believed(machine):
        """One machine of a cluster may only lag behind, so that it takes a minute."""
        def attempt():
            machine.sync()
            return machine.app.find_where(lambda each: named(each).startswith(RESTORED))
        wait_until(attempt, RESTORED, seconds=60 + WAIT_SECONDS)
        machine.wait_for_failure(RESTORED)

    def test_signing_out_in_the_middle_of_an_upload_loses_nothing(self):
        self.desk, self.laptop = self.two_machines()
        with self.store.stuck("_bulk_docs") as is_stuck:
            self.desk.add("Proofs")
            wait_until(is_stuck, "a stuck upload")
            self.desk.sign_out()
            self.assertTrue(self.desk.status().startswith("iCloud sync is off"))
        self.desk.sign_in_by_command(self.store)
        self.desk.turn_on()
        self.laptop.wait_for_titles("Proofs")
        self.ledgers_are_equal("Proofs")


class SignInTest(OnServer):
    def desk(self):
        return Machine(self, "desk", one_client())

    def sign_in_with(self, desk, password):
        desk.enter("Password", password)
        self.assert_nowhere(password, desk)
        self.desktop.type("Return")

    def assert_nowhere(self, password, machine):
        """No other program of the desktop can read the password, and no file has it."""
        for text in machine.app.texts():
            self.assertNotIn(password, text)
        places = [f"/proc/{machine.app.process.pid}/environ", *glob.glob("/proc/[0-9]*/cmdline"),
                  *glob.glob(self.folder + "/**", recursive=True)]
        for place in filter(os.path.isfile, places):
            self.assertNotIn(password.encode(), content(place), place)

    def test_a_password_is_checked_first_and_only_the_desktop_keeps_it(self):
        desk = self.desk()
        desk.open_sign_in(desk.press_by_key)
        desk.enter("Address", self.store.address)
        desk.enter("User", self.store.user)
        self.sign_in_with(desk, WRONG)
        desk.app.find(REFUSED)
        self.assertIsNone(self.account(desk))
        self.sign_in_with(desk, self.store.password)
        desk.app.find(desk.account_row(self.store))
        self.assertEqual(self.secrets.secrets(), [self.store.password])
        desk.turn_on()
        self.assert_nowhere(self.store.password, desk)
        desk.kill()
        desk.start()
        desk.wait_for_status("Up to date")
        desk.sign_out()
        self.assertEqual(self.secrets.secrets(), [])

    def test_a_quit_during_the_check_ends_the_program_and_keeps_nothing(self):
        desk = self.desk()
        for end in (lambda: desk.app.process.send_signal(signal.SIGTERM),
                    lambda: self.desktop.type("ctrl+q")):
            desk.open_sign_in()
            with self.store.stuck("GET / ") as is_stuck:
                desk.enter_account(self.store)
                wait_until(is_stuck, "a stuck check")
                end()
                self.assertEqual(desk.app.process.wait(WAIT_SECONDS), 0)
            desk.start()
            desk.app.find("Record store, Not signed in")
            self.assertEqual(self.secrets.secrets(), [])

    def test_a_check_that_takes_long_is_cancelled(self):
        desk = self.desk()
        desk.open_sign_in(desk.press_by_key)
        with self.store.stuck("GET / ") as is_stuck:
            desk.enter_account(self.store)
            wait_until(is_stuck, "a stuck check")
            desk.app.find("Signing in…")
            self.desktop.type("Escape")
            desk.app.wait_for_focus("Sign in…")
        self.assertIsNone(self.account(desk))

    def test_a_server_out_of_reach_is_told_and_the_next_try_signs_in(self):
        desk = self.desk()
        self.store.take_away()
        words = ["--user", self.store.user, "--password-stdin"]
        told = desk.run_kestryctl("sync", "sign-in", self.store.address, *words,
                                  password=self.store.password)
        self.assertIn(OUT_OF_REACH, told.stderr)
        desk.sign_in_by_sheet(self.store)
        desk.app.find(OUT_OF_REACH)
        self.assertIsNone(self.account(desk))
        self.store.bring_back()
        self.desktop.type("Return")
        desk.app.find(desk.account_row(self.store))


class LockedDesktopTest(OnServer):
    KEEPER = "locked"

    def test_a_desktop_that_stays_locked_keeps_no_password_and_is_told(self):
        desk = Machine(self, "desk", one_client())
        desk.sign_in_by_sheet(self.store)
        desk.app.find(f"{desk.account_row(self.store)}\n{FORGETS}")
        desk.turn_on()
        desk.kill()
        desk.start()
        desk.wait_for_failure(
            "The password of the record store is not known any more. Sign in again in Settings.")


def content(path):
    try:
        with open(path, "rb") as file:
            return file.read()
    except (FileNotFoundError, ProcessLookupError):
        return b""  # of a process that has ended


if __name__ == "__main__":
    server = server_of_this_run()
    atexit.register(server.close)
    unittest.main()
