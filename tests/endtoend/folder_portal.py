"""A portal that opens folders. Which one it was handed is printed as a line."""

import os
import subprocess
import sys

from gi.repository import Gio, GLib

PORTAL = """
<node>
  <interface name="org.freedesktop.portal.OpenURI">
    <method name="OpenDirectory">
      <arg type="s" direction="in"/><arg type="h" direction="in"/><arg type="a{sv}" direction="in"/>
      <arg type="o" direction="out"/>
    </method>
  </interface>
</node>"""
PATH = "/org/freedesktop/portal/desktop"


class FolderPortal:
    """The portal, in a process of its own. `with` starts and ends it."""

    def __enter__(self):
        self.process = subprocess.Popen(
            [sys.executable, __file__], stdout=subprocess.PIPE, text=True)
        assert self.process.stdout.readline().strip() == "ready"
        return self

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait()

    def folder(self):
        """The folder that was opened next."""
        return self.process.stdout.readline().strip()


class Service:
    def __init__(self):
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        interface = Gio.DBusNodeInfo.new_for_xml(PORTAL).interfaces[0]
        self.bus.register_object(PATH, interface, self.called, None, None)
        Gio.bus_own_name_on_connection(
            self.bus, "org.freedesktop.portal.Desktop", Gio.BusNameOwnerFlags.NONE,
            lambda *_: print("ready", flush=True), None)

    def called(self, _bus, sender, _path, _interface, _method, arguments, invocation):
        _, handle, options = arguments.unpack()
        descriptor = invocation.get_message().get_unix_fd_list().get(handle)
        request = f"{PATH}/request/{sender[1:].replace('.', '_')}/{options['handle_token']}"
        invocation.return_value(GLib.Variant("(o)", (request,)))
        self.bus.emit_signal(
            sender, request, "org.freedesktop.portal.Request", "Response",
            GLib.Variant("(ua{sv})", (0, {})))
        self.bus.flush_sync()  # whoever reads this may end the portal
        print(os.readlink(f"/proc/self/fd/{descriptor}"), flush=True)
        os.close(descriptor)


if __name__ == "__main__":
    service = Service()
    GLib.MainLoop().run()
