"""An X server whose outputs are switched off and on, and one that ends.

Usage: display_test.py PROGRAM [unittest arguments]
"""

import os
import signal
import subprocess
import sys
import time
import unittest

from desktop import wait_until, xdotool
from ledgers import REFERENCE_DATE, one_client
from program_test import ProgramTest

ProgramTest.PROGRAM = sys.argv.pop(1)


class DisplayTest(ProgramTest):
    def start_session(self):
        self.desktop.hover_strip()
        self.app.press("Start")
        return self.app.ledger_when(lambda ledger: "active" in ledger, "a session")["active"]

    def panels(self):
        """The windows of the program that are shown."""
        return (xdotool("search", "--onlyvisible", "--maxdepth", "2", "--name", "^Kestry") or "").split()

    def switch(self, how):
        # It also wants a screen without any size then, which this server refuses.
        subprocess.run(["xrandr", "--output", "screen", how], stderr=subprocess.DEVNULL,
                       check=False)

    def test_without_an_output_no_panel_is_shown_and_the_program_goes_on(self):
        app = self.launch(one_client())
        self.start_session()
        for _ in range(3):
            self.switch("--off")
            wait_until(lambda: not self.panels(), "no panel")
            self.switch("--auto")
            wait_until(self.panels, "the strip")
        self.desktop.leave_strip()
        self.desktop.hover_strip()
        app.press("Pause session")
        self.assertEqual(app.terminate(), 0)

    def check_end_by(self, how):
        running = self.start_session()
        time.sleep(2)
        self.desktop.server.send_signal(how)
        self.desktop.server.wait()
        ended = time.time() - REFERENCE_DATE
        self.assertEqual(self.app.process.wait(10), 0)
        paused = self.app.ledger()["active"]
        self.assertNotIn("runningSince", paused)
        self.assertEqual(paused["spans"][0]["start"], running["runningSince"])
        self.assertAlmostEqual(paused["spans"][0]["end"], ended, delta=1)

    def test_a_server_that_ends_leaves_a_paused_session(self):
        self.launch(one_client())
        self.check_end_by(signal.SIGTERM)

    def test_a_server_that_is_killed_leaves_a_paused_session(self):
        self.launch(one_client())
        self.check_end_by(signal.SIGKILL)

    def test_it_is_paused_too_for_a_user_who_reads_no_warnings(self):
        os.environ["QT_LOGGING_RULES"] = "*=false"
        self.addCleanup(os.environ.pop, "QT_LOGGING_RULES")
        self.launch(one_client())
        self.check_end_by(signal.SIGKILL)

    def test_a_log_out_that_asks_for_a_quit_at_the_same_time_pauses_it_once(self):
        app = self.launch(one_client())
        self.start_session()
        time.sleep(2)
        app.process.terminate()
        self.desktop.server.kill()
        self.assertEqual(app.process.wait(10), 0)
        paused = app.ledger()["active"]
        self.assertNotIn("runningSince", paused)
        self.assertEqual(len(paused["spans"]), 1)


if __name__ == "__main__":
    unittest.main(verbosity=2)
