#!/usr/bin/env python3
"""Tests of scripts/embed_firmware.py: which images it takes, what it refuses, what it writes."""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SCRIPT = Path(__file__).resolve().parents[2] / "scripts" / "embed_firmware.py"

FULL_LINE = "  " + "0000000A " * 8
SHORT_LINE = "  0000000A "
FULL_BYTES = "  " + "0a " * 32


class Embedding(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.image = Path(folder.name) / "image.mem"
        self.output = Path(folder.name) / "lines.cpp"

    def embed(self, content, argument=None):
        self.image.write_text(content, encoding="utf-8")
        return subprocess.run(
            [sys.executable, "-B", SCRIPT, "--output", self.output,
             argument or f"live={self.image}"],
            stderr=subprocess.PIPE, encoding="utf-8")

    def assert_taken(self, *lines):
        run = self.embed("\n".join(lines) + "\n")
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        return self.output.read_text(encoding="ascii")

    def assert_refused(self, place, reason, *lines):
        run = self.embed("\n".join(lines) + "\n")
        self.assertEqual(run.returncode, 1)
        self.assertIn(f"embed_firmware: {self.image}{place}: ", run.stderr)
        self.assertIn(reason, run.stderr)
        self.assertFalse(self.output.exists())

    def test_lines_become_constants_as_they_are(self):
        source = self.assert_taken("@00008000", FULL_LINE, SHORT_LINE, "@00008050", SHORT_LINE)
        self.assertIn(
            "constexpr std::string_view liveText[] = {\n"
            '    "@00008000"sv,\n'
            f'    "{FULL_LINE}\\n"sv,\n'
            f'    "{SHORT_LINE}\\n"sv,\n'
            '    "@00008050"sv,\n'
            f'    "{SHORT_LINE}\\n"sv,\n'
            "};\n", source)
        self.assertIn("const FirmwareLines live{", source)

    def test_an_image_of_bytes_is_taken(self):
        self.assert_taken("@0000800a", FULL_BYTES, "  0a ")

    def test_an_image_may_end_where_the_rate_table_begins(self):
        self.assert_taken("@00015FFC", SHORT_LINE)

    def test_an_image_that_runs_into_the_rate_table_is_refused(self):
        self.assert_refused(":2", "rate table", "@00015FFD", SHORT_LINE)

    def test_lines_of_another_form_are_refused(self):
        for line in ("", SHORT_LINE[1:], SHORT_LINE[:-1], SHORT_LINE.lower(), FULL_LINE + "00000000 ",
                     "  0000000G ", "  00000 ", FULL_BYTES + "0a ", SHORT_LINE + "\r"):
            with self.subTest(line=line):
                self.assert_refused(":2", "a line is two blanks", "@00008000", line)

    def test_two_forms_in_one_image_are_refused(self):
        self.assert_refused(":4", "the same in a whole image",
                            "@00008000", SHORT_LINE, "@00008050", "  0a ")

    def test_addresses_of_another_form_are_refused(self):
        for address in ("@8000", "@0000800g", "@00008aBc", "@000080000"):
            with self.subTest(address=address):
                self.assert_refused(":1", "an address is", address, SHORT_LINE)

    def test_a_line_without_an_address_is_refused(self):
        self.assert_refused(":1", "follow an address", SHORT_LINE)

    def test_a_line_behind_a_short_one_is_refused(self):
        self.assert_refused(":3", "only a section's last may be short",
                            "@00008000", SHORT_LINE, FULL_LINE)

    def test_sections_that_overlap_or_go_back_are_refused(self):
        self.assert_refused(":3", "begins below 0x8020",
                            "@00008000", FULL_LINE, "@0000801C", SHORT_LINE)
        self.assert_refused(":3", "begins below 0x8004",
                            "@00008000", SHORT_LINE, "@00008000", SHORT_LINE)

    def test_a_section_without_lines_is_refused(self):
        self.assert_refused(":2", "is empty", "@00008000", "@00008050", SHORT_LINE)
        self.assert_refused(":1", "ends without a line", "@00008000")

    def test_an_image_without_a_last_line_feed_is_refused(self):
        for content in ("", "@00008000\n" + SHORT_LINE):
            with self.subTest(content=content):
                run = self.embed(content)
                self.assertEqual(run.returncode, 1)
                self.assertIn("the last line has no line feed", run.stderr)

    def test_other_characters_are_refused(self):
        self.assert_refused("", "ascii", "@00008000", "  ä")

    def test_a_missing_image_is_reported(self):
        run = self.embed("", argument="live=/nowhere/image.mem")
        self.assertEqual(run.returncode, 1)
        self.assertIn("/nowhere/image.mem", run.stderr)

    def test_an_argument_that_names_no_image_is_refused(self):
        for argument in ("image.mem", "a-b=image.mem", "=image.mem"):
            with self.subTest(argument=argument):
                self.assertEqual(self.embed("", argument=argument).returncode, 2)


if __name__ == "__main__":
    unittest.main()
