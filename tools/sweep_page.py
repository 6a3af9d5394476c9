"""The page docs/faults.md, the counts, and the check of the tables against the module."""

import collections
import re

from module_image import Image
from sweep_judge import BAD
from sweep_tables import ACTIONS, FULL_DISK, ROOT, Allowed, host_table, import_table, readable

PAGE = ROOT / "docs/faults.md"
HOST_SOURCES = ROOT / "standin/host_sdk/src"
HOST_CALL = re.compile(r'record\("(\w+::\w+)"')


def report(rows: list, bad=BAD) -> int:
    allowed, counts, wrong = Allowed(), collections.Counter(), []
    for row in rows:
        counts[row["outcome"]] += 1
        if row["outcome"] in bad and allowed.of(row) is None:
            wrong.append(row)
    print("; ".join(f"{kind}: {number}" for kind, number in counts.most_common()))
    for row in wrong:
        print(f"WRONG {row['scenario']}.{row['language']} {row['function']} call {row['call']}, {row['text']}, from "
              f"{row['place']}: {row['outcome']}: {row['detail'][:200]}")
    print(f"{len(rows)} faults, {len(wrong)} not as they must be")
    return 1 if wrong or not rows else 0


def counted(rows: list) -> dict:
    allowed, counts = Allowed(), collections.Counter()
    for row in rows:
        right = row["outcome"] not in BAD
        counts[row["outcome"] if right else f"{row['outcome']}, {'allowed' if allowed.of(row) else 'wrong'}"] += 1
    return dict(counts)


def function_lines(rows: list, points: dict) -> list:
    """One row of the page for each function, with what came of its faults."""
    groups = collections.defaultdict(collections.Counter)
    calls = collections.defaultdict(set)
    for row in rows:
        groups[row["function"]][row["outcome"]] += 1
        calls[row["function"]].add((row["scenario"], row["language"], row["call"]))
    table, called = all_failures(), {name for names in points.values() for name in names}
    lines = ["| function | how it fails | calls | what came of it |", "|---|---|---|---|"]
    for name in [name for name, failures in table.items() if failures]:
        outcomes = ", ".join(f"{kind} {number}" for kind, number in groups[name].most_common()) or ("none played" if name in called else "no run calls it")
        lines.append(f"| `{readable(name)}` | {', '.join(table[name])} | {len(calls[name])} | {outcomes} |")
    return lines


def all_failures() -> dict:
    return {**import_table(), **host_table(), FULL_DISK: {"full from this write on": {}}}


def run_lines(rows: list, points: dict) -> list:
    """One row of the page for each run and kind of fault."""
    counts = collections.Counter((row["scenario"], row["language"], kind_of(row)) for row in rows)
    played = collections.Counter((row["scenario"], row["language"]) for row in rows)
    kinds = sorted({kind for _, _, kind in counts})
    lines = ["| run | " + " | ".join(kinds) + " | played | of |", "|---|" + "---|" * (len(kinds) + 2)]
    for run, faults in points.items():
        cells = [str(counts[(*run, kind)]) for kind in kinds]
        lines.append(f"| {run[0]}, {run[1]} | {' | '.join(cells)} | {played[run]} | {len(faults)} |")
    return lines


def kind_of(row: dict) -> str:
    if row["text"].split()[-1] in ACTIONS:
        return "a file"
    if row["function"] == FULL_DISK:
        return "full disk"
    if row["text"].split()[0] in ("throw", "refuse"):
        return "the host throws" if row["text"] == "throw" else "the host refuses"
    if row["function"] in ("malloc", "calloc", "realloc"):
        return "no memory"
    return "a call fails"


def count_lines(before: dict, now: dict) -> list:
    lines = ["| what came of it | before | now |", "|---|---|---|"]
    for kind in sorted(set(before) | set(now), key=lambda kind: (kind.split(",")[0] in BAD, kind)):
        lines.append(f"| {kind} | {before.get(kind, 0)} | {now.get(kind, 0)} |")
    return lines + [f"| faults | {sum(before.values())} | {sum(now.values())} |"]


def allowed_lines() -> list:
    lines = ["| function | how it fails | run | called from | what comes of it | row | why |", "|---|---|---|---|---|---|---|"]
    for function, failure, scenario, place, kind, ids, reason in Allowed().rows:
        lines.append(f"| `{function}` | {failure} | {scenario} | `{place}` | {kind} | {ids} | {reason} |")
    return lines


def write(rows: list, points: dict, before: dict) -> None:
    """The part of the page behind its mark."""
    text = PAGE.read_text(encoding="utf-8")
    head = text[:text.index(MARK) + len(MARK)]
    lines = ["", "", "## Counts", *count_lines(before, counted(rows)), "", "## Runs", *run_lines(rows, points), "",
             "## Functions", *function_lines(rows, points), "",
             "## What is allowed", *allowed_lines(), ""]
    PAGE.write_text(head + "\n".join(lines), encoding="utf-8")


MARK = "<!-- What follows is written by tools/sweep.py --page. -->"


def check(module: str) -> int:
    """The table has a row for each import of the module and no other, and the page for each that is failed."""
    table, image = import_table(), Image(module)
    imports = set(image.imported_functions())
    problems = [f"tests/faults/imports.txt: {name} has no row" for name in sorted(imports - set(table))]
    problems += [f"tests/faults/imports.txt: the module does not import {name}" for name in sorted(set(table) - imports)]
    page = PAGE.read_text(encoding="utf-8")
    called = set(HOST_CALL.findall("".join(path.read_text(encoding="utf-8") for path in HOST_SOURCES.glob("*.cpp"))))
    problems += [f"tests/faults/host_calls.txt: {name} has no row, or is no call" for name in sorted(called ^ set(host_table()))]
    problems += [f"docs/faults.md: no row for {readable(name)}; run tools/sweep.sh" for name, failures in all_failures().items()
                 if failures and f"| `{readable(name)}` |" not in page]
    problems += [f"docs/faults.md: not what tests/faults/allowed.txt says: {line}" for line in allowed_lines()
                 if line not in page]
    print("\n".join(problems) or f"{len(imports)} imports have their rows")
    return 1 if problems else 0
