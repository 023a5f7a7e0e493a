"""Sleep and shutdown as systemd-logind tells of them, by a stand-in on a bus of its own.

Usage: login_test.py FOLDER-OF-PROGRAMS [unittest arguments]
"""

import json
import os
import subprocess
import sys
import unittest

import dbus
import dbusmock

from shell import Home, ledger_with_client, wait_until

PROGRAMS = sys.argv.pop(1)
MANAGER = "org.freedesktop.login1.Manager"


# A logind that tells what it is asked to wait with.
SUCCESSOR = """
import dbus.mainloop.glib, dbus.service
from gi.repository import GLib
dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
class Manager(dbus.service.Object):
    @dbus.service.method("org.freedesktop.login1.Manager", in_signature="ssss", out_signature="h")
    def Inhibit(self, what, who, why, mode):
        print(what, flush=True)
        return dbus.types.UnixFd(0)
bus = dbus.SystemBus()
manager = Manager(bus, "/org/freedesktop/login1")
bus.request_name("org.freedesktop.login1")
GLib.MainLoop().run()
"""


class LoginTest(dbusmock.DBusTestCase):
    @classmethod
    def setUpClass(cls):
        cls.start_system_bus()
        cls.bus = cls.get_dbus(system_bus=True)

    def setUp(self):
        self.home = Home(PROGRAMS)
        self.addCleanup(self.home.close)
        self.home.environment["DBUS_SYSTEM_BUS_ADDRESS"] = os.environ["DBUS_SYSTEM_BUS_ADDRESS"]
        self.home.write("ledger.json", json.dumps(ledger_with_client()))
        self.start_logind()

    def start_logind(self):
        self.server, self.logind = self.spawn_server_template(
            "logind", {}, stdout=subprocess.DEVNULL)
        self.addCleanup(self.server.wait)
        self.addCleanup(self.server.terminate)

    def inhibitors(self):
        """What the machine waits with for Kestry."""
        listed = self.logind.ListInhibitors(dbus_interface=MANAGER)
        return sorted(str(each[0]) for each in listed if each[1] == "Kestry" and each[3] == "delay")

    def wait_for_inhibitors(self, *expected):
        wait_until(lambda: self.inhibitors() == list(expected), f"inhibitors {expected}")

    def tell(self, signal, begins):
        self.logind.EmitSignal(MANAGER, signal, "b", [dbus.Boolean(begins)],
                               dbus_interface="org.freedesktop.DBus.Mock")

    def running(self):
        process = self.home.start()
        self.wait_for_inhibitors("shutdown", "sleep")
        self.home.do("start", "aster")
        return process

    def test_sleep_pauses_a_running_session_and_then_lets_the_machine_go(self):
        self.running()
        self.tell("PrepareForSleep", True)
        self.wait_for_inhibitors("shutdown")
        self.assertNotIn("runningSince", self.home.active())
        self.assertEqual(len(self.home.active()["spans"]), 1)

    def test_a_session_stays_paused_on_waking_and_the_next_sleep_is_waited_with(self):
        self.running()
        self.tell("PrepareForSleep", True)
        self.wait_for_inhibitors("shutdown")
        self.tell("PrepareForSleep", False)
        self.wait_for_inhibitors("shutdown", "sleep")
        self.assertNotIn("runningSince", self.home.active())
        self.home.do("resume")
        self.tell("PrepareForSleep", True)
        self.wait_for_inhibitors("shutdown")
        self.assertEqual(len(self.home.active()["spans"]), 2)

    def test_a_second_sleep_in_a_row_changes_nothing(self):
        self.running()
        self.tell("PrepareForSleep", True)
        self.wait_for_inhibitors("shutdown")
        before = self.home.content("ledger.json")
        self.tell("PrepareForSleep", True)
        self.home.do("status")
        self.assertEqual(self.home.content("ledger.json"), before)

    def test_a_shutdown_is_an_ordinary_quit(self):
        process = self.running()
        self.tell("PrepareForShutdown", True)
        self.assertEqual(process.wait(20), 0)
        self.assertNotIn("runningSince", self.home.active())
        self.wait_for_inhibitors()

    def test_a_logind_that_was_started_again_is_asked_again(self):
        self.home.start()
        self.wait_for_inhibitors("shutdown", "sleep")
        self.server.terminate()
        self.server.wait()
        # The stand-in takes its name before it has its methods; the real one is whole by then.
        successor = subprocess.Popen(
            [sys.executable, "-c", SUCCESSOR], stdout=subprocess.PIPE, text=True)
        self.addCleanup(successor.stdout.close)
        self.addCleanup(successor.wait)
        self.addCleanup(successor.terminate)
        asked = sorted(successor.stdout.readline().strip() for _ in range(2))
        self.assertEqual(asked, ["shutdown", "sleep"])

    def test_a_failing_save_cancels_a_shutdown_and_keeps_the_session(self):
        process = self.running()
        self.home.write("ledger.json", "{ damaged")
        self.tell("PrepareForShutdown", True)
        self.wait_for_inhibitors("sleep")
        self.assertIsNone(process.poll())
        status = json.loads(self.home.do("status", "--json"))
        self.assertEqual(status["state"], "running")
        self.assertTrue(status["errorMessage"].startswith("The ledger on disk could not be read."))
        self.assertEqual(self.home.content("ledger.json"), b"{ damaged")


if __name__ == "__main__":
    unittest.main(verbosity=2)
