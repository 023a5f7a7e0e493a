"""What becomes of a session when the clock is set, and of the month when the time zone is.

Usage: clock_test.py PROGRAM LIBRARY-THAT-SETS-THE-CLOCK [unittest arguments]
"""

import datetime
import os
import shutil
import sys
import time
import unittest

from desktop import wait_until
from ledgers import REFERENCE_DATE, now, one_client, with_session
from set_clock import SetClockTest

SetClockTest.PROGRAM = sys.argv.pop(1)
SetClockTest.LIBRARY = sys.argv.pop(1)
HOUR = 3600


class ClockTest(SetClockTest):
    def start(self):
        """The application with a running session, on a clock that the test sets."""
        app = self.launch_on_the_clock(one_client())
        self.started = now()
        self.kestryctl("start", "aster")
        return app

    def counted(self):
        spans = self.app.ledger()["active"]["spans"]
        return sum(span["end"] - span["start"] for span in spans)

    def passed(self):
        return now() - self.started

    def test_a_jump_pauses_the_session_where_it_was_and_is_told_until_it_was_read(self):
        app = self.start()
        self.set_clock_forward(2 * HOUR + 13 * 60 + 5)
        app.ledger_when(lambda ledger: "runningSince" not in ledger["active"], "a pause")
        self.assertLessEqual(self.counted(), self.passed())
        self.assertLess(app.ledger()["active"]["checkpointAt"], now() + 1)
        notice = "The clock jumped ahead by 2 hours, 13 minutes. Your session was paused at "
        self.desktop.hover_strip()
        app.find_starting(notice)
        self.desktop.leave_strip()
        app.press("Open Kestry")
        app.press("Dismiss")
        self.desktop.leave_strip()
        wait_until(lambda: not app.shows("Dismiss"), "a notice that went")

    def test_a_command_between_two_checkpoints_stores_no_time_that_has_not_passed(self):
        self.start()
        time.sleep(1)
        self.set_clock_forward(744 * HOUR)
        self.kestryctl("pause")
        self.assertLessEqual(self.counted(), self.passed())
        self.set_clock_forward(0)
        self.kestryctl("resume")
        self.kestryctl("stop")
        entry, = self.app.ledger()["entries"]
        self.assertLessEqual(sum(span["end"] - span["start"] for span in entry["spans"]),
                             self.passed())

    def test_a_quit_after_a_jump_saves_no_time_that_has_not_passed(self):
        app = self.start()
        self.set_clock_forward(48 * HOUR)
        self.assertEqual(app.terminate(), 0)
        self.assertLessEqual(self.counted(), self.passed())

    def test_a_clock_that_is_put_right_by_some_seconds_disturbs_nobody(self):
        app = self.start()
        self.set_clock_forward(50)
        app.ledger_when(lambda ledger: ledger["active"]["checkpointAt"] > self.started + 40,
                        "a checkpoint")
        self.assertIn("runningSince", app.ledger()["active"])


class TimeZoneTest(SetClockTest):
    """At noon in the middle of the next month, when all zones are in one month."""

    def setUp(self):
        super().setUp()
        self.zones = os.path.join(self.folder, "zones")
        os.mkdir(self.zones)
        self.choose_zone("Etc/GMT-14")
        self.set_environment(TZ="Home", TZDIR=self.zones)
        self.set_clock(day=15, hour=12)

    def set_clock(self, day, hour):
        today = datetime.datetime.now(datetime.timezone.utc)
        self.moment = (today.replace(day=1) + datetime.timedelta(days=32)).replace(
            day=day, hour=hour)
        self.set_clock_forward(int((self.moment - today).total_seconds()))

    def choose_zone(self, name):
        """Another file takes the place of the zone's, as when the system is updated."""
        path = os.path.join(self.zones, "Home")
        shutil.copyfile(f"/usr/share/zoneinfo/{name}", path + ".new")
        os.replace(path + ".new", path)

    def in_zone(self, hours_to_the_east):
        return self.moment.astimezone(
            datetime.timezone(datetime.timedelta(hours=hours_to_the_east)))

    def ledger_with_first_hour_of_the_month(self):
        """An hour of work that begins with the month in the zone that is furthest to the east."""
        first = self.in_zone(14).replace(day=1, hour=0, minute=0, second=0, microsecond=0)
        start = first.timestamp() - REFERENCE_DATE
        return with_session(one_client(), "Early", start, start + HOUR)

    def test_another_zone_counts_another_month_without_a_new_start(self):
        app = self.launch_on_the_clock(self.ledger_with_first_hour_of_the_month())
        self.desktop.hover_strip()
        app.press("Start")
        app.find_starting("This month: $150.")
        self.choose_zone("Etc/GMT+12")
        app.find_starting("This month: $0.")

    def expect_overview(self, hours_to_the_east, first_day, tracked):
        """The present month of a zone, the length of its first day, and the time of all of it."""
        month = self.in_zone(hours_to_the_east)
        self.app.find(f"{month:%B} {month.year}")
        self.app.find(f"{month:%b} 1: {first_day}")
        count = "0 sessions" if tracked == "0h 0m" else "1 session"
        card = self.app.find("View sessions for this month")
        wait_until(lambda: card.get_description() == f"Tracked time: {tracked}. Across {count}",
                   f"a tracked time of {tracked}")

    def test_the_open_overview_follows_the_zone_eastwards_and_westwards(self):
        self.choose_zone("Etc/GMT+12")
        self.launch_on_the_clock(self.ledger_with_first_hour_of_the_month())
        self.app.press("Open Kestry")
        self.expect_overview(-12, "0h 0m", "0h 0m")
        self.choose_zone("Etc/GMT-14")
        self.expect_overview(14, "1h 0m", "1h 0m")
        self.choose_zone("Etc/GMT+12")
        self.expect_overview(-12, "0h 0m", "0h 0m")

    def test_the_open_overview_follows_the_zone_into_another_month(self):
        self.set_clock(day=1, hour=6)
        self.choose_zone("Etc/GMT+12")
        self.launch_on_the_clock(self.ledger_with_first_hour_of_the_month())
        self.app.press("Open Kestry")
        # Where it is still the month before, the hour is on its last day but one.
        self.expect_overview(-12, "0h 0m", "1h 0m")
        self.choose_zone("Etc/GMT-14")
        self.expect_overview(14, "1h 0m", "1h 0m")


if __name__ == "__main__":
    unittest.main(verbosity=2)
