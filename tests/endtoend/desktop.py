"""A desktop of its own for one test: an X server with a window manager, and the programs on it.

The accessibility tree is how a test presses buttons and reads what stands on the screen, because
it is what a person without sight has.
"""

import json
import os
import subprocess
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402  (the version has to be chosen first)

WAIT_SECONDS = 25  # longer than the program takes from one checkpoint to the next
MOST_TABS = 60


class Desktop:
    """An X server of 1280 by 800 with openbox; the strip stands at its top centre.

    At another scale everything is so many times as large, the screen too; places are told as at
    scale 1.
    """

    STRIP = (640, 20)
    AWAY = (200, 700)

    def __init__(self, scale=1, composited=False):
        self.scale = scale
        os.environ["QT_SCALE_FACTOR"] = str(scale)
        self.processes = []
        self.start_server(f"{int(1280 * scale)}x{int(800 * scale)}x24")
        self.run("openbox")
        if composited:
            self.run("picom", "--backend", "xrender", "--config", "/dev/null")
        try:
            wait_until(lambda: xdotool("get_num_desktops"), "a window manager")
        except AssertionError:
            self.close()
            raise
        self.point(*self.AWAY)

    def start_server(self, screen):
        reader, writer = os.pipe()
        self.server = subprocess.Popen(
            # Left to itself the server starts anew, and drops who is just connecting, whenever
            # its last client goes.
            ["Xvfb", "-displayfd", str(writer), "-screen", "0", screen, "-nolisten", "tcp",
             "-noreset"],
            pass_fds=[writer], stderr=subprocess.DEVNULL)
        os.close(writer)
        with os.fdopen(reader) as numbers:
            os.environ["DISPLAY"] = ":" + numbers.readline().strip()

    def run(self, *command, output=subprocess.DEVNULL):
        """Starts a program that ends with the desktop."""
        process = subprocess.Popen(command, stdout=output, stderr=subprocess.DEVNULL)
        self.processes.append(process)
        return process

    def close(self):
        for process in (*reversed(self.processes), self.server):
            process.terminate()
            process.wait()

    def point(self, x, y):
        xdotool("mousemove", str(int(x * self.scale)), str(int(y * self.scale)))

    def point_at(self, accessible):
        """The middle of something on the screen."""
        place = accessible.get_extents(Atspi.CoordType.SCREEN)
        self.point(place.x + place.width / 2, place.y + place.height / 2)

    def click(self, button=1):
        xdotool("click", str(button))

    def picture(self, path, x, y, width, height):
        """A part of the screen as a PNG file."""
        left, top, wide, high = (int(each * self.scale) for each in (x, y, width, height))
        subprocess.run(
            ["import", "-silent", "-window", "root", "-crop", f"{wide}x{high}+{left}+{top}",
             "+repage", path], check=True)

    def hover_strip(self):
        self.point(*self.STRIP)

    def leave_strip(self):
        self.point(*self.AWAY)

    def type(self, *keys):
        for key in keys:
            xdotool("key", key)

    def write(self, text):
        """Types a text into what has the keyboard."""
        xdotool("type", "--delay", "20", text)

    def focused_window(self):
        return xdotool("getwindowfocus")


class Application:
    """The program under test on a data directory, as its user sees it."""

    def __init__(self, program, directory, *arguments, is_seen=True, environment=()):
        self.directory = directory
        self.process = subprocess.Popen(
            [program, "--data-directory", directory, *arguments],
            env={**os.environ, **dict(environment), "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"})
        if is_seen:
            self.find("Open Kestry")

    def find(self, name):
        """The thing on screen with this accessible name, once it is there."""
        return wait_until(lambda: self._look_for(lambda each: named(each) == name), name)

    def find_starting(self, prefix):
        return wait_until(
            lambda: self._look_for(lambda each: named(each).startswith(prefix)), prefix)

    def press(self, name):
        self.press_on(self.find(name))

    @staticmethod
    def press_on(accessible):
        actions = accessible.get_action_iface()
        names = [Atspi.Action.get_action_name(actions, index)
                 for index in range(Atspi.Action.get_n_actions(actions))]
        Atspi.Action.do_action(actions, names.index("Press"))

    def ledger(self):
        with open(os.path.join(self.directory, "ledger.json"), encoding="utf-8") as file:
            return json.load(file)

    def ledger_when(self, condition, what):
        """The ledger on the disk, once it fulfils a condition."""
        def attempt():
            try:
                ledger = self.ledger()
            except FileNotFoundError:
                return None
            return ledger if condition(ledger) else None
        return wait_until(attempt, what)

    def terminate(self):
        """Asks for an ordinary quit; returns the exit status."""
        self.process.terminate()
        return self.process.wait(WAIT_SECONDS)

    def kill(self):
        self.process.kill()
        self.process.wait()

    def find_where(self, accepts):
        """The first thing on screen that is accepted; None without one."""
        return self._look_for(accepts)

    def shows(self, name):
        return self._look_for(lambda each: named(each) == name) is not None

    def texts(self):
        """All that can be read of the program, be it on the screen or not."""
        found = []

        def note(each):
            found.extend((named(each), each.get_description() or ""))
            text = each.get_text_iface()
            if text:
                found.append(Atspi.Text.get_text(text, 0, -1))

        self._look_for(note)
        return found

    def focus(self):
        """What has the keyboard: the innermost, since what is around it has it too."""
        found = []

        def note(each):
            if each.get_state_set().contains(Atspi.StateType.FOCUSED) and is_showing(each):
                found.append(each)

        self._look_for(note)
        return found[-1] if found else None

    def focused(self):
        """The name of what has the keyboard."""
        focus = self.focus()
        return named(focus) if focus else None

    def wait_for_focus(self, name):
        try:
            wait_until(lambda: self.focused() == name, f"the keyboard on {name}")
        except AssertionError as late:
            raise AssertionError(f"{late}, but on {self.focused()}") from None

    def tab_to(self, name):
        """Goes on with the Tab key to something of this name, which brings it into view."""
        self._tab_until(lambda each: named(each) == name, name)

    def tab_to_starting(self, prefix):
        self._tab_until(lambda each: named(each).startswith(prefix), prefix)

    def _tab_until(self, accepts, what):
        passed = []
        for _ in range(MOST_TABS):
            before = self.focus()
            if before and accepts(before):
                return
            passed.append(before and named(before))
            xdotool("key", "Tab")
            wait_until(lambda: self.focus() not in (None, before), f"what comes after {passed[-1]}")
        raise AssertionError(f"The Tab key does not lead to {what}, but to {passed}")

    # Menus.

    def open_menu(self, name):
        """Presses what opens a menu; returns the menu."""
        self.press(name)
        return self.find_menu()

    def find_menu(self):
        """The menu that is open, once it is there."""
        return wait_until(self.menu, "a menu")

    def menu(self):
        """The menu that is open; None without one."""
        return self._look_for(lambda each: each.get_role() == Atspi.Role.POPUP_MENU)

    def entries(self):
        """The names of the entries of the open menu, in order."""
        return [named(each) for each in descendants(self.find_menu())
                if each.get_role() == Atspi.Role.MENU_ITEM and is_showing(each)]

    def entry(self, name):
        """An entry of the open menu, once it is there."""
        return wait_until(
            lambda: self._look_for(lambda each: named(each) == name
                                   and each.get_role() == Atspi.Role.MENU_ITEM), name)

    def choose(self, name):
        """Chooses an entry of the open menu as a screen reader does."""
        self.press_on(self.entry(name))

    def focused_entry(self):
        """The name of the entry that a screen reader is on; None without one."""
        entry = self._look_for(
            lambda each: each.get_role() == Atspi.Role.MENU_ITEM
            and each.get_state_set().contains(Atspi.StateType.FOCUSED))
        return entry and named(entry)

    def wait_for_entry(self, name):
        wait_until(lambda: self.focused_entry() == name, f"the highlight on {name}")

    def wait_for_no_menu(self):
        wait_until(lambda: not self.menu(), "no menu")

    def is_active(self):
        """Whether one of its windows has the keyboard, as far as it knows."""
        return self._look_for(
            lambda each: each.get_state_set().contains(Atspi.StateType.ACTIVE)) is not None

    def shows_tip(self):
        return self._look_for(lambda each: each.get_role() == Atspi.Role.TOOL_TIP) is not None

    def _look_for(self, accepts):
        while GLib.MainContext.default().iteration(False):
            pass  # the tree is a cache that hears of changes here
        root = Atspi.get_desktop(0)
        for index in range(root.get_child_count()):
            application = root.get_child_at_index(index)
            if application and application.get_process_id() == self.process.pid:
                return next((each for each in descendants(application)
                             if accepts(each) and is_showing(each)), None)
        return None


def descendants(parent):
    for index in range(parent.get_child_count()):
        child = parent.get_child_at_index(index)
        if child:
            yield child
            yield from descendants(child)


def named(accessible):
    return accessible.get_name() or ""


def is_showing(accessible):
    return accessible.get_state_set().contains(Atspi.StateType.SHOWING)


def wait_until(attempt, what, seconds=WAIT_SECONDS):
    """What `attempt` returns, as soon as that is something."""
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        try:
            result = attempt()
        except GLib.Error:  # an object that went while it was looked at
            result = None
        if result:
            return result
        time.sleep(0.05)
    raise AssertionError(f"{what}: not there after {seconds} seconds")


def xdotool(*arguments):
    done = subprocess.run(["xdotool", *arguments], capture_output=True, text=True, check=False)
    return done.stdout.strip() if done.returncode == 0 else None
