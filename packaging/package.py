#!/usr/bin/env python3
"""Makes the packages of the newest commit: a Debian package and an archive that can be moved.

    package.py [--output DIRECTORY] [--feed URL --public-key FILE]

With an address of a feed and a public key, the program in the archive looks for updates there. The
Debian package never does. The same commit is meant to give the same bytes, with the same versions of
compiler and libraries; check_reproducible.py tells whether it does.
"""

import argparse
import email.utils
import os
import pathlib
import shutil
import subprocess
import sys
import textwrap

import archive
import release

# What debhelper leaves, with the list of the others at the end.
MADE = ("deb", "buildinfo", "changes")
MAINTAINER = "The Kestry maintainers <maintainers@kestry.org>"


def run(*words, log=None, **options):
    """Runs a program; what it prints is shown when it fails."""
    with open(log or os.devnull, "w+", encoding="utf-8") as output:
        ended = subprocess.run(words, stdout=output, stderr=subprocess.STDOUT, check=False, **options)
        if ended.returncode != 0:
            output.seek(0)
            sys.stderr.write("".join(output.readlines()[-40:]))
            raise SystemExit(f"package: {words[0]} failed" + (f"; {log} has all of it." if log else "."))


def debian_changelog(newest, seconds):
    """The changelog of the Debian package, of what is new in this release."""
    items = "".join(textwrap.fill(item, 78, initial_indent="  * ", subsequent_indent="    ") + "\n"
                    for item in newest.news)
    return (f"kestry ({newest.version}) unstable; urgency=medium\n\n{items}\n"
            f" -- {MAINTAINER}  {email.utils.formatdate(seconds)}\n")


def lay_out_source(source, commit, seconds):
    """Puts what is committed, and nothing else, into an empty folder."""
    if source.exists():
        shutil.rmtree(source)
    source.mkdir(parents=True)
    packed = subprocess.run(["git", "archive", commit], cwd=release.ROOT, stdout=subprocess.PIPE,
                            check=True)
    subprocess.run(["tar", "-x", "-C", str(source)], input=packed.stdout, check=True)
    shutil.copytree(source / "packaging/debian", source / "debian")
    newest = release.releases((source / "CHANGELOG.md").read_text(encoding="utf-8"))[0]
    if newest.version != release.version(source):
        raise SystemExit("package: The newest release in CHANGELOG.md is not the version of CMakeLists.txt.")
    (source / "debian/changelog").write_text(
        debian_changelog(newest, seconds), encoding="utf-8")


def build_debian_package(source, output, environment):
    run("dpkg-buildpackage", "--build=binary", "--no-sign", cwd=source, log=output / "debian.log",
        env=environment)
    made = [path for kind in MADE for path in sorted(source.parent.glob(f"kestry*.{kind}"))]
    for path in made:
        shutil.move(path, output / path.name)
    return output / made[-1].name


def build_archive(source, output, options, environment):
    """The programs of the Debian package once more, with the libraries that they need."""
    [build] = source.glob("obj-*")
    tree = source.parent / "tree"
    if tree.exists():
        shutil.rmtree(tree)
    run("cmake", "--install", str(build), "--prefix", str(tree), "--strip",
        log=output / "archive.log", env=environment)
    updates = archive.read_updates(options.feed, options.public_key)
    archive.complete(tree, source, build, updates)
    machine = os.uname().machine
    packed = output / f"kestry-{release.version(source)}-linux-{machine}.tar.xz"
    archive.pack(tree, packed, int(environment["SOURCE_DATE_EPOCH"]))
    return packed


def main():
    parser = argparse.ArgumentParser(prog="./dev package")
    parser.add_argument("--output", type=pathlib.Path, default=release.ROOT / "build/packages")
    parser.add_argument("--feed", help="where the archive looks for updates; without it nowhere")
    parser.add_argument("--public-key", type=pathlib.Path, help="of Ed25519, in PEM or base64")
    options = parser.parse_args()
    output = options.output.resolve()
    changed = subprocess.check_output(["git", "status", "--porcelain"], cwd=release.ROOT, text=True)
    if changed:
        print("package: What is not committed is not packaged.", file=sys.stderr)
    commit = subprocess.check_output(["git", "rev-parse", "HEAD"], cwd=release.ROOT, text=True).strip()
    seconds = release.commit_seconds(commit)
    source = output / "work/source"
    lay_out_source(source, commit, seconds)
    environment = dict(os.environ, SOURCE_DATE_EPOCH=str(seconds), LC_ALL="C.UTF-8",
                       TZ="UTC", DEB_BUILD_OPTIONS=f"parallel={os.cpu_count()}")
    # debhelper hides the home directory, and with it what was compiled before.
    environment.setdefault("CCACHE_DIR", os.path.expanduser("~/.cache/ccache"))
    for kind in (*MADE, "tar.xz"):
        for old in output.glob(f"kestry*.{kind}"):
            old.unlink()
    changes = build_debian_package(source, output, environment)
    print(build_archive(source, output, options, environment))
    for package in sorted(output.glob("*.deb")):
        print(package)
    checked = subprocess.run(["lintian", "--info", "--fail-on", "error,warning", str(changes)],
                             check=False)
    return checked.returncode


if __name__ == "__main__":
    sys.exit(main())
