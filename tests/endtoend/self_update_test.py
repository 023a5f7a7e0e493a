"""The real program updates itself from a real server: found, fetched, verified, installed, started.

Usage: self_update_test.py PROGRAM LAUNCHER [unittest arguments]
"""

import io
import json
import os
import subprocess
import sys
import tarfile
import time
import unittest

from desktop import Application, wait_until
from ledgers import identifier, one_client
from program_test import ProgramTest
from update_server import Installation, SigningKey, UpdateServer

ProgramTest.PROGRAM = sys.argv.pop(1)
LAUNCHER = sys.argv.pop(1)
POSTPONED = ("Update postponed. "
             "Save your changes and finish the current session before installing an update.")


class UpdatedApplication(Application):
    """The program that a launcher has started, or has become."""

    def _look_for(self, accepts):
        launcher, process = self.process.pid, self.process
        found = None
        for number in (launcher, *children(launcher)):
            self.process = type("Process", (), {"pid": number})
            found = found or super()._look_for(accepts)
        self.process = process
        return found


def children(number):
    told = subprocess.run(["ps", "--no-headers", "-o", "pid", "--ppid", str(number)],
                          capture_output=True, text=True, check=False).stdout
    return [int(each) for each in told.split()]


class SelfUpdateTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.key = SigningKey(self.folder)
        self.server = UpdateServer(self.folder)
        self.addCleanup(self.server.close)
        self.installed = Installation(
            self.folder, os.path.dirname(self.PROGRAM), LAUNCHER,
            {"KestryUpdatesEnabled": True, "SUFeedURL": self.server.url("/feed"),
             "SUPublicEDKey": self.key.public})

    def tearDown(self):
        if self.app:
            for number in children(self.app.process.pid):
                os.kill(number, 9)
        super().tearDown()

    def start(self, *arguments):
        self.app = UpdatedApplication(
            self.installed.launcher(), self.directory, *arguments,
            environment={"SSL_CERT_FILE": self.server.authority})
        return self.app

    def publish(self, version="9.0.0", inside=None, key=None, **options):
        archive = self.installed.archive(self.folder, inside or version, **options)
        self.server.announce(version, archive, (key or self.key).sign(archive))

    def check(self):
        self.write_ledger(one_client())
        self.start()
        self.app.press("Open Kestry")
        self.app.find("Overview")
        self.desktop.type("ctrl+comma")
        self.app.find("Theme")
        self.app.tab_to("Check now")
        self.desktop.type("space")

    def install(self):
        self.check()
        self.app.press("Install and Relaunch")

    def ledger_bytes(self):
        with open(os.path.join(self.directory, "ledger.json"), "rb") as file:
            return file.read()

    def dialog_says(self, words):
        wait_until(lambda: words in self.app.texts(), words)

    def assert_refused(self, words):
        self.install()
        before = self.ledger_bytes()
        self.dialog_says(words)
        self.assertEqual(self.installed.current(), "1.0.0")
        self.assertEqual(self.installed.versions(), ["1.0.0"])
        self.assertFalse(os.path.exists(self.installed.path("trial")))
        self.assertEqual(self.ledger_bytes(), before)

    def test_a_new_version_is_installed_and_takes_over(self):
        self.publish()
        self.install()
        wait_until(lambda: self.installed.current() == "9.0.0", "the new version")
        self.app.find("Open Kestry")
        wait_until(lambda: not os.path.exists(self.installed.path("trial")), "its confirmation")
        wait_until(lambda: self.installed.versions() == ["9.0.0"], "the end of the one before")
        running = [os.readlink(f"/proc/{number}/exe") for number in children(self.app.process.pid)]
        self.assertEqual(running, [self.installed.path("versions", "9.0.0", "bin", "kestry")])
        self.assertEqual(len(self.app.ledger()["clients"]), 1)
        self.assertEqual(self.app.terminate(), 0)

    def test_no_request_tells_who_asks(self):
        self.publish()
        self.install()
        wait_until(lambda: self.installed.current() == "9.0.0", "the new version")
        self.assertEqual([path for path, _ in self.server.asked], ["/feed", "/archive"])
        for _, headers in self.server.asked:
            self.assertEqual(headers["User-Agent"], "Kestry")
            self.assertFalse({"Cookie", "Referer", "Authorization"} & set(headers))

    def test_a_running_session_refuses_a_check(self):
        self.publish()
        self.write_ledger(one_client())
        self.start()
        self.assertEqual(self.kestryctl("start", "aster").returncode, 0)
        self.app.press("Open Kestry")
        self.app.find("Overview")
        self.desktop.type("ctrl+comma")
        self.app.find("Theme")
        self.app.tab_to("Check now")
        self.desktop.type("space")
        self.app.find(POSTPONED)
        self.assertEqual(self.server.asked, [])
        self.assertEqual(self.kestryctl("stop").returncode, 0)
        self.app.press("OK")
        self.app.press("Check now")
        self.app.find("Install and Relaunch")

    def test_a_session_begun_meanwhile_keeps_the_program(self):
        self.publish()
        self.check()
        self.app.find("Install and Relaunch")
        self.assertEqual(self.kestryctl("start", "aster").returncode, 0)
        self.app.press("Install and Relaunch")
        self.app.find(POSTPONED)
        self.assertEqual(self.installed.current(), "1.0.0")
        self.assertIn("runningSince", self.app.ledger()["active"])

    def test_a_version_that_does_not_start_gives_way_to_the_one_before(self):
        tried = os.path.join(self.folder, "tried")
        self.publish(script=f"touch '{tried}'; exit 3")
        self.install()
        wait_until(lambda: os.path.exists(tried) and self.installed.current() == "1.0.0",
                   "the version before")
        self.app.press("Open Kestry")
        self.dialog_says("Version 9.0.0 did not start. Version 1.0.0 is in use again.")
        self.assertEqual(self.installed.current(), "1.0.0")
        self.assertEqual(len(self.app.ledger()["clients"]), 1)

    def test_an_archive_signed_by_another_key_is_refused(self):
        os.mkdir(os.path.join(self.folder, "other"))
        self.publish(key=SigningKey(os.path.join(self.folder, "other")), script="exit 0")
        self.assert_refused(
            "The new version was refused: it isn't signed by those who make Kestry.")

    def test_an_old_signed_archive_under_a_new_name_is_refused(self):
        self.publish("9.0.0", inside="0.9.0", script="exit 0")
        self.assert_refused(
            "The new version was refused: it was announced as 9.0.0, and it is 0.9.0.")

    def test_a_link_out_of_the_archive_is_refused(self):
        def add_link(archive):
            link = tarfile.TarInfo("escape")
            link.type, link.linkname = tarfile.SYMTYPE, "../../.."
            archive.addfile(link)
        self.publish(script="exit 0", extra=add_link)
        self.assert_refused("The new version was refused: the link “escape” in its archive leads "
                            "out of its folder.")

    def test_a_path_out_of_the_archive_is_refused(self):
        def add_file(archive):
            file = tarfile.TarInfo("../1.0.0/bin/kestry")
            file.size, file.mode = 4, 0o755
            archive.addfile(file, io.BytesIO(b"evil"))
        self.publish(script="exit 0", extra=add_file)
        self.assert_refused("The new version was refused: “../1.0.0/bin/kestry” in its archive "
                            "leads out of its folder.")

    def test_an_endless_archive_is_broken_off(self):
        def pour(request):
            request.send_response(200)
            request.end_headers()
            try:
                while True:
                    request.wfile.write(bytes(65536))
            except OSError:
                return
        self.publish(script="exit 0")
        self.server.pages["/archive"] = pour
        self.assert_refused("The new version was refused: it is larger than announced.")

    def test_a_redirect_to_a_connection_that_is_not_secure_is_refused(self):
        def lead_away(request):
            request.send_response(302)
            request.send_header("Location", "http://127.0.0.1:1/archive")
            request.send_header("Content-Length", "0")
            request.end_headers()
        self.publish(script="exit 0")
        self.server.pages["/archive"] = lead_away
        self.assert_refused("The update server leads to a connection that isn't secure.")

    def test_a_kill_while_it_downloads_leaves_the_installed_version(self):
        def stall(request):
            request.send_response(200)
            request.send_header("Content-Length", str(len(archive)))
            request.end_headers()
            request.wfile.write(archive[:len(archive) // 2])
            request.wfile.flush()
            time.sleep(20)
        self.publish()
        archive = self.server.pages["/archive"]
        self.server.pages["/archive"] = stall
        self.install()
        wait_until(lambda: os.path.exists(self.installed.path("updates", "archive")), "a part of it")
        self.app.kill()
        self.assertEqual(self.installed.current(), "1.0.0")
        self.start()
        wait_until(lambda: not os.path.exists(self.installed.path("updates")), "order")
        self.assertEqual(self.installed.versions(), ["1.0.0"])

    def test_a_session_runs_on_through_an_agents_replacement(self):
        self.write_ledger(one_client())
        self.start()
        self.assertEqual(self.kestryctl("start", "aster").returncode, 0)
        token = identifier()
        with open(os.path.join(self.directory, "update-request"), "w", encoding="utf-8") as file:
            file.write(token)
        subprocess.run([self.installed.launcher(), "--data-directory", self.directory,
                        "kestry://update?token=" + token], check=True, timeout=20)
        self.assertEqual(self.app.process.wait(20), 0)
        left = self.app.ledger()["active"]
        self.installed.lay(self.installed.path("versions", "9.0.0"), "9.0.0")
        with open(self.installed.path("trial"), "w", encoding="utf-8") as file:
            file.write("9.0.0\n1.0.0\n")
        os.symlink("versions/9.0.0", self.installed.path("current.new"))
        os.rename(self.installed.path("current.new"), self.installed.path("current"))
        self.start("--update-token", token)
        ready = os.path.join(self.directory, "update-ready.json")
        wait_until(lambda: os.path.exists(ready), "the acknowledgement")
        with open(ready, encoding="utf-8") as file:
            told = json.load(file)
        self.assertEqual(told["token"], token)
        self.assertEqual(told["bundlePath"], self.installed.launcher())
        self.assertEqual(self.app.ledger()["active"]["runningSince"], left["runningSince"])
        wait_until(lambda: self.installed.versions() == ["9.0.0"], "the confirmation")


if __name__ == "__main__":
    unittest.main()
