"""What the window shows while the disk takes its time.

Usage: slow_disk_test.py PROGRAM LIBRARY-THAT-SLOWS-THE-DISK [unittest arguments]
"""

import os
import subprocess
import sys
import unittest

from desktop import wait_until, xdotool
from ledgers import one_client
from program_test import ProgramTest

ProgramTest.PROGRAM = sys.argv.pop(1)
LIBRARY = sys.argv.pop(1)


class SlowDiskTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.sign = os.path.join(self.folder, "slow")
        os.environ["KESTRY_TEST_SLOW_DISK"] = self.sign
        os.environ["LD_PRELOAD"] = LIBRARY
        self.addCleanup(os.environ.pop, "LD_PRELOAD")
        self.addCleanup(os.environ.pop, "KESTRY_TEST_SLOW_DISK")
        self.app = self.launch(one_client())
        os.environ["LD_PRELOAD"] = ""
        self.app.press("Open Kestry")
        self.app.find("Overview")

    def foot(self):
        """A picture of the lowest part of the window, where nothing blinks, as its bytes."""
        crop = f"{self.width}x60+{self.left}+{self.bottom - 60}"
        return subprocess.run(
            ["import", "-silent", "-window", "root", "-crop", crop, "+repage", "rgb:-"],
            capture_output=True, check=True).stdout

    def find_window(self):
        place = dict(line.split("=") for line in
                     xdotool("getactivewindow", "getwindowgeometry", "--shell").splitlines())
        self.left, self.width = int(place["X"]), int(place["WIDTH"])
        self.bottom = int(place["Y"]) + int(place["HEIGHT"])

    def test_a_save_that_takes_long_is_seen_and_then_over(self):
        self.desktop.type("ctrl+n")
        self.app.wait_for_focus("Client name")
        self.desktop.write("Birch")
        self.find_window()
        quiet = self.foot()
        with open(self.sign, "w", encoding="utf-8"):
            pass
        self.desktop.type("ctrl+Return")
        # The tree says nothing while the program waits for the disk.
        wait_until(lambda: self.foot() != quiet, "a sign on the screen")
        self.assertEqual(len(self.app.ledger()["clients"]), 1, "the save is over already")
        os.remove(self.sign)
        ledger = self.app.ledger_when(lambda each: len(each["clients"]) == 2, "a second client")
        self.assertEqual(ledger["clients"][1]["name"], "Birch")
        wait_until(lambda: not self.app.shows("Saving…"), "a sign that went")

    def test_a_quick_save_shows_no_sign(self):
        self.desktop.type("ctrl+n")
        self.app.wait_for_focus("Client name")
        self.desktop.write("Birch")
        self.desktop.type("ctrl+Return")
        self.app.ledger_when(lambda each: len(each["clients"]) == 2, "a second client")
        self.assertFalse(self.app.shows("Saving…"))


if __name__ == "__main__":
    unittest.main(verbosity=2)
