"""The table of what a release has to pass."""

import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tools"))
import release_check  # noqa: E402  found by the line above
from release_check import Row  # noqa: E402

GOOD = Row("good", ("sh", "-c", "echo fine"))
BAD = Row("bad", ("sh", "-c", "echo a reason >&2; exit 3"))


class ReleaseCheckTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="kestry-check-")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.lines = []

    def check(self, *rows):
        return release_check.check(list(rows), self.folder / "logs", self.folder,
                                   lambda line: self.lines.append(str(line)))

    def test_the_status_is_0_when_all_have_passed(self):
        self.assertEqual(self.check(GOOD, GOOD), 0)
        self.assertEqual(self.lines[-1], "2 of 2 checks, 0 failed")

    def test_one_that_fails_fails_the_whole_and_the_others_go_on(self):
        self.assertEqual(self.check(BAD, GOOD), 1)
        self.assertRegex(self.lines[0], r"^bad +FAILED +0:00 +logs/bad\.log$")
        self.assertRegex(self.lines[1], r"^good +passed +0:00 +logs/good\.log$")
        self.assertEqual(self.lines[-1], "2 of 2 checks, 1 failed")

    def test_a_log_has_all_that_was_printed(self):
        self.check(BAD)
        self.assertEqual((self.folder / "logs/bad.log").read_text(), "a reason\n")

    def test_a_program_that_is_missing_fails_its_row_alone(self):
        self.assertEqual(self.check(Row("lost", ("./no-such-program",)), GOOD), 1)
        self.assertRegex(self.lines[0], r"^lost +FAILED ")
        self.assertEqual((self.folder / "logs/lost.log").read_text(),
                         "./no-such-program cannot be run: No such file or directory.\n")
        self.assertEqual(self.lines[-1], "2 of 2 checks, 1 failed")

    def test_what_takes_too_long_is_ended_with_all_that_it_started(self):
        pid = self.folder / "pid"
        slow = Row("slow", ("sh", "-c", f"sleep 100 & echo $! >'{pid}'; wait"), 0.02)
        self.assertEqual(self.check(slow, GOOD), 1)
        self.assertIn("It was ended after 0.02 minutes.",
                      (self.folder / "logs/slow.log").read_text())
        state = pathlib.Path(f"/proc/{pid.read_text().strip()}/stat")
        self.assertTrue(not state.exists() or ") Z " in state.read_text())

    def test_packages_are_checked_of_what_is_committed(self):
        def git(*words):
            subprocess.run(["git", "-c", "user.name=Mia", "-c", "user.email=mia@example.org", *words],
                           cwd=self.folder, check=True, stdout=subprocess.DEVNULL)
        git("init", "--quiet")
        git("commit", "--quiet", "--allow-empty", "-m", "First")
        package = Row("package", ())
        self.assertRegex(release_check.describe_sources([package], self.folder), "^commit [0-9a-f]{40}$")
        (self.folder / "new").write_text("")
        with self.assertRaisesRegex(SystemExit, "leave out: package"):
            release_check.describe_sources([GOOD, package], self.folder)
        self.assertIn(", with changes", release_check.describe_sources([GOOD], self.folder))

    def test_names_choose_rows_in_the_order_of_the_table(self):
        rows = [Row(name, ()) for name in ("test", "bench-save", "bench-open", "benchmark")]
        names = [row.name for row in release_check.chosen(rows, ["bench", "test"])]
        self.assertEqual(names, ["test", "bench-save", "bench-open"])
        self.assertEqual(release_check.chosen(rows, []), rows)

    def test_a_name_of_no_row_is_refused(self):
        with self.assertRaisesRegex(SystemExit, 'There is no row "tset"'):
            release_check.chosen([GOOD], ["tset"])

    def test_every_fuzzer_and_benchmark_has_a_row(self):
        names = {row.name for row in release_check.all_rows()}
        text = (ROOT / "fuzz/CMakeLists.txt").read_text(encoding="utf-8")
        fuzzers = re.search(r"foreach\(name ([\w ]+)\)", text)[1].split()
        self.assertEqual({f"fuzz-{name}" for name in fuzzers},
                         {name for name in names if name.startswith("fuzz-")})
        text = "".join(path.read_text(encoding="utf-8") for path in (
            ROOT / "benchmarks/CMakeLists.txt", *(ROOT / "benchmarks").glob("*.cmake")))
        built = set(re.findall(r"^ *kestry_benchmark\((\w+) ", text, re.M)) - {"name"}
        built |= set(re.findall(r"add_(?:custom_target|executable)\(kestry_(\w+)_benchmark", text))
        self.assertEqual({f"bench-{name}" for name in built - {"list"}},
                         {name for name in names if name.startswith("bench-")})

    def test_what_rows_call_is_there(self):
        for row in release_check.all_rows():
            for word in row.command:
                if word.endswith((".py", ".sh")):
                    self.assertTrue((ROOT / word).is_file(), word)


if __name__ == "__main__":
    unittest.main()
