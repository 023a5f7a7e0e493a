"""The installed program as a desktop finds and starts it.

Usage: desktop_entry_test.py BUILD-FOLDER [unittest arguments], in a session bus of its own
"""

import configparser
import json
import os
import re
import signal
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree

from shell import Home, identifier, ledger_with_client, wait_until

BUILD = sys.argv.pop(1)
NAME = "org.kestry.Kestry"


def run(*words, environment=None):
    return subprocess.run(words, env=environment, capture_output=True, text=True, timeout=60,
                          check=False)


class DesktopEntryTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.prefix = tempfile.TemporaryDirectory(prefix="kestry-prefix-")
        cls.addClassCleanup(cls.prefix.cleanup)
        installed = run("cmake", "--install", BUILD, "--prefix", cls.prefix.name)
        if installed.returncode != 0:
            raise AssertionError(installed.stderr)

    def setUp(self):
        self.home = Home(os.path.join(self.prefix.name, "bin"))
        self.addCleanup(self.home.close)
        self.home.write("ledger.json", json.dumps(ledger_with_client()))
        self.start_bus()

    def start_bus(self):
        """A session bus that knows the installed program's service file."""
        os.symlink(self.share("dbus-1"), self.home.path("share", "dbus-1"))
        os.symlink(self.share("applications"), self.home.path("share", "applications"))
        os.symlink(self.share("icons"), self.home.path("share", "icons"))
        environment = self.home.environment
        environment["XDG_DATA_DIRS"] = self.home.path("share")
        environment["PATH"] = os.path.join(self.prefix.name, "bin") + ":" + environment["PATH"]
        bus = subprocess.Popen(
            ["dbus-daemon", "--session", "--nofork", "--print-address"], env=environment,
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self.addCleanup(bus.stdout.close)
        self.addCleanup(bus.wait)
        self.addCleanup(bus.terminate)
        environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()

    def share(self, *names):
        return os.path.join(self.prefix.name, "share", *names)

    def call(self, method, *arguments):
        """Calls the program by its name on the bus, which starts it when it does not run."""
        called = run("gdbus", "call", "--session", "--dest", NAME, "--object-path",
                     "/org/kestry/Kestry", "--method", "org.freedesktop.Application." + method,
                     *arguments, environment=self.home.environment)
        self.assertEqual(called.returncode, 0, called.stderr)

    def act(self, action):
        self.call("ActivateAction", action, "[]", "{}")

    def process_on_bus(self):
        """The process that has the program's name; none when no process has it."""
        asked = run("gdbus", "call", "--session", "--dest", "org.freedesktop.DBus",
                    "--object-path", "/", "--method",
                    "org.freedesktop.DBus.GetConnectionUnixProcessID", NAME,
                    environment=self.home.environment)
        number = re.search(r"uint32 (\d+)", asked.stdout)
        return int(number[1]) if number else None

    def state(self):
        return json.loads(self.home.do("status", "--json"))["state"]

    def wait_for(self, state):
        wait_until(lambda: self.state() == state, state)

    def quit(self):
        """Ends what the bus has started."""
        os.kill(self.process_on_bus(), signal.SIGTERM)
        wait_until(lambda: not self.process_on_bus(), "the end")

    def test_the_files_are_valid(self):
        for name in ("applications/" + NAME + ".desktop", "kestry/" + NAME + ".autostart.desktop"):
            checked = run("desktop-file-validate", self.share(name))
            self.assertEqual((checked.returncode, checked.stdout), (0, ""))
        service = configparser.ConfigParser()
        service.read(self.share("dbus-1", "services", NAME + ".service"))
        program = service["D-BUS Service"]["Exec"]
        self.assertEqual(program, os.path.join(self.prefix.name, "bin", "kestry"))
        self.assertTrue(os.access(program, os.X_OK))

    def test_what_shops_show_is_valid_and_of_this_version(self):
        path = self.share("metainfo", NAME + ".metainfo.xml")
        checked = run("appstreamcli", "validate", "--no-net", "--no-color", path)
        self.assertEqual(checked.returncode, 0, checked.stdout)
        self.assertNotRegex(checked.stdout, r"(?m)^[EWI]: ")
        newest = xml.etree.ElementTree.parse(path).find("releases/release")
        self.assertEqual("kestryctl " + newest.get("version"), self.home.do("--version").strip())

    def test_manuals_and_completions_are_where_they_are_looked_for(self):
        for name in ("man/man1/kestry.1", "man/man1/kestryctl.1", "man/man5/kestry-ledger.5"):
            self.assertTrue(os.path.getsize(self.share(name)), name)
        for name, begin in (("bash-completion/completions/kestryctl", "# Completes kestryctl"),
                            ("zsh/site-functions/_kestryctl", "#compdef kestryctl"),
                            ("fish/vendor_completions.d/kestryctl.fish", "# Completes kestryctl")):
            with open(self.share(name), encoding="utf-8") as file:
                self.assertTrue(file.read().startswith(begin), name)

    def test_the_icon_of_the_entry_is_there_in_both_forms(self):
        for name in ("scalable/apps/" + NAME + ".svg", "symbolic/apps/" + NAME + "-symbolic.svg"):
            with open(self.share("icons", "hicolor", name), encoding="utf-8") as file:
                self.assertEqual(file.read().count("<rect") % 12, 1 if "scalable" in name else 0)

    def test_the_bus_starts_the_program_for_an_action(self):
        self.assertIsNone(self.process_on_bus())
        self.act("start")
        self.addCleanup(self.quit)
        self.wait_for("running")
        self.assertIsNotNone(self.process_on_bus())

    def test_actions_reach_the_program_that_runs(self):
        process = self.home.start()
        wait_until(self.process_on_bus, "the name")
        for action, state in (("start", "running"), ("toggle", "paused"), ("toggle", "running"),
                              ("start", "running"), ("stop", "idle"), ("stop", "idle"),
                              ("unheard-of", "idle"), ("toggle", "running")):
            self.act(action)
            self.wait_for(state)
        self.assertIsNone(process.poll())
        self.assertEqual(len(self.home.read_json("ledger.json")["entries"]), 1)

    def test_a_link_is_opened_by_the_program(self):
        process = self.home.start()
        wait_until(self.process_on_bus, "the name")
        self.home.do("start", "aster")
        token = identifier()
        self.home.write("update-request", token)
        run("update-desktop-database", self.home.path("share", "applications"))
        run("gio", "mime", "x-scheme-handler/kestry", NAME + ".desktop",
            environment=self.home.environment)
        opened = run("gio", "open", "kestry://update?token=" + token,
                     environment=self.home.environment)
        self.assertEqual(opened.returncode, 0, opened.stderr)
        self.assertEqual(process.wait(20), 0)
        self.assertEqual(self.home.read_json("update-handoff.json")["token"], token)

    def test_a_second_data_directory_leaves_the_name_to_the_first(self):
        first = self.home.start()
        wait_until(self.process_on_bus, "the name")
        second = self.home.launch("--data-directory", self.home.path("other"))
        wait_until(lambda: len(self.home.sockets()) == 2, "a second program")
        self.act("start")
        self.wait_for("running")
        self.assertIsNone(first.poll())
        self.assertIsNone(second.poll())
        self.assertFalse(os.path.exists(self.home.path("other")))


if __name__ == "__main__":
    unittest.main(verbosity=2)
