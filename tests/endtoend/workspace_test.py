"""The workspace window of the real program.

Usage: workspace_test.py PROGRAM [unittest arguments]
"""

import os
import re
import subprocess
import sys
import unittest

from desktop import Atspi, wait_until, xdotool
from ledgers import identifier, one_client, running_session, session_elsewhere
from program_test import ProgramTest
from settings_portal import SettingsPortal

ProgramTest.PROGRAM = sys.argv.pop(1)


class WorkspaceTest(ProgramTest):
    def open_window(self):
        self.app.press("Open Kestry")
        found = self.app.find("Overview")
        wait_until(lambda: xdotool("getactivewindow"), "an active window")
        return found

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
            ["Check for Updates…", "New client", "New project", "Settings…", "Session",
             "Keyboard shortcuts", "Close window", "Quit Kestry"])
        self.desktop.type("s", "e", "s", "Right")
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

    def test_the_main_menu_shows_the_keys_and_closes_the_window(self):
        app = self.launch(one_client())
        self.open_window()
        self.desktop.type("F10")
        app.choose("Keyboard shortcuts")
        app.wait_for_no_menu()
        app.find("Keyboard shortcuts")
        self.desktop.type("Escape")
        wait_until(lambda: not app.shows("Keyboard shortcuts"), "no keys")
        app.open_menu("Main menu")
        app.choose("Close window")
        wait_until(lambda: not app.shows("Overview"), "a closed window")
        self.assertIsNone(app.process.poll())

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
        app.find("Edit client")
        self.desktop.type("ctrl+comma")
        wait_until(lambda: not app.shows("Edit client"), "another page")

    def test_a_failure_is_told_in_an_alert_that_is_dismissed(self):
        app = self.launch(one_client())
        self.open_window()
        self.damage_ledger()
        self.desktop.type("ctrl+t")
        app.find_starting("Your time needs attention. ")
        app.press("OK")
        wait_until(lambda: not app.shows("OK"), "an alert that went")

    # The session box of the sidebar.

    def test_a_session_is_controlled_from_the_sidebar(self):
        app = self.launch(one_client())
        self.open_window()
        app.find("New session")
        app.press("Start session")
        app.find("Current session")
        app.find("Session client and project: Aster Studio")
        app.press("Pause")
        app.ledger_when(lambda ledger: "runningSince" not in ledger["active"], "a pause")
        app.press("Resume")
        app.ledger_when(lambda ledger: "runningSince" in ledger["active"], "a session that runs")
        app.press("Stop and save session")
        app.ledger_when(lambda ledger: ledger["entries"], "a saved session")
        app.find("New session")

    def test_without_clients_the_sidebar_asks_for_the_first(self):
        app = self.launch()
        self.open_window()
        app.find("No clients yet")
        app.press("Add client")
        app.find("Client name")

    def test_the_sidebar_is_used_from_the_keyboard_alone(self):
        app = self.launch(one_client())
        self.open_window()
        self.desktop.type("Tab", "Tab", "Tab", "Tab", "Tab", "Tab")
        wait_until(lambda: self.focused() == "Session title", "the keyboard on the title")
        self.desktop.type(*"logo", "Return")
        ledger = app.ledger_when(lambda ledger: "active" in ledger, "a session")
        self.assertEqual(ledger["active"]["title"], "logo")
        wait_until(lambda: self.focused() == "Pause", "the keyboard on what came in its place")
        self.desktop.type("Tab", "space")
        app.ledger_when(lambda ledger: ledger["entries"], "a saved session")

    def test_the_target_is_chosen_from_a_menu_in_the_window(self):
        ledger = one_client()
        ledger["clients"].append({**ledger["clients"][0], "id": identifier(), "name": "Birch"})
        app = self.launch(ledger)
        self.open_window()
        app.open_menu("Session client and project: Aster Studio · $150/hr")
        self.assertEqual(app.entries(), ["Aster Studio", "Birch", "Add client…", "Add project…"])
        app.choose("Birch")
        app.find("Session client and project: Birch · $150/hr")
        app.press("Start session")
        app.find("Session client and project: Birch")

    def test_a_session_started_in_the_panel_shows_in_the_sidebar(self):
        app = self.launch(one_client())
        self.open_window()
        self.desktop.hover_strip()
        app.press("Start")
        app.find("Current session")

    def test_a_session_of_another_device_is_told(self):
        app = self.launch(session_elsewhere("Laptop", running_for=5400))
        self.open_window()
        app.find("Session on Laptop, Running when last synced · 1h 30m")
        self.assertFalse(app.shows("Pause") or app.shows("Resume"))
        app.find("Start session")

    # The window itself.

    def test_a_form_that_is_open_when_the_window_closes_is_open_when_it_comes_back(self):
        app = self.launch(one_client())
        self.open_window()
        self.desktop.type("ctrl+n")
        app.find("Client name")
        self.desktop.type(*"birch")
        self.desktop.type("ctrl+w")
        wait_until(lambda: not app.shows("Client name"), "a closed window")
        app.press("Open Kestry")
        app.find("Client name")
        app.press("Save")
        app.ledger_when(lambda ledger: len(ledger["clients"]) == 2, "the client that was typed")

    def test_the_first_window_leaves_the_strip_free(self):
        self.launch(one_client())
        self.open_window()
        self.assertGreaterEqual(self.geometry()[1], 48)

    def test_the_window_opens_again_where_it_was(self):
        self.launch(one_client())
        self.open_window()
        window = wait_until(lambda: xdotool("getactivewindow"), "an active window")
        xdotool("windowsize", window, "800", "560")
        xdotool("windowmove", window, "300", "120")
        wait_until(lambda: self.geometry()[2:] == (800, 560), "another size")
        before = self.geometry()
        self.desktop.type("ctrl+w")
        wait_until(lambda: not self.app.shows("Overview"), "a closed window")
        self.app.terminate()
        self.launch()
        self.open_window()
        wait_until(lambda: self.geometry() == before, f"the window at {before}")

    def test_a_maximised_window_opens_maximised(self):
        self.launch(one_client())
        self.open_window()
        before = self.geometry()
        self.maximise()
        wait_until(lambda: self.geometry()[2] == 1280, "a maximised window")
        self.desktop.type("ctrl+w")
        wait_until(lambda: not self.app.shows("Overview"), "a closed window")
        self.app.terminate()
        self.launch()
        self.open_window()
        wait_until(lambda: self.geometry()[2] == 1280, "a maximised window")
        self.maximise()
        wait_until(lambda: self.geometry()[2:] == before[2:], "the size that it had before")

    def maximise(self):
        """Switches the maximised state of the window by a double click on its title."""
        left, top, _, _ = self.geometry()
        self.desktop.point(left + 200, top - 8)  # beside the strip, which may be over it
        xdotool("click", "--repeat", "2", "--delay", "50", "1")

    def geometry(self):
        """Position and size of what is inside the frame of the active window."""
        active = wait_until(lambda: xdotool("getactivewindow"), "an active window")
        told = subprocess.run(["xwininfo", "-id", active], check=True, capture_output=True,
                              text=True).stdout
        return tuple(int(re.search(rf"{name}: +(-?[0-9]+)", told)[1])
                     for name in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))

    def focused(self):
        """The name of what has the keyboard; None without it."""
        found = self.app.find_where(
            lambda each: each.get_state_set().contains(Atspi.StateType.FOCUSED)
            and each.get_role() != Atspi.Role.FRAME and each.get_name())
        return found and found.get_name()

    def test_the_text_scale_of_the_desktop_is_followed(self):
        with SettingsPortal() as portal:
            app = self.launch(one_client())
            self.open_window()
            before = app.find("Start session").get_extents(Atspi.CoordType.SCREEN).height
            portal.scale_text(1.5)
            wait_until(lambda: app.find("Start session").get_extents(
                Atspi.CoordType.SCREEN).height > before, "larger texts")

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
