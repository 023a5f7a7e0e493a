"""The Overview of the real program, by keyboard and accessibility tree.

Usage: overview_test.py PROGRAM [unittest arguments]
"""

import re
import sys
import time
import unittest

from desktop import Atspi, wait_until
from ledgers import now, one_client, running_session, with_session
from program_test import ProgramTest

ProgramTest.PROGRAM = sys.argv.pop(1)

MONTHS = ["January", "February", "March", "April", "May", "June", "July", "August", "September",
          "October", "November", "December"]


def month_name(months_back=0):
    today = time.localtime()
    count = today.tm_year * 12 + today.tm_mon - 1 - months_back
    return f"{MONTHS[count % 12]} {count // 12}"


def seconds_of_session():
    """Half an hour, or what there is of the day: an hour of yesterday is of another day."""
    today = time.localtime()
    return min(1800, today.tm_hour * 3600 + today.tm_min * 60 + today.tm_sec)


def one_session(seconds=1800):
    """A ledger with a session that ended just now, at a hundred and fifty dollars an hour."""
    end = int(now())
    return with_session(one_client(), "Design", end - seconds, end)


class OverviewTest(ProgramTest):
    def open_page(self, ledger=None):
        app = self.launch(ledger) if ledger else self.launch()
        app.press("Open Kestry")
        app.find("Previous month")
        return app

    def test_figures_sessions_and_chart_are_told(self):
        seconds = seconds_of_session()
        app = self.open_page(one_session(seconds))
        app.find(f"Billable earnings: ${seconds / 3600 * 150:.2f}. Recorded billable value")
        tracked = app.find("View sessions for this month")
        self.assertEqual(tracked.get_description(),
                         f"Tracked time: 0h {seconds // 60}m. Across 1 session")
        app.find_starting("Design, Aster Studio, ")
        chart = app.find_where(lambda each: each.get_role() == Atspi.Role.CHART)
        self.assertEqual(chart.get_name(), "Daily activity")
        self.assertRegex(chart.get_description(),
                         rf"^{seconds // 60} minutes? on 1 day in {month_name()}\. The most was ")

    def test_months_go_back_and_forth(self):
        app = self.open_page(one_session())
        self.app.tab_to_starting("Previous month")
        self.desktop.type("space")
        app.find(month_name(1))
        app.find("Month-end totals")
        app.find(f"No sessions in {month_name(1)}.")
        self.app.tab_to_starting("Next month")
        self.desktop.type("Return")
        app.find(month_name())
        app.find("Projected this month")

    def test_view_all_leads_to_the_sessions_of_the_month(self):
        app = self.open_page(one_session())
        self.app.tab_to_starting("View all")
        self.desktop.type("Return")
        app.find("Clear month filter")
        app.find(month_name())
        app.find("1 sessions")

    def test_the_tracked_time_leads_there_too(self):
        app = self.open_page(one_session())
        self.app.tab_to_starting("View sessions for this month")
        self.desktop.type("space")
        app.find("Clear month filter")

    def test_keys_walk_the_days_and_show_their_text(self):
        app = self.open_page(one_session())
        short = month_name()[:3]
        day = time.localtime().tm_mday
        self.app.tab_to_starting(f"{short} {day}: ")
        wait_until(app.shows_tip, "the text of the day")
        self.desktop.type("Home")
        wait_until(lambda: re.match(rf"{short} 1: ", app.focused() or ""), "the first day")
        self.desktop.type("Right")
        wait_until(lambda: re.match(rf"{short} 2: ", app.focused() or ""), "the second day")
        self.desktop.type("Left", "Left")
        wait_until(lambda: re.match(rf"{short} 1: ", app.focused() or ""), "the first day")
        self.desktop.type("Tab")
        wait_until(lambda: not app.shows_tip(), "a text that went")

    def test_a_row_opens_its_form(self):
        app = self.open_page(one_session())
        self.app.tab_to_starting("Design, Aster Studio")
        self.desktop.type("Return")
        app.find("Delete session")
        self.desktop.type("Escape")
        wait_until(lambda: not app.shows("Delete session"), "a closed form")

    def test_the_session_in_progress_stands_in_the_present_month(self):
        app = self.open_page(running_session(662, 1))
        row = app.find_starting("Drawing, Aster Studio, ")
        self.assertIn("11 minutes", row.get_description())
        app.press("Previous month")
        wait_until(lambda: not app.find_where(
            lambda each: (each.get_name() or "").startswith("Drawing, Aster Studio, ")),
            "a month without it")

    def test_an_empty_workspace_offers_to_add_a_client(self):
        app = self.open_page()
        app.find("Add your first client")
        app.find("Create a client and project to start tracking time.")
        self.assertFalse(app.shows("Recorded this month"))
        self.app.tab_to_starting("Previous month")
        self.app.tab_to_starting("Add client")
        self.desktop.type("Return")
        app.wait_for_focus("Client name")
        self.desktop.write("Birch")
        self.desktop.type("ctrl+Return")
        app.find("Birch")
        app.press("Overview")
        app.find("Recorded this month")
        app.find(f"No sessions in {month_name()}.")


if __name__ == "__main__":
    unittest.main()
