#!/usr/bin/env python3
"""slowest.py BUILD…: prints the five slowest tests of the last ctest run in these build folders. A program that gtest
timed (BUILD/times/NAME.json) counts by its single tests."""

import json
import pathlib
import re
import sys

SHOWN = 5
# In the log of a run a test begins with its name and ends with its time.
TEST = re.compile(r'^\d+/\d+ Test: (.*?)$.*?^Test time = +([0-9.]+) sec', re.MULTILINE | re.DOTALL)


def ctest_times(build: pathlib.Path) -> dict[str, float]:
    log = build / "Testing/Temporary/LastTest.log"
    text = log.read_text(encoding="utf-8", errors="replace") if log.exists() else ""
    return {name: float(seconds) for name, seconds in TEST.findall(text)}


def single_tests(times: pathlib.Path, program: str) -> dict[str, float]:
    """Empty when gtest left no times of the program: it was ended from outside, or is no program of gtest's."""
    try:
        report = json.loads((times / f"{program}.json").read_text(encoding="utf-8"))
    except (OSError, ValueError):
        return {}
    return {f"{program}: {suite['name']}.{test['name']}": float(test["time"].rstrip("s"))
            for suite in report.get("testsuites", []) for test in suite.get("testsuite", [])}


def main() -> int:
    found: dict[str, float] = {}
    for build in map(pathlib.Path, sys.argv[1:]):
        for name, seconds in ctest_times(build).items():
            found.update(single_tests(build / "times", name) or {name: seconds})
    slowest = sorted(found.items(), key=lambda entry: -entry[1])[:SHOWN]
    print(f"The slowest of {len(found)} tests: " + ", ".join(f"{name} ({seconds:.1f} s)" for name, seconds in slowest))
    return 0


if __name__ == "__main__":
    sys.exit(main())
