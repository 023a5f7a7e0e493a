"""Pictures of the section "Connections" in its states, of the sheet that signs in, and of a conflict
that is compared. The record store is a file.
"""

import json
import os
import subprocess
import time

from desktop import wait_until
from ledgers import one_client
from window_shots import SMALLEST, THEMES, USUAL, WindowShots

SWITCH = "iCloud sync"
EMPTY = {"clients": [], "projects": [], "entries": []}


class CloudShots(WindowShots):
    """The settings of a program, and its record store."""

    def __init__(self, shots, name, content, store, **launch):
        super().__init__(shots, name, content, **launch)
        self.store = store
        self.open_settings()

    def open_settings(self):
        self.app.press("Settings")
        self.app.find("Appearance")

    def start_again(self):
        """As after a pause, in which other devices went on."""
        self.shots.restart()
        self.app = self.shots.app
        self.show_window()
        self.open_settings()

    def kestryctl(self, *words):
        return subprocess.run(
            [os.path.join(self.shots.programs, "kestryctl"), "--data-directory",
             self.app.directory, *words],
            capture_output=True, text=True, timeout=60, check=True).stdout

    def wait_for_delivery(self):
        wait_until(lambda: json.loads(self.kestryctl("sync", "status", "--json"))["pending"] == 0,
                   "the delivery")

    def wait_for_status(self, words):
        wait_until(lambda: (self.app.find(SWITCH).get_description() or "").startswith(words), words)

    def ask_to_sign_in(self):
        self.app.press("Sign in…")
        self.app.wait_for_focus("Address")
        self.keys("ctrl+a")

    def sign_in(self):
        self.ask_to_sign_in()
        self.write(self.store)
        self.keys("Return")
        self.app.find(f"Record store, {self.store}")

    def turn_on(self):
        self.app.press(SWITCH)
        self.wait_for_status("Up to date")

    def both_sizes(self, name):
        self.take(name)
        self.resize(SMALLEST)
        self.take("smallest-" + name)
        self.resize(USUAL)

    def connections(self):
        self.take("off")
        self.ask_to_sign_in()
        self.both_sizes("sign-in")
        self.write("store.example")
        self.keys("Return")
        time.sleep(0.3)
        self.both_sizes("sign-in-refused")
        self.keys("Escape")
        self.sign_in()
        self.take("signed-in")
        self.turn_on()
        self.take("up-to-date")

    def failure(self):
        path = self.store.removeprefix("sqlite:")
        os.rename(path, path + ".away")
        self.app.press("Sync now")
        self.wait_for_status("Sync needs attention")
        self.both_sizes("failure")
        os.rename(path + ".away", path)
        self.app.press("Sync now")
        self.wait_for_status("Up to date")

    def conflict(self):
        self.wait_for_status("Review sync conflicts")
        self.take("conflict")
        self.app.find("Sync details").get_component_iface().grab_focus()
        self.keys("space")
        self.app.find("Two versions need your review")
        self.app.tab_to("Keep this Mac’s version")
        self.both_sizes("conflict-compared")


def take_connections(shots):
    for theme in THEMES:
        look = {"defaults": f"appearanceMode={theme}\n"}
        name = f"connections-{theme.lower()}"
        store = f"sqlite:{shots.folder}/{theme}.sqlite"
        desk = CloudShots(shots, name, one_client(), store, **look)
        desk.connections()
        desk.failure()
        at_the_desk = shots.place
        laptop = CloudShots(shots, name, EMPTY, store, **look)
        laptop.sign_in()
        laptop.turn_on()
        laptop.kestryctl("client", "edit", "Aster Studio", "--name", "Aster & Sons")
        laptop.wait_for_delivery()
        shots.quit()
        shots.go_to(at_the_desk)
        desk.kestryctl("client", "edit", "Aster Studio", "--name", "Aster Limited")
        desk.start_again()
        desk.conflict()
