"""Two machines that share a server, as their user sees them. See on_server.py for how to start it."""

from cloud_machine import Morning
from desktop import WAIT_SECONDS, named, wait_until
from on_server import OnServer, main

RESTORED = "The record store was restored from a backup or made anew, "


class MorningOnServerTest(Morning, OnServer):
    def test_a_server_that_went_back_in_time_gets_the_records_again(self):
        self.desk, self.laptop = self.two_machines()
        self.desk.add("Before")
        self.desk.wait_for_delivery()
        self.store.back_up()
        self.desk.add("After")
        self.desk.wait_for_delivery()
        self.laptop.wait_for_titles("Before", "After")
        self.store.restore()
        for machine in (self.desk, self.laptop):
            self.wait_until_the_loss_is_believed(machine)
        for machine in (self.desk, self.laptop):
            machine.press("Upload this device’s records again")
            machine.wait_for_status("Up to date")
        self.ledgers_are_equal("Before", "After")

    @staticmethod
    def wait_until_the_loss_is_believed(machine):
        """One machine of a cluster may only lag behind, so that it takes a minute."""
        def attempt():
            machine.sync()
            return machine.app.find_where(lambda each: named(each).startswith(RESTORED))
        wait_until(attempt, RESTORED, seconds=60 + WAIT_SECONDS)
        machine.wait_for_failure(RESTORED)

    def test_signing_out_in_the_middle_of_an_upload_loses_nothing(self):
        self.desk, self.laptop = self.two_machines()
        with self.store.stuck("_bulk_docs") as is_stuck:
            self.desk.add("Proofs")
            wait_until(is_stuck, "a stuck upload")
            self.desk.sign_out()
            self.assertTrue(self.desk.status().startswith("iCloud sync is off"))
        self.desk.sign_in_by_command(self.store)
        self.desk.turn_on()
        self.laptop.wait_for_titles("Proofs")
        self.ledgers_are_equal("Proofs")


if __name__ == "__main__":
    main()
