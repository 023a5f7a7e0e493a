"""The road of a first session, on a real window system with the real program.

Usage: first_session_test.py PROGRAM [unittest arguments]
"""

import os
import subprocess
import sys
import unittest

from desktop import wait_until, xdotool
from ledgers import now, one_client
from program_test import ProgramTest

ProgramTest.PROGRAM = sys.argv.pop(1)


class FirstSessionTest(ProgramTest):
    def test_a_session_is_started_paused_resumed_and_stopped_in_the_panel(self):
        app = self.launch(one_client())
        self.desktop.hover_strip()
        app.press("Start")
        started = app.ledger_when(lambda ledger: "active" in ledger, "a session")["active"]
        self.assertIn("runningSince", started)
        self.assertAlmostEqual(started["runningSince"], now(), delta=10)

        app.press("Pause session")
        paused = app.ledger_when(
            lambda ledger: "runningSince" not in ledger["active"], "a pause")["active"]
        self.assertEqual(len(paused["spans"]), 1)

        app.press("Resume session")
        resumed = app.ledger_when(
            lambda ledger: "runningSince" in ledger["active"], "a resumed session")["active"]
        self.assertGreaterEqual(resumed["runningSince"], paused["spans"][0]["end"])

        app.press("Stop and save session")
        stopped = app.ledger_when(lambda ledger: ledger["entries"], "a saved session")
        self.assertNotIn("active", stopped)
        self.assertEqual(stopped["entries"][0]["id"], started["id"])
        self.assertEqual(len(stopped["entries"][0]["spans"]), 2)
        self.assertEqual(app.terminate(), 0)

    def test_a_title_is_typed_and_escape_leaves_it(self):
        app = self.launch(one_client())
        self.desktop.hover_strip()
        app.press("Start")
        app.find_starting("Session title: ")
        app.press(app.find_starting("Session title: ").get_name())
        self.desktop.type("l", "o", "g", "o", "Return")
        app.ledger_when(lambda ledger: ledger["active"]["title"] == "logo", "the title")
        app.press("Session title: logo")
        self.desktop.type("x", "Escape")
        app.find("Session title: logo")
        self.assertEqual(app.ledger()["active"]["title"], "logo")

    def test_a_quit_signal_pauses_a_running_session(self):
        app = self.launch(one_client())
        self.desktop.hover_strip()
        app.press("Start")
        app.ledger_when(lambda ledger: "active" in ledger, "a session")
        self.assertEqual(app.terminate(), 0)
        active = app.ledger()["active"]
        self.assertNotIn("runningSince", active)
        self.assertEqual(len(active["spans"]), 1)

    def test_a_killed_session_comes_back_with_the_time_up_to_its_last_checkpoint(self):
        app = self.launch(one_client())
        self.desktop.hover_strip()
        app.press("Start")
        active = app.ledger_when(
            lambda ledger: "active" in ledger
            and ledger["active"]["checkpointAt"] > ledger["active"]["runningSince"],
            "a checkpoint")["active"]
        app.kill()
        recovered = self.launch().ledger()["active"]
        self.assertEqual(
            recovered["spans"],
            [{"start": active["runningSince"], "end": active["checkpointAt"]}])
        self.assertNotIn("runningSince", recovered)

    def test_a_damaged_ledger_is_told_and_left_alone(self):
        os.makedirs(self.directory)
        path = os.path.join(self.directory, "ledger.json")
        with open(path, "w", encoding="utf-8") as file:
            file.write("{ damaged")
        app = self.launch()
        self.desktop.hover_strip()
        app.find_starting("Your ledger and backup could not be read. Files have been preserved.")
        self.assertEqual(app.terminate(), 0)
        with open(path, encoding="utf-8") as file:
            self.assertEqual(file.read(), "{ damaged")

    def test_the_keyboard_stays_with_the_window_that_has_it(self):
        other = subprocess.Popen(["display", "-size", "300x200", "xc:white"])
        self.addCleanup(other.wait)
        self.addCleanup(other.terminate)
        window = wait_until(
            lambda: xdotool("search", "--pid", str(other.pid)) or xdotool("search", "ImageMagick"),
            "another window").split()[-1]
        xdotool("windowfocus", "--sync", window)
        focused = self.desktop.focused_window()
        app = self.launch(one_client())
        self.assertEqual(self.desktop.focused_window(), focused)
        self.desktop.hover_strip()
        app.press("Start")
        app.find("Pause session")
        self.assertEqual(self.desktop.focused_window(), focused)
        app.press(app.find_starting("Session title: ").get_name())
        wait_until(lambda: self.desktop.focused_window() != focused, "the keyboard in the panel")
        self.desktop.type("Escape")
        wait_until(lambda: self.desktop.focused_window() == focused, "the keyboard given back")

    def test_a_second_start_on_the_directory_ends_at_once_and_leaves_the_first_running(self):
        app = self.launch(one_client())
        second = subprocess.run(
            [self.PROGRAM, "--data-directory", self.directory], capture_output=True, text=True,
            timeout=15, check=False)
        self.assertEqual((second.returncode, second.stderr), (0, ""))
        self.assertIsNone(app.process.poll())

    def test_without_a_display_it_says_so_and_ends(self):
        environment = {name: value for name, value in os.environ.items()
                       if name not in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM")}
        refused = subprocess.run(
            [self.PROGRAM], env=environment, capture_output=True, text=True, timeout=15, check=False)
        self.assertEqual(refused.returncode, 1)
        self.assertEqual(
            refused.stderr,
            "Kestry needs a desktop to run on: neither DISPLAY nor WAYLAND_DISPLAY is set.\n")

    def test_a_panel_that_the_pointer_leaves_folds(self):
        app = self.launch(one_client())
        self.desktop.hover_strip()
        app.find("Start")
        self.desktop.leave_strip()
        wait_until(lambda: not app.shows("Start"), "a folded panel")


if __name__ == "__main__":
    unittest.main(verbosity=2)
