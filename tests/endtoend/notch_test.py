"""The strip and its panel among the windows of other programs.

Usage: notch_test.py PROGRAM [unittest arguments]
"""

import os
import subprocess
import sys
import time
import unittest

from desktop import wait_until, xdotool
from ledgers import identifier, now, one_client, running_session
from program_test import ProgramTest

ProgramTest.PROGRAM = sys.argv.pop(1)


def ledger_with_history(title):
    """One client with projects and one saved session of the title."""
    ledger = one_client()
    ledger["clients"][0]["projectsEnabled"] = True
    project = {"id": identifier(), "clientID": ledger["clients"][0]["id"], "name": "Website",
               "hourlyRateCents": 15000, "rateIsKnown": True, "isClientDefault": False}
    entry = {"id": identifier(), "projectID": project["id"], "title": title,
             "hourlyRateCents": 15000, "isBillable": True, "rateIsKnown": True,
             "spans": [{"start": now() - 7200, "end": now() - 3600}]}
    return {**ledger, "projects": [project], "entries": [entry]}


class NotchTest(ProgramTest):
    def present(self):
        """Another program takes the whole screen, and the keyboard."""
        self.desktop.run(
            sys.executable, os.path.join(os.path.dirname(__file__), "full_screen_window.py"))
        window = wait_until(lambda: xdotool("search", "--name", "^Presentation$"), "a window")
        xdotool("windowfocus", "--sync", window)
        wait_until(lambda: self.colour(200, 700) == "white", "a full screen")
        return self.desktop.focused_window()

    def colour(self, x, y):
        pixel = subprocess.run(
            ["import", "-silent", "-window", "root", "-crop", f"1x1+{x}+{y}", "-depth", "8",
             "txt:-"], capture_output=True, text=True, check=True).stdout.split()[-1]
        return {"gray(255)": "white", "gray(0)": "black"}.get(pixel, pixel)

    def start_session(self):
        self.desktop.hover_strip()
        self.app.press("Start")
        self.app.find("Pause session")

    def edit_title(self):
        self.app.press(self.app.find_starting("Session title: ").get_name())
        self.app.find("Session title")

    def test_the_strip_stands_above_a_full_screen_window(self):
        self.launch(one_client())
        self.present()
        wait_until(lambda: self.colour(560, 23) == "black", "a strip above the window")

    def test_the_panel_works_above_a_full_screen_window_without_taking_the_keyboard(self):
        app = self.launch(one_client())
        focused = self.present()
        self.start_session()
        app.press("Pause session")
        app.press("Resume session")
        self.assertEqual(self.desktop.focused_window(), focused)
        app.press("Stop and save session")
        app.ledger_when(lambda ledger: ledger["entries"], "a saved session")
        self.desktop.leave_strip()
        wait_until(lambda: not app.shows("Start"), "a folded panel")
        self.assertEqual(self.desktop.focused_window(), focused)

    def test_a_title_is_completed_with_the_right_arrow(self):
        app = self.launch(ledger_with_history("Design exploration"))
        self.start_session()
        self.edit_title()
        self.desktop.type("d", "e", "s", "Right", "Return")
        app.ledger_when(
            lambda ledger: ledger["active"]["title"] == "design exploration", "the whole title")

    def test_the_panel_stays_while_a_title_is_typed_and_folds_after_it(self):
        app = self.launch(ledger_with_history("Design exploration"))
        self.start_session()
        self.edit_title()
        self.desktop.leave_strip()
        self.desktop.type("l", "o", "g", "o")
        app.find("Session title")
        self.assertTrue(app.shows("Session title"))
        self.desktop.type("Return")
        app.ledger_when(lambda ledger: ledger["active"]["title"] == "logo", "the title")
        wait_until(lambda: not app.shows("Pause session"), "a folded panel")

    def test_a_click_elsewhere_ends_the_edit_and_folds_the_panel(self):
        app = self.launch(ledger_with_history("Design exploration"))
        focused = self.present()
        self.start_session()
        self.edit_title()
        wait_until(lambda: self.desktop.focused_window() != focused, "the keyboard in the panel")
        self.desktop.leave_strip()
        self.desktop.click()
        wait_until(lambda: not app.shows("Pause session"), "a folded panel")
        wait_until(lambda: self.desktop.focused_window() == focused, "the keyboard given back")

    def test_a_failure_stands_in_the_panel(self):
        app = self.launch(one_client())
        self.start_session()
        path = os.path.join(self.directory, "ledger.json")
        with open(path, "w", encoding="utf-8") as file:
            file.write("{ damaged")
        app.press("Pause session")
        app.find_starting("The ledger on disk could not be read")
        app.find("Pause session")
        with open(path, encoding="utf-8") as file:
            self.assertEqual(file.read(), "{ damaged")

    def test_the_client_is_chosen_in_a_menu_that_holds_the_panel_open(self):
        ledger = one_client()
        other = {**ledger["clients"][0], "id": identifier(), "name": "Birch"}
        ledger["clients"].append(other)
        app = self.launch(ledger)
        self.desktop.hover_strip()
        app.open_menu(app.find_starting("Session client and project: Aster Studio").get_name())
        self.desktop.leave_strip()
        time.sleep(1)  # many times as long as a panel without a menu stays
        self.assertTrue(app.shows("Start"))
        self.desktop.type("Down", "Down", "Return")
        app.find_starting("Session client and project: Birch")
        app.press("Start")
        started = app.ledger_when(lambda ledger: "active" in ledger, "a session")
        project = next(each for each in started["projects"]
                       if each["id"] == started["active"]["projectID"])
        self.assertEqual(project["clientID"], other["id"])

    def test_the_menu_of_the_title_leads_to_the_form_of_the_session(self):
        app = self.launch(running_session(started_seconds_ago=100, checkpoint_seconds_ago=55))
        self.desktop.hover_strip()
        app.find_starting("Session title: ")
        time.sleep(1)  # until it stands still
        self.desktop.point_at(app.find_starting("Session title: "))
        self.desktop.click(3)
        time.sleep(1)
        self.desktop.type("Down", "Down", "Return")
        app.find("Edit current session")


if __name__ == "__main__":
    unittest.main(verbosity=2)
