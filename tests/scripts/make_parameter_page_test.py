#!/usr/bin/env python3
"""Tests of scripts/make_parameter_page.py, and that the committed page is what it makes."""

import sys
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
REPOSITORY = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(REPOSITORY / "scripts"))

from make_parameter_page import load_families, page_of


def parameter(default, description, kind="int"):
    return {"type": kind, "default_value": default, "description": description}


class Rows(unittest.TestCase):
    def expect_rows(self, families, *rows):
        self.assertEqual(
            [line for line in page_of(families).splitlines() if line.startswith("| `")], list(rows)
        )

    def test_families_that_agree_share_a_row(self):
        width = {"TX_WIDTH": parameter("32", "Width (bits)")}
        self.expect_rows(
            {"A": width, "B": width}, "| `TX_WIDTH` | A, B | int | `32` | Width (bits) |"
        )

    def test_families_that_differ_have_a_row_each(self):
        self.expect_rows(
            {"A": {"RX_SKEW": parameter("1", "Skew")}, "B": {"RX_SKEW": parameter("2", "Skew")}},
            "| `RX_SKEW` | A | int | `1` | Skew |",
            "| `RX_SKEW` | B | int | `2` | Skew |",
        )

    def test_names_that_differ_in_numbers_share_a_row(self):
        places = {f"RX_K_{n}": parameter("", f"Element {n}") for n in range(3)}
        self.expect_rows({"A": places}, "| `RX_K_0` to `RX_K_2` | A | int | empty | Element 0 |")

    def test_names_that_differ_in_numbers_and_defaults_do_not(self):
        self.expect_rows(
            {"A": {"CLOCK1": parameter("1", "Clock 1"), "CLOCK2": parameter("2", "Clock 2")}},
            "| `CLOCK1` | A | int | `1` | Clock 1 |",
            "| `CLOCK2` | A | int | `2` | Clock 2 |",
        )

    def test_a_row_stands_under_the_direction_of_its_name(self):
        page = page_of(
            {"A": {name: parameter("0", "-") for name in ("MODE", "RX_MODE", "TX_MODE")}}
        )
        marks = ["## Transmit", "`TX_MODE`", "## Receive", "`RX_MODE`", "## Both", "`MODE`"]
        places = [page.index(mark) for mark in marks]
        self.assertEqual(places, sorted(places))


class Page(unittest.TestCase):
    def test_the_committed_page_is_what_the_script_makes(self):
        committed = REPOSITORY / "docs" / "user_parameters.md"
        self.assertEqual(
            committed.read_text(encoding="utf-8"),
            page_of(load_families()),
            "run scripts/make_parameter_page.py > docs/user_parameters.md",
        )


if __name__ == "__main__":
    unittest.main()
