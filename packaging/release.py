"""What a release is told by: its version, its date, and what is new in it."""

import pathlib
import re
import subprocess
from dataclasses import dataclass

ROOT = pathlib.Path(__file__).resolve().parent.parent


@dataclass(frozen=True)
class Release:
    version: str
    date: str   # As 2026-11-23.
    news: list  # One line for each thing.


def version(root=ROOT):
    """The version, which is in one place alone."""
    text = (root / "CMakeLists.txt").read_text(encoding="utf-8")
    return re.search(r"^project\(kestry VERSION ([0-9.]+)", text, re.M)[1]


def commit_seconds(commit, root=ROOT):
    """When a commit was made, in seconds since 1970. All that is packaged is of this time."""
    return int(subprocess.check_output(["git", "log", "-1", "--format=%ct", commit], cwd=root))


def releases(text):
    """The releases of CHANGELOG.md, newest first."""
    found = []
    for part in re.split(r"^## ", text, flags=re.M)[1:]:
        heading, _, body = part.partition("\n")
        number, _, date = heading.partition(", ")
        items = re.findall(r"^- (.*?)(?=^- |^#|\n\n|\Z)", body, re.M | re.S)
        found.append(Release(number, date.strip(), [" ".join(item.split()) for item in items]))
    return found
