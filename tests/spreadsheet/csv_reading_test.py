"""Reads the exported file back with Python's csv module, cell for cell.

Usage: csv_reading_test.py PROGRAM [unittest options]
"""

import csv
import io
import sys
import unittest

import ledgers

PROGRAM = None


class CsvReading(unittest.TestCase):
    def read_back(self, content):
        text = ledgers.export(PROGRAM, content).decode("utf-8")
        self.assertFalse(text.startswith("\ufeff"))
        self.assertTrue(text.endswith("\r\n"))
        return list(csv.reader(io.StringIO(text, newline=""), strict=True))

    def test_every_cell_of_awkward_ledgers_is_read_as_it_was_written(self):
        for seed in range(20):
            with self.subTest(seed=seed):
                content = ledgers.ledger(seed, sessions=200)
                self.assertEqual(self.read_back(content), ledgers.rows(content))

    def test_every_awkward_text_stays_one_cell(self):
        content = ledgers.ledger(1, sessions=len(ledgers.TEXTS))
        for entry, text in zip(content["entries"], ledgers.TEXTS):
            entry["title"] = text
        self.assertEqual(self.read_back(content), ledgers.rows(content))

    def test_a_ledger_without_sessions_is_the_header(self):
        self.assertEqual(self.read_back(ledgers.ledger(1, sessions=0)), [ledgers.HEADER])


if __name__ == "__main__":
    PROGRAM = sys.argv.pop(1)
    unittest.main()
