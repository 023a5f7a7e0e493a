"""A file portal that answers each question with one file, or with the proposed name in a folder.

What it was asked is printed as a line of JSON.
"""

import json
import subprocess
import sys

from gi.repository import Gio, GLib

PORTAL = """
<node>
  <interface name="org.freedesktop.portal.FileChooser">
    <method name="OpenFile">
      <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="a{sv}" direction="in"/>
      <arg type="o" direction="out"/>
    </method>
    <method name="SaveFile">
      <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="a{sv}" direction="in"/>
      <arg type="o" direction="out"/>
    </method>
  </interface>
</node>"""
PATH = "/org/freedesktop/portal/desktop"
CHOSEN, CANCELLED = 0, 2


class FilePortal:
    """The portal, in a process of its own. `with` starts and ends it."""

    def __init__(self, place, code=CHOSEN):
        self.arguments = [place, str(code)]

    def __enter__(self):
        self.process = subprocess.Popen(
            [sys.executable, __file__, *self.arguments], stdout=subprocess.PIPE, text=True)
        assert self.process.stdout.readline().strip() == "ready"
        return self

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait()

    def question(self):
        """What was asked next."""
        return json.loads(self.process.stdout.readline())


class Service:
    def __init__(self, place, code):
        self.place, self.code = place, code
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        interface = Gio.DBusNodeInfo.new_for_xml(PORTAL).interfaces[0]
        self.bus.register_object(PATH, interface, self.called, None, None)
        Gio.bus_own_name_on_connection(
            self.bus, "org.freedesktop.portal.Desktop", Gio.BusNameOwnerFlags.NONE,
            lambda *_: print("ready", flush=True), None)

    def called(self, _bus, sender, _path, _interface, method, arguments, invocation):
        parent, title, options = arguments.unpack()
        request = f"{PATH}/request/{sender[1:].replace('.', '_')}/{options['handle_token']}"
        invocation.return_value(GLib.Variant("(o)", (request,)))
        name = options.get("current_name")
        folder = bytes(options.get("current_folder", b"")).rstrip(b"\0").decode()
        address = GLib.filename_to_uri(f"{self.place}/{name}" if name else self.place)
        results = {"uris": GLib.Variant("as", [address])} if self.code == CHOSEN else {}
        self.bus.emit_signal(
            sender, request, "org.freedesktop.portal.Request", "Response",
            GLib.Variant("(ua{sv})", (self.code, results)))
        self.bus.flush_sync()  # whoever reads this may end the portal
        print(json.dumps({"method": method, "parent": parent, "title": title, "name": name,
                          "folder": folder, "filters": options["filters"]}), flush=True)


if __name__ == "__main__":
    service = Service(sys.argv[1], int(sys.argv[2]))
    GLib.MainLoop().run()
