"""What becomes of a session when the clock is set, and of the month when the time zone is.

Usage: clock_test.py PROGRAM LIBRARY-THAT-SETS-THE-CLOCK [unittest arguments]
"""

import datetime
import os
import shutil
import subprocess
import sys
import time
import unittest

from desktop import wait_until
from ledgers import REFERENCE_DATE, identifier, now, one_client
from program_test import ProgramTest

ProgramTest.PROGRAM = sys.argv.pop(1)
LIBRARY = sys.argv.pop(1)
HOUR = 3600


class SetTest(ProgramTest):
    def set_environment(self, **variables):
        before = dict(os.environ)
        os.environ.update(variables)

        def put_back():
            os.environ.clear()
            os.environ.update(before)
        self.addCleanup(put_back)

    def kestryctl(self, *words):
        program = os.path.join(os.path.dirname(self.PROGRAM), "kestryctl")
        return subprocess.run([program, "--data-directory", self.directory, *words], text=True,
                              capture_output=True, timeout=60, check=True).stdout


class ClockTest(SetTest):
    def setUp(self):
        super().setUp()
        self.clock = os.path.join(self.folder, "clock")
        self.set_clock_forward(0)
        self.set_environment(TZ="UTC", KESTRY_TEST_CLOCK=self.clock)

    def set_clock_forward(self, seconds):
        with open(self.clock + ".new", "w", encoding="utf-8") as file:
            file.write(f"{seconds}\n")
        os.replace(self.clock + ".new", self.clock)

    def start(self):
        """The application with a running session, on a clock that the test sets."""
        os.environ["LD_PRELOAD"] = LIBRARY
        app = self.launch(one_client())
        del os.environ["LD_PRELOAD"]
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


class TimeZoneTest(SetTest):
    def setUp(self):
        super().setUp()
        self.zones = os.path.join(self.folder, "zones")
        os.mkdir(self.zones)
        self.choose_zone("Etc/GMT-14")
        self.set_environment(TZ="Home", TZDIR=self.zones)

    def choose_zone(self, name):
        """Another file takes the place of the zone's, as when the system is updated."""
        path = os.path.join(self.zones, "Home")
        shutil.copyfile(f"/usr/share/zoneinfo/{name}", path + ".new")
        os.replace(path + ".new", path)

    def ledger_with_first_hour_of_the_month(self):
        """An hour of work that begins with the month in the zone that is furthest to the east."""
        offset = datetime.timezone(datetime.timedelta(hours=14))
        first = datetime.datetime.now(offset).replace(day=1, hour=0, minute=0, second=0,
                                                      microsecond=0)
        start = first.timestamp() - REFERENCE_DATE
        ledger = one_client()
        project = {"id": identifier(), "clientID": ledger["clients"][0]["id"],
                   "name": "Client sessions", "hourlyRateCents": 15000, "rateIsKnown": True,
                   "isClientDefault": True}
        entry = {"id": identifier(), "projectID": project["id"], "title": "Early",
                 "hourlyRateCents": 15000, "isBillable": True, "rateIsKnown": True,
                 "spans": [{"start": start, "end": start + HOUR}]}
        return {**ledger, "projects": [project], "entries": [entry]}

    def test_another_zone_counts_another_month_without_a_new_start(self):
        app = self.launch(self.ledger_with_first_hour_of_the_month())
        self.desktop.hover_strip()
        app.press("Start")
        app.find_starting("This month: $150.")
        self.choose_zone("Etc/GMT+12")
        app.find_starting("This month: $0.")


if __name__ == "__main__":
    unittest.main(verbosity=2)
