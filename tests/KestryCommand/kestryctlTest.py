"""Starts kestryctl as people and scripts do: real files, processes, signals and terminals.

Usage: kestryctlTest.py PROGRAM [unittest options]
"""

import base64
import csv
import fcntl
import io
import json
import os
import pathlib
import pty
import random
import resource
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import termios
import threading
import time
import unittest
import zlib

PROGRAM = None


def png(side):
    """A grey square as a PNG file."""
    def chunk(kind, content):
        checksum = zlib.crc32(kind + content)
        return struct.pack(">I", len(content)) + kind + content + struct.pack(">I", checksum)

    rows = (b"\0" + b"\x80" * side) * side
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", side, side, 8, 0, 0, 0, 0))
        + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b""))


class ProgramTest(unittest.TestCase):
    def setUp(self):
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="kestryctl-"))
        self.addCleanup(shutil.rmtree, self.root)
        self.directory = self.root / "data"
        self.environment = {
            "PATH": os.environ["PATH"],
            "HOME": str(self.root),
            "TZ": "UTC",
            "LANG": "en_US.UTF-8",
            "KESTRY_DATA_DIR": str(self.directory),
        }

    def run_words(self, *words, **options):
        options.setdefault("stdin", subprocess.DEVNULL)
        options.setdefault("stdout", subprocess.PIPE)
        options.setdefault("stderr", subprocess.PIPE)
        return subprocess.run(
            [PROGRAM, *words], env=self.environment, text=True, timeout=60, **options)

    def do(self, *words):
        """Runs what must succeed, and returns what it wrote."""
        result = self.run_words(*words)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(result.stderr, "")
        return result.stdout

    def do_json(self, *words):
        return json.loads(self.do(*words, "--json"))

    def refuse(self, *words, status=1):
        """Runs what must be refused, and returns the reason."""
        result = self.run_words(*words)
        self.assertEqual(result.returncode, status, result.stdout)
        return result.stderr.rstrip("\n")

    def ledger(self):
        return json.loads((self.directory / "ledger.json").read_text())

    def add_client(self):
        return self.do_json("client", "add", "Aster Studio", "--rate", "150.00")["id"]

    def start(self, *words):
        return subprocess.Popen([PROGRAM, *words], env=self.environment, text=True,
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE)


class WholeRoad(ProgramTest):
    def test_a_session_goes_from_a_fresh_machine_to_a_saved_entry(self):
        self.assertEqual(self.do("status"), "State  idle\n")
        self.assertFalse(self.directory.exists())
        client = self.add_client()
        project = self.do_json("project", "add", "aster", "Website", "--rate", "150")["id"]
        session = self.do_json("start", "aster", "web", "--title", "Sketches", "--at", "-1h")["id"]
        self.do("pause", "--at", "-45m")
        self.do("resume", "--at", "-30m")
        status = self.do_json("status", "--at", "-15m")
        self.assertEqual(status["state"], "running")
        self.assertEqual(status["active"]["id"], session)
        self.assertEqual(status["clock"][:6], "00:29:" if status["clock"] < "00:30" else "00:30:")
        self.do("stop")
        (entry,) = self.ledger()["entries"]
        self.assertEqual(entry["id"], session)
        self.assertEqual(entry["projectID"], project)
        self.assertEqual(len(entry["spans"]), 2)
        self.assertEqual(self.do_json("client", "list")[0]["id"], client)
        self.assertEqual(self.do_json("project", "list", "aster")[0]["savedSessions"], 1)

    def test_a_logo_is_kept_and_removed(self):
        self.add_client()
        (self.root / "logo.png").write_bytes(png(256))
        self.do("client", "edit", "aster", "--logo", str(self.root / "logo.png"))
        self.assertTrue(self.do_json("client", "list")[0]["hasLogo"])
        (self.root / "logo.png").write_bytes(b"<svg xmlns='http://www.w3.org/2000/svg'/>")
        self.assertEqual(self.refuse("client", "edit", "aster", "--logo", str(self.root / "logo.png")),
            "This image could not be read. Choose a PNG, JPEG, or another supported image.")
        self.assertTrue(self.do_json("client", "list")[0]["hasLogo"])
        self.do("client", "edit", "aster", "--no-logo")
        self.assertFalse(self.do_json("client", "list")[0]["hasLogo"])

    def logo_size(self):
        logo = base64.b64decode(self.ledger()["clients"][0]["logoData"])
        return struct.unpack(">II", logo[16:24])

    def test_a_large_picture_is_made_a_logo(self):
        (self.root / "large.png").write_bytes(png(1000))
        self.do("client", "add", "Aster", "--logo", str(self.root / "large.png"))
        self.assertEqual(self.logo_size(), (256, 256))

    def test_a_picture_file_of_more_than_20_mebibytes_is_refused(self):
        self.add_client()
        with open(self.root / "large.png", "wb") as file:
            file.write(png(10))
            file.truncate(20 * 2**20 + 1)
        self.assertEqual(self.refuse("client", "edit", "aster", "--logo", str(self.root / "large.png")),
            "Choose an image smaller than 20 MB.")
        with open(self.root / "large.png", "r+b") as file:
            file.truncate(20 * 2**20)
        self.do("client", "edit", "aster", "--logo", str(self.root / "large.png"))
        self.assertEqual(self.logo_size(), (10, 10))

    def test_text_follows_the_locale_and_the_time_zone_of_the_user(self):
        self.add_client()
        self.do("client", "edit", "aster", "--no-projects")
        self.do("start", "aster", "--at", "2026-03-14T09:26Z")
        self.environment["TZ"] = "Asia/Tokyo"
        self.environment["LANG"] = "de_DE.UTF-8"
        shown = self.do("status", "--at", "2026-03-14T09:36Z")
        self.assertIn("last checkpoint 18:26\n", shown)
        self.assertIn("25,00\u00a0$\n", shown)
        shown = self.do("status", "--at", "2026-03-15 02:00", "--time-zone", "Europe/Berlin",
            "--locale", "en_US")
        self.assertIn("last checkpoint 2026-03-14 10:26\n", shown)
        self.assertIn("$2,335.00\n", shown)

    def default_folder(self, mode):
        """The default folder, as an earlier version or another program may have left it."""
        del self.environment["KESTRY_DATA_DIR"]
        self.directory = self.root / ".local/share/Kestry"
        self.directory.mkdir(parents=True)
        self.directory.chmod(mode)
        self.root.chmod(0o755)
        return self.directory

    def test_the_default_folder_is_closed_to_others_and_that_is_told_once(self):
        directory = self.default_folder(0o755)
        told = self.run_words("client", "add", "Birch")
        self.assertEqual((told.returncode, told.stderr),
            (0, f"Other users of this computer had access to the data directory {directory}. It "
                "has been closed to them.\n"))
        self.assertEqual(directory.stat().st_mode & 0o7777, 0o700)
        self.do("client", "add", "Cedar")
        if os.getuid() == 0:
            # Only who can open a directory can lock it.
            other = subprocess.run(
                ["setpriv", "--reuid=65534", "--regid=65534", "--clear-groups",
                 "flock", "--nonblock", str(directory), "true"], capture_output=True, text=True)
            self.assertIn("Permission denied", other.stderr)

    def test_a_tighter_default_folder_and_a_folder_that_was_named_stay_as_they_are(self):
        directory = self.default_folder(0o500 if os.getuid() == 0 else 0o700)
        mode = directory.stat().st_mode
        self.do("client", "add", "Birch")
        self.assertEqual(directory.stat().st_mode, mode)
        directory.chmod(0o755)
        self.do("--data-directory", str(directory), "client", "add", "Cedar")
        self.environment["KESTRY_DATA_DIR"] = str(directory)
        self.do("client", "add", "Dogwood")
        self.assertEqual(directory.stat().st_mode & 0o7777, 0o755)

    def test_reading_leaves_the_default_folder_as_it_is(self):
        directory = self.default_folder(0o755)
        self.do("status")
        self.assertEqual(directory.stat().st_mode & 0o7777, 0o755)

    def test_the_default_folder_is_the_users_own(self):
        del self.environment["KESTRY_DATA_DIR"]
        self.add_client()
        self.assertTrue((self.root / ".local/share/Kestry/ledger.json").exists())
        self.environment["XDG_DATA_HOME"] = str(self.root / "elsewhere")
        self.add_client()
        self.assertTrue((self.root / "elsewhere/Kestry/ledger.json").exists())

    def test_the_option_wins_over_the_variable(self):
        self.do("--data-directory", str(self.root / "given"), "client", "add", "Aster")
        self.assertTrue((self.root / "given/ledger.json").exists())
        self.assertFalse(self.directory.exists())

    def test_an_empty_variable_is_the_working_directory(self):
        self.environment["KESTRY_DATA_DIR"] = ""
        (self.root / "here").mkdir()
        result = self.run_words("client", "add", "Aster", cwd=self.root / "here")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertTrue((self.root / "here/ledger.json").exists())

    def test_a_command_leaves_nothing_but_ledgers_in_the_directory(self):
        self.add_client()
        self.do("start", "aster")
        self.assertEqual(
            sorted(os.listdir(self.directory)), ["ledger.backup.json", "ledger.json"])


class NoHome(ProgramTest):
    """A user whom the system does not know, as in a container."""

    USER = ["unshare", "--user", "--map-user=54321", "--map-group=54321"]

    def setUp(self):
        super().setUp()
        del self.environment["HOME"]

    def run_words(self, *words, **options):
        return subprocess.run([*self.USER, PROGRAM, *words], env=self.environment, text=True,
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=60)

    def test_a_directory_that_is_given_is_enough(self):
        self.add_client()
        self.assertTrue(self.do("start", "aster").startswith("Started: Aster Studio"))
        self.assertTrue(self.do("stop").startswith("Saved 00:00:0"))
        del self.environment["KESTRY_DATA_DIR"]
        self.assertEqual(self.do("--data-directory", str(self.directory), "status"),
            "State  idle\n")

    def test_without_one_it_says_what_is_missing(self):
        del self.environment["KESTRY_DATA_DIR"]
        self.assertEqual(self.refuse("status"), "The user has no home directory.")
        self.assertEqual(json.loads(self.run_words("start", "aster", "--json").stdout),
            {"error": "The user has no home directory."})

    def test_what_needs_no_directory_works(self):
        del self.environment["KESTRY_DATA_DIR"]
        self.assertIn("Usage: kestryctl", self.do("--help"))


class Refusals(ProgramTest):
    def test_refusals_unusable_words_and_success_have_their_own_status(self):
        self.assertEqual(self.refuse("pause"), "No running session to pause.")
        self.assertEqual(self.refuse("statsu", status=2),
            'There is no command "statsu". Did you mean "status"?')
        self.assertEqual(self.refuse("status", "--jsn", status=2),
            'There is no option "--jsn" here. Did you mean "--json"?')
        self.assertTrue(self.do("--version").startswith("kestryctl "))
        self.assertIn("Usage: kestryctl", self.do("--help"))

    def test_json_tells_failures_too(self):
        for words, status in ((("pause",), 1), (("frobnicate",), 2)):
            result = self.run_words(*words, "--json")
            self.assertEqual(result.returncode, status)
            self.assertEqual(json.loads(result.stdout), {"error": result.stderr.rstrip("\n")})

    def test_bytes_that_are_no_text_are_refused(self):
        result = subprocess.run([os.fsencode(PROGRAM), b"client", b"add", b"Aster\xff", b"--json"],
            env=self.environment, capture_output=True, timeout=60)
        self.assertEqual(result.returncode, 2)
        self.assertEqual(json.loads(result.stdout)["error"],
            '"Aster\ufffd" is not text in UTF-8.')

    def test_a_directory_that_cannot_be_made_is_told_in_words(self):
        (self.root / "file").write_text("in the way")
        self.environment["KESTRY_DATA_DIR"] = str(self.root / "file" / "data")
        self.assertIn("Not a directory", self.refuse("client", "add", "Aster"))

    def test_a_path_that_is_no_text_still_has_a_readable_status(self):
        self.environment["KESTRY_DATA_DIR"] = os.fsencode(self.root) + b"/\xff"
        self.assertIn("\ufffd", self.do_json("status")["dataDirectory"])


class Reading(ProgramTest):
    COMMANDS = (["status"], ["client", "list"], ["project", "list"], ["sessions"],
        ["sessions", "--sort", "title", "--search", "s", "--json"], ["report"],
        ["report", "--month", "2026-02", "--json"], ["report", "--client", "aster", "--all-time"],
        ["export"], ["export", "--json"], ["suggest", "s"], ["check"], ["completion", "bash"])

    def setUp(self):
        super().setUp()
        self.add_client()
        self.do("add", "aster", "--start", "-2h", "--duration", "1h", "--title", "Sketches")
        self.do("start", "aster")

    def state(self):
        return {path.name: (path.read_bytes(), path.stat().st_mtime_ns, path.stat().st_ino)
            for path in self.directory.iterdir()}

    def test_it_changes_nothing_and_waits_for_nobody(self):
        handle = os.open(self.directory, os.O_RDONLY | os.O_DIRECTORY)
        self.addCleanup(os.close, handle)
        fcntl.flock(handle, fcntl.LOCK_EX)
        before = self.state()
        for words in self.COMMANDS:
            self.assertNotEqual(self.do(*words), "", words)
        self.do("export", str(self.root / "out.csv"))
        self.assertEqual(self.state(), before)

    def test_it_writes_nothing_where_there_is_no_ledger(self):
        self.environment["KESTRY_DATA_DIR"] = str(self.root / "none")
        for words in self.COMMANDS:
            if "--client" not in words:
                self.do(*words)
        self.assertFalse((self.root / "none").exists())

    def test_it_works_on_the_backup_of_a_damaged_ledger_and_says_so(self):
        (self.directory / "ledger.json").write_text("{")
        before = self.state()
        for words in self.COMMANDS:
            result = self.run_words(*words)
            tells_by_itself = words[0] in ("status", "check", "completion")
            self.assertEqual(result.returncode, 1 if words == ["check"] else 0, words)
            self.assertEqual("Your backup" in result.stderr, not tells_by_itself, words)
        self.assertEqual(self.state(), before)

    def test_unusable_words_name_what_was_meant(self):
        for words, hint in (
                (("sessions", "--month", "2026-3"), 'Did you mean "2026-03"?'),
                (("report", "--month", "2026-13"), 'Did you mean "2026-12"?'),
                (("report", "--month", "March"), 'as in "2026-03"'),
                (("report", "--time-zone", "Europe/Berln"), 'Did you mean "Europe/Berlin"?'),
                (("report", "--time-zone", "berlin"), 'Did you mean "Europe/Berlin"?'),
                (("report", "--locale", "de_XX"), 'Did you mean "de"?'),
                (("report", "--locale", "german"), 'Did you mean "de"?'),
                (("sessions", "--sort", "tilte"), 'Did you mean "title"?'),
                (("completion", "bsh"), 'Did you mean "bash"?'),
                (("sessions", "--serach", "x"), 'Did you mean "--search"?'),
                (("sesions",), 'Did you mean "sessions"?')):
            self.assertIn(hint, self.refuse(*words, status=2))

    def test_the_zone_and_the_locale_are_the_users_unless_told(self):
        self.environment["TZ"] = "Asia/Tokyo"
        self.environment["LANG"] = "de_DE.UTF-8"
        report = self.do_json("report", "--at", "2026-02-28T16:00Z")
        self.assertEqual((report["month"], report["timeZone"]), ("2026-03", "Asia/Tokyo"))
        self.assertEqual(report["text"]["earned"], "0,00\u00a0$")
        report = self.do_json("report", "--at", "2026-02-28T16:00Z", "--time-zone",
            "Europe/Berlin", "--locale", "en_US")
        self.assertEqual((report["month"], report["timeZone"]), ("2026-02", "Europe/Berlin"))
        self.assertEqual(report["text"]["earned"], "$0.00")
        self.assertEqual([day["day"] for day in report["daily"]],
            [f"2026-02-{day:02}" for day in range(1, 29)])


class Export(ProgramTest):
    def setUp(self):
        super().setUp()
        self.add_client()
        for title in ("=1+1", 'say "hi"', "two\nlines, and a comma", "\u00c4rger"):
            self.do("add", "aster", "--start", "-2h", "--duration", "1h", "--title", title)
        self.out = self.root / "out.csv"

    def export(self):
        return subprocess.run([PROGRAM, "export"], env=self.environment, capture_output=True,
            check=True, timeout=60).stdout

    def test_a_reader_of_such_files_gets_every_cell(self):
        rows = list(csv.reader(io.StringIO(self.export().decode(), newline="")))
        self.assertEqual({len(row) for row in rows}, {13})
        self.assertEqual([row[2] for row in rows[1:]],
            ["'=1+1", 'say "hi"', "two\nlines, and a comma", "\u00c4rger"])

    def test_the_file_has_the_bytes_of_the_standard_output(self):
        self.assertEqual(self.do("export", str(self.out)), "Exported 4 saved sessions to out.csv.\n")
        self.assertEqual(self.out.read_bytes(), self.export())
        result = self.run_words("export", "out.csv", cwd=self.root)
        self.assertEqual(result.returncode, 0, result.stderr)

    def test_an_old_file_keeps_its_mode_and_a_new_one_follows_the_umask(self):
        self.out.write_text("old")
        self.out.chmod(0o640)
        self.do("export", str(self.out))
        self.assertEqual(self.out.stat().st_mode & 0o7777, 0o640)
        result = self.run_words("export", "new.csv", cwd=self.root, umask=0o077)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual((self.root / "new.csv").stat().st_mode & 0o7777, 0o600)
        self.assertEqual((self.root / "new.csv").read_bytes(), self.export())

    def in_shell(self, line):
        return subprocess.run(["bash", "-c", line, PROGRAM], env=self.environment, cwd=self.root,
            capture_output=True, timeout=60)

    def test_streams_are_written_as_streams(self):
        self.out.write_bytes(b"before\n")
        for line in ('"$0" export /dev/stdout >>out.csv', '"$0" export /proc/self/fd/1 >>out.csv',
                '"$0" export /dev/fd/7 7>>out.csv >/dev/null', '"$0" export >(cat >>out.csv); wait $!',
                '"$0" export /dev/stdout | cat >>out.csv'):
            result = self.in_shell(line)
            self.assertEqual((result.returncode, result.stderr), (0, b""), line)
        self.assertEqual(self.out.read_bytes(), b"before\n" + 5 * self.export())
        self.assertEqual(self.in_shell('"$0" export /dev/full').stderr,
            b"full could not be written: No space left on device.\n")

    def test_the_json_of_names_has_no_character_that_acts(self):
        name = "a\x7f\x80\x9b31m\u202eb"
        self.do("client", "add", name)
        for words in (["client", "list"], ["start", name], ["status"], ["stop"], ["export"],
                ["sessions"], ["rename", name]):
            result = self.run_words(*words, "--json")
            self.assertNotRegex(result.stdout, "[\x00-\x09\x0b-\x1f\x7f-\x9f\u202e]")
            self.assertNotRegex(result.stderr, "[\x00-\x09\x0b-\x1f\x7f-\x9f\u202e]")
            json.loads(result.stdout)
        self.assertEqual(self.do_json("client", "list")[-1]["name"], name)

    def test_a_disk_that_is_full_leaves_the_old_file(self):
        def leave_little_room():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (100, 100))

        self.out.write_text("old")
        before = sorted(os.listdir(self.root))
        result = self.run_words("export", str(self.out), "--json", preexec_fn=leave_little_room)
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stderr, "out.csv could not be written: File too large.\n")
        self.assertEqual(json.loads(result.stdout), {"error": result.stderr.rstrip("\n")})
        self.assertEqual(self.out.read_text(), "old")
        self.assertEqual(sorted(os.listdir(self.root)), before)

    def test_a_reader_that_went_away_is_told_of(self):
        with open("/dev/full", "w") as full:
            result = self.run_words("export", stdout=full)
        self.assertEqual(result.returncode, 1)
        self.assertEqual(
            result.stderr, "The output could not be written: No space left on device.\n")

    def test_the_ledger_is_never_replaced(self):
        before = (self.directory / "ledger.json").read_bytes()
        for name in ("ledger.json", "ledger.backup.json"):
            reason = self.refuse("export", str(self.directory / name))
            self.assertIn("may be one of the ledger's own files", reason)
        result = self.run_words("export", "./ledger.json", cwd=self.directory)
        self.assertEqual(result.returncode, 1)
        self.assertEqual((self.directory / "ledger.json").read_bytes(), before)


class DamagedLedger(ProgramTest):
    def damage(self):
        path = self.directory / "ledger.json"
        content = path.read_bytes()[:-7]
        path.write_bytes(content)
        return content

    def test_it_is_shown_never_written_over_and_mended_by_restore(self):
        self.add_client()
        self.do("start", "aster")
        self.do("checkpoint")
        content = self.damage()
        status = self.do_json("status")
        self.assertTrue(status["blocked"] and status["recoveryAvailable"])
        self.assertIn("read-only mode", status["errorMessage"])
        self.assertIn("Saving is disabled", self.refuse("client", "add", "Northstar"))
        self.assertEqual((self.directory / "ledger.json").read_bytes(), content)
        self.assertEqual(self.run_words("check").returncode, 1)
        self.do("restore", "--yes")
        self.assertEqual(self.do_json("status")["state"], "paused")
        (kept,) = self.do_json("check")["preserved"]
        self.assertEqual((self.directory / kept).read_bytes(), content)
        self.do("resume")

    CHANGES = (["start", "aster"], ["start", "nobody"], ["pause"], ["resume"], ["stop"],
        ["checkpoint"], ["rename", "Ink"], ["move", "Website"], ["client", "add", "Birch"],
        ["client", "edit", "aster", "--name", "Birch"], ["project", "add", "aster", "Ink"],
        ["project", "edit", "Website", "--name", "Ink"],
        ["add", "aster", "--start", "-2h", "--duration", "1h"],
        ["edit", "Sketches", "--title", "Ink"],
        ["gap", "Sketches", "--start", "-2h", "--end", "-1h"], ["delete", "Sketches"],
        ["delete", "Sketches", "--yes"],
        ["sync", "resolve", "00000000-0000-0000-0000-000000000000", "--keep-local"])

    def test_every_change_is_refused_in_the_words_on_the_damaged_ledger(self):
        # Whatever the backup has: no session, a running one, a paused one, or nothing readable.
        self.add_client()
        self.do("project", "add", "aster", "Website")
        self.do("add", "aster", "--start", "-3h", "--duration", "1h", "--title", "Sketches")
        for changes in ((["checkpoint"],), (["start", "aster"], ["checkpoint"]), (["pause"],) * 2,
                None):
            for change in changes or ():
                self.run_words(*change)
            content = self.damage()
            if changes is None:
                (self.directory / "ledger.backup.json").write_text("garbage")
            before = sorted(os.listdir(self.directory))
            reason = ("Saving is disabled to protect your unreadable ledger. Restore the data "
                "file before continuing.")
            if changes is None:
                reason += " " + self.do_json("status")["errorMessage"]
            for change in self.CHANGES:
                self.assertEqual(self.refuse(*change), reason)
                result = self.run_words(*change, "--json")
                self.assertEqual(json.loads(result.stdout), {"error": reason})
            self.assertEqual((self.directory / "ledger.json").read_bytes(), content)
            self.assertEqual(sorted(os.listdir(self.directory)), before)
            if changes is not None:
                self.do("restore", "--yes")

    def test_two_unreadable_files_are_no_empty_ledger(self):
        self.add_client()
        self.damage()
        (self.directory / "ledger.backup.json").write_text("garbage")
        self.assertIn("could not be read", self.refuse("client", "list"))
        self.assertIn("No valid backup", self.refuse("restore", "--yes"))
        self.assertIn("could not be read", self.refuse("start", "aster"))


class Checkpoints(ProgramTest):
    def test_one_in_the_future_is_refused_whatever_now_is_said_to_be(self):
        self.add_client()
        self.do("start", "aster", "--at", "-1h")
        before = (self.directory / "ledger.json").read_bytes()
        for instant in ("2100-01-01T00:00Z", "+15m", "-30m"):
            result = self.run_words("checkpoint", "--at", instant)
            if instant == "-30m":
                self.assertEqual(result.returncode, 0, result.stderr)
            else:
                self.assertNotEqual(result.returncode, 0)
                self.assertEqual((self.directory / "ledger.json").read_bytes(), before)
        self.assertEqual(self.refuse("checkpoint", "--at", "2100-01-01T00:00Z"),
            "A checkpoint cannot be in the future.")


class Output(ProgramTest):
    def test_a_change_stands_though_its_result_cannot_be_written(self):
        self.add_client()
        with open("/dev/full", "w") as full:
            result = self.run_words("start", "aster", stdout=full)
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stderr, "The change has been made and saved; only its result can't "
            "be shown. The output could not be written: No space left on device.\n")
        self.assertEqual(self.do_json("status")["state"], "running")

    def test_a_reader_that_went_away_is_no_sudden_death(self):
        self.add_client()
        reading, writing = os.pipe()
        os.close(reading)
        result = self.run_words("start", "aster", stdout=writing)
        os.close(writing)
        self.assertEqual(result.returncode, 1)
        self.assertIn("Broken pipe", result.stderr)
        self.assertEqual(self.do_json("status")["state"], "running")

    def test_closed_standard_streams_put_no_words_into_the_ledger(self):
        self.add_client()
        for closed in ("<&-", ">&-", "2>&-", "<&- >&- 2>&-"):
            subprocess.run(["sh", "-c", f'"$0" client add "$1" --json {closed}', PROGRAM, closed],
                env=self.environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                timeout=60)
            self.assertEqual(self.ledger()["clients"][-1]["name"], closed)
        self.do("check")


class Terminal(ProgramTest):
    def answer(self, words, typed):
        """Runs the program on a terminal of its own and types an answer to it."""
        process, terminal = pty.fork()
        if process == 0:
            os.execve(PROGRAM, [PROGRAM, *words], self.environment)
        os.write(terminal, typed.encode())
        shown = b""
        try:
            while chunk := os.read(terminal, 4096):
                shown += chunk
        except OSError:
            pass  # The terminal ends with the program.
        os.close(terminal)
        _, status = os.waitpid(process, 0)
        return os.waitstatus_to_exitcode(status), shown.decode()

    def test_deleting_asks_and_takes_no_for_an_answer(self):
        self.add_client()
        self.do("add", "aster", "--start", "-2h", "--duration", "1h", "--title", "Sketches")
        status, shown = self.answer(["delete", "sketches"], "n\n")
        self.assertEqual(status, 1)
        self.assertIn('Delete "Sketches", 1h 0m? [y/N]', shown)
        self.assertEqual(len(self.ledger()["entries"]), 1)
        status, shown = self.answer(["delete", "sketches"], "y\n")
        self.assertEqual(status, 0, shown)
        self.assertEqual(self.ledger()["entries"], [])

    SIGN_IN = ["sync", "sign-in", "https://example.org/hours", "--user", "mia"]

    def asked_for_a_password(self):
        """The program on a terminal of its own, once it asks."""
        process, terminal = pty.fork()
        if process == 0:
            os.execve(PROGRAM, [PROGRAM, *self.SIGN_IN], self.environment)
        self.addCleanup(os.close, terminal)
        shown = b""
        while b"Password of mia: " not in shown:
            shown += os.read(terminal, 4096)
        return process, terminal

    @staticmethod
    def shows_what_is_typed(terminal):
        return bool(termios.tcgetattr(terminal)[3] & termios.ECHO)

    def test_a_password_is_not_shown(self):
        process, terminal = self.asked_for_a_password()
        self.assertFalse(self.shows_what_is_typed(terminal))
        os.write(terminal, b"open sesame\n")
        shown = b""
        while b"not running" not in shown:
            shown += os.read(terminal, 4096)
        self.assertNotIn(b"sesame", shown)
        _, status = os.waitpid(process, 0)
        self.assertEqual(os.waitstatus_to_exitcode(status), 1)
        self.assertTrue(self.shows_what_is_typed(terminal))

    def test_an_interrupted_question_leaves_the_terminal_as_it_was(self):
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP, signal.SIGQUIT):
            process, terminal = self.asked_for_a_password()
            os.kill(process, number)
            _, status = os.waitpid(process, 0)
            self.assertEqual(os.waitstatus_to_exitcode(status), -number)
            self.assertTrue(self.shows_what_is_typed(terminal))

    def test_a_question_that_was_stopped_is_asked_again(self):
        process, terminal = self.asked_for_a_password()
        os.kill(process, signal.SIGTSTP)
        shown = b""
        while b"Password of mia: " not in shown:
            shown += os.read(terminal, 4096)
        self.assertFalse(self.shows_what_is_typed(terminal))
        os.write(terminal, b"open sesame\n")
        _, status = os.waitpid(process, 0)
        self.assertEqual(os.waitstatus_to_exitcode(status), 1)
        self.assertTrue(self.shows_what_is_typed(terminal))

    def test_a_password_comes_from_the_standard_input_line_by_line(self):
        for given, told in (("open sesame\nrest", "not running"), ("", "The password is empty"),
                            ("\n", "The password is empty"), ("x" * 5000, "as long as this")):
            result = subprocess.run([PROGRAM, *self.SIGN_IN, "--password-stdin"], input=given,
                env=self.environment, text=True, capture_output=True, timeout=60)
            self.assertEqual(result.returncode, 1)
            self.assertIn(told, result.stderr)
            self.assertNotIn("sesame", result.stderr + result.stdout)
        self.assertIn("nobody can be asked", self.refuse(*self.SIGN_IN))

    def test_a_question_keeps_nobody_else_waiting(self):
        self.add_client()
        self.do("add", "aster", "--start", "-2h", "--duration", "1h", "--title", "Sketches")
        process, terminal = pty.fork()
        if process == 0:
            os.execve(PROGRAM, [PROGRAM, "delete", "sketches"], self.environment)
        while b"[y/N]" not in os.read(terminal, 4096):
            pass
        self.do("start", "aster")
        os.write(terminal, b"n\n")
        os.waitpid(process, 0)
        os.close(terminal)

    def test_an_export_can_do_nothing_to_a_terminal(self):
        self.add_client()
        title = "\x1b]0;owned\x07\x9b2J"
        self.do("add", "aster", "--start", "-2h", "--duration", "1h", "--title", title)
        for words in (["export"], ["export", "/dev/stdout"], ["export", "/dev/tty"]):
            status, shown = self.answer(words, "")
            self.assertEqual(status, 0, shown)
            self.assertIn('"\\x1B]0;owned\\x07\\x9B2J"', shown)
            self.assertNotRegex(shown, "[\x1b\x07\x9b]")
        self.assertIn(title, self.do("export"))

    def test_colors_are_for_terminals_without_no_color(self):
        self.assertIn("\x1b[", self.answer(["status"], "")[1])
        self.environment["NO_COLOR"] = "1"
        self.assertNotIn("\x1b[", self.answer(["status"], "")[1])


class HostileFiles(ProgramTest):
    def usage(self, *words, status=0):
        """What the program, and those that it started, used of memory and the processor."""
        process = self.start(*words)
        _, ended, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(ended)
        errors = process.stderr.read()
        process.communicate()
        self.assertEqual(process.returncode, status, errors)
        return usage

    def most_memory(self, *words):
        """The most bytes in memory while the program ran."""
        return self.usage(*words).ru_maxrss * 1024

    def test_text_packed_into_a_logo_is_not_unpacked(self):
        self.add_client()
        content = b"Comment\0\0" + zlib.compress(b"a" * 7_900_000, 9)
        chunk = struct.pack(">I", len(content)) + b"zTXt" + content
        chunk += struct.pack(">I", zlib.crc32(chunk[4:]))
        image = png(2)
        header = 8 + 12 + 13
        logo = image[:header] + chunk * (250_000 // len(chunk)) + image[header:]
        (self.root / "logo.png").write_bytes(logo)
        used = self.most_memory("client", "edit", "aster", "--logo", str(self.root / "logo.png"))
        self.assertLess(used, 100_000_000)
        self.assertLess(self.most_memory("status"), 100_000_000)

    def test_a_picture_of_ten_thousand_megapixels_is_refused_in_little_time_and_memory(self):
        self.add_client()
        image = bytearray(png(1))
        image[16:24] = struct.pack(">II", 100_000, 100_000)
        image[29:33] = struct.pack(">I", zlib.crc32(image[12:29]))
        (self.root / "logo.png").write_bytes(image)
        words = ("client", "edit", "aster", "--logo", str(self.root / "logo.png"))
        self.assertEqual(self.refuse(*words), "This image is too large to use as a logo.")
        usage = self.usage(*words, status=1)
        self.assertLess(usage.ru_utime + usage.ru_stime, 1)
        self.assertLess(usage.ru_maxrss * 1024, 100 * 2**20)

    def test_a_file_beyond_a_gigabyte_is_refused_unread(self):
        self.add_client()
        self.do("start", "aster")
        with open(self.directory / "ledger.json", "r+b") as file:
            file.truncate(2**30 + 1)
        status = self.do_json("status")
        self.assertTrue(status["blocked"])
        self.assertTrue(status["errorMessage"].endswith(
            "The file is larger than 1 GB and was not read."), status["errorMessage"])
        self.assertLess(self.most_memory("status"), 100_000_000)
        self.assertIn("Saving is disabled", self.refuse("client", "add", "Northstar"))
        self.assertEqual((self.directory / "ledger.json").stat().st_size, 2**30 + 1)

    def test_a_ledger_that_would_pass_a_gigabyte_is_not_saved(self):
        self.do("add", self.add_client(), "--start", "-2h", "--duration", "1h", "--title", "TITLE")
        # A solidus takes one byte as other programs write it, and two in our own form.
        head, tail = (self.directory / "ledger.json").read_text().split("TITLE")
        with open(self.directory / "ledger.json", "w") as file:
            file.write(head)
            for _ in range(514):
                file.write("/" * 2**20)
            file.write(tail)
        before = {path.name: path.stat() for path in self.directory.iterdir()}
        result = subprocess.run([PROGRAM, "client", "add", "Beta"], env=self.environment, text=True,
            capture_output=True, timeout=300)
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stderr, "The ledger would grow beyond 1 GB, more than can be read "
            "again, and was not saved. Remove logos or sessions that you no longer need.\n")
        after = {path.name: path.stat() for path in self.directory.iterdir()}
        self.assertEqual({name: (each.st_ino, each.st_mtime_ns) for name, each in after.items()},
            {name: (each.st_ino, each.st_mtime_ns) for name, each in before.items()})


class Links(ProgramTest):
    REFUSAL = (" is a symbolic link, and saving would put a file in its place. Link the whole data "
               "directory instead.")

    def setUp(self):
        super().setUp()
        self.add_client()
        self.do("client", "add", "Beta")
        self.file = self.directory / "ledger.json"
        self.backup = self.directory / "ledger.backup.json"

    def move_and_link(self, file):
        target = self.root / "elsewhere.json"
        file.rename(target)
        file.symlink_to(target)
        return target

    def test_a_linked_ledger_is_read_and_never_replaced(self):
        target = self.move_and_link(self.file)
        before = target.read_bytes()
        self.assertEqual(self.refuse("client", "add", "Gamma"), "ledger.json" + self.REFUSAL)
        self.assertEqual(len(self.do_json("client", "list")), 2)
        self.do("check")
        self.assertTrue(self.file.is_symlink())
        self.assertEqual(target.read_bytes(), before)

    def test_a_linked_backup_is_never_replaced(self):
        target = self.move_and_link(self.backup)
        before = target.read_bytes(), self.file.read_bytes()
        self.assertEqual(self.refuse("client", "add", "Gamma"), "ledger.backup.json" + self.REFUSAL)
        self.assertEqual((target.read_bytes(), self.file.read_bytes()), before)

    def test_a_link_that_leads_nowhere_is_never_replaced(self):
        self.move_and_link(self.file).unlink()
        self.assertIn("Saving is disabled", self.refuse("client", "add", "Gamma"))
        self.assertEqual(self.refuse("restore", "--yes"), "Backup restoration failed. Your existing "
            "files were preserved. ledger.json" + self.REFUSAL)
        self.assertTrue(self.file.is_symlink())
        self.assertFalse((self.root / "elsewhere.json").exists())

    def test_a_linked_data_directory_is_a_data_directory(self):
        elsewhere = self.root / "elsewhere"
        self.directory.rename(elsewhere)
        self.directory.symlink_to(elsewhere)
        self.do("client", "add", "Gamma")
        self.assertEqual(len(json.loads((elsewhere / "ledger.json").read_text())["clients"]), 3)

    def test_a_further_name_of_the_ledger_is_no_name_of_the_backup(self):
        before = self.file.read_bytes()
        other = self.root / "other.json"
        os.link(self.file, other)
        self.do("client", "add", "Gamma")
        self.assertEqual(other.read_bytes(), before)
        other.write_text("written in place")
        self.assertEqual(self.backup.read_bytes(), before)


class Access(ProgramTest):
    def mode(self, name):
        return (self.directory / name).stat().st_mode & 0o7777

    def test_what_the_first_save_makes_is_for_the_user_alone(self):
        for mask in (0, 0o22, 0o777):
            shutil.rmtree(self.root / "a", ignore_errors=True)
            self.environment["KESTRY_DATA_DIR"] = str(self.root / "a/b")
            self.directory = self.root / "a/b"
            result = self.run_words("client", "add", "Aster", preexec_fn=lambda: os.umask(mask))
            self.assertEqual(result.returncode, 0, result.stderr)
            self.assertEqual([self.mode("ledger.json"), self.mode("."), self.mode("..")],
                [0o600, 0o700, 0o700])

    def test_the_users_choice_of_mode_stays(self):
        self.add_client()
        for mode in (0o600, 0o640, 0o644):
            (self.directory / "ledger.json").chmod(mode)
            for name in ("Beta", "Gamma"):
                self.do("client", "add", f"{name} {mode}")
                self.assertEqual(self.mode("ledger.json"), mode)
                self.assertEqual(self.mode("ledger.backup.json"), mode)

    def test_a_restore_keeps_the_mode_and_gives_it_to_the_preserved_ledger(self):
        self.add_client()
        self.do("client", "add", "Beta")
        file = self.directory / "ledger.json"
        file.write_text("damaged")
        file.chmod(0o640)
        self.do("restore", "--yes")
        (kept,) = self.directory.glob("ledger.corrupt-*")
        self.assertEqual([self.mode("ledger.json"), self.mode(kept.name)], [0o640, 0o640])


class Obstacles(ProgramTest):
    """What is in the way for a moment, or of one save."""

    def setUp(self):
        super().setUp()
        self.add_client()
        self.do("client", "add", "Beta")

    def files(self):
        return {path.name: path.read_bytes() for path in self.directory.iterdir() if path.is_file()}

    def test_a_directory_with_the_temporary_name_is_stepped_around(self):
        for name in ("ledger.json.new", "ledger.backup.json.new"):
            (self.directory / name).mkdir()
        (self.directory / "ledger.json.new-2").write_text("left by a crash")
        self.do("client", "add", "Gamma")
        self.assertEqual(sorted(os.listdir(self.directory)), ["ledger.backup.json",
            "ledger.backup.json.new", "ledger.json", "ledger.json.new"])

    def test_a_file_size_limit_is_a_failed_write_and_no_sudden_death(self):
        before = self.files()
        result = self.run_words("client", "add", "Gamma" * 100,
            preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (100, 100)))
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stderr, "ledger.json.new could not be written: File too large.\n")
        self.assertEqual(self.files(), before)

    def test_a_lease_of_another_program_is_waited_for(self):
        with open(self.directory / "ledger.json", "rb") as file:
            held = signal.signal(signal.SIGIO, signal.SIG_IGN)
            self.addCleanup(signal.signal, signal.SIGIO, held)
            fcntl.fcntl(file, fcntl.F_SETLEASE, fcntl.F_WRLCK)
            process = self.start("client", "add", "Gamma")
            time.sleep(0.3)
            fcntl.fcntl(file, fcntl.F_SETLEASE, fcntl.F_UNLCK)
            _, errors = process.communicate(timeout=60)
        self.assertEqual(process.returncode, 0, errors)
        self.assertEqual(len(self.ledger()["clients"]), 3)

    def test_a_lease_that_stays_refuses_one_command_and_nothing_more(self):
        before = self.files()
        with open(self.directory / "ledger.json", "rb") as file:
            held = signal.signal(signal.SIGIO, signal.SIG_IGN)
            self.addCleanup(signal.signal, signal.SIGIO, held)
            fcntl.fcntl(file, fcntl.F_SETLEASE, fcntl.F_WRLCK)
            for words in (("client", "add", "Gamma"), ("restore", "--yes")):
                self.assertIn("ledger.json could not be read: Resource temporarily unavailable.",
                    self.refuse(*words))
            fcntl.fcntl(file, fcntl.F_SETLEASE, fcntl.F_UNLCK)
        self.assertEqual(self.files(), before)
        self.do("client", "add", "Gamma")


class OneWriter(ProgramTest):
    def hold(self, path):
        handle = os.open(path, os.O_RDONLY | os.O_DIRECTORY)
        self.addCleanup(os.close, handle)
        fcntl.flock(handle, fcntl.LOCK_EX)

    def test_another_program_on_the_directory_is_named_at_once(self):
        self.add_client()
        self.hold(self.directory)
        before = time.monotonic()
        reason = self.refuse("start", "aster")
        self.assertLess(time.monotonic() - before, 4.0)
        self.assertIn(f"(process {os.getpid()}) is using this data directory", reason)
        self.assertEqual(self.do_json("status")["state"], "idle")

    def test_a_symbolic_link_leads_to_the_same_lock(self):
        self.add_client()
        os.symlink(self.directory, self.root / "link")
        self.hold(self.directory)
        self.assertIn("is using this data directory",
            self.refuse("--data-directory", str(self.root / "link"), "start", "aster"))

    def test_first_commands_at_once_on_a_new_directory_all_take_effect(self):
        for attempt in range(10):
            shutil.rmtree(self.directory, ignore_errors=True)
            running = [self.start("client", "add", f"Client {number}") for number in range(6)]
            for process in running:
                _, errors = process.communicate(timeout=60)
                self.assertEqual(process.returncode, 0, errors)
            names = sorted(client["name"] for client in self.ledger()["clients"])
            self.assertEqual(names, [f"Client {number}" for number in range(6)])

    def test_of_a_hundred_changes_at_once_each_that_is_told_is_in_the_ledger(self):
        running = {f"Client {number}": self.start("client", "add", f"Client {number}")
            for number in range(100)}
        told = []
        for name, process in running.items():
            _, errors = process.communicate(timeout=60)
            if process.returncode == 0:
                told.append(name)
            else:
                # Only a machine so slow that others are in the way for seconds leads here. Who
                # it was is not known where that one let go just when it was asked for.
                self.assertRegex(
                    errors, "^(kestryctl.*|Another program) is using this data directory")
        names = [client["name"] for client in self.ledger()["clients"]]
        self.assertEqual(sorted(names), sorted(told))
        self.assertGreater(len(told), 50)

    def test_a_hundred_starts_and_stops_at_once_lose_and_double_nothing(self):
        self.add_client()
        os.symlink(self.directory, self.root / "link")
        successes = {"start": [], "stop": []}
        guard = threading.Lock()
        left = [("start" if number % 2 == 0 else "stop") for number in range(100)]

        def work():
            while True:
                with guard:
                    if not left:
                        return
                    command = left.pop()
                    place = self.directory if len(left) % 3 else self.root / "link"
                words = [command] + (["aster"] if command == "start" else [])
                result = self.run_words("--data-directory", str(place), *words, "--json")
                reply = json.loads(result.stdout)
                with guard:
                    if result.returncode == 0:
                        successes[command].append(reply["id"])
                    else:
                        reasons.add(reply["error"])

        reasons = set()
        workers = [threading.Thread(target=work) for _ in range(8)]
        for worker in workers:
            worker.start()
        for worker in workers:
            worker.join()
        ledger = self.ledger()
        self.assertLessEqual(reasons, {"Stop the current session first.", "No session to stop.",
            "The stop time is before the last checkpoint."})
        saved = [entry["id"] for entry in ledger["entries"]]
        self.assertEqual(sorted(saved), sorted(successes["stop"]))
        active = [ledger["active"]["id"]] if "active" in ledger else []
        self.assertEqual(sorted(saved + active), sorted(successes["start"]))
        self.assertGreater(len(successes["start"]), 0)


class OneWriterWithoutLocks(ProgramTest):
    """On a file system that refuses to lock directories, as strace makes it seem."""

    def start_slowly(self, error, delay, *words):
        """Starts a command that takes so many microseconds before each time it syncs."""
        # Each attempt asks for the directory first, which is refused, and then for the file that
        # stands in for it.
        tracer = ["strace", "-f", "-qq", "-o", "/dev/null", "-e", "trace=flock,fsync",
            "-e", f"inject=flock:error={error}:when=1+2", "-e", f"inject=fsync:delay_enter={delay}"]
        return subprocess.Popen([*tracer, PROGRAM, *words], env=self.environment, text=True,
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
            start_new_session=True)

    def stand_in(self):
        found = os.stat(self.directory)
        name = f"kestry-{os.major(found.st_dev)}-{os.minor(found.st_dev)}-{found.st_ino}.lock"
        return pathlib.Path(f"/tmp/kestry-{os.getuid()}") / name

    def is_held(self):
        """Whether anybody holds the stand-in, asked without being in the way."""
        if not self.stand_in().exists():
            return False
        inode = f":{self.stand_in().stat().st_ino}"
        locks = [line.split() for line in pathlib.Path("/proc/locks").read_text().splitlines()]
        return any(lock[1] == "FLOCK" and lock[5].endswith(inode) for lock in locks)

    def hold(self):
        """Starts a command that would hold the stand-in for a minute."""
        holder = self.start_slowly("EOPNOTSUPP", 60_000_000, "client", "add", "Held")
        self.addCleanup(holder.communicate)
        self.addCleanup(self.kill, holder)
        end = time.monotonic() + 30
        while not self.is_held():
            self.assertLess(time.monotonic(), end, "nobody holds the stand-in")
            time.sleep(0.01)
        return holder

    def kill(self, process):
        if process.poll() is None:
            os.killpg(process.pid, signal.SIGKILL)

    def test_changes_at_once_all_take_effect(self):
        self.add_client()
        errors = ["ENOLCK", "EOPNOTSUPP", "ENOSYS"]
        names = [f"Client {number}" for number in range(15)]
        running = [self.start_slowly(errors[index % 3], 10_000, "client", "add", name)
            for index, name in enumerate(names)]
        for process in running:
            _, told = process.communicate(timeout=60)
            self.assertEqual(process.returncode, 0, told)
        clients = [client["name"] for client in self.do_json("client", "list")][1:]
        self.assertEqual(sorted(clients), sorted(names))

    def test_a_holder_is_named_to_whoever_waits_in_vain(self):
        self.add_client()
        self.hold()
        second = self.start_slowly("ENOLCK", 0, "client", "add", "Second")
        _, told = second.communicate(timeout=60)
        self.assertEqual(second.returncode, 1)
        self.assertRegex(told, r"^kestryctl \(process \d+\) is using this data directory")
        self.assertEqual(len(self.ledger()["clients"]), 1)

    def test_a_killed_holder_is_in_nobodys_way(self):
        self.add_client()
        holder = self.hold()
        self.kill(holder)
        holder.wait(timeout=60)
        second = self.start_slowly("ENOSYS", 0, "client", "add", "Second")
        _, told = second.communicate(timeout=60)
        self.assertEqual(second.returncode, 0, told)
        self.assertEqual([client["name"] for client in self.ledger()["clients"]],
            ["Aster Studio", "Second"])


class SuddenDeath(ProgramTest):
    def test_a_killed_command_has_happened_or_not(self):
        seed = int(os.environ.get("KESTRY_TEST_SEED", random.randrange(2**32)))
        print(f"seed {seed} (KESTRY_TEST_SEED)", file=sys.stderr)
        chance = random.Random(seed)
        self.add_client()
        # Long enough for some commands to end by themselves, on a fast machine and on a slow one.
        began = time.monotonic()
        self.add_client()
        longest = 1.5 * (time.monotonic() - began)
        told = []
        names = []
        for number in range(120):
            name = f"Client {number}"
            process = self.start("client", "add", name, "--json")
            time.sleep(chance.uniform(0.0, longest))
            process.send_signal(signal.SIGKILL)
            output, _ = process.communicate(timeout=60)
            if output:
                told.append(name)
            names = [client["name"] for client in self.do_json("client", "list")][2:]
            self.assertEqual(len(names), len(set(names)))
            self.assertLessEqual(set(told), set(names))
            self.assertEqual(self.run_words("check").returncode, 0)
        self.assertTrue(0 < len(names) < 120, "no command was killed in time, or all were")
        self.add_client()
        self.assertEqual(
            sorted(os.listdir(self.directory)), ["ledger.backup.json", "ledger.json"])

    def test_a_running_session_outlives_the_commands_that_started_it(self):
        self.add_client()
        process = self.start("start", "aster")
        process.communicate(timeout=60)
        self.do("checkpoint")
        before = (self.directory / "ledger.json").read_bytes()
        self.assertEqual(self.do_json("status")["state"], "running")
        self.assertEqual((self.directory / "ledger.json").read_bytes(), before)


if __name__ == "__main__":
    PROGRAM = os.path.abspath(sys.argv.pop(1))
    unittest.main()
