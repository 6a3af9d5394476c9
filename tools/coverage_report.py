#!/usr/bin/env python3
"""coverage_report.py BUILD: adds up gcov's counters for the product's layers. Branches that only exceptions take are
left out: the compiler adds one to nearly every call."""

import collections
import json
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
LAYERS = ("common", "scene", "submit", "dialog")
GCOV = "x86_64-w64-mingw32-gcov-posix"


class Count:
    """How many there are and how many of them ran."""

    def __init__(self) -> None:
        self.all = 0
        self.run = 0

    def add(self, ran: bool) -> None:
        self.all += 1
        self.run += ran

    def __str__(self) -> str:
        return f"{100 * self.run / self.all:5.1f} % of {self.all}" if self.all else "none"


def reports(counters: pathlib.Path) -> list[dict]:
    output = subprocess.run([GCOV, "--branch-probabilities", "--json-format", "--stdout", str(counters)], check=True,
                            capture_output=True, text=True).stdout
    return json.loads(output)["files"]


def layer_of(name: str) -> str | None:
    path = pathlib.Path(name)
    if path.is_absolute() and path.is_relative_to(ROOT):
        path = path.relative_to(ROOT)
    return path.parts[0] if path.parts and path.parts[0] in LAYERS else None


def main() -> int:
    lines: dict[tuple[str, int], int] = collections.defaultdict(int)
    branches: dict[tuple[str, int, int], int] = collections.defaultdict(int)
    for counters in pathlib.Path(sys.argv[1]).rglob("*.gcda"):
        for file in reports(counters):
            if layer_of(file["file"]) is None:
                continue
            for line in file["lines"]:
                lines[file["file"], line["line_number"]] += line["count"]
                ordinary = [branch for branch in line["branches"] if not branch["throw"]]
                for index, branch in enumerate(ordinary if len(ordinary) > 1 else []):
                    branches[file["file"], line["line_number"], index] += branch["count"]
    totals = {layer: (Count(), Count()) for layer in LAYERS}
    for (name, _), count in lines.items():
        totals[layer_of(name)][0].add(count > 0)
    for (name, _, _), count in branches.items():
        totals[layer_of(name)][1].add(count > 0)
    for layer, (line_count, branch_count) in totals.items():
        print(f"{layer + '/':10} lines {line_count}    branches {branch_count}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
