"""The settings page of the real program, by keyboard and accessibility tree.

Usage: settings_test.py PROGRAM [unittest arguments]
"""

import os
import subprocess
import sys
import unittest

from desktop import Atspi, wait_until
from folder_portal import FolderPortal
from ledgers import one_client
from program_test import ProgramTest
from status_area import StatusArea

ProgramTest.PROGRAM = sys.argv.pop(1)
SECONDS = 20
HEX_WORDS = "Enter a six-digit hex color, like #CBDDA5."
QUESTION = "Restore last backup?"


class SettingsTest(ProgramTest):
    def open_settings(self, ledger=None):
        self.launch(ledger or one_client())
        self.app.press("Open Kestry")
        self.app.find("Overview")
        self.desktop.type("ctrl+comma")
        self.app.find("Theme")
        return self.app

    def settings(self):
        place = os.path.join(os.environ["XDG_CONFIG_HOME"], "Kestry", "Kestry.ini")
        with open(place, encoding="utf-8") as file:
            return dict(line.strip().split("=", 1) for line in file if "=" in line)

    def wait_for_setting(self, key, value):
        def attempt():
            try:
                return self.settings().get(key) == value
            except FileNotFoundError:
                return False
        wait_until(attempt, f"{key}={value}")

    def is_checked(self, name):
        return self.app.find(name).get_state_set().contains(Atspi.StateType.CHECKED)

    def wait_for_check(self, name, checked):
        wait_until(lambda: self.is_checked(name) == checked, f"{name} {checked}")

    def colours(self, *area):
        """How often each colour is in a part of the screen."""
        path = os.path.join(self.folder, "picture.png")
        self.desktop.picture(path, *area)
        told = subprocess.run(
            ["convert", path, "-format", "%c", "-depth", "8", "histogram:info:"],
            check=True, capture_output=True, text=True).stdout
        found = {}
        for line in told.splitlines():
            if "#" in line:
                found[line.split("#", 1)[1][:6].upper()] = int(line.split(":", 1)[0])
        return found

    def wait_for_colour(self, colour, most, *area):
        wait_until(lambda: self.colours(*area).get(colour, 0) >= most, f"the colour {colour}")

    # Appearance.

    def test_the_theme_changes_the_window_at_once_and_leaves_the_panels_dark(self):
        self.open_settings()
        whole = (0, 60, 1280, 740)
        self.wait_for_colour("101112", 100000, *whole)
        self.app.press("Light")
        self.wait_for_colour("F7F8FA", 100000, *whole)
        self.wait_for_setting("appearanceMode", "Light")
        self.wait_for_check("Light", True)
        self.app.tab_to("Light")
        self.desktop.type("Right")
        self.wait_for_colour("101112", 100000, *whole)
        self.wait_for_setting("appearanceMode", "Dark")

    def test_an_accent_changes_the_window_and_the_panels_at_once(self):
        self.open_settings()
        self.desktop.hover_strip()
        self.app.find("Start")
        panel = (480, 40, 320, 50)
        before = self.colours(*panel)
        self.app.tab_to("Kestry accent")
        self.desktop.type("Right", "Right", "space")
        self.wait_for_setting("accentColorHex", "48A7FF")
        self.wait_for_colour("48A7FF", 100, 0, 100, 1280, 700)
        wait_until(lambda: self.colours(*panel) != before, "another accent in the panel")
        self.wait_for_check("Blue accent", True)

    def test_a_colour_of_ones_own_is_written_or_picked(self):
        self.open_settings()
        self.app.tab_to("Custom accent color")
        self.desktop.type("space")
        self.app.wait_for_focus("Choose custom accent color")
        self.app.tab_to("Accent hex color")
        self.desktop.type("ctrl+a")
        self.desktop.write("#12")
        self.app.find(HEX_WORDS)
        self.desktop.write("3456")
        self.wait_for_setting("accentColorHex", "123456")
        self.assertFalse(self.app.shows(HEX_WORDS))
        self.desktop.type("shift+Tab")
        self.app.wait_for_focus("Hue")
        self.desktop.type("Right")
        wait_until(lambda: self.settings()["accentColorHex"] != "123456", "another hue")
        self.desktop.type("Escape")
        self.app.wait_for_focus("Custom accent color")
        self.assertFalse(self.app.shows("Custom accent"))

    # Workspace.

    def test_the_notch_goes_and_comes(self):
        app = self.open_settings()
        self.app.tab_to("Notch controls")
        self.desktop.type("space")
        wait_until(lambda: not app.shows("Open Kestry"), "no strip")
        self.wait_for_setting("notchEnabled", "false")
        self.desktop.type("space")
        app.find("Open Kestry")
        self.wait_for_setting("notchEnabled", "true")

    def test_the_notch_that_is_shown_from_elsewhere_throws_its_switch(self):
        app = self.open_settings()
        app.press("Notch controls")
        self.wait_for_check("Notch controls", False)
        self.desktop.type("ctrl+alt+n")
        self.wait_for_check("Notch controls", True)
        app.find("Open Kestry")

    def test_the_item_in_the_status_area_comes_and_goes(self):
        with StatusArea() as area:
            self.open_settings()
            self.assertEqual(area.items(), [])
            self.app.tab_to("Kestry in menu bar")
            self.desktop.type("space")
            area.wait_for_item(SECONDS)
            self.desktop.type("space")
            wait_until(lambda: not area.items(), "no item")
            self.wait_for_setting("menuBarEnabled", "false")

    def test_a_switch_thrown_in_the_tray_menu_shows_at_once(self):
        with StatusArea() as area:
            self.write_settings(menuBarEnabled="true")
            app = self.open_settings()
            item = area.wait_for_item(SECONDS)
            for name in ("Notch controls", "Kestry in menu bar"):
                self.wait_for_check(name, True)
            app.press("Notch controls")
            self.wait_for_check("Notch controls", False)
            wait_until(lambda: not app.shows("Open Kestry"), "no strip")
            area.choose(item, "Show notch controls")
            self.wait_for_check("Notch controls", True)
            app.find("Open Kestry")

    # Software updates.

    def test_a_build_without_updates_says_so_and_offers_nothing(self):
        app = self.open_settings()
        app.tab_to("Start with the desktop")  # which brings what is above it into view, too
        app.find("Check for updates, Software updates are not enabled in this build.")
        self.assertEqual(app.find("Check automatically").get_description(),
                         "You choose when to install. Not available")
        self.assertEqual(app.find("Check now").get_description(), "Not available")
        for name in ("Check automatically", "Check now"):
            app.press(name)
        self.assertFalse(self.is_checked("Check automatically"))
        app.find("Check for updates, Software updates are not enabled in this build.")

    # Data.

    def test_the_export_row_follows_the_ledger(self):
        app = self.open_settings()
        self.app.tab_to("Export")  # which brings the row into view
        app.find("Export sessions, 0 saved sessions · CSV")
        self.desktop.type("ctrl+t", "ctrl+shift+s")
        app.find("Export sessions, 1 saved sessions · CSV")

    def test_the_folder_is_opened_by_the_portal(self):
        with FolderPortal() as portal:
            self.open_settings()
            self.app.tab_to("Open folder")
            self.desktop.type("space")
            self.assertEqual(portal.folder(), os.path.realpath(self.directory))

    def test_before_the_first_save_there_is_no_folder_to_open(self):
        self.launch()
        self.app.press("Open Kestry")
        self.app.find("Overview")
        self.desktop.type("ctrl+comma")
        self.app.find("Theme")
        self.app.tab_to("Open folder")
        self.desktop.type("space")
        self.app.find_starting("Your time needs attention. Your data folder will be created when "
                               "you save your first client.")
        self.assertFalse(os.path.exists(self.directory))

    def make_backup(self):
        """The ledger of one client, damaged, beside a backup of it."""
        self.write_ledger(one_client())
        os.rename(os.path.join(self.directory, "ledger.json"),
                  os.path.join(self.directory, "ledger.backup.json"))
        with open(os.path.join(self.directory, "ledger.json"), "w", encoding="utf-8") as file:
            file.write("{ damaged")

    def test_a_backup_is_restored_after_a_question(self):
        self.make_backup()
        app = self.launch()
        app.press("Open Kestry")
        app.press("OK")
        self.desktop.type("ctrl+comma")
        self.app.tab_to("Restore…")
        app.find("Restore backup, A saved backup is available")
        self.desktop.type("space")
        app.find(QUESTION)
        app.wait_for_focus("Cancel")
        self.desktop.type("space")
        wait_until(lambda: not app.shows(QUESTION), "no question")
        with open(os.path.join(self.directory, "ledger.json"), encoding="utf-8") as file:
            self.assertEqual(file.read(), "{ damaged")
        app.wait_for_focus("Restore…")
        self.desktop.type("space")
        app.wait_for_focus("Cancel")
        self.desktop.type("Left", "space")
        wait_until(lambda: not app.shows("Restore…"), "no backup to restore")
        self.assertEqual(app.ledger()["clients"][0]["name"], "Aster Studio")
        kept = [name for name in os.listdir(self.directory) if name.startswith("ledger.corrupt-")]
        self.assertEqual(len(kept), 1)

    # Desktop.

    def test_the_start_with_the_desktop_is_a_file_and_read_live(self):
        app = self.open_settings()
        autostart = os.path.join(
            os.environ["XDG_CONFIG_HOME"], "autostart", "org.kestry.Kestry.desktop")
        app.tab_to("Start with the desktop")  # which brings the row into view
        app.press("Start with the desktop")
        wait_until(lambda: os.path.exists(autostart), "a file")
        with open(autostart, encoding="utf-8") as file:
            self.assertIn(f'Exec="{os.path.realpath(self.PROGRAM)}"\n', file.read())
        self.wait_for_check("Start with the desktop", True)
        os.remove(autostart)
        self.wait_for_check("Start with the desktop", False)

    def test_the_strip_stands_where_it_is_wanted(self):
        app = self.open_settings()
        strip = lambda: app.find("Open Kestry").get_extents(Atspi.CoordType.SCREEN)
        self.assertEqual(strip().x, 549)
        self.app.tab_to("Center")
        self.desktop.type("Left")
        wait_until(lambda: strip().x == 6, "the strip at the left")
        self.desktop.type("Right", "Right")
        wait_until(lambda: strip().x + strip().width == 1274, "the strip at the right")
        self.wait_for_setting("panelSide", "right")
        app.open_menu("Screen of the panel: Primary screen")
        self.assertEqual(app.entries()[:2], ["Primary screen", "Screen with the pointer"])
        app.choose("Screen with the pointer")
        app.find("Screen of the panel: Screen with the pointer")
        self.wait_for_setting("panelScreen", "pointer")

    def test_a_screen_that_is_gone_is_told_and_the_primary_one_has_the_strip(self):
        self.write_settings(panelScreen="screen:HDMI-9")
        app = self.open_settings()
        self.app.tab_to("Center")  # which brings the row into view
        app.find("Where the panel stands, Not connected. Until it is, the primary screen shows your "
                 "timer")
        self.assertEqual(app.find("Open Kestry").get_extents(Atspi.CoordType.SCREEN).x, 549)

    def test_all_keys_are_shown_by_f1(self):
        app = self.open_settings()
        for key in ("F1", "ctrl+question"):
            self.desktop.type(key)
            app.find("New client, Ctrl+N")
            app.find("Keyboard shortcuts, F1 or Ctrl+?")
            self.desktop.type("ctrl+n")  # waits for the sheet
            self.desktop.type("Escape")
            wait_until(lambda: not app.shows("New client, Ctrl+N"), "no sheet")
            self.assertFalse(app.shows("Client name"))
        self.app.tab_to("Show keys")
        self.desktop.type("Return")
        app.find("New client, Ctrl+N")

    # The rest.

    def test_the_notes_open_and_what_has_the_keyboard_is_on_the_screen(self):
        app = self.open_settings()
        self.app.tab_to("How tracking works")
        self.desktop.type("space")
        app.find("Sleep & quit, Pauses the timer until you resume.")
        app.find_starting("Kestry · ")
        header = app.find("How tracking works").get_extents(Atspi.CoordType.SCREEN)
        self.assertLess(header.y + header.height, 800)

    def test_every_control_is_reached_by_the_keyboard(self):
        self.open_settings()
        for name in ("Dark", "Kestry accent", "Custom accent color", "Notch controls",
                     "Kestry in menu bar", "Start with the desktop",
                     "Screen of the panel: Primary screen", "Center", "Show keys", "Export",
                     "Open folder", "How tracking works"):
            self.app.tab_to(name)


if __name__ == "__main__":
    unittest.main(verbosity=2)
