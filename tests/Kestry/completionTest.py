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
        os.symlink(PROGRAM, cls.root / "bin/kestryctl")
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
                ("project", "add", "aster", "Web site"),
                ("client", "add", "Hidden", "--no-projects"), ("start", "hidden"), ("--data-directory", "other", "client", "add", "Elsewhere")):
            subprocess.run([PROGRAM, *words], env=cls.environment, cwd=cls.root, check=True,
                stdout=subprocess.DEVNULL)
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

    @classmethod
    def prepare(cls):
        cls.run_line(f"PS1='> '; source {cls.script}; echo rea''dy")
        cls.terminal.wait_for(r"ready")


class Zsh(ShellTest, unittest.TestCase):
    shell = ["zsh", "-f", "-i"]

    @classmethod
    def prepare(cls):
        cls.run_line("PS1='> '; unsetopt prompt_sp zle_bracketed_paste; bindkey -e")
        cls.run_line(f"autoload -U compinit; compinit -u -D; source {cls.script}; echo rea''dy")
        cls.terminal.wait_for(r"ready")


class Fish(ShellTest, unittest.TestCase):
    shell = ["fish", "--private"]

    @classmethod
    def prepare(cls):
        cls.run_line(f"function fish_prompt; printf '> '; end; source {cls.script}; echo rea''dy")
        cls.terminal.wait_for(r"ready")


if __name__ == "__main__":
    PROGRAM = os.path.abspath(sys.argv.pop(1))
    unittest.main()
