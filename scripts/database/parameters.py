"""Reads the table of user parameters and gives each family its own."""

import csv
from itertools import product
from pathlib import Path

TABLE = Path(__file__).with_name("user_parameters.csv")

SEQUENCES = range(2)
ELEMENTS = range(4)


def expand(name, description):
    """Names and descriptions of the parameters that a row stands for: "{s}" for each of two
    sequences, "{n}" for each of their four elements, or for each of four channels."""
    expanded = {}
    for s, n in product(SEQUENCES, ELEMENTS):
        expanded.setdefault(name.format(s=s, n=n), description.format(s=s, n=n))
    return expanded


def load_parameters(table=TABLE):
    """The rows of the table, as dictionaries by column."""
    with open(table, encoding="utf-8", newline="") as file:
        return list(csv.DictReader(file))


def parameters_of(family, rows, defaults=None):
    """The content of parameters.json: the rows that name the family, expanded. `defaults` replaces
    the defaults of the parameters that it names, which must be there."""
    parameters = {}
    for row in rows:
        if family not in row["families"].split():
            continue
        unit = f" ({row['unit']})" if row["unit"] else ""
        for name, description in expand(row["name"], row["description"]).items():
            parameters[name] = {
                "type": row["type"],
                "description": description + unit,
                "default_value": row["default"],
            }
    for name, default in (defaults or {}).items():
        if name not in parameters:
            raise KeyError(f"there is no parameter {name} of {family} to give another default")
        parameters[name]["default_value"] = default
    return parameters
