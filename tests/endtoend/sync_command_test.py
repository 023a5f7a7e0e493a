"""kestryctl signs in and exchanges records through the running application.

Usage: sync_command_test.py FOLDER-OF-PROGRAMS [unittest arguments]
"""

import json
import pathlib
import signal
import subprocess
import sys
import unittest

from shell import Home, ledger_with_client, wait_until

PROGRAMS = sys.argv.pop(1)
NOT_RUNNING = ("Kestry is not running on this data directory, and only it can sign in and exchange "
               "records. Start it and try again.\n")


class SyncCommandTest(unittest.TestCase):
    def setUp(self):
        self.home = self.new_home()
        self.home.write("ledger.json", json.dumps(ledger_with_client()))
        self.store = "sqlite:" + self.home.path("store.sqlite")

    def new_home(self):
        home = Home(PROGRAMS)
        self.addCleanup(home.close)
        return home

    def connect(self, home):
        home.start()
        home.do("sync", "sign-in", self.store)
        home.do("sync", "on")

    def status(self, home):
        return json.loads(home.do("sync", "status", "--json"))

    def test_from_the_sign_in_to_the_sign_out(self):
        self.home.start()
        self.assertEqual(self.home.do("sync", "sign-in", self.store),
                         f"Signed in to {self.store}.\n")
        self.assertEqual(self.home.do("sync", "on"), "Sync is on. Up to date.\n")
        self.assertEqual(self.home.do("sync", "now"), "Exchanged records. Up to date.\n")
        status = self.status(self.home)
        self.assertEqual(status["account"], {"address": self.store, "user": ""})
        self.assertTrue(status["configured"] and status["enabled"])
        self.assertGreater(status["lastSync"], 0)
        self.assertIsNone(status["errorMessage"])
        self.assertEqual(self.home.do("sync", "sign-out"), "Signed out. Sync is off.\n")
        status = self.status(self.home)
        self.assertIsNone(status["account"])
        self.assertFalse(status["enabled"])

    def test_a_second_machine_gets_the_records(self):
        self.connect(self.home)
        other = self.new_home()
        self.connect(other)
        self.assertIn("Aster Studio", other.do("client", "list"))
        other.do("client", "add", "Birch")
        other.do("sync", "now")
        self.home.do("sync", "now")
        self.assertIn("Birch", self.home.do("client", "list"))

    def test_a_failure_is_told_with_status_1(self):
        self.connect(self.home)
        with open(self.home.path("store.sqlite"), "wb") as store:
            store.write(b"no store at all, and long enough not to be taken for an empty one" * 99)
        result = self.home.run("sync", "now", "--json")
        self.assertEqual(result.returncode, 1)
        message = self.status(self.home)["errorMessage"]
        self.assertEqual(json.loads(result.stdout), {"error": message})
        self.assertEqual(result.stderr, message + "\n")

    def test_all_records_are_uploaded_again_when_somebody_says_so(self):
        self.connect(self.home)
        refused = self.home.run("sync", "upload-again")
        self.assertEqual(refused.returncode, 1)
        self.assertIn("add --yes", refused.stderr)
        self.assertEqual(self.home.do("sync", "upload-again", "--yes"),
                         "Uploaded all records again. Up to date.\n")

    def test_without_the_application_they_are_refused_in_words(self):
        for words in (["sign-in", self.store], ["sign-out"], ["on"], ["now"],
                      ["upload-again", "--yes"]):
            result = self.home.run("sync", *words)
            self.assertEqual((result.returncode, result.stderr), (1, NOT_RUNNING))
        self.assertIsNone(self.status(self.home)["account"])
        self.assertEqual(self.home.do("sync", "off"), "Sync is off.\n")

    def test_a_quit_is_told_to_whoever_waits(self):
        self.connect(self.home)
        process = self.home.processes[-1]
        # While another process has the file, nobody gets on.
        holder = subprocess.Popen([sys.executable, "-c", f"""
import sqlite3, sys
store = sqlite3.connect({self.home.path("store.sqlite")!r}, isolation_level=None)
store.execute("BEGIN EXCLUSIVE")
print("held", flush=True)
sys.stdin.read()
"""], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.addCleanup(holder.communicate)
        holder.stdout.readline()
        waiting = subprocess.Popen([self.home.program("kestryctl"), "sync", "now"],
            env=self.home.environment, text=True, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        wait_until(lambda: self.status(self.home)["isSyncing"], "the exchange")
        process.send_signal(signal.SIGTERM)
        _, errors = waiting.communicate(timeout=30)
        self.assertEqual(errors, "Kestry was quit before this was over.\n")
        self.assertEqual(waiting.returncode, 1)
        self.assertEqual(process.wait(30), 0)

    def test_a_wrong_address_is_told_before_a_password_is_asked_for(self):
        self.home.start()
        for address, words in (("example.org/hours", "This is not the address of a record store."),
                               ("http://example.org/hours", "only over a secure connection"),
                               ("https://example.org/Hours", "a name that no database can have")):
            result = self.home.run("sync", "sign-in", address, "--user", "mia")
            self.assertEqual(result.returncode, 1)
            self.assertIn(words, result.stderr)
            self.assertNotIn("password", result.stderr)

    def test_a_password_is_in_no_file_and_no_message(self):
        process = self.home.start()
        words = ["sync", "sign-in", "http://127.0.0.1:9/hours", "--user", "mia"]
        self.home.environment["KESTRY_CLOUD_PASSWORD"] = "open-sesame"
        result = self.home.run(*words)
        self.assertEqual(result.returncode, 1)
        self.assertNotIn("sesame", result.stdout + result.stderr)
        self.assertIsNone(process.poll())
        for path in pathlib.Path(self.home.folder.name).rglob("*"):
            if path.is_file():
                self.assertNotIn(b"open-sesame", path.read_bytes(), path)
        self.assertIsNone(self.status(self.home)["account"])


if __name__ == "__main__":
    unittest.main(verbosity=2)
