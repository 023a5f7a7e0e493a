"""Opens the exported file in LibreOffice, without a window, and looks at what became of its cells.

Usage: spreadsheet_test.py PROGRAM [unittest options]
"""

import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as xml

import ledgers

PROGRAM = None

TABLE = "{urn:oasis:names:tc:opendocument:xmlns:table:1.0}"
TEXT = "{urn:oasis:names:tc:opendocument:xmlns:text:1.0}"

# Comma, double quote, UTF-8, from the first line, all columns standard, the default language.
FORMAT = "CSV:44,34,76,1,,0,"
# What a person may choose in the dialog that asks how to read the file: that quoted cells are
# texts; or the most dangerous choices, that numbers are looked for and formulas evaluated.
AS_TEXTS = FORMAT + "true,false,false,false,false,0,false"
AS_CONTENT = FORMAT + "false,true,false,false,false,0,true"


def text_of(node):
    """The characters of a paragraph, whose blanks are elements of their own."""
    words = node.text or ""
    for child in node:
        if child.tag == TEXT + "s":
            words += " " * int(child.get(TEXT + "c", "1"))
        elif child.tag == TEXT + "tab":
            words += "\t"
        elif child.tag == TEXT + "line-break":
            words += "\n"
        else:
            words += text_of(child)
        words += child.tail or ""
    return words


def as_shown(text):
    """LibreOffice shows no tabs in a text of several lines, and takes a line feed and a carriage
    return in any order for one line end."""
    lines = re.sub("[\r\n]+", "\n", text)
    return lines.replace("\t", "") if "\n" in lines else lines


class Spreadsheet(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="kestry-spreadsheet-"))
        self.addCleanup(shutil.rmtree, self.folder)

    def open(self, csv, choices):
        """The table cells, row by row, that LibreOffice makes of a file."""
        (self.folder / "sessions.csv").write_bytes(csv)
        subprocess.run(
            ["soffice", f"-env:UserInstallation={(self.folder / 'profile').as_uri()}",
                "--headless", f"--infilter={choices}", "--convert-to", "fods",
                "--outdir", self.folder, self.folder / "sessions.csv"],
            check=True, timeout=120, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        sheet = xml.parse(self.folder / "sessions.fods").getroot().find(f".//{TABLE}table")
        return [self.cells(row) for row in sheet.iter(TABLE + "table-row")
            for _ in range(int(row.get(TABLE + "number-rows-repeated", "1")))]

    @staticmethod
    def cells(row):
        return [cell for cell in row.iter(TABLE + "table-cell")
            for _ in range(int(cell.get(TABLE + "number-columns-repeated", "1")))]

    @staticmethod
    def formulas(table):
        return [cell.get(TABLE + "formula") for row in table for cell in row
            if cell.get(TABLE + "formula") is not None]

    @staticmethod
    def texts(table):
        return [["\n".join(map(text_of, cell.findall(TEXT + "p"))) for cell in row]
            for row in table]

    def awkward_ledger(self):
        """Each awkward text once as a title, and many as names and sources."""
        content = ledgers.ledger(7, sessions=10 * len(ledgers.TEXTS))
        for entry, text in zip(content["entries"], ledgers.TEXTS):
            entry["title"] = text
        return content

    def test_an_unguarded_formula_would_be_evaluated(self):
        table = self.open(b'"=1+1","\'=1+1"\r\n', AS_CONTENT)
        self.assertEqual(self.formulas(table), ["of:=1+1"])
        self.assertEqual(self.texts(table), [["2", "'=1+1"]])

    def test_no_cell_of_the_export_becomes_a_formula(self):
        table = self.open(ledgers.export(PROGRAM, self.awkward_ledger()), AS_CONTENT)
        self.assertEqual(len(table), 1 + 10 * len(ledgers.TEXTS))
        self.assertEqual(self.formulas(table), [])

    def test_every_cell_of_the_export_shows_as_it_was_written(self):
        content = self.awkward_ledger()
        seen = self.texts(self.open(ledgers.export(PROGRAM, content), AS_TEXTS))
        expected = [list(map(as_shown, row)) for row in ledgers.rows(content)]
        self.assertEqual(len(seen), len(expected))
        for seen_row, expected_row in zip(seen, expected):
            shown = list(map(as_shown, seen_row)) + [""] * (len(expected_row) - len(seen_row))
            self.assertEqual(shown, expected_row)


if __name__ == "__main__":
    PROGRAM = sys.argv.pop(1)
    unittest.main()
