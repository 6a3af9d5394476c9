#!/usr/bin/env python3
"""check_scenarios.py [FILE…]: holds scenarios against docs/scenario.schema.json and prints each error with its place.
Without a file: every scenario of the project; besides, the wrong ones of tests/data/scenarios_refused.json have to be
refused, and docs/scenario.md has to explain every key of the schema."""

import json
import pathlib
import sys

try:
    import jsonschema
except ImportError:
    sys.exit("error: this Python has no jsonschema\n       Install the package python3-jsonschema, and use Debian's own "
             "Python (/usr/bin/python3).")

ROOT = pathlib.Path(__file__).resolve().parent.parent
SCHEMA = ROOT / "docs/scenario.schema.json"
PAGE = ROOT / "docs/scenario.md"
REFUSED = ROOT / "tests/data/scenarios_refused.json"
SCENARIOS = ("tests/scenarios/*.json", "tests/faults/*.json", "tools/scenarios/*.json", "tests/packaging/*_job.json")


def validator():
    schema = json.loads(SCHEMA.read_text(encoding="utf-8"))
    jsonschema.Draft7Validator.check_schema(schema)
    return jsonschema.Draft7Validator(schema)


def place_of(error) -> str:
    place = ""
    for part in error.absolute_path:
        place += f"[{part}]" if isinstance(part, int) else f"{'.' if place else ''}{part}"
    return place or "the scenario"


def innermost(error):
    """Of an alternative that fails as a whole: the error of the branch that got furthest, if one is furthest."""
    while error.context:
        deepest = max(len(inner.absolute_path) for inner in error.context)
        furthest = [inner for inner in error.context if len(inner.absolute_path) == deepest]
        if len(furthest) != 1 or deepest <= len(error.absolute_path):
            return error
        error = furthest[0]
    return error


def problems_of(scenario, checker) -> list:
    errors = sorted(checker.iter_errors(scenario), key=lambda error: list(map(str, error.absolute_path)))
    return [f"{place_of(error)}: {error.message[:200]}" for error in map(innermost, errors)]


def keys_of(schema) -> set:
    return set(schema["properties"]).union(*(part["properties"] for part in schema["definitions"].values()))


def check_refusals(checker) -> list:
    """Each wrong scenario is refused at the place that its entry names."""
    problems = []
    for entry in json.loads(REFUSED.read_text(encoding="utf-8")):
        scenario = dict({"scene": {"literal": {}}}, **entry["scenario"]) if entry.get("complete", True) else entry["scenario"]
        found = problems_of(scenario, checker)
        if not any(problem.startswith(entry["place"] + ": ") for problem in found):
            problems.append(f"{REFUSED.name}: {json.dumps(entry['scenario'])}: expected an error at "
                            f"{entry['place']}, got {found or 'none'}")
    return problems


def main() -> int:
    checker = validator()
    files = [pathlib.Path(name) for name in sys.argv[1:]]
    problems = []
    if not files:
        files = sorted(path for pattern in SCENARIOS for path in ROOT.glob(pattern))
        page = PAGE.read_text(encoding="utf-8")
        problems = [f"{PAGE.name}: the key `{key}` is not explained"
                    for key in sorted(keys_of(checker.schema)) if f"`{key}`" not in page]
        problems += check_refusals(checker)
    for path in files:
        try:
            scenario = json.loads(path.read_text(encoding="utf-8-sig"))
        except (OSError, ValueError) as error:
            problems.append(f"{path}: {error}")
            continue
        problems += [f"{path.name}: {problem}" for problem in problems_of(scenario, checker)]
    for problem in problems:
        print(f"error: {problem}", file=sys.stderr)
    if not problems:
        print(f"{len(files)} scenarios fit their schema")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
