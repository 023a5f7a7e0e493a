"""A server of updates on loopback, with a certificate, a key and versions of a test's own."""

import base64
import http.server
import json
import os
import shutil
import ssl
import subprocess
import tarfile
import threading


def openssl(*arguments):
    return subprocess.run(["openssl", *arguments], check=True, capture_output=True).stdout


class SigningKey:
    """Signs archives as those who publish them do."""

    def __init__(self, folder):
        self.path = os.path.join(folder, "key.pem")
        openssl("genpkey", "-algorithm", "ed25519", "-out", self.path)
        der = openssl("pkey", "-in", self.path, "-pubout", "-outform", "DER")
        self.public = base64.b64encode(der[-32:]).decode()

    def sign(self, path):
        signature = openssl("pkeyutl", "-sign", "-rawin", "-inkey", self.path, "-in", path)
        return base64.b64encode(signature).decode()


class UpdateServer:
    """Serves what is in `pages`, by https, and notes who has asked for what."""

    def __init__(self, folder):
        authority = os.path.join(folder, "authority.pem")
        private = os.path.join(folder, "server.pem")
        openssl("req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1",
                "-nodes", "-keyout", private, "-out", authority, "-days", "2",
                "-subj", "/CN=localhost", "-addext", "subjectAltName=IP:127.0.0.1")
        self.authority = authority
        self.pages = {}
        self.asked = []
        server = self

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):  # the library's name for it
                server.asked.append((self.path, dict(self.headers)))
                page = server.pages.get(self.path)
                if page is None:
                    self.send_error(404)
                elif callable(page):
                    page(self)
                else:
                    self.send_response(200)
                    self.send_header("Content-Length", str(len(page)))
                    self.end_headers()
                    self.wfile.write(page)

            def log_message(self, *_):
                pass

        self.server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(authority, private)
        self.server.socket = context.wrap_socket(self.server.socket, server_side=True)
        threading.Thread(target=self.server.serve_forever, daemon=True).start()

    def close(self):
        self.server.shutdown()
        self.server.server_close()

    def url(self, path):
        return f"https://127.0.0.1:{self.server.server_port}{path}"

    def announce(self, version, archive, signature, length=None):
        length = os.path.getsize(archive) if length is None else length
        with open(archive, "rb") as file:
            self.pages["/archive"] = file.read()
        self.pages["/feed"] = f"""<?xml version="1.0" encoding="utf-8"?>
            <rss version="2.0" xmlns:k="https://example.org/ns"><channel><title>Kestry</title>
            <item><enclosure url="{self.url("/archive")}" length="{length}" k:version="{version}"
            k:edSignature="{signature}" type="application/octet-stream"/></item>
            </channel></rss>""".encode()


class Installation:
    """The real programs, laid out so that they can update themselves."""

    def __init__(self, folder, programs, launcher, info):
        self.root = os.path.join(folder, "kestry")
        self.programs = programs
        self.info = info
        os.makedirs(self.path("bin"))
        shutil.copy(launcher, self.path("bin", "kestry"))
        self.lay(self.path("versions", "1.0.0"), "1.0.0")
        os.symlink("versions/1.0.0", self.path("current"))

    def path(self, *names):
        return os.path.join(self.root, *names)

    def launcher(self):
        return self.path("bin", "kestry")

    def current(self):
        return os.path.basename(os.readlink(self.path("current")))

    def versions(self):
        return sorted(os.listdir(self.path("versions")))

    def lay(self, root, version, script=None):
        """The programs as a version, or one that is a script."""
        os.makedirs(os.path.join(root, "bin"))
        os.makedirs(os.path.join(root, "share", "kestry"))
        program = os.path.join(root, "bin", "kestry")
        if script is None:
            shutil.copy(os.path.join(self.programs, "kestry"), program)
        else:
            with open(program, "w", encoding="utf-8") as file:
                file.write("#!/bin/sh\n" + script + "\n")
            os.chmod(program, 0o755)
        with open(os.path.join(root, "share", "kestry", "Info.json"), "w", encoding="utf-8") as file:
            json.dump({"CFBundleShortVersionString": version, **self.info}, file)

    def archive(self, folder, version, script=None, extra=None):
        """A version as it is published; `extra` may add what does not belong into it."""
        root = os.path.join(folder, "archive-" + version)
        self.lay(root, version, script)
        path = root + ".tar.xz"
        with tarfile.open(path, "w:xz", preset=0) as archive:
            archive.add(root, ".")
            if extra:
                extra(archive)
        return path
