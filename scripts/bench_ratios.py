#!/usr/bin/env python3
"""Runs every benchmark program of a directory and prints the ratios that a list asks for.

Usage: bench_ratios.py RATIOS.json DIRECTORY [Google Benchmark options...]

What counts for a benchmark is the least of its repetitions, which are interleaved with those of
the others: whatever else the machine does can only add to a time. Exit code 1 when a ratio is
beyond its bound.
"""

import json
import pathlib
import subprocess
import sys

DEFAULT_OPTIONS = [
    "--benchmark_repetitions=15",
    "--benchmark_min_time=0.05",
    "--benchmark_enable_random_interleaving=true",
]
NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}
COLUMNS = ("comparison", "measured", "yardstick", "ratio", "bound", "")


def run(program, options):
    """All repetitions of a program's benchmarks, by PROGRAM:BENCHMARK."""
    print(f"running {program.name}", file=sys.stderr)
    command = [str(program), *DEFAULT_OPTIONS, *options, "--benchmark_format=json"]
    output = subprocess.run(command, check=True, stdout=subprocess.PIPE).stdout
    runs = {}
    for entry in json.loads(output)["benchmarks"]:
        if entry["run_type"] == "iteration":
            runs.setdefault(f"{program.name}:{entry['run_name']}", []).append(entry)
    return runs


def least(runs, benchmark, field):
    """The least value of a field over the repetitions; times are in nanoseconds."""
    if benchmark not in runs:
        sys.exit(f"bench_ratios: there is no benchmark {benchmark}")
    for entry in runs[benchmark]:
        if entry.get("error_occurred"):
            sys.exit(f"bench_ratios: {benchmark}: {entry['error_message']}")
        if field not in entry:
            sys.exit(f"bench_ratios: {benchmark} has no field {field}")
    scale = (lambda entry: NANOSECONDS[entry["time_unit"]]) if field == "cpu_time" else (lambda _: 1)
    return min(entry[field] * scale(entry) for entry in runs[benchmark])


def shown(value, field):
    if field != "cpu_time":
        return f"{value:,.0f}"
    unit = next((name for name in ("s", "ms", "us") if value >= NANOSECONDS[name]), "ns")
    return f"{value / NANOSECONDS[unit]:.1f} {unit}"


def judged(row, runs):
    """A row of the table, and whether its ratio is within the bound."""
    field = row.get("field", "cpu_time")
    measured = least(runs, row["measured"], field)
    yardstick = least(runs, row["yardstick"], field)
    ratio = measured / yardstick
    bound = row.get("bound")
    good = bound is None or ratio <= bound
    verdict = "" if bound is None else "ok" if good else "exceeded"
    cells = (row["name"], shown(measured, field), shown(yardstick, field), f"{ratio:.2f}",
             "" if bound is None else f"{bound:g}", verdict)
    return cells, good


def print_table(rows):
    widths = [max(len(row[column]) for row in rows) for column in range(len(COLUMNS))]
    for row in rows:
        cells = [row[0].ljust(widths[0])]
        cells += [cell.rjust(width) for cell, width in zip(row[1:5], widths[1:5])]
        print("  ".join([*cells, row[5]]).rstrip())


def main():
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    ratios = json.loads(pathlib.Path(sys.argv[1]).read_text(encoding="utf-8"))
    runs = {}
    for program in sorted(pathlib.Path(sys.argv[2]).glob("*_bench")):
        runs.update(run(program, sys.argv[3:]))
    judgements = [judged(row, runs) for row in ratios]
    print_table([COLUMNS, *(cells for cells, _ in judgements)])
    return 0 if all(good for _, good in judgements) else 1


if __name__ == "__main__":
    sys.exit(main())
