"""Two machines that share a record store in a file, as their user sees them.

Usage: cloud_test.py PROGRAM [unittest arguments]
"""

import os
import stat
import sys
import unittest

from cloud_machine import CloudTest, Morning
from program_test import ProgramTest
from record_store import SqliteStore

ProgramTest.PROGRAM = sys.argv.pop(1)


class MorningOnFileTest(Morning, CloudTest):
    def setUp(self):
        super().setUp()
        self.store = SqliteStore(self.folder)

    def test_the_file_is_its_users_alone(self):
        self.one_machine()
        mode = os.stat(self.store.path).st_mode
        self.assertEqual(stat.S_IMODE(mode), 0o600)

    def test_a_program_that_is_killed_after_each_change_goes_on_where_it_was(self):
        desk, laptop = self.two_machines()
        name = "Aster Studio"
        for number in range(4):
            laptop.kestryctl("client", "edit", name, "--name", f"Aster {number}")
            name = f"Aster {number}"
            laptop.kill()
            laptop.start()
        laptop.wait_for_client("Aster 3")
        desk.wait_for_client("Aster 3")


if __name__ == "__main__":
    unittest.main()
