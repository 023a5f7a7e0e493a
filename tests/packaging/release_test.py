"""What a release is told by."""

import subprocess
import unittest

from packaged import ROOT, folder_of

import package
import release

CHANGELOG = """# What is new

## 1.2.0, 2026-03-14

Better.

- One thing that is told
  in two lines.
- Another.

## 1.1.0, 2026-02-01

- The first.
"""


class ReleaseTest(unittest.TestCase):
    def test_the_releases_are_read_newest_first(self):
        newest, oldest = release.releases(CHANGELOG)
        self.assertEqual(newest, release.Release(
            "1.2.0", "2026-03-14", ["One thing that is told in two lines.", "Another."]))
        self.assertEqual((oldest.version, oldest.news), ("1.1.0", ["The first."]))

    def test_the_newest_release_is_the_version_of_the_sources(self):
        newest = release.releases((ROOT / "CHANGELOG.md").read_text(encoding="utf-8"))[0]
        self.assertEqual(newest.version, release.version())
        self.assertRegex(newest.date, r"^\d{4}-\d\d-\d\d$")
        self.assertTrue(newest.news)

    def test_shops_show_the_newest_release_and_its_date(self):
        newest = release.releases((ROOT / "CHANGELOG.md").read_text(encoding="utf-8"))[0]
        shown = (ROOT / "packaging/org.kestry.Kestry.metainfo.xml").read_text(encoding="utf-8")
        self.assertIn(f'<release version="{newest.version}" date="{newest.date}">', shown)

    def test_the_version_is_that_of_cmake(self):
        folder = folder_of(self)
        (folder / "CMakeLists.txt").write_text(
            "cmake_minimum_required(VERSION 3.25)\nproject(kestry VERSION 4.5.6 LANGUAGES CXX)\n")
        self.assertEqual(release.version(folder), "4.5.6")

    def test_the_changelog_of_the_debian_package_is_one(self):
        path = folder_of(self) / "changelog"
        newest = release.releases(CHANGELOG)[0]
        path.write_text(package.debian_changelog(newest, 1773446400))
        text = path.read_text()
        self.assertIn("kestry (1.2.0) unstable; urgency=medium\n\n  * One thing", text)
        self.assertTrue(text.endswith(f" -- {package.MAINTAINER}  Sat, 14 Mar 2026 00:00:00 -0000\n"))
        parsed = subprocess.run(["dpkg-parsechangelog", "-l", path, "-S", "Version"],
                                capture_output=True, text=True, check=False)
        self.assertEqual((parsed.stdout, parsed.stderr), ("1.2.0\n", ""))


if __name__ == "__main__":
    unittest.main()
