"""kestryctl beside the running application, as people and scripts start them.

Usage: handover_test.py FOLDER-OF-PROGRAMS [unittest arguments]
"""

import json
import os
import shutil
import signal
import socket
import struct
import subprocess
import sys
import tempfile
import time
import unittest

from shell import Home, identifier, ledger_with_client, wait_until

PROGRAMS = sys.argv.pop(1)


def contents(directory):
    """What all files of a directory hold."""
    found = {}
    for name in os.listdir(directory):
        with open(os.path.join(directory, name), "rb") as file:
            found[name] = file.read()
    return found


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
        for words in (b"", b"\0" * 100_000, b"GET / HTTP/1.1\r\n\r\n", b"KST3C\xff\xff\xff\x7f",
                      b"KST3C\x04\0\0\0\xff\xff\xff\xff", b"KST3Z\0\0\0\0") * 3:
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

    ASTRAY = ("The data directory has been moved, replaced or removed since it was opened, so "
              "nothing was saved. Put it back, or start Kestry again to use what is there now.")

    def exchange(self):
        """Moves the data directory away and puts a copy in its place; returns where it went."""
        away = self.home.path("away")
        os.rename(self.home.directory, away)
        shutil.copytree(away, self.home.directory)
        return away

    def message(self, directory):
        """What the application that has this directory says."""
        words = ("--data-directory", directory, "status", "--json")
        return json.loads(self.home.do(*words))["errorMessage"]

    def test_neither_of_two_directories_is_written_over_when_one_takes_the_others_place(self):
        process = self.home.start()
        self.home.do("start", "aster", "--title", "Ink")
        away = self.exchange()
        self.assertTrue(self.home.do("add", "aster", "--start", "-2h", "--duration", "1h",
                                     "--title", "Kept").startswith("Added"))
        before = contents(self.home.directory), contents(away)
        wait_until(lambda: self.message(away) == self.ASTRAY, "a refused checkpoint")
        for words in (["pause"], ["add", "aster", "--start", "-3h", "--duration", "1h"]):
            refused = self.home.run("--data-directory", away, *words)
            self.assertEqual((refused.returncode, refused.stderr), (1, self.ASTRAY + "\n"))
        self.assertEqual((contents(self.home.directory), contents(away)), before)
        process.terminate()
        wait_until(lambda: "quit once more" in self.message(away), "a refused quit")
        process.terminate()
        self.assertEqual(process.wait(20), 0)
        self.assertEqual((contents(self.home.directory), contents(away)), before)
        self.home.start()
        (entry,) = json.loads(self.home.do("sessions", "--json"))
        self.assertEqual(entry["title"], "Kept")

    def test_saving_goes_on_when_the_directory_is_put_back(self):
        self.home.start()
        away = self.exchange()
        refused = self.home.run("--data-directory", away, "start", "aster")
        self.assertEqual((refused.returncode, refused.stderr), (1, self.ASTRAY + "\n"))
        shutil.rmtree(self.home.directory)
        os.rename(away, self.home.directory)
        self.home.do("start", "aster")
        self.assertIsNotNone(self.home.active())

    def test_a_link_that_leads_elsewhere_is_another_directory(self):
        first, second = self.home.directory, self.home.path("second")
        shutil.copytree(first, second)
        link = self.home.environment["KESTRY_DATA_DIR"] = self.home.path("link")
        os.symlink(first, link)
        process = self.home.start()
        os.unlink(link)
        os.symlink(second, link)
        self.home.do("client", "add", "Birch")
        before = contents(first), contents(second)
        refused = self.home.run("--data-directory", first, "client", "add", "Cedar")
        self.assertEqual((refused.returncode, refused.stderr), (1, self.ASTRAY + "\n"))
        self.assertEqual((contents(first), contents(second)), before)
        process.terminate()
        self.assertEqual(process.wait(20), 0)

    def test_a_removed_directory_is_not_made_anew_by_a_program_that_had_it(self):
        process = self.home.start()
        self.home.do("start", "aster")
        shutil.rmtree(self.home.directory)
        process.terminate()
        time.sleep(1)
        self.assertIsNone(process.poll())
        process.terminate()
        self.assertEqual(process.wait(20), 0)
        self.assertFalse(os.path.exists(self.home.directory))

    def test_the_default_directory_is_closed_to_others_and_the_window_says_so(self):
        del self.home.environment["KESTRY_DATA_DIR"]
        self.home.directory = self.home.path("share", "Kestry")
        os.mkdir(self.home.directory)
        os.chmod(self.home.directory, 0o755)
        self.home.write("ledger.json", json.dumps(ledger_with_client()))
        self.home.start()
        told = (f"Other users of this computer had access to the data directory "
                f"{self.home.directory}. It has been closed to them.")
        self.assertEqual(json.loads(self.home.do("status", "--json"))["errorMessage"], told)
        self.assertEqual(os.stat(self.home.directory).st_mode & 0o7777, 0o700)

    # With a /tmp, a home and no folder of a log-in of their own: somebody has taken the folder
    # below /tmp, and the two programs are started in different environments.
    SQUATTED = """
        mount -t tmpfs tmpfs /tmp
        mkdir /tmp/build
        mount --rbind "$2/.." /tmp/build  # which may stand in the home
        programs=/tmp/build/$(basename "$2")
        mount --bind "$1" "$(getent passwd "$(id -u)" | cut -d: -f6)"
        [ ! -d /run/user ] || mount -t tmpfs tmpfs /run/user
        mkdir -m 777 "/tmp/kestry-$(id -u)"
        unset XDG_RUNTIME_DIR
        "$programs/kestry" &
        trap 'kill $!; wait $!' EXIT
        until [ -e "$1"/.cache/kestry/*.socket ]; do sleep 0.05; done
        env -i KESTRY_DATA_DIR="$KESTRY_DATA_DIR" "$programs/kestryctl" start aster
        ls "/tmp/kestry-$(id -u)"
    """

    def test_a_folder_taken_by_somebody_else_is_replaced_by_one_that_both_find(self):
        # Not below /tmp, which is another one in there.
        with tempfile.TemporaryDirectory(dir="/var/tmp", prefix="kestry-") as folder:
            for name in ("ledger", "home"):
                os.mkdir(os.path.join(folder, name))
            self.home.directory = os.path.join(folder, "ledger")
            self.home.environment["KESTRY_DATA_DIR"] = self.home.directory
            self.home.write("ledger.json", json.dumps(ledger_with_client()))
            home = os.path.join(folder, "home")
            done = subprocess.run(
                ["unshare", "--user", "--map-root-user", "--mount", "bash", "-euc", self.SQUATTED,
                 "-", home, self.home.programs], env=self.home.environment, text=True,
                capture_output=True, timeout=60, check=False)
            if "unshare" in done.stderr:
                print("WARNING: no namespace is allowed here:", done.stderr, file=sys.stderr)
                return
            self.assertEqual((done.returncode, done.stdout), (0, "Started: Aster Studio.\n"),
                             done.stderr)
            self.assertIn("/tmp/kestry-0 can't be had for you alone, so ", done.stderr)
            self.assertIn("/.cache/kestry is used in its place.\n", done.stderr)
            # The application had it started, and has paused it at its end.
            self.assertNotIn("runningSince", self.home.active())

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

    def test_exports_are_written_by_whoever_asked(self):
        log = self.home.path("log")
        with open(log, "wb") as output:
            process = subprocess.Popen([self.home.program("kestry")], env=self.home.environment,
                                       stdout=output, stderr=output, umask=0o077)
        self.home.processes.append(process)
        wait_until(self.home.sockets, "the application")
        self.home.do("add", "aster", "--start", "-2h", "--duration", "1h", "--title", "Ink")
        csv = self.raw("export").encode()
        with open(log, "rb") as output:
            before = (output.read(), os.stat(log).st_ino)
        folder = self.home.path("cache")
        for line in ('"$0" export /dev/stdout >mine.csv', '"$0" export /proc/self/fd/1 >mine.csv',
                     '"$0" export >(cat >mine.csv) >/dev/null; wait $!',
                     '"$0" export /dev/fd/5 5>mine.csv >/dev/null', '"$0" export mine.csv >/dev/null'):
            result = subprocess.run(["bash", "-c", line, self.home.program("kestryctl")],
                                    env=self.home.environment, cwd=folder, timeout=30,
                                    capture_output=True, check=False)
            self.assertEqual((result.returncode, result.stderr), (0, b""), line)
            with open(os.path.join(folder, "mine.csv"), "rb") as file:
                self.assertEqual(file.read(), csv, line)
            os.remove(os.path.join(folder, "mine.csv"))
        with open(log, "rb") as output:
            self.assertEqual((output.read(), os.stat(log).st_ino), before)

    def test_exports_have_the_mode_that_the_caller_gives_them(self):
        self.home.start()
        new, old = self.home.path("cache", "new.csv"), self.home.path("cache", "old.csv")
        self.home.do("export", new, umask=0o022)
        self.assertEqual(os.stat(new).st_mode & 0o7777, 0o644)
        self.home.do("export", old, umask=0o022)
        os.chmod(old, 0o600)
        self.home.do("export", old, umask=0o022)
        self.assertEqual(os.stat(old).st_mode & 0o7777, 0o600)
        refused = self.home.run("export", self.home.file("ledger.json"))
        self.assertEqual(refused.returncode, 1)
        self.assertIn("may be one of the ledger's own files", refused.stderr)

    def test_a_logo_is_read_by_whoever_asked(self):
        self.home.start()
        pipe = self.home.path("cache", "pipe")
        os.mkfifo(pipe)
        self.assertEqual(self.home.run("client", "edit", "aster", "--logo", "pipe",
                                       cwd=self.home.path("cache")).stderr,
                         "pipe could not be read: it isn't a regular file.\n")
        with open(self.home.path("cache", "logo.png"), "wb") as file:
            file.write(b"no picture")
        self.assertEqual(self.home.run("client", "edit", "aster", "--logo", "logo.png",
                                       cwd=self.home.path("cache")).stderr,
                         "This image could not be read. Choose a PNG, JPEG, or another supported "
                         "image.\n")

    def test_every_change_of_a_damaged_ledger_is_refused_by_the_application_too(self):
        self.home.do("client", "add", "Birch")
        with open(self.home.file("ledger.json"), "w", encoding="utf-8") as file:
            file.write("{")
        self.home.start()
        for change in (["start", "aster"], ["stop"], ["pause"], ["resume"], ["checkpoint"],
                       ["rename", "x"], ["delete", "x"], ["delete", "x", "--yes"]):
            refused = self.home.run(*change)
            self.assertEqual((refused.returncode, refused.stderr),
                             (1, "Saving is disabled to protect your unreadable ledger. Restore "
                                 "the data file before continuing.\n"), change)
        self.home.do("restore", "--yes")
        self.home.do("checkpoint")

    def test_a_checkpoint_in_the_future_is_refused_by_the_application_too(self):
        self.home.start()
        self.home.do("start", "aster")
        refused = self.home.run("checkpoint", "--at", "2100-01-01T00:00Z")
        self.assertEqual((refused.returncode, refused.stderr),
                         (1, "A checkpoint cannot be in the future.\n"))

    def test_without_a_home_a_given_directory_is_enough_for_both(self):
        for name in ("HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"):
            del self.home.environment[name]
        nobody = ["unshare", "--user", "--map-user=54321", "--map-group=54321"]

        def start(*words, **options):
            return subprocess.Popen([*nobody, *words], env=self.home.environment, text=True,
                                    stdout=subprocess.PIPE, stderr=subprocess.PIPE, **options)

        process = start(self.home.program("kestry"))
        self.home.processes.append(process)
        wait_until(lambda: self.home.sockets() or process.poll() is not None, "the application")
        self.assertIsNone(process.poll())
        told = start(self.home.program("kestryctl"), "start", "aster")
        self.assertEqual((told.communicate(timeout=30), told.returncode),
                         (("Started: Aster Studio.\n", ""), 0))
        process.terminate()
        self.assertEqual(process.wait(20), 0)
        self.assertIsNone(self.home.active().get("runningSince"))

        del self.home.environment["KESTRY_DATA_DIR"]
        told = start(self.home.program("kestry"))
        self.assertEqual((told.communicate(timeout=30)[1], told.returncode),
                         ("The user has no home directory.\n", 1))

    def test_the_process_that_has_the_directory_is_named_harmlessly(self):
        script = self.home.path("holder")
        with open(script, "w", encoding="utf-8") as file:
            file.write("import ctypes, fcntl, os, sys, time\n"
                       "ctypes.CDLL(None).prctl(15, b'a\\x1b]0;x\\x07\\n', 0, 0, 0)\n"
                       "fcntl.flock(os.open(sys.argv[1], os.O_RDONLY), fcntl.LOCK_EX)\n"
                       "print('held', flush=True)\ntime.sleep(60)\n")
        holder = subprocess.Popen([sys.executable, script, self.home.directory],
                                  stdout=subprocess.PIPE)
        self.home.processes.append(holder)
        holder.stdout.readline()
        self.addCleanup(holder.stdout.close)
        for refused in (self.home.again(), self.home.run("start", "aster")):
            self.assertEqual(refused.returncode, 1)
            self.assertIn(f"(process {holder.pid}) is using this data directory", refused.stderr)
            self.assertNotRegex(refused.stderr, "[\x1b\x07]")

    def call(self, message):
        caller = socket.socket(socket.AF_UNIX)
        caller.connect(self.home.path("run", self.home.sockets()[0]))
        try:
            caller.sendall(message)
        except OSError:  # it has hung up already
            pass
        return caller

    @staticmethod
    def frame(words, directory, zone="UTC", variables=()):
        def text(value):
            value = os.fsencode(value)
            return struct.pack("<I", len(value)) + value

        def texts(values):
            return struct.pack("<I", len(values)) + b"".join(text(value) for value in values)

        none = b"\0" + text("")
        body = (texts(words) + text(directory) + texts(variables) + text(zone)
                + none + bytes(3) + none + none + none)
        return b"KST3C" + struct.pack("<I", len(body)) + body

    def test_no_field_however_long_keeps_the_application_from_answering_others(self):
        process = self.home.start()
        long = 6_000_000
        slowest = 0.0
        for most in (16_384, long):
            for letter in ("a", "\u00e9", "_", "1", " ", "-"):
                value = letter * (most // len(letter.encode()))
                for words, options in (
                        (["status", "--locale", value], {}), (["status", "--time-zone", value], {}),
                        (["status", "--at", value], {}), (["sessions", "--search", value], {}),
                        (["suggest", value], {}), (["start", value], {}), ([value], {}),
                        (["sessions", "--month", value], {}), (["rename", value], {}),
                        (["client", "edit", "aster", "--color", value], {}),
                        (["client", "edit", "aster", "--rate", value], {}),
                        (["status"], {"zone": value}), (["status"], {"variables": ["LANG", value]}),
                        (["x"] * (most // 100), {})):
                    caller = self.call(self.frame(words, self.home.directory, **options))
                    began = time.monotonic()
                    other = self.call(self.frame(["status"], self.home.directory))
                    self.assertIn(b"State", self.heard(other))
                    slowest = max(slowest, time.monotonic() - began)
                    caller.close()
        print(f"slowest answer beside a long one: {slowest * 1000:.1f} ms", file=sys.stderr)
        # Fifty milliseconds of work, on a machine that does other things as well.
        self.assertLess(slowest, 0.5)
        self.assertIsNone(process.poll())

    def heard(self, caller):
        answer = b""
        with caller:
            while part := caller.recv(1 << 16):
                answer += part
        return answer

    def test_callers_that_are_slow_or_read_nothing_keep_nobody_waiting(self):
        self.home.start()
        whole = self.frame(["status"], self.home.directory)
        callers = [self.call(whole[:index]) for index in range(40)]
        began = time.monotonic()
        self.assertEqual(self.home.do("status"), "State  idle\n")
        self.assertLess(time.monotonic() - began, 5.0)
        for caller in callers:
            caller.close()

    def test_what_is_long_is_done_on_the_files_with_the_same_answer(self):
        ledger = ledger_with_client()
        client = ledger["clients"][0]["id"]
        project = identifier()
        ledger["projects"] = [{"id": project, "clientID": client, "name": "Unassigned",
                               "hourlyRateCents": 0, "rateIsKnown": False, "isClientDefault": True}]
        start = 700_000_000
        ledger["entries"] = [
            {"id": identifier(), "projectID": project, "title": f"Ink {number}",
             "spans": [{"start": start + 400 * number, "end": start + 400 * number + 300}],
             "hourlyRateCents": 15000, "rateIsKnown": True, "isBillable": True}
            for number in range(20_000)]
        self.home.write("ledger.json", json.dumps(ledger))
        expected = [self.raw(*words) for words in (["sessions"], ["export"], ["report"])]
        self.home.start()
        self.assertEqual(
            [self.raw(*words) for words in (["sessions"], ["export"], ["report"])], expected)
        self.home.do("edit", "Ink 777", "--title", "Paper")
        self.home.do("delete", "Ink 778", "--yes")
        titles = [entry["title"] for entry in self.home.read_json("ledger.json")["entries"]]
        self.assertIn("Paper", titles)
        self.assertNotIn("Ink 778", titles)
        self.assertEqual(self.home.run("edit", "nothing", "--title", "x").stderr,
                         'There is no saved session "nothing".\n')

    def test_words_that_are_too_long_to_be_handed_over_are_refused_in_words(self):
        self.home.start()
        refused = self.home.run("client", "add", "x" * 20_000)
        self.assertEqual((refused.returncode, refused.stderr),
                         (1, "Kestry is running, and takes no command line with words as long as "
                             "these. Nothing was changed.\n"))
        self.assertEqual(self.home.run("suggest", "x" * 20_000).returncode, 0)

    def raw(self, *words):
        return subprocess.run([self.home.program("kestryctl"), *words], timeout=30, check=True,
                              env=self.home.environment, stdout=subprocess.PIPE).stdout.decode()


if __name__ == "__main__":
    unittest.main(verbosity=2)
