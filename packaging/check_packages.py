#!/usr/bin/env python3
"""Installs and removes the packages in clean systems, and starts what is in them.

    check_packages.py DIRECTORY [SUITE]

SUITE is a release of Debian for the archive, by default bookworm as for the Debian package. To be
run by root.
"""

import hashlib
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys

from clean_root import USER, CleanRoot, Failed, wait_until

# What an archive expects of any desktop.
DESKTOP = ("libdbus-1-3", "libegl1", "libexpat1", "libfontconfig1", "libfreetype6", "libgbm1",
           "libgdk-pixbuf-2.0-0", "libgl1", "libglib2.0-0", "libgssapi-krb5-2", "libharfbuzz0b",
           "libopengl0", "libssl3", "libwayland-client0", "libwayland-cursor0", "libwayland-egl1",
           "libx11-6", "libx11-xcb1", "libxcb1", "fonts-dejavu-core", "tzdata", "xz-utils")
LEDGER = f"home/{USER}/.local/share/Kestry/ledger.json"


def say(words):
    print(f"  {words}", flush=True)


def require(condition, words):
    if not condition:
        raise Failed(words)
    say(words)


def digest(path):
    return hashlib.sha256(path.read_bytes()).hexdigest()


def track_time(root):
    """A session from a terminal, with nothing else running."""
    root.do("kestryctl", "client", "add", "Birch Studio", "--rate", "95")
    root.do("kestryctl", "start", "Birch Studio", "--title", "Layout")
    root.do("kestryctl", "stop")
    require("Layout" in root.do("kestryctl", "sessions"), "kestryctl saves a session.")
    # Its home is then asked of the system's list of users, which a static program does by itself.
    lonely = root.host(*root.as_user("env", "-u", "HOME", "-u", "XDG_RUNTIME_DIR", "kestryctl", "sessions"))
    require("Layout" in lonely, "kestryctl finds the ledger with no environment.")


def process_of(root, program):
    """The number of the program in this root, as this machine counts."""
    for entry in pathlib.Path("/proc").glob("[0-9]*"):
        try:
            if (os.readlink(entry / "root") == str(root.path)
                    and pathlib.Path(os.readlink(entry / "exe")).name == program):
                return int(entry.name)
        except OSError:
            continue
    return None


def try_application(root, where, **variables):
    """Starts the application, lets it carry out a command, and quits it."""
    started = root.start("kestry", **variables)
    runtime = root.path / f"home/{USER}/runtime"

    def listens():
        if started.poll() is not None:
            raise Failed(f"kestry ended {where}: {started.stdout.read()}")
        return any(runtime.glob("*.socket"))
    wait_until(listens, f"kestry {where}")
    root.do("kestryctl", "start", "Birch Studio", "--title", "From outside")
    require("From outside" in root.do("kestryctl", "status"), f"kestry runs {where}, and takes commands.")
    process = process_of(root, "kestry")
    maps = pathlib.Path(f"/proc/{process}/maps").read_text(encoding="utf-8")
    windows = ""
    if "DISPLAY" in variables:
        wait_until(lambda: "kestry" in tree_of_windows(variables["DISPLAY"]).lower(), "its window")
        windows = tree_of_windows(variables["DISPLAY"])
        say("Its strip is on the screen.")
    root.do("kestryctl", "stop")
    os.kill(process, signal.SIGTERM)
    require(started.wait(30) == 0, "It quits when asked to.")
    return maps, windows


def tree_of_windows(display):
    return subprocess.run(["xwininfo", "-root", "-tree"], env=dict(os.environ, DISPLAY=display),
                          capture_output=True, text=True, check=False).stdout


def try_both_ways(root):
    (root.path / f"home/{USER}/runtime").mkdir(mode=0o700)
    os.chown(root.path / f"home/{USER}/runtime", 1000, 1000)
    track_time(root)
    try_application(root, "without a screen", QT_QPA_PLATFORM="offscreen")
    return try_application(root, "on X11", DISPLAY=root.show_screen())[0]


def leftovers(root, before):
    """What stands in the root that did not stand there before, but for what packages write."""
    now = files(root)
    return sorted(now - before)


def files(root):
    found = set()
    for folder, folders, names in os.walk(root.path):
        relative = os.path.relpath(folder, root.path)
        if relative.split("/")[0] in ("proc", "run", "dev", "tmp"):
            folders.clear()
            continue
        found |= {os.path.join(relative, name) for name in names}
    return found


def check_debian_package(directory):
    [package] = directory.glob("kestry_*.deb")
    print(f"{package.name} in a clean Debian 12:", flush=True)
    with CleanRoot("bookworm", directory / "work") as root:
        shutil.copy(package, root.path / "tmp/kestry.deb")
        root.install("/tmp/kestry.deb")
        say("It is installed with what it depends on alone.")
        mine = root.run("dpkg", "-L", "kestry").splitlines()
        mine = [path for path in mine if (root.path / path.lstrip("/")).is_file()]
        try_both_ways(root)
        for program in ("/usr/bin/kestry", "/usr/libexec/kestry/kestryctl-files", "/usr/libexec/kestry/kestry-logo"):
            require("not found" not in root.run("ldd", program), f"{program} finds its libraries.")
        before = digest(root.path / LEDGER)
        root.install("--reinstall", "/tmp/kestry.deb")
        say("It can be installed once more.")
        root.apt("purge", "kestry")
        left = [path for path in mine if (root.path / path.lstrip("/")).exists()]
        require(not left, "It is removed without a rest.")
        require(not root.is_installed("kestry"), "The package manager has forgotten it.")
        require(digest(root.path / LEDGER) == before, "The ledger is as it was.")


def foreign_libraries(maps, home):
    """The libraries of the toolkit that do not come from the archive."""
    paths = set(re.findall(r"\S*/lib(?:Qt6|icu|qt6)[^/\s]*\.so\S*", maps))
    if not paths:
        raise Failed("The program has loaded no toolkit.")
    return [path for path in sorted(paths) if home not in path]


def check_archive(directory, suite):
    [archive] = directory.glob("kestry-*-linux-*.tar.xz")
    print(f"{archive.name} in a clean Debian ({suite}), without an administrator:", flush=True)
    with CleanRoot(suite, directory / "work", DESKTOP) as root:
        shutil.copy(archive, root.path / "tmp/kestry.tar.xz")
        require("libqt6core6" not in root.run("dpkg-query", "-W", "-f", "${Package}\n"),
                "There is no toolkit in the system.")
        before = files(root)
        root.do("sh", "-c", "mkdir ~/unpacked && tar -xf /tmp/kestry.tar.xz -C ~/unpacked"
                " && ~/unpacked/install && rm -r ~/unpacked")
        say("It is installed for one user.")
        require((root.path / f"home/{USER}/.local/opt/kestry/bin/kestry").is_file(),
                "People start what decides on the version.")
        maps = try_both_ways(root)
        foreign = foreign_libraries(maps, f"/home/{USER}/.local/opt/kestry/versions/")
        require(not foreign, "All of its toolkit comes from the archive.")
        root.do("sh", "-c", "mv ~/.local/opt/kestry ~/elsewhere && ~/elsewhere/current/install ~/elsewhere")
        moved = try_application(root, "at another place", QT_QPA_PLATFORM="offscreen")[0]
        require(not foreign_libraries(moved, f"/home/{USER}/elsewhere/versions/"), "All of it moved along.")
        kept = digest(root.path / LEDGER)
        root.do("sh", "-c", "~/elsewhere/current/install --remove")
        left = [path for path in leftovers(root, before)
                if not re.match(rf"home/{USER}/(\.local/share/Kestry|\.config|\.cache|runtime)/", path)]
        require(not left, f"It is removed without a rest{': ' + ', '.join(left) if left else '.'}")
        require(digest(root.path / LEDGER) == kept, "The ledger is as it was.")


def main():
    directory = pathlib.Path(sys.argv[1]).resolve()
    suite = sys.argv[2] if len(sys.argv) > 2 else "bookworm"
    if os.geteuid() != 0:
        raise SystemExit("check_packages: Only root can make a system of its own in a folder.")
    try:
        if len(sys.argv) < 3:
            check_debian_package(directory)
        check_archive(directory, suite)
    except Failed as failure:
        print(f"  FAILED: {failure}")
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
