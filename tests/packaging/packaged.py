"""Finds the sources of the packaging, and makes small archives of Kestry."""

import json
import pathlib
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
PACKAGING = ROOT / "packaging"
sys.path.insert(0, str(PACKAGING))


def folder_of(test):
    """A folder that goes with the test."""
    folder = tempfile.TemporaryDirectory(prefix="kestry-packaging-")
    test.addCleanup(folder.cleanup)
    return pathlib.Path(folder.name)


def make_tree(tree, version="1.2.0", program="/bin/true"):
    """What an archive holds, but for the programs."""
    for name in ("bin/kestry", "bin/kestryctl"):
        (tree / name).parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(program, tree / name)
    info = tree / "share/kestry/Info.json"
    info.parent.mkdir(parents=True)
    info.write_text(json.dumps({"CFBundleShortVersionString": version}, indent=2))
    return tree


def run(*words, **options):
    return subprocess.run([str(word) for word in words], capture_output=True, text=True, timeout=60,
                          check=False, **options)
