"""The sessions page of the real program, by keyboard alone.

Usage: sessions_test.py PROGRAM [unittest arguments]
"""

import os
import sys
import unittest

from desktop import Atspi, GLib, wait_until
from file_portal import CANCELLED, FilePortal
from ledgers import identifier, now, one_client
from program_test import ProgramTest

ProgramTest.PROGRAM = sys.argv.pop(1)


def ledger_of(*titles):
    """Sessions of half an hour with these titles, the newest first."""
    ledger = one_client()
    project = {"id": identifier(), "clientID": ledger["clients"][0]["id"], "name": "Client sessions",
               "hourlyRateCents": 15000, "rateIsKnown": True, "isClientDefault": True}
    starts = [now() - 3600 * (hours + 1) for hours in range(len(titles))]
    ledger["projects"] = [project]
    ledger["entries"] = [
        {"id": identifier(), "projectID": project["id"], "title": title, "hourlyRateCents": 15000,
         "spans": [{"start": start, "end": start + 1800}], "isBillable": True, "rateIsKnown": True}
        for title, start in zip(titles, starts)]
    return ledger


class SessionsTest(ProgramTest):
    def open_page(self, *titles):
        self.documents = os.path.join(self.folder, "home")
        os.makedirs(self.documents)
        os.environ["HOME"] = self.documents
        app = self.launch(ledger_of(*titles))
        app.press("Open Kestry")
        app.press("Sessions")
        app.find("Search sessions")
        app.find_starting(titles[0] + ", Aster Studio, ")
        return app

    def test_a_search_finds_while_it_is_typed_and_escape_clears_it(self):
        app = self.open_page("Design", "Review")
        self.desktop.type("ctrl+f", *"rev")
        app.find("1 sessions")
        app.find_starting("Review, ")
        self.desktop.type("Escape")
        app.find("2 sessions")

    def test_what_a_search_finds_is_told_to_a_screen_reader(self):
        app = self.open_page("Design", "Review")
        told = []

        def note(event):
            try:
                if event.detail1 and event.source.get_role() == Atspi.Role.ALERT:
                    told.append(event.source.get_name())
            except GLib.Error:
                pass  # it is gone again

        listener = Atspi.EventListener.new(note)
        listener.register("object:state-changed:showing")
        self.addCleanup(listener.deregister, "object:state-changed:showing")
        self.desktop.type("ctrl+f", *"rev")
        wait_until(lambda: app.shows("1 sessions") and "1 sessions" in told, "what was found")

    def test_a_column_sorts_by_key(self):
        app = self.open_page("Beta", "Alpha")
        self.desktop.type("ctrl+f", "Tab", "Tab", "Tab", "space")
        wait_until(lambda: "Sorted ascending" in app.find("Sort by Session").get_description(),
                   "a table sorted by name")

    def test_a_session_is_deleted_after_a_confirmation(self):
        app = self.open_page("Design", "Review", "Call")
        self.desktop.type("ctrl+f", "Down", "Down", "Delete")
        app.wait_for_focus("Cancel")
        self.desktop.type("Return")
        wait_until(lambda: not app.shows("Delete session"), "a question that went")
        self.assertEqual(len(app.ledger()["entries"]), 3)
        self.desktop.type("Delete")
        app.wait_for_focus("Cancel")
        self.desktop.type("Left", "Return")
        ledger = app.ledger_when(lambda each: len(each["entries"]) == 2, "a deleted session")
        self.assertEqual([each["title"] for each in ledger["entries"]], ["Design", "Call"])
        app.find("2 sessions")

    def test_the_row_with_the_keyboard_keeps_it_after_an_edit_and_a_change_from_elsewhere(self):
        app = self.open_page("Design", "Review", "Call")
        self.desktop.type("ctrl+f", "Down", "Home", "Down", "Return")
        app.wait_for_focus("Session title")
        self.desktop.type("ctrl+a")
        self.desktop.write("Second review")
        self.desktop.type("ctrl+Return")
        app.find_starting("Second review, ")
        wait_until(lambda: (app.focused() or "").startswith("Second review, "), "the same row")
        self.assertEqual(self.kestryctl("add", "aster", "--start", "-20m", "--duration", "10m",
                                        "--title", "Mail").returncode, 0)
        app.find("4 sessions")
        wait_until(lambda: app.focused().startswith("Second review, "), "the same row")

    def test_typing_the_beginning_of_a_name_leads_to_its_row(self):
        app = self.open_page("Design", "Review", "Call")
        self.desktop.type("ctrl+f", "Down", *"ca")
        wait_until(lambda: (app.focused() or "").startswith("Call, "), "the row")

    def test_the_menu_of_a_row_asks_for_a_deletion(self):
        app = self.open_page("Design")
        self.desktop.type("ctrl+f", "Down", "Menu")
        self.assertEqual(app.find_menu().get_name(), "Design")
        self.assertEqual(app.entries(), ["Edit session", "Delete session"])
        self.desktop.type("Down", "Down", "Return")
        app.find("Delete this session?")
        self.desktop.type("Escape")
        wait_until(lambda: (app.focused() or "").startswith("Design, "), "the row again")
        self.assertEqual(len(app.ledger()["entries"]), 1)

    def test_all_sessions_are_exported_where_the_desktop_has_no_dialog(self):
        app = self.open_page("Design", "Review")
        self.desktop.type("ctrl+f", *"rev")
        app.find("1 sessions")
        self.desktop.type("Tab", "Tab", "space")
        app.wait_for_focus("File")
        self.desktop.type("ctrl+a", *"mine", "period", *"csv", "Return")
        app.find("Export complete. Exported 2 saved sessions to mine.csv.")
        with open(os.path.join(self.documents, "mine.csv"), "rb") as file:
            lines = file.read().split(b"\r\n")
        self.assertTrue(lines[0].startswith(b"Client,Project,Description,"))
        self.assertEqual(len(lines), 4)
        self.assertEqual(os.listdir(self.documents).count("mine.csv"), 1)

    def test_the_desktops_own_dialog_is_asked_with_a_name_and_a_folder(self):
        app = self.open_page("Design")
        with FilePortal(self.documents) as portal:
            app.press("Export")
            question = portal.question()
            self.assertEqual(question["title"], "Export saved sessions")
            self.assertRegex(question["name"], r"^Kestry-sessions-\d{4}-\d\d-\d\d\.csv$")
            self.assertEqual(question["folder"], self.documents)
            self.assertEqual(
                question["filters"], [["Comma-separated text", [[0, "*.csv"], [1, "text/csv"]]]])
            app.find_starting("Export complete. Exported 1 saved sessions to Kestry-sessions-")
        self.assertTrue(os.path.exists(os.path.join(self.documents, question["name"])))
        self.assertFalse(app.shows("File"))

    def test_the_folder_of_the_last_export_is_proposed_again(self):
        app = self.open_page("Design")
        reports = os.path.join(self.documents, "reports")
        os.mkdir(reports)
        with FilePortal(reports) as portal:
            app.press("Export")
            self.assertEqual(portal.question()["folder"], self.documents)
            app.find_starting("Export complete. ")
            self.desktop.type("Return")
            wait_until(lambda: not app.shows("OK"), "an alert that went")
            app.press("Export")
            self.assertEqual(portal.question()["folder"], reports)

    def test_a_folder_that_cannot_be_written_to_is_told(self):
        app = self.open_page("Design")
        with FilePortal(os.path.join(self.documents, "missing")):
            app.press("Export")
            app.find_starting("Your time needs attention. ")
            self.desktop.type("Return")
        app.press("Add time")  # it goes on

    def test_a_dialog_of_the_desktop_that_is_cancelled_does_nothing(self):
        app = self.open_page("Design")
        with FilePortal(self.documents, CANCELLED) as portal:
            app.press("Export")
            name = portal.question()["name"]
        app.press("Add time")  # it goes on
        self.assertFalse(os.path.exists(os.path.join(self.documents, name)))
        self.assertFalse(app.shows("File"))


if __name__ == "__main__":
    unittest.main(verbosity=2)
