#!/usr/bin/env python3
"""Holds the documents against the repository: links lead somewhere, and commands are there.

    documents_test.py
"""

import pathlib
import re
import subprocess
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent
DOCUMENTS = sorted([*ROOT.glob("*.md"), *ROOT.glob("docs/*.md")])
MOST_PICTURE_BYTES = 64 * 1024


def links(text):
    """Where the links and pictures of a document lead, but for other hosts."""
    found = re.findall(r"\]\(([^)\s]+)\)", text)
    return [link.split("#")[0] for link in found if not re.match(r"[a-z]+:|#", link)]


def commands_of_dev():
    script = (ROOT / "dev").read_text(encoding="utf-8")
    cases = script[script.index("\ncase $command in"):]
    return set(re.findall(r"^    ([a-z][-a-z]*)\)", cases, re.M))


class DocumentsTest(unittest.TestCase):
    def test_every_link_leads_to_a_file_of_the_repository(self):
        for document in DOCUMENTS:
            for link in links(document.read_text(encoding="utf-8")):
                with self.subTest(document=document.name, link=link):
                    self.assertTrue((document.parent / link).is_file())

    def test_every_picture_is_shown_and_small(self):
        shown = set()
        for document in DOCUMENTS:
            shown |= {(document.parent / link).resolve()
                      for link in links(document.read_text(encoding="utf-8"))}
        for picture in sorted(ROOT.glob("docs/**/*.png")):
            with self.subTest(picture.name):
                self.assertIn(picture, shown)
                self.assertLessEqual(picture.stat().st_size, MOST_PICTURE_BYTES)

    def test_every_picture_of_the_shops_is_kept_here(self):
        entry = (ROOT / "packaging/org.kestry.Kestry.metainfo.xml").read_text(encoding="utf-8")
        names = re.findall(r"@KESTRY_SITE@/(pictures/\S+\.png)<", entry)
        self.assertTrue(names)
        for name in names:
            self.assertTrue((ROOT / "docs" / name).is_file(), name)

    def test_every_command_that_a_document_names_is_there(self):
        commands = commands_of_dev()
        for document in DOCUMENTS:
            named = re.findall(r"\./dev ([a-z][-a-z]*)", document.read_text(encoding="utf-8"))
            self.assertLessEqual(set(named), commands, document.name)

    def test_every_command_is_told_by_the_help(self):
        told = subprocess.run([ROOT / "dev", "help"], capture_output=True, text=True, check=True).stdout
        self.assertEqual(set(re.findall(r"^  ([a-z][-a-z]*)\b", told, re.M)), commands_of_dev() | {"help"})


if __name__ == "__main__":
    unittest.main()
