"""The item in the desktop's status area.

Usage: status_item_test.py PROGRAM [unittest arguments]
"""

import sys
import time
import unittest

from desktop import wait_until
from ledgers import one_client
from program_test import ProgramTest
from settings_portal import SettingsPortal
from status_area import StatusArea

ProgramTest.PROGRAM = sys.argv.pop(1)
SECONDS = 20


class StatusItemTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write_settings(menuBarEnabled="true")

    def enter(self, context):
        entered = context.__enter__()
        self.addCleanup(context.__exit__, None, None, None)
        return entered

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
            [label for label in area.entries(item) if label != "-"],
            ["Open Kestry", "Show notch controls", "Start / pause / resume",
             "Stop & save session", "Quit Kestry"])
        area.choose(item, "Start / pause / resume")
        app.ledger_when(lambda ledger: "active" in ledger, "a session")
        area.choose(item, "Stop & save session")
        app.ledger_when(lambda ledger: ledger["entries"], "a saved session")
        area.choose(item, "Open Kestry")
        app.find("Overview")
        area.choose(item, "Quit Kestry")
        self.assertEqual(app.process.wait(SECONDS), 0)

    def test_the_mark_turns_only_while_a_session_runs(self):
        area = self.enter(StatusArea())
        app = self.launch(one_client())
        item = area.wait_for_item(SECONDS)
        time.sleep(1)
        still = area.pictures()
        time.sleep(1)
        self.assertEqual(area.pictures(), still)
        area.choose(item, "Start / pause / resume")
        self.wait_for_turning(area, app, still)
        area.choose(item, "Start / pause / resume")
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
        area.choose(item, "Start / pause / resume")
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
