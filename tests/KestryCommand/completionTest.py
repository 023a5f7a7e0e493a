"""Completes command lines of kestryctl in real shells, each on a terminal of its own.

Usage: completionTest.py PROGRAM [unittest options]
"""

import os
import pathlib
import pty
import re
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

PROGRAM = None
# Names that a shell would do something with, were they not quoted; each would leave a file "ran".
HOSTILE = ("`ran`", "a `ran` b", "$(ran)", "a $(ran)", "$HOME", "a${HOME}b$",
    "a;ran", "; ran", "a|ran", "a&ran", "a&&ran #", "# a", "a # b",
    "it's; ran", "'", "a'", "a'b'c", '"', 'a"', 'a "b" c', '"; ran; "', "!!", "a!ran",
    "a!", "*", "a*?[b-z]", "{a,b}", "~", "~root", "~/x", "a~", "=ls", "a=b", "a=~", "a:b", ":x", "a@b",
    "<ran", "a >ran", "(ran)", "a^b^c", "^a^b", "%1", "a%b", "a,b", "[a]", "\u00c4rger \u65e5\u672c",
    "\u2713", "a  b", "$'\u0065'".replace("\u0065", "e"), '$"a"', "a$", "--json", "-x")
# Names of which no shell is sure to get every letter.
UNTOLD = ("a\nb", "a\tb", "a\x1b]0;b\x07", "a\\b", "a\u0085b")
BEGIN_OF_LINE = "\x01"
END_OF_LINE = "\x05"


class Terminal:
    """A shell that a person types into."""

    def __init__(self, words, environment, folder):
        self.process, self.terminal = pty.fork()
        if self.process == 0:
            os.chdir(folder)
            os.execvpe(words[0], words, environment)
        self.shown = ""

    def type(self, text):
        os.write(self.terminal, text.encode())

    def wait_for(self, pattern):
        """Reads on until the pattern has been shown; returns the match."""
        deadline = time.monotonic() + 30
        while not (match := re.search(pattern, self.shown)):
            ready, _, _ = select.select([self.terminal], [], [], deadline - time.monotonic())
            if not ready:
                raise AssertionError(f"{pattern} was not shown, but: {self.shown!r}")
            self.shown += os.read(self.terminal, 65536).decode(errors="replace")
        self.shown = self.shown[match.end():]
        return match

    def close(self):
        os.kill(self.process, signal.SIGKILL)
        os.waitpid(self.process, 0)
        os.close(self.terminal)


class ShellTest:
    """What must hold in every shell. `prepare` makes one ready to complete kestryctl."""

    @classmethod
    def setUpClass(cls):
        cls.root = pathlib.Path(tempfile.mkdtemp(prefix="kestryctl-"))
        cls.addClassCleanup(shutil.rmtree, cls.root)
        (cls.root / "bin").mkdir()
        # What is run in earnest is noted, so that it can be seen what arrives.
        (cls.root / "bin/kestryctl").write_text(f"""#!/bin/sh
case "$*" in *' list') exec {PROGRAM} "$@" ;; esac
printf '%s\\0' "$@" >"$HOME/arriving" && mv "$HOME/arriving" "$HOME/arrived"
""")
        (cls.root / "bin/ran").write_text("#!/bin/sh\n: >\"$HOME/ran\"\n")
        for program in ("kestryctl", "ran"):
            (cls.root / "bin" / program).chmod(0o755)
        cls.environment = {
            "PATH": f"{cls.root / 'bin'}:{os.environ['PATH']}",
            "HOME": str(cls.root),
            "TERM": "xterm",
            "LANG": "C.UTF-8",
            "LC_ALL": "C.UTF-8",
            "KESTRY_DATA_DIR": str(cls.root / "data"),
        }
        for words in (("client", "add", "Aster Studio"), ("client", "add", 'O\'Brien & "Sons" / Co'),
                ("client", "add", "Back\\slash"), ("client", "add", "$HOME;x"),
                ("client", "add", "Zed`ran`"), ("client", "add", "Zed b"),
                ("project", "add", "aster", "Web site"),
                ("client", "add", "Hidden", "--no-projects"), ("start", "hidden"), ("--data-directory", "other", "client", "add", "Elsewhere")):
            subprocess.run([PROGRAM, *words], env=cls.environment, cwd=cls.root, check=True,
                stdout=subprocess.DEVNULL)
        for number, name in enumerate((*HOSTILE, *UNTOLD)):
            subprocess.run([PROGRAM, "--data-directory", f"h{number}", "client", "add", "--", name],
                env=cls.environment, cwd=cls.root, check=True, stdout=subprocess.DEVNULL)
        (cls.root / "logo one.png").write_text("")
        (cls.root / "folder").mkdir()
        script = subprocess.run([PROGRAM, "completion", cls.shell[0]], check=True,
            capture_output=True, env=cls.environment).stdout
        cls.script = cls.root / f"completion.{cls.shell[0]}"
        cls.script.write_bytes(script)
        cls.terminal = Terminal(cls.shell, cls.environment, cls.root)
        cls.addClassCleanup(cls.terminal.close)
        cls.prepare()

    @classmethod
    def run_line(cls, line):
        cls.terminal.type(line + "\r")

    def completed(self, line):
        """The words of a command line once its end has been completed."""
        self.terminal.type(line + "\t")
        # What is put in front of the line shows its words, each in brackets.
        self.terminal.type(BEGIN_OF_LINE + "printf '[%s]' " + END_OF_LINE + " END\r")
        shown = self.terminal.wait_for(r"\[kestryctl\]((?:\[[^\n]*?\])*?)\[END\]").group(1)
        return re.findall(r"\[([^\]]*)\]", shown)

    def arrived(self, line, end="\r"):
        """The last word of a command line that is completed at its end and then run."""
        note = self.root / "arrived"
        note.unlink(missing_ok=True)
        # What is typed while a command runs does not reach the shell's editor as it was typed.
        self.run_line("echo rea''dy")
        self.terminal.wait_for(r"ready[^>]*> ")
        self.terminal.type(line + "\t" + end)
        deadline = time.monotonic() + 30
        while not note.exists():
            self.assertLess(time.monotonic(), deadline, f"{line!r}: {self.terminal.shown!r}")
            time.sleep(0.005)
        return note.read_bytes().decode().split("\0")[-2]

    def expect_whole(self, quote, cannot):
        """Each hostile name arrives whole from between these quotes, or else is not offered."""
        for number, name in enumerate(HOSTILE):
            is_left_out = cannot(name) or name.startswith("-")
            with self.subTest(name=name, quote=quote):
                line = f"kestryctl --data-directory h{number} start {quote}"
                if is_left_out:
                    self.assertEqual(self.arrived(line + "zz", quote + "\r"), "zz")
                    self.assertEqual(self.arrived(line, "zz" + quote + "\r"), "zz")
                else:
                    self.assertEqual(self.arrived(line), name)
                self.assertFalse((self.root / "ran").exists())

    def test_hostile_names_arrive_whole_and_run_nothing(self):
        self.expect_whole("", self.cannot_stand_bare)

    def test_hostile_names_arrive_whole_between_double_quotes(self):
        self.expect_whole('"', self.cannot_stand_in_double_quotes)

    def test_hostile_names_arrive_whole_between_single_quotes(self):
        self.expect_whole("'", self.cannot_stand_in_single_quotes)

    def test_hostile_names_arrive_whole_after_their_first_letters(self):
        for typed, name in (("a\\ ", "a `ran` b"), ("a\\ ", "a $(ran)"), ('"a ', 'a "b" c'),
                ("'a ", "a `ran` b"), ("a", "a'b'c"), ("a\\;", "a;ran"), ("a=", "a=b"),
                ("a:", "a:b"), ("a@", "a@b"), ("\u00c4r", "\u00c4rger \u65e5\u672c")):
            with self.subTest(typed=typed, name=name):
                number = HOSTILE.index(name)
                self.assertEqual(
                    self.arrived(f"kestryctl --data-directory h{number} start {typed}"), name)
                self.assertEqual(self.arrived(
                    f"kestryctl --data-directory=h{number} report --client {typed}"), name)
        self.assertFalse((self.root / "ran").exists())

    def test_a_name_after_two_hyphens_or_an_equals_sign_may_begin_with_one(self):
        for name in ("--json", "-x"):
            number = HOSTILE.index(name)
            self.assertEqual(self.arrived(f"kestryctl --data-directory h{number} start -- "), name)
            self.assertEqual(
                self.arrived(f"kestryctl --data-directory h{number} report --client="),
                f"--client={name}")

    def test_names_that_no_shell_tells_for_sure_are_not_offered(self):
        for number, name in enumerate(UNTOLD, len(HOSTILE)):
            with self.subTest(name=name):
                self.assertEqual(
                    self.arrived(f"kestryctl --data-directory h{number} start ", "zz\r"), "zz")

    def test_what_was_typed_is_not_run_in_order_to_complete(self):
        # The program in the path stands in for all that is called so.
        (self.root / "other").mkdir(exist_ok=True)
        for place in (self.root / "other/kestryctl", self.root / "kestryctl"):
            place.write_text("#!/bin/sh\nran\nexec kestryctl \"$@\"\n")
            place.chmod(0o755)
        for typed in ("./kestryctl", "other/kestryctl", str(self.root / "kestryctl")):
            self.terminal.type(f"{typed} start As\t")
            self.terminal.type(BEGIN_OF_LINE + "printf '[%s]' " + END_OF_LINE + " END\r")
            self.terminal.wait_for(r"\[Aster Studio\]\[END\]")
        self.assertFalse((self.root / "ran").exists())

    def test_what_is_typed_is_not_expanded_in_order_to_complete(self):
        self.terminal.type("kestryctl --data-directory \"$(ran)\" start As\t")
        self.terminal.type(BEGIN_OF_LINE + "echo '" + END_OF_LINE + "' EN''D\r")
        self.terminal.wait_for(r" END")
        self.assertFalse((self.root / "ran").exists())

    def test_the_script_is_sound(self):
        subprocess.run([self.shell[0], "-n", str(self.script)], check=True)

    def test_commands_are_completed(self):
        self.assertEqual(self.completed("kestryctl sugg"), ["suggest"])
        self.assertEqual(self.completed("kestryctl client li"), ["client", "list"])
        self.assertEqual(self.completed("kestryctl --json proj"), ["--json", "project"])

    def test_options_of_the_command_and_of_all_are_completed(self):
        self.assertEqual(self.completed("kestryctl sessions --desc"), ["sessions", "--descending"])
        self.assertEqual(self.completed("kestryctl sessions --time"), ["sessions", "--time-zone"])
        self.assertEqual(
            self.completed("kestryctl client add Aster --no"), ["client", "add", "Aster", "--no-projects"])

    def test_options_of_other_commands_are_not(self):
        self.assertEqual(self.completed("kestryctl status --desc"), ["status", "--desc"])

    def test_values_that_are_one_of_a_few_are_completed(self):
        self.assertEqual(self.completed("kestryctl sessions --sort du"), ["sessions", "--sort", "duration"])
        self.assertEqual(self.completed("kestryctl sessions --sort=va"), ["sessions", "--sort=value"])
        self.assertEqual(self.completed("kestryctl completion z"), ["completion", "zsh"])

    def test_names_are_completed_and_quoted(self):
        self.assertEqual(self.completed("kestryctl start As"), ["start", "Aster Studio"])
        self.assertEqual(self.completed("kestryctl start O"), ["start", 'O\'Brien & "Sons" / Co'])
        self.assertEqual(self.completed("kestryctl start '$H"), ["start", "$HOME;x"])
        self.assertEqual(self.completed("kestryctl start aster W"), ["start", "aster", "Web site"])
        self.assertEqual(self.completed("kestryctl report --client As"),
            ["report", "--client", "Aster Studio"])

    def test_names_that_could_be_wrong_are_not_offered(self):
        self.assertEqual(self.completed("kestryctl start Back"), ["start", "Back"])
        self.assertEqual(self.completed("kestryctl move Cl"), ["move", "Cl"])

    def test_names_come_from_the_folder_that_is_given(self):
        self.assertEqual(self.completed("kestryctl --data-directory other start El"),
            ["--data-directory", "other", "start", "Elsewhere"])

    def test_files_and_folders_are_completed(self):
        self.assertEqual(self.completed("kestryctl client add Aster --logo lo"),
            ["client", "add", "Aster", "--logo", "logo one.png"])
        words = self.completed("kestryctl --data-directory fol")
        # Some shells take the last slash away again.
        self.assertEqual([word.rstrip("/") for word in words], ["--data-directory", "folder"])

    def test_nothing_is_offered_where_everything_is_free(self):
        self.assertEqual(self.completed("kestryctl rename lo"), ["rename", "lo"])
        self.assertEqual(self.completed("kestryctl start Aster --title fol"),
            ["start", "Aster", "--title", "fol"])

    def test_words_after_two_hyphens_are_no_options(self):
        self.assertEqual(self.completed("kestryctl sessions -- --desc"),
            ["sessions", "--", "--desc"])


class Bash(ShellTest, unittest.TestCase):
    shell = ["bash", "--norc", "--noprofile", "-i"]

    def cannot_stand_bare(self, name):
        return False

    def cannot_stand_in_double_quotes(self, name):
        return "!" in name

    def cannot_stand_in_single_quotes(self, name):
        return "'" in name

    def test_what_two_names_share_is_completed_up_to_where_they_differ(self):
        # Which is in the middle of an escape here.
        self.assertEqual(self.arrived("kestryctl start Zed\t`"), "Zed`ran`")
        self.assertEqual(self.arrived("kestryctl start Zed\t\t "), "Zed b")
        self.assertEqual(self.arrived("kestryctl start \"Zed\t\\`"), "Zed`ran`")

    @classmethod
    def prepare(cls):
        cls.run_line(f"PS1='> '; source {cls.script}; echo rea''dy")
        cls.terminal.wait_for(r"ready")


class Zsh(ShellTest, unittest.TestCase):
    shell = ["zsh", "-f", "-i"]

    def cannot_stand_bare(self, name):
        return False

    def cannot_stand_in_double_quotes(self, name):
        return False

    def cannot_stand_in_single_quotes(self, name):
        return False

    @classmethod
    def prepare(cls):
        cls.run_line("PS1='> '; unsetopt prompt_sp zle_bracketed_paste; bindkey -e")
        cls.run_line(f"autoload -U compinit; compinit -u -D; source {cls.script}; echo rea''dy")
        cls.terminal.wait_for(r"ready")


class Fish(ShellTest, unittest.TestCase):
    shell = ["fish", "--private"]

    def cannot_stand_bare(self, name):
        return name.startswith("~")

    def cannot_stand_in_double_quotes(self, name):
        return False

    def cannot_stand_in_single_quotes(self, name):
        return False

    @classmethod
    def prepare(cls):
        cls.run_line(f"function fish_prompt; printf '> '; end; source {cls.script}; echo rea''dy")
        cls.terminal.wait_for(r"ready")


if __name__ == "__main__":
    PROGRAM = os.path.abspath(sys.argv.pop(1))
    unittest.main()
