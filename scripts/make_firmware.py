#!/usr/bin/env python3
"""Makes the placeholder images of the embedded controller's firmware.

The real firmware comes from elsewhere; docs/firmware.md says how to put it in. Until then each image
has its sections at the addresses and with the sizes of the real one, filled with words that tell
where they stand. The output is committed in data/firmware/, and a run gives the same bytes everywhere:

    scripts/make_firmware.py --output data/firmware
"""

import argparse
from dataclasses import dataclass, field
from pathlib import Path

BYTES_PER_WORD = 4
WORDS_PER_LINE = 8

JUMP_WORDS = 4
JUMP_MARK = 0xFE << 24
EARLY_SILICON_MARK = 0xE5 << 16
ZERO_WORDS_AT_END = 16


@dataclass(frozen=True)
class Image:
    """One image: its number in the words, its text form, and sections as (address, words)."""

    name: str
    number: int
    sections: tuple
    in_bytes: bool = False
    # Section number to the count of lines that carry the mark of early silicon.
    marked_lines: dict = field(default_factory=dict)


LIVE_SECTIONS = (
    (0x8000, 20),
    (0x8050, 10880),
    (0x12A50, 1),
    (0x12A54, 43),
    (0x12B00, 82),
    (0x12C48, 3310),
)
SXC_SECTIONS = (
    (0x8000, 20),
    (0x8050, 10368),
    (0x12250, 1),
    (0x12254, 43),
    (0x12300, 82),
    (0x12448, 3822),
)
FROZEN_SECTIONS = ((0x8000, 10), (0x8050, 6033), (0x10000, 110), (0x10248, 29), (0x1038C, 216))

IMAGES = (
    Image("live", 1, LIVE_SECTIONS),
    Image("live_early_silicon", 1, LIVE_SECTIONS, marked_lines={1: 266, 4: 2, 5: 36}),
    Image("sxc", 2, SXC_SECTIONS),
    Image("frozen", 3, FROZEN_SECTIONS, in_bytes=True),
)


def plain_word(image, section, index):
    """A word that names its image, its section and its place there."""
    return image.number << 28 | section << 24 | index


def jump_word(image, index):
    """A jump to the word of the second section that has the same index."""
    return JUMP_MARK | image.sections[1][0] + index * BYTES_PER_WORD


def marked_line_numbers(line_count, marked_count):
    """Lines spread evenly over a section, the first one among them."""
    step = line_count // marked_count
    return {step * number for number in range(marked_count)}


def section_words(image, section):
    size = image.sections[section][1]
    words = [plain_word(image, section, index) for index in range(size)]
    if section == 0:
        words[:JUMP_WORDS] = [jump_word(image, index) for index in range(JUMP_WORDS)]
    if section == len(image.sections) - 1:
        words[-ZERO_WORDS_AT_END:] = [0] * ZERO_WORDS_AT_END
    if section in image.marked_lines:
        line_count = -(-size // WORDS_PER_LINE)
        for line in marked_line_numbers(line_count, image.marked_lines[section]):
            for index in range(line * WORDS_PER_LINE, min((line + 1) * WORDS_PER_LINE, size)):
                words[index] |= EARLY_SILICON_MARK
    return words


def word_text(word, in_bytes):
    if in_bytes:
        return " ".join(f"{byte:02x}" for byte in word.to_bytes(BYTES_PER_WORD, "little"))
    return f"{word:08X}"


def image_text(image):
    lines = []
    for section, (address, _) in enumerate(image.sections):
        lines.append(f"@{address:08x}" if image.in_bytes else f"@{address:08X}")
        words = [word_text(word, image.in_bytes) for word in section_words(image, section)]
        for start in range(0, len(words), WORDS_PER_LINE):
            lines.append("  " + " ".join(words[start : start + WORDS_PER_LINE]) + " ")
    return "\n".join(lines) + "\n"


def main():
    parser = argparse.ArgumentParser(description="Makes the placeholder firmware images.")
    parser.add_argument("--output", required=True, type=Path, help="folder for the images")
    output = parser.parse_args().output
    output.mkdir(parents=True, exist_ok=True)
    for image in IMAGES:
        (output / f"{image.name}.mem").write_text(image_text(image), encoding="ascii")


if __name__ == "__main__":
    main()
