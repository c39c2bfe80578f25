#!/usr/bin/env python3
"""Tests of the words that scripts/make_firmware.py fills the placeholder images with."""

import sys
import tempfile
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
REPOSITORY = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(REPOSITORY / "scripts"))

import make_firmware
from make_firmware import IMAGES, image_text, section_words

BY_NAME = {image.name: image for image in IMAGES}


class Words(unittest.TestCase):
    def test_the_first_section_begins_with_jumps_into_the_second(self):
        for image in IMAGES:
            words = section_words(image, 0)
            self.assertEqual(words[:4], [0xFE008050, 0xFE008054, 0xFE008058, 0xFE00805C])

    def test_a_word_tells_its_image_its_section_and_its_index(self):
        self.assertEqual(section_words(BY_NAME["live"], 0)[4], 0x10000004)
        self.assertEqual(section_words(BY_NAME["live"], 1)[10879], 0x11002A7F)
        self.assertEqual(section_words(BY_NAME["sxc"], 4)[81], 0x24000051)
        self.assertEqual(section_words(BY_NAME["frozen"], 3)[28], 0x3300001C)

    def test_lines_of_early_silicon_carry_the_mark(self):
        # 1360 lines, of which 266 are marked: every fifth one up to line 1325.
        words = section_words(BY_NAME["live_early_silicon"], 1)
        self.assertEqual(words[0], 0x11E50000)
        self.assertEqual(words[7], 0x11E50007)
        self.assertEqual(words[8], 0x11000008)
        self.assertEqual(words[40], 0x11E50028)
        self.assertEqual(words[1325 * 8], 0x11E52968)
        self.assertEqual(words[1330 * 8], 0x11002990)

    def test_the_last_sixteen_words_are_zero(self):
        for image in IMAGES:
            words = section_words(image, len(image.sections) - 1)
            self.assertEqual(words[-16:], [0] * 16)
            self.assertNotEqual(words[-17], 0)


class Texts(unittest.TestCase):
    def test_words_are_in_upper_case_and_the_last_line_is_short(self):
        lines = image_text(BY_NAME["sxc"]).split("\n")
        self.assertEqual(lines[0], "@00008000")
        self.assertEqual(lines[2], "  20000008 20000009 2000000A 2000000B 2000000C 2000000D "
                                   "2000000E 2000000F ")
        self.assertEqual(lines[3], "  20000010 20000011 20000012 20000013 ")
        self.assertEqual(lines[4], "@00008050")
        self.assertEqual(lines[-1], "")

    def test_bytes_are_in_lower_case_with_the_least_significant_first(self):
        lines = image_text(BY_NAME["frozen"]).split("\n")
        self.assertEqual(lines[1], "  50 80 00 fe 54 80 00 fe 58 80 00 fe 5c 80 00 fe "
                                   "04 00 00 30 05 00 00 30 06 00 00 30 07 00 00 30 ")
        self.assertEqual(lines[2], "  08 00 00 30 09 00 00 30 ")
        self.assertIn("@0001038c", lines)


class Command(unittest.TestCase):
    def test_the_committed_images_are_what_the_script_makes(self):
        with tempfile.TemporaryDirectory() as folder:
            sys.argv = ["make_firmware.py", "--output", folder]
            make_firmware.main()
            made = {path.name: path.read_bytes() for path in Path(folder).iterdir()}
        committed = {
            path.name: path.read_bytes() for path in (REPOSITORY / "data/firmware").glob("*.mem")
        }
        self.assertEqual(set(made), set(committed))
        for name, content in made.items():
            self.assertTrue(content == committed[name], f"data/firmware/{name} differs")


if __name__ == "__main__":
    unittest.main()
