"""A status area that takes every picture of the items in it, as a desktop's panel does."""

import subprocess
import sys
import time

from gi.repository import Gio, GLib

WATCHER = """
<node>
  <interface name="org.kde.StatusNotifierWatcher">
    <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
    <method name="RegisterStatusNotifierHost"><arg type="s" direction="in"/></method>
    <property name="RegisteredStatusNotifierItems" type="as" access="read"/>
    <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
    <property name="ProtocolVersion" type="i" access="read"/>
    <signal name="StatusNotifierItemRegistered"><arg type="s"/></signal>
    <signal name="StatusNotifierItemUnregistered"><arg type="s"/></signal>
    <signal name="StatusNotifierHostRegistered"/>
  </interface>
</node>"""
PATH = "/StatusNotifierWatcher"
ITEM = "org.kde.StatusNotifierItem"
MENU = "com.canonical.dbusmenu"


class StatusArea:
    """The area, in a process of its own. `with` starts and ends it."""

    def __enter__(self):
        self.process = subprocess.Popen(
            [sys.executable, __file__], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        assert self.process.stdout.readline().strip() == "ready"
        return self

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait()

    def _ask(self, question):
        self.process.stdin.write(question + "\n")
        self.process.stdin.flush()
        return self.process.stdout.readline().strip()

    def items(self):
        """The bus names of the items."""
        return self._ask("items").split()

    def pictures(self):
        """How many pictures were taken so far."""
        return int(self._ask("pictures"))

    # The menu of an item.

    @staticmethod
    def _call(item, method, arguments):
        return Gio.bus_get_sync(Gio.BusType.SESSION).call_sync(
            item, "/MenuBar", MENU, method, arguments, None, Gio.DBusCallFlags.NONE, -1, None)

    def entries(self, item):
        """The numbers of the entries by their texts."""
        layout = self._call(item, "GetLayout", GLib.Variant("(iias)", (0, -1, [])))
        # An underscore only marks the letter that chooses an entry.
        return {properties.get("label", "-").replace("_", ""): number
                for number, properties, _ in layout.unpack()[1][2]}

    def choose(self, item, label):
        self._call(item, "Event", GLib.Variant(
            "(isvu)", (self.entries(item)[label], "clicked", GLib.Variant("i", 0), 0)))

    def wait_for_item(self, seconds):
        deadline = time.monotonic() + seconds
        while time.monotonic() < deadline:
            if items := self.items():
                return items[0]
            time.sleep(0.05)
        raise AssertionError("no item came into the status area")


class Watcher:
    def __init__(self):
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        self.items = []
        self.pictures = 0
        interface = Gio.DBusNodeInfo.new_for_xml(WATCHER).interfaces[0]
        self.bus.register_object(PATH, interface, self.called, self.read, None)
        Gio.bus_own_name_on_connection(
            self.bus, "org.kde.StatusNotifierWatcher", Gio.BusNameOwnerFlags.NONE,
            lambda *_: print("ready", flush=True), None)

    def called(self, _bus, sender, _path, _interface, method, arguments, invocation):
        if method == "RegisterStatusNotifierItem":
            # The toolkit gives its bus name, other programs the path of an object of theirs.
            name = arguments.unpack()[0]
            name = sender if name.startswith("/") else name
            self.items.append(name)
            Gio.bus_watch_name_on_connection(
                self.bus, name, Gio.BusNameWatcherFlags.NONE, None, self.gone)
            self.bus.signal_subscribe(
                sender, ITEM, "NewIcon", None, None, Gio.DBusSignalFlags.NONE,
                lambda *_: self.take(sender))
            self.take(sender)
        invocation.return_value(None)

    def gone(self, _bus, name):
        if name in self.items:
            self.items.remove(name)

    def read(self, _bus, _sender, _path, _interface, property_name):
        return {"RegisteredStatusNotifierItems": GLib.Variant("as", self.items),
                "IsStatusNotifierHostRegistered": GLib.Variant("b", True),
                "ProtocolVersion": GLib.Variant("i", 0)}[property_name]

    def take(self, name):
        self.bus.call(
            name, "/StatusNotifierItem", "org.freedesktop.DBus.Properties", "Get",
            GLib.Variant("(ss)", (ITEM, "IconPixmap")), None, Gio.DBusCallFlags.NONE, -1, None,
            self.taken)

    def taken(self, bus, result):
        try:
            bus.call_finish(result)
            self.pictures += 1
        except GLib.Error:
            pass  # the item has gone

    def asked(self, channel, _condition):
        question = channel.readline()
        if not question:
            sys.exit()
        print(" ".join(self.items) if question.strip() == "items" else self.pictures, flush=True)
        return True


if __name__ == "__main__":
    watcher = Watcher()
    GLib.io_add_watch(sys.stdin, GLib.IO_IN | GLib.IO_HUP, watcher.asked)
    GLib.MainLoop().run()
