"""The window is open while a month ends.

Usage: midnight_test.py PROGRAM LIBRARY-THAT-SETS-THE-CLOCK [unittest arguments]
"""

import datetime
import sys
import time
import unittest

from desktop import wait_until
from ledgers import REFERENCE_DATE, one_client, with_session
from set_clock import SetClockTest

SetClockTest.PROGRAM = sys.argv.pop(1)
SetClockTest.LIBRARY = sys.argv.pop(1)
HOUR = 3600


class MidnightTest(SetClockTest):
    SECONDS_BEFORE = 40  # in which the program starts

    def launch_before_the_months_end(self):
        """The application with an hour of work on the last day of this month, which is to end in
        some seconds."""
        today = datetime.datetime.now(datetime.timezone.utc)
        following = (today.replace(day=1) + datetime.timedelta(days=32)).replace(day=1)
        last = following - datetime.timedelta(days=1)
        self.months = [f"{each:%B} {each.year}" for each in (last, following)]
        self.days = [f"{each:%b} {each.day}: " for each in (last, following)]
        midnight = following.replace(hour=0, minute=0, second=0, microsecond=0)
        forward = int(midnight.timestamp() - time.time()) - self.SECONDS_BEFORE
        self.set_clock_forward(forward)
        end = midnight.timestamp() - REFERENCE_DATE - HOUR
        app = self.launch_on_the_clock(with_session(one_client(), "Late", end - HOUR, end))
        self.midnight = time.monotonic() + midnight.timestamp() - forward - time.time()
        app.press("Open Kestry")
        app.find("View sessions for this month")
        return app

    def wait_for_midnight(self):
        left = self.midnight - time.monotonic()
        self.assertGreater(left, 0, "the month ended before the test could look")
        time.sleep(left)

    def expect_tracked(self, words):
        wait_until(lambda: self.app.find("View sessions for this month").get_description() == words,
                   words)

    def test_the_overview_goes_on_to_the_new_month(self):
        app = self.launch_before_the_months_end()
        app.find(self.months[0])
        app.find(self.days[0] + "1h 0m")
        self.expect_tracked("Tracked time: 1h 0m. Across 1 session")
        self.wait_for_midnight()
        app.find(self.months[1])
        app.find(self.days[1] + "0h 0m")
        app.find(f"No sessions in {self.months[1]}.")
        self.expect_tracked("Tracked time: 0h 0m. Across 0 sessions")
        # The keyboard begins at today.
        app.find("Projected this month").get_component_iface().grab_focus()
        self.desktop.type("Tab")
        app.wait_for_focus(self.days[1] + "0h 0m")

    def test_a_running_session_goes_on_in_the_new_month(self):
        app = self.launch_before_the_months_end()
        app.press("Start session")
        self.expect_tracked("Tracked time: 1h 0m. Across 2 sessions")
        self.wait_for_midnight()
        app.find(self.months[1])
        self.expect_tracked("Tracked time: 0h 0m. Across 1 session")
        app.find(self.days[1] + "0h 0m")
        self.assertIn("runningSince", app.ledger()["active"])
        app.press("Previous month")
        app.find(self.days[0] + "1h 0m")
        self.expect_tracked("Tracked time: 1h 0m. Across 2 sessions")

    def test_a_dashboard_goes_on_to_the_new_month(self):
        app = self.launch_before_the_months_end()
        app.press("Aster Studio")
        app.find("Hours this month, 1 hour, " + self.months[0])
        app.find("Avg. hours / month, 1 hour, Across 1 calendar month")
        self.wait_for_midnight()
        app.find("Hours this month, 0 minutes, " + self.months[1])
        app.find("Avg. hours / month, 30 minutes, Across 2 calendar months")


if __name__ == "__main__":
    unittest.main(verbosity=2)
