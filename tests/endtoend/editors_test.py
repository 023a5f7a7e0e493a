"""The forms of the workspace window, in the real program, with the keyboard alone.

Usage: editors_test.py PROGRAM [unittest arguments]
"""

import sys
import unittest

from desktop import wait_until
from ledgers import one_client
from program_test import ProgramTest

ProgramTest.PROGRAM = sys.argv.pop(1)


class EditorsTest(ProgramTest):
    def open_window(self, ledger=None):
        self.app = self.launch(ledger)
        self.app.press("Open Kestry")
        self.app.find("Overview")

    def wait_for_no_form(self):
        wait_until(lambda: not self.app.shows("Save"), "a closed form")

    def add_client(self, name):
        self.desktop.type("ctrl+n")
        self.app.wait_for_focus("Client name")
        self.desktop.write(name)
        self.desktop.type("ctrl+Return")
        self.wait_for_no_form()

    def test_a_client_a_project_and_its_form_by_keyboard(self):
        self.open_window()
        self.add_client("Birch")
        ledger = self.app.ledger_when(lambda each: each["clients"], "a client")
        self.assertEqual(ledger["clients"][0]["name"], "Birch")
        self.desktop.type("F10")
        self.app.choose("New project")
        self.app.wait_for_focus("Project name")
        self.desktop.write("Website")
        self.desktop.type("Tab")
        self.app.wait_for_focus("Rate (USD / hour)")
        self.desktop.write("95.50")
        self.desktop.type("Return")
        ledger = self.app.ledger_when(lambda each: each["projects"], "a project")
        self.assertEqual(ledger["projects"][0]["hourlyRateCents"], 9550)
        self.wait_for_no_form()

    def test_drafts_are_dropped_only_after_a_question(self):
        self.open_window(one_client())
        self.desktop.type("ctrl+n")
        self.app.wait_for_focus("Client name")
        self.desktop.write("Cedar")
        self.desktop.type("Escape")
        self.app.find("Discard changes?")
        self.app.wait_for_focus("Keep editing")
        self.desktop.type("Return")
        self.app.wait_for_focus("Client name")
        self.desktop.type("Escape")
        self.app.wait_for_focus("Keep editing")
        self.desktop.type("shift+Tab")
        self.app.wait_for_focus("Discard")
        self.desktop.type("Return")
        self.wait_for_no_form()
        self.assertEqual(len(self.app.ledger()["clients"]), 1)

    def test_a_refusal_is_told_in_the_form(self):
        self.open_window(one_client())
        self.desktop.type("ctrl+n")
        self.app.wait_for_focus("Client name")
        self.desktop.type("ctrl+Return")
        self.app.find("Enter a name.")
        self.desktop.write("Cedar")
        self.desktop.type("ctrl+Return")
        self.app.ledger_when(lambda each: len(each["clients"]) == 2, "a second client")

    def test_the_session_in_progress_is_renamed_while_it_runs(self):
        self.open_window(one_client())
        self.desktop.type("ctrl+t")
        self.app.ledger_when(lambda each: "active" in each, "a session")
        self.desktop.hover_strip()
        title = self.app.find_starting("Session title: ")
        self.desktop.point_at(title)
        self.desktop.click(3)
        self.app.choose("Change project…")
        self.app.wait_for_focus("Session title")
        self.app.find_starting("Elapsed: 00:00:")
        self.desktop.write("Layout")
        self.desktop.type("ctrl+Return")
        ledger = self.app.ledger_when(
            lambda each: each.get("active", {}).get("title") == "Layout", "a new title")
        self.assertIn("runningSince", ledger["active"])


if __name__ == "__main__":
    unittest.main(verbosity=2)
