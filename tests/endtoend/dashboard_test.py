"""The page of a client in the real program, by keyboard and through the accessibility tree.

Usage: dashboard_test.py PROGRAM [unittest arguments]
"""

import os
import sys
import unittest

from desktop import Atspi, named, wait_until, xdotool
from ledgers import identifier, now, one_client
from program_test import ProgramTest

ProgramTest.PROGRAM = sys.argv.pop(1)


def ledger_with_projects(*names, sessions=0):
    """A client that bills these projects by the hour, with sessions on the first."""
    ledger = one_client()
    client = ledger["clients"][0]
    client["projectsEnabled"] = True
    ledger["projects"] = [
        {"id": identifier(), "clientID": client["id"], "name": name, "hourlyRateCents": 15000,
         "rateIsKnown": True, "isClientDefault": False} for name in names]
    ledger["entries"] = sessions_on(ledger["projects"][0], sessions) if sessions else []
    return ledger


def ledger_without_projects(sessions):
    ledger = one_client()
    project = {"id": identifier(), "clientID": ledger["clients"][0]["id"],
               "name": "Client sessions", "hourlyRateCents": 15000, "rateIsKnown": True,
               "isClientDefault": True}
    ledger["projects"] = [project]
    ledger["entries"] = sessions_on(project, sessions)
    return ledger


def sessions_on(project, count):
    """Sessions of half an hour, "Session 1" the newest."""
    starts = [now() - 3600 * (hours + 1) for hours in range(count)]
    return [{"id": identifier(), "projectID": project["id"], "title": f"Session {number + 1}",
             "hourlyRateCents": 15000, "spans": [{"start": start, "end": start + 1800}],
             "isBillable": True, "rateIsKnown": True} for number, start in enumerate(starts)]


class DashboardTest(ProgramTest):
    def open_page(self, ledger):
        app = self.launch(ledger)
        app.press("Open Kestry")
        app.press("Aster Studio")
        app.find("Edit client")
        return app

    def test_a_project_is_started_by_keys_and_raises_the_figures(self):
        app = self.open_page(ledger_with_projects("Website", "Poster"))
        app.find_starting("Total earnings, $0.00, ")
        app.tab_to("Start Website")
        self.desktop.type("Down")
        app.wait_for_focus("Start Poster")
        self.desktop.type("Return")
        ledger = app.ledger_when(lambda each: each.get("active"), "a session")
        self.assertEqual(ledger["active"]["projectID"], ledger["projects"][1]["id"])
        wait_until(lambda: app.find_where(lambda each: named(each).startswith("Total earnings, ")
                                          and "$0.00" not in named(each)), "earnings that rise")
        app.wait_for_focus("Start Poster")

    def test_a_second_start_is_refused_in_words(self):
        app = self.open_page(ledger_with_projects("Website"))
        app.press("Start Website")
        before = app.ledger_when(lambda each: each.get("active"), "a session")["active"]
        app.press("Start Website")
        app.find_starting("Your time needs attention. Stop the current session first.")
        self.assertEqual(app.ledger()["active"]["id"], before["id"])

    def test_a_project_is_edited_by_keys_and_the_keyboard_comes_back(self):
        app = self.open_page(ledger_with_projects("Website"))
        app.find("Website, 0 saved sessions, $150.00 / hr")
        app.tab_to("Edit Website")
        self.desktop.type("Return")
        app.wait_for_focus("Project name")
        self.desktop.type("ctrl+a")
        self.desktop.write("Web shop")
        self.desktop.type("ctrl+Return")
        app.find("Web shop, 0 saved sessions, $150.00 / hr")
        app.wait_for_focus("Edit Web shop")

    def test_a_project_is_added(self):
        app = self.open_page(ledger_with_projects())
        app.find("Add your first project to start tracking time for Aster Studio.")
        app.tab_to("Add project")
        self.desktop.type("space")
        app.wait_for_focus("Project name")
        self.desktop.write("Poster")
        self.desktop.type("ctrl+Return")
        app.find("Start Poster")
        app.find("1 projects · Rates set per project")

    def test_the_client_is_edited(self):
        app = self.open_page(ledger_with_projects("Website"))
        app.tab_to("Edit client")
        self.desktop.type("Return")
        app.wait_for_focus("Client name")
        self.desktop.type("Escape")
        app.wait_for_focus("Edit client")

    def test_all_sessions_of_the_client_are_a_press_away(self):
        app = self.open_page(ledger_with_projects("Website", sessions=7))
        app.find_starting("Session 5, ")
        self.assertFalse(app.find_where(lambda each: named(each).startswith("Session 6, ")))
        app.tab_to("View all")
        self.desktop.type("Return")
        app.find("Aster Studio sessions")
        app.find("7 sessions")

    def test_a_client_without_projects_shows_more_of_its_sessions(self):
        app = self.open_page(ledger_without_projects(23))
        app.find("$150.00 / hour")
        app.find("23 sessions")
        app.tab_to("Show more sessions")
        self.desktop.type("Return")
        app.find_starting("Session 20, ")
        self.desktop.type("Return")
        wait_until(lambda: (app.focused() or "").startswith("Session 21, "), "the first that came")
        self.assertFalse(app.shows("Show more sessions"))
        self.desktop.type("End")
        app.find_starting("Session 23, ")

    def test_a_row_that_the_keyboard_comes_to_is_scrolled_into_view(self):
        app = self.open_page(ledger_without_projects(10))
        app.tab_to("Search sessions")
        self.desktop.type("Down", "End")
        wait_until(lambda: (app.focused() or "").startswith("Session 10, "), "the last row")
        window = xdotool("getwindowgeometry", "--shell", xdotool("getactivewindow"))
        place = dict(line.split("=") for line in window.splitlines())
        row = app.find_starting("Session 10, ").get_extents(Atspi.CoordType.SCREEN)
        self.assertLessEqual(row.y + row.height, int(place["Y"]) + int(place["HEIGHT"]))
        self.assertGreaterEqual(row.y, int(place["Y"]))

    def test_a_client_that_is_removed_elsewhere_leaves_the_page(self):
        app = self.launch(one_client())
        self.assertEqual(self.kestryctl("client", "add", "Birch").returncode, 0)
        app.press("Open Kestry")
        app.press("Birch")
        app.find("Edit client")
        # What was saved before the client was added comes back in place of a damaged ledger.
        with open(os.path.join(self.directory, "ledger.json"), "w", encoding="utf-8") as file:
            file.write("{ damaged")
        self.assertEqual(self.kestryctl("start", "aster").returncode, 1)
        restored = self.kestryctl("restore", "--yes")
        self.assertEqual(restored.returncode, 0, restored.stderr)
        app.find("Select a client. Choose a client in the sidebar, or use + to add one.")
        self.assertFalse(app.shows("Edit client"))


if __name__ == "__main__":
    unittest.main(verbosity=2)
