"""A day of work in the real program's window, by keyboard and accessibility tree alone.

Usage: workday_test.py PROGRAM [unittest arguments]
"""

import csv
import os
import struct
import sys
import unittest
import zlib

from desktop import Atspi, wait_until
from file_portal import FilePortal
from program_test import ProgramTest
from wayland_desktop import WaylandDesktop

ProgramTest.PROGRAM = sys.argv.pop(1)


def png(size):
    """A grey picture of some pixels on each side."""
    def chunk(kind, content):
        body = kind + content
        return struct.pack(">I", len(content)) + body + struct.pack(">I", zlib.crc32(body))
    rows = (b"\0" + b"\x80" * size) * size
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">2I5B", size, size, 8, 0, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b""))


class WindowTest(ProgramTest):
    """The window, and what is done in it."""

    def setUp(self):
        super().setUp()
        self.home = os.path.join(self.folder, "home")
        os.mkdir(self.home)
        os.environ["HOME"] = self.home

    def open_window(self):
        self.app = self.launch()
        self.app.press("Open Kestry")
        self.app.find("Overview")

    def wait_for_no_form(self):
        wait_until(lambda: not self.app.shows("Save"), "a closed form")

    def choose_from(self, field, entry):
        """Opens the menu of a field, and chooses an entry, by key."""
        self.app.tab_to(field)
        self.desktop.type("space")
        self.app.find_menu()
        for _ in range(len(self.app.entries())):
            if self.app.focused_entry() == entry:
                break
            before = self.app.focused_entry()
            self.desktop.type("Down")
            wait_until(lambda: self.app.focused_entry() != before, "the next entry")
        self.app.wait_for_entry(entry)
        self.desktop.type("Return")
        self.app.wait_for_no_menu()

    def add_client(self, name):
        self.desktop.type("ctrl+n")
        self.app.wait_for_focus("Client name")
        self.desktop.write(name)
        self.desktop.type("ctrl+Return")
        self.wait_for_no_form()

    def damage_ledger(self):
        with open(os.path.join(self.directory, "ledger.json"), "w", encoding="utf-8") as file:
            file.write("{ damaged")

    def add_project(self, name, rate):
        self.desktop.type("F10")
        self.app.choose("New project")
        self.app.wait_for_focus("Project name")
        self.desktop.write(name)
        self.desktop.type("Tab")
        self.app.wait_for_focus("Rate (USD / hour)")
        self.desktop.write(rate)
        self.desktop.type("ctrl+Return")
        self.wait_for_no_form()


class WorkdayTest(WindowTest):
    def add_time(self, title, started, hours):
        self.desktop.type("ctrl+f")
        self.app.wait_for_focus("Search sessions")
        self.app.tab_to("Add time")
        self.desktop.type("space")
        self.app.wait_for_focus("Session title")
        self.desktop.write(title)
        self.app.tab_to("Started")
        self.desktop.type("ctrl+a")
        self.desktop.write(started)
        self.app.tab_to("Hours")
        self.desktop.type("ctrl+a")
        self.desktop.write(hours)

    def choose_project(self):
        if self.app.shows("Client: Choose a client"):
            self.choose_from("Client: Choose a client", "Birch")
        self.choose_from("Project: Choose a project", "Website · $95.50/hr")

    def sessions(self):
        return self.app.ledger()["entries"]

    def test_from_the_first_client_to_the_file_for_the_accountant(self):
        self.open_window()
        self.add_client("Birch")
        self.add_project("Website", "95.50")
        self.app.press("Sessions")
        self.app.find("No sessions yet. Start a timer or add time you’ve already worked.")

        self.add_time("Draft", "yesterday 14:30", "2")
        self.choose_project()
        self.desktop.type("ctrl+Return")
        self.wait_for_no_form()
        self.app.find_starting("Draft, Birch, Website, ")
        self.add_time("Call", "yesterday 9:00", "1")
        self.choose_project()
        self.app.tab_to("Billable")
        self.desktop.type("space", "ctrl+Return")
        self.wait_for_no_form()
        self.app.find("2 sessions")
        self.assertEqual([each["isBillable"] for each in self.sessions()], [True, False])

        # The newest is the first row.
        self.desktop.type("ctrl+f", "Down", "Home", "Return")
        self.app.wait_for_focus("Session title")
        self.desktop.type("ctrl+a")
        self.desktop.write("Design")
        self.desktop.type("ctrl+Return")
        self.wait_for_no_form()
        self.app.find_starting("Design, Birch, Website, ")
        self.assertEqual(self.app.focused().split(",")[0], "Design")

        self.desktop.type("ctrl+f")
        self.desktop.write("call")
        self.app.find("1 sessions")
        self.desktop.type("Escape")
        self.app.find("2 sessions")
        self.app.tab_to("Sort by Session")
        self.desktop.type("space")
        wait_until(lambda: "Sorted ascending" in self.app.find("Sort by Session").get_description(),
                   "a table sorted by name")
        self.desktop.type("ctrl+f", "Down", "Home")
        wait_until(lambda: self.app.focused().startswith("Call, "), "the first by name")
        self.desktop.type("Delete")
        self.app.wait_for_focus("Cancel")
        self.desktop.type("Left", "Return")
        self.app.find("1 sessions")
        self.assertEqual([each["title"] for each in self.sessions()], ["Design"])

        self.desktop.type("ctrl+f")
        self.app.wait_for_focus("Search sessions")
        # A page of one client's sessions says that it exports those of all.
        self.app.tab_to("Export all" if self.app.shows("Birch sessions") else "Export")
        self.desktop.type("space")
        self.app.wait_for_focus("File")
        self.desktop.type("ctrl+a")
        self.desktop.write("year.csv")
        self.desktop.type("Return")
        self.app.find("Export complete. Exported 1 saved sessions to year.csv.")
        with open(os.path.join(self.home, "year.csv"), encoding="utf-8", newline="") as file:
            rows = list(csv.DictReader(file))
        self.assertEqual([(each["Client"], each["Project"], each["Description"], each["Hours"],
                           each["Earned"]) for each in rows],
                         [("Birch", "Website", "Design", "2.000000", "191.00")])


class WaylandWorkdayTest(WorkdayTest):
    """The same day on a Wayland compositor."""

    def make_desktop(self):
        return WaylandDesktop()


class LogoTest(WindowTest):
    def choose_logo(self, name):
        self.app.tab_to("Choose logo")
        self.desktop.type("space")
        self.app.wait_for_focus("File")
        self.desktop.write(name)
        self.desktop.type("Return")

    def test_a_logo_is_chosen_removed_and_chosen_again(self):
        with open(os.path.join(self.home, "mark.png"), "wb") as file:
            file.write(png(600))
        self.open_window()
        self.desktop.type("ctrl+n")
        self.app.wait_for_focus("Client name")
        self.desktop.write("Birch")
        self.choose_logo("mark.png")
        self.app.find("Client logo")
        self.app.tab_to("Remove logo")
        self.desktop.type("space")
        self.app.find("No client logo")
        self.app.wait_for_focus("Choose logo")
        self.choose_logo("mark.png")
        self.app.find("Client logo")
        self.desktop.type("ctrl+Return")
        client = self.app.ledger_when(lambda each: each["clients"], "a client")["clients"][0]
        self.assertIn("logoData", client)
        self.wait_for_no_form()

    def test_a_logo_is_chosen_in_the_desktops_own_dialog(self):
        picture = os.path.join(self.home, "mark.png")
        with open(picture, "wb") as file:
            file.write(png(600))
        self.open_window()
        self.desktop.type("ctrl+n")
        self.app.wait_for_focus("Client name")
        with FilePortal(picture) as portal:
            self.app.press("Choose logo")
            question = portal.question()
            self.assertEqual((question["method"], question["name"]), ("OpenFile", None))
            self.assertEqual(question["filters"][0][0], "PNG, JPEG, or HEIC · Up to 20 MB")
            self.app.find("Client logo")

    def test_a_file_that_is_no_picture_is_told_below_the_logo(self):
        with open(os.path.join(self.home, "mark.png"), "wb") as file:
            file.write(b"no picture")
        self.open_window()
        self.desktop.type("ctrl+n")
        self.app.wait_for_focus("Client name")
        self.choose_logo("mark.png")
        self.app.find(
            "This image could not be read. Choose a PNG, JPEG, or another supported image.")
        self.app.find("No client logo")


class LossTest(WindowTest):
    def test_a_damaged_ledger_is_told_and_restored(self):
        self.open_window()
        self.add_client("Birch")
        self.add_client("Cedar")
        self.damage_ledger()
        self.desktop.type("ctrl+n")
        self.app.wait_for_focus("Client name")
        self.desktop.write("Dogwood")
        self.desktop.type("ctrl+Return")
        self.app.find_starting("The ledger on disk could not be read. ")
        self.desktop.type("Escape")
        self.app.wait_for_focus("Keep editing")
        self.desktop.type("Left", "Return")
        self.wait_for_no_form()
        self.desktop.type("ctrl+t")
        self.app.find_starting("Your time needs attention. ")
        self.desktop.type("Return")
        self.assertEqual(self.kestryctl("restore", "--yes").returncode, 0)
        self.app.find("Birch")
        wait_until(lambda: not self.app.shows("Cedar"), "the clients of the backup")
        self.assertEqual([each["name"] for each in self.app.ledger()["clients"]], ["Birch"])

    def remove_newest_client(self, field):
        """It goes from elsewhere, by way of a backup, while a form with this field is open."""
        self.damage_ledger()
        self.desktop.type("ctrl+t")
        self.app.find_starting("Your time needs attention. ")
        self.assertEqual(self.kestryctl("restore", "--yes").returncode, 0)
        self.desktop.type("Return")
        self.app.wait_for_focus(field)
        self.assertEqual([each["name"] for each in self.app.ledger()["clients"]], ["Birch"])

    def draft(self, field):
        return Atspi.Text.get_text(self.app.find(field), 0, -1)

    def test_a_client_that_goes_while_its_form_is_open_leaves_the_drafts(self):
        self.open_window()
        self.add_client("Birch")
        self.add_client("Cedar")
        self.app.press("Edit client")
        self.app.wait_for_focus("Client name")
        self.desktop.type("ctrl+a")
        self.desktop.write("Cedar Works")
        self.remove_newest_client("Client name")
        self.desktop.type("ctrl+Return")
        self.app.find("Client not found.")
        self.assertEqual(self.draft("Client name"), "Cedar Works")
        self.assertEqual([each["name"] for each in self.app.ledger()["clients"]], ["Birch"])

    def test_a_client_that_goes_while_a_project_of_it_is_typed_leaves_the_drafts(self):
        self.open_window()
        self.add_client("Birch")
        self.add_client("Cedar")
        self.desktop.type("F10")
        self.app.choose("New project")
        self.app.wait_for_focus("Project name")
        self.desktop.write("Website")
        self.remove_newest_client("Project name")
        self.desktop.type("ctrl+Return")
        self.app.find("Enable projects in the client editor first.")
        self.assertEqual(self.draft("Project name"), "Website")
        self.assertNotIn("Website", [each["name"] for each in self.app.ledger()["projects"]])



if __name__ == "__main__":
    unittest.main(verbosity=2)
