"""A small Debian of its own in a folder, to try programs in: nothing of this machine is in it."""

import os
import pathlib
import shutil
import subprocess
import tempfile
import time

USER = "mia"


class Failed(Exception):
    """A sentence on what did not hold."""


class CleanRoot:
    """`with CleanRoot("bookworm", cache) as root:` makes one, and takes it down at the end."""

    def __init__(self, suite, cache, packages=()):
        self.image = cache / f"{suite}.tar"
        self.suite = suite
        self.packages = packages
        self.path = pathlib.Path(tempfile.mkdtemp(prefix="kestry-root-"))
        self.path.chmod(0o755)
        self.screen = None
        self.started = []

    def __enter__(self):
        try:
            self.make()
        except BaseException:
            self.__exit__()
            raise
        return self

    def make(self):
        if not self.image.exists():
            self.image.parent.mkdir(parents=True, exist_ok=True)
            half = self.image.with_suffix(".new.tar")
            self.host("mmdebstrap", "--quiet", "--variant=minbase", self.suite, half)
            half.rename(self.image)
        self.host("tar", "-x", "--numeric-owner", "-C", self.path, "-f", self.image)
        shutil.copy("/etc/resolv.conf", self.path / "etc/resolv.conf")
        (self.path / "usr/sbin/policy-rc.d").write_text("#!/bin/sh\nexit 101\n")
        (self.path / "usr/sbin/policy-rc.d").chmod(0o755)
        for kind, name in (("proc", "proc"), ("tmpfs", "run"), ("tmpfs", "dev/shm")):
            (self.path / name).mkdir(exist_ok=True)
            self.host("mount", "-t", kind, kind, self.path / name)
        self.run("useradd", "--create-home", "--uid", "1000", USER)
        self.apt("update")
        if self.packages:
            self.install(*self.packages)

    def __exit__(self, *unused):
        for process in self.started:
            process.kill()
            process.wait()
        if self.screen:
            self.screen.terminate()
            self.screen.wait()
        for place in mounted_below(self.path):
            subprocess.run(["umount", "--lazy", place], check=True)
        # What is still mounted there is not this root's, and must not be emptied.
        left = mounted_below(self.path)
        if left:
            raise Failed(f"{left[0]} is still mounted; {self.path} is left as it is.")
        subprocess.run(["rm", "-rf", "--one-file-system", self.path], check=True)

    @staticmethod
    def host(*words):
        ended = subprocess.run([str(word) for word in words], capture_output=True, text=True, check=False)
        if ended.returncode != 0:
            raise Failed(f"{words[0]}: {ended.stderr.strip()[-2000:]}")
        return ended.stdout

    def run(self, *words):
        """Runs a program as the administrator of this root; returns what it prints."""
        return self.host("chroot", self.path, *words)

    def apt(self, *words):
        self.run("env", "DEBIAN_FRONTEND=noninteractive", "apt-get", "-q", "-y", *words)

    def install(self, *packages):
        self.apt("install", "--no-install-recommends", *packages)

    def is_installed(self, package):
        """Whether a package is there; one of which settings are left counts too."""
        return package in self.run("dpkg-query", "-W", "-f", "${Package}\n").splitlines()

    def as_user(self, *words, **variables):
        """The command line that runs a program as the user."""
        environment = {"HOME": f"/home/{USER}", "PATH": f"/home/{USER}/.local/bin:/usr/bin:/bin",
                       "XDG_RUNTIME_DIR": f"/home/{USER}/runtime", "LANG": "C.UTF-8", **variables}
        return ["chroot", f"--userspec={USER}:{USER}", str(self.path), "env", "-i",
                *(f"{name}={value}" for name, value in environment.items()), *words]

    def do(self, *words, **variables):
        return self.host(*self.as_user(*words, **variables))

    def start(self, *words, **variables):
        """Starts a program as the user, which goes on running."""
        process = subprocess.Popen(self.as_user(*words, **variables), stdout=subprocess.PIPE,
                                   stderr=subprocess.STDOUT, text=True)
        self.started.append(process)
        return process

    def show_screen(self):
        """Puts a screen before this root; returns its name. The server is this machine's, and its
        socket gets a second name in this root."""
        reading, writing = os.pipe()
        self.screen = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writing), "-ac", "-screen", "0", "1280x800x24", "-noreset"],
            pass_fds=[writing], stderr=subprocess.DEVNULL)
        os.close(writing)
        with os.fdopen(reading) as pipe:
            number = pipe.readline().strip()
        sockets = self.path / "tmp/.X11-unix"
        sockets.mkdir(exist_ok=True)
        os.link(f"/tmp/.X11-unix/X{number}", sockets / f"X{number}")
        return f":{number}"


def mounted_below(path):
    """Where something is mounted below a folder, the innermost first."""
    with open("/proc/self/mounts", encoding="utf-8") as file:
        places = [line.split()[1] for line in file]
    return sorted((place for place in places if place.startswith(f"{path}/")), reverse=True)


def wait_until(condition, what, seconds=60):
    deadline = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > deadline:
            raise Failed(f"{what}: not there after {seconds} seconds.")
        time.sleep(0.1)
