#!/usr/bin/env python3
"""Adds up what clang's coverage says of src/: coverage_report.py [--branches] FILE.lcov FILE.json LINES BRANCHES

Lines come from the first file, branches from the second, which tells the instances of a template apart: a branch is
reached when one of them reaches it. Prints the shares of each file that is not reached as a whole, and what is not reached of it. Lines in
scripts/lines-not-reached.txt do not count. Exit status 1 below the shares that are given.
"""
import collections
import json
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent


def name_of(path):
    """The name of a source file below the root, or None for one that does not count."""
    resolved = pathlib.Path(path).resolve()
    return str(resolved.relative_to(ROOT)) if resolved.is_relative_to(ROOT / "src") else None


def read_lines(path):
    """For every source file, from a line to its count."""
    lines = collections.defaultdict(dict)
    name = None
    for row in pathlib.Path(path).read_text().splitlines():
        kind, _, rest = row.partition(":")
        if kind == "SF":
            name = name_of(rest)
        elif name and kind == "DA":
            number, count = (int(value) for value in rest.split(",")[:2])
            lines[name][number] = max(count, lines[name].get(number, 0))
    return lines


def read_branches(path):
    """For every source file, from line, column and outcome to the count."""
    branches = collections.defaultdict(collections.Counter)
    for file in json.loads(pathlib.Path(path).read_text())["data"][0]["files"]:
        name = name_of(file["filename"])
        for line, column, _, _, taken, not_taken, *_ in file["branches"] if name else []:
            branches[name][line, column, True] += taken
            branches[name][line, column, False] += not_taken
    return branches


def read_exceptions():
    """The file names a source file and below it, indented, its lines; '#' begins a reason."""
    exceptions = collections.defaultdict(set)
    name = None
    for row in (ROOT / "scripts" / "lines-not-reached.txt").read_text().splitlines():
        if re.match(r"\S", row) and not row.startswith("#"):
            name = row.strip()
        elif name and row.strip():
            exceptions[name].add(row.strip())
    return exceptions


def share(reached, total):
    return 100 * reached / total if total else 100.0


def main():
    arguments = [argument for argument in sys.argv[1:] if argument != "--branches"]
    lines = read_lines(arguments[0])
    branches = read_branches(arguments[1])
    exceptions = read_exceptions()
    totals = collections.Counter()
    for name in sorted(lines):
        text = (ROOT / name).read_text().split("\n")
        counted = {n: c for n, c in lines[name].items() if text[n - 1].strip() not in exceptions[name] or c > 0}
        missed = [n for n, c in sorted(counted.items()) if c == 0]
        missed_branches = [key for key, c in sorted(branches[name].items()) if c == 0]
        totals.update(lines=len(counted), missed=len(missed), branches=len(branches[name]),
                      missed_branches=len(missed_branches))
        if missed or missed_branches:
            print(f"{name}: {share(len(counted) - len(missed), len(counted)):.2f} % of {len(counted)} lines, "
                  f"{share(len(branches[name]) - len(missed_branches), len(branches[name])):.2f} % of "
                  f"{len(branches[name])} branches")
        for number in missed:
            print(f"  line {number}: {text[number - 1].strip()}")
        for number in sorted({key[0] for key in missed_branches}) if "--branches" in sys.argv else []:
            print(f"  branch in {number}: {text[number - 1].strip()}")
    line_share = share(totals["lines"] - totals["missed"], totals["lines"])
    branch_share = share(totals["branches"] - totals["missed_branches"], totals["branches"])
    print(f"{line_share:.2f} % of {totals['lines']} lines, {branch_share:.2f} % of {totals['branches']} branches")
    if not totals["lines"] or line_share < float(arguments[2]) or branch_share < float(arguments[3]):
        sys.exit(1)


if __name__ == "__main__":
    main()
