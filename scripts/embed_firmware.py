#!/usr/bin/env python3
"""Turns firmware images into a C++ source, so that the library reads no file at run time.

The build runs it; docs/firmware.md tells the form of an image. A faulty image stops the build with
its file and line.

    scripts/embed_firmware.py --output firmware_lines.cpp live=data/firmware/live.mem ...
"""

import argparse
import re
import sys
from pathlib import Path

BYTES_PER_LINE = 32
RATE_TABLE_ADDRESS = 0x16000

ADDRESS = re.compile(r"@(?:[0-9A-F]{8}|[0-9a-f]{8})")
# The two forms of a line: words in upper case, or single bytes in lower case.
FORMS = {
    "words": (re.compile(r"  (?:[0-9A-F]{8} ){1,8}"), 4),
    "bytes": (re.compile(r"  (?:[0-9a-f]{2} ){1,32}"), 1),
}


class ImageError(Exception):
    """An image that breaks the form, with the place."""


def line_form(line):
    """Name of the form that the line has, None for neither."""
    return next((name for name, (pattern, _) in FORMS.items() if pattern.fullmatch(line)), None)


def line_size(line, form):
    return len(line.split()) * FORMS[form][1]


class ImageCheck:
    """Walks the lines of one image and refuses the first that breaks the form."""

    def __init__(self, path):
        self.path = path
        self.number = 0
        self.form = None
        self.end = 0  # address behind what was read so far
        self.is_line_due = False  # after an address
        self.is_section_open = False  # for more lines

    def refuse(self, reason):
        raise ImageError(f"{self.path}:{self.number}: {reason}")

    def take(self, line):
        self.number += 1
        if line.startswith("@"):
            self.take_address(line)
        else:
            self.take_text(line)

    def take_address(self, line):
        if not ADDRESS.fullmatch(line):
            self.refuse("an address is '@' and eight hexadecimal digits of one case")
        if self.is_line_due:
            self.refuse("the section before this one is empty")
        address = int(line[1:], 16)
        if address < self.end:
            self.refuse(f"the section begins below {self.end:#x}, where the one before it ends")
        self.end = address
        self.is_line_due = True
        self.is_section_open = True

    def take_text(self, line):
        form = line_form(line)
        if form is None or form != (self.form or form):
            self.refuse(
                "a line is two blanks and eight words of eight upper-case digits, or 32 bytes of "
                "two lower-case digits, each followed by a blank, the same in a whole image"
            )
        if not self.is_section_open:
            self.refuse("a line has to follow an address, and only a section's last may be short")
        self.form = form
        size = line_size(line, form)
        self.end += size
        self.is_line_due = False
        self.is_section_open = size == BYTES_PER_LINE
        if self.end > RATE_TABLE_ADDRESS:
            self.refuse(f"the image runs into the rate table at {RATE_TABLE_ADDRESS:#x}")

    def finish(self):
        if self.is_line_due or self.form is None:
            self.refuse("the image ends without a line")


def checked_lines(path):
    try:
        content = path.read_bytes().decode("ascii")
    except UnicodeDecodeError as fault:
        raise ImageError(f"{path}: {fault}") from fault
    if not content.endswith("\n"):
        raise ImageError(f"{path}: the last line has no line feed")
    lines = content[:-1].split("\n")
    check = ImageCheck(path)
    for line in lines:
        check.take(line)
    check.finish()
    return lines


def literal(line):
    return f'    "{line}"sv,' if line.startswith("@") else f'    "{line}\\n"sv,'


def array_source(name, lines):
    return "\n".join([
        f"constexpr std::string_view {name}Text[] = {{",
        *map(literal, lines),
        "};",
    ])


def source(images):
    arrays = [array_source(name, lines) for name, lines in images.items()]
    definitions = [
        f"const FirmwareLines {name}{{std::begin({name}Text), std::end({name}Text)}};"
        for name in images
    ]
    return "\n".join([
        "// Made by scripts/embed_firmware.py from the images of the firmware.",
        '#include "families/common/firmware_lines.h"',
        "",
        "#include <iterator>",
        "",
        "namespace sable_lanecfg::firmware {",
        "",
        "using namespace std::string_view_literals;",
        "",
        "namespace {",
        "",
        "\n\n".join(arrays),
        "",
        "}  // namespace",
        "",
        *definitions,
        "",
        "}  // namespace sable_lanecfg::firmware",
        "",
    ])


def named_file(text):
    name, separator, path = text.partition("=")
    if not separator or not name.isidentifier():
        raise argparse.ArgumentTypeError(f"'{text}' is not NAME=FILE")
    return name, Path(path)


def main():
    parser = argparse.ArgumentParser(description="Turns firmware images into a C++ source.")
    parser.add_argument("--output", required=True, type=Path, help="source to write")
    parser.add_argument("images", nargs="+", type=named_file, metavar="NAME=FILE")
    options = parser.parse_args()
    try:
        images = {name: checked_lines(path) for name, path in options.images}
        options.output.write_text(source(images), encoding="ascii")
    except (ImageError, OSError) as fault:
        sys.exit(f"embed_firmware: {fault}")


if __name__ == "__main__":
    main()
