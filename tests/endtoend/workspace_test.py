"""The workspace window of the real program.

Usage: workspace_test.py PROGRAM [unittest arguments]
"""

import os
import sys
import unittest

from desktop import wait_until, xdotool
from ledgers import one_client, running_session
from program_test import ProgramTest

ProgramTest.PROGRAM = sys.argv.pop(1)


class WorkspaceTest(ProgramTest):
    def windows(self):
        """The windows of the program that a task bar would show."""
        return (xdotool("search", "--onlyvisible", "--maxdepth", "3", "--name", "^Kestry$",
                        "--pid", str(self.app.process.pid)) or "").split()

    def open_window(self):
        self.app.press("Open Kestry")
        return self.app.find("Overview")

    def damage_ledger(self):
        with open(os.path.join(self.directory, "ledger.json"), "w", encoding="utf-8") as file:
            file.write("{ damaged")

    def test_no_window_shows_until_it_is_asked_for(self):
        app = self.launch(one_client())
        self.assertFalse(app.shows("Overview"))
        self.open_window()
        app.find("Main menu")

    def test_closing_the_window_leaves_the_program_running(self):
        app = self.launch(one_client())
        self.open_window()
        self.desktop.type("ctrl+w")
        wait_until(lambda: not app.shows("Overview"), "a closed window")
        self.assertIsNone(app.process.poll())
        self.open_window()

    def test_the_first_client_is_added_in_the_window_from_the_panel(self):
        app = self.launch()
        self.desktop.hover_strip()
        app.press("Add client")
        app.find("Client name")
        self.desktop.type(*"birch")
        app.press("Save")
        ledger = app.ledger_when(lambda ledger: ledger["clients"], "a client")
        self.assertEqual(ledger["clients"][0]["name"], "birch")
        wait_until(lambda: not app.shows("Client name"), "a closed form")

    def test_a_form_that_is_refused_says_why_and_stays(self):
        app = self.launch(one_client())
        self.open_window()
        self.desktop.type("ctrl+n")
        app.find("Client name")
        app.press("Save")
        app.find("Enter a name.")
        self.desktop.type("Escape")
        wait_until(lambda: not app.shows("Client name"), "a closed form")
        self.assertEqual(len(app.ledger()["clients"]), 1)

    def test_the_keys_command_the_session_from_the_window(self):
        app = self.launch(one_client())
        self.open_window()
        self.desktop.type("ctrl+t")
        app.ledger_when(lambda ledger: "active" in ledger, "a session")
        self.desktop.type("ctrl+t")
        app.ledger_when(lambda ledger: "runningSince" not in ledger["active"], "a pause")
        self.desktop.type("ctrl+shift+s")
        app.ledger_when(lambda ledger: ledger["entries"], "a saved session")

    def test_the_main_menu_is_opened_by_key_and_leads_into_a_submenu_and_back(self):
        app = self.launch(one_client())
        self.open_window()
        self.desktop.type("F10")
        self.assertEqual(app.find_menu().get_name(), "Main menu")
        self.assertEqual(
            app.entries(),
            ["Check for Updates…", "New client", "New project", "Session", "Settings…",
             "Quit Kestry"])
        self.desktop.type("s", "Right")
        app.wait_for_entry("Start / pause / resume")
        self.assertEqual(
            app.entries(),
            ["Session", "Start / pause / resume", "Stop & save", "Show notch controls"])
        self.desktop.type("Left")
        app.wait_for_entry("Session")
        self.desktop.type("Return")
        app.choose("Start / pause / resume")
        app.ledger_when(lambda ledger: "active" in ledger, "a session")
        app.wait_for_no_menu()

    def test_a_key_of_the_window_does_nothing_while_a_menu_is_open(self):
        app = self.launch(one_client())
        self.open_window()
        app.open_menu("Main menu")
        self.desktop.type("ctrl+n", "ctrl+t", "Escape")
        app.wait_for_no_menu()
        self.assertFalse(app.shows("Client name"))
        self.assertNotIn("active", app.ledger())
        self.desktop.type("ctrl+n")
        app.find("Client name")

    def test_the_keys_show_the_notch_controls(self):
        app = self.launch(one_client())
        self.open_window()
        self.desktop.type("ctrl+alt+n")
        app.find("Start")

    def test_the_sidebar_and_the_keys_lead_to_the_pages(self):
        app = self.launch(one_client())
        self.open_window()
        app.press("Sessions")
        app.press("Aster Studio")
        app.find("Client")
        self.desktop.type("ctrl+comma")
        wait_until(lambda: not app.shows("Client"), "another page")

    def test_a_failure_is_told_in_an_alert_that_is_dismissed(self):
        app = self.launch(one_client())
        self.open_window()
        self.damage_ledger()
        self.desktop.type("ctrl+t")
        app.find_starting("Your time needs attention. ")
        app.press("OK")
        wait_until(lambda: not app.shows("OK"), "an alert that went")

    def test_a_recovered_session_is_told_above_the_page(self):
        app = self.launch(running_session(started_seconds_ago=100, checkpoint_seconds_ago=55))
        self.open_window()
        app.find("Your session was recovered and paused at its last saved checkpoint.")
        app.press("Dismiss")
        wait_until(lambda: not app.shows("Dismiss"), "a notice that went")
        self.desktop.hover_strip()
        app.find("Elapsed time 45 seconds")
        app.press("Resume session")
        app.ledger_when(lambda ledger: "runningSince" in ledger["active"], "a new interval")

    def test_a_demo_says_so_and_writes_nothing(self):
        app = self.launch(None, "--demo")
        self.open_window()
        app.find("DESIGN PREVIEW ·  Sample data. Changes stay in this preview.")
        app.find("Aster Studio")
        self.desktop.type("ctrl+t")
        app.terminate()
        self.assertFalse(os.path.exists(self.directory))

    def test_a_quit_from_the_keyboard_ends_the_program(self):
        app = self.launch(one_client())
        self.open_window()
        self.desktop.type("ctrl+q")
        self.assertEqual(app.process.wait(10), 0)


if __name__ == "__main__":
    unittest.main(verbosity=2)
