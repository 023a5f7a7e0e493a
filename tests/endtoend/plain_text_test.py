"""Names and titles that hold markup, wherever the program shows them.

Usage: plain_text_test.py PROGRAM [unittest arguments]
"""

import http.server
import sys
import threading
import time
import unittest

from desktop import wait_until
from ledgers import identifier, one_client
from program_test import ProgramTest

ProgramTest.PROGRAM = sys.argv.pop(1)

TIP_SECONDS = 3  # longer than a tip waits
NO_TIP = (487, 60)  # the left edge of the panel


class Listener:
    """A server on this machine that only notes what it is asked for."""

    def __init__(self):
        self.asked = asked = []

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                asked.append(self.path)
                self.send_error(404)

            def log_message(self, *arguments):
                pass

        self.server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        threading.Thread(target=self.server.serve_forever, daemon=True).start()

    def close(self):
        self.server.shutdown()
        self.server.server_close()

    def picture(self, name):
        """Markup that fetches from here wherever it is obeyed."""
        port = self.server.server_address[1]
        return f'<b>{name}</b><img src="http://127.0.0.1:{port}/{name}.png">'


class PlainTextTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.listener = Listener()
        self.addCleanup(self.listener.close)
        self.client = self.listener.picture("client")
        self.project = self.listener.picture("project")
        self.title = self.listener.picture("title") * 3

    def ledger(self):
        ledger = one_client()
        ledger["clients"][0].update(name=self.client, projectsEnabled=True)
        ledger["projects"] = [
            {"id": identifier(), "clientID": ledger["clients"][0]["id"], "name": self.project,
             "hourlyRateCents": 15000, "rateIsKnown": True, "isClientDefault": False}]
        return ledger

    def session(self, ledger):
        return {"id": identifier(), "projectID": ledger["projects"][0]["id"], "title": self.title,
                "hourlyRateCents": 15000, "spans": [], "checkpointAt": 1000.0,
                "isBillable": True, "rateIsKnown": True}

    def test_the_panel_its_tip_and_its_menu_fetch_nothing(self):
        app = self.launch(self.ledger())
        self.desktop.hover_strip()
        target = app.find_starting("Session project and hourly rate: " + self.client)
        self.desktop.point(*NO_TIP)
        time.sleep(1)  # until the panel stands still, and the strip's tip has gone
        self.desktop.point_at(target)
        wait_until(app.shows_tip, "a tip")
        app.find_starting(self.client + "\n")
        time.sleep(1)
        self.desktop.point(*NO_TIP)
        wait_until(lambda: not app.shows_tip(), "no tip")
        app.open_menu(target.get_name())
        self.assertEqual(app.entries()[0], self.client)
        time.sleep(1)
        self.assertEqual(self.listener.asked, [])

    def test_the_window_and_its_form_fetch_nothing(self):
        app = self.launch(self.ledger())
        app.press("Open Kestry")
        app.press(self.client)
        app.open_menu("Main menu")
        app.choose("New project")
        app.find("Project name")
        time.sleep(1)
        self.assertEqual(self.listener.asked, [])

    def test_a_session_and_the_bubble_of_its_title_fetch_nothing(self):
        ledger = self.ledger()
        ledger["active"] = self.session(ledger)
        app = self.launch(ledger)
        self.desktop.hover_strip()
        title = app.find("Session title: " + self.title)
        time.sleep(1)  # until it stands still
        self.desktop.point_at(title)
        time.sleep(TIP_SECONDS)
        app.press("Open Kestry")
        app.find("Overview")
        self.assertEqual(self.listener.asked, [])


if __name__ == "__main__":
    unittest.main(verbosity=2)
