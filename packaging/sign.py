#!/usr/bin/env python3
"""Signs an archive and prints the item that announces it in a feed of updates.

    sign.py ARCHIVE --key FILE --url URL [--notes URL]

The key is a private one of Ed25519 in PEM, as `openssl genpkey -algorithm ed25519` makes it. It is
readable by its owner alone and never lies in a repository. What is announced stands in the archive
itself: its version, and the oldest kernel that its programs run on.
"""

import argparse
import base64
import email.utils
import json
import os
import pathlib
import re
import stat
import subprocess
import sys
import tarfile
import tempfile
import urllib.parse
from xml.sax.saxutils import escape, quoteattr


class Refusal(Exception):
    """A sentence for people."""


def check_key(path):
    """Refuses a key that others can read or that could be committed."""
    if stat.S_IMODE(path.stat().st_mode) & 0o077:
        raise Refusal(f"{path} can be read by others: chmod 600 it first.")
    for folder in path.resolve().parents:
        if (folder / ".git").exists():
            raise Refusal(f"{path} lies in the repository {folder}: keep keys elsewhere.")


def openssl(*words):
    ended = subprocess.run(["openssl", *words], capture_output=True, check=False)
    if ended.returncode != 0:
        raise Refusal("openssl: " + ended.stderr.decode(errors="replace").strip())
    return ended.stdout


def sign(archive, key):
    """The signature over all bytes of the archive, which is verified before it is returned."""
    kind = openssl("pkey", "-in", str(key), "-noout", "-text").decode(errors="replace")
    if "ED25519" not in kind:
        raise Refusal(f"{key} is no key of Ed25519.")
    with tempfile.TemporaryDirectory() as folder:
        public, signature = pathlib.Path(folder, "public"), pathlib.Path(folder, "signature")
        openssl("pkey", "-in", str(key), "-pubout", "-out", str(public))
        openssl("pkeyutl", "-sign", "-rawin", "-inkey", str(key), "-in", str(archive),
                "-out", str(signature))
        openssl("pkeyutl", "-verify", "-rawin", "-pubin", "-inkey", str(public), "-in", str(archive),
                "-sigfile", str(signature))
        return signature.read_bytes()


def contents(archive):
    """The version that stands in the archive, and the oldest kernel of the programs in it."""
    try:
        with tarfile.open(archive) as packed:
            members = {each.name.removeprefix("./"): each for each in packed.getmembers()}
            info = json.load(packed.extractfile(members["share/kestry/Info.json"]))
            version = info["CFBundleShortVersionString"]
            program = packed.extractfile(members["bin/kestry"]).read()
    except (tarfile.TarError, KeyError, ValueError, OSError, EOFError) as failure:
        raise Refusal(f"{archive} is no archive of Kestry: {failure}") from failure
    if not re.fullmatch(r"(0|[1-9]\d{0,8})(\.(0|[1-9]\d{0,8})){0,5}", version):
        raise Refusal(f"{archive} names no version: \"{version}\".")
    return version, oldest_kernel(program)


def oldest_kernel(program):
    """What the linker noted of a program, as 3.2.0."""
    with tempfile.NamedTemporaryFile() as file:
        file.write(program)
        file.flush()
        notes = subprocess.run(["readelf", "--notes", file.name], capture_output=True, text=True,
                               check=False)
    found = re.search(r"OS: Linux, ABI: ([0-9.]+)", notes.stdout)
    if not found:
        raise Refusal("bin/kestry in the archive is no program for Linux.")
    return found[1]


def check_link(text):
    address = urllib.parse.urlsplit(text)
    if address.scheme != "https" or not address.hostname or address.username is not None:
        raise Refusal(f"\"{text}\" is no address that begins with https:// and names a host.")


def item(archive, key, url, notes=None):
    """The item of a feed, as text."""
    check_link(url)
    if notes:
        check_link(notes)
    check_key(key)
    version, kernel = contents(archive)
    signature = base64.b64encode(sign(archive, key)).decode()
    date = email.utils.formatdate(os.stat(archive).st_mtime)
    link = f"    <releaseNotesLink>{escape(notes)}</releaseNotesLink>\n" if notes else ""
    return (f"<item>\n"
            f"    <title>Kestry {version}</title>\n"
            f"    <pubDate>{date}</pubDate>\n"
            f"    <minimumSystemVersion>{kernel}</minimumSystemVersion>\n"
            f"{link}"
            f"    <enclosure url={quoteattr(url)}\n"
            f"        length=\"{os.stat(archive).st_size}\" type=\"application/x-xz\" os=\"linux\"\n"
            f"        version=\"{version}\" shortVersionString=\"{version}\"\n"
            f"        edSignature=\"{signature}\"/>\n"
            f"</item>\n")


def main():
    parser = argparse.ArgumentParser(prog="./dev sign")
    parser.add_argument("archive", type=pathlib.Path)
    parser.add_argument("--key", type=pathlib.Path, required=True, help="a private key in PEM")
    parser.add_argument("--url", required=True, help="where the archive will be, by https")
    parser.add_argument("--notes", help="a page that tells what is new, by https")
    options = parser.parse_args()
    try:
        sys.stdout.write(item(options.archive, options.key, options.url, options.notes))
    except (Refusal, OSError) as failure:
        print(f"sign: {failure}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
