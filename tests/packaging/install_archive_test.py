"""Installing from an unpacked archive, and removing it again."""

import os
import shutil
import unittest

from packaged import PACKAGING, folder_of, make_tree, run

ID = "org.kestry.Kestry"


class InstallArchiveTest(unittest.TestCase):
    def setUp(self):
        self.home = folder_of(self) / "Mia of Birch"
        self.home.mkdir()
        self.prefix = self.home / ".local/opt/kestry"
        self.share = self.home / ".local/share"

    def unpack(self, version):
        tree = make_tree(self.home / f"unpacked-{version}", version)
        (tree / "bin/kestryctl").write_text(f"#!/bin/sh\necho {version}\n")
        (tree / "share/applications").mkdir()
        shutil.copy(PACKAGING / f"{ID}.desktop", tree / "share/applications")
        shutil.copy(PACKAGING / "install-archive", tree / "install")
        return tree

    def run_installer(self, path, *words):
        environment = {"HOME": str(self.home), "PATH": os.environ["PATH"]}
        return run(path, *words, env=environment, cwd=self.home)

    def install(self, version, *words, starter=None):
        tree = self.unpack(version)
        if starter:
            (tree / "libexec/kestry").mkdir(parents=True)
            (tree / "libexec/kestry/kestry-start").write_text(starter)
        ended = self.run_installer(tree / "install", *words)
        self.assertEqual((ended.returncode, ended.stderr), (0, ""))

    def remove(self):
        ended = self.run_installer(self.prefix / "current/install", "--remove")
        self.assertEqual((ended.returncode, ended.stderr), (0, ""))

    def installed_version(self):
        return run(self.home / ".local/bin/kestryctl").stdout.strip()

    def files(self):
        """All but the desktop's own list of the menu."""
        return {str(path.relative_to(self.home)) for path in self.home.rglob("*")
                if not path.is_dir() and "unpacked" not in str(path)
                and path.name != "mimeinfo.cache"}

    def test_versions_stand_side_by_side_and_a_link_leads_to_one(self):
        self.install("1.2.0")
        self.install("1.10.0")
        self.assertEqual(os.readlink(self.prefix / "current"), "versions/1.10.0")
        self.assertEqual(set(os.listdir(self.prefix / "versions")), {"1.2.0", "1.10.0"})
        self.assertEqual(self.installed_version(), "1.10.0")

    def test_the_same_version_can_be_installed_again(self):
        self.install("1.2.0")
        before = self.files()
        shutil.rmtree(self.home / "unpacked-1.2.0")
        self.install("1.2.0")
        self.assertEqual(self.files(), before)

    def test_the_menu_and_the_bus_know_the_link_alone(self):
        self.install("1.2.0")
        program = f'"{self.prefix}/current/bin/kestry"'
        menu = (self.share / f"applications/{ID}.desktop").read_text()
        self.assertIn(f"\nExec={program} %u\n", menu)
        bus = (self.share / f"dbus-1/services/{ID}.service").read_text()
        self.assertEqual(bus, f"[D-BUS Service]\nName={ID}\nExec={program}\n")

    def test_what_decides_on_the_version_is_what_people_start(self):
        self.install("1.2.0", starter="first")
        self.install("1.3.0", starter="second")
        starter = self.prefix / "bin/kestry"
        self.assertEqual(starter.read_text(), "second")
        menu = (self.share / f"applications/{ID}.desktop").read_text()
        self.assertIn(f'\nExec="{starter}" %u\n', menu)
        self.assertEqual(os.readlink(self.home / ".local/bin/kestry"), str(starter))
        self.remove()
        self.assertEqual(self.files(), set())

    def test_the_menu_is_valid_in_a_folder_with_blanks_and_other_letters(self):
        self.install("1.2.0", self.home / "My prögrams, & more")
        checked = run("desktop-file-validate", self.share / f"applications/{ID}.desktop")
        self.assertEqual((checked.returncode, checked.stdout), (0, ""))
        self.assertEqual(self.installed_version(), "1.2.0")

    def test_a_folder_that_menus_cannot_name_is_refused(self):
        for name in ("a$HOME", 'a"b', "a`b", "a%b", "a\\b", "a\nb"):
            tree = self.unpack("1.2.0")
            ended = self.run_installer(tree / "install", self.home / name)
            self.assertEqual(ended.returncode, 1)
            self.assertIn("a character that menus cannot have", ended.stderr)
            self.assertEqual(self.files(), set())
            shutil.rmtree(tree)

    def test_a_folder_can_be_named_from_where_one_is(self):
        self.install("1.2.0", "here")
        self.assertTrue((self.home / "here/current/bin/kestry").exists())
        self.assertEqual(self.installed_version(), "1.2.0")

    def test_removing_takes_everything_but_what_is_the_users(self):
        ledger = self.share / "Kestry/ledger.json"
        ledger.parent.mkdir(parents=True)
        ledger.write_text("{}")
        self.install("1.2.0")
        self.remove()
        self.assertEqual(self.files(), {".local/share/Kestry/ledger.json"})

    def test_a_folder_named_with_a_slash_at_its_end_is_removed(self):
        self.install("1.2.0", f"{self.prefix}/")
        self.remove()
        self.assertEqual(self.files(), set())

    def test_what_was_installed_through_a_link_to_the_home_is_removed(self):
        link = self.home.with_name("mia")
        link.symlink_to(self.home)
        real, self.home = self.home, link
        self.install("1.2.0")
        self.home = real
        self.remove()
        self.assertEqual(self.files(), set())

    def test_a_link_that_is_gone_already_stops_no_removal(self):
        self.install("1.2.0")
        (self.share / "fish/vendor_completions.d/kestryctl.fish").unlink()
        (self.share / f"dbus-1/services/{ID}.service").unlink()
        self.remove()
        self.assertEqual(self.files(), set())

    def test_what_updates_leave_is_removed(self):
        self.install("1.2.0", starter="starter")
        for name in ("failed", "trial", "updates/part.tar.xz"):
            (self.prefix / name).parent.mkdir(exist_ok=True)
            (self.prefix / name).write_text("1.2.0 1.1.0")
        self.remove()
        self.assertFalse(self.prefix.exists())

    def test_it_does_not_start_with_the_desktop_once_it_is_removed(self):
        self.install("1.2.0")
        entry = self.home / f".config/autostart/{ID}.desktop"
        entry.parent.mkdir(parents=True)
        entry.write_text(f'[Desktop Entry]\nExec="{self.prefix}/bin/kestry"\n')
        self.remove()
        self.assertEqual(self.files(), set())

    def test_what_another_installation_starts_with_the_desktop_stays(self):
        self.install("1.2.0")
        entry = self.home / f".config/autostart/{ID}.desktop"
        entry.parent.mkdir(parents=True)
        entry.write_text('[Desktop Entry]\nExec="/usr/bin/kestry"\n')
        self.remove()
        self.assertEqual(self.files(), {f".config/autostart/{ID}.desktop"})

    def test_the_unpacked_archive_is_no_place_to_install_into(self):
        tree = self.unpack("1.2.0")
        for folder in (tree, tree / "bin", tree / "new"):
            ended = self.run_installer(tree / "install", folder)
            self.assertEqual(ended.returncode, 1)
            self.assertIn("Choose another folder", ended.stderr)
        self.assertFalse((tree / "versions").exists() or (tree / "new").exists())

    def test_removing_leaves_what_another_installation_has_put_there(self):
        self.install("1.2.0")
        link = self.home / ".local/bin/kestryctl"
        link.unlink()
        link.symlink_to("/usr/bin/true")
        self.remove()
        self.assertEqual(self.files(), {".local/bin/kestryctl"})

    def test_an_unpacked_archive_that_is_not_installed_removes_nothing(self):
        tree = self.unpack("1.2.0")
        ended = self.run_installer(tree / "install", "--remove")
        self.assertEqual(ended.returncode, 1)
        self.assertIn("Nothing is installed here", ended.stderr)
        self.assertTrue((tree / "bin/kestry").exists())

    def test_half_an_archive_is_refused(self):
        tree = self.unpack("1.2.0")
        (tree / "share/kestry/Info.json").write_text("{")
        ended = self.run_installer(tree / "install")
        self.assertEqual(ended.returncode, 1)
        self.assertIn("not a whole Kestry", ended.stderr)
        self.assertEqual(self.files(), set())


if __name__ == "__main__":
    unittest.main()
