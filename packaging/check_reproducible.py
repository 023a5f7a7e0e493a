#!/usr/bin/env python3
"""Makes the packages once more, in a folder of another name and length and without what was
compiled before, and compares all bytes with those that are there.

    check_reproducible.py DIRECTORY

DIRECTORY has the packages that `./dev package` has made of the same commit.
"""

import hashlib
import os
import pathlib
import subprocess
import sys
import tempfile

PACKAGE = pathlib.Path(__file__).resolve().parent / "package.py"


def packages(directory):
    """Name -> digest of what is handed out."""
    found = [*directory.glob("kestry*.deb"), *directory.glob("kestry-*.tar.xz")]
    return {path.name: hashlib.sha256(path.read_bytes()).hexdigest() for path in sorted(found)}


def make(directory):
    environment = dict(os.environ, CCACHE_DISABLE="1")
    made = subprocess.run([sys.executable, "-B", PACKAGE, "--output", directory], env=environment,
                          stdout=subprocess.DEVNULL, check=False)
    if made.returncode != 0:
        raise SystemExit("check_reproducible: The packages could not be made.")
    return packages(directory)


def main():
    first = packages(pathlib.Path(sys.argv[1]))
    if not first:
        raise SystemExit(f"check_reproducible: There are no packages in {sys.argv[1]}.")
    with tempfile.TemporaryDirectory(prefix="kestry-once-more-in-a-folder-of-another-length-") as folder:
        second = make(pathlib.Path(folder))
    status = 0
    for name in sorted(first | second):
        same = first.get(name) == second.get(name)
        status = status if same else 1
        print(f"{'the same' if same else 'DIFFERS '}  {first.get(name)}  {name}")
    return status


if __name__ == "__main__":
    sys.exit(main())
