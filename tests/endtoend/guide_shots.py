"""Takes the pictures of the guide, the README and the shops, at their usual size.

Usage: guide_shots.py DIRECTORY-OF-PROGRAMS OUTPUT-DIRECTORY
"""

import json
import os
import subprocess
import sys
import tempfile
import time

from desktop import xdotool
from ledgers import now
from shots import Shots
from state_shots import normal, wait_between_seconds
from window_shots import WindowShots

PANEL = (440, 0, 400, 130)
INSIDE_THE_PANEL = (600, 112)  # where nothing shows a tip
SIZE = (1200, 740)
SMALL = (960, 560)


class GuideShots(WindowShots):
    """The window without its frame, in few colours, so that a picture is small."""

    def take(self, name, size=SIZE, has_ledger=True):
        self.resize(size)
        time.sleep(1)  # the bars rise
        if has_ledger:
            wait_between_seconds(self.app)
            time.sleep(1)
        path = os.path.join(OUTPUT, f"{name}.png")
        subprocess.run(["import", "-silent", "-window", self.window, path], check=True)
        fewer_colors(path)


def fewer_colors(path):
    subprocess.run(["mogrify", "-strip", "+dither", "-colors", "160", "-define",
                    "png:compression-level=9", "-define", "png:exclude-chunks=date,time",
                    f"PNG8:{path}"], check=True)


def working():
    content, _ = normal()
    return content


def interrupted():
    """A session ran when the program ended without a word."""
    content = working()
    content["active"]["spans"] = []
    content["active"]["runningSince"] = now() - 3785
    content["active"]["checkpointAt"] = now() - 60
    return content


def panel(shots):
    shots.launch(working())
    shots.unfold()
    shots.app.press("Resume session")
    xdotool("mousemove", *map(str, INSIDE_THE_PANEL))
    wait_between_seconds(shots.app)
    time.sleep(2)
    path = os.path.join(OUTPUT, "panel.png")
    shots.desktop.picture(path, *PANEL)
    fewer_colors(path)


def week(shots):
    window = GuideShots(shots, "guide", working(), defaults="appearanceMode=Dark\n")
    window.keys("ctrl+t")  # the session goes on
    window.take("overview")
    window.app.press("Sessions")
    window.app.find("Search sessions")
    window.keys("ctrl+f")
    window.write("design")
    window.take("sessions")


def month(shots):
    window = GuideShots(shots, "guide", working(), defaults="appearanceMode=Light\n")
    window.app.press("Aster Studio")
    window.app.find("Edit client")
    window.take("client")


def crash(shots):
    window = GuideShots(shots, "guide", interrupted(), defaults="appearanceMode=Light\n")
    window.take("after-a-crash", SMALL)


def damage(shots):
    shots.launch(working(), defaults="appearanceMode=Light\n")
    shots.quit()
    ledger = os.path.join(shots.place, "ledger")
    with open(os.path.join(ledger, "ledger.backup.json"), "w", encoding="utf-8") as file:
        json.dump(working(), file)
    with open(os.path.join(ledger, "ledger.json"), "w", encoding="utf-8") as file:
        file.write("{ damaged")
    shots.restart()
    window = GuideShots.__new__(GuideShots)
    window.shots, window.desktop, window.app = shots, shots.desktop, shots.app
    window.show_window()
    window.take("damaged", SMALL, has_ledger=False)


def main():
    os.makedirs(OUTPUT, exist_ok=True)
    with tempfile.TemporaryDirectory() as folder:
        shots = Shots(1, folder)
        try:
            for take in (panel, week, month, crash, damage):
                take(shots)
        finally:
            shots.close()


if __name__ == "__main__":
    PROGRAMS, OUTPUT = sys.argv[1], sys.argv[2]
    sys.exit(main())
