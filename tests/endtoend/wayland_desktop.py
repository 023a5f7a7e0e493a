"""A Wayland desktop of its own for one test: sway, nested in a window of an X server, where real
pointer and keyboard events come from. Each output is such a window, and goes when that is closed.
"""

import json
import os
import pwd
import shutil
import subprocess
import tempfile

from Xlib import X, display as xlib
from Xlib.protocol import event as xlib_events

from desktop import Desktop, wait_until, xdotool

CONFIGURATION = """
output * mode --custom 1280x800
default_border none
focus_follows_mouse no
"""


class WaylandDesktop(Desktop):
    """Outputs of 1280 by 800 beside each other; the strip stands at the top centre of the first.

    The backend `headless` has outputs that can be switched off, and neither pointer nor keys.
    """

    def __init__(self, outputs=1, backend="x11"):
        self.scale = 1
        self.processes = []
        self.start_server("1280x1600x24")
        self.display = xlib.Display(os.environ["DISPLAY"])
        # The compositor asks for these names only where somebody has used them.
        for name in ("WM_DELETE_WINDOW", "WM_PROTOCOLS"):
            self.display.intern_atom(name)
        self.display.sync()
        self.folder = tempfile.mkdtemp(prefix="kestry-sway-", dir="/tmp")
        try:
            self.start_compositor(outputs, backend)
        except BaseException:
            self.close()
            raise
        if outputs and backend == "x11":
            self.point(*self.AWAY)

    def start_compositor(self, outputs, backend):
        configuration = os.path.join(self.folder, "config")
        with open(configuration, "w", encoding="utf-8") as file:
            file.write(CONFIGURATION)
        socket = os.path.join(self.folder, "ipc")
        environment = {
            **os.environ, "XDG_RUNTIME_DIR": self.folder, "HOME": self.folder, "SWAYSOCK": socket,
            "WLR_BACKENDS": backend, "WLR_RENDERER": "pixman", "WLR_LIBINPUT_NO_DEVICES": "1",
            "WLR_X11_OUTPUTS": str(outputs), "WLR_HEADLESS_OUTPUTS": str(outputs)}
        environment.pop("WAYLAND_DISPLAY", None)
        os.chmod(self.folder, 0o700)
        self.compositor = subprocess.Popen(
            [*as_ordinary_user(self.folder), "sway", "-c", configuration], env=environment,
            cwd="/", stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.processes.append(self.compositor)
        os.environ["SWAYSOCK"] = socket
        wait_until(lambda: os.path.exists(socket) and len(self.outputs()) == outputs, "sway")
        os.environ["WAYLAND_DISPLAY"] = wait_until(self.socket, "the compositor's socket")

    def socket(self):
        names = [name for name in os.listdir(self.folder)
                 if name.startswith("wayland-") and not name.endswith(".lock")]
        return os.path.join(self.folder, names[0]) if names else None

    def close(self):
        self.display.close()
        super().close()
        shutil.rmtree(self.folder, ignore_errors=True)
        for name in ("WAYLAND_DISPLAY", "SWAYSOCK"):
            os.environ.pop(name, None)

    def end_compositor(self, signal):
        self.compositor.send_signal(signal)
        self.compositor.wait()

    # Outputs.

    def outputs(self):
        """The outputs that are switched on, by name, as the compositor tells of them."""
        told = self.ask("-t", "get_outputs")
        return {each["name"]: each for each in told or [] if each["active"]}

    def ask(self, *words):
        done = subprocess.run(["swaymsg", "-r", *words], capture_output=True, text=True,
                              check=False)
        return json.loads(done.stdout) if done.returncode == 0 else None

    def plug_in(self):
        """One more output, or the first."""
        before = len(self.outputs())
        self.ask("create_output")
        wait_until(lambda: len(self.outputs()) == before + 1, "an output")
        self.windows()[-1].configure(x=0, y=800 if before else 0)
        self.display.sync()

    def unplug(self, index=0):
        before = len(self.outputs())
        window = self.windows()[index]
        window.send_event(xlib_events.ClientMessage(
            window=window, client_type=self.display.intern_atom("WM_PROTOCOLS"),
            data=(32, [self.display.intern_atom("WM_DELETE_WINDOW"), X.CurrentTime, 0, 0, 0])))
        self.display.sync()
        wait_until(lambda: len(self.outputs()) == before - 1, "one output less")

    def windows(self):
        """Of the outputs on the X server, the oldest first."""
        children = self.display.screen().root.query_tree().children
        return sorted((each for each in children if each.get_geometry().width > 1),
                      key=lambda each: each.id)

    # What is seen.

    def colour(self, x, y, output=None):
        """Of one point of the desktop, as red, green and blue."""
        picture = subprocess.run(
            ["grim", *(["-o", output] if output else []), "-t", "ppm", "-g", f"{x},{y} 1x1", "-"],
            capture_output=True, check=True).stdout
        return tuple(picture[-3:])

    def picture(self, path, x, y, width, height):
        subprocess.run(["grim", "-g", f"{x},{y} {width}x{height}", path], check=True)

    def focused_program(self):
        """The process whose window the compositor has turned to."""
        def look(node):
            if node.get("focused") and node.get("pid"):
                return node["pid"]
            return next(filter(None, map(look, node["nodes"] + node["floating_nodes"])), None)
        return look(self.ask("-t", "get_tree"))

    def point(self, x, y):
        super().point(x, y)
        xdotool("mousemove_relative", "1", "0")  # a pointer that was there already moves too


def as_ordinary_user(folder):
    """What to put before a command that refuses to be run by root; the folder becomes its own."""
    if os.geteuid() != 0:
        return []
    user = pwd.getpwnam("nobody")
    for place, _, names in os.walk(folder):
        for path in (place, *(os.path.join(place, name) for name in names)):
            os.chown(path, user.pw_uid, user.pw_gid)
    return ["setpriv", f"--reuid={user.pw_uid}", f"--regid={user.pw_gid}", "--clear-groups"]
