"""What a test of two machines begins with: programs with a ledger, settings and an account each."""

import json
import os
import subprocess

from desktop import Application, Atspi, named, wait_until, xdotool
from ledgers import one_client
from program_test import ProgramTest

SWITCH = "iCloud sync"
# Names as people have them.
SONS = "Aster & Söhne 🎈"
LETTERS = "رسائل"


class Machine:
    """A program with a data directory and settings of its own."""

    def __init__(self, test, name, ledger=None):
        self.test = test
        self.home = os.path.join(test.folder, name)
        self.directory = os.path.join(self.home, "ledger")
        self.environment = {"HOME": self.home,
                            "XDG_CONFIG_HOME": os.path.join(self.home, "config"),
                            "XDG_RUNTIME_DIR": os.path.join(self.home, "runtime")}
        os.makedirs(self.directory)
        os.mkdir(self.environment["XDG_RUNTIME_DIR"], 0o700)
        if ledger:
            test.directory = self.directory
            test.write_ledger(ledger)
        self.start()

    def start(self):
        self.app = Application(self.test.PROGRAM, self.directory, environment=self.environment)
        self.test.addCleanup(self.kill)
        self.app.press("Open Kestry")
        self.app.find("Overview")
        self.app.press("Settings")
        self.app.find("Theme")

    def kill(self):
        if self.app.process.poll() is None:
            self.app.kill()

    def run_kestryctl(self, *words, password=None):
        program = os.path.join(os.path.dirname(self.test.PROGRAM), "kestryctl")
        return subprocess.run([program, "--data-directory", self.directory, *words],
                              input=password, capture_output=True, text=True, timeout=60,
                              check=False, env={**os.environ, **self.environment})

    def kestryctl(self, *words, password=None):
        result = self.run_kestryctl(*words, password=password)
        self.test.assertEqual(result.returncode, 0, result.stderr)
        return result.stdout

    def come_to_front(self):
        """What is typed goes to this program's window."""
        # Without --all it would be any window of the program or of this name. The strip, which no
        # window manager frames, comes first.
        window = xdotool("search", "--all", "--onlyvisible", "--pid", str(self.app.process.pid),
                         "--name", "^Kestry$").split()[-1]
        xdotool("windowactivate", "--sync", window, "windowraise", window)
        wait_until(lambda: self.test.desktop.focused_window() == window, "the window in front")
        wait_until(self.app.is_active, "a window that knows that it is in front")

    def press(self, name):
        """Of the window in front, as a screen reader does."""
        self.come_to_front()
        self.app.press(name)

    def press_by_key(self, name):
        """Goes to a button by the Tab key, and presses it."""
        self.come_to_front()
        self.app.tab_to(name)
        self.test.desktop.type("space")

    # The account.

    def open_sign_in(self, press=None):
        (press or self.press)("Sign in…")
        self.app.find("Address")

    def enter(self, field, text):
        self.app.tab_to(field)
        self.test.desktop.type("ctrl+a")
        self.test.desktop.write(text)

    def enter_account(self, store):
        self.enter("Address", store.address)
        if store.user:
            self.enter("User", store.user)
            self.enter("Password", store.password)
        self.test.desktop.type("Return")

    def sign_in_by_sheet(self, store):
        self.open_sign_in()
        self.enter_account(store)

    def sign_in(self, store):
        self.sign_in_by_sheet(store)
        self.app.find(self.account_row(store))

    def sign_in_by_command(self, store):
        words = ["--user", store.user, "--password-stdin"] if store.user else []
        self.kestryctl("sync", "sign-in", store.address, *words, password=store.password)
        self.app.find(self.account_row(store))

    @staticmethod
    def account_row(store):
        return "Record store, " + (f"{store.user} · " if store.user else "") + store.address

    def sign_out(self):
        self.app.press("Sign out")
        self.app.find("Record store, Not signed in")
        wait_until(lambda: not self.is_on(), "off")

    # Replication.

    def is_on(self):
        states = self.app.find(SWITCH).get_state_set()
        return states.contains(Atspi.StateType.CHECKED)

    def turn_on(self):
        self.app.press(SWITCH)
        self.wait_for_status("Up to date")

    def status(self):
        return self.app.find(SWITCH).get_description() or ""

    def wait_for_status(self, words):
        """On the screen; a command tells the same."""
        wait_until(lambda: self.status().startswith(words), f"{words}, not {self.status()}")
        wait_until(lambda: self.told()["status"] == words, f"{words} from kestryctl")

    def told(self):
        return json.loads(self.kestryctl("sync", "status", "--json"))

    def wait_for_failure(self, words):
        """On the screen; a command tells the same."""
        self.app.find_starting(words)
        wait_until(lambda: (self.told()["errorMessage"] or "").startswith(words), words)
        self.wait_for_status("Sync needs attention")

    def wait_for_delivery(self):
        wait_until(lambda: self.told()["pending"] == 0, "the delivery")

    def sync(self):
        """One exchange, to its end."""
        self.app.press("Sync now")
        wait_until(lambda: self.app.shows("Sync now"), "the end of the exchange")

    # The ledger.

    def client(self):
        clients = self.app.ledger()["clients"]
        return clients[0]["name"] if clients else None

    def wait_for_client(self, name):
        def attempt():
            self.sync()
            return self.client() == name
        wait_until(attempt, f"the client {name}, not {self.client()}")

    def add(self, title):
        self.kestryctl("add", self.client(), "--start", "yesterday 10:00", "--duration", "1h",
                       "--title", title)

    def titles(self):
        return sorted(each["title"] for each in self.app.ledger()["entries"])

    def wait_for_titles(self, *titles):
        def attempt():
            self.sync()
            return self.titles() == sorted(titles)
        wait_until(attempt, f"the sessions {titles}, not {self.titles()}")


class CloudTest(ProgramTest):
    """Tests of machines that share `store`."""

    def one_machine(self):
        desk = Machine(self, "desk", one_client())
        desk.sign_in(self.store)
        desk.turn_on()
        return desk

    def two_machines(self):
        """Of which the second has its window in front."""
        desk = self.one_machine()
        laptop = Machine(self, "laptop")
        laptop.sign_in_by_command(self.store)
        laptop.turn_on()
        return desk, laptop


class Morning:
    """A morning of work on two machines, whatever store they share. All that can go wrong does."""

    def test_a_morning_on_two_machines_loses_nothing_and_doubles_nothing(self):
        self.desk, self.laptop = self.two_machines()
        self.session_is_seen_elsewhere()
        self.uploading_program_is_killed()
        self.downloading_program_is_killed()
        self.store_is_gone_and_both_versions_differ()
        self.each_decides_a_conflict()
        self.signs_out_and_in_and_into_the_wrong_account()
        self.ledgers_are_equal("Drawing", "Layout", LETTERS, "Proofs", "Proofs again",
                               "Signed out")

    def session_is_seen_elsewhere(self):
        self.desk.kestryctl("start", "Aster Studio", "--title", "Drawing")
        self.desk.wait_for_delivery()
        self.laptop.sync()
        self.laptop.app.press("Sync details")
        row = self.laptop.app.find_starting("Drawing, ")
        self.assertIn(" · Running when last synced · ", named(row))
        self.laptop.app.find_starting("Session on ")  # in the sidebar
        self.desk.kestryctl("stop")
        self.laptop.wait_for_titles("Drawing")
        self.laptop.app.find("No sessions on other devices, and nothing to review.")
        self.assertFalse(self.laptop.app.find_where(lambda each: named(each).startswith("Session on ")))

    def kill_in_exchange(self, machine, request, begin):
        """The store may carry the request out, and the machine never hears of it."""
        with self.store.stuck(request) as is_stuck:
            begin()
            wait_until(lambda: is_stuck() and machine.told()["isSyncing"], "a stuck exchange")
            machine.kill()

    def uploading_program_is_killed(self):
        self.kill_in_exchange(self.desk, "_bulk_docs", lambda: self.desk.add("Proofs"))
        self.laptop.add(LETTERS)
        self.desk.start()
        self.desk.wait_for_titles("Drawing", LETTERS, "Proofs")

    def downloading_program_is_killed(self):
        self.desk.add("Layout")
        self.desk.wait_for_delivery()
        self.kill_in_exchange(self.laptop, "_changes", lambda: self.laptop.app.press("Sync now"))
        self.laptop.start()
        self.laptop.wait_for_titles("Drawing", "Layout", LETTERS, "Proofs")

    def store_is_gone_and_both_versions_differ(self):
        self.store.take_away()
        self.desk.kestryctl("client", "edit", "Aster Studio", "--name", "Aster Ltd")
        self.laptop.kestryctl("client", "edit", "Aster Studio", "--name", SONS)
        self.desk.wait_for_failure(self.store.GONE)
        self.desk.add("Proofs again")
        self.store.bring_back()
        self.desk.sync()
        self.desk.wait_for_status("Up to date")

    def each_decides_a_conflict(self):
        self.laptop.sync()
        self.decide(self.laptop, "Keep this Mac’s version", SONS, "Aster Ltd")
        self.desk.wait_for_client(SONS)
        self.desk.kill()
        self.desk.kestryctl("client", "edit", "Aster", "--name", "Aster and Co")
        self.laptop.kestryctl("client", "edit", "Aster", "--name", "Aster plc")
        self.laptop.wait_for_delivery()
        self.desk.start()
        self.decide(self.desk, "Use iCloud version", "Aster and Co", "Aster plc")
        # The next newer version takes the place of the change that was given up.
        self.laptop.kestryctl("client", "edit", "Aster", "--name", "Aster GmbH")
        self.laptop.wait_for_delivery()
        self.desk.wait_for_client("Aster GmbH")

    def decide(self, machine, button, here, there):
        machine.wait_for_status("Review sync conflicts")
        machine.press("Sync details")
        machine.app.find("Two versions need your review")
        machine.app.find(f"Name, differs, on this Mac {here}, iCloud {there}")
        machine.press_by_key(button)
        machine.app.wait_for_focus("Sync details")
        machine.wait_for_status("Up to date")

    def signs_out_and_in_and_into_the_wrong_account(self):
        self.laptop.sign_out()
        self.laptop.add("Signed out")
        other = self.store.other()
        self.addCleanup(other.close)
        self.laptop.sign_in_by_command(other)
        self.laptop.app.press(SWITCH)
        self.laptop.wait_for_failure(
            "This ledger belongs to another iCloud account. Switch back before syncing; "
            "your local data has been preserved.")
        self.assertEqual(other.records(), 0)
        self.laptop.sign_in_by_command(self.store)
        self.laptop.turn_on()

    def ledgers_are_equal(self, *titles):
        """Of the same records, and with these sessions. The store has no others."""
        self.desk.wait_for_titles(*titles)
        self.laptop.wait_for_titles(*titles)
        desk, laptop = self.desk.app.ledger(), self.laptop.app.ledger()
        for records in ("clients", "projects", "entries"):
            self.assertEqual(*(sorted(each[records], key=lambda record: record["id"])
                               for each in (desk, laptop)))
        self.assertEqual(self.store.records(), sum(
            len(desk[records]) for records in ("clients", "projects", "entries")))
