"""Takes a picture of every surface in each of its states, for people to look at.

Usage: shots.py DIRECTORY-OF-PROGRAMS OUTPUT-DIRECTORY [SCALE…]
"""

import json
import os
import subprocess
import sys
import tempfile
import time

from cloud_shots import take_connections
from desktop import Application, Desktop
from ledgers import identifier, now as current_date
from state_shots import take_states
from window_shots import take_window

PROGRAMS, OUTPUT = sys.argv[1], sys.argv[2]
SETTLED_SECONDS = 0.7  # longer than any animation

STRIP_AREA = (440, 0, 400, 60)
PANEL_AREA = (440, 0, 400, 150)
BUBBLE_AREA = (440, 0, 400, 240)
MENU_AREA = (440, 0, 480, 360)
SCALES = [float(each) for each in sys.argv[3:]] or (1, 1.25, 2)


def ledger(title="", running_for=None, with_clients=True):
    """Two clients and some saved time; `running_for` seconds into a session if given."""
    if not with_clients:
        return {"clients": [], "projects": [], "entries": []}
    now = current_date()
    clients = [
        {"id": identifier(), "name": "Aster Studio", "hourlyRateCents": 15000,
         "colorHex": "B7A5FF", "rateIsKnown": True, "projectsEnabled": True},
        {"id": identifier(), "name": "Northstar", "hourlyRateCents": 12500,
         "colorHex": "F0BB85", "rateIsKnown": True, "projectsEnabled": False}]
    projects = [
        {"id": identifier(), "clientID": clients[0]["id"], "name": name, "hourlyRateCents": rate,
         "rateIsKnown": known, "isClientDefault": False}
        for name, rate, known in (("Website", 15000, True), ("Brand direction", 17500, True),
                                  ("Annual report", 0, False))]
    entries = [
        {"id": identifier(), "projectID": projects[0]["id"], "title": entry_title,
         "hourlyRateCents": 15000, "spans": [{"start": now - hours * 3600,
                                              "end": now - hours * 3600 + 3600}],
         "isBillable": True, "rateIsKnown": True}
        for entry_title, hours in (("Design exploration", 30), ("Client workshop", 26))]
    content = {"clients": clients, "projects": projects, "entries": entries}
    if running_for is not None:
        content["active"] = {
            "id": identifier(), "projectID": projects[0]["id"], "title": title,
            "hourlyRateCents": 15000, "spans": [{"start": now - running_for - 60, "end": now - 60}],
            "checkpointAt": now - 60, "isBillable": True, "rateIsKnown": True}
    return content


class Shots:
    """The program on one desktop, and pictures of it under names that tell the scale."""

    def __init__(self, scale, folder):
        self.scale = scale
        self.folder = folder
        self.programs = PROGRAMS
        self.desktop = Desktop(scale, composited=True)
        self.desktop.run("xsetroot", "-solid", "#5b7f95")
        self.app = None
        self.place = None
        self.runs = 0

    def launch(self, content, *arguments, defaults="", locale="en_US.UTF-8"):
        self.quit()
        self.runs += 1
        place = os.path.join(self.folder, f"{self.scale}-{self.runs}")
        os.makedirs(os.path.join(place, "ledger"))
        os.makedirs(os.path.join(place, "config", "Kestry"))
        os.makedirs(os.path.join(place, "runtime"), mode=0o700)
        self.go_to(place)
        os.environ["LC_ALL"] = locale
        with open(os.path.join(place, "config", "Kestry", "Kestry.ini"), "w",
                  encoding="utf-8") as file:
            file.write("[General]\n" + defaults)
        with open(os.path.join(place, "ledger", "ledger.json"), "w", encoding="utf-8") as file:
            json.dump(content, file)
        self.restart(*arguments)

    def go_to(self, place):
        """What is started from now on has its files in this folder."""
        self.place = place
        os.environ["XDG_CONFIG_HOME"] = os.path.join(place, "config")
        os.environ["XDG_RUNTIME_DIR"] = os.path.join(place, "runtime")

    def restart(self, *arguments):
        self.quit()
        self.desktop.leave_strip()
        self.app = Application(
            os.path.join(PROGRAMS, "kestry"), os.path.join(self.place, "ledger"), *arguments)

    def quit(self):
        if self.app:
            self.app.kill()
        self.app = None

    def close(self):
        self.quit()
        self.desktop.close()

    def take(self, name, area):
        time.sleep(SETTLED_SECONDS)
        self.desktop.picture(os.path.join(OUTPUT, f"{name}@{self.scale:g}x.png"), *area)

    def take_alone(self, name, window):
        """One window without its frame, after a second."""
        time.sleep(1)
        subprocess.run(["import", "-silent", "-window", window,
                        os.path.join(OUTPUT, f"{name}@{self.scale:g}x.png")], check=True)

    def unfold(self):
        self.desktop.hover_strip()
        time.sleep(SETTLED_SECONDS)

    def begin_editing(self):
        title = self.app.find_starting("Session title: ")
        self.app.press(title.get_name())

    def everything(self):
        self.strip()
        self.panel()

    def strip(self):
        self.launch(ledger())
        self.take("strip-idle", STRIP_AREA)
        self.desktop.hover_strip()
        self.take("strip-hovered", PANEL_AREA)
        self.launch(ledger("Layout", running_for=3723))
        self.take("strip-paused", STRIP_AREA)
        self.unfold()
        self.app.press("Resume session")
        self.desktop.leave_strip()
        self.take("strip-running", STRIP_AREA)

    def panel(self):
        self.launch(ledger(with_clients=False))
        self.unfold()
        self.take("panel-no-clients", PANEL_AREA)
        self.launch(ledger())
        self.unfold()
        self.take("panel-idle", PANEL_AREA)
        self.app.open_menu(
            self.app.find_starting("Session project and hourly rate: ").get_name())
        self.desktop.type("Down", "Down")
        self.take("menu-target", MENU_AREA)
        self.desktop.type("Escape")
        self.launch(ledger("Layout of the annual report", running_for=360123))
        self.unfold()
        self.take("panel-paused", PANEL_AREA)
        self.app.press("Resume session")
        self.take("panel-running", PANEL_AREA)
        self.begin_editing()
        self.desktop.type("ctrl+a")
        self.desktop.type(*"Desi")
        self.take("panel-editing-with-ghost", PANEL_AREA)
        self.desktop.type("Escape")
        self.desktop.point_at(self.app.find_starting("Session title: "))
        self.desktop.click(3)
        self.app.find_menu()
        self.take("menu-title", MENU_AREA)
        self.desktop.type("Escape")
        self.long_title()
        self.failure()

    def long_title(self):
        self.launch(ledger("A second round of layout for the annual report, with the figures of "
                           "all four quarters and the chairman's foreword", running_for=125))
        self.unfold()
        self.desktop.point_at(self.app.find_starting("Session title: "))
        self.take("bubble", BUBBLE_AREA)

    def failure(self):
        self.launch(ledger("Layout", running_for=125))
        with open(os.path.join(self.app.directory, "ledger.json"), "w", encoding="utf-8") as file:
            file.write("{ damaged")
        self.unfold()
        self.app.press("Resume session")
        self.take("panel-error", PANEL_AREA)


def main():
    os.makedirs(OUTPUT, exist_ok=True)
    with tempfile.TemporaryDirectory() as folder:
        for scale in SCALES:
            shots = Shots(scale, folder)
            try:
                if scale in (1, 2):
                    shots.everything()
                take_window(shots, scale)
                if scale == 1:
                    take_states(shots)
                    take_connections(shots)
            finally:
                shots.close()
    print(f"{len(os.listdir(OUTPUT))} pictures in {OUTPUT}")


if __name__ == "__main__":
    sys.exit(main())
