#!/usr/bin/env python3
"""Prints what a gcovr report in JSON says of lines and decisions: totals, and all that no test took.

Usage: coverage_report.py REPORT.json

A decision is a condition of the source with its two outcomes, or a case of a switch. The branches
that a compiler adds, such as those around the release of temporaries, are none. A condition that
gcov can't tell apart from others on its line is left out and counted.
"""

import json
import pathlib
import sys


def outcomes(decision):
    """Each outcome of a decision with the number of times it was taken."""
    if decision["type"] == "conditional":
        return [("never true", decision["count_true"]), ("never false", decision["count_false"])]
    if decision["type"] == "switch":
        return [("case never taken", decision["count"])]
    return []


class Tally:
    """What there is of a kind, how much of it was taken, and where the rest stands."""

    def __init__(self, kind):
        self.kind = kind
        self.total = 0
        self.missing = []

    def add(self, count, place):
        self.total += 1
        if count == 0:
            self.missing.append(place)

    def summary(self):
        taken = self.total - len(self.missing)
        share = 100.0 if self.total == 0 else 100.0 * taken / self.total
        return f"{self.kind}: {taken} of {self.total} ({share:.1f} %)"


def tallies(report):
    lines, decisions, unclear = Tally("lines"), Tally("decision outcomes"), 0
    for file in report["files"]:
        for line in file["lines"]:
            if line.get("gcovr/noncode"):
                continue
            place = f"{file['file']}:{line['line_number']}"
            lines.add(line["count"], f"{place}: not run")
            decision = line.get("gcovr/decision")
            if decision is None:
                continue
            if decision["type"] == "uncheckable":
                unclear += 1
            for outcome, count in outcomes(decision):
                decisions.add(count, f"{place}: {outcome}")
    return lines, decisions, unclear


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    report = json.loads(pathlib.Path(sys.argv[1]).read_text(encoding="utf-8"))
    lines, decisions, unclear = tallies(report)
    for place in lines.missing + decisions.missing:
        print(place)
    print(lines.summary())
    print(decisions.summary() + (f", {unclear} lines with several" if unclear else ""))


if __name__ == "__main__":
    main()
