"""A Secret Service with one collection, which forgets all when it ends.

It keeps secrets, or it is locked with nobody to unlock it, or it never answers.
"""

import json
import subprocess
import sys

from gi.repository import Gio, GLib

ROOT = "/org/freedesktop/secrets"
COLLECTION = ROOT + "/collection/login"
PROMPT = ROOT + "/prompt/1"
SECRET = "org.freedesktop.Secret."
INTERFACES = """
<node>
  <interface name="org.freedesktop.Secret.Service">
    <method name="OpenSession">
      <arg type="s" direction="in"/><arg type="v" direction="in"/>
      <arg type="v" direction="out"/><arg type="o" direction="out"/>
    </method>
    <method name="SearchItems">
      <arg type="a{ss}" direction="in"/>
      <arg type="ao" direction="out"/><arg type="ao" direction="out"/>
    </method>
    <method name="Unlock">
      <arg type="ao" direction="in"/><arg type="ao" direction="out"/><arg type="o" direction="out"/>
    </method>
    <method name="GetSecrets">
      <arg type="ao" direction="in"/><arg type="o" direction="in"/>
      <arg type="a{o(oayays)}" direction="out"/>
    </method>
    <method name="ReadAlias">
      <arg type="s" direction="in"/><arg type="o" direction="out"/>
    </method>
    <property name="Collections" type="ao" access="read"/>
  </interface>
  <interface name="org.freedesktop.Secret.Collection">
    <method name="CreateItem">
      <arg type="a{sv}" direction="in"/><arg type="(oayays)" direction="in"/>
      <arg type="b" direction="in"/>
      <arg type="o" direction="out"/><arg type="o" direction="out"/>
    </method>
    <property name="Locked" type="b" access="read"/>
    <property name="Items" type="ao" access="read"/>
    <property name="Label" type="s" access="read"/>
  </interface>
  <interface name="org.freedesktop.Secret.Item">
    <method name="Delete"><arg type="o" direction="out"/></method>
    <property name="Locked" type="b" access="read"/>
    <property name="Attributes" type="a{ss}" access="read"/>
    <property name="Label" type="s" access="read"/>
  </interface>
  <interface name="org.freedesktop.Secret.Prompt">
    <method name="Prompt"><arg type="s" direction="in"/></method>
    <method name="Dismiss"/>
    <signal name="Completed"><arg type="b"/><arg type="v"/></signal>
  </interface>
</node>"""


class SecretService:
    """The service, in a process of its own. `with` starts and ends it.

    The manner is "open", "locked" (nobody enters the password when it asks for it) or "mute".
    """

    def __init__(self, manner="open"):
        self.manner = manner

    def __enter__(self):
        self.process = subprocess.Popen(
            [sys.executable, __file__, self.manner], stdin=subprocess.PIPE,
            stdout=subprocess.PIPE, text=True)
        assert self.process.stdout.readline().strip() == "ready"
        return self

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait()

    def secrets(self):
        """What it keeps."""
        return self._tell()["secrets"]

    def questions(self):
        """How often its user was asked to unlock it."""
        return self._tell()["questions"]

    def _tell(self):
        self.process.stdin.write("tell\n")
        self.process.stdin.flush()
        return json.loads(self.process.stdout.readline())


class Service:
    def __init__(self, manner):
        self.manner = manner
        self.items = {}  # of each path: its attributes and its secret
        self.last = 0
        self.questions = 0
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        self.node = Gio.DBusNodeInfo.new_for_xml(INTERFACES)
        self.publish(ROOT, "Service")
        self.publish(COLLECTION, "Collection")
        self.publish(ROOT + "/aliases/default", "Collection")
        self.publish(PROMPT, "Prompt")
        Gio.bus_own_name_on_connection(
            self.bus, "org.freedesktop.secrets", Gio.BusNameOwnerFlags.NONE,
            lambda *_: print("ready", flush=True), None)

    def publish(self, path, kind):
        interface = self.node.lookup_interface(SECRET + kind)
        return self.bus.register_object(path, interface, self.called, self.property, None)

    def property(self, _bus, _sender, path, _interface, name):
        return {"Collections": lambda: GLib.Variant("ao", [COLLECTION]),
                "Items": lambda: GLib.Variant("ao", list(self.items)),
                "Locked": lambda: GLib.Variant("b", self.manner == "locked"),
                "Label": lambda: GLib.Variant("s", "Login"),
                "Attributes": lambda: GLib.Variant("a{ss}", self.items[path][0])}[name]()

    def called(self, _bus, sender, path, _interface, method, arguments, invocation):
        if self.manner != "mute":
            getattr(self, method)(invocation, sender, path, *arguments.unpack())

    def OpenSession(self, invocation, _sender, _path, algorithm, _input):
        if algorithm != "plain":
            invocation.return_dbus_error("org.freedesktop.DBus.Error.NotSupported", "plain only")
            return
        answer = GLib.Variant("(vo)", (GLib.Variant("s", ""), ROOT + "/session/1"))
        invocation.return_value(answer)

    def SearchItems(self, invocation, _sender, _path, wanted):
        found = [path for path, (attributes, _) in self.items.items()
                 if wanted.items() <= attributes.items()]
        both = ([], found) if self.manner == "locked" else (found, [])
        invocation.return_value(GLib.Variant("(aoao)", both))

    def Unlock(self, invocation, _sender, _path, objects):
        self.refusal = GLib.Variant("ao", [])
        answer = ([], PROMPT) if self.manner == "locked" else (objects, "/")
        invocation.return_value(GLib.Variant("(aoo)", answer))

    def Prompt(self, invocation, sender, _path, _window):
        """As when its user looks at the question and closes it."""
        self.questions += 1
        invocation.return_value(None)
        self.bus.emit_signal(sender, PROMPT, SECRET + "Prompt", "Completed",
                             GLib.Variant("(bv)", (True, self.refusal)))

    def Dismiss(self, invocation, *_):
        invocation.return_value(None)

    def GetSecrets(self, invocation, _sender, _path, paths, session):
        secrets = {path: (session, b"", self.items[path][1], "text/plain") for path in paths}
        invocation.return_value(GLib.Variant("(a{o(oayays)})", (secrets,)))

    def ReadAlias(self, invocation, _sender, _path, _name):
        invocation.return_value(GLib.Variant("(o)", (COLLECTION,)))

    def CreateItem(self, invocation, _sender, _path, properties, secret, replaces):
        if self.manner == "locked":
            self.refusal = GLib.Variant("o", "/")
            invocation.return_value(GLib.Variant("(oo)", ("/", PROMPT)))
            return
        attributes = properties[SECRET + "Item.Attributes"]
        same = [path for path, item in self.items.items() if item[0] == attributes and replaces]
        path = same[0] if same else self.new_item()
        self.items[path] = (attributes, bytes(secret[2]))
        invocation.return_value(GLib.Variant("(oo)", (path, "/")))

    def new_item(self):
        self.last += 1
        path = f"{COLLECTION}/{self.last}"
        self.publish(path, "Item")
        return path

    def Delete(self, invocation, _sender, path):
        self.items.pop(path, None)
        invocation.return_value(GLib.Variant("(o)", ("/",)))

    def told(self, channel, _condition):
        if not channel.readline():
            sys.exit()
        secrets = [secret.decode() for _, secret in self.items.values()]
        print(json.dumps({"secrets": secrets, "questions": self.questions}), flush=True)
        return True


if __name__ == "__main__":
    service = Service(sys.argv[1])
    GLib.io_add_watch(sys.stdin, GLib.IO_IN | GLib.IO_HUP, service.told)
    GLib.MainLoop().run()
