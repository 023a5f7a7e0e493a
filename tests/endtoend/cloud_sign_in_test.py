"""Signing in to a server. See on_server.py for how to start it."""

import glob
import os
import signal

from cloud_machine import Machine
from desktop import WAIT_SECONDS, wait_until
from ledgers import one_client
from on_server import OnServer, main

REFUSED = ("The record store did not accept the user name or the password. Check both, then sign in "
           "again.")
FORGETS = "This desktop keeps no passwords. Sign in again after the next start."
OUT_OF_REACH = ("The record store cannot be reached. Check the address and the network, or sign in "
                "again later.")
WRONG = "alibaba-and-40"


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
    main()
