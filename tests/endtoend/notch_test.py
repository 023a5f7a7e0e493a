"""The strip and its panel among the windows of other programs.

Usage: notch_test.py PROGRAM [unittest arguments]
"""

import os
import subprocess
import sys
import time
import unittest

from desktop import Atspi, wait_until, xdotool
from ledgers import identifier, now, one_client, running_session
from program_test import ProgramTest

ProgramTest.PROGRAM = sys.argv.pop(1)

FOLDING_SECONDS = 1  # many times as long as a panel stays that nothing holds open


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
        self.typed = os.path.join(self.folder, "typed")
        with open(self.typed, "w", encoding="utf-8") as output:
            self.desktop.run(
                sys.executable, os.path.join(os.path.dirname(__file__), "full_screen_window.py"),
                output=output)
        window = wait_until(lambda: xdotool("search", "--name", "^Presentation$"), "a window")
        xdotool("windowfocus", "--sync", window)
        wait_until(lambda: self.colour(200, 700) == "white", "a full screen")
        return self.desktop.focused_window()

    def other_program_got(self):
        """The keys and clicks of the full-screen program, in order."""
        with open(self.typed, encoding="utf-8") as file:
            return file.read().split()

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

    def launch_with_clients(self, *names):
        """Starts with clients of these names, and opens the menu that chooses among them."""
        ledger = one_client()
        first = ledger["clients"][0]
        ledger["clients"] = [{**first, "id": identifier(), "name": name} for name in names]
        self.launch(ledger)
        return ledger["clients"]

    def open_target_menu(self):
        self.desktop.hover_strip()
        button = self.app.find_starting("Session client and project: ")
        time.sleep(FOLDING_SECONDS)  # until the panel stands still
        return self.app.open_menu(button.get_name())

    def test_the_client_is_chosen_in_a_menu_that_holds_the_panel_open(self):
        clients = self.launch_with_clients("Aster Studio", "Birch")
        self.open_target_menu()
        self.desktop.leave_strip()
        time.sleep(FOLDING_SECONDS)
        self.assertTrue(self.app.shows("Start"))
        self.app.choose("Birch")
        self.app.wait_for_no_menu()
        wait_until(lambda: not self.app.shows("Start"), "a folded panel")
        self.desktop.hover_strip()
        self.app.find_starting("Session client and project: Birch")
        self.app.press("Start")
        started = self.app.ledger_when(lambda ledger: "active" in ledger, "a session")
        project = next(each for each in started["projects"]
                       if each["id"] == started["active"]["projectID"])
        self.assertEqual(project["clientID"], clients[1]["id"])

    def test_a_screen_reader_finds_the_menu_and_what_is_checked(self):
        self.launch_with_clients("Aster Studio", "Birch")
        menu = self.open_target_menu()
        self.assertEqual(menu.get_name(), "Session client and project")
        self.assertEqual(
            self.app.entries(), ["Aster Studio", "Birch", "Add client…", "Add project…"])
        checked = [name for name in ("Aster Studio", "Birch")
                   if self.app.entry(name).get_state_set().contains(Atspi.StateType.CHECKED)]
        self.assertEqual(checked, ["Aster Studio"])
        self.assertEqual(self.app.entry("Add project…").get_description(), "Not available")
        self.app.choose("Add project…")  # a screen reader may press it all the same
        time.sleep(FOLDING_SECONDS)
        self.assertTrue(self.app.menu())

    def test_arrows_and_letters_move_in_a_menu_while_another_program_has_the_focus(self):
        self.launch_with_clients("Aster Studio", "Birch", "Beech", "Oak")
        focused = self.present()
        self.open_target_menu()
        for key, name in (("Down", "Aster Studio"), ("b", "Birch"), ("b", "Beech"), ("o", "Oak"),
                          ("Up", "Beech"), ("End", "Add client…"), ("Home", "Aster Studio")):
            self.desktop.type(key)
            self.app.wait_for_entry(name)
        self.desktop.type("Down", "Return")
        self.app.find_starting("Session client and project: Birch")
        self.assertEqual(self.desktop.focused_window(), focused)
        self.assertEqual(self.other_program_got(), [])

    def test_escape_closes_a_menu_and_the_keys_go_to_the_other_program_again(self):
        self.launch_with_clients("Aster Studio", "Birch")
        focused = self.present()
        self.open_target_menu()
        self.desktop.leave_strip()
        self.desktop.type("Escape")
        self.app.wait_for_no_menu()
        wait_until(lambda: not self.app.shows("Start"), "a folded panel")
        self.assertEqual(self.desktop.focused_window(), focused)
        self.desktop.type("x")
        wait_until(lambda: self.other_program_got() == ["x"], "the key")

    def test_a_press_beside_a_menu_closes_it_and_does_nothing_else(self):
        self.launch_with_clients("Aster Studio", "Birch")
        self.present()
        self.open_target_menu()
        self.desktop.leave_strip()
        self.desktop.click()
        self.app.wait_for_no_menu()
        wait_until(lambda: not self.app.shows("Start"), "a folded panel")
        self.assertEqual(self.other_program_got(), [])
        self.desktop.click()
        wait_until(lambda: self.other_program_got() == ["click"], "the click")

    def test_a_press_on_the_panel_beside_a_menu_only_closes_the_menu(self):
        self.launch_with_clients("Aster Studio", "Birch")
        self.open_target_menu()
        self.desktop.point_at(self.app.find("Start"))
        self.desktop.click()
        self.app.wait_for_no_menu()
        time.sleep(FOLDING_SECONDS)
        self.assertNotIn("active", self.app.ledger())
        self.desktop.click()
        self.app.ledger_when(lambda ledger: "active" in ledger, "a session")

    def test_an_entry_is_chosen_by_pointer(self):
        self.launch_with_clients("Aster Studio", "Birch")
        self.open_target_menu()
        self.desktop.point_at(self.app.entry("Birch"))
        self.app.wait_for_entry("Birch")
        self.desktop.click()
        self.app.find_starting("Session client and project: Birch")

    def test_a_menu_longer_than_the_screen_scrolls(self):
        self.launch_with_clients(*(f"Client {number}" for number in range(60)))
        self.open_target_menu()
        self.desktop.type("End", "Up")
        self.app.wait_for_entry("Client 59")
        place = self.app.entry("Client 59").get_extents(Atspi.CoordType.SCREEN)
        self.assertLess(place.y + place.height, 800)
        self.desktop.type("Return")
        self.app.find_starting("Session client and project: Client 59")

    def test_a_title_is_edited_from_its_menu(self):
        app = self.launch(one_client())
        focused = self.present()
        self.start_session()
        self.open_title_menu()
        self.assertEqual(app.entries(), ["Edit title", "Change project…"])
        self.desktop.type("Down", "Return")
        app.find("Session title")
        wait_until(lambda: self.desktop.focused_window() != focused, "the keyboard in the panel")
        self.desktop.type("l", "o", "g", "o", "Return")
        app.ledger_when(lambda ledger: ledger["active"]["title"] == "logo", "the title")

    def test_the_menu_of_the_title_leads_to_the_form_of_the_session(self):
        app = self.launch(running_session(started_seconds_ago=100, checkpoint_seconds_ago=55))
        self.desktop.hover_strip()
        self.open_title_menu()
        self.desktop.type("Down", "Down", "Return")
        app.find("Edit current session")

    def open_title_menu(self):
        self.app.find_starting("Session title: ")
        time.sleep(FOLDING_SECONDS)  # until it stands still
        self.desktop.point_at(self.app.find_starting("Session title: "))
        self.desktop.click(3)
        self.assertEqual(self.app.find_menu().get_name(), "Session title")


if __name__ == "__main__":
    unittest.main(verbosity=2)
