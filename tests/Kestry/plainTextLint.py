"""Refuses views that would take a name, a title or a message for markup.

A text that tells its form by looking at itself obeys a "<b>" in a client's name, and fetches what
an "<img src>" in it names, from wherever. Names come from other devices too.

Usage: plainTextLint.py FOLDER...   looks at the sources in them
       plainTextLint.py             tries itself
"""

import pathlib
import re
import sys
import unittest

# Elements that guess, unless they are told; other names are other elements.
GUESSING = re.compile(r"(?<![\w.])(?:\w+\.)?(Text|Label|TextArea|TextEdit)\s*\{")
FORM = re.compile(r"^\s*textFormat\s*:\s*(?:Text|TextEdit)\.PlainText\s*;?\s*$", re.MULTILINE)
OTHER_FORM = re.compile(r"\b(?:RichText|StyledText|AutoText|MarkdownText)\b")
# What shows markup in C++, and where each use is settled: it escapes, or shows words of its own.
WIDGETS = re.compile(
    r"\b(?:QToolTip::showText|QLabel|QMessageBox|QTextDocument|QTextBrowser|QTextEdit"
    r"|setToolTip|updateToolTip|setStatusTip|setWhatsThis|setHtml|setInformativeText|showMessage|fromHtml"
    r"|Qt::RichText|Qt::AutoText|Qt::MarkdownText)\b")
SETTLED = {
    ("TrayIcon.cpp", "updateToolTip"): "says the program's name alone",
}


def without_comments(source):
    """The same text with comments blanked, so that lines keep their numbers."""
    def blank(found):
        text = found.group()
        return text if text[0] in "\"'" else re.sub(r"[^\n]", " ", text)
    return re.sub(r'"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])*\'|//[^\n]*|/\*.*?\*/', blank, source,
                  flags=re.DOTALL)


def own_members(source, start):
    """What stands in the braces that open before `start`, without what nested ones hold."""
    depth, members = 1, []
    for character in source[start:]:
        depth += {"{": 1, "}": -1}.get(character, 0)
        if depth == 0:
            break
        if depth == 1:
            members.append(character)
    return "".join(members)


def view_faults(source):
    """Line numbers of what would be taken for markup in a view."""
    plain = without_comments(source)
    found = [match.start() for match in GUESSING.finditer(plain)
             if not FORM.search(own_members(plain, match.end()))]
    found += [match.start() for match in OTHER_FORM.finditer(plain)]
    return sorted(plain.count("\n", 0, place) + 1 for place in found)


def code_faults(name, source):
    plain = without_comments(source)
    return [plain.count("\n", 0, match.start()) + 1 for match in WIDGETS.finditer(plain)
            if (name, match.group()) not in SETTLED]


def faults(folder):
    """Each place in the folder's sources where a text could be taken for markup."""
    told = []
    for path in sorted(pathlib.Path(folder).iterdir()):
        if path.suffix == ".qml":
            lines = view_faults(path.read_text(encoding="utf-8"))
            told += [f"{path}:{line}: Give this text textFormat: Text.PlainText." for line in lines]
        elif path.suffix in (".cpp", ".h"):
            lines = code_faults(path.name, path.read_text(encoding="utf-8"))
            told += [f"{path}:{line}: This shows markup: escape it, and settle it in the lint."
                     for line in lines]
    return told


class LintTest(unittest.TestCase):
    def test_a_text_that_is_told_to_be_plain_passes(self):
        self.assertEqual(view_faults("Text {\n    text: a\n    textFormat: Text.PlainText\n}"), [])

    def test_a_text_that_guesses_is_refused(self):
        self.assertEqual(view_faults("Item {\n    Text {\n        text: a\n    }\n}"), [2])

    def test_only_its_own_members_count(self):
        self.assertEqual(
            view_faults("Text {\n    Text {\n        textFormat: Text.PlainText\n    }\n}"), [1])
        self.assertEqual(
            view_faults("Text {\n    Item { }\n    textFormat: Text.PlainText\n}"), [])

    def test_a_comment_or_another_form_is_not_taken_for_it(self):
        self.assertEqual(view_faults("Text {\n    // textFormat: Text.PlainText\n}"), [1])
        self.assertEqual(view_faults("Text {\n    textFormat: Text.StyledText\n}"), [1, 2])
        self.assertEqual(view_faults("MyText {\n    textFormat: Text.RichText\n}"), [2])

    def test_other_elements_with_text_in_their_name_pass(self):
        self.assertEqual(view_faults("MorphingText {\n}\nTextInput {\n}\nTwoTexts { }"), [])

    def test_an_element_of_a_module_is_refused_too(self):
        self.assertEqual(view_faults("Controls.Label {\n    text: a\n}"), [1])

    def test_widgets_that_show_markup_are_refused_unless_settled(self):
        self.assertEqual(code_faults("Page.cpp", "void f()\n{\n    QToolTip::showText(a, b);"), [3])
        self.assertEqual(code_faults("TrayIcon.cpp", "updateToolTip(a);"), [])
        self.assertEqual(code_faults("Page.cpp", "// a QLabel would do\n"), [])

    def test_every_settled_use_is_still_there(self):
        root = pathlib.Path(__file__).resolve().parents[2]
        for name, word in SETTLED:
            (source,) = root.glob(f"Kestry*/{name}")
            self.assertIn(word, source.read_text(encoding="utf-8"))


if __name__ == "__main__":
    if len(sys.argv) > 1:
        told = [fault for folder in sys.argv[1:] for fault in faults(folder)]
        print("\n".join(told))
        sys.exit(1 if told else 0)
    unittest.main(verbosity=2)
