"""An update as its agent sees it: real processes, real files.

Usage: update_test.py FOLDER-OF-PROGRAMS [unittest arguments]
"""

import json
import os
import sys
import time
import unittest

from shell import Home, identifier, ledger_with_client, wait_until

PROGRAMS = sys.argv.pop(1)


class UpdateTest(unittest.TestCase):
    def setUp(self):
        self.home = Home(PROGRAMS)
        self.addCleanup(self.home.close)
        self.home.write("ledger.json", json.dumps(ledger_with_client()))
        self.token = identifier()

    def running(self):
        """The application with a session that runs."""
        process = self.home.start()
        self.home.do("start", "aster", "--title", "Drawing")
        return process

    def request(self, content=None):
        self.home.write("update-request", self.token + "\n" if content is None else content)

    def url(self, token=None):
        return "kestry://update?token=" + (token or self.token)

    def leave(self):
        """Hands over as an agent does; returns the session that is left running."""
        process = self.running()
        self.request()
        self.assertEqual(self.home.again(self.url()).returncode, 0)
        self.assertEqual(process.wait(20), 0)
        return self.home.active()

    def assert_stays(self, process):
        """The application has not taken any notice."""
        self.assertIn("running", self.home.do("status"))
        self.assertIsNone(process.poll())
        self.assertNotIn("update-handoff.json", self.home.files())

    def test_a_session_runs_on_through_an_update(self):
        left = self.leave()
        self.assertIn("runningSince", left)
        handoff = self.home.read_json("update-handoff.json")
        self.assertEqual(handoff, {"token": self.token, "active": left})
        self.assertNotIn("update-request", self.home.files())
        process = self.home.start("--update-token", self.token)
        ready = wait_until(
            lambda: "update-ready.json" in self.home.files()
            and self.home.read_json("update-ready.json"), "the acknowledgement")
        self.assertEqual(ready, {"token": self.token, "pid": process.pid,
                                 "bundlePath": os.path.realpath(self.home.program("kestry"))})
        self.assertEqual(self.home.active()["runningSince"], left["runningSince"])
        self.assertNotIn("update-handoff.json", self.home.files())
        self.assertFalse(json.loads(self.home.do("status", "--json"))["recoveredSession"])

    def test_a_start_without_the_token_pauses_at_the_last_checkpoint(self):
        left = self.leave()
        self.home.start()
        self.assertEqual(self.home.active()["spans"],
                         [{"start": left["runningSince"], "end": left["checkpointAt"]}])
        self.assertNotIn("update-handoff.json", self.home.files())
        self.assertNotIn("update-ready.json", self.home.files())

    def test_a_session_changed_meanwhile_is_paused(self):
        left = self.leave()
        ledger = self.home.read_json("ledger.json")
        ledger["active"]["title"] = "Painting"
        self.home.write("ledger.json", json.dumps(ledger))
        self.home.start("--update-token", self.token)
        self.assertNotIn("runningSince", self.home.active())
        self.assertEqual(self.home.active()["spans"][0]["end"], left["checkpointAt"])

    def test_a_damaged_handoff_pauses_without_a_word(self):
        self.leave()
        self.home.write("update-handoff.json", "{ damaged")
        self.home.start("--update-token", self.token)
        self.assertNotIn("runningSince", self.home.active())
        status = json.loads(self.home.do("status", "--json"))
        self.assertTrue(status["recoveredSession"])
        self.assertIsNone(status["errorMessage"])
        self.assertNotIn("update-handoff.json", self.home.files())

    def test_without_a_session_the_handoff_holds_the_token_alone_and_is_acknowledged(self):
        process = self.home.start()
        self.request()
        self.home.again(self.url())
        self.assertEqual(process.wait(20), 0)
        self.assertEqual(self.home.read_json("update-handoff.json"), {"token": self.token})
        self.home.start("--update-token", self.token)
        wait_until(lambda: "update-ready.json" in self.home.files(), "the acknowledgement")

    def test_a_link_without_a_request_file_quits_nothing(self):
        process = self.running()
        self.home.again(self.url())
        self.assert_stays(process)

    def test_a_request_of_another_token_or_of_129_bytes_is_ignored_and_stays(self):
        process = self.running()
        for content in (identifier(), self.token + " " * 93):
            self.request(content)
            self.home.again(self.url())
            self.assert_stays(process)
            self.assertIn("update-request", self.home.files())

    def test_a_demo_honours_no_request_and_writes_nothing(self):
        self.request()
        before = {name: self.home.content(name) for name in self.home.files()}
        demo = self.home.start_demo(self.url(), "--update-token", self.token)
        time.sleep(1)
        self.assertIsNone(demo.poll())
        self.assertEqual({name: self.home.content(name) for name in self.home.files()}, before)


if __name__ == "__main__":
    unittest.main(verbosity=2)
