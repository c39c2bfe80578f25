#!/usr/bin/env python3
"""Makes the page of user parameters, docs/user_parameters.md, from the parameters.json files of the
reference database. A test holds the committed page to what this prints:

    scripts/make_parameter_page.py > docs/user_parameters.md
"""

import json
import re
from pathlib import Path

DATA = Path(__file__).resolve().parents[1] / "data"

HEAD = """# User parameters

What a request gives a lane at a rate under `userParams` ([formats](formats.md)), and what a rate that
leaves it out has. This page is made by `scripts/make_parameter_page.py` from `data/*/parameters.json`,
where a program finds the same; with a database of your own its `parameters.json` counts.

`int` is a whole number from 0 on. Units stand behind the description in parentheses, the words or
numbers that a parameter can have behind a colon. What the instance writes itself need not be given.
Names that differ only in their numbers and mean the same share a row, with the description of the
first. `SXB-stable` are the frozen rules of SXB.
"""

SECTIONS = {
    "Transmit": "Direction 0 of `userParams`.",
    "Receive": "Direction 1 of `userParams`.",
    "Both": "A rate of either direction may give it; where both do, that of the receive rate counts.",
}


def section_of(name):
    return {"TX": "Transmit", "RX": "Receive"}.get(name[:2], "Both")


def load_families(data=DATA):
    """The content of parameters.json by family, in the order of the families' names."""
    return {
        path.parent.name: json.loads(path.read_text(encoding="utf-8"))
        for path in sorted(data.glob("*/parameters.json"))
    }


def variants_of(name, families):
    """The families that have the parameter, by what they say of it."""
    variants = {}
    for family, parameters in families.items():
        if name in parameters:
            content = tuple(parameters[name][key] for key in ("type", "default_value", "description"))
            variants.setdefault(content, []).append(family)
    return variants


def rows_of(families):
    """The rows of the page: names, families, type, default, description."""
    rows = {}
    for name in sorted({name for parameters in families.values() for name in parameters}):
        for (kind, default, description), owners in variants_of(name, families).items():
            alike = re.sub(r"\d", "#", name), kind, default, re.sub(r"\d", "#", description)
            row = rows.setdefault((alike, tuple(owners)), ([], owners, kind, default, description))
            row[0].append(name)
    return list(rows.values())


def names_text(names):
    return f"`{names[0]}`" if len(names) == 1 else f"`{names[0]}` to `{names[-1]}`"


def page_of(families):
    rows = rows_of(families)
    parts = [HEAD]
    for section, text in SECTIONS.items():
        parts.append(f"\n## {section}\n\n{text}\n")
        parts.append("\n| Name | Families | Type | Default | Meaning |\n|---|---|---|---|---|\n")
        for names, owners, kind, default, description in rows:
            if section_of(names[0]) == section:
                shown = f"`{default}`" if default else "empty"
                parts.append(
                    f"| {names_text(names)} | {', '.join(owners)} | {kind} | {shown} | {description} |\n"
                )
    return "".join(parts)


if __name__ == "__main__":
    print(page_of(load_families()), end="")
