"""Errors of the moment in the running application: they refuse what they are in the way of, and
nothing more.

Usage: passing_errors_test.py FOLDER-OF-PROGRAMS [unittest arguments]
"""

import fcntl
import json
import os
import resource
import signal
import sys
import time
import unittest

from shell import Home, ledger_with_client, now, wait_until

PROGRAMS = sys.argv.pop(1)


class PassingErrorsTest(unittest.TestCase):
    def setUp(self):
        self.home = Home(PROGRAMS)
        self.addCleanup(self.home.close)
        self.home.write("ledger.json", json.dumps(ledger_with_client()))

    def status(self):
        return json.loads(self.home.do("status", "--json"))

    def settled_descriptors(self, process):
        """The numbers of the open descriptors, once none comes or goes: one that is closed later
        would be free to be used."""
        def listed():
            return {int(name) for name in os.listdir(f"/proc/{process.pid}/fd")}

        def unchanged():
            first = listed()
            time.sleep(1)
            return first if listed() == first else None
        return wait_until(unchanged, "descriptors that stay")

    def without_descriptors(self, process, action):
        """Does something while the process can open nothing."""
        before = resource.prlimit(process.pid, resource.RLIMIT_NOFILE)
        taken = self.settled_descriptors(process)
        free = min(set(range(len(taken) + 1)) - taken)
        resource.prlimit(process.pid, resource.RLIMIT_NOFILE, (free, before[1]))
        try:
            return action()
        finally:
            resource.prlimit(process.pid, resource.RLIMIT_NOFILE, before)

    def quit(self, process):
        process.send_signal(signal.SIGTERM)
        self.assertEqual(process.wait(20), 0)

    def test_a_checkpoint_without_descriptors_is_the_only_thing_that_fails(self):
        process = self.home.start()
        self.home.do("start", "aster")
        before = self.home.active()
        ledger = self.home.content("ledger.json")
        # So long that at least one checkpoint falls into it.
        self.without_descriptors(process, lambda: time.sleep(17))
        self.assertEqual(self.home.content("ledger.json"), ledger)
        status = self.status()
        self.assertIn("Too many open files.", status["errorMessage"])
        self.assertFalse(status["blocked"])
        self.assertEqual(status["active"]["id"], before["id"])
        self.home.do("checkpoint")
        self.assertGreater(self.home.active()["checkpointAt"], before["checkpointAt"])
        self.quit(process)
        self.assertNotIn("runningSince", self.home.active())
        self.assertLess(now() - self.home.active()["spans"][-1]["end"], 20)

    def test_a_ledger_that_cannot_be_read_yet_is_opened_by_itself_when_it_can(self):
        self.home.do("start", "aster")
        signal.signal(signal.SIGIO, signal.SIG_IGN)
        with open(self.home.file("ledger.json"), "rb") as file:
            fcntl.fcntl(file, fcntl.F_SETLEASE, fcntl.F_WRLCK)
            process = self.home.start()
            status = self.status()
            self.assertIn("could not be read just now", status["errorMessage"])
            self.assertTrue(status["blocked"])
            self.assertFalse(status["recoveryAvailable"])
            self.assertIn("runningSince", self.home_active_through(file))
            fcntl.fcntl(file, fcntl.F_SETLEASE, fcntl.F_UNLCK)
        wait_until(lambda: not self.status()["blocked"], "the ledger")
        status = self.status()
        self.assertEqual(status["state"], "paused")
        self.assertIsNone(status["errorMessage"])
        self.home.do("resume")
        self.quit(process)

    @staticmethod
    def home_active_through(file):
        file.seek(0)
        return json.load(file)["active"]


if __name__ == "__main__":
    unittest.main(verbosity=2)
