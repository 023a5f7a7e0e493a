"""What clang-tidy said of a source is remembered, for as long as it would say the same."""

import json
import os
import pathlib
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tools"))
import tidy  # noqa: E402  found by the line above

# Says what it was asked to look at, and finds something in sources with the word FLAW.
LINTER = """#!/bin/sh
[ "$1" = --version ] && { cat "$0.version"; exit; }
for source; do :; done
echo "$source" >>"$0.log"
grep -q CRASH "$source" && exit 139
grep -q SILENT "$source" && exit 1
! grep -H FLAW "$source"
"""
# Names the source and its header, as a compiler does for make.
COMPILER = """#!/bin/sh
for source; do :; done
escape() { printf '%s' "$1" | sed 's/[ #]/\\\\&/g'; }
printf 'x.o: %s \\\\\\n' "$(escape "$source")"
printf ' %s\\n' "$(escape "${source%.cpp}.h")"
"""


class TidyTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="kestry-tidy-")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name).resolve()
        os.environ["KESTRY_TIDY_CACHE"] = str(self.folder / "cache")
        self.linter = self.program("linter", LINTER)
        self.compiler = self.program("compiler", COMPILER)
        (self.folder / "linter.version").write_text("1")
        self.root = self.make_copy("copy")

    def program(self, name, text):
        path = self.folder / name
        path.write_text(text)
        path.chmod(0o755)
        return str(path)

    def make_copy(self, name):
        root = self.folder / name
        (root / "build").mkdir(parents=True)
        (root / ".clang-tidy").write_text("Checks: all\n")
        (root / "A.cpp").write_text("int a;\n")
        (root / "A.h").write_text("extern int a;\n")
        self.compile(root, "-O1")
        return root

    def compile(self, root, flags):
        command = f"c++ {flags} -I'{root}' -o A.o -c '{root}/A.cpp'"
        (root / "build/compile_commands.json").write_text(json.dumps(
            [{"file": f"{root}/A.cpp", "directory": str(root), "command": command}]))

    def look(self, root=None):
        """As in a new run: what files hold is read anew."""
        root = root or self.root
        tidy.content_digest.cache_clear()
        return tidy.Tidy(root / "build", root, self.linter, self.compiler).look_at(root / "A.cpp")

    def looks(self):
        return len(pathlib.Path(self.linter + ".log").read_text().splitlines())

    def test_a_source_is_looked_at_once(self):
        self.assertEqual(self.look(), (0, "", False))
        self.assertEqual(self.look(), (0, "", True))
        self.assertEqual(self.looks(), 1)

    def test_a_finding_is_told_each_time(self):
        (self.root / "A.cpp").write_text("FLAW\n")
        first, again = self.look(), self.look()
        self.assertEqual((first[0], first[2]), (1, False))
        self.assertEqual((again[0], again[2]), (1, True))
        self.assertIn("FLAW", again[1])

    def test_whatever_findings_depend_on_is_looked_at(self):
        changes = (lambda: (self.root / "A.cpp").write_text("int b;\n"),
                   lambda: (self.root / "A.h").write_text("extern int b;\n"),
                   lambda: (self.root / "A.h").unlink(),
                   lambda: (self.root / ".clang-tidy").write_text("Checks: fewer\n"),
                   lambda: self.compile(self.root, "-O2"),
                   lambda: (self.folder / "linter.version").write_text("2"))
        for change in changes:
            self.look()
            change()
            self.assertFalse(self.look()[2])

    def test_a_source_that_changes_back_is_looked_at_again(self):
        self.look()
        (self.root / "A.h").write_text("extern int b;\n")
        self.look()
        self.assertTrue(self.look()[2])

    def test_another_copy_of_the_repository_shares_what_is_known(self):
        self.look()
        self.assertEqual(self.look(self.make_copy("other")), (0, "", True))

    def test_names_are_read_as_make_writes_them(self):
        rule = "x.o: /a\\ b/c.cpp \\\n /a\\ b/x\\#$$y.h d.h\n"
        self.assertEqual(tidy.prerequisites(rule), ["/a b/c.cpp", "/a b/x#$y.h", "d.h"])

    def test_a_change_is_seen_in_a_folder_with_blanks(self):
        root = self.make_copy("a copy #2")
        self.look(root)
        self.assertTrue(self.look(root)[2])
        (root / "A.h").write_text("extern int b;\n")
        self.assertFalse(self.look(root)[2])

    def test_a_linter_that_fails_is_asked_again(self):
        for word, status in (("CRASH", 139), ("SILENT", 1)):
            (self.root / "A.cpp").write_text(word)
            self.assertEqual(self.look(), (status, "", False))
            self.assertEqual(self.look(), (status, "", False))

    def test_what_cannot_be_read_is_not_remembered(self):
        (self.root / "A.h").unlink()
        self.assertEqual(self.look(), (0, "", False))
        self.assertEqual(self.look(), (0, "", False))

    def test_a_damaged_memory_is_none(self):
        self.look()
        for path in (self.folder / "cache").iterdir():
            path.write_text("{")
        self.assertEqual(self.look(), (0, "", False))


if __name__ == "__main__":
    unittest.main()
