"""A settings portal with settings that a test changes."""

import json
import subprocess
import sys

from gi.repository import Gio, GLib

PORTAL = """
<node>
  <interface name="org.freedesktop.portal.Settings">
    <method name="ReadAll">
      <arg type="as" direction="in"/><arg type="a{sa{sv}}" direction="out"/>
    </method>
    <signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal>
  </interface>
</node>"""
PATH = "/org/freedesktop/portal/desktop"
INTERFACE = "org.freedesktop.portal.Settings"
REDUCED_MOTION = ("org.freedesktop.appearance", "reduced-motion", "u")
TEXT_SCALE = ("org.gnome.desktop.interface", "text-scaling-factor", "d")


class SettingsPortal:
    """The portal, in a process of its own. `with` starts and ends it.

    `others` are lists of a group, a key, the letter of a type and a value.
    """

    def __init__(self, reduced_motion=False, others=()):
        self.settings = [[*REDUCED_MOTION, int(reduced_motion)], *others]

    def __enter__(self):
        self.process = subprocess.Popen(
            [sys.executable, __file__, json.dumps(self.settings)], stdin=subprocess.PIPE,
            stdout=subprocess.PIPE, text=True)
        assert self.process.stdout.readline().strip() == "ready"
        return self

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait()

    def reduce_motion(self, reduces):
        self._change(*REDUCED_MOTION, int(reduces))

    def scale_text(self, scale):
        self._change(*TEXT_SCALE, scale)

    def _change(self, *setting):
        self.process.stdin.write(json.dumps(setting) + "\n")
        self.process.stdin.flush()
        assert self.process.stdout.readline().strip() == "told"


class Service:
    def __init__(self, settings):
        self.settings = {}
        for group, key, form, value in settings:
            self.settings.setdefault(group, {})[key] = GLib.Variant(form, value)
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        interface = Gio.DBusNodeInfo.new_for_xml(PORTAL).interfaces[0]
        self.bus.register_object(PATH, interface, self.called, None, None)
        Gio.bus_own_name_on_connection(
            self.bus, "org.freedesktop.portal.Desktop", Gio.BusNameOwnerFlags.NONE,
            lambda *_: print("ready", flush=True), None)

    def called(self, _bus, _sender, _path, _interface, _method, _arguments, invocation):
        invocation.return_value(GLib.Variant("(a{sa{sv}})", (self.settings,)))

    def told(self, channel, _condition):
        line = channel.readline()
        if not line:
            sys.exit()
        group, key, form, value = json.loads(line)
        self.settings.setdefault(group, {})[key] = GLib.Variant(form, value)
        self.bus.emit_signal(
            None, PATH, INTERFACE, "SettingChanged",
            GLib.Variant("(ssv)", (group, key, self.settings[group][key])))
        self.bus.flush_sync()
        print("told", flush=True)
        return True


if __name__ == "__main__":
    service = Service(json.loads(sys.argv[1]))
    GLib.io_add_watch(sys.stdin, GLib.IO_IN | GLib.IO_HUP, service.told)
    GLib.MainLoop().run()
