"""What tests begin with that set the program's clock."""

import os
import subprocess

from program_test import ProgramTest


class SetClockTest(ProgramTest):
    """The program on a clock that the test sets, in a time zone that the test chooses."""

    LIBRARY = None  # sets the clock of the program that loads it; set by the test's main

    def setUp(self):
        super().setUp()
        self.clock = os.path.join(self.folder, "clock")
        self.set_clock_forward(0)
        self.set_environment(TZ="UTC", KESTRY_TEST_CLOCK=self.clock)

    def set_environment(self, **variables):
        before = dict(os.environ)
        os.environ.update(variables)

        def put_back():
            os.environ.clear()
            os.environ.update(before)
        self.addCleanup(put_back)

    def set_clock_forward(self, seconds):
        with open(self.clock + ".new", "w", encoding="utf-8") as file:
            file.write(f"{seconds}\n")
        os.replace(self.clock + ".new", self.clock)

    def launch_on_the_clock(self, ledger):
        os.environ["LD_PRELOAD"] = self.LIBRARY
        app = self.launch(ledger)
        del os.environ["LD_PRELOAD"]
        return app

    def kestryctl(self, *words):
        """What a command says that is carried out."""
        program = os.path.join(os.path.dirname(self.PROGRAM), "kestryctl")
        return subprocess.run([program, "--data-directory", self.directory, *words], text=True,
                              capture_output=True, timeout=60, check=True).stdout
