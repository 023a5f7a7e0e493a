#!/usr/bin/env python3
"""Holds the manual pages against the programs: what is read is told, and what is told is read.

    manual_test.py KESTRYCTL [KESTRY] [unittest arguments]

The commands and options of kestryctl have a test of their own, ManualTest.cpp.
"""

import os
import pathlib
import re
import signal
import subprocess
import sys
import tempfile
import time
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent
PROGRAMS = [sys.argv.pop(1) for _ in range(2) if len(sys.argv) > 1 and "/" in sys.argv[1]]

# Whose sources read the environment of which program.
FOLDERS = {
    "kestry.1": ("KestrySystem", "KestryCore", "KestryPictures", "KestryUpdates", "KestryItems",
                 "KestryCloud", "KestryDesktop", "Kestry"),
    "kestryctl.1": ("KestrySystem", "KestryCore", "KestryPictures", "KestryCommand"),
}
# The toolkit finds the file of the settings by this one.
OF_THE_TOOLKIT = {"kestry.1": {"XDG_CONFIG_HOME"}, "kestryctl.1": set()}


def sources(*folders):
    for folder in folders:
        for path in sorted((ROOT / folder).iterdir()):
            if path.suffix in (".h", ".cpp"):
                yield path.read_text(encoding="utf-8")


def plain(line):
    return re.sub(r"\\f.", "", line).replace("\\-", "-").replace("\\ ", " ").replace("\\~", " ")


class Page:
    def __init__(self, name):
        self.text = (ROOT / "docs" / name).read_text(encoding="utf-8").replace("\\\n", "")

    def section(self, heading):
        """The lines below a heading, up to the next one of its kind."""
        command = ".SH" if heading.isupper() else ".SS"
        found = re.search(rf"^{command} {re.escape(heading)}\n(.*?)(?=^\.S[HS] |\Z)", self.text, re.M | re.S)
        if not found:
            raise AssertionError(f"There is no section {heading}.")
        return found[1]

    def titles(self, heading):
        """The first lines of the paragraphs of a section, with their fonts."""
        return re.findall(r"^\.TP\n(.*)", self.section(heading), re.M)


def variables_read(text):
    """The names of environment variables that a source looks up."""
    look_up = r'(?:getenv|qEnvironmentVariable\w*|environment)\(\s*"([A-Z_]+)"'
    lists = r'[vV]ariables?(?:\s*=|\s*:|\{|\s)\s*\{?((?:"[A-Z_]+"(?:,\s*)?)+)'
    names = set(re.findall(look_up, text))
    for words in re.findall(lists, text):
        names |= set(re.findall(r"[A-Z_]+", words))
    return names


def member_list(page, heading):
    """The members that a section explains: name -> whether it must be there."""
    members = {}
    for title in page.titles(heading):
        for bracket, name in re.findall(r"(\[?)\\fB(\w+)\\fR", title):
            members[name] = bracket == ""
    return members


def members_in_code(record):
    """The members of a record as RecordMembers.h reads them."""
    text = (ROOT / "KestryCore/RecordMembers.h").read_text(encoding="utf-8")
    body = re.search(rf"RecordOf<{record}> \w+>\nvoid .*?^}}", text, re.M | re.S)[0]
    return {name: kind == "required"
            for kind, name in re.findall(r'visitor\.(\w+)\("(\w+)"', body)}


class EnvironmentTest(unittest.TestCase):
    def test_what_a_program_looks_up_is_told_and_nothing_else(self):
        for page, folders in FOLDERS.items():
            with self.subTest(page):
                told = set()
                for title in Page(page).titles("ENVIRONMENT"):
                    told |= set(re.findall(r"[A-Z][A-Z_]+", re.sub(r"^\.B[RI]? ", "", title)))
                read = set().union(*map(variables_read, sources(*folders)))
                self.assertEqual(told, read | OF_THE_TOOLKIT[page])

    def test_the_ways_of_looking_up_are_known(self):
        for text, names in (('qgetenv("A")', {"A"}),
                            ('std::getenv("B_C")', {"B_C"}),
                            ('environment("D")', {"D"}),
                            ('variable : {"E", "F"}', {"E", "F"}),
                            ('dataVariable = "G";', {"G"}),
                            ('commandVariables{"H", "I"}', {"H", "I"}),
                            ('qputenv("J", "K")', set())):
            self.assertEqual(variables_read(text), names, text)


class OptionsTest(unittest.TestCase):
    def test_the_options_of_the_application_are_told_and_no_others(self):
        told = set()
        for title in Page("kestry.1").titles("OPTIONS"):
            told |= set(re.findall(r"--[-a-z]+", plain(title)))
        code = "".join((ROOT / name).read_text(encoding="utf-8")
                       for name in ("Kestry/LaunchOptions.cpp", "KestrySystem/DataDirectory.h"))
        self.assertEqual(told, set(re.findall(r'"(--[-a-z]+)"', code)))

    def test_the_synopsis_has_each_option(self):
        page = Page("kestry.1")
        synopsis = plain(page.section("SYNOPSIS"))
        for title in page.titles("OPTIONS"):
            for option in re.findall(r"--[-a-z]+", plain(title)):
                self.assertIn(option, synopsis)


class LedgerFormatTest(unittest.TestCase):
    RECORDS = {"The document": "LedgerData", "A client": "Client", "A project": "Project",
               "A saved session": "TimeEntry", "The session in progress": "ActiveSession",
               "Replication": "LedgerSyncState", "A record of replication": "SyncRecord"}

    def test_each_record_has_the_members_that_are_read(self):
        page = Page("kestry-ledger.5")
        for heading, record in self.RECORDS.items():
            with self.subTest(heading):
                self.assertEqual(member_list(page, heading), members_in_code(record))

    def test_the_members_of_small_records_are_told_with_what_holds_them(self):
        text = Page("kestry-ledger.5").text
        for record in ("TimeSpan", "SyncConflict", "SyncedSession"):
            for name in members_in_code(record):
                self.assertIn(rf"\fB{name}\fR", text)

    def test_the_files_of_a_data_directory_are_told_and_no_others(self):
        told = set(re.findall(r"\b(?:ledger|update)[-.][a-z][-.a-z]*",
                              plain(Page("kestry-ledger.5").section("FILES"))))
        used = set()
        for text in sources("KestryCore", "Kestry"):
            used |= set(re.findall(r'"((?:ledger|update)[-.][-.a-z]+)"', text))
        self.assertEqual(told, used)

    def test_the_endings_of_broken_off_writes_are_told(self):
        code = (ROOT / "KestrySystem/DurableFiles.cpp").read_text(encoding="utf-8")
        endings = re.search(r"temporaryEndings\{(.*?)\}", code)[1]
        for ending in re.findall(r'"(.*?)"', endings):
            self.assertRegex(plain(Page("kestry-ledger.5").section("FILES")), rf"(?m){re.escape(ending)}\b")

    def test_the_example_is_sound(self):
        example = re.search(r"^\.EX\n(.*?)^\.EE", Page("kestry-ledger.5").text, re.M | re.S)[1]
        with tempfile.TemporaryDirectory() as folder:
            pathlib.Path(folder, "ledger.json").write_text(plain(example), encoding="utf-8")
            check = run(PROGRAMS[0], "--data-directory", folder, "check")
            self.assertEqual(check.returncode, 0, check.stdout + check.stderr)


def run(*words, **environment):
    return subprocess.run(words, env=dict(os.environ, **environment), stdin=subprocess.DEVNULL,
                          capture_output=True, text=True, timeout=60, check=False)


def statuses(page):
    return {int(title) for title in Page(page).titles("EXIT STATUS")}


class ExitStatusTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="kestry-manual-")
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        os.chmod(self.folder, 0o700)

    def test_kestryctl_ends_with_each_status_that_is_told(self):
        at = ("--data-directory", os.path.join(self.folder, "ledger"))
        ended = [run(PROGRAMS[0], *at, *words).returncode
                 for words in (["status"], ["pause"], ["no-such-command"])]
        self.assertEqual(ended, [0, 1, 2])
        self.assertEqual(statuses("kestryctl.1"), set(ended))

    @unittest.skipUnless(len(PROGRAMS) > 1, "a build without the application")
    def test_kestry_ends_with_each_status_that_is_told(self):
        ended = {self.quit_by_signal(), self.started_without_a_desktop(),
                 self.started_with_a_desktop_out_of_reach()}
        self.assertEqual(ended, {0, 1, 128 + signal.SIGABRT})
        self.assertEqual(statuses("kestry.1"), ended)

    def started_without_a_desktop(self):
        bare = {name: value for name, value in os.environ.items()
                if name not in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM")}
        return subprocess.run([PROGRAMS[1], "--demo"], env=bare, capture_output=True, timeout=60,
                              check=False).returncode

    def started_with_a_desktop_out_of_reach(self):
        """As shells tell of the end by a signal."""
        environment = dict(os.environ, HOME=self.folder, XDG_RUNTIME_DIR=self.folder,
                           QT_QPA_PLATFORM="xcb", DISPLAY=":64999")
        ended = subprocess.run(["sh", "-c", 'ulimit -c 0; "$@"; exit $?', "sh", PROGRAMS[1], "--demo"],
                               env=environment, capture_output=True, timeout=60, check=False)
        return ended.returncode

    def quit_by_signal(self):
        environment = dict(os.environ, HOME=self.folder, XDG_RUNTIME_DIR=self.folder,
                           QT_QPA_PLATFORM="offscreen")
        program = subprocess.Popen(
            [PROGRAMS[1], "--data-directory", os.path.join(self.folder, "ledger")],
            env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(program.kill)
        deadline = time.monotonic() + 30
        while not any(name.endswith(".socket") for name in os.listdir(self.folder)):
            self.assertIsNone(program.poll())
            self.assertLess(time.monotonic(), deadline)
            time.sleep(0.05)
        program.send_signal(signal.SIGTERM)
        return program.wait(timeout=30)


if __name__ == "__main__":
    unittest.main()
