"""Servers that speak CouchDB's protocol, and a way to them that a test closes and makes mute."""

import asyncio
import base64
import json
import ssl
import subprocess
import threading
import urllib.error
import urllib.parse
import urllib.request
import uuid

CHUNK = 65536


class Relay:
    """A way to a server: passes bytes on in both directions, in a thread of its own."""

    def __init__(self, url):
        self.target = urllib.parse.urlsplit(url)
        self.loop = asyncio.new_event_loop()
        self.thread = threading.Thread(target=self.loop.run_forever, daemon=True)
        self.thread.start()
        self.port = 0
        self.ways = set()
        self.muting = None
        self.is_mute = threading.Event()
        self.open()

    def url(self):
        return f"http://127.0.0.1:{self.port}{self.target.path}"

    def open(self):
        self._do(self._open())

    def shut(self):
        """Breaks all connections, and takes none."""
        self._do(self._shut())

    def mute_after(self, request):
        """The next request with this text reaches the server, and its answer comes never.

        `is_mute` tells when it was sent. `open` takes it back.
        """
        self.is_mute.clear()
        self.muting = request

    def close(self):
        self.shut()
        self.loop.call_soon_threadsafe(self.loop.stop)
        self.thread.join()
        self.loop.close()

    def _do(self, what):
        return asyncio.run_coroutine_threadsafe(what, self.loop).result(30)

    async def _open(self):
        self.muting = None
        self.server = await asyncio.start_server(self._connect, "127.0.0.1", self.port)
        self.port = self.server.sockets[0].getsockname()[1]

    async def _shut(self):
        self.server.close()
        for way in list(self.ways):
            way.cancel()
        await asyncio.gather(*self.ways, return_exceptions=True)
        await self.server.wait_closed()

    async def _connect(self, reader, writer):
        self.ways.add(asyncio.current_task())
        far = None
        try:
            secure = ssl.create_default_context() if self.target.scheme == "https" else None
            port = self.target.port or (443 if secure else 80)
            far_reader, far = await asyncio.open_connection(self.target.hostname, port, ssl=secure)
            answering = asyncio.Event()
            answering.set()
            passing = {asyncio.ensure_future(self._pass_requests(reader, far, answering)),
                       asyncio.ensure_future(self._pass_answers(far_reader, writer, answering))}
            try:
                await asyncio.wait(passing, return_when=asyncio.FIRST_COMPLETED)
            finally:
                for each in passing:
                    each.cancel()
                await asyncio.gather(*passing, return_exceptions=True)
        except (OSError, asyncio.CancelledError):
            pass
        finally:
            for each in (writer, far):
                if each:
                    each.close()
            self.ways.discard(asyncio.current_task())

    async def _pass_requests(self, reader, writer, answering):
        while data := await reader.read(CHUNK):
            if self.muting and self.muting in data:
                self.muting = None
                answering.clear()
                self.is_mute.set()
            writer.write(data)
            await writer.drain()

    async def _pass_answers(self, reader, writer, answering):
        while data := await reader.read(CHUNK):
            await answering.wait()
            writer.write(data)
            await writer.drain()


class Double:
    """The server of our own, which makes databases for everybody."""

    def __init__(self, program):
        self.process = subprocess.Popen([program], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        text=True)
        self.url = self.process.stdout.readline().strip()
        self.users = 0

    def tell(self, *words):
        self.process.stdin.write(" ".join(words) + "\n")
        self.process.stdin.flush()
        assert self.process.stdout.readline().strip() == "done"

    def new_user(self):
        """A name and a password."""
        self.users += 1
        name, password = f"anna-{self.users}", f"open-sesame-{self.users}"
        self.tell("user", name, password)
        return name, password

    def new_database(self, user):
        return f"hours-of-{user}"

    def back_up(self, _database):
        self.tell("backup")

    def restore(self, _database):
        self.tell("restore")

    def close(self):
        self.process.communicate()


class Couch:
    """A CouchDB server, on which an administrator makes users and databases, and removes them."""

    def __init__(self, url, admin, password):
        self.url = url.rstrip("/")
        self.account = (admin, password)
        self.made = []
        self.copy = []

    def ask(self, method, path, body=None, fails=()):
        return ask(self.url + path, self.account, method, body, fails)

    def new_user(self):
        name, password = "kestry-test-" + uuid.uuid4().hex, uuid.uuid4().hex
        self.ask("PUT", f"/_users/org.couchdb.user:{name}",
                 {"name": name, "password": password, "roles": [], "type": "user"})
        self.made.append(f"/_users/org.couchdb.user:{name}")
        return name, password

    def new_database(self, user):
        name = "kestry-test-" + uuid.uuid4().hex
        self.make(name, user)
        self.made.append("/" + name)
        return name

    def make(self, name, user):
        own = {"names": [user]}
        self.ask("PUT", "/" + name)
        self.ask("PUT", f"/{name}/_security", {"admins": own, "members": own})

    def back_up(self, database):
        rows = self.ask("GET", f"/{database}/_all_docs")["rows"]
        self.copy = [self.ask("GET", f"/{database}/{urllib.parse.quote(row['id'], safe='')}"
                                     "?revs=true&attachments=true") for row in rows]
        self.security = self.ask("GET", f"/{database}/_security")

    def restore(self, database):
        """As it is done by replication: all versions keep their names."""
        self.ask("DELETE", "/" + database)
        self.ask("PUT", "/" + database)
        self.ask("PUT", f"/{database}/_security", self.security)
        self.ask("POST", f"/{database}/_bulk_docs", {"new_edits": False, "docs": self.copy})

    def close(self):
        for path in self.made:
            revision = self.ask("GET", path, fails=(404,)).get("_rev")
            self.ask("DELETE", path + (f"?rev={revision}" if revision else ""), fails=(404,))


def ask(url, account, method="GET", body=None, fails=()):
    """The answer as JSON; that of an expected failure is one too."""
    name = base64.b64encode(":".join(account).encode()).decode()
    request = urllib.request.Request(
        url, method=method, data=None if body is None else json.dumps(body).encode(),
        headers={"Authorization": f"Basic {name}", "Content-Type": "application/json"})
    try:
        with urllib.request.urlopen(request, timeout=30) as answer:
            return json.load(answer)
    except urllib.error.HTTPError as failure:
        if failure.code not in fails:
            raise AssertionError(f"{method} {url}: {failure} {failure.read()}") from None
        return json.load(failure)
