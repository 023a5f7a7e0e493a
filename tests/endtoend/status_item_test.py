"""The item in the desktop's status area.

Usage: status_item_test.py PROGRAM [unittest arguments]
"""

import sys
import time
import unittest

from gi.repository import Gio, GLib

from desktop import wait_until
from ledgers import one_client
from program_test import ProgramTest
from settings_portal import SettingsPortal
from status_area import StatusArea

ProgramTest.PROGRAM = sys.argv.pop(1)
MENU = "com.canonical.dbusmenu"
SECONDS = 20


class StatusItemTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        self.write_settings(menuBarEnabled="true")

    def enter(self, context):
        entered = context.__enter__()
        self.addCleanup(context.__exit__, None, None, None)
        return entered

    def call(self, item, interface, method, arguments, path="/MenuBar"):
        return self.bus.call_sync(
            item, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE, -1, None)

    def entries(self, item):
        layout = self.call(item, MENU, "GetLayout", GLib.Variant("(iias)", (0, -1, [])))
        # An underscore only marks the letter that chooses an entry.
        return {properties.get("label", "-").replace("_", ""): number
                for number, properties, _ in (child for child in layout.unpack()[1][2])}

    def choose(self, item, label):
        number = self.entries(item)[label]
        self.call(item, MENU, "Event",
                  GLib.Variant("(isvu)", (number, "clicked", GLib.Variant("i", 0), 0)))

    def wait_for_turning(self, area, app, still):
        try:
            wait_until(lambda: area.pictures() > still + 20, "a turning mark")
        except AssertionError as failure:
            raise AssertionError(
                f"{failure}: {area.pictures() - still} pictures, status {app.process.poll()}, "
                f"session {app.ledger().get('active')}") from failure

    def test_the_menu_commands_the_session(self):
        area = self.enter(StatusArea())
        app = self.launch(one_client())
        item = area.wait_for_item(SECONDS)
        self.assertEqual(
            [label for label in self.entries(item) if label != "-"],
            ["Open Kestry", "Show notch controls", "Start / pause / resume",
             "Stop & save session", "Quit Kestry"])
        self.choose(item, "Start / pause / resume")
        app.ledger_when(lambda ledger: "active" in ledger, "a session")
        self.choose(item, "Stop & save session")
        app.ledger_when(lambda ledger: ledger["entries"], "a saved session")
        self.choose(item, "Open Kestry")
        app.find("Overview")
        self.choose(item, "Quit Kestry")
        self.assertEqual(app.process.wait(SECONDS), 0)

    def test_the_mark_turns_only_while_a_session_runs(self):
        area = self.enter(StatusArea())
        app = self.launch(one_client())
        item = area.wait_for_item(SECONDS)
        time.sleep(1)
        still = area.pictures()
        time.sleep(1)
        self.assertEqual(area.pictures(), still)
        self.choose(item, "Start / pause / resume")
        self.wait_for_turning(area, app, still)
        self.choose(item, "Start / pause / resume")
        app.ledger_when(lambda ledger: "runningSince" not in ledger["active"], "a pause")
        time.sleep(1)
        paused = area.pictures()
        time.sleep(1)
        self.assertEqual(area.pictures(), paused)

    def test_the_mark_stands_still_when_the_desktop_is_to_move_less(self):
        portal = self.enter(SettingsPortal(reduced_motion=True))
        area = self.enter(StatusArea())
        app = self.launch(one_client())
        item = area.wait_for_item(SECONDS)
        self.choose(item, "Start / pause / resume")
        app.ledger_when(lambda ledger: "active" in ledger, "a session")
        time.sleep(1)
        still = area.pictures()
        time.sleep(1)
        self.assertEqual(area.pictures(), still)
        portal.reduce_motion(False)
        self.wait_for_turning(area, app, still)

    def test_without_an_area_the_program_does_without(self):
        app = self.launch(one_client())
        self.desktop.hover_strip()
        app.press("Start")
        app.ledger_when(lambda ledger: "active" in ledger, "a session")

    def test_an_area_that_comes_later_gets_the_item(self):
        self.launch(one_client())
        area = self.enter(StatusArea())
        area.wait_for_item(SECONDS)

    def test_no_item_comes_unless_it_is_switched_on(self):
        self.write_settings(menuBarEnabled="false")
        area = self.enter(StatusArea())
        self.launch(one_client())
        time.sleep(2)
        self.assertEqual(area.items(), [])


if __name__ == "__main__":
    unittest.main(verbosity=2)
