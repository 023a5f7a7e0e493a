"""What the program makes up for when the machine wakes, as systemd-logind tells of that.

Usage: waking_test.py FOLDER-OF-PROGRAMS LIBRARY-THAT-SETS-THE-CLOCK [unittest arguments]
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
LIBRARY = sys.argv.pop(1)
NIGHT = 8 * 3600


class WakingTest(dbusmock.DBusTestCase):
    @classmethod
    def setUpClass(cls):
        cls.start_system_bus()

    def setUp(self):
        self.home = Home(PROGRAMS)
        self.addCleanup(self.home.close)
        self.home.write("ledger.json", json.dumps(ledger_with_client()))
        self.home.environment.update(
            DBUS_SYSTEM_BUS_ADDRESS=os.environ["DBUS_SYSTEM_BUS_ADDRESS"],
            LD_PRELOAD=LIBRARY, KESTRY_TEST_SLEEP=self.home.path("slept"))
        server, self.logind = self.spawn_server_template("logind", {}, stdout=subprocess.DEVNULL)
        self.addCleanup(server.wait)
        self.addCleanup(server.terminate)

    def sleep(self, seconds):
        self.tell_sleep(True)
        with open(self.home.path("slept"), "w", encoding="utf-8") as file:
            file.write(f"{seconds}\n")
        self.tell_sleep(False)

    def tell_sleep(self, begins):
        self.logind.EmitSignal("org.freedesktop.login1.Manager", "PrepareForSleep", "b",
                               [dbus.Boolean(begins)],
                               dbus_interface="org.freedesktop.DBus.Mock")

    def is_heard(self):
        inhibitors = self.logind.ListInhibitors(dbus_interface="org.freedesktop.login1.Manager")
        return any(str(each[0]) == "sleep" and each[1] == "Kestry" for each in inhibitors)

    def last_sync(self):
        return json.loads(self.home.do("sync", "status", "--json"))["lastSync"]

    def test_records_are_exchanged_at_once_and_not_a_minute_later(self):
        self.home.start()
        wait_until(self.is_heard, "a program that listens")
        self.home.do("sync", "sign-in", "sqlite:" + self.home.path("store.sqlite"))
        self.home.do("sync", "on")
        before = self.last_sync()
        self.sleep(NIGHT)
        wait_until(lambda: self.last_sync() > before, "an exchange")


if __name__ == "__main__":
    unittest.main(verbosity=2)
