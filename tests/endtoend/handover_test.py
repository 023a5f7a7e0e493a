"""kestryctl beside the running application, as people and scripts start them.

Usage: handover_test.py FOLDER-OF-PROGRAMS [unittest arguments]
"""

import json
import os
import signal
import socket
import subprocess
import sys
import time
import unittest

from shell import Home, ledger_with_client, wait_until

PROGRAMS = sys.argv.pop(1)


class HandOverTest(unittest.TestCase):
    def setUp(self):
        self.home = Home(PROGRAMS)
        self.addCleanup(self.home.close)
        self.home.write("ledger.json", json.dumps(ledger_with_client()))

    def test_commands_are_carried_out_by_the_application(self):
        process = self.home.start()
        self.assertEqual(self.home.do("start", "aster", "--title", "Ink"),
                         "Started: Aster Studio.\n")
        self.assertEqual(json.loads(self.home.do("status", "--json"))["state"], "running")
        self.assertTrue(self.home.do("stop").startswith("Saved 00:00:0"))
        self.assertEqual(len(self.home.read_json("ledger.json")["entries"]), 1)
        self.assertIsNone(process.poll())

    def test_refusals_and_unusable_words_have_their_status_and_words(self):
        self.home.start()
        refused = self.home.run("pause", "--json")
        self.assertEqual((refused.returncode, refused.stderr, refused.stdout),
                         (1, "No running session to pause.\n",
                          '{"error":"No running session to pause."}\n'))
        unusable = self.home.run("sttaus")
        self.assertEqual(unusable.returncode, 2)
        self.assertIn('Did you mean "status"?', unusable.stderr)
        self.assertIsNone(json.loads(self.home.do("status", "--json"))["errorMessage"])

    def test_a_deletion_asks_before_it_is_handed_over(self):
        self.home.start()
        self.home.do("add", "aster", "--start", "-2h", "--duration", "1h", "--title", "Ink")
        refused = self.home.run("delete", "ink")
        self.assertEqual(refused.returncode, 1)
        self.assertIn("add --yes", refused.stderr)
        self.home.do("delete", "ink", "--yes")
        self.assertEqual(self.home.read_json("ledger.json")["entries"], [])

    def test_the_first_save_makes_a_directory_in_which_both_find_each_other(self):
        self.home.environment["KESTRY_DATA_DIR"] = self.home.directory = self.home.path("new")
        process = self.home.start()
        self.assertFalse(os.path.exists(self.home.directory))
        self.home.do("client", "add", "Birch")
        self.home.do("client", "add", "Cedar")
        self.assertEqual(len(self.home.sockets()), 2)
        process.terminate()
        self.assertEqual(process.wait(20), 0)
        self.assertEqual(self.home.sockets(), [])
        self.home.do("client", "add", "Dogwood")
        self.assertEqual(len(self.home.read_json("ledger.json")["clients"]), 3)

    def test_a_killed_application_is_in_nobodys_way(self):
        process = self.home.start()
        process.kill()
        process.wait()
        self.assertEqual(len(self.home.sockets()), 1)
        self.home.do("start", "aster")
        self.home.start()
        self.home.do("stop")

    def test_a_stopped_application_is_named_after_five_seconds_and_nothing_is_done_later(self):
        process = self.home.start()
        process.send_signal(signal.SIGSTOP)
        self.addCleanup(process.send_signal, signal.SIGCONT)
        start = time.monotonic()
        refused = self.home.run("client", "add", "Birch")
        self.assertLess(time.monotonic() - start, 8)
        self.assertEqual(refused.returncode, 1)
        self.assertEqual(refused.stderr,
                         f"Kestry (process {process.pid}) is using this data directory and does "
                         "not answer. Nothing was changed.\n")
        process.send_signal(signal.SIGCONT)
        self.assertEqual(len(json.loads(self.home.do("client", "list", "--json"))), 1)

    def test_reading_works_while_the_application_is_stopped(self):
        process = self.home.start()
        process.send_signal(signal.SIGSTOP)
        self.addCleanup(process.send_signal, signal.SIGCONT)
        self.assertIn("Aster Studio", self.home.do("client", "list"))

    def test_a_second_start_hands_over_in_no_time_and_needs_no_screen(self):
        process = self.home.start()
        del self.home.environment["QT_QPA_PLATFORM"]
        second = self.home.again()
        self.assertEqual((second.returncode, second.stdout, second.stderr), (0, "", ""))
        self.assertIsNone(process.poll())

    def test_of_many_starts_at_once_one_stays(self):
        for directory in (self.home.directory, self.home.path("new")):
            starts = [self.home.launch("--data-directory", directory) for _ in range(8)]
            wait_until(lambda: sum(each.poll() is None for each in starts) == 1, "the others' end")
            self.assertEqual(sorted(str(each.poll()) for each in starts), ["0"] * 7 + ["None"])

    def test_commands_while_it_starts_wait_for_it(self):
        process = self.home.launch()
        wait_until(self.home.sockets, "a socket")
        self.home.do("start", "aster")
        self.home.do("stop")
        self.assertIsNone(process.poll())

    def test_hostile_callers_disturb_nobody(self):
        process = self.home.start()
        path = self.home.path("run", self.home.sockets()[0])
        callers = []
        for words in (b"", b"\0" * 100_000, b"GET / HTTP/1.1\r\n\r\n", b"KST1C\xff\xff\xff\x7f",
                      b"KST1C\x04\0\0\0\xff\xff\xff\xff", b"KST1Z\0\0\0\0") * 3:
            caller = socket.socket(socket.AF_UNIX)
            caller.connect(path)
            try:
                caller.sendall(words)
            except OSError:  # it has hung up already
                pass
            callers.append(caller)
        self.assertEqual(self.home.do("status"), "State  idle\n")
        self.assertIsNone(process.poll())
        for caller in callers:
            caller.close()

    def test_a_demo_is_beside_everything(self):
        demo = self.home.start_demo()
        time.sleep(0.5)
        self.assertEqual(self.home.sockets(), [])
        process = self.home.start()
        self.assertIsNone(demo.poll())
        self.assertIsNone(process.poll())

    def test_an_export_and_a_pipe_that_ends_early(self):
        self.home.start()
        for _ in range(3):
            self.home.do("add", "aster", "--start", "-2h", "--duration", "1h")
        self.home.do("export", "out.csv", cwd=self.home.path("cache"))
        with open(self.home.path("cache", "out.csv"), newline="", encoding="utf-8") as file:
            self.assertEqual(file.read(), self.raw("export"))
        closed = subprocess.run(
            f"{self.home.program('kestryctl')} start aster >&-", shell=True, text=True,
            env=self.home.environment, stderr=subprocess.PIPE, timeout=30, check=False)
        self.assertEqual(closed.returncode, 1)
        self.assertTrue(closed.stderr.startswith("The change has been made and saved; only its"))
        self.assertIsNotNone(self.home.active())

    def raw(self, *words):
        return subprocess.run([self.home.program("kestryctl"), *words], timeout=30, check=True,
                              env=self.home.environment, stdout=subprocess.PIPE).stdout.decode()


if __name__ == "__main__":
    unittest.main(verbosity=2)
