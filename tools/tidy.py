#!/usr/bin/env python3
"""Runs clang-tidy over sources, and remembers what it said of each.

    tidy.py BUILD-DIRECTORY SOURCE...

A source is looked at again when anything has changed that its findings could depend on: the source,
any header that it includes, how it is compiled, the checks, or clang-tidy. What is remembered lies in
$KESTRY_TIDY_CACHE, by default kestry/tidy in the user's cache folder; other copies of the repository
share it, and it may be removed at any time. The exit status is 1 when there are findings.
"""

import concurrent.futures
import functools
import hashlib
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent


def digest(*parts):
    state = hashlib.sha256()
    for part in parts:
        state.update(str(part).encode() + b"\0")
    return state.hexdigest()


@functools.cache
def content_digest(path):
    """Of a file, none when there is none."""
    try:
        return hashlib.sha256(pathlib.Path(path).read_bytes()).hexdigest()
    except OSError:
        return None


def cache_folder():
    named = os.environ.get("KESTRY_TIDY_CACHE")
    if named:
        return pathlib.Path(named)
    user = os.environ.get("XDG_CACHE_HOME") or os.path.expanduser("~/.cache")
    return pathlib.Path(user, "kestry/tidy")


def prerequisites(rule):
    """The names in a rule as make reads it, in which blanks and a few others are escaped."""
    text = rule.replace("\\\n", " ").partition(": ")[2]
    words = re.findall(r"(?:\\[ #\t]|\$\$|\S)+", text)
    return [re.sub(r"\\([ #\t])", r"\1", word).replace("$$", "$") for word in words]


class Tidy:
    def __init__(self, build, root=ROOT, program="clang-tidy", compiler="clang++"):
        self.build = pathlib.Path(build).resolve()
        self.root = root
        self.program = program
        self.compiler = compiler
        self.cache = cache_folder()
        self.version = subprocess.check_output([program, "--version"], text=True)
        with open(self.build / "compile_commands.json", encoding="utf-8") as file:
            self.commands = {pathlib.Path(each["file"]): each for each in json.load(file)}

    def command_of(self, source):
        """How a source is compiled; like one beside it, when it is compiled as a part of another."""
        found = self.commands.get(source) or next(
            (each for path, each in sorted(self.commands.items())
             if path.parent == source.parent and path.suffix == ".cpp"), None)
        if found is None:
            raise SystemExit(f"tidy: Nothing in {self.build} compiles {source}.")
        return found

    def relative(self, text):
        """The same in every copy of the repository."""
        return text.replace(str(self.build), "BUILD").replace(str(self.root), "ROOT")

    def absolute(self, text):
        for name, folder in (("BUILD", self.build), ("ROOT", self.root)):
            if text.startswith(name):
                return str(folder) + text[len(name):]
        return text

    def place_of(self, source):
        """The file that remembers a source in all its states that are the same but for contents."""
        command = self.relative(self.command_of(source)["command"])
        checks = content_digest(self.root / ".clang-tidy")
        return self.cache / (digest(self.version, checks, command, self.relative(str(source))) + ".json")

    def remembered(self, place):
        """What was said, when nothing that it depends on has changed; else none."""
        try:
            memory = json.loads(place.read_text(encoding="utf-8"))
            same = all(known and content_digest(self.absolute(path)) == known
                       for path, known in memory["files"].items())
            return (memory["status"], memory["output"]) if same else None
        except (OSError, ValueError, KeyError):
            return None

    def files_of(self, source):
        """The source and all headers that it includes."""
        command = self.command_of(source)
        words = shlex.split(command["command"])
        start = next(index for index, word in enumerate(words) if word.startswith("-"))
        if "-o" in words:
            at = words.index("-o")
            del words[at:at + 2]
        flags = [word for word in words[start:] if word != "-c" and not word.endswith(".cpp")
                 and word != "-fpch-preprocess"]
        listed = subprocess.run([self.compiler, *flags, "-w", "-M", str(source)],
                                cwd=command["directory"], capture_output=True, text=True, check=False)
        if listed.returncode != 0:
            return None
        return [str(pathlib.Path(command["directory"], name).resolve())
                for name in prerequisites(listed.stdout)]

    def remember(self, place, source, status, output):
        # Any other status is of a linter that has failed, and may not fail again.
        if status != 0 and not (status == 1 and output):
            return
        files = self.files_of(source)
        if not files:
            return
        known = {self.relative(path): content_digest(path) for path in files}
        if None in known.values():
            return
        memory = {"status": status, "output": output, "files": known}
        place.parent.mkdir(parents=True, exist_ok=True)
        with tempfile.NamedTemporaryFile("w", dir=place.parent, delete=False, encoding="utf-8") as file:
            json.dump(memory, file)
        os.replace(file.name, place)

    def look_at(self, source):
        """Returns the status, what was said, and whether it was remembered."""
        place = self.place_of(source)
        known = self.remembered(place)
        if known:
            return *known, True
        ended = subprocess.run([self.program, "-p", str(self.build), "--quiet", str(source)],
                               capture_output=True, text=True, check=False)
        # The standard error says how many findings there were in headers of others.
        output = ended.stdout if ended.returncode == 0 else ended.stdout + ended.stderr
        self.remember(place, source, ended.returncode, output)
        return ended.returncode, output, False


def main():
    tidy = Tidy(sys.argv[1])
    sources = [pathlib.Path(name).resolve() for name in sys.argv[2:]]
    failed = known = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for status, output, was_known in pool.map(tidy.look_at, sources):
            sys.stdout.write(output)
            failed += status != 0
            known += was_known
    print(f"clang-tidy: {len(sources)} sources, {known} of them as remembered, {failed} with findings",
          file=sys.stderr)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
