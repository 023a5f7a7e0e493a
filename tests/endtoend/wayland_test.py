"""The strip and its panel in a layer of a Wayland compositor.

Usage: wayland_test.py PROGRAM [unittest arguments]
"""

import os
import signal
import subprocess
import sys
import time
import unittest

from desktop import Application, wait_until
from ledgers import REFERENCE_DATE, identifier, one_client
from program_test import ProgramTest
from wayland_desktop import WaylandDesktop

ProgramTest.PROGRAM = sys.argv.pop(1)

BLACK = (0, 0, 0)
STRIP = (560, 23)  # a point of it that is always black
FOLDING_SECONDS = 1  # many times as long as a panel stays that nothing holds open


class WaylandTest(ProgramTest):
    def make_desktop(self):
        return WaylandDesktop()

    def shows_strip(self, x=STRIP[0], y=STRIP[1], output=None):
        return self.desktop.colour(x, y, output) == BLACK

    def wait_for_strip(self, *place):
        wait_until(lambda: self.shows_strip(*place), "a strip")

    def start_session(self):
        self.desktop.hover_strip()
        self.app.press("Start")
        self.app.find("Pause session")

    def edit_title(self):
        self.app.press(self.app.find_starting("Session title: ").get_name())
        self.app.find("Session title")

    def open_terminal(self):
        """Another program over the whole screen; returns the file of what is typed into it."""
        typed = os.path.join(self.folder, "typed")
        terminal = subprocess.Popen(
            ["foot", "sh", "-c", 'cat >"$0"', typed], env={**os.environ, "LC_ALL": "C.UTF-8"},
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(terminal.wait)
        self.addCleanup(terminal.terminate)
        wait_until(lambda: os.path.exists(typed), "a terminal")
        wait_until(self.desktop.focused_program, "the terminal's window")
        return typed


def content(path):
    with open(path, encoding="utf-8") as file:
        return file.read()


class PanelTest(WaylandTest):
    def test_a_session_is_started_paused_and_stopped_by_pointer(self):
        app = self.launch(one_client())
        self.wait_for_strip()
        self.desktop.hover_strip()
        for name, condition in (
                ("Start", lambda ledger: "runningSince" in ledger.get("active", {})),
                ("Pause session", lambda ledger: len(ledger["active"]["spans"]) == 1),
                ("Stop and save session", lambda ledger: ledger["entries"])):
            time.sleep(FOLDING_SECONDS)  # until it stands still
            self.desktop.point_at(app.find(name))
            self.desktop.click()
            app.ledger_when(condition, name)
        self.desktop.leave_strip()
        wait_until(lambda: not app.shows("Start"), "a folded panel")
        self.assertEqual(app.terminate(), 0)

    def test_a_panel_that_is_shown_leaves_the_keyboard_where_it_is(self):
        typed = self.open_terminal()
        self.launch(one_client())
        self.start_session()
        self.desktop.type("a", "Return")
        wait_until(lambda: content(typed) == "a\n", "what is typed")

    def test_a_title_is_typed_and_the_keys_go_back_after_it(self):
        typed = self.open_terminal()
        app = self.launch(one_client())
        self.start_session()
        self.edit_title()
        self.desktop.type("l", "o", "g", "o", "Return")
        app.ledger_when(lambda ledger: ledger["active"]["title"] == "logo", "the title")
        app.find("Session title: logo")
        self.desktop.type("b", "Return")
        wait_until(lambda: content(typed) == "b\n", "what is typed")

    def test_a_click_in_another_program_ends_the_edit_and_gives_the_keys_to_it(self):
        typed = self.open_terminal()
        app = self.launch(one_client())
        self.start_session()
        self.edit_title()
        self.desktop.type("x")
        self.desktop.leave_strip()
        time.sleep(FOLDING_SECONDS)
        self.assertTrue(app.shows("Session title"))
        self.desktop.click()
        self.desktop.type("a", "b", "c", "Return")
        wait_until(lambda: "c\n" in content(typed), "what is typed")
        wait_until(lambda: not app.shows("Pause session"), "a folded panel")
        self.assertEqual(app.ledger()["active"]["title"], "")
        self.desktop.hover_strip()
        app.find("Session title: Session")

    def test_a_window_that_opens_ends_the_edit(self):
        app = self.launch(one_client())
        self.start_session()
        self.edit_title()
        self.desktop.leave_strip()
        self.open_terminal()
        wait_until(lambda: not app.shows("Session title"), "an end of the edit")
        wait_until(lambda: not app.shows("Pause session"), "a folded panel")

    def test_a_title_is_edited_again_after_a_click_elsewhere(self):
        self.open_terminal()
        app = self.launch(one_client())
        self.start_session()
        for title in ("a", "b"):
            self.desktop.hover_strip()
            self.edit_title()
            self.desktop.leave_strip()
            self.desktop.click()
            wait_until(lambda: not app.shows("Pause session"), "a folded panel")
            self.desktop.hover_strip()
            self.edit_title()
            self.desktop.type("ctrl+a", title, "Return")
            app.ledger_when(lambda ledger: ledger["active"]["title"] == title, "the title")


class MenuTest(WaylandTest):
    def open_target_menu(self):
        ledger = one_client()
        self.other = {**ledger["clients"][0], "id": identifier(), "name": "Birch"}
        ledger["clients"].append(self.other)
        self.launch(ledger)
        self.desktop.hover_strip()
        self.app.open_menu(self.app.find_starting("Session client and project: ").get_name())
        time.sleep(FOLDING_SECONDS)

    def test_a_menu_holds_the_panel_and_takes_the_keys(self):
        typed = self.open_terminal()
        self.open_target_menu()
        self.desktop.leave_strip()
        time.sleep(FOLDING_SECONDS)
        self.assertTrue(self.app.shows("Start"))
        self.desktop.type("Down", "Down", "Return")
        self.app.find_starting("Session client and project: Birch")
        self.desktop.type("a", "Return")
        wait_until(lambda: content(typed) == "a\n", "what is typed")

    def test_escape_closes_a_menu_and_the_panel_folds(self):
        self.open_target_menu()
        self.desktop.leave_strip()
        self.desktop.type("Escape")
        self.app.wait_for_no_menu()
        wait_until(lambda: not self.app.shows("Start"), "a folded panel")
        self.assertTrue(self.shows_strip())

    def test_a_click_beside_a_menu_closes_it(self):
        self.open_target_menu()
        self.desktop.leave_strip()
        self.desktop.click()
        self.app.wait_for_no_menu()
        wait_until(lambda: not self.app.shows("Start"), "a folded panel")

    def test_a_click_on_the_panel_beside_a_menu_only_closes_the_menu(self):
        self.open_target_menu()
        self.desktop.point_at(self.app.find("Start"))
        self.desktop.click()
        self.app.wait_for_no_menu()
        time.sleep(FOLDING_SECONDS)
        self.assertNotIn("active", self.app.ledger())

    def test_an_entry_is_chosen_by_pointer(self):
        self.open_target_menu()
        self.desktop.point_at(self.app.entry("Birch"))
        self.app.wait_for_entry("Birch")
        self.desktop.click()
        self.app.find_starting("Session client and project: Birch")

    def test_the_main_menu_of_the_window_takes_keys(self):
        app = self.launch(one_client())
        app.press("Open Kestry")
        app.find("Overview")
        time.sleep(FOLDING_SECONDS)
        app.open_menu("Main menu")
        time.sleep(FOLDING_SECONDS)
        self.desktop.type("Down")
        app.wait_for_entry("New client")
        self.desktop.type("Return")
        app.find("Client name")
        app.wait_for_no_menu()

    def test_a_title_is_edited_from_its_menu(self):
        app = self.launch(one_client())
        self.start_session()
        self.desktop.point(520, 64)
        time.sleep(FOLDING_SECONDS)
        self.desktop.click(3)
        app.find_menu()
        time.sleep(FOLDING_SECONDS)
        self.desktop.type("Down", "Return")
        app.find("Session title")
        time.sleep(FOLDING_SECONDS)
        self.desktop.type("l", "o", "g", "o", "Return")
        app.ledger_when(lambda ledger: ledger["active"]["title"] == "logo", "the title")

    def test_no_tool_tip_lies_over_an_open_menu(self):
        ledger = one_client()
        ledger["clients"][0]["name"] = "A client whose name is cut, so that a tip tells it whole"
        self.launch(ledger)
        self.desktop.hover_strip()
        target = self.app.find_starting("Session client and project: ")
        time.sleep(FOLDING_SECONDS)
        self.desktop.point(520, 64)
        self.app.open_menu(target.get_name())
        time.sleep(3 * FOLDING_SECONDS)  # longer than a tip waits
        self.assertFalse(self.app.shows_tip())
        self.desktop.type("Escape")
        self.app.wait_for_no_menu()
        self.desktop.hover_strip()
        time.sleep(FOLDING_SECONDS)
        self.desktop.point(520, 64)
        wait_until(self.app.shows_tip, "a tip")

    def test_a_menu_whose_output_goes_leaves_no_panel_behind(self):
        self.open_target_menu()
        self.desktop.unplug()
        self.desktop.leave_strip()
        self.desktop.plug_in()
        self.wait_for_strip()
        self.assertFalse(self.app.shows("Start"))
        self.desktop.hover_strip()
        self.app.press("Start")
        self.app.ledger_when(lambda ledger: "active" in ledger, "a session")

    def test_a_menu_whose_output_goes_beside_another_leaves_no_panel_behind(self):
        self.desktop.plug_in()
        self.open_target_menu()
        self.desktop.leave_strip()
        self.desktop.unplug(0)
        wait_until(lambda: not self.app.shows("Start"), "a folded panel")


class OutputTest(WaylandTest):
    def test_without_an_output_the_program_goes_on_and_the_strip_comes_back(self):
        app = self.launch(one_client())
        self.start_session()
        for _ in range(3):
            self.desktop.unplug()
            before = app.ledger()["active"]["checkpointAt"]
            app.ledger_when(
                lambda ledger: ledger["active"]["checkpointAt"] > before, "a checkpoint")
            self.desktop.plug_in()
            self.wait_for_strip()
        self.desktop.leave_strip()
        self.desktop.hover_strip()
        app.press("Pause session")
        self.assertEqual(app.terminate(), 0)

    def test_an_edit_ends_with_the_output(self):
        app = self.launch(one_client())
        self.start_session()
        self.edit_title()
        self.desktop.unplug()
        self.desktop.plug_in()
        self.wait_for_strip()
        self.assertFalse(app.shows("Session title"))
        typed = self.open_terminal()
        self.desktop.leave_strip()
        self.desktop.type("a", "Return")
        wait_until(lambda: content(typed) == "a\n", "what is typed")

    def test_the_strip_moves_to_the_output_that_is_left(self):
        self.launch(one_client())
        self.wait_for_strip()
        self.desktop.plug_in()
        self.desktop.unplug(0)
        left = wait_until(lambda: list(self.desktop.outputs().values()), "an output")[0]["rect"]
        self.wait_for_strip(left["x"] + STRIP[0], STRIP[1])
        self.assertIsNone(self.app.process.poll())

    def test_the_strip_is_drawn_in_the_scale_of_its_output(self):
        self.launch(one_client())
        self.wait_for_strip()
        name = next(iter(self.desktop.outputs()))
        self.desktop.ask("output", name, "scale", "2")
        # In the desktop's own measure the screen is half as wide now.
        wait_until(lambda: self.shows_strip(320 - 80, 23), "a strip in the middle")
        self.assertFalse(self.shows_strip(320 - 100, 23))
        self.desktop.ask("output", name, "scale", "1")
        self.wait_for_strip()


class SwitchedOffTest(WaylandTest):
    """Outputs that are there, and are switched off, as by a lid that closes."""

    def make_desktop(self):
        return WaylandDesktop(backend="headless")

    def test_the_strip_comes_back_with_the_output(self):
        app = self.launch(one_client())
        self.wait_for_strip()
        name = next(iter(self.desktop.outputs()))
        for _ in range(3):
            self.desktop.ask("output", name, "disable")
            time.sleep(FOLDING_SECONDS)
            self.assertIsNone(app.process.poll())
            self.desktop.ask("output", name, "enable")
            self.wait_for_strip()
        self.assertEqual(app.terminate(), 0)


class NoOutputTest(WaylandTest):
    def make_desktop(self):
        return WaylandDesktop(outputs=0, backend="headless")

    def test_started_without_an_output_the_strip_comes_with_the_first(self):
        self.write_ledger(one_client())
        self.app = Application(self.PROGRAM, self.directory, is_seen=False)
        time.sleep(FOLDING_SECONDS)
        self.assertIsNone(self.app.process.poll())
        self.desktop.ask("create_output")
        self.wait_for_strip()
        self.assertEqual(self.app.terminate(), 0)


class CompositorEndTest(WaylandTest):
    def check_end_by(self, how):
        app = self.launch(one_client())
        self.start_session()
        running = app.ledger()["active"]
        time.sleep(2)
        self.desktop.end_compositor(how)
        ended = time.time() - REFERENCE_DATE
        self.assertEqual(app.process.wait(10), 0)
        paused = app.ledger()["active"]
        self.assertNotIn("runningSince", paused)
        self.assertEqual(paused["spans"][0]["start"], running["runningSince"])
        self.assertAlmostEqual(paused["spans"][0]["end"], ended, delta=1)

    def test_a_compositor_that_ends_leaves_a_paused_session(self):
        self.check_end_by(signal.SIGTERM)

    def test_a_compositor_that_is_killed_leaves_a_paused_session(self):
        self.check_end_by(signal.SIGKILL)

    def test_it_is_paused_too_for_a_user_who_reads_no_warnings(self):
        os.environ["QT_LOGGING_RULES"] = "*=false"
        self.addCleanup(os.environ.pop, "QT_LOGGING_RULES")
        self.check_end_by(signal.SIGKILL)


if __name__ == "__main__":
    unittest.main(verbosity=2)
