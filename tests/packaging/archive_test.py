"""An archive that stands anywhere."""

import base64
import os
import pathlib
import subprocess
import tarfile
import unittest

from packaged import PACKAGING, ROOT, folder_of, make_tree

import archive


class LibrariesTest(unittest.TestCase):
    def test_what_every_desktop_has_comes_from_the_system(self):
        for name in ("libc.so.6", "ld-linux-x86-64.so.2", "libstdc++.so.6", "libxcb.so.1",
                     "libGL.so.1", "libglib-2.0.so.0", "libssl.so.3", "libwayland-client.so.0"):
            self.assertTrue(archive.comes_from_the_system(name), name)

    def test_what_differs_among_distributions_is_brought(self):
        for name in ("libQt6Core.so.6", "libicuuc.so.72", "libsimdjson.so.14", "libfmt.so.9",
                     "libxcb-randr.so.0", "libqt6keychain.so.1", "libsqlite3.so.0"):
            self.assertFalse(archive.comes_from_the_system(name), name)

    def test_what_a_library_needs_is_brought_with_it(self):
        toolkit = archive.system_libraries()["libQt6Gui.so.6"]
        brought = archive.missing_libraries([toolkit])
        self.assertIn("libQt6Core.so.6", brought)
        self.assertIn("libicudata", {name.split(".")[0] for name in brought})
        self.assertNotIn("libc.so.6", brought)

    def test_every_file_looks_in_the_library_folder_of_its_tree(self):
        tree = pathlib.Path("/tree")
        for name in ("lib/libQt6Core.so.6", "bin/kestry", "libexec/kestry/kestry-logo",
                     "plugins/platforms/libqxcb.so", "qml/QtQml/Models/libmodelsplugin.so"):
            path = archive.run_path(tree, tree / name)
            found = os.path.normpath(path.replace("$ORIGIN", str((tree / name).parent)))
            self.assertEqual(found, "/tree/lib", name)


class UpdatesTest(unittest.TestCase):
    FEED = "https://example.org/feed.xml"

    def key(self):
        folder = folder_of(self)
        private, public = folder / "private", folder / "public"
        subprocess.run(["openssl", "genpkey", "-algorithm", "ed25519", "-out", private], check=True)
        subprocess.run(["openssl", "pkey", "-in", private, "-pubout", "-out", public], check=True)
        return public

    def test_without_a_feed_there_are_none(self):
        self.assertEqual(archive.read_updates(None, None), {})

    def test_a_feed_and_a_key_switch_them_on(self):
        keys = archive.read_updates(self.FEED, self.key())
        self.assertEqual((keys["KestryUpdatesEnabled"], keys["SUFeedURL"]), (True, self.FEED))
        self.assertEqual(len(base64.b64decode(keys["SUPublicEDKey"])), 32)

    def test_what_would_leave_them_off_is_refused(self):
        key = self.key()
        other = folder_of(self) / "short"
        other.write_text(base64.b64encode(bytes(31)).decode())
        for feed, path in ((self.FEED, None), (None, key), ("http://example.org/", key),
                           ("https:///feed", key), (self.FEED, other)):
            with self.assertRaises(SystemExit):
                archive.read_updates(feed, path)


class CompleteTest(unittest.TestCase):
    def setUp(self):
        self.folder = folder_of(self)
        self.tree = self.folder / "tree"
        self.build = self.folder / "build/libexec/kestry"
        self.build.mkdir(parents=True)

    def compile(self, *flags):
        subprocess.run(["gcc", *flags, "-x", "c", "-o", self.build / "kestry-start", "-"],
                       input=b"int main(void) { return 0; }", check=True)

    def test_what_decides_on_the_version_is_where_the_installer_looks(self):
        self.compile("-static")
        archive.copy_launcher(self.tree, self.folder / "build")
        launcher = self.tree / "libexec/kestry/kestry-start"
        self.assertEqual(subprocess.run([launcher], check=False).returncode, 0)
        self.assertIn("kestry/kestry-start", (PACKAGING / "install-archive").read_text())

    def test_a_launcher_that_needs_libraries_is_refused(self):
        self.compile()
        with self.assertRaisesRegex(SystemExit, "needs libraries"):
            archive.copy_launcher(self.tree, self.folder / "build")

    def test_the_licences_of_all_that_is_copied_or_linked_go_along(self):
        library = archive.system_libraries()["libsqlite3.so.0"]
        archive.copy_licences(self.tree, ROOT, [library])
        place = self.tree / "share/doc/kestry"
        self.assertEqual((place / "LICENSE").read_text(), (ROOT / "LICENSE").read_text())
        found = {path.name for path in (place / "licences").iterdir() if path.stat().st_size > 0}
        self.assertEqual(found, {"libsqlite3-0", *archive.LINKED_STATICALLY})


class PackTest(unittest.TestCase):
    def pack(self, seconds_of_files):
        folder = folder_of(self)
        tree = make_tree(folder / "tree")
        for path in [tree, *tree.rglob("*")]:
            os.utime(path, (seconds_of_files, seconds_of_files))
        archive.pack(tree, folder / "packed.tar.xz", 1773446400)
        return folder / "packed.tar.xz"

    def test_equal_trees_give_equal_bytes(self):
        self.assertEqual(self.pack(1).read_bytes(), self.pack(1000000000).read_bytes())

    def test_files_are_nobodys_and_of_one_time_with_no_folder_around(self):
        with tarfile.open(self.pack(1)) as packed:
            members = packed.getmembers()
        self.assertEqual({(each.uid, each.gid, each.mtime) for each in members}, {(0, 0, 1773446400)})
        names = [each.name for each in members]
        self.assertEqual(names, sorted(names))
        self.assertIn("share/kestry/Info.json", names)


if __name__ == "__main__":
    unittest.main()
