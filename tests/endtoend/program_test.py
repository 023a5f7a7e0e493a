"""What every test of the real program begins with."""

import json
import os
import subprocess
import tempfile
import unittest

from desktop import Application, Desktop


class ProgramTest(unittest.TestCase):
    """A desktop, and a data directory and settings of the test's own."""

    PROGRAM = None  # set by the test's main

    def setUp(self):
        self.desktop = self.make_desktop()
        self.addCleanup(self.desktop.close)
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        os.environ["XDG_CONFIG_HOME"] = os.path.join(folder.name, "config")
        os.environ["XDG_RUNTIME_DIR"] = os.path.join(folder.name, "runtime")
        os.mkdir(os.environ["XDG_RUNTIME_DIR"], 0o700)
        self.directory = os.path.join(folder.name, "ledger")
        self.app = None

    def make_desktop(self):
        return Desktop()

    def tearDown(self):
        if self.app and self.app.process.poll() is None:
            self.app.kill()

    def write_ledger(self, ledger):
        os.makedirs(self.directory, exist_ok=True)
        with open(os.path.join(self.directory, "ledger.json"), "w", encoding="utf-8") as file:
            json.dump(ledger, file)

    def write_settings(self, **settings):
        place = os.path.join(os.environ["XDG_CONFIG_HOME"], "Kestry")
        os.makedirs(place, exist_ok=True)
        with open(os.path.join(place, "Kestry.ini"), "w", encoding="utf-8") as file:
            file.write("[General]\n")
            file.writelines(f"{key}={value}\n" for key, value in settings.items())

    def launch(self, ledger=None, *arguments):
        if ledger:
            self.write_ledger(ledger)
        self.app = Application(self.PROGRAM, self.directory, *arguments)
        return self.app

    def kestryctl(self, *words):
        program = os.path.join(os.path.dirname(self.PROGRAM), "kestryctl")
        return subprocess.run([program, "--data-directory", self.directory, *words],
                              capture_output=True, text=True, timeout=60, check=False)
