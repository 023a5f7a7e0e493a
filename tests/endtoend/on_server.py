"""What a test of programs on a server begins with.

Usage: NAME_test.py PROGRAM DOUBLE [unittest arguments]
       NAME_test.py PROGRAM --server URL --admin NAME [unittest arguments] < password
"""

import argparse
import sys
import unittest

from cloud_machine import CloudTest
from couch_server import Couch, Double
from program_test import ProgramTest
from record_store import CouchStore
from secret_service import SecretService


class OnServer(CloudTest):
    """One user's database, on a desktop that keeps passwords."""

    KEEPER = "open"
    SERVER = None  # set by `main`

    def setUp(self):
        super().setUp()
        self.secrets = self.enterContext(SecretService(self.KEEPER))
        self.store = CouchStore(self.SERVER)
        self.addCleanup(self.store.close)

    def account(self, machine):
        return machine.told()["account"]


def server_of_this_run():
    if not sys.argv[1].startswith("--"):
        return Double(sys.argv.pop(1))
    words = argparse.ArgumentParser()
    words.add_argument("--server", required=True)
    words.add_argument("--admin", required=True)
    told, sys.argv[1:] = words.parse_known_args()
    return Couch(told.server, told.admin, sys.stdin.readline().rstrip("\n"))


def main():
    """Runs the tests of the script that was started."""
    ProgramTest.PROGRAM = sys.argv.pop(1)
    OnServer.SERVER = server_of_this_run()
    try:
        unittest.main()
    finally:
        OnServer.SERVER.close()
