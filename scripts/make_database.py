#!/usr/bin/env python3
"""Makes the reference database: register layout, user parameters and device limits of a family.

The registers come from the rule catalogues, which the program catalogue_dump of the build prints;
everything else is data beside this script, in scripts/database/. The output is committed in data/
and depends on nothing else, so a run gives the same bytes everywhere:

    scripts/make_database.py --catalogue-dump build/release/bin/catalogue_dump --output data
"""

import sys

sys.dont_write_bytecode = True  # a run from the build leaves nothing in the checkout

import argparse
import json
import re
import subprocess
from pathlib import Path

from database.families import DATABASES
from database.parameters import load_parameters, parameters_of
from database.placement import LayoutError, place_registers


def catalogue_of(dump_program, family):
    """The entries of a family's rule catalogue."""
    printed = subprocess.run(
        [dump_program, family], check=True, stdout=subprocess.PIPE, encoding="utf-8"
    ).stdout
    return json.loads(printed)["entries"]


def as_text(content):
    """JSON with a line for each field of a register."""
    text = json.dumps(content, indent=2)
    return re.sub(r"\[\s+(\d+),\s+(\d+)\s+\]", r"[\1, \2]", text) + "\n"


def make_family(name, dump_program, output):
    database = DATABASES[name]
    contents = {
        "device.json": {"-3": database.limits},
        "parameters.json": parameters_of(
            database.family, load_parameters(), database.defaults
        ),
        "registers.json": place_registers(catalogue_of(dump_program, name), database.layout),
    }
    folder = output / name
    folder.mkdir(parents=True, exist_ok=True)
    for file_name, content in contents.items():
        (folder / file_name).write_text(as_text(content), encoding="utf-8")


def main():
    parser = argparse.ArgumentParser(description="Makes the reference database.")
    parser.add_argument(
        "--catalogue-dump", required=True, metavar="PROGRAM", help="catalogue_dump of the build"
    )
    parser.add_argument(
        "--family",
        action="append",
        choices=sorted(DATABASES),
        help="make only this family; may be repeated",
    )
    parser.add_argument("--output", required=True, type=Path, help="folder for the families")
    options = parser.parse_args()
    try:
        for name in options.family or sorted(DATABASES):
            make_family(name, options.catalogue_dump, options.output)
    except (LayoutError, OSError, subprocess.CalledProcessError) as fault:
        sys.exit(f"make_database: {fault}")


if __name__ == "__main__":
    main()
