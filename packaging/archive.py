"""Completes an installed tree so that it can stand anywhere, and packs it.

A tree is moved with the libraries that differ from one distribution to the next: those of the
toolkit and all that these and the programs need, but for what each desktop has. Every library and
plugin is told where the others are; with the programs alone told, some would come from the system.
"""

import base64
import functools
import json
import lzma
import pathlib
import re
import shutil
import subprocess
import urllib.parse

# What each desktop has, in versions that understand one another: the C library, what draws on this
# screen, and what has files and services of its own beside the library.
FROM_THE_SYSTEM = re.compile(
    r"""(ld-linux.*|libc|libm|libdl|libpthread|librt|libresolv|libgcc_s|libstdc\+\+
        |libpng16|libX11|libX11-xcb|libxcb|libGL|libEGL|libGLX|libOpenGL|libGLdispatch|libdrm|libgbm
        |libwayland-.*|libfontconfig|libfreetype|libharfbuzz|libexpat|libz
        |libdbus-1|libglib-2\.0|libgobject-2\.0|libgio-2\.0|libgmodule-2\.0|libgdk_pixbuf-2\.0
        |libgssapi_krb5|libssl|libcrypto|libudev|libsystemd)\.so(\..*)?""", re.X)

PLUGINS = (
    "platforms/libqxcb.so", "platforms/libqwayland-generic.so", "platforms/libqwayland-egl.so",
    "platforms/libqoffscreen.so",
    "xcbglintegrations/libqxcb-glx-integration.so", "xcbglintegrations/libqxcb-egl-integration.so",
    "wayland-shell-integration/libxdg-shell.so", "wayland-decoration-client/libbradient.so",
    "wayland-graphics-integration-client/libqt-plugin-wayland-egl.so",
    "platforminputcontexts/libcomposeplatforminputcontextplugin.so",
    "platforminputcontexts/libibusplatforminputcontextplugin.so",
    "tls/libqopensslbackend.so",
)
QML_MODULES = ("QtQml", "QtQml/Models", "QtQml/WorkerScript", "QtQuick", "QtQuick/Window")

# What is in the programs themselves; no library of theirs is copied.
LINKED_STATICALLY = ("libabsl-dev", "libc6-dev", "libcli11-dev", "libfmt-dev", "libstdc++-12-dev")

QT_CONF = "[Paths]\nPrefix=..\nPlugins=plugins\nQmlImports=qml\n"
ED25519_DER = bytes.fromhex("302a300506032b6570032100")  # before the 32 bytes of a public key


def output(*words):
    return subprocess.check_output(words, text=True)


@functools.cache
def system_libraries():
    """Name -> path of the libraries that the loader of this machine finds."""
    found = {}
    for line in output("/sbin/ldconfig", "-p").splitlines():
        match = re.match(r"\s+(\S+) \(.*x86-64.*\) => (\S+)|\s+(\S+) \(.*AArch64.*\) => (\S+)", line)
        if match:
            name, path = [each for each in match.groups() if each]
            found.setdefault(name, pathlib.Path(path))
    return found


def is_elf(path):
    with open(path, "rb") as file:
        return file.read(4) == b"\x7fELF"


def needed(path):
    """The names of the libraries that a program or a library names itself."""
    return re.findall(r"\(NEEDED\).*\[(.*)\]", output("readelf", "-d", str(path)))


def comes_from_the_system(name):
    return FROM_THE_SYSTEM.fullmatch(name) is not None


def missing_libraries(paths):
    """All that these need and that is to be brought along: name -> path."""
    brought = {}
    waiting = list(paths)
    while waiting:
        for name in needed(waiting.pop()):
            if name not in brought and not comes_from_the_system(name):
                brought[name] = system_libraries()[name]
                waiting.append(brought[name])
    return brought


def run_path(tree, path):
    """Where a file of the tree looks for libraries, as seen from itself."""
    up = "/".join([".."] * len(path.relative_to(tree).parent.parts))
    return "$ORIGIN" if path.parent == tree / "lib" else f"$ORIGIN/{up}/lib"


def copy_toolkit(tree):
    """Copies plugins and QML modules; returns the libraries among them."""
    plugins = pathlib.Path(output("qmake6", "-query", "QT_INSTALL_PLUGINS").strip())
    modules = pathlib.Path(output("qmake6", "-query", "QT_INSTALL_QML").strip())
    pairs = [(plugins / name, tree / "plugins" / name) for name in PLUGINS]
    for module in QML_MODULES:
        pairs += [(each, tree / "qml" / module / each.name)
                  for each in sorted((modules / module).iterdir())
                  if each.name == "qmldir" or each.suffix == ".so"]
    for source, target in pairs:
        target.parent.mkdir(parents=True, exist_ok=True)
        shutil.copyfile(source, target)
    (tree / "bin/qt.conf").write_text(QT_CONF, encoding="utf-8")
    return [(source, target) for source, target in pairs if target.suffix == ".so"]


def copy_licences(tree, source, copied):
    """Kestry's own licence, and that of each package that something was copied or linked from."""
    licences = tree / "share/doc/kestry/licences"
    licences.mkdir(parents=True)
    shutil.copyfile(source / "LICENSE", tree / "share/doc/kestry/LICENSE")
    real = sorted({str(path.resolve()) for path in copied})
    packages = {line.split(":")[0] for line in output("dpkg-query", "-S", *real).splitlines()}
    for package in sorted(packages | set(LINKED_STATICALLY)):
        shutil.copyfile(f"/usr/share/doc/{package}/copyright", licences / package)


def read_updates(feed, public_key):
    """The keys of Info.json that switch updates on; none without a feed."""
    if feed is None and public_key is None:
        return {}
    if feed is None or public_key is None:
        raise SystemExit("package: Updates need both --feed and --public-key.")
    address = urllib.parse.urlsplit(feed)
    if address.scheme != "https" or not address.hostname:
        raise SystemExit("package: The address of the feed has to begin with https:// and name a host.")
    text = public_key.read_text(encoding="ascii")
    key = base64.b64decode("".join(line for line in text.splitlines() if not line.startswith("-")))
    key = key.removeprefix(ED25519_DER)
    if len(key) != 32:
        raise SystemExit(f"package: {public_key} is no public key of Ed25519.")
    return {"KestryUpdatesEnabled": True, "SUFeedURL": feed,
            "SUPublicEDKey": base64.b64encode(key).decode()}


def copy_launcher(tree, build):
    """Puts what decides on the version that is started where the installer looks for it."""
    built = build / "libexec/kestry/kestry-start"
    if needed(built):
        raise SystemExit("package: kestry-start needs libraries. Beside all versions it would find none.")
    launcher = tree / "libexec/kestry/kestry-start"
    launcher.parent.mkdir(parents=True, exist_ok=True)
    subprocess.run(["strip", "-o", str(launcher), str(built)], check=True)


def complete(tree, source, build, updates):
    """Makes an installed tree one that can be moved and can update itself.

    `source` is what it was made of, `build` where; `updates` go into its Info.json.
    """
    copy_launcher(tree, build)
    toolkit = copy_toolkit(tree)
    programs = [path for path in sorted(tree.rglob("*"))
                if path.is_file() and path.parent.name in ("bin", "kestry") and is_elf(path)]
    libraries = missing_libraries([*programs, *(path for path, _ in toolkit)])
    (tree / "lib").mkdir(exist_ok=True)
    for name, path in libraries.items():
        shutil.copyfile(path, tree / "lib" / name)
    everything = [*programs, *(target for _, target in toolkit), *(tree / "lib" / name for name in libraries)]
    for path in everything:
        if needed(path):  # A static program has nothing to be told.
            subprocess.run(["patchelf", "--set-rpath", run_path(tree, path), str(path)], check=True)
    copy_licences(tree, source, [*libraries.values(), *(path for path, _ in toolkit)])
    # The bus starts programs by their full path: the installer writes this file.
    shutil.rmtree(tree / "share/dbus-1")
    installer = tree / "install"
    shutil.copyfile(source / "packaging/install-archive", installer)
    info = tree / "share/kestry/Info.json"
    keys = json.loads(info.read_text(encoding="utf-8"))
    info.write_text(json.dumps({**keys, **updates}, indent=2) + "\n", encoding="utf-8")
    for path in tree.rglob("*"):
        executable = path in programs or path == installer or path.is_dir()
        path.chmod(0o755 if executable else 0o644)


def pack(tree, target, seconds):
    """Packs what is in a tree, with no folder around it. Equal trees give equal bytes."""
    command = ["tar", "-c", "--sort=name", f"--mtime=@{seconds}", "--owner=0", "--group=0",
               "--numeric-owner", "--format=ustar", "-C", str(tree),
               *sorted(each.name for each in tree.iterdir())]
    with subprocess.Popen(command, stdout=subprocess.PIPE) as packing:
        # With several threads the bytes would depend on their number.
        half = target.with_name(target.name + ".new")
        with lzma.open(half, "wb", preset=9) as file:
            shutil.copyfileobj(packing.stdout, file)
    if packing.returncode != 0:
        raise SystemExit("package: tar failed.")
    half.rename(target)
