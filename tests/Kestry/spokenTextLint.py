"""Refuses texts of views that a screen reader would never come upon.

A text is in the accessibility tree only where the view says so. Each one has a role and a name, or
is ignored because something else tells it.

Usage: spokenTextLint.py FOLDER...   looks at the views in them
       spokenTextLint.py             tries itself
"""

import pathlib
import re
import sys
import unittest

from plainTextLint import own_members, without_comments

TEXT = re.compile(r"(?<![\w.])(?:\w+\.)?(Text|Label|TextArea|TextEdit|TextInput)\s*\{")
ROLE = re.compile(r"^\s*Accessible\.role\s*:", re.MULTILINE)
NAME = re.compile(r"^\s*Accessible\.name\s*:", re.MULTILINE)
IGNORED = re.compile(r"^\s*Accessible\.ignored\s*:", re.MULTILINE)


def silent_texts(source):
    """Line numbers of texts that have no role and name, and are not ignored."""
    plain = without_comments(source)
    lines = []
    for match in TEXT.finditer(plain):
        members = own_members(plain, match.end())
        if not IGNORED.search(members) and not (ROLE.search(members) and NAME.search(members)):
            lines.append(plain.count("\n", 0, match.start()) + 1)
    return lines


def faults(folder):
    return [f"{path}:{line}: Give this text Accessible.role and name, or Accessible.ignored."
            for path in sorted(pathlib.Path(folder).glob("*.qml"))
            for line in silent_texts(path.read_text(encoding="utf-8"))]


class LintTest(unittest.TestCase):
    def test_a_text_with_a_role_and_a_name_passes(self):
        self.assertEqual(silent_texts(
            "Text {\n    Accessible.role: Accessible.StaticText\n    Accessible.name: text\n}"), [])

    def test_a_text_that_something_else_tells_passes(self):
        self.assertEqual(silent_texts("Text {\n    Accessible.ignored: true\n}"), [])

    def test_a_silent_text_is_refused(self):
        self.assertEqual(silent_texts("Item {\n    Text {\n        text: a\n    }\n}"), [2])
        self.assertEqual(silent_texts("TextInput {\n    text: a\n}"), [1])

    def test_a_role_without_a_name_is_refused(self):
        self.assertEqual(silent_texts("Text {\n    Accessible.role: Accessible.Heading\n}"), [1])

    def test_only_its_own_members_count(self):
        self.assertEqual(
            silent_texts("Text {\n    Item {\n        Accessible.ignored: true\n    }\n}"), [1])

    def test_a_comment_is_not_taken_for_it(self):
        self.assertEqual(silent_texts("Text {\n    // Accessible.ignored: true\n}"), [1])

    def test_other_elements_with_text_in_their_name_pass(self):
        self.assertEqual(silent_texts("MorphingText {\n}\nFormTextField {\n}\nTwoTexts { }"), [])


if __name__ == "__main__":
    if len(sys.argv) > 1:
        told = [fault for folder in sys.argv[1:] for fault in faults(folder)]
        print("\n".join(told))
        sys.exit(1 if told else 0)
    unittest.main(verbosity=2)
